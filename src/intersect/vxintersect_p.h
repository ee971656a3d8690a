#pragma once

#include "vxcubic_p.h"
#include "vxpair_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <array>
#include <vector>

/**
 * The kernel of curve intersection: times where two cubics meet, no objects, no allocation where nothing is
 * found.
 */
namespace vx {

/**
 * Box around a curve, tighter than that of its control points: the inner ones are pulled a quarter of the way
 * towards the box of the ends. (Pulled towards their neighbours alone they do not bound every curve: one with
 * the coordinates -17, 2, 0, 0 comes up to 0.06.)
 */
Box pulledBox(const Cubic &c);

/** A curve with what every pairing asks of it, computed once. */
struct PreparedCurve {
    Cubic values;
    /** Its pulledBox(). */
    Box box;
    double chordX, chordY;
    /** |chordX| + |chordY|: at least the chord's length. */
    double chordBound;
    /** Range of heightOf() on the curve's hull. */
    double lowest, highest;
    bool straight;
    /** Coordinates and chord of a size for which absolute margins stand clear of rounding; false with NaN. */
    bool ordinary;

    PreparedCurve() = default;
    explicit PreparedCurve(const Cubic &c) : PreparedCurve(c, pulledBox(c)) {}
    /** Where the box is known already. */
    PreparedCurve(const Cubic &c, const Box &itsBox);

    /** Distance of a point from the chord's line, times the chord's length; signed like ChordDistance. */
    double heightOf(double x, double y) const
    {
        return (x - values.v[0]) * chordY - (y - values.v[1]) * chordX;
    }
    /** Whether a handle is far off the chord: by five times closeDistance or more. */
    bool isBent() const
    {
        return ordinary && highest - lowest > 10 * vxTolerance::closeDistance * chordBound;
    }
};

/** Box of the control points. */
inline Box hullBox(const Cubic &c)
{
    const Pair start = pairOf(c, 0), handle1 = pairOf(c, 1), handle2 = pairOf(c, 2), end = pairOf(c, 3);
    return boxOf(lesser(lesser(start, handle1), lesser(handle2, end)),
                 greater(greater(start, handle1), greater(handle2, end)));
}
/** Whether the boxes come within closeDistance of each other; false with NaN. */
inline bool boxesMeet(const Box &a, const Box &b)
{
    const Pair reach = both(vxTolerance::closeDistance);
    return (whereLess(leastOf(b), greatestOf(a) + reach) & whereLess(leastOf(a) - reach, greatestOf(b))) == 3;
}

/** Times of one meeting of two curves. */
struct TimePair {
    double t1, t2;
};

/** Growing list of meetings that touches the heap only past the nine that two cubics can have. */
class TimePairs
{
public:
    void append(double t1, double t2)
    {
        if (m_count < int(m_fixed.size()))
            m_fixed[size_t(m_count)] = { t1, t2 };
        else
            m_more.push_back({ t1, t2 });
        ++m_count;
    }
    int count() const { return m_count; }
    /** The search stopped at a limit: there may be more. */
    void cutShort() { m_cutShort = true; }
    bool isCutShort() const { return m_cutShort; }
    const TimePair &operator[](int i) const
    {
        return i < int(m_fixed.size()) ? m_fixed[size_t(i)] : m_more[size_t(i) - m_fixed.size()];
    }

private:
    std::array<TimePair, 9> m_fixed;
    std::vector<TimePair> m_more;
    int m_count = 0;
    bool m_cutShort = false;
};

// --- vxoverlap.cpp ---

/**
 * The two time pairs that bound the stretch both curves share, in the order in which the end points were
 * tried: start and end of the first curve, start and end of the second. False when they share none. The ends
 * before number nearEnd, of 0 to 3, are known not to come near the other curve.
 */
bool findOverlap(const PreparedCurve &c1, const PreparedCurve &c2, TimePair pairs[2], int nearEnd = 0);

// --- vxclipping.cpp ---

/** Depth of halvings and clips at which a search is cut short. */
constexpr int maxClipDepth = 48;

/**
 * What one clipping search starts from; the public edge can start it anywhere, the engine starts at the
 * defaults.
 */
struct ClipRange {
    double tMin = 0, tMax = 1, uMin = 0, uMax = 1;
    bool flip = false;
    int recursion = 0;
    /** Widens the fat line on both sides, against rounding where the curves are a few last places wide. */
    double slack = 0;
    /** Ends the search once it is cut short: what it has found by then is of no use. */
    bool allOrNone = false;
};

/**
 * Fat-line clipping: appends the meetings of c1 and c2 (times on c2 first where range.flip says that the
 * roles are exchanged) and returns the number of calls, starting from calls. At maxClipDepth or 4096 calls
 * it stops and marks found as cut short. T. W. Sederberg, T. Nishita: Curve intersection using Bézier
 * clipping, CAD 22 (1990), sections 3 and 4.
 */
int clipCurves(const Cubic &c1, const Cubic &c2, const ClipRange &range, int calls, TimePairs &found);

// --- vxintersect.cpp ---

/**
 * Time of the loop's inner point, where a looping curve is split so that its halves cross; noTime without a
 * loop.
 */
double loopSplitTime(const Cubic &c);

/** Where a curve meets the chord of a straight one: times on the curve in root order. */
int curveLineTimes(const Cubic &curve, const Cubic &line, double roots[3]);

/** The point where two straight curves' chords meet; NaN when they do not. */
vxPoint linePoint(const Cubic &line1, const Cubic &line2);

} // namespace vx
