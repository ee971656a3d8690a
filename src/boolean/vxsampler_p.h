#pragma once

#include "vxintersect_p.h"
#include "vxrunnotes_p.h"
#include "xpath.h"

#include <vector>

namespace vx {

/**
 * Gives stretches of outline their winding counts by one sample each. Made once for a pair of divided
 * operands; the pieces must stay alive meanwhile.
 */
class Sampler
{
public:
    /** path2 may be null. */
    Sampler(XPath *path1, XPath *path2, const QList<vxMono *> &monos, int op, RunNotes &notes);

    /** Counts at the middle of the stretch from start to the next intersection and writes it to its segments.
     */
    void propagate(vxSegment *start);

private:
    struct Link {
        vxSegment *segment;
        vxCurve *curve;
        double length;
    };
    /** Curves up to the next intersection, the end of the path, or back at the start. */
    struct Chain {
        std::vector<Link> links;
        double length = 0;

        explicit Chain(vxSegment *start);
        bool holds(const vxCurve *curve) const;
        /** The link in which a distance along the chain falls, which becomes the distance within it; null if
         * none. */
        const Link *linkAt(double &distance) const;
    };
    struct Sample {
        vxCurve *curve = nullptr;
        double time = 0;
        vxPoint point;
        bool horizontal = false;
    };
    struct Neighbour {
        vxCurve *curve;
        PreparedCurve prepared;
    };

    Sample sampleAt(const Chain &chain, double distance) const;
    Sample chooseSample(const Chain &chain) const;
    bool liesOnAnother(const Chain &chain, const vxPoint &point) const;
    vxWinding count(const Sample &sample) const;

    XPath *m_path1;
    XPath *m_path2;
    const QList<vxMono *> &m_monos;
    int m_op;
    RunNotes &m_notes;
    std::vector<Neighbour> m_curves;
};

} // namespace vx
