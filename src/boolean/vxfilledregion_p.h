#pragma once

#include "vxmonoindex_p.h"

#include <memory>
#include <optional>

class XPath;
class vxPath;

namespace vx {

/** What an operand without crossings of its own fills, to be asked for places clear of its outline. */
class FilledRegion
{
public:
    /** Keeps pieces of its own; later edits of the operand do not reach it. */
    explicit FilledRegion(const XPath &operand);
    /** Of one contour. */
    explicit FilledRegion(const vxPath &contour);

    /** Nothing near an outline, or near the level of a vertex or an extremum. */
    std::optional<bool> holds(const vxPoint &p) const;
    /** The same for a contour that does not cross the outline, told by one of its places. */
    std::optional<bool> holds(const vxPath &contour) const;

private:
    MonoIndex m_pieces;
    bool m_evenOdd;
};

/** How many places of a contour are asked; and the i-th of them. */
int placesToAsk(const vxPath &contour);
vxPoint placeToAsk(const vxPath &contour, int i);

/** Of an operand of which cleanCopy() just made a copy; kept with one that stands. */
std::shared_ptr<const FilledRegion> filledRegion(const XPath &operand);

} // namespace vx
