#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tools/idl/header_reader.h>
#include <vector>

/// Which errors the members raise, beside the tables of the classes: the library itself needs no word of it.
/// A member without a row raises only what every member can.
namespace norvakavlor {

struct ErrorRow {
    std::vector<int32_t> numbers;
    std::string when; ///< continues "if": "an ID is repeated"
};

/// The rows of each member that has some, by its name: "Exam.Load".
const std::map<std::string, std::vector<ErrorRow>>& errorRows();

struct ErrorMeaning {
    int32_t number;
    std::string_view meaning;
    bool isCommon = false; ///< any member can raise it, so that no row says so
};

/// Every number that a row has, and those that all members share, as the index lists them.
const std::vector<ErrorMeaning>& errorMeanings();

/// "457", "object error 653", "&H800C0005".
std::string errorName(int32_t number);

/// What is wrong with the rows: one that names no member, a number without a meaning, a member whose header
/// names other numbers in its sentences that begin with "Raises". A line each; "" if all is well. Raises
/// std::runtime_error for a sentence that it does not understand.
std::string faultsOfErrors(const HeaderClasses& headers);

/// Does a sentence of a comment say which errors a member raises?
bool tellsErrors(std::string_view sentence);

} // namespace norvakavlor
