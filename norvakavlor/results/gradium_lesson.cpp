#include <norvakavlor/results/gradium_lesson.h>

#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {

const Ref<Lesson>& GradiumLesson::theLesson() {
    if (!lesson_)
        lesson_ = New<Lesson>();
    return lesson_;
}

void GradiumLesson::SetTheLesson(const Ref<Lesson>& lesson) { lesson_ = lesson; }

bool GradiumLesson::Load(const std::string& filename, TaskPool* taskPool, const std::string& iniLocation) {
    return Operation("launch", {}, filename).run([&] {
        const auto document = fetch(filename, iniLocation);
        return document && document->read([&](xml::Node root) {
            return LoadFromXMLNode(courseOf(root), taskPool, filename);
        });
    });
}

bool GradiumLesson::LoadFromXMLNode(xml::Node gradiumLessonNode, TaskPool* taskPool, const std::string& url) {
    readCourse(gradiumLessonNode);
    const xml::Node lesson = gradiumLessonNode.child("LESSON").child("lesson");
    return !lesson || theLesson()->LoadFromXMLNode(lesson, taskPool, url);
}

bool GradiumLesson::Save(const std::string& filename, bool suppressServerErrorMsg) {
    if (filename.empty())
        return submit(buildSubmitBody(), suppressServerErrorMsg);
    xml::Document document;
    SaveToXMLNode(newCourse(document));
    return storeRecord(filename, document);
}

bool GradiumLesson::SaveToXMLNode(xml::Node gradiumLessonNode) {
    writeCourse(gradiumLessonNode);
    // Load looks elsewhere, but readers of these records expect the lesson in "EXAM".
    return theLesson()->SaveToXMLNode(gradiumLessonNode.append("EXAM"));
}

/// Unlike an exam's, this body has no leading "&"; its values are unescaped, too.
std::string GradiumLesson::buildSubmitBody() {
    const Lesson& lesson = *theLesson();
    std::string body = "studentName=" + StudentFirstName + StudentLastName + "&student_id=" + StudentID +
                       "&lesson_id=" + lesson.LessonID + "&assignment_id=" + lesson.ExternalID +
                       "&moduleName=" + lesson.Title + "&key=" + accessKey();
    int32_t counter = 0;
    for (const Ref<Task>& task : *lesson.Tasks) {
        const std::string n = std::to_string(counter++);
        body.append("&task_id" + n + "=" + task->ID)
            .append("&completed" + n + "=" + (task->CompletionDate.isSet() ? "Y" : "N"));
    }
    return body;
}

bool GradiumLesson::Delete(const std::string& filename) const { return deleteRecord(filename); }

const ClassInfo& GradiumLesson::classInfo() {
    static const ClassInfo info = [] {
        auto description =
            describe<GradiumLesson>("GradiumLesson", "A lesson that was launched from the gradebook.");
        return ClassInfo(
            describeRecord(description)
                .property("theLesson", &GradiumLesson::theLesson, &GradiumLesson::SetTheLesson,
                          "The lesson; made on first use.")
                .method("Load", &GradiumLesson::Load, {"filename", {"TaskPool", optional}, "iniLocation"},
                        "Loads a launch document or a record; False when it does not parse.")
                .method("LoadFromXMLNode", &GradiumLesson::LoadFromXMLNode,
                        {"gradiumLessonNode", {"TaskPool", optional}, "URL"}, "Reads a COURSE element.")
                .method("Save", &GradiumLesson::Save, {"filename", {"suppressServerErrorMsg", optional}},
                        "Submits the results, or with a file name stores the record.")
                .method("SaveToXMLNode", &GradiumLesson::SaveToXMLNode, {"gradiumLessonNode"},
                        "Fills a COURSE element; always True.")
                .method("Delete", &GradiumLesson::Delete, {"filename"}, "Deletes a local record."));
    }();
    return info;
}

} // namespace norvakavlor
