#include "vxapart_p.h"
#include "vxbatch_p.h"
#include "vxcurve.h"
#include "vxcurvepair_p.h"
#include "vxnearness_p.h"
#include "vxnowhere_p.h"
#include "vxpath.h"
#include "vxtolerance.h"

using namespace vxTolerance;

namespace vx {

namespace {

/** Path units: ends this near to another curve may meet it or not, by rounding alone. */
constexpr double nearMissDistance = 5 * closeDistance;

bool within(double t, bool skipStart, bool skipEnd)
{
    return t >= (skipStart ? timeMargin : 0) && t <= (skipEnd ? timeUpper : 1);
}

/** Whether two curves follow each other. Two that are a whole contour share both their ends. */
bool isJoined(const opParam &param)
{
    return param.excludeStart != param.excludeEnd;
}

/** Where they are joined. */
Joint jointOf(const opParam &param)
{
    return param.excludeEnd ? Joint::EndToStart : Joint::StartToEnd;
}

} // namespace

std::optional<Prospect> firstLook(const PreparedCurve &c1, const PreparedCurve &c2, const opParam &param)
{
    // Neighbours first: their boxes always meet.
    if (isJoined(param) && meetOnlyAtJoint(c1, c2, jointOf(param)))
        return std::nullopt; // all there is to find is left out
    if (!boxesMeet(c1.box, c2.box))
        return std::nullopt;
    int nearEnd;
    const PossibleContact contact = possibleContact(c1, c2, nearEnd);
    if (contact == PossibleContact::None)
        return std::nullopt;
    const bool endsNear =
        contact == PossibleContact::Any && !(isJoined(param) && touchOnlyAtJoint(c1, c2, jointOf(param)));
    return Prospect{ endsNear, nearEnd };
}

void CurvePair::intersect()
{
    if (const std::optional<Prospect> prospect = firstLook(m_values1, m_values2, m_param))
        intersect(*prospect);
}

void CurvePair::intersect(const Prospect &prospect)
{
    if (!(prospect.endsNear && addOverlap(prospect.nearEnd)))
        addMeetings(prospect.endsNear);
    const bool neighbours = m_param.excludeStart || m_param.excludeEnd;
    if (!m_found && prospect.endsNear && !neighbours && m_curve1 && m_curve2)
        noteNearEnds();
}

void CurvePair::addMeetings(bool endsNear)
{
    const int before = m_locations.size();
    if (m_values1.straight && m_values2.straight) {
        addLines(); // finite chords include their ends, so there is nothing more to look for
        return;
    }
    if (m_values1.straight || m_values2.straight)
        addCurveAndLine();
    else if (!(endsNear && addSharedEnd()))
        addCurves(ClipRange(), 0);
    if (endsNear && m_locations.size() == before)
        addCloseEnds();
}

/**
 * Where an end of one curve lies on the other as far as rounding can tell, although nothing was found, the
 * meeting may have slipped through between two curves of a contour.
 */
void CurvePair::noteNearEnds()
{
    const auto note = [this](const PreparedCurve &values, const vxCurve &curve, const vxPoint &p,
                             const vxSegment *vertex) {
        const Box at{ p.x - nearMissDistance, p.y - nearMissDistance, p.x + nearMissDistance,
                      p.y + nearMissDistance };
        if (!mayComeNear(values, p) || !boxesMeet(values.box, at) ||
            isFarFromChord(values.values, p, nearMissDistance))
            return;
        double distance = nearMissDistance;
        const double t = timeNear(values.values, p, distance);
        if (t == noTime)
            return;
        const vxSegment *otherVertex = t < timeMargin  ? curve.segment1()
                                       : t > timeUpper ? curve.segment2()
                                                       : nullptr;
        m_param.nearMisses.push_back({ vertex, otherVertex, curve.segment1() });
    };
    note(m_values1, *m_curve1, m_values2.values.p0(), m_curve2->segment1());
    note(m_values1, *m_curve1, m_values2.values.p3(), m_curve2->segment2());
    note(m_values2, *m_curve2, m_values1.values.p0(), m_curve1->segment1());
    note(m_values2, *m_curve2, m_values1.values.p3(), m_curve1->segment2());
}

bool CurvePair::addOverlap(int nearEnd)
{
    TimePair pairs[2];
    if (!findOverlap(m_values1, m_values2, pairs, nearEnd))
        return false;
    for (const TimePair &pair : pairs)
        addLocation(pair.t1, nowhere, pair.t2, nowhere, true);
    return true;
}

void CurvePair::addLines()
{
    const vxPoint p = linePoint(m_values1.values, m_values2.values);
    if (!p.isNaN())
        addLocation(noTime, p, noTime, p, false);
}

void CurvePair::addCurveAndLine()
{
    const bool lineFirst = m_values1.straight;
    const Cubic &line = lineFirst ? m_values1.values : m_values2.values;
    const Cubic &curve = lineFirst ? m_values2.values : m_values1.values;
    double roots[3];
    const int count = curveLineTimes(curve, line, roots);
    for (int i = 0; i < count; ++i) {
        const double tc = roots[i];
        const vxPoint pc = pointAt(curve, tc);
        const double tl = timeOf(line, pc);
        if (tl == noTime)
            continue;
        const vxPoint pl = pointAt(line, tl);
        const double t2 = lineFirst ? tc : tl;
        if (m_param.excludeEnd && t2 <= timeMargin)
            continue;
        if (lineFirst)
            addLocation(tl, pl, tc, pc, false);
        else
            addLocation(tc, pc, tl, pl, false);
    }
}

/** Where it is known what clipping would find. */
bool CurvePair::addSharedEnd()
{
    TimePair end;
    if (!clipToSharedEnd(m_values1, m_values2, end))
        return false;
    TimePairs found;
    found.append(end.t1, end.t2);
    addFound(found, false);
    return true;
}

int CurvePair::addCurves(const ClipRange &range, int calls)
{
    TimePairs found;
    calls = clipCurves(m_values1.values, m_values2.values, range, calls, found);
    if (found.isCutShort())
        m_param.unfinished.push_back({ m_curve1, m_curve2 });
    addFound(found, range.flip);
    return calls;
}

Cubic CurvePair::wholeValues(const vxCurve *curve, const Cubic &values) const
{
    const bool mayDiffer = m_given == Values::MayBeParts && curve && curve->segment1() && curve->segment2();
    return mayDiffer ? curve->_cubic() : values;
}

void CurvePair::addFound(const TimePairs &found, bool flip)
{
    bool anyAccepted = false;
    for (int i = 0; i < found.count() && !anyAccepted; ++i)
        anyAccepted = acceptTimes(found[i].t1, found[i].t2, false);
    if (!anyAccepted)
        return;
    // Clipping counts times on the curves themselves, whatever part it was given.
    const Cubic whole1 = wholeValues(m_curve1, m_values1.values);
    const Cubic whole2 = wholeValues(m_curve2, m_values2.values);
    const Side side1{ m_curve1, whole1 };
    const Side side2{ m_curve2, whole2 };
    for (int i = 0; i < found.count(); ++i) {
        addLocation(flip ? side2 : side1, found[i].t1, nowhere, flip ? side1 : side2, found[i].t2, nowhere,
                    false);
    }
}

void CurvePair::addCloseEnds()
{
    const auto addIfClose = [this](double t1, double t2) {
        const Cubic &c1 = m_values1.values;
        const Cubic &c2 = m_values2.values;
        const vxPoint p1 = t1 == 0 ? c1.p0() : c1.p3();
        const vxPoint p2 = t2 == 0 ? c2.p0() : c2.p3();
        if (p1.isClose(p2, closeDistance) && !(m_refused == Meeting{ t1, p1, t2, p2 }))
            addLocation(t1, p1, t2, p2, false);
    };
    addIfClose(0, 0);
    if (!m_param.excludeStart)
        addIfClose(0, 1);
    if (!m_param.excludeEnd)
        addIfClose(1, 0);
    addIfClose(1, 1);
}

bool CurvePair::acceptTimes(double t1, double t2, bool overlap) const
{
    const bool skipStart = m_param.excludeStart && !overlap;
    const bool skipEnd = m_param.excludeEnd && !overlap;
    // The exclusions cross over: curve 1's start meets the end of the curve before it, which is curve 2.
    return within(t1, skipStart, skipEnd) && within(t2, skipEnd, skipStart);
}

void CurvePair::addLocation(double t1, const vxPoint &p1, double t2, const vxPoint &p2, bool overlap)
{
    addLocation({ m_curve1, m_values1.values }, t1, p1, { m_curve2, m_values2.values }, t2, p2, overlap);
}

void CurvePair::addLocation(const Side &side1, double t1, const vxPoint &p1, const Side &side2, double t2,
                            const vxPoint &p2, bool overlap)
{
    if (t1 == noTime)
        t1 = timeOf(side1.values, p1);
    if (t1 != noTime && t2 == noTime)
        t2 = timeOf(side2.values, p2);
    if (!acceptTimes(t1, t2, overlap)) // nor is noTime within a curve
        return;
    m_found = true;
    if (m_param.renormalize) {
        // Times on the two halves of one curve become times on that curve, and so do the points to be
        // computed.
        const double s = m_param.renormalizeTime;
        t1 *= s;
        t2 = s + (1 - s) * t2;
    }
    const auto pointOn = [this](const Side &side, double t) {
        return m_param.renormalize ? pointAt(wholeValues(side.curve, side.values), t)
                                   : pointAt(side.values, t);
    };
    auto *loc1 = vxMake(m_param.batch, side1.curve, t1, p1.isNaN() ? pointOn(side1, t1) : p1, overlap, 0);
    auto *loc2 = vxMake(m_param.batch, side2.curve, t2, p2.isNaN() ? pointOn(side2, t2) : p2, overlap, 0);
    loc1->intersection = loc2;
    loc2->intersection = loc1;

    const bool samePath = side1.curve && side2.curve && side1.curve->path() == side2.curve->path();
    vxCurveLocation *loc = samePath && side1.curve->index() > side2.curve->index() ? loc2 : loc1;
    if ((m_param.include && !m_param.include(loc)) ||
        vxCurveLocation::insert(m_locations, loc, true) != loc) {
        m_refused = Meeting{ t1, loc1->point, t2, loc2->point };
        loc1->release();
        loc2->release();
        return;
    }
    // With another entry in front, the walk over known meetings may stop before the one that was refused.
    m_refused.reset();
}

void addSelfIntersection(const PreparedCurve &values, vxCurve *curve, QList<vxCurveLocation *> &locations,
                         opParam &param)
{
    if (values.straight)
        return; // cannot loop; spares the roots
    const double split = loopSplitTime(values.values);
    if (split == noTime)
        return;
    Cubic first;
    Cubic second;
    subdivide(values.values, split, first, second);
    param.renormalizeTime = split;
    param.renormalize = true;
    param.excludeEnd = true;
    const PreparedCurve half1(first);
    const PreparedCurve half2(second);
    CurvePair(half1, half2, curve, curve, locations, param).intersect();
}

} // namespace vx
