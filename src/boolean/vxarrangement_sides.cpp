#include "vxarrangement_p.h"

#include "vxintervalindex_p.h"
#include "vxnumeric_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

/** In units of the frame: a curve met this near to the ray's start leaves open on which side it lies. */
constexpr double undecidedDistance = 1e-9;

/** Places along an edge that a ray may start from, in the order in which they are tried. */
constexpr double startTimes[] = { 0.5, 0.381966, 0.618034, 0.236068, 0.763932, 0.145898, 0.854102 };

/** A part of an edge that is monotone in the coordinate along which levels are counted. */
struct Piece {
    int edge;
    double t0, t1;
    double value0, value1;
    /** Range of the edge's control points in the other coordinate. */
    double least, greatest;
};

/**
 * Pieces of all edges for rays along one axis. axis is the coordinate that a ray keeps (its level): 1 for
 * rays towards -x, 0 for rays towards -y.
 */
class RayIndex
{
public:
    RayIndex(const std::vector<Edge> &edges, int axis) : m_edges(edges), m_axis(axis)
    {
        for (int e = 0; e < int(edges.size()); ++e)
            addPieces(e);
        std::vector<IntervalIndex::Interval> intervals;
        intervals.reserve(m_pieces.size());
        for (const Piece &piece : m_pieces)
            intervals.push_back(
                { std::min(piece.value0, piece.value1), std::max(piece.value0, piece.value1) });
        m_index = IntervalIndex(intervals);
    }

    /**
     * Calls met(edge, rising) for every piece between infinity and the point of edge at time t. False when a
     * piece passes so near to that point that its side is left open.
     */
    template <typename Met>
    bool cast(int fromEdge, double t, Met &&met) const
    {
        const vxPoint start = placeAt(m_edges[size_t(fromEdge)].inFrame, t);
        const double level = m_axis == 1 ? start.y : start.x;
        const double limit = m_axis == 1 ? start.x : start.y;
        bool decided = true;
        m_index.query(level, [&](int index) {
            const Piece &piece = m_pieces[size_t(index)];
            // Half-open, so that a vertex on the level counts once, or twice where the outline turns back.
            if (level == std::max(piece.value0, piece.value1))
                return;
            if (piece.edge == fromEdge && piece.t0 < t && t < piece.t1)
                return;
            const double off = limit - crossing(piece, level, limit);
            if (std::fabs(off) < undecidedDistance)
                decided = false;
            if (off > 0)
                met(piece.edge, piece.value1 > piece.value0);
        });
        return decided;
    }

private:
    /** Exact at the ends, so that neighbouring edges meet on one level. */
    double value(const Cubic &c, double t) const
    {
        if (t == 0 || t == 1)
            return c.v[t == 0 ? m_axis : 6 + m_axis];
        const vxPoint p = placeAt(c, t);
        return m_axis == 1 ? p.y : p.x;
    }

    void addPieces(int e)
    {
        const Edge &edge = m_edges[size_t(e)];
        double times[4];
        const int count = edge.line ? wholeCurve(times) : monotoneTimes(edge.inFrame, times);
        const Box box = hullBox(edge.inFrame);
        for (int i = 0; i < count; ++i) {
            const Piece piece{ e,
                               times[i],
                               times[i + 1],
                               value(edge.inFrame, times[i]),
                               value(edge.inFrame, times[i + 1]),
                               m_axis == 1 ? box.minX : box.minY,
                               m_axis == 1 ? box.maxX : box.maxY };
            if (piece.value0 != piece.value1)
                m_pieces.push_back(piece);
        }
    }

    static int wholeCurve(double times[4])
    {
        times[0] = 0;
        times[1] = 1;
        return 1;
    }

    /**
     * Times between which the level coordinate is monotone, 0 and 1 among them; returns the number of pieces.
     */
    int monotoneTimes(const Cubic &c, double times[4]) const
    {
        const double q0 = c.v[m_axis], q1 = c.v[2 + m_axis], q2 = c.v[4 + m_axis], q3 = c.v[6 + m_axis];
        double roots[2];
        const int found =
            solveQuadratic(3 * (q1 - q2) - q0 + q3, 2 * (q0 + q2) - 4 * q1, q1 - q0, roots, 0, 1);
        if (found == 2 && roots[0] > roots[1])
            std::swap(roots[0], roots[1]);
        times[0] = 0;
        int count = 1;
        for (int i = 0; i < found; ++i) {
            if (roots[i] > times[count - 1] && roots[i] < 1)
                times[count++] = roots[i];
        }
        times[count] = 1;
        return count;
    }

    /** Where a piece meets the level, across it; only as exact as its comparison with limit needs. */
    double crossing(const Piece &piece, double level, double limit) const
    {
        const Edge &edge = m_edges[size_t(piece.edge)];
        const Cubic &c = edge.inFrame;
        const int across = 1 - m_axis;
        if (piece.greatest < limit - undecidedDistance)
            return piece.greatest;
        if (piece.least > limit + undecidedDistance)
            return piece.least;
        if (edge.line)
            return c.v[across] +
                   (c.v[6 + across] - c.v[across]) * (level - piece.value0) / (piece.value1 - piece.value0);
        const double t = timeAtLevel(c, piece, level);
        const vxPoint p = placeAt(c, t);
        return m_axis == 1 ? p.x : p.y;
    }

    /** Bisection with Newton steps: the piece is monotone, so the bracket always holds the one root. */
    double timeAtLevel(const Cubic &c, const Piece &piece, double level) const
    {
        const bool rising = piece.value1 > piece.value0;
        double lo = piece.t0;
        double hi = piece.t1;
        double t = lo + (hi - lo) * (level - piece.value0) / (piece.value1 - piece.value0);
        for (int i = 0; i < 60 && hi - lo > 1e-16; ++i) {
            const double off = value(c, t) - level;
            if (off == 0)
                break;
            ((off > 0) == rising ? hi : lo) = t;
            const vxPoint d = velocityAt(c, t);
            double next = t - off / (m_axis == 1 ? d.y : d.x);
            if (!(next > lo && next < hi))
                next = (lo + hi) / 2;
            if (std::fabs(next - t) < 1e-16)
                break;
            t = next;
        }
        return t;
    }

    const std::vector<Edge> &m_edges;
    int m_axis;
    std::vector<Piece> m_pieces;
    IntervalIndex m_index;
};

/**
 * Windings of the operands at a point, and with them which are filled there; clearing costs what was added.
 */
class Windings
{
public:
    explicit Windings(const std::vector<char> &evenOdd) : m_evenOdd(evenOdd), m_windings(evenOdd.size(), 0) {}

    void clear()
    {
        for (int operand : m_touched)
            m_windings[size_t(operand)] = 0;
        m_touched.clear();
        m_fill = Fill();
    }
    void add(int operand, int count)
    {
        int &winding = m_windings[size_t(operand)];
        const bool before = isFilled(operand, winding);
        winding += count;
        const bool after = isFilled(operand, winding);
        m_touched.push_back(operand);
        m_fill.count += int(after) - int(before);
        if (operand == 0)
            m_fill.first = after;
    }
    const Fill &fill() const { return m_fill; }

private:
    bool isFilled(int operand, int winding) const
    {
        return m_evenOdd[size_t(operand)] ? winding % 2 != 0 : winding != 0;
    }

    const std::vector<char> &m_evenOdd;
    std::vector<int> m_windings;
    std::vector<int> m_touched;
    Fill m_fill;
};

} // namespace

void Arrangement::findSides()
{
    const RayIndex towardsLeft(m_edges, 1);
    const RayIndex towardsTop(m_edges, 0);
    Windings windings(m_evenOdd);
    const auto addShares = [&](const Edge &edge, int factor) {
        for (int i = 0; i < edge.shareCount; ++i) {
            const Share &share = m_shares[size_t(edge.firstShare + i)];
            windings.add(share.operand, share.count * factor);
        }
    };

    for (int e = 0; e < int(m_edges.size()); ++e) {
        Edge &edge = m_edges[size_t(e)];
        // A clockwise outline rises (to smaller y) on its left and runs to larger x at its top: each counts
        // +1 there.
        bool sideways = true;
        vxPoint tangent;
        for (double t : startTimes) {
            tangent = velocityAt(edge.inFrame, t);
            sideways = std::fabs(tangent.y) >= std::fabs(tangent.x);
            windings.clear();
            const RayIndex &rays = sideways ? towardsLeft : towardsTop;
            const bool decided = rays.cast(e, t, [&](int met, bool rising) {
                addShares(m_edges[size_t(met)], rising == sideways ? -1 : 1);
            });
            if (decided && (tangent.x != 0 || tangent.y != 0))
                break;
        }
        // The side that the ray leaves by is the left one where the edge itself would count +1.
        const bool countsPositive = sideways ? tangent.y < 0 : tangent.x > 0;
        Fill &near = countsPositive ? edge.left : edge.right;
        Fill &far = countsPositive ? edge.right : edge.left;
        near = windings.fill();
        addShares(edge, countsPositive ? 1 : -1);
        far = windings.fill();
    }
}

} // namespace vx
