#pragma once

#include "pzgraphics_global.h"
#include "vxtolerance.h"

#include <cmath>

class QPointF;
class QString;
class vxMatrix;
class vxRect;

/**
 * A position or a free vector (handle, tangent, difference) in path units; y points down.
 *
 * Operations return a new point unless their comment says "in place". NaN is allowed everywhere: a NaN point
 * stands for "none" in the engine. Angles are in degrees unless the name says radians.
 */
class PZGRAPHICS_EXPORT vxPoint
{
public:
    double x = 0;
    double y = 0;

    constexpr vxPoint() = default;
    constexpr vxPoint(double x, double y) : x(x), y(y) {}

    // --- arithmetic ---

    vxPoint add(const vxPoint &p) const { return vxPoint(x + p.x, y + p.y); }
    vxPoint subtract(const vxPoint &p) const { return vxPoint(x - p.x, y - p.y); }
    vxPoint multiply(double s) const { return vxPoint(x * s, y * s); }
    /** Division by zero gives infinities or NaN. */
    vxPoint divide(double s) const { return vxPoint(x / s, y / s); }
    vxPoint negate() const { return vxPoint(-x, -y); }
    double dot(const vxPoint &p) const { return x * p.x + y * p.y; }
    double cross(const vxPoint &p) const { return x * p.y - y * p.x; }
    double getLength() const { return std::sqrt(x * x + y * y); }
    /** Distance to p, or its square (without a square root) when squared is true. */
    double getDistance(const vxPoint &p, bool squared = false) const
    {
        const double dx = x - p.x;
        const double dy = y - p.y;
        const double d = dx * dx + dy * dy;
        return squared ? d : std::sqrt(d);
    }
    bool operator==(const vxPoint &p) const { return x == p.x && y == p.y; }
    bool operator!=(const vxPoint &p) const { return !(*this == p); }

    // --- tests ---

    bool isNaN() const { return std::isnan(x) || std::isnan(y); }
    /** Both coordinates within machineZero of 0, inclusive; false for NaN. */
    bool isZero() const
    {
        using vxTolerance::machineZero;
        return x >= -machineZero && x <= machineZero && y >= -machineZero && y <= machineZero;
    }
    /** Both coordinate differences below tolerance, strict. */
    bool equals(const vxPoint &p, double tolerance) const
    {
        return std::fabs(p.x - x) < tolerance && std::fabs(p.y - y) < tolerance;
    }
    /** Distance up to tolerance, inclusive. */
    bool isClose(const vxPoint &p, double tolerance) const { return getDistance(p, false) <= tolerance; }
    /**
     * Sine of the angle between the two vectors within angleMargin; a zero vector is collinear with anything.
     */
    static bool isCollinear(double x1, double y1, double x2, double y2)
    {
        const double cross = x1 * y2 - y1 * x2;
        return std::fabs(cross) <=
               vxTolerance::angleMargin * std::sqrt((x1 * x1 + y1 * y1) * (x2 * x2 + y2 * y2));
    }
    bool isCollinear(const vxPoint &p) const { return isCollinear(x, y, p.x, p.y); }
    /**
     * Cosine of the angle between the two vectors within angleMargin; a zero vector is orthogonal to
     * anything.
     */
    static bool isOrthogonal(double x1, double y1, double x2, double y2);
    bool isOrthogonal(const vxPoint &p) const { return isOrthogonal(x, y, p.x, p.y); }
    /** Strictly inside rect; see vxRect::containsPt. */
    bool isInside(const vxRect &rect) const;

    // --- angles ---

    /**
     * With other null: direction of this vector in (-pi, pi], 0 for a zero vector. With other: unsigned angle
     * between the two in [0, pi], NaN when the product of their lengths is 0.
     */
    double getAngleInRadians(const vxPoint *other = nullptr) const;
    /** getAngleInRadians() in degrees. */
    double getAngle(const vxPoint *other = nullptr) const;
    /** Signed angle from this vector to p in (-180, 180] degrees. */
    double getDirectedAngle(const vxPoint &p) const;
    /** In place: turns to the given direction, keeping the length; a zero vector stays. */
    void setAngleInRadians(double angle);
    /** As setAngleInRadians(), in degrees. */
    void setAngle(double degrees);
    /** 1 to 4, counted from x >= 0, y >= 0 through x < 0, y >= 0; NaN counts as negative. */
    double getQuadrant() const;
    /** Turned by degrees about the origin or center; exactly this point when degrees is 0. */
    vxPoint rotate(double degrees, const vxPoint *center = nullptr) const;

    // --- length and projection ---

    /** This direction with the given length; zero for a vector of length exactly 0. */
    vxPoint normalize(double length = 1) const;
    /** In place: as normalize(), but a zero vector becomes NaN. */
    void setLength(double length);
    /** In place: the projection onto the direction of p; zero when p is zero. */
    void project(const vxPoint &p);

    // --- edits and conversions ---

    /** In place: shifts by (dx, dy). */
    void translated(double dx, double dy)
    {
        x += dx;
        y += dy;
    }
    /** In place: rounds to integers, halves towards +infinity; a coordinate beyond 32 bits or NaN stays. */
    void round();
    /** A point of two draws of qrand(), first y, then x; raw integers from 0 to RAND_MAX. */
    static vxPoint random();
    /** Mapped by the matrix; a null matrix gives this point. */
    vxPoint transform(const vxMatrix *matrix) const;
    QPointF toPt() const;
    /** "x: %1, y: %2" with six significant digits. */
    QString toString() const;
};
