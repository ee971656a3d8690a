#include "pzpath.h"
#include "pzpath_p.h"
#include "vxcurve.h"
#include "xpath.h"

#include <functional>

// Every open subpath is taken out of the list, trimmed on its own, and put back, so that all others keep
// their elements exactly and the work grows with the length of the list.

namespace {

using Tips = QVector<QPointF>;

double distanceBetween(const PZPath::PZElement &a, const PZPath::PZElement &b)
{
    return pz::pointOf(a).getDistance(pz::pointOf(b));
}

void moveTowards(PZPath::PZElement &element, const PZPath::PZElement &target, double length)
{
    const vxPoint way(target.x - element.x, target.y - element.y);
    const vxPoint step = pz::directedStep(way.getAngleInRadians(), length);
    element.x += step.x;
    element.y += step.y;
}

/** Drops the first count elements; what follows starts where they ended. */
void dropFront(PZPath &subpath, int count)
{
    if (subpath.count() <= count + 1) {
        subpath.clear();
        return;
    }
    subpath[count].type = PZPath::MoveToElement;
    subpath.erase(subpath.begin(), subpath.begin() + count);
}

/** Drops the last count elements, and with them a move that is left alone. */
void dropBack(PZPath &subpath, int count)
{
    subpath.resize(subpath.count() - count);
    if (subpath.count() == 1)
        subpath.clear();
}

void trimLineStart(PZPath &subpath, double length, Tips &tips)
{
    tips.append(subpath.at(0).toPoint());
    if (length >= distanceBetween(subpath.at(0), subpath.at(1)))
        dropFront(subpath, 1);
    else
        moveTowards(subpath[0], subpath.at(1), length);
}

void trimCurveStart(PZPath &subpath, double length, Tips &tips)
{
    XPath xpath;
    subpath.toXPath(xpath);
    if (length >= xpath.getFirstChild()->getFirstCurve()->getLength()) {
        dropFront(subpath, 3);
        return;
    }
    tips.append(subpath.at(0).toPoint());
    // Without a second piece the cut is at the very end: nothing is left.
    const bool hasRest = xpath.splitAt(length);
    subpath.clear();
    if (hasRest)
        subpath.fromXPath(xpath, 1);
}

void trimStart(PZPath &subpath, double length, Tips &tips)
{
    const int type = subpath.at(1).type;
    if (type == PZPath::LineToElement)
        trimLineStart(subpath, length, tips);
    else if (type == PZPath::CurveToElement && subpath.count() >= 4)
        trimCurveStart(subpath, length, tips);
}

void trimLineEnd(PZPath &subpath, double length, Tips &tips)
{
    const int last = subpath.count() - 1;
    tips.append(subpath.at(last).toPoint());
    if (length >= distanceBetween(subpath.at(last), subpath.at(last - 1)))
        dropBack(subpath, 1);
    else
        moveTowards(subpath[last], subpath.at(last - 1), length);
}

void trimCurveEnd(PZPath &subpath, double length, Tips &tips)
{
    XPath xpath;
    subpath.toXPath(xpath);
    vxPath *child = xpath.getFirstChild();
    const vxCurve *curve = child->getLastCurve();
    if (curve && length >= curve->getLength()) {
        dropBack(subpath, 3);
        return;
    }
    tips.append(subpath.last().toPoint());
    // Without a second piece the cut is at the very end, and nothing goes.
    if (vxPath *tail = child->splitAt(-length)) {
        xpath.removeChild(tail);
        subpath.clear();
        subpath.fromXPath(xpath);
    }
}

void trimEnd(PZPath &subpath, double length, Tips &tips)
{
    const int last = subpath.count() - 1;
    const int type = subpath.at(last).type;
    if (type == PZPath::LineToElement)
        trimLineEnd(subpath, length, tips);
    else if (type == PZPath::CurveToDataElement && last >= 3 &&
             subpath.at(last - 2).type == PZPath::CurveToElement)
        trimCurveEnd(subpath, length, tips);
}

PZPath part(const PZPath &path, int from, int to)
{
    PZPath result;
    result.reserve(to - from);
    for (int i = from; i < to; ++i)
        result.append(path.at(i));
    return result;
}

/** Index of the next open subpath's move, and in index the end of that subpath; -1 for none. */
using NextOpen = std::function<int(int &index)>;

/** Replaces path by a copy with every open subpath put through trim; false when there is none. */
bool trimSubpaths(PZPath &path, const NextOpen &nextOpen, const std::function<void(PZPath &)> &trim)
{
    PZPath result;
    result.reserve(path.count());
    int copied = 0;
    int index = 0;
    bool found = false;
    for (int start = nextOpen(index); start >= 0; start = nextOpen(index)) {
        found = true;
        result.addPath(part(path, copied, start), false);
        PZPath subpath = part(path, start, index);
        trim(subpath);
        result.addPath(subpath, false);
        copied = index;
    }
    result.addPath(part(path, copied, path.count()), false);
    path = result;
    return found;
}

void setHead(PZPath::PZElement &element, const QPointF &tip)
{
    element.headX = tip.x();
    element.headY = tip.y();
}

/** The k-th tip goes to the k-th open subpath, also where a subpath before it vanished or left no tip. */
void recordTips(PZPath &path, const Tips &starts, const Tips &ends)
{
    QPointF a, b;
    int index = 0;
    for (const QPointF &tip : starts) {
        const int move = path.getOpenedStart(a, b, index);
        if (move < 0)
            break;
        setHead(path[move], tip);
    }
    index = 0;
    for (const QPointF &tip : ends) {
        int start = -1;
        const int last = path.getOpenedEnd(a, b, index, start);
        if (last < 0)
            break;
        setHead(path[last], tip);
    }
}

} // namespace

bool PZPath::setLineHead(double startLen, double endLen)
{
    const bool trimsStart = startLen > 0;
    const bool trimsEnd = endLen > 0;
    if (!trimsStart && !trimsEnd)
        return false;
    cleanUp();
    Tips starts, ends;
    bool found = false;
    if (trimsStart) {
        const auto next = [this](int &index) {
            QPointF first, second;
            return getOpenedStart(first, second, index);
        };
        found = trimSubpaths(*this, next, [&](PZPath &subpath) { trimStart(subpath, startLen, starts); });
    }
    if (trimsEnd) {
        const auto next = [this](int &index) {
            QPointF before, end;
            int start = -1;
            return getOpenedEnd(before, end, index, start) < 0 ? -1 : start;
        };
        const auto trim = [&](PZPath &subpath) { trimEnd(subpath, endLen, ends); };
        found = trimSubpaths(*this, next, trim) || found;
    }
    recordTips(*this, starts, ends);
    return found;
}
