#include "xpath.h"

#include "vxbatch_p.h"
#include "vxcleancopy_p.h"
#include "vxcurvelocation.h"
#include "vxref_p.h"
#include "vxrunnotes_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

using namespace vxTolerance;

namespace {

/** The segment that a location lies on; null where it was taken out of its contour. */
vxSegment *segmentOf(const vxCurveLocation *location)
{
    vxSegment *segment = location ? location->segment : nullptr;
    return segment && segment->path ? segment : nullptr;
}

bool sameSegment(const vxSegment &a, const vxSegment &b, bool reversed)
{
    const vxPoint &handleIn = reversed ? b.handleOut : b.handleIn;
    const vxPoint &handleOut = reversed ? b.handleIn : b.handleOut;
    return a.point.isClose(b.point, closeDistance) && a.handleIn.isClose(handleIn, closeDistance) &&
           a.handleOut.isClose(handleOut, closeDistance);
}

/** Whether two closed contours are the same outline, wherever they start and whichever way they run. */
bool sameOutline(const vxPath &path1, const vxPath &path2)
{
    const QList<vxSegment *> &a = path1._segments();
    const QList<vxSegment *> &b = path2._segments();
    const int n = a.size();
    if (b.size() != n || path1.isClosed() != path2.isClosed())
        return false;
    if (!path1.isClosed() || n == 0)
        return vxSegment::segsEquals(a, b);
    for (bool reversed : { false, true }) {
        for (int start = 0; start < n; ++start) {
            int i = 0;
            while (i < n && sameSegment(*a.at(i), *b.at((start + (reversed ? n - i : i)) % n), reversed))
                ++i;
            if (i == n)
                return true;
        }
    }
    return false;
}

class Tracer
{
public:
    /** Walks over at most count segments. */
    Tracer(int op, int count, vx::Untouched untouched, vx::RunNotes &notes)
        : m_op(op), m_untouched(untouched), m_notes(notes), m_batch(size_t(count))
    {
        m_outline.reserve(size_t(count));
    }

    QVector<vxPath *> trace(const QList<vxSegment *> &segments)
    {
        for (vxSegment *segment : segments) {
            takeIdenticalContours(segment);
            if (startsContour(segment) && !takeUntouched(*segment))
                traceFrom(segment);
        }
        return m_result;
    }

private:
    bool isAccepted(const vxSegment &segment, bool excludeContour) const
    {
        switch (m_op) {
        case 0:
            return true;
        case 1:
            return segment.winding == 2;
        case 2:
            return segment.winding == 1 || (!excludeContour && segment.contour);
        case 3:
        case 4:
            return segment.winding == 1;
        default:
            return false;
        }
    }

    bool isValid(const vxSegment *segment, bool excludeContour = false) const
    {
        return segment && !segment->visited && isAccepted(*segment, excludeContour);
    }

    bool isStart(const vxSegment *segment) const
    {
        return segment && (segment == m_start || segment == m_otherStart);
    }

    bool startsContour(const vxSegment *segment) const
    {
        if (!isValid(segment, true))
            return false;
        const vxCurveLocation *inter = segment->intersection();
        return segment->path->isFlags(vx::validOverlapsOnly) || !inter || !inter->overlap;
    }

    /** Two contours that are the same outline everywhere: the result is one of them, or nothing. */
    void takeIdenticalContours(const vxSegment *segment)
    {
        if (segment->visited || !segment->path->isFlags(vx::overlapsOnly) || !segment->intersection())
            return;
        const vxPath *path = segment->path;
        const vxSegment *partner = segmentOf(segment->intersection());
        const vxPath *other = partner ? partner->path : nullptr;
        if (!other || isKnownDifferent(path, other))
            return;
        if (!sameOutline(*path, *other)) {
            m_different.emplace(path, other);
            return;
        }
        const bool isKept = (m_op == 1 || m_op == 2) && path->getArea(true, false) != 0;
        if (isKept) {
            m_result.append(path->clone());
            m_result.last()->removeFlags(vx::overlapsOnly | vx::validOverlapsOnly);
        }
        for (const vxPath *visited : { path, other }) {
            for (vxSegment *s : visited->_segments()) {
                s->visited = true;
                s->walked = isKept && visited == path;
            }
        }
    }

    /** Two contours are compared once, not for each of their segments. */
    bool isKnownDifferent(const vxPath *path, const vxPath *other) const
    {
        return m_different.count({ path, other }) != 0;
    }

    /**
     * Among intersections that coincide, one that closes the contour or leads on to where the result goes on.
     */
    vxCurveLocation *chooseIntersection(const vxSegment *segment, vxCurveLocation *inter) const
    {
        if (!inter || !inter->next)
            return inter;
        for (vxCurveLocation *location = inter; location; location = location->next) {
            const vxSegment *candidate = segmentOf(location);
            if (candidate && candidate != segment && leadsOn(candidate))
                return location;
        }
        return inter;
    }

    bool leadsOn(const vxSegment *candidate) const
    {
        const vxSegment *following = candidate->getNext();
        if (isStart(candidate) || isStart(following))
            return true;
        if (candidate->visited || (following && following->visited))
            return false;
        if (m_op == 0)
            return true;
        vxCurveLocation *inter = following ? following->intersection() : nullptr;
        return isValid(candidate) && (isValid(following) || (inter && isValid(segmentOf(inter))));
    }

    /** A walk of a contour that meets nothing goes once around it, and copies it as it stands. */
    bool takeUntouched(const vxSegment &start)
    {
        vxPath *path = start.path;
        if (m_untouched == vx::Untouched::Copied || start.index != 0 || !path->isClosed() ||
            !isWalkedWhole(*path))
            return false;
        for (vxSegment *segment : path->_segments()) {
            segment->visited = true;
            segment->walked = true;
        }
        if (vx::isLeftover(*path)) {
            m_notes.discardedContour = true;
            return true;
        }
        path->id = ++vxPath::s_maxID; // in the order of the result, like those that are made
        path->addFlags(vx::taken);
        m_result.append(path);
        return true;
    }

    /** Nothing leads a walk away from the contour, or stops it. */
    bool isWalkedWhole(const vxPath &path) const
    {
        const bool mayStop = path.isFlags(vx::validOverlapsOnly);
        const QList<vxSegment *> &segments = path._segments();
        return std::all_of(segments.begin(), segments.end(), [&](const vxSegment *segment) {
            return !segment->intersection() && !segment->visited && (!mayStop || isValid(segment));
        });
    }

    void traceFrom(vxSegment *segment)
    {
        m_start = m_otherStart = nullptr;
        vxPoint handleIn;
        vxSegment *first = nullptr;
        bool finished = false;
        for (;;) {
            const vxSegment *arrived = segment;
            vxCurveLocation *inter = chooseIntersection(segment, segment->intersection());
            vxSegment *other = segmentOf(inter);
            if (isStart(segment)) {
                finished = true;
            } else if (isStart(other)) {
                finished = true;
                segment = other;
            } else if (isValid(other, isValid(segment, true))) {
                if (m_op == 1 || m_op == 3)
                    segment->visited = true;
                segment = other;
            }
            if (finished || segment->visited) {
                segment->visited = true;
                if (first)
                    first->changedOver = arrived != first;
                break;
            }
            if (segment->path->isFlags(vx::validOverlapsOnly) && !isValid(segment))
                break;
            if (m_outline.empty()) {
                m_start = first = segment;
                m_otherStart = other;
            }
            segment->changedOver = segment != arrived;
            segment = append(segment, handleIn);
        }
        if (finished && !m_outline.empty())
            keep(handleIn);
        else
            discard();
    }

    /** Copies segment to the end of the outline and returns the one to go on from. */
    vxSegment *append(vxSegment *segment, vxPoint &handleIn)
    {
        vxSegment *next = segment->getNext();
        m_outline.push_back(m_batch.make(segment->point, handleIn, next ? segment->handleOut : vxPoint()));
        segment->visited = true;
        segment->walked = true;
        if (next)
            handleIn = next->handleIn;
        return next ? next : segment->path->getFirstSegment();
    }

    void keep(const vxPoint &handleIn)
    {
        m_outline.front()->setHandleIn(handleIn);
        vxRef<vxPath> path(new vxPath(nullptr, true));
        path->_takeOutline(m_outline);
        m_outline.clear();
        if (vx::isLeftover(*path)) {
            m_notes.discardedContour = true;
            return;
        }
        m_result.append(path.take());
    }

    void discard()
    {
        for (vxSegment *segment : m_outline)
            segment->release();
        m_outline.clear();
        m_notes.discardedContour = true;
    }

    int m_op;
    vx::Untouched m_untouched;
    vx::RunNotes &m_notes;
    const vxSegment *m_start = nullptr;
    const vxSegment *m_otherStart = nullptr;
    /** The contour that is being walked, of segments that nobody holds yet. */
    std::vector<vxSegment *> m_outline;
    vxBatch<vxSegment> m_batch;
    QVector<vxPath *> m_result;
    std::set<std::pair<const vxPath *, const vxPath *>> m_different;
};

} // namespace

QVector<vxPath *> vx::tracePaths(const QList<vxSegment *> &segments, int op, Untouched untouched,
                                 RunNotes &notes)
{
    return Tracer(op, segments.size(), untouched, notes).trace(segments);
}

QVector<vxPath *> XPath::tracePaths(const QList<vxSegment *> &segments, int op)
{
    vx::RunNotes notes;
    return vx::tracePaths(segments, op, vx::Untouched::Copied, notes);
}
