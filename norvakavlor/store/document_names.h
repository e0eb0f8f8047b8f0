#pragma once

#include <string_view>

/// What documents are called: the kind that a request to the server names, the root element, the end of the
/// file name where that tells the kind.
namespace norvakavlor {

/// The names that the documents of one kind and the requests for them use.
struct DocumentNames {
    std::string_view kind; ///< object kind in the server's requests
    std::string_view root; ///< name of the document element
};

inline constexpr DocumentNames kTextBooksDocument{"TextBooks", "textBookList"};
inline constexpr DocumentNames kCoursesDocument{"Courses", "classes"};
inline constexpr DocumentNames kObjectivesDocument{"Objectives", "objectiveList"};
inline constexpr DocumentNames kTaskPoolDocument{"TaskPool", "taskPool"};
inline constexpr DocumentNames kQuestionPoolDocument{"QuestionPool", "questionPool"};
inline constexpr DocumentNames kExamDocument{"Exam", "exam"};
inline constexpr DocumentNames kExamInfoDocument{"ExamInfo", "exam"};       ///< a listing with results
inline constexpr DocumentNames kExamSummaryDocument{"ExamSummary", "exam"}; ///< a class's attempts, added up
inline constexpr DocumentNames kExamListDocument{"ExamList", "examList"};
inline constexpr DocumentNames kPreferencesDocument{"Preferences", "pref"};
inline constexpr DocumentNames kStudentsDocument{"Students", "students"};
inline constexpr DocumentNames kLiveExResultsDocument{"LiveExResults", "liveResults"};
inline constexpr DocumentNames kLessonDocument{"Lesson", "lesson"};
inline constexpr DocumentNames kTextbookLessonDocument{"TextbookLesson", "lesson"};
inline constexpr DocumentNames kLessonMenuDocument{"LessonMenu", "lessonMenu"};
inline constexpr DocumentNames kTextbookLessonMenuDocument{"TextbookLessonMenu", "lessonMenu"};

/// Every kind. A page that tells of an error is told from a document by its root.
inline constexpr DocumentNames kDocumentNames[] = {
    kTextBooksDocument,    kCoursesDocument,        kObjectivesDocument, kTaskPoolDocument,
    kQuestionPoolDocument, kExamDocument,           kExamInfoDocument,   kExamSummaryDocument,
    kExamListDocument,     kPreferencesDocument,    kStudentsDocument,   kLiveExResultsDocument,
    kLessonDocument,       kTextbookLessonDocument, kLessonMenuDocument, kTextbookLessonMenuDocument,
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

/// One student of a roster, in the request that deletes him: the roster's document stays.
inline constexpr std::string_view kStudentKind = "Student";

/// The root of the gradebook's launch documents and of the records of what it launched.
inline constexpr std::string_view kLaunchRoot = "ORBEX_INPUTS";

/// In the names of exams and lessons; what follows it there tells a student's file from an authored one.
inline constexpr std::string_view kExamMark = "_kvqm";
inline constexpr std::string_view kLessonMark = "_kvl";
/// A live exercise that was launched and waits for its result is kept under this and its ID.
inline constexpr std::string_view kLiveLaunchStart = "GradiumLiveEx_";
/// The ends of the other file names.
inline constexpr std::string_view kDocumentEnd = ".xml";
inline constexpr std::string_view kExamListEnd = "_kvql.xml";
inline constexpr std::string_view kLessonMenuEnd = "_LM.XML"; ///< in any letter case

} // namespace norvakavlor
