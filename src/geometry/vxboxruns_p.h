#pragma once

#include "vxcubic_p.h"

#include <algorithm>
#include <vector>

namespace vx {

/**
 * Which of many boxes meet something, visited in the order in which they were added. Boxes around runs of
 * neighbours are asked first: along an outline neighbours lie together, and where a run's box meets a level
 * so does one of its connected pieces. Built in one pass.
 */
class BoxRuns
{
public:
    void reserve(size_t count)
    {
        m_boxes.reserve(count);
        m_runs.reserve(count / run + 1);
        m_longRuns.reserve(count / longRun + 1);
    }

    /** Coordinates are not NaN; a box with max below min is met by nothing. */
    void append(const Box &box)
    {
        if (m_boxes.size() % run == 0)
            m_runs.push_back(box);
        else
            include(m_runs.back(), box);
        m_boxes.push_back(box);
        if (m_boxes.size() % longRun == 0)
            closeLongRun();
    }

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
        const Box *runs = m_runs.data();
        const unsigned end = unsigned(std::max(last, 0));
        for (unsigned i = unsigned(first); i < end;) {
            if (i % longRun == 0 && isEmptyLongRun(i / longRun, meets)) {
                i += longRun;
                continue;
            }
            const unsigned next = i - i % run + run;
            if (meets(runs[i / run])) {
                const Box *stop = boxes + std::min(next, end);
                for (const Box *box = boxes + i; box != stop; ++box) {
                    if (meets(*box))
                        visit(int(box - boxes));
                }
            }
            i = next;
        }
    }

private:
    static constexpr unsigned run = 8;
    static constexpr unsigned longRun = 64;

    /** Written so that NaN changes nothing. */
    static void include(Box &around, const Box &box)
    {
        around.minX = box.minX < around.minX ? box.minX : around.minX;
        around.minY = box.minY < around.minY ? box.minY : around.minY;
        around.maxX = box.maxX > around.maxX ? box.maxX : around.maxX;
        around.maxY = box.maxY > around.maxY ? box.maxY : around.maxY;
    }

    /** Only those that are full are known. */
    template <typename Meets>
    bool isEmptyLongRun(size_t i, Meets &meets) const
    {
        return i < m_longRuns.size() && !meets(m_longRuns[i]);
    }

    void closeLongRun()
    {
        auto around = m_runs.end() - longRun / run;
        m_longRuns.push_back(*around);
        while (++around != m_runs.end())
            include(m_longRuns.back(), *around);
    }

    std::vector<Box> m_boxes;
    std::vector<Box> m_runs;
    std::vector<Box> m_longRuns;
};

} // namespace vx
