#pragma once
/// What the generated wrappers are made of.
///
/// A wrapper guards self and its arguments in order, calls the engine and pushes the results. Guards of
/// objects and required numbers also fetch what they let pass; texts and optional values are read behind the
/// guards. Guards that fail fill in a `tolua_Error` and raise nothing; functions that raise say so.
#include "kelLua/Guards.h"
#include "kelLua/Overloads.h"
#include "kelLua/Registration.h"
#include "kelLua/Results.h"
#include <stdexcept>
