#include "kel/log_throw.h"
#include "kel/Logger.h"

void kel::log_throw(const std::string& text, const char* place) { logWarning(String(place) + " " + text); }
