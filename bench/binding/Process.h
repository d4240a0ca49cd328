#pragma once
#include <string>
#include <vector>

namespace bench {

class Session;

/// Bytes of a `kel.Vec3` that a script keeps, of many.
struct KeptValue
{
  double lua;     ///< By Lua's own count.
  double process; ///< By the growth of the process's resident memory.
};
KeptValue keptValue(Session& session, int count);

/// Wall time of a new state with the tree, in ms; it is closed again.
double openingTime();
/// Prints times and memory of opening the tree in new states of this process; `first` is the time of the
/// first.
void printOpening(double first, int repetitions);
/// Prints the time of a whole process that runs an empty script, with the tree and without.
void printEmptyScript(int repetitions);

/// The middle one of an odd number of values, the upper one of the middle two of an even number.
double median(std::vector<double> values);

} // namespace bench
