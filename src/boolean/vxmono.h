#pragma once

#include "pzgraphics_global.h"

#include <QtGlobal>

/** One y-monotone piece of a path's outline, for counting windings; owned by the path that made it. */
struct PZGRAPHICS_EXPORT vxMono {
    /** Curve values in absolute path units: start, control points, end as x, y pairs. */
    double values[8];
    /** +1 when y does not decrease from start to end, -1 when it does, 0 for a horizontal piece. */
    qint32 winding = 0;
    /** On the first piece of a path: its last piece whose winding is not 0. Null on every other piece. */
    vxMono *last = nullptr;
};

/** Winding count of a point. */
struct PZGRAPHICS_EXPORT vxWinding {
    /** Never negative. */
    qint32 winding = 0;
    /** Exactly one side of the point has no winding: the point lies on the outline of the filled area. */
    bool contour = false;
};
