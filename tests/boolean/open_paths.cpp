#include "support/shapes.h"

#include "vxbooleanreport.h"

#include <gtest/gtest.h>

using shapes::areaOf;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;
using shapes::text;
using shapes::XPathPtr;

namespace {

/** The same pieces in the same order, up to rounding. */
void expectPieces(const XPath &result, const std::string &expected)
{
    const XPathPtr pieces = read(expected);
    ASSERT_EQ(result.children.size(), pieces->children.size()) << text(result);
    for (int i = 0; i < pieces->children.size(); ++i)
        EXPECT_TRUE(result.children[i]->equals(*pieces->children[i]))
            << text(result) << ", expected " << expected;
}

} // namespace

TEST(OpenPaths, are_cut_at_the_outline_and_kept_on_one_side)
{
    const std::string box = rectangle(0, 0, 100, 100);
    const std::string ring = box + rectangle(30, 30, 40, 40);
    struct {
        const char *name;
        std::string line, shape, inside, outside;
    } const rows[] = {
        { "across_a_rectangle", "M -20 50 L 130 50", box, "M 0 50 L 100 50 ",
          "M -20 50 L 0 50 M 100 50 L 130 50 " },
        { "across_a_ring", "M -20 50 L 130 50", ring, "M 0 50 L 30 50 M 70 50 L 100 50 ",
          "M -20 50 L 0 50 M 30 50 L 70 50 M 100 50 L 130 50 " },
        { "within", "M 10 20 L 90 80", box, "M 10 20 L 90 80 ", "" },
        { "elsewhere", "M 300 20 L 390 80", box, "", "M 300 20 L 390 80 " },
        { "from_inside", "M 50 10 L 50 40 L 150 40", box, "M 50 10 L 50 40 L 100 40 ", "M 100 40 L 150 40 " },
        { "turning_on_the_outline", "M 50 50 L 100 60 L 150 50", box, "M 50 50 L 100 60 ",
          "M 100 60 L 150 50 " },
        { "along_the_top_edge", "M 20 0 L 80 0", box, "M 20 0 L 80 0 ", "" },
        { "along_the_right_edge", "M 100 80 L 100 20", box, "M 100 80 L 100 20 ", "" },
        { "along_the_bottom_edge", "M 20 100 L 80 100", box, "M 20 100 L 80 100 ", "" },
        { "along_the_left_edge_all_of_it", "M 0 0 L 0 100", box, "M 0 0 L 0 100 ", "" },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const XPathPtr line = read(row.line);
        const XPathPtr shape = read(row.shape);
        expectPieces(*XPathPtr(line->intersect(shape.get())), row.inside);
        expectPieces(*XPathPtr(line->subtract(shape.get())), row.outside);
        EXPECT_EQ(text(*line), text(*read(row.line)));
    }
}

TEST(OpenPaths, keep_their_length_and_have_no_handles_at_cut_ends)
{
    const XPathPtr wave = read("M -80 0 C -20 160 20 -160 80 10 C 100 60 140 20 160 0");
    const XPathPtr ring = read(ellipse(0, 0, 70, 50) + ellipse(0, 0, 30, 20));
    const QList<XPath *> parts = wave->divide(ring.get());
    const XPathPtr outside(parts[0]);
    const XPathPtr inside(parts[1]);
    EXPECT_EQ(inside->children.size(), 2);
    EXPECT_EQ(outside->children.size(), 3);
    EXPECT_NEAR(inside->getLength() + outside->getLength(), wave->getLength(), 0.01); // quadratures
    const shapes::Outline area(*ring);
    for (const XPathPtr *side : { &inside, &outside }) {
        for (const vxPath *piece : (*side)->children) {
            EXPECT_EQ(piece->getFirstSegment()->getHandleIn(), vxPoint());
            EXPECT_EQ(piece->getLastSegment()->getHandleOut(), vxPoint());
            for (double part : { 0.1, 0.5, 0.9 })
                EXPECT_EQ(area.contains(piece->getPointAt(part * piece->getLength())), side == &inside);
        }
    }
}

TEST(OpenPaths, are_doubtful_where_a_crossing_may_be_missing)
{
    // They bend alike at their start, where a search finds many places and stops before it gets to the
    // crossing.
    const XPathPtr line = read("M 40 30 C 70 40 80 90 60 60 L 30 70");
    const XPathPtr shape = read("M 40 30 C 70 40 80 90 20 60 L 30 10 Z");
    for (int op : { 1, 3 }) {
        vxBooleanReport report;
        const XPathPtr cut(XPath::computeBoolean(line.get(), shape.get(), op, report));
        EXPECT_EQ(report.verdict, vxBooleanReport::Doubtful);
        EXPECT_TRUE(report.limitHit);
    }
}

TEST(OpenPaths, answer_null_where_nothing_is_defined)
{
    const XPathPtr line = read("M 0 0 L 10 10");
    const XPathPtr other = read("M 0 10 L 10 0");
    const XPathPtr box = read(rectangle(2, 2, 4, 4));
    EXPECT_EQ(line->unite(box.get()), nullptr);
    EXPECT_EQ(line->exclude(box.get()), nullptr);
    for (int op = 1; op <= 4; ++op) {
        EXPECT_EQ(XPath::computeBoolean(line.get(), other.get(), op), nullptr);
        EXPECT_EQ(XPath::computeBoolean(line.get(), nullptr, op), nullptr);
        EXPECT_NE(XPathPtr(XPath::computeBoolean(box.get(), other.get(), op)), nullptr)
            << "an area comes first";
    }
}

/** Among others an open contour is filled, not cut: its closing line is a border like any other. */
TEST(OpenContours, are_filled_as_if_a_line_closed_them)
{
    const std::string square = rectangle(200, 0, 100, 100);
    struct {
        const char *name;
        std::string a, b;
        double shared;
    } const rows[] = {
        { "the_other_crosses_the_closing_line", "M 0 0 L 100 0 L 100 100 L 0 100 " + square,
          "M -20 40 L 20 40 L 20 60 L -20 60 Z", 400 },
        { "the_other_crosses_something_else", "M 0 0 C 0 60 100 60 100 0 " + square,
          rectangle(250, 50, 100, 100), 2500 },
        { "both_are_open", "M 0 0 L 100 0 L 100 100 L 0 100 " + square,
          "M 50 50 L 150 50 L 150 150 L 50 150 " + rectangle(500, 0, 10, 10), 2500 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const XPathPtr a = read(row.a);
        const XPathPtr b = read(row.b);
        // Handles at the ends are those of no curve, and bend nothing.
        a->children.first()->getFirstSegment()->handleIn = vxPoint(0, -60);
        a->children.first()->getLastSegment()->handleOut = vxPoint(0, -60);
        const double areaA = areaOf(*read(row.a));
        const double areaB = areaOf(*b);
        const double expected[] = { row.shared, areaA + areaB - row.shared, areaA - row.shared,
                                    areaA + areaB - 2 * row.shared };
        for (int operation = 1; operation <= 4; ++operation) {
            vxBooleanReport report;
            const XPathPtr result(XPath::computeBoolean(a.get(), b.get(), operation, report));
            EXPECT_NEAR(areaOf(*result), expected[operation - 1], 1e-3) << "operation " << operation;
            EXPECT_NEAR(report.predictedArea, expected[operation - 1], 1e-3) << "operation " << operation;
        }
        EXPECT_NEAR(areaOf(*XPathPtr(XPath::uniteAll({ a.get() }))), areaA, 1e-3);
    }
}
