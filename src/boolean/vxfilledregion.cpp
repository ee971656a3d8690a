#include "vxfilledregion_p.h"

#include "vxmonopieces_p.h"
#include "xpath.h"

#include <algorithm>

namespace vx {

int placesToAsk(const vxPath &contour)
{
    constexpr int most = 4;
    return std::min(most, outlineSize(contour));
}

vxPoint placeToAsk(const vxPath &contour, int i)
{
    // Neither an end nor the middle, which drawings on a grid have on each other's levels.
    constexpr double somewhere = 0.381966;
    return pointAt(outlineCurve(contour, i), somewhere);
}

FilledRegion::FilledRegion(const XPath &operand) : m_evenOdd(operand.evenOdd)
{
    int count = 0;
    for (const vxPath *child : operand.children)
        count += outlineSize(*child);
    m_pieces.reserve(count);
    for (const vxPath *child : operand.children)
        m_pieces.appendUnnamed(*child);
}

FilledRegion::FilledRegion(const vxPath &contour) : m_evenOdd(true)
{
    m_pieces.reserve(outlineSize(contour));
    m_pieces.appendUnnamed(contour);
}

std::optional<bool> FilledRegion::holds(const vxPath &contour) const
{
    std::optional<bool> isInside;
    for (int i = 0; i < placesToAsk(contour) && !isInside; ++i)
        isInside = holds(placeToAsk(contour, i));
    return isInside;
}

std::optional<bool> FilledRegion::holds(const vxPoint &p) const
{
    vxWinding winding;
    if (!m_pieces.countAside(p, winding))
        return std::nullopt;
    return m_evenOdd ? winding.winding % 2 != 0 : winding.winding != 0;
}

} // namespace vx
