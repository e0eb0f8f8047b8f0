// A school's day on the sample documents, told by a C++ client:
//     norvakavlor_demo FOLDER SERVER
// FOLDER holds a copy of the examples, SERVER is the address of a kavlor-server that serves another copy;
// both end in "/". school_day.vbs tells the same day.

#include <iostream>
#include <norvakavlor/norvakavlor.h>
#include <stdexcept>

using namespace norvakavlor;

namespace {

void tell(const std::string& line) { std::cout << line << std::endl; }

/// Ends the day if something fails.
void require(bool holds, const std::string& what) {
    if (!holds)
        throw std::runtime_error("this should have worked: " + what);
}

/// The documents that others refer to, loaded in the order of their dependencies.
struct Curriculum {
    Ref<TextBooks> textBooks = New<TextBooks>();
    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
    Ref<QuestionPool> questions = New<QuestionPool>();
    Ref<Courses> courses = New<Courses>();

    explicit Curriculum(const std::string& directory) {
        require(textBooks->Load(directory + "textbooks.xml"), "loading the textbooks");
        require(objectives->Load(directory + "objectives.xml", textBooks.get()), "loading the objectives");
        require(tasks->Load(directory + "taskpool.xml", objectives.get()), "loading the tasks");
        require(questions->Load(directory + "questionpool.xml", objectives.get(), tasks.get()),
                "loading the questions");
        require(courses->Load(directory + "courses.xml", textBooks.get()), "loading the courses");
    }
};

/// A new student joins the roster on the server and signs in.
void enrol(const std::string& roster, const Curriculum& curriculum) {
    auto student = New<Student>();
    student->FirstName = "Mila";
    student->LastName = "Novák";
    student->Course = "1";
    student->Section = "0";
    student->UserName = "mila";
    student->SetPassword("lighthouse");
    auto students = New<Students>();
    require(students->AddStudent(roster, student, curriculum.courses.get()), "adding a student");
    tell("08:10  Mila Novák joins as " + student->StudentID + ": " + roster);
    require(students->Authenticate("mila", "lighthouse"), "signing in");
    require(!students->Authenticate("mila", "Lighthouse"), "refusing a wrong password");
    const auto section = students->Filter("Course", "1", "Section", "0", "", "");
    tell("08:15  She signs in, one of " + std::to_string(section->Count()) + " students on Monday morning");
}

/// A student opens the menu with her own copies, finishes a task and saves the lesson.
void learn(const std::string& directory, const Curriculum& curriculum) {
    auto menu = New<LessonMenu>();
    require(menu->Load(directory + "office_lm.xml", directory, curriculum.tasks.get(), "SID00001", directory),
            "loading the lesson menu");
    const Ref<Lesson> lesson = menu->Tutorials->Item(4)->Lessons->Item(1);
    tell("09:00  Ana opens the menu \"" + menu->Title + "\" and chooses \"" + lesson->Title + "\"");
    lesson->Tasks->Item("T-OS-03")->CompletionDate = toDate("11/10/2026 9:30:00 AM");
    const std::string copy = directory + lesson->LessonFilename;
    require(lesson->Save(copy, false), "saving the lesson");
    tell("09:30  She finishes a task; her copy of the lesson is kept: " + copy);
}

/// The gradebook launches an exam; the result arrives though the gradebook is away for a while.
void takeExam(const std::string& folder, const std::string& server, const Curriculum& curriculum) {
    auto launched = New<GradiumExam>();
    require(launched->Load(server + "launches/exam_launch.xml", curriculum.questions.get(), "none"),
            "loading the launch document");
    const Ref<Exam> exam = launched->theExam();
    tell("10:00  The gradebook launches \"" + exam->Title + "\" for " + launched->StudentFirstName + " " +
         launched->StudentLastName);
    exam->RandomizeQuestions();
    int right = 0;
    for (const Ref<Question>& question : *exam->Questions) {
        question->Attempts = 1;
        question->Correct = question->ID == "SS-009" ? -1 : 1;
        right += question->Correct == 1;
    }
    exam->PctCorrect = 100.0 * right / exam->Questions->Count();
    const std::string attempt = folder + "exams/launched_kvqm_" + launched->StudentID + "_01.xml";
    require(exam->Save(attempt, false), "storing the attempt");
    tell("10:40  She gets " + std::to_string(right) + " of " + std::to_string(exam->Questions->Count()) +
         " right; the attempt is stored: " + attempt);

    const std::string host = launched->SubmitHost;
    launched->SubmitHost = "http://127.0.0.1:9/gradebook"; // nobody answers there
    require(!launched->Save("", true), "noticing that the gradebook is away");
    launched->SubmitHost = host;
    const std::string record = folder + "launches/exam_record.xml";
    require(launched->Save(record, true), "keeping the result");
    tell("10:41  The gradebook is away for a while, so the result is kept: " + record);

    auto later = New<GradiumExam>();
    require(later->Load(record, curriculum.questions.get(), "none"), "loading the result");
    require(later->Save("", true), "submitting the result: " + later->ServerErrorStr);
    tell("11:30  The gradebook is back and accepts the result");
}

/// The teacher adds up what a class got right in an exam.
void sumUp(const std::string& folder, const Curriculum& curriculum) {
    auto total = New<Exam>();
    require(total->LoadExamSummary(folder + "curriculum/students.xml", curriculum.questions.get(),
                                   curriculum.courses.get(), folder + "exams/sheets_kvqm.xml", 1, "", ""),
            "adding up the class");
    std::string line;
    for (const Ref<Question>& question : *total->Questions) {
        line += (line.empty() ? " " : ", ") + question->ID + " " + std::to_string(question->Correct) + "/" +
                std::to_string(question->Attempts);
    }
    tell("14:00  The class's right answers in the exam sheets_kvqm:" + line);
}

/// The teacher corrects a textbook for all.
void maintain(const std::string& textBooks) {
    auto books = New<TextBooks>();
    require(books->Load(textBooks), "loading the textbooks");
    books->textBooks->Item("CHARTS")->Title += ", second edition";
    require(books->Save(textBooks), "saving the textbooks");
    tell("14:30  A textbook gets its new title, \"" + books->textBooks->Item("CHARTS")->Title +
         "\": " + textBooks);
}

void schoolDay(const std::string& folder, const std::string& server) {
    require(New<Security>()->Login(server), "the handshake with the server");
    const Curriculum curriculum(server + "curriculum/");
    tell("08:00  The school's curriculum comes from the server: " +
         std::to_string(curriculum.courses->CourseMembers->Count()) + " courses, " +
         std::to_string(curriculum.questions->Questions->Count()) + " questions");
    enrol(server + "curriculum/students.xml", curriculum);
    learn(server + "lessons/", curriculum);
    takeExam(folder, server, curriculum);
    sumUp(folder, curriculum);
    maintain(server + "curriculum/textbooks.xml");
    tell("15:00  The day is done: all documents are stored and the gradebook has the result");
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: norvakavlor_demo FOLDER SERVER\n";
        return 2;
    }
    try {
        schoolDay(arguments[1], arguments[2]);
    } catch (const Error& error) {
        tell("error " + std::to_string(error.number()) + " from " + error.source() + ": " +
             error.description());
        return 1;
    } catch (const std::exception& error) {
        tell(error.what());
        return 1;
    }
}
