#pragma once

#include <norvakavlor/component/identifiers.h>

namespace norvakavlor {

/// The identifiers of the library's names: UUIDs of version 5 in the library's own namespace.
Uuid derivedTypeLibraryId();
ClassIdentifiers derivedIdentifiers(std::string_view className);

/// The UUID of a name in a namespace (RFC 4122, version 5).
Uuid namedUuid(const Uuid& nameSpace, std::string_view name);

} // namespace norvakavlor
