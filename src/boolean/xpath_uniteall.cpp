#include "xpath.h"

#include "vxarrangement_p.h"
#include "vxoperation_p.h"
#include "vxoutline_p.h"

#include <memory>

namespace {

/**
 * Where one arrangement of all does not close or is too coarse: pair by pair, so that one doubtful place does
 * not spoil the rest. The report is that of the least certain step, with the area of the last.
 */
XPath *uniteInTurn(const QList<XPath *> &paths, vxBooleanReport &report)
{
    auto result = std::make_unique<XPath>();
    vxBooleanReport worst;
    vxBooleanReport step;
    for (XPath *path : paths) {
        // A lone open contour is cut as the first operand; as the second it is filled.
        const bool isOpen = vx::isSingleOpen(*path);
        result.reset(XPath::computeBoolean(isOpen ? result.get() : path, isOpen ? path : result.get(),
                                           vx::Unite, step));
        if (step.verdict >= worst.verdict)
            worst = step;
    }
    report = worst;
    report.predictedArea = step.predictedArea;
    return result.release();
}

} // namespace

XPath *XPath::uniteAll(const QList<XPath *> &paths)
{
    vxBooleanReport report;
    return uniteAll(paths, report);
}

XPath *XPath::uniteAll(const QList<XPath *> &paths, vxBooleanReport &report)
{
    report = vxBooleanReport();
    QList<XPath *> areas;
    QVector<const XPath *> operands;
    for (XPath *path : paths) {
        if (!path || path->children.isEmpty())
            continue;
        areas.append(path);
        operands.append(path);
    }
    vx::Arrangement arrangement(operands);
    const bool isSolved = arrangement.solve(vx::Operation::Unite);
    if (isSolved && !arrangement.isExact(vx::Operation::Unite))
        arrangement.refine(vx::Operation::Unite);
    if (!isSolved || !arrangement.isReliable(vx::Operation::Unite))
        return uniteInTurn(areas, report);
    report.verdict = vxBooleanReport::Audited;
    report.predictedArea = arrangement.selection().area;
    report.snapping = arrangement.snapping();
    return createResult(arrangement.trace(), false, nullptr, nullptr);
}
