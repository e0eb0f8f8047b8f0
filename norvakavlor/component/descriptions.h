#pragma once

#include <string>

/// What is written from the tables of all classes, so that it never differs from what clients get.
namespace norvakavlor {

/// The type library's source, in the interface definition language.
std::string interfaceDefinition();

/// The reference of all classes, in Markdown.
std::string referencePage();

} // namespace norvakavlor
