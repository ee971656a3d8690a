#pragma once

#include "vxsegment.h"

#include <QList>

#include <cstring>

namespace vx {

/**
 * A number that tells whether points and handles of an outline are, bit for bit, what they were: two outlines
 * with the same one are taken for the same. Never 0. Some thirty instructions for each segment: it is asked
 * for at every boolean.
 *
 * Each of a segment's six coordinates has a chain of its own, so that the chains need not wait for each
 * other. A link is one to one: where one value of a chain changes, whatever it is, so does the end of the
 * chain, and where several do, they make up for each other by chance alone (1 in 2^64).
 */
class Fingerprint
{
public:
    static quint64 of(const QList<vxSegment *> &segments, bool closed)
    {
        quint64 chains[6] = {};
        for (const vxSegment *segment : segments) {
            chains[0] = link(chains[0], wordOf(segment->point.x));
            chains[1] = link(chains[1], wordOf(segment->point.y));
            chains[2] = link(chains[2], wordOf(segment->handleIn.x));
            chains[3] = link(chains[3], wordOf(segment->handleIn.y));
            chains[4] = link(chains[4], wordOf(segment->handleOut.x));
            chains[5] = link(chains[5], wordOf(segment->handleOut.y));
        }
        quint64 sum = closed;
        for (const quint64 chain : chains)
            sum = link(sum, chain);
        return sum == 0 ? 1 : sum;
    }

private:
    /** A product carries changes upwards only; without the shift, two signs would make up for each other. */
    static quint64 link(quint64 chain, quint64 word)
    {
        constexpr quint64 factor = 0x9e3779b97f4a7c15; // odd, without a pattern: the golden ratio's fraction
        const quint64 product = (chain ^ word) * factor;
        return product ^ product >> 32;
    }

    static quint64 wordOf(double value)
    {
        quint64 bits;
        std::memcpy(&bits, &value, sizeof bits);
        return bits;
    }
};

} // namespace vx
