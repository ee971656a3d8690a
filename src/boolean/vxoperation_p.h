#pragma once

namespace vx {

/** The operations on two shapes, by the codes that XPath::computeBoolean takes. */
enum Operation : int { Intersect = 1, Unite = 2, Subtract = 3, Exclude = 4 };

/** In an operation's place: keep every stretch, as taking one path's crossings apart does. */
constexpr int resolveOnly = 0;

} // namespace vx
