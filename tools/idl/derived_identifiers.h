#pragma once

#include <norvakavlor/component/identifiers.h>

namespace norvakavlor {

/// The identifiers that belong to the library's names: UUIDs of version 5 in a namespace of its own.
Uuid derivedTypeLibraryId();
ClassIdentifiers derivedIdentifiers(std::string_view className);

/// A name's UUID in a namespace (RFC 4122, version 5).
Uuid namedUuid(const Uuid& nameSpace, std::string_view name);

} // namespace norvakavlor
