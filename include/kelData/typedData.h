#pragma once
#include "kel/Matrix3x3.h"
#include "kel/Uuid.h"
#include "kelData/Buffer.h"
#include "kelData/EntityPtr.h"

/// Arrays, buffers and values by the names that scripts know. Names that differ by a width alone, such as
/// `RealValue` and `Real64Value`, are one class here and two to scripts.
#define KEL_TYPED_DATA(Stem, T)                                                                              \
  using Stem##Array = kelData::Array<T>;                                                                     \
  using Stem##Buffer = kelData::BufferT<T>;                                                                  \
  using Stem##Value = kelData::ValueT<T>;
#define KEL_TYPED_REALS(Stem)                                                                                \
  KEL_TYPED_DATA(Stem, Stem)                                                                                 \
  KEL_TYPED_DATA(Stem##d, Stem##d)                                                                           \
  KEL_TYPED_DATA(Stem##f, Stem##f)
#define KEL_TYPED_VECTORS(Stem)                                                                              \
  KEL_TYPED_REALS(Stem)                                                                                      \
  KEL_TYPED_DATA(Stem##i, Stem##i)                                                                           \
  KEL_TYPED_DATA(Stem##i32, Stem##i32)                                                                       \
  KEL_TYPED_DATA(Stem##i64, Stem##i64)                                                                       \
  KEL_TYPED_DATA(Stem##u, Stem##u)                                                                           \
  KEL_TYPED_DATA(Stem##u32, Stem##u32)                                                                       \
  KEL_TYPED_DATA(Stem##u64, Stem##u64)

namespace kel {

KEL_TYPED_DATA(Real, Real)
KEL_TYPED_DATA(Real32, Real32)
KEL_TYPED_DATA(Real64, Real64)
KEL_TYPED_DATA(Bool, bool)
KEL_TYPED_DATA(Index, Index)
KEL_TYPED_DATA(Int, Int)
KEL_TYPED_DATA(Int8, Int8)
KEL_TYPED_DATA(Int16, Int16)
KEL_TYPED_DATA(Int32, Int32)
KEL_TYPED_DATA(Int64, Int64)
KEL_TYPED_DATA(UInt, UInt)
KEL_TYPED_DATA(UInt8, UInt8)
KEL_TYPED_DATA(UInt16, UInt16)
KEL_TYPED_DATA(UInt32, UInt32)
KEL_TYPED_DATA(UInt64, UInt64)
KEL_TYPED_DATA(String, String)
KEL_TYPED_VECTORS(Vec2)
KEL_TYPED_VECTORS(Vec3)
KEL_TYPED_VECTORS(Vec4)
KEL_TYPED_REALS(Matrix3x3)
KEL_TYPED_REALS(Matrix4x4)
KEL_TYPED_REALS(AffineMatrix4x4)
KEL_TYPED_DATA(Quat, Quat)
KEL_TYPED_DATA(Quat32, Quat32)
KEL_TYPED_DATA(Quat64, Quat64)
KEL_TYPED_DATA(Uuid, Uuid)

} // namespace kel

namespace kelData {

KEL_TYPED_DATA(EntityPtr, EntityPtr)

} // namespace kelData

#undef KEL_TYPED_VECTORS
#undef KEL_TYPED_REALS
#undef KEL_TYPED_DATA
