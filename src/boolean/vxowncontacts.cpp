#include "vxowncontacts_p.h"

#include "vxoperation_p.h"
#include "vxorderedboxes_p.h"
#include "vxpath.h"
#include "vxpositions_p.h"
#include "xpath.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace vx {

namespace {

/** Path units: vertices so near each other are a contact; far more than what a cut moves them by. */
constexpr double contactDistance = 1e-3;

struct OwnVertex {
    const vxSegment *segment;
    /** Of the contour; one for all that meet the other operand, since the result may join these. */
    int group;

    bool isWalked() const { return segment->walked || segment->getPrevious()->walked; }
};

constexpr int groupOfMet = 0;

std::vector<OwnVertex> verticesOf(const XPath &copy)
{
    std::vector<OwnVertex> vertices;
    for (int i = 0; i < copy.children.size(); ++i) {
        const QList<vxSegment *> &segments = copy.children.at(i)->_segments();
        const bool isMet = std::any_of(segments.begin(), segments.end(),
                                       [](const vxSegment *segment) { return segment->intersection(); });
        for (const vxSegment *segment : segments)
            vertices.push_back({ segment, isMet ? groupOfMet : i + 1 });
    }
    return vertices;
}

/** Whether the result fills near a stretch of its boundary what the operand fills there, not the rest. */
bool fillsLikeOperand(int op, bool isSecond, Position position)
{
    if (op == Intersect)
        return position == Position::Inside;
    return position == Position::Outside && !(op == Subtract && isSecond);
}

/** Looks at the contacts of an operand one by one. */
class Contacts
{
public:
    Contacts(int contourCount, int op, bool isSecond)
        : m_op(op), m_isSecond(isSecond), m_next(size_t(contourCount) + 1)
    {
        std::iota(m_next.begin(), m_next.end(), 0);
    }

    bool isKept(const OwnVertex &a, const OwnVertex &b)
    {
        if (a.segment->path == b.segment->path || (!a.isWalked() && !b.isWalked()))
            return true;
        return !a.segment->intersection() && !b.segment->intersection() && fillsAlike(a) && fillsAlike(b) &&
               join(a.group, b.group);
    }

private:
    bool fillsAlike(const OwnVertex &vertex) const
    {
        return fillsLikeOperand(m_op, m_isSecond, Position(vertex.segment->position));
    }

    /**
     * False where the two hang together already. Around a ring of contacts what is between can be drawn as
     * contours inside each other or beside each other; one contour that passes a contact twice is cut there.
     */
    bool join(int a, int b)
    {
        a = last(a);
        b = last(b);
        m_next[size_t(a)] = b;
        return a != b;
    }

    int last(int group) const
    {
        while (m_next[size_t(group)] != group)
            group = m_next[size_t(group)];
        return group;
    }

    const int m_op;
    const bool m_isSecond;
    std::vector<int> m_next; ///< per group: another one that it hangs together with, or itself
};

} // namespace

bool keepsContactsOf(const XPath &copy, int op, bool isSecond)
{
    const std::vector<OwnVertex> vertices = verticesOf(copy);
    std::vector<Box> places;
    places.reserve(vertices.size());
    for (const OwnVertex &vertex : vertices) {
        const vxPoint &p = vertex.segment->point;
        places.push_back({ p.x, p.y, p.x, p.y });
    }
    OrderedBoxes boxes(std::move(places));
    Contacts contacts(copy.children.size(), op, isSecond);
    bool isKeptEverywhere = true;
    for (int i = 0; i < int(vertices.size()) && isKeptEverywhere; ++i) {
        boxes.query(boxes[i], contactDistance, i + 1, [&](int j) {
            isKeptEverywhere = isKeptEverywhere && contacts.isKept(vertices[size_t(i)], vertices[size_t(j)]);
        });
    }
    return isKeptEverywhere;
}

} // namespace vx
