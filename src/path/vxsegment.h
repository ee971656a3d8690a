#pragma once

#include "pzgraphics_global.h"
#include "vxpoint.h"

#include <QList>
#include <QString>
#include <QVector>

class vxCurve;
class vxCurveLocation;
class vxMatrix;
class vxPath;
template <typename T>
class vxBatch;

/**
 * One vertex of a path: an anchor point with an incoming and an outgoing Bézier handle.
 *
 * Handles are relative to the point. The curve between two neighbouring segments is made of the first one's
 * point and handleOut and the second one's handleIn and point. The plain setters do not tell the path:
 * whoever edits a segment that belongs to a path calls vxPath::_changed() afterwards, or the path goes on
 * answering with lengths, areas, bounds and places that it has kept. Booleans, searches for crossings and
 * clones of compound paths notice by themselves.
 *
 * Ownership: counted by hand. A new segment has count 0; every container that keeps it calls addRef() and
 * later release(). The back pointer to the path is not counted. Copying a segment copies point and handles
 * only.
 */
class PZGRAPHICS_EXPORT vxSegment
{
public:
    vxSegment() = default;
    vxSegment(double x, double y) : point(x, y) {}
    vxSegment(const vxPoint &point, const vxPoint &handleIn, const vxPoint &handleOut)
        : point(point), handleIn(handleIn), handleOut(handleOut)
    {
    }
    vxSegment(const vxSegment &other) : vxSegment(other.point, other.handleIn, other.handleOut) {}
    vxSegment &operator=(const vxSegment &other);
    ~vxSegment()
    {
        path = nullptr;
        if (m_intersection)
            setIntersection(nullptr);
    }

    /** A new free segment (count 0) with the same point and handles. */
    vxSegment *clone() const;

    void addRef() { ++refCount; }
    /**
     * Deletes the segment when the count is below 2 (the count then reads 0xFFFFFFFE), else takes one off.
     */
    void release()
    {
        if (refCount < 2)
            die();
        else
            --refCount;
    }

    // --- accessors ---

    vxPoint getPoint() const { return point; }
    vxPoint getHandleIn() const { return handleIn; }
    vxPoint getHandleOut() const { return handleOut; }
    void setPoint(const vxPoint &p) { point = p; }
    void setHandleIn(const vxPoint &p) { handleIn = p; }
    void setHandleOut(const vxPoint &p) { handleOut = p; }
    bool hasHandles() const { return !handleIn.isZero() || !handleOut.isZero(); }
    void clearHandles();

    /** The location that path division attached here, or null; see XPath::divideLocations. */
    vxCurveLocation *intersection() const { return m_intersection; }
    /** Takes a counted reference on location (may be null) and drops the old one. */
    void setIntersection(vxCurveLocation *location);

    // --- neighbours; null or false without a path ---

    /** The next segment; of the last one, the first on a closed path, null on an open one. */
    vxSegment *getNext() const;
    /** The previous segment; of the first one, the last on a closed path, null on an open one. */
    vxSegment *getPrevious() const;
    bool isFirst() const;
    bool isLast() const;
    /** Removes this segment from its path; it may be deleted by that. */
    bool remove();

    /**
     * The curve that starts here; of the last segment of an open path, the curve that ends here. Null if
     * none.
     */
    vxCurve *getCurve() const;
    /**
     * On an open path the curve that ends here (of the first segment: the curve that starts here). On a
     * closed path the closing curve for the first segment and, for every other, the curve that starts here:
     * callers rely on it.
     */
    vxCurve *getCurvePrev() const;
    /** A new location (count 0, the caller's) at this segment on getCurve(); null without a curve. */
    vxCurveLocation *getLocation() const;

    // --- edits ---

    /** In place: exchanges the two handles. */
    void reverse();
    /** A value with the same point and exchanged handles. */
    vxSegment reversed() const { return vxSegment(point, handleOut, handleIn); }
    /** In place: (1 - factor) * from + factor * to for point and handles. */
    void interpolate(const vxSegment &from, const vxSegment &to, double factor);
    /** In place: maps point and handles; null: nothing. The path is not told. */
    void transform(const vxMatrix *matrix);
    /**
     * Writes the absolute positions of point, incoming and outgoing handle to coords[0..5] (at least six
     * doubles, else nothing happens), mapped by matrix if that is not null; with change and a matrix the
     * segment takes them.
     */
    void transformCoordinates(const vxMatrix *matrix, QVector<double> &coords, bool change);
    /**
     * Sets the handles from the neighbouring points. Type 1: Catmull-Rom with the given parametrisation
     * exponent (-1: 0.5, centripetal). Type 2: handles along the chord of the neighbours (-1: 0.4), needs
     * both neighbours; coincident neighbours give NaN. Any other type: nothing. The path is not told.
     */
    void smooth(bool skipIn, bool skipOut, int type, double factor);

    /** Same count, and points and handles equal within machineZero per coordinate, inclusive. */
    static bool segsEquals(const QList<vxSegment *> &list1, const QList<vxSegment *> &list2);

    QString toString() const;

    // --- internal ---

    /** Takes back what a running boolean wrote here, but for the location, which is to be gone by now. */
    void _clearScratch()
    {
        visited = contour = walked = changedOver = false;
        position = 0;
        arrival = noPosition;
        winding = -1;
    }

    /** Called by the path when it takes this segment out of its list. */
    void _detach()
    {
        path = nullptr;
        index = -1;
    }

    // --- data; what stands before refCount, and winding, are scratch of a running boolean ---

    /** The tracer has used it up: no contour of the result passes here any more. */
    bool visited = false;
    /** vxWinding::contour of the stretch that starts here: it bounds the filled area. */
    bool contour = false;
    /** Where the curve that starts here lies, a vx::Position. */
    quint8 position = 0;
    /** The same of the curve that ends here, where a meeting told both; else noPosition. */
    static constexpr quint8 noPosition = 0xff;
    quint8 arrival = noPosition;
    /** The curve that starts here belongs to a contour of the result. */
    bool walked = false;
    /** The tracer reached this segment by switching from another curve that ends here. */
    bool changedOver = false;

private:
    friend class vxBatch<vxSegment>;
    /** Words from the beginning of its vxBatch block, 0 where it was made by new. Here it fills a gap. */
    quint16 m_inBlock = 0;

public:
    quint32 refCount = 0;
    /** Position in the path's list, -1 when free. */
    qint32 index = -1;
    /** vxWinding::winding of the stretch that starts here; -1: not counted. */
    qint32 winding = -1;
    vxPath *path = nullptr;
    vxPoint point;
    vxPoint handleIn;
    vxPoint handleOut;

private:
    void die();

    vxCurveLocation *m_intersection = nullptr;
};
