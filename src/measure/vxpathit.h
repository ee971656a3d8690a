#pragma once

#include "pzgraphics_global.h"

#include <QVector>

class vxMatrix;
class vxPath;

/**
 * The flat pieces of all curves of a path, in path order, with their running length.
 *
 * A curve is halved until it is flat enough, straight (when that is asked for) or its share of the curve's
 * time is at most 1 / maxRecursion. Pieces whose ends coincide are left out. A curve that is not finite is
 * one piece.
 */
class PZGRAPHICS_EXPORT vxPathIt
{
public:
    struct Part {
        /** Length of all pieces up to and including this one. */
        double offset;
        /** Values of the piece, see vxCurve. */
        QVector<double> curve;
        /** Index of the path's curve that it belongs to. */
        int index;
        /** Its end time on that curve. */
        double time;
    };

    /**
     * flatness in path units; maxRecursion below 1 counts as 1; matrix (may be null) maps the curves first. A
     * null path has no parts.
     */
    vxPathIt(const vxPath *path, double flatness, int maxRecursion, bool ignoreStraight,
             const vxMatrix *matrix);

    /**
     * Appends the parts of one curve, given the range of its time that the values stand for; at most some
     * million, however small minSpan is, and one where the range is not finite.
     */
    void computeParts(const QVector<double> &values, int index, double minT, double maxT, double flatness,
                      double minSpan, bool ignoreStraight);

    QVector<Part> parts;
    /** Sum of the chord lengths of all parts. */
    double length = 0;
};
