#pragma once

#include "pzgraphics_global.h"
#include "vxline.h"
#include "vxpoint.h"
#include "vxrect.h"
#include "vxsegment.h"

#include <QList>
#include <QString>
#include <QVector>

#include <memory>

class vxCurveLocation;
class vxMatrix;
class vxPath;
struct opParam;
template <typename T>
class vxBatch;
namespace vx {
struct Cubic;
}

/**
 * The cubic Bézier between two neighbouring segments of a path, and the static operations of curve
 * mathematics.
 *
 * Curve values are a QVector of eight doubles in absolute path units: start, first control point, second
 * control point, end (coordinate c of point k at 2k + c). Times run from 0 to 1; -100 (vxTolerance::noTime)
 * means unknown or not on the curve. Static operations given fewer than eight values answer a NaN point, 0,
 * -100 or an empty list.
 *
 * Ownership: counted by hand like a segment; a curve holds one reference on each of its segments. The back
 * pointer to the path is not counted. Not copyable; clone() shares the segments.
 */
class PZGRAPHICS_EXPORT vxCurve
{
public:
    vxCurve() = default;
    vxCurve(vxPath *path, vxSegment *segment1, vxSegment *segment2)
        : m_path(path), m_segment1(held(segment1)), m_segment2(held(segment2))
    {
    }
    /** A curve on two new segments of its own; fewer than eight values give a curve without segments. */
    explicit vxCurve(const QVector<double> &values, vxPath *path = nullptr);
    vxCurve(const vxCurve &) = delete;
    vxCurve &operator=(const vxCurve &) = delete;
    ~vxCurve()
    {
        letGo(m_segment1);
        // A borrowed end may be gone by now: only what is held may be touched.
        letGo(m_heldSegment2 ? m_heldSegment2 : m_segment2);
    }

    /** A new curve (count 0) on the same path and the same two segments. */
    vxCurve *clone() const;
    void addRef() { ++refCount; }
    void release()
    {
        if (refCount < 2)
            die();
        else
            --refCount;
    }

    // --- accessors ---

    vxSegment *segment1() const { return m_segment1; }
    vxSegment *segment2() const { return m_segment2; }
    vxPath *path() const { return m_path; }
    /** Position in the path's curve list: the index of the first segment; -1 without one. */
    int index() const { return m_segment1 ? m_segment1->index : -1; }
    /** NaN without a segment. */
    vxPoint getPoint1() const;
    vxPoint getPoint2() const;
    vxLine getLine() const;
    bool hasHandles() const;
    /** Zeroes the two handles of this curve. */
    void clearHandles();
    /** The neighbours in the path; they wrap on a closed path, else null at the ends and without a path. */
    vxCurve *getNext() const;
    vxCurve *getPrevious() const;
    bool isFirst() const;
    bool isLast() const;
    /**
     * Removes the second segment from the path, giving its outgoing handle to the first; false without a
     * path.
     */
    bool remove();
    QString toString() const;

    // --- geometry of this curve; the static forms below say what each gives ---

    QVector<double> getValues(const vxMatrix *matrix = nullptr) const;
    vxPoint getPointAtTime(double t) const;
    vxPoint getTangentAtTime(double t) const;
    vxPoint getWeightedTangentAtTime(double t) const;
    vxPoint getNormalAtTime(double t) const;
    vxPoint getWeightedNormalAtTime(double t) const;
    double getCurvatureAtTime(double t) const;
    /** Arc length of the whole curve, cached until the path changes. */
    double getLength() const;
    double getPartLength(double from, double to) const;
    /** Time at an arc length; negative counts back from the end. start: see the static form. */
    double getTimeAt(double offset, double start = vxTolerance::noTime) const;
    /** Point at a time, or at an arc length (negative: from the end). */
    vxPoint getPointAt(double offset, bool isTime = false) const;
    double getTimeOf(const vxPoint &point) const;
    double getNearestTime(const vxPoint &point) const;
    /** Arc length from the start of the path to time t on this curve (of this curve alone when free). */
    double getOffsetAtTime(double t) const;
    /** A new location (count 0, the caller's) for a point on the curve, null when it is not on it. */
    vxCurveLocation *getLocationOf(const vxPoint &point);
    /** A new free curve (count 0, the caller's). */
    vxCurve *getPart(double from, double to) const;
    /** Tight bounds, cached until the path changes. */
    vxRect getBounds() const;
    double getArea() const;
    bool isStraight() const;
    bool isLinear() const;
    /** Both curves straight, and their chords collinear. */
    bool isCollinear(const vxCurve *curve) const;
    /** Straight, and the tangent at the middle has |y| (|x|) below 1e-7. */
    bool isHorizontal() const;
    bool isVertical() const;

    // --- edits ---

    /**
     * Splits at time t; null within timeMargin of an end or for NaN. In a path: inserts one segment and
     * returns the second half, which belongs to the path; every other curve object stays. Without a path:
     * this curve becomes the first half and the second half is returned as a new free curve (count 0, the
     * caller's), on the reference counts that follow: the new middle segment is held by the new curve only
     * (this curve borrows it), and this curve goes on holding its old end until it is destroyed. So keep the
     * new curve alive while this one is used. Handles are written when setHandles is set or the curve has
     * any.
     */
    vxCurve *divideAtTime(double t, bool setHandles);
    /** The path's splitAt(location); null without a path or location. */
    vxPath *splitAt(vxCurveLocation *location);
    /** Drops what this curve has cached (length, bounds). For edits of its path vxPath::_changed() does. */
    void _changed();

    // --- curve mathematics on values (src/geometry/, kernel in vxcubic_*.cpp) ---

    /** Values between two segments, mapped by matrix if that is not null; empty when a segment is null. */
    static QVector<double> getValues(const vxSegment *segment1, const vxSegment *segment2,
                                     const vxMatrix *matrix);
    /** type 0 point, 1 derivative, 2 normal (dy, -dx), 3 curvature (k, 0); NaN for t outside [0, 1]. */
    static vxPoint _evaluate(const QVector<double> &values, double t, int type, bool normalized);
    /** The point at time t. This and the next five answer NaN for t outside [0, 1]. */
    static vxPoint getPoint(const QVector<double> &values, double t);
    /**
     * Of length 1, in the direction of travel; at an end where the derivative vanishes, the direction between
     * the two control points. (0, 0) where there is none.
     */
    static vxPoint getTangent(const QVector<double> &values, double t);
    /** The derivative, in path units per unit of curve time. */
    static vxPoint getWeightedTangent(const QVector<double> &values, double t);
    /** (dy, -dx) of getTangent(). */
    static vxPoint getNormal(const QVector<double> &values, double t);
    /** (dy, -dx) of the derivative. */
    static vxPoint getWeightedNormal(const QVector<double> &values, double t);
    /** Per path unit, positive where the curve turns clockwise on screen; 0 where the derivative vanishes. */
    static double getCurvature(const QVector<double> &values, double t);
    /**
     * Arc length in path units between times a <= b: one Gauss-Legendre rule over the speed, exact when
     * isStraight() (which no line that turns back is), mostly off by less than a ten-thousandth, by up to a
     * hundredth where a curve turns sharply.
     */
    static double getLength(const QVector<double> &values, double a = 0, double b = 1);
    /** Gauss-Legendre order for a time range: ceil(32 |b - a|) within 2 to 16. */
    static int getIterations(double a, double b);
    /**
     * Time at arc length offset (path units, negative: backwards) from time start; start -100: from the start
     * of the curve, or from its end for a negative offset. -100 when the curve ends before, when start is
     * outside [0, 1], or for NaN. An offset of 0 gives start back, whatever it is.
     */
    static double getTimeAt(const QVector<double> &values, double offset, double start);
    /** Point at a time, or at an arc length (negative: from the end); NaN beyond the ends. */
    static vxPoint getPointAt(const QVector<double> &values, double offset, bool isTime);
    /** Time of a point on the curve, -100 when it lies farther off than closeDistance. */
    static double getTimeOf(const QVector<double> &values, const vxPoint &point);
    /** Time of the curve point nearest to point, always in [0, 1]; 0 for NaN. */
    static double getNearestTime(const QVector<double> &values, const vxPoint &point);
    /** The two parts at t, by de Casteljau's construction; t is not clamped. */
    static QVector<QVector<double>> subdivide(const QVector<double> &values, double t);
    /** The part between two times; reversed when from > to. */
    static QVector<double> getPart(const QVector<double> &values, double from, double to);
    /** Tight bounds; all zero for fewer than eight values. */
    static vxRect getBounds(const QVector<double> &values);
    /**
     * Extends (*min)[coord] and (*max)[coord] by the range of a curve with these control values in one
     * coordinate; null or too short vectors: nothing. min and max must already hold q0. padding / 2 is added
     * on each side, but not to q3 unless all control values lie between the ends; nothing is extended while
     * all four lie within padding / 2 of the range. roots is unused.
     */
    static void addBounds(double q0, double q1, double q2, double q3, int coord, double padding,
                          QVector<double> *min, QVector<double> *max, QVector<double> &roots);
    /**
     * Times in [min, max] where coordinate coord (0 x, 1 y) equals val; min = max = 0: unbounded. Returns
     * their number, 0 to 3, and writes them to roots from index 0, lengthening it where needed. None when the
     * curve lies on val throughout, and for any other coord.
     */
    static int solveCubic(const QVector<double> &values, int coord, double val, QVector<double> &roots,
                          double min, double max);
    /**
     * Signed area between the curve and the origin, in square path units, so that a closed chain sums to its
     * area; clockwise on screen is positive.
     */
    static double getArea(const QVector<double> &values);
    /**
     * No handles, or both handles on the chord, pointing inward and not overshooting. This and isLinear()
     * take handles relative to the ends of line.
     */
    static bool isStraight(const vxLine &line, const vxPoint &h1, const vxPoint &h2);
    static bool isStraight(const QVector<double> &values);
    /** Both control points sit at the thirds of the chord, within machineZero per coordinate. */
    static bool isLinear(const vxLine &line, const vxPoint &h1, const vxPoint &h2);
    static bool isLinear(const QVector<double> &values);
    /** A control point differs from its end point by more than machineZero in a coordinate. */
    static bool hasHandles(const QVector<double> &values);
    /** The curve surely stays within flatness path units of its chord. */
    static bool isFlatEnough(const QVector<double> &values, double flatness);

    // --- intersections: src/intersect/ (vxcurve_intersect.cpp) ---
    // Functions that fill or return locations leave them to the caller: see vxCurveLocation::releaseAll.

    /** Meetings of two curves, or of c1 with itself when c2 is null or c1. */
    static QList<vxCurveLocation *> getIntersectionscurve(vxCurve *c1, vxCurve *c2);
    /** Adds the meetings to locations and returns a copy of it; empty vals2: vals1 with itself. */
    static QList<vxCurveLocation *> getIntersections(const QVector<double> &vals1,
                                                     const QVector<double> &vals2, vxCurve *c1, vxCurve *c2,
                                                     QList<vxCurveLocation *> &locations, opParam &param);
    /**
     * A loop's crossing. Leaves renormalize, renormalizeTime and excludeEnd set in param when the curve may
     * loop.
     */
    static QList<vxCurveLocation *> getSelfIntersection(const QVector<double> &vals1, vxCurve *c1,
                                                        QList<vxCurveLocation *> &locations, opParam &param);
    /** Empty, or the two (time on vals1, time on vals2) pairs that bound the stretch both curves share. */
    static QVector<vxPoint> getOverlaps(const QVector<double> &vals1, const QVector<double> &vals2);
    /** Both curves straight: the point that their chords share, if any. */
    static void addLineIntersection(const QVector<double> &vals1, const QVector<double> &vals2, vxCurve *c1,
                                    vxCurve *c2, QList<vxCurveLocation *> &locations, opParam &param);
    /** One curve straight: up to three points of the other on its chord. */
    static void addCurveLineIntersections(const QVector<double> &vals1, const QVector<double> &vals2,
                                          vxCurve *c1, vxCurve *c2, QList<vxCurveLocation *> &locations,
                                          opParam &param);
    /**
     * Fat-line clipping after Sederberg and Nishita. vals1 is the part of c1 between times tMin and tMax,
     * vals2 that of c2 between uMin and uMax; meetings are added by their times on the whole curves. flip
     * exchanges the roles in what is added: c2 counts as the first curve. recursion is the depth reached so
     * far (0 to below 48, else nothing is done), calls the number of clips made so far, of at most 4096;
     * returns their new number. At either limit the search stops, which param.unfinished tells.
     */
    static int addCurveIntersections(const QVector<double> &vals1, const QVector<double> &vals2, vxCurve *c1,
                                     vxCurve *c2, QList<vxCurveLocation *> &locations, opParam &param,
                                     double tMin, double tMax, double uMin, double uMax, bool flip,
                                     double recursion, int calls);
    /**
     * Top and bottom chain of the hull of (0, dq0), (1/3, dq1), (2/3, dq2), (1, dq3), both from first to
     * last.
     */
    static QVector<QVector<vxPoint>> getConvexHull(double dq0, double dq1, double dq2, double dq3);
    /** First time at which the hull, of at most four points a chain, enters [dMin, dMax], else NaN. */
    static double clipConvexHull(const QVector<vxPoint> &hullTop, const QVector<vxPoint> &hullBottom,
                                 double dMin, double dMax);
    /** First time at which a chain comes up (top) or down to threshold, NaN when it does not. */
    static double clipConvexHullPart(const QVector<vxPoint> &part, bool top, double threshold);
    /**
     * The one place where a pair of locations is made: filters, links, merges into the sorted list. A time of
     * -100 is sought at its point; a NaN point is computed from its time.
     */
    static void addLocation(QList<vxCurveLocation *> &locations, opParam &param, const QVector<double> &vals1,
                            vxCurve *c1, double t1, const vxPoint &p1, const QVector<double> &vals2,
                            vxCurve *c2, double t2, const vxPoint &p2, bool overlap);

    // --- internal ---

    /** This curve as the kernel's record; all zero without segments. */
    vx::Cubic _cubic() const;
    /** Called by the path when it puts another segment at this curve's end or leaves it to others. */
    void _setSegment2(vxSegment *segment);
    void _detach() { m_path = nullptr; }
    /**
     * A number that stays with the curve until it is divided or drops its caches otherwise; -1: none. For
     * curves of working copies, which nobody edits but by division.
     */
    int _number() const { return m_number; }
    void _setNumber(int number) { m_number = number; }
    /** Arc length from the start of the path to the start of this curve; 0 on a free curve. */
    double _startOffset() const;
    /** For who knows what getLength() is going to compute. */
    void _setLength(double length);
    /**
     * The first step of divideAtTime(): a new free segment at time t, of batch where there is one, the
     * handles around it written; null where that refuses.
     */
    vxSegment *_makeMiddle(double t, bool setHandles, vxBatch<vxSegment> *batch = nullptr);

    quint32 refCount = 0;

private:
    friend class vxBatch<vxCurve>;
    void die();
    static vxSegment *held(vxSegment *segment)
    {
        if (segment)
            segment->addRef();
        return segment;
    }
    static void letGo(vxSegment *segment)
    {
        if (segment)
            segment->release();
    }

    /** Bounds, and the path version for which they hold; 0 on a free curve. */
    struct KeptBounds {
        vxRect box;
        quint32 version;
    };

    /** Words from the beginning of its vxBatch block, 0 where it was made by new. */
    quint16 m_inBlock = 0;
    /** Path version for which m_length holds; 0 on a free curve. */
    mutable quint32 m_lengthVersion = 0;
    qint32 m_number = -1;
    vxPath *m_path = nullptr;
    vxSegment *m_segment1 = nullptr;
    vxSegment *m_segment2 = nullptr;
    /**
     * The segment that this curve still holds a reference on after a free division gave its slot to another,
     * from which m_segment2 is only borrowed then; else null.
     */
    vxSegment *m_heldSegment2 = nullptr;
    /** Null until asked for: few curves ever are. */
    mutable std::unique_ptr<KeptBounds> m_bounds;
    mutable double m_length = 0;
};
