#include "vxclusters_p.h"
#include "vxhashedchains_p.h"

#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace vx {

namespace {

/**
 * Each point asks those of its cell of a grid, and of the cells next to it where those are near. In a crowd
 * only leaders are asked, no two of which are near each other in one cell, so a cell holds some eighty at
 * most. Every other point follows a leader that it is near to, and is asked where that leader is just beyond
 * the distance.
 */
class Clusters
{
public:
    Clusters(const std::vector<vxPoint> &points, double distance)
        : m_points(points), m_distance(distance), m_cellsPerUnit(perCell / distance),
          m_leaders(points.size()), m_follower(points.size(), -1)
    {
        m_parent.resize(points.size());
        for (int i = 0; i < int(points.size()); ++i) {
            m_parent[size_t(i)] = i;
            joinEarlier(i);
        }
        // No parent is greater than its child, so one pass brings all next to their roots.
        for (int &parent : m_parent)
            parent = m_parent[size_t(parent)];
    }

    std::vector<int> takeRoots() { return std::move(m_parent); }

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
        const double place = coordinate * m_cellsPerUnit;
        if (!(place > -greatest))
            return { 0, 0, 0 };
        const qint64 towardsZero = qint64(std::min(place, greatest));
        const qint64 own = towardsZero - (place < double(towardsZero));
        const double within = place - double(own);
        return { own - (within < reach), own, own + (within > 1 - reach) };
    }

    /** Joins a point with those before it, which are in their cells, and puts it into its own. */
    void joinEarlier(int i)
    {
        const vxPoint &p = m_points[size_t(i)];
        const Cells x = cellsAt(p.x);
        const Cells y = cellsAt(p.y);
        int &own = m_leaders.first(quint64(x.own), quint64(y.own));
        const int leader = joinWith(own, i);
        if (leader != -1 && p == m_points[size_t(leader)])
            return; // what is near this one has met that
        for (qint64 column = x.first; column <= x.last; ++column) {
            for (qint64 row = y.first; row <= y.last; ++row) {
                if (column != x.own || row != y.own)
                    joinWith(m_leaders.first(quint64(column), quint64(row)), i);
            }
        }
        if (leader == -1) {
            m_leaders.insert(own, i);
        } else {
            m_follower[size_t(i)] = m_follower[size_t(leader)];
            m_follower[size_t(leader)] = i;
        }
    }

    /** Gives a leader of the cell near the point, the very same point if there is one; -1 for none. */
    int joinWith(int first, int i)
    {
        const vxPoint &p = m_points[size_t(i)];
        int nearLeader = -1;
        for (int k = first; k != -1; k = m_leaders.next(k)) {
            const vxPoint &leader = m_points[size_t(k)];
            if (p.isClose(leader, m_distance)) {
                join(i, k);
                if (p == leader)
                    return k;
                nearLeader = k;
            } else if (m_follower[size_t(k)] != -1 && p.isClose(leader, 2.001 * m_distance)) {
                joinWithFollowers(k, i);
            }
        }
        return nearLeader;
    }

    /** Followers are of their leader's group: none is asked where the point is that too, and one will do. */
    void joinWithFollowers(int leader, int i)
    {
        if (find(i) == find(leader))
            return;
        for (int k = m_follower[size_t(leader)]; k != -1; k = m_follower[size_t(k)]) {
            if (m_points[size_t(i)].isClose(m_points[size_t(k)], m_distance)) {
                join(i, k);
                return;
            }
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

    const std::vector<vxPoint> &m_points;
    double m_distance;
    double m_cellsPerUnit;
    HashedChains m_leaders; ///< by cell
    std::vector<int> m_parent;
    std::vector<int>
        m_follower; ///< per point the next that follows the same leader, for a leader the first; or -1
};

} // namespace

std::vector<int> clusters(const std::vector<vxPoint> &points, double distance)
{
    return Clusters(points, distance).takeRoots();
}

} // namespace vx
