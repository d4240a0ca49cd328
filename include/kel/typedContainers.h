#pragma once
#include "kel/Matrix3x3.h"
#include "kel/String.h"
#include "kel/Uuid.h"
#include "kel/Vector.h"
#include "kelData/EntityPtr.h"

/// The engine's containers of values, by the names that scripts know. Names that differ by a width alone,
/// such as `RealVector` and `Real64Vector`, are one class here and two to scripts.
#define KEL_CONTAINERS(Stem) using Stem##Vector = kel::VectorPOD<Stem>;
#define KEL_VECTOR_CONTAINERS(Stem)                                                                          \
  KEL_CONTAINERS(Stem)                                                                                       \
  KEL_CONTAINERS(Stem##d)                                                                                    \
  KEL_CONTAINERS(Stem##f)                                                                                    \
  KEL_CONTAINERS(Stem##i)                                                                                    \
  KEL_CONTAINERS(Stem##i32)                                                                                  \
  KEL_CONTAINERS(Stem##i64)                                                                                  \
  KEL_CONTAINERS(Stem##u)                                                                                    \
  KEL_CONTAINERS(Stem##u32)                                                                                  \
  KEL_CONTAINERS(Stem##u64)
#define KEL_MATRIX_CONTAINERS(Stem)                                                                          \
  KEL_CONTAINERS(Stem)                                                                                       \
  KEL_CONTAINERS(Stem##d)                                                                                    \
  KEL_CONTAINERS(Stem##f)

namespace kel {

KEL_CONTAINERS(Real)
KEL_CONTAINERS(Real32)
KEL_CONTAINERS(Real64)
using BoolVector = VectorPOD<bool>;
KEL_CONTAINERS(Index)
KEL_CONTAINERS(Int)
KEL_CONTAINERS(Int8)
KEL_CONTAINERS(Int16)
KEL_CONTAINERS(Int32)
KEL_CONTAINERS(Int64)
KEL_CONTAINERS(UInt)
KEL_CONTAINERS(UInt8)
KEL_CONTAINERS(UInt16)
KEL_CONTAINERS(UInt32)
KEL_CONTAINERS(UInt64)
using StringVector = Vector<String>;
KEL_VECTOR_CONTAINERS(Vec2)
KEL_VECTOR_CONTAINERS(Vec3)
KEL_VECTOR_CONTAINERS(Vec4)
KEL_MATRIX_CONTAINERS(Matrix3x3)
KEL_MATRIX_CONTAINERS(Matrix4x4)
KEL_MATRIX_CONTAINERS(AffineMatrix4x4)
KEL_CONTAINERS(Quat)
KEL_CONTAINERS(Quat32)
KEL_CONTAINERS(Quat64)
KEL_CONTAINERS(Uuid)

} // namespace kel

namespace kelData {

KEL_CONTAINERS(EntityPtr)

} // namespace kelData

#undef KEL_MATRIX_CONTAINERS
#undef KEL_VECTOR_CONTAINERS
#undef KEL_CONTAINERS
