#include "runner.h"

#include "area.h"
#include "isolate.h"
#include "median.h"

#include <pzgraphics/vxpath.h>
#include <pzgraphics/vxsegment.h>
#include <pzgraphics/xpath.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>

namespace {

bool isFinite(const vxPath &contour)
{
    const auto finite = [](const vxPoint &p) { return std::isfinite(p.x) && std::isfinite(p.y); };
    const QList<vxSegment *> segments = contour.getSegments();
    return std::all_of(segments.begin(), segments.end(), [&](const vxSegment *s) {
        return finite(s->getPoint()) && finite(s->getHandleIn()) && finite(s->getHandleOut());
    });
}

void measure(const XPath *path, RunResult &result)
{
    if (!path) {
        result.status = RunResult::None;
        return;
    }
    bool finite = true;
    for (const vxPath *contour : path->children) {
        result.segments += contour->getSegments().size();
        finite = finite && isFinite(*contour);
    }
    result.contours = path->children.size();
    result.area = finite ? filledArea(*path) : std::nan("");
    if (std::isnan(result.area))
        result.status = RunResult::NotANumber;
    else if (result.contours == 0)
        result.status = RunResult::Empty;
}

} // namespace

const char *statusName(RunResult::Status status)
{
    static const char *const names[] = { "ok", "empty", "none", "nan", "timeout", "crash" };
    return names[status];
}

const char *verdictName(int verdict)
{
    vxBooleanReport report;
    report.verdict = static_cast<vxBooleanReport::Verdict>(verdict);
    return verdict < 0 ? "-" : report.verdictName();
}

RunResult runOperation(const Operation &operation, const CorpusOperands &operands, int reps)
{
    using Clock = std::chrono::steady_clock;
    std::unique_ptr<XPath> path;
    vxBooleanReport report;
    QVector<qint64> times;
    do {
        path.reset();
        const auto start = Clock::now();
        path = compute(operation, *operands.a, *operands.b, report);
        times << std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
    } while (times.size() < reps);

    RunResult result;
    result.medianNs = medianOf(times);
    result.verdict = report.verdict;
    measure(path.get(), result);
    return result;
}

void runCorpus(const QVector<CorpusCase> &cases, const RunOptions &options,
               const std::function<void(const CorpusCase &, const Operation &, const RunResult &)> &finished)
{
    const int perCase = options.operations.size();
    // The operands of the running case; in an isolated run this lives in the child.
    int loaded = -1;
    CorpusOperands operands;
    const auto job = [&](int index, void *record) {
        if (loaded != index / perCase) {
            loaded = index / perCase;
            operands = readOperands(cases[loaded]);
        }
        const RunResult result = runOperation(*options.operations[index % perCase], operands, options.reps);
        std::memcpy(record, &result, sizeof result);
    };
    const auto report = [&](int index, JobEnd end, const void *record) {
        RunResult result;
        if (record)
            std::memcpy(&result, record, sizeof result);
        else
            result.status = end == JobEnd::TimedOut ? RunResult::Timeout : RunResult::Crash;
        finished(cases[index / perCase], *options.operations[index % perCase], result);
    };

    // Malformed path data is the caller's error, not a result, so it is found before anything runs.
    for (const CorpusCase &entry : cases)
        readOperands(entry);
    const int count = cases.size() * perCase;
    if (options.isolated) {
        runIsolated(count, options.timeout, sizeof(RunResult), job, report);
        return;
    }
    for (int i = 0; i < count; ++i) {
        RunResult result;
        job(i, &result);
        report(i, JobEnd::Done, &result);
    }
}
