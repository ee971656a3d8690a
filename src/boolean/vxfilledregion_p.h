#pragma once

#include "vxmonoindex_p.h"

#include <memory>
#include <optional>

class XPath;

namespace vx {

/** What an operand without crossings of its own fills, to be asked for places clear of its outline. */
class FilledRegion
{
public:
    /** Keeps pieces of its own; later edits of the operand do not reach it. */
    explicit FilledRegion(const XPath &operand);

    /** Nothing near an outline, or near the level of a vertex or an extremum. */
    std::optional<bool> holds(const vxPoint &p) const;

private:
    MonoIndex m_pieces;
    bool m_evenOdd;
};

/** Of an operand of which cleanCopy() just made a copy; kept with one that stands. */
std::shared_ptr<const FilledRegion> filledRegion(const XPath &operand);

} // namespace vx
