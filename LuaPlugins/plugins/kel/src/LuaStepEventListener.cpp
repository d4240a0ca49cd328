#include "LuaStepEventListener.h"
#include "CallSite.h"
#include "kelStream/StorageManager.h"

namespace kelSDK {

namespace {

using kelLua::CallSite;

constexpr const char* className = "LuaStepEventListener";
const kelStream::Storage<LuaStepEventListener> storageLuaStepEventListener(className);

const CallSite addNotificationSite("virtual void kelSDK::LuaStepEventListener::addNotification()");
const CallSite removeNotificationSite("virtual void kelSDK::LuaStepEventListener::removeNotification()");
const CallSite preCollideSite("virtual void kelSDK::LuaStepEventListener::preCollide(const TimeStamp&)");
const CallSite preSite("virtual void kelSDK::LuaStepEventListener::pre(const TimeStamp&)");
const CallSite postSite("virtual void kelSDK::LuaStepEventListener::post(const TimeStamp&)");
const CallSite lastSite("virtual void kelSDK::LuaStepEventListener::last(const TimeStamp&)");

} // namespace

LuaStepEventListener::LuaStepEventListener(int mask)
    : StepEventListener(mask), LuaCallback(this, "kelSDK::LuaStepEventListener::LuaStepEventListener(int)")
{}

void LuaStepEventListener::addNotification() { addNotificationSite.call(*this); }
void LuaStepEventListener::removeNotification() { removeNotificationSite.call(*this); }
void LuaStepEventListener::preCollide(const kel::TimeStamp& time) { preCollideSite.call(*this, time); }
void LuaStepEventListener::pre(const kel::TimeStamp& time) { preSite.call(*this, time); }
void LuaStepEventListener::post(const kel::TimeStamp& time) { postSite.call(*this, time); }
void LuaStepEventListener::last(const kel::TimeStamp& time) { lastSite.call(*this, time); }

kelStream::StorageAgent* LuaStepEventListener::getStorageAgent() const
{
  return kelStream::StorageManager::instance()->find(className);
}

kel::String LuaStepEventListener::getClassName() const { return className; }

void LuaStepEventListener::store(kelStream::OutputArchive& archive) const
{
  StepEventListener::store(archive);
}

void LuaStepEventListener::restore(kelStream::InputArchive& archive) { StepEventListener::restore(archive); }

} // namespace kelSDK
