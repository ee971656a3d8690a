#include "vxnesting_p.h"

#include "vxfilledregion_p.h"
#include "vxmonopieces_p.h"
#include "vxorderedboxes_p.h"
#include "vxoutline_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace {

/** A contour and what nesting knows of it. */
struct Nested {
    vxPath *path;
    double boundsArea;
    vx::Box box;
    qint32 winding;
    bool excluded = false;

    explicit Nested(vxPath *itsPath) : Nested(itsPath, itsPath->getBounds(vxBoundOpt::geometric(), vxStyle()))
    {
    }
    Nested(vxPath *itsPath, const vxRect &bounds)
        : path(itsPath),
          boundsArea(bounds.getArea()), box{ bounds.x, bounds.y, bounds.right(), bounds.bottom() },
          winding(itsPath->isClockwise() ? 1 : -1)
    {
    }
};

/** The levels of vertices and extrema of contours. */
class Levels
{
public:
    explicit Levels(const std::vector<Nested> &contours)
    {
        size_t count = 0;
        for (const Nested &contour : contours)
            count += size_t(vx::outlineSize(*contour.path));
        m_levels.reserve(count);
        for (const Nested &contour : contours) {
            const int size = vx::outlineSize(*contour.path);
            for (int i = 0; i < size; ++i)
                append(vx::outlineCurve(*contour.path, i));
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
        : m_evenOdd(evenOdd), m_contours(largestFirst(paths)), m_boxes(m_contours.size(), BoxOf{ m_contours })
    {
        m_kept.reserve(paths.size());
    }

    /** Whether a winding count used for nesting is uncertain. */
    bool isUnsure() const { return m_isUnsure; }

    /** The contours that stay, largest bounds first; orients them as it finds what they lie in. */
    QVector<vxPath *> orient()
    {
        // The container keeps its first child clockwise; turning it only later would part it from the others.
        place(m_contours.front(), true);
        for (size_t i = 1; i < m_contours.size(); ++i) {
            const vxPath *container = findContainer(int(i));
            const Nested &contour = m_contours[i];
            if (!contour.excluded)
                place(contour,
                      container ? !container->isClockwise() : m_contours.front().path->isClockwise());
        }
        return m_kept;
    }

private:
    struct BoxOf {
        const std::vector<Nested> &contours;
        const vx::Box &operator()(size_t i) const { return contours[i].box; }
    };

    static std::vector<Nested> largestFirst(const QVector<vxPath *> &paths)
    {
        std::vector<Nested> contours(paths.begin(), paths.end());
        std::stable_sort(contours.begin(), contours.end(),
                         [](const Nested &a, const Nested &b) { return a.boundsArea > b.boundsArea; });
        return contours;
    }

    void place(const Nested &contour, bool clockwise)
    {
        contour.path->setClockwise(clockwise);
        m_kept.append(contour.path);
    }

    /**
     * Sets the candidates to the places of those contours before i whose boxes come near its own: no other
     * can contain an interior point of it, which lies within its box but for rounding.
     */
    void findCandidates(int i)
    {
        const vx::Box &box = m_contours[size_t(i)].box;
        m_candidates.clear();
        m_boxes.query(box, 2 * vxTolerance::closeDistance + 1e-9 * vx::largestOf(box), 0, [&](int j) {
            if (j < i)
                m_candidates.append(j);
        });
    }

    const vxPath *findContainer(int i)
    {
        findCandidates(i);
        if (m_candidates.isEmpty())
            return nullptr;
        Nested &contour = m_contours[size_t(i)];
        const vxPoint point = contour.path->getInteriorPoint(m_evenOdd);
        if (!m_levels)
            m_levels.emplace(m_contours);
        const bool isGrazed = m_levels->hasBeside(point.y);
        const vxStyle style = vxStyle::filled(m_evenOdd);
        bool isContained = false;
        for (int k = m_candidates.size() - 1; k >= 0; --k) { // from the smallest
            const Nested &other = m_contours[size_t(m_candidates.at(k))];
            const bool isInside = other.path->contains(point, style);
            m_isUnsure = m_isUnsure || (isGrazed && !isConfirmed(contour, other, isInside));
            if (!isInside)
                continue;
            if (!m_evenOdd && !isContained) {
                contour.winding += other.winding;
                if (contour.winding != 0 && other.winding != 0) {
                    contour.excluded = true; // filled on both sides under the nonzero rule
                    return nullptr;
                }
            }
            isContained = true;
            if (!other.excluded)
                return other.path;
        }
        return nullptr;
    }

    /** Asks elsewhere whether a contour lies in another. */
    static bool isConfirmed(const Nested &contour, const Nested &other, bool isInside)
    {
        const std::optional<bool> answer = vx::FilledRegion(*other.path).holds(*contour.path);
        return answer && *answer == isInside;
    }

    const bool m_evenOdd;
    std::vector<Nested> m_contours;
    vx::BoxLookup<BoxOf> m_boxes;
    QVarLengthArray<int, 16> m_candidates;
    std::optional<Levels> m_levels; ///< none: no contour may contain another
    bool m_isUnsure = false;
    QVector<vxPath *> m_kept;
};

} // namespace

bool PathSort(const vxPath *a, const vxPath *b)
{
    const auto boundsArea = [](const vxPath &path) {
        return path.getBounds(vxBoundOpt::geometric(), vxStyle()).getArea();
    };
    return a && b && boundsArea(*a) > boundsArea(*b);
}

vx::NestedContours vx::nestContours(const QVector<vxPath *> &contours, bool evenOdd)
{
    Nesting nesting(contours, evenOdd);
    const QVector<vxPath *> kept = nesting.orient();
    return { kept, nesting.isUnsure() };
}
