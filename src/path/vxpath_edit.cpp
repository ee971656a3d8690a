#include "vxpath.h"

#include "vxbatch_p.h"
#include "vxdivisions_p.h"
#include "vxlengthen_p.h"
#include "vxmatrix.h"

#include <algorithm>

// Segments and the cached curves between them are kept in step here; every edit ends in _changed().

namespace {

/**
 * The segment to insert for what a caller gave: a clone if that belongs to a path, with one reference taken.
 */
vxSegment *adopted(vxSegment *segment, vxPath *path)
{
    vxSegment *own = segment->path ? segment->clone() : segment;
    own->addRef();
    own->path = path;
    return own;
}

/** Inserts all of items before position at of list, in linear time. */
template <typename T>
void spliceIn(QList<T *> &list, int at, const QList<T *> &items)
{
    if (items.size() == 1) {
        list.insert(at, items.first());
        return;
    }
    const QList<T *> tail = list.mid(at);
    list.erase(list.begin() + at, list.end());
    list += items;
    list += tail;
}

/** Puts itemOf(second half) behind the position of each division, which come from the last to the first. */
template <typename T, typename ItemOf>
void spliceBehind(QList<T *> &list, const vx::Divisions::List &divisions, ItemOf itemOf)
{
    const int size = list.size();
    T **end = vx::lengthen(list, divisions.size()) + divisions.size();
    T **behind = end - divisions.size(); // what is not in its place yet ends here
    T **const begin = behind - size;
    for (const auto &[position, second] : divisions) {
        T **const tail = begin + position + 1;
        end = std::move_backward(tail, behind, end);
        behind = tail;
        *--end = itemOf(second);
    }
}

} // namespace

// --- inserting ---

vxSegment *vxPath::addSegment(vxSegment *segment)
{
    return insertSegment(m_segments.size(), segment);
}

vxSegment *vxPath::insertSegment(int index, vxSegment *segment)
{
    if (!segment)
        return nullptr;
    index = qBound(0, index, m_segments.size());
    vxSegment *added = adopted(segment, this);
    m_segments.insert(index, added);
    renumber(index);
    _adjustCurves(index, 1);
    _changed();
    return added;
}

QList<vxSegment *> vxPath::addSegments(const QList<vxSegment *> &list, int index, QList<vxCurve *> *curves)
{
    QList<vxSegment *> added;
    added.reserve(list.size());
    for (vxSegment *segment : list) {
        if (segment)
            added.append(adopted(segment, this));
    }
    if (!added.isEmpty()) {
        if (index < 0 || index > m_segments.size())
            index = m_segments.size();
        spliceIn(m_segments, index, added);
        renumber(index);
        _adjustCurves(index, added.size());
        _changed();
    }
    if (curves)
        *curves = getCurves();
    return added;
}

void vxPath::setSegments(const QList<vxSegment *> &list)
{
    if (m_segments.isEmpty() && list.isEmpty())
        return;
    releaseCurves();
    // Freed of this path, segments of the list are taken as they are; the old references end only afterwards.
    QList<vxSegment *> old;
    old.swap(m_segments);
    for (vxSegment *segment : qAsConst(old))
        segment->_detach();
    m_segments.reserve(list.size());
    for (vxSegment *segment : list) {
        if (segment)
            m_segments.append(adopted(segment, this));
    }
    renumber(0);
    _changed();
    for (vxSegment *segment : qAsConst(old))
        segment->release();
}

void vxPath::_setOutline(const std::vector<vxSegment> &outline)
{
    setSegments({});
    vxBatch<vxSegment> batch(outline.size());
    append(int(outline.size()), [&](int i) { return batch.make(outline[size_t(i)]); });
}

void vxPath::_takeOutline(const std::vector<vxSegment *> &outline)
{
    append(int(outline.size()), [&](int i) { return outline[size_t(i)]; });
}

void vxPath::appendCopiesOf(const QList<vxSegment *> &originals, vxBatch<vxSegment> &batch)
{
    append(originals.size(), [&](int i) { return batch.make(*originals.at(i)); });
}

/** Appends segments that belong to no path; asked for from the first to the last. */
template <typename SegmentAt>
void vxPath::append(int count, const SegmentAt &segmentAt)
{
    if (count > 0) {
        const int first = m_segments.size();
        vxSegment **places = vx::lengthen(m_segments, count);
        for (int i = 0; i < count; ++i) {
            vxSegment *segment = segmentAt(i);
            segment->addRef();
            segment->path = this;
            segment->index = first + i;
            places[i] = segment;
        }
    }
    _changed();
}

// --- removing ---

bool vxPath::removeSegment(int index)
{
    if (index < 0 || index >= m_segments.size())
        return false;
    removeSegments(index, index + 1).first()->release();
    return true;
}

QList<vxSegment *> vxPath::removeSegments(int from, int to)
{
    const int size = m_segments.size();
    if (to < 0 || to > size)
        to = size;
    from = std::max(from, 0);
    if (from >= to)
        return {};
    const QList<vxSegment *> removed = m_segments.mid(from, to - from);
    m_segments.erase(m_segments.begin() + from, m_segments.begin() + to);
    for (vxSegment *segment : removed)
        segment->_detach();
    renumber(from);
    _adjustCurves(from, from - to);
    _changed();
    return removed;
}

// --- the cached curves ---

void vxPath::_adjustCurves(int start, int count)
{
    if (m_curves.isEmpty() || count == 0)
        return;
    const int size = m_segments.size();
    const int oldSize = size - count;
    // Edited past this bookkeeping, or nothing left to join: built anew on demand.
    if (m_curves.size() != (closed ? oldSize : oldSize - 1) || _countCurves() == 0) {
        releaseCurves();
        return;
    }
    if (count > 0)
        insertCurves(start, count);
    else
        removeCurves(start, -count);
}

// Inserting N before B; on a closed path the neighbours wrap.
//
//     A ----a----> B        A --a--> N --new--> B       curve a stays and ends at N
void vxPath::insertCurves(int start, int count)
{
    const int size = m_segments.size();
    // Behind the end of an open path no curve arrives: the new ones start at the old end.
    const bool extendsEnd = !closed && start + count == size;
    const int first = extendsEnd ? start - 1 : start;
    if (!extendsEnd) {
        if (start > 0)
            m_curves.at(start - 1)->_setSegment2(m_segments.at(start));
        else if (closed)
            m_curves.constLast()->_setSegment2(m_segments.first());
    }
    QList<vxCurve *> added;
    added.reserve(count);
    vxBatch<vxCurve> batch{ size_t(count) };
    for (int i = first; i < first + count; ++i) {
        vxCurve *curve = batch.make(this, m_segments.at(i), m_segments.at((i + 1) % size));
        curve->addRef();
        added.append(curve);
    }
    spliceIn(m_curves, first, added);
}

// Removing B: the curve that starts at B goes, the one before it goes on to C. At the end of an open path,
// where nothing starts, the curve that arrives goes instead.
//
//     A --a--> B --b--> C        A ----a----> C
void vxPath::removeCurves(int start, int count)
{
    const int size = m_segments.size();
    const bool cutsEnd = !closed && start == size;
    const int first = cutsEnd ? start - 1 : start;
    const QList<vxCurve *> gone = m_curves.mid(first, count);
    m_curves.erase(m_curves.begin() + first, m_curves.begin() + first + count);
    if (!cutsEnd) {
        if (start > 0)
            m_curves.at(start - 1)->_setSegment2(m_segments.at(start % size));
        else if (closed)
            m_curves.constLast()->_setSegment2(m_segments.first());
    }
    for (vxCurve *curve : gone) {
        curve->_detach();
        curve->release();
    }
}

bool vxPath::_lists(const vxCurve *curve) const
{
    const int i = curve->index();
    return m_curves.size() == _countCurves() && i >= 0 && i < m_curves.size() && m_curves.at(i) == curve;
}

vxCurve *vxPath::_divideCurve(vxCurve *curve, double t, vx::Divisions &divisions)
{
    vxSegment *middle = curve->_makeMiddle(t, true, &divisions.segments);
    if (!middle)
        return nullptr;
    middle->addRef();
    middle->path = this;
    vxCurve *second = divisions.curves.make(this, middle, curve->segment2());
    second->addRef();
    curve->_setSegment2(middle);
    divisions.add(curve->index(), second);
    _changed();
    return second;
}

void vxPath::_insertDivisions(vx::Divisions &divisions)
{
    if (divisions.isEmpty())
        return;
    const vx::Divisions::List &waiting = divisions.fromTheLast();
    spliceBehind(m_segments, waiting, [](vxCurve *second) { return second->segment1(); });
    spliceBehind(m_curves, waiting, [](vxCurve *second) { return second; });
    renumber(waiting.back().first);
    divisions.clear();
}

void vxPath::setClosed(bool newClosed)
{
    if (newClosed == closed)
        return;
    closed = newClosed;
    if (!m_curves.isEmpty()) {
        while (m_curves.size() > _countCurves()) {
            vxCurve *closing = m_curves.takeLast();
            closing->_detach();
            closing->release();
        }
        if (closed) {
            auto *closing = new vxCurve(this, m_segments.last(), m_segments.first());
            closing->addRef();
            m_curves.append(closing);
        }
    }
    _changed();
}

// --- direction and shape ---

void vxPath::clearHandles()
{
    for (vxSegment *segment : qAsConst(m_segments))
        segment->clearHandles();
    _changed();
}

void vxPath::reverse()
{
    std::reverse(m_segments.begin(), m_segments.end());
    for (vxSegment *segment : qAsConst(m_segments))
        segment->reverse();
    releaseCurves();
    renumber(0);
    exchangeOrientation();
    _changed();
}

void vxPath::exchangeOrientation()
{
    const quint32 orientation = flags & (madeClockwise | madeCounterClockwise);
    if (orientation == madeClockwise || orientation == madeCounterClockwise)
        flags ^= madeClockwise | madeCounterClockwise;
}

void vxPath::setClockwise(bool clockwise)
{
    if (!closed)
        return;
    if (isClockwise() != clockwise)
        reverse();
    addFlags(clockwise ? madeClockwise : madeCounterClockwise);
    removeFlags(clockwise ? madeCounterClockwise : madeClockwise);
}

void vxPath::interpolate(const vxPath *from, const vxPath *to, double factor)
{
    if (!from || !to || from->m_segments.size() != to->m_segments.size())
        return;
    const int count = from->m_segments.size();
    for (vxSegment *surplus : removeSegments(count))
        surplus->release();
    QList<vxSegment *> missing;
    while (m_segments.size() + missing.size() < count)
        missing.append(new vxSegment);
    addSegments(missing);
    setClosed(from->closed);
    for (int i = 0; i < count; ++i)
        m_segments.at(i)->interpolate(*from->m_segments.at(i), *to->m_segments.at(i), factor);
    _changed();
}

void vxPath::transformContent(const vxMatrix *matrix)
{
    if (!matrix || matrix->isIdentity())
        return;
    for (vxSegment *segment : qAsConst(m_segments))
        segment->transform(matrix);
    // A mirror image runs the other way.
    if (matrix->a * matrix->d - matrix->b * matrix->c < 0)
        exchangeOrientation();
    _changed();
}
