#include "vxrepeated_p.h"

#include "vxpair_p.h"
#include "vxpath.h"
#include "xpath.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace vx {

namespace {

/** Orders contours by all that is drawn of them, read as one row of numbers. */
bool comesBefore(const vxPath *a, const vxPath *b)
{
    if (a->isClosed() != b->isClosed())
        return b->isClosed();
    const QList<vxSegment *> &s = a->_segments();
    const QList<vxSegment *> &t = b->_segments();
    for (int i = 0; i < s.size() && i < t.size(); ++i) {
        for (vxPoint vxSegment::*field : { &vxSegment::point, &vxSegment::handleIn, &vxSegment::handleOut }) {
            const vxPoint &p = s.at(i)->*field;
            const vxPoint &q = t.at(i)->*field;
            if (p.x < q.x || q.x < p.x)
                return p.x < q.x;
            if (p.y < q.y || q.y < p.y)
                return p.y < q.y;
        }
    }
    return s.size() < t.size();
}

/** Number for number; never with NaN. All at once, since of alike shapes all of it is looked at. */
bool isSameSegment(const vxSegment *a, const vxSegment *b)
{
    const PairMask same = (pairOf(a->point) == pairOf(b->point)) &
                          (pairOf(a->handleIn) == pairOf(b->handleIn)) &
                          (pairOf(a->handleOut) == pairOf(b->handleOut));
    return same[0] & same[1];
}

bool isSame(const vxPath *a, const vxPath *b)
{
    const QList<vxSegment *> &s = a->_segments();
    const QList<vxSegment *> &t = b->_segments();
    return a->isClosed() == b->isClosed() && s.size() == t.size() &&
           std::equal(s.begin(), s.end(), t.begin(), isSameSegment);
}

} // namespace

bool areDrawnAlike(const XPath &a, const XPath &b)
{
    return a.evenOdd == b.evenOdd &&
           std::equal(a.children.begin(), a.children.end(), b.children.begin(), b.children.end(), isSame);
}

void dropRepeated(XPath &path)
{
    if (path.children.size() < 3)
        return;
    const QVector<vxPath *> &children = path.children;
    std::vector<int> sorted(size_t(children.size()));
    std::iota(sorted.begin(), sorted.end(), 0);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](int a, int b) { return comesBefore(children.at(a), children.at(b)); });

    std::vector<char> dropped(sorted.size(), 0);
    for (size_t i = 0; i < sorted.size();) {
        size_t end = i + 1;
        while (end < sorted.size() && isSame(children.at(sorted[end]), children.at(sorted[i])))
            ++end;
        // Even-odd: pairs fill nothing together. Nonzero: the same direction again fills nothing more.
        const bool keepsOne = !path.evenOdd || (end - i) % 2 == 1;
        for (size_t k = i + (keepsOne ? 1 : 0); k < end; ++k)
            dropped[size_t(sorted[k])] = 1;
        i = end;
    }
    if (std::find(dropped.begin(), dropped.end(), 1) == dropped.end())
        return;
    QVector<vxPath *> kept;
    for (int i = 0; i < children.size(); ++i) {
        if (!dropped[size_t(i)])
            kept.append(children.at(i));
    }
    path.setChildren(kept);
}

} // namespace vx
