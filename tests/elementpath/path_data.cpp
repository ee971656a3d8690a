#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

TEST(PathData, both_layouts)
{
    const char *pairs[][2] = {
        { "M10,20 L30,40 C1,2 3,4 5,6 Z", "M 10 20 L 30 40 C 1 2 3 4 5 6 L 10 20 Z" },
        { "M10,20 L10.5,20.5 L40,20 Z", "M 10 20 L 40 20 L 10 20 Z" },
        { "m10,20 l5,5 z", "" },
        { "M1,2 L30,4 50,6", "M 1 2 L 30 4" }, // no implicit repetition
        { "M9 Lx,40 C1,2 3,4", "M 9 0 L 0 40 C 1 2 3 4 0 0" },
    };
    const char *tokens[][2] = {
        { "M 10 20 L 30 40 C 1 2 3 4 5 6 Z", "M 10 20 L 30 40 C 1 2 3 4 5 6 L 10 20 Z" },
        { "M 1 2  H 50 q 1 2 3 4 L 30 4", "M 1 2 L 30 4" },
        { "M L10 20 C 1 2 3", "M 0 20 C 1 2 3 0 0 0" },
        { "L", "L 0 0" },
        { "M 1 2 L 30 4 Z ZM 5 6 L 70 8",
          "M 1 2 L 30 4 L 1 2 Z L 70 8" }, // a Z takes nothing from what follows
    };
    for (const auto &row : pairs) {
        PZPath path;
        path.pzpathFromSvgPath(row[0]);
        EXPECT_EQ(text(path), row[1]);
    }
    for (const auto &row : tokens) {
        PZPath path;
        path.pzpathFromSvgPath2(row[0]);
        EXPECT_EQ(text(path), row[1]);
        path.pzpathFromSvgPath("C1,1 2,2 3,3");
        EXPECT_EQ(text(path), std::string(row[1]) + " C 1 1 2 2 3 3");
    }
}
