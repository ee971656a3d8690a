#pragma once

#include "vxarrangement_p.h"
#include "vxnearness_p.h"
#include "vxruntree_p.h"
#include "vxturns_p.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vx {

/** In units of the frame: a curve met this near to the ray's start leaves open on which side it lies. */
constexpr double undecidedDistance = 1e-9;

/**
 * In units of the frame: boxes are widened by this, so that what is taken for off the ray, or for in front of
 * its start, is so for the exact test too. Far above rounding and the distance that leaves a side open.
 */
constexpr double boxMargin = 1e-8;

/**
 * What some rays may meet. Links: stretches whose boxes may hold the start of one. Rows: stretches of a
 * contour that follow each other and lie in front of all starts, by the levels of the first one's start and
 * the last one's end.
 */
struct Ahead {
    struct Row {
        int contour;
        double from, to;
    };
    std::vector<int> links;
    std::vector<Row> rows;
};

/**
 * Rays from edges along one axis, towards smaller values. Axis is the coordinate that a ray keeps (its
 * level): 1 for rays towards -x, 0 for rays towards -y.
 *
 * Stretches of a contour that follow each other and lie in front of the ray's start with all their control
 * points count as much as the chord from the first one's start to the last one's end: each counts +1 or -1
 * for the ends that it has on two sides of the level, and what is between cancels. A closed contour in front
 * of the start counts nothing. So only stretches whose boxes hold the start are looked at one by one.
 */
template <int Axis>
class Rays
{
public:
    Rays(const std::vector<Edge> &edges, const std::vector<Node> &nodes, const std::vector<Link> &links,
         const std::vector<Box> &boxes)
        : m_edges(edges), m_nodes(nodes), m_links(links), m_boxes(boxes)
    {
    }

    /**
     * Gathers what rays from anywhere in a box may meet. Contours are those whose boxes touch it, and any
     * others, which count nothing.
     */
    void gather(const Box &starts, const RunTree &tree, const std::vector<int> &contours, Ahead &ahead) const
    {
        ahead.links.clear();
        ahead.rows.clear();
        const double levelLow = lowest(starts) - boxMargin, levelHigh = highest(starts) + boxMargin;
        const double limitLow = nearest(starts) - boxMargin, limitHigh = farthest(starts) + boxMargin;
        // Whether a box may hold a start; what lies in front of all of them becomes a row.
        const auto holdsStart = [&](const Box &box, int first, int last) {
            if (levelHigh < lowest(box) || levelLow > highest(box) || limitHigh < nearest(box))
                return false;
            if (limitLow <= farthest(box))
                return true;
            const double from = along(m_nodes[size_t(m_links[size_t(first)].node0)].inFrame);
            const double to = along(m_nodes[size_t(m_links[size_t(last)].node1)].inFrame);
            if (std::min(from, to) <= levelHigh && std::max(from, to) >= levelLow)
                ahead.rows.push_back({ m_links[size_t(first)].contour, from, to });
            return false;
        };
        tree.walk(
            contours, [&](const RunTree::Run &run) { return holdsStart(run.box, run.first, run.last); },
            [&](int link) {
                if (holdsStart(m_boxes[size_t(link)], link, link))
                    ahead.links.push_back(link);
            });
    }

    /**
     * Counts what lies between infinity and the point start of an edge at time t: calls
     * metEdge(edge, rising), and metRow(contour, rising) for stretches in a row that were not looked at.
     * False when a piece passes so near to that point that its side is left open; where doubtful is given, it
     * is set to that piece's link, and nothing more is counted. Ahead: as gathered for a box that holds the
     * start.
     */
    template <typename MetEdge, typename MetRow>
    bool cast(int fromEdge, double t, const vxPoint &start, const Ahead &ahead, MetEdge &&metEdge,
              MetRow &&metRow, int *doubtful) const
    {
        const double level = along(start);
        const double limit = across(start);
        const double levelLow = level - boxMargin, levelHigh = level + boxMargin;
        const double limitLow = limit - boxMargin, limitHigh = limit + boxMargin;
        const auto countRow = [&](int contour, double from, double to) {
            const bool endsBeyond = to > level;
            if ((from > level) != endsBeyond)
                metRow(contour, endsBeyond);
        };
        for (const Ahead::Row &row : ahead.rows)
            countRow(row.contour, row.from, row.to);
        bool decided = true;
        const Box *const boxes = m_boxes.data();
        for (int i : ahead.links) {
            const Box &box = boxes[i]; // of the edge, where it has one
            if (levelHigh < lowest(box) || levelLow > highest(box) || limitHigh < nearest(box))
                continue;
            const Link &link = m_links[size_t(i)];
            if (limitLow > farthest(box)) {
                countRow(link.contour, along(m_nodes[size_t(link.node0)].inFrame),
                         along(m_nodes[size_t(link.node1)].inFrame));
            } else if (link.edge != -1 && !lookAt(link.edge, box, fromEdge, t, level, limit, metEdge)) {
                decided = false;
                if (doubtful) {
                    *doubtful = i;
                    break;
                }
            }
        }
        return decided;
    }

    /** Whether cast() finds that the piece of a link, which an edge stands for, passes so near. */
    bool leavesOpen(int link, int fromEdge, double t, const vxPoint &start) const
    {
        const Box &box = m_boxes[size_t(link)];
        const auto count = [](int, bool) {};
        return holds(box, start, boxMargin) &&
               !lookAt(m_links[size_t(link)].edge, box, fromEdge, t, along(start), across(start), count);
    }

private:
    /** A part of an edge that is monotone in the coordinate along which levels are counted. */
    struct Piece {
        int edge;
        double t0, t1;
        double value0, value1;
        /** Range of the edge's control points in the other coordinate. */
        double least, greatest;
    };

    static double along(const vxPoint &p) { return Axis == 1 ? p.y : p.x; }
    static double across(const vxPoint &p) { return Axis == 1 ? p.x : p.y; }
    static double lowest(const Box &box) { return Axis == 1 ? box.minY : box.minX; }
    static double highest(const Box &box) { return Axis == 1 ? box.maxY : box.maxX; }
    static double nearest(const Box &box) { return Axis == 1 ? box.minX : box.minY; }
    static double farthest(const Box &box) { return Axis == 1 ? box.maxX : box.maxY; }

    /** Counts the pieces of one edge between infinity and the ray's start; false as cast() gives it. */
    template <typename MetEdge>
    bool lookAt(int e, const Box &box, int fromEdge, double t, double level, double limit,
                MetEdge &&metEdge) const
    {
        const Edge &edge = m_edges[size_t(e)];
        if (e == fromEdge && (edge.line || isMonotone(edge.inFrame)))
            return true; // its one piece is where the ray starts
        double times[4];
        const int count = edge.line ? wholeCurve(times) : monotoneTimes(edge.inFrame, times);
        bool decided = true;
        double end = value(edge.inFrame, times[0]);
        for (int i = 0; i < count; ++i) {
            const Piece piece{
                e, times[i], times[i + 1], end, value(edge.inFrame, times[i + 1]), nearest(box), farthest(box)
            };
            end = piece.value1;
            // Half-open, so that a vertex on the level counts once, or twice where the outline turns back.
            if (level < std::min(piece.value0, piece.value1) || level >= std::max(piece.value0, piece.value1))
                continue;
            if (e == fromEdge && piece.t0 < t && t < piece.t1)
                continue;
            const double off = limit - crossing(piece, level, limit);
            if (std::fabs(off) < undecidedDistance)
                decided = false;
            if (off > 0)
                metEdge(e, piece.value1 > piece.value0);
        }
        return decided;
    }

    /** Exact at the ends, so that neighbouring edges meet on one level. */
    double value(const Cubic &c, double t) const
    {
        if (t == 0 || t == 1)
            return c.v[t == 0 ? Axis : 6 + Axis];
        return along(placeAt(c, t));
    }

    static int wholeCurve(double times[4])
    {
        times[0] = 0;
        times[1] = 1;
        return 1;
    }

    /**
     * Whether a curve is surely one piece, for its control values rise or fall by a good part each. The
     * derivative's double root that rounding may take for a real one is then well outside [0, 1].
     */
    static bool isMonotone(const Cubic &c)
    {
        const double q0 = c.v[Axis], q1 = c.v[2 + Axis], q2 = c.v[4 + Axis], q3 = c.v[6 + Axis];
        const auto steps = std::minmax({ q1 - q0, q2 - q1, q3 - q2 });
        constexpr double least = 1e-3;
        constexpr double leastPart = 1e-3;
        return steps.first > 0 ? steps.first > least && steps.first > leastPart * steps.second
                               : steps.second < -least && steps.second < leastPart * steps.first;
    }

    /**
     * Times between which the level coordinate is monotone, 0 and 1 among them; returns the number of pieces.
     */
    int monotoneTimes(const Cubic &c, double times[4]) const
    {
        double roots[2];
        const int found = turnTimes(c, Axis, roots, 0, 1);
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
        if (piece.greatest < limit - undecidedDistance)
            return piece.greatest;
        if (piece.least > limit + undecidedDistance)
            return piece.least;
        if (edge.line)
            return across(c.p0()) +
                   (across(c.p3()) - across(c.p0())) * (level - piece.value0) / (piece.value1 - piece.value0);
        const double t = timeAtLevel(c, piece, level);
        return across(placeAt(c, t));
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
            double next = t - off / along(velocityAt(c, t));
            if (!(next > lo && next < hi))
                next = (lo + hi) / 2;
            if (std::fabs(next - t) < 1e-16)
                break;
            t = next;
        }
        return t;
    }

    const std::vector<Edge> &m_edges;
    const std::vector<Node> &m_nodes;
    const std::vector<Link> &m_links;
    const std::vector<Box> &m_boxes; ///< per link
};

} // namespace vx
