#include "console.h"
#include "html.h"
#include "report.h"
#include "text_table.h"

#include <algorithm>

namespace norvakavlor::kavlor {
namespace {

constexpr size_t kHardest = 3;

/// Columns of how many students reached which percentage, as a drawing with a text in its place.
std::string spreadOf(const ExamResults& results) {
    const auto counts = results.spread();
    const size_t most = *std::max_element(counts.begin(), counts.end());
    std::string label;
    std::string columns;
    for (size_t ten = 0; ten < counts.size(); ++ten) {
        const std::string range = std::to_string(10 * ten) + " to " + std::to_string(10 * ten + 10) + "%";
        label += (ten ? "; " : "") + range + ": " + grouped(counts[ten]);
        static constexpr const char* kKinds[] = {"low", "fair", "good"};
        // A column has the grade of where it begins: that from 70 % is fair.
        const auto kind = static_cast<size_t>(gradeOf(10.0 * static_cast<double>(ten)));
        const size_t height = most ? (100 * counts[ten] + most - 1) / most : 0;
        columns += "<span class=\"col\"><i>" + (counts[ten] ? grouped(counts[ten]) : "") +
                   "</i><span class=\"" + kKinds[kind] + "\" style=\"height:" + std::to_string(height) +
                   "%\"></span></span>";
    }
    return "<figure class=\"spread\"><div role=\"img\" aria-label=\"Students by percentage. " + label +
           "\">" + columns +
           "</div><div class=\"axis\" "
           "aria-hidden=\"true\"><span>0%</span><span>50%</span><span>100%</span></div>"
           "<figcaption>Students by percentage</figcaption></figure>";
}

std::string questionRow(const QuestionResult& result, bool isHard) {
    const Question& question = *result.question;
    const std::string counts = grouped(result.right) + " of " + grouped(result.asked);
    return std::string("<li") + (isHard ? " class=\"hard\"" : "") + "><div class=\"who\"><span>" +
           name(question.Text.empty() ? question.ID : withoutMarkup(question.Text)) +
           "</span><span class=\"in\">" + name(question.ID) +
           (isHard ? " <span class=\"tag low\">among the hardest</span>" : "") +
           (question.Remediation.empty()
                ? ""
                : "<span class=\"rem\">Remediation: " + name(question.Remediation) + "</span>") +
           "</span></div><div class=\"val\">" +
           (result.asked ? percentBar(100 * result.share()) + "<span class=\"count\">" + counts + "</span>"
                         : "<span class=\"fine\">not answered yet</span>") +
           "</div></li>\n";
}

std::string examCard(const School& school, size_t place, bool open) {
    const ExamResults& results = school.exams[place];
    const size_t going = results.outcomes.size() - results.finished();
    std::string facts =
        counted(results.outcomes.size(), "student", "students") +
        (going ? ", " + grouped(going) + " still at it" : "") +
        (results.retaken ? ", " + counted(results.retaken, "earlier attempt", "earlier attempts") : "") +
        (results.leftOut.empty()
             ? ""
             : ", <b class=\"t-low\">" + counted(results.leftOut.size(), "attempt", "attempts") +
                   " left out</b>");
    std::string card =
        "<details class=\"exam\" id=\"" + examAnchor(place) + "\"" + (open ? " open" : "") +
        "><summary><h3>" + name(results.exam->Title) + "</h3><span class=\"sum\">" + facts + "</span>" +
        (results.finished() ? "<span class=\"sumbar\">" + percentBar(results.average()) + "</span>" : "") +
        "</summary>\n";
    if (results.outcomes.empty())
        return card + "<p class=\"fine\">Nobody has taken it yet.</p></details>\n";
    const auto hardest = results.hardest(kHardest, kGoodFrom);
    card += "<div class=\"body\">" + spreadOf(results) +
            "<div><h4>Right answers by question</h4><ul class=\"questions\">\n";
    for (const QuestionResult& result : results.questions)
        card += questionRow(result, std::find(hardest.begin(), hardest.end(), &result) != hardest.end());
    return card + "</ul></div></div></details>\n";
}

} // namespace

std::string examsSection(const School& school) {
    constexpr size_t kFew = 4; ///< exams that stand open on the page
    std::string result = "<section id=\"exams\" class=\"block\"><h2>Exams</h2>";
    if (school.exams.empty())
        result += "<p class=\"fine\">There are no exams.</p>";
    for (size_t place = 0; place < school.exams.size(); ++place)
        result += examCard(school, place, school.exams.size() <= kFew);
    return result + "</section>\n";
}

} // namespace norvakavlor::kavlor
