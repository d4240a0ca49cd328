#include "kel/Referenced.h"
#include <apr_atomic.h>

namespace kel {

namespace {
DeleteHandler* s_deleteHandler = nullptr;
Referenced::ShownHook s_shownHook = nullptr;
constexpr std::uint32_t minusOne = 0xFFFFFFFF;
} // namespace

Referenced::~Referenced()
{
  if (m_shown && s_shownHook) s_shownHook(this);
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
