#pragma once

#include "vxcurvelocation.h"

#include <vector>

namespace vx {

/**
 * Owns the locations of one run, both sides of every pair, for as long as it lives: segments may drop and
 * take references meanwhile without any location dying. What segments still hold at the end dies with them.
 */
class LocationOwner
{
public:
    /** Of list and its partners, which may name a location several times: it is held as often. */
    explicit LocationOwner(const QList<vxCurveLocation *> &list)
    {
        m_locations.reserve(size_t(list.size()) * 2);
        for (vxCurveLocation *location : list) {
            if (!location)
                continue;
            hold(location);
            if (location->intersection)
                hold(location->intersection);
        }
    }
    ~LocationOwner()
    {
        for (vxCurveLocation *location : m_locations)
            location->release();
    }
    LocationOwner(const LocationOwner &) = delete;
    LocationOwner &operator=(const LocationOwner &) = delete;

private:
    void hold(vxCurveLocation *location)
    {
        location->addRef();
        m_locations.push_back(location);
    }

    std::vector<vxCurveLocation *> m_locations;
};

} // namespace vx
