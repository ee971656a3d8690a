#pragma once

#include "vxcubic_p.h"
#include "vxcurvevalues_p.h"
#include "vxpath.h"

#include <algorithm>
#include <cmath>

/**
 * Flattening by recursive halving, without allocation; vxPathIt keeps the pieces, vxPath::flatten() their
 * ends.
 */
namespace vx {

struct Flattening {
    /** Path units; see isFlatEnough(). */
    double flatness;
    /** Curve time; a piece of at most this span is not halved any more. */
    double minSpan;
    bool ignoreStraight;

    /**
     * A plain reciprocal, not a power of two: a limit of 100 allows for seven halvings, not six, since a span
     * of 1/64 is still above 1/100.
     */
    static double spanFor(int maxRecursion) { return 1.0 / std::max(maxRecursion, 1); }
};

inline bool isFinite(const Cubic &c)
{
    return std::all_of(c.v, c.v + 8, [](double value) { return std::isfinite(value); });
}

/**
 * Calls visit(piece, end time, chord length) for the pieces of c, which covers the times minT to maxT, in
 * order.
 */
template <typename Visitor>
void visitFlatPieces(const Cubic &c, double minT, double maxT, const Flattening &how, Visitor &visit)
{
    // NaN and infinity would be halved down to the smallest span for nothing.
    const bool halve = maxT - minT > how.minSpan && !(how.ignoreStraight && isStraight(c)) &&
                       !isFlatEnough(c, how.flatness) && isFinite(c);
    if (halve) {
        Cubic left, right;
        subdivide(c, 0.5, left, right);
        const double middle = (minT + maxT) / 2;
        visitFlatPieces(left, minT, middle, how, visit);
        visitFlatPieces(right, middle, maxT, how, visit);
        return;
    }
    const double chord = c.p0().getDistance(c.p3());
    if (chord > 0)
        visit(c, maxT, chord);
}

/** Calls visit(curve index, curve) for every curve of path, the closing one last; matrix may be null. */
template <typename Visitor>
void visitCurves(const vxPath &path, const vxMatrix *matrix, Visitor visit)
{
    const QList<vxSegment *> segments = path.getSegments();
    const int n = segments.count();
    const int curves = path.isClosed() ? n : n - 1;
    for (int i = 0; i < curves; ++i) {
        const vxSegment *a = segments.at(i);
        const vxSegment *b = segments.at(i + 1 < n ? i + 1 : 0);
        Cubic c = cubicBetween(*a, *b);
        if (matrix)
            toCubic(vxCurve::getValues(a, b, matrix), c);
        visit(i, c);
    }
}

} // namespace vx
