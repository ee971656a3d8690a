#include "xpath.h"

#include "vxbatch_p.h"
#include "vxcurvelocation.h"
#include "vxnearestlocation_p.h"
#include "vxnowhere_p.h"

#include <algorithm>
#include <functional>
#include <limits>

// What is asked of a compound path as a whole and answered by its children one by one.

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/** The box around those of all contours that are not empty. */
template <typename BoundsOf>
vxRect united(const QVector<vxPath *> &contours, BoundsOf &&boundsOf)
{
    // By edges: vxRect::unite() would leave out flat boxes, and a line has one.
    double left = infinity, top = infinity, right = -infinity, bottom = -infinity;
    for (const vxPath *contour : contours) {
        if (contour->isEmpty())
            continue;
        const vxRect box = boundsOf(*contour);
        left = box.x < left ? box.x : left;
        top = box.y < top ? box.y : top;
        right = box.right() > right ? box.right() : right;
        bottom = box.bottom() > bottom ? box.bottom() : bottom;
    }
    if (!(left <= right && top <= bottom))
        return vxRect();
    return vxRect(left, top, right - left, bottom - top);
}

} // namespace

void XPath::reverse()
{
    for (vxPath *child : qAsConst(children))
        child->reverse();
}

XPath *XPath::reduce(bool simplify)
{
    for (vxPath *child : qAsConst(children))
        child->reduce(simplify);
    const auto isEmpty = [](const vxPath *child) { return child->isEmpty(); };
    if (std::any_of(children.cbegin(), children.cend(), isEmpty)) {
        // Empty ones to the end, so that all go in one step: the rule for those that remain costs a pass each
        // time.
        const auto emptied = std::stable_partition(children.begin(), children.end(), std::not_fn(isEmpty));
        removeChildren(int(emptied - children.begin()), -1);
    }
    return this;
}

void XPath::interpolate(const XPath *from, const XPath *to, double factor)
{
    if (!from || !to || from->children.isEmpty() || from->children.size() != to->children.size())
        return;
    const int count = from->children.size();
    removeChildren(count, -1);
    while (children.size() < count)
        addChild(new vxPath, -1);
    for (int i = 0; i < count; ++i)
        children.at(i)->interpolate(from->children.at(i), to->children.at(i), factor);
}

vxPath *XPath::splitAt(double offset)
{
    double sum = 0;
    if (offset >= 0) {
        for (vxPath *child : qAsConst(children)) {
            const double before = sum;
            sum += child->getLength();
            if (sum > offset)
                return child->splitAt(offset - before);
        }
    } else {
        for (int i = children.size() - 1; i >= 0; --i) {
            sum += children.at(i)->getLength();
            if (sum > -offset)
                return children.at(i)->splitAt(sum + offset);
        }
    }
    return nullptr;
}

QList<vxCurve *> XPath::getCurves() const
{
    QList<vxCurve *> curves;
    int count = 0;
    for (const vxPath *child : children)
        count += child->_countCurves();
    curves.reserve(count);
    for (const vxPath *child : children)
        curves += child->_curves();
    return curves;
}

void XPath::_makeCurves() const
{
    size_t count = 0;
    for (const vxPath *child : children)
        count += size_t(child->_countCurves());
    vxBatch<vxCurve> batch(count);
    for (const vxPath *child : children)
        child->_makeCurves(batch);
}

double XPath::getLength() const
{
    double sum = 0;
    for (const vxPath *child : children)
        sum += child->getLength();
    return sum;
}

vxRect XPath::getBounds(const vxBoundOpt &option, const vxStyle &style, const vxMatrix *matrix) const
{
    return united(children, [&](const vxPath &child) { return child.getBounds(option, style, matrix); });
}

vxRect XPath::_bounds() const
{
    return united(children, [](const vxPath &child) { return child._bounds(); });
}

vxCurveLocation *XPath::getNearestLocation(const vxPoint &point) const
{
    return vx::nearestLocation(getCurves(), point);
}

vxPoint XPath::getNearestPoint(const vxPoint &point) const
{
    vxCurveLocation *location = getNearestLocation(point);
    if (!location)
        return vx::nowhere;
    const vxPoint nearest = location->getPoint();
    location->release();
    return nearest;
}

void XPath::transformContent(const vxMatrix *matrix)
{
    for (vxPath *child : qAsConst(children))
        child->transformContent(matrix);
}

void XPath::flatten(double flatness)
{
    for (vxPath *child : qAsConst(children))
        child->flatten(flatness);
}
