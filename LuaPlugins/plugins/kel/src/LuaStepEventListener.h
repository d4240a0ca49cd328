#pragma once
#include "kelLua/LuaCallback.h"
#include "kelSDK/StepEventListener.h"

namespace kelSDK {

/// A step listener whose events go to the functions of a script: `preCollide`, `pre`, `post` and `last` with
/// the time in seconds, `addNotification` and `removeNotification` with nothing. Each gets the listener
/// itself first.
class LuaStepEventListener : public StepEventListener, public kelLua::LuaCallback
{
public:
  /// A listener for the events in `mask`, bits of `StepEventListener`, bound to the script manager's current
  /// state.
  explicit LuaStepEventListener(int mask = DEFAULT);

  void addNotification() override;
  void removeNotification() override;

  kelStream::StorageAgent* getStorageAgent() const override;
  kel::String getClassName() const override;
  /// Stores what the engine's listener stores. Nothing of the script is stored, so a restored listener is
  /// silent until a script gives it functions again.
  void store(kelStream::OutputArchive& archive) const override;
  void restore(kelStream::InputArchive& archive) override;

  void preCollide(const kel::TimeStamp& time) override;
  void pre(const kel::TimeStamp& time) override;
  void post(const kel::TimeStamp& time) override;
  void last(const kel::TimeStamp& time) override;

protected:
  ~LuaStepEventListener() override = default;
};

} // namespace kelSDK
