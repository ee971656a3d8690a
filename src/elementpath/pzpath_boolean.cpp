#include "pzpath.h"
#include "vxcurvelocation.h"
#include "vxpath.h"
#include "vxsegment.h"
#include "xpath.h"

#include <cmath>
#include <memory>
#include <vector>

namespace {

using EngineOperation = XPath *(XPath::*)(XPath *, vxBooleanReport &);

void combine(PZPath &path, PZPath &other, EngineOperation operation, vxBooleanReport &report)
{
    // Both operands are converted before the first one is rewritten, so they may be one object.
    XPath a;
    XPath b;
    path.toXPath(a);
    other.toXPath(b);
    const std::unique_ptr<XPath> result((a.*operation)(&b, report));
    if (!result)
        return;
    path.clear();
    path.fromXPath(*result);
}

/** The crossings of two compound paths, freed with their partners when they go out of scope. */
class Crossings
{
public:
    Crossings(XPath &a, XPath &b) : list(a.getCrossings(&b)) {}
    Crossings(const Crossings &) = delete;
    Crossings &operator=(const Crossings &) = delete;
    ~Crossings() { vxCurveLocation::releaseAll(list); }

    const QList<vxCurveLocation *> list;
};

/** Cuts below one whole unit are none: not worth a new outline. NaN is none either. */
bool isWholeUnitCut(double cut)
{
    return std::fabs(std::trunc(cut)) > 0.1;
}

/** Hands a child over; to takes its reference before from lets go. */
void moveChild(vxPath *child, XPath &from, XPath &to)
{
    to.addChild(child);
    from.removeChild(child);
}

void clearUnknownHandles(vxPath &path)
{
    for (vxSegment *segment : path.getSegments()) {
        if (segment->handleIn.isNaN() || segment->handleOut.isNaN())
            segment->clearHandles();
    }
    path._changed();
}

} // namespace

void PZPath::unite(PZPath &other)
{
    vxBooleanReport report;
    unite(other, report);
}

void PZPath::unite(PZPath &other, vxBooleanReport &report)
{
    combine(*this, other, &XPath::unite, report);
}

void PZPath::intersect(PZPath &other)
{
    vxBooleanReport report;
    intersect(other, report);
}

void PZPath::intersect(PZPath &other, vxBooleanReport &report)
{
    combine(*this, other, &XPath::intersect, report);
}

void PZPath::subtract(PZPath &other)
{
    vxBooleanReport report;
    subtract(other, report);
}

void PZPath::subtract(PZPath &other, vxBooleanReport &report)
{
    combine(*this, other, &XPath::subtract, report);
}

PZPath PZPath::uniteAll(QVector<PZPath> &paths)
{
    vxBooleanReport report;
    return uniteAll(paths, report);
}

PZPath PZPath::uniteAll(QVector<PZPath> &paths, vxBooleanReport &report)
{
    std::vector<std::unique_ptr<XPath>> owned;
    QList<XPath *> operands;
    for (PZPath &path : paths) {
        owned.push_back(std::make_unique<XPath>());
        path.toXPath(*owned.back());
        operands.append(owned.back().get());
    }
    const std::unique_ptr<XPath> result(XPath::uniteAll(operands, report));
    PZPath united;
    united.fromXPath(*result);
    return united;
}

void PZPath::evenOdd()
{
    // Appends on purpose: callers compare the outline with its normalised copy.
    XPath xpath;
    toXPath(xpath);
    fromXPath(xpath);
}

void PZPath::smooth(int type)
{
    XPath xpath;
    toXPath(xpath);
    for (vxPath *child : xpath.children) {
        child->smooth(type, 0.5, 0, -1);
        // Neighbours at one place have no direction between them; such a vertex stays a corner.
        clearUnknownHandles(*child);
    }
    clear();
    fromXPath(xpath);
}

bool PZPath::splitAt(double startCut, double endCut)
{
    if (!isWholeUnitCut(startCut))
        return false;
    XPath whole;
    toXPath(whole);
    vxPath *piece = whole.splitAt(startCut);
    if (!piece)
        return false;
    XPath rest;
    moveChild(piece, whole, rest);
    const double length = rest.getLength();
    if (isWholeUnitCut(endCut) && length > endCut) {
        if (vxPath *tail = rest.splitAt(length - endCut))
            rest.removeChild(tail);
    }
    clear();
    fromXPath(rest);
    return true;
}

QVector<QPointF> PZPath::crossPoints(PZPath &other)
{
    XPath a;
    XPath b;
    toXPath(a);
    other.toXPath(b);
    const Crossings crossings(a, b);
    QVector<QPointF> points;
    points.reserve(crossings.list.count());
    for (const vxCurveLocation *location : crossings.list)
        points.append(location->getPoint().toPt());
    return points;
}

QPointF PZPath::bestCrossPoint(PZPath &other)
{
    const QVector<QPointF> points = crossPoints(other);
    return points.isEmpty() ? QPointF(0, 0) : points.first();
}

bool PZPath::dividePath(PZPath &other, QPointF &point, bool keepFirst)
{
    XPath a;
    XPath b;
    toXPath(a);
    other.toXPath(b);
    const Crossings crossings(a, b);
    if (crossings.list.isEmpty())
        return false;
    vxCurveLocation *crossing = crossings.list.first();
    point = crossing->getPoint().toPt();
    // The first contour is the one that is cut, by the crossing's curve index and time, also where the
    // crossing lies on another contour.
    vxPath *first = a.getFirstChild();
    vxPath *piece = first->splitAt(crossing);
    if (!piece)
        return false;
    XPath rest;
    if (!keepFirst)
        moveChild(piece, a, rest);
    else if (piece != first) // a closed contour was only opened: there is no part after the cut
        a.removeChild(piece);
    clear();
    fromXPath(keepFirst ? a : rest);
    return true;
}
