#pragma once

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
            return new (::operator new(headerSize + count * sizeof(T))) Block;
        }
        template <typename... Args>
        T *make(size_t place, Args &&...args)
        {
            auto *bytes = reinterpret_cast<std::byte *>(this) + headerSize + place * sizeof(T);
            T *object = new (bytes) T(std::forward<Args>(args)...);
            object->m_block = this;
            ++m_holders;
            return object;
        }
        void destroy(T *object)
        {
            object->~T();
            drop();
        }
        void drop()
        {
            if (--m_holders > 0)
                return;
            this->~Block();
            ::operator delete(this);
        }

    private:
        /** Living objects, and the batch while it goes on making some. */
        size_t m_holders = 1;
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
        if (m_made == m_room)
            open();
        return m_block->make(m_made++, std::forward<Args>(args)...);
    }

private:
    static constexpr size_t largestBlock = 64;
    static constexpr size_t headerSize = alignof(std::max_align_t);

    void open()
    {
        close();
        m_room = std::clamp(m_left, size_t(1), largestBlock);
        m_left -= std::min(m_left, m_room);
        m_made = 0;
        m_block = Block::withRoomFor(m_room);
    }
    void close()
    {
        if (m_block)
            m_block->drop();
    }

    Block *m_block = nullptr;
    size_t m_room = 0;
    size_t m_made = 0;
    size_t m_left;
};

/** What release() does at the last reference: a lone object is deleted, one of a batch leaves its block. */
template <typename T>
void vxDestroy(T *object, void *block)
{
    if (block)
        static_cast<typename vxBatch<T>::Block *>(block)->destroy(object);
    else
        delete object;
}
