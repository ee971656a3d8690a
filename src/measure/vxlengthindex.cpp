#include "vxcurvelocation.h"
#include "vxlengthindex_p.h"
#include "vxpath.h"
#include "vxtolerance.h"

#include <algorithm>
#include <limits>

vxLengthIndex::vxLengthIndex(const vxPath &path) : m_curves(path.getCurves())
{
    m_ends.reserve(size_t(m_curves.count()));
    double end = 0;
    for (const vxCurve *curve : m_curves) {
        end += curve->getLength();
        m_ends.push_back(end);
    }
}

bool vxLengthIndex::placeAt(double offset, Place &place) const
{
    if (!(offset >= 0) || !(offset <= length()) || m_ends.empty())
        return false;
    const auto found = std::upper_bound(m_ends.begin(), m_ends.end(), offset);
    const bool atEnd = found == m_ends.end();
    const size_t i = atEnd ? m_ends.size() - 1 : size_t(found - m_ends.begin());
    vxCurve *curve = m_curves.at(int(i));
    const double before = i > 0 ? m_ends[i - 1] : 0;
    // Behind the curve's own length there is only its end, whatever rounding says.
    const double within = offset - before;
    double time = !atEnd && within < curve->getLength() ? curve->getTimeAt(within) : 1;
    if (time == vxTolerance::noTime)
        time = 1;
    // A location knows what it means to be as good as on the next curve.
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    const vxCurveLocation location(curve, time, vxPoint(unknown, unknown), false, 0);
    place = { location.curve, location.time, location.point };
    return true;
}
