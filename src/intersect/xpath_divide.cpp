#include "xpath.h"

#include "vxcurvelocation.h"
#include "vxdividemode_p.h"
#include "vxdivisions_p.h"
#include "vxref_p.h"

#include <QVarLengthArray>

using namespace vxTolerance;

namespace {

/**
 * Divides curves at sorted locations, from the last to the first, so that the places still to come stay
 * valid. A path's lists are rebuilt once for all its divisions, or earlier if something is about to read
 * them.
 */
class Divider
{
public:
    /** At most count places are to come. */
    explicit Divider(int count) : m_divisions(count), m_count(count) {}

    void divideAt(vxCurveLocation *location)
    {
        vxCurve *curve = location->curve;
        if (!curve)
            return;
        const double fullTime = location->time;
        double time = fullTime;
        if (m_curve.get() != curve) {
            m_curve = vxRef<vxCurve>(curve);
            m_hasHandles = curve->hasHandles();
            m_previous = nullptr;
        } else if (m_previousTime >= timeMargin && m_previousTime <= timeUpper) {
            time /= m_previousTime; // the curve ends at the previous place by now
        }
        if (vxSegment *segment = placeAt(location, curve, time))
            link(segment, location);
        m_previous = location;
        m_previousTime = fullTime;
    }

    /** Curves that were straight stay straight. */
    void finish()
    {
        insertDivisions();
        for (const vxRef<vxCurve> &curve : m_straight)
            curve->clearHandles();
    }

private:
    /**
     * Moves location onto the segment at its time, which is made where there is none; null when that fails.
     */
    vxSegment *placeAt(vxCurveLocation *location, vxCurve *curve, double time)
    {
        if (time < timeMargin && isListed(curve)) {
            location->_place(curve, curve->segment1());
            return curve->segment1();
        }
        if (time < timeMargin)
            return moveTo(location, curve->segment1());
        if (time > timeUpper)
            return moveTo(location, curve->segment2());
        return divideAndMove(location, curve, time);
    }

    /** Divides a curve off its ends, and moves location onto the new segment. */
    vxSegment *divideAndMove(vxCurveLocation *location, vxCurve *curve, double time)
    {
        vxCurve *second = divide(curve, time);
        if (!second)
            return nullptr;
        if (!m_hasHandles)
            keepStraight(curve, second);
        vxSegment *segment = second->segment1();
        if (m_previous && m_previous->time == 1.0) {
            movePreviousToSecondHalf(*second);
            location->setSegmentPrev(segment);
            return segment;
        }
        if (!m_path)
            return moveTo(location, segment);
        location->_place(second, segment);
        return segment;
    }

    /** The previous place was the end of a curve, which now ends the second half. */
    void movePreviousToSecondHalf(const vxCurve &second)
    {
        insertDivisions();
        m_previous->setSegment(second.segment2());
    }

    /** Moves location onto a segment, unless that is null; returns it. */
    vxSegment *moveTo(vxCurveLocation *location, vxSegment *segment)
    {
        if (segment) {
            insertDivisions();
            location->setSegment(segment);
        }
        return segment;
    }

    void keepStraight(vxCurve *first, vxCurve *second)
    {
        if (m_straight.isEmpty())
            m_straight.reserve(2 * m_count);
        m_straight.append(vxRef<vxCurve>(first));
        m_straight.append(vxRef<vxCurve>(second));
    }

    /** Whether a curve is where its path expects it, as all are that nobody edited behind the path's back. */
    bool isListed(const vxCurve *curve)
    {
        return curve->path() && curve->segment1()->path == curve->path() && curve->path()->_lists(curve);
    }

    vxCurve *divide(vxCurve *curve, double time)
    {
        if (curve->path() != m_path)
            insertDivisions();
        if (!isListed(curve)) {
            insertDivisions();
            return curve->divideAtTime(time, true);
        }
        m_path = curve->path();
        return m_path->_divideCurve(curve, time, m_divisions);
    }

    void insertDivisions()
    {
        if (m_path)
            m_path->_insertDivisions(m_divisions);
        m_path = nullptr;
    }

    /** Hangs the location's partner on the segment, chained with whatever hangs there already. */
    static void link(vxSegment *segment, vxCurveLocation *location)
    {
        vxCurveLocation *first = segment->intersection();
        if (!first) {
            segment->setIntersection(location->intersection);
            return;
        }
        // A chain that was made here holds the partner of everything in it, so only the two ends of the new
        // link can still lack theirs; going over the whole chain instead costs its length squared for every
        // place.
        vxCurveLocation *added = location->intersection;
        XPath::linkIntersections(first, added);
        XPath::linkIntersections(first->intersection, first);
        if (added)
            XPath::linkIntersections(added->intersection, first);
    }

    vx::Divisions m_divisions;
    const int m_count;
    /** The path whose divisions are not listed yet. */
    vxPath *m_path = nullptr;
    vxRef<vxCurve> m_curve;
    bool m_hasHandles = false;
    vxCurveLocation *m_previous = nullptr;
    double m_previousTime = noTime;
    QVarLengthArray<vxRef<vxCurve>, 32> m_straight;
};

bool isAlive(vxCurveLocation *location)
{
    vxCurve *curve = location ? location->getCurve() : nullptr;
    return curve && curve->path();
}

/**
 * The locations that mode lets through. Asked before anything is divided: a location that has to find its
 * curve again must find the whole one.
 */
QList<vxCurveLocation *> chooseLocations(const QList<vxCurveLocation *> &locations, int mode)
{
    if (mode == vx::DivideAtAll)
        return locations;
    QList<vxCurveLocation *> chosen;
    for (vxCurveLocation *location : locations) {
        if (!location)
            continue;
        if (mode == vx::DivideAtAlive && !(isAlive(location) && isAlive(location->intersection))) {
            // Belongs to a stretch that was removed with the overlaps: it must not be walked over later.
            if (location->segment)
                location->segment->setIntersection(nullptr);
            continue;
        }
        if (mode != vx::DivideAtOverlaps || location->overlap)
            chosen.append(location);
    }
    return chosen;
}

} // namespace

QList<vxCurveLocation *> XPath::divideLocations(const QList<vxCurveLocation *> &locations, int mode)
{
    const QList<vxCurveLocation *> chosen = chooseLocations(locations, mode);
    Divider divider(chosen.size());
    for (int i = chosen.size() - 1; i >= 0; --i) {
        if (chosen.at(i))
            divider.divideAt(chosen.at(i));
    }
    divider.finish();
    // Other modes answer what they chose, but never with nothing: callers go on with the list.
    return mode == vx::DivideAtAll || chosen.isEmpty() ? locations : chosen;
}

void XPath::linkIntersections(vxCurveLocation *from, vxCurveLocation *to)
{
    if (!from || !to)
        return;
    for (vxCurveLocation *n = from; n; n = n->previous) {
        if (n == to)
            return;
    }
    vxCurveLocation *tail = from;
    while (tail->next) {
        tail = tail->next;
        if (tail == to)
            return;
    }
    vxCurveLocation *head = to;
    while (head->previous)
        head = head->previous;
    tail->next = head;
    head->previous = tail;
}
