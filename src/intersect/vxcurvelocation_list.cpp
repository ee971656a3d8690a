#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxinsertionlist_p.h"
#include "vxlengthen_p.h"
#include "vxlocationowner_p.h"
#include "vxpath.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace vxTolerance;

namespace {

vxPath *pathOf(vxCurve *curve)
{
    return curve ? curve->path() : nullptr;
}

/** Sorting key of a location: its path's id, and within that curve index plus time. */
struct Place {
    quint32 pathId = 0;
    double position = std::numeric_limits<double>::quiet_NaN();

    Place() = default;
    explicit Place(vxCurveLocation *location)
    {
        vxCurve *curve = location->getCurve();
        const vxPath *path = pathOf(curve);
        pathId = path ? path->id : 0;
        position = (curve ? curve->index() : -1) + location->time;
    }
    bool operator<(const Place &other) const
    {
        return pathId != other.pathId ? pathId < other.pathId : position < other.position;
    }
};

/**
 * Where an item goes among count others: isBefore(i) says whether it belongs in front of item i. In lists
 * that are out of order the answer depends on which items are asked.
 */
template <typename IsBefore>
int bisect(int count, const IsBefore &isBefore)
{
    int lo = 0;
    int hi = count - 1;
    while (lo <= hi) {
        const int mid = (lo + hi) >> 1;
        if (isBefore(mid))
            hi = mid - 1;
        else
            lo = mid + 1;
    }
    return lo;
}

/** Index plus time of location, the last curve counting as -1 when it is compared with the first one. */
double cyclicPosition(vxCurveLocation *location, vxCurve *curve, const vxCurve *otherCurve)
{
    const bool wraps = curve->isLast() && otherCurve->isFirst();
    return (wraps ? -1 : curve->index()) + location->getTime();
}

} // namespace

bool vxCurveLocation::equals(vxCurveLocation *other, bool ignoreOther)
{
    if (!other)
        return false;
    if (other == this)
        return true;
    vxCurve *curve1 = getCurve();
    vxCurve *curve2 = other->getCurve();
    vxPath *common = pathOf(curve1);
    if (common != pathOf(curve2) || !point.isClose(other->point, closeDistance))
        return false;

    const bool sameTime =
        curve1 && curve2 &&
        std::fabs(cyclicPosition(this, curve1, curve2) - cyclicPosition(other, curve2, curve1)) < timeMargin;
    if (!sameTime) {
        const double apart = std::fabs(getOffset() - other->getOffset());
        const bool meetsAtClosing = common && std::fabs(common->getLength() - apart) < closeDistance;
        if (!(apart < closeDistance) && !meetsAtClosing)
            return false;
    }
    if (ignoreOther)
        return true;
    return intersection ? intersection->equals(other->intersection, true) : !other->intersection;
}

vxCurveLocation *vxCurveLocation::insert(QList<vxCurveLocation *> &list, vxCurveLocation *loc, bool merge)
{
    if (!loc)
        return nullptr;
    if (merge) {
        for (vxCurveLocation *entry : qAsConst(list)) {
            if (!entry->point.isClose(loc->point, closeDistance))
                break;
            if (!loc->equals(entry, false))
                continue;
            if (loc->overlap) {
                entry->overlap = true;
                if (entry->intersection)
                    entry->intersection->overlap = true;
            }
            return entry;
        }
    }
    const Place place(loc);
    // A search finds its meetings mostly in order. Lists that are not merged into may be out of order, where
    // bisection decides (see insertOneByOne()).
    if (merge && !list.isEmpty() && !(place < Place(list.last()))) {
        list.append(loc);
        return loc;
    }
    list.insert(bisect(list.size(), [&](int i) { return place < Place(list.at(i)); }), loc);
    return loc;
}

namespace {

/** A location, which may be null, with what is compared of it. */
struct Entry {
    Place place;
    vxCurveLocation *location;

    explicit Entry(vxCurveLocation *l = nullptr) : place(l ? Place(l) : Place()), location(l) {}
    bool operator<(const Entry &other) const { return place < other.place; }
};

/** Of a small search on the stack. */
using Entries = QVarLengthArray<Entry, 24>;

bool havePositions(const Entries &entries)
{
    return std::none_of(entries.begin(), entries.end(),
                        [](const Entry &e) { return std::isnan(e.place.position); });
}

/** Stable; the standard's takes memory for however few. */
void sort(Entries &entries)
{
    constexpr int few = 16;
    if (entries.size() > few) {
        std::stable_sort(entries.begin(), entries.end());
        return;
    }
    for (Entry *entry = entries.begin(); entry != entries.end(); ++entry)
        std::rotate(std::upper_bound(entries.begin(), entry, *entry), entry, entry + 1);
}

/** Whether partners all belong behind own, whatever its order: paths of a second operand are younger. */
bool comeBehind(const Entries &partners, const Entries &own)
{
    const auto byPath = [](const Entry &a, const Entry &b) { return a.place.pathId < b.place.pathId; };
    return partners.isEmpty() || byPath(*std::max_element(own.begin(), own.end(), byPath),
                                        *std::min_element(partners.begin(), partners.end(), byPath));
}

/**
 * What inserting partners one by one comes to, each behind its equals, where own is in order or they all come
 * behind it.
 */
void merge(const Entries &own, Entries &partners, vxCurveLocation **places)
{
    sort(partners);
    auto partner = partners.cbegin();
    for (const Entry &entry : own) {
        for (; partner != partners.cend() && *partner < entry; ++partner)
            *places++ = partner->location;
        *places++ = entry.location;
    }
    for (; partner != partners.cend(); ++partner)
        *places++ = partner->location;
}

/** Where the list is out of order or a position is unknown, places in it are what bisection says. */
void insertOneByOne(const Entries &own, const Entries &partners, vxCurveLocation **places)
{
    std::vector<const Entry *> ordered;
    ordered.reserve(size_t(own.size()));
    for (const Entry &entry : own)
        ordered.push_back(&entry);
    vx::InsertionList<const Entry *> order(ordered);
    for (const Entry &partner : partners) {
        const int place = bisect(int(order.size()), [&](int i) { return partner < *order.at(size_t(i)); });
        order.insert(size_t(place), &partner);
    }
    order.forEach([&places](const Entry *entry) { *places++ = entry->location; });
}

} // namespace

QList<vxCurveLocation *> vxCurveLocation::expand(const QList<vxCurveLocation *> &list)
{
    if (list.isEmpty())
        return list;
    Entries own;
    Entries partners;
    own.reserve(list.size());
    partners.reserve(list.size());
    for (vxCurveLocation *location : list)
        own.append(Entry(location));
    // The last one's partner is inserted first.
    for (int i = list.size() - 1; i >= 0; --i) {
        if (list.at(i) && list.at(i)->intersection)
            partners.append(Entry(list.at(i)->intersection));
    }
    const bool isOrdered =
        havePositions(partners) &&
        (comeBehind(partners, own) || (havePositions(own) && std::is_sorted(own.begin(), own.end())));
    QList<vxCurveLocation *> result;
    vxCurveLocation **places = vx::lengthen(result, own.size() + partners.size());
    if (isOrdered)
        merge(own, partners, places);
    else
        insertOneByOne(own, partners, places);
    return result;
}

void vxCurveLocation::releaseAll(const QList<vxCurveLocation *> &list)
{
    // All are held until the last is released: a list may name one several times.
    const vx::LocationOwner owner(list);
}
