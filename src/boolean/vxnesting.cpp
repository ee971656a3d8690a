#include "vxnesting_p.h"

#include "vxfilledregion_p.h"
#include "vxmonopieces_p.h"
#include "vxorderedboxes_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <vector>

namespace {

double boundsArea(const vxPath &path)
{
    return path.getBounds(vxBoundOpt::geometric(), vxStyle()).getArea();
}

std::vector<vx::Box> boxesOf(const QVector<vxPath *> &paths)
{
    std::vector<vx::Box> boxes;
    boxes.reserve(size_t(paths.size()));
    for (const vxPath *path : paths) {
        const vxRect box = path->getBounds(vxBoundOpt::geometric(), vxStyle());
        boxes.push_back({ box.x, box.y, box.right(), box.bottom() });
    }
    return boxes;
}

/** The levels of vertices and extrema of contours. */
class Levels
{
public:
    explicit Levels(const QVector<vxPath *> &contours)
    {
        for (const vxPath *contour : contours) {
            for (int i = 0; i < vx::outlineSize(*contour); ++i)
                append(vx::outlineCurve(*contour, i));
        }
        // Few contours ask a few times: that is not worth sorting.
        constexpr int few = 16;
        m_isSorted = contours.size() > few;
        if (m_isSorted)
            std::sort(m_levels.begin(), m_levels.end());
    }

    /** Whether there is one so near a level that rounding may put it on either side, but not on it. */
    bool hasBeside(double level) const
    {
        constexpr double beside = 1e-6; // path units
        const double least = level - beside;
        const double greatest = level + beside;
        if (!m_isSorted)
            return std::any_of(m_levels.begin(), m_levels.end(),
                               [=](double l) { return l >= least && l <= greatest && l != level; });
        const auto first = std::lower_bound(m_levels.begin(), m_levels.end(), least);
        const auto last = std::upper_bound(first, m_levels.end(), greatest);
        return first != last && (*first != level || *(last - 1) != level);
    }

private:
    void append(const vx::Cubic &c)
    {
        vxMono pieces[3];
        const bool isOnePiece = vx::isOnePiece(c);
        const int count = isOnePiece ? 1 : vx::monotonePieces(c, pieces);
        for (int i = 0; i < count; ++i) {
            const double level = isOnePiece ? c.v[1] : pieces[i].values[1];
            if (!std::isnan(level))
                m_levels.push_back(level);
        }
    }

    std::vector<double> m_levels;
    bool m_isSorted;
};

/** Finds the nesting of traced contours, drops what the nonzero rule drops, and orients the rest. */
class Nesting
{
public:
    Nesting(const QVector<vxPath *> &paths, bool evenOdd)
        : m_evenOdd(evenOdd), m_paths(largestFirst(paths)), m_boxes(boxesOf(m_paths))
    {
        for (const vxPath *path : qAsConst(m_paths))
            m_windings.append(path->isClockwise() ? 1 : -1);
        m_excluded.fill(false, paths.size());
    }

    /** Whether a count may be wrong by which contours were nested. */
    bool isUnsure() const { return m_isUnsure; }

    /** The contours that stay, largest bounds first; orients them as it finds what they lie in. */
    QVector<vxPath *> orient()
    {
        // The container keeps its first child clockwise; turning it only later would part it from the others.
        place(0, true);
        for (int i = 1; i < m_paths.size(); ++i) {
            const vxPath *container = findContainer(i);
            if (!m_excluded.at(i))
                place(i, container ? !container->isClockwise() : m_paths.first()->isClockwise());
        }
        return m_kept;
    }

private:
    static QVector<vxPath *> largestFirst(const QVector<vxPath *> &paths)
    {
        std::vector<double> areas;
        for (const vxPath *path : paths)
            areas.push_back(boundsArea(*path));
        std::vector<int> order(size_t(paths.size()));
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [&areas](int a, int b) { return areas[size_t(a)] > areas[size_t(b)]; });
        QVector<vxPath *> sorted;
        sorted.reserve(paths.size());
        for (int i : order)
            sorted.append(paths.at(i));
        return sorted;
    }

    void place(int i, bool clockwise)
    {
        m_paths.at(i)->setClockwise(clockwise);
        m_kept.append(m_paths.at(i));
    }

    /**
     * The contours before i whose boxes come near its own, from the smallest: no other can contain an
     * interior point of it, which lies within its box but for rounding.
     */
    std::vector<int> mayContain(int i)
    {
        const vx::Box &box = m_boxes[i];
        const double largest =
            std::max({ std::fabs(box.minX), std::fabs(box.maxX), std::fabs(box.minY), std::fabs(box.maxY) });
        std::vector<int> found;
        m_boxes.query(box, 2 * vxTolerance::closeDistance + 1e-9 * largest, 0, [&](int j) {
            if (j < i)
                found.push_back(j);
        });
        std::reverse(found.begin(), found.end());
        return found;
    }

    const vxPath *findContainer(int i)
    {
        const std::vector<int> candidates = mayContain(i);
        if (candidates.empty())
            return nullptr;
        const vxPoint point = m_paths.at(i)->getInteriorPoint(m_evenOdd);
        if (!m_levels)
            m_levels.emplace(m_paths);
        const bool isGrazed = m_levels->hasBeside(point.y);
        const vxStyle style = vxStyle::filled(m_evenOdd);
        bool isContained = false;
        for (int j : candidates) {
            const bool isInside = m_paths.at(j)->contains(point, style);
            m_isUnsure = m_isUnsure || (isGrazed && !isConfirmed(i, j, isInside));
            if (!isInside)
                continue;
            if (!m_evenOdd && !isContained) {
                m_windings[i] += m_windings.at(j);
                if (m_windings.at(i) != 0 && m_windings.at(j) != 0) {
                    m_excluded[i] = true; // filled on both sides under the nonzero rule
                    return nullptr;
                }
            }
            isContained = true;
            if (!m_excluded.at(j))
                return m_paths.at(j);
        }
        return nullptr;
    }

    /** Asks elsewhere whether a contour lies in another. */
    bool isConfirmed(int i, int j, bool isInside) const
    {
        const std::optional<bool> answer = vx::FilledRegion(*m_paths.at(j)).holds(*m_paths.at(i));
        return answer && *answer == isInside;
    }

    const bool m_evenOdd;
    const QVector<vxPath *> m_paths;
    vx::OrderedBoxes m_boxes;
    QVector<qint32> m_windings;
    QVector<bool> m_excluded;
    std::optional<Levels> m_levels; ///< none: no contour may contain another
    bool m_isUnsure = false;
    QVector<vxPath *> m_kept;
};

} // namespace

bool PathSort(const vxPath *a, const vxPath *b)
{
    return a && b && boundsArea(*a) > boundsArea(*b);
}

vx::NestedContours vx::nestContours(const QVector<vxPath *> &contours, bool evenOdd)
{
    Nesting nesting(contours, evenOdd);
    const QVector<vxPath *> kept = nesting.orient();
    return { kept, nesting.isUnsure() };
}
