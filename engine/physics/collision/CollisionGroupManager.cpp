#include "kelCollide/CollisionGroupManager.h"
#include "kelCollide/Geometry.h"
#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace kelCollide {

CollisionGroupManager::Group CollisionGroupManager::groupOf(const kel::Name& name)
{
  static std::mutex mutex;
  static auto* groups =
      new std::unordered_map<std::string, Group>; // geometries may outlive any static object
  const std::lock_guard<std::mutex> lock(mutex);
  constexpr Group beyondNumbers = Group(1) << 32;
  return groups->emplace(name.str(), beyondNumbers + groups->size()).first->second;
}

void CollisionGroupManager::setEnablePair(Group first, Group second, bool enable)
{
  if (enable)
    m_disabled.erase(std::minmax(first, second));
  else
    m_disabled.insert(std::minmax(first, second));
}

bool CollisionGroupManager::getEnablePair(Group first, Group second) const
{
  return !m_disabled.count(std::minmax(first, second));
}

bool CollisionGroupManager::canCollide(const Geometry& first, const Geometry& second) const
{
  if (m_disabled.empty()) return true;
  for (const Group one : first.getGroups())
    for (const Group other : second.getGroups())
      if (!getEnablePair(one, other)) return false;
  return true;
}

} // namespace kelCollide
