#pragma once

namespace vx {

/** At which locations XPath::divideLocations() divides: the values of its mode. */
enum DivideMode {
    DivideAtAll = 0,
    DivideAtOverlaps = 1,
    DivideAtAlive = 2 ///< whose two curves still belong to paths
};

} // namespace vx
