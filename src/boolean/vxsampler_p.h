#pragma once

#include "vxmonoindex_p.h"
#include "vxoperation_p.h"
#include "vxrunnotes_p.h"
#include "vxstandingcurves_p.h"
#include "vxstretch_p.h"
#include "xpath.h"

#include <memory>
#include <vector>

namespace vx {

/** Gives stretches of outline their winding counts by one sample each. Made once for divided operands. */
class Sampler
{
public:
    /** path2 may be null, and so may what is kept of the curves of either. */
    Sampler(const XPath *path1, const XPath *path2, int op, RunNotes &notes,
            StandingCurves *standing1 = nullptr, StandingCurves *standing2 = nullptr);
    /** The same counting other pieces than those of the operands. */
    Sampler(const XPath *path1, const XPath *path2, const QList<vxMono *> &monos, int op, RunNotes &notes);

    /**
     * Counts at the middle of the stretch from start to the next intersection and writes it to its segments.
     */
    void propagate(vxSegment *start);

private:
    struct Sample {
        vxCurve *curve = nullptr;
        double time = 0;
        vxPoint point;
        double rise = 0; ///< as part of the way along the curve there
        bool horizontal = false;
        /** All but horizontal: rounding decides where the ray along its level meets the stretch itself. */
        bool nearlyHorizontal = false;
    };

    void reserve();
    void append(const XPath &path, StandingCurves *standing);
    static Sample sampleAt(const Stretch::Place &place);
    bool isShared() const;
    bool liesOnAnother(const vxPoint &point);
    /** Whether a curve that is not of the stretch passes through a point; null does not. */
    bool isOtherThrough(const vxCurve *curve, const vxPoint &point) const;
    bool asksForSides() const { return m_op == Subtract && m_path2; }
    vxWinding count(const Sample &sample) const;
    bool countClearly(const vxCurve *own, double rise, const vxPoint &p, double blur,
                      vxWinding &winding) const;
    bool allowsClearCounts(double rise) const;
    bool countOnLine(const Stretch::Place &place, vxWinding &winding) const;
    bool countOnLevelLine(const vxCurve *own, const vxPoint &p, double blur, vxWinding &winding) const;
    bool countBetween(const ClearNeighbours &neighbours, ClearNeighbours::Of operands,
                      vxWinding &winding) const;
    bool countIfFree(const Sample &sample, vxWinding &winding);
    bool countElsewhere(Sample &sample, vxWinding &winding);
    bool isConfirmed(const vxWinding &winding);
    vxWinding countStretch();

    const XPath *m_path1;
    const XPath *m_path2;
    int m_op;
    RunNotes &m_notes;
    /** The operands' own pieces, those of the second from m_secondPiece on. */
    MonoIndex m_pieces;
    int m_secondPiece = 0;
    /** Counted instead of those where the caller lists pieces. */
    std::unique_ptr<MonoIndex> m_listedPieces;
    /** The stretch at hand, and the pieces near its sample. */
    Stretch m_stretch;
    std::vector<int> m_near;
};

} // namespace vx
