#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxlocationowner_p.h"
#include "vxpath.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace vxTolerance;

namespace {

vxPath *pathOf(vxCurve *curve)
{
    return curve ? curve->path() : nullptr;
}

/** Sorting key of a location: its path, and within that curve index plus time. */
struct Place {
    const vxPath *path;
    double position;

    explicit Place(vxCurveLocation *location)
    {
        vxCurve *curve = location->getCurve();
        path = pathOf(curve);
        position = (curve ? curve->index() : -1) + location->time;
    }
    quint32 pathId() const { return path ? path->id : 0; }
    /** Ids are compared, not subtracted: they are unsigned. */
    bool isBefore(const Place &other) const
    {
        return path == other.path ? position - other.position < 0 : pathId() < other.pathId();
    }
};

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
    int lo = 0;
    int hi = list.size() - 1;
    while (lo <= hi) {
        const int mid = (lo + hi) >> 1;
        if (place.isBefore(Place(list.at(mid))))
            hi = mid - 1;
        else
            lo = mid + 1;
    }
    list.insert(lo, loc);
    return loc;
}

namespace {

/** A location with what is compared of it. */
struct Entry {
    quint32 pathId;
    double position;
    vxCurveLocation *location;

    explicit Entry(vxCurveLocation *l) : location(l)
    {
        const Place place(l);
        pathId = place.pathId();
        position = place.position;
    }
    bool operator<(const Entry &other) const
    {
        return pathId != other.pathId ? pathId < other.pathId : position < other.position;
    }
};

bool havePositions(const std::vector<Entry> &entries)
{
    return std::none_of(entries.begin(), entries.end(),
                        [](const Entry &e) { return std::isnan(e.position); });
}

/** expand() where the list is ordered: insertions one by one would end up in the same order. */
bool mergePartners(const QList<vxCurveLocation *> &list, QList<vxCurveLocation *> &result)
{
    std::vector<Entry> own;
    std::vector<Entry> partners;
    for (vxCurveLocation *location : list) {
        if (!location)
            return false;
        own.emplace_back(location);
        if (location->intersection)
            partners.emplace_back(location->intersection);
    }
    // Where the list is out of order or a position is unknown, places in it are what bisection says.
    if (!havePositions(own) || !havePositions(partners) || !std::is_sorted(own.begin(), own.end()))
        return false;
    // The last one's partner is inserted first, each behind its equals.
    std::reverse(partners.begin(), partners.end());
    std::stable_sort(partners.begin(), partners.end());
    std::vector<Entry> merged;
    merged.reserve(own.size() + partners.size());
    std::merge(own.begin(), own.end(), partners.begin(), partners.end(), std::back_inserter(merged));
    result.reserve(int(merged.size()));
    for (const Entry &entry : merged)
        result.append(entry.location);
    return true;
}

} // namespace

QList<vxCurveLocation *> vxCurveLocation::expand(const QList<vxCurveLocation *> &list)
{
    QList<vxCurveLocation *> result;
    if (mergePartners(list, result))
        return result;
    result = list;
    for (int i = list.size() - 1; i >= 0; --i) {
        if (list.at(i))
            insert(result, list.at(i)->intersection, false);
    }
    return result;
}

std::vector<vxCurveLocation *> vx::withPartners(const QList<vxCurveLocation *> &list)
{
    std::vector<vxCurveLocation *> all;
    all.reserve(size_t(list.size()) * 2);
    for (vxCurveLocation *location : list) {
        if (!location)
            continue;
        all.push_back(location);
        if (location->intersection)
            all.push_back(location->intersection);
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

void vxCurveLocation::releaseAll(const QList<vxCurveLocation *> &list)
{
    for (vxCurveLocation *location : vx::withPartners(list)) {
        if (location->refCount == 0)
            location->release();
    }
}
