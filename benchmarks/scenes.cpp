#include "scenes.h"

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double pi = 3.141592653589793;

/**
 * Uniform doubles in [lo, hi); the standard's distributions may differ from library to library, the engine
 * may not.
 */
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}
    double next(double lo, double hi) { return lo + (hi - lo) * double(m_engine()) / 4294967296.0; }

private:
    std::mt19937 m_engine;
};

PathCommand moveTo(const QPointF &p)
{
    return { 'M', { p } };
}

PathCommand lineTo(const QPointF &p)
{
    return { 'L', { p } };
}

PathCommand cubicTo(const QPointF &c1, const QPointF &c2, const QPointF &p)
{
    return { 'C', { c1, c2, p } };
}

const PathCommand close{ 'Z', {} };

QPointF polar(double radius, double angle)
{
    return { radius * std::cos(angle), radius * std::sin(angle) };
}

/** A closed contour around the origin through the radii at equal angles, with smooth cubics between. */
PathCommands smoothRing(const std::vector<double> &radii)
{
    const int count = int(radii.size());
    const double step = 2 * pi / count;
    // Catmull-Rom handles; the factor makes equal radii the usual approximation of a circle.
    const double handle = 4.0 / 3 * std::tan(step / 4) / (2 * std::sin(step));
    const auto at = [&](int i) { return polar(radii[size_t((i + count) % count)], step * i); };
    const auto tangent = [&](int i) { return handle * (at(i + 1) - at(i - 1)); };
    PathCommands path{ moveTo(at(0)) };
    for (int i = 0; i < count; ++i)
        path << cubicTo(at(i) + tangent(i), at(i + 1) - tangent(i + 1), i + 1 < count ? at(i + 1) : at(0));
    return path << close;
}

/** Two wavy rings, inside and outside of each other in turn: they change places once a curve. */
scenes::Pair swayingRings(int curves, double radius, double sway, double noise)
{
    Random random(7);
    std::vector<double> a, b;
    for (int i = 0; i < curves; ++i) {
        const double outwards = i % 2 ? sway : -sway;
        a.push_back(radius + outwards + random.next(-noise, noise));
        b.push_back(radius - outwards + random.next(-noise, noise));
    }
    return { smoothRing(a), smoothRing(b) };
}

} // namespace

namespace scenes {

PathCommands icon()
{
    constexpr int teeth = 12;
    constexpr double step = 2 * pi / teeth;
    PathCommands path{ moveTo(polar(38, 0)) };
    for (int i = 0; i < teeth; ++i) {
        const double a = i * step;
        path << lineTo(polar(46, a + 0.1 * step))
             << cubicTo(polar(50, a + 0.12 * step), polar(50, a + 0.15 * step), polar(50, a + 0.2 * step))
             << lineTo(polar(50, a + 0.4 * step))
             << cubicTo(polar(50, a + 0.45 * step), polar(50, a + 0.48 * step), polar(46, a + 0.5 * step))
             << lineTo(polar(38, a + 0.6 * step)) << lineTo(polar(38, a + step));
    }
    path.last() = close;
    return path + smoothRing(std::vector<double>(4, 15.0));
}

PathCommands mapOutline(int lines, unsigned seed)
{
    // Equal angles keep it from crossing itself, whatever the radii; the roughness is that of a random walk
    // that is drawn back to the middle.
    Random random(seed);
    PathCommands path;
    double radius = 400;
    for (int i = 0; i < lines; ++i) {
        radius += random.next(-20, 20) + (400 - radius) * 0.05;
        const QPointF p = polar(radius, 2 * pi * i / lines);
        path << (i == 0 ? moveTo(p) : lineTo(p));
    }
    return path << close;
}

PathCommands denseStar(int points)
{
    PathCommands path;
    for (int i = 0; i < points; ++i) {
        const QPointF p = polar(500, 2 * pi * i * (points / 2) / points);
        path << (i == 0 ? moveTo(p) : lineTo(p));
    }
    return path << close;
}

PathCommands manySquares(int perSide)
{
    PathCommands path;
    for (int row = 0; row < perSide; ++row) {
        for (int column = 0; column < perSide; ++column) {
            const QPointF p(column * 15, row * 15);
            path << moveTo(p) << lineTo(p + QPointF(10, 0)) << lineTo(p + QPointF(10, 10))
                 << lineTo(p + QPointF(0, 10)) << close;
        }
    }
    return path;
}

Pair nearCoincidentRings(int curves, double offset)
{
    const PathCommands ring = smoothRing(std::vector<double>(size_t(curves), 500.0));
    return { ring, moved(ring, { offset, offset / 2 }) };
}

Pair crossingRings(int curves)
{
    return swayingRings(curves, 500, 8, 4);
}

Pair longRings(int curves)
{
    constexpr double radiusPerCurve = 2.4;
    return swayingRings(curves, radiusPerCurve * curves, 4, 1);
}

Pair ellipseGrids(int curves)
{
    constexpr double step = 26;
    const int count = curves / 4;
    const int perRow = std::max(1, int(std::sqrt(double(count))));
    const std::vector<PathCommands> ellipses = {
        smoothRing(std::vector<double>(4, 9.0)),
        smoothRing(std::vector<double>(4, 10.0)),
        smoothRing(std::vector<double>(4, 11.0)),
    };
    PathCommands grid;
    for (int i = 0; i < count; ++i)
        grid += moved(ellipses[size_t(i) % ellipses.size()], { step * (i % perRow), step * (i / perRow) });
    return { grid, moved(grid, { 0.4 * step, 0.23 * step }) };
}

PathCommands standingPath(int curves)
{
    Random random(11);
    std::vector<double> radii;
    for (int i = 0; i < curves; ++i)
        radii.push_back(400 + random.next(-10, 10));
    return smoothRing(radii);
}

std::vector<std::pair<vx::Cubic, vx::Cubic>> crossingCubics(int pairs)
{
    Random random(2024);
    const auto cubic = [&random] {
        vx::Cubic c;
        for (double &v : c.v)
            v = random.next(0, 1000);
        return c;
    };
    std::vector<std::pair<vx::Cubic, vx::Cubic>> result;
    for (int i = 0; i < pairs; ++i) {
        const vx::Cubic a = cubic();
        vx::Cubic b = cubic();
        const vxPoint shift =
            vx::pointAt(a, random.next(0.1, 0.9)).subtract(vx::pointAt(b, random.next(0.1, 0.9)));
        for (int k = 0; k < 8; k += 2) {
            b.v[k] += shift.x;
            b.v[k + 1] += shift.y;
        }
        result.emplace_back(a, b);
    }
    return result;
}

std::vector<QPointF> points(int count, const QRectF &box)
{
    Random random(5);
    std::vector<QPointF> result;
    for (int i = 0; i < count; ++i) {
        const double x = random.next(box.left(), box.right());
        result.emplace_back(x, random.next(box.top(), box.bottom()));
    }
    return result;
}

PathCommands moved(const PathCommands &path, const QPointF &by)
{
    return mapped(path, 1, by);
}

} // namespace scenes
