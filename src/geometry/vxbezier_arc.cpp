#include "vxbezier.h"

#include "vxnumeric.h"
#include "vxnumeric_p.h"
#include "vxrect.h"

#include <QPointF>
#include <QRectF>
#include <QtGlobal>

#include <algorithm>
#include <array>
#include <limits>

using vxTolerance::machineZero;

namespace {

/**
 * Distance of the control points of a quarter circle of radius 1 from its ends, close to 4/3 (sqrt 2 - 1).
 */
constexpr double k = 0.55228474983;

/** Equal up to 1e-12 of the smaller value. */
bool isFuzzyEqual(double a, double b)
{
    return std::fabs(a - b) * 1e12 <= std::min(std::fabs(a), std::fabs(b));
}

/**
 * An ellipse as four quarter arcs: quarter q in 0 to 3 is points 3q to 3q + 3, clockwise on screen from the
 * right-hand end of the horizontal axis.
 */
using EllipsePoints = std::array<vxPoint, 13>;

EllipsePoints ellipsePoints(const vxRect &r)
{
    const double w = r.width;
    const double h = r.height;
    const double w2 = w / 2;
    const double h2 = h / 2;
    const double w2k = w2 * k;
    const double h2k = h2 * k;
    return { vxPoint(r.x + w, r.y + h2), vxPoint(r.x + w, r.y + h2 + h2k), vxPoint(r.x + w2 + w2k, r.y + h),
             vxPoint(r.x + w2, r.y + h), vxPoint(r.x + w2 - w2k, r.y + h), vxPoint(r.x, r.y + h2 + h2k),
             vxPoint(r.x, r.y + h2),     vxPoint(r.x, r.y + h2 - h2k),     vxPoint(r.x + w2 - w2k, r.y),
             vxPoint(r.x + w2, r.y),     vxPoint(r.x + w2 + w2k, r.y),     vxPoint(r.x + w, r.y + h2 - h2k),
             vxPoint(r.x + w, r.y + h2) };
}

/** First point of the quarter that segment number i (counterclockwise, any sign) stands for. */
int quarterStart(int i)
{
    return 3 * (3 - (i % 4 + 4) % 4);
}

/** The quarter arc of segment number i, run counterclockwise for delta > 0. */
vxBezier quarterArc(const EllipsePoints &p, int i, int delta)
{
    const int j = quarterStart(i);
    return delta > 0 ? vxBezier::fromPoints(p[j + 3], p[j + 2], p[j + 1], p[j])
                     : vxBezier::fromPoints(p[j], p[j + 1], p[j + 2], p[j + 3]);
}

/** Which quarter arcs an arc covers, and the curve times where it enters the first and leaves the last. */
struct ArcRange {
    int delta;        // 1: counterclockwise on screen
    int startSegment; // quarter arcs, counted counterclockwise from angle 0
    int endSegment;
    double startT;
    double endT;

    ArcRange(double startAngle, double sweep) : delta(sweep > 0 ? 1 : -1)
    {
        const double first = std::floor(startAngle / 90);
        const double last = std::floor((startAngle + sweep) / 90);
        startSegment = static_cast<int>(first);
        endSegment = static_cast<int>(last);
        startT = (startAngle - 90 * first) / 90;
        endT = (startAngle + sweep - 90 * last) / 90;
        if (delta < 0) {
            startT = 1 - startT;
            endT = 1 - endT;
        }
        // No empty piece at either end.
        if (std::fabs(startT - 1) <= machineZero) {
            startT = 0;
            startSegment += delta;
        }
        if (std::fabs(endT) <= machineZero) {
            endT = 1;
            endSegment -= delta;
        }
        startT = vxBezier::arcAngle(90 * startT);
        endT = vxBezier::arcAngle(90 * endT);
    }

    /** The piece of quarter arc i that belongs to the arc. */
    vxBezier cut(const vxBezier &quarter, int i) const
    {
        const bool splitAtStart = std::fabs(startT) > machineZero;
        const bool splitAtEnd = std::fabs(endT - 1) > machineZero;
        if (i == startSegment) {
            if (i == endSegment && splitAtEnd)
                return quarter.bezierOnInterval(startT, endT);
            return splitAtStart ? quarter.bezierOnInterval(startT, 1) : quarter;
        }
        return i == endSegment && splitAtEnd ? quarter.bezierOnInterval(0, endT) : quarter;
    }
};

/** The angle itself, or less full turns where quarter-arc numbers would not fit into an int. */
double countableAngle(double angle)
{
    constexpr double limit = 90.0 * (std::numeric_limits<int>::max() - 16);
    return std::fabs(angle) < limit ? angle : std::fmod(angle, 360);
}

bool isFiniteArc(const vxRect &r, double startAngle, double sweep)
{
    for (double v : { r.x, r.y, r.width, r.height, startAngle, sweep }) {
        if (!std::isfinite(v))
            return false;
    }
    return true;
}

} // namespace

double vxBezier::arcAngle(double angle)
{
    if (std::fabs(angle) <= machineZero)
        return 0;
    if (isFuzzyEqual(angle, 90))
        return 1;
    const double radians = angle * vx::pi / 180;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    // On the unit quarter arc, x(t) = cos and y(t) = sin do not quite agree, because a cubic is no circle:
    // two Newton steps for each, and the mean of both.
    double tc = angle / 90;
    for (int i = 0; i < 2; ++i)
        tc -= (((2 - 3 * k) * tc + 3 * (k - 1)) * tc * tc + 1 - c) / (((6 - 9 * k) * tc + 6 * (k - 1)) * tc);
    // The slope of y is (9k - 6) t^2 + (6 - 12k) t + 3k; the middle term is used with the other sign, and
    // stays so: where arcs are cut depends on it in the last digits.
    double ts = tc;
    for (int i = 0; i < 2; ++i)
        ts -= ((((3 * k - 2) * ts - 6 * k + 3) * ts + 3 * k) * ts - s) /
              (((9 * k - 6) * ts + 12 * k - 6) * ts + 3 * k);
    return 0.5 * (tc + ts);
}

vxPoint vxBezier::arcToBezier(const vxRect &rect, double startAngle, double sweepLength,
                              QVector<vxPoint> &curves)
{
    if (!isFiniteArc(rect, startAngle, sweepLength)) {
        qWarning("Arc to bezier, adding arc where a parameter is NaN, results are undefined");
        return vxPoint();
    }
    if (rect.isEmpty())
        return vxPoint();
    const EllipsePoints points = ellipsePoints(rect);
    const double sweep = vxNumeric::clamp(sweepLength, -360, 360);
    if (startAngle == 0 && sweep == 360) {
        for (int i = 11; i >= 0; --i)
            curves.append(points[i]);
        return points[12];
    }
    if (startAngle == 0 && sweep == -360) {
        for (int i = 1; i <= 12; ++i)
            curves.append(points[i]);
        return points[0];
    }

    startAngle = countableAngle(startAngle);
    const ArcRange range(startAngle, sweep);
    const int delta = range.delta;
    const int end = range.endSegment + delta;
    if (range.startSegment == end)
        return points[quarterStart(end) + (delta > 0 ? 3 : 0)];

    // Angles are negated because y points down.
    const vxPoint start = vxNumeric::ellipsePoint(rect, -startAngle);
    if (range.startSegment == range.endSegment && isFuzzyEqual(range.startT, range.endT))
        return start;
    for (int i = range.startSegment; i != end; i += delta) {
        const vxBezier piece = range.cut(quarterArc(points, i, delta), i);
        curves << vxPoint(piece.x2, piece.y2) << vxPoint(piece.x3, piece.y3) << vxPoint(piece.x4, piece.y4);
    }
    curves.last() = vxNumeric::ellipsePoint(rect, -startAngle - sweep);
    return start;
}

QPointF vxBezier::arcToBezier(const QRectF &rect, double startAngle, double sweepLength,
                              QVector<QPointF> &curves)
{
    QVector<vxPoint> points;
    const vxPoint start =
        arcToBezier(vxRect(rect.x(), rect.y(), rect.width(), rect.height()), startAngle, sweepLength, points);
    curves.reserve(curves.size() + points.size());
    for (const vxPoint &p : qAsConst(points))
        curves.append(p.toPt());
    return start.toPt();
}
