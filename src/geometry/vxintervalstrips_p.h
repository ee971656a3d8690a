#pragma once

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace vx {

/**
 * A one-dimensional bucket grid of intervals: which of many may share a value with a short one, in the order
 * in which they were listed. The range of all is cut into strips of equal width, and each strip lists the
 * intervals that reach it. Built in one pass after measuring; a query reads one list.
 */
class IntervalStrips
{
public:
    struct Interval {
        double lo, hi;
    };

    /** of(i) gives the i-th interval; one with hi below lo, or NaN, shares no value. */
    template <typename IntervalOf>
    IntervalStrips(int count, const IntervalOf &of)
    {
        m_entries.reset(new Entry[measure(count, of)]);
        m_heads.assign(size_t(m_last) + 1, none);
        Entry *entries = m_entries.get();
        int *heads = m_heads.data();
        int used = 0;
        for (int i = count - 1; i >= 0; --i) { // from the back, so that lists ascend
            const Interval interval = of(i);
            if (!(interval.lo <= interval.hi))
                continue;
            const int last = stripOf(interval.hi);
            for (int strip = stripOf(interval.lo); strip <= last; ++strip) {
                entries[used] = { i, heads[strip] };
                heads[strip] = used++;
            }
        }
    }

    /**
     * Visits, ascending, every interval that shares a value with [lo, hi], and possibly others. Returns
     * false, visiting nothing, if [lo, hi] spans several strips.
     */
    template <typename Visit>
    bool visitAround(double lo, double hi, Visit &&visit) const
    {
        const int strip = stripOf(lo);
        if (stripOf(hi) != strip)
            return false;
        for (int i = m_heads[size_t(strip)]; i != none; i = m_entries[size_t(i)].next)
            visit(m_entries[size_t(i)].item);
        return true;
    }

private:
    static constexpr int none = -1;
    struct Entry {
        int item;
        int next; ///< of the same strip
    };

    /**
     * Finds the range, and strips of which an interval of mean length is two wide. Returns a bound of the
     * number of entries: an interval reaches less than 2 strips more than it is wide.
     */
    template <typename IntervalOf>
    size_t measure(int count, const IntervalOf &of)
    {
        constexpr double infinite = std::numeric_limits<double>::infinity();
        constexpr int stripsInMean = 2;
        constexpr double most = 1 << 20;
        double lo = infinite;
        double hi = -infinite;
        double sum = 0;
        for (int i = 0; i < count; ++i) {
            const Interval interval = of(i);
            if (!(interval.lo <= interval.hi))
                continue;
            lo = std::min(lo, interval.lo);
            hi = std::max(hi, interval.hi);
            sum += interval.hi - interval.lo;
        }
        // In this order: a product could overflow, and the bound below no longer hold.
        const double strips = std::min({ (hi - lo) / sum * count * stripsInMean, 2.0 * count, most });
        if (strips >= 2 && strips <= most && hi - lo < infinite) { // else one strip
            m_low = lo;
            m_perStrip = strips / (hi - lo);
            m_last = int(strips);
        }
        return size_t(count) * (stripsInMean + 2) + 1;
    }

    /** Ascends with the value, so that intervals that share a value share its strip. */
    int stripOf(double value) const
    {
        const double strip = (value - m_low) * m_perStrip;
        if (!(strip >= 1))
            return 0;
        return strip < m_last ? int(strip) : m_last;
    }

    double m_low = 0;
    double m_perStrip = 0;
    int m_last = 0;
    /** The first entry of each strip. */
    std::vector<int> m_heads;
    std::unique_ptr<Entry[]> m_entries;
};

} // namespace vx
