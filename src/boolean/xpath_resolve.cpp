#include "xpath.h"

#include "vxcurvelocation.h"
#include "vxfilledregion_p.h"
#include "vxintersect_p.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingplaces_p.h"
#include "vxmonopieces_p.h"
#include "vxorderedboxes_p.h"
#include "vxref_p.h"
#include "vxrunnotes_p.h"
#include "vxtolerance.h"

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

/** Keeps the segments of a path alive while locations refer to them and some are removed. */
std::vector<vxRef<vxSegment>> holdSegments(const XPath &path)
{
    size_t count = 0;
    for (const vxPath *child : path.children)
        count += size_t(child->_segments().size());
    std::vector<vxRef<vxSegment>> held;
    held.reserve(count);
    for (const vxPath *child : path.children) {
        for (vxSegment *segment : child->_segments())
            held.emplace_back(segment);
    }
    return held;
}

bool isOverlapEnd(const vxSegment *segment)
{
    return segment && segment->intersection() && segment->intersection()->overlap;
}

/** The curves of a shape, to be asked which of them pass through a point. */
class CurvesByPlace
{
public:
    explicit CurvesByPlace(const XPath &shape) : m_curves(shape.getCurves()), m_boxes(boxesOf(m_curves)) {}

    /** Whether the middle of a curve lies on another curve of the shape. */
    bool runsAlongAnother(const vxCurve *curve)
    {
        if (!curve)
            return false;
        const vxPoint middle = curve->getPointAtTime(0.5);
        bool runs = false;
        m_boxes.query({ middle.x, middle.y, middle.x, middle.y }, 0, 0, [&](int i) {
            const vxCurve *other = m_curves.at(i);
            runs = runs || (other != curve && vx::timeOf(other->_cubic(), middle) != vxTolerance::noTime);
        });
        return runs;
    }

private:
    /** So wide that a point outside is farther than closeDistance from the curve, as computed. */
    static std::vector<vx::Box> boxesOf(const QList<vxCurve *> &curves)
    {
        std::vector<vx::Box> boxes;
        boxes.reserve(size_t(curves.size()));
        for (const vxCurve *curve : curves) {
            const vx::Box box = vx::hullBox(curve->_cubic());
            const double largest = std::max(
                { std::fabs(box.minX), std::fabs(box.maxX), std::fabs(box.minY), std::fabs(box.maxY) });
            const double reach = 2 * vxTolerance::closeDistance + 1e-12 * largest;
            boxes.push_back({ box.minX - reach, box.minY - reach, box.maxX + reach, box.maxY + reach });
        }
        return boxes;
    }

    const QList<vxCurve *> m_curves;
    vx::OrderedBoxes m_boxes;
};

/**
 * The segments of divided overlaps that lie inside a stretch that runs along another one. A corner between
 * two different overlaps has overlap ends for neighbours as well, but its own curves part from the others.
 */
std::vector<vxRef<vxSegment>> insideOverlaps(const XPath &shape, const QList<vxCurveLocation *> &divided)
{
    CurvesByPlace curves(shape);
    std::vector<vxRef<vxSegment>> inside;
    for (int i = divided.size() - 1; i >= 0; --i) {
        vxSegment *segment = divided.at(i)->getSegment();
        const vxSegment *previous = segment ? segment->getPrevious() : nullptr;
        if (!isOverlapEnd(previous) || !isOverlapEnd(segment->getNext()))
            continue;
        if (curves.runsAlongAnother(previous->getCurve()) && curves.runsAlongAnother(segment->getCurve()))
            inside.emplace_back(segment);
    }
    return inside;
}

/** Takes a segment out of the inside of a stretch that runs along another one. */
void removeFromOverlap(vxSegment *segment)
{
    const vxRef<vxSegment> held(segment);
    const vxRef<vxSegment> previous(segment->getPrevious());
    const vxRef<vxSegment> next(segment->getNext());
    if (!segment->path || !isOverlapEnd(previous.get()) || !isOverlapEnd(next.get()))
        return;
    segment->remove();
    previous->setHandleOut(vxPoint());
    next->setHandleIn(vxPoint());
    // On a contour of two segments the neighbours are one, and it may be the removed one's only neighbour.
    if (vxPath *path = previous->path)
        path->_changed();
    const vxCurve *curve = previous->getCurve();
    if (curve && curve->isStraight() && curve->getLength() == 0)
        previous->remove();
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
        std::sort(m_levels.begin(), m_levels.end());
    }

    /** Whether there is one so near a level that rounding may put it on either side, but not on it. */
    bool hasBeside(double level) const
    {
        constexpr double beside = 1e-6; // path units
        const auto first = std::lower_bound(m_levels.begin(), m_levels.end(), level - beside);
        const auto last = std::upper_bound(first, m_levels.end(), level + beside);
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

    std::vector<double> m_levels; ///< sorted
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

/** Makes contours, which are oriented, the children, unless they are that as they stand. */
void setContours(XPath &path, const QVector<vxPath *> &contours)
{
    if (contours != path.children)
        path.setChildren(contours);
}

/** One clean-up of a compound path. */
class Resolver
{
public:
    Resolver(XPath &path, vx::RunNotes &notes) : m_path(path), m_notes(notes) {}

    void run()
    {
        vx::MeetingFilter filter(m_notes);
        const auto accepts = [&](vxCurveLocation *location) { return accept(*location, filter); };
        vx::SearchDoubts doubts;
        const QList<vxCurveLocation *> found = vx::findIntersections(m_path, nullptr, accepts, doubts);
        if (metNothing() && meetAtJointsOnly(doubts.unfinished))
            doubts.unfinished.clear();
        m_notes.add(doubts);
        m_notes.touchWithin = filter.touchedOffVertices() || hasContactWithin(filter.touches()) ||
                              hasContactWithin(doubts.nearMisses);
        const vx::LocationOwner owner(found);
        QList<vxCurveLocation *> locations = vxCurveLocation::expand(found);
        if (m_hasOverlaps || m_hasCrossings)
            m_held = holdSegments(m_path);
        if (m_hasOverlaps)
            removeOverlaps(m_path.divideLocations(locations, 1));
        QVector<vxPath *> paths = m_path.children;
        std::vector<vxRef<vxPath>> traced;
        if (m_hasCrossings) {
            m_notes.selfCrossing = true;
            m_path.divideLocations(locations, m_hasOverlaps ? 2 : 0);
            vx::noteChains(locations, m_notes);
            QList<vxSegment *> segments;
            for (const vxPath *child : qAsConst(m_path.children))
                segments += child->_segments();
            paths = vx::tracePaths(segments, 0, m_notes);
            for (vxPath *path : qAsConst(paths))
                traced.emplace_back(path);
        }
        if (paths.size() > 1) {
            Nesting nesting(paths, m_path.evenOdd);
            const QVector<vxPath *> kept = nesting.orient();
            m_notes.grazedNesting = nesting.isUnsure();
            setContours(m_path, kept);
        } else if (m_hasCrossings) {
            m_path.setChildren(paths);
        }
        clearLinks();
    }

    bool metNothing() const { return !m_hasOverlaps && !m_hasCrossings; }

private:
    bool accept(vxCurveLocation &location, vx::MeetingFilter &filter)
    {
        if (!filter.accepts(location))
            return false;
        (location.overlap ? m_hasOverlaps : m_hasCrossings) = true;
        return true;
    }

    /** Of curves that follow each other: whether there is nothing that a longer search could find. */
    static bool meetAtJointsOnly(const std::vector<vxUnfinished> &pairs)
    {
        return std::all_of(pairs.begin(), pairs.end(), [](const vxUnfinished &pair) {
            return pair.curve1 != pair.curve2 &&
                   vx::meetAtSharedEndsOnly(pair.curve1->_cubic(), pair.curve2->_cubic());
        });
    }

    static bool hasContactWithin(const std::vector<vxContact> &contacts)
    {
        return std::any_of(contacts.begin(), contacts.end(),
                           [](const vxContact &contact) { return !contact.otherVertex; });
    }

    void removeOverlaps(const QList<vxCurveLocation *> &divided)
    {
        const std::vector<vxRef<vxSegment>> held = holdSegments(m_path);
        for (const vxRef<vxSegment> &segment : held)
            m_held.push_back(segment);
        for (const vxRef<vxSegment> &segment : insideOverlaps(m_path, divided))
            removeFromOverlap(segment.get());
    }

    /** Segments that stay must not lead a later search to crossings that are done with. */
    void clearLinks()
    {
        for (const vxPath *child : qAsConst(m_path.children)) {
            for (vxSegment *segment : child->_segments()) {
                if (segment->intersection())
                    segment->setIntersection(nullptr);
                segment->visited = false;
            }
        }
        for (const vxRef<vxSegment> &segment : m_held)
            segment->setIntersection(nullptr);
    }

    XPath &m_path;
    vx::RunNotes &m_notes;
    std::vector<vxRef<vxSegment>> m_held;
    bool m_hasOverlaps = false;
    bool m_hasCrossings = false;
};

} // namespace

bool PathSort(const vxPath *a, const vxPath *b)
{
    return a && b && boundsArea(*a) > boundsArea(*b);
}

bool vx::resolveCrossings(XPath &path, RunNotes &notes)
{
    if (path.children.isEmpty())
        return false;
    Resolver resolver(path, notes);
    resolver.run();
    return !resolver.metNothing();
}

XPath *XPath::resolveCrossings()
{
    vx::RunNotes notes;
    vx::resolveCrossings(*this, notes);
    return this;
}
