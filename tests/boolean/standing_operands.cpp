#include "support/shapes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using shapes::read;
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
    const XPathPtr a = read(shapes::rectangle(0, 0, 100, 100) + shapes::ellipse(50, 50, 40, 40) +
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
        { "a contour more",
          [&] { a->addChild(read(shapes::rectangle(-50, 20, 70, 9))->children[0]->clone()); } },
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
