#pragma once

#include "vxcubic_p.h"

#include <vector>

namespace vx {

/**
 * A static tree over boxes: which of them come within reach of a given one. Boxes with NaN reach everything.
 *
 * The boxes stand in a row, above them the boxes around runs of fanOut, and so on: no node needs a pointer,
 * and what is looked at together lies together in memory.
 */
class BoxTree
{
public:
    enum class Order {
        /** Neighbours in the plane become neighbours in the row: O(n log n); a query costs O(log n). */
        ByPlace,
        /**
         * As they are given: O(n), and queries cost as little as long as neighbours in the list are mostly
         * neighbours in the plane.
         */
        AsListed
    };

    explicit BoxTree(std::vector<Box> boxes, Order order = Order::ByPlace);

    Order order() const { return m_items.empty() ? Order::AsListed : Order::ByPlace; }

    /**
     * Appends the indexes of all boxes that touch box widened by slack on every side: ascending in the order
     * as listed, else in none. Returns how many boxes it looked at.
     */
    int query(const Box &box, double slack, std::vector<int> &found) const
    {
        return query(box, slack, 0, found);
    }
    /** The same; in the order as listed, it leaves out those before first. */
    int query(const Box &box, double slack, int first, std::vector<int> &found) const;

private:
    class Walk;
    static constexpr int fanOutBits = 3;
    static constexpr int fanOut = 1 << fanOutBits;

    int sizeOf(int level) const { return m_starts[size_t(level) + 1] - m_starts[size_t(level)]; }
    void sortByPlace();
    void addLevelsAbove();

    /** The index of each box in the row; none if that is its place. */
    std::vector<int> m_items;
    /** The row of boxes, then those around runs of them, level by level. */
    std::vector<Box> m_boxes;
    /** Where each level begins in m_boxes, and the end. */
    std::vector<int> m_starts;
};

} // namespace vx
