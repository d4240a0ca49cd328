#pragma once
#include "kel/String.h"

namespace kelLua {

class ScriptManager;

/// The one function that a plug-in library has to have, under the name `initPlugin`.
using PluginEntry = void (*)(ScriptManager* manager);

/// The file of a plug-in by its name; empty, with a reason in `error`, when there is none on the search path.
kel::String findPlugin(const kel::String& name, kel::String& error);

/// Loads a library for the rest of the process and returns its entry; null, with a reason in `error`, on
/// failure.
PluginEntry loadPlugin(const kel::String& file, kel::String& error);

} // namespace kelLua
