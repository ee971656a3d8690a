#include "xpath.h"

#include "vxcurvelocation.h"
#include "vxdividemode_p.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingfilter_p.h"
#include "vxmeetingplaces_p.h"
#include "vxnesting_p.h"
#include "vxownoverlaps_p.h"
#include "vxref_p.h"
#include "vxresolve_p.h"
#include "vxrunnotes_p.h"
#include "vxtracing_p.h"

#include <algorithm>
#include <vector>

namespace {

/** One clean-up of a compound path. */
class Resolver
{
public:
    Resolver(XPath &path, vx::RunNotes &notes) : m_path(path), m_notes(notes) {}

    void run()
    {
        const QList<vxCurveLocation *> found = search();
        const vx::LocationOwner owner(found);
        const QList<vxCurveLocation *> locations = vxCurveLocation::expand(found);
        if (!metNothing())
            holdSegments();
        if (m_hasOverlaps) {
            const QList<vxCurveLocation *> divided = m_path.divideLocations(locations, vx::DivideAtOverlaps);
            holdSegments();
            vx::removeInsideOverlaps(m_path, divided);
        }
        QVector<vxPath *> contours = m_path.children;
        std::vector<vxRef<vxPath>> traced; // keeps those that are dropped until links are cleared
        if (m_hasCrossings) {
            contours = trace(locations);
            for (vxPath *contour : qAsConst(contours))
                traced.emplace_back(contour);
        }
        if (contours.size() > 1)
            nest(contours);
        else if (m_hasCrossings)
            m_path.setChildren(contours);
        clearLinks();
    }

    bool metNothing() const { return !m_hasOverlaps && !m_hasCrossings; }

private:
    /** Finds the meetings that count, and notes what came up on the way. */
    QList<vxCurveLocation *> search()
    {
        vx::MeetingFilter filter(m_notes);
        const auto accepts = [&](vxCurveLocation *location) { return accept(*location, filter); };
        vx::SearchDoubts doubts;
        const QList<vxCurveLocation *> found = vx::findIntersections(m_path, nullptr, accepts, doubts);
        if (metNothing() && meetAtJointsOnly(doubts.unfinished))
            doubts.unfinished.clear();
        m_notes.add(doubts);
        m_notes.touchOffVertex = filter.touchedOffVertices() || hasContactWithin(filter.touches()) ||
                                 hasContactWithin(doubts.nearMisses);
        return found;
    }

    bool accept(vxCurveLocation &location, vx::MeetingFilter &filter)
    {
        if (!filter.accepts(location))
            return false;
        (location.overlap ? m_hasOverlaps : m_hasCrossings) = true;
        return true;
    }

    /** Of curves that follow each other: whether there is nothing that a longer search could find. */
    static bool meetAtJointsOnly(const std::vector<vxUnfinished> &pairs)
    {
        return std::all_of(pairs.begin(), pairs.end(), [](const vxUnfinished &pair) {
            return pair.curve1 != pair.curve2 &&
                   vx::meetAtSharedEndsOnly(pair.curve1->_cubic(), pair.curve2->_cubic());
        });
    }

    static bool hasContactWithin(const std::vector<vxContact> &contacts)
    {
        return std::any_of(contacts.begin(), contacts.end(),
                           [](const vxContact &contact) { return !contact.otherVertex; });
    }

    /** Keeps the segments alive while locations refer to them and some are removed. */
    void holdSegments()
    {
        for (const vxPath *child : qAsConst(m_path.children)) {
            for (vxSegment *segment : child->_segments())
                m_held.emplace_back(segment);
        }
    }

    /** Divides the curves at their meetings, those that overlaps have left, and walks the outline anew. */
    QVector<vxPath *> trace(const QList<vxCurveLocation *> &locations)
    {
        m_notes.selfCrossing = true;
        m_path.divideLocations(locations, m_hasOverlaps ? vx::DivideAtAlive : vx::DivideAtAll);
        vx::noteChains(locations, m_notes);
        QList<vxSegment *> segments;
        for (const vxPath *child : qAsConst(m_path.children))
            segments += child->_segments();
        return vx::tracePaths(segments, vx::resolveOnly, vx::Untouched::Copied, m_notes);
    }

    /** Makes the contours that stay, which are oriented, the children, unless they are that as they stand. */
    void nest(const QVector<vxPath *> &contours)
    {
        const vx::NestedContours nested = vx::nestContours(contours, m_path.evenOdd);
        m_notes.grazedNesting = nested.isUnsure;
        if (nested.kept != m_path.children)
            m_path.setChildren(nested.kept);
    }

    /** Segments that stay must not lead a later search to crossings that are done with. */
    void clearLinks()
    {
        for (const vxPath *child : qAsConst(m_path.children)) {
            for (vxSegment *segment : child->_segments()) {
                if (segment->intersection())
                    segment->setIntersection(nullptr);
                segment->visited = false;
            }
        }
        for (const vxRef<vxSegment> &segment : m_held)
            segment->setIntersection(nullptr);
    }

    XPath &m_path;
    vx::RunNotes &m_notes;
    std::vector<vxRef<vxSegment>> m_held;
    bool m_hasOverlaps = false;
    bool m_hasCrossings = false;
};

} // namespace

bool vx::resolveCrossings(XPath &path, RunNotes &notes)
{
    if (path.children.isEmpty())
        return false;
    Resolver resolver(path, notes);
    resolver.run();
    return !resolver.metNothing();
}

XPath *XPath::resolveCrossings()
{
    _noticeEdits();
    vx::RunNotes notes;
    vx::resolveCrossings(*this, notes);
    return this;
}
