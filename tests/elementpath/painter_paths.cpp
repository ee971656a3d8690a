#include "elements.h"

#include <QPainterPath>

#include <gtest/gtest.h>

using namespace elements;

TEST(PainterPaths, elements_survive_the_way_there_and_back)
{
    const char *rows[][2] = {
        { "M 1.25 2 L 3 4 C 5 6 7 8 9 10 M 20 20 L 30 20", "M 1.25 2 L 3 4 C 5 6 7 8 9 10 M 20 20 L 30 20" },
        { "M 0 0 L 10 0 L 10 10 Z", "M 0 0 L 10 0 L 10 10 L 0 0" }, // closing is no element of a painter path
        { "M 0 0 D 5 5 L 10 0 D 1 1", "M 0 0 L 10 0" },
    };
    for (const auto &row : rows) {
        QPainterPath pp;
        pp.addRect(0, 0, 1, 1); // replaced
        read(row[0]).toPainterPath(pp);
        PZPath back;
        const int added = back.fromPainterPath(pp);
        EXPECT_EQ(added, back.count());
        EXPECT_EQ(text(back), row[1]);
    }
}

TEST(PainterPaths, rounding_takes_halves_upward)
{
    PZPath path = read("M -2.5 2.5 L -0.5 0.49 C 10.5 -1.4 -1.6 7.5 1e12 -3e9 L -2.5 2.5 Z");
    QPainterPath pp;
    path.toPainterPathWithRoundValue(pp);
    PZPath replayed;
    replayed.fromPainterPath(pp);
    EXPECT_EQ(text(replayed), "M -2 3 L 0 0 C 11 -1 -2 8 1e+12 -3e+09 L -2 3");
    path.roundData();
    EXPECT_EQ(path.at(0).toPoint(), QPointF(-2, 3));
    EXPECT_EQ(path.last().toPoint(), QPointF(-2.5, 2.5)); // a close element keeps its point
}
