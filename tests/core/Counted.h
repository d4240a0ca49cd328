#pragma once
#include "kel/Referenced.h"
#include "kel/ref_ptr.h"

/// A counted object that tells how many of it there are.
struct Counted : kel::Referenced
{
  inline static int s_alive = 0;
  Counted() { ++s_alive; }
  Counted(const Counted& other) : Referenced(other) { ++s_alive; }
  Counted& operator=(const Counted&) = delete;

protected:
  ~Counted() override { --s_alive; }
};
using Ref = kel::ref_ptr<Counted>;
