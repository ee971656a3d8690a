#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace vx {

/** Indexes by a hash of two numbers; those that share a hash come in no useful order. */
class HashedChains
{
public:
    explicit HashedChains(size_t count)
    {
        int bits = 4;
        while ((size_t(1) << bits) < 2 * count)
            ++bits;
        m_shift = 64 - bits;
        m_headCount = size_t(1) << bits;
        m_indexes.assign(m_headCount + count, -1);
    }
    /** The first index with the hash, -1 for none; next() goes on, insert() puts another before it. */
    int &first(quint64 a, quint64 b) { return m_indexes[slot(a, b)]; }
    int next(int index) const { return m_indexes[m_headCount + size_t(index)]; }
    void insert(int &first, int index)
    {
        m_indexes[m_headCount + size_t(index)] = first;
        first = index;
    }

private:
    /** Multiplicative hashing: odd constants near 2^64 divided by the golden ratio, the upper bits count. */
    size_t slot(quint64 a, quint64 b) const
    {
        return size_t(((a * 0x9E3779B97F4A7C15ull) ^ (b + 0x632BE59BD9B4E019ull)) * 0x9E3779B97F4A7C15ull >>
                      m_shift);
    }

    int m_shift;
    size_t m_headCount;
    std::vector<int> m_indexes; ///< heads of the chains, then per index the next one
};

} // namespace vx
