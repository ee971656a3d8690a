#pragma once

#include "vxpoint.h"

#include <QVector>

#include <functional>

class QPointF;
class QRectF;
class vxRect;

/**
 * Numerical routines without state: polynomial roots, quadrature, bracketed Newton, a point on an ellipse,
 * value noise.
 *
 * The solvers write the k-th root over element k of roots where the vector is that long, and append
 * otherwise: read only as many elements as the returned count says. With min and max both 0 every finite root
 * is reported; otherwise only roots in (min - machineZero, max + machineZero), clamped into [min, max].
 * Coefficients that are not finite give 0 roots.
 */
class PZGRAPHICS_EXPORT vxNumeric
{
public:
    using Function = std::function<double(double)>;

    // --- polynomials: vxnumeric_roots.cpp ---

    static double log2(double x);
    /**
     * The bound that value passes, otherwise value; NaN stays. With min > max: min where value is below it,
     * else max.
     */
    static double clamp(double value, double min, double max);
    /** b^2 - a c, accurate also where the two products nearly cancel. */
    static double getDiscriminant(double a, double b, double c);
    /**
     * Count of real roots of a x^2 + b x + c, a double root once; -1 when every x solves it (all coefficients
     * below machineZero), which callers treat as no roots.
     */
    static int solveQuadratic(double a, double b, double c, QVector<double> &roots, double min = 0,
                              double max = 0);
    /** Count of real roots of a x^3 + b x^2 + c x + d; -1 as above. The order of the roots is not sorted. */
    static int solveCubic(double a, double b, double c, double d, QVector<double> &roots, double min = 0,
                          double max = 0);

    // --- quadrature and root finding: vxnumeric_quadrature.cpp ---

    /** Gauss-Legendre nodes in [0, 1) of order n in 2 to 16, ascending in row n - 2, padded with 0. */
    static const double (&abscissas)[15][8];
    /** The weights that go with abscissas. */
    static const double (&weights)[15][8];
    /** Gauss-Legendre integral of f over [a, b]; the order n is clamped to 2 to 16, an empty f gives 0. */
    static double integrate(const Function &f, double a, double b, int n);
    /**
     * Root of a rising f by Newton's method from x, kept inside the bracket [a, b]; ends when a step is below
     * tolerance or after n rounds. Steps that are not finite become bisections; n < 1 or an empty function
     * gives x.
     */
    static double findRoot(const Function &f, const Function &df, double x, double a, double b, int n,
                           double tolerance);

    // --- ellipse: vxnumeric_ellipse.cpp ---

    /**
     * Where the ray at angle degrees (clockwise on screen) from the centre meets the ellipse inscribed in
     * rect. A height below 0.1 counts as 0.1; a non-finite angle gives NaN.
     */
    static vxPoint ellipsePoint(const vxRect &rect, double angle);
    static QPointF ellipsePoint(const QRectF &rect, double angle);

    // --- noise: vxnumeric_noise.cpp ---
    // Arguments wrap modulo 2^32; one that is not finite gives the noise of 0.

    /** Pseudo-random value in (-1, 1], the same for the same n on every machine. */
    static double intNoise_1D(int n);
    /** intNoise_1D() of x truncated to an integer; neighbours are not smoothed in. */
    static double smoothNoise_1D(double x);
    /** From a at x = 0 to b at x = 1 along half a cosine wave. */
    static double cosineInterpolate_1D(double a, double b, double x);
    /** From y1 at x = 0 to y2 at x = 1 along a cubic steered by the outer neighbours y0 and y3. */
    static double cubicInterpolate_1D(double y0, double y1, double y2, double y3, double x);
    /** Noise at the integers, cosine interpolation between them. */
    static double interpolateNoise_1D(double x);
    /** Four octaves of interpolateNoise_1D(), each of twice the frequency and a tenth of the amplitude. */
    static double perlinNoise_1D(double x);
};
