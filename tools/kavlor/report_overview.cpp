#include "console.h"
#include "html.h"
#include "report.h"
#include "text_table.h"

#include <algorithm>

namespace norvakavlor::kavlor {
namespace {

constexpr size_t kShown = 5; ///< entries of each list; the sections below have them all

std::string tile(const std::string& label, const std::string& figure, const std::string& below) {
    return "<div class=\"tile\"><h2>" + label + "</h2><p class=\"figure\">" + figure +
           "</p><div class=\"under\">" + below + "</div></div>";
}

std::string averageTile(const School& school) {
    const auto average = school.average();
    if (!average)
        return tile("Average", "&ndash;", "no exam is finished yet");
    static constexpr const char* kWords[] = {"needs help", "fair", "good"};
    static constexpr const char* kKinds[] = {"low", "fair", "good"};
    const auto grade = static_cast<size_t>(gradeOf(*average));
    return tile("Average",
                "<span class=\"t-" + std::string(kKinds[grade]) + "\">" + percent(*average) + "</span>",
                percentBar(*average).substr(0, percentBar(*average).find("<b")) + kWords[grade]);
}

std::string progressTile(const School& school) {
    const size_t done = school.count(Standing::Done);
    const size_t begun = school.count(Standing::Begun);
    const size_t waiting = school.count(Standing::NotBegun);
    return tile("Students done", grouped(done) + "<small> of " + grouped(done + begun + waiting) + "</small>",
                sharesBar({{done, "good"}, {begun, "mid"}, {waiting, "none"}}, "progress of all students") +
                    grouped(begun) + " on the way, " + grouped(waiting) + " not begun");
}

std::string helpTile(const School& school) {
    const size_t low = school.below(kLowBelow);
    return tile("Students below " + percent(kLowBelow),
                low ? "<span class=\"t-low\">" + grouped(low) + "</span>"
                    : "<span class=\"t-good\">none</span>",
                low ? "<a href=\"#help\">who they are</a>" : "nobody's average is that low");
}

std::string faultTile(const School& school) {
    const size_t faults = school.faults.size();
    return tile("Faulty documents",
                faults ? "<span class=\"t-low\">" + grouped(faults) + "</span>"
                       : "<span class=\"t-good\">none</span>",
                faults ? "<a href=\"#faults\">what is wrong</a>"
                       : counted(school.attempts(), "attempt", "attempts") + " read");
}

std::string panel(const std::string& title, const std::string& entries, const std::string& empty,
                  size_t total, const char* where) {
    std::string result = "<section class=\"panel\"><h3>" + title + "</h3>";
    result += entries.empty() ? "<p class=\"fine\">" + empty + "</p>" : "<ol>" + entries + "</ol>";
    if (total > kShown)
        result += "<p class=\"more\"><a href=\"" + std::string(where) + "\">and " + grouped(total - kShown) +
                  " more</a></p>";
    return result + "</section>";
}

std::string lowestStudents(const School& school) {
    struct Entry {
        const StudentResult* row;
        size_t place;
    };
    std::vector<Entry> low;
    for (size_t place = 0; place < school.classes.size(); ++place) {
        for (const StudentResult& row : school.classes[place].students) {
            if (row.average && gradeOf(*row.average) == Grade::Low)
                low.push_back({&row, place});
        }
    }
    std::stable_sort(low.begin(), low.end(), [](const Entry& left, const Entry& right) {
        return *left.row->average < *right.row->average;
    });
    std::string entries;
    for (size_t at = 0; at < std::min(low.size(), kShown); ++at) {
        const ClassResult& own = school.classes[low[at].place];
        entries += "<li><div class=\"who\"><span>" + name(fullName(*low[at].row->student)) +
                   "</span><a class=\"in\" href=\"#" + classAnchor(low[at].place) + "\">" + className(own) +
                   "</a></div><div class=\"val\">" + percentBar(*low[at].row->average) + "</div></li>";
    }
    return panel("Lowest averages", entries, "No student's average is below " + percent(kLowBelow) + ".",
                 low.size(), "#classes");
}

std::string hardestQuestions(const School& school) {
    struct Entry {
        const QuestionResult* result;
        size_t place;
    };
    std::vector<Entry> hard;
    for (size_t place = 0; place < school.exams.size(); ++place) {
        for (const QuestionResult* result :
             school.exams[place].hardest(school.exams[place].questions.size(), kLowBelow))
            hard.push_back({result, place});
    }
    std::stable_sort(hard.begin(), hard.end(), [](const Entry& left, const Entry& right) {
        return left.result->share() < right.result->share();
    });
    std::string entries;
    for (size_t at = 0; at < std::min(hard.size(), kShown); ++at) {
        const Question& question = *hard[at].result->question;
        entries += "<li><div class=\"who\"><span>" +
                   name(question.Text.empty() ? question.ID : withoutMarkup(question.Text)) +
                   "</span><a class=\"in\" href=\"#" + examAnchor(hard[at].place) + "\">" +
                   name(school.exams[hard[at].place].exam->Title) + "</a></div><div class=\"val\">" +
                   percentBar(100 * hard[at].result->share()) + "</div></li>";
    }
    return panel("Hardest questions", entries, "Every question was answered right by half of the students.",
                 hard.size(), "#exams");
}

std::string notBegun(const School& school) {
    std::vector<size_t> places;
    for (size_t place = 0; place < school.classes.size(); ++place) {
        if (school.classes[place].count(Standing::NotBegun) > 0)
            places.push_back(place);
    }
    const auto waiting = [&](size_t place) { return school.classes[place].count(Standing::NotBegun); };
    std::stable_sort(places.begin(), places.end(),
                     [&](size_t left, size_t right) { return waiting(left) > waiting(right); });
    std::string entries;
    for (size_t at = 0; at < std::min(places.size(), kShown); ++at) {
        const ClassResult& own = school.classes[places[at]];
        entries += "<li><div class=\"who\"><a href=\"#" + classAnchor(places[at]) + "\">" + className(own) +
                   "</a></div><div class=\"val\"><b>" + grouped(waiting(places[at])) + "</b> of " +
                   grouped(own.students.size()) + "</div></li>";
    }
    return panel("Not begun", entries, "Every student has begun.", places.size(), "#classes");
}

} // namespace

std::string overview(const School& school) {
    return "<div class=\"tiles\">" + averageTile(school) + progressTile(school) + helpTile(school) +
           faultTile(school) +
           "</div>\n<section id=\"help\" class=\"block\"><h2>What needs help</h2><div class=\"panels\">" +
           lowestStudents(school) + hardestQuestions(school) + notBegun(school) + "</div></section>\n";
}

} // namespace norvakavlor::kavlor
