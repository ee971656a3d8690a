#include "vxfilledregion_p.h"

#include "xpath.h"

namespace vx {

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
    return tellByPlaces(contour, [this](const vxPoint &p) { return holds(p); });
}

std::optional<bool> FilledRegion::holds(const vxPoint &p) const
{
    vxWinding winding;
    if (!m_pieces.countAside(p, winding))
        return std::nullopt;
    return m_evenOdd ? winding.winding % 2 != 0 : winding.winding != 0;
}

} // namespace vx
