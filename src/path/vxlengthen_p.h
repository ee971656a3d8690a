#pragma once

#include <QList>

#include <algorithm>
#include <array>

namespace vx {

/** Room to reserve in the lists of a contour that divisions may still lengthen. */
inline int roomyFor(int count)
{
    return count + count / 2 + 4;
}

constexpr int longestBlank = 32;

/** A list of count null pointers, up to longestBlank. */
template <typename T>
const QList<T *> &blank(int count)
{
    static const auto lists = [] {
        std::array<QList<T *>, longestBlank + 1> made;
        for (size_t i = 1; i < made.size(); ++i) {
            made[i] = made[i - 1];
            made[i].append(nullptr);
        }
        return made;
    }();
    return lists[size_t(count)];
}

/**
 * Lengthens a list of pointers by count null ones and returns where they begin, for the caller to write. Qt's
 * append() checks for sharing and room at every item; a list that is appended checks once for all of its own.
 */
template <typename T>
T **lengthen(QList<T *> &list, int count)
{
    const int size = list.size();
    list.reserve(size + count);
    for (int left = count; left > 0; left -= longestBlank)
        list += blank<T>(std::min(left, longestBlank));
    return &*list.begin() + size;
}

} // namespace vx
