#include "vxarrangement_p.h"

#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

using namespace vxTolerance;

namespace vx {

namespace {

/** A cut this near (as part of the snapping distance) to an end or another cut is dropped: the points become
 * one. */
constexpr double dropFraction = 0.9;
/** Stretches run together when they stay within this many snapping distances ... */
constexpr double togetherFactor = 2;
/** ... and within this part of their length, so that short ones are not all the same. */
constexpr double togetherFraction = 0.01;

/** Whether a curve leaves the surroundings of its start. */
bool bulges(const Cubic &c, double distance)
{
    for (double t : { 0.25, 0.5, 0.75 }) {
        if (pointAt(c, t).getDistance(c.p0()) > distance)
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
        if (timeNear(b, pointAt(a, t), distance) == noTime)
            return false;
    }
    return true;
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
            m_cells.push_back({ std::floor(p.x / distance), std::floor(p.y / distance), i });
        }
        std::sort(m_cells.begin(), m_cells.end(), less);
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
        double x, y;
        int point;
    };

    static bool less(const Cell &a, const Cell &b)
    {
        return std::tie(a.x, a.y, a.point) < std::tie(b.x, b.y, b.point);
    }

    void joinNeighbours(size_t i)
    {
        const Cell &cell = m_cells[i];
        joinFrom(i + 1, cell, cell.x, cell.y);
        for (const auto &[dx, dy] : { std::pair(0, 1), std::pair(1, -1), std::pair(1, 0), std::pair(1, 1) }) {
            const Cell target{ cell.x + dx, cell.y + dy, -1 };
            const auto at = std::lower_bound(m_cells.begin() + int(i), m_cells.end(), target, less);
            joinFrom(size_t(at - m_cells.begin()), cell, target.x, target.y);
        }
    }

    void joinFrom(size_t k, const Cell &cell, double x, double y)
    {
        for (; k < m_cells.size() && m_cells[k].x == x && m_cells[k].y == y; ++k) {
            if (m_points[size_t(cell.point)].isClose(m_points[size_t(m_cells[k].point)], m_distance))
                join(cell.point, m_cells[k].point);
        }
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
void Arrangement::cutCurve(int curve, const Cut *begin, const Cut *end, std::vector<Edge> &result) const
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

    const bool straight = !hasHandles(source.original);
    for (size_t i = 1; i < times.size(); ++i) {
        Edge stretch{};
        stretch.curve = curve;
        stretch.t0 = times[i - 1];
        stretch.t1 = times[i];
        if (straight)
            stretch.inFrame = Cubic::fromLine(pointAt(values, stretch.t0), pointAt(values, stretch.t1));
        else
            stretch.inFrame = withEnds(part(values, stretch.t0, stretch.t1), pointAt(values, stretch.t0),
                                       pointAt(values, stretch.t1));
        result.push_back(stretch);
    }
}

/** Makes nodes of end points within the snapping distance and moves the stretches' ends onto them. */
void Arrangement::joinEnds(std::vector<Edge> &all)
{
    std::vector<vxPoint> ends;
    ends.reserve(all.size() * 2);
    for (const Edge &stretch : all) {
        ends.push_back(stretch.inFrame.p0());
        ends.push_back(stretch.inFrame.p3());
    }
    Clusters clusters(ends, m_snapping);

    // A node lies on a vertex of an operand where it holds one, so that vertices stay where they are.
    std::vector<int> place(ends.size(), -1);
    const auto isVertex = [&all](int end) {
        const Edge &stretch = all[size_t(end) / 2];
        return end % 2 == 0 ? stretch.t0 == 0 : stretch.t1 == 1;
    };
    for (int end = 0; end < int(ends.size()); ++end) {
        int &at = place[size_t(clusters.find(end))];
        if (at == -1 || (!isVertex(at) && isVertex(end)))
            at = end;
    }
    m_nodes.clear();
    std::vector<int> nodeOf(ends.size(), -1);
    for (int end = 0; end < int(ends.size()); ++end) {
        const int group = clusters.find(end);
        const int at = place[size_t(group)];
        if (nodeOf[size_t(group)] == -1) {
            nodeOf[size_t(group)] = int(m_nodes.size());
            const Cubic &original = m_curves[size_t(all[size_t(at) / 2].curve)].original;
            const vxPoint p = ends[size_t(at)];
            const vxPoint vertex = at % 2 == 0 ? original.p0() : original.p3();
            m_nodes.push_back({ p, isVertex(at) ? vertex : m_frame.fromFrame(p), true });
        }
        const int node = nodeOf[size_t(group)];
        if (ends[size_t(end)] != m_nodes[size_t(node)].inFrame)
            m_nodes[size_t(node)].exact = false;
        (end % 2 == 0 ? all[size_t(end) / 2].node0 : all[size_t(end) / 2].node1) = node;
    }
    for (Edge &stretch : all)
        stretch.inFrame = withEnds(stretch.inFrame, m_nodes[size_t(stretch.node0)].inFrame,
                                   m_nodes[size_t(stretch.node1)].inFrame);
}

/** Signed counts of a group of stretches that run together, along the first of them; those that cancel left
 * out. */
std::vector<Share> Arrangement::sharesOf(const std::vector<int> &group, const std::vector<Edge> &all) const
{
    std::vector<Share> shares;
    const Edge &first = all[size_t(group.front())];
    for (int i : group) {
        const Edge &stretch = all[size_t(i)];
        const int operand = m_contours[size_t(m_curves[size_t(stretch.curve)].contour)].operand;
        // A loop has both ends on one node: its direction shows a quarter along.
        bool along = stretch.node0 == first.node0;
        if (stretch.node0 == stretch.node1) {
            const vxPoint quarter = pointAt(stretch.inFrame, 0.25);
            along = pointAt(first.inFrame, 0.25).getDistance(quarter) <=
                    pointAt(first.inFrame, 0.75).getDistance(quarter);
        }
        auto at = std::find_if(shares.begin(), shares.end(),
                               [operand](const Share &s) { return s.operand == operand; });
        if (at == shares.end())
            at = shares.insert(at, { operand, 0 });
        at->count += along ? 1 : -1;
    }
    const auto cancels = [this](const Share &s) {
        return m_evenOdd[size_t(s.operand)] ? s.count % 2 == 0 : s.count == 0;
    };
    shares.erase(std::remove_if(shares.begin(), shares.end(), cancels), shares.end());
    return shares;
}

/** Makes one edge of stretches that run together between the same nodes; drops what shrank to a point or
 * cancels. */
void Arrangement::joinStretches(const std::vector<Edge> &all)
{
    std::vector<int> order;
    for (int i = 0; i < int(all.size()); ++i) {
        const Edge &stretch = all[size_t(i)];
        if (stretch.node0 != stretch.node1 || bulges(stretch.inFrame, m_snapping))
            order.push_back(i);
    }
    const auto ends = [&all](int i) { return std::minmax(all[size_t(i)].node0, all[size_t(i)].node1); };
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return ends(a) < ends(b); });

    std::vector<std::vector<int>> groups;
    for (size_t i = 0; i < order.size();) {
        const size_t firstGroup = groups.size();
        const auto between = std::pair<int, int>(ends(order[i]));
        for (; i < order.size() && std::pair<int, int>(ends(order[i])) == between; ++i) {
            const Cubic &c = all[size_t(order[i])].inFrame;
            auto group = groups.begin() + int(firstGroup);
            while (group != groups.end() && !runTogether(c, all[size_t(group->front())].inFrame, m_snapping))
                ++group;
            if (group == groups.end())
                groups.push_back({ order[i] });
            else
                group->push_back(order[i]);
        }
    }
    std::sort(groups.begin(), groups.end(),
              [](const auto &a, const auto &b) { return a.front() < b.front(); });

    m_edges.clear();
    m_shares.clear();
    for (const std::vector<int> &group : groups) {
        const std::vector<Share> shares = sharesOf(group, all);
        if (shares.empty())
            continue;
        m_edges.push_back(all[size_t(group.front())]);
        m_edges.back().firstShare = int(m_shares.size());
        m_edges.back().shareCount = int(shares.size());
        m_shares.insert(m_shares.end(), shares.begin(), shares.end());
    }
}

} // namespace vx
