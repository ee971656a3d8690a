#pragma once

#include "vxboxtree_p.h"
#include "vxpair_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace vx {

/**
 * Which of many boxes come within reach of a given one, visited in the order of the list: boxAt(i) is the box
 * of item i. Few are looked through in groups, many go into a tree at the first query: as they are listed,
 * and sorted by place only when queries turn out to cost more so. Boxes with NaN reach everything.
 */
template <typename BoxAt>
class BoxLookup
{
public:
    BoxLookup(size_t count, BoxAt boxAt) : m_count(count), m_boxAt(boxAt)
    {
        if (m_count <= scanned)
            group();
    }

    /** Calls visit(index) for the boxes from index first on that touch box widened by slack on every side. */
    template <typename Visit>
    void query(const Box &box, double slack, int first, Visit &&visit)
    {
        if (m_count <= scanned)
            scan({ box.minX - slack, box.minY - slack, box.maxX + slack, box.maxY + slack }, first, visit);
        else
            search(box, slack, first, visit);
    }

private:
    /** Up to here a look at all groups costs less than building and walking the tree. */
    static constexpr size_t scanned = 512;
    /** Neighbours in the list are neighbours in the plane as a rule, since curves come in contours. */
    static constexpr size_t groupSize = 8;
    /** Boxes that a query in a sorted tree looks at, about: some, and more for each box that it finds. */
    static constexpr double looksPerQuery = 64;
    static constexpr double looksPerFind = 8;
    /** Looks that sorting costs, about, for each box. */
    static constexpr double looksForSorting = 32;

    template <typename Visit>
    void scan(const Box &wide, int first, Visit &&visit) const
    {
        size_t i = size_t(first);
        const Box *group = m_groups.constData() + i / groupSize;
        for (size_t next = (i / groupSize + 1) * groupSize; i < m_count; next += groupSize, ++group) {
            if (!areApart(*group, wide)) {
                for (const size_t end = std::min(m_count, next); i < end; ++i) {
                    if (!areApart(m_boxAt(i), wide))
                        visit(int(i));
                }
            }
            i = next;
        }
    }

    template <typename Visit>
    void search(const Box &box, double slack, int first, Visit &&visit)
    {
        if (!m_tree)
            grow(BoxTree::Order::AsListed);
        else if (m_wasted > looksForSorting * double(m_count))
            grow(BoxTree::Order::ByPlace);
        m_found.clear();
        const int lookedAt = m_tree->query(box, slack, first, m_found);
        if (m_tree->order() == BoxTree::Order::AsListed) {
            m_wasted += lookedAt - looksPerQuery - looksPerFind * double(m_found.size());
        } else {
            m_found.erase(
                std::remove_if(m_found.begin(), m_found.end(), [first](int i) { return i < first; }),
                m_found.end());
            std::sort(m_found.begin(), m_found.end());
        }
        for (int i : m_found)
            visit(i);
    }

    void grow(BoxTree::Order order)
    {
        std::vector<Box> boxes;
        boxes.reserve(m_count + m_count / 2);
        for (size_t i = 0; i < m_count; ++i)
            boxes.push_back(m_boxAt(i));
        m_tree = std::make_unique<BoxTree>(std::move(boxes), order);
        m_wasted = 0;
    }

    /** Boxes of the groups; an edge is NaN if it is in any of them, so that no group is apart by it. */
    void group()
    {
        for (size_t i = 0; i < m_count; ++i) {
            const Box &box = m_boxAt(i);
            if (i % groupSize == 0) {
                m_groups.append(box);
                continue;
            }
            Box &around = m_groups.last();
            around.minX = lesser(around.minX, box.minX);
            around.minY = lesser(around.minY, box.minY);
            around.maxX = -lesser(-around.maxX, -box.maxX);
            around.maxY = -lesser(-around.maxY, -box.maxY);
        }
    }

    /** NaN if either is. */
    static double lesser(double a, double b) { return b < a || std::isnan(b) ? b : a; }

    const size_t m_count;
    const BoxAt m_boxAt;
    QVarLengthArray<Box, 16> m_groups;
    std::unique_ptr<BoxTree> m_tree;
    /** Looks of queries in the order of the list, beyond what they would cost in a sorted tree. */
    double m_wasted = 0;
    std::vector<int> m_found;
};

/** A lookup with a list of boxes of its own. */
class OrderedBoxes
{
public:
    explicit OrderedBoxes(std::vector<Box> boxes)
        : m_boxes(std::move(boxes)), m_lookup(m_boxes.size(), ElementOf{ m_boxes.data() })
    {
    }
    OrderedBoxes(const OrderedBoxes &) = delete;
    OrderedBoxes &operator=(const OrderedBoxes &) = delete;

    size_t size() const { return m_boxes.size(); }
    const Box &operator[](int i) const { return m_boxes[size_t(i)]; }

    /** See BoxLookup. */
    template <typename Visit>
    void query(const Box &box, double slack, int first, Visit &&visit)
    {
        m_lookup.query(box, slack, first, visit);
    }

private:
    struct ElementOf {
        const Box *boxes;
        const Box &operator()(size_t i) const { return boxes[i]; }
    };

    const std::vector<Box> m_boxes;
    BoxLookup<ElementOf> m_lookup;
};

} // namespace vx
