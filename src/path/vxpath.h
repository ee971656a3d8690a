#pragma once

#include "pzgraphics_global.h"
#include "vxcurve.h"
#include "vxmono.h"
#include "vxpoint.h"
#include "vxrect.h"
#include "vxsegment.h"
#include "vxsize.h"
#include "vxstyle.h"

#include <QList>
#include <QString>
#include <QVector>

#include <atomic>
#include <memory>
#include <vector>

class XPath;
namespace vx {
class Divisions;
class MonoIndex;
} // namespace vx

/**
 * One contour: an ordered list of segments, open or closed, with the curves between them built on demand.
 *
 * y points down, so a contour that runs clockwise on screen has a positive area. Operations on an empty path
 * answer null, an empty list, a NaN point or 0. Indexes out of range are clamped or ignored, never read.
 *
 * Ownership: counted by hand; a new path has count 0 and is deleted by a release() below 2. The path holds
 * one reference on each of its segments and cached curves and owns its monotone pieces. The parent is not
 * counted. Caches (curve lengths, length, area, bounds, monotone pieces) are dropped by _changed(), which
 * every edit calls. Paths on different threads are independent; one path belongs to one thread at a time.
 */
class PZGRAPHICS_EXPORT vxPath
{
public:
    explicit vxPath(XPath *parent = nullptr, bool closed = false);
    vxPath(const vxPath &) = delete;
    vxPath &operator=(const vxPath &) = delete;
    ~vxPath();

    /** A new path (count 0, new id, no parent) with copies of the segments, the closed flag and the flags. */
    vxPath *clone() const;
    /** Becomes a copy of other (segments, closed flag, flags); keeps its id and parent. */
    void assign(const vxPath &other);
    void addRef() { ++refCount; }
    void release();

    // --- flags: 1 made clockwise, 2 made counter-clockwise; 4, 8 and 16 are scratch of a boolean ---

    static constexpr quint32 madeClockwise = 1;
    static constexpr quint32 madeCounterClockwise = 2;
    void addFlags(quint32 mask) { flags |= mask; }
    void removeFlags(quint32 mask) { flags &= ~mask; }
    /** True when any bit of mask is set. */
    bool isFlags(quint32 mask) const { return (flags & mask) != 0; }

    // --- queries ---

    bool isEmpty() const { return m_segments.isEmpty(); }
    bool isClosed() const { return closed; }
    /** The segments, shared (no deep copy); they stay the path's. */
    QList<vxSegment *> getSegments() const { return m_segments; }
    vxSegment *getFirstSegment() const { return m_segments.isEmpty() ? nullptr : m_segments.first(); }
    vxSegment *getLastSegment() const { return m_segments.isEmpty() ? nullptr : m_segments.last(); }
    /** The segment that drawing goes on from: the last one. */
    vxSegment *getCurrentSegment() const { return getLastSegment(); }
    /** The curves, built on first use; they stay the path's. An open path of one segment has none. */
    QList<vxCurve *> getCurves() const { return _curves(); }
    vxCurve *getFirstCurve() const;
    vxCurve *getLastCurve() const;
    bool hasHandles() const;
    /** Same closed flag and the same segments within machineZero. */
    bool equals(const vxPath &other) const;
    QString toString() const;

    // --- editing ---

    /** Appends segment (a clone of it when it already belongs to a path); returns the segment added. */
    vxSegment *addSegment(vxSegment *segment);
    /** As addSegment, before position index (clamped). */
    vxSegment *insertSegment(int index, vxSegment *segment);
    /**
     * Inserts the list before position index (-1 or past the end: appends), cloning segments that belong to a
     * path; returns the segments added. curves, when not null, becomes the refreshed curve list.
     */
    QList<vxSegment *> addSegments(const QList<vxSegment *> &list, int index = -1,
                                   QList<vxCurve *> *curves = nullptr);
    /** Replaces all segments; the list may hold segments of this path. */
    void setSegments(const QList<vxSegment *> &list);
    /** False when there is no such segment. The segment dies unless somebody else holds it. */
    bool removeSegment(int index);
    /**
     * Removes the segments in [from, to) (to -1: the end) and returns them. The caller gets one reference on
     * each and releases them; they have no path and index -1.
     */
    QList<vxSegment *> removeSegments(int from = 0, int to = -1);
    void setClosed(bool closed);
    void clearHandles();
    /** Reverses the direction; orientation flags are exchanged. */
    void reverse();
    /**
     * Makes a closed path run clockwise or not, and remembers that by a flag; an open path stays as it is.
     */
    void setClockwise(bool clockwise);
    /** setClockwise(true). */
    void reorient() { setClockwise(true); }
    /**
     * Appends other (not this, may be null) where ends meet within tolerance, reversing it where needed, and
     * removes it from its parent; then, or for null and this path itself, closes the path when its ends meet
     * within tolerance. An other with no end near is appended at the end. A closed path joins as its outline,
     * opened at its first segment. Other is left empty, and is deleted if only its parent held it.
     */
    void join(vxPath *other, double tolerance);
    /**
     * Removes straight curves no longer than closeDistance and, with simplify, the segments between collinear
     * straight curves (on an open path only where both run the same way, so that the tip of a line out and
     * back stays).
     */
    void reduce(bool simplify);
    /** splitAt() at a curve index and time. */
    vxPath *split(int index, double time);
    /** splitAt() at an arc length, negative counted from the end. */
    vxPath *splitAt(double offset);
    /**
     * Splits at location's curve index and time on this path. A closed path is opened there and returned; an
     * open one keeps the part before and a new path (put behind this one in the parent; without a parent the
     * caller's) gets the part after. Null: nothing happened.
     */
    vxPath *splitAt(vxCurveLocation *location);
    /**
     * Becomes (1 - factor) * from + factor * to, with from's segment count and closed flag; needs equal
     * counts.
     */
    void interpolate(const vxPath *from, const vxPath *to, double factor);
    /** Maps all segments; a mirroring matrix exchanges the orientation flags. */
    void transformContent(const vxMatrix *matrix);

    // --- building; on an empty path every call starts it at its own point, relative ones at the origin ---

    /** Starts the path; a lone segment is replaced; a path with more segments stays as it is. */
    void moveTo(double x, double y);
    void moveToPt(const vxPoint &p) { moveTo(p.x, p.y); }
    void lineTo(double x, double y);
    void lineToPt(const vxPoint &p) { lineTo(p.x, p.y); }
    void lineBy(const vxPoint &delta);
    void cubicCurveTo(const vxPoint &handle1, const vxPoint &handle2, const vxPoint &to);
    void cubicCurveBy(const vxPoint &handle1, const vxPoint &handle2, const vxPoint &to);
    void quadraticCurveTo(const vxPoint &handle, const vxPoint &to);
    void quadraticCurveBy(const vxPoint &handle, const vxPoint &to);
    /**
     * Elliptic arc to a point: radii, rotation of the ellipse in degrees, large: the long way round, sweep:
     * clockwise on screen. Radii that are too small are scaled up; a zero or non-finite radius gives
     * a line.
     */
    void arcTo(const vxPoint &to, const vxSize &radii, double rotation, bool large, bool sweep);
    void arcBy(const vxPoint &to, const vxSize &radii, double rotation, bool large, bool sweep);
    /**
     * Arc of the ellipse in rect, angles in degrees, counterclockwise on screen as in vxBezier::arcToBezier;
     * a line leads to its start. An empty rect and what is not finite add nothing.
     */
    void arcTo2(const vxRect &rect, double start, double sweep);
    /** Becomes (when empty) or appends the closed ellipse in rect. */
    void ellipse(const vxRect &rect);

    // --- measurement ---

    /**
     * Signed area in square path units, positive for clockwise. cached: gives and keeps the stored value, and
     * the path's own closed flag decides whether the closing curve counts; otherwise the argument does.
     */
    double getArea(bool cached, bool closed) const;
    /** The orientation flags decide where one is set, else the sign of the area (0 counts as clockwise). */
    bool isClockwise() const;
    double getLength() const;
    /**
     * Geometric bounds of the curves; matrix (may be null) maps them first. All zero for an empty path, NaN
     * where no coordinate is a number. Option and style change nothing yet.
     */
    vxRect getBounds(const vxBoundOpt &option, const vxStyle &style, const vxMatrix *matrix = nullptr) const;
    /**
     * A new location (count 0, the caller's) at an arc length, negative from the end; null beyond it or for
     * NaN.
     */
    vxCurveLocation *getLocationAt(double offset) const;
    vxPoint getPointAt(double offset) const;
    vxPoint getTangentAt(double offset) const;
    vxPoint getNormalAt(double offset) const;
    vxPoint getWeightedTangentAt(double offset) const;
    vxPoint getWeightedNormalAt(double offset) const;
    double getCurvatureAt(double offset) const;
    /**
     * A new location (count 0, the caller's) at the nearest curve point, distance filled; null without
     * curves.
     */
    vxCurveLocation *getNearestLocation(const vxPoint &point) const;
    /** A new location (count 0, the caller's) for a point on the path; null when it is not on it. */
    vxCurveLocation *getLocationOf(const vxPoint &point) const;
    /** Arc length at a point on the path; -1 when it is not on it. */
    double getOffsetOf(const vxPoint &point) const;
    /**
     * The curve at an arc length, negative from the end; offset becomes the arc length within it. Null, and
     * offset as it was, beyond the ends and for NaN.
     */
    vxCurve *getCurveAtOff(double &offset) const;

    // --- monotone pieces and containment: src/boolean/ (vxpath_mono.cpp), src/measure/ (vxpath_contains.cpp)
    // ---

    /**
     * The y-monotone pieces of the outline (an open path is closed by a line), cached; they stay the path's.
     */
    QList<vxMono *> getMonoCurves() const;
    void clearMonos() const;
    /** Whether point lies in the filled area; false on or outside the bounds, either on the outline within.
     */
    bool contains(const vxPoint &point, const vxStyle &style) const;
    /** A point inside the filled area where there is one; the centre of the bounds when none is found. */
    vxPoint getInteriorPoint(bool evenOdd) const;

    // --- flattening and smoothing: src/measure/ (vxpath_flatten.cpp, vxpath_smooth.cpp) ---

    /**
     * Replaces the curves by straight segments within flatness path units, a positive number (at most 256
     * pieces a curve).
     */
    void flatten(double flatness);
    /**
     * Sets the handles of the segments from to to (negative: from the end on a closed path; to -1: the last)
     * so that the contour runs smoothly. type 1 Catmull-Rom, 2 geometric (both with factor), 3 asymmetric and
     * 4 symmetric control-point system (factor plays no part); any other type: nothing.
     */
    void smooth(int type, double factor, int from, int to);

    // --- statics ---

    /** Number of paths made so far; the next id minus one. Safe to read and advance from several threads. */
    static std::atomic<quint32> s_maxID;
    /** Set by the application, never here: skip intersections between two lists of exactly six curves. */
    static bool m_isClloutOpt;

    // --- internal ---

    /** Looks, for all copies, whether reduce(true) has nothing to drop. */
    void _noteReduced();
    /** The one place that drops what was computed from the geometry and advances the version. */
    void _changed();
    /**
     * Detects edits made through plain setters by comparing a fingerprint of the outline, and calls
     * _changed() if it differs; the first call after that (or on a new path) only records it. Call it before
     * using or storing any hidden cache (bounds, what is known of reducing, cleaned copies). Costs a pass
     * over all segments.
     */
    void _noticeEdits() const;
    /** getBounds() right after _noticeEdits(). */
    vxRect _bounds() const;
    // getSegments() and getCurves() without a copy of the list, for walks that edit nothing.
    const QList<vxSegment *> &_segments() const { return m_segments; }
    const QList<vxCurve *> &_curves() const
    {
        if (m_curves.isEmpty())
            makeCurves();
        return m_curves;
    }
    /** Whether curves are made by now. */
    bool _hasCurves() const { return !m_curves.isEmpty(); }
    /** Drops all that a boolean leaves on a working copy of which it makes a result, and the curves. */
    void _clearScratch();
    /** Builds the curves, where there are none, of batch. */
    void _makeCurves(vxBatch<vxCurve> &batch) const;
    /** Replaces all segments by new ones with these points and handles. */
    void _setOutline(const std::vector<vxSegment> &outline);
    /** Takes segments that belong to no path, where it has none. */
    void _takeOutline(const std::vector<vxSegment *> &outline);
    int _countCurves() const
    {
        return closed || m_segments.isEmpty() ? m_segments.size() : m_segments.size() - 1;
    }
    /** The monotone pieces with an index over them, cached beside them. */
    const vx::MonoIndex &_monoIndex() const;
    /**
     * The same for a question about a single point; null for the first few questions since an edit, which are
     * answered sooner without it.
     */
    const vx::MonoIndex *_monoIndexIfAskedOften() const;
    /** XPath::getWinding() of this path alone, probed sideways. */
    vxWinding _winding(const vxPoint &point) const;
    /**
     * Brings the cached curve list into step after count segments were inserted before start (negative:
     * removed).
     */
    void _adjustCurves(int start, int count);
    /** Whether curve stands in the cached curve list where its index says. */
    bool _lists(const vxCurve *curve) const;
    /**
     * Divides a listed curve as vxCurve::divideAtTime() does, but leaves the new segment and the second half,
     * which is returned, out of the lists until _insertDivisions(): so that many divisions cost one splice.
     * Until then nobody may ask for lists or neighbours. Null where divideAtTime() refuses.
     */
    vxCurve *_divideCurve(vxCurve *curve, double t, vx::Divisions &divisions);
    /** Lists all that divisions holds, which must be of this path, and empties it. */
    void _insertDivisions(vx::Divisions &divisions);
    /** assign() to a contour that has no segments, with those of batch. */
    void _copyFrom(const vxPath &other, vxBatch<vxSegment> &batch);

    // --- data ---

    /** To be written by setClosed() alone, which keeps the curves in step. */
    bool closed = false;
    quint32 flags = 0;
    quint32 refCount = 0;
    /** Advances with every edit, so that locations notice. */
    quint32 version = 0;
    /** Order of creation, from 1. */
    quint32 id = 0;
    /** Position among the parent's children. */
    qint32 index = 0;
    /** Cached; 0 means not computed. */
    mutable double length = 0;
    mutable double area = 0;
    XPath *parent = nullptr;

private:
    void renumber(int from);
    /** Appends to a path without curves; originals must not be the path's own list. */
    void appendCopiesOf(const QList<vxSegment *> &originals, vxBatch<vxSegment> &batch);
    template <typename SegmentAt>
    void append(int count, const SegmentAt &segmentAt);
    void makeCurves() const;
    void releaseCurves();
    void insertCurves(int start, int count);
    void removeCurves(int start, int count);
    void exchangeOrientation();
    void takeOver(vxPath *other, double tolerance);
    void closeAtEnds(double tolerance);
    vxPath *openAt(int index);
    vxPath *cutAt(int index);
    vxPoint startedPoint();
    vxCurve *curveAndTimeAt(double offset, double &time) const;

    QList<vxSegment *> m_segments;
    mutable QList<vxCurve *> m_curves;
    /** The pieces, in one block, and the list of them that is handed out. */
    mutable std::vector<vxMono> m_monoBlock;
    mutable QList<vxMono *> m_monos;
    mutable std::unique_ptr<vx::MonoIndex> m_monoIndex;
    /** Questions about single points, and the version since which they are counted. */
    mutable int m_questions = 0;
    mutable quint32 m_questionsVersion = 0;
    /** Of the outline as it was when edits were last looked for; 0: not since the last one. */
    mutable quint64 m_fingerprint = 0;
    mutable vxRect m_bounds;
    mutable bool m_boundsValid = false;
    /** Known to have no segments that reduce(true) drops: results are reduced again where nothing was cut. */
    bool m_isReduced = false;
};
