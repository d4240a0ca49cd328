#pragma once
#include <cstddef>
#include <functional>
#include <utility>

namespace kel {

/// Owning pointer to a `kel::Referenced`: holds one reference of the object while it points at it.
template <class T> class ref_ptr
{
public:
  using element_type = T;

  ref_ptr() noexcept = default;
  ref_ptr(std::nullptr_t) noexcept {}
  ref_ptr(T* object) : m_object(object) { acquire(); }
  ref_ptr(const ref_ptr& other) : m_object(other.m_object) { acquire(); }
  ref_ptr(ref_ptr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  template <class U> ref_ptr(const ref_ptr<U>& other) : m_object(other.get()) { acquire(); }
  ~ref_ptr() { release(m_object); }

  /// Takes the new object before it lets go of the old one, which may own the new one.
  ref_ptr& operator=(T* object)
  {
    if (object == m_object) return *this;
    T* old = std::exchange(m_object, object);
    acquire();
    release(old);
    return *this;
  }
  ref_ptr& operator=(const ref_ptr& other) { return *this = other.m_object; }
  ref_ptr& operator=(ref_ptr&& other) noexcept
  {
    if (this != &other) release(std::exchange(m_object, std::exchange(other.m_object, nullptr)));
    return *this;
  }

  T* get() const noexcept { return m_object; }
  T* operator->() const noexcept { return m_object; }
  T& operator*() const noexcept { return *m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }
  friend bool operator==(const ref_ptr& a, const ref_ptr& b) noexcept { return a.m_object == b.m_object; }
  friend bool operator==(const ref_ptr& a, const T* b) noexcept { return a.m_object == b; }

private:
  void acquire() const
  {
    if (m_object) m_object->reference();
  }
  static void release(T* object)
  {
    if (object) object->unreference();
  }

  T* m_object = nullptr;
};

} // namespace kel

template <class T> struct std::hash<kel::ref_ptr<T>>
{
  std::size_t operator()(const kel::ref_ptr<T>& p) const noexcept { return std::hash<T*>()(p.get()); }
};
