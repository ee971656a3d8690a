#include "vxstandingcurves_p.h"

#include "vxpath.h"
#include "xpath.h"

#include <cmath>

namespace vx {

void StandingCurves::number(const XPath &copy)
{
    int count = 0;
    for (const vxPath *child : copy.children) {
        for (vxCurve *curve : child->_curves())
            curve->_setNumber(count++);
    }
    m_curves.resize(size_t(count));
}

void StandingCurves::giveLengths(const XPath &copy)
{
    for (const vxPath *child : copy.children) {
        for (vxCurve *curve : child->_curves()) {
            StandingCurve *known = of(*curve);
            if (!known)
                continue;
            if (std::isnan(known->length))
                known->length = curve->getLength();
            else
                curve->_setLength(known->length);
        }
    }
}

void StandingCurves::keep(const StandingPiece &piece, StandingCurve &curve)
{
    if (m_pieces.empty())
        m_pieces.reserve(m_curves.size());
    if (curve.pieceCount++ == 0)
        curve.firstPiece = int(m_pieces.size());
    m_pieces.push_back(piece);
}

} // namespace vx
