#include "support/shapes.h"

#include "vxarrangement_p.h"
#include "vxarrangementview.h"
#include "vxcubic_p.h"
#include "vxruntree_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using shapes::Outline;
using shapes::read;

namespace {

vx::Cubic curveOf(const vxArrangementView::Stretch &stretch)
{
    vx::Cubic c;
    std::copy(stretch.values.begin(), stretch.values.end(), c.v);
    return c;
}

/** Holds what each stretch says of its two sides against points beside its middle; returns how many told. */
int expectSides(const std::string &dataA, const std::string &dataB, bool evenOdd = true)
{
    const auto a = read(dataA);
    const auto b = read(dataB);
    a->evenOdd = b->evenOdd = evenOdd;
    const Outline outlineA(*a);
    const Outline outlineB(*b);
    const vxPoint size = outlineA.high.subtract(outlineA.low).add(outlineB.high.subtract(outlineB.low));
    const double step = 1e-6 * size.getLength();
    int told = 0;
    const vxArrangementView view = vxArrangementView::of(*a, *b, 2);
    for (const vxArrangementView::Stretch &stretch : view.stretches) {
        const vx::Cubic c = curveOf(stretch);
        if (vx::length(c) < 10 * step) // slivers have no place to look at
            continue;
        const vxPoint on = vx::pointAt(c, 0.5);
        const vxPoint tangent = vx::tangentAt(c, 0.5).multiply(step);
        for (const int side : { -1, 1 }) { // y points down: the right is clockwise of the direction
            const vxPoint p(on.x - side * tangent.y, on.y + side * tangent.x);
            if (!outlineA.isOff(p, step / 2) || !outlineB.isOff(p, step / 2))
                continue;
            ++told;
            const int expected = (outlineA.contains(p) ? 1 : 0) + (outlineB.contains(p) ? 2 : 0);
            EXPECT_EQ(side > 0 ? stretch.filledRight : stretch.filledLeft, expected)
                << p.x << ' ' << p.y << "\nA: " << dataA << "\nB: " << dataB;
        }
    }
    return told;
}

/** Discs, squares and triangles on a coarse grid: many share edges, lie on each other or cancel. */
std::string scatter(shapes::Random &random, int count)
{
    const auto onGrid = [&](double low, double high) { return 10 * std::round(random.between(low, high)); };
    const auto point = [](double x, double y) { return std::to_string(x) + ' ' + std::to_string(y) + ' '; };
    std::string data;
    for (int i = 0; i < count; ++i) {
        const double x = onGrid(0, 12), y = onGrid(0, 12), size = onGrid(1, 3);
        if (i % 3 == 0)
            data += shapes::ellipse(x, y, size, size);
        else if (i % 3 == 1)
            data += shapes::rectangle(x, y, size, onGrid(1, 3));
        else
            data += "M " + point(x, y) + "L " + point(x + 30, y + 10) + "L " + point(x + 10, y + 30) + 'Z';
        data += ' ';
    }
    return data;
}

} // namespace

TEST(Arrangement, knows_what_is_filled_on_both_sides)
{
    int told = 0;
    for (const shapes::Case &c : shapes::cases({ "overlap" }))
        told += expectSides(c.a, c.b);
    shapes::Random random(7);
    for (int count : { 3, 25, 90 }) // few contours are looked through, many are indexed
        told += expectSides(scatter(random, count), scatter(random, count));
    // Windings, not parities: one simple contour is filled alike by both rules.
    const std::string comb =
        "M 0 0 L 90 0 L 90 60 L 80 10 L 70 60 L 60 10 L 50 60 L 40 10 L 30 60 L 20 10 L 0 60 Z";
    for (int i = 0; i < 20; ++i)
        told += expectSides(comb, scatter(random, 1), false);
    EXPECT_GT(told, 3000);
}

TEST(Arrangement, tells_from_bounds_what_it_would_tell_from_the_area_that_was_moved)
{
    const std::string outline = shapes::ellipse(100, 100, 90, 60) + " " + shapes::rectangle(300, 40, 80, 50);
    for (double off : { 0.0, 1e-12, 3e-10, 1e-8, 1e-6 }) {
        const auto a = read(outline);
        const auto b =
            read(shapes::ellipse(100 + off, 100, 90, 60) + " " + shapes::rectangle(300, 40, 80, 50));
        const auto unite = vx::Operation::Unite;
        const auto movedAtMost = [&](double area) {
            vx::Arrangement asked({ a.get(), b.get() });
            asked.solve(unite);
            return asked.movedAtMost(area, unite);
        };
        // Once asked about an area that bounds leave open, it measures: here that is on the way.
        vx::Arrangement measured({ a.get(), b.get() });
        measured.solve(unite);
        double less = 1e-40;
        double moved = 1e6;
        for (int i = 0; i < 60; ++i) {
            const double area = std::sqrt(less * moved);
            (measured.movedAtMost(area, unite) ? moved : less) = area;
        }
        EXPECT_LT(moved, 1e-3 + 1e3 * off);
        for (double factor : { 1e-3, 0.5, 0.999, 1.001, 2.0, 1e3 })
            EXPECT_EQ(movedAtMost(factor * moved), factor > 1) << off << ' ' << moved << ' ' << factor;
    }
}

TEST(RunTree, finds_the_pairs_that_come_near)
{
    shapes::Random random(9);
    for (int contours : { 1, 5, 200 }) {
        std::vector<vx::Box> boxes;
        std::vector<int> starts{ 0 };
        for (int k = 0; k < contours; ++k) {
            vxPoint at = random.between(vxPoint(0, 0), vxPoint(100, 100));
            for (int i = int(random.between(0, 60)); i > 0; --i) {
                const vxPoint next = at.add(random.between(vxPoint(-2, -2), vxPoint(2, 2)));
                boxes.push_back({ std::min(at.x, next.x), std::min(at.y, next.y), std::max(at.x, next.x),
                                  std::max(at.y, next.y) });
                at = next;
            }
            starts.push_back(int(boxes.size()));
        }
        if (boxes.size() > 1)
            boxes[boxes.size() / 2].minX = std::nan("");
        const double slack = 0.5;
        const vx::RunTree tree(boxes, starts);
        std::vector<std::pair<int, int>> expected;
        for (int i = 0; i < int(boxes.size()); ++i) {
            const vx::Box &a = boxes[size_t(i)];
            for (int j = i + 1; j < int(boxes.size()); ++j) {
                const vx::Box &b = boxes[size_t(j)];
                if (!(b.maxX + slack < a.minX || a.maxX + slack < b.minX || b.maxY + slack < a.minY ||
                      a.maxY + slack < b.minY))
                    expected.emplace_back(i, j);
            }
        }
        std::vector<std::pair<int, int>> found;
        tree.visitPairs(slack, [&](int i, int j) { found.emplace_back(i, j); });
        std::sort(found.begin(), found.end());
        ASSERT_EQ(found, expected);
    }
}
