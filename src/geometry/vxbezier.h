#pragma once

#include "vxpoint.h"

#include <QVector>

class QPointF;
class QRectF;
class vxRect;

/**
 * One cubic Bézier in path units: start, first and second control point, end; and arcs as sequences of them.
 */
class PZGRAPHICS_EXPORT vxBezier
{
public:
    double x1 = 0, y1 = 0;
    double x2 = 0, y2 = 0;
    double x3 = 0, y3 = 0;
    double x4 = 0, y4 = 0;

    static vxBezier fromPoints(const vxPoint &p1, const vxPoint &p2, const vxPoint &p3, const vxPoint &p4);

    /**
     * Cuts at curve time t: left gets the part before t, this becomes the part after it. Nothing happens when
     * left is null or t not finite.
     */
    void parameterSplitLeft(double t, vxBezier *left);
    /**
     * The part between two curve times; all of it for times that are not finite, the end point for t0 = 1.
     */
    vxBezier bezierOnInterval(double t0, double t1) const;

    // --- arcs: vxbezier_arc.cpp ---

    /** Curve time on a quarter-arc Bézier that belongs to a polar angle in [0, 90] degrees. */
    static double arcAngle(double angle);
    /**
     * Appends the control points of an elliptic arc to curves, three per cubic (control, control, end), and
     * returns the arc's start point.
     *
     * rect frames the whole ellipse. Angles are in degrees, counterclockwise on screen from the right-hand
     * end of the horizontal axis; the sweep is limited to a full turn either way. An empty rect gives (0, 0)
     * and nothing appended; so does a parameter that is not finite, with a warning. An arc of no length
     * appends nothing.
     */
    static vxPoint arcToBezier(const vxRect &rect, double startAngle, double sweepLength,
                               QVector<vxPoint> &curves);
    static QPointF arcToBezier(const QRectF &rect, double startAngle, double sweepLength,
                               QVector<QPointF> &curves);
};
