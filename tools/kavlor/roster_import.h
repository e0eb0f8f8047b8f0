#pragma once

#include <norvakavlor/norvakavlor.h>
#include <string>
#include <vector>

namespace norvakavlor::kavlor {

/// The columns of a roster's CSV, in the order in which it is written.
inline constexpr const char* kRosterColumns[] = {"StudentID", "LastName", "FirstName", "MiddleInit",
                                                 "Course",    "Section",  "UserName"};

/// What a CSV file would change in a roster.
struct ImportPlan {
    std::vector<Ref<Student>> added;
    std::vector<Ref<Student>> changed; ///< copies, under the IDs of students that are there
    size_t unchanged = 0;
    struct Refusal {
        size_t line;
        std::string reason;
    };
    std::vector<Refusal> refused;
};

/// Reads the rows of a CSV text against a roster. `courses` may be null; a row with a course is refused then.
/// With `update`, a row may change the student of its ID. Raises Failure for a text without usable header.
ImportPlan planImport(const std::string& csv, const Students& roster, Courses* courses, bool update);

/// Stores the changes. Students are added under the roster's lock, one by one; a change is a save of its own
/// before that. Raises Failure when somebody else holds the lock, naming what was stored until then.
void storeImport(const ImportPlan& plan, const std::string& location, Courses* courses);

} // namespace norvakavlor::kavlor
