#include "corpus.h"
#include "invocation.h"
#include "report.h"
#include "runner.h"
#include "toolerror.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace {

/** A shell's *.tsv names files of cases and the areas that lie beside them alike. */
bool holdsTruth(const QString &file)
{
    return file.endsWith(QLatin1String(".truth.tsv")) || file.endsWith(QLatin1String(".truth.tsv.gz"));
}

QVector<CorpusCase> readAll(const QStringList &files)
{
    QVector<CorpusCase> cases;
    for (const QString &file : files) {
        if (!holdsTruth(file))
            cases += readCorpus(file);
    }
    return cases;
}

QStringList truthFiles(const Invocation &in)
{
    QStringList files = in.values("truth");
    for (const QString &file : in.arguments()) {
        if (holdsTruth(file))
            files << file;
    }
    return files;
}

QHash<QString, CorpusTruth> readTruths(const Invocation &in, const QVector<CorpusCase> &cases)
{
    QHash<QString, CorpusTruth> all;
    const QStringList files = truthFiles(in);
    for (const QString &file : files) {
        const QHash<QString, CorpusTruth> some = readTruth(file);
        for (auto it = some.constBegin(); it != some.constEnd(); ++it)
            all.insert(it.key(), it.value());
    }
    const auto known = [&](const CorpusCase &entry) { return all.contains(entry.id); };
    if (!files.isEmpty() && std::none_of(cases.begin(), cases.end(), known))
        throw ToolError{ QStringLiteral("no case is named in %1").arg(files.join(", ")) };
    return all;
}

RunOptions runOptions(const Invocation &in)
{
    RunOptions options;
    for (const QString &name : in.values("op"))
        options.operations << &operationByName(name);
    if (options.operations.isEmpty()) {
        for (const Operation &operation : operations)
            options.operations << &operation;
    }
    options.reps = in.count("reps", 1, options.reps);
    options.timeout = in.count("timeout", 0, options.timeout);
    options.isolated = !in.has("no-fork");
    return options;
}

/**
 * Counts on a terminal while the results go elsewhere; where they go to the terminal they are progress
 * enough.
 */
class Progress
{
public:
    explicit Progress(int count) : m_count(count), m_shown(isatty(2) && !isatty(1)) { m_timer.start(); }
    ~Progress()
    {
        if (m_printed)
            std::fputs("\r\033[K", stderr);
    }
    void step()
    {
        ++m_done;
        if (!m_shown || m_timer.elapsed() < 200)
            return;
        std::fprintf(stderr, "\r%d of %d", m_done, m_count);
        m_printed = true;
        m_timer.restart();
    }

private:
    const int m_count;
    const bool m_shown;
    int m_done = 0;
    bool m_printed = false;
    QElapsedTimer m_timer;
};

QString resultLine(const CorpusCase &entry, const Operation &operation, const RunResult &result)
{
    return QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\t%7\t%8")
        .arg(entry.id, QLatin1String(operation.name))
        .arg(result.medianNs)
        .arg(result.contours)
        .arg(result.segments)
        .arg(QString::number(result.area, 'f', 6), QLatin1String(statusName(result.status)),
             QLatin1String(verdictName(result.verdict)));
}

void printHeading()
{
    printLine(QStringLiteral("# id\top\tmedian_ns\tcontours\tsegments\tarea\tstatus\tverdict"));
}

void listCases(const QVector<CorpusCase> &cases)
{
    for (const CorpusCase &entry : cases)
        printLine(entry.id + QLatin1Char('\t') + entry.tags.join(QLatin1Char(',')));
}

void runCorpusCommand(const Invocation &in)
{
    const QVector<CorpusCase> cases = readAll(in.arguments());
    if (in.has("list")) {
        listCases(cases);
        return;
    }
    const RunOptions options = runOptions(in);
    Report report(readTruths(in, cases), in.positive("tolerance", 0));
    {
        Progress progress(cases.size() * options.operations.size());
        // The heading waits for the first result: nothing is printed when the cases cannot be read.
        bool hasHeading = false;
        runCorpus(cases, options,
                  [&](const CorpusCase &entry, const Operation &operation, const RunResult &result) {
                      if (!std::exchange(hasHeading, true))
                          printHeading();
                      printLine(resultLine(entry, operation, result));
                      report.add(entry, operation, result);
                      progress.step();
                  });
    }
    if (!truthFiles(in).isEmpty())
        report.print();
}

} // namespace

QVector<Command> corpusCommands()
{
    return {
        { "corpus", "FILE...", "runs and times the operations on a file of cases, held against known areas",
          1, Command::anyNumber, Command::Corpus, runCorpusCommand },
    };
}
