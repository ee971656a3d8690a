#include "vxstandingcurves_p.h"

#include "vxpath.h"
#include "xpath.h"

#include <cmath>

namespace vx {

namespace {

void numberFrom(int first, const vxPath &contour)
{
    for (vxCurve *curve : contour._curves())
        curve->_setNumber(first++);
}

} // namespace

void StandingCurves::number(const XPath &copy)
{
    m_unnumbered.clear();
    int count = 0;
    for (const vxPath *child : copy.children) {
        if (child->_hasCurves())
            numberFrom(count, *child);
        else
            m_unnumbered.push_back({ child, count });
        count += child->_countCurves();
    }
    m_curves.resize(size_t(count));
}

void StandingCurves::numberRest()
{
    for (const Unnumbered &rest : m_unnumbered)
        numberFrom(rest.first, *rest.contour);
    m_unnumbered.clear();
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
