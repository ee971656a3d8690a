#include "vxarrangement_p.h"

#include "vxapart_p.h"
#include "vxboxtree_p.h"
#include "vxcurvevalues_p.h"
#include "vxmeetingplaces_p.h"
#include "vxpath.h"
#include "vxruntree_p.h"
#include "vxtolerance.h"
#include "vxturns_p.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the frame: an end point nearer than this to a curve may come to lie on it by snapping. */
constexpr double farthestSnapping = 1e-3;
constexpr double thinnestBox = 0.01; // sides, one by the other
/** Part of a curve's size: it runs on a line where it keeps to it within this. */
constexpr double foldFraction = 1e-12;

/**
 * Appends a curve. One that runs back and forth on a line becomes the lines that it runs: a point on it is up
 * to three places on the curve, of which a search may find one.
 */
void appendCurve(const Cubic &c, std::vector<Cubic> &outline)
{
    double times[2];
    const double size = std::max({ std::fabs(c.v[6] - c.v[0]), std::fabs(c.v[7] - c.v[1]),
                                   std::fabs(c.v[2] - c.v[0]), std::fabs(c.v[3] - c.v[1]) });
    const int count = foldTimes(c, foldFraction * size, times);
    if (count == 0) {
        outline.push_back(c);
        return;
    }
    if (count == 2 && times[0] > times[1])
        std::swap(times[0], times[1]);
    vxPoint from = c.p0();
    for (int i = 0; i <= count; ++i) {
        const vxPoint to = i < count ? placeAt(c, times[i]) : c.p3();
        if (to != from)
            outline.push_back(Cubic::fromLine(from, to));
        from = to;
    }
}

/**
 * Curves of a contour as it is filled: an open one is closed by a line; curves without extent are left out.
 */
void filledOutline(const vxPath &path, std::vector<Cubic> &outline)
{
    outline.clear();
    const QList<vxSegment *> &segments = path._segments();
    const int count = path._countCurves();
    outline.reserve(size_t(segments.size()));
    for (int i = 0; i < count; ++i) {
        const Cubic c = curveFrom(segments, i);
        if (c.p0() != c.p3() || c.p0() != c.p1() || c.p3() != c.p2())
            appendCurve(c, outline);
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
    const bool isStartOfA = a.p0() == b.p3() || a.p0() == b.p0();
    const vxPoint end = isStartOfA ? a.p0() : a.p3();
    const bool isEndOfB = b.p3() == end;
    if (!isEndOfB && b.p0() != end)
        return false;
    const vxPoint farA = isStartOfA ? a.p3() : a.p0();
    const vxPoint farB = isEndOfB ? b.p0() : b.p3();
    const vxPoint across = farB.subtract(end).normalize(1).subtract(farA.subtract(end).normalize(1));
    const auto side = [&](const vxPoint &p) { return p.subtract(end).dot(across); };
    const auto within = [](double s) { return s > 1e-9; };
    const auto leaves = [&](const vxPoint &handle, double sign) {
        return handle == end || within(sign * side(handle));
    };
    return within(-side(farA)) && within(side(farB)) && within(-side(isStartOfA ? a.p2() : a.p1())) &&
           leaves(isStartOfA ? a.p1() : a.p2(), -1) && leaves(isEndOfB ? b.p2() : b.p1(), 1) &&
           within(side(isEndOfB ? b.p1() : b.p2()));
}

/** Whether two lines surely have different directions, so that they share no more than a point. */
bool runAcross(const PreparedCurve &line1, const PreparedCurve &line2)
{
    const double cross = line1.chordX * line2.chordY - line1.chordY * line2.chordX;
    // Far above closeDistance, within which findOverlap() takes a far end for one on the other line.
    constexpr double apartDistance = 10 * closeDistance;
    return line1.ordinary && line2.ordinary &&
           std::fabs(cross) > apartDistance * (line1.chordBound + line2.chordBound);
}

/** Whether snapping may bring a point, which is no end of it, onto a curve: a quick look at its box. */
bool mayComeToLieOn(const PreparedCurve &c, const vxPoint &p)
{
    return p != c.values.p0() && p != c.values.p3() && holds(c.box, p, farthestSnapping);
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

} // namespace

void Arrangement::collect(const QVector<const XPath *> &operands)
{
    Box box = emptyBox;
    m_operandCount = operands.size();
    m_evenOdd.reserve(size_t(operands.size()));
    size_t segments = 0;
    size_t contours = 0;
    for (const XPath *operand : operands) {
        contours += operand ? size_t(operand->children.size()) : 0;
        for (int k = 0; operand && k < operand->children.size(); ++k)
            segments += size_t(operand->children.at(k)->_segments().size());
    }
    m_contours.reserve(contours);
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
                m_curves.emplace_back(c, int(m_contours.size()) - 1);
                extend(box, hullBox(c));
            }
        }
    }
    if (m_curves.empty())
        return;
    const auto sides = std::minmax({ box.maxX - box.minX, box.maxY - box.minY });
    m_extent = sides.second;
    m_referenceArea = std::max(sides.first, thinnestBox * m_extent) * m_extent;
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
    m_cuts.reserve(2 * m_curves.size());
    const RunTree tree(boxes, starts);
    for (int i = 0; i < int(m_curves.size()); ++i)
        meetItself(i);
    tree.visitPairs(farthestSnapping, [this](int i, int j) {
        meetPair(i, j);
        const PreparedCurve &a = m_curves[size_t(i)].inFrame;
        const PreparedCurve &b = m_curves[size_t(j)].inFrame;
        // The starts alone: every end is the start of the next curve of its contour.
        if (mayComeToLieOn(a, b.values.p0()))
            meetEnd(i, b.values.p0());
        if (mayComeToLieOn(b, a.values.p0()))
            meetEnd(j, a.values.p0());
    });
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

void Arrangement::cutAt(int i, int j, const TimePair &place)
{
    addCut(i, place.t1, 0);
    addCut(j, place.t2, 0);
}

void Arrangement::meetPair(int i, int j)
{
    const PreparedCurve &a = m_curves[size_t(i)].inFrame;
    const PreparedCurve &b = m_curves[size_t(j)].inFrame;
    if (!boxesMeet(a.box, b.box))
        return;
    const bool areLines = a.straight && b.straight;
    const bool areJoinedLines = areLines && areNeighbours(i, j);
    if ((areJoinedLines && runAcross(a, b)) || partAtSharedEnd(a.values, b.values))
        return;
    const PossibleContact contact = possibleContact(a, b);
    if (contact == PossibleContact::None || (contact == PossibleContact::Any && cutAtOverlap(i, j)))
        return;
    if (areLines) {
        if (!areJoinedLines) // they meet nowhere else
            meetLines(i, j);
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
    for (const TimePair &place : placesWhereMeet(a.values, b.values))
        cutAt(i, j, place);
}

/** Cuts both curves where a stretch that they share begins and ends; false when they share none. */
bool Arrangement::cutAtOverlap(int i, int j)
{
    TimePair overlap[2];
    if (!findOverlap(m_curves[size_t(i)].inFrame, m_curves[size_t(j)].inFrame, overlap))
        return false;
    for (const TimePair &place : overlap)
        cutAt(i, j, place);
    return true;
}

void Arrangement::meetLines(int i, int j)
{
    const PreparedCurve &a = m_curves[size_t(i)].inFrame;
    const PreparedCurve &b = m_curves[size_t(j)].inFrame;
    const vxPoint p = linePoint(a.values, b.values);
    if (p.isNaN())
        return;
    for (int line : { i, j }) {
        const Cubic &c = m_curves[size_t(line)].inFrame.values;
        if (p == c.p0() || p == c.p3())
            continue; // timeNear() gives an end's time
        addCut(line, nearPlace(line, p).t, 0);
    }
}

/** The place on curve i, within reach of snapping, that is nearest to a point. */
const NearPlace &Arrangement::nearPlace(int i, const vxPoint &p)
{
    ArrangedCurve &curve = m_curves[size_t(i)];
    NearPlace &place = curve.lastNear;
    if (place.point != p) {
        place.point = p;
        place.distance = farthestSnapping;
        place.t = timeNear(curve.inFrame.values, p, place.distance);
    }
    return place;
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

/** An end point of another curve that may lie on curve i, or so near that snapping may bring it there. */
void Arrangement::meetEnd(int i, const vxPoint &p)
{
    if (isFarFromChord(m_curves[size_t(i)].inFrame.values, p, farthestSnapping))
        return;
    const NearPlace &place = nearPlace(i, p);
    if (place.t != noTime)
        addCut(i, place.t, place.distance);
}

/**
 * Another look at curves at unbalanced nodes: their meetings are sought by halving, and they are cut where
 * they turn back in x or y, since a fold thinner than the snapping distance hides its tip from all vertices.
 */
void Arrangement::meetThoroughly(const std::vector<char> &isSought)
{
    std::vector<Box> boxes;
    for (const ArrangedCurve &curve : m_curves)
        boxes.push_back(curve.inFrame.box);
    const BoxTree tree(boxes);
    std::vector<int> partners;
    for (int i = 0; i < int(m_curves.size()); ++i) {
        if (!isSought[size_t(i)])
            continue;
        partners.clear();
        tree.query(boxes[size_t(i)], farthestSnapping, partners);
        std::sort(partners.begin(), partners.end());
        cutAtTurns(i, partners);
        for (int j : partners) {
            if (j > i || (j < i && !isSought[size_t(j)]))
                meetPairByHalving(i, j);
        }
    }
}

/**
 * The nodes themselves, crossings among them, are brought onto such curves that pass within reach. In a
 * bundle of curves thinner than the snapping distance a crossing of two is a place on all.
 */
void Arrangement::meetNodes(const std::vector<char> &isSought)
{
    std::vector<Box> places;
    for (const Node &node : m_current.nodes)
        places.push_back({ node.inFrame.x, node.inFrame.y, node.inFrame.x, node.inFrame.y });
    const BoxTree tree(places);
    std::vector<int> near;
    for (int i = 0; i < int(m_curves.size()); ++i) {
        if (!isSought[size_t(i)])
            continue;
        near.clear();
        tree.query(m_curves[size_t(i)].inFrame.box, farthestSnapping, near);
        for (int node : near) {
            double distance = farthestSnapping;
            const double t =
                timeNear(m_curves[size_t(i)].inFrame.values, m_current.nodes[size_t(node)].inFrame, distance);
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
    for (const TimePair &place : placesByHalving(a.values, b.values))
        cutAt(i, j, place);
}

void Arrangement::cutAtTurns(int i, const std::vector<int> &partners)
{
    const Cubic &c = m_curves[size_t(i)].inFrame.values;
    for (int axis : { 0, 1 }) {
        double roots[2];
        const int count = turnTimes(c, axis, roots, 0, 1);
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
