#pragma once

#include "pzgraphics_global.h"
#include "vxpoint.h"
#include "vxtolerance.h"

#include <QList>
#include <QString>

#include <functional>
#include <vector>

class vxCurve;
class vxPath;
class vxSegment;
template <typename T>
class vxBatch;

/**
 * One place on one curve of a path: curve, time, point and arc-length offset.
 *
 * An intersection is a pair of locations, one on each curve, that point at each other through intersection;
 * several at one spot are chained through next and previous. A location keeps working while its path is
 * edited: when the path's version moved on, getCurve() finds the curve again from the remembered segments and
 * the point.
 *
 * Ownership: counted by hand; a new location has count 0 and belongs to whoever asked for it. All links and
 * segment slots are plain pointers and own nothing; a dying location takes itself out of its partner and its
 * chain. Use a location only while its path and the segments that it remembers live: who removes segments and
 * goes on using locations holds a reference on those segments.
 */
class PZGRAPHICS_EXPORT vxCurveLocation
{
public:
    /**
     * A time above timeUpper moves to the start of the next curve where there is one. A NaN point is
     * computed, any other kept as given. distance: how far the point is from what it was searched for, in
     * path units.
     */
    vxCurveLocation(vxCurve *curve, double time, const vxPoint &point, bool overlap, double distance);
    vxCurveLocation(const vxCurveLocation &) = delete;
    vxCurveLocation &operator=(const vxCurveLocation &) = delete;
    ~vxCurveLocation();

    void addRef() { ++refCount; }
    /** Deletes the location when the count is 0 or 1 (the count then reads -2), else takes one off. */
    void release()
    {
        if (refCount < 2)
            die();
        else
            --refCount;
    }

    // --- attachment ---

    /** Moves to a curve, keeping time and offset; null: nothing. */
    void setCurve(vxCurve *curve);
    /** Moves to the curve that starts at segment (see vxSegment::getCurve); true when the time became 1. */
    bool setSegment(vxSegment *segment);
    /** Moves to the curve that ends at segment (see vxSegment::getCurvePrev); true when the time became 1. */
    bool setSegmentPrev(vxSegment *segment);
    /** The stored segment as it is. */
    vxSegment *segmentM() const { return segment; }

    // --- queries ---

    /** The curve, found again when the path was edited; null when it is lost. */
    vxCurve *getCurve();
    /** -100 when the curve is lost or the point is not on it. */
    double getTime();
    vxPoint getPoint() const { return point; }
    /** Unit tangent; NaN without a curve or time. */
    vxPoint getTangent();
    /**
     * The segment this location was placed at or found again through; otherwise the nearer end by arc length.
     * Null when lost and never placed at a segment.
     */
    vxSegment *getSegment();
    /** Arc length from the curve's start; 0 without a curve or time. */
    double getCurveOffset();
    /** Arc length from the path's start, cached; 0 when lost. */
    double getOffset();
    /**
     * Same place on the same path, by point and by time or arc length; without ignoreOther the partners too.
     */
    bool equals(vxCurveLocation *other, bool ignoreOther);
    /** Tangents are parallel or opposite, and the curves are not two lines crossing in a point. */
    bool isTouching();
    /** The two paths pass through each other here. */
    bool isCrossing();
    /** Divides the curve here and moves onto the new segment; the second half, or null. */
    vxCurve *divide();
    QString toString();

    // --- lists ---

    /**
     * Inserts loc into the list sorted by path id, then curve index plus time. With merge, an equal entry met
     * while walking from the front over entries at the same point is returned instead, and loc is not
     * inserted.
     */
    static vxCurveLocation *insert(QList<vxCurveLocation *> &list, vxCurveLocation *loc, bool merge);
    /** Both sides of every intersection in list, sorted. */
    static QList<vxCurveLocation *> expand(const QList<vxCurveLocation *> &list);
    /**
     * Frees the uncounted locations of list and their partners, each once. Those on which a segment (or
     * anybody) still holds a reference die with its release.
     */
    static void releaseAll(const QList<vxCurveLocation *> &list);

    // --- internal ---

    /**
     * Sine of the angle from the curve's direction to the partner's, where the two surely pass through each
     * other off their ends; 0 where nobody looked.
     */
    double _turn() const { return m_turn; }
    /** Sets it here, and at the partner. */
    void _setTurn(double sine);

    /** Moves to the end s of a curve, which the caller knows: what setSegment() finds through s. */
    void _place(vxCurve *onCurve, vxSegment *s) { placeOn(onCurve, s); }

    // --- data ---

    /** An end of a stretch that the two curves share. */
    bool overlap = false;

private:
    friend class vxBatch<vxCurveLocation>;
    /** Words from the beginning of its vxBatch block, 0 where it was made by new. Here it fills a gap. */
    quint16 m_inBlock = 0;

public:
    qint32 refCount = 0;
    /** vxPath::version for which curve, time and offset hold; 0 without a path. */
    quint32 version = 0;
    vxPath *path = nullptr;
    /** As last found; getCurve() looks whether it still holds. */
    vxCurve *curve = nullptr;
    /** Cached arc length from the start of the path, in path units; -1: not computed. */
    double offset = vxTolerance::noOffset;
    /** On curve, 0 to 1; -100: unknown. */
    double time = vxTolerance::noTime;
    /** How far point is from what it was searched for, in path units. */
    double distance = 0;
    vxPoint point;
    /** The partner: the same meeting on the other curve. */
    vxCurveLocation *intersection = nullptr;
    /** Others at this spot; see XPath::linkIntersections. */
    vxCurveLocation *next = nullptr;
    vxCurveLocation *previous = nullptr;
    /** The vertex this location was placed at or found through; null: on the way along its curve. */
    vxSegment *segment = nullptr;
    /** Ends of curve, through which it is found again. */
    vxSegment *segment1 = nullptr;
    vxSegment *segment2 = nullptr;

private:
    void die();
    bool placeOn(vxCurve *onCurve, vxSegment *s);
    bool attachThrough(vxSegment *candidate);

    double m_turn = 0;
};

/**
 * A near miss: a vertex of one outline lies so near to the other that rounding may have hidden a meeting
 * there.
 */
struct PZGRAPHICS_EXPORT vxContact {
    const vxSegment *vertex;
    /** Of the other outline: its vertex there, null where it has none; and where its curve starts. */
    const vxSegment *otherVertex;
    const vxSegment *otherStart;
};

/** Two curves whose search was cut short; both may be the same curve (self-intersection search). */
struct PZGRAPHICS_EXPORT vxUnfinished {
    const vxCurve *curve1;
    const vxCurve *curve2;
};

/** Settings of one intersection run, handed through all its routines. */
struct PZGRAPHICS_EXPORT opParam {
    /** Drop meetings at the start of the first curve and at the end of the second. */
    bool excludeStart = false;
    /** Drop meetings at the end of the first curve and at the start of the second. */
    bool excludeEnd = false;
    /** The two curves are the halves of one curve split at renormalizeTime; times are mapped back to it. */
    bool renormalize = false;
    double renormalizeTime = 0;
    /** Added to by the run: searches that were cut short, so that meetings may be missing. */
    std::vector<vxUnfinished> unfinished;
    /** Added to by the run: where ends come so near the other curve that rounding may have hidden a meeting.
     */
    std::vector<vxContact> nearMisses;
    /** When set: meetings for which it answers false are discarded. */
    std::function<bool(vxCurveLocation *)> include;
    /** Of which locations are made; null: each is allocated for itself. */
    vxBatch<vxCurveLocation> *batch = nullptr;
};
