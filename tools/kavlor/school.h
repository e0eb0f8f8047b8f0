#pragma once

#include "exam_results.h"

#include <optional>
#include <set>

namespace norvakavlor::kavlor {

/// A lesson with the students' copies of it.
struct LessonProgress {
    std::string path;
    Ref<Lesson> lesson;
    std::map<std::string, bool>
        copies; ///< by StudentID: is every task done? Copies without any are left out.
    size_t done() const;
};

struct MenuProgress {
    Ref<LessonMenu> menu;
    struct Part {
        std::string title;
        std::vector<const LessonProgress*> lessons;
    };
    std::vector<Part> parts; ///< its tutorials but for the spacers
};

enum class Standing { Done, Begun, NotBegun };

/// A student and the work of the class: its exams and lessons.
struct StudentResult {
    Ref<Student> student;
    Standing standing = Standing::NotBegun;
    size_t examsFinished = 0;
    size_t lessonsDone = 0;
    std::optional<double> average; ///< of the finished exams
};

/// The students of one section of a course.
struct ClassResult {
    std::string course;
    std::string section; ///< "" without one
    std::vector<StudentResult> students;
    size_t exams = 0;   ///< that are the class's: assigned to it or begun by a student of it
    size_t lessons = 0; ///< likewise
    size_t count(Standing standing) const;
    /// Of the students' averages; nothing without any.
    std::optional<double> average() const;
    size_t
    below(double percentage) const; ///< how many students' averages, rounded as they are shown, are lower
};

/// All that a report tells of an installation.
class School {
public:
    /// Reads everything under the folder, with progress on a terminal. What does not load is a fault.
    explicit School(const std::string& folder);

    Installation installation;
    std::vector<ExamResults> exams;
    std::vector<LessonProgress> lessons;
    std::vector<MenuProgress> menus;
    std::vector<ClassResult> classes; ///< those with students, in the order of the courses
    std::vector<Fault> faults;        ///< documents are relative to the folder

    size_t attempts() const;
    size_t count(Standing standing) const;
    std::optional<double> average() const; ///< of all students' averages
    size_t below(double percentage) const;

private:
    void readExams();
    void readLessons();
    void readCopies(const Installation::Folder& folder, const std::string& file, LessonProgress& progress);
    void readMenus();
    void formClasses();
    void fillClass(ClassResult& result, const std::string& courseID, const std::string& sectionID) const;
};

} // namespace norvakavlor::kavlor
