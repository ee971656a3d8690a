#pragma once

#include "vxcubic_p.h"

#include <algorithm>
#include <vector>

namespace vx {

/**
 * Which of many boxes meet something, visited in the order in which they were added. A few boxes are looked
 * at one by one. Of more, boxes around runs of neighbours are asked first: along an outline neighbours lie
 * together, and where a run's box meets a level so does one of its connected pieces. Runs are formed in one
 * pass, when they are wanted.
 */
class BoxRuns
{
public:
    void reserve(size_t count) { m_boxes.reserve(count); }

    /** Coordinates are not NaN; a box with max below min is met by nothing. */
    void append(const Box &box) { m_boxes.push_back(box); }

    int size() const { return int(m_boxes.size()); }
    const Box &operator[](int i) const { return m_boxes[size_t(i)]; }

    /**
     * Calls visit(index) for the boxes in [first, last) for which meets(box) holds; meets must hold for a box
     * around one for which it holds.
     */
    template <typename Meets, typename Visit>
    void query(int first, int last, Meets &&meets, Visit &&visit) const
    {
        const Box *boxes = m_boxes.data();
        const auto visitOneByOne = [&](const Box *box, const Box *stop) {
            for (; box != stop; ++box) {
                if (meets(*box))
                    visit(int(box - boxes));
            }
        };
        if (m_boxes.size() <= few) {
            visitOneByOne(boxes + first, boxes + std::max(first, last));
            return;
        }
        formRuns();
        const Box *runs = m_runs.data();
        const unsigned end = unsigned(std::max(last, 0));
        for (unsigned i = unsigned(first); i < end;) {
            if (i % longRun == 0) {
                if (i % longestRun == 0 && isEmpty(m_longestRuns, i / longestRun, meets)) {
                    i += longestRun;
                    continue;
                }
                if (isEmpty(m_longRuns, i / longRun, meets)) {
                    i += longRun;
                    continue;
                }
            }
            const unsigned next = i - i % run + run;
            if (meets(runs[i / run]))
                visitOneByOne(boxes + i, boxes + std::min(next, end));
            i = next;
        }
    }

private:
    /** Up to here runs do not repay their making. */
    static constexpr size_t few = 512;
    static constexpr unsigned run = 8;
    static constexpr unsigned longRun = 64;
    static constexpr unsigned longestRun = 4096;

    /** Of the long runs only those that are full are known. */
    template <typename Meets>
    static bool isEmpty(const std::vector<Box> &runs, size_t i, Meets &meets)
    {
        return i < runs.size() && !meets(runs[i]);
    }

    /** Takes in the boxes that are new. */
    void formRuns() const
    {
        for (; m_inRuns < m_boxes.size(); ++m_inRuns) {
            const Box &box = m_boxes[m_inRuns];
            if (m_inRuns % run == 0)
                m_runs.push_back(box);
            else
                extend(m_runs.back(), box);
            if ((m_inRuns + 1) % longRun == 0)
                m_longRuns.push_back(aroundLast(m_runs, longRun / run));
            if ((m_inRuns + 1) % longestRun == 0)
                m_longestRuns.push_back(aroundLast(m_longRuns, longestRun / longRun));
        }
    }

    static Box aroundLast(const std::vector<Box> &boxes, size_t count)
    {
        Box around = boxes[boxes.size() - count];
        for (size_t i = boxes.size() - count + 1; i < boxes.size(); ++i)
            extend(around, boxes[i]);
        return around;
    }

    std::vector<Box> m_boxes;
    mutable size_t m_inRuns = 0; ///< of the boxes
    mutable std::vector<Box> m_runs;
    mutable std::vector<Box> m_longRuns;
    mutable std::vector<Box> m_longestRuns;
};

} // namespace vx
