#include "vxaudit_p.h"

#include "vxarrangement_p.h"
#include "vxpath.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vx {

namespace {

/** Of the square on the operands' longer side: areas that agree within this are the same. */
constexpr double areaMargin = 1e-9;
/**
 * Of the outline: lengths that agree within this are the same. Coarser than areas, since the quadrature of a
 * curve and of its parts differs by some 1e-5; what it must show is a stretch walked twice or not at all.
 */
constexpr double lengthMargin = 1e-4;

/**
 * Sizes and coordinates, in path units, between which the engine's absolute tolerances mean what they should:
 * smaller features than closeDistance do not count, and far off the numbers themselves are coarser than it.
 */
constexpr double leastExtent = 1;
constexpr double greatestCoordinate = 1e6;

bool isOutOfScale(const QVector<const XPath *> &operands)
{
    double least = 0;
    double greatest = 0;
    double width = 0;
    for (const XPath *operand : operands) {
        if (!operand)
            continue;
        const vxRect box = operand->getBounds(vxBoundOpt::geometric(), vxStyle());
        least = std::min({ least, box.x, box.y });
        greatest = std::max({ greatest, box.right(), box.bottom() });
        width = std::max({ width, box.width, box.height });
    }
    return width < leastExtent || least < -greatestCoordinate || greatest > greatestCoordinate;
}

/** Sums over a set of contours, in the working frame: about a near origin no digits are lost far off. */
struct Outline {
    double signedArea = 0;
    double length = 0;
    /** Areas of the contours without sign, ascending. */
    std::vector<double> areas;

    Outline(const QVector<vxPath *> &paths, const Frame &frame)
    {
        for (const vxPath *path : paths) {
            double area = 0;
            const QList<vxCurve *> curves = path->getCurves();
            for (const vxCurve *curve : curves) {
                const Cubic c = frame.toFrame(curve->_cubic());
                area += vx::signedArea(c);
                length += vx::length(c);
            }
            signedArea += area;
            areas.push_back(std::fabs(area));
        }
        std::sort(areas.begin(), areas.end());
    }
};

/**
 * Whether the engine traced what the arrangement did: the same area and length in all, in as many contours of
 * the same size (lobes that hang together at a point are contours of their own).
 */
bool agrees(const QVector<vxPath *> &tracedPaths, const QVector<vxPath *> &expectedPaths,
            const Arrangement &arrangement, const RunNotes &notes)
{
    const Frame &frame = arrangement.frame();
    const Outline traced(tracedPaths, frame);
    const Outline expected(expectedPaths, frame);
    const double extent = arrangement.extent() * frame.scale;
    const double margin = areaMargin * extent * extent;
    const double signedArea = arrangement.selection().signedArea * frame.scale * frame.scale;
    return traced.areas.size() == expected.areas.size() &&
           std::fabs(traced.signedArea - (notes.counterClockwise ? -signedArea : signedArea)) <= margin &&
           std::fabs(traced.length - expected.length) <= lengthMargin * expected.length &&
           std::equal(traced.areas.begin(), traced.areas.end(), expected.areas.begin(),
                      [margin](double a, double b) { return std::fabs(a - b) <= margin; });
}

void releaseAll(const QVector<vxPath *> &paths)
{
    for (vxPath *path : paths)
        path->release();
}

} // namespace

QVector<vxPath *> audit(const QVector<const XPath *> &operands, SetOperation operation,
                        const QVector<vxPath *> &traced, const RunNotes &notes, AuditMode mode,
                        vxBooleanReport &report)
{
    report = vxBooleanReport();
    report.limitHit = notes.search.limitReached;
    report.predictedArea = std::numeric_limits<double>::quiet_NaN();
    if (mode == AuditMode::Never ||
        (mode == AuditMode::WhereDoubtful && !notes.any() && !isOutOfScale(operands)))
        return traced;

    Arrangement arrangement(operands);
    const bool solved = arrangement.solve(operation);
    report.predictedArea = arrangement.selection().area;
    report.snapping = arrangement.snapping();
    report.oddNodes = arrangement.selection().oddNodes;
    if (!solved) {
        report.verdict = vxBooleanReport::Doubtful;
        return traced;
    }
    QVector<vxPath *> expected = arrangement.trace();
    bool same = agrees(traced, expected, arrangement, notes);
    if (!same) {
        releaseAll(expected);
        arrangement.refine(operation);
        report.predictedArea = arrangement.selection().area;
        report.snapping = arrangement.snapping();
        expected = arrangement.trace();
        same = agrees(traced, expected, arrangement, notes);
    }
    report.verdict = same ? vxBooleanReport::Audited : vxBooleanReport::Replaced;
    releaseAll(same ? expected : traced);
    return same ? traced : expected;
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
