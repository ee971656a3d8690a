#pragma once

namespace vx {

/** The operations on two shapes, by the codes that XPath::computeBoolean takes. */
enum Operation : int { Intersect = 1, Unite = 2, Subtract = 3, Exclude = 4 };

} // namespace vx
