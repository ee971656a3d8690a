#include "xpath.h"

#include "vxbatch_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <numeric>

// Children and the orientation rule.

XPath::~XPath()
{
    // Emptied first, so that nothing a release sets off meets a child that is gone.
    QVector<vxPath *> old;
    old.swap(children);
    for (vxPath *child : qAsConst(old)) {
        if (child->parent == this)
            child->parent = nullptr;
        child->release();
    }
}

XPath *XPath::clone() const
{
    auto *copy = new XPath;
    copy->assign(*this);
    return copy;
}

void XPath::assign(const XPath &other)
{
    evenOdd = other.evenOdd;
    const QVector<vxPath *> originals = other.children;
    other._noticeEdits();
    _addCopiesOf(originals, {});
}

void XPath::_noticeEdits() const
{
    for (const vxPath *child : children)
        child->_noticeEdits();
}

namespace {

/** The places 0 to count - 1, by their ranks ascending; without ranks as they come. */
QVarLengthArray<int, 16> inOrderOfRanks(int count, const QVector<quint32> &ranks)
{
    QVarLengthArray<int, 16> order(count);
    std::iota(order.begin(), order.end(), 0);
    const auto ranksLower = [&ranks](int i, int j) { return ranks.at(i) < ranks.at(j); };
    if (!ranks.isEmpty() && !std::is_sorted(order.begin(), order.end(), ranksLower))
        std::sort(order.begin(), order.end(), ranksLower);
    return order;
}

} // namespace

void XPath::_addCopiesOf(const QVector<vxPath *> &originals, const QVector<quint32> &ranks,
                         const std::function<void(int, vxPath &)> &change)
{
    const int first = children.size();
    children.resize(first + originals.size());
    // Locations are sorted by the numbers of contours.
    for (int i : inOrderOfRanks(originals.size(), ranks))
        children[first + i] = new vxPath(this);
    int count = 0;
    for (const vxPath *original : originals)
        count += original->_segments().size();
    vxBatch<vxSegment> segments{ size_t(count) };
    for (int i = 0; i < originals.size(); ++i) {
        // Copies keep direction and flags; the rule was applied to their originals.
        vxPath *child = children.at(first + i);
        child->_copyFrom(*originals.at(i), segments);
        child->index = first + i;
        child->addRef();
        if (change)
            change(i, *child);
    }
}

// --- adding ---

void XPath::addChild(vxPath *child, int index)
{
    if (!child)
        return;
    child->parent = this;
    addChildren({ child }, index);
}

void XPath::addChildren(const QVector<vxPath *> &list, int index)
{
    QVector<vxPath *> added = list;
    added.removeAll(nullptr);
    for (vxPath *child : qAsConst(added)) {
        child->addRef();
        if (!child->parent)
            child->parent = this;
    }
    if (index < 0 || index > children.size())
        index = children.size();
    if (index == children.size()) {
        children += added;
    } else {
        const QVector<vxPath *> behind = children.mid(index);
        children.resize(index);
        children += added;
        children += behind;
    }
    renumber(index);
    orientAdded(added);
}

void XPath::setChildren(const QVector<vxPath *> &list)
{
    // Held across the change: a child that stays must not die in between.
    const QVector<vxPath *> next = list;
    for (vxPath *child : next) {
        if (child)
            child->addRef();
    }
    removeChildren(0, -1);
    addChildren(next, -1);
    for (vxPath *child : next) {
        if (child)
            child->release();
    }
}

// --- removing ---

void XPath::removeChildren(int from, int to)
{
    if (to < 0 || to > children.size())
        to = children.size();
    from = qBound(0, from, to);
    const QVector<vxPath *> removed = children.mid(from, to - from);
    children.erase(children.begin() + from, children.begin() + to);
    for (vxPath *child : removed) {
        if (child->parent == this)
            child->parent = nullptr;
        child->release();
    }
    renumber(0);
    orientRemaining();
}

void XPath::removeChild(vxPath *child)
{
    if (!child)
        return;
    children.removeOne(child);
    if (child->parent == this)
        child->parent = nullptr;
    child->release();
    renumber(0);
    orientRemaining();
}

// --- numbering and orientation ---

void XPath::renumber(int from)
{
    for (int i = from; i < children.size(); ++i)
        children.at(i)->index = i;
}

void XPath::orientAdded(const QVector<vxPath *> &added)
{
    for (vxPath *child : added) {
        if (!child->isFlags(vxPath::madeClockwise | vxPath::madeCounterClockwise))
            child->setClockwise(child->index == 0);
    }
}

void XPath::orientRemaining()
{
    for (vxPath *child : qAsConst(children)) {
        const bool outer = child->index == 0;
        const bool decided = child->isFlags(vxPath::madeClockwise | vxPath::madeCounterClockwise);
        if (!decided || child->isFlags(vxPath::madeClockwise) != outer)
            child->setClockwise(outer);
    }
}

bool XPath::isClockwise() const
{
    return !children.isEmpty() && children.first()->isClockwise();
}

void XPath::setClockwise(bool clockwise)
{
    if (isClockwise() != clockwise)
        reverse();
}
