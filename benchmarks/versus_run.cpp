#include "versus_run.h"

#include "isolate.h"
#include "toolerror.h"
#include "versus_sides.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr int maxReps = 15;
/** Repetitions are spread over so many rounds through all jobs: a slow spell of the machine meets some. */
constexpr int rounds = 3;
/** Microseconds after which a pair of sides gets no more repetitions. */
constexpr double enoughTime = 1.5e6;
constexpr double areaTolerance = 1e-3;

/**
 * What a child has found so far of one job. It lies in memory that parent and child share, so that a run that
 * is stopped at the limit still tells whose it was and what came before.
 */
struct Progress {
    Side running = Ours;
    std::array<double, 2> area = {};
    std::array<std::array<double, maxReps>, 2> times = {};
    std::array<int, 2> count = {};

    void add(Side side, double time) { times[side][size_t(count[side]++)] = time; }
    int reps() const { return std::max(count[Ours], count[Painter]); }
    double total() const
    {
        double sum = 0;
        for (const Side side : sides) {
            for (int i = 0; i < count[side]; ++i)
                sum += times[side][size_t(i)];
        }
        return sum;
    }
    double median(Side side) const
    {
        std::array<double, maxReps> sorted = times[side];
        std::sort(sorted.begin(), sorted.begin() + count[side]);
        return sorted[size_t(count[side]) / 2];
    }
};

/** A record for every job, since the child is at the next one before the parent has looked at the last. */
class SharedProgress
{
public:
    explicit SharedProgress(int count) : m_bytes(sizeof(Progress) * size_t(count))
    {
        void *memory = mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            throw ToolError{ QStringLiteral("cannot share memory") };
        m_first = static_cast<Progress *>(memory);
        std::uninitialized_default_construct_n(m_first, count);
    }
    SharedProgress(const SharedProgress &) = delete;
    SharedProgress &operator=(const SharedProgress &) = delete;
    ~SharedProgress() { munmap(m_first, m_bytes); }
    Progress &operator[](int job) { return m_first[job]; }

private:
    const size_t m_bytes;
    Progress *m_first;
};

/** Both sides of one case, operation by operation. Lives in the parent; the jobs run in its children. */
class Contest
{
public:
    Contest(const QVector<VersusCase> &cases, const VersusOptions &options)
        : m_cases(cases), m_options(options), m_progress(jobCount()), m_ends(jobCount(), JobEnd::Done)
    {
    }

    QVector<VersusResult> run()
    {
        for (m_round = 0; m_round < rounds; ++m_round) {
            runIsolated(
                jobCount(), 0, 1, [this](int job, void *) { runJob(job); },
                [this](int job, JobEnd end, const void *) { note(job, end); });
        }
        QVector<VersusResult> results;
        for (int job = 0; job < jobCount(); ++job)
            results << resultOf(job);
        return results;
    }

private:
    int jobCount() const { return m_cases.size() * int(operations.size()); }
    using Series = QPair<QString, int>;
    Series seriesOf(int job, Side side) const { return { caseOf(job).family, operationOf(job) * 2 + side }; }
    bool isSkipped(int job, Side side) const
    {
        return m_options.skipLarger && job > m_overLimit.value(seriesOf(job, side), job);
    }
    /** Repetitions up to the end of this round. */
    int repsSoFar() const
    {
        return (std::min(m_options.reps, maxReps) * (m_round + 1) + rounds - 1) / rounds;
    }
    double timeSoFar() const { return enoughTime * (m_round + 1) / rounds; }
    const VersusCase &caseOf(int job) const { return m_cases[job / int(operations.size())]; }
    static int operationOf(int job) { return job % int(operations.size()); }

    void runJob(int job)
    {
        Progress &progress = m_progress[job];
        if (m_ends[job] != JobEnd::Done || progress.total() > timeSoFar())
            return;
        const VersusOperands operands(caseOf(job).entry);
        VersusRunner runners[] = { { operands, Ours, operationOf(job), m_options.fresh },
                                   { operands, Painter, operationOf(job) } };
        // Operands that stand have been asked before, twice: what is kept of them is made the second time,
        // and large ones are timed just once.
        for (int i = 0; i < 2 && !m_options.fresh && !isSkipped(job, Ours); ++i) {
            progress.running = Ours;
            alarm(unsigned(m_options.limit));
            runners[Ours].run();
            alarm(0);
        }
        for (int rep = progress.reps(); rep < repsSoFar(); ++rep) {
            for (const Side side : sides) {
                if (isSkipped(job, side))
                    continue;
                progress.running = side;
                // Each run has the limit for itself; the alarm ends the child.
                alarm(unsigned(m_options.limit));
                progress.add(side, runners[side].run());
                alarm(0);
                if (rep == 0)
                    progress.area[side] = runners[side].area();
            }
            if (progress.total() > timeSoFar())
                break;
        }
    }

    void note(int job, JobEnd end)
    {
        if (end == JobEnd::Done)
            return;
        m_ends[job] = end;
        const Progress &progress = m_progress[job];
        if (progress.count[progress.running] == 0)
            m_overLimit.insert(seriesOf(job, progress.running), job);
    }

    VersusResult resultOf(int job)
    {
        const Progress &progress = m_progress[job];
        VersusResult result{ &caseOf(job), operationOf(job), {} };
        for (const Side side : sides) {
            SideResult &out = result.sides[side];
            if (isSkipped(job, side)) {
                out.status = SideResult::Skipped;
            } else if (progress.count[side] > 0) {
                out.medianUs = progress.median(side);
                out.area = progress.area[side];
                out.status = std::isnan(out.area) ? SideResult::NoAnswer : SideResult::Answered;
            } else if (progress.running == side && m_ends[job] != JobEnd::Done) {
                out.status = m_ends[job] == JobEnd::TimedOut ? SideResult::OverLimit : SideResult::Crashed;
            } else {
                out.status = SideResult::NotRun;
            }
        }
        return result;
    }

    const QVector<VersusCase> &m_cases;
    const VersusOptions m_options;
    SharedProgress m_progress;
    int m_round = 0;
    /** How each job ended. A child starts after that was noted, and so for the next. */
    QVector<JobEnd> m_ends;
    /** The job of a series in which a side gave no answer at first. */
    QHash<Series, int> m_overLimit;
};

QString familyOf(const QString &file)
{
    QString name = QFileInfo(file).fileName().section(QLatin1Char('.'), 0, 0);
    return name.remove(QRegularExpression(QStringLiteral("-[0-9]+$")));
}

} // namespace

int VersusCase::tagNumber(const QString &prefix) const
{
    for (const QString &tag : entry.tags) {
        if (tag.startsWith(prefix))
            return tag.midRef(prefix.size()).toInt();
    }
    return 0;
}

bool VersusCase::isWrong(int operation, const SideResult &result) const
{
    if (result.status == SideResult::Skipped || result.status == SideResult::NotRun || !hasTruth)
        return false;
    // Also true for an area that is not a number.
    const double error = std::fabs(result.area - truth.results[size_t(operation)]);
    return result.status != SideResult::Answered ||
           !(error <= areaTolerance * std::max(truth.areaA, truth.areaB));
}

QVector<VersusCase> readCases(const QStringList &files, const QStringList &truthFiles)
{
    QHash<QString, CorpusTruth> truth;
    for (const QString &file : truthFiles) {
        const QHash<QString, CorpusTruth> some = readTruth(file);
        for (auto it = some.constBegin(); it != some.constEnd(); ++it)
            truth.insert(it.key(), it.value());
    }
    QVector<VersusCase> cases;
    for (const QString &file : files) {
        for (const CorpusCase &entry : readCorpus(file)) {
            // Malformed path data is found before anything runs.
            readOperands(entry);
            cases.append({ entry, familyOf(file), truth.contains(entry.id), truth.value(entry.id) });
        }
    }
    return cases;
}

QVector<VersusResult> runVersus(const QVector<VersusCase> &cases, const VersusOptions &options)
{
    return Contest(cases, options).run();
}
