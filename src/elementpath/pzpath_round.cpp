#include "pzpath.h"
#include "pzpath_p.h"
#include "vxcubic_p.h"
#include "vxnumeric_p.h"
#include "vxtolerance.h"
#include "xpath.h"

// Rounding along the path. For every corner S:
//   1. walk back by the distance and cut there (N1), dropping what lies between N1 and S;
//   2. walk on by the distance and cut there (N2), dropping what lies between S and N2;
//   3. give N1 and N2 handles that lead towards the corner, and drop S.
// The contour is edited as a ring of linked vertices, where cutting and dropping cost the same everywhere,
// and handed back to the path at the end.

namespace {

constexpr int none = -1;

struct Vertex {
    vxPoint point;
    vxPoint handleIn;
    vxPoint handleOut;
    int previous;
    int next;
};

/** The vertices of one contour; an open one has no vertex before its first and after its last. */
class Ring
{
public:
    explicit Ring(const vxPath &path) : m_closed(path.isClosed())
    {
        const QList<vxSegment *> segments = path.getSegments();
        m_vertices.reserve(2 * segments.count());
        for (const vxSegment *s : segments) {
            const int i = int(m_vertices.size());
            m_vertices.push_back({ s->point, s->handleIn, s->handleOut, i - 1, i + 1 });
        }
        m_last = int(m_vertices.size()) - 1;
        m_vertices.back().next = none;
    }

    Vertex &operator[](int v) { return m_vertices[v]; }
    int first() const { return m_first; }
    bool isLast(int v) const { return v == m_last; }
    int next(int v) const { return v == m_last && m_closed ? m_first : m_vertices[v].next; }
    int previous(int v) const { return v == m_first && m_closed ? m_last : m_vertices[v].previous; }
    vx::Cubic curve(int from, int to) const
    {
        const Vertex &a = m_vertices[from];
        const Vertex &b = m_vertices[to];
        return vx::Cubic::fromPoints(a.point, a.point.add(a.handleOut), b.point.add(b.handleIn), b.point);
    }
    /** The vertex at time t of the curve between two neighbours: a new one unless t is as good as an end. */
    int divide(int from, int to, double t);
    void remove(int v);
    /** Removes what lies strictly between two vertices, from the first one on. */
    void removeBetween(int from, int to)
    {
        while (next(from) != to)
            remove(next(from));
    }
    void writeTo(vxPath &path) const;

private:
    std::vector<Vertex> m_vertices;
    int m_first = 0;
    int m_last = 0;
    bool m_closed;
};

int Ring::divide(int from, int to, double t)
{
    if (t < vxTolerance::timeMargin)
        return from;
    if (t > vxTolerance::timeUpper)
        return to;
    vx::Cubic left, right;
    vx::subdivide(curve(from, to), t, left, right);
    const int middle = int(m_vertices.size());
    m_vertices.push_back({ left.p3(), vxPoint(), vxPoint(), from, m_vertices[from].next });
    // A line stays two lines: it is only a curve that needs the handles of its halves.
    if (!m_vertices[from].handleOut.isZero() || !m_vertices[to].handleIn.isZero()) {
        m_vertices[from].handleOut = left.p1().subtract(left.p0());
        m_vertices[middle].handleIn = left.p2().subtract(left.p3());
        m_vertices[middle].handleOut = right.p1().subtract(right.p0());
        m_vertices[to].handleIn = right.p2().subtract(right.p3());
    }
    m_vertices[from].next = middle;
    if (isLast(from)) // a cut on the closing curve becomes the last vertex
        m_last = middle;
    else
        m_vertices[to].previous = middle;
    return middle;
}

void Ring::remove(int v)
{
    const int before = m_vertices[v].previous;
    const int after = m_vertices[v].next;
    if (v == m_first)
        m_first = after;
    else
        m_vertices[before].next = after;
    if (v == m_last)
        m_last = before;
    else
        m_vertices[after].previous = before;
}

void Ring::writeTo(vxPath &path) const
{
    QList<vxSegment *> segments;
    for (int v = m_first; v != none; v = isLast(v) ? none : m_vertices[v].next) {
        const Vertex &vertex = m_vertices[v];
        segments.append(new vxSegment(vertex.point, vertex.handleIn, vertex.handleOut));
    }
    path.setSegments(segments);
}

/** How far a walk of the rounding distance along the outline gets. */
struct Reach {
    /** Blocked: by the barrier, or where the walk came back to the corner. */
    enum End { OnCurve, PastEnd, Blocked } end;
    /** The curve that holds the place; past the end of an open contour, from and to are its end vertex. */
    int from;
    int to;
    /** Arc length by which the whole of that curve exceeds the distance. */
    double excess;
    /** The walk went on from the last vertex of a closed contour to the first. */
    bool wrapped;
};

/** Where a rounding starts or ends. */
struct Cut {
    int vertex;
    bool onCurve;
    /**
     * Radians; of the handle at the cut, only on a curve: in travel direction before, against it after the
     * corner.
     */
    double direction;
};

class CornerRounder
{
public:
    CornerRounder(vxPath &path, double distance) : m_path(path), m_ring(path), m_distance(distance) {}

    void run();

private:
    bool isCorner(int v);
    bool passEachOther(const Reach &back, const Reach &ahead) const;
    int roundCorner(int corner);
    Reach reach(int corner, bool forward, int barrier) const;
    Cut cut(const Reach &reach, bool forward);
    vxPoint handle(const Cut &cut, const vxPoint &ownHandle, const vxPoint &from,
                   const vxPoint &corner) const;

    vxPath &m_path;
    Ring m_ring;
    const double m_distance;
};

bool CornerRounder::isCorner(int v)
{
    const Vertex &vertex = m_ring[v];
    if (vertex.handleIn.isZero() || vertex.handleOut.isZero())
        return true;
    const double d = vertex.handleIn.getAngleInRadians() - vertex.handleOut.getAngleInRadians();
    return !pz::isSameDirection(d) && !pz::isStraightOn(d);
}

/** The walk stops at barrier, a vertex that it must not pass, and where it comes back to the corner. */
Reach CornerRounder::reach(int corner, bool forward, int barrier) const
{
    double sum = 0;
    bool wrapped = false;
    for (int at = corner;;) {
        const int other = forward ? m_ring.next(at) : m_ring.previous(at);
        if (other == none)
            return { Reach::PastEnd, at, at, 0, wrapped };
        if (other == corner || (at == barrier && at != corner))
            return { Reach::Blocked, at, at, 0, wrapped };
        wrapped = wrapped || (forward && m_ring.isLast(at));
        const int from = forward ? at : other;
        const int to = forward ? other : at;
        sum += vx::length(m_ring.curve(from, to));
        if (sum >= m_distance)
            return { Reach::OnCurve, from, to, sum - m_distance, wrapped };
        at = other;
    }
}

Cut CornerRounder::cut(const Reach &reach, bool forward)
{
    if (reach.end != Reach::OnCurve)
        return { reach.from, false, 0 };
    const vx::Cubic curve = m_ring.curve(reach.from, reach.to);
    // Forward the place counts back from the curve's end, which itself is an offset of 0.
    double t = 1;
    if (!forward)
        t = vx::timeAtLength(curve, reach.excess, vxTolerance::noTime);
    else if (reach.excess != 0)
        t = vx::timeAtLength(curve, -reach.excess, vxTolerance::noTime);
    if (t == vxTolerance::noTime) // excess and length differ by rounding alone
        t = forward ? 0 : 1;
    vx::Cubic left, right;
    vx::subdivide(curve, t, left, right);
    const vxPoint tangent = t > vxTolerance::timeUpper ? vx::tangentAt(curve, 1) : vx::tangentAt(right, 0);
    const double direction = tangent.getAngleInRadians() + (forward ? vx::pi : 0);
    return { m_ring.divide(reach.from, reach.to, t), true, direction };
}

/** The handle at a cut: towards the corner, along the outline as it was. */
vxPoint CornerRounder::handle(const Cut &cut, const vxPoint &ownHandle, const vxPoint &from,
                              const vxPoint &corner) const
{
    double direction = cut.direction;
    if (!cut.onCurve)
        direction = (ownHandle.isZero() ? corner.subtract(from) : ownHandle).getAngleInRadians();
    const vxPoint step = pz::directedStep(direction, m_distance);
    return step.multiply(pz::cornerSideFactor).multiply(pz::cornerHandleStretch);
}

/** Whether the cut before the corner lies ahead of the one after it: two walks round a closed contour. */
bool CornerRounder::passEachOther(const Reach &back, const Reach &ahead) const
{
    if (back.end != Reach::OnCurve || ahead.end != Reach::OnCurve || back.from != ahead.from)
        return false;
    return vx::length(m_ring.curve(back.from, back.to)) - ahead.excess >= back.excess;
}

/** Rounds one corner and gives the vertex to go on from; none where the contour is done. */
int CornerRounder::roundCorner(int corner)
{
    const Reach back = reach(corner, false, none);
    const int backLimit = back.end == Reach::OnCurve ? back.to : none;
    const Reach ahead = reach(corner, true, backLimit);
    // Less than twice the distance is left of a closed contour.
    if (back.end == Reach::Blocked || ahead.end == Reach::Blocked || passEachOther(back, ahead))
        return none;
    const Cut before = cut(back, false);
    if (before.vertex == corner) // the distance is lost in the length of the edge
        return m_ring.isLast(corner) ? none : m_ring.next(corner);
    const Reach upToCut = reach(corner, true, before.vertex);
    if (upToCut.end == Reach::Blocked)
        return none;
    const Cut after = cut(upToCut, true);
    if (after.vertex == before.vertex || after.vertex == corner)
        return none;
    m_ring.removeBetween(before.vertex, corner);
    m_ring.removeBetween(corner, after.vertex);

    Vertex &n1 = m_ring[before.vertex];
    Vertex &n2 = m_ring[after.vertex];
    const vxPoint s = m_ring[corner].point;
    n1.handleOut = handle(before, n1.handleOut, n1.point, s);
    n2.handleIn = handle(after, n2.handleIn, n2.point, s);
    m_ring.remove(corner);
    return upToCut.wrapped || m_ring.isLast(after.vertex) ? none : m_ring.next(after.vertex);
}

void CornerRounder::run()
{
    int current = m_ring.first();
    // The last vertex is never rounded; which one that is can change with every cut.
    while (current != none && !m_ring.isLast(current)) {
        const bool hasBoth = m_ring.previous(current) != none && m_ring.next(current) != none;
        current = hasBoth && isCorner(current) ? roundCorner(current) : m_ring.next(current);
    }
    m_ring.writeTo(m_path);
}

} // namespace

void PZPath::setCornerRound(double distance)
{
    if (!(distance > 0) || !std::isfinite(distance))
        return;
    XPath xpath;
    toXPath(xpath);
    for (vxPath *child : xpath.children) {
        if (child->getSegments().count() >= 3 && distance < child->getLength())
            CornerRounder(*child, distance).run();
    }
    clear();
    fromXPath(xpath);
}
