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
 * of item i. Few are looked through in groups of neighbours in the list. Of many, neighbours that touch, as
 * curves of a contour do, are grouped, and the groups go into a tree at the first query. Boxes with NaN reach
 * everything.
 */
template <typename BoxAt>
class BoxLookup
{
public:
    BoxLookup(size_t count, BoxAt boxAt) : m_count(count), m_boxAt(boxAt)
    {
        if (m_count <= linearScanLimit)
            group();
    }

    /** Calls visit(index) for the boxes from index first on that touch box widened by slack on every side. */
    template <typename Visit>
    void query(const Box &box, double slack, int first, Visit &&visit)
    {
        const Box wide = widened(box, slack);
        if (m_count <= linearScanLimit) {
            scan(wide, first, visit);
            return;
        }
        m_queriesLeft = 0;
        searchTree(wide, first);
        for (int i : m_found)
            visit(i);
    }

    /** Number of consecutive queries answered from one tree search. */
    static constexpr int queriesPerSearch = 4;

    /**
     * The same for boxes that follow each other and lie together, as curves of a contour do: first ascends,
     * and slack is the same in all consecutive calls. boxAroundNext() gives a box around this one and those
     * of the next queriesPerSearch - 1 calls. One tree search answers all of them.
     */
    template <typename BoxAroundNext, typename Visit>
    void queryConsecutive(const Box &box, double slack, int first, BoxAroundNext &&boxAroundNext,
                          Visit &&visit)
    {
        const Box wide = widened(box, slack);
        if (m_count <= linearScanLimit) {
            scan(wide, first, visit);
            return;
        }
        // A new search when the last one is used up, or when box is not inside the area it covered. Boxes may
        // lie in a large area by chance, so the number of queries is limited: each goes through all that was
        // found.
        if (m_queriesLeft == 0 || !holds(m_covered, box)) {
            m_covered = boxAroundNext();
            m_queriesLeft = queriesPerSearch;
            // Twice the slack: widening rounds, and what touches wide must be among what is found.
            searchTree(widened(m_covered, 2 * slack), first);
        }
        --m_queriesLeft;
        for (int i : m_found) {
            if (i >= first && !areApart(m_boxAt(size_t(i)), wide))
                visit(i);
        }
    }

private:
    /** Up to here a look at all groups costs less than building and walking the tree. */
    static constexpr size_t linearScanLimit = 512;
    /** At most: neighbours in the list are neighbours in the plane as a rule, since curves come in contours.
     */
    static constexpr size_t groupSize = 8;

    static bool holds(const Box &around, const Box &box)
    {
        return around.minX <= box.minX && around.minY <= box.minY && around.maxX >= box.maxX &&
               around.maxY >= box.maxY;
    }

    // --- few ---

    template <typename Visit>
    void scan(const Box &wide, int first, Visit &visit) const
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

    void group()
    {
        for (size_t i = 0; i < m_count; ++i) {
            if (i % groupSize == 0)
                m_groups.append(m_boxAt(i));
            else
                extendKeepingNaN(m_groups.last(), m_boxAt(i));
        }
    }

    /** An edge is NaN if it is in either, so that nothing is apart by it. */
    static void extendKeepingNaN(Box &around, const Box &box)
    {
        around.minX = lesser(around.minX, box.minX);
        around.minY = lesser(around.minY, box.minY);
        around.maxX = -lesser(-around.maxX, -box.maxX);
        around.maxY = -lesser(-around.maxY, -box.maxY);
    }

    /** NaN if either is. */
    static double lesser(double a, double b) { return b < a || std::isnan(b) ? b : a; }

    // --- many ---

    /** Finds what touches a box, from item first on, ascending. */
    void searchTree(const Box &wide, int first)
    {
        if (!m_tree)
            buildTree();
        m_found.clear();
        m_foundGroups.clear();
        m_tree->query(wide, 0, m_foundGroups);
        std::sort(m_foundGroups.begin(), m_foundGroups.end());
        for (int group : m_foundGroups) {
            const int end = m_groupStarts[size_t(group) + 1];
            for (int i = std::max(m_groupStarts[size_t(group)], first); i < end; ++i) {
                if (!areApart(m_boxAt(size_t(i)), wide))
                    m_found.push_back(i);
            }
        }
    }

    void buildTree()
    {
        std::vector<Box> groups;
        groups.reserve(m_count / 2);
        for (size_t i = 0; i < m_count; ++i) {
            const Box &box = m_boxAt(i);
            if (i > 0 && i - size_t(m_groupStarts.back()) < groupSize && !areApart(m_boxAt(i - 1), box)) {
                extendKeepingNaN(groups.back(), box);
                continue;
            }
            groups.push_back(box);
            m_groupStarts.push_back(int(i));
        }
        m_groupStarts.push_back(int(m_count));
        m_tree = std::make_unique<BoxTree>(std::move(groups));
    }

    const size_t m_count;
    const BoxAt m_boxAt;
    /** Of few. */
    QVarLengthArray<Box, 16> m_groups;
    /** Of many: over the groups, and where each of them begins in the list, and the end. */
    std::unique_ptr<BoxTree> m_tree;
    std::vector<int> m_groupStarts;
    std::vector<int> m_foundGroups;
    std::vector<int> m_found;
    /** The area that the last search covered, and the number of queries that it may still answer. */
    Box m_covered = emptyBox;
    int m_queriesLeft = 0;
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
