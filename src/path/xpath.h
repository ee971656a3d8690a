#pragma once

#include "pzgraphics_global.h"
#include "vxbooleanreport.h"
#include "vxmono.h"
#include "vxpath.h"
#include "vxpoint.h"
#include "vxrect.h"
#include "vxstyle.h"

#include <QList>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>

namespace vx {
class CleanUp;
}
class vxCurve;
class vxCurveLocation;

/**
 * A compound path: an ordered list of contours that together form one shape with holes.
 *
 * Orientation rule: the first child is clockwise, every later one counter-clockwise. Adding orients only the
 * new closed children that carry no orientation flag; removing examines all that remain. Open children are
 * never turned. Filled by the even-odd rule unless evenOdd is cleared.
 *
 * Ownership: the container holds one reference on each child. Results returned as pointers are the caller's,
 * who deletes them. Copying is by assign() and clone() (deep).
 */
class PZGRAPHICS_EXPORT XPath
{
public:
    XPath() = default;
    XPath(const XPath &) = delete;
    XPath &operator=(const XPath &) = delete;
    ~XPath();

    /** A new deep copy, the caller's. */
    XPath *clone() const;
    /** Appends clones of other's children and copies its fill rule. */
    void assign(const XPath &other);

    // --- children ---

    /** Inserts child before index (-1 or out of range: at the end) and becomes its parent; null: nothing. */
    void addChild(vxPath *child, int index = -1);
    /** Inserts the list in order; becomes the parent of those that have none. */
    void addChildren(const QVector<vxPath *> &list, int index = -1);
    /** Replaces all children; the list may hold current ones. */
    void setChildren(const QVector<vxPath *> &list);
    /** Removes the children in [from, to) (to -1: all after from). */
    void removeChildren(int from = 0, int to = -1);
    /**
     * Removes child and releases it once: if it is listed, the container's reference; if not, one of the
     * caller's. Null: nothing.
     */
    void removeChild(vxPath *child);
    vxPath *getFirstChild() const { return children.isEmpty() ? nullptr : children.first(); }
    vxPath *getLastChild() const { return children.isEmpty() ? nullptr : children.last(); }

    // --- run over all children ---

    /** The first child's orientation; false without children. */
    bool isClockwise() const;
    void setClockwise(bool clockwise);
    void reverse();
    /** Reduces every child and removes those that became empty; returns this. */
    XPath *reduce(bool simplify);
    /** Interpolates child by child; nothing when from or to is null or their numbers of children differ. */
    void interpolate(const XPath *from, const XPath *to, double factor);
    /** Cuts at an arc length over all children (negative: from the end); see vxPath::splitAt. Null beyond. */
    vxPath *splitAt(double offset);
    QList<vxCurve *> getCurves() const;
    double getLength() const;
    /** Geometric bounds of all children that have segments; all zero when none has. */
    vxRect getBounds(const vxBoundOpt &option, const vxStyle &style, const vxMatrix *matrix = nullptr) const;
    /**
     * A new location (count 0, the caller's) at the nearest curve point, ties to the earlier curve; null if
     * none.
     */
    vxCurveLocation *getNearestLocation(const vxPoint &point) const;
    /** NaN without curves. */
    vxPoint getNearestPoint(const vxPoint &point) const;
    /** Maps all children. */
    void transformContent(const vxMatrix *matrix);
    void flatten(double flatness);

    // --- intersections: src/intersect/ (xpath_intersect.cpp, xpath_divide.cpp) ---
    // The caller owes every location returned: vxCurveLocation::releaseAll(list) once done.

    /**
     * All meetings of this path with other, or with itself when other is null or this; include (may be empty)
     * keeps those that it answers true for. One side of each pair, sorted within each contour of this path.
     * returnFirst: only the first curve with itself; with another path nothing is searched and the list is
     * empty.
     */
    QList<vxCurveLocation *> getIntersections(XPath *other,
                                              const std::function<bool(vxCurveLocation *)> &include,
                                              bool returnFirst = false);
    /** The meetings where the outlines pass through each other, and the ends of stretches that they share. */
    QList<vxCurveLocation *> getCrossings(XPath *other);
    /**
     * Divides the curves at the locations and links the new segments to them. locations: both sides of every
     * pair, sorted, as vxCurveLocation::expand() gives them; they must stay alive while segments refer to
     * them.
     *
     * mode 0 divides at all; 1 at overlaps; 2 (after overlaps were removed) at those whose two curves are
     * alive, clearing the links of the others. Other modes behave as 0, without null entries. Returns the
     * locations divided at, or all of locations when there were none.
     */
    QList<vxCurveLocation *> divideLocations(const QList<vxCurveLocation *> &locations, int mode);
    /** Joins the chains of two coincident locations; nothing when they are one chain already. */
    static void linkIntersections(vxCurveLocation *from, vxCurveLocation *to);

    // --- winding and containment: src/boolean/ (xpath_winding.cpp), src/measure/ (xpath_contains.cpp) ---

    /**
     * Winding count of point over pieces listed path by path; horizontal probes up and down instead of
     * sideways.
     */
    static vxWinding getWinding(const vxPoint &point, const QList<vxMono *> &monos, bool horizontal);
    /** The same over the pieces of this path's children. */
    vxWinding getWinding(const vxPoint &point, bool horizontal) const;
    /** Whether point lies in the filled area by style's fill rule. */
    bool contains(const vxPoint &point, const vxStyle &style) const;

    // --- booleans: src/boolean/; a null or childless operand counts as empty, operands stay untouched ---

    /**
     * New path, the caller's. Null only where the first operand is one open path (see computeOpenBoolean).
     */
    XPath *unite(XPath *other);
    XPath *intersect(XPath *other);
    XPath *subtract(XPath *other);
    XPath *exclude(XPath *other);
    // The same, saying how far the result can be trusted.
    XPath *unite(XPath *other, vxBooleanReport &report);
    XPath *intersect(XPath *other, vxBooleanReport &report);
    XPath *subtract(XPath *other, vxBooleanReport &report);
    XPath *exclude(XPath *other, vxBooleanReport &report);
    /**
     * The union of any number of paths in one arrangement, far faster than one after the other; null and
     * empty ones count for nothing, open contours as if a line closed them. New path, the caller's.
     */
    static XPath *uniteAll(const QList<XPath *> &paths);
    static XPath *uniteAll(const QList<XPath *> &paths, vxBooleanReport &report);
    /** Two new paths, the caller's: subtract(other), then intersect(other). */
    QList<XPath *> divide(XPath *other);
    /** op 1 intersect, 2 unite, 3 subtract, 4 exclude; any other gives an empty path. */
    static XPath *computeBoolean(XPath *path1, XPath *path2, int op);
    static XPath *computeBoolean(XPath *path1, XPath *path2, int op, vxBooleanReport &report);
    /**
     * Cuts the one open child of path1 at the outline of path2 and keeps the pieces inside (1) or outside
     * (3); a piece that runs along the outline all the way counts as inside. Null for a null path2, an open
     * path2, and the other operations.
     */
    static XPath *computeOpenBoolean(XPath *path1, XPath *path2, int op);
    /** A working copy: cloned, reduced and, with resolve, cleaned of its own crossings. The caller's. */
    static XPath *preparePath(const XPath *path, bool resolve);
    /**
     * Removes this path's own crossings and overlaps in place; contours end up nested and oriented by the
     * rule.
     */
    XPath *resolveCrossings();
    /** Gives the stretch from start to the next intersection the winding count of its middle. */
    static void propagateWinding(vxSegment *start, XPath *path1, XPath *path2, const QList<vxMono *> &monos,
                                 int op);
    /**
     * New closed paths (count 0, the caller's) traced over divided segments; op 0 accepts every segment. Null
     * segments and those on no path are left out.
     */
    static QVector<vxPath *> tracePaths(const QList<vxSegment *> &segments, int op);
    /** A new compound path (the caller's) of the given paths, reduced when simplify is set. */
    static XPath *createResult(const QVector<vxPath *> &paths, bool simplify, XPath *path1, XPath *path2);

    // --- internal ---

    /** What cleaning a copy for a boolean came to; null unless one asked. It tells itself whether it holds.
     */
    std::shared_ptr<vx::CleanUp> &_cleanUp() const { return m_cleanUp; }
    /** Builds the curves of all children at once: side by side in memory, in the order of a walk. */
    void _makeCurves() const;
    /** vxPath::_noticeEdits() of all children. */
    void _noticeEdits() const;
    /** getBounds() right after that. */
    vxRect _bounds() const;
    /**
     * Appends copies of contours, allocated contiguously. Call _noticeEdits() first. ranks: ids are given in
     * ascending rank (none: in the order of the list). change(i, copy) runs right after each copy, while it
     * is still in cache.
     */
    void _addCopiesOf(const QVector<vxPath *> &originals, const QVector<quint32> &ranks,
                      const std::function<void(int, vxPath &)> &change = nullptr);

    // --- data ---

    /** Fill rule: even-odd (as painter paths unless told otherwise) or nonzero. */
    bool evenOdd = true;
    QVector<vxPath *> children;

private:
    void renumber(int from);
    void orientAdded(const QVector<vxPath *> &added);
    void orientRemaining();

    mutable std::shared_ptr<vx::CleanUp> m_cleanUp;
};

/**
 * Sorting order of contours: larger bounding box first. Costs two bounds; sort many by boxes computed once.
 */
PZGRAPHICS_EXPORT bool PathSort(const vxPath *a, const vxPath *b);
