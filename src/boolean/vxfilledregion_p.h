#pragma once

#include "vxmonoindex_p.h"
#include "vxoutline_p.h"
#include "vxsamplefractions_p.h"

#include <algorithm>
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

/**
 * What isFilledAt says of a contour that does not cross an outline, at the first of some places at which it
 * is sure.
 */
template <typename IsFilledAt>
std::optional<bool> tellByPlaces(const vxPath &contour, IsFilledAt &&isFilledAt)
{
    // Neither an end nor the middle, which drawings on a grid have on each other's levels.
    constexpr double somewhere = sampleFractions[1];
    constexpr int most = 4;
    const int count = std::min(most, outlineSize(contour));
    std::optional<bool> isFilled;
    for (int i = 0; i < count && !isFilled; ++i)
        isFilled = isFilledAt(pointAt(outlineCurve(contour, i), somewhere));
    return isFilled;
}

/** Of an operand of which cleanCopy() just made a copy; kept with one that stands. */
std::shared_ptr<const FilledRegion> filledRegion(const XPath &operand);

} // namespace vx
