#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

TEST(ArcsOnPaths, connection_to_what_was_drawn)
{
    const char *rows[][2] = {
        { "", "M 10 0 C" },
        { "M 0 0 L 5 5", "M 0 0 L 5 5 L 10 0 C" },
        { "M 0 0 L 9.5 0.5", "M 0 0 L 9.5 0.5 C" },
        { "M 0 0 L 5 5 L 0 0 Z", "M 0 0 L 5 5 L 0 0 Z M 10 0 C" },
    };
    for (const auto &row : rows) {
        PZPath path = read(row[0]);
        path.arcTo(-10, -10, 20, 20, 0, 90);
        EXPECT_EQ(text(path).find(row[1]), 0u) << text(path);
        EXPECT_LT(distance(path.last().toPoint(), QPointF(0, 10)), 1e-12);
    }
}

TEST(ArcsOnPaths, ellipse_is_fourteen_elements_of_its_own)
{
    PZPath path = read("L 5 5");
    path.ellipse(QRectF(0, 0, 200, 100));
    ASSERT_EQ(path.count(), 1 + 14);
    EXPECT_EQ(path.at(1).toPoint(), QPointF(200, 50));
    EXPECT_EQ(path.last().type, PZPath::CloseElement);
    EXPECT_EQ(path.last().toPoint(), path.at(1).toPoint());
    path.erase(path.begin());
    for (const QPointF &p : outline(path, 16))
        EXPECT_NEAR(std::hypot(p.x() / 100 - 1, p.y() / 50 - 1), 1, 3e-4);
    EXPECT_TRUE(path.isClockWise());
}

TEST(ArcsOnPaths, what_cannot_be_drawn_adds_nothing)
{
    PZPath path;
    for (const QRectF &rect : { QRectF(0, 0, 9, -1), QRectF(0, 0, 9, 1e-13), QRectF(0, undefined, 9, 9) }) {
        path.arcTo(rect, 0, 90);
        path.ellipse(rect);
    }
    path.arcTo(QRectF(0, 0, 9, 9), undefined, 90);
    path.arcTo(QRectF(0, 0, 9, 9), 0, inf);
    EXPECT_TRUE(path.isEmpty());
    path.arcTo(QRectF(-9, -9, 18, 18), 0, 0); // no sweep: its start alone
    EXPECT_EQ(text(path), "M 9 0");
}
