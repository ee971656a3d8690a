#include "versus_run.h"

#include "isolate.h"
#include "versus_sides.h"

#include <QByteArray>
#include <QFile>

#include <cstring>
#include <malloc.h>
#include <unistd.h>

namespace {

/** A figure of /proc/self/status in kilobytes, such as "VmHWM:"; 0 where there is none. */
qint64 statusKb(const char *name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int at = text.indexOf(name);
    return at < 0 ? 0
                  : text.mid(at + int(std::strlen(name)), 40).simplified().split(' ').first().toLongLong();
}

/** Makes the peak start over from what is in use now. */
void resetPeak()
{
    // Free memory would serve the operation without showing.
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

} // namespace

QVector<PeakMemory> measureMemory(const QVector<VersusCase> &cases, int limit)
{
    constexpr int perCase = int(operations.size()) * int(sides.size());
    QVector<PeakMemory> peaks;
    const auto job = [&](int index, void *record) {
        const VersusOperands operands(cases[index / perCase].entry);
        VersusRunner runner(operands, sides[size_t(index) % sides.size()],
                            index % perCase / int(sides.size()));
        resetPeak();
        const qint64 before = statusKb("VmRSS:");
        alarm(unsigned(limit));
        runner.run();
        alarm(0);
        const qint64 peak = statusKb("VmHWM:") - before;
        std::memcpy(record, &peak, sizeof peak);
    };
    const auto finish = [&](int index, JobEnd, const void *record) {
        if (index % int(sides.size()) == 0)
            peaks.append({ &cases[index / perCase], index % perCase / int(sides.size()), {} });
        if (record)
            std::memcpy(&peaks.last().peakKb[size_t(index) % sides.size()], record, sizeof(qint64));
    };
    runIsolated(cases.size() * perCase, 0, sizeof(qint64), job, finish);
    return peaks;
}
