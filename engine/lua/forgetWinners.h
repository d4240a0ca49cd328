#pragma once

namespace kelLua::wrap {

/// Lets all dispatchers forget which overloads won.
void forgetWinners();

} // namespace kelLua::wrap
