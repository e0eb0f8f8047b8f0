#pragma once

#include <string_view>

namespace norvakavlor {

/// The names that the documents of one kind and the requests for them use.
struct DocumentNames {
    std::string_view kind; ///< object kind in the server's requests
    std::string_view root; ///< name of the document element
};

/// Every kind. A page that tells of an error is told from a document by its root.
inline constexpr DocumentNames kDocumentNames[] = {
    {"TextBooks", "textBookList"},
    {"Courses", "classes"},
    {"Objectives", "objectiveList"},
    {"TaskPool", "taskPool"},
    {"QuestionPool", "questionPool"},
    {"Exam", "exam"},
    {"ExamInfo", "exam"},
    {"ExamSummary", "exam"},
    {"ExamList", "examList"},
    {"Preferences", "pref"},
    {"Students", "students"},
    {"LiveExResults", "liveResults"},
    {"Lesson", "lesson"},
    {"TextbookLesson", "lesson"},
    {"LessonMenu", "lessonMenu"},
    {"TextbookLessonMenu", "lessonMenu"},
};

/// The names of a kind; without a root when there is no such kind. What follows an "&" is a parameter of the
/// request and not of the kind.
constexpr DocumentNames namesOf(std::string_view kind) {
    for (const DocumentNames& names : kDocumentNames) {
        if (names.kind == kind.substr(0, kind.find('&')))
            return names;
    }
    return {kind, {}};
}

} // namespace norvakavlor
