#pragma once

#include <QList>

#include <functional>

class XPath;
class vxCurveLocation;

namespace vx {

/**
 * All meetings of path with other (null or path: with itself) that include accepts; see
 * XPath::getIntersections, which says who owes the locations. limitReached is set, never cleared, when a
 * search was cut short.
 */
QList<vxCurveLocation *> findIntersections(XPath &path, XPath *other,
                                           const std::function<bool(vxCurveLocation *)> &include,
                                           bool &limitReached);

} // namespace vx
