#pragma once

#include <QList>

class vxCurveLocation;
class XPath;

namespace vx {

/**
 * Removes the vertices inside stretches where a shape overlaps itself; the curves there are
 * indistinguishable. Of divided overlaps, as divideLocations() lists them; whoever needs a segment
 * longer than the shape does holds it.
 */
void removeInsideOverlaps(const XPath &shape, const QList<vxCurveLocation *> &divided);

} // namespace vx
