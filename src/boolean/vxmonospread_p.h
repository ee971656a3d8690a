#pragma once

#include "vxintervalindex_p.h"
#include "vxlevelcount_p.h"
#include "vxmonoindex_p.h"
#include "vxorderedboxes_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace vx {

/**
 * Where many outlines lie: those that a point has on one side need not be looked at, when their windings on
 * its level sum up to 0. They do where the level surely passes all their pieces that reach it, since an
 * outline comes back as often as it goes; elsewhere, as at vertices, they are counted once for all points of
 * the level.
 */
class MonoIndex::Spread
{
public:
    explicit Spread(const MonoIndex &index)
        : m_index(index), m_boxes(boxesOf(index)), m_meanHeight(meanHeightOf(m_boxes))
    {
        std::vector<IntervalIndex::Interval> unsure;
        for (size_t i = 0; i < index.m_outlines.size(); ++i) {
            addUnsureLevels(i, unsure);
            m_unsureOutlines.resize(unsure.size(), int(i));
        }
        m_unsure = IntervalIndex(unsure);
    }

    /**
     * Indexes of the outlines whose crossings with the level of a point have to be looked at, or that come
     * within slack of the point, ascending.
     */
    const std::vector<int> &outlinesThatCount(const vxPoint &point, double slack)
    {
        outlinesNear(point, slack);
        const std::vector<int> &winding = outlinesWindingAt(point.y);
        m_found.insert(m_found.end(), winding.begin(), winding.end());
        std::sort(m_found.begin(), m_found.end());
        m_found.erase(std::unique(m_found.begin(), m_found.end()), m_found.end());
        return m_found;
    }

    /** Indexes of the outlines that come within slack of a point, ascending. */
    const std::vector<int> &outlinesNear(const vxPoint &point, double slack)
    {
        return outlinesMeeting({ point.x, point.y, point.x, point.y }, std::max(slack, leastReach));
    }

    /** Indexes of the outlines that the vertical at x may meet from top to bottom, ascending. */
    const std::vector<int> &outlinesOnVertical(double x, double top, double bottom)
    {
        return outlinesMeeting({ x, top, x, bottom }, m_index.reachOfCurves());
    }

    /** Of the outlines. */
    double meanHeight() const { return m_meanHeight; }

private:
    static constexpr double infinite = std::numeric_limits<double>::infinity();
    /** Path units: how far off a point outlines are looked at in any case. */
    static constexpr double leastReach = 2 * vxTolerance::closeDistance;

    /** The outlines of which the windings on one level, seen from one side, do not cancel. */
    struct Level {
        double y = std::numeric_limits<double>::quiet_NaN();
        std::vector<int> outlines;
    };

    const std::vector<int> &outlinesMeeting(const Box &box, double slack)
    {
        m_found.clear();
        m_boxes.query(box, slack, 0, [this](int outline) { m_found.push_back(outline); });
        return m_found;
    }

    /** Remembers some levels: of shapes in a row many samples share one. */
    const std::vector<int> &outlinesWindingAt(double y)
    {
        std::uint64_t bits;
        std::memcpy(&bits, &y, sizeof bits);
        Level &level = m_levels[size_t(bits * 0x9e3779b97f4a7c15u >> 56)];
        if (level.y == y)
            return level.outlines;
        level.y = y;
        level.outlines.clear();
        m_unsure.query(y, [&](int i) {
            const int outline = m_unsureOutlines[size_t(i)];
            if (!windingsCancel(outline, y))
                level.outlines.push_back(outline);
        });
        return level.outlines;
    }

    /**
     * Whether the windings of an outline on a level sum up to 0 for points that have it on one side. Which
     * point that is does not matter: it is only compared with places that all lie on that side of it.
     */
    bool windingsCancel(int outline, double y) const
    {
        // Farther out rounding may move a crossing to another side.
        constexpr double largest = 1e6;
        if (!(m_index.m_largestCoordinate <= largest))
            return false;
        LevelCount count(vxPoint(-infinite, y));
        const Outline &o = m_index.m_outlines[size_t(outline)];
        o.enter(count);
        m_index.m_reaches.query(
            o.first, m_index.endOf(size_t(outline)),
            [y](const Box &box) { return box.minY <= y && y <= box.maxY; },
            [&](int i) {
                const Piece &piece = m_index.m_pieces[size_t(i)];
                count.visit(piece.mono, piece.passage, m_index.m_reaches[i]);
            });
        return count.result().winding == 0;
    }

    /** Boxes around outlines, beyond which a probe has each of their pieces clearly on one side. */
    static std::vector<Box> boxesOf(const MonoIndex &index)
    {
        std::vector<Box> boxes;
        boxes.reserve(index.m_outlines.size());
        for (size_t i = 0; i < index.m_outlines.size(); ++i) {
            Box box = emptyBox;
            for (int k = index.m_outlines[i].first; k < index.endOf(i); ++k)
                extend(box, index.m_reaches[k]);
            boxes.push_back(box);
        }
        return boxes;
    }

    static double meanHeightOf(const OrderedBoxes &boxes)
    {
        double sum = 0;
        for (int i = 0; i < int(boxes.size()); ++i)
            sum += boxes[i].maxY - boxes[i].minY;
        return sum / double(boxes.size());
    }

    /** Whether every piece begins at the very height where the one before it ends: no level slips through. */
    bool isClosed(size_t outline) const
    {
        const int first = m_index.m_outlines[outline].first;
        const int end = m_index.endOf(outline);
        const vxMono *before = &m_index.m_pieces[size_t(end - 1)].mono;
        for (int i = first; i < end; ++i) {
            const vxMono &piece = m_index.m_pieces[size_t(i)].mono;
            if (!(piece.values[1] == before->values[7]))
                return false;
            before = &piece;
        }
        return true;
    }

    /** Adds the levels at which some piece of an outline has no passage. */
    void addUnsureLevels(size_t outline, std::vector<IntervalIndex::Interval> &unsure) const
    {
        if (!isClosed(outline)) {
            unsure.push_back({ -infinite, infinite });
            return;
        }
        const size_t begin = unsure.size();
        // The levels around a vertex come twice, from the pieces before and behind it.
        const auto add = [&](double lo, double hi) {
            if (unsure.size() > begin && lo <= unsure.back().hi && hi >= unsure.back().lo)
                unsure.back() = { std::min(lo, unsure.back().lo), std::max(hi, unsure.back().hi) };
            else
                unsure.push_back({ lo, hi });
        };
        for (int i = m_index.m_outlines[outline].first; i < m_index.endOf(outline); ++i) {
            const vxMono &piece = m_index.m_pieces[size_t(i)].mono;
            const Passage &passage = m_index.m_pieces[size_t(i)].passage;
            const Box &reach = m_index.m_reaches[i];
            if (!(passage.low < passage.high)) {
                add(reach.minY, reach.maxY);
            } else if (piece.values[1] < piece.values[7]) {
                add(reach.minY, passage.low);
                add(passage.high, reach.maxY);
            } else {
                add(passage.high, reach.maxY);
                add(reach.minY, passage.low);
            }
        }
    }

    const MonoIndex &m_index;
    OrderedBoxes m_boxes;
    const double m_meanHeight;
    IntervalIndex m_unsure;
    /** The outline of each interval. */
    std::vector<int> m_unsureOutlines;
    std::array<Level, 256> m_levels;
    std::vector<int> m_found;
};

} // namespace vx
