#include "vxarrangement_p.h"

#include "vxboxtree_p.h"
#include "vxcurvevalues_p.h"
#include "vxline.h"
#include "vxmeetingplaces_p.h"
#include "vxnumeric_p.h"
#include "vxpath.h"
#include "vxruntree_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the frame: an end point nearer than this to a curve may come to lie on it by snapping. */
constexpr double farthestSnapping = 1e-3;

/**
 * Curves of a contour as it is filled: an open one is closed by a line; curves without extent are left out.
 */
void filledOutline(const vxPath &path, std::vector<Cubic> &outline)
{
    outline.clear();
    const QList<vxSegment *> segments = path.getSegments();
    const int count = path.isClosed() ? segments.size() : segments.size() - 1;
    for (int i = 0; i < count; ++i) {
        const Cubic c = cubicBetween(*segments.at(i), *segments.at((i + 1) % segments.size()));
        if (c.p0() != c.p3() || c.p0() != c.p1() || c.p3() != c.p2())
            outline.push_back(c);
    }
    if (!path.isClosed() && !outline.empty() && outline.back().p3() != outline.front().p0())
        outline.push_back(Cubic::fromLine(outline.back().p3(), outline.front().p0()));
}

/**
 * Whether two curves that share an end meet nowhere else: their control points lie on different sides of a
 * line through that end. (The line halves the angle between the chords from a's far end to b's.)
 */
bool partAtSharedEnd(const Cubic &a, const Cubic &b)
{
    Cubic first = a;
    Cubic second = b;
    if (a.p0() == b.p3() || a.p0() == b.p0())
        first = a.reversed();
    if (first.p3() == b.p3())
        second = b.reversed();
    if (first.p3() != second.p0())
        return false;
    const vxPoint end = second.p0();
    const vxPoint back = first.p0().subtract(end).normalize(1);
    const vxPoint on = second.p3().subtract(end).normalize(1);
    const vxPoint across = on.subtract(back);
    const auto side = [&](const vxPoint &p) { return p.subtract(end).dot(across); };
    const auto within = [](double s) { return s > 1e-9; };
    const auto leaves = [&](const vxPoint &handle, double sign) {
        return handle == end || within(sign * side(handle));
    };
    return within(-side(first.p0())) && within(-side(first.p1())) && leaves(first.p2(), -1) &&
           leaves(second.p1(), 1) && within(side(second.p2())) && within(side(second.p3()));
}

/**
 * Whether a straight curve and another surely lie apart: the other's control points on one side of the line,
 * or the line's ends on one side of the other's hull as seen across its chord. The margin is several times
 * what a straight curve may leave its chord by, and far above rounding.
 */
bool lieApart(const Cubic &line, const Cubic &curve)
{
    constexpr double margin = 5 * closeDistance;
    const auto distance = [](const Cubic &from, int i, const Cubic &to) {
        return vxLine::getSignedDistance(to.v[0], to.v[1], to.v[6], to.v[7], from.v[i], from.v[i + 1]);
    };
    if (line.p0() == line.p3() || curve.p0() == curve.p3())
        return false;
    const auto offLine = std::minmax({ distance(curve, 0, line), distance(curve, 2, line),
                                       distance(curve, 4, line), distance(curve, 6, line) });
    if (offLine.first > margin || offLine.second < -margin)
        return true;
    const auto hull = std::minmax({ 0.0, distance(curve, 2, curve), distance(curve, 4, curve) });
    const auto ends = std::minmax({ distance(line, 0, curve), distance(line, 6, curve) });
    return ends.first > hull.second + margin || ends.second < hull.first - margin;
}

bool isFinite(const std::vector<Cubic> &outline)
{
    double zero = 0; // NaN once a value is not finite
    for (const Cubic &c : outline) {
        for (double v : c.v)
            zero += 0 * v;
    }
    return zero == 0;
}

void include(Box &box, const Cubic &c)
{
    for (int i = 0; i < 8; i += 2) {
        box.minX = std::min(box.minX, c.v[i]);
        box.maxX = std::max(box.maxX, c.v[i]);
        box.minY = std::min(box.minY, c.v[i + 1]);
        box.maxY = std::max(box.maxY, c.v[i + 1]);
    }
}

} // namespace

void Arrangement::collect(const QVector<const XPath *> &operands)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Box box{ infinite, infinite, -infinite, -infinite };
    m_operandCount = operands.size();
    size_t segments = 0;
    for (const XPath *operand : operands) {
        for (int k = 0; operand && k < operand->children.size(); ++k)
            segments += size_t(operand->children.at(k)->getSegments().size());
    }
    m_curves.reserve(segments);
    std::vector<Cubic> outline;
    for (int o = 0; o < operands.size(); ++o) {
        const XPath *operand = operands.at(o);
        m_evenOdd.push_back(!operand || operand->evenOdd);
        if (!operand)
            continue;
        for (const vxPath *child : operand->children) {
            filledOutline(*child, outline);
            if (outline.empty() || !isFinite(outline))
                continue;
            m_contours.push_back({ child, o, int(m_curves.size()), int(outline.size()) });
            for (const Cubic &c : outline) {
                m_curves.push_back({ PreparedCurve(), c, int(m_contours.size()) - 1 });
                include(box, c);
            }
        }
    }
    if (m_curves.empty())
        return;
    m_extent = std::max(box.maxX - box.minX, box.maxY - box.minY);
    m_frame = Frame::around(box);
    for (ArrangedCurve &curve : m_curves)
        curve.inFrame = PreparedCurve(m_frame.toFrame(curve.original));
}

void Arrangement::meet()
{
    std::vector<Box> boxes;
    boxes.reserve(m_curves.size());
    for (const ArrangedCurve &curve : m_curves)
        boxes.push_back(curve.inFrame.box);
    std::vector<int> starts;
    starts.reserve(m_contours.size() + 1);
    for (const ArrangedContour &contour : m_contours)
        starts.push_back(contour.firstCurve);
    starts.push_back(int(m_curves.size()));
    const RunTree tree(boxes, starts);
    for (int i = 0; i < int(m_curves.size()); ++i) {
        meetItself(i);
        tree.queryAfter(i, farthestSnapping, [this, i](int j) {
            meetPair(i, j);
            meetEnds(i, j);
            meetEnds(j, i);
        });
    }
}

void Arrangement::addCut(int curve, double t, double distance)
{
    if (t > 0 && t < 1)
        m_cuts.push_back({ curve, t, distance });
}

bool Arrangement::areNeighbours(int i, int j) const
{
    const ArrangedCurve &a = m_curves[size_t(i)];
    if (a.contour != m_curves[size_t(j)].contour)
        return false;
    const int count = m_contours[size_t(a.contour)].curveCount;
    return j == i + 1 || (count > 2 && j - i == count - 1);
}

void Arrangement::cutAt(int i, int j, const std::vector<TimePair> &places)
{
    for (const TimePair &place : places) {
        addCut(i, place.t1, 0);
        addCut(j, place.t2, 0);
    }
}

void Arrangement::meetPair(int i, int j)
{
    const PreparedCurve &a = m_curves[size_t(i)].inFrame;
    const PreparedCurve &b = m_curves[size_t(j)].inFrame;
    if (!boxesMeet(a.box, b.box) || partAtSharedEnd(a.values, b.values))
        return;
    if (a.straight != b.straight &&
        lieApart(a.straight ? a.values : b.values, a.straight ? b.values : a.values))
        return;
    TimePair overlap[2];
    if (findOverlap(a, b, overlap)) {
        cutAt(i, j, { overlap[0], overlap[1] });
        return;
    }
    if (a.straight && b.straight) {
        if (areNeighbours(i, j))
            return; // two lines that share an end meet nowhere else
        const vxPoint p = linePoint(a.values, b.values);
        if (!p.isNaN()) {
            double d1 = farthestSnapping;
            double d2 = farthestSnapping;
            addCut(i, timeNear(a.values, p, d1), 0);
            addCut(j, timeNear(b.values, p, d2), 0);
        }
        return;
    }
    if (a.straight || b.straight) {
        const PreparedCurve &line = a.straight ? a : b;
        const PreparedCurve &curve = a.straight ? b : a;
        double roots[3];
        const int count = curveLineTimes(curve.values, line.values, roots);
        for (int k = 0; k < count; ++k) {
            double off = farthestSnapping;
            const double t = timeNear(line.values, pointAt(curve.values, roots[k]), off);
            if (t == noTime || off > closeDistance)
                continue;
            addCut(a.straight ? i : j, t, 0);
            addCut(a.straight ? j : i, roots[k], 0);
        }
        return;
    }
    cutAt(i, j, placesWhereMeet(a.values, b.values));
}

void Arrangement::meetItself(int i)
{
    const PreparedCurve &c = m_curves[size_t(i)].inFrame;
    const double split = c.straight ? noTime : loopSplitTime(c.values);
    if (split == noTime)
        return;
    Cubic first;
    Cubic second;
    subdivide(c.values, split, first, second);
    for (const TimePair &place : placesWhereMeet(first, second)) {
        // The halves share the point where they were split, which is no crossing.
        if (place.t1 > timeUpper && place.t2 < timeMargin)
            continue;
        addCut(i, place.t1 * split, 0);
        addCut(i, split + place.t2 * (1 - split), 0);
    }
}

/** End points of curve j that lie on curve i, or so near that snapping may bring them there. */
void Arrangement::meetEnds(int i, int j)
{
    const PreparedCurve &c = m_curves[size_t(i)].inFrame;
    const Cubic &other = m_curves[size_t(j)].inFrame.values;
    // The start alone: every end is the start of the next curve of its contour.
    const vxPoint p = other.p0();
    if (p == c.values.p0() || p == c.values.p3())
        return;
    if (p.x < c.box.minX - farthestSnapping || p.x > c.box.maxX + farthestSnapping ||
        p.y < c.box.minY - farthestSnapping || p.y > c.box.maxY + farthestSnapping)
        return;
    if (isFarFromChord(c.values, p, farthestSnapping))
        return;
    double distance = farthestSnapping;
    const double t = timeNear(c.values, p, distance);
    if (t != noTime)
        addCut(i, t, distance);
}

/**
 * The second look at curves that end at odd nodes: their meetings are sought by halving, and they are cut
 * where they turn back in x or y, since a fold thinner than the snapping distance hides its tip from all
 * vertices.
 */
void Arrangement::meetThoroughly(const std::vector<char> &accused)
{
    std::vector<Box> boxes;
    for (const ArrangedCurve &curve : m_curves)
        boxes.push_back(curve.inFrame.box);
    const BoxTree tree(boxes);
    std::vector<int> partners;
    for (int i = 0; i < int(m_curves.size()); ++i) {
        if (!accused[size_t(i)])
            continue;
        partners.clear();
        tree.query(boxes[size_t(i)], farthestSnapping, partners);
        std::sort(partners.begin(), partners.end());
        cutAtTurns(i, partners);
        for (int j : partners) {
            if (j > i || (j < i && !accused[size_t(j)]))
                meetPairByHalving(i, j);
        }
    }
}

/**
 * The third look: the nodes themselves, crossings among them, are brought onto accused curves that pass
 * within reach. In a bundle of curves thinner than the snapping distance a crossing of two is a place on all.
 */
void Arrangement::meetNodes(const std::vector<char> &accused)
{
    std::vector<Box> places;
    for (const Node &node : m_nodes)
        places.push_back({ node.inFrame.x, node.inFrame.y, node.inFrame.x, node.inFrame.y });
    const BoxTree tree(places);
    std::vector<int> near;
    for (int i = 0; i < int(m_curves.size()); ++i) {
        if (!accused[size_t(i)])
            continue;
        near.clear();
        tree.query(m_curves[size_t(i)].inFrame.box, farthestSnapping, near);
        for (int node : near) {
            double distance = farthestSnapping;
            const double t =
                timeNear(m_curves[size_t(i)].inFrame.values, m_nodes[size_t(node)].inFrame, distance);
            if (t != noTime)
                addCut(i, t, distance);
        }
    }
}

void Arrangement::meetPairByHalving(int i, int j)
{
    const PreparedCurve &a = m_curves[size_t(i)].inFrame;
    const PreparedCurve &b = m_curves[size_t(j)].inFrame;
    if (a.straight && b.straight)
        return;
    cutAt(i, j, placesByHalving(a.values, b.values));
}

void Arrangement::cutAtTurns(int i, const std::vector<int> &partners)
{
    const Cubic &c = m_curves[size_t(i)].inFrame.values;
    for (int axis : { 0, 1 }) {
        const double q0 = c.v[axis], q1 = c.v[2 + axis], q2 = c.v[4 + axis], q3 = c.v[6 + axis];
        double roots[2];
        const int count =
            solveQuadratic(3 * (q1 - q2) - q0 + q3, 2 * (q0 + q2) - 4 * q1, q1 - q0, roots, 0, 1);
        for (int k = 0; k < count; ++k) {
            addCut(i, roots[k], 0);
            const vxPoint tip = placeAt(c, roots[k]);
            for (int j : partners) {
                double distance = farthestSnapping;
                const double t =
                    j == i ? noTime : timeNear(m_curves[size_t(j)].inFrame.values, tip, distance);
                if (t != noTime)
                    addCut(j, t, distance);
            }
        }
    }
}

} // namespace vx
