#pragma once

#include "vxcurvelocation.h"
#include "vxpoint.h"

#include <QList>

#include <array>
#include <vector>

class vxCurve;

namespace vx {

struct RunNotes;

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

} // namespace vx
