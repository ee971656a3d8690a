#pragma once

#include "vxtolerance.h"

#include <cmath>

/**
 * Allocation-free forms of the polynomial solvers, quadrature and root finder; vxNumeric is their public
 * edge.
 */
namespace vx {

constexpr double pi = 3.141592653589793;

/**
 * Real roots of a x^2 + b x + c. Returns the count, or -1 when every x is a solution (nothing written). min
 * == max == 0: unbounded; otherwise roots outside (min - machineZero, max + machineZero) are dropped and the
 * others clamped into [min, max]. A double root is given once. Non-finite coefficients give 0 roots.
 */
int solveQuadratic(double a, double b, double c, double roots[2], double min, double max);

/** Real roots of a x^3 + b x^2 + c x + d, same conventions (so -1 when all coefficients count as 0). */
int solveCubic(double a, double b, double c, double d, double roots[3], double min, double max);

/** Half of the symmetric Gauss-Legendre rule of order n in 2 to 16: row n - 2, nodes ascending. */
extern const double gaussAbscissas[15][8];
extern const double gaussWeights[15][8];

/** Gauss-Legendre integral of f over [a, b]; the order n is clamped to 2 to 16. */
template <typename F>
double integrate(F &&f, double a, double b, int n)
{
    n = n < 2 ? 2 : n > 16 ? 16 : n;
    const double *x = gaussAbscissas[n - 2];
    const double *w = gaussWeights[n - 2];
    const double A = (b - a) / 2;
    const double B = a + A;
    const int m = (n + 1) / 2;
    int i = 0;
    double sum = 0;
    if (n % 2 == 1)
        sum = w[i++] * f(B);
    for (; i < m; ++i) {
        const double Ax = A * x[i];
        sum += w[i] * (f(B + Ax) + f(B - Ax));
    }
    return A * sum;
}

/**
 * Newton's method kept inside the bracket [a, b], at most n rounds; see vxNumeric::findRoot. A step that is
 * not finite becomes a bisection, or the end at x where f is exactly 0 there.
 */
template <typename F, typename DF>
double findRoot(F &&f, DF &&df, double x, double a, double b, int n, double tolerance)
{
    for (int i = 0; i < n; ++i) {
        const double fx = f(x);
        const double dx = fx / df(x);
        double next = x - dx;
        if (!std::isfinite(next)) {
            // A root where the derivative vanishes too, such as a cusp, gives 0 / 0.
            if (fx == 0)
                return x;
            next = fx > 0 ? (a + x) / 2 : (x + b) / 2;
        } else if (std::fabs(dx) < tolerance) {
            return next;
        }
        if (fx > 0) {
            b = x;
            if (next <= a)
                next = (a + x) / 2;
        } else {
            a = x;
            if (next >= b)
                next = (b + x) / 2;
        }
        x = next;
    }
    return x;
}

} // namespace vx
