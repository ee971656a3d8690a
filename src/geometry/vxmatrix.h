#pragma once

#include "vxpoint.h"

#include <QVector>

class vxRect;

/**
 * Affine map of the plane: (x, y) goes to (a x + c y + tx, b x + d y + ty).
 *
 * Edits are in place and compose so that the new step acts on coordinates before the existing map, that is,
 * in the matrix's own coordinate system; prepend() is the exception. A NaN or infinite argument spreads
 * through the affected fields; isInvertible() is false where that makes the determinant NaN or 0, or the
 * translation not finite.
 */
class PZGRAPHICS_EXPORT vxMatrix
{
public:
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;

    /** The identity. */
    constexpr vxMatrix() = default;
    constexpr vxMatrix(double a, double b, double c, double d, double tx, double ty)
        : a(a), b(b), c(c), d(d), tx(tx), ty(ty)
    {
    }

    // --- queries ---

    /** Exact comparison. */
    bool isIdentity() const { return *this == vxMatrix(); }
    /** Determinant neither 0 nor NaN, and a finite translation. */
    bool isInvertible() const;
    bool isSingular() const { return !isInvertible(); }
    bool operator==(const vxMatrix &m) const
    {
        return a == m.a && b == m.b && c == m.c && d == m.d && tx == m.tx && ty == m.ty;
    }
    bool operator!=(const vxMatrix &m) const { return !(*this == m); }

    // --- mapping ---

    vxPoint transformPoint(const vxPoint &p) const { return transformXY(p.x, p.y); }
    vxPoint transformXY(double x, double y) const { return vxPoint(a * x + c * y + tx, b * x + d * y + ty); }
    /**
     * The point that maps to p. p itself when the determinant is NaN or the translation not finite; a
     * determinant of 0 gives infinities or NaN.
     */
    vxPoint inverseTransform(const vxPoint &p) const;
    /** In place on interleaved x, y: maps the first count pairs, or as many as there are. */
    void transformCoords(QVector<double> &coords, int count) const;
    /** Replaces out by the mapped corners x, y: top left, top right, bottom right, bottom left. */
    void transformCorners(const vxRect &rect, QVector<double> &out) const;
    /** Axis-aligned bounds of the four mapped corners. */
    vxRect transformBounds(const vxRect &rect) const;
    /** In place. */
    void transformPoints(QVector<vxPoint> &points) const;

    // --- edits, in place ---

    void translate(double dx, double dy);
    void scale(double sx, double sy, const vxPoint *center = nullptr);
    void rotate(double degrees);
    void rotateAt(double degrees, const vxPoint &center);
    /** shx shifts x by y, shy shifts y by x. */
    void shear(double shx, double shy, const vxPoint *center = nullptr);
    void skew(double degreesX, double degreesY, const vxPoint *center = nullptr);
    /** this = this after m: m acts first. */
    void append(const vxMatrix &m);
    /** this = m after this: m acts last. */
    void prepend(const vxMatrix &m);
    /**
     * Unchanged when the determinant is NaN or the translation not finite. A determinant of 0 is not tested
     * and gives infinities or NaN; ask isInvertible() first.
     */
    void invert();

    /**
     * "a: %1, b: %2, c: %3, d: 4%, tx: %5, ty: %6" filled in the order of the fields. The misplaced marker is
     * kept: d appears after "tx:", tx after "ty:", and ty nowhere, with Qt's warning about a missing
     * argument.
     */
    QString toString() const;

    /** True when the matrix is not the identity, that is, when a transform has to be applied at all. */
    bool _orNullIfIdentity() const { return !isIdentity(); }
    /** In place: drops the translation, which leaves the map of vectors such as handles. */
    void _shiftless()
    {
        tx = 0;
        ty = 0;
    }

private:
    bool hasFiniteShift() const { return std::isfinite(tx) && std::isfinite(ty); }
};
