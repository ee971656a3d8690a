#pragma once

#include "pzgraphics_global.h"
#include "vxpoint.h"

#include <QVector>

class XPath;

/**
 * The arrangement of two paths' curves as a boolean's audit sees it, for drawing and for tests: every curve
 * cut where it meets another, every stretch with what is filled on its two sides. Coordinates in the paths'
 * units; a stretch's left and right are those of its direction, y down.
 */
struct PZGRAPHICS_EXPORT vxArrangementView {
    struct Stretch {
        /** Curve values: eight doubles. */
        QVector<double> values;
        int startNode = -1;
        int endNode = -1;
        /** Sum of 1 where the first path is filled and 2 where the second is. */
        int filledLeft = 0;
        int filledRight = 0;
        /** Part of the operation's outline; with reversed, walked against its direction. */
        bool kept = false;
        bool reversed = false;
    };

    struct Node {
        vxPoint point;
        /** Kept stretches that leave the node less those that enter it: not 0 is a doubt. */
        int balance = 0;
    };

    QVector<Stretch> stretches;
    QVector<Node> nodes;
    /** Area of the operation's result in square path units. */
    double area = 0;
    /** Distance in path units within which ends were joined. */
    double snapping = 0;

    /** op 1 intersect, 2 unite, 3 subtract, 4 exclude; any other, and empty paths, give an empty view. */
    static vxArrangementView of(const XPath &path1, const XPath &path2, int op);
};
