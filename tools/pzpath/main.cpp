#include "invocation.h"
#include "toolerror.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace {

constexpr int failureStatus = 2;

QVector<Command> allCommands()
{
    return booleanCommands() + queryCommands() + effectCommands() + corpusCommands() + arrangementCommands() +
           galleryCommands();
}

void printHelp(const QVector<Command> &commands)
{
    printLine(QStringLiteral(
        "Usage: pzpath COMMAND ARGUMENTS [OPTIONS]\n\n"
        "A, B: path data (absolute M L C Z), or @FILE. Commands that yield paths print path data "
        "and\ndraw with -o FILE.png or -o FILE.svg; pzpath COMMAND --help shows one command.\n"));
    for (const Command &command : commands) {
        const QString usage =
            QLatin1String(command.name) + QLatin1Char(' ') + QLatin1String(command.arguments);
        printLine(QStringLiteral("  %1 %2").arg(usage, -30).arg(QLatin1String(command.help)));
    }
    printLine(QStringLiteral("\nExit status: 0, or 2 with one line on standard error."));
}

void printHelp(const Command &command)
{
    printLine(
        QStringLiteral("Usage: pzpath %1 %2\n%3")
            .arg(QLatin1String(command.name), QLatin1String(command.arguments), QLatin1String(command.help)));
    printLine(optionHelp(command.options));
}

const Command &commandByName(const QVector<Command> &commands, const QString &name)
{
    for (const Command &command : commands) {
        if (name == QLatin1String(command.name))
            return command;
    }
    throw ToolError{ QStringLiteral("unknown command '%1'; pzpath --help lists the commands").arg(name) };
}

void run(const QStringList &words)
{
    const QVector<Command> commands = allCommands();
    if (words.isEmpty())
        throw ToolError{ QStringLiteral("no command; pzpath --help lists the commands") };
    if (words[0] == QLatin1String("--help") || words[0] == QLatin1String("-h")) {
        printHelp(commands);
        return;
    }
    if (words[0] == QLatin1String("--version")) {
        printLine(QStringLiteral("pzpath " PZ_VERSION));
        return;
    }
    const Command &command = commandByName(commands, words[0]);
    const Invocation in(command, words.mid(1));
    if (in.wantsHelp())
        printHelp(command);
    else
        command.run(in);
}

void keepFatal(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "pzpath: %s\n", text.simplified().toUtf8().constData());
}

bool writesText(const char *name)
{
    const QVector<Command> commands = allCommands();
    return std::any_of(commands.begin(), commands.end(), [name](const Command &command) {
        return (command.options & Command::WritesText) && qstrcmp(name, command.name) == 0;
    });
}

/** Everything that writes no text into pictures starts faster without a GUI application. */
QCoreApplication *makeApplication(int &argc, char **argv)
{
    if (argc < 2 || !writesText(argv[1]))
        return new QCoreApplication(argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // It warns about the session's folders, which are not used here.
    const QtMessageHandler usual = qInstallMessageHandler(keepFatal);
    auto *application = new QGuiApplication(argc, argv);
    qInstallMessageHandler(usual);
    return application;
}

int fail(const QString &text)
{
    // What the user typed is part of some messages; the promise is one line.
    std::fprintf(stderr, "pzpath: %s\n", text.simplified().toUtf8().constData());
    return failureStatus;
}

} // namespace

int main(int argc, char **argv)
{
    // Never deleted: the offscreen platform loses its screen on the way down, which a leak check would
    // report.
    const QCoreApplication *application = makeApplication(argc, argv);
    try {
        run(application->arguments().mid(1));
    } catch (const ToolError &error) {
        return fail(error.text);
    } catch (const std::exception &error) {
        return fail(QString::fromLocal8Bit(error.what()));
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        return fail(QStringLiteral("cannot write to standard output"));
    return 0;
}
