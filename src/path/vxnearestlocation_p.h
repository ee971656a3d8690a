#pragma once

#include "vxpoint.h"

#include <QList>

class vxCurve;
class vxCurveLocation;

namespace vx {

/**
 * A new location (count 0, the caller's) at the nearest point of all curves, distance filled, ties to the
 * earlier curve; null without curves. Curves that cannot win are not searched.
 */
vxCurveLocation *nearestLocation(const QList<vxCurve *> &curves, const vxPoint &point);

} // namespace vx
