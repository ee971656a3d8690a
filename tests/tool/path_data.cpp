#include "pathdata.h"
#include "printing.h"
#include "toolerror.h"

#include <pzgraphics/vxpath.h>
#include <pzgraphics/xpath.h>

#include <gtest/gtest.h>

#include <QStringList>

#include <cstring>
#include <random>

namespace {

struct Spelling {
    const char *name;
    const char *text;
    const char *canonical;
};

const Spelling spellings[] = {
    { "comma_pairs", "M10,20 L30,40 C1,2 3,4 5,6 Z", "M 10 20 L 30 40 C 1 2 3 4 5 6 Z" },
    { "signs_separate", "M1-2L-3-4.5Z", "M 1 -2 L -3 -4.5 Z" },
    { "second_point_separates", "M1.5.25L0 0", "M 1.5 0.25 L 0 0" },
    { "letters_repeat", "M 0 0 1 1 2 2 C 1 2 3 4 5 6 7 8 9 10 11 12",
      "M 0 0 L 1 1 L 2 2 C 1 2 3 4 5 6 C 7 8 9 10 11 12" },
    { "exponents_and_zeros", "M -0 +1e2 L 1E-3 -0.0", "M 0 100 L 0.001 0" },
    { "drawing_after_close", "M 5 5 L 9 5 Z L 5 9 Z", "M 5 5 L 9 5 Z M 5 5 L 5 9 Z" },
    { "lines_and_tabs", "\n\tM 1 2\r\n", "M 1 2" },
    { "nothing", " ", "" },
};

struct Malformed {
    const char *text;
    const char *complaint;
};

const Malformed malformed[] = {
    { "M 0 0 Q 1 1 2 2", "unknown command 'Q' (absolute M, L, C and Z are read) at character 7" },
    { "M 0 0 L 5", "L with 1 of 2 numbers at character 7" },
    { "M 0 0 C 1 2 3 4 5 Z", "C with 5 of 6 numbers" },
    { "M 0 nan", "with 1 of 2 numbers" },
    { "M 0 1e999", "not a finite number: '1e999' at character 5" },
    { "L 1 1", "must begin with M, not L" },
    { "3 4", "number without a command at character 1" },
    { "M 0 0 L 1 1 Z 3 4", "number without a command at character 15" },
};

QString canonical(const QString &text)
{
    return toText(parsePathData(text));
}

} // namespace

TEST(PathData, spellings_read_as_one)
{
    for (const Spelling &row : spellings)
        EXPECT_EQ(canonical(row.text), QString(row.canonical)) << row.name;
}

TEST(PathData, malformed_text_is_named_with_its_place)
{
    for (const Malformed &row : malformed) {
        try {
            parsePathData(row.text);
            ADD_FAILURE() << "accepted: " << row.text;
        } catch (const ToolError &error) {
            EXPECT_TRUE(error.text.contains(row.complaint)) << row.text << ": " << error.text.toStdString();
        }
    }
}

TEST(PathData, numbers_come_back_to_the_bit)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 2000; ++i) {
        quint64 bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value))
            continue;
        const PathCommands read = parsePathData("M " + toText(value) + " 0");
        EXPECT_EQ(read[0].end().x(), value);
    }
}

TEST(PathData, shapes_survive_the_engine)
{
    // Whole numbers, because handles are kept relative to their point and the sum may round.
    for (const char *text : { "M 0 0 L 10 0 L 10 10 Z", "M 0 0 L 10 0 L 10 10", "M 0 0 C 1 5 9 5 10 0 Z",
                              "M 0 0 C 10 0 10 10 0 10 C -10 10 -10 0 0 0 Z",
                              "M 0 0 L 9 0 L 0 9 Z M 2 2 L 4 2 L 2 4 Z M 1 1 L 1 7 L 7 1 Z", "M 3 3" })
        EXPECT_EQ(toText(commandsOf(*toXPathAsDrawn(parsePathData(text)))), QString(text));
    // The end point that is the start is one vertex, and a run of moves is its last.
    const auto square = toXPath(parsePathData("M 7 7 M 0 0 L 10 0 L 10 10 L 0 10 L 0 0 Z"));
    EXPECT_EQ(toText(commandsOf(*square)), QString("M 0 0 L 10 0 L 10 10 L 0 10 Z"));
    // An almost equal one is not.
    EXPECT_EQ(toXPath(parsePathData("M 0 0 L 10 0 L 1e-9 0 Z"))->children[0]->getSegments().size(), 3);
}

TEST(PathData, contours_are_turned_only_for_booleans)
{
    const PathCommands twoClockwise = parsePathData("M 0 0 L 9 0 L 9 9 Z M 20 0 L 29 0 L 29 9 Z");
    const auto turned = toXPath(twoClockwise);
    EXPECT_TRUE(turned->children[0]->isClockwise());
    EXPECT_FALSE(turned->children[1]->isClockwise());
    EXPECT_EQ(toText(commandsOf(*toXPathAsDrawn(twoClockwise))), toText(twoClockwise));
}
