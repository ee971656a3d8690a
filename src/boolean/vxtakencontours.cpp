#include "vxtakencontours_p.h"

#include "vxref_p.h"
#include "vxtracing_p.h"
#include "xpath.h"

#include <algorithm>

namespace vx {

namespace {

/** For one who takes a child out of its list: it is nobody's then, with count 0. */
void letGoOf(vxPath *child)
{
    vxRef<vxPath> held(child);
    child->parent = nullptr;
    child->release();
    held.take();
}

} // namespace

QVector<vxPath *> takeChildren(XPath &copy)
{
    QVector<vxPath *> children;
    children.swap(copy.children);
    for (vxPath *child : qAsConst(children))
        letGoOf(child);
    return children;
}

void letGoOfTaken(XPath &copy)
{
    const auto stays = [](const vxPath *child) { return !child->isFlags(taken); };
    const auto first = std::stable_partition(copy.children.begin(), copy.children.end(), stays);
    for (auto child = first; child != copy.children.end(); ++child) {
        letGoOf(*child);
        (*child)->_clearScratch();
    }
    copy.children.erase(first, copy.children.end());
}

} // namespace vx
