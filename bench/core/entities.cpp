// A million rows of an entity storage: made, moved, read and destroyed, against plain arrays in the same run.
#include "kel/Vec3.h"
#include "kelData/EntityStorage.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <vector>

namespace {

using kel::ref_ptr;
using kelData::Attribute;
using kelData::EntityPtr;
using kelData::EntityStorage;

constexpr std::size_t COUNT = 1'000'000;
constexpr int PASSES = 9;

struct Particles
{
  ref_ptr<kelData::EntityModel> model = new kelData::EntityModel("Particles");
  Attribute* position = Attribute::create<kel::Vec3>("position");
  Attribute* mass = Attribute::create<double>("mass", 1.0);

  Particles()
  {
    model->addAttribute(position);
    model->addAttribute(mass);
  }
};

template <class F> double milliseconds(F&& f)
{
  const auto begin = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values)
{
  std::nth_element(values.begin(), values.begin() + PASSES / 2, values.end());
  return values[PASSES / 2];
}

/// Medians of what a life of a million rows costs.
struct Life
{
  std::vector<double> one, all, moved, destroyed, cleared;

  void pass(const Particles& particles)
  {
    const ref_ptr<EntityStorage> first = new EntityStorage(particles.model.get());
    const ref_ptr<EntityStorage> second = new EntityStorage(particles.model.get());
    std::vector<EntityPtr> instances(COUNT);
    one.push_back(milliseconds([&] {
      for (EntityPtr& instance : instances) instance = first->createInstance();
    }));
    std::shuffle(instances.begin(), instances.end(), std::mt19937(1));
    moved.push_back(milliseconds([&] {
      for (EntityPtr& instance : instances) instance = second->transferInstance(instance);
    }));
    std::shuffle(instances.begin(), instances.end(), std::mt19937(2));
    destroyed.push_back(milliseconds([&] {
      for (const EntityPtr& instance : instances) second->destroyInstance(instance);
    }));
    const ref_ptr<EntityStorage> third = new EntityStorage(particles.model.get());
    all.push_back(milliseconds([&] { third->createInstances(COUNT); }));
    cleared.push_back(milliseconds([&] { third->clear(); }));
  }
  void print() const
  {
    const auto line = [](const char* name, const std::vector<double>& times) {
      std::printf("%-28s %7.1f ns a row\n", name, median(times) * 1e6 / COUNT);
    };
    line("made one by one", one);
    line("made at once", all);
    line("moved, in any order", moved);
    line("destroyed, in any order", destroyed);
    line("cleared", cleared);
  }
};

double sum(const double* values)
{
  double total = 0;
  for (std::size_t i = 0; i < COUNT; ++i) total += values[i];
  asm volatile("" : : "r"(&total) : "memory"); // the sum counts as used
  return total;
}

void compareIteration(const Particles& particles)
{
  const ref_ptr<EntityStorage> storage = new EntityStorage(particles.model.get());
  storage->createInstances(COUNT);
  std::vector<double> plain(COUNT, 1.0), ours, array;
  for (int pass = 0; pass < PASSES; ++pass) {
    ours.push_back(milliseconds([&] { sum(storage->data<double>(particles.mass)); }));
    array.push_back(milliseconds([&] { sum(plain.data()); }));
  }
  std::printf("%-28s %7.3f ms, array %7.3f ms, ratio %.2f\n", "one attribute read", median(ours),
              median(array), median(ours) / median(array));
}

} // namespace

int main()
{
  const Particles particles;
  Life life;
  for (int pass = 0; pass < PASSES; ++pass) life.pass(particles);
  life.print();
  compareIteration(particles);
}
