#include "vxsampler_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxintersect_p.h"
#include "vxtolerance.h"

#include <algorithm>

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

std::vector<vxCurve *> curvesOf(std::initializer_list<const XPath *> paths)
{
    std::vector<vxCurve *> all;
    for (const XPath *path : paths) {
        if (!path)
            continue;
        for (const vxPath *child : path->children) {
            const QList<vxCurve *> curves = child->getCurves();
            all.insert(all.end(), curves.begin(), curves.end());
        }
    }
    return all;
}

std::vector<Box> boxesOf(const std::vector<vxCurve *> &curves)
{
    std::vector<Box> boxes;
    boxes.reserve(curves.size());
    for (const vxCurve *curve : curves)
        boxes.push_back(pulledBox(curve->_cubic()));
    return boxes;
}

QList<vxMono *> piecesOf(const XPath &path)
{
    QList<vxMono *> pieces;
    for (const vxPath *child : path.children)
        pieces += child->getMonoCurves();
    return pieces;
}

} // namespace

Sampler::Chain::Chain(vxSegment *start)
{
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

Sampler::Sampler(XPath *path1, XPath *path2, const QList<vxMono *> &monos, int op, RunNotes &notes)
    : m_path1(path1), m_path2(path2), m_pieces(monos), m_op(op), m_notes(notes),
      m_curves(curvesOf({ path1, path2 })), m_boxes(boxesOf(m_curves))
{
    if (asksForSides()) {
        m_pieces1 = std::make_unique<MonoIndex>(piecesOf(*path1));
        m_pieces2 = std::make_unique<MonoIndex>(piecesOf(*path2));
    }
}

Sampler::Sample Sampler::sampleAt(const Chain &chain, double distance) const
{
    const Link *link = chain.linkAt(distance);
    if (!link)
        return {};
    const double t = link->curve->getTimeAt(distance, noTime);
    const vxPoint tangent = link->curve->getTangentAtTime(t);
    const double rise = std::fabs(tangent.y);
    return { link->curve, t, link->curve->getPointAtTime(t), rise < angleMargin,
             rise >= angleMargin && rise < grazingRise };
}

bool Sampler::liesOnAnother(const Chain &chain, const vxPoint &point)
{
    bool lies = false;
    // Twice the reach of boxHolds, which decides: the comparisons may round differently.
    m_boxes.query({ point.x, point.y, point.x, point.y }, 2 * closeDistance, 0, [&](int i) {
        vxCurve *curve = m_curves[size_t(i)];
        lies = lies || (boxHolds(m_boxes[i], point) && !chain.holds(curve) &&
                        timeOf(curve->_cubic(), point) != noTime);
    });
    return lies;
}

/**
 * The middle of the stretch; where that lies on another contour (a circle inscribed in its square, a corner
 * on an edge) a winding would say nothing, so the first other place that lies on none. A stretch that runs
 * along another has no such place and keeps its middle.
 */
Sampler::Sample Sampler::chooseSample(const Chain &chain)
{
    const Sample middle = sampleAt(chain, chain.length / 2);
    if (!middle.curve || !liesOnAnother(chain, middle.point))
        return middle;
    m_notes.movedSample = true;
    for (double fraction : otherFractions) {
        const Sample sample = sampleAt(chain, chain.length * fraction);
        if (sample.curve && !liesOnAnother(chain, sample.point))
            return sample;
    }
    return middle;
}

vxWinding Sampler::count(const Sample &sample) const
{
    if (!sample.curve)
        return {};
    if (asksForSides()) {
        // Minuend inside the subtrahend, or subtrahend outside the minuend: not part of any result.
        if (belongsTo(sample.curve, m_path1) &&
            m_pieces2->winding(sample.point, sample.horizontal).winding != 0)
            return {};
        if (belongsTo(sample.curve, m_path2) &&
            m_pieces1->winding(sample.point, sample.horizontal).winding == 0)
            return {};
    }
    return m_pieces.winding(sample.point, sample.horizontal);
}

/**
 * Whether another place of the stretch, where no ray grazes anything, has the same count. A stretch has one
 * count from end to end, so that this settles one that was taken at a vertex or an extremum.
 */
bool Sampler::isConfirmed(const Chain &chain, const vxWinding &winding)
{
    for (double fraction : otherFractions) {
        const Sample sample = sampleAt(chain, chain.length * fraction);
        if (!sample.curve || grazes(sample) || liesOnAnother(chain, sample.point))
            continue;
        const vxWinding other = count(sample);
        return other.winding == winding.winding && other.contour == winding.contour;
    }
    return false;
}

void Sampler::propagate(vxSegment *start)
{
    const Chain chain(start);
    const Sample sample = chooseSample(chain);
    const vxWinding winding = count(sample);
    if (grazes(sample) && !isConfirmed(chain, winding))
        m_notes.grazedSample = true;
    for (auto link = chain.links.rbegin(); link != chain.links.rend(); ++link) {
        link->segment->winding = winding.winding;
        link->segment->contour = winding.contour;
    }
}

} // namespace vx
