#pragma once

#include "vxcubic_p.h"
#include "vxcurvevalues_p.h"
#include "vxpath.h"
#include "xpath.h"

#include <algorithm>

/** The outlines of shapes as they are filled: a contour that is open is closed by a line. */
namespace vx {

/** Number of curves around a path's filled area: its own, and the line that closes an open one. */
inline int outlineSize(const vxPath &path)
{
    const bool hasClosingLine = !path.isClosed() && path._segments().size() > 1;
    return path._countCurves() + (hasClosingLine ? 1 : 0);
}

/** The i-th of them. */
inline Cubic outlineCurve(const vxPath &path, int i)
{
    const QList<vxSegment *> &segments = path._segments();
    if (i + 1 == segments.size() && !path.isClosed())
        return Cubic::fromLine(segments.last()->point, segments.first()->point);
    return curveFrom(segments, i);
}

/** Whether all contours are closed, so that every vertex has a curve on both sides. */
inline bool areClosed(const XPath &path)
{
    return std::all_of(path.children.begin(), path.children.end(),
                       [](const vxPath *child) { return child->isClosed(); });
}

/** Whether a path is a line, of which booleans cut pieces, and no shape. */
inline bool isSingleOpen(const XPath &path)
{
    return path.children.size() == 1 && !path.children.first()->isClosed();
}

inline int countSegments(const XPath &path)
{
    int count = 0;
    for (const vxPath *child : path.children)
        count += child->_segments().size();
    return count;
}

} // namespace vx
