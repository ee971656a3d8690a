#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

TEST(Normalising, clean_up_leaves_one_move_for_each_subpath)
{
    const char *rows[][2] = {
        { "L 1 1 M 2 2 M 3 3 L 4 4", "M 3 3 L 4 4" },
        { "M 0 0 L 5 5 L 5 5 M 1 1 M 2 2", "M 0 0 L 5 5 L 5 5 M 2 2" },
        { "", "" },
    };
    for (const auto &row : rows) {
        PZPath path = read(row[0]);
        path.cleanUp();
        EXPECT_EQ(text(path), row[1]);
    }
}

TEST(Normalising, reversing_turns_every_subpath_in_place)
{
    PZPath path = read("M 0 0 C 1 5 4 5 5 0 L 9 0 M 20 0 L 30 0 L 30 9 L 20 0 Z M 40 0 C 41 1 42 2 43 3");
    path[0].headX = 77; // belongs to the front end, wherever the points go
    const PZPath before = path;
    path.reverse();
    EXPECT_EQ(text(path), "M 9 0 L 5 0 C 4 5 1 5 0 0 M 20 0 L 30 9 L 30 0 L 20 0 Z M 43 3 C 42 2 41 1 40 0");
    path.reverse();
    EXPECT_EQ(path, before);
    path = read("M 1 1 L 5 5 Z Z L 3 3 L 4 4"); // the second Z begins a subpath of its own
    path.reverse();
    EXPECT_EQ(text(path), "M 5 5 L 1 1 Z(1 1) Z(4 4) L 3 3 L 1 1");
    PZPath broken = read("Z Z D 1 1 D 2 2 D 3 3 D 4 4 Z");
    broken.reverse();
    EXPECT_EQ(broken.count(), 7);
}

TEST(Normalising, orientation_of_subpaths)
{
    const QString outer = "M 0 0 L 90 0 L 90 90 L 0 90 L 0 0 Z ";
    const QString opposite = "M 20 20 L 20 60 L 60 60 L 60 20 L 20 20 Z ";
    EXPECT_TRUE(read(outer + opposite).isClockWise());
    EXPECT_FALSE(read(opposite + outer).isClockWise());
    EXPECT_TRUE(PZPath().isClockWise());
    EXPECT_TRUE(read(outer + opposite).isEvenOdd());
    EXPECT_FALSE(read(outer + outer + "M 20 20 L 20 60 L 60 60").isEvenOdd()); // the open one takes no part
}

TEST(Normalising, open_ends_are_found_one_after_the_other)
{
    const PZPath path =
        read("M 0 0 L 9 0 L 0 9 Z M 1 2 C 3 4 5 6 7 8 M 20 0 L 30 0 Z M 40 0 L 50 5 L 60 6 M 5 5");
    QPointF a, b;
    int index = -3, start = 99;
    EXPECT_EQ(path.getOpenedStart(a, b, index), 4);
    EXPECT_TRUE(a == QPointF(1, 2) && b == QPointF(3, 4));
    EXPECT_EQ(path.getOpenedStart(a, b, index), 11);
    EXPECT_EQ(path.getOpenedStart(a, b, index), -1); // the lone move goes nowhere
    index = 0;
    EXPECT_EQ(path.getOpenedEnd(a, b, index, start), 7);
    EXPECT_TRUE(start == 4 && a == QPointF(5, 6) && b == QPointF(7, 8));
    EXPECT_EQ(path.getOpenedEnd(a, b, index, start), 13);
    index = 1000;
    EXPECT_EQ(path.getOpenedEnd(a, b, index, start), -1);
}

TEST(Normalising, tangents_at_the_ends_in_degrees)
{
    PZPath path = read("M 0 0 L 10 10 M 5 5 C 5 25 40 50 20 50");
    EXPECT_NEAR(path.getTangent(-8, false), 45, 1e-12);
    EXPECT_NEAR(path.getTangent(2, true), 90, 1e-12);
    EXPECT_NEAR(path.getTangent(2, false), 180, 1e-12);
    EXPECT_EQ(path.getTangent(50, true), 0.0);
}
