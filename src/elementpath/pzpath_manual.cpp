#include "pzpath.h"
#include "vxlengthindex_p.h"
#include "vxnumeric.h"
#include "vxpath.h"
#include "xpath.h"

#include <cmath>

namespace {

/** Noise argument per path unit: the wobble has a wavelength of some twenty units. */
constexpr double noiseFrequency = 0.05;
/** More samples than this on one contour are a mistaken step, not a drawing. */
constexpr double maxSamples = 1e8;

bool isFinite(const vxPoint &p)
{
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/** Adds the displaced samples at step, 2 step, ... below the contour's length. */
void addSamples(const vxPath &contour, double amplitude, double step, PZPath &outline)
{
    const vxLengthIndex places(contour);
    const double length = places.length();
    if (!std::isfinite(length))
        return;
    vxPoint sample;
    for (double s = step; s < length; s += step) {
        vxLengthIndex::Place place;
        // A place that cannot be found repeats the sample before it (at first the origin).
        if (places.placeAt(s, place)) {
            const double offset = amplitude * vxNumeric::perlinNoise_1D(s * noiseFrequency);
            const vxPoint tangent = place.tangent();
            const vxPoint moved(place.point.x + tangent.y * offset, place.point.y - tangent.x * offset);
            if (!isFinite(moved))
                continue;
            sample = moved;
        }
        outline.lineTo(sample.toPt());
    }
}

PZPath drawByHand(const vxPath &contour, double amplitude, double step)
{
    PZPath outline;
    const vxPoint start = contour.getFirstSegment()->point;
    outline.moveTo(start.toPt());
    addSamples(contour, amplitude, step, outline);
    // The ends stay in place, so that what met before still meets.
    outline.lineTo((contour.isClosed() ? start : contour.getLastSegment()->point).toPt());
    if (contour.isClosed())
        outline.closeSubpath();
    return outline;
}

} // namespace

void PZPath::manualPath(PZPath &source, double amplitude, double step)
{
    if (source.isEmpty() || !(step > 0))
        return;
    XPath xpath;
    source.toXPath(xpath);
    for (const vxPath *child : xpath.children) {
        const double length = child->getLength();
        if (std::isfinite(length) && length / step > maxSamples)
            return;
    }
    PZPath result;
    for (const vxPath *child : xpath.children) {
        if (!child->isEmpty())
            result.addPath(drawByHand(*child, amplitude, step), false);
    }
    *this = result;
}
