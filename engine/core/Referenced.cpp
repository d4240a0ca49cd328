#include "kel/Referenced.h"
#include <apr_atomic.h>
#include <mutex>
#include <unordered_set>

namespace kel {

namespace {
DeleteHandler* s_deleteHandler = nullptr;
Referenced::ShownHook s_shownHook = nullptr;
constexpr std::uint32_t minusOne = 0xFFFFFFFF;

/// The living objects that scripts have held.
struct Shown
{
  std::mutex mutex;
  std::unordered_set<const Referenced*> objects;
};

Shown& shown()
{
  static Shown* all = new Shown; // stays: objects may die after the program's statics
  return *all;
}
} // namespace

Referenced::~Referenced()
{
  if (!m_shown) return;
  {
    const std::scoped_lock lock(shown().mutex);
    shown().objects.erase(this);
  }
  if (s_shownHook) s_shownHook(this);
}

void Referenced::enterShown() const
{
  const std::scoped_lock lock(shown().mutex);
  shown().objects.insert(this);
  m_shown = true;
}

const Referenced* Referenced::findShown(const Referenced* object)
{
  const std::scoped_lock lock(shown().mutex);
  const auto found = shown().objects.find(object);
  return found == shown().objects.end() ? nullptr : *found;
}

void Referenced::reference() const noexcept { apr_atomic_inc32(&m_count); }

void Referenced::unreference() const
{
  if (apr_atomic_add32(&m_count, minusOne) != 1) return;
  if (s_deleteHandler)
    deleteUsingDeleteHandler();
  else
    delete this;
}

void Referenced::unreferenceNoDelete() const noexcept { apr_atomic_add32(&m_count, minusOne); }

void Referenced::deleteUsingDeleteHandler() const { s_deleteHandler->requestDelete(this); }

DeleteHandler* Referenced::getDeleteHandler() noexcept { return s_deleteHandler; }

void Referenced::setDeleteHandler(DeleteHandler* handler) noexcept { s_deleteHandler = handler; }

void Referenced::setShownHook(ShownHook hook) noexcept { s_shownHook = hook; }

} // namespace kel
