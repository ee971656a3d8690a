#include "pzpath.h"
#include "pzpath_p.h"
#include "vxtolerance.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>

namespace {

vxPoint toEngine(const PZPath::PZElement &element)
{
    return vxPoint(element.x, element.y);
}

/** Collects contours from elements that come in order. */
class ContourBuilder
{
public:
    explicit ContourBuilder(XPath *parent) : m_parent(parent) {}

    void move(const vxPoint &p)
    {
        contours.emplace_back(new vxPath(m_parent, false));
        contours.back()->moveToPt(p);
        m_finished = false;
    }
    void line(const vxPoint &p)
    {
        if (vxPath *path = drawingPath())
            path->lineToPt(p);
    }
    void cubic(const vxPoint &c1, const vxPoint &c2, const vxPoint &p)
    {
        if (vxPath *path = drawingPath())
            path->cubicCurveTo(c1, c2, p);
    }
    void close(const vxPoint &start)
    {
        if (contours.empty() || m_finished)
            return;
        vxPath *path = contours.back().get();
        path->setClosed(true);
        // The last drawn point repeats the first; the two become one segment.
        path->join(path, vxTolerance::mergeExtent);
        m_finished = true;
        m_closePoint = start;
    }

    std::vector<vxRef<vxPath>> contours;

private:
    /** The contour that drawing goes on with; null before the first move. */
    vxPath *drawingPath()
    {
        if (m_finished)
            move(m_closePoint);
        return contours.empty() ? nullptr : contours.back().get();
    }

    XPath *m_parent;
    vxPoint m_closePoint;
    bool m_finished = false;
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
        if (int(builder.contours.size()) >= limit && startsContour(path, i))
            break;
        const PZPath::PZElement &element = path.at(i);
        switch (element.type) {
        case PZPath::MoveToElement:
            builder.move(toEngine(element));
            break;
        case PZPath::LineToElement:
            builder.line(toEngine(element));
            break;
        case PZPath::CurveToElement:
            if (i < n - 2) {
                builder.cubic(toEngine(element), toEngine(path.at(i + 1)), toEngine(path.at(i + 2)));
                i += 2;
            }
            break;
        case PZPath::CloseElement:
            builder.close(toEngine(element));
            break;
        default: // a data element without its curve
            break;
        }
    }
    return std::move(builder.contours);
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
