#include "support/shapes.h"

#include "vxbooleanreport.h"
#include "vxcleancopy_p.h"
#include "vxcurvelocation.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingfilter_p.h"
#include "vxpositions_p.h"
#include "vxrunnotes_p.h"
#include "vxsampler_p.h"
#include "vxstretchcounts_p.h"

#include <gtest/gtest.h>

#include <cstdio>

using shapes::areaOf;
using shapes::read;
using shapes::XPathPtr;

namespace {

/** Working copies of two operands, divided where they meet. */
struct Divided {
    vx::RunNotes notes;
    bool areClean = false;
    vx::SearchDoubts doubts;
    XPathPtr a, b;
    vx::LocationOwner owner;
    QList<vxSegment *> segments;

    Divided(const XPath &first, const XPath &second, int op)
        : a(vx::cleanCopy(&first, notes)), b(vx::cleanCopy(&second, notes)), owner(find(op))
    {
        for (const XPath *path : { a.get(), b.get() }) {
            for (const vxPath *child : path->children)
                segments += child->_segments();
        }
    }

private:
    QList<vxCurveLocation *> find(int op)
    {
        areClean = !notes.anyDoubt();
        const bool opposite = op >= 3;
        if ((a->isClockwise() == b->isClockwise()) == opposite)
            b->reverse();
        vx::MeetingFilter filter(notes);
        const QList<vxCurveLocation *> found = vx::findIntersections(
            *a, b.get(), [&](vxCurveLocation *location) { return filter.accepts(*location); }, doubts);
        a->divideLocations(vxCurveLocation::expand(found), 0);
        return found;
    }
};

/** Counts all stretches in both ways, and compares where neither is in doubt. Gives the number compared. */
int compare(const XPath &a, const XPath &b, int op)
{
    Divided run(a, b, op);
    if (!run.areClean || !run.doubts.unfinished.empty() || !run.doubts.nearMisses.empty() ||
        !vx::countByEnds({ &a, run.a.get(), run.a->isClockwise() }, { &b, run.b.get(), run.b->isClockwise() },
                         op))
        return 0;
    int compared = 0;
    for (vxSegment *start : qAsConst(run.segments)) {
        const vxWinding byEnds{ start->winding, start->contour };
        vx::RunNotes sampling;
        vx::Sampler(run.a.get(), run.b.get(), op, sampling).propagate(start);
        if (sampling.anyDoubt() || vx::isAlong(vx::Position(start->position)))
            continue;
        EXPECT_EQ(start->winding, byEnds.winding) << "operation " << op;
        // The tracer asks for the flag of a union only, where the count alone does not decide.
        if (op == 2 && byEnds.winding != 1) {
            EXPECT_EQ(start->contour, byEnds.contour);
        }
        ++compared;
    }
    return compared;
}

struct Expected {
    double area;
    int contours;
    bool isPlain = true;
};

/** The areas and numbers of contours of intersect, unite, subtract and exclude. */
void expectPlain(const std::string &dataA, const std::string &dataB, const Expected (&expected)[4])
{
    const XPathPtr a = read(dataA);
    const XPathPtr b = read(dataB);
    for (int op = 1; op <= 4; ++op) {
        vxBooleanReport report;
        const XPathPtr result(XPath::computeBoolean(a.get(), b.get(), op, report));
        EXPECT_EQ(report.verdict == vxBooleanReport::Plain, expected[op - 1].isPlain) << "operation " << op;
        EXPECT_NEAR(areaOf(*result), expected[op - 1].area, 1e-4) << "operation " << op;
        EXPECT_EQ(result->children.size(), expected[op - 1].contours) << "operation " << op;
    }
}

} // namespace

TEST(StretchCounts, are_those_of_samples)
{
    int compared = 0;
    for (const shapes::Case &c : shapes::cases()) {
        SCOPED_TRACE(c.id);
        const XPathPtr a = read(c.a);
        const XPathPtr b = read(c.b);
        for (int op = 1; op <= 4; ++op)
            compared += compare(*a, *b, op);
    }
    std::printf("%d stretches compared\n", compared);
    EXPECT_GT(compared, 3000);
}

TEST(StretchCounts, need_no_audit_along_shared_borders)
{
    const std::string square = shapes::rectangle(0, 0, 100, 100);
    const double pi = std::acos(-1.);
    // Of the cubic that stands for a quarter of a circle of radius 1, in excess of pi / 4.
    const double circle = areaOf(*read(shapes::ellipse(0, 0, 1, 1)));
    EXPECT_NEAR(circle, pi, 1e-3);
    {
        SCOPED_TRACE("side by side");
        expectPlain(square, shapes::rectangle(100, 20, 50, 50),
                    { { 0, 0 }, { 12500, 1 }, { 10000, 1 }, { 12500, 1, false } });
    }
    {
        SCOPED_TRACE("along the inside of a side, corners at corners");
        expectPlain(square, shapes::rectangle(0, 0, 40, 100),
                    { { 4000, 1 }, { 10000, 1 }, { 6000, 1 }, { 6000, 1 } });
    }
    {
        SCOPED_TRACE("a rounded corner, where the outlines part with one tangent");
        const double corner = 400 * (4 - circle) / 4;
        expectPlain(square,
                    "M 0 0 L 80 0 C 91.04569499661587 0 100 8.954305003384132 100 20 L 100 100 L 0 100 Z",
                    { { 10000 - corner, 1 }, { 10000, 1 }, { corner, 1 }, { corner, 1 } });
    }
    {
        SCOPED_TRACE("a vertex on the other's side, from outside");
        expectPlain(square, "M 100 50 L 140 30 L 140 70 Z",
                    { { 0, 0 }, { 10800, 2 }, { 10000, 1 }, { 10800, 2 } });
    }
    {
        SCOPED_TRACE("crossing at vertices");
        expectPlain("M 0 0 L 50 0 L 100 0 L 100 100 L 50 100 L 0 100 Z",
                    "M 50 0 L 90 -50 L 150 50 L 90 150 L 50 100 Z",
                    { { 5000, 1 }, { 17000, 1 }, { 5000, 1 }, { 12000, 2 } });
    }
}

TEST(StretchCounts, need_no_audit_along_straight_borders_with_handles)
{
    expectPlain("M 0 0 C 30 0 60 0 100 0 L 100 100 L 0 100 Z", shapes::rectangle(0, -50, 100, 50),
                { { 0, 0 }, { 15000, 1 }, { 10000, 1 }, { 15000, 1, false } });
}

TEST(StretchCounts, need_no_audit_where_a_search_was_cut_short_at_a_contact)
{
    // Ellipses with one center, which cross and nearly touch.
    const std::string first =
        "M 631.829335554 759.077259302 C 618.699396657 776.84335669 514.440738993 722.06015386 398.961105972 "
        "636.71555103 C 283.48147295 551.370948201 200.510652329 467.78321025 213.640591226 450.017112862 C "
        "226.770530123 432.251015474 331.029187787 487.034218304 446.508820809 572.378821134 C 561.98845383 "
        "657.723423963 644.959274451 741.311161914 631.829335554 759.077259302 Z";
    const std::string second =
        "M 789.515284535 713.964716766 C 733.713044223 789.470630665 558.855982463 754.885001102 "
        "398.961105972 636.71555103 C 239.06622948 518.546100959 154.682475154 361.541197133 210.484715465 "
        "286.035283234 C 266.286955777 210.529369335 441.144017537 245.114998898 601.038894028 363.28444897 "
        "C 760.93377052 481.453899041 845.317524846 638.458802867 789.515284535 713.964716766 Z";
    const XPathPtr a = read(first);
    const XPathPtr b = read(second);
    double sum = 0;
    for (int op : { 1, 2 }) {
        vxBooleanReport report;
        const XPathPtr result(XPath::computeBoolean(a.get(), b.get(), op, report));
        EXPECT_EQ(report.verdict, vxBooleanReport::Plain);
        EXPECT_TRUE(report.limitHit);
        sum += areaOf(*result);
    }
    EXPECT_NEAR(sum, areaOf(*a) + areaOf(*b), 1e-2);
}

TEST(StretchCounts, need_no_audit_at_a_cusp)
{
    const XPathPtr thin = read("M 0 0 C 60 0 100 40 100 100 L 100 0 Z");
    const XPathPtr others[] = { read("M 0 0 L 60 -40 L 60 40 Z"), read("M 0 0 L -60 -40 L -60 40 Z"),
                                read("M 0 0 C 60 0 90 20 90 60 L 0 60 Z") };
    const double area = areaOf(*thin);
    for (const XPathPtr &other : others) {
        double areas[5] = {};
        for (int op = 1; op <= 4; ++op) {
            vxBooleanReport report;
            const XPathPtr result(XPath::computeBoolean(thin.get(), other.get(), op, report));
            EXPECT_TRUE(report.verdict == vxBooleanReport::Plain || op == 4) << "operation " << op;
            areas[op] = areaOf(*result);
        }
        EXPECT_NEAR(areas[1] + areas[3], area, 1e-3);
        EXPECT_NEAR(areas[2], area + areaOf(*other) - areas[1], 1e-3);
        EXPECT_NEAR(areas[4], areas[2] - areas[1], 1e-3);
    }
}

TEST(StretchCounts, settle_nothing_where_slivers_would_be_lost)
{
    struct {
        std::string a, b;
        double difference;
    } const rows[] = {
        // Long rectangles, a few 1e-5 off each other: what is left of their corners are hairs.
        { "M -151.3813195208005 168.08907222771313 L 1817.7152064330267 168.08907222771313 "
          "L 1817.7152064330267 169.48836521037722 L -151.3813195208005 169.48836521037722 Z",
          "M -151.38130943357936 168.08908909441945 L 1817.7152165202474 168.08904883087266 "
          "L 1817.7152165488596 169.48834181353675 L -151.381309404967 169.48838207708354 Z",
          0.0203561990703 },
        // One corner moved: the sides part so slowly that they pass for one line.
        { "M 907.31303422734504 -651.56880473846786 L 910.72114115394697 -651.56880473846786 "
          "L 910.72114115394697 2875.262609837775 Z",
          "M 907.31303422734504 -651.56880473846786 L 910.72114115394697 -651.56880479900428 "
          "L 910.72120379925332 2875.2626097772381 Z",
          0.110467789814 },
    };
    for (const auto &row : rows) {
        const XPathPtr a = read(row.a);
        EXPECT_NEAR(areaOf(*XPathPtr(a->subtract(read(row.b).get()))), row.difference, 1e-4);
    }
}

TEST(StretchCounts, need_no_audit_for_an_operand_that_crosses_itself_elsewhere)
{
    const std::string bow = "M 0 0 L 100 100 L 100 0 L 0 100 Z";
    {
        SCOPED_TRACE("across one wing");
        expectPlain(bow, shapes::rectangle(60, -20, 20, 140),
                    { { 800, 1 }, { 7000, 2 }, { 4200, 3 }, { 6200, 5 } });
    }
    {
        SCOPED_TRACE("over the crossing, which the intersection and what is left of the bar pass twice");
        expectPlain(bow, shapes::rectangle(40, -20, 20, 140),
                    { { 200, 2, false }, { 7600, 1 }, { 4800, 2 }, { 7400, 4, false } });
    }
    {
        SCOPED_TRACE("cut between an outline and its hole, which another hole touches both");
        const std::string rings = "M 0 0 L 300 0 L 300 300 L 0 300 L -10 150 Z "
                                  "M 100 100 L 200 100 L 200 200 L 100 200 L 90 150 Z "
                                  "M -10 150 L 50 120 L 90 150 L 50 180 Z";
        const double filled = 91500 - 10500 - 3000;
        expectPlain(
            rings, shapes::rectangle(150, 140, 200, 20),
            { { 2000, 1 }, { filled + 2000, 3, false }, { filled - 2000, 2, false }, { filled, 4, false } });
    }
}

TEST(StretchCounts, leave_contours_that_could_be_joined_otherwise_to_the_audit)
{
    // Walked straight on where they touch, the outline would run around the hole without closing it.
    const std::string frame = "M 0 0 L 100 0 L 100 100 L 50 60 L 0 100 Z";
    const std::string bar = "M -20 80 L 50 60 L 120 80 L 120 150 L -20 150 Z";
    const XPathPtr a = read(frame);
    const XPathPtr b = read(bar);
    const XPathPtr united(a->unite(b.get()));
    for (const vxPath *contour : qAsConst(united->children)) {
        int passes = 0;
        for (const vxSegment *segment : contour->getSegments())
            passes += segment->point.isClose(vxPoint(50, 60), 1e-6);
        EXPECT_LE(passes, 1);
    }
}

TEST(StretchCounts, are_left_to_samples_where_a_contour_is_open)
{
    // Its ends, which have a curve on one side only, lie on vertices of the other.
    const XPathPtr a = read("M 0 0 L 100 0 L 100 50 L 100 100 L 0 100 L 0 50 Z");
    const XPathPtr roof = read("M 0 50 L 50 -50 L 100 50");
    const double areas[] = { 3750, 11250, 6250, 7500 };
    for (int op = 1; op <= 4; ++op) {
        vxBooleanReport report;
        const XPathPtr result(XPath::computeBoolean(a.get(), roof.get(), op, report));
        EXPECT_NEAR(areaOf(*result), areas[op - 1], 1e-6) << "operation " << op;
    }
}

TEST(StretchCounts, are_left_to_samples_where_a_contour_runs_otherwise_than_it_is_declared)
{
    const XPathPtr a = read(shapes::rectangle(0, 0, 100, 100) + "M 20 20 L 20 80 L 80 80 L 80 20 Z");
    const XPathPtr b = read("M -50 30 L -150 35 L -150 90 L -50 80 Z");
    // Mirrored vertex by vertex, of which the contour's flag learns nothing.
    for (vxSegment *segment : b->children[0]->getSegments())
        segment->setPoint(vxPoint(-segment->point.x, segment->point.y));
    b->children[0]->_changed();
    ASSERT_NE(b->children[0]->isClockwise(), b->children[0]->getArea(false, true) >= 0);
    const double areas[] = { 1085, 10565, 5315, 9480 };
    for (int op = 1; op <= 4; ++op) {
        const XPathPtr result(XPath::computeBoolean(a.get(), b.get(), op));
        EXPECT_NEAR(areaOf(*result), areas[op - 1], 1e-6) << "operation " << op;
    }
}
