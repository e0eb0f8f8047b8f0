#include "roster_import.h"

#include "command.h"
#include "console.h"
#include "csv.h"
#include "installation.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace norvakavlor::kavlor {
namespace {

constexpr const char* kPasswordColumn = "Password"; ///< read, and never written

std::string& field(Student& student, size_t column) {
    std::string* const fields[] = {&student.StudentID,  &student.LastName, &student.FirstName,
                                   &student.MiddleInit, &student.Course,   &student.Section,
                                   &student.UserName};
    return *fields[column];
}

/// For each cell of a row the number of its column; the one behind the last is the password.
std::vector<size_t> columnsOf(const CsvRow& header) {
    constexpr size_t count = std::size(kRosterColumns);
    std::vector<size_t> columns;
    for (const std::string& title : header.cells) {
        const auto* const found = std::find(std::begin(kRosterColumns), std::end(kRosterColumns), title);
        const auto column = static_cast<size_t>(found - std::begin(kRosterColumns));
        if (column == count && title != kPasswordColumn)
            throw Failure(
                "the CSV's first line names a column " + title +
                ": it may name StudentID, LastName, FirstName, MiddleInit, Course, Section, UserName "
                "and Password");
        if (std::find(columns.begin(), columns.end(), column) != columns.end())
            throw Failure("the CSV's first line names " + title + " twice");
        columns.push_back(column);
    }
    return columns;
}

class Planner {
public:
    Planner(const Students& roster, Courses* courses, bool update)
        : roster_(roster), courses_(courses), update_(update) {
        for (const Ref<Student>& student : *roster.StudentMembers) {
            if (!student->UserName.empty())
                ownerOfName_[student->UserName] = student->StudentID;
        }
    }

    void take(const CsvRow& row, const std::vector<size_t>& columns) {
        try {
            if (row.cells.size() > columns.size())
                throw Failure("more cells than the first line has");
            plan_.unchanged += !place(row, columns);
        } catch (const Failure& failure) {
            plan_.refused.push_back({row.line, failure.what()});
        } catch (const Error& error) {
            if (isOutOfMemory(error))
                throw;
            plan_.refused.push_back({row.line, describe(error)});
        }
    }

    ImportPlan plan_;

private:
    /// False when the row changes nothing.
    bool place(const CsvRow& row, const std::vector<size_t>& columns) {
        const auto idColumn = std::find(columns.begin(), columns.end(), size_t{0}) - columns.begin();
        const auto at = static_cast<size_t>(idColumn);
        const std::string id = at < row.cells.size() ? row.cells[at] : "";
        const Ref<Student>* known = id.empty() ? nullptr : roster_.StudentMembers->find(id);
        const Ref<Student> student = known ? (*known)->Clone() : New<Student>();
        bool changes = !known;
        for (size_t cell = 0; cell < row.cells.size(); ++cell) {
            if (columns[cell] < std::size(kRosterColumns)) {
                // The ID of a student who is there stays as the roster spells it.
                if (known && columns[cell] == 0)
                    continue;
                std::string& value = field(*student, columns[cell]);
                changes = changes || value != row.cells[cell];
                value = row.cells[cell];
            } else if (!row.cells[cell].empty() &&
                       !(student->hasPassword && student->CheckPassword(row.cells[cell]))) {
                student->SetPassword(row.cells[cell]);
                changes = true;
            }
        }
        check(*student);
        if (!changes)
            return false;
        if (known && !update_)
            throw Failure(id + " is in the roster already, with other values (--update changes them)");
        if (!id.empty())
            ids_->Add(id, id);
        if (!student->UserName.empty())
            ownerOfName_[student->UserName] = student->StudentID;
        (known ? plan_.changed : plan_.added).push_back(student);
        return true;
    }

    void check(const Student& student) {
        if (!student.StudentID.empty() && ids_->contains(student.StudentID))
            throw Failure(student.StudentID + " is in an earlier row");
        if (student.LastName.empty() && student.FirstName.empty())
            throw Failure("there is no name");
        const auto owner = ownerOfName_.find(student.UserName);
        if (owner != ownerOfName_.end() && (student.StudentID.empty() || owner->second != student.StudentID))
            throw Failure("the user name " + student.UserName + " is taken" +
                          (owner->second.empty() ? " by an earlier row" : " by " + owner->second));
        if (student.Course.empty())
            return;
        if (!courses_)
            throw Failure("there is a course and no list of courses (--courses FILE)");
        int32_t number = 0;
        std::string reason;
        if (!student.Validate(courses_, number, reason))
            throw Failure(reason);
    }

    const Students& roster_;
    Courses* courses_;
    bool update_;
    std::map<std::string, std::string> ownerOfName_; ///< user name to ID, "" for a row without one
    Ref<KeyedCollection<std::string>> ids_ = New<KeyedCollection<std::string>>(); ///< of the rows before
};

void storeChanges(const std::vector<Ref<Student>>& changed, const std::string& location, Courses* courses) {
    auto roster = New<Students>();
    if (!roster->Load(location, courses))
        throw Failure(location + ": " + reasonAbout(location));
    for (const Ref<Student>& student : changed) {
        Ref<Student>* place = roster->StudentMembers->find(student->StudentID);
        if (!place)
            throw Failure(student->StudentID + " is gone meanwhile: nothing was stored");
        *place = student;
    }
    roster->Save(location, courses);
}

} // namespace

ImportPlan planImport(const std::string& csv, const Students& roster, Courses* courses, bool update) {
    const std::vector<CsvRow> rows = parseCsv(csv);
    if (rows.empty())
        throw Failure("the CSV is empty");
    const std::vector<size_t> columns = columnsOf(rows[0]);
    Planner planner(roster, courses, update);
    for (auto row = rows.begin() + 1; row != rows.end(); ++row)
        planner.take(*row, columns);
    return std::move(planner.plan_);
}

void storeImport(const ImportPlan& plan, const std::string& location, Courses* courses) {
    checkInterrupted();
    // From here on Ctrl-C waits: half an import would be worse than a whole one.
    if (!plan.changed.empty())
        storeChanges(plan.changed, location, courses);
    size_t stored = 0;
    Progress progress("adding students", plan.added.size());
    for (const Ref<Student>& student : plan.added) {
        std::string reason;
        bool added = false;
        try {
            added = New<Students>()->AddStudent(location, student, courses);
            reason = added ? "" : reasonAbout(location);
        } catch (const Error& error) {
            if (isOutOfMemory(error))
                throw;
            reason = describe(error);
        }
        if (!added)
            throw Failure("the roster did not take " + student->FirstName + " " + student->LastName + ": " +
                          reason + ". " + counted(stored, "student was", "students were") +
                          " added before; importing the file again goes on with the others, as long as its "
                          "rows have a StudentID");
        ++stored;
        progress.count();
    }
}

} // namespace norvakavlor::kavlor
