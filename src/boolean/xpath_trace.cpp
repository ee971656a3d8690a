#include "xpath.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxref_p.h"
#include "vxrunnotes_p.h"
#include "vxsameoutline_p.h"
#include "vxtolerance.h"
#include "vxtracing_p.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace {

/** The segment that a location lies on; null where it was taken out of its contour. */
vxSegment *segmentOf(const vxCurveLocation *location)
{
    vxSegment *segment = location ? location->segment : nullptr;
    return segment && segment->path ? segment : nullptr;
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
        return vx::isInResult(m_op, segment) || (m_op == vx::Unite && !excludeContour && segment.contour);
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
        return segment->path->isFlags(vx::onlyOverlapsInResult) || !inter || !inter->overlap;
    }

    /** Two contours that are the same outline everywhere: the result is one of them, or nothing. */
    void takeIdenticalContours(const vxSegment *segment)
    {
        if (segment->visited || !segment->path->isFlags(vx::overlapsOnly) || !segment->intersection())
            return;
        const vxPath *path = segment->path;
        const vxSegment *partner = segmentOf(segment->intersection());
        const vxPath *other = partner ? partner->path : nullptr;
        if (!other || !m_outlines.areSame(*path, *other))
            return;
        const bool isKept = (m_op == vx::Intersect || m_op == vx::Unite) && path->getArea(true, false) != 0;
        if (isKept) {
            m_result.append(path->clone());
            m_result.last()->removeFlags(vx::overlapsOnly | vx::onlyOverlapsInResult);
        }
        for (const vxPath *visited : { path, other }) {
            for (vxSegment *s : visited->_segments()) {
                s->visited = true;
                s->walked = isKept && visited == path;
            }
        }
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
        if (m_op == vx::resolveOnly)
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
        const bool mayStop = path.isFlags(vx::onlyOverlapsInResult);
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
                if (m_op == vx::Intersect || m_op == vx::Subtract)
                    segment->visited = true;
                segment = other;
            }
            if (finished || segment->visited) {
                segment->visited = true;
                if (first)
                    first->changedOver = arrived != first;
                break;
            }
            if (segment->path->isFlags(vx::onlyOverlapsInResult) && !isValid(segment))
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
    vx::OutlineComparison m_outlines;
};

} // namespace

bool vx::isLeftover(const vxPath &contour)
{
    constexpr int mostSegments = 8;
    return contour._segments().size() <= mostSegments &&
           std::fabs(contour.getArea(true, false)) <= vxTolerance::machineZero;
}

QVector<vxPath *> vx::tracePaths(const QList<vxSegment *> &segments, int op, Untouched untouched,
                                 RunNotes &notes)
{
    return Tracer(op, segments.size(), untouched, notes).trace(segments);
}

QVector<vxPath *> XPath::tracePaths(const QList<vxSegment *> &segments, int op)
{
    QList<vxSegment *> onPaths;
    std::copy_if(segments.begin(), segments.end(), std::back_inserter(onPaths),
                 [](const vxSegment *segment) { return segment && segment->path; });
    vx::RunNotes notes;
    return vx::tracePaths(onPaths, op, vx::Untouched::Copied, notes);
}
