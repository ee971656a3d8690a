#include "pzpath.h"
#include "pzpath_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>

namespace {

/** Collects contours from elements that come in order. */
class ContourBuilder
{
public:
    explicit ContourBuilder(XPath *parent) : m_parent(parent)
    {
        constexpr size_t usualVertices = 64;
        m_outline.reserve(usualVertices);
    }

    void move(const vxPoint &p)
    {
        finish(false);
        m_outline.emplace_back(p, vxPoint(), vxPoint());
    }
    void line(const vxPoint &p)
    {
        if (isDrawing())
            m_outline.emplace_back(p, vxPoint(), vxPoint());
    }
    void cubic(const vxPoint &c1, const vxPoint &c2, const vxPoint &p)
    {
        if (!isDrawing())
            return;
        vxSegment &from = m_outline.back();
        from.handleOut = c1.subtract(from.point);
        m_outline.emplace_back(p, c2.subtract(p), vxPoint());
    }
    void close(const vxPoint &start)
    {
        if (m_outline.empty()) {
            // Another close of the same contour: its ends may meet once more.
            if (m_goesOn)
                m_contours.back()->join(nullptr, vxTolerance::mergeExtent);
            return;
        }
        finish(true);
        m_goesOn = true;
        m_closePoint = start;
    }
    /** Contours begun so far. */
    int count() const { return int(m_contours.size()) + (m_outline.empty() ? 0 : 1); }
    std::vector<vxRef<vxPath>> take()
    {
        finish(false);
        return std::move(m_contours);
    }

private:
    /** Whether there is a contour to go on with; after a close one begins where that one did. */
    bool isDrawing()
    {
        if (m_outline.empty() && m_goesOn)
            move(m_closePoint);
        return !m_outline.empty();
    }

    void finish(bool closed)
    {
        m_goesOn = false;
        if (m_outline.empty())
            return;
        if (closed)
            mergeEnds();
        m_contours.emplace_back(new vxPath(m_parent, closed));
        m_contours.back()->_setOutline(m_outline);
        m_outline.clear();
    }

    /** Where the last drawn point repeats the first, the two become one vertex, as vxPath::join() has it. */
    void mergeEnds()
    {
        vxSegment &first = m_outline.front();
        const vxSegment &last = m_outline.back();
        if (m_outline.size() < 2 || !first.point.isClose(last.point, vxTolerance::mergeExtent))
            return;
        first.handleIn = last.handleIn;
        m_outline.pop_back();
    }

    XPath *m_parent;
    std::vector<vxRef<vxPath>> m_contours;
    /** The contour that is being drawn; empty between contours. */
    std::vector<vxSegment> m_outline;
    /** A contour was closed and none begun since. */
    bool m_goesOn = false;
    vxPoint m_closePoint;
};

bool startsContour(const PZPath &path, int i)
{
    return path.at(i).type == PZPath::MoveToElement ||
           (i > 0 && path.at(i - 1).type == PZPath::CloseElement && path.at(i).type != PZPath::CloseElement);
}

/** No handles at all on the curve from a to b: it is a line in the element list. */
bool isLine(const vxSegment *a, const vxSegment *b)
{
    return a->handleOut == vxPoint() && b->handleIn == vxPoint();
}

void appendCurve(PZPath &path, const vxSegment *a, const vxSegment *b, const vxPoint &end)
{
    path.cubicTo(a->point.add(a->handleOut).toPt(), b->point.add(b->handleIn).toPt(), end.toPt());
}

void appendClosing(PZPath &path, const vxSegment *last, const vxSegment *first)
{
    if (isLine(last, first)) {
        path.lineTo(first->point.toPt());
    } else {
        // Truncated ends stay within the merge tolerance, so closeSubpath() snaps them onto the exact start;
        // callers of the element list rely on that path through the snap.
        const vxPoint end(std::trunc(first->point.x), std::trunc(first->point.y));
        appendCurve(path, last, first, end);
    }
    path.closeSubpath();
}

void appendContour(PZPath &path, const vxPath &contour)
{
    const QList<vxSegment *> segments = contour.getSegments();
    if (segments.count() < 2)
        return;
    path.moveTo(segments.first()->point.toPt());
    for (int k = 0; k + 1 < segments.count(); ++k) {
        const vxSegment *a = segments.at(k);
        const vxSegment *b = segments.at(k + 1);
        if (isLine(a, b))
            path.lineTo(b->point.toPt());
        else
            appendCurve(path, a, b, b->point);
    }
    if (contour.isClosed())
        appendClosing(path, segments.last(), segments.first());
}

} // namespace

std::vector<vxRef<vxPath>> pz::buildContours(const PZPath &path, int from, XPath *parent, int limit)
{
    ContourBuilder builder(parent);
    const int n = path.count();
    for (int i = std::max(from, 0); i < n; ++i) {
        if (builder.count() >= limit && startsContour(path, i))
            break;
        const PZPath::PZElement &element = path.at(i);
        switch (element.type) {
        case PZPath::MoveToElement:
            builder.move(pz::pointOf(element));
            break;
        case PZPath::LineToElement:
            builder.line(pz::pointOf(element));
            break;
        case PZPath::CurveToElement:
            if (i < n - 2) {
                builder.cubic(pz::pointOf(element), pz::pointOf(path.at(i + 1)), pz::pointOf(path.at(i + 2)));
                i += 2;
            }
            break;
        case PZPath::CloseElement:
            builder.close(pz::pointOf(element));
            break;
        default: // a data element without its curve
            break;
        }
    }
    return builder.take();
}

void PZPath::toXPath(XPath &xpath, int startIndex)
{
    cleanUp();
    const auto contours = pz::buildContours(*this, startIndex, &xpath);
    QVector<vxPath *> children;
    children.reserve(int(contours.size()));
    for (const vxRef<vxPath> &contour : contours)
        children.append(contour.get());
    xpath.setChildren(children);
}

void PZPath::fromXPath(const XPath &xpath, int first, int last)
{
    const int count = xpath.children.count();
    const int end = last == -1 ? count : std::min(last, count);
    for (int i = std::max(first, 0); i < end; ++i) {
        if (const vxPath *child = xpath.children.at(i))
            appendContour(*this, *child);
    }
}
