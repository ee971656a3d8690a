#include "vxmeetingplaces_p.h"

#include "vxcubic_polynomial_p.h"
#include "vxnearness_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <tuple>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the frame: meetings that follow each other within this make a row. */
constexpr double rowDistance = 2e-5;

/**
 * Calls of clipping: curves that plainly cross stay far below the first, and it stops by itself after the
 * second.
 */
constexpr int usualCalls = 256;
constexpr int greatestCalls = 4096;

/** The places of a meeting on both curves, which clipping finds as times. */
struct Meeting {
    TimePair times;
    vxPoint onFirst, onSecond;
};

/** Where two curves meet. */
class Meetings
{
public:
    Meetings(const Cubic &a, const Cubic &b)
        : m_a(a), m_b(b), m_first(a), m_second(b), m_speed(greatestSpeed(a) + greatestSpeed(b))
    {
    }

    /**
     * The meetings that count: where curves run together within rounding, clipping reports hundreds in a row,
     * of which the first and the last bound the common stretch. Cuts at all of them would be drawn into one
     * node like a chain.
     */
    std::vector<TimePair> placesOf(const TimePairs &found) const
    {
        const std::vector<Meeting> all = meetings(found);
        const auto followsClosely = [&all](size_t k) {
            return k > 0 && k < all.size() && all[k - 1].onFirst.isClose(all[k].onFirst, rowDistance) &&
                   all[k - 1].onSecond.isClose(all[k].onSecond, rowDistance);
        };
        std::vector<TimePair> places;
        places.reserve(std::min(all.size(), size_t(9)));
        bool follows = false;
        for (size_t k = 0; k < all.size(); ++k) {
            const bool isFollowed = followsClosely(k + 1);
            if (!follows || !isFollowed)
                places.push_back(all[k].times);
            follows = isFollowed;
        }
        return places;
    }

private:
    /** Those of the pairs found that are one place, in order. */
    std::vector<Meeting> meetings(const TimePairs &found) const
    {
        std::vector<TimePair> pairs;
        pairs.reserve(size_t(found.count()));
        for (int k = 0; k < found.count(); ++k)
            pairs.push_back(found[k]);
        std::sort(pairs.begin(), pairs.end(), [](const TimePair &p, const TimePair &q) {
            return std::tie(p.t1, p.t2) < std::tie(q.t1, q.t2);
        });
        std::vector<Meeting> all;
        all.reserve(pairs.size());
        for (const TimePair &pair : pairs) {
            const Meeting meeting{ pair, m_first.point(pair.t1), m_second.point(pair.t2) };
            if (isPlace(meeting))
                all.push_back(meeting);
        }
        return all;
    }

    /**
     * Whether a pair that clipping reports is one place, as far as its times are exact. Curves that lie on
     * one line, one after the other, as at a smooth vertex, are as near to each other's fat line everywhere
     * as if they met: clipping cannot part them and reports pairs of places that lie apart.
     */
    bool isPlace(const Meeting &meeting) const
    {
        const double distance = meeting.onFirst.getDistance(meeting.onSecond);
        const auto isWithinReach = [distance](double speed) {
            return distance <= closeDistance + 2 * clipWidth * speed;
        };
        // Bounds of the speeds mostly tell; a thousandth is far above rounding.
        if (isWithinReach(0))
            return true;
        return isWithinReach(1.001 * m_speed) && isWithinReach(velocityAt(m_a, meeting.times.t1).getLength() +
                                                               velocityAt(m_b, meeting.times.t2).getLength());
    }

    const Cubic &m_a;
    const Cubic &m_b;
    const Polynomial m_first;
    const Polynomial m_second;
    double m_speed;
};

/** Clipping for so many calls; cut short where those do not do. allOrNone: as ClipRange has it. */
TimePairs clipFor(int calls, bool allOrNone, const Cubic &a, const Cubic &b)
{
    // With room for rounding: a meeting that is found needlessly does no harm here, one that is lost does.
    ClipRange range;
    range.slack = 1e-10;
    range.allOrNone = allOrNone;
    TimePairs found;
    clipCurves(a, b, range, greatestCalls - calls, found);
    return found;
}

} // namespace

std::vector<TimePair> placesWhereMeet(const Cubic &a, const Cubic &b)
{
    const TimePairs clipped = clipFor(usualCalls, true, a, b);
    if (clipped.count() == 0 && !clipped.isCutShort())
        return {};
    const Meetings meetings(a, b);
    if (!clipped.isCutShort())
        return meetings.placesOf(clipped);
    const TimePairs halved = meetByHalving(a, b);
    std::vector<TimePair> places = meetings.placesOf(halved);
    if (halved.isCutShort()) {
        const std::vector<TimePair> more = meetings.placesOf(clipFor(greatestCalls, false, a, b));
        places.insert(places.end(), more.begin(), more.end());
    }
    return places;
}

bool meetAtSharedEndsOnly(const Cubic &a, const Cubic &b)
{
    std::vector<vxPoint> ends;
    for (const vxPoint &end : { a.p0(), a.p3() }) {
        if (end.isClose(b.p0(), closeDistance) || end.isClose(b.p3(), closeDistance))
            ends.push_back(end);
    }
    return meetOnlyAt(a, b, ends);
}

std::vector<TimePair> placesByHalving(const Cubic &a, const Cubic &b)
{
    return Meetings(a, b).placesOf(meetByHalving(a, b));
}

} // namespace vx
