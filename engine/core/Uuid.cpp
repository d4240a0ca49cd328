#include "kel/Uuid.h"
#include <uuid/uuid.h>

namespace kel {

Uuid Uuid::generate()
{
  Uuid id;
  uuid_generate_random(reinterpret_cast<unsigned char*>(id.m_words));
  return id;
}

String Uuid::str() const
{
  char text[37];
  uuid_unparse_lower(reinterpret_cast<const unsigned char*>(m_words), text);
  return text;
}

} // namespace kel
