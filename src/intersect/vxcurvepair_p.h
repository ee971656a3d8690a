#pragma once

#include "vxapart_p.h"
#include "vxcurvelocation.h"
#include "vxintersect_p.h"

#include <optional>

class vxCurve;

namespace vx {

/** What a first look at two curves leaves to be searched. */
struct Prospect {
    /** An end of one comes near the other: there may be an overlap, or close ends. */
    bool endsNear;
    /** See findOverlap(). */
    int nearEnd;
};

/** None where quick proofs show that there is nothing to find, as for most pairs. Takes no curve objects. */
std::optional<Prospect> firstLook(const PreparedCurve &c1, const PreparedCurve &c2, const opParam &param);

/**
 * One pair of curves on its way through an intersection run: the values that are intersected (which may be
 * parts), the curves that locations are made on, the list that is filled and the run's settings.
 */
class CurvePair
{
public:
    /** Whether the values are all of the curves. */
    enum class Values { Whole, MayBeParts };

    CurvePair(const PreparedCurve &values1, const PreparedCurve &values2, vxCurve *curve1, vxCurve *curve2,
              QList<vxCurveLocation *> &locations, opParam &param, Values given = Values::MayBeParts)
        : m_values1(values1), m_values2(values2), m_curve1(curve1), m_curve2(curve2), m_locations(locations),
          m_param(param), m_given(given)
    {
    }

    /** Chooses between overlap, lines, line and curve, and clipping; ends with a look at the end points. */
    void intersect();
    /** The same after the firstLook(). */
    void intersect(const Prospect &prospect);

    /** Both ends of a shared stretch; false when there is none. nearEnd: see findOverlap(). */
    bool addOverlap(int nearEnd = 0);
    void addLines();
    void addCurveAndLine();
    /** Returns the updated count of clipping calls. */
    int addCurves(const ClipRange &range, int calls);
    void addCloseEnds();
    /**
     * Filters, makes the pair of locations, links and inserts them; a NaN point is computed, noTime sought.
     */
    void addLocation(double t1, const vxPoint &p1, double t2, const vxPoint &p2, bool overlap);

private:
    /** A curve and the values that its times count on. */
    struct Side {
        vxCurve *curve;
        const Cubic &values;
    };

    /** Times and points of a pair of locations. */
    struct Meeting {
        double t1;
        vxPoint p1;
        double t2;
        vxPoint p2;

        bool operator==(const Meeting &other) const
        {
            return t1 == other.t1 && t2 == other.t2 && p1 == other.p1 && p2 == other.p2;
        }
    };

    void addLocation(const Side &side1, double t1, const vxPoint &p1, const Side &side2, double t2,
                     const vxPoint &p2, bool overlap);
    void addMeetings(bool endsNear);
    bool addSharedEnd();
    /** Meetings that clipping has found, first on the second curve if flip. */
    void addFound(const TimePairs &found, bool flip);
    void noteNearEnds();
    bool acceptTimes(double t1, double t2, bool overlap) const;
    /** The values that a time found on values counts on: the whole curve's, where the curve has any. */
    Cubic wholeValues(const vxCurve *curve, const Cubic &values) const;

    const PreparedCurve &m_values1;
    const PreparedCurve &m_values2;
    vxCurve *m_curve1;
    vxCurve *m_curve2;
    QList<vxCurveLocation *> &m_locations;
    opParam &m_param;
    const Values m_given;
    /** The last meeting that was rejected, so that the same one is not tried twice in a row. */
    std::optional<Meeting> m_refused;
    /** Some meeting was found, taken or not. */
    bool m_found = false;
};

/** Adds a loop's crossing; see vxCurve::getSelfIntersection for what happens to param. */
void addSelfIntersection(const PreparedCurve &values, vxCurve *curve, QList<vxCurveLocation *> &locations,
                         opParam &param);

} // namespace vx
