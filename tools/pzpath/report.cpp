#include "report.h"

#include "invocation.h"
#include "median.h"
#include "pathdata.h"

#include <pzgraphics/xpath.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double operandTolerance = 1e-3;

QString medianText(const QVector<qint64> &times)
{
    return times.isEmpty() ? QStringLiteral("-") : QString::number(medianOf(times) / 1000.0, 'f', 1);
}

} // namespace

/** The area that an error is measured against. */
double Report::reference(const CorpusCase &entry, const CorpusTruth &truth) const
{
    return m_boxTolerance > 0 ? jointBoxArea(readOperands(entry)) : std::max(truth.areaA, truth.areaB);
}

void Report::add(const CorpusCase &entry, const Operation &operation, const RunResult &result)
{
    const auto known = m_truth.constFind(entry.id);
    if (known == m_truth.constEnd())
        return;
    const int index = static_cast<int>(&operation - operations.data());
    const bool answered = result.status == RunResult::Ok || result.status == RunResult::Empty;
    const double whole = reference(entry, *known);
    const double error = std::fabs(result.area - known->results[index]);
    const bool wrong = !answered || error > (m_boxTolerance > 0 ? m_boxTolerance : operandTolerance) * whole;

    for (const QString &tag : QStringList(QString()) + entry.tags) {
        Group &group = m_groups[{ tag, index }];
        ++group.cases;
        group.wrong += wrong;
        if (answered)
            group.times << result.medianNs;
    }
    if (wrong)
        m_wrong << QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6")
                       .arg(entry.id, QLatin1String(operation.name), toText(result.area),
                            toText(known->results[index]), QString::number(error / whole, 'e', 2),
                            QLatin1String(statusName(result.status)));
}

void Report::print() const
{
    const QString row = QStringLiteral("%1 %2 %3 %4 %5");
    printLine(row.arg("# tag", -20).arg("op", -10).arg("cases", 6).arg("wrong", 6).arg("median_us", 12));
    for (auto it = m_groups.constBegin(); it != m_groups.constEnd(); ++it) {
        const QString tag = it.key().first;
        printLine(row.arg(tag.isEmpty() ? QStringLiteral("all") : tag, -20)
                      .arg(QLatin1String(operations[it.key().second].name), -10)
                      .arg(it->cases, 6)
                      .arg(it->wrong, 6)
                      .arg(medianText(it->times), 12));
    }
    if (m_wrong.isEmpty())
        return;
    printLine(QStringLiteral("# wrong: id\top\tarea\ttruth\terror\tstatus"));
    for (const QString &line : m_wrong)
        printLine(line);
}
