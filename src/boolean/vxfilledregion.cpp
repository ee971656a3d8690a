#include "vxfilledregion_p.h"

#include "vxmonopieces_p.h"
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

std::optional<bool> FilledRegion::holds(const vxPoint &p) const
{
    vxWinding winding;
    if (!m_pieces.countAside(p, winding))
        return std::nullopt;
    return m_evenOdd ? winding.winding % 2 != 0 : winding.winding != 0;
}

} // namespace vx
