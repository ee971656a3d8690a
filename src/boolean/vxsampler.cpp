#include "vxsampler_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxintersect_p.h"
#include "vxnearness_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/**
 * Places along a stretch, as parts of its length, that are tried after the middle: golden sections, so that
 * no regular drawing has a vertex at all of them.
 */
constexpr double otherFractions[] = { 0.381966, 0.618034, 0.236068, 0.763932, 0.145898, 0.854102 };

/** Sine of the angle to the level below which a crossing's place on it is lost to rounding. */
constexpr double grazingRise = 1e-3;

bool boxHolds(const Box &box, const vxPoint &p)
{
    return p.x >= box.minX - closeDistance && p.x <= box.maxX + closeDistance &&
           p.y >= box.minY - closeDistance && p.y <= box.maxY + closeDistance;
}

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
    return !isFarFromChord(c, p, slack) && timeOf(c, p) != noTime && boxHolds(pulledBox(c), p);
}

} // namespace

void Sampler::Chain::follow(vxSegment *start)
{
    links.clear();
    length = 0;
    vxSegment *segment = start;
    do {
        vxCurve *curve = segment->getCurve();
        if (curve) {
            const double curveLength = curve->getLength();
            links.push_back({ segment, curve, curveLength });
            length += curveLength;
        }
        segment = segment->getNext();
    } while (segment && !segment->intersection() && segment != start);
}

bool Sampler::Chain::holds(const vxCurve *curve) const
{
    return std::any_of(links.begin(), links.end(), [curve](const Link &link) { return link.curve == curve; });
}

const Sampler::Link *Sampler::Chain::linkAt(double &distance) const
{
    for (const Link &link : links) {
        if (link.length >= distance)
            return &link;
        distance -= link.length;
    }
    return nullptr;
}

Sampler::Sampler(const XPath *path1, const XPath *path2, int op, RunNotes &notes)
    : m_path1(path1), m_path2(path2), m_op(op), m_notes(notes)
{
    reserve();
    appendCurves(*path1);
    m_secondPiece = m_pieces.size();
    if (path2)
        appendCurves(*path2);
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
    m_curves.reserve(size_t(count));
}

void Sampler::appendCurves(const XPath &path)
{
    for (const vxPath *child : path.children) {
        m_pieces.append(*child);
        const QList<vxCurve *> &curves = child->_curves();
        m_curves.insert(m_curves.end(), curves.begin(), curves.end());
        m_curves.resize(m_curves.size() + size_t(outlineSize(*child) - curves.size()));
    }
}

Sampler::Sample Sampler::sampleAt(double distance) const
{
    const Link *link = m_chain.linkAt(distance);
    if (!link)
        return {};
    const Cubic c = link->curve->_cubic();
    const double t = timeAtLengthOf(c, distance, link->length);
    vxPoint point;
    vxPoint tangent;
    pointAndTangentAt(c, t, point, tangent);
    const double rise = std::fabs(tangent.y);
    return { link->curve, t, point, rise < angleMargin, rise >= angleMargin && rise < grazingRise };
}

bool Sampler::isCurveThrough(int curve, const vxPoint &point) const
{
    const vxCurve *candidate = m_curves[size_t(curve)];
    return candidate && !m_chain.holds(candidate) &&
           passesThrough(candidate->_cubic(), point, m_pieces.largestCoordinate());
}

bool Sampler::liesOnAnother(const vxPoint &point)
{
    // A curve leaves the reach of its pieces by closeDistance where it counts as straight, and by a millionth
    // of a millionth of its size where an extremum counts as its end; passesThrough() adds closeDistance.
    const double slack = 4 * closeDistance + 1e-11 * m_pieces.largestCoordinate();
    m_pieces.findNearLevel(point, slack, m_nearLevel);
    const bool nearPieces = std::any_of(m_nearLevel.begin(), m_nearLevel.end(), [&](int i) {
        const Box &reach = m_pieces.reach(i);
        return point.x >= reach.minX - slack && point.x <= reach.maxX + slack &&
               isCurveThrough(m_pieces.curveOf(i), point);
    });
    const std::vector<int> &others = m_pieces.curvesWithoutReach();
    return nearPieces ||
           std::any_of(others.begin(), others.end(), [&](int i) { return isCurveThrough(i, point); });
}

/**
 * The middle of the stretch; where that lies on another contour (a circle inscribed in its square, a corner
 * on an edge) a winding would say nothing, so the first other place that lies on none. A stretch that runs
 * along another has no such place and keeps its middle.
 */
Sampler::Sample Sampler::chooseSample()
{
    const Sample middle = sampleAt(m_chain.length / 2);
    if (!middle.curve || !liesOnAnother(middle.point))
        return middle;
    m_notes.movedSample = true;
    for (double fraction : otherFractions) {
        const Sample sample = sampleAt(m_chain.length * fraction);
        if (sample.curve && !liesOnAnother(sample.point))
            return sample;
    }
    m_pieces.findNearLevel(middle.point, 0, m_nearLevel);
    return middle;
}

vxWinding Sampler::count(const Sample &sample)
{
    if (!sample.curve)
        return {};
    const auto windingOf = [&](int first, int last) {
        return sample.horizontal ? m_pieces.winding(sample.point, true, first, last)
                                 : m_pieces.winding(sample.point, m_nearLevel, first, last);
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

/**
 * Whether another place of the stretch, where no ray grazes anything, has the same count. A stretch has one
 * count from end to end, so that this settles one that was taken at a vertex or an extremum.
 */
bool Sampler::isConfirmed(const vxWinding &winding)
{
    for (double fraction : otherFractions) {
        const Sample sample = sampleAt(m_chain.length * fraction);
        if (!sample.curve || grazes(sample) || liesOnAnother(sample.point))
            continue;
        const vxWinding other = count(sample);
        // The tracer looks at the contour flag of a union only, where the count alone does not decide.
        const bool flagMatters = m_op == 2 && winding.winding != 1;
        return other.winding == winding.winding && (!flagMatters || other.contour == winding.contour);
    }
    return false;
}

void Sampler::propagate(vxSegment *start)
{
    m_chain.follow(start);
    const Sample sample = chooseSample();
    const vxWinding winding = count(sample);
    if (grazes(sample) && !isConfirmed(winding))
        m_notes.grazedSample = true;
    for (auto link = m_chain.links.rbegin(); link != m_chain.links.rend(); ++link) {
        link->segment->winding = winding.winding;
        link->segment->contour = winding.contour;
    }
}

} // namespace vx
