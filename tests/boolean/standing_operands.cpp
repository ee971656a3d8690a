#include "support/shapes.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxlocationowner_p.h"
#include "vxmatrix.h"
#include "vxmonoindex_p.h"
#include "vxstandingcurves_p.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using shapes::read;
using shapes::rectangle;
using shapes::XPathPtr;

// A path that was an operand keeps what cleaning it came to. That may never show.

namespace {

struct Answer {
    std::string outline;
    int verdict;
    double area;

    bool operator==(const Answer &other) const
    {
        const bool sameArea = area == other.area || (std::isnan(area) && std::isnan(other.area));
        return outline == other.outline && verdict == other.verdict && sameArea;
    }
};

Answer answer(XPath &a, XPath &b, int operation)
{
    vxBooleanReport report;
    const XPathPtr result(XPath::computeBoolean(&a, &b, operation, report));
    return { shapes::text(*result), int(report.verdict), report.predictedArea };
}

/** All operations on operands that were asked before, against copies that were not. */
void expectAsFresh(XPath &a, XPath &b)
{
    for (int operation = 1; operation <= 4; ++operation) {
        const XPathPtr freshA(a.clone());
        const XPathPtr freshB(b.clone());
        const Answer expected = answer(*freshA, *freshB, operation);
        for (int time = 0; time < 2; ++time)
            EXPECT_TRUE(answer(a, b, operation) == expected) << "operation " << operation;
    }
}

/** A shape after so many steps of a drag across its place. */
XPathPtr dragged(const std::string &shape, int steps)
{
    XPathPtr path = read(shape);
    const vxRect box = path->getBounds(vxBoundOpt::geometric(), vxStyle());
    const vxMatrix shift(1, 0, 0, 1, 0.07 * steps * box.width, 0.03 * steps * box.height);
    path->transformContent(&shift);
    return path;
}

/** Holds the pieces and lengths of a divided copy that standing gives against those that are computed. */
void expectAsComputed(const XPath &copy, vx::StandingCurves &standing)
{
    vx::MonoIndex kept, computed;
    for (const vxPath *child : copy.children) {
        kept.append(*child, &standing);
        computed.append(*child);
    }
    ASSERT_EQ(kept.size(), computed.size());
    EXPECT_EQ(kept.largestCoordinate(), computed.largestCoordinate());
    EXPECT_EQ(kept.curvesWithoutReach(), computed.curvesWithoutReach());
    for (int i = 0; i < kept.size(); ++i) {
        const vx::Box &reach = computed.reach(i);
        EXPECT_EQ(kept.curveOf(i), computed.curveOf(i));
        EXPECT_EQ(kept.reach(i).minX, reach.minX);
        EXPECT_EQ(kept.reach(i).maxY, reach.maxY);
        const vxPoint beside(reach.minX, (reach.minY + reach.maxY) / 2);
        EXPECT_EQ(kept.winding(beside, false).winding, computed.winding(beside, false).winding);
    }
    standing.giveLengths(copy);
    for (const vxCurve *curve : copy.getCurves())
        EXPECT_EQ(curve->getLength(), vx::length(curve->_cubic()));
}

} // namespace

TEST(StandingOperands, give_what_fresh_ones_give)
{
    for (const shapes::Case &c : shapes::cases()) {
        SCOPED_TRACE(c.id);
        const XPathPtr a = read(c.a);
        const XPathPtr b = read(c.b);
        expectAsFresh(*a, *b);
        a->evenOdd = b->evenOdd = false;
        expectAsFresh(*a, *b);
    }
}

TEST(StandingOperands, notice_every_change)
{
    // Clean contours: an outline, a hole, an island in it, a vertex too many.
    const XPathPtr a = read(rectangle(0, 0, 100, 100) + shapes::ellipse(50, 50, 40, 40) +
                            "M 40 40 L 50 40 L 60 40 L 60 60 L 40 60 Z");
    const XPathPtr b = read(shapes::ellipse(90, 60, 50, 45));
    const auto moveVertex = [&] {
        a->children[1]->getFirstSegment()->setPoint(vxPoint(140, 50)); // now it crosses the outline
        a->children[1]->_changed();
    };
    const struct {
        const char *name;
        std::function<void()> change;
    } changes[] = {
        { "nothing", [] {} },
        { "a vertex moved", moveVertex },
        { "turned round", [&] { a->children[2]->reverse(); } },
        { "the other rule", [&] { a->evenOdd = false; } },
        { "declared clockwise", [&] { a->children[2]->setClockwise(true); } },
        { "and back", [&] { a->evenOdd = true; } },
        { "opened", [&] { a->children[2]->setClosed(false); } },
        { "a contour more", [&] { a->addChild(read(rectangle(-50, 20, 70, 9))->children[0]->clone()); } },
        { "a contour less", [&] { a->removeChildren(1, 2); } },
        { "the same again", [&] { a->addChild(a->children[0]->clone()); } },
        { "none left", [&] { a->removeChildren(); } },
    };
    for (const auto &step : changes) {
        SCOPED_TRACE(step.name);
        step.change();
        expectAsFresh(*a, *b);
    }
}

TEST(StandingOperands, notice_what_a_setter_tells_nobody)
{
    const std::string square = rectangle(0, 0, 10, 10);
    struct {
        const char *name;
        std::string a;
        int vertex;
        vxPoint moved;
        std::string expected;
    } const rows[] = {
        { "into the other", square, 0, { -10, 0 }, "M -10 0 L 10 0 L 10 10 L 0 10 Z " },
        { "out of the old box", square, 2, { 100, 100 }, "M 0 0 L 10 0 L 100 100 L 0 10 Z " },
        { "across itself", square, 3, { 12, 4 }, "M 0 0 L 10 0 L 10 10 L 12 4 Z " },
        { "by a sign", rectangle(5, 5, 10, 10), 0, { -5, -5 }, "M -5 -5 L 15 5 L 15 15 L 5 15 Z " },
        { "a crossing away",
          "M 0 0 L 10 10 L 10 0 L 0 10 Z ",
          1,
          { -5, 5 },
          "M 0 0 L -5 5 L 10 0 L 0 10 Z " },
        { "onto a line",
          "M 0 0 L 10 -5 L 20 0 L 20 20 L 0 20 Z ",
          1,
          { 10, 0 },
          "M 0 0 L 10 0 L 20 0 L 20 20 L 0 20 Z " },
    };
    const XPathPtr b = read(rectangle(5, 5, 50, 50));
    for (const auto &row : rows) {
        for (int calls = 0; calls < 3; ++calls) {
            SCOPED_TRACE(row.name + std::string(" after calls: ") + std::to_string(calls));
            const XPathPtr a = read(row.a);
            for (int i = 0; i < calls; ++i)
                answer(*a, *b, 2);
            a->getBounds(vxBoundOpt::geometric(), vxStyle());
            a->children.first()->getSegments().at(row.vertex)->setPoint(row.moved);
            const XPathPtr clone(a->clone());
            const XPathPtr expected = read(row.expected);
            const Answer right = answer(*expected, *b, 1);
            EXPECT_TRUE(answer(*clone, *b, 1) == right);
            EXPECT_TRUE(answer(*a, *b, 1) == right);
            EXPECT_EQ(shapes::text(*clone->reduce(true)), shapes::text(*expected->reduce(true)));
        }
    }
}

TEST(StandingOperands, remember_which_contours_dropped_out)
{
    const std::string large = rectangle(0, 0, 10, 10);
    const std::string twice = rectangle(20, 0, 8, 8) + rectangle(20, 0, 8, 8);
    const std::string small = rectangle(40, 0, 6, 6);
    const std::string point = "M 15 2 L 15 2 Z";
    const XPathPtr band = read(rectangle(-5, -5, 60, 9));
    for (const std::string &shape :
         { large + twice + small, twice + small, small + twice + large, point + large, small + point + large,
           large + point, point + twice + large + point + small, twice, point }) {
        SCOPED_TRACE(shape);
        for (bool evenOdd : { true, false }) {
            const XPathPtr a = read(shape);
            a->evenOdd = evenOdd;
            expectAsFresh(*a, *band);
            expectAsFresh(*band, *a);
        }
    }
}

TEST(StandingOperands, stay_while_the_other_is_dragged)
{
    for (const shapes::Case &c : shapes::cases({ "icons", "overlap" })) {
        SCOPED_TRACE(c.id);
        const XPathPtr a = read(c.a);
        for (int step = 0; step < 4; ++step) {
            const XPathPtr b = dragged(c.b, step);
            expectAsFresh(*a, *b);
            expectAsFresh(*b, *a);
        }
    }
}

TEST(StandingOperands, keep_what_is_true_of_undivided_curves)
{
    int whole = 0;
    int divided = 0;
    for (const shapes::Case &c : shapes::cases()) {
        SCOPED_TRACE(c.id);
        const XPathPtr a = read(c.a);
        vx::StandingCurves standing;
        for (int step = 0; step < 3; ++step) {
            const XPathPtr b = dragged(c.b, step);
            const XPathPtr copy(a->clone());
            const QList<vxCurveLocation *> crossings = copy->getCrossings(b.get());
            const vx::LocationOwner owner(crossings);
            standing.number(*copy);
            copy->divideLocations(vxCurveLocation::expand(crossings), 0);
            standing.numberRest();
            for (const vxCurve *curve : copy->getCurves())
                ++(standing.of(*curve) ? whole : divided);
            expectAsComputed(*copy, standing);
        }
    }
    EXPECT_GT(whole, 1000);
    EXPECT_GT(divided, 1000);
}
