#include "vxrunnotes_p.h"

#include "vxpath.h"
#include "xpath.h"

#include <algorithm>
#include <vector>

namespace vx {

namespace {

/** A contour with all that is drawn of it as one row of numbers, for comparing. */
struct Row {
    int child;
    std::vector<double> numbers;

    Row(int index, const vxPath &path) : child(index)
    {
        numbers.push_back(path.isClosed());
        const QList<vxSegment *> segments = path.getSegments();
        for (const vxSegment *s : segments)
            numbers.insert(numbers.end(), { s->point.x, s->point.y, s->handleIn.x, s->handleIn.y,
                                            s->handleOut.x, s->handleOut.y });
    }
};

} // namespace

void dropRepeated(XPath &path)
{
    if (path.children.size() < 3)
        return;
    std::vector<Row> rows;
    for (int i = 0; i < path.children.size(); ++i)
        rows.emplace_back(i, *path.children.at(i));
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row &a, const Row &b) { return a.numbers < b.numbers; });

    std::vector<char> dropped(rows.size(), 0);
    for (size_t i = 0; i < rows.size();) {
        size_t end = i + 1;
        while (end < rows.size() && rows[end].numbers == rows[i].numbers)
            ++end;
        // Even-odd: pairs fill nothing together. Nonzero: the same direction again fills nothing more.
        const bool keepsOne = !path.evenOdd || (end - i) % 2 == 1;
        for (size_t k = i + (keepsOne ? 1 : 0); k < end; ++k)
            dropped[size_t(rows[k].child)] = 1;
        i = end;
    }
    if (std::find(dropped.begin(), dropped.end(), 1) == dropped.end())
        return;
    QVector<vxPath *> kept;
    for (int i = 0; i < path.children.size(); ++i) {
        if (!dropped[size_t(i)])
            kept.append(path.children.at(i));
    }
    path.setChildren(kept);
}

} // namespace vx
