#include "vxarrangement_p.h"

#include "vxtolerance.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace vxTolerance;

namespace vx {

namespace {

/**
 * A cut this near (as part of the snapping distance) to an end or another cut is dropped: the points become
 * one.
 */
constexpr double dropFraction = 0.9;
/** Stretches run together when they stay within this many snapping distances ... */
constexpr double togetherFactor = 2;
/** ... and within this part of their length, so that short ones are not all the same. */
constexpr double togetherFraction = 0.01;
/** In units of the frame: stretches whose control points differ by less run together without a closer look.
 */
constexpr double alikeDistance = 1e-9;
static_assert(togetherFactor * leastSnapping > 10 * alikeDistance, "far within the reach of any snapping");

/** Whether a curve leaves the surroundings of its start. */
bool bulges(const Cubic &c, double distance)
{
    for (double t : { 0.25, 0.5, 0.75 }) {
        if (placeAt(c, t).getDistance(c.p0()) > distance)
            return true;
    }
    return false;
}

/** The curve with its ends moved, its handles going along. */
Cubic withEnds(const Cubic &c, const vxPoint &p0, const vxPoint &p3)
{
    return Cubic::fromPoints(p0, c.p1().add(p0.subtract(c.p0())), c.p2().add(p3.subtract(c.p3())), p3);
}

bool isWithin(const Box &box, const vxPoint &p, double slack)
{
    return p.x >= box.minX - slack && p.x <= box.maxX + slack && p.y >= box.minY - slack &&
           p.y <= box.maxY + slack;
}

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
        if (!isWithin(box, place, togetherFactor * snapping + closeDistance))
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

/** Whether a stretch has the direction of another between the same nodes. */
bool runsAlong(const Edge &first, const Edge &stretch)
{
    if (stretch.node0 != stretch.node1)
        return stretch.node0 == first.node0;
    // A loop has both ends on one node: its direction shows a quarter along.
    const vxPoint quarter = placeAt(stretch.inFrame, 0.25);
    return placeAt(first.inFrame, 0.25).getDistance(quarter) <=
           placeAt(first.inFrame, 0.75).getDistance(quarter);
}

/**
 * The first cut for which isPassed no longer holds, sought in growing steps and then by halving: curves that
 * run together meet in thousands of places, most of them too near to each other to count.
 */
template <typename IsPassed>
const Cut *passWhile(const Cut *begin, const Cut *end, const IsPassed &isPassed)
{
    std::ptrdiff_t step = 1;
    while (step < end - begin && isPassed(begin[step - 1])) {
        begin += step;
        step *= 2;
    }
    return std::partition_point(begin, begin + std::min(step, end - begin), isPassed);
}

/** Indexes by a hash of two numbers; those that share a hash come in no useful order. */
class HashedChains
{
public:
    explicit HashedChains(size_t count)
    {
        int bits = 4;
        while ((size_t(1) << bits) < 2 * count)
            ++bits;
        m_shift = 64 - bits;
        m_headCount = size_t(1) << bits;
        m_indexes.assign(m_headCount + count, -1);
    }
    /** The first index with the hash, -1 for none; next() goes on, insert() puts another before it. */
    int &first(quint64 a, quint64 b) { return m_indexes[slot(a, b)]; }
    int next(int index) const { return m_indexes[m_headCount + size_t(index)]; }
    void insert(int &first, int index)
    {
        m_indexes[m_headCount + size_t(index)] = first;
        first = index;
    }

private:
    /** Multiplicative hashing: odd constants near 2^64 divided by the golden ratio, the upper bits count. */
    size_t slot(quint64 a, quint64 b) const
    {
        return size_t(((a * 0x9E3779B97F4A7C15ull) ^ (b + 0x632BE59BD9B4E019ull)) * 0x9E3779B97F4A7C15ull >>
                      m_shift);
    }

    int m_shift;
    size_t m_headCount;
    std::vector<int> m_indexes; ///< heads of the chains, then per index the next one
};

/** Groups stretches whose starts lie within a distance of each other, directly or through others. */
class Clusters
{
public:
    Clusters(const std::vector<Edge> &stretches, double distance)
        : m_stretches(stretches), m_distance(distance), m_perUnit(perCell / distance),
          m_parent(stretches.size())
    {
        std::iota(m_parent.begin(), m_parent.end(), 0);
        HashedChains cells(stretches.size());
        for (int i = 0; i < int(stretches.size()); ++i)
            joinEarlier(i, cells);
        // No parent is greater than its child, so one pass brings all next to their roots.
        for (int &parent : m_parent)
            parent = m_parent[size_t(parent)];
    }

    /** The least index of the group. */
    int rootOf(int i) const { return m_parent[size_t(i)]; }

private:
    /** A cell measures eight distances, so that most points have all that is near in their own. */
    static constexpr double perCell = 1.0 / 8;

    /** Cells that a point and its surroundings lie in, along one axis. */
    struct Cells {
        qint64 first, own, last;
    };

    Cells cellsAt(double coordinate) const
    {
        constexpr double reach = 1.001 * perCell; // not to lose a neighbour to rounding
        // Only a drawing too large for a frame leaves the range; its points may then share cells, no more.
        constexpr double greatest = 1e15;
        const double place = coordinate * m_perUnit;
        if (!(place > -greatest))
            return { 0, 0, 0 };
        const qint64 towardsZero = qint64(std::min(place, greatest));
        const qint64 own = towardsZero - (place < double(towardsZero));
        const double within = place - double(own);
        return { own - (within < reach), own, own + (within > 1 - reach) };
    }

    /** Joins a point with those before it, which are in their cells, and puts it into its own. */
    void joinEarlier(int i, HashedChains &cells)
    {
        const vxPoint p = m_stretches[size_t(i)].inFrame.p0();
        const Cells x = cellsAt(p.x);
        const Cells y = cellsAt(p.y);
        int &own = cells.first(quint64(x.own), quint64(y.own));
        joinWith(own, i, p, cells);
        for (qint64 column = x.first; column <= x.last; ++column) {
            for (qint64 row = y.first; row <= y.last; ++row) {
                if (column != x.own || row != y.own)
                    joinWith(cells.first(quint64(column), quint64(row)), i, p, cells);
            }
        }
        cells.insert(own, i);
    }

    void joinWith(int first, int i, const vxPoint &p, const HashedChains &cells)
    {
        for (int k = first; k != -1; k = cells.next(k)) {
            if (p.isClose(m_stretches[size_t(k)].inFrame.p0(), m_distance))
                join(i, k);
        }
    }

    void join(int a, int b)
    {
        a = find(a);
        b = find(b);
        m_parent[size_t(std::max(a, b))] = std::min(a, b);
    }

    /** The least index of the group as far as it is known. */
    int find(int i)
    {
        while (m_parent[size_t(i)] != i)
            i = m_parent[size_t(i)] = m_parent[size_t(m_parent[size_t(i)])];
        return i;
    }

    const std::vector<Edge> &m_stretches;
    double m_distance;
    double m_perUnit; ///< cells
    std::vector<int> m_parent;
};

} // namespace

void Arrangement::cut()
{
    std::vector<Edge> all = stretches();
    joinEnds(all);
    joinStretches(all);
}

std::vector<Edge> Arrangement::stretches()
{
    sortCuts();
    // Edges of the attempt before the last are done with; their memory is used again.
    std::vector<Edge> result = std::move(m_edges);
    result.clear();
    result.reserve(m_curves.size() + std::min(m_cuts.size(), 4 * m_curves.size()));
    const Cut *cut = m_cuts.data();
    for (int curve = 0; curve < int(m_curves.size()); ++curve) {
        const Cut *first = cut;
        cut += m_cutCounts[size_t(curve)];
        cutCurve(curve, first, cut, result);
    }
    return result;
}

/** Sorts the cuts by curve and time, once for all snapping distances that are tried with them. */
void Arrangement::sortCuts()
{
    if (m_sortedCuts == m_cuts.size() && !m_cutCounts.empty())
        return;
    m_cutCounts.assign(m_curves.size(), 0);
    for (const Cut &cut : m_cuts)
        ++m_cutCounts[size_t(cut.curve)];
    std::vector<Cut> sorted(m_cuts.size());
    std::vector<Cut *> next;
    next.reserve(m_curves.size());
    Cut *at = sorted.data();
    for (size_t count : m_cutCounts) {
        next.push_back(at);
        at += count;
    }
    for (const Cut &cut : m_cuts)
        *next[size_t(cut.curve)]++ = cut;
    for (size_t curve = 0; curve < m_curves.size(); ++curve) {
        if (m_cutCounts[curve] > 1)
            std::sort(next[curve] - m_cutCounts[curve], next[curve],
                      [](const Cut &a, const Cut &b) { return a.t < b.t; });
    }
    m_cuts = std::move(sorted);
    m_sortedCuts = m_cuts.size();
}

/** Chooses the places where a curve is cut, its ends among them: those that lie apart along the curve. */
void Arrangement::choosePlaces(const Cubic &values, const Cut *begin, const Cut *end)
{
    m_places.clear();
    m_places.reserve(8);
    m_places.push_back({ 0, values.p0() });
    const double near = dropFraction * m_snapping;
    const double speed = greatestSpeed(values);
    const auto isApart = [&](const Place &from, const Place &to) {
        return !from.point.isClose(to.point, near) || bulges(part(values, from.t, to.t), near);
    };
    // In so short a time the curve cannot leave the surroundings; a thousandth is far above rounding.
    const auto isTooSoon = [&](const Cut &cut) { return (cut.t - m_places.back().t) * speed < 0.999 * near; };
    for (const Cut *cut = passWhile(begin, end, isTooSoon); cut != end; ++cut) {
        if (cut->distance > m_snapping)
            continue;
        const Place place{ cut->t, pointAt(values, cut->t) };
        if (isApart(m_places.back(), place)) {
            m_places.push_back(place);
            cut = passWhile(cut + 1, end, isTooSoon) - 1;
        }
    }
    const Place last{ 1, values.p3() };
    while (m_places.size() > 1 && !isApart(m_places.back(), last))
        m_places.pop_back();
    m_places.push_back(last);
}

/** Appends the stretches of one curve between its cuts, which are sorted. */
void Arrangement::cutCurve(int curve, const Cut *firstCut, const Cut *endCut, std::vector<Edge> &result)
{
    const ArrangedCurve &source = m_curves[size_t(curve)];
    const Cubic &values = source.inFrame.values;
    const bool line = source.line;
    if (firstCut == endCut) {
        Edge &stretch = result.emplace_back();
        stretch.curve = curve;
        stretch.line = line;
        stretch.t0 = 0;
        stretch.t1 = 1;
        stretch.inFrame = line ? Cubic::fromLine(values.p0(), values.p3()) : values;
        return;
    }
    choosePlaces(values, firstCut, endCut);
    for (size_t i = 1; i < m_places.size(); ++i) {
        // Both stretches at a cut take the same computed point for their end.
        const Place &start = m_places[i - 1];
        const Place &end = m_places[i];
        Edge &stretch = result.emplace_back();
        stretch.curve = curve;
        stretch.line = line;
        stretch.t0 = start.t;
        stretch.t1 = end.t;
        stretch.inFrame = line ? Cubic::fromLine(start.point, end.point)
                               : withEnds(part(values, start.t, end.t), start.point, end.point);
    }
}

/** Makes nodes of end points within the snapping distance and moves the stretches' ends onto them. */
void Arrangement::joinEnds(std::vector<Edge> &all)
{
    const Clusters clusters(all, m_snapping);
    // A node lies on a vertex of an operand where it holds one, so that vertices stay where they are.
    std::vector<int> stretchAt; // per node: a stretch whose start it is
    stretchAt.reserve(all.size());
    for (int i = 0; i < int(all.size()); ++i) {
        Edge &stretch = all[size_t(i)];
        const int root = clusters.rootOf(i);
        if (root == i) {
            stretch.node0 = int(stretchAt.size());
            stretchAt.push_back(i);
            continue;
        }
        stretch.node0 = all[size_t(root)].node0;
        int &at = stretchAt[size_t(stretch.node0)];
        if (all[size_t(at)].t0 != 0 && stretch.t0 == 0)
            at = i;
    }
    m_nodes.clear();
    m_nodes.reserve(stretchAt.size());
    for (int i : stretchAt) {
        const Edge &at = all[size_t(i)];
        const vxPoint p = at.inFrame.p0();
        m_nodes.push_back(
            { p, at.t0 == 0 ? m_curves[size_t(at.curve)].original.p0() : m_frame.fromFrame(p), true });
    }
    // A stretch ends where the next of its contour starts; the last one's next is the first.
    const auto contourOf = [&](size_t i) { return m_curves[size_t(all[i].curve)].contour; };
    size_t first = 0;
    double moved = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        Edge &stretch = all[i];
        const bool isLast = i + 1 == all.size() || contourOf(i + 1) != contourOf(i);
        stretch.node1 = all[isLast ? first : i + 1].node0;
        if (isLast)
            first = i + 1;
        const vxPoint &to0 = m_nodes[size_t(stretch.node0)].inFrame;
        const vxPoint &to1 = m_nodes[size_t(stretch.node1)].inFrame;
        const vxPoint p0 = stretch.inFrame.p0();
        const vxPoint p3 = stretch.inFrame.p3();
        if (p0 == to0 && p3 == to1)
            continue;
        if (p0 != to0)
            m_nodes[size_t(stretch.node0)].exact = false;
        moved += p0.getDistance(p3) * (p0.getDistance(to0) + p3.getDistance(to1)) / 2;
        stretch.inFrame = withEnds(stretch.inFrame, to0, to1);
    }
    m_movedArea = { moved, moved };
}

/**
 * Appends the signed counts of stretches that run together, along the first of them, to the shares; those
 * that cancel are left out.
 */
void Arrangement::addShares(int first, const std::vector<Companions> &companions,
                            const std::vector<Edge> &all)
{
    const auto begin = std::ptrdiff_t(m_shares.size());
    for (int i = first; i != -1; i = companions[size_t(i)].next) {
        const int operand = operandOf(all[size_t(i)]);
        auto at = std::find_if(m_shares.begin() + begin, m_shares.end(),
                               [operand](const Share &s) { return s.operand == operand; });
        if (at == m_shares.end())
            at = m_shares.insert(at, { operand, 0 });
        at->count += runsAlong(all[size_t(first)], all[size_t(i)]) ? 1 : -1;
    }
    const auto cancels = [this](const Share &s) {
        return m_evenOdd[size_t(s.operand)] ? s.count % 2 == 0 : s.count == 0;
    };
    m_shares.erase(std::remove_if(m_shares.begin() + begin, m_shares.end(), cancels), m_shares.end());
}

/**
 * Makes one edge of stretches that run together between the same nodes; drops what shrank to a point or
 * cancels.
 */
void Arrangement::joinStretches(std::vector<Edge> &all)
{
    std::vector<Companions> companions(all.size());
    HashedChains firsts(all.size());
    for (int i = 0; i < int(all.size()); ++i) {
        const Edge &stretch = all[size_t(i)];
        if (stretch.node0 == stretch.node1 && !bulges(stretch.inFrame, m_snapping))
            continue;
        const auto ends = std::minmax(stretch.node0, stretch.node1);
        int group = -1;
        AreaRange areaBetween;
        int &head = firsts.first(quint64(ends.first), quint64(ends.second));
        for (int k = head; k != -1; k = firsts.next(k)) {
            const Edge &first = all[size_t(k)];
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
    linkStretches(all, companions);
    makeEdges(all, companions);
}

/** Makes a link of every stretch that did not shrink to a point, with the box of the one that stands for it.
 */
void Arrangement::linkStretches(const std::vector<Edge> &all, const std::vector<Companions> &companions)
{
    m_links.clear();
    m_links.reserve(all.size());
    m_linkBoxes.clear();
    m_linkBoxes.reserve(all.size());
    m_linkStarts.reserve(m_contours.size() + 1);
    m_linkStarts.assign(1, 0);
    int contour = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        for (; contour < m_curves[size_t(all[i].curve)].contour; ++contour)
            m_linkStarts.push_back(int(m_links.size()));
        const int first = companions[i].first;
        if (first == -1)
            continue;
        m_links.push_back({ contour, all[i].node0, all[i].node1, -1 });
        m_linkBoxes.push_back(hullBox(all[size_t(first)].inFrame));
    }
    m_linkStarts.push_back(int(m_links.size()));
}

/** Moves the first stretch of each group that does not cancel to the edges, and numbers links by edges. */
void Arrangement::makeEdges(std::vector<Edge> &all, const std::vector<Companions> &companions)
{
    m_shares.clear();
    m_shares.reserve(all.size());
    size_t count = 0;
    auto link = m_links.begin();
    for (int i = 0; i < int(all.size()); ++i) {
        const Companions &own = companions[size_t(i)];
        if (own.first == -1)
            continue;
        int &edge = (link++)->edge;
        if (own.first != i)
            continue;
        const size_t begin = m_shares.size();
        if (own.next == -1)
            m_shares.push_back({ operandOf(all[size_t(i)]), 1 });
        else
            addShares(i, companions, all);
        if (m_shares.size() == begin)
            continue;
        edge = int(count);
        // Into its own vector: what is overwritten was looked at, a group's others come after its first.
        if (edge != i)
            all[size_t(edge)] = all[size_t(i)];
        Edge &made = all[count++];
        made.firstShare = int(begin);
        made.shareCount = int(m_shares.size() - begin);
    }
    all.resize(count);
    m_edges = std::move(all);
}

} // namespace vx
