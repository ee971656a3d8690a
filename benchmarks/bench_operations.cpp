#include "corpus.h"
#include "operation.h"
#include "scenes.h"
#include "toolerror.h"

#include "pzpath.h"
#include "vxpath.h"
#include "xpath.h"

#include <benchmark/benchmark.h>

#include <QPainterPath>

#include <cmath>
#include <cstdio>

// What callers call. Names end in the peer where QPainterPath does the same.

namespace {

constexpr double flatness = 0.25; // path units, a quarter of a pixel at scale 1

// --- booleans ---

/** Operands of both sides, made once. */
struct Operands {
    explicit Operands(const scenes::Pair &pair)
        : a(toXPath(pair.first)), b(toXPath(pair.second)), painterA(toPainterPath(pair.first)),
          painterB(toPainterPath(pair.second))
    {
    }
    std::unique_ptr<XPath> a, b;
    QPainterPath painterA, painterB;
};

void uniteOurs(benchmark::State &state, const Operands &operands)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::unique_ptr<XPath>(operands.a->unite(operands.b.get())));
}

void unitePainter(benchmark::State &state, const Operands &operands)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(operands.painterA.united(operands.painterB));
}

void addUnite(const std::string &name, const scenes::Pair &pair)
{
    const auto operands = std::make_shared<Operands>(pair);
    const std::string title = "unite/" + name;
    benchmark::RegisterBenchmark(title.c_str(), [operands](benchmark::State &s) {
        uniteOurs(s, *operands);
    })->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((title + "/QPainterPath").c_str(), [operands](benchmark::State &s) {
        unitePainter(s, *operands);
    })->Unit(benchmark::kMicrosecond);
}

/** The first case of each file of sample shapes, by its name. */
void addSampleCases()
{
    for (const char *family : { "icons", "glyphs", "overlap", "degenerate", "maps" }) {
        const QString file = QStringLiteral(PZ_TEST_DATA "/%1.tsv").arg(QLatin1String(family));
        const CorpusCase entry = readCorpus(file).first();
        addUnite(entry.id.toStdString(), { parsePathData(entry.a), parsePathData(entry.b) });
    }
}

void addScenes()
{
    using namespace scenes;
    addUnite("icon", { icon(), moved(icon(), { 21, 13 }) });
    addUnite("mapOutline-300", { mapOutline(300, 1), mapOutline(300, 2) });
    addUnite("denseStar-31", { denseStar(31), moved(denseStar(31), { 100, 50 }) });
    addUnite("manySquares-10", { manySquares(10), moved(manySquares(10), { 3, 4 }) });
    addUnite("nearCoincidentRings-16", nearCoincidentRings(16, 1e-3));
    // Ten times the curves and crossings from one to the next: growth at a glance.
    for (int curves : { 10, 100, 1000 })
        addUnite("crossingRings-" + std::to_string(curves), crossingRings(curves));
}

/** As an application calls it: element paths in, element path out, cleaning and conversion included. */
void uniteElements(benchmark::State &state)
{
    const PZPath a = toElements(mapped(scenes::icon(), 10, {}));
    const PZPath b = toElements(mapped(scenes::icon(), 10, { 210, 130 }));
    for (auto _ : state) {
        PZPath result = a;
        PZPath other = b;
        result.unite(other);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(uniteElements)->Name("PZPath unite/icon")->Unit(benchmark::kMicrosecond);

/** A thousand discs that overlap: united at once, and each with what the others before it came to. */
QVector<PZPath> discs()
{
    QVector<PZPath> result;
    for (int i = 0; i < 1000; ++i) {
        PZPath disc;
        // The golden angle spreads them evenly over a larger disc, each overlapping a few.
        const double angle = i * 2.399963229728653;
        const double distance = 20 * std::sqrt(double(i));
        disc.ellipse(QRectF(distance * std::cos(angle), distance * std::sin(angle), 50, 50));
        result.append(disc);
    }
    return result;
}

void uniteAtOnce(benchmark::State &state)
{
    QVector<PZPath> operands = discs();
    for (auto _ : state)
        benchmark::DoNotOptimize(PZPath::uniteAll(operands));
}
BENCHMARK(uniteAtOnce)->Name("uniteAll/1000 discs")->Unit(benchmark::kMillisecond);

void uniteInTurn(benchmark::State &state)
{
    const QVector<PZPath> operands = discs();
    for (auto _ : state) {
        PZPath result;
        for (PZPath disc : operands)
            result.unite(disc);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(uniteInTurn)->Name("uniteInTurn/1000 discs")->Unit(benchmark::kMillisecond);

// --- a path that stands still while it is asked many times ---

constexpr int standingCurves = 200;

void pointAtLength(benchmark::State &state)
{
    const std::unique_ptr<XPath> path = toXPathAsDrawn(scenes::standingPath(standingCurves));
    const vxPath *contour = path->getFirstChild();
    const double length = contour->getLength();
    double part = 0;
    for (auto _ : state) {
        // Golden-section steps visit the whole length evenly.
        part = std::fmod(part + 0.6180339887, 1.0);
        benchmark::DoNotOptimize(contour->getPointAt(part * length));
    }
}
BENCHMARK(pointAtLength);

void pointAtPercent(benchmark::State &state)
{
    const QPainterPath path = toPainterPath(scenes::standingPath(standingCurves));
    double part = 0;
    for (auto _ : state) {
        part = std::fmod(part + 0.6180339887, 1.0);
        benchmark::DoNotOptimize(path.pointAtPercent(part));
    }
}
BENCHMARK(pointAtPercent)->Name("pointAtLength/QPainterPath");

/** Points in and around the path; the label counts those inside, which both sides must agree on. */
template <typename Contains>
void askContains(benchmark::State &state, Contains &&contains)
{
    const std::vector<QPointF> points = scenes::points(1000, QRectF(-500, -500, 1000, 1000));
    int inside = 0;
    for (const QPointF &p : points)
        inside += contains(p);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(contains(points[i]));
        i = i + 1 < points.size() ? i + 1 : 0;
    }
    state.SetLabel(std::to_string(inside) + " of 1000 inside");
}

void contains(benchmark::State &state)
{
    const std::unique_ptr<XPath> path = toXPath(scenes::standingPath(standingCurves));
    askContains(state, [&](const QPointF &p) {
        return path->contains(vxPoint(p.x(), p.y()), vxStyle::filled(true));
    });
}
BENCHMARK(contains);

void containsPainter(benchmark::State &state)
{
    const QPainterPath path = toPainterPath(scenes::standingPath(standingCurves));
    askContains(state, [&](const QPointF &p) { return path.contains(p); });
}
BENCHMARK(containsPainter)->Name("contains/QPainterPath");

// --- measuring and editing; what an operation changes is a copy, which is part of its time ---

void flatten(benchmark::State &state)
{
    const std::unique_ptr<XPath> path = toXPath(scenes::standingPath(standingCurves));
    for (auto _ : state) {
        const std::unique_ptr<XPath> copy(path->clone());
        copy->flatten(flatness);
        benchmark::DoNotOptimize(copy->children.first());
    }
}
BENCHMARK(flatten)->Unit(benchmark::kMicrosecond);

void cloneOnly(benchmark::State &state)
{
    const std::unique_ptr<XPath> path = toXPath(scenes::standingPath(standingCurves));
    for (auto _ : state)
        benchmark::DoNotOptimize(std::unique_ptr<XPath>(path->clone()));
}
BENCHMARK(cloneOnly)->Name("flatten/the copy alone")->Unit(benchmark::kMicrosecond);

/** An effect of element paths on a copy of a path of 200 curves. */
template <typename Effect>
void onElements(benchmark::State &state, const PathCommands &commands, Effect &&effect)
{
    const PZPath path = toElements(commands);
    for (auto _ : state) {
        PZPath copy = path;
        effect(copy);
        benchmark::DoNotOptimize(copy.count());
    }
}

void smooth(benchmark::State &state)
{
    onElements(state, scenes::standingPath(standingCurves),
               [&](PZPath &p) { p.smooth(int(state.range(0))); });
}
BENCHMARK(smooth)->DenseRange(1, 4)->Unit(benchmark::kMicrosecond);

void cornerRound(benchmark::State &state)
{
    onElements(state, scenes::mapOutline(standingCurves, 3), [](PZPath &p) { p.setCornerRound(3); });
}
BENCHMARK(cornerRound)->Unit(benchmark::kMicrosecond);

void cornerRound2(benchmark::State &state)
{
    onElements(state, scenes::mapOutline(standingCurves, 3), [](PZPath &p) { p.setCornerRound2(3); });
}
BENCHMARK(cornerRound2)->Unit(benchmark::kMicrosecond);

void manualPath(benchmark::State &state)
{
    PZPath source = toElements(scenes::standingPath(standingCurves));
    for (auto _ : state) {
        PZPath drawn;
        drawn.manualPath(source, 4, 5);
        benchmark::DoNotOptimize(drawn.count());
    }
}
BENCHMARK(manualPath)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    try {
        addSampleCases();
    } catch (const ToolError &error) {
        std::fprintf(stderr, "pz_bench_operations: %s\n", error.text.toUtf8().constData());
        return 2;
    }
    addScenes();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
