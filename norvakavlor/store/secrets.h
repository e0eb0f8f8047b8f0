#pragma once

#include <string>
#include <string_view>

namespace norvakavlor {

/// What a server says, as users, reasons and the log get it. A server that repeats a request in its answer
/// repeats what went with it: the values of the thread's validation string, the gradebook's access keys and
/// digests of passwords (32 lower-case hexadecimal digits) are shown as "...".
std::string withoutSecrets(std::string_view text);

} // namespace norvakavlor
