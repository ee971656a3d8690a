#pragma once

#include <QList>

#include <functional>

class XPath;
class vxCurveLocation;

namespace vx {

/** Why a search may have missed a meeting. */
struct SearchDoubts {
    bool limitReached = false;
    bool nearMiss = false;
};

/**
 * All meetings of path with other (null or path: with itself) that include accepts; see
 * XPath::getIntersections, which says who owes the locations. doubts are set, never cleared.
 */
QList<vxCurveLocation *> findIntersections(XPath &path, XPath *other,
                                           const std::function<bool(vxCurveLocation *)> &include,
                                           SearchDoubts &doubts);

} // namespace vx
