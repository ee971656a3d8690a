#pragma once

#include "vxrunnotes_p.h"
#include "vxstandingcurves_p.h"

#include <QVector>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class XPath;
class vxPath;

namespace vx {

class FilledRegion;

/** A copy of an operand for a boolean to work on; the caller's. */
XPath *workingCopy(const XPath &path);
/** The same of one that is clean already, so that one can be made of the other again and again. */
XPath *copyOfClean(const XPath &clean);

/** A contour of an operand that is as it was when it is clean, but for vertices and direction. */
struct KeptContour {
    int place; ///< among the operand's contours
    /** Which way round it was declared to run; none: its area tells. */
    std::optional<bool> clockwise;
};

/** Of a clean copy, what became of the contours that it had at first, of which some may be no more. */
std::vector<KeptContour> keptContours(const QVector<vxPath *> &first, const XPath &clean);

/**
 * What an operand keeps of its cleaning: where it has no crossings of its own, what was done to its contours;
 * otherwise, and where it is asked for again and again, a cleaned copy. And what booleans with it computed of
 * its curves.
 */
class CleanUp
{
public:
    /** Of an operand without crossings of its own; isReduced: no vertices dropped out. */
    CleanUp(const XPath &original, bool isReduced, const RunNotes &notes, std::vector<KeptContour> kept);
    CleanUp(const XPath &original, const RunNotes &notes, std::unique_ptr<XPath> resolved);
    ~CleanUp();

    /** Larger operands keep neither copy nor curves, which would be tens of megabytes each. */
    static bool isTooLarge(const XPath &path);

    /** Whether nothing has changed since. */
    bool holdsFor(const XPath &original) const;
    const RunNotes &notes() const { return m_notes; }
    /** Whether what cleaning met is no reason to doubt it. */
    bool isConfirmed(const XPath &original);
    /** Another cleaned copy, the caller's; from now on the operand counts as one that stands. */
    XPath *repeat(const XPath &original);
    /** Of the copies as they are cleaned, or of their reverse; null before the second copy. */
    StandingCurves *curves(bool isReversed);
    /** Of the original, which has not changed since. */
    std::shared_ptr<const FilledRegion> region(const XPath &original);

private:
    /** All that cleaning asks of a contour: a version stands for its geometry. */
    struct ContourState {
        explicit ContourState(const vxPath &path);
        bool operator==(const ContourState &other) const;

        quint32 id;
        quint32 version;
        quint32 flags;
        bool closed;
    };

    CleanUp(const XPath &original, const RunNotes &notes);
    bool canBeConfirmed() const;
    XPath *cleaned(const XPath &original);
    XPath *redo(const XPath &original) const;

    bool m_evenOdd;
    /** The application's switch, on which the search for crossings depended. */
    bool m_skipsSixes;
    std::vector<ContourState> m_states;
    RunNotes m_notes;
    std::optional<bool> m_isConfirmed; ///< none: not asked for

    bool m_isReduced = false;
    std::vector<KeptContour> m_kept;
    /** It was asked for again, and is not too large to keep more. */
    bool m_stands = false;
    /** Null where the kept contours tell all, until it stands. */
    std::unique_ptr<XPath> m_copy;
    /** A length may change in its last bit when a curve is reversed. */
    std::array<StandingCurves, 2> m_curves;
    std::shared_ptr<const FilledRegion> m_region;
};

} // namespace vx
