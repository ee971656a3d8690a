#pragma once

#include "vxcubic_p.h"
#include "vxsegment.h"

#include <QList>
#include <QVector>

namespace vx {

/** False, and c all zero, for fewer than eight values. */
inline bool toCubic(const QVector<double> &values, Cubic &c)
{
    c = Cubic{};
    if (values.size() < 8)
        return false;
    const double *v = values.constData();
    for (int i = 0; i < 8; ++i)
        c.v[i] = v[i];
    return true;
}

inline QVector<double> toValues(const Cubic &c)
{
    return { c.v[0], c.v[1], c.v[2], c.v[3], c.v[4], c.v[5], c.v[6], c.v[7] };
}

/** The curve from a to b. */
inline Cubic cubicBetween(const vxSegment &a, const vxSegment &b)
{
    return Cubic::fromPoints(a.point, a.point.add(a.handleOut), b.point.add(b.handleIn), b.point);
}

/** The curve that starts at segment i of a contour; from the last one it goes back to the first. */
inline Cubic curveFrom(const QList<vxSegment *> &segments, int i)
{
    return cubicBetween(*segments.at(i), *segments.at(i + 1 < segments.size() ? i + 1 : 0));
}

} // namespace vx
