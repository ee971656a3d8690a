#include "xpath.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxcurvepair_p.h"
#include "vxintersections_p.h"
#include "vxorderedboxes_p.h"
#include "vxpair_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/** A curve of a compound path and what the search asks of it. */
struct Item {
    vxCurve *curve = nullptr;
    vx::PreparedCurve values;

    Item() = default;
    Item(vxCurve *itsCurve, const vx::Cubic &cubic, const vx::Box &box) : curve(itsCurve), values(cubic, box)
    {
    }
};

/** Of few curves on the stack. */
using Items = QVarLengthArray<Item, 24>;

struct BoxOf {
    const Item *items;
    const vx::Box &operator()(size_t i) const { return items[i].values.box; }
};

int countCurves(const XPath &path)
{
    int count = 0;
    for (const vxPath *child : path.children)
        count += child->_countCurves();
    return count;
}

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr vx::Box emptyBox{ infinite, infinite, -infinite, -infinite };

/** Extends a box by another; edges that are NaN, which no box meets, are left out. */
void extend(vx::Box &box, const vx::Box &other)
{
    box.minX = std::min(box.minX, other.minX);
    box.minY = std::min(box.minY, other.minY);
    box.maxX = std::max(box.maxX, other.maxX);
    box.maxY = std::max(box.maxY, other.maxY);
}

/** Box of a compound path's vertices, which lies within its bounds; all NaN with a vertex far off or NaN. */
vx::Box verticesBox(const XPath &path)
{
    constexpr double far = 1e6;
    vx::Pair least = vx::both(infinite);
    vx::Pair greatest = vx::both(-infinite);
    vx::Pair sum{};
    for (const vxPath *child : path.children) {
        for (const vxSegment *segment : child->_segments()) {
            const vx::Pair point = vx::pairOf(segment->point);
            least = vx::lesser(least, point);
            greatest = vx::greater(greatest, point);
            sum += point;
        }
    }
    const vx::Box box = vx::boxOf(least, greatest);
    const bool isFar = box.minX < -far || box.minY < -far || box.maxX > far || box.maxY > far;
    // No sum is a number where NaN is among what was added.
    if (isFar || std::isnan(sum[0] + sum[1]))
        return { qQNaN(), qQNaN(), qQNaN(), qQNaN() };
    return box;
}

bool boundsTouch(const XPath &a, const XPath &b)
{
    // Vertices mostly tell. Bounds are kept as corner and size, which moves their edges by less than 1e-9.
    constexpr double sure = vxTolerance::closeDistance;
    const vx::Box ofA = verticesBox(a);
    const vx::Box ofB = verticesBox(b);
    if (ofA.maxX - ofB.minX > sure && ofB.maxX - ofA.minX > sure && ofA.maxY - ofB.minY > sure &&
        ofB.maxY - ofA.minY > sure)
        return true;
    const vxBoundOpt option = vxBoundOpt::geometric();
    const vxStyle style;
    return a.getBounds(option, style).touches(b.getBounds(option, style));
}

/** A run of curves in a list that make up one contour. */
struct ContourRange {
    int first = 0;
    int count = 0;
    bool closed = false;

    int end() const { return first + count; }
    /** Places of the neighbours of the curve at place i; -1 where there is none. */
    int before(int i) const { return i > first ? i - 1 : closed ? end() - 1 : -1; }
    int after(int i) const { return i + 1 < end() ? i + 1 : closed ? first : -1; }
};

/** What all pairs of one search have in common: where they put their meetings, and its settings. */
class Search
{
public:
    explicit Search(const std::function<bool(vxCurveLocation *)> &include)
    {
        m_param.include = include;
        m_param.batch = &m_batch;
    }

    const opParam &param() const { return m_param; }

    void meetItself(const Item &item, bool isLoop)
    {
        if (item.values.straight)
            return;
        setParam(isLoop, false);
        vx::addSelfIntersection(item.values, item.curve, m_group, m_param);
    }

    /**
     * One curve with all of others from place first on; before and after are the places of its neighbours, -1
     * for none.
     */
    void meetOthers(const Item &item, const Items &others, vx::BoxLookup<BoxOf> &boxes, int first, int before,
                    int after)
    {
        // Twice the reach of boxesMeet, which decides: the comparisons may round differently.
        boxes.query(item.values.box, 2 * vxTolerance::closeDistance, first, [&](int j) {
            setParam(j == before, j == after);
            const Item &other = others[j];
            vx::CurvePair(item.values, other.values, item.curve, other.curve, m_group, m_param).intersect();
        });
    }

    /** The next curves belong to another contour: merging and sorting stay within one. */
    void endContour()
    {
        m_found += m_group;
        m_group.clear();
    }
    QList<vxCurveLocation *> takeFound() { return m_found + m_group; }

private:
    void setParam(bool excludeStart, bool excludeEnd)
    {
        m_param.excludeStart = excludeStart;
        m_param.excludeEnd = excludeEnd;
        m_param.renormalize = false;
        m_param.renormalizeTime = 0;
    }

    opParam m_param;
    vxBatch<vxCurveLocation> m_batch{ size_t(-1) }; // nobody knows how many there will be
    QList<vxCurveLocation *> m_found;
    /** What the curves of the current contour have met. */
    QList<vxCurveLocation *> m_group;
};

/** The application's option: two shapes of six curves are not intersected. */
bool isLeftOut(int count1, int count2)
{
    return vxPath::m_isClloutOpt && count1 == 6 && count2 == 6;
}

/** Meetings of a compound path with itself; with firstOnly no more than those of its first curve with itself.
 */
void meetItself(const XPath &path, bool firstOnly, Search &search)
{
    const int count = countCurves(path);
    Items items;
    items.reserve(count);
    for (const vxPath *child : path.children) {
        for (vxCurve *curve : child->_curves()) {
            const vx::Cubic cubic = curve->_cubic();
            items.append(Item(curve, cubic, vx::pulledBox(cubic)));
        }
    }
    vx::BoxLookup<BoxOf> boxes(size_t(items.size()), BoxOf{ items.data() });
    ContourRange contour;
    for (const vxPath *child : path.children) {
        contour = { contour.end(), child->_countCurves(), child->isClosed() };
        for (int i = contour.first; i < contour.end(); ++i) {
            const Item &item = items[i];
            // A closed path of one curve meets itself where it closes, which is no intersection.
            search.meetItself(item, count == 1 &&
                                        item.curve->getPoint1().subtract(item.curve->getPoint2()).isZero());
            if (firstOnly && i + 1 < count)
                return;
            if (!isLeftOut(count, count))
                search.meetOthers(item, items, boxes, i + 1, contour.before(i), contour.after(i));
        }
        search.endContour();
    }
}

/** Meetings of two compound paths: of those curves of each that come near the box of the other's. */
void meetEachOther(const XPath &path1, const XPath &path2, Search &search)
{
    const int count1 = countCurves(path1);
    const int count2 = countCurves(path2);
    if (isLeftOut(count1, count2))
        return;
    QVarLengthArray<vx::Box, 32> boxes1;
    boxes1.reserve(count1);
    vx::Box around1 = emptyBox;
    for (const vxPath *child : path1.children) {
        for (const vxCurve *curve : child->_curves()) {
            boxes1.append(vx::pulledBox(curve->_cubic()));
            extend(around1, boxes1.last());
        }
    }
    Items near;
    near.reserve(count2);
    vx::Box around2 = emptyBox;
    for (const vxPath *child : path2.children) {
        for (vxCurve *curve : child->_curves()) {
            const vx::Cubic cubic = curve->_cubic();
            const vx::Box box = vx::pulledBox(cubic);
            if (!vx::boxesMeet(around1, box))
                continue;
            near.append(Item(curve, cubic, box));
            extend(around2, box);
        }
    }
    vx::BoxLookup<BoxOf> boxes2(size_t(near.size()), BoxOf{ near.data() });
    auto box1 = boxes1.cbegin();
    for (const vxPath *child : path1.children) {
        for (vxCurve *curve : child->_curves()) {
            const vx::Box &box = *box1++;
            if (vx::boxesMeet(box, around2))
                search.meetOthers(Item(curve, curve->_cubic(), box), near, boxes2, 0, -1, -1);
        }
        search.endContour();
    }
}

QList<vxCurveLocation *> findMeetings(XPath &path, XPath *other,
                                      const std::function<bool(vxCurveLocation *)> &include, bool returnFirst,
                                      vx::SearchDoubts &doubts)
{
    const bool self = !other || other == &path;
    if (!self && (returnFirst || !boundsTouch(path, *other)))
        return QList<vxCurveLocation *>();
    Search search(include);
    if (self)
        meetItself(path, returnFirst, search);
    else
        meetEachOther(path, *other, search);
    const std::vector<vxUnfinished> &unfinished = search.param().unfinished;
    doubts.unfinished.insert(doubts.unfinished.end(), unfinished.begin(), unfinished.end());
    const std::vector<vxContact> &near = search.param().nearMisses;
    doubts.nearMisses.insert(doubts.nearMisses.end(), near.begin(), near.end());
    return search.takeFound();
}

} // namespace

QList<vxCurveLocation *> vx::findIntersections(XPath &path, XPath *other,
                                               const std::function<bool(vxCurveLocation *)> &include,
                                               SearchDoubts &doubts)
{
    return findMeetings(path, other, include, false, doubts);
}

QList<vxCurveLocation *>
XPath::getIntersections(XPath *other, const std::function<bool(vxCurveLocation *)> &include, bool returnFirst)
{
    vx::SearchDoubts doubts;
    return findMeetings(*this, other, include, returnFirst, doubts);
}

QList<vxCurveLocation *> XPath::getCrossings(XPath *other)
{
    return getIntersections(
        other, [](vxCurveLocation *location) { return location->overlap || location->isCrossing(); }, false);
}
