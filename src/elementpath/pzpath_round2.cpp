#include "pzpath.h"
#include "pzpath_p.h"
#include "vxcubic_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <limits>

// Rounding edge by edge: one walk over the elements builds a new list, and where two edges meet at a corner,
// the copy of the arriving edge is shortened and an arc leads to a cut on the leaving edge. Every test and
// every cut reads the points as they were given, so that no corner depends on what became of its neighbours.
//
// A cubic rounded at both ends keeps the control points of its part before the second cut, although it starts
// at the first: it bulges back, up to a spike where both cuts coincide. That is kept on purpose.

namespace {

using Element = PZPath::PZElement;
using pz::makeElement;
using pz::pointOf;
using pz::setPoint;

/**
 * An edge as seen from a corner: a line to another point, or a cubic that arrives at the corner or leaves it.
 */
struct Side {
    bool isCubic;
    vx::Cubic cubic;
    /** Radians; of a line, from the corner along it; of a cubic, its direction of travel at the corner. */
    double angle;
    double length;
};

/** Where a side is cut, the control point of the arc there, and what is left of a cubic. */
struct Cut {
    vxPoint point;
    vxPoint control;
    vx::Cubic rest;
};

struct Corner {
    bool isRounded;
    Cut arriving;
    Cut leaving;
};

Side lineSide(const vxPoint &corner, const vxPoint &other)
{
    return { false, {}, other.subtract(corner).getAngleInRadians(), corner.getDistance(other) };
}

Side cubicSide(const vx::Cubic &cubic, double cornerTime)
{
    return { true, cubic, vx::tangentAt(cubic, cornerTime).getAngleInRadians(), vx::length(cubic) };
}

Cut cutLine(const Side &side, const vxPoint &corner, double distance)
{
    const vxPoint step = pz::directedStep(side.angle, distance);
    return { corner.add(step), corner.add(step.multiply(pz::cornerSideFactor)), {} };
}

/** The handle is longer than on a line: it starts from the cut, not from the corner. */
Cut cutCubic(const vx::Cubic &rest, const vxPoint &point, double angle, double distance)
{
    const vxPoint step = pz::directedStep(angle, distance);
    const vxPoint handle = step.multiply(pz::cornerSideFactor).multiply(pz::cornerHandleStretch);
    return { point, point.add(handle), rest };
}

Cut cutArriving(const Side &side, const vxPoint &corner, double distance)
{
    if (!side.isCubic)
        return cutLine(side, corner, distance);
    double t = distance > 0 ? vx::timeAtLength(side.cubic, -distance, vxTolerance::noTime) : 1;
    if (t == vxTolerance::noTime)
        t = 1;
    vx::Cubic left, right;
    vx::subdivide(side.cubic, t, left, right);
    return cutCubic(left, left.p3(), vx::tangentAt(right, 0).getAngleInRadians(), distance);
}

Cut cutLeaving(const Side &side, const vxPoint &corner, double distance)
{
    if (!side.isCubic)
        return cutLine(side, corner, distance);
    double t = vx::timeAtLength(side.cubic, distance, vxTolerance::noTime);
    if (t == vxTolerance::noTime)
        t = 0;
    vx::Cubic left, right;
    vx::subdivide(side.cubic, t, left, right);
    return cutCubic(right, right.p0(), vx::tangentAt(right, 0).getAngleInRadians() + vx::pi, distance);
}

/**
 * Beside a cubic only equal angles mean that there is no corner. For a line that arrives this compares its
 * backward with the cubic's forward direction: a cusp stays sharp, while a smooth join gets its arc; existing
 * drawings look so.
 */
bool isRoundable(const Side &arriving, const Side &leaving)
{
    const double d = leaving.angle - arriving.angle;
    const bool bothLines = !arriving.isCubic && !leaving.isCubic;
    return !pz::isSameDirection(d) && !(bothLines && pz::isStraightOn(d));
}

/** Whole units, at most half of each edge, so that neighbouring arcs never overlap. */
double limitedDistance(double distance, double length1, double length2)
{
    if (2 * distance > length1)
        distance = std::trunc(length1 / 2);
    if (2 * distance > length2)
        distance = std::trunc(length2 / 2);
    return distance;
}

class ElementRounder
{
public:
    ElementRounder(const QVector<Element> &elements, double distance) : m_in(elements), m_distance(distance)
    {
        m_out.reserve(2 * elements.count());
    }
    QVector<Element> run();

private:
    /** The kind of edge that ends at the element before the current one, and at the end of the output. */
    enum Edge { NoEdge, MoveOnly, Line, Cubic };

    void move(int i);
    void line(int i);
    void cubic(int i);
    void close(int i);

    Corner cornerAt(int i, const Side &leaving) const;
    Side arrivingSide(int i) const;
    vx::Cubic cubicAt(int i) const
    {
        return vx::Cubic::fromPoints(pointOf(m_in[i - 1]), pointOf(m_in[i]), pointOf(m_in[i + 1]),
                                     pointOf(m_in[i + 2]));
    }
    /** Shortens the arriving edge at the end of the output and appends the arc. */
    void appendArc(const Corner &corner);
    void appendCubic(const vxPoint &c1, const vxPoint &c2, const vxPoint &end);
    /** Gives the three elements from i on another cubic's control points and end. */
    void overwriteCubic(int i, const vx::Cubic &cubic);
    void copy(int from, int count)
    {
        for (int i = from; i < from + count; ++i)
            m_out.append(m_in[i]);
    }

    const QVector<Element> m_in;
    QVector<Element> m_out;
    const double m_distance;
    Edge m_arriving = NoEdge;
    /** The current subpath's move in the input and its copy in the output; -1: none. */
    int m_start = -1;
    int m_outStart = -1;
};

Side ElementRounder::arrivingSide(int i) const
{
    if (m_arriving == Cubic)
        return cubicSide(cubicAt(i - 3), 1);
    return lineSide(pointOf(m_in[i - 1]), pointOf(m_in[i - 2]));
}

/** The corner at the element before i; i need not be drawing. */
Corner ElementRounder::cornerAt(int i, const Side &leaving) const
{
    const Side arriving = arrivingSide(i);
    if (!isRoundable(arriving, leaving))
        return { false, {}, {} };
    const vxPoint b = pointOf(m_in[i - 1]);
    const double distance = limitedDistance(m_distance, arriving.length, leaving.length);
    return { true, cutArriving(arriving, b, distance), cutLeaving(leaving, b, distance) };
}

void ElementRounder::appendCubic(const vxPoint &c1, const vxPoint &c2, const vxPoint &end)
{
    m_out.append(makeElement(c1, PZPath::CurveToElement));
    m_out.append(makeElement(c2, PZPath::CurveToDataElement));
    m_out.append(makeElement(end, PZPath::CurveToDataElement));
}

void ElementRounder::overwriteCubic(int i, const vx::Cubic &cubic)
{
    const vxPoint points[] = { cubic.p1(), cubic.p2(), cubic.p3() };
    for (const vxPoint &p : points)
        setPoint(m_out[i++], p);
}

void ElementRounder::appendArc(const Corner &corner)
{
    if (m_arriving == Cubic)
        overwriteCubic(m_out.count() - 3, corner.arriving.rest);
    else
        setPoint(m_out.last(), corner.arriving.point);
    appendCubic(corner.arriving.control, corner.leaving.control, corner.leaving.point);
}

void ElementRounder::move(int i)
{
    copy(i, 1);
    m_start = i;
    m_outStart = m_out.count() - 1;
    m_arriving = MoveOnly;
}

void ElementRounder::line(int i)
{
    if (m_arriving == Line || m_arriving == Cubic) {
        const Corner corner = cornerAt(i, lineSide(pointOf(m_in[i - 1]), pointOf(m_in[i])));
        if (corner.isRounded)
            appendArc(corner);
    }
    copy(i, 1);
    // An edge needs a start point, which a line at the front of the list does not have.
    m_arriving = i > 0 ? Line : NoEdge;
}

void ElementRounder::cubic(int i)
{
    Corner corner = { false, {}, {} };
    if (m_arriving == Line || m_arriving == Cubic)
        corner = cornerAt(i, cubicSide(cubicAt(i), 0));
    if (corner.isRounded) {
        appendArc(corner);
        appendCubic(corner.leaving.rest.p1(), corner.leaving.rest.p2(), corner.leaving.rest.p3());
    } else {
        copy(i, 3);
    }
    m_arriving = i > 0 ? Cubic : NoEdge;
}

/** The corner at the start of a closed subpath, between its last edge and its first. */
void ElementRounder::close(int i)
{
    const int first = m_start + 1;
    const bool hasEdges = m_start >= 0 && (m_arriving == Line || m_arriving == Cubic);
    const bool firstIsCubic = hasEdges && m_in[first].type == PZPath::CurveToElement && first + 2 < i;
    const bool firstIsLine = hasEdges && m_in[first].type == PZPath::LineToElement;
    Corner corner = { false, {}, {} };
    if (firstIsCubic)
        corner = cornerAt(i, cubicSide(cubicAt(first), 0));
    else if (firstIsLine)
        corner = cornerAt(i, lineSide(pointOf(m_in[i - 1]), pointOf(m_in[first])));
    copy(i, 1);
    if (corner.isRounded) {
        m_out.removeLast();
        appendArc(corner);
        const vxPoint start = corner.leaving.point;
        setPoint(m_out[m_outStart], start);
        if (firstIsCubic)
            overwriteCubic(m_outStart + 1, corner.leaving.rest);
        m_out.append(makeElement(start, PZPath::CloseElement));
    }
    // What is drawn on without a move belongs to no subpath that could be rounded at its start.
    m_start = -1;
    m_arriving = NoEdge;
}

QVector<Element> ElementRounder::run()
{
    const int n = m_in.count();
    for (int i = 0; i < n; ++i) {
        switch (m_in[i].type) {
        case PZPath::MoveToElement:
            move(i);
            break;
        case PZPath::LineToElement:
            line(i);
            break;
        case PZPath::CurveToElement:
            if (i < n - 2) {
                cubic(i);
                i += 2;
            } else {
                m_arriving = NoEdge;
            }
            break;
        case PZPath::CloseElement:
            close(i);
            break;
        default: // a data element without its curve
            m_arriving = NoEdge;
            break;
        }
    }
    return m_out;
}

} // namespace

void PZPath::setCornerRound2(double distance)
{
    if (!(distance > 0) || !std::isfinite(distance))
        return;
    const double whole = std::trunc(std::min(distance, double(std::numeric_limits<int>::max())));
    m_elements = ElementRounder(m_elements, whole).run();
}
