#pragma once

#include "vxcurve.h"
#include "vxmono.h"
#include "vxpassage_p.h"

#include <limits>
#include <vector>

class XPath;

namespace vx {

/** What a run found out about a curve of a clean operand, for the runs to come. */
struct StandingCurve {
    /** Arc length; NaN: not asked for. */
    double length = std::numeric_limits<double>::quiet_NaN();
    /** Its monotone pieces among those that are kept; none: not asked for. */
    int firstPiece = 0;
    int pieceCount = 0;
};

struct StandingPiece {
    vxMono mono;
    Passage passage;
};

/**
 * The curves of an operand that stands while boolean after boolean asks for it, as the working copies have
 * them. A copy's curves are numbered before it is divided; those that keep their numbers afterwards are what
 * they were, and are not measured again. Contours that meet nothing may have none made by then, nor ever.
 * What divided curves would have is never computed: some 130 bytes for each curve that was left whole in some
 * run.
 */
class StandingCurves
{
public:
    /** Numbers the curves that a copy has, which are the same in every run. */
    void number(const XPath &copy);
    /** Those, too, that it had not then, of contours that nothing has divided since. */
    void numberRest();
    /** Gives the undivided curves of a divided copy their lengths, which are computed once. */
    void giveLengths(const XPath &copy);
    /** Null for a divided curve. */
    StandingCurve *of(const vxCurve &curve)
    {
        return curve._number() >= 0 ? &m_curves[size_t(curve._number())] : nullptr;
    }
    const StandingPiece *piecesOf(const StandingCurve &curve) const
    {
        return m_pieces.data() + curve.firstPiece;
    }
    /** Adds a piece to a curve's, which follow each other. */
    void keep(const StandingPiece &piece, StandingCurve &curve);

private:
    /** A contour whose curves were not made, and the number of its first. */
    struct Unnumbered {
        const vxPath *contour;
        int first;
    };

    std::vector<Unnumbered> m_unnumbered;
    std::vector<StandingCurve> m_curves;
    std::vector<StandingPiece> m_pieces;
};

} // namespace vx
