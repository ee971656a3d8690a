#include "xpath.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxcurvepair_p.h"
#include "vxcurvevalues_p.h"
#include "vxintersections_p.h"
#include "vxorderedboxes_p.h"
#include "vxpair_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace {

/** A curve of a compound path and what the search asks of it. */
struct Item {
    const vxPath *path = nullptr;
    int index = 0;
    vx::PreparedCurve values;

    Item() = default;
    Item(const vxPath *itsPath, int itsIndex, const vx::Cubic &cubic, const vx::Box &box)
        : path(itsPath), index(itsIndex), values(cubic, box)
    {
    }
    /** Made, with all of the contour, when it is first asked for: most contours of many meet nothing. */
    vxCurve *curve() const { return path->_curves().at(index); }
};

/** Of few curves on the stack. */
using Items = QVarLengthArray<Item, 24>;

/** What is read of a curve first. Copied once, because re-reading it later would miss the cache. */
struct Boxed {
    vx::Cubic values;
    vx::Box box;
};

struct BoxOf {
    const Item *items;
    const vx::Box &operator()(size_t i) const { return items[i].values.box; }
};

/** Calls take(number, curve) for all curves of a contour. */
template <typename Take>
void forEachCurve(const vxPath &path, Take &&take)
{
    const QList<vxSegment *> &segments = path._segments();
    const int count = path._countCurves();
    for (int i = 0; i < count; ++i)
        take(i, vx::curveFrom(segments, i));
}

int countCurves(const XPath &path)
{
    int count = 0;
    for (const vxPath *child : path.children)
        count += child->_countCurves();
    return count;
}

constexpr double infinite = std::numeric_limits<double>::infinity();

/** Gathers the box of a compound path's vertices, which lies within its bounds. */
class VerticesBox
{
public:
    void add(const vx::Pair &vertex)
    {
        m_least = vx::lesser(m_least, vertex);
        m_greatest = vx::greater(m_greatest, vertex);
        m_sum += vertex;
    }
    /** The last vertex of an open contour, where no curve starts. */
    void addEnd(const vxPath &contour)
    {
        if (!contour.isClosed() && !contour.isEmpty())
            add(vx::pairOf(contour._segments().last()->point));
    }
    /** All NaN with a vertex far off or NaN. */
    vx::Box box() const
    {
        constexpr double far = 1e6;
        const vx::Box box = vx::boxOf(m_least, m_greatest);
        const bool isFar = box.minX < -far || box.minY < -far || box.maxX > far || box.maxY > far;
        // No sum is a number where NaN is among what was added.
        if (isFar || std::isnan(m_sum[0] + m_sum[1]))
            return { qQNaN(), qQNaN(), qQNaN(), qQNaN() };
        return box;
    }

private:
    vx::Pair m_least = vx::both(infinite);
    vx::Pair m_greatest = vx::both(-infinite);
    vx::Pair m_sum{};
};

/** Whether the bounds of two compound paths touch. Their vertices mostly tell. */
bool boundsTouch(const XPath &a, const VerticesBox &verticesOfA, const XPath &b,
                 const VerticesBox &verticesOfB)
{
    // Bounds are kept as corner and size, which moves their edges by less than 1e-9.
    constexpr double sure = vxTolerance::closeDistance;
    const vx::Box ofA = verticesOfA.box();
    const vx::Box ofB = verticesOfB.box();
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
        if (item.values.straight || vx::loopSplitTime(item.values.values) == vxTolerance::noTime)
            return;
        setParam(isLoop, false);
        vx::addSelfIntersection(item.values, item.curve(), m_group, m_param);
    }

    /**
     * One curve with all of others from place first on; before and after are the places of its neighbours, -1
     * for none. boxAroundNext() gives a box around it and curves that follow it.
     */
    template <typename BoxAroundNext>
    void meetOthers(const Item &item, const Items &others, vx::BoxLookup<BoxOf> &boxes, int first, int before,
                    int after, BoxAroundNext &&boxAroundNext)
    {
        const auto meet = [&](int j) {
            setParam(j == before, j == after);
            const Item &other = others[j];
            const std::optional<vx::Prospect> prospect = vx::firstLook(item.values, other.values, m_param);
            if (!prospect)
                return;
            vx::CurvePair(item.values, other.values, item.curve(), other.curve(), m_group, m_param,
                          vx::CurvePair::Values::Whole)
                .intersect(*prospect);
        };
        // Twice the reach of boxesMeet, which decides: the comparisons may round differently.
        boxes.queryConsecutive(item.values.box, 2 * vxTolerance::closeDistance, first, boxAroundNext, meet);
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

/** Box around the items from place i on that one search serves, of those before end. */
template <typename BoxAt>
vx::Box aroundNext(int i, int end, BoxAt &&boxAt)
{
    constexpr int count = vx::BoxLookup<BoxOf>::queriesPerSearch;
    vx::Box box = boxAt(i);
    for (int k = i + 1; k < std::min(i + count, end); ++k)
        vx::extend(box, boxAt(k));
    return box;
}

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
        forEachCurve(*child, [&](int i, const vx::Cubic &cubic) {
            items.append(Item(child, i, cubic, vx::pulledBox(cubic)));
        });
    }
    vx::BoxLookup<BoxOf> boxes(size_t(items.size()), BoxOf{ items.data() });
    ContourRange contour;
    for (const vxPath *child : path.children) {
        contour = { contour.end(), child->_countCurves(), child->isClosed() };
        for (int i = contour.first; i < contour.end(); ++i) {
            const Item &item = items[i];
            // A closed path of one curve meets itself where it closes, which is no intersection.
            const vx::Cubic &values = item.values.values;
            search.meetItself(item, count == 1 && values.p0().subtract(values.p3()).isZero());
            if (firstOnly && i + 1 < count)
                return;
            if (!isLeftOut(count, count))
                search.meetOthers(item, items, boxes, i + 1, contour.before(i), contour.after(i), [&] {
                    return aroundNext(i, contour.end(), [&](int k) { return items[k].values.box; });
                });
        }
        search.endContour();
    }
}

/** Calls take(contour, number of the curve in it, what is read of it) for all curves of a compound path. */
template <typename Take>
void readCurves(const XPath &path, VerticesBox &vertices, Take &&take)
{
    for (const vxPath *child : path.children) {
        forEachCurve(*child, [&](int i, const vx::Cubic &cubic) {
            vertices.add(vx::pairOf(cubic, 0));
            take(child, i, Boxed{ cubic, vx::pulledBox(cubic) });
        });
        vertices.addEnd(*child);
    }
}

/**
 * Makes the curves of two compound paths at once, which lays them side by side in the order of walks, when it
 * turns out that most contours meet something.
 */
class CurvesAtOnce
{
public:
    CurvesAtOnce(const XPath &path1, const XPath &path2) : m_path1(path1), m_path2(path2) {}

    /** Of the first path, in their order. */
    void noteSearched(const vxPath &contour)
    {
        m_met += int(contour._hasCurves());
        if (++m_searched != m_nextLook)
            return;
        m_nextLook *= 2;
        if (m_met > m_searched / 2) {
            m_path1._makeCurves();
            m_path2._makeCurves();
        }
    }

private:
    const XPath &m_path1;
    const XPath &m_path2;
    int m_searched = 0;
    int m_met = 0;
    int m_nextLook = 32; ///< fewer lie together in a cache anyhow
};

/** Meetings of two compound paths: of those curves of each that come near the box of the other's. */
void meetEachOther(const XPath &path1, const XPath &path2, Search &search)
{
    const int count1 = countCurves(path1);
    const int count2 = countCurves(path2);
    if (isLeftOut(count1, count2))
        return;
    VerticesBox vertices1, vertices2;
    vx::Box around1 = vx::emptyBox, around2 = vx::emptyBox;
    QVarLengthArray<Boxed, 32> boxed1;
    boxed1.reserve(count1);
    readCurves(path1, vertices1, [&](const vxPath *, int, const Boxed &boxed) {
        boxed1.append(boxed);
        vx::extend(around1, boxed.box);
    });
    Items near;
    near.reserve(count2);
    readCurves(path2, vertices2, [&](const vxPath *contour, int i, const Boxed &boxed) {
        if (!vx::boxesMeet(around1, boxed.box))
            return;
        near.append(Item(contour, i, boxed.values, boxed.box));
        vx::extend(around2, boxed.box);
    });
    if (!boundsTouch(path1, vertices1, path2, vertices2))
        return;
    vx::BoxLookup<BoxOf> boxes2(size_t(near.size()), BoxOf{ near.data() });
    CurvesAtOnce curves(path1, path2);
    ContourRange contour;
    for (const vxPath *child : path1.children) {
        contour = { contour.end(), child->_countCurves(), child->isClosed() };
        for (int i = contour.first; i < contour.end(); ++i) {
            const Boxed &boxed = boxed1[i];
            if (!vx::boxesMeet(boxed.box, around2))
                continue;
            const Item item(child, i - contour.first, boxed.values, boxed.box);
            search.meetOthers(item, near, boxes2, 0, -1, -1, [&] {
                return aroundNext(i, contour.end(), [&](int k) { return boxed1[k].box; });
            });
        }
        search.endContour();
        curves.noteSearched(*child);
    }
}

QList<vxCurveLocation *> findMeetings(XPath &path, XPath *other,
                                      const std::function<bool(vxCurveLocation *)> &include, bool returnFirst,
                                      vx::SearchDoubts &doubts)
{
    const bool self = !other || other == &path;
    if (!self && returnFirst)
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
    _noticeEdits();
    if (other)
        other->_noticeEdits();
    vx::SearchDoubts doubts;
    return findMeetings(*this, other, include, returnFirst, doubts);
}

QList<vxCurveLocation *> XPath::getCrossings(XPath *other)
{
    return getIntersections(
        other, [](vxCurveLocation *location) { return location->overlap || location->isCrossing(); }, false);
}
