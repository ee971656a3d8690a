#pragma once

#include "vxcubic_p.h"

#include <vector>

namespace vx {

/**
 * A packed R-tree (a static bounding volume hierarchy with a fan-out of 8, built by median splits): which of
 * many boxes come within reach of a given one. Boxes with NaN reach everything.
 *
 * The boxes stand in a row in which neighbours in the plane are neighbours, above them the boxes around runs
 * of fanOut, and so on: no node needs a pointer, and what is looked at together lies together in memory. It
 * takes O(n log n) to build, a query O(log n) and what it finds.
 */
class BoxTree
{
public:
    explicit BoxTree(std::vector<Box> boxes);

    /** Appends the indexes of all boxes that touch box widened by slack on every side, in no order. */
    void query(const Box &box, double slack, std::vector<int> &found) const;

private:
    class Walk;
    static constexpr int fanOutBits = 3;
    static constexpr int fanOut = 1 << fanOutBits;

    int sizeOf(int level) const { return m_starts[size_t(level) + 1] - m_starts[size_t(level)]; }
    void sortByPlace();
    void addLevelsAbove();

    /** The index of each box in the row. */
    std::vector<int> m_items;
    /** The row of boxes, then those around runs of them, level by level. */
    std::vector<Box> m_boxes;
    /** Where each level begins in m_boxes, and the end. */
    std::vector<int> m_starts;
};

} // namespace vx
