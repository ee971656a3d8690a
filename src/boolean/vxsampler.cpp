#include "vxsampler_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
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

bool boxHolds(const Box &box, const vxPoint &p)
{
    return p.x >= box.minX - closeDistance && p.x <= box.maxX + closeDistance &&
           p.y >= box.minY - closeDistance && p.y <= box.maxY + closeDistance;
}

bool belongsTo(const vxCurve *curve, const XPath *path)
{
    return curve->path() && curve->path()->parent == path;
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
    : m_path1(path1), m_path2(path2), m_monos(monos), m_op(op), m_notes(notes)
{
    for (XPath *path : { path1, path2 }) {
        if (!path)
            continue;
        const QList<vxCurve *> curves = path->getCurves();
        for (vxCurve *curve : curves)
            m_curves.push_back({ curve, PreparedCurve(curve->_cubic()) });
    }
}

Sampler::Sample Sampler::sampleAt(const Chain &chain, double distance) const
{
    const Link *link = chain.linkAt(distance);
    if (!link)
        return {};
    const double t = link->curve->getTimeAt(distance, noTime);
    const vxPoint tangent = link->curve->getTangentAtTime(t);
    return { link->curve, t, link->curve->getPointAtTime(t), std::fabs(tangent.y) < angleMargin };
}

bool Sampler::liesOnAnother(const Chain &chain, const vxPoint &point) const
{
    return std::any_of(m_curves.begin(), m_curves.end(), [&](const Neighbour &neighbour) {
        return boxHolds(neighbour.prepared.box, point) && !chain.holds(neighbour.curve) &&
               timeOf(neighbour.prepared.values, point) != noTime;
    });
}

/**
 * The middle of the stretch; where that lies on another contour (a circle inscribed in its square, a corner
 * on an edge) a winding would say nothing, so the first other place that lies on none. A stretch that runs
 * along another has no such place and keeps its middle.
 */
Sampler::Sample Sampler::chooseSample(const Chain &chain) const
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
    if (m_op == 3 && m_path2) {
        // Minuend inside the subtrahend, or subtrahend outside the minuend: not part of any result.
        if (belongsTo(sample.curve, m_path1) &&
            m_path2->getWinding(sample.point, sample.horizontal).winding != 0)
            return {};
        if (belongsTo(sample.curve, m_path2) &&
            m_path1->getWinding(sample.point, sample.horizontal).winding == 0)
            return {};
    }
    return XPath::getWinding(sample.point, m_monos, sample.horizontal);
}

void Sampler::propagate(vxSegment *start)
{
    const Chain chain(start);
    const Sample sample = chooseSample(chain);
    if (!(sample.time > timeMargin && sample.time < timeUpper))
        m_notes.grazedSample = true;
    const vxWinding winding = count(sample);
    for (auto link = chain.links.rbegin(); link != chain.links.rend(); ++link) {
        link->segment->winding = winding.winding;
        link->segment->contour = winding.contour;
    }
}

} // namespace vx
