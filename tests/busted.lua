-- Runs busted specs inside the host: kel tests/busted.lua [busted options] SPEC...
local passed, failure = pcall(require("busted.runner"), { standalone = false })
if failure then print(failure) end
if not passed then os.exit(1) end
