#include "evenoddarea.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// 1. Outlines become edges that run downwards; level ones bound no area.
// 2. The heights of all ends cut the plane into bands that no edge begins or ends in.
// 3. In each band, the edges at half height from left to right bound the spans that are inside and outside in
//    turn. The middle span times the height is exact for trapezoids; only in a band with a crossing is it an
//    approximation.

namespace {

struct Edge {
    QPointF top, bottom;

    double xAt(double y) const
    {
        return top.x() + (bottom.x() - top.x()) * ((y - top.y()) / (bottom.y() - top.y()));
    }
};

double extent(const QPointF &p)
{
    return std::max(std::fabs(p.x()), std::fabs(p.y()));
}

/**
 * How many chords of equal time keep within tolerance: a chord's sagitta is an eighth of the second
 * derivative.
 */
int chordCount(const QPointF &p0, const QPointF &p1, const QPointF &p2, const QPointF &p3, double tolerance)
{
    const double bend = 6 * std::max(extent(p0 - 2 * p1 + p2), extent(p1 - 2 * p2 + p3));
    return 1 + static_cast<int>(std::min(std::sqrt(bend / (8 * tolerance)), 1000.0));
}

class EdgeList
{
public:
    explicit EdgeList(const QPainterPath &path)
    {
        const QRectF box = path.controlPointRect();
        m_tolerance = 1e-6 * std::max(box.width(), box.height());
        QPointF start;
        for (int i = 0; i < path.elementCount(); ++i) {
            const QPainterPath::Element &element = path.elementAt(i);
            if (element.isMoveTo()) {
                addLine(m_last, start);
                start = m_last = element;
            } else if (element.isLineTo()) {
                addLine(m_last, element);
                m_last = element;
            } else {
                addCubic(element, path.elementAt(i + 1), path.elementAt(i + 2));
                i += 2;
            }
        }
        addLine(m_last, start);
    }
    std::vector<Edge> edges;

private:
    void addLine(const QPointF &a, const QPointF &b)
    {
        if (a.y() != b.y())
            edges.push_back(a.y() < b.y() ? Edge{ a, b } : Edge{ b, a });
    }
    void addCubic(const QPointF &p1, const QPointF &p2, const QPointF &p3)
    {
        const QPointF p0 = m_last;
        const int count = chordCount(p0, p1, p2, p3, m_tolerance);
        for (int i = 1; i <= count; ++i) {
            const double t = double(i) / count;
            const double s = 1 - t;
            const QPointF p =
                i < count ? s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3 : p3;
            addLine(m_last, p);
            m_last = p;
        }
    }

    QPointF m_last;
    double m_tolerance = 0;
};

bool isFinite(const QPainterPath &path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        if (!std::isfinite(path.elementAt(i).x) || !std::isfinite(path.elementAt(i).y))
            return false;
    }
    return true;
}

std::vector<double> heightsOf(const std::vector<Edge> &edges)
{
    std::vector<double> heights;
    for (const Edge &edge : edges) {
        heights.push_back(edge.top.y());
        heights.push_back(edge.bottom.y());
    }
    std::sort(heights.begin(), heights.end());
    heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
    return heights;
}

/** Width that is inside at height y. */
double insideWidth(const std::vector<Edge> &edges, const std::vector<size_t> &active, double y)
{
    std::vector<double> xs;
    for (const size_t i : active)
        xs.push_back(edges[i].xAt(y));
    std::sort(xs.begin(), xs.end());
    double width = 0;
    for (size_t i = 0; i + 1 < xs.size(); i += 2)
        width += xs[i + 1] - xs[i];
    return width;
}

} // namespace

double evenOddArea(const QPainterPath &path)
{
    if (!isFinite(path))
        return std::numeric_limits<double>::quiet_NaN();
    std::vector<Edge> edges = EdgeList(path).edges;
    std::sort(edges.begin(), edges.end(), [](const Edge &a, const Edge &b) { return a.top.y() < b.top.y(); });
    const std::vector<double> heights = heightsOf(edges);
    std::vector<size_t> active;
    size_t next = 0;
    double area = 0;
    for (size_t k = 0; k + 1 < heights.size(); ++k) {
        while (next < edges.size() && edges[next].top.y() <= heights[k])
            active.push_back(next++);
        const auto isOver = [&](size_t i) { return edges[i].bottom.y() <= heights[k]; };
        active.erase(std::remove_if(active.begin(), active.end(), isOver), active.end());
        const double height = heights[k + 1] - heights[k];
        area += height * insideWidth(edges, active, heights[k] + height / 2);
    }
    return area;
}
