#include "invocation.h"

#include "picture.h"
#include "textfile.h"
#include "toolerror.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <cmath>
#include <cstdio>

namespace {

struct OptionRow {
    int set;
    QStringList names;
    const char *help;
    const char *value; ///< null for a switch
};

const QVector<OptionRow> &optionRows()
{
    static const QVector<OptionRow> rows{
        { Command::Output, { "o", "output" }, "draw into FILE (.png or .svg)", "FILE" },
        { Command::Elements, { "elements" }, "go through element paths, as the application does", nullptr },
        { Command::Json, { "json" }, "print JSON", nullptr },
        { Command::Corpus, { "op" }, "run this operation only (may be repeated)", "OP" },
        { Command::Corpus, { "reps" }, "repetitions, of which the median counts (1)", "N" },
        { Command::Corpus,
          { "truth" },
          "known areas to compare with, as is any FILE named *.truth.tsv",
          "FILE" },
        { Command::Corpus, { "tolerance" }, "allowed error as a fraction of the area of the joint box", "T" },
        { Command::Corpus, { "timeout" }, "whole seconds for each operation, 0 for none (60)", "S" },
        { Command::Corpus, { "no-fork" }, "run in this process, for profilers", nullptr },
        { Command::Corpus, { "list" }, "list names and tags, run nothing", nullptr },
    };
    return rows;
}

/** Marks a negative number so that the option parser takes it for a plain word. */
const QChar numberMark(0x1f);

QString marked(const QString &argument)
{
    static const QRegularExpression negative(QStringLiteral("^-[0-9.]"));
    return negative.match(argument).hasMatch() ? numberMark + argument : argument;
}

QString unmarked(const QString &argument)
{
    return argument.startsWith(numberMark) ? argument.mid(1) : argument;
}

void addOptions(QCommandLineParser &parser, int set)
{
    for (const OptionRow &row : optionRows()) {
        if (!(set & row.set))
            continue;
        QCommandLineOption option(row.names, QString::fromLatin1(row.help));
        if (row.value)
            option.setValueName(QString::fromLatin1(row.value));
        parser.addOption(option);
    }
    parser.addHelpOption();
}

void checkCount(const Command &command, int given)
{
    if (given >= command.fewest && given <= command.most)
        return;
    throw ToolError{ QStringLiteral("%1 takes %2, not %n argument(s); usage: pzpath %1 %2")
                         .arg(QLatin1String(command.name), QLatin1String(command.arguments))
                         .replace(QLatin1String("%n"), QString::number(given)) };
}

} // namespace

Invocation::Invocation(const Command &command, const QStringList &arguments)
    : m_command(QLatin1String(command.name))
{
    QCommandLineParser parser;
    addOptions(parser, command.options);
    QStringList words{ QStringLiteral("pzpath") };
    for (const QString &argument : arguments)
        words << marked(argument);
    if (!parser.parse(words))
        throw ToolError{ parser.errorText() };

    m_help = parser.isSet(QStringLiteral("help"));
    for (const QString &argument : parser.positionalArguments())
        m_arguments << unmarked(argument);
    for (const OptionRow &row : optionRows()) {
        if (!(command.options & row.set) || !parser.isSet(row.names.last()))
            continue;
        QStringList &values = m_values[row.names.last()];
        for (const QString &value : parser.values(row.names.last()))
            values << unmarked(value);
    }
    if (!m_help)
        checkCount(command, m_arguments.size());
}

double Invocation::number(int argument, const char *name) const
{
    bool ok = false;
    const double value = m_arguments[argument].toDouble(&ok);
    if (!ok || !std::isfinite(value))
        throw ToolError{
            QStringLiteral("%1 is not a number: '%2'").arg(QLatin1String(name), m_arguments[argument])
        };
    return value;
}

PathCommands Invocation::path(int argument, const char *name) const
{
    const QString &word = m_arguments[argument];
    const QString file = word.startsWith(QLatin1Char('@')) ? word.mid(1) : QString();
    const QString text = file.isNull() ? word : QString::fromUtf8(readTextFile(file));
    try {
        return parsePathData(text);
    } catch (const ToolError &error) {
        throw ToolError{
            QStringLiteral("path %1: %2").arg(file.isNull() ? QString::fromLatin1(name) : file, error.text)
        };
    }
}

int Invocation::count(const char *option, int least, int fallback) const
{
    if (!has(option))
        return fallback;
    bool ok = false;
    const int number = value(option).toInt(&ok);
    if (!ok || number < least)
        throw ToolError{ QStringLiteral("--%1 needs a whole number from %2 on, not '%3'")
                             .arg(QLatin1String(option))
                             .arg(least)
                             .arg(value(option)) };
    return number;
}

double Invocation::positive(const char *option, double fallback) const
{
    if (!has(option))
        return fallback;
    bool ok = false;
    const double number = value(option).toDouble(&ok);
    if (!ok || !std::isfinite(number) || number <= 0)
        throw ToolError{
            QStringLiteral("--%1 needs a number above 0, not '%2'").arg(QLatin1String(option), value(option))
        };
    return number;
}

QString optionHelp(int set)
{
    QString text;
    for (const OptionRow &row : optionRows()) {
        if (!(set & row.set))
            continue;
        const QString name = (row.names.last() == QLatin1String("output") ? "-o" : "--" + row.names.last()) +
                             (row.value ? QLatin1Char(' ') + QLatin1String(row.value) : QString());
        text += QStringLiteral("  %1 %2\n").arg(name, -15).arg(QLatin1String(row.help));
    }
    return text;
}

void printLine(const QString &line)
{
    std::fputs(line.toUtf8().append('\n').constData(), stdout);
}

void printPaths(const Invocation &in, const QVector<PathCommands> &results, const QVector<Shape> &picture)
{
    if (in.has("output"))
        savePicture(picture, in.value("output"));
    for (const PathCommands &result : results)
        printLine(toText(result));
}
