#include "meetings.h"

#include <cstdio>

using namespace meetings;

namespace {

constexpr int steps = 120;

struct Polyline {
    vxPoint points[steps + 1];

    Polyline(const QVector<double> &values, double dx, double dy)
    {
        for (int i = 0; i <= steps; ++i)
            points[i] = vxCurve::getPoint(values, double(i) / steps).add(vxPoint(dx, dy));
    }
};

int side(const vxPoint &a, const vxPoint &b, const vxPoint &p)
{
    const double cross = b.subtract(a).cross(p.subtract(a));
    return (cross > 0) - (cross < 0);
}

/** Pairs of pieces that cross; the brute force that clipping is held against. */
int countCrossings(const Polyline &a, const Polyline &b)
{
    int count = 0;
    for (int i = 0; i < steps; ++i) {
        const vxPoint a0 = a.points[i];
        const vxPoint a1 = a.points[i + 1];
        for (int j = 0; j < steps; ++j) {
            const vxPoint b0 = b.points[j];
            const vxPoint b1 = b.points[j + 1];
            if (qMax(a0.x, a1.x) < qMin(b0.x, b1.x) || qMax(b0.x, b1.x) < qMin(a0.x, a1.x))
                continue;
            count += side(a0, a1, b0) != side(a0, a1, b1) && side(b0, b1, a0) != side(b0, b1, a1);
        }
    }
    return count;
}

/**
 * The number of crossings, or -1 when a shift by 1 % changes it: then some are close together or nearly
 * touch.
 */
int steadyCount(const QVector<double> &a, const QVector<double> &b)
{
    const Polyline first(a, 0, 0);
    const int count = countCrossings(first, Polyline(b, 0, 0));
    for (const vxPoint &shift : { vxPoint(1, 0.3), vxPoint(-1, -0.3), vxPoint(0.3, -1), vxPoint(-0.3, 1) }) {
        if (countCrossings(first, Polyline(b, shift.x, shift.y)) != count)
            return -1;
    }
    return count;
}

} // namespace

TEST(SampledCrossings, agree_in_number_with_fine_polylines)
{
    shapes::Random random(20240611);
    int compared = 0;
    int most = 0;
    for (int pair = 0; pair < 150; ++pair) {
        QVector<double> values[2];
        for (int i = 0; i < 16; ++i)
            values[i / 8] << random.between(0, 100);
        const vxRef<vxCurve> a(new vxCurve(values[0]));
        const vxRef<vxCurve> b(new vxCurve(values[1]));
        const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
        expectOnBothCurves(found.list);
        const int expected = steadyCount(values[0], values[1]);
        if (expected < 0)
            continue;
        ++compared;
        most = qMax(most, expected);
        EXPECT_EQ(found.list.size(), expected)
            << "pair " << pair << ": " << a->toString().toStdString() << "; " << b->toString().toStdString();
    }
    std::printf("%d pairs compared, at most %d crossings\n", compared, most);
    EXPECT_GE(compared, 90);
    EXPECT_GE(most, 3);
}
