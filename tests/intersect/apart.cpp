#include "support/shapes.h"
#include "vxapart_p.h"
#include "vxchorddistance_p.h"
#include "vxcurvepair_p.h"
#include "vxline.h"
#include "vxnearness_p.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace vxTolerance;

namespace {

/** A pair of curves that is searched, and what came of it. */
struct PairSearch {
    QList<vxCurveLocation *> found;
    opParam param;
    vx::CurvePair pair;

    PairSearch(const vx::PreparedCurve &c1, const vx::PreparedCurve &c2, bool excludeStart, bool excludeEnd)
        : pair(c1, c2, nullptr, nullptr, found, param)
    {
        param.excludeStart = excludeStart;
        param.excludeEnd = excludeEnd;
    }
    PairSearch(const PairSearch &) = delete;
    PairSearch &operator=(const PairSearch &) = delete;
    ~PairSearch() { vxCurveLocation::releaseAll(found); }
};

/** Everything that the search does with a pair where no proof says otherwise. */
struct FullSearch : PairSearch {
    FullSearch(const vx::PreparedCurve &c1, const vx::PreparedCurve &c2, bool excludeStart, bool excludeEnd)
        : PairSearch(c1, c2, excludeStart, excludeEnd)
    {
        if (pair.addOverlap())
            return;
        if (c1.straight && c2.straight) {
            pair.addLines();
            return;
        }
        if (c1.straight || c2.straight)
            pair.addCurveAndLine();
        else
            pair.addCurves(vx::ClipRange(), 0);
        if (found.isEmpty())
            pair.addCloseEnds();
    }

    bool sawNothing() const { return found.isEmpty() && param.unfinished.empty(); }
};

/** What the search does with ends alone. */
struct EndSearch : PairSearch {
    EndSearch(const vx::PreparedCurve &c1, const vx::PreparedCurve &c2, bool excludeStart, bool excludeEnd)
        : PairSearch(c1, c2, excludeStart, excludeEnd)
    {
        pair.addOverlap();
        pair.addCloseEnds();
    }
};

/** Whether an end of either curve lies within five times closeDistance of the other. */
bool endsAreNear(const vx::Cubic &a, const vx::Cubic &b)
{
    const auto isNear = [](const vx::Cubic &c, const vxPoint &p) {
        double distance = 5 * closeDistance;
        return vx::timeNear(c, p, distance) != noTime;
    };
    return isNear(a, b.p0()) || isNear(a, b.p3()) || isNear(b, a.p0()) || isNear(b, a.p3());
}

/** Curves as drawings have them and worse, of sizes from 1e-4 to 1e5 units, some far from the origin. */
class Curves
{
public:
    explicit Curves(int seed) : m_random(seed) {}

    bool oneIn(int n) { return int(m_random.between(0, n)) == 0; }
    double between(double lo, double hi) { return m_random.between(lo, hi); }

    void next()
    {
        m_size = std::pow(10.0, between(-4, 5));
        m_onGrid = oneIn(3);
        m_origin = oneIn(2) ? vxPoint() : vxPoint(between(-4e5, 4e5), between(-4e5, 4e5));
        // Sizes at which steps of the grid are what tolerances are about.
        if (oneIn(6))
            m_size = closeDistance * between(1, 40);
    }
    vxPoint vector()
    {
        const vxPoint v(between(-1, 1), between(-1, 1));
        return (m_onGrid ? vxPoint(std::floor(3 * v.x), std::floor(3 * v.y)) : v).multiply(m_size);
    }
    vxPoint point() { return m_origin.add(vector()); }
    /** A disturbance as small as rounding or tolerances. */
    vxPoint nudge()
    {
        const double d = oneIn(2) ? 0 : std::pow(10.0, between(-13, -4));
        return vxPoint(between(-d, d), between(-d, d));
    }
    vx::Cubic from(const vxPoint &p0, const vxPoint &handle)
    {
        const vxPoint p3 = point();
        if (oneIn(3))
            return vx::Cubic::fromLine(p0, p3);
        // Quarters of an ellipse, upright and level handles at the ends.
        if (oneIn(3))
            return vx::Cubic::fromPoints(p0, vxPoint(p0.x, p0.y + 0.55 * (p3.y - p0.y)),
                                         vxPoint(p3.x - 0.45 * (p3.x - p0.x), p3.y), p3);
        const vxPoint p2 = oneIn(4) ? p3 : oneIn(4) ? p0.add(handle).add(nudge()) : point();
        return vx::Cubic::fromPoints(p0, p0.add(handle), p2, p3);
    }
    vx::Cubic any() { return from(point(), vector()); }
    /** One that starts where c ends: at a corner, smoothly, straight on, or straight back. */
    vx::Cubic after(const vx::Cubic &c)
    {
        const vxPoint tangent = c.p3().subtract(c.p2());
        const double along = oneIn(4) ? -1 : between(0, 2);
        vx::Cubic next = from(c.p3(), oneIn(3) ? vector() : tangent.multiply(along).add(nudge()));
        if (oneIn(5)) {
            // Mirrored at the joint: as much curved, and upright or level where c is.
            next = c.reversed();
            const int axis = oneIn(2) ? 0 : 1;
            for (int i = 2 + axis; i < 8; i += 2)
                next.v[i] = 2 * next.v[axis] - next.v[i];
        }
        return next;
    }
    /** One that runs near c. */
    vx::Cubic beside(const vx::Cubic &c)
    {
        const vxPoint shift = nudge();
        vx::Cubic other = oneIn(2) ? c : c.reversed();
        for (int i = 0; i < 8; i += 2) {
            const vxPoint d = shift.add(nudge());
            other.v[i] += d.x;
            other.v[i + 1] += d.y;
        }
        return oneIn(2) ? vx::part(other, between(0, 0.5), between(0.5, 1)) : other;
    }

private:
    shapes::Random m_random;
    double m_size = 1;
    bool m_onGrid = false;
    vxPoint m_origin;
};

std::string text(const vx::PreparedCurve &c)
{
    std::string s = c.straight ? "line " : "curve ";
    for (double v : c.values.v) {
        char number[32];
        std::snprintf(number, sizeof number, " %.17g", v);
        s += number;
    }
    return s;
}

} // namespace

TEST(Apart, pairs_said_to_have_no_contact_are_searched_in_vain)
{
    Curves curves(20260501);
    int none[3] = {};
    int crossing = 0;
    int overlaps = 0;
    for (int i = 0; i < 30000; ++i) {
        curves.next();
        const vx::Cubic values = curves.any();
        const vx::PreparedCurve a(values);
        const vx::PreparedCurve b(curves.oneIn(2) ? curves.any() : curves.beside(values));
        int nearEnd;
        const vx::PossibleContact contact = possibleContact(a, b, nearEnd);
        vx::TimePair overlap[2];
        if (contact == vx::PossibleContact::Any) {
            vx::TimePair sooner[2];
            const bool found = findOverlap(a, b, overlap);
            ASSERT_EQ(findOverlap(a, b, sooner, nearEnd), found) << text(a) << "\n" << text(b);
            for (int k = 0; found && k < 2; ++k)
                ASSERT_TRUE(sooner[k].t1 == overlap[k].t1 && sooner[k].t2 == overlap[k].t2);
            overlaps += found;
            continue;
        }
        ASSERT_FALSE(endsAreNear(a.values, b.values)) << text(a) << "\n" << text(b);
        ASSERT_FALSE(findOverlap(a, b, overlap)) << text(a) << "\n" << text(b);
        if (contact == vx::PossibleContact::Crossing) {
            ++crossing;
            continue;
        }
        ASSERT_TRUE(FullSearch(a, b, false, false).sawNothing()) << text(a) << "\n" << text(b);
        ++none[a.straight + b.straight];
    }
    std::printf("none: %d, %d, %d with 0, 1, 2 lines; crossing at most: %d; overlaps: %d\n", none[0], none[1],
                none[2], crossing, overlaps);
    EXPECT_GT(std::min({ none[0], none[1], none[2], crossing, overlaps }), 500);
}

TEST(Apart, neighbours_said_to_meet_only_at_their_joint_are_searched_in_vain)
{
    Curves curves(20260502);
    int proved[3] = {};
    int touching = 0;
    int upright = 0;
    for (int i = 0; i < 60000; ++i) {
        curves.next();
        vx::Cubic first = curves.any();
        vx::Cubic second = curves.after(first);
        const bool turned = i % 2 == 1; // the first curve of a contour and its last
        if (turned) {
            first = first.reversed();
            second = second.reversed();
        }
        const vx::PreparedCurve a(first);
        const vx::PreparedCurve b(second);
        const vx::Joint joint = turned ? vx::Joint::StartToEnd : vx::Joint::EndToStart;
        if (touchOnlyAtJoint(a, b, joint)) {
            const EndSearch ends(a, b, turned, !turned);
            ASSERT_TRUE(ends.found.isEmpty()) << text(a) << "\n" << text(b);
            ++touching;
        }
        if (!meetOnlyAtJoint(a, b, joint))
            continue;
        ASSERT_TRUE(FullSearch(a, b, turned, !turned).sawNothing()) << text(a) << "\n" << text(b);
        ++proved[a.straight + b.straight];
        const int handle = turned ? 4 : 2;
        upright += !a.straight && !b.straight && second.v[handle] == second.v[turned ? 6 : 0];
    }
    std::printf("%d, %d, %d with 0, 1, 2 lines; %d curves start upright; %d touch at the joint alone\n",
                proved[0], proved[1], proved[2], upright, touching);
    EXPECT_GT(std::min({ proved[0], proved[1], proved[2] }), 500);
    EXPECT_GT(upright, 100);
    EXPECT_GT(touching, 10000);
}

TEST(Apart, shared_ends_are_what_clipping_finds_to_the_bit)
{
    Curves curves(20260505);
    int known[2][2] = {};
    for (int i = 0; i < 60000; ++i) {
        curves.next();
        const vx::Cubic first = curves.any();
        const vx::Cubic second = curves.after(first);
        const vx::PreparedCurve a(curves.oneIn(2) ? first : first.reversed());
        const vx::PreparedCurve b(curves.oneIn(2) ? second : second.reversed());
        vx::TimePair end;
        if (a.straight || b.straight || !clipToSharedEnd(a, b, end))
            continue;
        vx::TimePairs found;
        vx::clipCurves(a.values, b.values, vx::ClipRange(), 0, found);
        ASSERT_EQ(found.count(), 1) << text(a) << "\n" << text(b);
        ASSERT_TRUE(found[0].t1 == end.t1 && found[0].t2 == end.t2) << text(a) << "\n" << text(b);
        ASSERT_FALSE(found.isCutShort()) << text(a) << "\n" << text(b);
        ++known[int(end.t1)][int(end.t2)];
    }
    std::printf("%d, %d, %d, %d known\n", known[0][0], known[0][1], known[1][0], known[1][1]);
    EXPECT_GT(std::min({ known[0][0], known[0][1], known[1][0], known[1][1] }), 500);
}

TEST(Apart, upright_joints_are_searched_in_vain_down_to_the_distance_where_rounding_shows)
{
    shapes::Random random(20260504);
    int proved = 0;
    for (int i = 0; i < 20000; ++i) {
        const double x = std::pow(10, random.between(1, 6));
        const double y = random.between(-1e4, 1e4);
        const double aside = x * std::pow(10, random.between(-2.2, -1.2));
        const double up = aside * random.between(0.3, 3);
        const vxPoint joint(x, y);
        const vx::Cubic second = vx::Cubic::fromPoints(
            joint, vxPoint(x, y + 0.55 * up),
            vxPoint(x - aside * random.between(0.4, 1), y + up * random.between(0.6, 1.1)),
            vxPoint(x - aside, y + up));
        vx::Cubic first = second.reversed();
        for (int k = 1; k < 6; k += 2)
            first.v[k] = 2 * y - first.v[k];
        const vx::PreparedCurve a(first);
        const vx::PreparedCurve b(second);
        if (!meetOnlyAtJoint(a, b, vx::Joint::EndToStart))
            continue;
        ASSERT_TRUE(FullSearch(a, b, false, true).sawNothing()) << text(a) << "\n" << text(b);
        ++proved;
    }
    std::printf("%d proved\n", proved);
    EXPECT_GT(proved, 5000);
}

TEST(Apart, points_said_to_be_off_a_curve_are_nowhere_on_it)
{
    Curves curves(20260503);
    int off = 0;
    int near = 0;
    for (int i = 0; i < 20000; ++i) {
        curves.next();
        const vx::PreparedCurve c(curves.any());
        const vxPoint at = vx::pointAt(c.values, curves.between(0, 1));
        const double d = closeDistance * curves.between(0, 40);
        const vxPoint p = curves.oneIn(3) ? curves.point() : at.add(vxPoint(curves.between(-d, d), d));
        double distance = 5 * closeDistance;
        const bool found = vx::timeNear(c.values, p, distance) != noTime || timeOf(c.values, p) != noTime;
        near += found;
        if (mayComeNear(c, p))
            continue;
        ASSERT_FALSE(found) << text(c) << "\n" << p.toString().toStdString();
        ++off;
    }
    std::printf("%d points off, %d near\n", off, near);
    EXPECT_GT(off, 3000);
    EXPECT_GT(near, 1000);
}

TEST(Apart, ends_within_the_hull_but_off_the_curve_are_told)
{
    const vx::PreparedCurve quarter(vx::Cubic{ { 60, 30, 60, 46, 46, 60, 30, 60 } });
    for (const double inwards : { 0.5, 2.0, 4.0 }) {
        const vxPoint p(51.2 - inwards, 51.2 - inwards);
        EXPECT_FALSE(mayComeNear(quarter, p)) << inwards;
        const vx::PreparedCurve line(vx::Cubic::fromLine(p, vxPoint(80, 90)));
        EXPECT_EQ(possibleContact(quarter, line), vx::PossibleContact::Crossing) << inwards;
    }
}

TEST(Apart, rounded_corners_and_circles_are_proved)
{
    const auto joined = [](const std::vector<vx::Cubic> &contour) {
        int proved = 0;
        for (size_t i = 0; i + 1 < contour.size(); ++i)
            proved += meetOnlyAtJoint(vx::PreparedCurve(contour[i]), vx::PreparedCurve(contour[i + 1]),
                                      vx::Joint::EndToStart);
        return proved + meetOnlyAtJoint(vx::PreparedCurve(contour.front()), vx::PreparedCurve(contour.back()),
                                        vx::Joint::StartToEnd);
    };
    const auto line = [](double x0, double y0, double x1, double y1) {
        return vx::Cubic::fromLine(vxPoint(x0, y0), vxPoint(x1, y1));
    };
    const std::vector<vx::Cubic> circle{ { { 60, 30, 60, 46, 46, 60, 30, 60 } },
                                         { { 30, 60, 14, 60, 0, 46, 0, 30 } },
                                         { { 0, 30, 0, 14, 14, 0, 30, 0 } },
                                         { { 30, 0, 46, 0, 60, 14, 60, 30 } } };
    EXPECT_EQ(joined(circle), 4);
    std::vector<vx::Cubic> farOff = circle;
    for (vx::Cubic &c : farOff) {
        for (int i = 0; i < 8; i += 2)
            c.v[i] += 1700;
    }
    EXPECT_EQ(joined(farOff), 4);
    const std::vector<vx::Cubic> tab{ line(0, 50, 0, 10),   { { 0, 10, 0, 5, 5, 0, 10, 0 } },
                                      line(10, 0, 40, 0),   { { 40, 0, 45, 0, 50, 5, 50, 10 } },
                                      line(50, 10, 50, 50), line(50, 50, 0, 50) };
    EXPECT_EQ(joined(tab), 6);
}

TEST(Apart, chord_distances_are_signed_distances_to_the_bit)
{
    Curves curves(3);
    for (int i = 0; i < 2000; ++i) {
        curves.next();
        vx::Cubic c = curves.any();
        if (curves.oneIn(3))
            c.v[6 + i % 2] = c.v[i % 2]; // parallel to an axis
        const vx::ChordDistance distance(c);
        const vxPoint p = curves.point();
        const vxPoint q = curves.point();
        ASSERT_EQ(distance(p), vxLine::getSignedDistance(c.v[0], c.v[1], c.v[6], c.v[7], p.x, p.y));
        const vx::Pair both = distance.measure(vx::pairOf(p), vx::pairOf(q));
        ASSERT_EQ(both[0], distance(p));
        ASSERT_EQ(both[1], distance(q));
    }
}

TEST(Apart, places_for_steps_are_those_of_single_times_to_the_bit)
{
    Curves curves(5);
    for (int i = 0; i < 2000; ++i) {
        curves.next();
        const vx::Cubic c = curves.any();
        const double t = curves.oneIn(4) ? i % 2 : curves.between(0, 1);
        vxPoint place, velocity;
        vx::SteppedCurve(c).evaluate(t, place, velocity);
        ASSERT_EQ(place, vx::placeAt(c, t));
        ASSERT_EQ(velocity, vx::velocityAt(c, t));
    }
}
