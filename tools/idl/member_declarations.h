#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>
#include <string_view>
#include <tools/idl/header_reader.h>
#include <vector>

/// Where the headers declare what the tables name. A declaration has the table's name, or says "Clients know
/// it as `Courses`.".
namespace norvakavlor {

const HeaderClass& headerClassOf(const HeaderClasses& headers, const ClassInfo& info);

/// All overloads of a member; of a property first what reads it, then what sets it ("SetItem"). Raises
/// std::runtime_error if there is none.
std::vector<const Declaration*> declarationsOf(const HeaderClasses& headers, const ClassInfo& info,
                                               const Member& member);

/// Does a sentence of a comment give the name that clients know?
bool tellsName(std::string_view sentence);

} // namespace norvakavlor
