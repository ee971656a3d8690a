#include "vxstretch_p.h"

#include "vxpath.h"
#include "vxsegment.h"

namespace vx {

void Stretch::follow(vxSegment *start)
{
    links.clear();
    length = 0;
    if (!start->path)
        return;
    const QList<vxCurve *> &curves = start->path->_curves();
    const QList<vxSegment *> &segments = start->path->_segments();
    vxSegment *segment = start;
    do {
        const int i = segment->index;
        if (vxCurve *curve = i >= 0 && i < curves.size() ? curves.at(i) : segment->getCurve()) {
            const double ofCurve = curve->getLength();
            links.push_back({ segment, curve, ofCurve });
            length += ofCurve;
        }
        segment = i >= 0 && i + 1 < segments.size() ? segments.at(i + 1) : segment->getNext();
    } while (segment && !segment->intersection() && segment != start);
}

} // namespace vx
