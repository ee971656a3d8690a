#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

namespace {

QPointF head(const PZPath &path, int i)
{
    return QPointF(path.at(i).headX, path.at(i).headY);
}

} // namespace

TEST(LineHeads, tips_are_kept_where_the_line_was_trimmed)
{
    PZPath path = read("M 5 5 L 1005 5.5");
    EXPECT_TRUE(path.setLineHead(10, 20));
    EXPECT_EQ(path.at(0).y, 5); // its step of 0.005 is dropped
    EXPECT_NEAR(path.at(0).x, 15, 1e-5);
    EXPECT_EQ(head(path, 0), QPointF(5, 5));
    EXPECT_EQ(head(path, 1), QPointF(1005, 5.5));
    // A subpath that lost its first curve leaves no tip, so the next one's tip lands on it.
    path = read("M 0 0 C 1 1 2 2 3 3 L 90 3 M 0 50 L 90 50");
    path.setLineHead(10, 0);
    EXPECT_EQ(text(path), "M 3 3 L 90 3 M 10 50 L 90 50");
    EXPECT_EQ(head(path, 0), QPointF(0, 50));
}

TEST(LineHeads, trimmed_and_dropped_segments)
{
    const struct {
        const char *before;
        double start, end;
        bool found;
        const char *after;
    } rows[] = {
        { "M 0 0 L 100 0", 10, 10, true, "M 10 0 L 90 0" },
        { "M 0 0 L 10 0 L 10 50", 10, 0, true, "M 10 0 L 10 50" },
        { "M 0 0 L 50 0 C 51 1 52 2 53 3", 0, inf, true, "M 0 0 L 50 0" },
        { "M 0 0 L 5 0 M 0 20 L 50 20 M 9 9 L 9 0 L 0 9 Z M 0 40 L 5 40 L 50 40", 10, 10, true,
          "M 10 20 L 40 20 M 9 9 L 9 0 L 0 9 Z M 5 40 L 40 40" },
        { "M 0.1 0 L 50 0 L 50 0.3 L 0.1 0 Z", 10, 10, false, "M 0.1 0 L 50 0 L 50 0.3 L 0.1 0 Z" },
        { "M 3 3 M 0 0 L 50 0", 0, undefined, false, "M 3 3 M 0 0 L 50 0" },
        { "M 0 0 D 1 1 D 2 2", 10, 10, true, "M 0 0 D 1 1 D 2 2" },
    };
    for (const auto &row : rows) {
        PZPath path = read(row.before);
        EXPECT_EQ(path.setLineHead(row.start, row.end), row.found) << row.before;
        EXPECT_EQ(text(path), row.after) << row.before;
    }
}

TEST(LineHeads, cuts_within_rounding_of_an_end_keep_the_tips_apart)
{
    const QString curveAndLine = "M 0 0 C 30 0 60 10 100 50 M 0 200 L 250 200";
    PZPath path = read(curveAndLine);
    path.setLineHead(0, 1e-5); // nothing to cut off, but the tip is there
    EXPECT_EQ(text(path), "M 0 0 C 30 0 60 10 100 50 M 0 200 L 250 200");
    EXPECT_EQ(head(path, 3), QPointF(100, 50));
    EXPECT_EQ(head(path, 5), QPointF(250, 200));
    path = read(curveAndLine);
    path.setLineHead(length(read("M 0 0 C 30 0 60 10 100 50")) - 1e-6, 0); // nothing is left
    EXPECT_EQ(path.count(), 2);
    EXPECT_EQ(path.at(1).toPoint(), QPointF(250, 200));
    EXPECT_EQ(head(path, 0), QPointF(0, 0)) << "the k-th tip goes to the k-th subpath";
}

TEST(LineHeads, curves_lose_the_length_of_the_head)
{
    const PZPath curve = read("M 0 0 C 80 0 100 40 100 120");
    // The closed neighbour has a gap that the engine would merge away; it is none of its business.
    const PZPath neighbour = read("M 300 0 L 300.5 0 L 300 90 L 300 0 Z");
    PZPath trimmed = curve;
    trimmed.addPath(neighbour, false);
    EXPECT_TRUE(trimmed.setLineHead(30, 20));
    ASSERT_EQ(trimmed.count(), 4 + neighbour.count());
    EXPECT_EQ(head(trimmed, 3), QPointF(100, 120));
    for (int i = 0; i < neighbour.count(); ++i)
        EXPECT_EQ(trimmed.at(4 + i), neighbour.at(i));
    trimmed.resize(4);
    EXPECT_NEAR(length(trimmed), length(curve) - 50, 1e-4);
    EXPECT_GT(distance(trimmed.at(0).toPoint(), QPointF(0, 0)), 29.5); // the front is nearly straight
}
