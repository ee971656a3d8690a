#pragma once

#include "pzgraphics_global.h"

/** Width and height in path units; neither is forced to be positive. */
class PZGRAPHICS_EXPORT vxSize
{
public:
    double width = 0;
    double height = 0;

    constexpr vxSize() = default;
    constexpr vxSize(double width, double height) : width(width), height(height) {}

    bool operator==(const vxSize &s) const { return width == s.width && height == s.height; }
    bool operator!=(const vxSize &s) const { return !(*this == s); }
};
