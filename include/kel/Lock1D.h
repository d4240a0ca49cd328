#pragma once
#include "kel/LockController.h"

namespace kel {

/// The lock of a joint.
class Lock1D : public LockController
{
public:
  using LockController::LockController;

protected:
  ~Lock1D() override = default;
};

} // namespace kel
