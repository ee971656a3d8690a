#pragma once

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace vx {

/**
 * Which of many intervals hold a value: a binary tree laid over the intervals sorted by their lower ends,
 * each part knowing its greatest upper end. Built in O(n log n); a query costs O(log n) and the intervals
 * found.
 */
class IntervalIndex
{
public:
    struct Interval {
        double lo, hi;
    };

    IntervalIndex() = default;
    explicit IntervalIndex(const std::vector<Interval> &intervals) : m_items(intervals.size())
    {
        std::iota(m_items.begin(), m_items.end(), 0);
        std::stable_sort(m_items.begin(), m_items.end(), [&intervals](int a, int b) {
            return intervals[size_t(a)].lo < intervals[size_t(b)].lo;
        });
        m_sorted.reserve(intervals.size());
        for (int item : m_items)
            m_sorted.push_back(intervals[size_t(item)]);
        m_greatest.resize(intervals.size());
        measure(0, int(intervals.size()));
    }

    /** Calls visit(index) for every interval with lo <= value <= hi, by ascending lower end. */
    template <typename Visit>
    void query(double value, Visit &&visit) const
    {
        query(value, value, visit);
    }
    /** The same for every interval that shares a value with [from, to]. */
    template <typename Visit>
    void query(double from, double to, Visit &&visit) const
    {
        descend(0, int(m_sorted.size()), from, to, visit);
    }

private:
    /** Fills m_greatest at the middle of [first, last), which stands for that part; returns it. */
    double measure(int first, int last)
    {
        if (first >= last)
            return -std::numeric_limits<double>::infinity();
        const int middle = (first + last) / 2;
        const double greatest =
            std::max({ measure(first, middle), m_sorted[size_t(middle)].hi, measure(middle + 1, last) });
        m_greatest[size_t(middle)] = greatest;
        return greatest;
    }

    template <typename Visit>
    void descend(int first, int last, double from, double to, Visit &visit) const
    {
        while (first < last) {
            const int middle = (first + last) / 2;
            if (m_greatest[size_t(middle)] < from)
                return;
            descend(first, middle, from, to, visit);
            if (m_sorted[size_t(middle)].lo > to)
                return;
            if (m_sorted[size_t(middle)].hi >= from)
                visit(m_items[size_t(middle)]);
            first = middle + 1;
        }
    }

    std::vector<int> m_items;
    std::vector<Interval> m_sorted;
    std::vector<double> m_greatest;
};

} // namespace vx
