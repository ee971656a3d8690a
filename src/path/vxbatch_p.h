#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

/**
 * Objects of one kind that are made together share blocks of memory, though each is counted and dies for
 * itself: a contour of n segments costs n / 64 allocations. A block is freed with its last object, so one
 * that outlives the others keeps at most 63 dead neighbours.
 */
template <typename T>
class vxBatch
{
public:
    class Block
    {
    public:
        static Block *withRoomFor(size_t count)
        {
            static_assert(alignof(T) <= alignof(std::max_align_t), "plain operator new aligns no wider");
            return new (::operator new(headerSize + mostPadding + count * sizeof(T))) Block(count);
        }
        /** The block in which an object stands so many words behind its beginning. */
        static Block *around(T *object, quint16 words)
        {
            return reinterpret_cast<Block *>(reinterpret_cast<std::byte *>(object) - words * wordSize);
        }
        quint16 wordsTo(const std::byte *place) const
        {
            return quint16(size_t(place - reinterpret_cast<const std::byte *>(this)) / wordSize);
        }
        std::byte *places()
        {
            std::byte *first = reinterpret_cast<std::byte *>(this) + headerSize;
            // Memory is aligned to headerSize: these bits of the address tell how far it is to the next line.
            return first + (-reinterpret_cast<quintptr>(first) & mostPadding);
        }
        void destroy(T *object)
        {
            object->~T();
            drop(1);
        }
        void drop(size_t count)
        {
            m_holders -= count;
            if (m_holders > 0)
                return;
            this->~Block();
            ::operator delete(this);
        }

    private:
        explicit Block(size_t count) : m_holders(count) {}

        /** Places with a living object, and those that the batch may still fill. */
        size_t m_holders;
    };

    /** Objects up to count are going to be made. */
    explicit vxBatch(size_t count) : m_left(count) {}
    vxBatch(const vxBatch &) = delete;
    vxBatch &operator=(const vxBatch &) = delete;
    ~vxBatch() { close(); }

    /** A new object with count 0. */
    template <typename... Args>
    T *make(Args &&...args)
    {
        if (m_free == 0)
            open();
        T *object = new (m_next) T(std::forward<Args>(args)...);
        object->m_inBlock = m_block->wordsTo(m_next);
        m_next += sizeof(T);
        --m_free;
        return object;
    }

private:
    static constexpr size_t largestBlock = 64;
    static constexpr size_t headerSize = alignof(std::max_align_t);
    static constexpr size_t wordSize = 8;
    static constexpr size_t cacheLine = 64;
    /** Objects that fill whole cache lines stand on their borders, so as not to reach into one more. */
    static constexpr size_t mostPadding = sizeof(T) % cacheLine == 0 ? cacheLine - headerSize : 0;
    static_assert(sizeof(T) % wordSize == 0 &&
                      (headerSize + mostPadding + largestBlock * sizeof(T)) / wordSize <= 0xffff,
                  "places are counted in words by 16 bits");

    void open()
    {
        m_free = std::clamp(m_left, size_t(1), largestBlock);
        m_left -= std::min(m_left, m_free);
        m_block = Block::withRoomFor(m_free);
        m_next = m_block->places();
    }
    /** A full block is its objects' alone: it may be gone with them. */
    void close()
    {
        if (m_free > 0)
            m_block->drop(m_free);
    }

    Block *m_block = nullptr;
    std::byte *m_next = nullptr;
    /** Places left in the block, and objects that are still expected beyond it. */
    size_t m_free = 0;
    size_t m_left;
};

/** A new object with count 0, of batch where there is one. */
template <typename T, typename... Args>
T *vxMake(vxBatch<T> *batch, Args &&...args)
{
    return batch ? batch->make(std::forward<Args>(args)...) : new T(std::forward<Args>(args)...);
}

/** What release() does at the last reference: a lone object is deleted, one of a batch leaves its block. */
template <typename T>
void vxDestroy(T *object, quint16 inBlock)
{
    if (inBlock > 0)
        vxBatch<T>::Block::around(object, inBlock)->destroy(object);
    else
        delete object;
}
