#include "support/shapes.h"

#include "area.h"
#include "vxbooleanreport.h"
#include "vxcurvelocation.h"
#include "vxmatrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>

using shapes::Case;
using shapes::Outline;
using shapes::read;
using shapes::text;
using shapes::XPathPtr;

namespace {

/** All four results for one case, by operation code: 1 intersect, 2 unite, 3 subtract, 4 exclude. */
struct Results {
    XPathPtr a, b, of[5];
    vxBooleanReport reports[5];

    Results(
        const std::string &dataA, const std::string &dataB,
        const std::function<void(XPath &)> &change = [](XPath &) {})
        : a(read(dataA)), b(read(dataB))
    {
        change(*a);
        change(*b);
        for (int op = 1; op <= 4; ++op)
            of[op].reset(XPath::computeBoolean(a.get(), b.get(), op, reports[op]));
    }
};

/** Draws every contour from another vertex and the other way round. */
void redraw(XPath &path)
{
    for (vxPath *contour : qAsConst(path.children)) {
        QList<vxSegment *> segments = contour->getSegments();
        std::rotate(segments.begin(), segments.begin() + segments.size() / 3, segments.end());
        contour->setSegments(segments);
        contour->reverse();
    }
}

std::function<void(XPath &)> mapping(double scale, double dx, double dy)
{
    vxMatrix matrix;
    matrix.translate(dx, dy);
    matrix.scale(scale, scale);
    return [matrix](XPath &path) { path.transformContent(&matrix); };
}

std::string pathsOf(const Case &c)
{
    return c.id + "\nA: " + c.a + "\nB: " + c.b + "\n";
}

} // namespace

TEST(LawsOnSamples, operands_stay_untouched_and_the_same_call_gives_the_same_bits)
{
    for (const Case &c : shapes::corpusCases()) {
        const XPathPtr a = read(c.a);
        const XPathPtr b = read(c.b);
        for (int op = 1; op <= 4; ++op) {
            const XPathPtr first(XPath::computeBoolean(a.get(), b.get(), op));
            const XPathPtr second(XPath::computeBoolean(a.get(), b.get(), op));
            EXPECT_EQ(text(*first), text(*second)) << "operation " << op << " of " << c.id;
        }
        EXPECT_EQ(text(*a), text(*read(c.a))) << c.id;
        EXPECT_EQ(text(*b), text(*read(c.b))) << c.id;
    }
}

TEST(LawsOnSamples, areas_do_not_depend_on_place_scale_start_direction_or_order)
{
    struct {
        const char *name;
        std::function<void(XPath &)> change;
        double scale;
        bool swapped;
    } const rows[] = {
        { "moved", mapping(1, 512, -1024), 1, false },
        { "doubled", mapping(2, 0, 0), 2, false },
        { "a_quarter", mapping(0.25, 0, 0), 0.25, false },
        { "redrawn", redraw, 1, false },
        { "swapped", [](XPath &) {}, 1, true },
    };
    for (const Case &c : shapes::corpusCases()) {
        const Results plain(c.a, c.b);
        const Outline whole(*plain.of[2]);
        const double box = (whole.high.x - whole.low.x) * (whole.high.y - whole.low.y);
        for (const auto &row : rows) {
            const Results changed(row.swapped ? c.b : c.a, row.swapped ? c.a : c.b, row.change);
            const double factor = row.scale * row.scale;
            for (int op = 1; op <= 4; ++op) {
                if (row.swapped && op == 3)
                    continue;
                EXPECT_NEAR(filledArea(*changed.of[op]), factor * filledArea(*plain.of[op]),
                            1e-9 * factor * box)
                    << row.name << ", operation " << op << ", " << pathsOf(c);
            }
        }
    }
}

TEST(LawsOnSamples, outlines_do_not_cross_themselves_or_each_other)
{
    for (const Case &c : shapes::cases()) {
        const Results found(c.a, c.b);
        for (int op = 1; op <= 4; ++op) {
            const QList<vxCurveLocation *> crossings = found.of[op]->getCrossings(nullptr);
            EXPECT_TRUE(crossings.isEmpty()) << "operation " << op << ", " << pathsOf(c);
            vxCurveLocation::releaseAll(crossings);
        }
    }
}

TEST(LawsOnSamples, points_are_in_the_result_when_the_operands_say_so)
{
    const int samples = 500;
    const double offTheOutline = 1e-3;
    int tested = 0;
    int results = 0;
    for (const Case &c : shapes::corpusCases()) {
        const Results found(c.a, c.b);
        const Outline a(*found.a);
        const Outline b(*found.b);
        const vxPoint low(std::min(a.low.x, b.low.x), std::min(a.low.y, b.low.y));
        const vxPoint high(std::max(a.high.x, b.high.x), std::max(a.high.y, b.high.y));
        for (int op = 1; op <= 4; ++op) {
            const Outline outline(*found.of[op]);
            ++results;
            shapes::Random random(static_cast<unsigned>(op));
            for (int i = 0; i < samples; ++i) {
                const vxPoint p = random.between(low, high);
                if (!a.isOff(p, offTheOutline) || !b.isOff(p, offTheOutline))
                    continue;
                ++tested;
                const bool inA = a.contains(p);
                const bool inB = b.contains(p);
                const bool expected[] = { inA && inB, inA || inB, inA && !inB, inA != inB };
                ASSERT_EQ(outline.contains(p), expected[op - 1])
                    << "operation " << op << " at (" << p.x << ", " << p.y << ")\n"
                    << pathsOf(c);
            }
        }
    }
    std::printf("%d points tested on %d results\n", tested, results);
    EXPECT_GE(results, 80);
    EXPECT_GE(tested, results * samples * 9 / 10);
}
