#pragma once

#include <utility>

/**
 * Intrusive handle on an engine object (segment, curve, path, location): holds one counted reference for as
 * long as it lives. An object whose last reference is the handle's dies with it.
 */
template <typename T>
class vxRef
{
public:
    vxRef() = default;
    explicit vxRef(T *object) : m_object(object)
    {
        if (m_object)
            m_object->addRef();
    }
    vxRef(const vxRef &other) : vxRef(other.m_object) {}
    vxRef(vxRef &&other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    vxRef &operator=(vxRef other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~vxRef()
    {
        if (m_object)
            m_object->release();
    }

    T *get() const { return m_object; }
    T *operator->() const { return m_object; }
    T &operator*() const { return *m_object; }
    /** Empties the handle without deleting the object, which is the caller's from then on. */
    T *take()
    {
        if (m_object)
            --m_object->refCount;
        return std::exchange(m_object, nullptr);
    }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T *m_object = nullptr;
};
