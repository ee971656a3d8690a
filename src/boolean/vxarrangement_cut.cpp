#include "vxarrangement_p.h"

#include <algorithm>

namespace vx {

namespace {

/**
 * A cut this near (as part of the snapping distance) to an end or another cut is dropped: the points become
 * one.
 */
constexpr double dropFraction = 0.9;

/**
 * The first cut for which isPassed no longer holds, sought in growing steps and then by halving: curves that
 * run together meet in thousands of places, most of them too near to each other to count.
 */
template <typename IsPassed>
const Cut *passWhile(const Cut *begin, const Cut *end, const IsPassed &isPassed)
{
    std::ptrdiff_t step = 1;
    while (step < end - begin && isPassed(begin[step - 1])) {
        begin += step;
        step *= 2;
    }
    return std::partition_point(begin, begin + std::min(step, end - begin), isPassed);
}

} // namespace

void Arrangement::cut()
{
    std::vector<Edge> stretches = cutCurves();
    joinEnds(stretches);
    joinStretches(stretches);
}

/** The stretches of all curves between their cuts. */
std::vector<Edge> Arrangement::cutCurves()
{
    sortCuts();
    // Edges of the attempt before the last are done with; their memory is used again.
    std::vector<Edge> result = std::move(m_current.edges);
    result.clear();
    result.reserve(m_curves.size() + std::min(m_cuts.size(), 4 * m_curves.size()));
    const Cut *cut = m_cuts.data();
    for (int curve = 0; curve < int(m_curves.size()); ++curve) {
        const Cut *first = cut;
        cut += m_cutCounts[size_t(curve)];
        cutCurve(curve, first, cut, result);
    }
    return result;
}

/** Sorts the cuts by curve and time, once for all snapping distances that are tried with them. */
void Arrangement::sortCuts()
{
    if (m_sortedCuts == m_cuts.size() && !m_cutCounts.empty())
        return;
    m_cutCounts.assign(m_curves.size(), 0);
    for (const Cut &cut : m_cuts)
        ++m_cutCounts[size_t(cut.curve)];
    std::vector<Cut> sorted(m_cuts.size());
    std::vector<Cut *> next;
    next.reserve(m_curves.size());
    Cut *at = sorted.data();
    for (size_t count : m_cutCounts) {
        next.push_back(at);
        at += count;
    }
    for (const Cut &cut : m_cuts)
        *next[size_t(cut.curve)]++ = cut;
    for (size_t curve = 0; curve < m_curves.size(); ++curve) {
        if (m_cutCounts[curve] > 1)
            std::sort(next[curve] - m_cutCounts[curve], next[curve],
                      [](const Cut &a, const Cut &b) { return a.t < b.t; });
    }
    m_cuts = std::move(sorted);
    m_sortedCuts = m_cuts.size();
}

/** Chooses the places where a curve is cut, its ends among them: those that lie apart along the curve. */
void Arrangement::choosePlaces(const Cubic &values, const Cut *begin, const Cut *end)
{
    m_places.clear();
    m_places.reserve(8);
    m_places.push_back({ 0, values.p0() });
    const double near = dropFraction * m_snapping;
    const double speed = greatestSpeed(values);
    const auto isApart = [&](const Place &from, const Place &to) {
        return !from.point.isClose(to.point, near) || bulges(part(values, from.t, to.t), near);
    };
    // In so short a time the curve cannot leave the surroundings; a thousandth is far above rounding.
    const auto isTooSoon = [&](const Cut &cut) { return (cut.t - m_places.back().t) * speed < 0.999 * near; };
    for (const Cut *cut = passWhile(begin, end, isTooSoon); cut != end; ++cut) {
        if (cut->distance > m_snapping)
            continue;
        const Place place{ cut->t, pointAt(values, cut->t) };
        if (isApart(m_places.back(), place)) {
            m_places.push_back(place);
            cut = passWhile(cut + 1, end, isTooSoon) - 1;
        }
    }
    const Place last{ 1, values.p3() };
    while (m_places.size() > 1 && !isApart(m_places.back(), last))
        m_places.pop_back();
    m_places.push_back(last);
}

/** Appends the stretches of one curve between its cuts, which are sorted. */
void Arrangement::cutCurve(int curve, const Cut *firstCut, const Cut *endCut, std::vector<Edge> &result)
{
    const ArrangedCurve &source = m_curves[size_t(curve)];
    const Cubic &values = source.inFrame.values;
    const bool line = source.line;
    if (firstCut == endCut) {
        Edge &stretch = result.emplace_back();
        stretch.curve = curve;
        stretch.line = line;
        stretch.t0 = 0;
        stretch.t1 = 1;
        stretch.inFrame = line ? Cubic::fromLine(values.p0(), values.p3()) : values;
        return;
    }
    choosePlaces(values, firstCut, endCut);
    for (size_t i = 1; i < m_places.size(); ++i) {
        // Both stretches at a cut take the same computed point for their end.
        const Place &start = m_places[i - 1];
        const Place &end = m_places[i];
        Edge &stretch = result.emplace_back();
        stretch.curve = curve;
        stretch.line = line;
        stretch.t0 = start.t;
        stretch.t1 = end.t;
        stretch.inFrame = line ? Cubic::fromLine(start.point, end.point)
                               : withEnds(part(values, start.t, end.t), start.point, end.point);
    }
}

} // namespace vx
