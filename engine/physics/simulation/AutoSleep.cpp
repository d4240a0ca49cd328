#include "kel/AutoSleep.h"
#include "kel/DynamicsSystem.h"

namespace kel {

AutoSleep::AutoSleep(const DynamicsSystem* system)
    : m_settings(system ? system->getAutoSleep()->m_settings.get() : new Settings)
{}

} // namespace kel
