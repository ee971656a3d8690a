#pragma once

#include "vxcubic_p.h"

#include <algorithm>
#include <cmath>

namespace vx {

/** The largest absolute coordinate of a box. */
inline double largestOf(const Box &box)
{
    return std::max(std::max(std::fabs(box.minX), std::fabs(box.maxX)),
                    std::max(std::fabs(box.minY), std::fabs(box.maxY)));
}

} // namespace vx
