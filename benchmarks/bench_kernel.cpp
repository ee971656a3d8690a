#include "scenes.h"

#include "vxintersect_p.h"
#include "vxnumeric_p.h"

#include <benchmark/benchmark.h>

#include <QPainterPath>

#include <cmath>

// The mathematics of one or two cubics, on a thousand seeded random ones in turn: one curve alone would let
// the branch predictor learn it by heart.

namespace {

const std::vector<std::pair<vx::Cubic, vx::Cubic>> &cubicPairs()
{
    static const auto pairs = scenes::crossingCubics(1000);
    return pairs;
}

/** Runs the operation on one cubic after the other. */
template <typename Operation>
void onEachCubic(benchmark::State &state, Operation &&operation)
{
    const auto &pairs = cubicPairs();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(pairs[i].first));
        i = i + 1 < pairs.size() ? i + 1 : 0;
    }
}

void evaluate(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) { return vx::pointAt(c, 0.37); });
}
BENCHMARK(evaluate);

void tangent(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) { return vx::tangentAt(c, 0.37); });
}
BENCHMARK(tangent);

void split(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) {
        std::pair<vx::Cubic, vx::Cubic> halves;
        vx::subdivide(c, 0.37, halves.first, halves.second);
        return halves;
    });
}
BENCHMARK(split);

void length(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) { return vx::length(c); });
}
BENCHMARK(length);

void lengthPainterPath(benchmark::State &state)
{
    std::vector<QPainterPath> paths;
    for (const auto &[c, other] : cubicPairs()) {
        paths.emplace_back(QPointF(c.v[0], c.v[1]));
        paths.back().cubicTo(c.v[2], c.v[3], c.v[4], c.v[5], c.v[6], c.v[7]);
    }
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(paths[i].length());
        i = i + 1 < paths.size() ? i + 1 : 0;
    }
}
BENCHMARK(lengthPainterPath)->Name("length/QPainterPath");

void timeAtLength(benchmark::State &state)
{
    // The search alone: 300 units along a curve that is nearly always longer.
    onEachCubic(state, [](const vx::Cubic &c) { return vx::timeAtLength(c, 300, 0); });
}
BENCHMARK(timeAtLength);

void nearestTime(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) { return vx::nearestTime(c, vxPoint(500, 500)); });
}
BENCHMARK(nearestTime);

void bounds(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) { return vx::bounds(c); });
}
BENCHMARK(bounds);

void timesAtCoordinate(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) {
        double roots[3];
        return vx::timesAtCoordinate(c, 1, 500, roots, 0, 1);
    });
}
BENCHMARK(timesAtCoordinate);

void cubicRoots(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) {
        double roots[3];
        return vx::solveCubic(c.v[0] - 500, c.v[1] - 500, c.v[2] - 500, c.v[3] - 500, roots, 0, 0);
    });
}
BENCHMARK(cubicRoots);

/**
 * The thousand pairs as one round; the label counts what was found, so that a faster search that misses some
 * shows.
 */
void intersectPairs(benchmark::State &state)
{
    int found = 0;
    for (auto _ : state) {
        found = 0;
        for (const auto &[a, b] : cubicPairs()) {
            vx::TimePairs times;
            vx::clipCurves(a, b, vx::ClipRange(), 0, times);
            found += times.count();
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * int64_t(cubicPairs().size()));
    state.SetLabel(std::to_string(found) + " meetings of 1000 pairs");
}
BENCHMARK(intersectPairs)->Unit(benchmark::kMicrosecond);

void overlapTest(benchmark::State &state)
{
    std::vector<std::pair<vx::PreparedCurve, vx::PreparedCurve>> prepared;
    for (const auto &[a, b] : cubicPairs())
        prepared.emplace_back(vx::PreparedCurve(a), vx::PreparedCurve(b));
    size_t i = 0;
    for (auto _ : state) {
        vx::TimePair ends[2];
        benchmark::DoNotOptimize(vx::findOverlap(prepared[i].first, prepared[i].second, ends));
        i = i + 1 < prepared.size() ? i + 1 : 0;
    }
}
BENCHMARK(overlapTest);

/** A curve and its middle part, which do run together: the test has to go all the way. */
void overlapFound(benchmark::State &state)
{
    onEachCubic(state, [](const vx::Cubic &c) {
        vx::TimePair ends[2];
        return vx::findOverlap(vx::PreparedCurve(c), vx::PreparedCurve(vx::part(c, 0.25, 0.75)), ends);
    });
}
BENCHMARK(overlapFound);

} // namespace
