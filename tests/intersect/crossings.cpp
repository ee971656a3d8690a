#include "meetings.h"

#include "vxintersect_p.h"

#include <cmath>
#include <random>

using namespace meetings;
using shapes::numbers;

TEST(Crossings, are_where_mathematics_puts_them)
{
    struct {
        const char *name, *a, *b, *places;
    } const rows[] = {
        { "two_diagonals", "0 0 10 10", "0 10 10 0", "5 5" },
        { "parallel_lines", "0 0 10 0", "0 1 10 1", "" },
        { "lines_sharing_an_end", "0 0 10 0", "10 0 15 9", "10 0" },
        { "end_of_a_line_on_another", "0 0 10 0", "4 0 4 8", "4 0" },
        // y(t) = 96 (t - 1/4)(t - 1/2)(t - 3/4)
        { "line_through_a_wave", "-10 0 100 0", "0 -9 30 13 60 -13 90 9", "22.5 0 45 0 67.5 0" },
        { "line_through_one_arch", "0 -9 30 13 60 -13 90 9", "0 0 30 0", "22.5 0" },
        // y = x^2 - 2 and its mirror image: the golden ratio among the roots
        { "two_parabolas", "-3 7 -1 -5 1 -5 3 7", "7 -3 -5 -1 -5 1 7 3",
          "2 2 -1 -1 0.6180339887498949 -1.618033988749895 -1.618033988749895 0.6180339887498949" },
        // y(t) = (1 - t)^2 (23 t - 17) comes up above the ends and both of its handles pulled towards them
        { "line_through_a_low_bulge", "0 -17 10 2 20 0 30 0", "0 0.056 30 0.056",
          "24 0.056 25.653274804933517 0.056" },
        { "curves_sharing_both_ends", "0 0 3 5 6 5 9 0", "9 0 6 -5 3 -5 0 0", "0 0 9 0" },
    };
    for (const auto &row : rows) {
        for (bool swapped : { false, true }) {
            SCOPED_TRACE(std::string(row.name) + (swapped ? ", swapped" : ""));
            const vxRef<vxCurve> a = curve(swapped ? row.b : row.a);
            const vxRef<vxCurve> b = curve(swapped ? row.a : row.b);
            const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
            expectPlaces(found.list, numbers(row.places));
            expectOnBothCurves(found.list);
            for (const vxCurveLocation *location : found.list)
                EXPECT_FALSE(location->overlap);
        }
    }
}

TEST(Crossings, of_mirrored_curves_have_the_same_times_to_the_bit)
{
    std::mt19937 random(17);
    std::uniform_real_distribution<double> coordinate(0, 1000);
    int meetings = 0;
    for (int round = 0; round < 500; ++round) {
        vx::Cubic curves[2];
        vx::Cubic mirrored[2];
        for (int k = 0; k < 16; ++k) {
            double &v = curves[k / 8].v[k % 8];
            v = coordinate(random);
            mirrored[k / 8].v[k % 8] = k % 2 == 1 ? -v : v;
        }
        vx::TimePairs found;
        vx::TimePairs again;
        vx::ClipRange range;
        range.flip = round % 2 == 1;
        const int calls = vx::clipCurves(curves[0], curves[1], range, 0, found);
        EXPECT_EQ(vx::clipCurves(mirrored[0], mirrored[1], range, 0, again), calls);
        ASSERT_EQ(again.count(), found.count());
        for (int i = 0; i < found.count(); ++i) {
            EXPECT_EQ(again[i].t1, found[i].t1);
            EXPECT_EQ(again[i].t2, found[i].t2);
        }
        meetings += found.count();
    }
    EXPECT_GT(meetings, 300);
}

TEST(Crossings, of_two_cubics_can_be_nine)
{
    // y = T3(x) and x = T3(y), T3 the third Chebyshev polynomial, meet where T9(x) = x, at (cos v, cos 3v).
    const vxRef<vxCurve> a(new vxCurve({ -1, -1, -1.0 / 3, 5, 1.0 / 3, -5, 1, 1 }));
    const vxRef<vxCurve> b(new vxCurve({ -1, -1, 5, -1.0 / 3, -5, 1.0 / 3, 1, 1 }));
    QVector<double> places;
    for (double part : { 0.0, 0.2, 0.25, 0.4, 0.5, 0.6, 0.75, 0.8, 1.0 })
        places << std::cos(part * std::acos(-1.0)) << std::cos(3 * part * std::acos(-1.0));
    const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
    expectPlaces(found.list, places);
    expectOnBothCurves(found.list);
}

TEST(Crossings, of_curves_that_touch_lie_near_the_touch_and_do_not_cross)
{
    const char *const arch = "0 0 3 8 6 8 9 0";
    struct {
        const char *name, *a, *b;
        vxPoint place;
        // Clipping runs out of depth where two curves touch inside of one, so it may find nothing.
        bool found;
    } const rows[] = {
        { "line_on_top_of_an_arch", arch, "-2 6 11 6", { 4.5, 6 }, true },
        { "arches_end_to_end", "0 0 1 4 3 6 5 6", "5 6 7 6 9 9 9 12", { 5, 6 }, true },
        { "arch_ending_in_the_other_arch", arch, "4.5 6 6 6 8 7 9 9", { 4.5, 6 }, false },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxCurve> a = curve(row.a);
        const vxRef<vxCurve> b = curve(row.b);
        const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
        EXPECT_GE(found.list.size(), row.found ? 1 : 0);
        expectOnBothCurves(found.list);
        for (vxCurveLocation *location : found.list) {
            // A double root is only known to about the square root of the tolerance.
            EXPECT_LE(location->point.getDistance(row.place), 1e-3);
            EXPECT_FALSE(location->isCrossing());
        }
    }
}

TEST(Crossings, of_curves_that_run_together_bound_the_shared_stretch)
{
    const QVector<double> c = { 3, 1, 20, 40, 55, -30, 80, 12 };
    const auto part = [&c](double from, double to) { return vxCurve::getPart(c, from, to); };
    struct {
        const char *name;
        QVector<double> a, b;
        /** Time on a and time on b at both ends. */
        QVector<double> times;
    } const rows[] = {
        { "same_curve", c, c, { 0, 0, 1, 1 } },
        { "part_of_a_curve", c, part(0.2, 0.7), { 0.2, 0, 0.7, 1 } },
        { "part_drawn_backwards", c, part(0.7, 0.2), { 0.7, 0, 0.2, 1 } },
        { "parts_that_share_a_part", part(0, 0.6), part(0.3, 1), { 0.5, 0, 1, 3.0 / 7 } },
        { "parts_that_meet_at_a_point", part(0, 0.5), part(0.5, 1), {} },
        { "copy_moved_beyond_the_tolerance", c, { 3, 1, 20, 40, 55, -30 + 1e-5, 80, 12 }, {} },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxCurve> a(new vxCurve(row.a));
        const vxRef<vxCurve> b(new vxCurve(row.b));
        const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
        expectOnBothCurves(found.list);
        EXPECT_EQ(vxCurve::getOverlaps(row.a, row.b).size(), row.times.size() / 2);
        for (int i = 0; i + 1 < row.times.size(); i += 2) {
            int hits = 0;
            for (const vxCurveLocation *location : found.list) {
                const vxCurveLocation *onA = location->curve == a.get() ? location : location->intersection;
                hits += location->overlap && std::fabs(onA->time - row.times[i]) < 1e-6 &&
                        std::fabs(onA->intersection->time - row.times[i + 1]) < 1e-6;
            }
            EXPECT_EQ(hits, 1) << "times " << row.times[i] << ", " << row.times[i + 1];
        }
    }
    // Times on a straight curve run unevenly, so here it is the places that are known.
    const vxRef<vxCurve> a = curve("0 0 10 5");
    const vxRef<vxCurve> b = curve("4 2 20 10");
    const Locations found(vxCurve::getIntersectionscurve(a.get(), b.get()));
    expectPlaces(found.list, { 4, 2, 10, 5 });
}

TEST(Crossings, of_a_loop_with_itself_are_one_pair_of_times)
{
    // x = u (u^2 - c^2), y = u^2 for u = 2t - 1, times 100, passes (0, c^2) at u = -c and u = c.
    for (double c : { 0.8, 0.1, 1.0, 0.0, 1.2 }) {
        SCOPED_TRACE(c);
        const double end = 100 * (1 - c * c);
        const double inner = 100 * (1 + c * c / 3);
        const vxRef<vxCurve> loop(
            new vxCurve({ -end, 100, inner, -100.0 / 3, -inner, -100.0 / 3, end, 100 }));
        const Locations found(vxCurve::getIntersectionscurve(loop.get(), nullptr));
        expectOnBothCurves(found.list);
        ASSERT_EQ(found.list.size(), c > 0 && c <= 1 ? 1 : 0);
        for (const vxCurveLocation *location : found.list) {
            EXPECT_NEAR(location->time, (1 - c) / 2, 1e-6);
            EXPECT_NEAR(location->intersection->time, (1 + c) / 2, 1e-6);
            EXPECT_LE(location->point.getDistance(vxPoint(0, 100 * c * c)), 1e-5);
        }
    }
}
