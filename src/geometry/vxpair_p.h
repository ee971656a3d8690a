#pragma once

#include "vxcubic_p.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vx {

/**
 * Two numbers in one register, such as the coordinates of a point. Every operation treats them side by side
 * and rounds as it would each alone. Comparisons give masks, and `mask ? a : b` picks number by number,
 * without a branch.
 */
using Pair = double __attribute__((vector_size(2 * sizeof(double))));
/** What comparing pairs gives: all bits set where it holds. */
using PairMask = decltype(Pair() < Pair());

inline Pair both(double number)
{
    return Pair{ number, number };
}
inline Pair swapped(Pair pair)
{
    return Pair{ pair[1], pair[0] };
}

// std::min() and std::max() of either number, which with NaN depend on the order.
inline Pair lesser(Pair a, Pair b)
{
    return b < a ? b : a;
}
inline Pair greater(Pair a, Pair b)
{
    return a < b ? b : a;
}

/** Which numbers of a are less than those of b: 1 for the first alone, 2 for the second, 3 for both. */
inline int whereLess(Pair a, Pair b)
{
#ifdef __SSE2__
    return _mm_movemask_pd(_mm_cmplt_pd(a, b)); // compilers would take a mask apart, number by number
#else
    return (a[0] < b[0] ? 1 : 0) | (a[1] < b[1] ? 2 : 0);
#endif
}

/** The negatives of those numbers that mask names. */
inline Pair negatedWhere(PairMask mask, Pair pair)
{
    // Casts between vectors keep the bits: of a negative zero, the sign alone is set.
    return Pair(PairMask(pair) ^ (mask & PairMask(both(-0.0))));
}

/** A pair in memory, where numbers are aligned singly. */
using StoredPair __attribute__((aligned(alignof(double)), may_alias)) = Pair;

inline Pair pairOf(const vxPoint &p)
{
    return *reinterpret_cast<const StoredPair *>(&p);
}
/** Point k of a curve. */
inline Pair pairOf(const Cubic &c, int k)
{
    return *reinterpret_cast<const StoredPair *>(c.v + 2 * k);
}
/** A box by its corner of least coordinates and the opposite one. */
inline Box boxOf(Pair least, Pair greatest)
{
    return { least[0], least[1], greatest[0], greatest[1] };
}
inline Pair leastOf(const Box &box)
{
    return *reinterpret_cast<const StoredPair *>(&box.minX);
}
inline Pair greatestOf(const Box &box)
{
    return *reinterpret_cast<const StoredPair *>(&box.maxX);
}

/** Whether some upright or level line parts two boxes; NaN parts nothing. */
inline bool areApart(const Box &a, const Box &b)
{
    return (whereLess(greatestOf(a), leastOf(b)) | whereLess(greatestOf(b), leastOf(a))) != 0;
}

} // namespace vx
