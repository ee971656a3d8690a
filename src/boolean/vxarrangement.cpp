#include "vxarrangement_p.h"

#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx {

namespace {

/** Longer side of the working frame: coordinates measure up to about this. */
constexpr double frameSize = 1024;

/**
 * Snapping distances in the order in which they are tried, in units of the frame. Too small and ends that
 * belong together stay apart; too large and small features vanish. None is right for every drawing, but an
 * odd node tells.
 */
constexpr double snappingDistances[] = { 5e-5, 1e-5, 2e-6, 2e-4, 1e-3 };
/**
 * What refine() tries. The first is near to what clipping resolves, a time of 1e-9 on a curve of a thousand
 * units; the last ones are for bundles of curves that all but coincide, which joins on their way would
 * tangle.
 */
constexpr double fineSnappingDistances[] = { 5e-7, 2e-6, 1e-7, leastSnapping };
/** A larger attempt is not kept for the next one to compare with: its memory would be most of a call's. */
constexpr size_t mostEdgesSetAside = size_t(1) << 16;
/**
 * Of the square on the drawing's longer side: finer snapping changes no area by more, or it lost a feature.
 */
constexpr double refinedFraction = 1e-6;

} // namespace

Frame Frame::around(const Box &box)
{
    Frame frame;
    const double size = std::max(box.maxX - box.minX, box.maxY - box.minY);
    if (!(size > 0) || !std::isfinite(size))
        return frame;
    // Clamped while it is a double: a size without normal numbers would leave the range of int.
    const int exponent = int(std::clamp(std::floor(std::log2(frameSize) - std::log2(size)), -900.0, 900.0));
    frame.scale = std::ldexp(1.0, exponent);
    // An origin on a coarse grid: subtracting it costs no bits of a drawing far off.
    const double grid = std::ldexp(1.0, -exponent) * frameSize;
    frame.originX = std::floor((box.minX + box.maxX) / 2 / grid) * grid;
    frame.originY = std::floor((box.minY + box.maxY) / 2 / grid) * grid;
    return frame;
}

Cubic Frame::toFrame(const Cubic &c) const
{
    Cubic result;
    for (int i = 0; i < 8; i += 2) {
        result.v[i] = (c.v[i] - originX) * scale;
        result.v[i + 1] = (c.v[i + 1] - originY) * scale;
    }
    return result;
}

Arrangement::Arrangement(const QVector<const XPath *> &operands)
{
    collect(operands);
    meet();
}

bool Arrangement::solve(Operation operation)
{
    double best = snappingDistances[0];
    int fewestOdd = std::numeric_limits<int>::max();
    for (int look = 2;; ++look) {
        for (double snapping : snappingDistances) {
            if (attempt(operation, snapping))
                return true;
            if (m_selection.oddNodes < fewestOdd) {
                fewestOdd = m_selection.oddNodes;
                best = snapping;
            }
        }
        attempt(operation, best);
        if (!lookAgain(look))
            return false;
    }
}

void Arrangement::refine(Operation operation, double movable)
{
    const double coarse = m_snapping;
    const double area = m_selection.area;
    const std::vector<Cut> cuts = m_cuts;
    for (int look = 2;; ++look) {
        double firstEven = 0;
        for (double snapping : fineSnappingDistances) {
            if (snapping >= coarse || !attempt(operation, snapping) ||
                !(std::fabs(m_selection.area - area) <= refinedFraction * m_extent * m_extent))
                continue;
            if (movedAtMost(movable, operation))
                return;
            firstEven = firstEven == 0 ? snapping : firstEven;
        }
        if (firstEven != 0) {
            attempt(operation, firstEven);
            return;
        }
        if (m_selection.oddNodes == 0 || !lookAgain(look))
            break;
    }
    m_cuts = cuts;
    m_cutCounts.clear();
    attempt(operation, coarse);
}

/**
 * Cuts the curves at odd nodes in more places; false when there is no other way to look for some. The first
 * look was meet(). Nodes come second, since that only tells a curve of places that are known, and fourth for
 * those that were found since.
 */
bool Arrangement::lookAgain(int look)
{
    if (look > 4)
        return false;
    if (look == 3)
        meetThoroughly(accusedCurves());
    else
        meetNodes(accusedCurves());
    return true;
}

bool Arrangement::attempt(Operation operation, double snapping)
{
    m_snapping = snapping;
    setPiecesAside();
    cut();
    if (!takeSides())
        findSides();
    select(operation);
    return m_selection.oddNodes == 0;
}

void Arrangement::setPiecesAside()
{
    if (m_edges.size() > mostEdgesSetAside) {
        m_earlier = Pieces();
        return;
    }
    m_nodes.swap(m_earlier.nodes);
    m_edges.swap(m_earlier.edges);
    m_shares.swap(m_earlier.shares);
    m_links.swap(m_earlier.links);
    m_linkBoxes.swap(m_earlier.linkBoxes);
    m_linkStarts.swap(m_earlier.linkStarts);
}

bool Arrangement::movedAtMost(double area, Operation operation)
{
    const auto inUnits = [this](double moved) { return moved / m_frame.scale / m_frame.scale; };
    if (inUnits(m_movedArea.most) <= area)
        return true;
    if (m_measuresExactly || !(inUnits(m_movedArea.least) <= area))
        return false;
    m_measuresExactly = true;
    attempt(operation, m_snapping);
    return inUnits(m_movedArea.most) <= area;
}

bool Arrangement::answer(Operation operation, const Fill &fill) const
{
    switch (operation) {
    case Operation::Intersect:
        return fill.count == m_operandCount;
    case Operation::Unite:
        return fill.count > 0;
    case Operation::Subtract:
        return fill.first && fill.count == 1;
    case Operation::Exclude:
        return fill.count % 2 == 1;
    }
    return false;
}

void Arrangement::select(Operation operation)
{
    m_selection.kept.clear();
    m_selection.kept.reserve(m_edges.size());
    double area = 0;
    double signedArea = 0;
    for (size_t e = 0; e < m_edges.size(); ++e) {
        const Edge &edge = m_edges[e];
        const bool insideRight = answer(operation, edge.right);
        if (insideRight == answer(operation, edge.left))
            continue;
        m_selection.kept.push_back({ int(e), !insideRight });
        const double part = vx::signedArea(edge.inFrame) * (insideRight ? 1 : -1);
        area += part;
        const Fill &inside = insideRight ? edge.right : edge.left;
        signedArea += operation == Operation::Exclude && !inside.first ? -part : part;
    }
    m_selection.oddNodes = countOddNodes(m_selection.kept);
    m_selection.area = area / m_frame.scale / m_frame.scale;
    m_selection.signedArea = signedArea / m_frame.scale / m_frame.scale;
}

namespace {

/** Per node: kept stretches that leave it less those that enter it. */
std::vector<int> balances(const std::vector<Step> &kept, const std::vector<Edge> &edges, size_t nodeCount)
{
    std::vector<int> balance(nodeCount, 0);
    for (const Step &step : kept) {
        const Edge &edge = edges[size_t(step.edge)];
        balance[size_t(step.reversed ? edge.node1 : edge.node0)] += 1;
        balance[size_t(step.reversed ? edge.node0 : edge.node1)] -= 1;
    }
    return balance;
}

} // namespace

int Arrangement::countOddNodes(const std::vector<Step> &kept) const
{
    const std::vector<int> balance = balances(kept, m_edges, m_nodes.size());
    return int(balance.size() - size_t(std::count(balance.begin(), balance.end(), 0)));
}

std::vector<char> Arrangement::accusedCurves() const
{
    const std::vector<int> balance = balances(m_selection.kept, m_edges, m_nodes.size());
    std::vector<char> accused(m_curves.size(), 0);
    for (const Edge &edge : m_edges) {
        if (balance[size_t(edge.node0)] != 0 || balance[size_t(edge.node1)] != 0)
            accused[size_t(edge.curve)] = 1;
    }
    return accused;
}

} // namespace vx
