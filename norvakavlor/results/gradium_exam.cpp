#include <norvakavlor/results/gradium_exam.h>

#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {

const Ref<Exam>& GradiumExam::theExam() {
    if (!exam_)
        exam_ = New<Exam>();
    return exam_;
}

void GradiumExam::SetTheExam(const Ref<Exam>& exam) { exam_ = exam; }

bool GradiumExam::Load(const std::string& filename, QuestionPool* thePool, const std::string& iniLocation) {
    return Operation("launch", {}, filename).run([&] {
        const auto document = fetch(filename, iniLocation);
        return document && document->read([&](xml::Node root) {
            return LoadFromXMLNode(courseOf(root), thePool, filename);
        });
    });
}

bool GradiumExam::LoadFromXMLNode(xml::Node gradiumExamNode, QuestionPool* thePool, const std::string& url) {
    readCourse(gradiumExamNode);
    const xml::Node exam = gradiumExamNode.selectSingleNode("EXAM_LIST/EXAM");
    return !exam || theExam()->LoadFromXMLNode(exam, thePool, url);
}

bool GradiumExam::Save(const std::string& filename, bool suppressServerErrorMsg) {
    if (filename.empty())
        return submit(buildSubmitBody(), suppressServerErrorMsg);
    xml::Document document;
    SaveToXMLNode(newCourse(document));
    return storeRecord(filename, document);
}

bool GradiumExam::SaveToXMLNode(xml::Node gradiumExamNode) {
    writeCourse(gradiumExamNode);
    return theExam()->SaveToXMLNode(gradiumExamNode.append("EXAM_LIST").append("EXAM"));
}

/// The gradebook relies on the leading "&" and on unescaped values.
std::string GradiumExam::buildSubmitBody() {
    const Exam& exam = *theExam();
    std::string body = "&student_id=" + StudentID + "&exam_id=" + exam.ID +
                       "&assignment_id=" + exam.ExternalID +
                       "&ttTaskTime=" + std::to_string(exam.TimeExpired) + "&key=" + accessKey();
    int32_t counter = 0;
    for (const Ref<Question>& question : *exam.Questions) {
        const std::string n = std::to_string(counter++);
        const int16_t score =
            question->Correct == -1 ? int16_t{0} : question->Correct; // not answered counts as 0
        body.append("&question_id" + n + "=" + question->ID)
            .append("&document_score" + n + "=" + std::to_string(score))
            .append("&attempts" + n + "=" + std::to_string(question->Attempts))
            .append("&remediation" + n + "=" + question->Remediation);
    }
    return body;
}

bool GradiumExam::SaveOtherExam(const std::string& filename, Exam* theOtherExam,
                                bool suppressServerErrorMsg) {
    /// Puts the kept exam back, also after an error.
    struct Restore {
        Ref<Exam>& place;
        Ref<Exam> kept;
        ~Restore() { place = kept; }
    };
    const Restore restore{exam_, exam_};
    exam_ = Ref<Exam>(theOtherExam);
    return Save(filename, suppressServerErrorMsg);
}

bool GradiumExam::Delete(const std::string& filename) const { return deleteRecord(filename); }

void GradiumExam::SetPreferences(const Ref<Preferences>& thePrefs) { theExam()->SetPreferences(thePrefs); }

const ClassInfo& GradiumExam::classInfo() {
    static const ClassInfo info = [] {
        auto description =
            describe<GradiumExam>("GradiumExam", "An exam that was launched from the gradebook.");
        return ClassInfo(
            describeRecord(description)
                .property("theExam", &GradiumExam::theExam, &GradiumExam::SetTheExam,
                          "The exam; made on first use.")
                .method("Load", &GradiumExam::Load, {"filename", {"thePool", optional}, "iniLocation"},
                        "Loads a launch document or a record; False when it does not parse.")
                .method("LoadFromXMLNode", &GradiumExam::LoadFromXMLNode,
                        {"gradiumExamNode", {"thePool", optional}, "URL"}, "Reads a COURSE element.")
                .method("Save", &GradiumExam::Save, {"filename", {"suppressServerErrorMsg", optional}},
                        "Submits the results, or with a file name stores the record.")
                .method("SaveToXMLNode", &GradiumExam::SaveToXMLNode, {"gradiumExamNode"},
                        "Fills a COURSE element; always True.")
                .method("SaveOtherExam", &GradiumExam::SaveOtherExam,
                        {"filename", "theOtherExam", {"suppressServerErrorMsg", optional}},
                        "Saves or submits another exam in this one's place.")
                .method("Delete", &GradiumExam::Delete, {"filename"}, "Deletes a local record.")
                .method("SetPreferences", &GradiumExam::SetPreferences, {"thePrefs"},
                        "Replaces the exam's preferences."));
    }();
    return info;
}

} // namespace norvakavlor
