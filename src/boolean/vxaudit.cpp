#include "vxaudit_p.h"

#include "vxarrangement_p.h"
#include "vxframedoutline_p.h"
#include "vxpath.h"
#include "vxrunnotes_p.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace vx {

namespace {

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

/** The arrangement of the operands, with which contours are compared. */
class ArrangementAudit
{
public:
    ArrangementAudit(const QVector<const XPath *> &operands, Operation operation, const RunNotes &notes,
                     vxBooleanReport &report)
        : m_arrangement(operands), m_operation(operation), m_notes(notes), m_report(report)
    {
    }

    /** False where not all nodes are balanced, so that the arrangement tells nothing. */
    bool solve()
    {
        const bool solved = m_arrangement.solve(m_operation);
        m_report.oddNodes = m_arrangement.selection().unbalancedNodes;
        reportSolution();
        return solved;
    }

    /** Gives simplified contours, or those of the arrangement in their place. After solve(). */
    AuditedContours judge(const QVector<vxPath *> &contours)
    {
        if (confirms(contours)) {
            m_report.verdict = vxBooleanReport::Audited;
            return { contours, true };
        }
        // Balanced, but joined over distances that show: that may be as wrong as what it would replace.
        if (!m_arrangement.isReliable(m_operation)) {
            m_report.verdict = vxBooleanReport::Doubtful;
            return { contours, false };
        }
        m_report.verdict = vxBooleanReport::Replaced;
        releaseAll(contours);
        return { m_arrangement.makePaths(m_expected ? *m_expected : m_arrangement.contours()), true };
    }

private:
    bool confirms(const QVector<vxPath *> &contours)
    {
        const FramedOutline outline = outlineOf(contours, m_arrangement.frame());
        // Areas that snapping may have moved tell nothing of the engine's: two ways of drawing one shape
        // would be snapped differently, and each agree with its own.
        if (m_arrangement.isExact(m_operation) && isTraced(contours, outline))
            return true;
        m_arrangement.refine(m_operation);
        m_expected.reset();
        reportSolution();
        return m_arrangement.resolvesContours() && isTraced(contours, outline);
    }

    bool isTraced(const QVector<vxPath *> &contours, const FramedOutline &outline)
    {
        if (!areasAgree(outline))
            return false;
        m_expected = m_arrangement.contours();
        return outlinesAgree(contours, outline, outlineOf(*m_expected, m_arrangement), areaMarginInFrame());
    }

    /** Whether the engine traced the arrangement's area in all. */
    bool areasAgree(const FramedOutline &traced) const
    {
        const double scale = m_arrangement.frame().scale;
        const double signedArea = m_arrangement.selection().signedArea * scale * scale;
        return std::fabs(traced.signedArea() - (m_notes.counterClockwise ? -signedArea : signedArea)) <=
               areaMarginInFrame();
    }

    /** In square units of the frame. */
    double areaMarginInFrame() const
    {
        const double scale = m_arrangement.frame().scale;
        return Arrangement::areaMargin * m_arrangement.referenceArea() * scale * scale;
    }

    void reportSolution()
    {
        m_report.predictedArea = m_arrangement.selection().area;
        m_report.snapping = m_arrangement.snapping();
    }

    Arrangement m_arrangement;
    Operation m_operation;
    const RunNotes &m_notes;
    vxBooleanReport &m_report;
    /** The arrangement's contours; made where something is left to compare. */
    std::optional<std::vector<Contour>> m_expected;
};

} // namespace

AuditedContours audit(const QVector<const XPath *> &operands, Operation operation,
                      const QVector<vxPath *> &traced, const RunNotes &notes, AuditMode mode,
                      vxBooleanReport &report)
{
    report = vxBooleanReport();
    report.limitHit = notes.limitHit;
    const bool isSure = mode == AuditMode::WhereDoubtful && !notes.anyDoubt();
    if (isSure && !notes.settled)
        return { traced, false };
    // What is compared is what the caller gets: vertices on straight runs drop out, within tolerances that
    // are absolute and an angle, which may move the area of a small or a long shape.
    double moved = 0;
    QVector<vxPath *> contours = traced;
    if (isSure) {
        contours = simplified(traced, moved);
        if (moved == 0 || moved <= Arrangement::areaMargin * areaOfBox(operands))
            return { contours, true };
    }
    ArrangementAudit arrangement(operands, operation, notes, report);
    if (!arrangement.solve()) {
        report.verdict = vxBooleanReport::Doubtful;
        return { contours, false };
    }
    return arrangement.judge(isSure ? contours : simplified(traced, moved));
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
    releaseAll(audit({ &original }, Operation::Unite, contours, notes, AuditMode::Always, report).contours);
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
