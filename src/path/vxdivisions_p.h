#pragma once

#include "vxbatch_p.h"
#include "vxcurve.h"
#include "vxsegment.h"

#include <QVarLengthArray>

#include <algorithm>
#include <utility>

namespace vx {

/**
 * What one run of divisions makes, path after path: the segments and second halves share blocks, and those
 * that their path does not list yet wait here (see vxPath::_divideCurve()).
 */
class Divisions
{
public:
    /** Up to count divisions are to come, of all paths. */
    explicit Divisions(int count) : segments(size_t(count)), curves(size_t(count))
    {
        m_waiting.reserve(count);
    }

    /** The first half's position in its path's lists, and the second half. */
    using Division = std::pair<int, vxCurve *>;
    using List = QVarLengthArray<Division, 16>;

    bool isEmpty() const { return m_waiting.isEmpty(); }
    void add(int position, vxCurve *second) { m_waiting.append({ position, second }); }
    /**
     * From the last position to the first. Of one curve's divisions the first made lies last: each stands
     * directly behind the curve it was cut from.
     */
    const List &fromTheLast()
    {
        const auto liesBehind = [](const Division &a, const Division &b) { return a.first > b.first; };
        if (!std::is_sorted(m_waiting.begin(), m_waiting.end(), liesBehind))
            std::stable_sort(m_waiting.begin(), m_waiting.end(), liesBehind);
        return m_waiting;
    }
    void clear() { m_waiting.clear(); }

    vxBatch<vxSegment> segments;
    vxBatch<vxCurve> curves;

private:
    List m_waiting;
};

} // namespace vx
