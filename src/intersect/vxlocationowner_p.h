#pragma once

#include "vxcurvelocation.h"

#include <vector>

namespace vx {

/** The locations of list and their partners, each once, in no meaningful order. */
std::vector<vxCurveLocation *> withPartners(const QList<vxCurveLocation *> &list);

/**
 * Owns the locations of one run, both sides of every pair, for as long as it lives: segments may drop and
 * take references meanwhile without any location dying. What segments still hold at the end dies with them.
 */
class LocationOwner
{
public:
    explicit LocationOwner(const QList<vxCurveLocation *> &list) : m_locations(withPartners(list))
    {
        for (vxCurveLocation *location : m_locations)
            location->addRef();
    }
    ~LocationOwner()
    {
        for (vxCurveLocation *location : m_locations)
            location->release();
    }
    LocationOwner(const LocationOwner &) = delete;
    LocationOwner &operator=(const LocationOwner &) = delete;

private:
    std::vector<vxCurveLocation *> m_locations;
};

} // namespace vx
