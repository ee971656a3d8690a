#include "vxnearestlocation_p.h"

#include "vxcubic_p.h"
#include "vxcurve.h"
#include "vxcurvelocation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vx {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/**
 * A distance that no computed point of a curve falls below: that of the control points' box, less what
 * rounding moves curve points. -infinity with NaN.
 */
double leastDistance(const Cubic &c, const vxPoint &p)
{
    const double *v = c.v;
    const auto x = std::minmax({ v[0], v[2], v[4], v[6] });
    const auto y = std::minmax({ v[1], v[3], v[5], v[7] });
    const double dx = std::max({ x.first - p.x, p.x - x.second, 0.0 });
    const double dy = std::max({ y.first - p.y, p.y - y.second, 0.0 });
    double size = std::fabs(p.x) + std::fabs(p.y);
    for (double value : c.v)
        size += std::fabs(value);
    const double distance = std::sqrt(dx * dx + dy * dy) * (1 - 1e-12) - 4e-12 * (1 + size);
    return std::isnan(distance) ? -infinite : distance;
}

struct Place {
    double time;
    double distance;

    Place(const vxCurve &curve, const vxPoint &point)
        : time(curve.getNearestTime(point)), distance(point.getDistance(curve.getPointAtTime(time)))
    {
    }
};

} // namespace

vxCurveLocation *nearestLocation(const QList<vxCurve *> &curves, const vxPoint &point)
{
    if (curves.isEmpty())
        return nullptr;
    std::vector<double> least;
    least.reserve(size_t(curves.size()));
    for (const vxCurve *curve : curves)
        least.push_back(leastDistance(curve->_cubic(), point));
    // The curve whose box is nearest is close to the answer: what lies beyond it is out of the question.
    const auto first = std::min_element(least.begin(), least.end()) - least.begin();
    const double bound = Place(*curves.at(int(first)), point).distance;

    vxCurve *nearest = nullptr;
    double time = 0;
    double distance = infinite;
    for (int i = 0; i < curves.size(); ++i) {
        if (least[size_t(i)] > distance || least[size_t(i)] > bound)
            continue;
        const Place place(*curves.at(i), point);
        if (place.distance < distance) {
            nearest = curves.at(i);
            time = place.time;
            distance = place.distance;
        }
    }
    return nearest ? new vxCurveLocation(nearest, time, nearest->getPointAtTime(time), false, distance)
                   : nullptr;
}

} // namespace vx
