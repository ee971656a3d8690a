#pragma once

#include "pzgraphics_global.h"

/**
 * How far the result of a boolean can be trusted. The engine decides by one sample per stretch of outline and
 * walks; where outlines touch, run together or meet several at one point, its answer is held against the
 * arrangement of all curves, which knows area and length of the result before anything is traced.
 */
struct PZGRAPHICS_EXPORT vxBooleanReport {
    enum Verdict {
        Plain,    ///< outlines lie so that nothing can go wrong unseen: nothing to audit
        Audited,  ///< checked, and as the engine gave it
        Replaced, ///< the engine's answer was not right; the result is the arrangement's
        Doubtful  ///< neither could be vouched for: the result is the engine's and may be wrong
    };

    Verdict verdict = Plain;
    /** Area of the result in square path units as the arrangement has it; NaN for a plain verdict. */
    double predictedArea = 0;
    /** Nodes at which the arrangement's outline does not close; above 0 only where that makes it doubtful. */
    int oddNodes = 0;
    /** Distance in path units within which ends were joined; 0 for a plain verdict. */
    double snapping = 0;
    /** A search for intersections was cut short by its limits. */
    bool limitHit = false;

    /** "plain", "audited", "replaced" or "doubtful". */
    const char *verdictName() const;
};
