#include "meetings.h"
#include "vxnearness_p.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace meetings;

// Corners that meet: whether outlines cross there is told by four directions, which lines mostly give away
// without a look at their points. Here the points are looked at.

namespace {

/** Pairs of corners at one place, along axes and diagonals, with shared or nearly shared sides, and curved.
 */
class Corners
{
public:
    explicit Corners(unsigned seed) : random(seed) {}

    /** Path data of two curves each that meet in the corner. */
    std::pair<std::string, std::string> next()
    {
        m_corner = oneIn(2) ? vxPoint(30, 70) : random.between(vxPoint(-9e3, -9e3), vxPoint(9e3, 9e3));
        const std::string in = sideToCorner();
        const std::string out = command(side());
        return { in + out, (oneIn(4) ? in : sideToCorner()) + (oneIn(4) ? out : command(side())) };
    }
    bool oneIn(int n) { return int(random.between(0, n)) == 0; }

    shapes::Random random;

private:
    using Points = std::vector<vxPoint>;

    /** A line or a curve from the corner on. */
    Points side()
    {
        const vxPoint v = direction().multiply(std::pow(10.0, random.between(-2, 3)));
        if (!oneIn(4))
            return { m_corner.add(v) };
        const vxPoint handle = v.multiply(0.4).rotate(random.between(-60, 60));
        return { m_corner.add(handle), m_corner.add(v.multiply(0.7)), m_corner.add(v) };
    }
    std::string sideToCorner()
    {
        Points points = side();
        std::reverse(points.begin(), points.end());
        const std::string start = "M" + text(points.front());
        points.erase(points.begin());
        points.push_back(m_corner);
        return start + command(points);
    }
    vxPoint direction()
    {
        const vxPoint grid(std::floor(random.between(-1, 2)), std::floor(random.between(-1, 2)));
        if (oneIn(2) && !grid.isZero())
            return grid;
        m_degrees = oneIn(3) ? m_degrees + std::pow(10.0, random.between(-10, 0)) : random.between(-180, 180);
        return vxPoint(1, 0).rotate(m_degrees);
    }
    static std::string command(const Points &points)
    {
        std::string data = points.size() == 1 ? " L" : " C";
        for (const vxPoint &p : points)
            data += text(p);
        return data;
    }
    static std::string text(const vxPoint &p)
    {
        char numbers[60];
        std::snprintf(numbers, sizeof numbers, " %.17g %.17g", p.x, p.y);
        return numbers;
    }

    vxPoint m_corner;
    double m_degrees = 0;
};

/** Angles of the points at an arc length before and behind a corner. */
struct Angles {
    double before, after;

    Angles(const QList<vxCurve *> &curves, const vxPoint &p, double offset)
        : before(curves.at(0)->getPointAt(-offset).subtract(p).getAngle()),
          after(curves.at(1)->getPointAt(offset).subtract(p).getAngle())
    {
    }
    /** Whether just one lies strictly between two angles, going up from the first. */
    bool areParted(double low, double high) const
    {
        const auto isBetween = [=](double a) {
            return low < high ? a > low && a < high : a > low || a < high;
        };
        return isBetween(before) != isBetween(after);
    }
};

double shortestLength(const QList<vxCurve *> &curves)
{
    return qMin(curves.at(0)->getLength(), curves.at(1)->getLength());
}

} // namespace

TEST(Corners, cross_where_their_points_near_by_lie_so)
{
    Corners corners(5);
    int crossing = 0;
    constexpr int count = 10000;
    for (int i = 0; i < count; ++i) {
        const auto data = corners.next();
        const shapes::XPathPtr paths[] = { shapes::read(data.first), shapes::read(data.second) };
        const QList<vxCurve *> a = paths[0]->getFirstChild()->getCurves();
        const QList<vxCurve *> b = paths[1]->getFirstChild()->getCurves();
        const vxRef<vxCurveLocation> onA = locationAt(a.at(1), 0);
        const vxRef<vxCurveLocation> onB = locationAt(b.at(1), 0);
        onA->intersection = onB.get();
        onB->intersection = onA.get();
        if (corners.oneIn(3)) {
            const double aside = std::pow(10.0, corners.random.between(-13, -3));
            (corners.oneIn(2) ? onA->point.x : onA->point.y) += aside;
        }

        const double offset = qMin(shortestLength(a), shortestLength(b)) / 64;
        const Angles ofA(a, onA->point, offset);
        const Angles ofB(b, onA->point, offset);
        const bool expected = ofB.areParted(ofA.before, ofA.after) && ofB.areParted(ofA.after, ofA.before);
        crossing += expected;
        ASSERT_EQ(onA->isCrossing(), expected)
            << data.first << " and " << data.second << ", angles " << ofA.before << ' ' << ofA.after << ' '
            << ofB.before << ' ' << ofB.after;
    }
    EXPECT_GT(crossing, count / 10);
    EXPECT_LT(crossing, count / 2);
}

TEST(PlacesNear, a_point_that_is_an_end_are_that_end)
{
    shapes::Random random(6);
    for (int i = 0; i < 300; ++i) {
        vx::Cubic c;
        for (double &v : c.v)
            v = random.between(-500, 500);
        if (i % 3 == 0)
            c = vx::Cubic::fromLine(c.p0(), c.p3());
        for (double t : { 0.0, 1.0 }) {
            double distance = 1e-3;
            EXPECT_EQ(vx::timeNear(c, t == 0 ? c.p0() : c.p3(), distance), t);
            EXPECT_EQ(distance, 0);
        }
    }
}
