#pragma once
#include "kel/Component.h"

namespace kel {

/// A piece of work that something else runs when its time has come.
class Task : public Component
{
public:
  using Component::Component;

  /// Whether the task runs when it is asked to; true at first.
  void setEnable(bool enable) { m_enabled = enable; }
  bool isEnabled() const { return m_enabled; }
  /// Runs the task, if it is enabled.
  void execute()
  {
    if (m_enabled) run();
  }
  String getImplementationName() const override { return "Task"; }

protected:
  ~Task() override = default;
  virtual void run() = 0;

private:
  bool m_enabled = true;
};

} // namespace kel
