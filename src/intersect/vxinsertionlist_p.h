#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vx {

/**
 * A list that grows by insertion at any place. A vector would move half of its elements for each; here they
 * stand in blocks, of which one is moved, and finding the i-th is a search among the blocks.
 */
template <typename T>
class InsertionList
{
public:
    /** Takes the elements over. */
    explicit InsertionList(const std::vector<T> &elements)
    {
        for (size_t i = 0; i < elements.size(); i += halfBlock) {
            const size_t end = std::min(elements.size(), i + halfBlock);
            m_blocks.emplace_back();
            m_blocks.back().reserve(2 * halfBlock);
            m_blocks.back().assign(elements.begin() + long(i), elements.begin() + long(end));
            m_ends.push_back(end);
        }
    }

    size_t size() const { return m_ends.empty() ? 0 : m_ends.back(); }

    const T &at(size_t i) const
    {
        const size_t b = blockOf(i);
        return m_blocks[b][i - startOf(b)];
    }

    /** In front of the i-th; i may be the size. */
    void insert(size_t i, const T &element)
    {
        if (m_blocks.empty()) {
            m_blocks.emplace_back();
            m_ends.push_back(0);
        }
        const size_t b = i == size() ? m_blocks.size() - 1 : blockOf(i);
        std::vector<T> &block = m_blocks[b];
        block.insert(block.begin() + long(i - startOf(b)), element);
        for (size_t k = b; k < m_ends.size(); ++k)
            ++m_ends[k];
        if (block.size() == 2 * halfBlock)
            split(b);
    }

    template <typename Visit>
    void forEach(Visit &&visit) const
    {
        for (const std::vector<T> &block : m_blocks)
            std::for_each(block.begin(), block.end(), visit);
    }

private:
    static constexpr size_t halfBlock = 256;

    size_t startOf(size_t b) const { return b == 0 ? 0 : m_ends[b - 1]; }
    size_t blockOf(size_t i) const
    {
        return size_t(std::upper_bound(m_ends.begin(), m_ends.end(), i) - m_ends.begin());
    }

    void split(size_t b)
    {
        std::vector<T> back;
        back.reserve(2 * halfBlock);
        std::vector<T> &block = m_blocks[b];
        back.assign(block.begin() + long(halfBlock), block.end());
        block.resize(halfBlock);
        m_ends.insert(m_ends.begin() + long(b), startOf(b) + halfBlock);
        m_blocks.insert(m_blocks.begin() + long(b) + 1, std::move(back));
    }

    std::vector<std::vector<T>> m_blocks;
    std::vector<size_t> m_ends; ///< per block: how many elements there are up to its end
};

} // namespace vx
