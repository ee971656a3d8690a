#include "vxboxtree_p.h"

#include "vxpair_p.h"

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

/** A box widened by slack and by more than rounding: from what it is apart, it does not come within slack. */
Box widenedBeyondRounding(const Box &box, double slack)
{
    const auto margin = [slack](double edge) { return slack + 1e-12 * (slack + std::fabs(edge)); };
    return { box.minX - margin(box.minX), box.minY - margin(box.minY), box.maxX + margin(box.maxX),
             box.maxY + margin(box.maxY) };
}

Box around(const Box *begin, const Box *end)
{
    Box box = emptyBox;
    for (const Box *b = begin; b != end; ++b)
        extendToAllByNaN(box, *b);
    return box;
}

/** Centre of a box times 2. Boxes with a non-finite centre count as (0, 0), which costs only speed. */
struct Middle {
    double x, y;
    int item;

    Middle(const Box &box, int item) : x(box.minX + box.maxX), y(box.minY + box.maxY), item(item)
    {
        if (!std::isfinite(x + y))
            x = y = 0;
    }
};

/** Puts neighbours in the plane next to each other: halves a range across its longer side, and so on. */
void halve(Middle *first, Middle *last, std::ptrdiff_t together)
{
    if (last - first <= together)
        return;
    Box box = emptyBox;
    for (const Middle *m = first; m != last; ++m)
        extend(box, { m->x, m->y, m->x, m->y });
    // Parts begin at multiples of powers of 2, as the runs do that are put in one box.
    std::ptrdiff_t part = together;
    while (2 * part < last - first)
        part *= 2;
    Middle *const middle = first + part;
    if (box.maxX - box.minX >= box.maxY - box.minY)
        std::nth_element(first, middle, last, [](const Middle &a, const Middle &b) { return a.x < b.x; });
    else
        std::nth_element(first, middle, last, [](const Middle &a, const Middle &b) { return a.y < b.y; });
    halve(first, middle, together);
    halve(middle, last, together);
}

} // namespace

BoxTree::BoxTree(std::vector<Box> boxes) : m_boxes(std::move(boxes))
{
    m_starts = { 0, int(m_boxes.size()) };
    sortByPlace();
    addLevelsAbove();
}

void BoxTree::sortByPlace()
{
    std::vector<Middle> middles;
    middles.reserve(m_boxes.size());
    for (const Box &box : m_boxes)
        middles.emplace_back(box, int(middles.size()));
    halve(middles.data(), middles.data() + middles.size(), fanOut);
    m_items.reserve(m_boxes.size());
    std::vector<Box> sorted;
    sorted.reserve(m_boxes.size() + m_boxes.size() / (fanOut - 1) + 16); // with the levels above
    for (const Middle &middle : middles) {
        m_items.push_back(middle.item);
        sorted.push_back(m_boxes[size_t(middle.item)]);
    }
    m_boxes = std::move(sorted);
}

void BoxTree::addLevelsAbove()
{
    while (m_starts.back() - m_starts.end()[-2] > fanOut) {
        const int last = m_starts.back();
        for (int i = m_starts.end()[-2]; i < last; i += fanOut) {
            const Box *begin = &m_boxes[size_t(i)];
            m_boxes.push_back(around(begin, begin + std::min(fanOut, last - i)));
        }
        m_starts.push_back(int(m_boxes.size()));
    }
}

/** One query. */
class BoxTree::Walk
{
public:
    Walk(const BoxTree &tree, const Box &box, double slack, std::vector<int> &found)
        : m_tree(tree), m_box(box), m_slack(slack), m_wide(widenedBeyondRounding(box, slack)), m_found(found)
    {
        const int top = int(tree.m_starts.size()) - 2;
        search(top, 0, tree.sizeOf(top));
    }

private:
    /** Of one level the boxes in [from, to), counted within it. */
    void search(int level, int from, int to)
    {
        const Box *const boxes = m_tree.m_boxes.data() + m_tree.m_starts[size_t(level)];
        for (int i = from; i < to; ++i) {
            if (areApart(boxes[i], m_wide))
                continue;
            if (level == 0)
                take(boxes[i], i);
            else
                search(level - 1, i << fanOutBits, std::min((i + 1) << fanOutBits, m_tree.sizeOf(level - 1)));
        }
    }

    void take(const Box &box, int i)
    {
        if (comeWithin(box, m_box, m_slack))
            m_found.push_back(m_tree.m_items[size_t(i)]);
    }

    const BoxTree &m_tree;
    const Box &m_box;
    const double m_slack;
    const Box m_wide;
    std::vector<int> &m_found;
};

void BoxTree::query(const Box &box, double slack, std::vector<int> &found) const
{
    Walk(*this, box, slack, found);
}

} // namespace vx
