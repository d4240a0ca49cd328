#pragma once
#include <atomic>
#include <cstdint>

namespace kel {

class Referenced;

/// Destroys counted objects in place of `delete`, for instance to free them on a certain thread.
class DeleteHandler
{
public:
  virtual ~DeleteHandler() = default;
  /// Takes over an object whose count has reached zero. Must free it, now or later, with `delete`.
  virtual void requestDelete(const Referenced* object) = 0;
};

/// Base of all counted objects. A new object has count 0; the first owner takes the first reference.
///
/// The count is atomic. The object goes when a release finds the count at 1: through the delete handler
/// where one is set, else through the virtual destructor.
class Referenced
{
public:
  /// A new object, owned by nobody.
  Referenced() = default;
  /// A copy is a new object: it has its own count of 0.
  Referenced(const Referenced&) noexcept {}
  /// Assignment copies no count.
  Referenced& operator=(const Referenced&) noexcept { return *this; }

  /// Adds one to the count.
  void reference() const noexcept;
  /// Subtracts one from the count and destroys the object if that was the last reference.
  void unreference() const;
  /// Subtracts one from the count and never destroys.
  void unreferenceNoDelete() const noexcept;
  /// The number of references now.
  std::uint32_t getReferenceCount() const noexcept { return m_count; }

  /// The handler that destroys objects, null (the default) for plain `delete`. Not owned.
  static DeleteHandler* getDeleteHandler() noexcept;
  /// Sets the handler for all objects from now on; null restores plain `delete`.
  static void setDeleteHandler(DeleteHandler* handler) noexcept;

  /// Called with each object that dies after `markShown`. Set once by the scripting layer.
  using ShownHook = void (*)(const void* object);
  static void setShownHook(ShownHook hook) noexcept;
  /// Notes that a script holds a handle on this object, so that its death must clear the handle.
  void markShown() const
  {
    if (!m_shown) enterShown();
  }
  /// Whether a script has ever held a handle on this object.
  bool isShown() const noexcept { return m_shown; }
  /// The living object at that address which a script has held, null if there is none. `object` is not read,
  /// so it may be long gone; another one may have taken its place.
  static const Referenced* findShown(const Referenced* object);

protected:
  virtual ~Referenced();

private:
  void deleteUsingDeleteHandler() const;
  void enterShown() const;

  mutable volatile std::uint32_t m_count = 0;
  mutable bool m_shown = false;
};

} // namespace kel
