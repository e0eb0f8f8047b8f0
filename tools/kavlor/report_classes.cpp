#include "console.h"
#include "html.h"
#include "report.h"

#include <algorithm>
#include <limits>

namespace norvakavlor::kavlor {
namespace {

constexpr size_t kShortList = 40; ///< students whose rows stand open on the page

std::string standing(Standing value) {
    switch (value) {
    case Standing::Done:
        return "<span class=\"tag good\">done</span>";
    case Standing::Begun:
        return "<span class=\"tag mid\">on the way</span>";
    case Standing::NotBegun:
        return "<span class=\"tag none\">not begun</span>";
    }
    return "";
}

std::string averageOf(const std::optional<double>& average) {
    return average ? percentBar(*average) : "<span class=\"fine\">no result yet</span>";
}

std::string outOf(size_t done, size_t all) {
    return all ? grouped(done) + " of " + grouped(all) : "<span class=\"fine\">none</span>";
}

std::string overviewRow(const ClassResult& result, size_t place) {
    const size_t done = result.count(Standing::Done);
    const size_t begun = result.count(Standing::Begun);
    const size_t waiting = result.count(Standing::NotBegun);
    const std::string said =
        grouped(done) + " done, " + grouped(begun) + " on the way, " + grouped(waiting) + " not begun";
    const size_t low = result.below(kLowBelow);
    return "<tr><th scope=\"row\"><a href=\"#" + classAnchor(place) + "\">" + className(result) +
           "</a></th>" + cell("Students", grouped(result.students.size()), "num") +
           cell("Progress", sharesBar({{done, "good"}, {begun, "mid"}, {waiting, "none"}}, said) +
                                "<span class=\"said\">" + said + "</span>") +
           cell("Average", averageOf(result.average()), "avg") +
           cell("Below " + percent(kLowBelow), low ? "<b class=\"t-low\">" + grouped(low) + "</b>" : "0",
                "num") +
           "</tr>\n";
}

/// Who needs help comes first: the lowest averages, then who has none, each in the order of the roster.
std::vector<const StudentResult*> byNeed(const ClassResult& result) {
    std::vector<const StudentResult*> rows;
    for (const StudentResult& row : result.students)
        rows.push_back(&row);
    const auto rank = [](const StudentResult* row) {
        return row->average.value_or(std::numeric_limits<double>::max());
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const auto* left, const auto* right) { return rank(left) < rank(right); });
    return rows;
}

std::string studentsOf(const ClassResult& result, size_t place, bool open) {
    std::string table =
        "<details id=\"" + classAnchor(place) + "\"" + (open ? " open" : "") + "><summary><h3>" +
        className(result) + "</h3><span class=\"sum\">" +
        counted(result.students.size(), "student", "students") +
        (result.average() ? ", " + percent(*result.average()) + " on average" : "") +
        "</span></summary>\n<table class=\"students\"><thead><tr><th scope=\"col\">Student</th>"
        "<th scope=\"col\">ID</th><th scope=\"col\">State</th><th scope=\"col\">Average</th>"
        "<th scope=\"col\">Exams</th><th scope=\"col\">Lessons</th></tr></thead><tbody>\n";
    for (const StudentResult* row : byNeed(result)) {
        table += "<tr><th scope=\"row\">" + name(fullName(*row->student)) + "</th>" +
                 cell("ID", name(row->student->StudentID), "id") + cell("State", standing(row->standing)) +
                 cell("Average", averageOf(row->average), "avg") +
                 cell("Exams", outOf(row->examsFinished, result.exams), "num") +
                 cell("Lessons", outOf(row->lessonsDone, result.lessons), "num") + "</tr>\n";
    }
    return table + "</tbody></table></details>\n";
}

} // namespace

std::string classesSection(const School& school) {
    std::string result = "<section id=\"classes\" class=\"block\"><h2>Classes</h2>";
    if (school.classes.empty())
        return result + "<p class=\"fine\">The roster has no students.</p></section>\n";
    result +=
        "<p class=\"key\"><span class=\"dot good\"></span>done: finished every exam and lesson of the class"
        "<span class=\"dot mid\"></span>on the way<span class=\"dot none\"></span>not begun</p>"
        "<table class=\"classes\"><thead><tr><th scope=\"col\">Class</th><th scope=\"col\">Students</th>"
        "<th scope=\"col\">Progress</th><th scope=\"col\">Average</th><th scope=\"col\">Below " +
        percent(kLowBelow) + "</th></tr></thead><tbody>\n";
    size_t students = 0;
    for (size_t place = 0; place < school.classes.size(); ++place) {
        result += overviewRow(school.classes[place], place);
        students += school.classes[place].students.size();
    }
    result += "</tbody></table>\n";
    for (size_t place = 0; place < school.classes.size(); ++place)
        result += studentsOf(school.classes[place], place, students <= kShortList);
    return result + "</section>\n";
}

} // namespace norvakavlor::kavlor
