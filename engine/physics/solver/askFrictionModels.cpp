#include "solver/askFrictionModels.h"
#include "collision/ContactRows.h"
#include "kel/BoxFrictionModel.h"
#include "kel/ContactMaterial.h"
#include "kelCollide/Space.h"
#include <algorithm>
#include <cmath>

namespace kel {

using kelCollide::ContactPointRows;
using kelCollide::Geometry;
using kelCollide::GeometryContact;

namespace {

/// Friction that nothing overcomes, N.
constexpr Real GREATEST_FORCE = 1e15;

/// What a model is asked about.
struct Question
{
  ref_ptr<FrictionModel> model;
  const BoxFrictionModel* box; // the model, if it is one
  ref_ptr<Geometry> geometry1;
  ref_ptr<Geometry> geometry2;
};

/// Takes over a model's tangents as far as they span a plane with the normal.
void writeTangents(const Question& question, Index point)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Vec3 normal(points.normal[point]);
  Vec3 u;
  Vec3 v;
  question.model->calculateTangentPlane(question.geometry1.get(), question.geometry2.get(),
                                        points.point[point], normal, points.depth[point], u, v);
  u -= normal * (u * normal);
  const Real length = u.length();
  if (!(length > 1e-6 && std::isfinite(length))) return;
  u /= length;
  const Vec3 across = cross(normal, u);
  points.tangentU[point] = Vec3f(u);
  points.tangentV[point] = Vec3f(v * across < 0 ? -across : across);
}

void writeNormalForce(const Question& question, Index point, std::size_t numPoints, Real timeStep)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Real force = question.box->calculateNormalForce(
      question.geometry1.get(), question.geometry2.get(), points.point[point], Vec3(points.normal[point]),
      points.depth[point], points.impulse[point].x() / timeStep, numPoints);
  points.boundingForce[point] = force > 0 ? std::min(force, GREATEST_FORCE) : 0;
}

} // namespace

void askFrictionModels(const kelCollide::Space& space, Real timeStep)
{
  const auto& contacts = space.getGeometryContacts();
  for (std::size_t i = 0; i < contacts.size(); ++i) { // models may take contacts away
    const GeometryContact contact = contacts[i];
    const ContactMaterial* material = contact.getMaterial();
    if (!material || !material->getFrictionModel() || !contact.isEnabled()) continue;
    Question question = {material->getFrictionModel(), nullptr, contact.geometry(0), contact.geometry(1)};
    question.box = dynamic_cast<const BoxFrictionModel*>(question.model.get());
    for (std::size_t k = 0; k < contact.getNumPoints(); ++k) {
      const Index point = contact.getPoint(k).getId();
      if (!ContactPointRows::instance().enabled[point]) continue;
      writeTangents(question, point);
      if (question.box) writeNormalForce(question, point, contact.getNumPoints(), timeStep);
    }
  }
}

} // namespace kel
