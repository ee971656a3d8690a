#include "vxsameoutline_p.h"

#include "vxpath.h"
#include "vxsegment.h"
#include "vxtolerance.h"

using namespace vxTolerance;

namespace vx {

namespace {

bool sameSegment(const vxSegment &a, const vxSegment &b, bool reversed)
{
    const vxPoint &handleIn = reversed ? b.handleOut : b.handleIn;
    const vxPoint &handleOut = reversed ? b.handleIn : b.handleOut;
    return a.point.isClose(b.point, closeDistance) && a.handleIn.isClose(handleIn, closeDistance) &&
           a.handleOut.isClose(handleOut, closeDistance);
}

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

} // namespace

bool OutlineComparison::areSame(const vxPath &path1, const vxPath &path2)
{
    if (m_different.count({ &path1, &path2 }) != 0)
        return false;
    const bool same = sameOutline(path1, path2);
    if (!same)
        m_different.emplace(&path1, &path2);
    return same;
}

} // namespace vx
