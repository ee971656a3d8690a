#pragma once

#include <QList>

class vxCurveLocation;
class XPath;

namespace vx {

/**
 * Takes the segments out of a shape that lie inside a stretch along which it runs over itself: there nobody
 * could tell the curves apart. Of divided overlaps, as divideLocations() lists them; whoever needs a segment
 * longer than the shape does holds it.
 */
void removeInsideOverlaps(const XPath &shape, const QList<vxCurveLocation *> &divided);

} // namespace vx
