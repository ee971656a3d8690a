#include "support/shapes.h"

#include "vxboxruns_p.h"
#include "vxclusters_p.h"
#include "vxcurvelocation.h"
#include "vxintervalstrips_p.h"
#include "vxlocationowner_p.h"
#include "vxmonoindex_p.h"
#include "vxorderedboxes_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

using shapes::read;
using shapes::XPathPtr;

namespace {

/** All sample shapes of a family in one compound path, so that everything that is indexed is large. */
XPathPtr heap(const std::string &family)
{
    XPathPtr all(new XPath);
    for (const shapes::Case &c : shapes::cases({ family })) {
        all->assign(*read(c.a));
        all->assign(*read(c.b));
    }
    return all;
}

/** A blob for every place of a grid, some of them level rectangles. */
XPathPtr field(int side)
{
    std::string data;
    shapes::Random random(5);
    for (int i = 0; i < side * side; ++i) {
        const double x = i % side * 10;
        const double y = i / side * 10;
        data += i % 3 == 0 ? shapes::rectangle(x, y, 7, 7)
                           : shapes::ellipse(x, y, random.between(1, 9), random.between(1, 9));
        data += " ";
    }
    return read(data);
}

QList<vxMono *> piecesOf(const XPath &path)
{
    QList<vxMono *> pieces;
    for (const vxPath *child : path.children)
        pieces += child->getMonoCurves();
    return pieces;
}

/**
 * Anywhere, and where outlines are hard to count: at the ends of pieces, on their levels, a rounding beside.
 */
std::vector<vxPoint> probes(const XPath &path, const QList<vxMono *> &pieces)
{
    const vxRect box = path.getBounds(vxBoundOpt::geometric(), vxStyle());
    shapes::Random random(3);
    std::vector<vxPoint> points;
    for (int i = 0; i < 150; ++i)
        points.push_back(random.between(box.topLeft(), box.bottomRight()));
    for (int i = 0; i < 300; ++i) {
        const vxMono *piece = pieces.at(int(random.between(0, pieces.size() - 0.5)));
        const double scales[] = { 1e-13, 1e-12, 1e-10, 1e-7 };
        const double beside = (i % 5 - 2) * scales[i % 4];
        const int end = i % 3 == 0 ? 6 : 0;
        const vxPoint p(piece->values[end], piece->values[end + 1]);
        points.emplace_back(p.x, p.y + beside);
        points.emplace_back(random.between(box.x, box.right()), p.y + beside);
        points.emplace_back(p.x + beside, random.between(box.y, box.bottom()));
    }
    return points;
}

std::vector<int> piecesNear(const vxPoint &p, double slack, const vx::MonoIndex &index)
{
    std::vector<int> near;
    for (int i = 0; i < index.size(); ++i) {
        const vx::Box &reach = index.reach(i);
        if (p.x >= reach.minX - slack && p.x <= reach.maxX + slack && p.y >= reach.minY - slack &&
            p.y <= reach.maxY + slack)
            near.push_back(i);
    }
    return near;
}

bool operator==(const vxWinding &a, const vxWinding &b)
{
    return a.winding == b.winding && a.contour == b.contour;
}

} // namespace

TEST(IndexedEqualsPlain, winding_counts)
{
    std::vector<XPathPtr> paths;
    for (const char *family : { "icons", "glyphs", "overlap", "degenerate", "maps", "hard" })
        paths.push_back(heap(family));
    paths.push_back(field(20));
    for (const shapes::Case &c : shapes::cases())
        paths.push_back(read(c.a));
    int compared = 0;
    for (const XPathPtr &path : paths) {
        const QList<vxMono *> pieces = piecesOf(*path);
        vx::MonoIndex index;
        for (const vxPath *child : qAsConst(path->children))
            index.append(*child);
        const vx::MonoIndex listed(pieces);
        std::vector<int> near;
        for (const vxPoint &p : probes(*path, pieces)) {
            for (bool horizontal : { false, true }) {
                const vxWinding plain = XPath::getWinding(p, pieces, horizontal);
                ASSERT_TRUE(index.winding(p, horizontal) == plain) << p.x << ", " << p.y;
                ASSERT_TRUE(listed.winding(p, horizontal) == plain) << p.x << ", " << p.y;
                ASSERT_TRUE(path->getWinding(p, horizontal) == plain) << p.x << ", " << p.y;
                ++compared;
            }
            index.findNear(p, 1e-6, near);
            ASSERT_EQ(near, piecesNear(p, 1e-6, index));
        }
    }
    std::printf("%d counts on %zu paths\n", compared, paths.size());
    EXPECT_GT(compared, 60000);
}

TEST(IndexedEqualsPlain, winding_counts_of_some_of_the_paths)
{
    const XPathPtr first = heap("icons");
    for (const XPathPtr &second : { heap("glyphs"), field(9), read("M 0 0 L 300 0 L 200 1e-9") }) {
        vx::MonoIndex index;
        for (const XPath *path : { first.get(), second.get() }) {
            for (const vxPath *child : qAsConst(path->children))
                index.append(*child);
        }
        const QList<vxMono *> pieces = piecesOf(*second);
        const int begin = index.size() - pieces.size();
        for (const vxPoint &p : probes(*second, pieces)) {
            const bool horizontal = p.x > p.y;
            ASSERT_TRUE(index.winding(p, horizontal, begin, index.size()) ==
                        XPath::getWinding(p, pieces, horizontal));
            ASSERT_TRUE(index.winding(p, horizontal, 0, begin) ==
                        XPath::getWinding(p, piecesOf(*first), horizontal));
        }
    }
}

TEST(IndexedEqualsPlain, a_single_question_is_answered_without_an_index)
{
    for (const shapes::Case &c : shapes::cases()) {
        const XPathPtr path = read(c.b);
        const QList<vxMono *> pieces = piecesOf(*path);
        std::vector<vxPoint> points = probes(*path, pieces);
        points.resize(60);
        std::vector<vxWinding> plain;
        for (const vxPoint &p : points)
            plain.push_back(XPath::getWinding(p, pieces, false));
        for (size_t i = 0; i < points.size(); ++i) {
            for (vxPath *child : qAsConst(path->children))
                child->_changed(); // so that every question is the first
            ASSERT_TRUE(path->getWinding(points[i], false) == plain[i]) << c.id;
        }
    }
}

TEST(IndexedEqualsPlain, winding_counts_follow_edits)
{
    const XPathPtr path = read(shapes::rectangle(0, 0, 10, 10));
    EXPECT_EQ(path->getWinding(vxPoint(5, 5), false).winding, 1);
    path->getFirstChild()->removeSegment(0);
    path->getFirstChild()->removeSegment(0);
    EXPECT_EQ(path->getWinding(vxPoint(5, 5), false).winding, 0);
}

TEST(IndexedEqualsPlain, boxes_in_runs)
{
    shapes::Random random(2);
    for (const int count : { 300, 9001 }) { // a few have no runs
        vx::BoxRuns runs;
        double x = 0;
        double y = 0;
        for (int i = 0; i < count; ++i) {
            x += random.between(-5, 5);
            y += random.between(-5, 5);
            runs.append({ x, y, x + random.between(-1, 9), y + random.between(-1, 9) });
        }
        for (int i = 0; i < 500; ++i) {
            const vxPoint p = random.between({ -60, -60 }, { 60, 60 });
            const auto holds = [&p](const vx::Box &box) {
                return box.minX <= p.x && p.x <= box.maxX && box.minY <= p.y && p.y <= box.maxY;
            };
            const int first = int(random.between(0, count));
            const int last = int(random.between(0, count));
            std::vector<int> plain;
            for (int k = first; k < last; ++k) {
                if (holds(runs[k]))
                    plain.push_back(k);
            }
            std::vector<int> found;
            runs.query(first, last, holds, [&found](int k) { found.push_back(k); });
            ASSERT_EQ(found, plain) << first << " to " << last;
        }
    }
}

namespace {

using Interval = vx::IntervalStrips::Interval;

/** Asks for many values; returns how many intervals were looked at. */
int lookThroughStrips(const std::vector<Interval> &intervals)
{
    const vx::IntervalStrips strips(int(intervals.size()), [&](int i) { return intervals[size_t(i)]; });
    int looked = 0;
    int answered = 0;
    for (double value = -10; value < 150; value += 0.5) {
        const double slack = 1e-3;
        const auto meets = [&](const Interval &i) { return i.lo <= value + slack && value - slack <= i.hi; };
        std::vector<int> plain;
        for (size_t i = 0; i < intervals.size(); ++i) {
            if (meets(intervals[i]))
                plain.push_back(int(i));
        }
        std::vector<int> found;
        const bool isAnswered = strips.visitAround(value - slack, value + slack, [&](int i) {
            ++looked;
            if (meets(intervals[size_t(i)]))
                found.push_back(i);
        });
        EXPECT_EQ(found, isAnswered ? plain : std::vector<int>()) << value;
        answered += isAnswered;
    }
    EXPECT_GT(answered, 300);
    return looked;
}

} // namespace

TEST(IndexedEqualsPlain, intervals_in_strips)
{
    shapes::Random random(6);
    std::vector<Interval> some;
    for (int i = 0; i < 400; ++i) {
        const double lo = random.between(0, 90);
        some.push_back({ lo, lo + random.between(0, i % 9 == 0 ? 50 : 2) });
    }
    EXPECT_LT(lookThroughStrips(some), 320 * 400 / 5) << "of each strip a few";
    lookThroughStrips({});
    const std::vector<Interval> oddities[] = {
        { { qQNaN(), 1 }, { 3, 2 } }, { { -qInf(), 5 }, { 20, qInf() } }, { { 1e-320, 2e-320 } }, { { 7, 7 } }
    };
    for (std::vector<Interval> intervals : oddities) {
        lookThroughStrips(intervals);
        intervals.insert(intervals.end(), some.begin(), some.end());
        lookThroughStrips(intervals);
    }
}

namespace {

/** Small boxes: anywhere, or one behind the other. */
std::vector<vx::Box> boxesOf(int count, bool scattered)
{
    shapes::Random random(9);
    std::vector<vx::Box> boxes;
    double x = 0;
    double y = 0;
    for (int i = 0; i < count; ++i) {
        x = scattered ? random.between(0, 100) : x + random.between(-1, 2);
        y = scattered ? random.between(0, 100) : y + random.between(-2, 2);
        boxes.push_back({ x, y, x + random.between(0, 9), y + random.between(0, 9) });
    }
    return boxes;
}

vx::Box aroundSome(const std::vector<vx::Box> &boxes, size_t first)
{
    vx::Box around = boxes[first];
    for (size_t i = first + 1; i < std::min(first + 4, boxes.size()); ++i) {
        around = { std::min(around.minX, boxes[i].minX), std::min(around.minY, boxes[i].minY),
                   std::max(around.maxX, boxes[i].maxX), std::max(around.maxY, boxes[i].maxY) };
    }
    return around;
}

void expectFoundAsByLooking(const std::vector<vx::Box> &boxes, double slack)
{
    vx::OrderedBoxes ordered(boxes);
    const auto boxAt = [&boxes](size_t i) -> const vx::Box & { return boxes[i]; };
    vx::BoxLookup<decltype(boxAt)> inTurn(boxes.size(), boxAt);
    const int count = int(boxes.size());
    for (int i = 0; i < count; ++i) {
        std::vector<int> plain;
        for (int j = i; j < count; ++j) {
            const vx::Box &a = boxes[size_t(i)];
            const vx::Box &b = boxes[size_t(j)];
            if (!(a.maxX + slack < b.minX || b.maxX + slack < a.minX || a.maxY + slack < b.minY ||
                  b.maxY + slack < a.minY))
                plain.push_back(j);
        }
        std::vector<int> found;
        ordered.query(boxes[size_t(i)], slack, i, [&found](int j) { found.push_back(j); });
        ASSERT_EQ(found, plain) << "box " << i << " of " << count;
        found.clear();
        inTurn.queryConsecutive(
            boxes[size_t(i)], slack, i, [&] { return aroundSome(boxes, size_t(i)); },
            [&found](int j) { found.push_back(j); });
        ASSERT_EQ(found, plain) << "in turn, box " << i << " of " << count;
    }
}

} // namespace

TEST(IndexedEqualsPlain, boxes_within_reach)
{
    for (int count : { 5, 100, 700, 1025 }) {
        for (bool scattered : { false, true }) {
            std::vector<vx::Box> boxes = boxesOf(count, scattered);
            expectFoundAsByLooking(boxes, 1.5);
            boxes[2].minX = qQNaN(); // reaches everything
            boxes[4] = { -qInf(), 50, qInf(), 51 };
            expectFoundAsByLooking(boxes, 0);
        }
    }
}

TEST(IndexedEqualsPlain, one_box_around_all_others_does_not_make_their_search_long)
{
    constexpr int count = 4000; // the teeth of a comb, behind its back
    std::vector<vx::Box> boxes{ { 0, 0, count, 10 } };
    for (int i = 1; i < count; ++i)
        boxes.push_back({ i - 0.75, 2, i - 0.25, 8 });
    int looked = 0;
    const auto boxAt = [&](size_t i) -> const vx::Box & { return ++looked, boxes[i]; };
    vx::BoxLookup<decltype(boxAt)> lookup(boxes.size(), boxAt);
    int found = 0;
    for (int i = 0; i < count; ++i) {
        lookup.queryConsecutive(
            boxes[size_t(i)], 0, i, [&] { return aroundSome(boxes, size_t(i)); }, [&found](int) { ++found; });
    }
    EXPECT_EQ(found, count + count - 1) << "each itself, and the first all others";
    EXPECT_LT(looked, 100 * count);
}

TEST(IndexedEqualsPlain, groups_of_points)
{
    shapes::Random random(29);
    for (int round = 0; round < 60; ++round) {
        // From lone points to crowds of many within the distance, which is 1; some twice.
        const double side = std::pow(2.0, random.between(0, 6));
        std::vector<vxPoint> points;
        for (int i = 0; i < 200; ++i)
            points.push_back(i % 10 == 9 ? points[size_t(i / 2)] : random.between({ -side, 0 }, { 0, side }));
        std::vector<int> plain(points.size());
        std::iota(plain.begin(), plain.end(), 0);
        for (size_t i = 0; i < points.size(); ++i) {
            for (size_t k = 0; k < i; ++k) {
                const int a = plain[i];
                const int b = plain[k];
                if (points[i].isClose(points[k], 1))
                    std::replace(plain.begin(), plain.end(), std::max(a, b), std::min(a, b));
            }
        }
        ASSERT_EQ(vx::clusters(points, 1), plain) << "round " << round;
    }
}

TEST(IndexedEqualsPlain, both_sides_of_every_crossing_in_order)
{
    for (const shapes::Case &c : shapes::cases()) {
        const XPathPtr a = read(c.a);
        const XPathPtr b = read(c.b);
        const QList<vxCurveLocation *> found = a->getCrossings(b.get());
        const vx::LocationOwner owner(found);
        QList<vxCurveLocation *> plain = found;
        for (int i = found.size() - 1; i >= 0; --i)
            vxCurveLocation::insert(plain, found.at(i)->intersection, false);
        EXPECT_EQ(vxCurveLocation::expand(found), plain) << c.id;
    }
}
