#pragma once
#include "kel/Constraint.h"
#include "kel/ContactMaterial.h"
#include "kel/Emitter.h"
#include "kel/Material.h"
#include "kel/Matrix3x3.h"
#include "kel/ParticleEmitter.h"
#include "kel/ParticleSystem.h"
#include "kel/RangeReal.h"
#include "kel/RigidBody.h"
#include "kel/SetVector.h"
#include "kel/Vector.h"
#include "kelRender/Color.h"
#include "kelSDK/Assembly.h"
#include <utility>

/// The engine's containers of objects by the names that scripts know. Those of pointers hold no references.
namespace kel {

using RigidBodyPtrVector = VectorPOD<RigidBody*>;
using ConstraintPtrVector = VectorPOD<Constraint*>;
using AffineMatrix4x4PtrVector = VectorPOD<AffineMatrix4x4*>;
using ContactMaterialPtrVector = Vector<const ContactMaterial*>;
using MaterialPtrVector = Vector<const Material*>;

using RigidBodyRefVector = Vector<ref_ptr<RigidBody>>;
using ConstraintRefVector = Vector<ref_ptr<Constraint>>;
using ParticleSystemRefVector = Vector<ref_ptr<ParticleSystem>>;
using ParticleEmitterRefVector = Vector<ref_ptr<ParticleEmitter>>;
using EmitterRefVector = Vector<ref_ptr<Emitter>>;

using RigidBodyPtrSetVector = SetVector<RigidBody*>;
using RigidBodyRefSetVector = SetVector<ref_ptr<RigidBody>>;
using ConstraintRefSetVector = SetVector<ref_ptr<Constraint>>;
using RigidBodyRefSet = RigidBodyRefSetVector;
using ConstraintRefSet = ConstraintRefSetVector;

/// Two numbers that belong together.
using RealPair = std::pair<Real, Real>;
using RealPairVector = Vector<RealPair>;

/// A range of forces, say, of one row among many.
struct IndexedRangeReal
{
  UInt32 index;
  RangeReal range;
};
using SparseRangeReal = Vector<IndexedRangeReal>;

} // namespace kel

namespace kelSDK {

using AssemblyRefSet = kel::SetVector<kel::ref_ptr<Assembly>>;

} // namespace kelSDK

namespace kelRender {

using ColorVector = kel::Vector<Color>;

} // namespace kelRender
