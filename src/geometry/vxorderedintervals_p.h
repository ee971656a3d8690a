#pragma once

#include "vxintervalindex_p.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace vx {

/**
 * Which of many intervals hold a value, visited in the order in which they were added. Few are looked through
 * one by one, many are indexed at the first query. An interval with NaN holds nothing.
 */
class OrderedIntervals
{
public:
    void reserve(size_t count) { m_intervals.reserve(count); }

    void append(double lo, double hi)
    {
        constexpr double infinite = std::numeric_limits<double>::infinity();
        m_intervals.push_back(lo <= hi ? Interval{ lo, hi } : Interval{ infinite, -infinite });
    }

    /** Calls visit(index) for every interval with lo <= value <= hi, by ascending index. */
    template <typename Visit>
    void query(double value, Visit &&visit) const
    {
        if (m_intervals.size() <= scanned) {
            for (size_t i = 0; i < m_intervals.size(); ++i) {
                if (m_intervals[i].lo <= value && m_intervals[i].hi >= value)
                    visit(int(i));
            }
            return;
        }
        if (!m_indexed) {
            m_index = IntervalIndex(m_intervals);
            m_indexed = true;
        }
        std::vector<int> found;
        m_index.query(value, [&found](int i) { found.push_back(i); });
        std::sort(found.begin(), found.end());
        for (int i : found)
            visit(i);
    }

private:
    using Interval = IntervalIndex::Interval;
    /** Up to here a look at all of them costs less than building and walking the index. */
    static constexpr size_t scanned = 128;

    std::vector<Interval> m_intervals;
    mutable IntervalIndex m_index;
    mutable bool m_indexed = false;
};

} // namespace vx
