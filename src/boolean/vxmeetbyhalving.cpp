#include "vxarrangement_p.h"

#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the arrangement's frame: a curve that leaves its chord by less is as good as its chord. */
constexpr double flatness = 1e-4;
/** Curves that run together would be halved without end; what was found by then serves. */
constexpr int maxVisits = 4000;
constexpr int maxDepth = 40;

/**
 * Refines a meeting by Newton's method on B1(t) - B2(u) = 0; false when it leaves the curves or does not
 * meet.
 */
bool refine(const Cubic &c1, const Cubic &c2, double &t, double &u)
{
    for (int i = 0; i < 12; ++i) {
        const vxPoint d = placeAt(c1, t).subtract(placeAt(c2, u));
        if (d.getLength() < 1e-11)
            break;
        const vxPoint d1 = velocityAt(c1, t);
        const vxPoint d2 = velocityAt(c2, u);
        const double det = d1.cross(d2);
        if (det == 0)
            break;
        const double nextT = t - d.cross(d2) / det;
        const double nextU = u - d.cross(d1) / det;
        if (!std::isfinite(nextT) || !std::isfinite(nextU))
            break;
        t = std::clamp(nextT, 0.0, 1.0);
        u = std::clamp(nextU, 0.0, 1.0);
    }
    return pointAt(c1, t).isClose(pointAt(c2, u), 10 * closeDistance);
}

class Halving
{
public:
    Halving(const Cubic &c1, const Cubic &c2, TimePairs &found) : m_c1(c1), m_c2(c2), m_found(found) {}

    void visit(const Cubic &a, double t0, double t1, const Cubic &b, double u0, double u1, int depth)
    {
        if (++m_visits > maxVisits || !boxesMeet(hullBox(a), hullBox(b)))
            return;
        const bool flatA = isFlatEnough(a, flatness) || depth >= maxDepth;
        const bool flatB = isFlatEnough(b, flatness) || depth >= maxDepth;
        if (flatA && flatB) {
            report((t0 + t1) / 2, (u0 + u1) / 2);
            return;
        }
        Cubic first;
        Cubic second;
        if (!flatA && (flatB || t1 - t0 >= u1 - u0)) {
            subdivide(a, 0.5, first, second);
            const double tm = (t0 + t1) / 2;
            visit(first, t0, tm, b, u0, u1, depth + 1);
            visit(second, tm, t1, b, u0, u1, depth + 1);
        } else {
            subdivide(b, 0.5, first, second);
            const double um = (u0 + u1) / 2;
            visit(a, t0, t1, first, u0, um, depth + 1);
            visit(a, t0, t1, second, um, u1, depth + 1);
        }
    }

private:
    void report(double t, double u)
    {
        if (!refine(m_c1, m_c2, t, u))
            return;
        for (int i = 0; i < m_found.count(); ++i) {
            if (std::fabs(m_found[i].t1 - t) < timeMargin && std::fabs(m_found[i].t2 - u) < timeMargin)
                return;
        }
        m_found.append(t, u);
    }

    const Cubic &m_c1;
    const Cubic &m_c2;
    TimePairs &m_found;
    int m_visits = 0;
};

} // namespace

void meetByHalving(const Cubic &c1, const Cubic &c2, TimePairs &found)
{
    Halving(c1, c2, found).visit(c1, 0, 1, c2, 0, 1, 0);
}

} // namespace vx
