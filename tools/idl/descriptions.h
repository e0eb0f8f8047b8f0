#pragma once

#include <string>

/// Files written from the tables of all classes, so they always match what clients get.
namespace norvakavlor {

/// The type library's source, in the interface definition language. Its compiler keeps one spelling for each
/// name, letter case ignored: a class's or enumeration's spelling wins over a member's, a member's over a
/// parameter's.
std::string interfaceDefinition();

/// The reference of all classes, in Markdown.
std::string referencePage();

/// The source file that holds every identifier.
std::string identifierTable();

} // namespace norvakavlor
