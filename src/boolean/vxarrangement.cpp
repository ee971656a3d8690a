#include "vxarrangement_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace vx {

namespace {

/** Longer side of the working frame: coordinates measure up to about this. */
constexpr double frameSize = 1024;

/**
 * Snapping distances in the order in which they are tried, in units of the frame. Too small and ends that
 * belong together stay apart; too large and small features vanish. None is right for every drawing, but an
 * unbalanced node tells.
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
/** Path units: contours that are thinner, on average, may be lost. */
constexpr double negligibleThickness = 5e-5;
/** Snapping distances: a contour that is thicker, on average, keeps its shape. */
constexpr double resolvedThickness = 8;
/** Path units: ends may be joined within this distance without harm. */
constexpr double fineSnapping = 1e-3;
/** Snapping distances: a contour that is thicker loses nothing that shows. */
constexpr double fineThickness = 1000;
/** Of the reference area: a result that snapping may have moved by more is as good as none. */
constexpr double doubtfulMargin = 1e-6;

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
    int fewestUnbalanced = std::numeric_limits<int>::max();
    for (size_t look = 0;; ++look) {
        for (double snapping : snappingDistances) {
            if (attempt(operation, snapping))
                return true;
            if (m_selection.unbalancedNodes < fewestUnbalanced) {
                fewestUnbalanced = m_selection.unbalancedNodes;
                best = snapping;
            }
        }
        attempt(operation, best);
        if (!lookAgain(look))
            return false;
    }
}

void Arrangement::refine(Operation operation)
{
    const double coarse = m_snapping;
    const double area = m_selection.area;
    const std::vector<Cut> cuts = m_cuts;
    for (size_t look = 0;; ++look) {
        double firstBalanced = 0;
        for (double snapping : fineSnappingDistances) {
            if (snapping >= coarse || !resolvesContours(snapping) || !attempt(operation, snapping) ||
                !(std::fabs(m_selection.area - area) <= refinedFraction * m_extent * m_extent))
                continue;
            if (isExact(operation))
                return;
            firstBalanced = firstBalanced == 0 ? snapping : firstBalanced;
        }
        if (firstBalanced != 0) {
            attempt(operation, firstBalanced);
            return;
        }
        if (m_selection.unbalancedNodes == 0 || !lookAgain(look))
            break;
    }
    m_cuts = cuts;
    m_cutCounts.clear();
    attempt(operation, coarse);
}

bool Arrangement::resolvesContours(double snapping) const
{
    return areThicker(resolvedThickness * snapping);
}

bool Arrangement::isExact(Operation operation)
{
    return resolvesContours() && movedAtMost(areaMargin * m_referenceArea, operation);
}

bool Arrangement::isReliable(Operation operation)
{
    return resolvesContours() && isFine() && movedAtMost(doubtfulMargin * m_referenceArea, operation);
}

/**
 * Whether the outlines are as fine as the engine's: ends joined within a thousandth of a unit, or within a
 * thousandth of the thickness of every contour.
 */
bool Arrangement::isFine() const
{
    return snapping() <= fineSnapping || areThicker(fineThickness * m_snapping);
}

/** Whether no contour is thinner than so many units of the frame, but for those that may be lost. */
bool Arrangement::areThicker(double least) const
{
    const double negligible = negligibleThickness * m_frame.scale;
    return least <= negligible ||
           std::all_of(m_contours.begin(), m_contours.end(), [&](const ArrangedContour &contour) {
               const double across = thickness(contour);
               return !(across >= negligible && across < least);
           });
}

/** Area of a contour over width plus height of its hull, in units of the frame; NaN for a single point. */
double Arrangement::thickness(const ArrangedContour &contour) const
{
    const vxPoint start = m_curves[size_t(contour.firstCurve)].inFrame.values.p0();
    double area = 0;
    Box box = emptyBox;
    for (int i = 0; i < contour.curveCount; ++i) {
        const Cubic &c = m_curves[size_t(contour.firstCurve + i)].inFrame.values;
        area += signedAreaAround(start, c);
        extend(box, hullBox(c));
    }
    return std::fabs(area) / (box.maxX - box.minX + box.maxY - box.minY);
}

/**
 * Cuts the curves at unbalanced nodes in more places; false when there is no other way to look for some.
 * Nodes come first, since that only tells a curve of places that are known, and last for those that were
 * found since.
 */
bool Arrangement::lookAgain(size_t look)
{
    switch (look) {
    case 0:
    case 2:
        meetNodes(curvesAtUnbalancedNodes());
        return true;
    case 1:
        meetThoroughly(curvesAtUnbalancedNodes());
        return true;
    default:
        return false;
    }
}

bool Arrangement::attempt(Operation operation, double snapping)
{
    m_snapping = snapping;
    setSubdivisionAside();
    cut();
    if (!takeSides())
        findSides();
    select(operation);
    return m_selection.unbalancedNodes == 0;
}

void Arrangement::setSubdivisionAside()
{
    if (m_current.edges.size() > mostEdgesSetAside) {
        m_earlier = Subdivision();
        return;
    }
    std::swap(m_current, m_earlier);
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

bool Arrangement::isFilled(Operation operation, const Fill &fill) const
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
    m_selection.kept.reserve(m_current.edges.size());
    double area = 0;
    double signedArea = 0;
    for (size_t e = 0; e < m_current.edges.size(); ++e) {
        const Edge &edge = m_current.edges[e];
        const bool insideRight = isFilled(operation, edge.right);
        if (insideRight == isFilled(operation, edge.left))
            continue;
        m_selection.kept.push_back({ int(e), !insideRight });
        const double part = vx::signedArea(edge.inFrame) * (insideRight ? 1 : -1);
        area += part;
        const Fill &inside = insideRight ? edge.right : edge.left;
        signedArea += operation == Operation::Exclude && !inside.first ? -part : part;
    }
    m_selection.unbalancedNodes = countUnbalancedNodes();
    m_selection.area = area / m_frame.scale / m_frame.scale;
    m_selection.signedArea = signedArea / m_frame.scale / m_frame.scale;
}

std::vector<int> Arrangement::nodeBalances() const
{
    std::vector<int> balances(m_current.nodes.size(), 0);
    for (const Step &step : m_selection.kept) {
        const Edge &edge = m_current.edges[size_t(step.edge)];
        balances[size_t(step.reversed ? edge.node1 : edge.node0)] += 1;
        balances[size_t(step.reversed ? edge.node0 : edge.node1)] -= 1;
    }
    return balances;
}

int Arrangement::countUnbalancedNodes() const
{
    const std::vector<int> balances = nodeBalances();
    return int(balances.size() - size_t(std::count(balances.begin(), balances.end(), 0)));
}

std::vector<char> Arrangement::curvesAtUnbalancedNodes() const
{
    const std::vector<int> balances = nodeBalances();
    std::vector<char> curves(m_curves.size(), 0);
    for (const Edge &edge : m_current.edges) {
        if (balances[size_t(edge.node0)] != 0 || balances[size_t(edge.node1)] != 0)
            curves[size_t(edge.curve)] = 1;
    }
    return curves;
}

} // namespace vx
