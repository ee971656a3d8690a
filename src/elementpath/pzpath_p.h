#pragma once

#include "pzpath.h"
#include "vxnumeric_p.h"
#include "vxpath.h"
#include "vxref_p.h"

#include <climits>
#include <cmath>
#include <vector>

/** What the element path's operations share. */
namespace pz {

/**
 * Engine contours of the elements from index from on, at most limit of them, as children for parent (may be
 * null) that nobody holds but the result. Drawing elements before the first move belong to no contour and are
 * skipped; one after a close element starts a new contour at the close point, as in a painter path.
 */
std::vector<vxRef<vxPath>> buildContours(const PZPath &path, int from, XPath *parent, int limit = INT_MAX);

inline vxPoint pointOf(const PZPath::PZElement &element)
{
    return vxPoint(element.x, element.y);
}

inline void setPoint(PZPath::PZElement &element, const vxPoint &p)
{
    element.x = p.x;
    element.y = p.y;
}

/** A new element, without a head. */
inline PZPath::PZElement makeElement(const vxPoint &p, int type)
{
    return { p.x, p.y, 0, 0, type };
}
inline PZPath::PZElement makeElement(const QPointF &p, int type)
{
    return { p.x(), p.y(), 0, 0, type };
}

/** The element's point rounded to integers, halves towards +infinity. */
inline QPointF roundedPoint(const PZPath::PZElement &element)
{
    vxPoint point = pointOf(element);
    point.round();
    return point.toPt();
}

/** Smallest component, in path units, that a step along an edge may have; strict. */
constexpr double stepCutOff = 0.01;

/**
 * The vector of the given length in direction angle (radians). Components below stepCutOff are dropped, so
 * that an edge that is nearly parallel to an axis is followed exactly along it.
 */
inline vxPoint directedStep(double angle, double length)
{
    vxPoint step(std::cos(angle) * length, std::sin(angle) * length);
    if (std::fabs(step.x) < stepCutOff)
        step.x = 0;
    if (std::fabs(step.y) < stepCutOff)
        step.y = 0;
    return step;
}

/** Radians; two directions nearer than this are one, and as near to pi apart run straight on; strict. */
constexpr double cornerAngleMargin = 0.001;
/**
 * Fraction of the rounding distance between a corner and the control point on a straight edge that meets
 * there.
 */
constexpr double cornerSideFactor = 0.448;
/** A handle measured from a cut on a curve is this much longer than cornerSideFactor of the distance. */
constexpr double cornerHandleStretch = 1.5;

inline bool isSameDirection(double angleDifference)
{
    return std::fabs(angleDifference) < cornerAngleMargin;
}

inline bool isStraightOn(double angleDifference)
{
    return std::fabs(std::fabs(angleDifference) - vx::pi) < cornerAngleMargin;
}

} // namespace pz
