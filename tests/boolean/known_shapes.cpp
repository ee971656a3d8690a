#include "support/shapes.h"

#include <gtest/gtest.h>

using shapes::areaOf;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;
using shapes::text;
using shapes::XPathPtr;

namespace {

XPathPtr compute(XPath *a, XPath *b, int op)
{
    return XPathPtr(XPath::computeBoolean(a, b, op));
}

} // namespace

TEST(KnownShapes, have_the_areas_of_elementary_geometry)
{
    const std::string square = rectangle(0, 0, 100, 100);
    const std::string disc = ellipse(50, 50, 50, 50);
    const double d = areaOf(*read(disc));
    const std::string frame = square + rectangle(25, 25, 50, 50);
    struct {
        const char *name;
        std::string a, b;
        /** Intersection, union, difference, exclusion. */
        double areas[4];
    } const rows[] = {
        { "half_a_side_apart", square, rectangle(50, 50, 100, 100), { 2500, 17500, 7500, 15000 } },
        { "from_another_corner", square, "M 100 100 L 0 100 L 0 0 L 100 0 Z", { 10000, 10000, 0, 0 } },
        { "small_inside_large", square, rectangle(20, 30, 40, 50), { 2000, 10000, 8000, 8000 } },
        { "frame_and_its_hole", frame, rectangle(25, 25, 50, 50), { 0, 10000, 7500, 10000 } },
        { "bar_across_a_frame", frame, rectangle(-10, 40, 120, 20), { 1000, 8900, 6500, 7900 } },
        { "disc_in_its_square", square, disc, { d, 10000, 10000 - d, 10000 - d } },
        { "corner_on_an_edge_inside", square, "M 100 50 L 50 100 L 50 0 Z", { 2500, 10000, 7500, 7500 } },
        { "corner_in_a_corner", square, rectangle(100, 100, 50, 50), { 0, 12500, 10000, 12500 } },
        { "part_of_an_edge_outside", square, rectangle(100, 20, 50, 50), { 0, 12500, 10000, 12500 } },
        { "plus_sign", rectangle(40, 0, 20, 100), rectangle(0, 40, 100, 20), { 400, 3600, 1600, 3200 } },
        { "two_squares_and_a_bridge",
          square + rectangle(200, 0, 100, 100),
          rectangle(50, 25, 200, 50),
          { 5000, 25000, 15000, 20000 } },
        // The bar covers the crossing of a figure eight.
        { "figure_eight_and_a_bar",
          "M 0 0 L 100 100 L 100 0 L 0 100 Z",
          rectangle(-10, 40, 120, 20),
          { 1800, 5600, 3200, 3800 } },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const XPathPtr a = read(row.a);
        const XPathPtr b = read(row.b);
        for (int op = 1; op <= 4; ++op) {
            const XPathPtr result = compute(a.get(), b.get(), op);
            ASSERT_TRUE(result);
            EXPECT_NEAR(areaOf(*result), row.areas[op - 1], 1e-3)
                << "operation " << op << ": " << text(*result);
            for (const vxPath *contour : result->children)
                EXPECT_TRUE(contour->isClosed());
        }
    }
}

TEST(KnownShapes, come_out_with_no_needless_segments)
{
    const XPathPtr a = read(rectangle(0, 0, 100, 100));
    const XPathPtr b = read(rectangle(50, 50, 100, 100));
    const int contours[] = { 1, 1, 1, 2 };
    const int segments[] = { 4, 8, 6, 12 };
    for (int op = 1; op <= 4; ++op) {
        const XPathPtr result = compute(a.get(), b.get(), op);
        EXPECT_EQ(result->children.size(), contours[op - 1]) << "operation " << op << ": " << text(*result);
        EXPECT_EQ(result->getCurves().size(), segments[op - 1])
            << "operation " << op << ": " << text(*result);
    }
    const QList<XPath *> parts = a->divide(b.get());
    ASSERT_EQ(parts.size(), 2);
    EXPECT_EQ(text(*XPathPtr(parts[0])), text(*XPathPtr(a->subtract(b.get()))));
    EXPECT_EQ(text(*XPathPtr(parts[1])), text(*XPathPtr(a->intersect(b.get()))));
}

TEST(KnownShapes, with_an_empty_or_missing_operand_give_the_other_or_nothing)
{
    const XPathPtr square = read(rectangle(0, 0, 10, 10));
    XPath empty;
    const double second[] = { 0, 100, 100, 100 };
    const double first[] = { 0, 100, 0, 100 };
    for (int op = 1; op <= 4; ++op) {
        for (XPath *nothing : { static_cast<XPath *>(nullptr), &empty }) {
            EXPECT_NEAR(areaOf(*compute(square.get(), nothing, op)), second[op - 1], 1e-9)
                << "operation " << op;
            EXPECT_NEAR(areaOf(*compute(nothing, square.get(), op)), first[op - 1], 1e-9)
                << "operation " << op;
            EXPECT_NEAR(areaOf(*compute(nothing, nothing, op)), 0, 1e-9) << "operation " << op;
        }
        // What one object given twice makes is left open but for the union.
        EXPECT_TRUE(compute(square.get(), square.get(), op));
    }
    EXPECT_NEAR(areaOf(*compute(square.get(), square.get(), 2)), 100, 1e-9);
    for (int op : { -1, 0, 5, 1000 })
        EXPECT_TRUE(compute(square.get(), square.get(), op)->children.isEmpty());
}

TEST(KnownShapes, drawn_alike_give_themselves_or_nothing)
{
    // A vertex on a straight run and a contour that fills nothing, which cleaning leaves out.
    const std::string data = rectangle(0, 0, 100, 100) + ellipse(50, 50, 30, 20) +
                             "M 200 0 L 220 0 L 240 0 L 240 10 Z M 300 0 L 320 0 Z";
    const XPathPtr a = read(data);
    const XPathPtr b = read(data);
    const XPathPtr cleaned(XPath::preparePath(a.get(), true));
    for (int op : { 1, 2 }) {
        const XPathPtr result = compute(a.get(), b.get(), op);
        EXPECT_EQ(result->children.size(), 3);
        EXPECT_NEAR(areaOf(*result), areaOf(*cleaned), 1e-9);
    }
    for (int op : { 3, 4 })
        EXPECT_TRUE(compute(a.get(), b.get(), op)->children.isEmpty());
}

TEST(KnownShapes, drawn_alike_but_filled_by_different_rules_are_not_the_same)
{
    const std::string data = rectangle(0, 0, 100, 100) + rectangle(20, 20, 60, 60);
    const XPathPtr ring = read(data);
    const XPathPtr whole = read(data);
    for (XPath *path : { ring.get(), whole.get() })
        path->children[1]->reverse(); // both contours run the same way
    whole->evenOdd = false;
    EXPECT_NEAR(areaOf(*compute(whole.get(), ring.get(), 3)), 3600, 1e-6);
}

TEST(KnownShapes, inside_a_frame_leave_nothing_of_themselves)
{
    const std::string data = ellipse(50, 50, 50, 50) + ellipse(50, 50, 20, 20);
    const std::string frames[] = { rectangle(0, 0, 100, 100), "M 0 100 L 0 0 L 110 0 L 110 100 Z" };
    const std::string others[] = { rectangle(1, 0, 100, 100),                           // one side reaches in
                                   "M 50 -60 L 160 50 L 50 160 L -60 50 Z M 0 0 Z",     // turned
                                   "M 0 0 C 0 0 100 40 100 0 L 100 100 L 0 100 Z",      // one side bent
                                   rectangle(0, 0, 100, 100) + ellipse(50, 50, 9, 9) }; // a hole
    const XPathPtr a = read(data);
    for (const std::string &frame : frames) {
        const XPathPtr page = read(frame);
        EXPECT_TRUE(compute(a.get(), page.get(), 3)->children.isEmpty());
        for (bool pageFirst : { false, true }) {
            XPath *first = pageFirst ? page.get() : a.get();
            XPath *second = pageFirst ? a.get() : page.get();
            EXPECT_NEAR(areaOf(*compute(first, second, 1)), areaOf(*a), 1e-9);
            EXPECT_EQ(compute(first, second, 2)->getCurves().size(), 4);
        }
    }
    // Sides on the border, one of them bent, which outlines share and do not just touch.
    for (const char *inside : { "M 20 0 L 60 0 L 40 50 Z", "M 0 20 C 0 40 0 60 0 80 L 50 50 Z" }) {
        const XPathPtr b = read(inside);
        EXPECT_NEAR(areaOf(*compute(read(frames[0]).get(), b.get(), 1)), areaOf(*b), 1e-6);
        EXPECT_NEAR(areaOf(*compute(read(frames[0]).get(), b.get(), 2)), 10000, 1e-6);
    }
    const XPathPtr turned = read(others[1]);
    EXPECT_TRUE(compute(a.get(), turned.get(), 3)->children.isEmpty());
    EXPECT_NEAR(areaOf(*compute(a.get(), read(others[0]).get(), 3)), 13.3, 0.1);
    EXPECT_GT(areaOf(*compute(a.get(), read(others[2]).get(), 3)), 100);
    // The hole lies in that of the ring.
    EXPECT_NEAR(areaOf(*compute(a.get(), read(others[3]).get(), 3)), 0, 1e-6);
}

TEST(KnownShapes, beside_each_other_leave_the_first_and_share_nothing)
{
    // The second shape touches the first along a side; open contours are filled, and closed in the result.
    const std::string closed = rectangle(0, 0, 100, 100) + rectangle(20, 20, 60, 60);
    const std::string open = "M 0 0 L 100 0 L 100 100 L 0 100 M 20 20 L 80 20 L 80 80 L 20 80";
    const XPathPtr b = read(rectangle(100, 20, 50, 50));
    for (const std::string &data : { closed, open }) {
        const XPathPtr a = read(data);
        EXPECT_TRUE(compute(a.get(), b.get(), 1)->children.isEmpty());
        const XPathPtr rest = compute(a.get(), b.get(), 3);
        EXPECT_NEAR(areaOf(*rest), 10000 - 3600, 1e-6);
        for (const vxPath *contour : qAsConst(rest->children))
            EXPECT_TRUE(contour->isClosed());
    }
    // Which way contours ran is forgotten, as it is where something is cut off.
    const XPathPtr two = read(rectangle(0, 0, 10, 10) + rectangle(20, 0, 10, 10));
    two->children.last()->setClockwise(true);
    for (const std::string &other : { rectangle(100, 100, 10, 10), rectangle(28, 2, 10, 6) })
        EXPECT_FALSE(compute(two.get(), read(other).get(), 3)->children.last()->isClockwise()) << other;
}

TEST(KnownShapes, beside_each_other_stay_as_they_are_unless_they_share_a_side)
{
    const std::string ring = ellipse(50, 50, 50, 50) + ellipse(50, 50, 20, 20);
    const char *const beside[] = { "M 100 50 L 150 0 L 150 100 Z",               // a vertex of each touches
                                   "M 150 100 L 150 0 C 130 0 120 30 100 50 Z",  // drawn the other way round
                                   "M 0 130 L 40 100.5 L 100 120 L 100 130 Z" }; // apart, below
    const XPathPtr a = read(ring);
    for (const char *data : beside) {
        const XPathPtr b = read(data);
        for (int op : { 2, 4 }) {
            for (const auto &pair : { std::make_pair(a.get(), b.get()), std::make_pair(b.get(), a.get()) }) {
                const XPathPtr both = compute(pair.first, pair.second, op);
                ASSERT_EQ(both->children.size(), 3);
                EXPECT_TRUE(both->isClockwise());
                EXPECT_EQ(both->getCurves().size(), a->getCurves().size() + b->getCurves().size());
                EXPECT_NEAR(areaOf(*both), areaOf(*a) + areaOf(*b), 1e-3);
            }
        }
    }
    // Circles that touch have one direction there: as one contour, or as two, that is for the audit to say.
    vxBooleanReport report;
    const XPathPtr touching = read(ellipse(150, 50, 50, 50));
    const XPathPtr circles(XPath::computeBoolean(a.get(), touching.get(), 2, report));
    EXPECT_NE(report.verdict, vxBooleanReport::Plain);
    for (int op : { 2, 4 }) {
        const XPathPtr joined =
            compute(read(rectangle(0, 0, 100, 100)).get(), read(rectangle(100, 20, 50, 50)).get(), op);
        EXPECT_EQ(joined->children.size(), 1);
        EXPECT_NEAR(areaOf(*joined), 12500, 1e-9);
    }
}

TEST(KnownShapes, bear_no_mark_of_how_they_were_made)
{
    // The bar crosses the border and one hole: some contours are walked, others stay as they are.
    const XPathPtr plate = read(rectangle(0, 0, 100, 60) + ' ' + ellipse(20, 30, 8, 8) + ' ' +
                                ellipse(50, 30, 8, 8) + ' ' + ellipse(80, 30, 8, 8));
    // An application's own flags are none of the run's business.
    plate->children.first()->addFlags(~3u);
    const XPathPtr bar = read(rectangle(45, -10, 10, 80) + ' ' + ellipse(200, 30, 8, 8));
    for (int operation = 1; operation <= 4; ++operation) {
        SCOPED_TRACE(operation);
        const XPathPtr result(XPath::computeBoolean(plate.get(), bar.get(), operation));
        quint32 lastId = 0;
        for (const vxPath *contour : result->children) {
            EXPECT_EQ(contour->parent, result.get());
            EXPECT_GT(contour->id, lastId);
            lastId = contour->id;
            EXPECT_FALSE(contour->isFlags(~(vxPath::madeClockwise | vxPath::madeCounterClockwise)));
            for (const vxSegment *segment : contour->getSegments()) {
                EXPECT_EQ(segment->path, contour);
                EXPECT_EQ(segment->intersection(), nullptr);
                EXPECT_FALSE(segment->visited || segment->contour || segment->walked);
                EXPECT_EQ(segment->winding, -1);
            }
        }
        // A walk of the result finds it untrodden.
        QList<vxSegment *> segments{ nullptr };
        for (const vxPath *contour : result->children)
            segments += contour->getSegments();
        const QVector<vxPath *> walked = XPath::tracePaths(segments, 0);
        EXPECT_EQ(walked.size(), result->children.size());
        for (vxPath *contour : walked)
            contour->release();
    }
}
