#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

/// How a member is written in each language that goes by the tables.
namespace norvakavlor {

/// A variable for an object of the class: "gradiumExam".
std::string variableOf(const ClassInfo& info);

/// As in Basic: "exam.Load(location As String, [questionPool As QuestionPool]) As Boolean".
std::string scriptForm(const ClassInfo& info, const Member& member);
/// The type alone: "String".
std::string scriptType(const Type& type);

/// As the Python package offers it: "exam.Load(location: str, questionPool: QuestionPool | None = None) ->
/// bool". The package's tests compare each line of the reference page with it.
std::string pythonForm(const ClassInfo& info, const Member& member);

} // namespace norvakavlor
