#include "versus_tables.h"

#include "median.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace {

void printLine(const QString &line)
{
    std::puts(line.toUtf8().constData());
}

void printRow(const QStringList &cells)
{
    printLine(QStringLiteral("| ") + cells.join(QLatin1String(" | ")) + QStringLiteral(" |"));
}

/** The first columns hold names, the others numbers. */
void printHeading(const QStringList &names, int texts)
{
    printRow(names);
    QStringList rule;
    for (int i = 0; i < names.size(); ++i)
        rule << (i < texts ? QStringLiteral("---") : QStringLiteral("---:"));
    printRow(rule);
}

/** About three digits that count, without an exponent. */
QString figure(double value)
{
    if (!(value > 0))
        return QStringLiteral("-");
    const int decimals = value >= 100 ? 0 : value >= 10 ? 1 : value >= 0.1 ? 2 : 4;
    return QString::number(value, 'f', decimals);
}

QString operationName(int operation)
{
    return QLatin1String(operations[size_t(operation)].name);
}

/** What a row of the comparison collects. */
struct Tally {
    int cases = 0;
    std::array<QVector<double>, 2> times;
    std::array<int, 2> wrong = {};
    double logRatios = 0;
    int ratios = 0;

    void add(const VersusResult &result)
    {
        ++cases;
        for (const Side side : sides) {
            wrong[side] += result.entry->isWrong(result.operation, result.sides[side]);
            if (result.sides[side].medianUs > 0)
                times[side] << result.sides[side].medianUs;
        }
        if (result.sides[Ours].medianUs > 0 && result.sides[Painter].medianUs > 0) {
            logRatios += std::log(result.sides[Ours].medianUs / result.sides[Painter].medianUs);
            ++ratios;
        }
    }
    QString ratio() const { return ratios ? figure(std::exp(logRatios / ratios)) : QStringLiteral("-"); }
};

QStringList groupsOf(const VersusCase &entry, bool byTag)
{
    QStringList groups;
    if (byTag)
        groups = entry.entry.tags;
    else
        groups << entry.family;
    groups.removeDuplicates();
    return groups << QStringLiteral("all");
}

void printTally(const QString &group, int operation, const Tally &tally)
{
    printRow({ group, operationName(operation), QString::number(tally.cases),
               figure(medianOf(tally.times[Ours])), figure(medianOf(tally.times[Painter])), tally.ratio(),
               QString::number(tally.wrong[Ours]), QString::number(tally.wrong[Painter]) });
}

/** The results of one size of a series and one operation. */
struct SizeTally {
    int curves = 0, crossings = 0;
    std::array<QVector<double>, 2> times;
    std::array<bool, 2> late = {};
    std::array<int, 2> wrong = {};

    void add(const VersusResult &result)
    {
        curves = std::max(curves, result.entry->tagNumber(QStringLiteral("n:")));
        crossings = std::max(crossings, result.entry->tagNumber(QStringLiteral("x:")));
        for (const Side side : sides) {
            const SideResult &one = result.sides[side];
            wrong[side] += result.entry->isWrong(result.operation, one);
            late[side] =
                late[side] || one.status == SideResult::OverLimit || one.status == SideResult::Skipped;
            if (one.medianUs > 0)
                times[side] << one.medianUs;
        }
    }
    /** Milliseconds and, in brackets, how many times that of the size before. */
    QString cell(Side side, const SizeTally *before) const
    {
        if (late[side])
            return QStringLiteral("over limit");
        if (times[side].isEmpty())
            return QStringLiteral("not run");
        const double now = medianOf(times[side]) / 1000;
        const double then = before && !before->late[side] ? medianOf(before->times[side]) / 1000 : 0;
        return then > 0 ? QStringLiteral("%1 (x%2)").arg(figure(now), figure(now / then)) : figure(now);
    }
};

/** "ring-300-s2" belongs to size 300; the n: tag may differ a little from case to case. */
int nominalSize(const VersusCase &entry)
{
    for (const QString &word : entry.entry.id.split(QLatin1Char('-'))) {
        bool ok = false;
        const int size = word.toInt(&ok);
        if (ok)
            return size;
    }
    return entry.tagNumber(QStringLiteral("n:"));
}

void printSeries(const QString &family, const QMap<int, QVector<SizeTally>> &sizes)
{
    const QVector<SizeTally> *before = nullptr;
    for (const QVector<SizeTally> &row : sizes) {
        QStringList cells = { family, QString::number(row[0].curves), QString::number(row[0].crossings) };
        for (const Side side : sides) {
            for (int operation = 0; operation < row.size(); ++operation)
                cells << row[operation].cell(side, before ? &(*before)[operation] : nullptr);
        }
        for (const Side side : sides) {
            const auto add = [side](int sum, const SizeTally &tally) { return sum + tally.wrong[side]; };
            cells << QString::number(std::accumulate(row.begin(), row.end(), 0, add));
        }
        printRow(cells);
        before = &row;
    }
}

QString faultText(const VersusResult &result, Side side)
{
    const SideResult &one = result.sides[side];
    switch (one.status) {
    case SideResult::OverLimit:
        return QStringLiteral("over the time limit");
    case SideResult::Crashed:
        return QStringLiteral("crashed");
    case SideResult::NoAnswer:
        return QStringLiteral("no answer");
    default:
        return QStringLiteral("area %1 instead of %2")
            .arg(QString::number(one.area, 'g', 9),
                 QString::number(result.entry->truth.results[size_t(result.operation)], 'g', 9));
    }
}

} // namespace

void printComparison(const QVector<VersusResult> &results, bool byTag)
{
    // Groups in the order in which they come, "all" last.
    QStringList order;
    QHash<QString, QVector<Tally>> tallies;
    for (const VersusResult &result : results) {
        for (const QString &group : groupsOf(*result.entry, byTag)) {
            QVector<Tally> &tally = tallies[group];
            if (tally.isEmpty()) {
                tally.resize(int(operations.size()));
                order << group;
            }
            tally[result.operation].add(result);
        }
    }
    order.removeOne(QStringLiteral("all"));
    order << QStringLiteral("all");
    printHeading({ byTag ? "tag" : "family", "operation", "cases", "pzgraphics us", "QPainterPath us",
                   "ratio", "pzgraphics wrong", "QPainterPath wrong" },
                 2);
    for (const QString &group : order) {
        for (int operation = 0; operation < int(operations.size()); ++operation)
            printTally(group, operation, tallies[group].value(operation));
    }
}

void printGrowth(const QVector<VersusResult> &results)
{
    QMap<QString, QMap<int, QVector<SizeTally>>> series;
    for (const VersusResult &result : results) {
        QVector<SizeTally> &row = series[result.entry->family][nominalSize(*result.entry)];
        row.resize(int(operations.size()));
        row[result.operation].add(result);
    }
    QStringList names = { "series", "curves", "crossings" };
    for (const char *side : { "", "QPainterPath " }) {
        for (int operation = 0; operation < int(operations.size()); ++operation)
            names << QLatin1String(side) + operationName(operation) + QStringLiteral(" ms");
    }
    names << QStringLiteral("wrong") << QStringLiteral("QPainterPath wrong");
    printHeading(names, 1);
    for (auto it = series.constBegin(); it != series.constEnd(); ++it)
        printSeries(it.key(), *it);
}

void printMemory(const QVector<PeakMemory> &peaks)
{
    printHeading({ "series", "operation", "curves", "crossings", "pzgraphics KiB", "bytes per curve",
                   "bytes per curve and crossing", "QPainterPath KiB" },
                 2);
    for (const PeakMemory &peak : peaks) {
        // Both operands of a series have about as many curves.
        const double curves = 2.0 * peak.entry->tagNumber(QStringLiteral("n:"));
        const double crossings = peak.entry->tagNumber(QStringLiteral("x:"));
        const double bytes = 1024.0 * double(peak.peakKb[Ours]);
        printRow(
            { peak.entry->family, operationName(peak.operation), QString::number(curves),
              QString::number(crossings), QString::number(peak.peakKb[Ours]), figure(bytes / curves),
              figure(bytes / (curves + crossings)),
              peak.peakKb[Painter] ? QString::number(peak.peakKb[Painter]) : QStringLiteral("over limit") });
    }
}

void printFaults(const QVector<VersusResult> &results)
{
    for (const VersusResult &result : results) {
        for (const Side side : sides) {
            if (result.entry->isWrong(result.operation, result.sides[side]))
                printLine(QStringLiteral("- %1 %2, %3: %4")
                              .arg(result.entry->entry.id, operationName(result.operation),
                                   side == Ours ? "pzgraphics" : "QPainterPath", faultText(result, side)));
        }
    }
}
