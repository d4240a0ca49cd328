#pragma once
#include "kel/Referenced.h"
#include "kelData/Data.h"
#include <vector>

namespace kelData {

/// Where the values of a storage's attributes lie: one entry each, in the order of the attributes.
struct EntityData : public kel::Referenced
{
  std::vector<Data> columns;
};

} // namespace kelData
