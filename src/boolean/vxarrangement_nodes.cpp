#include "vxarrangement_p.h"
#include "vxhashedchains_p.h"

#include <QtGlobal>

#include <algorithm>
#include <numeric>

namespace vx {

namespace {

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
        if (joinWith(own, i, p, cells))
            return;
        for (qint64 column = x.first; column <= x.last; ++column) {
            for (qint64 row = y.first; row <= y.last; ++row) {
                if (column != x.own || row != y.own)
                    joinWith(cells.first(quint64(column), quint64(row)), i, p, cells);
            }
        }
        cells.insert(own, i);
    }

    /** True where a point of the cell is the very same: what is near this one has met that. */
    bool joinWith(int first, int i, const vxPoint &p, const HashedChains &cells)
    {
        for (int k = first; k != -1; k = cells.next(k)) {
            const vxPoint other = m_stretches[size_t(k)].inFrame.p0();
            if (p.isClose(other, m_distance)) {
                join(i, k);
                if (p == other)
                    return true;
            }
        }
        return false;
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

/** Makes nodes of end points within the snapping distance and moves the stretches' ends onto them. */
void Arrangement::joinEnds(std::vector<Edge> &all)
{
    makeNodes(all);
    moveOntoNodes(all);
}

/** Makes the nodes, and tells every stretch at which of them it starts. */
void Arrangement::makeNodes(std::vector<Edge> &all)
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
}

/** Ends every stretch where the next of its contour starts, the last one where the first does. */
void Arrangement::moveOntoNodes(std::vector<Edge> &all)
{
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

} // namespace vx
