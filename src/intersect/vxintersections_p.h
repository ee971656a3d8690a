#pragma once

#include "vxcurvelocation.h"

#include <QList>

#include <functional>
#include <vector>

class XPath;

namespace vx {

/** Why a search may have missed a meeting. */
struct SearchDoubts {
    /** Searches that were cut short. */
    std::vector<vxUnfinished> unfinished;
    /** Where vertices come so near a curve that rounding may have hidden a meeting. */
    std::vector<vxContact> nearMisses;
};

/**
 * All meetings of path with other (null or path: with itself) that include accepts; see
 * XPath::getIntersections, which says who owes the locations. doubts are added to, never cleared.
 */
QList<vxCurveLocation *> findIntersections(XPath &path, XPath *other,
                                           const std::function<bool(vxCurveLocation *)> &include,
                                           SearchDoubts &doubts);

} // namespace vx
