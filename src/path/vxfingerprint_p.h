#pragma once

#include "vxsegment.h"

#include <QList>

#include <cstring>

namespace vx {

/**
 * A number that tells whether points and handles of an outline are, bit for bit, what they were: two outlines
 * with the same one are taken for the same. Never 0. Some twenty instructions for each segment.
 */
class Fingerprint
{
public:
    static quint64 of(const QList<vxSegment *> &segments, bool closed)
    {
        quint64 sum = closed;
        for (const vxSegment *segment : segments) {
            // The six products do not wait for each other; of one segment to the next there is one step.
            sum = (sum << rotated | sum >> (64 - rotated)) +
                  (spread(segment->point.x) * factors[0] + spread(segment->point.y) * factors[1] +
                   spread(segment->handleIn.x) * factors[2] + spread(segment->handleIn.y) * factors[3] +
                   spread(segment->handleOut.x) * factors[4] + spread(segment->handleOut.y) * factors[5]);
        }
        return sum == 0 ? 1 : sum;
    }

private:
    /** Bits of which the highest also count as lower ones: a product would keep signs in one bit alone. */
    static quint64 spread(double value)
    {
        quint64 bits;
        std::memcpy(&bits, &value, sizeof bits);
        return bits ^ bits >> 32;
    }

    static constexpr int rotated = 29;
    /** Odd numbers without a pattern: the fractions of the square roots of 2, 3, 5, 7, 11 and 13. */
    static constexpr quint64 factors[6] = { 0x6a09e667f3bcc909, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                            0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f };
};

} // namespace vx
