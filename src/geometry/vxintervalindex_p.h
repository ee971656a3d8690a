#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace vx {

/**
 * An augmented interval tree in an array: which of many intervals hold a value. A binary tree is laid over
 * the intervals sorted by their lower ends, each part knowing its greatest upper end. Built in O(n log n); a
 * query costs O(log n) and the intervals found. Bounds must not be NaN.
 */
class IntervalIndex
{
public:
    struct Interval {
        double lo, hi;
    };

    IntervalIndex() = default;
    explicit IntervalIndex(const std::vector<Interval> &intervals)
    {
        m_nodes.reserve(intervals.size());
        for (const Interval &interval : intervals)
            m_nodes.push_back({ interval, interval.hi, int(m_nodes.size()) });
        std::sort(m_nodes.begin(), m_nodes.end(), [](const Node &a, const Node &b) {
            return a.interval.lo != b.interval.lo ? a.interval.lo < b.interval.lo : a.item < b.item;
        });
        measure(0, int(m_nodes.size()));
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
        descend(0, int(m_nodes.size()), from, to, visit);
    }

private:
    /** The middle of a part of the list, which stands for that part. */
    struct Node {
        Interval interval;
        double greatest; ///< upper end in the part
        int item;
    };

    /** Fills greatest in [first, last); returns that of the whole. */
    double measure(int first, int last)
    {
        if (first >= last)
            return -std::numeric_limits<double>::infinity();
        const int middle = (first + last) / 2;
        Node &node = m_nodes[size_t(middle)];
        node.greatest = std::max({ measure(first, middle), node.interval.hi, measure(middle + 1, last) });
        return node.greatest;
    }

    template <typename Visit>
    void descend(int first, int last, double from, double to, Visit &visit) const
    {
        while (first < last) {
            const int middle = (first + last) / 2;
            const Node &node = m_nodes[size_t(middle)];
            if (node.greatest < from)
                return;
            descend(first, middle, from, to, visit);
            if (node.interval.lo > to)
                return;
            if (node.interval.hi >= from)
                visit(node.item);
            first = middle + 1;
        }
    }

    std::vector<Node> m_nodes;
};

} // namespace vx
