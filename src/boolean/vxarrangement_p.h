#pragma once

#include "vxcubic_p.h"
#include "vxintersect_p.h"
#include "vxnearness_p.h"
#include "vxoperation_p.h"

#include <QVector>

#include <limits>
#include <vector>

class XPath;
class vxPath;

/**
 * The arrangement of all curves of a boolean's operands: every curve cut wherever it meets another, every
 * stretch between cuts knowing the fill of each operand on both its sides. It knows the area of a result, and
 * whether it can be trusted, before anything is traced.
 *
 *  1. meet: intersect every pair of curves that can meet, each with itself too (vxarrangement_meet.cpp);
 *  2. cut: cut the curves there (vxarrangement_cut.cpp), join end points within the snapping distance into
 *     nodes (vxarrangement_nodes.cpp), make stretches that run together one edge (vxarrangement_edges.cpp);
 *  3. sides: count what a ray from the middle of every edge meets (vxarrangement_sides.cpp);
 *  4. select: keep the edges across which an operation's answer differs, inside on the right; area and
 *     balance of all nodes follow from these (vxarrangement.cpp);
 *  5. trace: walk kept edges, closing the tightest wedge of inside at each node (vxarrangement_trace.cpp).
 *
 * Works in a frame of its own: the operands moved and scaled by a power of two so that they measure about a
 * thousand units, which makes tolerances relative. y points down; clockwise on screen is positive and has the
 * inside on its right.
 */
namespace vx {

/** Maps the operands' box to the working frame and back; the scale is a power of two. */
struct Frame {
    double originX = 0, originY = 0;
    double scale = 1;

    static Frame around(const Box &box);
    vxPoint toFrame(const vxPoint &p) const
    {
        return vxPoint((p.x - originX) * scale, (p.y - originY) * scale);
    }
    vxPoint fromFrame(const vxPoint &p) const
    {
        return vxPoint(p.x / scale + originX, p.y / scale + originY);
    }
    Cubic toFrame(const Cubic &c) const;
};

/**
 * Signed area between a curve and a point. Around a place near a small contour it loses no digits, as the
 * area around a far origin does.
 */
inline double signedAreaAround(const vxPoint &p, const Cubic &c)
{
    return signedArea(Frame{ p.x, p.y, 1 }.toFrame(c));
}

/** One contour of an operand as it is filled. */
struct ArrangedContour {
    const vxPath *path;
    int operand;
    int firstCurve;
    int curveCount;
};

/** Where a curve comes near a point; noTime where it does not. */
struct NearPlace {
    vxPoint point = vxPoint(std::numeric_limits<double>::quiet_NaN(), 0); ///< that of the last question
    double t = 0;
    double distance = 0;
};

/** A curve of an operand. */
struct ArrangedCurve {
    ArrangedCurve(const Cubic &c, int itsContour)
        : original(c), contour(itsContour), line(isChord(c) || !hasHandles(c))
    {
    }

    PreparedCurve inFrame; ///< set when the frame is known
    Cubic original;
    NearPlace lastNear; ///< ends that meet a curve are asked for again and again
    int contour;
    bool line; ///< no handles
};

/**
 * A place where a curve is to be cut. distance: how far the other's end point lies off it; 0 for a crossing.
 */
struct Cut {
    int curve;
    double t;
    double distance;
};

/** A place on a curve. */
struct Place {
    double t;
    vxPoint point;
};

/** A point where stretches end. */
struct Node {
    vxPoint inFrame;
    vxPoint original;
    /** Every end point that was joined into it lies exactly on it. */
    bool exact;
};

/** Whether a curve leaves the surroundings of its start. */
inline bool bulges(const Cubic &c, double distance)
{
    for (double t : { 0.25, 0.5, 0.75 }) {
        if (placeAt(c, t).getDistance(c.p0()) > distance)
            return true;
    }
    return false;
}

/** The curve with its ends moved, its handles going along. */
inline Cubic withEnds(const Cubic &c, const vxPoint &p0, const vxPoint &p3)
{
    return Cubic::fromPoints(p0, c.p1().add(p0.subtract(c.p0())), c.p2().add(p3.subtract(c.p3())), p3);
}

/** Signed number of times that an edge occurs in an operand's outline, counted along the edge. */
struct Share {
    int operand;
    int count;
};

/** Which operands are filled on one side of an edge: whether the first is, and how many are. */
struct Fill {
    bool first = false;
    int count = 0;
};

/**
 * A stretch of curve between two nodes that all stretches running along it share. Up to makeEdges() it is any
 * one stretch, and its fields are set step by step: the edges are picked from the list of stretches in place.
 */
struct Edge {
    Cubic inFrame; ///< its ends on the nodes, from moveOntoNodes() on
    int curve;
    double t0, t1;
    int node0, node1;           ///< from joinEnds() on
    int firstShare, shareCount; ///< from makeEdges() on
    /** No handles: inFrame is the chord. */
    bool line;
    Fill right, left; ///< from findSides() on
};

/**
 * A stretch as its contour walks it. edge: the edge that it is the first of; -1 where it lies along another
 * stretch's, or where the stretches along it cancel.
 */
struct Link {
    int contour;
    int node0, node1;
    int edge;
};

/** The stretches that one runs together with, as a list. */
struct Companions {
    int first = -1; ///< the one that stands for them; -1 where the stretch shrank to a point
    int next = -1;
    int last = -1; ///< known to the first
};

/** What is known of an area. */
struct AreaRange {
    double least = 0, most = 0;
};

/** What an attempt cut the curves into; but for themselves, the sides of its edges follow from it. */
struct Subdivision {
    std::vector<Node> nodes;
    std::vector<Edge> edges;
    std::vector<Share> shares;
    std::vector<Link> links;
    std::vector<Box> linkBoxes;  ///< per link: box around the control points of the curve that stands for it
    std::vector<int> linkStarts; ///< per contour, and one past the last
};

/** The finest distance, in units of the frame, within which ends are joined. */
constexpr double leastSnapping = 1e-8;

/** An edge as a result walks it. */
struct Step {
    int edge;
    bool reversed;
};

/** A contour of a result as it is walked. */
using Contour = std::vector<Step>;

/** What is known of an operation's result before it is traced. */
struct Selection {
    std::vector<Step> kept;  ///< each with the inside on its right
    int unbalancedNodes = 0; ///< see Arrangement::nodeBalances()
    double area = 0;         ///< in the operands' units
    double signedArea = 0;   ///< the same, but the second operand's part of an exclusion negative
};

class Arrangement
{
public:
    explicit Arrangement(const QVector<const XPath *> &operands);

    /** Tries snapping distances until every node is balanced; false when none does, and the best is kept. */
    bool solve(Operation operation);

    /**
     * After solve(): the same with a fine snapping where that closes too, resolves the operands' contours and
     * gives the same area but for what snapping moves; the first that is exact, or else the first.
     */
    void refine(Operation operation);

    /**
     * Whether the operands' contours are far thicker than the snapping distance, but for those that are
     * thinner than 5e-5 units. Else snapping may have closed one of them up, which shows neither in the
     * balance of nodes nor, in a wide drawing, in the area that it moved.
     */
    bool resolvesContours() const { return resolvesContours(m_snapping); }
    /** Of referenceArea(): areas that agree within this are the same. */
    static constexpr double areaMargin = 1e-9;
    /** Whether contours are resolved, and snapping moved their area by no more than that. */
    bool isExact(Operation operation);
    /** Whether the result may stand without another to confirm it: resolved, fine, and hardly moved. */
    bool isReliable(Operation operation);

    const Selection &selection() const { return m_selection; }
    /** Per node: kept stretches that leave it less those that enter it. A node is balanced at 0. */
    std::vector<int> nodeBalances() const;
    /** Snapping distance of the solution in the operands' units. */
    double snapping() const { return m_snapping / m_frame.scale; }
    /**
     * Whether joining ends and stretches moved the outlines by no more than an area in the operands' square
     * units; what is measured is the least that it can be. After solve() or refine() for that operation.
     */
    bool movedAtMost(double area, Operation operation);
    /**
     * What areas are measured by, in the operands' square units: the area of their common box, which counts
     * as no thinner than a hundredth of its length.
     */
    double referenceArea() const { return m_referenceArea; }
    /** The result's contours, simple ones that touch at nodes at most. */
    std::vector<Contour> contours() const;
    /** Paths of these (count 0, the caller's), outer ones clockwise, holes not, flagged so. */
    QVector<vxPath *> makePaths(const std::vector<Contour> &contours) const;
    QVector<vxPath *> trace() const { return makePaths(contours()); }
    /** The curves of the path that is made of a contour, to the bit; none where it is left out. */
    std::vector<Cubic> curvesOf(const Contour &contour) const;

    // What drawing and tests look at.
    const std::vector<Edge> &edges() const { return m_current.edges; }
    const std::vector<Node> &nodes() const { return m_current.nodes; }
    const std::vector<Share> &shares() const { return m_current.shares; }
    const Frame &frame() const { return m_frame; }

private:
    // vxarrangement_meet.cpp
    void collect(const QVector<const XPath *> &operands);
    void meet();
    void meetPair(int i, int j);
    void meetLines(int i, int j);
    bool cutAtOverlap(int i, int j);
    void cutAt(int i, int j, const TimePair &place);
    void meetItself(int i);
    void meetEnd(int i, const vxPoint &p);
    const NearPlace &nearPlace(int i, const vxPoint &p);
    void meetThoroughly(const std::vector<char> &isSought);
    void meetNodes(const std::vector<char> &isSought);
    void meetPairByHalving(int i, int j);
    void cutAtTurns(int i, const std::vector<int> &partners);
    void addCut(int curve, double t, double distance);
    bool areNeighbours(int i, int j) const;

    // vxarrangement_cut.cpp
    void cut();
    std::vector<Edge> cutCurves();
    void sortCuts();
    void choosePlaces(const Cubic &values, const Cut *begin, const Cut *end);
    void cutCurve(int curve, const Cut *firstCut, const Cut *endCut, std::vector<Edge> &result);

    // vxarrangement_nodes.cpp
    void joinEnds(std::vector<Edge> &stretches);
    void makeNodes(std::vector<Edge> &stretches);
    void moveOntoNodes(std::vector<Edge> &stretches);

    // vxarrangement_edges.cpp
    void joinStretches(std::vector<Edge> &stretches);
    void linkStretches(const std::vector<Edge> &stretches, const std::vector<Companions> &companions);
    void makeEdges(std::vector<Edge> &stretches, const std::vector<Companions> &companions);
    int operandOf(const Edge &stretch) const
    {
        return m_contours[size_t(m_curves[size_t(stretch.curve)].contour)].operand;
    }
    void addShares(int first, const std::vector<Companions> &companions, const std::vector<Edge> &stretches);

    // vxarrangement_sides.cpp
    class SideFinder;
    void findSides();
    bool takeSides();

    // vxarrangement.cpp
    void setSubdivisionAside();
    bool attempt(Operation operation, double snapping);
    bool resolvesContours(double snapping) const;
    bool isFine() const;
    bool areThicker(double least) const;
    double thickness(const ArrangedContour &contour) const;
    bool lookAgain(size_t look);
    bool isFilled(Operation operation, const Fill &fill) const;
    void select(Operation operation);
    int countUnbalancedNodes() const;
    std::vector<char> curvesAtUnbalancedNodes() const;

    // vxarrangement_trace.cpp
    friend class ContourTracer;
    friend class ContourBuilder;

    int m_operandCount = 0;
    std::vector<char> m_evenOdd; ///< per operand
    std::vector<ArrangedContour> m_contours;
    std::vector<ArrangedCurve> m_curves;
    Frame m_frame;
    double m_extent = 0; ///< longer side of the operands' common box, in their units
    double m_referenceArea = 0;

    std::vector<Cut> m_cuts;
    size_t m_sortedCuts = 0;         ///< so many were there when they were sorted
    std::vector<size_t> m_cutCounts; ///< per curve
    std::vector<Place> m_places;     ///< scratch of cutCurve
    double m_snapping = 0;
    AreaRange m_movedArea;          ///< in units of the frame
    bool m_measuresExactly = false; ///< the range above comes to one number
    Subdivision m_current;
    Subdivision m_earlier; ///< that of the attempt before
    Selection m_selection;
};

} // namespace vx
