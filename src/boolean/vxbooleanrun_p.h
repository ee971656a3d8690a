#pragma once

#include "vxcubic_p.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingfilter_p.h"
#include "vxplacement_p.h"
#include "vxrunnotes_p.h"
#include "vxstretchcounts_p.h"

#include <QList>
#include <QVector>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class XPath;
class vxCurveLocation;
class vxPath;
class vxSegment;

namespace vx {

class StandingCurves;

/**
 * Prepared working copies of both operands, divided at their crossings; lives as long as one boolean.
 * Anything that may have gone wrong is noted; doubts that the run can resolve are cleared again.
 */
class BooleanRun
{
public:
    BooleanRun(XPath *path1, XPath *path2, int op, RunNotes &notes);
    ~BooleanRun();
    BooleanRun(const BooleanRun &) = delete;
    BooleanRun &operator=(const BooleanRun &) = delete;

    /** The result's contours (count 0, the caller's), as they are walked; placement is of the operands. */
    QVector<vxPath *> run(Placement placement);

private:
    // preparing
    bool orient();
    void divide();
    void collect();
    /** Of both working copies. */
    template <typename Visit>
    void forEachContour(Visit &&visit) const;

    // where nothing meets
    bool takeWhole(Placement placement, QVector<vxPath *> &contours);

    // counting
    bool countByEnds() const;
    void sample();
    void clearOverlapFlags(vxPath &contour) const;

    // settling doubts, after tracing
    bool isSettled(bool isCountedByEnds) const;
    bool walkedTheBoundary() const;
    bool missedNothing() const;
    bool isConfirmed(const XPath *original, const XPath &copy, const RunNotes &own) const;
    std::vector<vxContact> contacts() const;

    DividedOperand operand1() const;
    DividedOperand operand2() const;

    int m_op;
    RunNotes &m_notes;
    MeetingFilter m_filter;
    SearchDoubts m_doubts;
    /** Curves of which the search was cut short, undivided. */
    std::vector<std::pair<Cubic, Cubic>> m_unfinished;
    /** What cleaning the operands met. */
    RunNotes m_own1, m_own2;
    const XPath *m_original1;
    const XPath *m_original2;
    // Declared before the working copies: segments drop their locations before the last reference goes.
    std::optional<LocationOwner> m_owner;
    std::unique_ptr<XPath> m_path1;
    std::unique_ptr<XPath> m_path2; ///< null where one object is both operands
    /** What the operands keep of their copies' curves; null where that is nothing. */
    StandingCurves *m_standing1 = nullptr;
    StandingCurves *m_standing2 = nullptr;
    QList<vxCurveLocation *> m_locations;
    QList<vxSegment *> m_segments;
};

} // namespace vx
