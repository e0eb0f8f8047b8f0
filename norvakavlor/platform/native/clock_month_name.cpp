#include <norvakavlor/runtime/clock.h>

#include <langinfo.h>

namespace norvakavlor {

std::string monthName(int month) { return nl_langinfo(MON_1 + month - 1); }

} // namespace norvakavlor
