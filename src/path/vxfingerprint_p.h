#pragma once

#include "vxsegment.h"

#include <QList>

#include <cstring>

namespace vx {

/**
 * A number that tells whether points and handles of an outline are, bit for bit, what they were: two outlines
 * with the same one are taken for the same. Never 0. Some twenty instructions for each segment: it is asked
 * for at every boolean.
 *
 * The sum of products of pairs of coordinates, each with a number of its own added, after the multilinear
 * hashing of Lemire and Kaser; turned from segment to segment, so that their order counts.
 */
class Fingerprint
{
public:
    static quint64 of(const QList<vxSegment *> &segments, bool closed)
    {
        quint64 sum = closed;
        for (const vxSegment *segment : segments)
            sum = turned(sum, 29) + (product(segment->point, 0) + product(segment->handleIn, 2) +
                                     product(segment->handleOut, 4));
        return sum == 0 ? 1 : sum;
    }

private:
    static quint64 product(const vxPoint &p, int i)
    {
        return (wordOf(p.x) + added[i]) * (wordOf(p.y) + added[i + 1]);
    }

    /** With the halves exchanged: a product has no room for changes in the highest bits, where signs are. */
    static quint64 wordOf(double value)
    {
        quint64 bits;
        std::memcpy(&bits, &value, sizeof bits);
        return turned(bits, 32);
    }

    static quint64 turned(quint64 bits, int by) { return bits << by | bits >> (64 - by); }

    /** Numbers without a pattern: the fractions of the square roots of 2, 3, 5, 7, 11 and 13. */
    static constexpr quint64 added[6] = { 0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                          0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f };
};

} // namespace vx
