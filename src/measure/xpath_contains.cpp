#include "xpath.h"

bool XPath::contains(const vxPoint &point, const vxStyle &style) const
{
    if (!point.isInside(getBounds(vxBoundOpt::geometric(), style)))
        return false;
    const int winding = getWinding(point, false).winding;
    return style.evenOdd ? winding % 2 != 0 : winding != 0;
}
