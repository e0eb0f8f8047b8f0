#pragma once

#include <string>

/// What is written from the tables of all classes, so that it never differs from what clients get.
namespace norvakavlor {

/// The type library's source, in the interface definition language. The compiler keeps one spelling for each
/// name in a library, whatever its case; so a class's or enumeration's spelling goes before a member's, and a
/// member's before a parameter's.
std::string interfaceDefinition();

/// The reference of all classes, in Markdown.
std::string referencePage();

/// The source file that holds every identifier.
std::string identifierTable();

} // namespace norvakavlor
