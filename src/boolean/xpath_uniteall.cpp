#include "xpath.h"

#include "vxarrangement_p.h"

#include <memory>

namespace {

/**
 * Where one arrangement of all does not close: pair by pair, so that one doubtful place does not spoil the
 * rest.
 */
XPath *uniteInTurn(const QList<XPath *> &paths, vxBooleanReport &report)
{
    auto result = std::make_unique<XPath>();
    for (XPath *path : paths) {
        vxBooleanReport step;
        result.reset(XPath::computeBoolean(path, result.get(), 2, step));
        if (step.verdict == vxBooleanReport::Doubtful)
            report = step;
    }
    return result.release();
}

bool isArea(const XPath *path)
{
    return path && !path->children.isEmpty() &&
           !(path->children.size() == 1 && !path->children.first()->isClosed());
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
        if (!isArea(path))
            continue;
        areas.append(path);
        operands.append(path);
    }
    vx::Arrangement arrangement(operands);
    const bool solved = arrangement.solve(vx::Operation::Unite);
    report.verdict = vxBooleanReport::Audited;
    report.predictedArea = arrangement.selection().area;
    report.snapping = arrangement.snapping();
    report.oddNodes = arrangement.selection().oddNodes;
    return solved ? createResult(arrangement.trace(), false, nullptr, nullptr) : uniteInTurn(areas, report);
}
