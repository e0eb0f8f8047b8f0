#pragma once

#include <string>

/// Files written from the tables of all classes, so they always match what clients get.
namespace norvakavlor {

/// The type library's source, in the interface definition language. Its compiler keeps one spelling for each
/// name, letter case ignored: a class's or enumeration's spelling wins over a member's, a member's over a
/// parameter's.
std::string interfaceDefinition();

/// The reference of all classes, in Markdown, from the tables and the public headers in the project's folder.
/// Raises std::runtime_error, which says what to mend, if a header and the tables disagree.
std::string referencePage(const std::string& root);

/// The source file that holds every identifier.
std::string identifierTable();

} // namespace norvakavlor
