#include "vxownoverlaps_p.h"

#include "vxcurvelocation.h"
#include "vxintersect_p.h"
#include "vxorderedboxes_p.h"
#include "vxref_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <vector>

namespace {

bool isOverlapEnd(const vxSegment *segment)
{
    return segment && segment->intersection() && segment->intersection()->overlap;
}

/** The curves of a shape, to be asked which of them pass through a point. */
class CurvesByPlace
{
public:
    explicit CurvesByPlace(const XPath &shape) : m_curves(shape.getCurves()), m_boxes(boxesOf(m_curves)) {}

    /** Whether the middle of a curve lies on another curve of the shape. */
    bool runsAlongAnother(const vxCurve *curve)
    {
        if (!curve)
            return false;
        const vxPoint middle = curve->getPointAtTime(0.5);
        bool runs = false;
        m_boxes.query({ middle.x, middle.y, middle.x, middle.y }, 0, 0, [&](int i) {
            const vxCurve *other = m_curves.at(i);
            runs = runs || (other != curve && vx::timeOf(other->_cubic(), middle) != vxTolerance::noTime);
        });
        return runs;
    }

private:
    /** So wide that a point outside is farther than closeDistance from the curve, as computed. */
    static std::vector<vx::Box> boxesOf(const QList<vxCurve *> &curves)
    {
        std::vector<vx::Box> boxes;
        boxes.reserve(size_t(curves.size()));
        for (const vxCurve *curve : curves) {
            const vx::Box box = vx::hullBox(curve->_cubic());
            boxes.push_back(vx::widened(box, 2 * vxTolerance::closeDistance + 1e-12 * vx::largestOf(box)));
        }
        return boxes;
    }

    const QList<vxCurve *> m_curves;
    vx::OrderedBoxes m_boxes;
};

/**
 * The segments of divided overlaps that lie inside a stretch that runs along another one. A corner between
 * two different overlaps has overlap ends for neighbours as well, but its own curves part from the others.
 */
std::vector<vxRef<vxSegment>> insideOverlaps(const XPath &shape, const QList<vxCurveLocation *> &divided)
{
    CurvesByPlace curves(shape);
    std::vector<vxRef<vxSegment>> inside;
    for (int i = divided.size() - 1; i >= 0; --i) {
        vxSegment *segment = divided.at(i)->getSegment();
        const vxSegment *previous = segment ? segment->getPrevious() : nullptr;
        if (!isOverlapEnd(previous) || !isOverlapEnd(segment->getNext()))
            continue;
        if (curves.runsAlongAnother(previous->getCurve()) && curves.runsAlongAnother(segment->getCurve()))
            inside.emplace_back(segment);
    }
    return inside;
}

/** Takes a segment out of the inside of a stretch that runs along another one. */
void removeFromOverlap(vxSegment *segment)
{
    const vxRef<vxSegment> held(segment);
    const vxRef<vxSegment> previous(segment->getPrevious());
    const vxRef<vxSegment> next(segment->getNext());
    if (!segment->path || !isOverlapEnd(previous.get()) || !isOverlapEnd(next.get()))
        return;
    segment->remove();
    previous->setHandleOut(vxPoint());
    next->setHandleIn(vxPoint());
    // On a contour of two segments the neighbours are one, and it may be the removed one's only neighbour.
    if (vxPath *path = previous->path)
        path->_changed();
    const vxCurve *curve = previous->getCurve();
    if (curve && curve->isStraight() && curve->getLength() == 0)
        previous->remove();
}

} // namespace

void vx::removeInsideOverlaps(const XPath &shape, const QList<vxCurveLocation *> &divided)
{
    for (const vxRef<vxSegment> &segment : insideOverlaps(shape, divided))
        removeFromOverlap(segment.get());
}
