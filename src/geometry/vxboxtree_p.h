#pragma once

#include "vxcubic_p.h"

#include <vector>

namespace vx {

/**
 * A static tree over boxes: which of them come within reach of a given one. Built once in O(n log n); a query
 * costs O(log n) and the boxes found. Boxes with NaN reach everything.
 */
class BoxTree
{
public:
    explicit BoxTree(const std::vector<Box> &boxes);

    /**
     * Appends the indexes of all boxes that touch box widened by slack on every side, in no particular order.
     */
    void query(const Box &box, double slack, std::vector<int> &found) const;

private:
    struct Node {
        Box box;
        int first; ///< leaf: first item; inner node: left child, the right one follows it
        int count; ///< leaf: number of items; inner node: 0
    };

    void build(int node, int first, int count);

    const std::vector<Box> &m_boxes;
    std::vector<int> m_items;
    std::vector<Node> m_nodes;
};

} // namespace vx
