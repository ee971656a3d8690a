#include "elements.h"
#include "xpath.h"

#include <gtest/gtest.h>

using namespace elements;

namespace {

std::string throughEngine(const char *elements, int startIndex = 0, int first = 0, int last = -1)
{
    PZPath path = read(elements), back;
    XPath xpath;
    path.toXPath(xpath, startIndex);
    back.fromXPath(xpath, first, last);
    return text(back);
}

} // namespace

TEST(Bridge, elements_through_the_engine_and_back)
{
    const char *rows[][2] = {
        { "M 1 2 L 30 4 C 5 60 70 8 9 10", "M 1 2 L 30 4 C 5 60 70 8 9 10" },
        { "M -1.7 -2.7 L 50 2 C 50 60 10 60 -1.7 -2.7 Z", "M -1.7 -2.7 L 50 2 C 50 60 10 60 -1.7 -2.7 Z" },
        { "M 0 0 L 0.5 0 L 0.9 0.9 L 10 0 M 7 7", "M 0 0 L 10 0" },
        { "M 0 0 L 9 0 L 9 9 L 0 0 Z L -50 0", "M 0 0 L 9 0 L 9 9 L 0 0 Z M 0 0 L -50 0" },
        { "M 0 0 L 9 0 L 9 9 L 0.5 0.5 L 0 0 Z Z",
          "M 0 0 L 9 0 L 9 9 L 0 0 Z" }, // closed twice, joined twice
        { "M 0 0 L 9 0 D 1 1 L 9 9", "M 0 0 L 9 0 L 9 9" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(throughEngine(row[0]), row[1]);
}

TEST(Bridge, ranges_of_elements_and_children_are_clamped)
{
    const char *three = "M 0 0 L 10 0 M 20 0 L 30 0 M 40 0 L 50 0";
    EXPECT_EQ(throughEngine(three, 2), "M 20 0 L 30 0 M 40 0 L 50 0");
    EXPECT_EQ(throughEngine(three, 3), "M 40 0 L 50 0"); // inside a subpath: from the next one on
    EXPECT_EQ(throughEngine(three, 6), "");
    EXPECT_EQ(throughEngine(three, 0, 1, 2), "M 20 0 L 30 0");
    EXPECT_EQ(throughEngine(three, -7, -5, 100), three);
    EXPECT_EQ(throughEngine(three, 0, 2, 1), "");
}
