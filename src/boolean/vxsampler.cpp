#include "vxsampler_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxintersect_p.h"
#include "vxnearness_p.h"
#include "vxoutline_p.h"
#include "vxsamplefractions_p.h"
#include "vxsharedborder_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace vxTolerance;

namespace vx {

namespace {

/** Sine of the angle to the level below which a crossing's place on it is lost to rounding. */
constexpr double grazingRise = 1e-3;

/** Path units; the ray from a sample this near to a vertex may meet the other curve of the vertex. */
constexpr double besideVertex = 1e-3;

/**
 * Whether rounding decides what the ray along the level of a vertex or an extremum meets. A line without
 * handles starts and ends at rest: by its time alone a place is not seen to be near a vertex.
 */
template <typename Sample>
bool grazes(const Sample &sample)
{
    const auto isBeside = [&sample](const vxPoint &end) {
        return !(sample.point.getDistance(end) > besideVertex);
    };
    return sample.nearlyHorizontal || !sample.curve || isBeside(sample.curve->getPoint1()) ||
           isBeside(sample.curve->getPoint2());
}

bool belongsTo(const vxCurve *curve, const XPath *path)
{
    return curve->path() && curve->path()->parent == path;
}

/** Whether a curve comes within closeDistance of a point; no coordinate is larger than largest. */
bool passesThrough(const Cubic &c, const vxPoint &p, double largest)
{
    // Farther off across the chord than any rounding of timeOf() reaches.
    const double slack = 2 * closeDistance + 1e-12 * largest;
    return !isFarFromChord(c, p, slack) && timeOf(c, p) != noTime && holds(pulledBox(c), p, closeDistance);
}

} // namespace

Sampler::Sampler(const XPath *path1, const XPath *path2, int op, RunNotes &notes, StandingCurves *standing1,
                 StandingCurves *standing2)
    : m_path1(path1), m_path2(path2), m_op(op), m_notes(notes)
{
    reserve();
    append(*path1, standing1);
    m_secondPiece = m_pieces.size();
    if (path2)
        append(*path2, standing2);
    m_notes.tiltedLevel |= m_pieces.hasTiltedLevel();
}

Sampler::Sampler(const XPath *path1, const XPath *path2, const QList<vxMono *> &monos, int op,
                 RunNotes &notes)
    : Sampler(path1, path2, op, notes)
{
    m_listedPieces = std::make_unique<MonoIndex>(monos);
}

void Sampler::reserve()
{
    int count = 0;
    for (const XPath *path : { m_path1, m_path2 }) {
        for (int i = 0; path && i < path->children.size(); ++i)
            count += outlineSize(*path->children.at(i));
    }
    m_pieces.reserve(count);
    m_stretch.links.reserve(32);
}

void Sampler::append(const XPath &path, StandingCurves *standing)
{
    for (const vxPath *child : path.children)
        m_pieces.append(*child, standing);
    if (standing)
        standing->giveLengths(path);
}

Sampler::Sample Sampler::sampleAt(const Stretch::Place &place)
{
    if (!place.link)
        return {};
    const double t = timeAtLengthOf(place.cubic, place.distance, place.link->length);
    vxPoint point;
    vxPoint tangent;
    pointAndTangentAt(place.cubic, t, point, tangent);
    const double rise = std::fabs(tangent.y);
    return {
        place.link->curve, t, point, rise, rise < angleMargin, rise >= angleMargin && rise < grazingRise
    };
}

bool Sampler::isOtherThrough(const vxCurve *curve, const vxPoint &point) const
{
    return curve && !m_stretch.holds(curve) &&
           passesThrough(curve->_cubic(), point, m_pieces.largestCoordinate());
}

bool Sampler::liesOnAnother(const vxPoint &point)
{
    m_pieces.findNear(point, m_pieces.reachOfCurves(), m_near);
    const std::vector<const vxCurve *> &others = m_pieces.curvesWithoutReach();
    return std::any_of(m_near.begin(), m_near.end(),
                       [&](int i) { return isOtherThrough(m_pieces.curveOf(i), point); }) ||
           std::any_of(others.begin(), others.end(),
                       [&](const vxCurve *curve) { return isOtherThrough(curve, point); });
}

vxWinding Sampler::count(const Sample &sample) const
{
    const auto windingOf = [&](int first, int last) {
        return m_pieces.winding(sample.point, sample.horizontal, first, last);
    };
    if (asksForSides()) {
        // Minuend inside the subtrahend, or subtrahend outside the minuend: not part of any result.
        if (belongsTo(sample.curve, m_path1) && windingOf(m_secondPiece, m_pieces.size()).winding != 0)
            return {};
        if (belongsTo(sample.curve, m_path2) && windingOf(0, m_secondPiece).winding == 0)
            return {};
    }
    return m_listedPieces ? m_listedPieces->winding(sample.point, sample.horizontal)
                          : windingOf(0, m_pieces.size());
}

/** At a place of a curve that rises so much, as part of its way. */
bool Sampler::allowsClearCounts(double rise) const
{
    // Up to here, rounding moves a crossing of the curve, a few 1e-15 of the largest coordinate divided by
    // the rise, by far less than closeDistance; see ClearCount.
    constexpr double largestByRise = 1e7;
    constexpr double largest = 1e5;
    return !m_listedPieces && m_pieces.curvesWithoutReach().empty() &&
           m_pieces.largestCoordinate() <= std::min(largest, largestByRise * rise);
}

/**
 * The count at a place of a curve that rises there, known within blur along each axis, if every other outline
 * passes it clearly on one side: what liesOnAnother() denies and count() then gives, by looking once at the
 * pieces on its level. False where it is not that clear.
 */
bool Sampler::countClearly(const vxCurve *own, double rise, const vxPoint &p, double blur,
                           vxWinding &winding) const
{
    if (!allowsClearCounts(rise))
        return false;
    const double slack = m_pieces.reachOfCurves() + blur;
    ClearCount count({ p.x - slack, p.y - slack, p.x + slack, p.y + slack });
    m_pieces.countClearly(p, slack, own, m_secondPiece, count);
    if (!count.isClear())
        return false;
    if (asksForSides() && belongsTo(own, m_path1) && count.windingIn(true) != 0)
        winding = {};
    else if (asksForSides() && belongsTo(own, m_path2) && count.windingIn(false) == 0)
        winding = {};
    else
        winding = count.result();
    return true;
}

/**
 * Does the same at a place well within a line, without searching for its time.
 *
 * A line with its control points on its ends is at s = 3 t^2 - 2 t^3 of its way at time t, and the rules of
 * quadrature are exact for its speed. Newton's method begins at t = d for a sample at d of the way, steps to
 * (1 + 4 d) / 6 where d < 1/2, which is beyond the root but not beyond 1/2, and comes down from there, since
 * s is convex; beyond 1/2 it is the mirror image. So it arrives, and rounding (of a few 1e-16 of the largest
 * coordinate in the speed's coefficients) takes the sample less than 1e-9 off the place that d says.
 */
bool Sampler::countOnLine(const Stretch::Place &place, vxWinding &winding) const
{
    constexpr double blur = 1e-8;
    constexpr double shortest = 1e-2;
    constexpr double fromEnd = 1. / 64;
    const Cubic &c = place.cubic;
    if (!place.link || !isChord(c) || !(place.link->length >= shortest))
        return false;
    const double length = place.link->length;
    const double part = place.distance / length;
    if (!(std::min(part, 1 - part) > std::max(fromEnd, 2 * besideVertex / length)))
        return false;
    const vxPoint chord = c.p3().subtract(c.p0());
    const vxPoint point = c.p0().add(chord.multiply(part));
    if (chord.y == 0)
        return countOnLevelLine(place.link->curve, point, blur, winding);
    const double rise = std::fabs(chord.y) / length;
    return rise > 2 * grazingRise && countClearly(place.link->curve, rise, point, blur, winding);
}

/**
 * What liesOnAnother() denies and count() then gives at a place of a level line, known within blur. That is
 * counted halfway to the nearest outlines above and below. Their distances are bounded here; where every
 * piece passes all the levels that come into question, clearly on one side of the place, it is the same count
 * on each of them.
 */
bool Sampler::countOnLevelLine(const vxCurve *own, const vxPoint &p, double blur, vxWinding &winding) const
{
    if (!allowsClearCounts(grazingRise) || m_pieces.hasManyOutlines())
        return false;
    const double slack = m_pieces.reachOfCurves() + blur;
    ClearNeighbours neighbours({ p.x - slack, p.y - slack, p.x + slack, p.y + slack });
    m_pieces.findNeighbours(own, m_secondPiece, neighbours);
    if (!neighbours.isClear())
        return false;
    using Of = ClearNeighbours::Of;
    if (asksForSides()) {
        const bool isFirst = belongsTo(own, m_path1);
        if (!countBetween(neighbours, isFirst ? Of::Second : Of::First, winding))
            return false;
        if ((winding.winding != 0) == isFirst) {
            winding = {};
            return true;
        }
    }
    return countBetween(neighbours, Of::Both, winding);
}

/** What count() gives for a place on a level line with these neighbours; false where it is not clear. */
bool Sampler::countBetween(const ClearNeighbours &neighbours, ClearNeighbours::Of operands,
                           vxWinding &winding) const
{
    using Of = ClearNeighbours::Of;
    const int first = operands == Of::Second ? m_secondPiece : 0;
    const int last = operands == Of::First ? m_secondPiece : m_pieces.size();
    const ClearNeighbours::Distance above = neighbours.above(operands);
    const ClearNeighbours::Distance below = neighbours.below(operands);
    vxWinding upper, lower;
    if (!above.isNone() &&
        !(above.isSure() && m_pieces.countAside(neighbours.halfwayAbove(above), first, last, upper)))
        return false;
    if (!below.isNone() &&
        !(below.isSure() && m_pieces.countAside(neighbours.halfwayBelow(below), first, last, lower)))
        return false;
    winding = { std::max(upper.winding, lower.winding), (upper.winding == 0) != (lower.winding == 0) };
    return true;
}

/** The count at a sample; false where that lies on another outline, so that a count would say nothing. */
bool Sampler::countIfFree(const Sample &sample, vxWinding &winding)
{
    if (!sample.horizontal && !grazes(sample) &&
        countClearly(sample.curve, sample.rise, sample.point, 0, winding))
        return true;
    if (liesOnAnother(sample.point))
        return false;
    winding = count(sample);
    return true;
}

/**
 * Whether the stretch is one curve that surely runs along another from end to end, so that no place of it is
 * free of others. The two meet where the stretch starts.
 */
bool Sampler::isShared() const
{
    if (m_stretch.links.size() != 1)
        return false;
    const vxCurve *own = m_stretch.links.front().curve;
    const vxPoint end = own->getPoint2();
    const auto endsWith = [&](const vxSegment *vertex) {
        return vertex && vertex->point.isClose(end, closeDistance);
    };
    const auto isAlong = [&](const vxCurve *other) {
        return other && other != own && (belongsTo(other, m_path1) || belongsTo(other, m_path2)) &&
               runsAlong(own->_cubic(), other->_cubic());
    };
    for (const vxCurveLocation *met = own->segment1()->intersection(); met; met = met->next) {
        const vxSegment *vertex = met->segment;
        if (!vertex || !vertex->path)
            continue;
        const vxSegment *before = vertex->getPrevious();
        if ((endsWith(vertex->getNext()) && isAlong(vertex->getCurve())) ||
            (endsWith(before) && isAlong(before->getCurve())))
            return true;
    }
    return false;
}

/**
 * Whether another place of the stretch, where no ray grazes anything, has the same count. A stretch has one
 * count from end to end, so that this settles one that was taken at a vertex or an extremum.
 */
bool Sampler::isConfirmed(const vxWinding &winding)
{
    for (size_t i = 1; i < std::size(sampleFractions); ++i) {
        const Stretch::Place place = m_stretch.placeAt(m_stretch.length * sampleFractions[i]);
        vxWinding other;
        if (!countOnLine(place, other)) {
            const Sample sample = sampleAt(place);
            if (!sample.curve || grazes(sample) || !countIfFree(sample, other))
                continue;
        }
        // The tracer looks at the contour flag of a union only, where the count alone does not decide.
        const bool flagMatters = m_op == Unite && winding.winding != 1;
        return other.winding == winding.winding && (!flagMatters || other.contour == winding.contour);
    }
    return false;
}

/** The first place off the middle that lies on no other outline, and its count; false where there is none. */
bool Sampler::countElsewhere(Sample &sample, vxWinding &winding)
{
    for (size_t i = 1; i < std::size(sampleFractions); ++i) {
        sample = sampleAt(m_stretch.placeAt(m_stretch.length * sampleFractions[i]));
        if (sample.curve && countIfFree(sample, winding))
            return true;
    }
    return false;
}

/**
 * The count at the middle of the stretch; where that lies on another contour (a circle inscribed in its
 * square, a corner on an edge) a winding would say nothing, so at the first other place that lies on none. A
 * stretch that runs along another has no such place and keeps its middle. Notes what makes the count
 * doubtful.
 */
vxWinding Sampler::countStretch()
{
    vxWinding winding;
    const Stretch::Place place = m_stretch.placeAt(m_stretch.length * sampleFractions[0]);
    if (countOnLine(place, winding))
        return winding;
    const Sample middle = sampleAt(place);
    const bool shared = isShared();
    Sample sample = middle;
    if (middle.curve && (shared || !countIfFree(middle, winding))) {
        m_notes.movedSample = true;
        if (shared || !countElsewhere(sample, winding)) {
            sample = middle;
            winding = count(middle);
        }
    }
    if (grazes(sample) && (shared || !isConfirmed(winding)))
        m_notes.grazedSample = true;
    return winding;
}

void Sampler::propagate(vxSegment *start)
{
    m_stretch.follow(start);
    const vxWinding winding = countStretch();
    for (auto link = m_stretch.links.rbegin(); link != m_stretch.links.rend(); ++link) {
        link->segment->winding = winding.winding;
        link->segment->contour = winding.contour;
    }
}

} // namespace vx
