#include "vxarrangement_p.h"

#include "vxtolerance.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

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

bool runTogether(const Cubic &a, const Cubic &b, double snapping)
{
    const double reach = std::min(togetherFactor * snapping, togetherFraction * length(a));
    for (double t : { 0.25, 0.5, 0.75 }) {
        double distance = reach;
        if (timeNear(b, placeAt(a, t), distance) == noTime)
            return false;
    }
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

/** Groups points that lie within a distance of each other, directly or through others. */
class Clusters
{
public:
    Clusters(const std::vector<vxPoint> &points, double distance)
        : m_points(points), m_distance(distance), m_parent(points.size())
    {
        std::iota(m_parent.begin(), m_parent.end(), 0);
        m_cells.reserve(points.size());
        for (int i = 0; i < int(points.size()); ++i) {
            const vxPoint &p = points[size_t(i)];
            m_cells.push_back({ keyOf(std::floor(p.x / distance), std::floor(p.y / distance)), i });
        }
        std::sort(m_cells.begin(), m_cells.end());
        for (size_t i = 0; i < m_cells.size(); ++i)
            joinNeighbours(i);
    }

    /** The least index of the group. */
    int find(int i)
    {
        while (m_parent[size_t(i)] != i)
            i = m_parent[size_t(i)] = m_parent[size_t(m_parent[size_t(i)])];
        return i;
    }

private:
    struct Cell {
        quint64 key;
        int point;

        bool operator<(const Cell &other) const
        {
            return std::tie(key, point) < std::tie(other.key, other.point);
        }
    };

    /** Cells of the frame number some 10^9 a side at the least distance: both indexes fit into one key. */
    static quint64 keyOf(double x, double y)
    {
        // Only a drawing too large for a frame leaves the range; its points may then share cells, no more.
        const auto index = [](double v) {
            return quint64(qint64(std::clamp(v, -2e9, 2e9)) + (qint64(1) << 31));
        };
        return (index(x) << 32) + index(y);
    }

    void joinNeighbours(size_t i)
    {
        const Cell &cell = m_cells[i];
        joinFrom(i + 1, cell, cell.key);
        constexpr quint64 right = quint64(1) << 32;
        // The next cell below is mostly the next in order; those to the right are sought.
        size_t below = i + 1;
        while (below < m_cells.size() && m_cells[below].key == cell.key)
            ++below;
        joinFrom(below, cell, cell.key + 1);
        const auto at =
            std::lower_bound(m_cells.begin() + int(below), m_cells.end(), Cell{ cell.key + right - 1, -1 });
        const size_t first = size_t(at - m_cells.begin());
        for (size_t k = first; k < m_cells.size() && m_cells[k].key <= cell.key + right + 1; ++k)
            joinIfClose(cell, m_cells[k]);
    }

    void joinFrom(size_t k, const Cell &cell, quint64 key)
    {
        for (; k < m_cells.size() && m_cells[k].key == key; ++k)
            joinIfClose(cell, m_cells[k]);
    }

    void joinIfClose(const Cell &a, const Cell &b)
    {
        if (m_points[size_t(a.point)].isClose(m_points[size_t(b.point)], m_distance))
            join(a.point, b.point);
    }

    void join(int a, int b)
    {
        a = find(a);
        b = find(b);
        m_parent[size_t(std::max(a, b))] = std::min(a, b);
    }

    const std::vector<vxPoint> &m_points;
    double m_distance;
    std::vector<int> m_parent;
    std::vector<Cell> m_cells;
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
    std::sort(m_cuts.begin(), m_cuts.end(), [](const Cut &a, const Cut &b) {
        return std::tie(a.curve, a.t, a.distance) < std::tie(b.curve, b.t, b.distance);
    });
    std::vector<Edge> result;
    result.reserve(m_curves.size() + m_cuts.size());
    const Cut *cut = m_cuts.data();
    const Cut *end = cut + m_cuts.size();
    for (int curve = 0; curve < int(m_curves.size()); ++curve) {
        const Cut *first = cut;
        while (cut != end && cut->curve == curve)
            ++cut;
        cutCurve(curve, first, cut, result);
    }
    return result;
}

/** Appends the stretches of one curve between its cuts, which are sorted. */
void Arrangement::cutCurve(int curve, const Cut *begin, const Cut *end, std::vector<Edge> &result)
{
    const ArrangedCurve &source = m_curves[size_t(curve)];
    const Cubic &values = source.inFrame.values;
    const double near = dropFraction * m_snapping;
    std::vector<double> times{ 0 };
    const auto isApart = [&](double from, double to) {
        return !pointAt(values, from).isClose(pointAt(values, to), near) ||
               bulges(part(values, from, to), near);
    };
    for (const Cut *cut = begin; cut != end; ++cut) {
        if (cut->distance <= m_snapping && isApart(times.back(), cut->t))
            times.push_back(cut->t);
    }
    while (times.size() > 1 && !isApart(times.back(), 1))
        times.pop_back();
    times.push_back(1);

    Edge stretch{};
    stretch.curve = curve;
    stretch.line = !hasHandles(source.original);
    for (size_t i = 1; i < times.size(); ++i) {
        stretch.t0 = times[i - 1];
        stretch.t1 = times[i];
        // Both stretches at a cut take the same computed point for their end.
        const vxPoint p0 = pointAt(values, stretch.t0);
        const vxPoint p3 = pointAt(values, stretch.t1);
        stretch.inFrame =
            stretch.line ? Cubic::fromLine(p0, p3) : withEnds(part(values, stretch.t0, stretch.t1), p0, p3);
        result.push_back(stretch);
    }
}

/** The stretch after each in its contour: where that starts is where this one ends. */
std::vector<int> Arrangement::followers(const std::vector<Edge> &all) const
{
    std::vector<int> next(all.size());
    size_t first = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        const auto contour = [&](size_t k) { return m_curves[size_t(all[k].curve)].contour; };
        const bool ends = i + 1 == all.size() || contour(i + 1) != contour(i);
        next[i] = int(ends ? first : i + 1);
        if (ends)
            first = i + 1;
    }
    return next;
}

/** Makes nodes of end points within the snapping distance and moves the stretches' ends onto them. */
void Arrangement::joinEnds(std::vector<Edge> &all)
{
    const std::vector<int> next = followers(all);
    std::vector<vxPoint> starts;
    starts.reserve(all.size());
    for (const Edge &stretch : all)
        starts.push_back(stretch.inFrame.p0());
    Clusters clusters(starts, m_snapping);

    // A node lies on a vertex of an operand where it holds one, so that vertices stay where they are.
    std::vector<int> place(all.size(), -1);
    for (int i = 0; i < int(all.size()); ++i) {
        int &at = place[size_t(clusters.find(i))];
        if (at == -1 || (all[size_t(at)].t0 != 0 && all[size_t(i)].t0 == 0))
            at = i;
    }
    m_nodes.clear();
    std::vector<int> nodeOf(all.size(), -1);
    for (int i = 0; i < int(all.size()); ++i) {
        const int group = clusters.find(i);
        if (nodeOf[size_t(group)] == -1) {
            nodeOf[size_t(group)] = int(m_nodes.size());
            const Edge &at = all[size_t(place[size_t(group)])];
            const vxPoint p = at.inFrame.p0();
            m_nodes.push_back(
                { p, at.t0 == 0 ? m_curves[size_t(at.curve)].original.p0() : m_frame.fromFrame(p), true });
        }
        const int node = nodeOf[size_t(group)];
        if (starts[size_t(i)] != m_nodes[size_t(node)].inFrame)
            m_nodes[size_t(node)].exact = false;
        all[size_t(i)].node0 = node;
    }
    for (size_t i = 0; i < all.size(); ++i) {
        Edge &stretch = all[i];
        stretch.node1 = all[size_t(next[i])].node0;
        stretch.inFrame = withEnds(stretch.inFrame, m_nodes[size_t(stretch.node0)].inFrame,
                                   m_nodes[size_t(stretch.node1)].inFrame);
    }
}

/**
 * Appends the signed counts of stretches that run together, along the first of them, to the shares; those
 * that cancel are left out. A stretch is followed by nextInGroup, -1 ends the group.
 */
void Arrangement::addShares(int first, const std::vector<int> &nextInGroup, const std::vector<Edge> &all)
{
    const auto begin = std::ptrdiff_t(m_shares.size());
    for (int i = first; i != -1; i = nextInGroup[size_t(i)]) {
        const int operand = m_contours[size_t(m_curves[size_t(all[size_t(i)].curve)].contour)].operand;
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
void Arrangement::joinStretches(const std::vector<Edge> &all)
{
    std::vector<int> order;
    order.reserve(all.size());
    for (int i = 0; i < int(all.size()); ++i) {
        const Edge &stretch = all[size_t(i)];
        if (stretch.node0 != stretch.node1 || bulges(stretch.inFrame, m_snapping))
            order.push_back(i);
    }
    const auto ends = [&all](int i) -> std::pair<int, int> {
        return std::minmax(all[size_t(i)].node0, all[size_t(i)].node1);
    };
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        const auto endsA = ends(a);
        const auto endsB = ends(b);
        return endsA != endsB ? endsA < endsB : a < b;
    });

    std::vector<int> firsts;
    std::vector<int> nextInGroup(all.size(), -1);
    for (size_t i = 0; i < order.size();) {
        const size_t begin = firsts.size();
        const auto between = ends(order[i]);
        for (; i < order.size() && ends(order[i]) == between; ++i)
            joinGroup(order[i], begin, all, firsts, nextInGroup);
    }
    std::sort(firsts.begin(), firsts.end());

    m_edges.clear();
    m_edges.reserve(firsts.size());
    m_shares.clear();
    for (int first : firsts) {
        const size_t begin = m_shares.size();
        addShares(first, nextInGroup, all);
        if (m_shares.size() == begin)
            continue;
        m_edges.push_back(all[size_t(first)]);
        m_edges.back().firstShare = int(begin);
        m_edges.back().shareCount = int(m_shares.size() - begin);
    }
}

/**
 * Puts a stretch into the group that it runs with, among those that start at firsts[begin], or makes one for
 * it.
 */
void Arrangement::joinGroup(int stretch, size_t begin, const std::vector<Edge> &all, std::vector<int> &firsts,
                            std::vector<int> &nextInGroup) const
{
    const auto runsWith = [&](int first) {
        return runTogether(all[size_t(stretch)].inFrame, all[size_t(first)].inFrame, m_snapping);
    };
    const auto group = std::find_if(firsts.begin() + std::ptrdiff_t(begin), firsts.end(), runsWith);
    if (group == firsts.end()) {
        firsts.push_back(stretch);
        return;
    }
    int last = *group;
    while (nextInGroup[size_t(last)] != -1)
        last = nextInGroup[size_t(last)];
    nextInGroup[size_t(last)] = stretch;
}

} // namespace vx
