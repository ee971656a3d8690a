#include "vxaudit_p.h"

#include "vxarrangement_p.h"
#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxlocationowner_p.h"
#include "vxpath.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace vx {

namespace {

/** Of the area of the operands' common box: areas that agree within this are the same. */
constexpr double areaMargin = 1e-9;
/** Of the same: an answer that snapping may have moved by more replaces nothing. */
constexpr double doubtfulMargin = 1e-6;
/**
 * Of the outline: lengths that agree within this are the same. Coarser than areas, since the quadrature of a
 * curve and of its parts differs by some 1e-5; what it must show is a stretch walked twice or not at all.
 */
constexpr double lengthMargin = 1e-4;

/** Area of the operands' common box. */
double areaOfBox(const QVector<const XPath *> &operands)
{
    vxRect box;
    for (const XPath *operand : operands) {
        if (operand)
            box = box.unite(operand->getBounds(vxBoundOpt::geometric(), vxStyle()));
    }
    return box.getArea();
}

/** Curves of a contour in the working frame: about a near origin no digits are lost far off. */
struct FramedContour {
    std::vector<Cubic> curves;
    double signedArea = 0;

    FramedContour(std::vector<Cubic> originals, const Frame &frame) : curves(std::move(originals))
    {
        for (Cubic &c : curves) {
            c = frame.toFrame(c);
            signedArea += vx::signedArea(c);
        }
    }
};

/** A set of contours. */
struct Outline {
    std::vector<FramedContour> contours;

    double signedArea() const
    {
        double area = 0;
        for (const FramedContour &contour : contours)
            area += contour.signedArea;
        return area;
    }

    double length() const
    {
        double length = 0;
        for (const FramedContour &contour : contours) {
            for (const Cubic &c : contour.curves)
                length += vx::length(c);
        }
        return length;
    }

    /** By area without sign, ascending. */
    std::vector<const FramedContour *> bySize() const
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
};

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

Outline outlineOf(const QVector<vxPath *> &paths, const Frame &frame)
{
    Outline outline;
    outline.contours.reserve(size_t(paths.size()));
    for (const vxPath *path : paths) {
        if (path->isEmpty())
            continue;
        const QList<vxSegment *> &segments = path->_segments();
        const int count = path->isClosed() ? segments.size() : segments.size() - 1;
        std::vector<Cubic> curves;
        curves.reserve(size_t(std::max(count, 0)));
        for (int i = 0; i < count; ++i)
            curves.push_back(curveFrom(segments, i));
        outline.contours.emplace_back(std::move(curves), frame);
    }
    return outline;
}

Outline outlineOf(const std::vector<Contour> &contours, const Arrangement &arrangement)
{
    Outline outline;
    outline.contours.reserve(contours.size());
    for (const Contour &contour : contours) {
        std::vector<Cubic> curves = arrangement.curvesOf(contour);
        if (!curves.empty())
            outline.contours.emplace_back(std::move(curves), arrangement.frame());
    }
    return outline;
}

/** Whether contours that were paired by their size are the same curves but for small moves, as they mostly
 * are. */
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

bool lengthsAgree(const Outline &traced, const Outline &expected)
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

/** In square units of the frame. */
double areaMarginIn(const Arrangement &arrangement)
{
    const double scale = arrangement.frame().scale;
    return areaMargin * arrangement.boxArea() * scale * scale;
}

/** Whether the engine traced the arrangement's area in all. */
bool areasAgree(const Outline &traced, const Arrangement &arrangement, const RunNotes &notes)
{
    const double scale = arrangement.frame().scale;
    const double signedArea = arrangement.selection().signedArea * scale * scale;
    return std::fabs(traced.signedArea() - (notes.counterClockwise ? -signedArea : signedArea)) <=
           areaMarginIn(arrangement);
}

/**
 * Whether the engine traced what the arrangement did: the same length in all, in as many contours of the same
 * size (lobes that hang together at a point are contours of their own), which are the same curves or at least
 * as simple.
 */
bool outlinesAgree(const QVector<vxPath *> &paths, const Outline &traced, const Outline &expected,
                   const Arrangement &arrangement)
{
    const double margin = areaMarginIn(arrangement);
    if (traced.contours.size() != expected.contours.size())
        return false;
    const std::vector<const FramedContour *> tracedBySize = traced.bySize();
    const std::vector<const FramedContour *> expectedBySize = expected.bySize();
    const auto isAsLarge = [margin](const FramedContour *a, const FramedContour *b) {
        return std::fabs(std::fabs(a->signedArea) - std::fabs(b->signedArea)) <= margin;
    };
    return std::equal(tracedBySize.begin(), tracedBySize.end(), expectedBySize.begin(), isAsLarge) &&
           (areAlike(tracedBySize, expectedBySize) ||
            (lengthsAgree(traced, expected) && !crossThemselves(paths)));
}

/**
 * Without vertices on straight runs, and without contours of which nothing is left then. moved becomes a
 * bound of the area that this moved.
 */
QVector<vxPath *> simplified(const QVector<vxPath *> &paths, double &moved)
{
    QVector<vxPath *> kept;
    kept.reserve(paths.size());
    moved = 0;
    for (vxPath *path : paths) {
        const int count = path->_segments().size();
        const double area = path->getArea(path->isClosed(), true); // kept where tracing asked for it
        path->reduce(true);
        // Reducing changes nothing but where it drops a segment.
        if (path->_segments().size() != count)
            moved += std::fabs(path->getArea(false, true) - area);
        if (path->isEmpty())
            path->release();
        else
            kept.append(path);
    }
    return kept;
}

void releaseAll(const QVector<vxPath *> &paths)
{
    for (vxPath *path : paths)
        path->release();
}

} // namespace

QVector<vxPath *> audit(const QVector<const XPath *> &operands, Operation operation,
                        const QVector<vxPath *> &traced, const RunNotes &notes, AuditMode mode,
                        vxBooleanReport &report)
{
    report = vxBooleanReport();
    report.limitHit = notes.limitHit;
    report.predictedArea = std::numeric_limits<double>::quiet_NaN();
    const bool isSure = mode == AuditMode::WhereDoubtful && !notes.any();
    if (mode == AuditMode::Never || (isSure && !notes.settled))
        return traced;
    // What is compared is what the caller gets: vertices on straight runs drop out, within tolerances that
    // are absolute and an angle, which may move the area of a small or a long shape.
    double moved = 0;
    QVector<vxPath *> reduced;
    if (isSure) {
        reduced = simplified(traced, moved);
        if (moved == 0 || moved <= areaMargin * areaOfBox(operands))
            return reduced;
    }

    Arrangement arrangement(operands);
    const bool solved = arrangement.solve(operation);
    report.predictedArea = arrangement.selection().area;
    report.snapping = arrangement.snapping();
    report.oddNodes = arrangement.selection().oddNodes;
    if (!solved) {
        report.verdict = vxBooleanReport::Doubtful;
        return isSure ? reduced : traced;
    }
    if (!isSure)
        reduced = simplified(traced, moved);
    const Outline outline = outlineOf(reduced, arrangement.frame());
    std::optional<std::vector<Contour>> expected; // made where something is left to compare
    const auto isTraced = [&] {
        if (!areasAgree(outline, arrangement, notes))
            return false;
        expected = arrangement.contours();
        return outlinesAgree(reduced, outline, outlineOf(*expected, arrangement), arrangement);
    };
    // Areas that snapping may have moved tell nothing of the engine's: two ways of drawing one shape would be
    // snapped differently, and each agree with its own.
    bool same = arrangement.movedAtMost(areaMargin * arrangement.boxArea(), operation) && isTraced();
    if (!same) {
        arrangement.refine(operation, areaMargin * arrangement.boxArea());
        expected.reset();
        report.predictedArea = arrangement.selection().area;
        report.snapping = arrangement.snapping();
        same = isTraced();
    }
    report.verdict = same ? vxBooleanReport::Audited : vxBooleanReport::Replaced;
    if (same)
        return reduced;
    // Even, but joined over distances that show: that may be as wrong as what it would replace.
    if (!arrangement.movedAtMost(doubtfulMargin * arrangement.boxArea(), operation)) {
        report.verdict = vxBooleanReport::Doubtful;
        return reduced;
    }
    releaseAll(reduced);
    return arrangement.makePaths(expected ? *expected : arrangement.contours());
}

bool confirmsCleaning(const XPath &original, const XPath &copy)
{
    // Loops of one curve are drawn as two by the arrangement, so that a result with one could be either's.
    if (std::any_of(copy.children.begin(), copy.children.end(),
                    [](const vxPath *child) { return child->_segments().size() < 2; }))
        return false;
    RunNotes notes;
    notes.counterClockwise = !copy.isClockwise();
    QVector<vxPath *> contours;
    contours.reserve(copy.children.size());
    for (const vxPath *child : copy.children)
        contours.append(child->clone());
    vxBooleanReport report;
    releaseAll(audit({ &original }, Operation::Unite, contours, notes, AuditMode::Always, report));
    return report.verdict == vxBooleanReport::Audited;
}

} // namespace vx

const char *vxBooleanReport::verdictName() const
{
    switch (verdict) {
    case Plain:
        return "plain";
    case Audited:
        return "audited";
    case Replaced:
        return "replaced";
    case Doubtful:
        return "doubtful";
    }
    return "";
}
