#pragma once

#include "vxcurve.h"
#include "vxpoint.h"

#include <QList>

#include <vector>

class vxPath;

/**
 * Places on a path by arc length: the summed curve lengths once, then a binary search for each place.
 *
 * The sums run from the first curve on, so that the places are those of vxPath::getLocationAt() to the bit.
 * Valid until the path is edited.
 */
class vxLengthIndex
{
public:
    struct Place {
        const vxCurve *curve = nullptr;
        double time = 0;
        vxPoint point;

        /** Unit tangent; NaN without a time. */
        vxPoint tangent() const { return curve->getTangentAtTime(time); }
    };

    explicit vxLengthIndex(const vxPath &path);

    /** Arc length of the whole path in path units. */
    double length() const { return m_ends.empty() ? 0 : m_ends.back(); }
    /** False for an offset below 0, beyond the end, or NaN. */
    bool placeAt(double offset, Place &place) const;

private:
    QList<vxCurve *> m_curves;
    /** Arc length from the path's start to the end of each curve. */
    std::vector<double> m_ends;
};
