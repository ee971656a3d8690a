#include "vxnumeric.h"
#include "vxnumeric_p.h"

#include <algorithm>
#include <functional>
#include <limits>

using vxTolerance::machineEpsilon;
using vxTolerance::machineZero;

namespace {

double clampTo(double value, double min, double max)
{
    return min > value ? min : max < value ? max : value;
}

/** The roots that a caller wants, and where they go. */
struct RootSink {
    double *roots;
    double min;
    double max;
    int count = 0;

    void offer(double root)
    {
        if (min != 0 || max != 0) {
            // Neither infinity nor NaN is within any bounds.
            if (!(root > min - machineZero && root < max + machineZero))
                return;
            root = clampTo(root, min, max);
        } else if (!std::isfinite(root)) {
            return;
        }
        roots[count++] = root;
    }
};

/** The power of two nearest to m, or 0 while m is between 1e-8 and 1e8 and scaling would gain nothing. */
int excessExponent(double m)
{
    if (m == 0 || (m >= 1e-8 && m <= 1e8))
        return 0;
    return static_cast<int>(std::floor(vxNumeric::log2(m) + 0.5)); // m is finite: within -1074 and 1024
}

/**
 * Value v as a sum of two halves of 26 bits each, so that products of halves are exact (T. J. Dekker, 1971).
 */
struct Split {
    double high;
    double low;

    explicit Split(double v)
    {
        const double scaled = v * 134217729; // 2^27 + 1
        high = scaled - (scaled - v);
        low = v - high;
    }
};

/** What rounding took from b * b - a * c: the errors of both products, known exactly from split factors. */
double lostInProducts(double a, double b, double c)
{
    const Split as(a);
    const Split bs(b);
    const Split cs(c);
    return (bs.high * bs.high - b * b + 2 * bs.high * bs.low + bs.low * bs.low) -
           (as.high * cs.high - a * c + as.high * cs.low + cs.high * as.low + as.low * cs.low);
}

inline double discriminant(double a, double b, double c)
{
    // After W. Kahan, "On the Cost of Floating-Point Computation Without Extra-Precise Arithmetic" (2004):
    // the plain difference is good to a few units in the last place unless the products cancel.
    const double bb = b * b;
    const double ac = a * c;
    const double D = bb - ac;
    return bb + ac <= 3 * std::fabs(D) ? D : D + lostInProducts(a, b, c);
}

/**
 * Horner's scheme of a cubic at x: value, slope, and the coefficients that are left when x is divided out.
 */
struct Horner {
    double b1;
    double c1;
    double slope;
    double value;

    Horner(double a, double b, double c, double d, double x)
    {
        const double ax = a * x;
        b1 = ax + b;
        c1 = b1 * x + c;
        slope = (ax + b1) * x + c1;
        value = c1 * x + d;
    }
};

/** A real root x of a cubic and its quotient a x^2 + b1 x + c1. */
struct Deflation {
    double x;
    double b1;
    double c1;
};

/**
 * How far to jump from the inflection: the cube root of t, or 1.3247... times the greater of that and the
 * square root of u. The cube root costs as much as some rounds and is mostly the lesser one by far.
 */
double firstStep(double t, double u)
{
    if (!(u > 0))
        return std::cbrt(t);
    const double root = std::sqrt(u);
    return 1.324717957244746 * (t < 0.99 * (u * root) ? root : std::max(std::cbrt(t), root));
}

/**
 * Newton's method from one side, as long as each iterate lies further inwards than the one before; x becomes
 * the last one that was looked at.
 */
template <typename FurtherInwards>
Horner moveInwards(double a, double b, double c, double d, double &x)
{
    for (int round = 1;; ++round) {
        const Horner h(a, b, c, d, x);
        if (h.slope == 0)
            return h;
        const double next = x - h.value / h.slope / 1.0000000000000002;
        if (!FurtherInwards()(next, x) || round == 100)
            return h;
        x = next;
    }
}

/**
 * One real root by the Halley-type iteration of W. Kahan, "To Solve a Real Cubic Equation" (1986); see also
 * J. Blinn, "How to Solve a Cubic Equation" (2006).
 *
 * The search begins at the inflection point, looks which side holds a single root, and jumps past that root:
 * the step is 1.3247... (the real root of r^3 = r + 1) times a bound of the distance. From there the cubic is
 * convex towards the root, so that steps of value / slope come in from one side and never overshoot; the
 * divisor just above 1 keeps rounding from breaking that. The search is over when the iterate no longer moves
 * inwards. Halley's own second-order correction would save a step or two, but it oversteps a root near the
 * inflection, and the test would then end early. A double root lies on the far side of the inflection and is
 * left to the quadratic, whose discriminant is exact there.
 */
Deflation divideOutRoot(double a, double b, double c, double d)
{
    double x = -(b / a) / 3;
    Horner h(a, b, c, d, x);
    const double t = h.value / a;
    const double side = t < 0 ? -1 : 1;
    const double step = firstStep(std::fabs(t), -h.slope / a);
    double next = x - side * step;
    if (next != x) {
        h = side > 0 ? moveInwards<std::greater<double>>(a, b, c, d, next)
                     : moveInwards<std::less<double>>(a, b, c, d, next);
        x = next;
        // For a large root the quotient is more accurate from its constant term upwards.
        if (std::fabs(a) * x * x > std::fabs(d / x)) {
            h.c1 = -d / x;
            h.b1 = (h.c1 - c) / x;
        }
    }
    return { x, h.b1, h.c1 };
}

/** Copies count roots to the edge's vector: over what is there, then appended. */
int store(const double *roots, int count, QVector<double> &out)
{
    for (int k = 0; k < count; ++k) {
        if (k < out.size())
            out[k] = roots[k];
        else
            out.append(roots[k]);
    }
    return count;
}

} // namespace

int vx::solveQuadratic(double a, double b, double c, double roots[2], double min, double max)
{
    if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c))
        return 0;
    RootSink sink{ roots, min, max };
    if (std::fabs(a) < machineZero) {
        if (std::fabs(b) < machineZero)
            return std::fabs(c) < machineZero ? -1 : 0;
        sink.offer(-c / b);
        return sink.count;
    }
    double B = -0.5 * b;
    double D = discriminant(a, B, c);
    // Too small to be told from 0 at this scale; or coefficients so large that their products overflowed.
    const double size = std::fabs(D);
    if (!(size >= machineEpsilon && size <= std::numeric_limits<double>::max()) && D != 0) {
        if (const int k = excessExponent(std::max({ std::fabs(a), std::fabs(B), std::fabs(c) }))) {
            a = std::ldexp(a, -k);
            B = std::ldexp(B, -k);
            c = std::ldexp(c, -k);
            D = discriminant(a, B, c);
        }
    }
    if (!(D >= -machineEpsilon))
        return 0;
    // The root of larger magnitude first, without cancellation; the other from the product of the roots.
    const double Q = D < 0 ? 0 : std::sqrt(D);
    const double R = B >= 0 ? B + Q : B - Q;
    const double x1 = R == 0 ? c / a : R / a;
    const double x2 = R == 0 ? -(c / a) : c / R;
    sink.offer(x1);
    if (x2 != x1)
        sink.offer(x2);
    return sink.count;
}

int vx::solveCubic(double a, double b, double c, double d, double roots[3], double min, double max)
{
    if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c) || !std::isfinite(d))
        return 0;
    const double scale = std::max(std::max(std::fabs(a), std::fabs(b)), std::max(std::fabs(c), std::fabs(d)));
    if (const int k = excessExponent(scale)) {
        a = std::ldexp(a, -k);
        b = std::ldexp(b, -k);
        c = std::ldexp(c, -k);
        d = std::ldexp(d, -k);
    }
    if (std::fabs(a) < machineZero)
        return solveQuadratic(b, c, d, roots, min, max);
    const Deflation rest = std::fabs(d) < machineZero ? Deflation{ 0, b, c } : divideOutRoot(a, b, c, d);
    RootSink sink{ roots, min, max, solveQuadratic(a, rest.b1, rest.c1, roots, min, max) };
    if (std::find(roots, roots + sink.count, rest.x) == roots + sink.count)
        sink.offer(rest.x);
    return sink.count;
}

double vxNumeric::log2(double x)
{
    return std::log(x) / 0.6931471805599453;
}

double vxNumeric::clamp(double value, double min, double max)
{
    return clampTo(value, min, max);
}

double vxNumeric::getDiscriminant(double a, double b, double c)
{
    return discriminant(a, b, c);
}

int vxNumeric::solveQuadratic(double a, double b, double c, QVector<double> &roots, double min, double max)
{
    double found[2];
    return store(found, vx::solveQuadratic(a, b, c, found, min, max), roots);
}

int vxNumeric::solveCubic(double a, double b, double c, double d, QVector<double> &roots, double min,
                          double max)
{
    double found[3];
    return store(found, vx::solveCubic(a, b, c, d, found, min, max), roots);
}
