#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

TEST(Drawing, closing_snaps_or_draws_back_to_the_start)
{
    const char *rows[][2] = {
        { "M 0 0 L 50 0 L 0.5 -0.5", "M 0 0 L 50 0 L 0 0 Z" },
        { "M 0 0 L 50 0 L 0 1", "M 0 0 L 50 0 L 0 1 L 0 0 Z" },
        { "M 3 4 C 9 9 1 9 3.9 4.9", "M 3 4 C 9 9 1 9 3 4 Z" },
        { "M 7 7", "M 7 7" },
        { "M 0 0 L 9 0 L 0 0 Z", "M 0 0 L 9 0 L 0 0 Z" },
        { "L 9 0 L 9 9", "L 9 0 L 9 9 L 0 0 Z" },
    };
    for (const auto &row : rows) {
        PZPath path = read(row[0]);
        path.closeSubpath();
        EXPECT_EQ(text(path), row[1]);
    }
}

TEST(Drawing, first_points_continue_an_open_subpath)
{
    const QPointF line[] = { { 10, 0 }, { 20, 0 }, { 20.999, 0.999 }, { 30, 0 } };
    const QPointF curve[] = { { 30.4, 0 }, { 40, 0 }, { 50, 10 }, { 60, 10 }, { 70, 0 }, { 80, 0 } };
    const QPoint integers[] = { { 1, 2 }, { 3, 4 } };
    PZPath path;
    path.addLine(0, 0, 10, 0);
    path.addLines(line, 4);
    path.addBeziers(curve, 6); // joins at 30; the two points behind the triple are no cubic
    path.addBezier(QPointF(90, 0), QPointF(91, 1), QPointF(92, 2), QPointF(93, 3));
    path.closeSubpath();
    path.addLines(integers, 2);
    path.addLines(line, 0);
    path.addBeziers(nullptr, 4);
    EXPECT_EQ(text(path), "M 0 0 L 10 0 L 20 0 L 30 0 C 40 0 50 10 60 10 L 90 0 C 91 1 92 2 93 3 L 0 0 Z "
                          "M 1 2 L 3 4");
}

TEST(Drawing, shapes_and_whole_paths)
{
    PZPath path;
    path.moveTo(QPointF(0, 0));
    path.addPolygon(QPolygonF() << QPointF(0.5, 0)
                                << QPointF(9, 9)); // right after a move: connected, unmerged
    path.addRect(QRectF(10, 20, 30, 40));
    path.addPolygon(QPolygonF() << QPointF(1, 1) << QPointF(2, 2));
    EXPECT_EQ(text(path), "M 0 0 L 0.5 0 L 9 9 M 10 20 L 40 20 L 40 60 L 10 60 L 10 20 Z M 1 1 L 2 2");

    PZPath twice = read("M 10.5 0 L 20 0");
    twice.addPath(read("M 20.5 0 L 30 0"), true);
    twice.addPath(twice, true);
    twice.addPath(twice, false);
    EXPECT_EQ(text(twice), "M 10.5 0 L 20 0 L 30 0 L 10.5 0 L 20 0 L 30 0 "
                           "M 10.5 0 L 20 0 L 30 0 L 10.5 0 L 20 0 L 30 0");
}
