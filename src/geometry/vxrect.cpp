#include "vxrect.h"

#include <QString>

vxRect vxRect::intersect(const vxRect &r) const
{
    return fromEdges(std::max(x, r.x), std::max(y, r.y), std::min(x + width, r.x + r.width),
                     std::min(y + height, r.y + r.height));
}

vxRect vxRect::unite(const vxRect &r) const
{
    if (r.width <= 0 || r.height <= 0)
        return *this;
    if (width <= 0 || height <= 0)
        return r;
    return fromEdges(std::min(x, r.x), std::min(y, r.y), std::max(x + width, r.x + r.width),
                     std::max(y + height, r.y + r.height));
}

vxRect vxRect::include(const vxPoint &p) const
{
    return fromEdges(std::min(x, p.x), std::min(y, p.y), std::max(x + width, p.x), std::max(y + height, p.y));
}

void vxRect::expand(double dw, double dh)
{
    width += dw;
    height += dh;
    x -= dw / 2;
    y -= dh / 2;
}

void vxRect::adjust(double dx1, double dy1, double dx2, double dy2)
{
    x += dx1;
    y += dy1;
    width += dx2 - dx1;
    height += dy2 - dy1;
}

QString vxRect::toString() const
{
    return QStringLiteral("x: %1, y: %2, width: %3, height: %4").arg(x).arg(y).arg(width).arg(height);
}
