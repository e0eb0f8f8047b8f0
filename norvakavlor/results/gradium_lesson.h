#pragma once

#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/results/gradium_record.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumLesson;

/// A lesson launched from the gradebook, with its student, its course and the address for results. Its
/// methods work like GradiumExam's except as said here.
class GradiumLesson final : public GradiumRecord {
public:
    /// The lesson. First use makes one if the client set none.
    const Ref<Lesson>& theLesson();
    void SetTheLesson(const Ref<Lesson>& lesson);

    /// Like GradiumExam::Load, with a lesson. Raises 0x800C0005 if no reply comes, and as
    /// Lesson::LoadFromXMLNode does.
    bool Load(const std::string& filename, TaskPool* taskPool, const std::string& iniLocation);
    /// Reads the "lesson" in a "LESSON" element; True also without one. Records that this class saved hold
    /// their lesson elsewhere, so it is not read back: save the lesson as well. Raises as
    /// Lesson::LoadFromXMLNode does.
    bool LoadFromXMLNode(xml::Node gradiumLessonNode, TaskPool* taskPool, const std::string& url);

    /// Like GradiumExam::Save. Raises as GradiumExam::Save does.
    bool Save(const std::string& filename, bool suppressServerErrorMsg = false);
    /// Fills a COURSE element, the lesson in an "EXAM" element. Always True.
    bool SaveToXMLNode(xml::Node gradiumLessonNode);

    /// Like GradiumExam::Delete.
    bool Delete(const std::string& filename) const;

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody();

    Ref<Lesson> lesson_;
};

} // namespace norvakavlor
