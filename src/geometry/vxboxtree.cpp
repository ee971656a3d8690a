#include "vxboxtree_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace vx {

namespace {

constexpr int leafSize = 6;
constexpr double infinite = std::numeric_limits<double>::infinity();

/** Written so that NaN reaches everything. */
bool reach(const Box &a, const Box &b, double slack)
{
    return !(a.maxX + slack < b.minX || b.maxX + slack < a.minX || a.maxY + slack < b.minY ||
             b.maxY + slack < a.minY);
}

void include(Box &box, const Box &other)
{
    if (std::isnan(other.minX + other.minY + other.maxX + other.maxY)) {
        box = { -infinite, -infinite, infinite, infinite };
        return;
    }
    box.minX = std::min(box.minX, other.minX);
    box.minY = std::min(box.minY, other.minY);
    box.maxX = std::max(box.maxX, other.maxX);
    box.maxY = std::max(box.maxY, other.maxY);
}

/** Sorting key along an axis (0 x, 1 y): twice the centre; NaN sorts first, so that the order is one. */
double key(const Box &box, int axis)
{
    const double k = axis == 0 ? box.minX + box.maxX : box.minY + box.maxY;
    return std::isnan(k) ? -infinite : k;
}

} // namespace

BoxTree::BoxTree(const std::vector<Box> &boxes) : m_boxes(boxes), m_items(boxes.size())
{
    std::iota(m_items.begin(), m_items.end(), 0);
    m_nodes.reserve(boxes.size() / 2 + 8);
    m_nodes.emplace_back();
    build(0, 0, int(boxes.size()));
}

void BoxTree::build(int node, int first, int count)
{
    Box box{ infinite, infinite, -infinite, -infinite };
    for (int i = first; i < first + count; ++i)
        include(box, m_boxes[size_t(m_items[size_t(i)])]);
    if (count <= leafSize) {
        m_nodes[size_t(node)] = { box, first, count };
        return;
    }
    const int axis = box.maxX - box.minX >= box.maxY - box.minY ? 0 : 1;
    const auto begin = m_items.begin() + first;
    std::nth_element(begin, begin + count / 2, begin + count, [this, axis](int a, int b) {
        const double ka = key(m_boxes[size_t(a)], axis);
        const double kb = key(m_boxes[size_t(b)], axis);
        return ka != kb ? ka < kb : a < b;
    });
    const int left = int(m_nodes.size());
    m_nodes.resize(m_nodes.size() + 2);
    m_nodes[size_t(node)] = { box, left, 0 };
    build(left, first, count / 2);
    build(left + 1, first + count / 2, count - count / 2);
}

void BoxTree::query(const Box &box, double slack, std::vector<int> &found) const
{
    // Halving keeps the depth below the bits of an int, so a small fixed stack holds every open branch.
    int stack[64];
    int depth = 0;
    stack[depth++] = 0;
    while (depth > 0) {
        const Node &node = m_nodes[size_t(stack[--depth])];
        if (!reach(node.box, box, slack))
            continue;
        if (node.count == 0 && !m_items.empty()) {
            stack[depth++] = node.first + 1;
            stack[depth++] = node.first;
            continue;
        }
        for (int i = node.first; i < node.first + node.count; ++i) {
            const int item = m_items[size_t(i)];
            if (reach(m_boxes[size_t(item)], box, slack))
                found.push_back(item);
        }
    }
}

} // namespace vx
