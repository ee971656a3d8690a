#include "vxpath.h"
#include "vxsegment.h"

#include <algorithm>
#include <vector>

namespace {

/** The segments to smooth; from is negative where the range wraps through the start of a closed path. */
struct Range {
    qint64 from;
    qint64 to;
    /** The whole closed contour, without ends. */
    bool loop;
};

Range resolveRange(qint64 n, bool closed, int from, int to)
{
    if (closed && from == 0 && to == -1)
        return { 0, n - 1, true };
    Range range = { from, to == -1 ? n - 1 : to, false };
    if (closed) {
        if (range.from < 0)
            range.from += n;
        if (range.to < 0)
            range.to += n;
    }
    if (range.to < range.from) {
        if (closed)
            range.from -= n;
        else
            std::swap(range.from, range.to);
    }
    const qint64 lowest = closed ? 1 - n : 0;
    range.from = std::clamp(range.from, lowest, n - 1);
    range.to = std::clamp(range.to, qint64(0), n - 1);
    return range;
}

vxSegment *segmentAt(const QList<vxSegment *> &segments, qint64 i)
{
    const qint64 n = segments.count();
    return segments.at(int((i % n + n) % n));
}

void smoothEach(const QList<vxSegment *> &segments, const Range &range, int type, double factor)
{
    for (qint64 i = range.from; i <= range.to; ++i) {
        const bool skipIn = !range.loop && i == range.from;
        const bool skipOut = !range.loop && i == range.to;
        segmentAt(segments, i)->smooth(skipIn, skipOut, type, factor);
    }
}

/** How many points before and after a range steer its ends. */
struct Padding {
    qint64 left;
    qint64 right;
};

/** A loop overlaps itself by up to four points, after which the ends of the system no longer show. */
Padding paddingFor(const Range &range, qint64 n)
{
    if (range.loop) {
        const qint64 overlap = std::min(range.to - range.from + 1, qint64(4));
        return { overlap, overlap };
    }
    return { range.from >= 1 ? 1 : 0, range.to < n - 1 ? 1 : 0 };
}

/**
 * First control points of the C2 cubic spline through the knots, by elimination without pivoting (Thomas
 * algorithm) of the tridiagonal system that equal second derivatives at the inner knots give. The last row is
 * the condition at the end: asymmetric leaves the curvature there to the last interval, symmetric is the
 * natural end of the spline. One control point more follows the last knot.
 */
std::vector<vxPoint> solveControlPoints(const std::vector<vxPoint> &knots, bool asymmetric)
{
    const size_t n = knots.size() - 1;
    std::vector<double> r(n);
    std::vector<vxPoint> rhs(n);
    r[0] = 2;
    rhs[0] = knots[0].add(knots[1].multiply(2));
    for (size_t i = 1; i < n; ++i) {
        const bool inner = i < n - 1;
        const double a = inner || asymmetric ? 1 : 2;
        const double b = inner ? 4 : asymmetric ? 2 : 7;
        const double u = inner ? 4 : asymmetric ? 3 : 8;
        const double v = inner ? 2 : asymmetric ? 0 : 1;
        const double m = a / r[i - 1];
        r[i] = b - m;
        rhs[i] = knots[i].multiply(u).add(knots[i + 1].multiply(v)).subtract(rhs[i - 1].multiply(m));
    }
    std::vector<vxPoint> points(n + 1);
    points[n - 1] = rhs[n - 1].divide(r[n - 1]);
    for (size_t i = n - 1; i-- > 0;)
        points[i] = rhs[i].subtract(points[i + 1]).divide(r[i]);
    points[n] = knots[n].multiply(3).subtract(points[n - 1]).divide(2);
    return points;
}

void smoothTogether(const QList<vxSegment *> &segments, const Range &range, bool asymmetric)
{
    const Padding padding = paddingFor(range, segments.count());
    std::vector<vxPoint> knots;
    for (qint64 i = range.from - padding.left; i <= range.to + padding.right; ++i)
        knots.push_back(segmentAt(segments, i)->point);
    if (knots.size() < 3) // fewer than two intervals
        return;
    const std::vector<vxPoint> points = solveControlPoints(knots, asymmetric);
    for (qint64 i = range.from; i <= range.to; ++i) {
        vxSegment *segment = segmentAt(segments, i);
        const vxPoint handle = points[size_t(i - range.from + padding.left)].subtract(segment->point);
        if (range.loop || i < range.to)
            segment->handleOut = handle;
        if (range.loop || i > range.from)
            segment->handleIn = handle.negate();
    }
}

} // namespace

void vxPath::smooth(int type, double factor, int from, int to)
{
    if (isEmpty() || type < 1 || type > 4)
        return;
    const Range range = resolveRange(m_segments.count(), closed, from, to);
    if (type <= 2)
        smoothEach(m_segments, range, type, factor);
    else
        smoothTogether(m_segments, range, type == 3);
    _changed();
}
