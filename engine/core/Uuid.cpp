#include "kel/Uuid.h"
#include "kel/Logger.h"
#include <uuid/uuid.h>

namespace kel {

namespace {
unsigned char* bytes(Uuid& id) { return static_cast<unsigned char*>(id.data()); }
const unsigned char* bytes(const Uuid& id) { return static_cast<const unsigned char*>(id.data()); }
} // namespace

Uuid::Uuid(const String& text)
{
  if (uuid_parse(text.c_str(), bytes(*this)) == 0) return;
  *this = Uuid();
  logWarning("Uuid: '" + text + "' is no identifier.");
}

Uuid Uuid::generateFromString(const String& name)
{
  Uuid id;
  uuid_generate_sha1(bytes(id), bytes(Uuid()), name.data(), name.size());
  return id;
}

String Uuid::str() const
{
  char text[UUID_STR_LEN];
  uuid_unparse_lower(bytes(*this), text);
  return text;
}

Uuid UuidGenerator::generate()
{
  Uuid id;
  uuid_generate_random(bytes(id));
  return id;
}

} // namespace kel
