#pragma once

#include "pzgraphics_global.h"

#include <limits>

/**
 * How far the result of a boolean can be trusted. The engine classifies each stretch of outline by how the
 * outlines lie at its ends, or by one sample, and walks; where outlines touch, run together or meet several
 * at one point and something stays unsure, its answer is held against the arrangement of all curves, which
 * knows the area of the result, and whether its outline closes, before anything is traced.
 */
struct PZGRAPHICS_EXPORT vxBooleanReport {
    enum Verdict {
        Plain,    ///< outlines lie so that nothing can go wrong unseen: nothing to audit
        Audited,  ///< checked, and as the engine gave it
        Replaced, ///< the engine's answer was not right; the result is the arrangement's
        /**
         * Not confirmed, may be wrong: the arrangement does not close (oddNodes), or only by moving ends so
         * far that it matters; or, for an open line, a search was cut short (limitHit) or samples of a piece
         * disagree.
         */
        Doubtful
    };

    Verdict verdict = Plain;
    /** Area of the result in square path units as the arrangement has it; NaN where none was made. */
    double predictedArea = std::numeric_limits<double>::quiet_NaN();
    /**
     * Nodes at which the arrangement's outline does not close (other than as many of its edges enter as
     * leave); above 0 only where that makes the result doubtful.
     */
    int oddNodes = 0;
    /** Distance in path units within which the arrangement joined ends; 0 where none was made. */
    double snapping = 0;
    /** A search for intersections was cut short by its limits. */
    bool limitHit = false;

    /** "plain", "audited", "replaced" or "doubtful". */
    const char *verdictName() const;
};
