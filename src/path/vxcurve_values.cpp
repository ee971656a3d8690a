#include "vxcurve.h"

#include "vxcurvevalues_p.h"
#include "vxmatrix.h"
#include "vxnowhere_p.h"
#include "vxnumeric_p.h"

#include <algorithm>

// The public edge of the kernel: values in, one call, values out. Too few values answer the neutral result.

using vx::nowhere;
using vxTolerance::noTime;

namespace {

vxPoint evaluated(const QVector<double> &values, double t, vx::Evaluate what, bool normalized)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::evaluate(c, t, what, normalized) : nowhere;
}

} // namespace

QVector<double> vxCurve::getValues(const vxSegment *segment1, const vxSegment *segment2,
                                   const vxMatrix *matrix)
{
    if (!segment1 || !segment2)
        return {};
    QVector<double> values = vx::toValues(vx::cubicBetween(*segment1, *segment2));
    if (matrix)
        matrix->transformCoords(values, 4);
    return values;
}

vxPoint vxCurve::_evaluate(const QVector<double> &values, double t, int type, bool normalized)
{
    if (type < 0 || type > 3)
        return nowhere;
    return evaluated(values, t, static_cast<vx::Evaluate>(type), normalized);
}

vxPoint vxCurve::getPoint(const QVector<double> &values, double t)
{
    return evaluated(values, t, vx::Evaluate::Point, false);
}

vxPoint vxCurve::getTangent(const QVector<double> &values, double t)
{
    return evaluated(values, t, vx::Evaluate::Tangent, true);
}

vxPoint vxCurve::getWeightedTangent(const QVector<double> &values, double t)
{
    return evaluated(values, t, vx::Evaluate::Tangent, false);
}

vxPoint vxCurve::getNormal(const QVector<double> &values, double t)
{
    return evaluated(values, t, vx::Evaluate::Normal, true);
}

vxPoint vxCurve::getWeightedNormal(const QVector<double> &values, double t)
{
    return evaluated(values, t, vx::Evaluate::Normal, false);
}

double vxCurve::getCurvature(const QVector<double> &values, double t)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::evaluate(c, t, vx::Evaluate::Curvature, false).x : 0;
}

double vxCurve::getLength(const QVector<double> &values, double a, double b)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::length(c, a, b) : 0;
}

int vxCurve::getIterations(double a, double b)
{
    return vx::quadratureOrder(a, b);
}

double vxCurve::getTimeAt(const QVector<double> &values, double offset, double start)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::timeAtLength(c, offset, start) : noTime;
}

vxPoint vxCurve::getPointAt(const QVector<double> &values, double offset, bool isTime)
{
    return getPoint(values, isTime ? offset : getTimeAt(values, offset, noTime));
}

double vxCurve::getTimeOf(const QVector<double> &values, const vxPoint &point)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::timeOf(c, point) : noTime;
}

double vxCurve::getNearestTime(const QVector<double> &values, const vxPoint &point)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::nearestTime(c, point) : noTime;
}

QVector<QVector<double>> vxCurve::subdivide(const QVector<double> &values, double t)
{
    vx::Cubic c, left, right;
    if (!vx::toCubic(values, c))
        return {};
    vx::subdivide(c, t, left, right);
    return { vx::toValues(left), vx::toValues(right) };
}

QVector<double> vxCurve::getPart(const QVector<double> &values, double from, double to)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::toValues(vx::part(c, from, to)) : QVector<double>();
}

vxRect vxCurve::getBounds(const QVector<double> &values)
{
    vx::Cubic c;
    if (!vx::toCubic(values, c))
        return vxRect();
    const vx::Box box = vx::bounds(c);
    return vxRect(box.minX, box.minY, box.maxX - box.minX, box.maxY - box.minY);
}

void vxCurve::addBounds(double q0, double q1, double q2, double q3, int coord, double padding,
                        QVector<double> *min, QVector<double> *max, QVector<double> &)
{
    if (!min || !max || coord < 0 || coord >= min->size() || coord >= max->size())
        return;
    vx::addBounds(q0, q1, q2, q3, padding, (*min)[coord], (*max)[coord]);
}

int vxCurve::solveCubic(const QVector<double> &values, int coord, double val, QVector<double> &roots,
                        double min, double max)
{
    vx::Cubic c;
    if (coord < 0 || coord > 1 || !vx::toCubic(values, c))
        return 0;
    double found[3];
    const int count = vx::timesAtCoordinate(c, coord, val, found, min, max);
    if (roots.size() < count)
        roots.resize(count);
    std::copy(found, found + count, roots.begin());
    return count;
}

double vxCurve::getArea(const QVector<double> &values)
{
    vx::Cubic c;
    return vx::toCubic(values, c) ? vx::signedArea(c) : 0;
}

bool vxCurve::isStraight(const vxLine &line, const vxPoint &h1, const vxPoint &h2)
{
    return vx::isStraight(line, h1, h2);
}

bool vxCurve::isStraight(const QVector<double> &values)
{
    vx::Cubic c;
    return vx::toCubic(values, c) && vx::isStraight(c);
}

bool vxCurve::isLinear(const vxLine &line, const vxPoint &h1, const vxPoint &h2)
{
    return vx::isLinear(line, h1, h2);
}

bool vxCurve::isLinear(const QVector<double> &values)
{
    vx::Cubic c;
    return vx::toCubic(values, c) && vx::isLinear(c);
}

bool vxCurve::hasHandles(const QVector<double> &values)
{
    vx::Cubic c;
    return vx::toCubic(values, c) && vx::hasHandles(c);
}

bool vxCurve::isFlatEnough(const QVector<double> &values, double flatness)
{
    vx::Cubic c;
    return vx::toCubic(values, c) && vx::isFlatEnough(c, flatness);
}

// --- the same for this curve, straight to the kernel: the engine asks these in its inner loops ---

namespace {

vxPoint evaluatedOn(const vxCurve &curve, double t, vx::Evaluate what, bool normalized)
{
    if (!curve.segment1() || !curve.segment2())
        return nowhere;
    return vx::evaluate(curve._cubic(), t, what, normalized);
}

} // namespace

QVector<double> vxCurve::getValues(const vxMatrix *matrix) const
{
    return getValues(m_segment1, m_segment2, matrix);
}

vxPoint vxCurve::getPointAtTime(double t) const
{
    return evaluatedOn(*this, t, vx::Evaluate::Point, false);
}

vxPoint vxCurve::getTangentAtTime(double t) const
{
    return evaluatedOn(*this, t, vx::Evaluate::Tangent, true);
}

vxPoint vxCurve::getWeightedTangentAtTime(double t) const
{
    return evaluatedOn(*this, t, vx::Evaluate::Tangent, false);
}

vxPoint vxCurve::getNormalAtTime(double t) const
{
    return evaluatedOn(*this, t, vx::Evaluate::Normal, true);
}

vxPoint vxCurve::getWeightedNormalAtTime(double t) const
{
    return evaluatedOn(*this, t, vx::Evaluate::Normal, false);
}

double vxCurve::getCurvatureAtTime(double t) const
{
    return m_segment1 && m_segment2 ? evaluatedOn(*this, t, vx::Evaluate::Curvature, false).x : 0;
}

double vxCurve::getPartLength(double from, double to) const
{
    return vx::length(_cubic(), from, to);
}

double vxCurve::getTimeAt(double offset, double start) const
{
    return m_segment1 && m_segment2 ? vx::timeAtLength(_cubic(), offset, start) : noTime;
}

vxPoint vxCurve::getPointAt(double offset, bool isTime) const
{
    return getPointAtTime(isTime ? offset : getTimeAt(offset, noTime));
}

double vxCurve::getTimeOf(const vxPoint &point) const
{
    return m_segment1 && m_segment2 ? vx::timeOf(_cubic(), point) : noTime;
}

double vxCurve::getNearestTime(const vxPoint &point) const
{
    return m_segment1 && m_segment2 ? vx::nearestTime(_cubic(), point) : noTime;
}

double vxCurve::getArea() const
{
    return vx::signedArea(_cubic());
}

bool vxCurve::isStraight() const
{
    return m_segment1 && m_segment2 && vx::isStraight(_cubic());
}

bool vxCurve::isLinear() const
{
    return m_segment1 && m_segment2 && vx::isLinear(_cubic());
}
