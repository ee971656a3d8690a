#pragma once

#include "pzgraphics_global.h"
#include "vxbooleanreport.h"

#include <QPoint>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>

class QPainterPath;
class XPath;

/**
 * The application's path: a flat list of move, line, cubic and close elements in the manner of a painter
 * path.
 *
 * y points down; units are device-like: drawing calls join a point to the last one when both coordinates
 * differ by less than 1.0 (vxTolerance::mergeExtent, strict). A subpath begins at a move and is closed when a
 * close element follows before the next move. A plain value: copies are cheap and independent. Nothing here
 * reports errors; degenerate input is absorbed (null arrays are ignored, a truncated cubic at the end of the
 * list is skipped).
 *
 * Operations that go through the engine clean this path up first, and the other operand too where there is
 * one: toXPath, booleans, uniteAll (all of its operands), evenOdd, smooth, splitAt, crossPoints,
 * bestCrossPoint, dividePath, setCornerRound, setLineHead, getTangent, and manualPath (its source).
 *
 * What comes back from the engine has the engine's directions, whatever the subpaths had before: the first
 * subpath is turned clockwise if it is closed, every further closed one counter-clockwise; open ones keep
 * their direction. Booleans may direct outlines by their nesting instead: outer ones clockwise, holes
 * counter-clockwise.
 */
class PZGRAPHICS_EXPORT PZPath
{
public:
    enum ElementType {
        MoveToElement = 0,
        LineToElement = 1,
        CurveToElement = 2,     ///< first control point; two data elements follow
        CurveToDataElement = 3, ///< second control point, then end point
        CloseElement = 4        ///< holds the start point of the subpath that it closes
    };

    struct PZElement {
        double x = 0;
        double y = 0;
        /**
         * Untrimmed tip of an open subpath, on its first and last element after setLineHead(); 0 elsewhere.
         */
        double headX = 0;
        double headY = 0;
        qint32 type = MoveToElement;

        QPointF toPoint() const { return QPointF(x, y); }
        bool operator==(const PZElement &other) const
        {
            return x == other.x && y == other.y && headX == other.headX && headY == other.headY &&
                   type == other.type;
        }
        bool operator!=(const PZElement &other) const { return !(*this == other); }
    };

    using iterator = QVector<PZElement>::iterator;
    using const_iterator = QVector<PZElement>::const_iterator;

    // --- the element list, as QVector has it ---

    int count() const { return m_elements.count(); }
    int size() const { return m_elements.size(); }
    bool isEmpty() const { return m_elements.isEmpty(); }
    const PZElement &at(int i) const { return m_elements.at(i); }
    const PZElement &operator[](int i) const { return m_elements[i]; }
    PZElement &operator[](int i) { return m_elements[i]; }
    const PZElement &first() const { return m_elements.first(); }
    const PZElement &last() const { return m_elements.last(); }
    PZElement &last() { return m_elements.last(); }
    void append(const PZElement &element) { m_elements.append(element); }
    void insert(int i, const PZElement &element) { m_elements.insert(i, element); }
    void prepend(const PZElement &element) { m_elements.prepend(element); }
    iterator erase(iterator position) { return m_elements.erase(position); }
    iterator erase(iterator from, iterator to) { return m_elements.erase(from, to); }
    void resize(int size) { m_elements.resize(size); }
    void reserve(int size) { m_elements.reserve(size); }
    void clear() { m_elements.clear(); }
    iterator begin() { return m_elements.begin(); }
    iterator end() { return m_elements.end(); }
    const_iterator begin() const { return m_elements.constBegin(); }
    const_iterator end() const { return m_elements.constEnd(); }
    bool operator==(const PZPath &other) const { return m_elements == other.m_elements; }
    bool operator!=(const PZPath &other) const { return m_elements != other.m_elements; }

    // --- drawing: pzpath_draw.cpp ---
    // "Start rule": a first point continues the current subpath (with a line unless it is the last point); on
    // an empty list or after a close element it starts a new one.

    /** Appends a move, always. */
    void moveTo(const QPointF &p);
    /** Appends a line unless p is the last point; no move is implied on an empty list. */
    void lineTo(const QPointF &p);
    /** Appends the three elements of a cubic, always. */
    void cubicTo(const QPointF &c1, const QPointF &c2, const QPointF &end);
    /**
     * Closes the current subpath: an end near its start is snapped onto it, otherwise a line leads there.
     * Nothing on fewer than two elements or after a close element.
     */
    void closeSubpath();
    /** Start rule for p0, then a cubic. */
    void addBezier(const QPointF &p0, const QPointF &c1, const QPointF &c2, const QPointF &p3);
    /** Start rule for pts[0], then a cubic for every complete triple that follows; n <= 0 adds nothing. */
    void addBeziers(const QPointF *pts, int n);
    /** Start rule for pts[0], then lines; n <= 0 adds nothing. */
    void addLines(const QPointF *pts, int n);
    void addLines(const QPoint *pts, int n);
    /** Start rule for a, then a line to b. */
    void addLine(const QPointF &a, const QPointF &b);
    void addLine(double x1, double y1, double x2, double y2);
    /** A closed subpath of its own, clockwise from the top left corner for a positive size. */
    void addRect(const QRectF &r);
    /**
     * Moves to the first point and draws lines, unmerged; right after a move the first point becomes a line
     * too.
     */
    void addPolygon(const QPolygonF &polygon);
    /**
     * Appends other's elements; with connect, its first one becomes a line (or is dropped at the last point).
     */
    void addPath(const PZPath &other, bool connect);
    /** Sets a coordinate of the last element; nothing on an empty list. */
    void setBackX(double v);
    void setBackY(double v);

    // --- painter paths: pzpath_painterpath.cpp ---

    /**
     * Appends pp's elements (this path is not cleared) and returns their number. Painter paths close nothing
     * by an element: contours stay open until a close element is put after them, and a lone open one counts
     * as a line in booleans. The fill rule is not taken over.
     */
    int fromPainterPath(const QPainterPath &pp);
    /** Replaces pp by this path. */
    void toPainterPath(QPainterPath &pp) const;
    /** As toPainterPath(), every point rounded to integers, halves towards +infinity. */
    void toPainterPathWithRoundValue(QPainterPath &pp) const;

    // --- normalising and queries: pzpath_query.cpp ---

    /** Rounds the points of all but close elements to integers, halves towards +infinity. */
    void roundData();
    /** Makes the first element a move and collapses runs of moves to their last. */
    void cleanUp();
    /** Reverses the direction of every subpath; head fields stay with their positions. */
    void reverse();
    /** Orientation of the first subpath; true for an empty path. */
    bool isClockWise() const;
    /** True when the closed subpaths do not all have the same orientation. */
    bool isEvenOdd() const;
    /**
     * The next open subpath from element index on: returns the index of its move (-1: none), first and second
     * its first two points, index where the next call starts. A negative index counts as 0.
     */
    int getOpenedStart(QPointF &first, QPointF &second, int &index) const;
    /**
     * The next open subpath's last element (-1: none), with its last two points; startIndex is the index of
     * its move, index where the next call starts. Points are left unwritten for a subpath of a single move at
     * the list's start.
     */
    int getOpenedEnd(QPointF &beforeEnd, QPointF &end, int &index, int &startIndex) const;
    /**
     * Direction in degrees at the start or end of the subpath that begins at element index; 0 when there is
     * none.
     */
    double getTangent(int index, bool atStart);

    // --- bridge to the engine: pzpath_bridge.cpp ---

    /**
     * Cleans this path up and replaces xpath's children by its subpaths from element startIndex (clamped) on,
     * with the engine's directions. Of a closed one, a last vertex within mergeExtent of the first becomes
     * one with it.
     */
    void toXPath(XPath &xpath, int startIndex = 0);
    /**
     * Appends xpath's children [first, last) (last -1: all); this path is not cleared. Lines are drawn as
     * lineTo() draws them, so vertices within mergeExtent of the last one vanish; children of fewer than two
     * vertices are left out.
     */
    void fromXPath(const XPath &xpath, int first = 0, int last = -1);

    // --- booleans and cutting: pzpath_boolean.cpp ---
    // other may be this path. Where the engine has no answer this path keeps its (cleaned-up) elements.

    void unite(PZPath &other);
    void intersect(PZPath &other);
    void subtract(PZPath &other);
    // The same, saying how far the engine's result can be trusted, before it is written back with vertices
    // merged; plain where there was no answer.
    void unite(PZPath &other, vxBooleanReport &report);
    void intersect(PZPath &other, vxBooleanReport &report);
    void subtract(PZPath &other, vxBooleanReport &report);
    /** The union of any number of paths at once, far faster than one after the other; they are cleaned up. */
    static PZPath uniteAll(QVector<PZPath> &paths);
    static PZPath uniteAll(QVector<PZPath> &paths, vxBooleanReport &report);
    /**
     * Appends the normalised copy of this path to its elements: what toXPath() and fromXPath() make of it,
     * that is, cleaned up, directions as the engine has them, ends and corners of lines that are one point
     * within mergeExtent merged, subpaths of a single vertex left out. Callers that want only the copy drop
     * the elements before it.
     */
    void evenOdd();
    /** Smooths every subpath with vxPath::smooth of the given type (1 to 4), factor 0.5. */
    void smooth(int type);
    /**
     * Keeps what lies behind arc length startCut (negative: counted from the end) of the subpath it falls on,
     * less endCut from its end. All other subpaths go; a closed one is only opened at the cut. Path units; a
     * cut of less than one whole unit (or NaN) is none, nor is an endCut that is negative or would leave
     * nothing; without a start cut nothing is done. True when the path was changed.
     */
    bool splitAt(double startCut, double endCut);
    /** The points where the outlines cross, and the ends of stretches that they share; some may come twice.
     */
    QVector<QPointF> crossPoints(PZPath &other);
    /** The first crossing point; (0, 0) when there is none. */
    QPointF bestCrossPoint(PZPath &other);
    /**
     * Cuts the first subpath at the first crossing and keeps the part before it (with all other subpaths) or
     * the part after it. The first subpath is cut at the crossing's place (curve number and time) even when
     * the crossing lies on another one. point is written whenever there is a crossing. False and, but for the
     * clean-up, unchanged without a crossing or a piece.
     */
    bool dividePath(PZPath &other, QPointF &point, bool keepFirst);

    // --- path data: pzpath_svg.cpp; absolute M L C Z, appended; missing numbers read as 0 ---

    /** Pairs joined by a comma, the letter glued to the first: "M10,20 L30,40 C1,2 3,4 5,6 Z". */
    void pzpathFromSvgPath(const QString &data);
    /** Every letter and number a token of its own: "M 10 20 L 30 40 C 1 2 3 4 5 6 Z". */
    void pzpathFromSvgPath2(const QString &data);

    // --- arcs and ellipses: pzpath_arc.cpp ---

    /**
     * Adds the arc of the ellipse in rect, in degrees, clockwise on screen from three o'clock for positive
     * values; joined by a line to an open subpath. A rectangle without positive, finite size, or an angle
     * that is not finite, adds nothing; no sweep adds the connection alone.
     */
    void arcTo(const QRectF &rect, double startAngle, double sweepLength);
    void arcTo(double x, double y, double w, double h, double startAngle, double sweepLength);
    /** A closed subpath of its own: fourteen elements. */
    void ellipse(const QRectF &rect);

    // --- effects: one file each ---

    // A rounding distance that is not positive and finite leaves the path alone.

    /**
     * Rounds corners by a distance measured along the whole path, over vertices that are nearer
     * (pzpath_round.cpp). Nothing more is rounded on a closed subpath where less than twice the distance is
     * left around a corner. Above half of the shortest edge shapes become distorted.
     */
    void setCornerRound(double distance);
    /**
     * Rounds corners by whole units (distance is truncated), at most half of each edge that meets there
     * (pzpath_round2.cpp); where that comes to nothing, arcs have no size. A cubic
     * rounded at both ends keeps the control points of its part before the second cut, although it starts at
     * the first: it bulges back, up to a spike where both cuts coincide.
     */
    void setCornerRound2(double distance);
    /**
     * Trims every open subpath by lengths along the path and records the untrimmed tips in the head fields; a
     * length that is not positive skips its end, and a subpath of which nothing would be left goes. True when
     * an end was found to trim (pzpath_heads.cpp).
     */
    bool setLineHead(double startLen, double endLen);
    /**
     * Becomes a hand-drawn polyline along source (which may be this path): a sample every step path units,
     * moved sideways by amplitude times value noise (pzpath_manual.cpp). A step that is not positive, or
     * would make more than 1e8 samples of one subpath, leaves this path unchanged.
     */
    void manualPath(PZPath &source, double amplitude, double step);

private:
    QVector<PZElement> m_elements;
};

Q_DECLARE_TYPEINFO(PZPath::PZElement, Q_MOVABLE_TYPE);
