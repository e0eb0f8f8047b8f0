#pragma once

#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/results/gradium_record.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumLesson;

/// A lesson that was launched from the gradebook, with the student, the course and the address for its
/// results. Its methods are those of GradiumExam but for what is said here.
class GradiumLesson final : public GradiumRecord {
public:
    /// The lesson; made on first use when a client has set none.
    const Ref<Lesson>& theLesson();
    void SetTheLesson(const Ref<Lesson>& lesson);

    /// As GradiumExam::Load, with what loading a lesson raises in place of an exam.
    bool Load(const std::string& filename, TaskPool* taskPool, const std::string& iniLocation);
    /// The lesson is the "lesson" in a "LESSON" element; without it, True and no lesson. A record that this
    /// class saved has its lesson elsewhere and does not bring it back: save the lesson beside it.
    bool LoadFromXMLNode(xml::Node gradiumLessonNode, TaskPool* taskPool, const std::string& url);

    /// As GradiumExam::Save.
    bool Save(const std::string& filename, bool suppressServerErrorMsg = false);
    /// Fills a COURSE element, the lesson in an "EXAM" element. Always True.
    bool SaveToXMLNode(xml::Node gradiumLessonNode);

    /// As GradiumExam::Delete.
    bool Delete(const std::string& filename) const;

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody();

    Ref<Lesson> lesson_;
};

} // namespace norvakavlor
