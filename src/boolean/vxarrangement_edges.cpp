#include "vxarrangement_p.h"
#include "vxhashedchains_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/** Stretches run together when they stay within this many snapping distances ... */
constexpr double togetherFactor = 2;
/** ... and within this part of their length, so that short ones are not all the same. */
constexpr double togetherFraction = 0.01;
/** In units of the frame: stretches whose control points differ by less surely run together. */
constexpr double alikeDistance = 1e-9;
static_assert(togetherFactor * leastSnapping > 10 * alikeDistance, "far within the reach of any snapping");

/**
 * How near a stretch must keep to another to run with it. Its length matters for short ones alone: computed,
 * too, it is no less than the chord, since positive weights that are exact for B' make it so.
 */
double reachOf(const Cubic &c, double snapping)
{
    const double reach = togetherFactor * snapping;
    const bool isLong = togetherFraction * c.p0().getDistance(c.p3()) > 1.001 * reach;
    return isLong ? reach : std::min(reach, togetherFraction * length(c));
}

/**
 * Greatest difference of a coordinate of two stretches' control points, where they run between the same nodes
 * in the same direction, or against each other and are no loops.
 */
double difference(const Edge &a, const Edge &b)
{
    const double *first = a.inFrame.v;
    const double *second = b.inFrame.v;
    const int other = a.node0 == b.node0 ? 0 : 2; // ends lie on the nodes
    return std::max({ std::fabs(first[2] - second[2 + other]), std::fabs(first[3] - second[3 + other]),
                      std::fabs(first[4] - second[4 - other]), std::fabs(first[5] - second[5 - other]) });
}

/** The lengths of a curve's control polygon along both axes together: at least its length. */
double polygonBound(const Cubic &c)
{
    double bound = 0;
    for (int i = 0; i < 6; ++i)
        bound += std::fabs(c.v[i + 2] - c.v[i]);
    return bound;
}

/**
 * Whether a curve goes one way along the axis on which comesNear() first looks for times (x, but for upright
 * lines), and far enough: then its speed there is at least three sixteenths of its chord from a quarter of
 * its time to three quarters, and its speed in all at most 24 chords.
 *
 * That makes comesNear() sure to find a point that lies off a place at these times by d up to alikeDistance.
 * The one time that it begins with is off by 6 d / chord, and so the place by 140 d. From there each step
 * leaves no more than a twentieth of the way, 140 d |B''| / |B'|^2 for chords from 0.1, and what is left
 * after four is rounding.
 */
bool goesOneWay(const Cubic &c)
{
    constexpr double leastChord = 0.1;
    constexpr double leastPart = 1.0 / 8;
    const double *x = c.v;
    const double *v = x[0] == x[2] && x[0] == x[4] && x[0] == x[6] ? x + 1 : x;
    const auto steps = std::minmax({ v[2] - v[0], v[4] - v[2], v[6] - v[4] });
    const double chord = std::fabs(v[6] - v[0]);
    return (steps.first >= 0 || steps.second <= 0) && chord >= leastChord &&
           chord >= leastPart * polygonBound(c);
}

/**
 * Whether two stretches between the same nodes keep within reach of each other; areaBetween is set to about
 * the area between them then, at least. Exactly: not to bounds of that, which take less time.
 */
bool runTogether(const Edge &a, const Edge &b, double snapping, bool exactly, AreaRange &areaBetween)
{
    areaBetween = AreaRange();
    // Ends of one chord, farther apart than the snapping distance: the places below would be found on it to
    // some last places, while reach is a hundredth of that distance at least.
    if (a.line && b.line && a.node0 != a.node1)
        return true;
    if (!exactly) {
        const double apart = difference(a, b);
        if (apart <= alikeDistance && goesOneWay(b.inFrame)) {
            // Places are off by 1.5 times that at most; rounding is far below 1e-11.
            areaBetween.most = 4 * (apart + 1e-11) * polygonBound(a.inFrame);
            return true;
        }
    }
    const vxPoint places[] = { placeAt(a.inFrame, 0.25), placeAt(a.inFrame, 0.5), placeAt(a.inFrame, 0.75) };
    const Box box = hullBox(b.inFrame);
    for (const vxPoint &place : places) {
        if (!holds(box, place, togetherFactor * snapping + closeDistance))
            return false;
    }
    const double reach = reachOf(a.inFrame, snapping);
    double farthest = 0;
    for (const vxPoint &place : places) {
        double distance = reach;
        if (!comesNear(b.inFrame, place, distance))
            return false;
        farthest = std::max(farthest, distance);
    }
    areaBetween.least = areaBetween.most = farthest * length(a.inFrame);
    return true;
}

/** Of two stretches between the same nodes. */
bool haveSameDirection(const Edge &first, const Edge &stretch)
{
    if (stretch.node0 != stretch.node1)
        return stretch.node0 == first.node0;
    // A loop has both ends on one node: its direction shows a quarter along.
    const vxPoint quarter = placeAt(stretch.inFrame, 0.25);
    return placeAt(first.inFrame, 0.25).getDistance(quarter) <=
           placeAt(first.inFrame, 0.75).getDistance(quarter);
}

} // namespace

/**
 * Appends the signed counts of stretches that run together, along the first of them, to the shares; those
 * that cancel are left out.
 */
void Arrangement::addShares(int first, const std::vector<Companions> &companions,
                            const std::vector<Edge> &stretches)
{
    const auto begin = std::ptrdiff_t(m_current.shares.size());
    for (int i = first; i != -1; i = companions[size_t(i)].next) {
        const int operand = operandOf(stretches[size_t(i)]);
        auto at = std::find_if(m_current.shares.begin() + begin, m_current.shares.end(),
                               [operand](const Share &s) { return s.operand == operand; });
        if (at == m_current.shares.end())
            at = m_current.shares.insert(at, { operand, 0 });
        at->count += haveSameDirection(stretches[size_t(first)], stretches[size_t(i)]) ? 1 : -1;
    }
    const auto cancels = [this](const Share &s) {
        return m_evenOdd[size_t(s.operand)] ? s.count % 2 == 0 : s.count == 0;
    };
    m_current.shares.erase(std::remove_if(m_current.shares.begin() + begin, m_current.shares.end(), cancels),
                           m_current.shares.end());
}

/**
 * Makes one edge of stretches that run together between the same nodes; drops what shrank to a point or
 * cancels.
 */
void Arrangement::joinStretches(std::vector<Edge> &stretches)
{
    std::vector<Companions> companions(stretches.size());
    HashedChains firsts(stretches.size());
    for (int i = 0; i < int(stretches.size()); ++i) {
        const Edge &stretch = stretches[size_t(i)];
        if (stretch.node0 == stretch.node1 && !bulges(stretch.inFrame, m_snapping))
            continue;
        const auto ends = std::minmax(stretch.node0, stretch.node1);
        int group = -1;
        AreaRange areaBetween;
        int &head = firsts.first(quint64(ends.first), quint64(ends.second));
        for (int k = head; k != -1; k = firsts.next(k)) {
            const Edge &first = stretches[size_t(k)];
            AreaRange area;
            if (std::minmax(first.node0, first.node1) == ends && (group == -1 || k < group) &&
                runTogether(stretch, first, m_snapping, m_measuresExactly, area)) {
                group = k;
                areaBetween = area;
            }
        }
        // Rounding keeps the order of sums: what exact terms would come to lies in the range, too.
        m_movedArea.least += areaBetween.least;
        m_movedArea.most += areaBetween.most;
        if (group == -1) {
            firsts.insert(head, i);
            group = i;
        } else {
            companions[size_t(companions[size_t(group)].last)].next = i;
        }
        companions[size_t(i)].first = group;
        companions[size_t(group)].last = i;
    }
    linkStretches(stretches, companions);
    makeEdges(stretches, companions);
}

/** Makes a link of every stretch that did not shrink to a point, with the box of its first companion. */
void Arrangement::linkStretches(const std::vector<Edge> &stretches, const std::vector<Companions> &companions)
{
    m_current.links.clear();
    m_current.links.reserve(stretches.size());
    m_current.linkBoxes.clear();
    m_current.linkBoxes.reserve(stretches.size());
    m_current.linkStarts.reserve(m_contours.size() + 1);
    m_current.linkStarts.assign(1, 0);
    int contour = 0;
    for (size_t i = 0; i < stretches.size(); ++i) {
        for (; contour < m_curves[size_t(stretches[i].curve)].contour; ++contour)
            m_current.linkStarts.push_back(int(m_current.links.size()));
        const int first = companions[i].first;
        if (first == -1)
            continue;
        m_current.links.push_back({ contour, stretches[i].node0, stretches[i].node1, -1 });
        m_current.linkBoxes.push_back(hullBox(stretches[size_t(first)].inFrame));
    }
    m_current.linkStarts.push_back(int(m_current.links.size()));
}

/** Moves the first stretch of each group that does not cancel to the edges, and numbers links by edges. */
void Arrangement::makeEdges(std::vector<Edge> &stretches, const std::vector<Companions> &companions)
{
    m_current.shares.clear();
    m_current.shares.reserve(stretches.size());
    size_t count = 0;
    auto link = m_current.links.begin();
    for (int i = 0; i < int(stretches.size()); ++i) {
        const Companions &own = companions[size_t(i)];
        if (own.first == -1)
            continue;
        int &edge = (link++)->edge;
        if (own.first != i)
            continue;
        const size_t begin = m_current.shares.size();
        if (own.next == -1)
            m_current.shares.push_back({ operandOf(stretches[size_t(i)]), 1 });
        else
            addShares(i, companions, stretches);
        if (m_current.shares.size() == begin)
            continue;
        edge = int(count);
        // Into its own vector: what is overwritten was looked at, a group's others come after its first.
        if (edge != i)
            stretches[size_t(edge)] = stretches[size_t(i)];
        Edge &made = stretches[count++];
        made.firstShare = int(begin);
        made.shareCount = int(m_current.shares.size() - begin);
    }
    stretches.resize(count);
    m_current.edges = std::move(stretches);
}

} // namespace vx
