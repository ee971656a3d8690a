#pragma once

#include "vxpoint.h"
#include "vxsize.h"

#include <algorithm>

/**
 * Axis-aligned rectangle in path units: (x, y) is the corner of smallest coordinates, y points down.
 *
 * A negative width or height is kept as given, and counts as empty. Operations return a new rectangle unless
 * their comment says "in place". A rectangle with a NaN field contains, intersects and touches nothing.
 */
class PZGRAPHICS_EXPORT vxRect
{
public:
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr vxRect() = default;
    constexpr vxRect(double x, double y, double width, double height)
        : x(x), y(y), width(width), height(height)
    {
    }
    /** The rectangle with p1 and p2 as opposite corners, in whatever order. */
    vxRect(const vxPoint &p1, const vxPoint &p2)
        : x(std::min(p1.x, p2.x)), y(std::min(p1.y, p2.y)), width(std::max(p1.x, p2.x) - x),
          height(std::max(p1.y, p2.y) - y)
    {
    }

    // --- queries ---

    /** Width or height below machineZero, strict. */
    bool isEmpty() const { return width < vxTolerance::machineZero || height < vxTolerance::machineZero; }
    /** width * height, so negative when one of them is. */
    double getArea() const { return width * height; }
    double right() const { return x + width; }
    double bottom() const { return y + height; }
    vxPoint center() const { return vxPoint(x + 0.5 * width, y + 0.5 * height); }
    vxPoint topLeft() const { return vxPoint(x, y); }
    vxPoint topRight() const { return vxPoint(x + width, y); }
    vxPoint bottomLeft() const { return vxPoint(x, y + height); }
    vxPoint bottomRight() const { return vxPoint(x + width, y + height); }
    vxSize size() const { return vxSize(width, height); }
    bool operator==(const vxRect &r) const
    {
        return x == r.x && y == r.y && width == r.width && height == r.height;
    }
    bool operator!=(const vxRect &r) const { return !(*this == r); }

    /** Strictly inside: a point on the border is outside. */
    bool containsPt(const vxPoint &p) const
    {
        return x < p.x && p.x < x + width && y < p.y && p.y < y + height;
    }
    /** Shared borders are allowed. */
    bool containsRect(const vxRect &r) const
    {
        return r.x >= x && r.y >= y && x + width >= r.x + r.width && y + height >= r.y + r.height;
    }
    /** The insides overlap: rectangles that only share an edge do not intersect. */
    bool intersects(const vxRect &r) const
    {
        return r.x + r.width > x && r.y + r.height > y && x + width > r.x && y + height > r.y;
    }
    /** The closed rectangles meet: a shared edge or corner is enough. */
    bool touches(const vxRect &r) const
    {
        return r.x + r.width >= x && r.y + r.height >= y && x + width >= r.x && y + height >= r.y;
    }

    // --- combinations ---

    /** A rectangle of this size centred on p. */
    vxRect setCenter(const vxPoint &p) const
    {
        return vxRect(p.x - 0.5 * width, p.y - 0.5 * height, width, height);
    }
    /** The common part; disjoint rectangles give a negative width or height. */
    vxRect intersect(const vxRect &r) const;
    /** The smallest rectangle that holds both; one whose width or height is not positive adds nothing. */
    vxRect unite(const vxRect &r) const;
    /** Grown to hold p, without a test for emptiness: an all-zero rectangle includes the origin. */
    vxRect include(const vxPoint &p) const;

    // --- edits, in place ---

    void set(double newX, double newY, double newWidth, double newHeight)
    {
        *this = vxRect(newX, newY, newWidth, newHeight);
    }
    void reset() { *this = vxRect(); }
    /** Grows by dw and dh in total, about the centre. */
    void expand(double dw, double dh);
    /** Moves the left, top, right and bottom edges by these distances. */
    void adjust(double dx1, double dy1, double dx2, double dy2);
    void translate(double dx, double dy)
    {
        x += dx;
        y += dy;
    }

    /** "x: %1, y: %2, width: %3, height: %4" with six significant digits. */
    QString toString() const;

private:
    static vxRect fromEdges(double left, double top, double right, double bottom)
    {
        return vxRect(left, top, right - left, bottom - top);
    }
};
