#pragma once
#include <atomic>

namespace kel {

/// Non-owning pointer that several threads may read and set; it never follows the object's life.
template <class T> class observer_ptr
{
public:
  observer_ptr() noexcept = default;
  observer_ptr(T* object) noexcept : m_object(object) {}
  observer_ptr(const observer_ptr& other) noexcept : m_object(other.get()) {}
  observer_ptr& operator=(const observer_ptr& other) noexcept { return *this = other.get(); }
  observer_ptr& operator=(T* object) noexcept
  {
    m_object.exchange(object);
    return *this;
  }

  T* get() const noexcept { return m_object.load(); }
  T* operator->() const noexcept { return get(); }
  T& operator*() const noexcept { return *get(); }
  explicit operator bool() const noexcept { return get() != nullptr; }

private:
  std::atomic<T*> m_object = nullptr;
};

} // namespace kel
