#pragma once

#include "vxboxtree_p.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace vx {

/**
 * Which of many boxes come within reach of a given one, visited in the order of the list. Few are looked
 * through one by one, many go into a tree at the first query. Boxes with NaN reach everything.
 */
class OrderedBoxes
{
public:
    explicit OrderedBoxes(std::vector<Box> boxes) : m_boxes(std::move(boxes)) {}
    OrderedBoxes(const OrderedBoxes &) = delete;
    OrderedBoxes &operator=(const OrderedBoxes &) = delete;

    size_t size() const { return m_boxes.size(); }
    const Box &operator[](int i) const { return m_boxes[size_t(i)]; }

    /** Calls visit(index) for the boxes from index first on that touch box widened by slack on every side. */
    template <typename Visit>
    void query(const Box &box, double slack, int first, Visit &&visit)
    {
        if (m_boxes.size() <= scanned) {
            const Box wide{ box.minX - slack, box.minY - slack, box.maxX + slack, box.maxY + slack };
            for (int i = first; i < int(m_boxes.size()); ++i) {
                if (!apart(m_boxes[size_t(i)], wide))
                    visit(i);
            }
            return;
        }
        if (!m_tree)
            m_tree = std::make_unique<BoxTree>(m_boxes);
        m_found.clear();
        m_tree->query(box, slack, m_found);
        m_found.erase(std::remove_if(m_found.begin(), m_found.end(), [first](int i) { return i < first; }),
                      m_found.end());
        std::sort(m_found.begin(), m_found.end());
        for (int i : m_found)
            visit(i);
    }

private:
    /** Up to here a look at all of them costs less than building and walking the tree. */
    static constexpr size_t scanned = 128;

    /** False with NaN. */
    static bool apart(const Box &a, const Box &b)
    {
        return a.maxX < b.minX || b.maxX < a.minX || a.maxY < b.minY || b.maxY < a.minY;
    }

    const std::vector<Box> m_boxes;
    std::unique_ptr<BoxTree> m_tree;
    std::vector<int> m_found;
};

} // namespace vx
