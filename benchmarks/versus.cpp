#include "toolerror.h"
#include "versus_tables.h"

#include <QStringList>

#include <cstdio>
#include <cstring>

// Booleans of this library beside those of QPainterPath: the same shapes, one process, in turn.

namespace {

const char usage[] =
    "usage: pzversus FILE... [--truth FILE...]            times and wrong results by family\n"
    "       pzversus --growth FILE... [--truth FILE...]   time by size over series, growing sizes in order\n"
    "       pzversus --memory FILE...                     peak memory beyond the operands\n"
    "       pzversus --about                              compiler and Qt that it runs with\n"
    "options: --reps N (7), --limit SECONDS (20), --tags (by tag instead of family), --faults (list them),\n"
    "         --fresh (operands that no boolean has seen, instead of standing ones)\n";

struct Arguments {
    QStringList files, truth;
    VersusOptions options;
    bool growth = false, memory = false, byTag = false, faults = false;
};

int positive(const QString &option, const QString &text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < 1)
        throw ToolError{ QStringLiteral("%1 needs a positive number, not '%2'").arg(option, text) };
    return value;
}

Arguments parse(const QStringList &words)
{
    Arguments in;
    QStringList *list = &in.files;
    for (int i = 0; i < words.size(); ++i) {
        const QString &word = words[i];
        if (word == QLatin1String("--truth"))
            list = &in.truth;
        else if (word == QLatin1String("--growth"))
            in.growth = in.options.skipLarger = true;
        else if (word == QLatin1String("--memory"))
            in.memory = true;
        else if (word == QLatin1String("--tags"))
            in.byTag = true;
        else if (word == QLatin1String("--faults"))
            in.faults = true;
        else if (word == QLatin1String("--fresh"))
            in.options.fresh = true;
        else if (word == QLatin1String("--reps"))
            in.options.reps = positive(word, words.value(++i));
        else if (word == QLatin1String("--limit"))
            in.options.limit = positive(word, words.value(++i));
        else if (word.startsWith(QLatin1String("--")))
            throw ToolError{ QStringLiteral("unknown option '%1'").arg(word) };
        else
            list->append(word);
    }
    if (in.files.isEmpty())
        throw ToolError{ QStringLiteral("no files") };
    return in;
}

void run(const Arguments &in)
{
    const QVector<VersusCase> cases = readCases(in.files, in.truth);
    if (in.memory) {
        printMemory(measureMemory(cases, in.options.limit));
        return;
    }
    const QVector<VersusResult> results = runVersus(cases, in.options);
    if (in.growth)
        printGrowth(results);
    else
        printComparison(results, in.byTag);
    if (in.faults)
        printFaults(results);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--about") == 0) {
        std::printf("compiler %s, Qt %s\n", __VERSION__, qVersion());
        return 0;
    }
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    try {
        run(parse(words));
        return 0;
    } catch (const ToolError &error) {
        std::fprintf(stderr, "pzversus: %s\n%s", error.text.toUtf8().constData(), usage);
        return 2;
    }
}
