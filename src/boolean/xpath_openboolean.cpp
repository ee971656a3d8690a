#include "xpath.h"

#include "vxboolean_p.h"
#include "vxcurvelocation.h"
#include "vxintersect_p.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxoperation_p.h"
#include "vxoutline_p.h"
#include "vxref_p.h"
#include "vxsamplefractions_p.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

/** Cuts an open path into pieces and keeps those on one side of a shape. */
class Cutter
{
public:
    Cutter(XPath &line, XPath &shape, bool keepInside, vxBooleanReport &report)
        : m_shape(shape), m_path(line.getFirstChild()), m_keepInside(keepInside), m_report(report)
    {
        const QList<vxCurve *> curves = shape.getCurves();
        for (const vxCurve *curve : curves)
            m_outline.emplace_back(curve->_cubic());
    }

    /** Works backwards, so that places that are still to come stay on the path. */
    void cutAt(const QList<vxCurveLocation *> &crossings)
    {
        for (int i = crossings.size() - 1; i >= 0; --i) {
            vxCurve *curve = crossings.at(i)->getCurve();
            if (!curve || curve->path() != m_path.get())
                continue;
            const vxRef<vxPath> piece(splitOff(curve, crossings.at(i)->getTime()));
            if (piece && keep(piece))
                piece->getFirstSegment()->setHandleIn(vxPoint());
            if (vxSegment *end = m_path->getLastSegment())
                end->setHandleOut(vxPoint());
            m_path->_changed();
        }
        keep(m_path);
    }

    /** The kept pieces along the line; they belong to no compound path once the line is cleared. */
    const std::vector<vxRef<vxPath>> &pieces() const { return m_pieces; }

private:
    static vxPath *splitOff(vxCurve *curve, double t)
    {
        if (!(t >= 0 && t <= 1))
            return curve->splitAt(nullptr);
        const vxRef<vxCurveLocation> place(
            new vxCurveLocation(curve, t, vxPoint(qQNaN(), qQNaN()), false, 0));
        return curve->splitAt(place.get());
    }

    bool keep(const vxRef<vxPath> &piece)
    {
        if (piece->getSegments().size() < 2 || isInside(*piece.get()) != m_keepInside)
            return false;
        m_pieces.insert(m_pieces.begin(), piece);
        return true;
    }

    /**
     * The side of a piece's middle. A middle on the outline says nothing, so other places are asked; a piece
     * that runs along the outline all the way counts as inside. Where places lie on different sides, a
     * crossing was missed.
     */
    bool isInside(const vxPath &piece)
    {
        const vxStyle style = vxStyle::filled(m_shape.evenOdd);
        const double length = piece.getLength();
        bool stated = true;
        bool side = true;
        bool isKnown = false;
        for (size_t i = 0; i < std::size(vx::sampleFractions); ++i) {
            const vxPoint point = piece.getPointAt(length * vx::sampleFractions[i]);
            const bool inside = m_shape.contains(point, style);
            if (i == 0)
                stated = inside; // the middle is the rule
            if (liesOnOutline(point)) {
                raise(vxBooleanReport::Audited);
                continue;
            }
            if (isKnown && inside != side)
                raise(vxBooleanReport::Doubtful);
            side = isKnown ? side : inside;
            isKnown = true;
        }
        if (side != stated)
            raise(vxBooleanReport::Replaced);
        return side;
    }

    /** Verdicts of several pieces: the one that says most. */
    void raise(vxBooleanReport::Verdict verdict) { m_report.verdict = std::max(m_report.verdict, verdict); }

    bool liesOnOutline(const vxPoint &p) const
    {
        const vx::Box at{ p.x, p.y, p.x, p.y };
        return std::any_of(m_outline.begin(), m_outline.end(), [&](const vx::PreparedCurve &curve) {
            return vx::boxesMeet(curve.box, at) && vx::timeOf(curve.values, p) != vxTolerance::noTime;
        });
    }

    XPath &m_shape;
    vxRef<vxPath> m_path;
    bool m_keepInside;
    vxBooleanReport &m_report;
    std::vector<vx::PreparedCurve> m_outline;
    std::vector<vxRef<vxPath>> m_pieces;
};

} // namespace

XPath *XPath::computeOpenBoolean(XPath *path1, XPath *path2, int op)
{
    vxBooleanReport report;
    return vx::computeOpenBoolean(path1, path2, op, report);
}

XPath *vx::computeOpenBoolean(XPath *path1, XPath *path2, int op, vxBooleanReport &report)
{
    const bool intersecting = op == vx::Intersect;
    const bool subtracting = op == vx::Subtract;
    if (!path1 || path1->children.isEmpty() || !path2 || isSingleOpen(*path2) ||
        !(intersecting || subtracting))
        return nullptr;
    const std::unique_ptr<XPath> line(XPath::preparePath(path1, false));
    const std::unique_ptr<XPath> shape(XPath::preparePath(path2, false));
    if (line->children.isEmpty())
        return new XPath; // nothing but a point is left of the line

    SearchDoubts doubts;
    const QList<vxCurveLocation *> crossings = vx::findIntersections(
        *line, shape.get(),
        [](vxCurveLocation *location) { return location->overlap || location->isCrossing(); }, doubts);
    const vx::LocationOwner owner(crossings);
    report.limitHit = !doubts.unfinished.empty();
    report.verdict = report.limitHit ? vxBooleanReport::Doubtful : vxBooleanReport::Plain;
    Cutter cutter(*line, *shape, intersecting, report);
    cutter.cutAt(crossings);
    line->removeChildren(0, -1); // so that the result becomes the pieces' parent
    QVector<vxPath *> pieces;
    for (const vxRef<vxPath> &piece : cutter.pieces())
        pieces.append(piece.get());
    return XPath::createResult(pieces, false, path1, path2);
}
