#include "pzpath.h"
#include "pzpath_p.h"

#include <QPainterPath>

namespace {

/** Replaces pp by path's elements, their points taken from pointOf(element). */
template <typename PointOf>
void replay(const PZPath &path, PointOf pointOf, QPainterPath &pp)
{
    pp = QPainterPath();
    const int n = path.count();
    for (int i = 0; i < n; ++i) {
        switch (path.at(i).type) {
        case PZPath::MoveToElement:
            pp.moveTo(pointOf(path.at(i)));
            break;
        case PZPath::LineToElement:
            pp.lineTo(pointOf(path.at(i)));
            break;
        case PZPath::CurveToElement:
            if (i < n - 2) {
                pp.cubicTo(pointOf(path.at(i)), pointOf(path.at(i + 1)), pointOf(path.at(i + 2)));
                i += 2;
            }
            break;
        case PZPath::CloseElement:
            pp.closeSubpath();
            break;
        default: // a data element without its curve
            break;
        }
    }
}

} // namespace

int PZPath::fromPainterPath(const QPainterPath &pp)
{
    const int n = pp.elementCount();
    m_elements.reserve(m_elements.count() + n);
    for (int i = 0; i < n; ++i) {
        const QPainterPath::Element element = pp.elementAt(i);
        // Codes 0 to 3 are Qt's own.
        m_elements.append({ element.x, element.y, 0, 0, element.type });
    }
    return n;
}

void PZPath::toPainterPath(QPainterPath &pp) const
{
    replay(
        *this, [](const PZElement &element) { return element.toPoint(); }, pp);
}

void PZPath::toPainterPathWithRoundValue(QPainterPath &pp) const
{
    replay(*this, pz::roundedPoint, pp);
}
