#include "console.h"
#include "html.h"
#include "report.h"

namespace norvakavlor::kavlor {

std::string classAnchor(size_t position) { return "class-" + std::to_string(position + 1); }
std::string examAnchor(size_t position) { return "exam-" + std::to_string(position + 1); }

std::string fullName(const Student& student) {
    std::string result = student.FirstName;
    for (const std::string& part : {student.MiddleInit, student.LastName})
        result += (result.empty() || part.empty() ? "" : " ") + part;
    return result.empty() ? student.StudentID : result;
}

std::string className(const ClassResult& result) {
    return name(result.course) +
           (result.section.empty() ? "" : "<span class=\"sep\">, </span>" + name(result.section));
}

std::string reportPage(const School& school, const std::string& moment) {
    const std::string folder = pathText(pathFrom(school.installation.path()).parent_path().filename());
    const std::string title = folder.empty() || folder == "." ? "How the classes are doing" : folder;
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
           "<meta name=\"color-scheme\" content=\"light dark\">"
           // Nothing may run or be loaded, whatever a document's text tries.
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
           "'unsafe-inline'\">"
           "<title>" +
           escaped(title) + ": report</title><style>" + kReportStyle +
           "</style></head>\n<body><a class=\"skip\" href=\"#main\">To the report</a>"
           "<header><div class=\"wrap\"><p class=\"kicker\">Report of " +
           escaped(moment) + "</p><h1>" + name(title) +
           "</h1><nav aria-label=\"Parts of the report\"><a href=\"#help\">Needs help</a><a "
           "href=\"#classes\">Classes</a>"
           "<a href=\"#exams\">Exams</a><a href=\"#lessons\">Lessons</a><a href=\"#faults\">Faults</a>"
           "<a href=\"#contents\">Contents</a></nav></div></header>\n<main id=\"main\" class=\"wrap\">" +
           overview(school) + classesSection(school) + examsSection(school) + restSections(school) +
           "</main>\n<footer class=\"wrap\"><p>Each student counts once in an exam, with the latest attempt. "
           "Averages are of "
           "finished attempts; a question's bar counts every attempt that was read. Below " +
           percent(kLowBelow) + " needs help, from " + percent(kGoodFrom) + " is good. kavlor " +
           std::string(kVersion) + "</p></footer></body></html>\n";
}

} // namespace norvakavlor::kavlor
