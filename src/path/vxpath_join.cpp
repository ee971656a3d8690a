#include "vxpath.h"

#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "xpath.h"

#include <cmath>
#include <vector>

using namespace vxTolerance;

// --- join ---

namespace {

/** Opens a closed path in place: its outline then ends with a copy of the first segment. */
void unroll(vxPath *path)
{
    if (!path->isClosed())
        return;
    path->setClosed(false);
    path->addSegment(path->getFirstSegment());
}

void releaseAll(const QList<vxSegment *> &segments)
{
    for (vxSegment *segment : segments)
        segment->release();
}

} // namespace

void vxPath::join(vxPath *other, double tolerance)
{
    if (other && other != this) {
        if (!other->isEmpty())
            takeOver(other, tolerance);
        // The parent's reference may have been the last one.
        if (other->parent)
            other->parent->removeChild(other);
    }
    closeAtEnds(tolerance);
}

void vxPath::takeOver(vxPath *other, double tolerance)
{
    unroll(other);
    if (!m_segments.isEmpty())
        unroll(this);
    int position = m_segments.size();
    if (!m_segments.isEmpty()) {
        const auto meets = [tolerance](const vxSegment *a, const vxSegment *b) {
            return a->point.isClose(b->point, tolerance);
        };
        vxSegment *start = m_segments.first();
        vxSegment *end = m_segments.last();
        if (meets(end, other->getLastSegment()))
            other->reverse();
        if (meets(end, other->getFirstSegment())) {
            end->handleOut = other->getFirstSegment()->handleOut;
            other->removeSegment(0);
        } else {
            if (meets(start, other->getFirstSegment()))
                other->reverse();
            if (meets(start, other->getLastSegment())) {
                start->handleIn = other->getLastSegment()->handleIn;
                other->removeSegment(other->m_segments.size() - 1);
                position = 0;
            }
        }
    }
    const QList<vxSegment *> moved = other->removeSegments();
    addSegments(moved, position);
    releaseAll(moved);
    _changed();
}

void vxPath::closeAtEnds(double tolerance)
{
    vxSegment *first = getFirstSegment();
    vxSegment *last = getLastSegment();
    if (first == last || !first->point.isClose(last->point, tolerance))
        return;
    first->handleIn = last->handleIn;
    removeSegment(last->index);
    setClosed(true);
    _changed();
}

// --- reduce ---

namespace {

vxPoint chord(const vxSegment &from, const vxSegment &to)
{
    return to.point.subtract(from.point);
}

// The rarer condition first: both hold on few curves, and straightness is the dearer question.
bool isTiny(const vxSegment &from, const vxSegment &to)
{
    return from.point.getDistance(to.point) <= closeDistance && vx::isStraight(vx::cubicBetween(from, to));
}

/** Whether the corner between the two straight curves from a to b to c can go. */
bool isNeedless(const vxSegment &a, const vxSegment &b, const vxSegment &c, bool closed)
{
    const vxPoint in = chord(a, b);
    const vxPoint out = chord(b, c);
    return in.isCollinear(out) && (closed || in.dot(out) >= 0) && vx::isStraight(vx::cubicBetween(a, b)) &&
           vx::isStraight(vx::cubicBetween(b, c));
}

/** Whether the walk below drops anything: up to the first segment that it drops it asks nothing else. */
bool isReducible(const QList<vxSegment *> &segments, bool closed, bool simplify)
{
    const int count = segments.size();
    if (count < 2)
        return closed && count == 1;
    const vxSegment *a = segments.at(closed ? count - 2 : 0);
    const vxSegment *b = segments.at(closed ? count - 1 : 1);
    vxPoint in = chord(*a, *b);
    for (int i = closed ? 0 : 2; i < count; ++i) {
        const vxSegment *c = segments.at(i);
        const vxPoint out = chord(*b, *c);
        // The conditions that hardly any curve meets, on chords that are at hand.
        if (in.getLength() <= closeDistance && isTiny(*a, *b))
            return true;
        if (simplify && in.isCollinear(out) && isNeedless(*a, *b, *c, closed))
            return true;
        a = b;
        b = c;
        in = out;
    }
    return !closed && isTiny(*a, *b);
}

/**
 * The walk that reduce() makes, from the last curve to the first, over indexes: segments are only marked, so
 * that a path of many pieces costs one pass. next[i] is the segment that the curve from i leads to at this
 * moment.
 */
class Reduction
{
public:
    Reduction(const QList<vxSegment *> &segments, bool closed, bool simplify)
        : m_segments(segments), m_closed(closed), m_simplify(simplify), m_count(segments.size()),
          m_kept(size_t(segments.size()), true), m_next(size_t(segments.size()))
    {
        for (int i = 0; i < segments.size(); ++i)
            m_next[size_t(i)] = i + 1 < segments.size() ? i + 1 : closed ? 0 : -1;
    }

    void run()
    {
        for (int i = m_segments.size() - 1; i >= 0; --i)
            visit(i);
        // A closed point is a curve of no length as well; a spike ends as one.
        if (m_closed && m_count == 1) {
            for (int i = 0; i < m_segments.size(); ++i) {
                if (isKept(i) && isTiny(at(i), at(i)))
                    drop(i);
            }
        }
    }

    bool isKept(int i) const { return m_kept[size_t(i)]; }
    int count() const { return m_count; }

private:
    int next(int i) const { return m_next[size_t(i)]; }
    void drop(int i)
    {
        m_kept[size_t(i)] = false;
        --m_count;
    }

    const vxSegment &at(int i) const { return *m_segments.at(i); }

    void visit(int i)
    {
        while (isKept(i) && next(i) >= 0 && next(i) != i) {
            const int j = next(i);
            if (isTiny(at(i), at(j))) {
                if (!m_closed && next(j) < 0 && i > 0) {
                    dropBeforeEnd(i, j);
                    return;
                }
                dropSecond(i, j);
            } else if (m_simplify && next(j) >= 0 && isNeedless(at(i), at(j), at(next(j)), m_closed)) {
                straighten(i, j, next(j));
                dropSecond(i, j);
            } else {
                return;
            }
        }
    }

    void dropSecond(int i, int j)
    {
        m_segments.at(i)->handleOut = m_segments.at(j)->handleOut;
        m_next[size_t(i)] = next(j);
        drop(j);
    }

    /** The end of an open path stays where it is: the segment before it goes. */
    void dropBeforeEnd(int i, int end)
    {
        m_segments.at(end)->handleIn = m_segments.at(i)->handleIn;
        m_next[size_t(i - 1)] = end;
        drop(i);
    }

    /** Where the way turns back at j, the handles beyond it would stick out of the shortened line. */
    void straighten(int i, int j, int k)
    {
        if (chord(at(i), at(j)).dot(chord(at(j), at(k))) < 0) {
            m_segments.at(j)->handleOut = vxPoint();
            m_segments.at(k)->handleIn = vxPoint();
        }
    }

    const QList<vxSegment *> &m_segments;
    const bool m_closed;
    const bool m_simplify;
    int m_count;
    std::vector<bool> m_kept;
    std::vector<int> m_next;
};

} // namespace

void vxPath::_noteReduced()
{
    _noticeEdits();
    m_isReduced = !isReducible(m_segments, closed, true);
}

void vxPath::reduce(bool simplify)
{
    if (m_isReduced)
        _noticeEdits(); // and it may be false
    if ((m_isReduced && simplify) || !isReducible(m_segments, closed, simplify))
        return;
    Reduction reduction(m_segments, closed, simplify);
    reduction.run();
    if (reduction.count() == m_segments.size())
        return;
    releaseCurves();
    QList<vxSegment *> kept;
    QList<vxSegment *> dropped;
    kept.reserve(reduction.count());
    for (int i = 0; i < m_segments.size(); ++i)
        (reduction.isKept(i) ? kept : dropped).append(m_segments.at(i));
    m_segments = kept;
    renumber(0);
    for (vxSegment *segment : qAsConst(dropped))
        segment->_detach();
    _changed();
    releaseAll(dropped);
}

// --- split ---

vxPath *vxPath::splitAt(double offset)
{
    vxCurveLocation *location = getLocationAt(offset);
    if (!location)
        return nullptr;
    vxPath *piece = splitAt(location);
    location->release();
    return piece;
}

vxPath *vxPath::splitAt(vxCurveLocation *location)
{
    if (!location)
        return nullptr;
    const vxCurve *curve = location->getCurve();
    return split(curve ? curve->index() : -1, location->getTime());
}

vxPath *vxPath::split(int index, double time)
{
    const int count = _countCurves();
    // noTime as well as NaN: a place that is not known cannot be cut at.
    if (index < 0 || count == 0 || !(time >= 0))
        return nullptr;
    if (time >= timeUpper) {
        ++index;
        time = 0;
    }
    if (index >= count && !closed)
        return nullptr;
    index %= count;
    if (time >= timeMargin) {
        getCurves().at(index)->divideAtTime(time, false);
        ++index;
    }
    return closed ? openAt(index) : cutAt(index);
}

vxPath *vxPath::openAt(int index)
{
    const QList<vxSegment *> front = removeSegments(index);
    setClosed(false);
    addSegments(front, 0);
    // A clone by now: both ends of the opened path lie on the cut.
    addSegment(front.first());
    releaseAll(front);
    return this;
}

vxPath *vxPath::cutAt(int index)
{
    auto *piece = new vxPath(nullptr, closed);
    piece->flags = flags;
    const QList<vxSegment *> rest = removeSegments(index);
    piece->addSegments(rest);
    addSegment(rest.first());
    releaseAll(rest);
    if (parent)
        parent->addChild(piece, this->index + 1);
    return piece;
}
