#pragma once

#include "vxpoint.h"

#include <limits>

namespace vx {

/** The point that stands for "none": both coordinates NaN. */
inline constexpr vxPoint nowhere(std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::quiet_NaN());

} // namespace vx
