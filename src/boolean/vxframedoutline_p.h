#pragma once

#include "vxarrangement_p.h"

#include <QVector>

#include <vector>

namespace vx {

/** Curves of a contour in an arrangement's frame: about a near origin no digits are lost far off. */
struct FramedContour {
    std::vector<Cubic> curves;
    double signedArea = 0;

    FramedContour(std::vector<Cubic> originals, const Frame &frame);
};

/** A set of contours, to be compared with others. */
struct FramedOutline {
    std::vector<FramedContour> contours;

    double signedArea() const;
    double length() const;
    /** By area without sign, ascending. */
    std::vector<const FramedContour *> bySize() const;
};

FramedOutline outlineOf(const QVector<vxPath *> &paths, const Frame &frame);
FramedOutline outlineOf(const std::vector<Contour> &contours, const Arrangement &arrangement);

/**
 * Whether the engine traced what the arrangement did: the same length in all, in as many contours of the same
 * size (lobes that hang together at a point are contours of their own), which are the same curves or at least
 * as simple. traced: of the paths; areaMargin: in square units of the frame.
 */
bool outlinesAgree(const QVector<vxPath *> &paths, const FramedOutline &traced, const FramedOutline &expected,
                   double areaMargin);

} // namespace vx
