#pragma once

#include "vxcubic_p.h"
#include "vxcurve.h"

#include <algorithm>
#include <vector>

class vxSegment;

namespace vx {

/** Curves of a contour up to the next intersection, the end of the path, or back at the start. */
struct Stretch {
    struct Link {
        vxSegment *segment;
        vxCurve *curve;
        double length;
    };
    /** On a link, whose curve is cubic, at an arc length from its start. */
    struct Place {
        const Link *link = nullptr;
        double distance = 0;
        Cubic cubic{};
    };

    std::vector<Link> links;
    double length = 0;

    void follow(vxSegment *start);

    bool holds(const vxCurve *curve) const
    {
        return std::any_of(links.begin(), links.end(),
                           [curve](const Link &link) { return link.curve == curve; });
    }

    /** Nowhere for a distance beyond the end. */
    Place placeAt(double distance) const
    {
        for (const Link &link : links) {
            if (link.length >= distance)
                return { &link, distance, link.curve->_cubic() };
            distance -= link.length;
        }
        return {};
    }
};

} // namespace vx
