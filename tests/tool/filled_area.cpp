#include "area.h"
#include "corpus.h"
#include "pathdata.h"

#include <pzgraphics/xpath.h>

#include <gtest/gtest.h>

namespace {

struct Figure {
    const char *name;
    const char *text;
    double area;
};

const Figure figures[] = {
    { "square", "M 0 0 L 10 0 L 10 10 L 0 10 Z", 100 },
    { "drawn_backwards", "M 0 0 L 0 10 L 10 10 L 10 0 Z", 100 },
    { "square_with_a_hole_in_the_same_direction", "M 0 0 L 10 0 L 10 10 L 0 10 Z M 4 4 L 6 4 L 6 6 L 4 6 Z",
      96 },
    // The hole comes first and holds the middle of the box of what is around it.
    { "hole_first", "M 2 2 L 8 2 L 8 8 L 2 8 Z M 0 0 L 10 0 L 10 10 L 0 10 Z", 64 },
    { "hole_with_an_equal_box", "M 0 0 L 10 0 L 10 10 L 0 10 Z M 5 0 L 10 5 L 5 10 L 0 5 Z", 50 },
    { "island_in_a_hole", "M 0 0 L 10 0 L 10 10 L 0 10 Z M 2 2 L 2 8 L 8 8 L 8 2 Z M 4 4 L 6 4 L 6 6 L 4 6 Z",
      68 },
    { "beside_each_other", "M 0 0 L 1 0 L 1 1 L 0 1 Z M 5 0 L 6 0 L 6 1 L 5 1 Z", 2 },
    { "one_in_the_box_of_the_other_but_outside", "M 0 0 L 9 0 L 0 9 Z M 7 7 L 8 7 L 8 8 L 7 8 Z", 41.5 },
    // Archimedes: two thirds of base times height; the control points lie at two thirds of the parabola's.
    // One outline through the middle twice, its halves turning opposite ways.
    { "halves_that_meet_in_a_vertex", "M 0 0 L 5 5 L 10 0 L 10 10 L 5 5 L 0 10 Z", 50 },
    { "crossing_itself_in_a_vertex", "M 0 0 L 5 5 L 10 10 L 10 0 L 5 5 L 0 10 Z", 50 },
    // The middle of the box of the smaller one lies on the edge that they share.
    { "triangles_that_share_an_edge", "M 0 0 L 10 0 L 0 10 Z M 0 10 L 10 0 L 20 -10 L 10 10 Z", 150 },
    { "parabola", "M 0 0 C 2 8 4 8 6 0 Z", 24 },
    { "open_contours_fill_nothing", "M 0 0 L 10 0 L 10 10 L 0 10 Z M 20 0 L 30 0 L 30 10", 100 },
    { "nothing", "", 0 },
    { "one_point", "M 3 3 Z", 0 },
};

} // namespace

TEST(FilledArea, closed_forms)
{
    for (const Figure &row : figures)
        EXPECT_NEAR(filledArea(*toXPath(parsePathData(row.text))), row.area, 1e-9) << row.name;
}

TEST(FilledArea, agrees_with_the_known_areas_of_real_shapes)
{
    int count = 0;
    for (const char *family : { "icons", "glyphs", "overlap", "degenerate", "maps" }) {
        const QString file = QStringLiteral(PZ_TEST_DATA "/%1").arg(family);
        const auto truth = readTruth(file + ".truth.tsv");
        for (const CorpusCase &entry : readCorpus(file + ".tsv")) {
            // Where contours cross, the areas of whole contours cannot be added up.
            if (!entry.tags.contains("simple"))
                continue;
            const CorpusOperands operands = readOperands(entry);
            const CorpusTruth known = truth.value(entry.id);
            EXPECT_NEAR(filledArea(*operands.a), known.areaA, 1e-5 * known.areaA) << entry.id.toStdString();
            EXPECT_NEAR(filledArea(*operands.b), known.areaB, 1e-5 * known.areaB) << entry.id.toStdString();
            ++count;
        }
    }
    EXPECT_GE(count, 25);
}
