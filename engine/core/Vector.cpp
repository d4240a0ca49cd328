#include "kel/Vector.h"
#include "kel/abort.h"

namespace kel {

void failIndex(unsigned line, UInt64 index, UInt64 size)
{
  fail(buildErrorString("[%s:%u] kelVerify failed: `%s', "
                        "Array index %llu is out of bounds, current size is %llu",
                        "include/kel/Vector", line, "index < m_size", static_cast<unsigned long long>(index),
                        static_cast<unsigned long long>(size)));
}

} // namespace kel
