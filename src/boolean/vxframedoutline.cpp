#include "vxframedoutline_p.h"

#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxlocationowner_p.h"
#include "vxpath.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace vx {

namespace {

/**
 * Of the outline: lengths that agree within this are the same. Coarser than areas, since the quadrature of a
 * curve and of its parts differs by some 1e-5; what it must show is a stretch walked twice or not at all.
 */
constexpr double lengthMargin = 1e-4;

/**
 * Bound of the difference of two curves' lengths as vx::length() computes them: its quadrature has positive
 * weights that sum to 1, so it changes by no more than |B'| does anywhere, which is six times what control
 * points move by. Infinite where one is straight and measured by its chord.
 */
double lengthDifference(const Cubic &a, const Cubic &b)
{
    if (isStraight(a) != isStraight(b))
        return std::numeric_limits<double>::infinity();
    double square = 0;
    for (int i = 0; i < 8; i += 2) {
        const double dx = a.v[i] - b.v[i];
        const double dy = a.v[i + 1] - b.v[i + 1];
        square = std::max(square, dx * dx + dy * dy);
    }
    return 6 * std::sqrt(square);
}

/**
 * Whether two contours are the same curves but for small moves; then difference grows by a bound of the
 * difference of their lengths, and chords by the lengths of a's chords.
 */
bool runAlike(const FramedContour &a, const FramedContour &b, double &difference, double &chords)
{
    const size_t count = a.curves.size();
    if (count == 0 || count != b.curves.size())
        return false;
    const vxPoint start = a.curves.front().p0();
    const bool reversed = (a.signedArea < 0) != (b.signedArea < 0);
    const auto curveOfB = [&](size_t i) { return reversed ? b.curves[i].reversed() : b.curves[i]; };
    size_t k = 0;
    double nearest = std::numeric_limits<double>::infinity();
    for (size_t i = 0; i < count; ++i) {
        const double square = start.getDistance(reversed ? b.curves[i].p3() : b.curves[i].p0(), true);
        if (square < nearest) {
            nearest = square;
            k = i;
        }
    }
    for (const Cubic &c : a.curves) {
        difference += lengthDifference(c, curveOfB(k));
        chords += c.p0().getDistance(c.p3());
        k = reversed ? (k == 0 ? count - 1 : k - 1) : (k + 1 == count ? 0 : k + 1);
    }
    return true;
}

/** Whether contours paired by their size are, as mostly, the same curves but for small moves. */
bool areAlike(const std::vector<const FramedContour *> &traced,
              const std::vector<const FramedContour *> &expected)
{
    double difference = 0;
    double chords = 0;
    for (size_t i = 0; i < traced.size(); ++i) {
        if (!runAlike(*traced[i], *expected[i], difference, chords))
            return false;
    }
    // A tenth of the margin covers rounding, and that a quadrature may fall a little short of the chord.
    return difference <= lengthMargin / 10 * chords;
}

bool lengthsAgree(const FramedOutline &traced, const FramedOutline &expected)
{
    const double length = expected.length();
    return std::fabs(traced.length() - length) <= lengthMargin * length;
}

/** Whether contours cross themselves or each other, or run together. */
bool crossThemselves(const QVector<vxPath *> &contours)
{
    XPath copy;
    for (const vxPath *contour : contours)
        copy.addChild(contour->clone(), -1);
    const QList<vxCurveLocation *> crossings = copy.getCrossings(nullptr);
    const LocationOwner owner(crossings);
    return !crossings.isEmpty();
}

} // namespace

FramedContour::FramedContour(std::vector<Cubic> originals, const Frame &frame) : curves(std::move(originals))
{
    for (Cubic &c : curves) {
        c = frame.toFrame(c);
        signedArea += vx::signedArea(c);
    }
}

double FramedOutline::signedArea() const
{
    double area = 0;
    for (const FramedContour &contour : contours)
        area += contour.signedArea;
    return area;
}

double FramedOutline::length() const
{
    double length = 0;
    for (const FramedContour &contour : contours) {
        for (const Cubic &c : contour.curves)
            length += vx::length(c);
    }
    return length;
}

std::vector<const FramedContour *> FramedOutline::bySize() const
{
    std::vector<const FramedContour *> result;
    result.reserve(contours.size());
    for (const FramedContour &contour : contours)
        result.push_back(&contour);
    std::sort(result.begin(), result.end(), [](const FramedContour *a, const FramedContour *b) {
        return std::fabs(a->signedArea) < std::fabs(b->signedArea);
    });
    return result;
}

FramedOutline outlineOf(const QVector<vxPath *> &paths, const Frame &frame)
{
    FramedOutline outline;
    outline.contours.reserve(size_t(paths.size()));
    for (const vxPath *path : paths) {
        if (path->isEmpty())
            continue;
        const QList<vxSegment *> &segments = path->_segments();
        const int count = path->_countCurves();
        std::vector<Cubic> curves;
        curves.reserve(size_t(count));
        for (int i = 0; i < count; ++i)
            curves.push_back(curveFrom(segments, i));
        outline.contours.emplace_back(std::move(curves), frame);
    }
    return outline;
}

FramedOutline outlineOf(const std::vector<Contour> &contours, const Arrangement &arrangement)
{
    FramedOutline outline;
    outline.contours.reserve(contours.size());
    for (const Contour &contour : contours) {
        std::vector<Cubic> curves = arrangement.curvesOf(contour);
        if (!curves.empty())
            outline.contours.emplace_back(std::move(curves), arrangement.frame());
    }
    return outline;
}

bool outlinesAgree(const QVector<vxPath *> &paths, const FramedOutline &traced, const FramedOutline &expected,
                   double areaMargin)
{
    if (traced.contours.size() != expected.contours.size())
        return false;
    const std::vector<const FramedContour *> tracedBySize = traced.bySize();
    const std::vector<const FramedContour *> expectedBySize = expected.bySize();
    const auto isAsLarge = [areaMargin](const FramedContour *a, const FramedContour *b) {
        return std::fabs(std::fabs(a->signedArea) - std::fabs(b->signedArea)) <= areaMargin;
    };
    return std::equal(tracedBySize.begin(), tracedBySize.end(), expectedBySize.begin(), isAsLarge) &&
           (areAlike(tracedBySize, expectedBySize) ||
            (lengthsAgree(traced, expected) && !crossThemselves(paths)));
}

} // namespace vx
