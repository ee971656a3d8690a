#include "meetings.h"

#include <cmath>

using namespace meetings;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;

TEST(PathCrossings, keep_what_passes_through_and_drop_what_touches)
{
    const std::string box = rectangle(0, 0, 100, 100);
    struct {
        const char *name;
        std::string other;
        size_t met, crossed;
    } const rows[] = {
        { "line_through", "M -10 50 L 110 50", 2, 2 },
        { "line_through_two_corners", "M -50 -50 L 150 150", 2, 2 },
        { "line_touching_a_corner", "M -50 50 L 50 -50", 1, 0 },
        { "tip_touching_an_edge", "M 50 100 L 80 150 L 20 150 Z", 1, 0 },
        { "vertex_on_an_edge_passing_through", "M 30 50 L 50 100 L 90 150", 1, 1 },
        { "line_ending_on_an_edge", "M 50 50 L 100 60", 1, 0 },
        { "shared_edge", rectangle(100, 20, 50, 50), 2, 2 },
        { "squares_sharing_a_corner", rectangle(100, 100, 50, 50), 1, 0 },
    };
    const shapes::XPathPtr a = read(box);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const shapes::XPathPtr b = read(row.other);
        const Locations met(a->getIntersections(b.get(), nullptr));
        const Locations crossed(a->getCrossings(b.get()));
        expectOnBothCurves(met.list);
        EXPECT_EQ(distinctPlaces(met.list).size(), row.met);
        EXPECT_EQ(distinctPlaces(crossed.list).size(), row.crossed);
    }
    // Whether a double root is met depends on rounding; that it is no crossing does not.
    EXPECT_TRUE(Locations(a->getCrossings(read(ellipse(50, 50, 50, 50)).get())).list.isEmpty());
}

/** A meeting that was known is found anew once another stands before it in the list. */
TEST(PathCrossings, of_circles_through_each_others_vertices)
{
    const auto addCircle = [](XPath &path, double x, double y) {
        constexpr double k = 0.5522847498;
        auto *circle = new vxPath(&path, true);
        circle->addSegment(new vxSegment({ x + 1, y }, { 0, -k }, { 0, k }));
        circle->addSegment(new vxSegment({ x, y + 1 }, { k, 0 }, { -k, 0 }));
        circle->addSegment(new vxSegment({ x - 1, y }, { 0, k }, { 0, -k }));
        circle->addSegment(new vxSegment({ x, y - 1 }, { -k, 0 }, { k, 0 }));
        path.addChild(circle);
    };
    XPath a, b;
    addCircle(a, 3, 1);
    addCircle(b, 4, 2);
    EXPECT_EQ(Locations(a.getIntersections(&b, nullptr)).list.size(), 5);
}

TEST(PathCrossings, of_a_path_with_itself_leave_out_where_its_curves_join)
{
    struct {
        const char *name;
        std::string data;
        QVector<double> places;
    } const rows[] = {
        { "circle", ellipse(0, 0, 10, 10), {} },
        { "bow_tie", "M 0 0 L 10 10 L 10 0 L 0 10 Z", { 5, 5 } },
        { "two_contours", rectangle(0, 0, 10, 10) + rectangle(5, 5, 10, 10), { 10, 5, 5, 10 } },
        { "one_curve_closed_on_itself", "M 0 0 C 40 40 -40 40 0 0 Z", {} },
        // The cubic of the loop above with c = 0.5.
        { "open_curve_with_a_loop", "M -225 300 C 325 -100 -325 -100 225 300", { 0, 75 } },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const shapes::XPathPtr path = read(row.data);
        const Locations found(path->getIntersections(nullptr, nullptr));
        expectOnBothCurves(found.list);
        expectPlaces(found.list, row.places, 1e-5);
    }
}
