#pragma once

namespace kelLua::wrap {

/// Classes have been added to a state, or a new state has come, perhaps where an old one was: what type
/// records remember holds no longer.
void forgetJudgements();

} // namespace kelLua::wrap
