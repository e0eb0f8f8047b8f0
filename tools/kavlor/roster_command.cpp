#include "command.h"
#include "console.h"
#include "csv.h"
#include "installation.h"
#include "roster_import.h"
#include "text_table.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>

namespace norvakavlor::kavlor {
namespace {

struct RosterOptions {
    std::string roster;
    std::string courses;
    std::string sort;
    std::vector<std::string> filters;
    bool csv = false;
    std::string import;
    bool dryRun = false;
    bool update = false;
    bool skipRefused = false;
};

/// The courses that go with the roster: those of --courses, else courses.xml beside it; null without.
Ref<Courses> loadCourses(const RosterOptions& options) {
    std::string location = options.courses;
    if (location.empty()) {
        location = options.roster.substr(0, options.roster.find_last_of("/\\") + 1) + "courses.xml";
        if (!location.starts_with("http:") && !std::filesystem::exists(pathFrom(location)))
            return nullptr;
    }
    auto courses = New<Courses>();
    if (courses->Load(location, nullptr))
        return courses;
    if (options.courses.empty())
        return nullptr;
    throw Failure(location + ": " + reasonAbout(location));
}

std::string fieldName(const std::string& name) {
    if (New<Student>()->GetPropertyIndex(name) >= 0)
        return name;
    throw Failure("students have no field " + name +
                  ": it is StudentID, LastName, FirstName, MiddleInit, Course, Section or UserName");
}

/// Up to three fields of "LastName,FirstName".
std::array<std::string, 3> sortFields(const std::string& text) {
    std::array<std::string, 3> fields;
    std::istringstream names(text);
    std::string name;
    for (size_t count = 0; std::getline(names, name, ','); ++count) {
        if (count == fields.size())
            throw Failure("a roster is sorted by at most three fields");
        fields[count] = fieldName(name);
    }
    return fields;
}

/// Fields and values of up to three FIELD=VALUE, one behind the other.
std::array<std::string, 6> filterFields(const std::vector<std::string>& filters) {
    std::array<std::string, 6> fields;
    if (filters.size() > 3)
        throw Failure("a roster is filtered by at most three fields");
    for (size_t filter = 0; filter < filters.size(); ++filter) {
        const size_t equals = filters[filter].find('=');
        if (equals == std::string::npos)
            throw Failure("--filter takes FIELD=VALUE, not " + filters[filter]);
        fields[2 * filter] = fieldName(filters[filter].substr(0, equals));
        fields[2 * filter + 1] = filters[filter].substr(equals + 1);
    }
    return fields;
}

std::vector<Ref<Student>> chosen(const Students& roster, const RosterOptions& options) {
    auto students = roster.StudentMembers;
    if (!options.sort.empty()) {
        const auto fields = sortFields(options.sort);
        const auto sorted = roster.Sort(fields[0], fields[1], fields[2]);
        return {sorted->begin(), sorted->end()};
    }
    return {students->begin(), students->end()};
}

void show(const Students& roster, const RosterOptions& options) {
    std::vector<Ref<Student>> students = chosen(roster, options);
    if (!options.filters.empty()) {
        const auto fields = filterFields(options.filters);
        const auto kept = roster.Filter(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
        std::erase_if(students,
                      [&](const Ref<Student>& student) { return !kept->contains(student->StudentID); });
    }
    std::vector<std::string> titles(std::begin(kRosterColumns), std::end(kRosterColumns));
    TextTable table(titles);
    std::string csv = csvLine(titles);
    for (const Ref<Student>& student : students) {
        std::vector<std::string> cells;
        for (const char* column : kRosterColumns)
            cells.push_back(student->property(student->GetPropertyIndex(column)));
        if (options.csv)
            csv += csvLine(cells);
        else
            table.add(std::move(cells));
    }
    if (options.csv) {
        std::fputs(csv.c_str(), stdout);
        return;
    }
    table.print();
    std::printf("%s\n", counted(students.size(), "student", "students").c_str());
}

std::string readAll(const std::string& file) {
    std::ostringstream content;
    std::ifstream stream(pathFrom(file), std::ios::binary);
    if (!(content << stream.rdbuf()))
        throw Failure(file + " cannot be read or is empty");
    return content.str();
}

int import(const Students& roster, Courses* courses, const RosterOptions& options) {
    const ImportPlan plan = planImport(readAll(options.import), roster, courses, options.update);
    for (const auto& [line, reason] : plan.refused)
        std::printf("%s:%zu: %s\n", plain(options.import).c_str(), line,
                    inTone(Tone::Low, plain("refused: " + reason)).c_str());
    const bool store = !options.dryRun && (plan.refused.empty() || options.skipRefused);
    if (store)
        storeImport(plan, options.roster, courses);
    std::printf("%s%zu added, %zu changed, %zu unchanged, %zu refused\n",
                store ? "" : "would be: ", plan.added.size(), plan.changed.size(), plan.unchanged,
                plan.refused.size());
    if (!store)
        std::printf("nothing was stored%s\n",
                    options.dryRun ? "" : ": mend the rows, or leave them out with --skip-refused");
    return plan.refused.empty() ? kWell : kFound;
}

int roster(const RosterOptions& options) {
    const Ref<Courses> courses = loadCourses(options);
    auto students = New<Students>();
    // To be shown, a roster need not agree with the courses.
    if (!students->Load(options.roster, options.import.empty() ? nullptr : courses.get()))
        throw Failure(options.roster + ": " + reasonAbout(options.roster));
    if (!options.import.empty())
        return import(*students, courses.get(), options);
    show(*students, options);
    return kWell;
}

} // namespace

extern const Command kRoster;
const Command kRoster{
    "roster", "Show a roster, write it as CSV, or import students from CSV",
    "A CSV file's first line names its columns: StudentID, LastName, FirstName, MiddleInit, Course, "
    "Section,\n"
    "UserName; an import may have Password too. A row without StudentID gets the next free one. Every row "
    "is\n"
    "checked first, and when one is refused nothing is stored (code 1). Digests are never written.\n\n"
    "Example: kavlor roster students.xml --sort LastName,FirstName --filter Course=1 --csv\n"
    "Example: kavlor roster students.xml --import new.csv --dry-run",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<RosterOptions>();
        arguments.required("ROSTER", options->roster, "The roster's file or web address");
        arguments.option("--sort", options->sort, "Sort by up to three fields", "FIELD,FIELD");
        arguments.several("--filter", options->filters, "Show students of this value alone; up to three",
                          "FIELD=VALUE");
        arguments.flag("--csv", options->csv, "Write CSV");
        arguments.option("--import", options->import, "Add the students of a CSV file", "FILE");
        arguments.flag("--dry-run", options->dryRun, "Say what an import would do, and store nothing");
        arguments.flag("--update", options->update, "Let an import change students who are there");
        arguments.flag("--skip-refused", options->skipRefused, "Import the other rows when some are refused");
        arguments.option("--courses", options->courses, "The courses; else courses.xml beside the roster",
                         "FILE");
        return [options] { return roster(*options); };
    }};

} // namespace norvakavlor::kavlor
