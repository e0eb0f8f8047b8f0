#include <norvakavlor/platform/clock.h>

#include <langinfo.h>

namespace norvakavlor::platform {

std::string monthName(int month) { return nl_langinfo(MON_1 + month - 1); }

} // namespace norvakavlor::platform
