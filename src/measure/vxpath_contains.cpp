#include "vxpath.h"

#include "vxcubic_p.h"
#include "vxmonopieces_p.h"

#include <algorithm>
#include <vector>

namespace {

bool spans(const vxMono &piece, double y)
{
    const double start = piece.values[1];
    const double end = piece.values[7];
    return (piece.winding == 1 && start < y && y <= end) || (end <= y && y < start);
}

/**
 * The middle between the first two crossings of the outline with the level y; fallback when there are fewer.
 */
vxPoint pointOnLevel(const QList<vxMono *> &pieces, double y, const vxPoint &fallback)
{
    std::vector<double> crossings;
    for (const vxMono *piece : pieces) {
        if (!spans(*piece, y))
            continue;
        const vx::Cubic c = vx::cubicOf(*piece);
        double roots[3];
        for (int i = vx::timesAtCoordinate(c, 1, y, roots, 0, 1) - 1; i >= 0; --i)
            crossings.push_back(vx::pointAt(c, roots[i]).x);
    }
    if (crossings.size() < 2)
        return fallback;
    std::sort(crossings.begin(), crossings.end());
    return vxPoint((crossings[0] + crossings[1]) / 2, y);
}

/** Heights halfway between neighbouring ends of pieces, nearest to y first: levels that meet no vertex. */
std::vector<double> levelsBetweenEnds(const QList<vxMono *> &pieces, double y)
{
    std::vector<double> ends{ y };
    for (const vxMono *piece : pieces) {
        ends.push_back(piece->values[1]);
        ends.push_back(piece->values[7]);
    }
    ends.erase(std::remove_if(ends.begin(), ends.end(), [](double e) { return !qIsFinite(e); }), ends.end());
    std::sort(ends.begin(), ends.end());
    ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
    std::vector<double> levels;
    for (size_t i = 1; i < ends.size(); ++i)
        levels.push_back((ends[i - 1] + ends[i]) / 2);
    std::stable_sort(levels.begin(), levels.end(),
                     [y](double a, double b) { return std::fabs(a - y) < std::fabs(b - y); });
    return levels;
}

} // namespace

bool vxPath::contains(const vxPoint &point, const vxStyle &style) const
{
    if (!point.isInside(getBounds(vxBoundOpt::geometric(), style)))
        return false;
    const int winding = _winding(point).winding;
    return style.evenOdd ? winding % 2 != 0 : winding != 0;
}

vxPoint vxPath::getInteriorPoint(bool evenOdd) const
{
    const vxStyle style = vxStyle::filled(evenOdd);
    const vxPoint center = getBounds(vxBoundOpt::geometric(), style).center();
    if (contains(center, style))
        return center;
    const QList<vxMono *> pieces = getMonoCurves();
    const vxPoint candidate = pointOnLevel(pieces, center.y, center);
    if (contains(candidate, style))
        return candidate;
    // The middle height meets a level edge or an extremum: look at heights that do not.
    for (double y : levelsBetweenEnds(pieces, center.y)) {
        const vxPoint other = pointOnLevel(pieces, y, center);
        if (contains(other, style))
            return other;
    }
    return candidate;
}
