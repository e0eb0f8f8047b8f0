#include "demo.h"
#include "pools.h"

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/students/students.h>

using namespace norvakavlor;

void demo::exams(const Places& places) {
    say("Exams");
    const Pools pools = loadPools(places.local("curriculum/"));
    for (const std::string& base : {places.folder, places.server}) {
        const std::string directory = base + "exams/";
        auto exam = New<Exam>();
        require(exam->Load(directory + "office_kvqm.xml", pools.questions.get()), "loading an exam");
        require(exam->CheckPassword("open sesame") && !exam->CheckPassword("open"),
                "opening it by its password");
        exam->RandomizeQuestions();
        // The student answers: every second question right, at the first try.
        int right = 0;
        for (const Ref<Question>& question : *exam->Questions) {
            question->Correct = question->Attempts == 0 && right % 2 == 0 ? 1 : 0;
            question->Attempts = 1;
            ++right;
        }
        exam->Started = true;
        exam->StudentID = "SID00002";
        exam->PctCorrect = 50;
        const std::string attempt = attemptFileName("office_kvqm", exam->StudentID, 1);
        require(exam->Save(directory + attempt, false), "storing the attempt");
        say("  attempt stored: " + directory + attempt);

        // A server adds up the class of the roster that lies beside its exams.
        const std::string roster = directory + "students.xml";
        auto students = New<Students>();
        require(students->Load(base + "curriculum/students.xml", pools.courses.get()) &&
                    students->Save(roster, pools.courses.get()),
                "laying the roster beside the exams");
        auto summary = New<Exam>();
        require(summary->Load(directory + "sheets_kvqm.xml", nullptr), "loading the exam of the summary");
        auto total = New<Exam>();
        total->ExamFileName = summary->ExamFileName;
        require(total->LoadExamSummary(roster, pools.questions.get(), pools.courses.get(),
                                       directory + "sheets_kvqm.xml", 1, "1", ""),
                "adding up the class");
        std::string line;
        for (const Ref<Question>& question : *total->Questions) {
            line += " " + question->ID + " " + std::to_string(question->Correct) + "/" +
                    std::to_string(question->Attempts);
        }
        say("    right answers of the class:" + line);

        say("    " + std::to_string(exam->GetExams(directory, 1)->Count()) + " authored exams, " +
            std::to_string(exam->GetExamInfo(directory, "", 2)->Count()) + " attempts, " +
            std::to_string(exam->GetStudentExams(directory, "SID00001")->Count()) +
            " exams begun by SID00001");

        auto list = New<ExamList>();
        require(list->Load(directory + "term_kvql.xml", directory), "loading an exam list");
        list->Title += " (copy)";
        require(list->Save(directory + "copy_kvql.xml"), "storing an exam list");
        say("    " + list->Title + ": " + std::to_string(list->Exams->Count()) + " exams");
    }
}
