#pragma once

#include "vxmonoindex_p.h"
#include "vxorderedboxes_p.h"
#include "vxrunnotes_p.h"
#include "xpath.h"

#include <memory>
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

    /**
     * Counts at the middle of the stretch from start to the next intersection and writes it to its segments.
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
        /**
         * The link in which a distance along the chain falls, which becomes the distance within it; null if
         * none.
         */
        const Link *linkAt(double &distance) const;
    };
    struct Sample {
        vxCurve *curve = nullptr;
        double time = 0;
        vxPoint point;
        bool horizontal = false;
        /** All but horizontal: rounding decides where the ray along its level meets the stretch itself. */
        bool nearlyHorizontal = false;
    };

    Sample sampleAt(const Chain &chain, double distance) const;
    Sample chooseSample(const Chain &chain);
    bool isConfirmed(const Chain &chain, const vxWinding &winding);
    bool liesOnAnother(const Chain &chain, const vxPoint &point);
    bool asksForSides() const { return m_op == 3 && m_path2; }
    vxWinding count(const Sample &sample) const;

    XPath *m_path1;
    XPath *m_path2;
    MonoIndex m_pieces;
    /**
     * The operands' own pieces, for the operation that asks which of the two a stretch lies in; else null.
     */
    std::unique_ptr<MonoIndex> m_pieces1;
    std::unique_ptr<MonoIndex> m_pieces2;
    int m_op;
    RunNotes &m_notes;
    std::vector<vxCurve *> m_curves;
    OrderedBoxes m_boxes;
};

} // namespace vx
