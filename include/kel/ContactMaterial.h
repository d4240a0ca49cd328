#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

/// How two materials meet.
class ContactMaterial : public Referenced, public kelStream::Serializable
{
public:
  String getClassName() const override { return "ContactMaterial"; }

protected:
  ~ContactMaterial() override = default;
};

} // namespace kel
