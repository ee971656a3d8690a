#pragma once

#include "vxintersections_p.h"
#include "vxpoint.h"

#include <QList>
#include <QVector>

#include <array>
#include <vector>

class XPath;
class vxCurve;
class vxCurveLocation;
class vxPath;
class vxSegment;

namespace vx {

/**
 * What a run of the boolean engine met that its one sample per stretch and its walk may get wrong. A run that
 * met nothing of it needs no audit.
 */
struct RunNotes {
    bool overlap = false;
    bool touch = false;
    /** A crossing at so small an angle that the outlines run side by side before and after it. */
    bool shallow = false;
    /** A meeting at, or within the time margin of, a curve's end. */
    bool atVertex = false;
    /**
     * An operand crosses itself, so that its outline was taken apart and may be paired otherwise at a
     * crossing.
     */
    bool selfCrossing = false;
    /** Vertices on nearly straight runs were dropped, which moves the outline a little. */
    bool simplified = false;
    /**
     * A curve runs forth and back on one line. Where it lies on itself, both sides of the outline are the
     * same, and a count taken there tells nothing of the rest of its stretch.
     */
    bool folded = false;
    /**
     * A contour runs the other way round than its flag says, since its vertices were moved: what it fills
     * lies on the other side than everybody takes it to.
     */
    bool misdirected = false;
    /**
     * What a contour lies in was found by a ray that passes a vertex by less than rounding may hide, and so
     * which way round it has to run.
     */
    bool grazedNesting = false;
    /** Several intersections at one place. */
    bool chained = false;
    /**
     * A stretch whose middle lies on another outline, so that its count was taken elsewhere or means little.
     */
    bool movedSample = false;
    /** A stretch whose middle is a vertex or an extremum: the ray along its level grazes it. */
    bool grazedSample = false;
    bool discardedContour = false;
    /**
     * An edge that counts as level though its ends are not: a ray between their levels passes it by, and so
     * miscounts.
     */
    bool tiltedLevel = false;
    /** A search for intersections was cut short. */
    bool limitReached = false;
    /** A search may have missed a meeting at a vertex. */
    bool nearMiss = false;
    /**
     * A contour is open, and its ends are apart or have handles: it is filled as if a line closed it, of
     * which searches and walks know nothing.
     */
    bool open = false;
    /** An operand is so small, or lies so far off, that absolute tolerances do not mean what they should. */
    bool outOfScale = false;

    /**
     * No doubt, but what the audit must know: the first operand, and with it the result, runs the other way
     * round.
     */
    bool counterClockwise = false;

    /** No doubt of its own either: a search was cut short, whether or not that turned out to matter. */
    bool limitHit = false;
    /** Nor this: there were doubts, which are settled. */
    bool settled = false;
    /** Nor this: an operand touches itself where one of the outlines has no vertex. */
    bool touchWithin = false;

    /** Takes over what another run, of a part, has met. */
    void add(const RunNotes &part);
    void add(const SearchDoubts &search);
    void clearDoubts();
    bool any() const
    {
        return overlap || touch || shallow || atVertex || selfCrossing || simplified || folded ||
               misdirected || grazedNesting || chained || movedSample || grazedSample || discardedContour ||
               tiltedLevel || limitReached || nearMiss || open || outOfScale;
    }
};

/**
 * What one search for meetings takes: overlaps and crossings; notes what is neither, or is near a vertex.
 *
 * Where two outlines share a vertex, several pairs of curves report the same two places. Whether outlines
 * cross at a vertex takes four arc lengths and angles, so the latest answers are kept; they hold as long as
 * no curve changes.
 */
class MeetingFilter
{
public:
    explicit MeetingFilter(RunNotes &notes) : m_notes(notes) {}

    bool accepts(vxCurveLocation &location);
    /** The contacts that were not taken; not all of them if there are some off vertices. */
    const std::vector<vxContact> &touches() const { return m_touches; }
    bool touchedOffVertices() const { return m_touchedOffVertices; }

private:
    /** A meeting that is no overlap: all that the answer depends on. */
    struct Question {
        const vxCurve *curve1 = nullptr;
        const vxCurve *curve2 = nullptr;
        double time1 = qQNaN(); ///< no answer yet
        double time2 = 0;
        vxPoint point;

        bool operator==(const Question &other) const
        {
            return curve1 == other.curve1 && curve2 == other.curve2 && time1 == other.time1 &&
                   time2 == other.time2 && point == other.point;
        }
    };
    struct Answer {
        Question question;
        bool crosses = false;
    };

    bool crossesAtVertex(vxCurveLocation &location);
    bool crosses(vxCurveLocation &location);
    void noteTouch(const vxCurveLocation &location);

    RunNotes &m_notes;
    std::vector<vxContact> m_touches;
    bool m_touchedOffVertices = false;
    std::array<Answer, 8> m_latest{};
    size_t m_oldest = 0;
};

/** Notes intersections that share a place with others. */
void noteChains(const QList<vxCurveLocation *> &locations, RunNotes &notes);

/**
 * Leaves out contours that are drawn several times, number for number, as far as the fill rule makes them
 * count for nothing. Many copies of one outline meet each other everywhere: the searches would grow with the
 * cube of their number.
 */
void dropRepeated(XPath &path);

/** Whether two operands have the same contours, number for number and in order, and are filled alike. */
bool areDrawnAlike(const XPath &a, const XPath &b);

// The steps of the engine that XPath offers without notes.
/**
 * Whether path had crossings or overlaps of its own. If not, its contours are those that it had, but for
 * which remain, their order and which way round they run.
 */
bool resolveCrossings(XPath &path, RunNotes &notes);
/**
 * What a walk gives for a contour that meets nothing and is kept: a copy, or the contour itself. That one
 * stays a child of its compound path, flagged as taken, until letGoOfTaken().
 */
enum class Untouched { Copied, Taken };
QVector<vxPath *> tracePaths(const QList<vxSegment *> &segments, int op, Untouched untouched,
                             RunNotes &notes);

} // namespace vx
