#include "vxcubic_p.h"
#include "vxnumeric_p.h"

#include <algorithm>

using vxTolerance::machineZero;
using vxTolerance::noTime;

namespace {

/** |B'(t)| as a function of t, set up once for many evaluations. */
class Speed
{
public:
    explicit Speed(const vx::Cubic &c)
        : m_a(coefficientA(c, 0), coefficientA(c, 1)), m_b(coefficientB(c, 0), coefficientB(c, 1)),
          m_c(coefficientC(c, 0), coefficientC(c, 1))
    {
    }

    double operator()(double t) const
    {
        const double dx = (m_a.x * t + m_b.x) * t + m_c.x;
        const double dy = (m_a.y * t + m_b.y) * t + m_c.y;
        return std::sqrt(dx * dx + dy * dy);
    }

private:
    static double coefficientA(const vx::Cubic &c, int i)
    {
        return 9 * (c.v[2 + i] - c.v[4 + i]) + 3 * (c.v[6 + i] - c.v[i]);
    }
    static double coefficientB(const vx::Cubic &c, int i)
    {
        return 6 * (c.v[i] + c.v[4 + i]) - 12 * c.v[2 + i];
    }
    static double coefficientC(const vx::Cubic &c, int i) { return 3 * (c.v[2 + i] - c.v[i]); }

    vxPoint m_a, m_b, m_c;
};

/** Length of a straight curve between two times; its speed is uneven, so the part is cut out. */
double straightLength(vx::Cubic c, double a, double b)
{
    vx::Cubic rest;
    if (b < 1) {
        vx::subdivide(c, b, c, rest);
        a = b != 0 ? a / b : 0;
    }
    if (a > 0)
        vx::subdivide(c, a, rest, c);
    return c.p0().getDistance(c.p3(), false);
}

} // namespace

int vx::quadratureOrder(double a, double b)
{
    const double n = std::ceil(std::fabs(b - a) * 32);
    if (n >= 16)
        return 16;
    return n > 2 ? static_cast<int>(n) : 2; // 2 for NaN
}

double vx::length(const Cubic &c, double a, double b)
{
    if (isStraight(c))
        return straightLength(c, a, b);
    return integrate(Speed(c), a, b, quadratureOrder(a, b));
}

double vx::timeAtLength(const Cubic &c, double offset, double start)
{
    if (std::isnan(offset) || std::isnan(start))
        return noTime;
    if (start == noTime)
        start = offset < 0 ? 1 : 0;
    if (offset == 0)
        return start;
    if (!(start >= 0 && start <= 1))
        return noTime;
    const bool forward = offset > 0;
    const double a = forward ? start : 0;
    const double b = forward ? 1 : start;
    const double rangeLength = length(c, a, b);
    const double diff = std::fabs(offset) - rangeLength;
    if (std::fabs(diff) < machineZero)
        return forward ? b : a;
    if (!(diff <= machineZero))
        return noTime;

    // A running sum: each call integrates only the stretch since the last one.
    const Speed speed(c);
    double sum = 0;
    double last = start;
    const auto excess = [&](double t) {
        sum += integrate(speed, last, t, quadratureOrder(last, t));
        last = t;
        return sum - offset;
    };
    const double t = findRoot(excess, speed, start + offset / rangeLength, a, b, 32, machineZero);
    // A last Newton step may end a rounding error outside, where the curve has no point.
    return std::clamp(t, a, b);
}
