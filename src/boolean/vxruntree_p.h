#pragma once

#include "vxboxtree_p.h"
#include "vxpair_p.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace vx {

/**
 * A tree over pieces that follow each other along contours. Neighbours along a contour lie near each other in
 * the plane, so runs of consecutive pieces make tight boxes: nothing is sorted, and building costs O(n).
 * Contours themselves may come in any order; where there are many, a tree of boxes finds those in question.
 */
class RunTree
{
public:
    /** Consecutive pieces first to last of one contour. */
    struct Run {
        Box box;
        int first, last;
        /** Parts of it, one after another; none where the pieces themselves are the parts. */
        int child, childCount;
    };

    /** Contour k has the pieces from starts[k] up to starts[k + 1]. */
    RunTree(const std::vector<Box> &boxes, const std::vector<int> &starts) : m_boxes(boxes)
    {
        m_runs.reserve(boxes.size() / 2 + starts.size());
        for (size_t k = 0; k + 1 < starts.size(); ++k) {
            if (starts[k] < starts[k + 1])
                m_runs.push_back({ {}, starts[k], starts[k + 1] - 1, 0, 0 });
        }
        m_rootCount = int(m_runs.size());
        for (int i = 0; i < m_rootCount; ++i)
            split(i);
        if (size_t(m_rootCount) <= scanned)
            return;
        std::vector<Box> rootBoxes;
        rootBoxes.reserve(size_t(m_rootCount));
        for (int i = 0; i < m_rootCount; ++i)
            rootBoxes.push_back(m_runs[size_t(i)].box);
        m_roots = std::make_unique<BoxTree>(std::move(rootBoxes));
    }
    RunTree(const RunTree &) = delete;
    RunTree &operator=(const RunTree &) = delete;

    int contourCount() const { return m_rootCount; }

    /**
     * The contours that touch box widened by slack, for several walks there. False where they are too many to
     * be looked at every time.
     */
    bool findContours(const Box &box, double slack, std::vector<int> &contours) const
    {
        contours.clear();
        if (m_roots) {
            m_roots->query(box, slack, contours);
            return contours.size() <= scanned;
        }
        for (int i = 0; i < m_rootCount; ++i) {
            if (comeWithin(m_runs[size_t(i)].box, box, slack))
                contours.push_back(i);
        }
        return true;
    }

    /**
     * Asks enters(run) about the contours found, and about the parts of every run that it says yes to; calls
     * visit(piece) for all pieces of the smallest of these, contour by contour in their order.
     */
    template <typename Enters, typename Visit>
    void walk(const std::vector<int> &contours, Enters &&enters, Visit &&visit) const
    {
        // A run of 4^k pieces has k levels, of which each but the last leaves fanOut - 1 runs for later.
        const Run *pending[16 * fanOut];
        for (int i : contours) {
            const Run **last = pending;
            if (enters(m_runs[size_t(i)]))
                *last++ = &m_runs[size_t(i)];
            while (last != pending) {
                const Run &run = **--last;
                if (run.childCount == 0) {
                    for (int piece = run.first; piece <= run.last; ++piece)
                        visit(piece);
                    continue;
                }
                // The first one is to be walked first.
                const Run *first = &m_runs[size_t(run.child)];
                for (const Run *part = first + run.childCount; part-- != first;) {
                    if (enters(*part))
                        *last++ = part;
                }
            }
        }
    }

    /**
     * Calls visit(i, j) once for all two pieces i < j whose boxes come within slack of each other; those with
     * NaN come near all. The smallest runs ask for what is near all of their pieces together.
     */
    template <typename Visit>
    void visitPairs(double slack, Visit &&visit) const
    {
        std::vector<int> contours;
        contours.reserve(std::min(size_t(m_rootCount), scanned));
        std::vector<int> near;
        near.reserve(32);
        for (const Run &run : m_runs) {
            if (run.childCount != 0)
                continue;
            // Twice the slack, so that no rounding leaves out what is compared below.
            const Box reach = widened(run.box, 2 * slack);
            findContours(reach, 0, contours);
            near.clear();
            walk(
                contours,
                [&](const Run &other) { return other.last > run.first && !areApart(other.box, reach); },
                [&](int piece) {
                    if (piece > run.first && !areApart(m_boxes[size_t(piece)], reach))
                        near.push_back(piece);
                });
            for (int i = run.first; i <= run.last; ++i) {
                const Box box = m_boxes[size_t(i)];
                const Box wide = widened(box, 2 * slack);
                for (int j : near) {
                    if (j > i && !areApart(wide, m_boxes[size_t(j)]) &&
                        comeWithin(box, m_boxes[size_t(j)], slack))
                        visit(i, j);
                }
            }
        }
    }

private:
    /** Up to here looking at all contours costs less than asking a tree. */
    static constexpr size_t scanned = 64;
    /** Parts that a run is split into, and pieces of a run that is not split. */
    static constexpr int fanOut = 4;

    void split(int index)
    {
        const Run run = m_runs[size_t(index)];
        Box box = emptyBox;
        if (run.last - run.first < fanOut) {
            for (int i = run.first; i <= run.last; ++i)
                extendToAllByNaN(box, m_boxes[size_t(i)]);
            m_runs[size_t(index)].box = box;
            return;
        }
        int size = fanOut; // of a part
        while (size * fanOut <= run.last - run.first)
            size *= fanOut;
        const int child = int(m_runs.size());
        for (int first = run.first; first <= run.last; first += size)
            m_runs.push_back({ {}, first, std::min(first + size - 1, run.last), 0, 0 });
        const int childCount = int(m_runs.size()) - child;
        for (int i = child; i < child + childCount; ++i) {
            split(i);
            extendToAllByNaN(box, m_runs[size_t(i)].box);
        }
        m_runs[size_t(index)] = { box, run.first, run.last, child, childCount };
    }

    const std::vector<Box> &m_boxes;
    std::vector<Run> m_runs; ///< whole contours first
    int m_rootCount = 0;
    std::unique_ptr<BoxTree> m_roots;
};

} // namespace vx
