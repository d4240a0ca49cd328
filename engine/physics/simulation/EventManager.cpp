#include "kelSDK/EventManager.h"
#include <algorithm>

namespace kelSDK {

EventManager::~EventManager()
{
  for (const Entry& entry : m_entries) entry.listener->m_simulation = nullptr;
}

bool EventManager::add(EventListener* listener, int priority)
{
  const kel::ref_ptr<EventListener> keep(listener);
  if (!listener || listener->m_simulation) return false;
  priority = std::clamp(priority, int(LOWEST_PRIORITY), int(HIGHEST_PRIORITY));
  const auto place = std::find_if(m_entries.begin(), m_entries.end(),
                                  [priority](const Entry& entry) { return entry.priority < priority; });
  m_entries.insert(place, {keep, priority});
  listener->m_simulation = &m_simulation;
  listener->addNotification();
  return true;
}

bool EventManager::remove(EventListener* listener)
{
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [listener](const Entry& entry) { return entry.listener == listener; });
  if (found == m_entries.end()) return false;
  const kel::ref_ptr<EventListener> keep(listener);
  m_entries.erase(found);
  listener->m_simulation = nullptr;
  listener->removeNotification();
  return true;
}

EventListener* EventManager::getEventListener(const kel::Name& name) const
{
  const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
    return entry.listener->getName() == name.str();
  });
  return found == m_entries.end() ? nullptr : found->listener.get();
}

void EventManager::stepEvent(StepEventListener::ActivationMask event, const kel::TimeStamp& time)
{
  const auto wants = [&](const EventListener& listener) {
    return listener.m_simulation == &m_simulation && listener.isEnabled() &&
           (listener.getMask() & event) != 0;
  };
  std::vector<kel::ref_ptr<StepEventListener>> called;
  for (const Entry& entry : m_entries)
    if (entry.listener->getType() == EventListener::STEP_EVENT_LISTENER && wants(*entry.listener))
      called.emplace_back(static_cast<StepEventListener*>(entry.listener.get()));
  for (const auto& listener : called) {
    if (!wants(*listener)) continue;
    switch (event) {
    case StepEventListener::PRE_COLLIDE:
      listener->preCollide(time);
      break;
    case StepEventListener::PRE_STEP:
      listener->pre(time);
      break;
    case StepEventListener::POST_STEP:
      listener->post(time);
      break;
    default:
      listener->last(time);
    }
  }
}

} // namespace kelSDK
