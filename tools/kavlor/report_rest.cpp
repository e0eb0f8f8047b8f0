#include "console.h"
#include "html.h"
#include "report.h"

namespace norvakavlor::kavlor {
namespace {

std::string lessonRow(const LessonProgress& progress, size_t students) {
    const size_t done = progress.done();
    const size_t begun = progress.copies.size() - done;
    const size_t waiting = students > done + begun ? students - done - begun : 0;
    const std::string said =
        grouped(done) + " done, " + grouped(begun) + " on the way, " + grouped(waiting) + " not begun";
    return "<li><div class=\"who\"><span>" + name(progress.lesson->Title) + "</span><span class=\"in\">" +
           counted(static_cast<size_t>(progress.lesson->Tasks->Count()), "task", "tasks") +
           "</span></div><div class=\"val\">" +
           sharesBar({{done, "good"}, {begun, "mid"}, {waiting, "none"}}, said) + "<span class=\"count\">" +
           said + "</span></div></li>\n";
}

std::string lessonsSection(const School& school) {
    const auto students = static_cast<size_t>(school.installation.students->StudentMembers->Count());
    std::string result = "<section id=\"lessons\" class=\"block\"><h2>Lessons</h2>";
    if (school.menus.empty())
        result += "<p class=\"fine\">There are no lesson menus.</p>";
    for (const MenuProgress& menu : school.menus) {
        result += "<section class=\"panel menu\"><h3>" + name(menu.menu->Title) + "</h3>";
        for (const MenuProgress::Part& part : menu.parts) {
            result += "<h4>" + name(part.title) + "</h4><ul class=\"questions\">\n";
            for (const LessonProgress* progress : part.lessons)
                result += lessonRow(*progress, students);
            result += "</ul>";
        }
        result += "</section>\n";
    }
    return result + "</section>\n";
}

std::string faultsSection(const School& school) {
    constexpr size_t kMost = 200; ///< more would bury the page; kavlor's commands name each
    std::string result = "<section id=\"faults\" class=\"block\"><h2>Faults</h2>";
    if (school.faults.empty())
        return result + "<p class=\"fine\">Every document that was read is as it should be.</p></section>\n";
    result += "<ul class=\"faults\">\n";
    for (size_t at = 0; at < school.faults.size() && at < kMost; ++at)
        result += "<li><span class=\"doc\">" + name(school.faults[at].document) + "</span> " +
                  name(school.faults[at].text) + "</li>\n";
    result += "</ul>";
    if (school.faults.size() > kMost)
        result += "<p class=\"fine\">and " + grouped(school.faults.size() - kMost) + " more</p>";
    return result + "</section>\n";
}

std::string fact(const char* what, int32_t count) {
    return std::string("<div><dt>") + what + "</dt><dd>" + grouped(static_cast<size_t>(count)) +
           "</dd></div>";
}

std::string contentsSection(const School& school) {
    const Installation& own = school.installation;
    return "<section id=\"contents\" class=\"block\"><h2>What the installation holds</h2><dl "
           "class=\"facts\">" +
           fact("Courses", own.courses->CourseMembers->Count()) +
           fact("Students", own.students->StudentMembers->Count()) +
           fact("Exams", static_cast<int32_t>(school.exams.size())) +
           fact("Attempts", static_cast<int32_t>(school.attempts())) +
           fact("Lessons", static_cast<int32_t>(school.lessons.size())) +
           fact("Lesson menus", static_cast<int32_t>(school.menus.size())) +
           fact("Questions", own.questions->Questions->Count()) + fact("Tasks", own.tasks->Tasks->Count()) +
           fact("Objectives", own.objectives->ObjectiveMembers->Count()) +
           fact("Textbooks", own.textBooks->textBooks->Count()) + "</dl></section>\n";
}

} // namespace

std::string restSections(const School& school) {
    return lessonsSection(school) + faultsSection(school) + contentsSection(school);
}

} // namespace norvakavlor::kavlor
