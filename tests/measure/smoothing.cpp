#include "vxpath.h"
#include "vxref_p.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

vxRef<vxPath> pathThrough(const std::vector<vxPoint> &points, bool closed)
{
    vxRef<vxPath> path(new vxPath(nullptr, closed));
    for (const vxPoint &p : points)
        path->addSegment(new vxSegment(p.x, p.y));
    return path;
}

const std::vector<vxPoint> zigzag = {
    { 0, 0 }, { 40, 70 }, { 100, 10 }, { 160, 90 }, { 170, 0 }, { 260, 20 }
};

/** A sixth of the second derivative at the start (or, with the segments exchanged, the end) of the curve. */
vxPoint bend(const vxPoint &p, const vxPoint &handle, const vxPoint &other, const vxPoint &otherHandle)
{
    return p.subtract(p.add(handle).multiply(2)).add(other.add(otherHandle));
}

vxPoint bendAtStart(const vxSegment *a, const vxSegment *b)
{
    return bend(a->point, a->handleOut, b->point, b->handleIn);
}

vxPoint bendAtEnd(const vxSegment *a, const vxSegment *b)
{
    return bend(b->point, b->handleIn, a->point, a->handleOut);
}

} // namespace

TEST(Smoothing, control_point_systems_give_equal_curvature_at_inner_points)
{
    for (int type : { 3, 4 }) {
        const vxRef<vxPath> path = pathThrough(zigzag, false);
        const double straight = path->getLength();
        path->smooth(type, 0.5, 0, -1);
        EXPECT_GT(path->getLength(), straight);
        const QList<vxSegment *> s = path->getSegments();
        const int last = s.count() - 1;
        // The asymmetric end row leaves the joint before the last curve open in its second derivative.
        for (int i = 1; i < (type == 4 ? last : last - 1); ++i) {
            EXPECT_LT(s[i]->handleIn.getDistance(s[i]->handleOut.negate()), 1e-12);
            EXPECT_LT(bendAtEnd(s[i - 1], s[i]).getDistance(bendAtStart(s[i], s[i + 1])), 1e-10) << type << i;
        }
        EXPECT_LT(bendAtStart(s[0], s[1]).getLength(), 1e-10);
        if (type == 4) { // natural at both ends
            EXPECT_LT(bendAtEnd(s[last - 1], s[last]).getLength(), 1e-10);
        }
    }
}

TEST(Smoothing, loops_follow_the_circle_through_their_points)
{
    std::vector<vxPoint> corners;
    for (int i = 0; i < 12; ++i)
        corners.push_back(vxPoint(100 * std::cos(i * M_PI / 6), 100 * std::sin(i * M_PI / 6)));
    for (int type : { 1, 2, 3, 4 }) {
        const vxRef<vxPath> path = pathThrough(corners, true);
        path->smooth(type, type == 1 ? 0.5 : 0.4, 0, -1);
        EXPECT_NEAR(path->getLength(), 200 * M_PI, 200 * M_PI * 0.01) << type;
        for (const vxSegment *s : path->getSegments()) {
            EXPECT_NEAR(s->handleOut.dot(s->point) / s->handleOut.getLength(), 0, 1.0)
                << type; // across the radius
            EXPECT_LT(s->handleIn.getDistance(s->handleOut.negate()), 1e-9) << type;
        }
    }
}

TEST(Smoothing, ranges)
{
    const struct {
        bool closed;
        int from, to;
        /** Per segment: i handle in set, o handle out set. */
        const char *set;
    } rows[] = {
        { false, 0, -1, "o|io|io|io|io|i" },
        { false, 1, 3, "|o|io|i||" },
        { false, 3, 1, "|o|io|i||" },
        { false, 2, 2, "|||||" },
        { true, 0, 5, "o|io|io|io|io|i" },
        { true, 0, -1, "io|io|io|io|io|io" },
        { true, 4, 1, "io|i|||o|io" },
        { true, -2, 1, "io|i|||o|io" },
        { true, 2, -2, "||o|io|i|" },
        { true, INT_MAX, 1, "|||||" },
        { false, INT_MIN, INT_MAX, "o|io|io|io|io|i" },
    };
    for (const auto &row : rows) {
        for (int type : { 1, 2, 3, 4 }) {
            const vxRef<vxPath> path = pathThrough(zigzag, row.closed);
            path->smooth(type, 0.4, row.from, row.to);
            QStringList set;
            for (const vxSegment *s : path->getSegments())
                set << QString(s->handleIn.isZero() ? "" : "i") + (s->handleOut.isZero() ? "" : "o");
            QString expected = row.set;
            // Segment by segment, the ends of an open path lack the neighbour that would give a direction.
            if (type <= 2 && expected.startsWith("o|") && !row.closed)
                expected = "|io|io|io|io|";
            EXPECT_EQ(set.join('|'), expected) << row.closed << row.from << row.to << type;
        }
    }
    const vxRef<vxPath> path = pathThrough(zigzag, false);
    path->smooth(7, 0.5, 0, -1);
    EXPECT_FALSE(path->hasHandles());
}
