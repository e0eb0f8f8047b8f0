// The rows: what a member raises, and when. The header says the same where the member is declared, in a
// sentence that begins with "Raises"; kavlor-idl and the tests compare the numbers.

#include <tools/idl/raised_errors.h>

namespace norvakavlor {
namespace {

using Rows = std::vector<ErrorRow>;
using Table = std::map<std::string, Rows>;

constexpr auto kNoReply = static_cast<int32_t>(0x800C0005);

constexpr int32_t object(int32_t code) {
    return static_cast<int32_t>(0x80040000u + static_cast<uint32_t>(code));
}

Rows operator+(Rows rows, const Rows& more) {
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

Table table() {
    const Rows noReply{{{kNoReply}, "the server of a web location does not answer, or not completely"}};
    const Rows saves = Rows{{{70, 76, 61, 57},
                             "a local file cannot be written (read-only, no such folder, disk full, "
                             "anything else)"}} +
                       noReply;
    const Rows deletes =
        Rows{{{53, 70, 57}, "a local file is missing, read-only, or cannot be deleted"}} + noReply;
    const Rows lists = Rows{{{70, 57}, "a local folder cannot be read"}} + noReply;
    const Rows password{{{9}, "the password has more than 256 characters"}};
    const Rows checksPassword{{{9}, "a password is in force and the given one has more than 256 characters"}};
    const Rows nextNumber{{{6}, "there is no next number"}, {{457}, "another one has the number as its ID"}};

    const Rows textBooks{{{457}, "an ID is repeated; the textbooks before it stay"}};
    const Rows course{{{641}, "`textBooks` lacks the textbook (the plain number, not an object error)"},
                      {{457}, "a section is repeated"}};
    const Rows courses = course + Rows{{{457}, "an ID is repeated"},
                                       {{13, 6},
                                        "an ID is not a number, or is too large; the courses before "
                                        "it stay"}};
    const Rows reference{{{object(601)}, "`textBooks` lacks the textbook"}};
    const Rows writesReference{{{91}, "a reference has no textbook"}};
    const Rows objectives = reference + Rows{{{457}, "an ID is repeated; the objectives before it stay"}};
    const Rows tasks{{{object(621)}, "`objectives` lacks the task's objective, or is left out"},
                     {{object(622)}, "an ID is repeated; the tasks before it stay"}};

    const Rows questions{
        {{object(641)}, "`objectives` lacks a question's objective"},
        {{object(642)}, "`taskPool` lacks a question's task"},
        {{object(643), object(644), object(646), object(647)},
         "a background image, an image of the right answer, a page element or a dialog box has no step"},
        {{object(645)}, "a dialog box has no index"},
        {{13, 6}, "the index of a dialog box is not a 16-bit number"},
        {{object(651), object(652), object(649), object(648)},
         "the step of a background image, an image of the right answer, a page element or a dialog box is "
         "repeated"},
        {{object(653)}, "a question's ID is repeated; the questions before a faulty one stay"}};
    const Rows writesDialogBoxes{{{91, 13},
                                  "DialogBoxes of a question hold Nothing or something else than a "
                                  "DialogBox"}};
    const Rows preferences{{{13, 6}, "a switch or number of the preferences does not convert"}};
    const Rows exam{{{13, 6}, "a number of the exam itself or of its preferences does not convert"}};
    const Rows examRows = Rows{{{13, 6}, "a server's listing has a bad number"}} + lists;

    const Rows student{{{91}, "a student's element lacks `id` or `name`"},
                       {{object(631)}, "`courses` lacks the course"},
                       {{object(632), object(633)},
                        "the section has no course, or `courses` lacks it; what was read before stays"}};
    const Rows repeatedStudent{{{457}, "an ID or a user name is repeated; the students before it stay"}};
    const Rows roster =
        student + repeatedStudent + Rows{{{13, 6}, "the counter of IDs is not a 16-bit number"}};
    const Rows writesStudent{{{object(641), object(642)}, "`courses` lacks the course or the section"}};
    const Rows sharedID{{{457}, "two members of the result have the same ID by now"}};

    const Rows lesson{{{5}, "the pool lacks a task"},
                      {{457}, "a task is repeated"},
                      {{13, 6}, "a date or the source does not convert; the tasks before it stay"}};
    const Rows scores{{{13, 6}, "a step or a number of tries is not a 16-bit number"},
                      {{457}, "a step is repeated; the scores before it stay"}};
    const Rows launchedScore{{{13, 6}, "the score is not a number, or is too large; an empty one is none"}};

    const Rows arrayAsKey{{{5}, "the key is an array"}};
    const Rows lookUp{{{5}, "no item has the key"}, {{9}, "there is no such position"}};

    return {
        {"Encryption.Encrypt", {{{9}, "the text has more than 256 characters"}}},

        {"TextBooks.Load", textBooks},
        {"TextBooks.LoadFromXMLNode", textBooks},
        {"TextBooks.Save", saves},
        {"Course.LoadFromXMLNode", course},
        {"Course.AddSection", nextNumber},
        {"Courses.Load", courses},
        {"Courses.LoadFromXMLNode", courses},
        {"Courses.Save", saves},
        {"Courses.AddCourse", nextNumber},
        {"Reference.LoadFromXMLNode", reference},
        {"Reference.SaveToXMLNode", writesReference},
        {"Objective.LoadFromXMLNode", reference},
        {"Objective.SaveToXMLNode", writesReference},
        {"Objectives.Load", objectives},
        {"Objectives.LoadFromXMLNode", objectives},
        {"Objectives.Save", writesReference + saves},
        {"Objectives.SaveToXMLNode", writesReference},
        {"Task.SaveToXMLNode", writesReference},
        {"TaskPool.GetTasksByModule", Rows{{{91}, "any task of the pool has no objective"}} + sharedID},
        {"TaskPool.Load", tasks},
        {"TaskPool.LoadFromXMLNode", tasks},
        {"TaskPool.Save", writesReference + saves},
        {"TaskPool.SaveToXMLNode", writesReference},

        {"QuestionPool.GetQuestionsByModule", {{{object(650)}, "two questions have the same ID by now"}}},
        {"QuestionPool.Load", questions},
        {"QuestionPool.LoadFromXMLNode", questions},
        {"QuestionPool.Save", writesDialogBoxes + saves},
        {"QuestionPool.SaveToXMLNode", writesDialogBoxes},
        {"Preferences.Load", preferences},
        {"Preferences.LoadFromXMLNode", preferences},
        {"Preferences.Save", saves},
        {"Preferences.SetPassword", password},
        {"Preferences.CheckPassword", checksPassword},
        {"ExamInfo.LoadValues", {{{13, 6}, "the percentage does not convert"}}},
        {"Exam.Load", exam},
        {"Exam.LoadFromXMLNode", exam},
        {"Exam.Save", saves},
        {"Exam.Delete", noReply},
        {"Exam.RandomizeQuestions", {{{457}, "a question's ID is by now another one's key"}}},
        {"Exam.CheckPassword", checksPassword},
        {"Exam.SetPassword", password},
        {"Exam.LoadExamSummary",
         Rows{{{13}, "the roster does not load"}, {{6}, "a sum exceeds 16 bits"}} + exam + roster},
        {"Exam.GetExams", lists},
        {"Exam.GetExamInfo", examRows},
        {"Exam.GetExamInfo2", examRows},
        {"Exam.GetStudentExams", lists},
        {"ExamList.Load", preferences},
        {"ExamList.Save", saves},
        {"ExamList.Delete", deletes},
        {"ExamList.GetExamLists", lists},
        {"ExamList.CheckPassword", checksPassword},
        {"ExamList.SetPassword", password},

        {"Student.CheckPassword", checksPassword},
        {"Student.SetPassword", password},
        {"Student.GetProperty", {{{9}, "the number is not 0 to 10"}}},
        {"Student.Validate", {{{91}, "the student has a course and `courses` is left out"}}},
        {"Student.LoadFromXMLNode", student},
        {"Student.SaveToXMLNode", writesStudent},
        {"Students.Load", roster},
        {"Students.LoadWithFilter", roster},
        {"Students.LoadFromXMLNode", student + repeatedStudent},
        {"Students.Save", writesStudent + saves},
        {"Students.SaveToXMLNode", writesStudent},
        {"Students.AddStudent",
         Rows{{{object(631), object(633)}, "`courses` lacks the course or the section; nothing was read"},
              {{91}, "the student has a course and `courses` is left out; nothing was read"},
              {{object(635)}, "the user name or the ID is taken"},
              {{object(642)}, "a student of the roster has a section without its course"},
              {{6}, "no numbers for IDs are left"},
              {{53, 70, 57}, "the roster is there and cannot be read"}} +
             roster + saves},
        {"Students.ReplaceStudent", roster},
        {"Students.DeleteStudent", roster + writesStudent + saves},
        {"Students.Authenticate", checksPassword},
        {"Students.Sort",
         Rows{{{9}, "the first property is unknown and there are two students or more"}} + sharedID},
        {"Students.Filter", Rows{{{9}, "the first property is unknown and there is a student"}} + sharedID},
        {"Students.Selectionsort",
         {{{9}, "the first property is unknown"}, {{13, 91}, "an element is no student, or is Nothing"}}},

        {"Lesson.Load", lesson},
        {"Lesson.LoadFromXMLNode", lesson},
        {"Lesson.Save", Rows{{{70}, "it stands in for a student's copy that exists by now, or may exist"},
                             {{53, 70, 57}, "the old file cannot be deleted; the lesson is stored then"}} +
                            saves},
        {"Lesson.Delete", deletes},
        {"Lesson.GetLessons", lists},
        {"Lesson.GetStudentLessons", lists},
        {"Lesson.CalcLessonFileComplete", lesson},
        {"Tutorial.LoadFromXMLNode", lesson},
        {"LessonMenu.GetLessonMenus", lists},
        {"LessonMenu.Load", lesson},
        {"LessonMenu.Save", saves},

        {"ModuleDiscManager.LoadConfigFile", {{{457}, "a module is repeated; the modules before it stay"}}},

        {"Security.Login", noReply + Rows{{{9}, "the server's key has more than 256 characters"}}},
        {"Security.ValidateLoginKey", {{{9}, "the key has more than 256 characters"}}},
        {"GradiumExam.Load", exam + noReply},
        {"GradiumExam.LoadFromXMLNode", exam},
        {"GradiumExam.Save", saves},
        {"GradiumExam.SaveOtherExam", saves},
        {"GradiumLesson.Load", lesson + noReply},
        {"GradiumLesson.LoadFromXMLNode", lesson},
        {"GradiumLesson.Save", saves},
        {"LiveExResults.Load", scores},
        {"LiveExResults.LoadFromXMLNode", scores},
        {"LiveExResults.Save",
         Rows{{{6}, "there is no score to submit"},
              {{53, 70, 57}, "the old file cannot be deleted; the record is stored then"}} +
             saves},
        {"LiveExResults.CalcScore", {{{6}, "there are no scores"}}},
        {"LiveExResults.Delete", deletes},
        {"GradiumLiveEx.Load", launchedScore + noReply},
        {"GradiumLiveEx.LoadFromXMLNode", launchedScore},
        {"GradiumLiveEx.Save", saves},

        {"Dictionary.Add", Rows{{{457}, "the key is there"}} + arrayAsKey},
        {"Dictionary.Exists", arrayAsKey},
        {"Dictionary.Item", arrayAsKey},
        {"Dictionary.Key", Rows{{{457}, "the new key is taken, be it by the entry itself"}} + arrayAsKey},
        {"Dictionary.Remove", Rows{{{32811}, "the key is missing"}} + arrayAsKey},
        {"Dictionary.CompareMode", {{{5}, "it is changed while entries are there"}}},
        {"Collection.Add", Rows{{{457}, "the key is taken"}, {{5}, "both `before` and `after` are given"}} +
                               lookUp + Rows{{{13}, "the item is Nothing or of another class"}}},
        {"Collection.Remove", lookUp},
        {"Collection.Item", lookUp},
    };
}

} // namespace

const Table& errorRows() {
    static const Table rows = table();
    return rows;
}

const std::vector<ErrorMeaning>& errorMeanings() {
    static const std::vector<ErrorMeaning> meanings = {
        {5, "No item has this key, or the argument cannot be used here."},
        {6, "A number is too large.", true},
        {7, "Memory ran out (`std::bad_alloc` in C++).", true},
        {9, "A position or an index outside a collection, an array or a list of properties; a text that is "
            "too long to hash."},
        {13, "A text is no number, date or boolean; an object is of another class.", true},
        {51, "A fault of the library itself.", true},
        {53, "A file is missing."},
        {57, "A file cannot be read or written, for another reason; a document of more than 64 MiB."},
        {61, "The disk is full."},
        {70, "A file is read-only, or the system does not permit it."},
        {76, "A folder is missing."},
        {91, "An object that must be there is Nothing.", true},
        {429, "`CreateObject`: there is no such class.", true},
        {438, "There is no such member, or the property is read-only.", true},
        {448, "There is no argument of this name.", true},
        {449, "An argument is missing that may not be left out.", true},
        {450, "There are too many arguments.", true},
        {457, "The key is taken."},
        {641, "The textbook of a course is unknown. The plain number, unlike the object errors."},
        {32811, "A dictionary lacks the key."},
        {object(601), "The textbook of a reference is unknown."},
        {object(621), "The objective of a task is unknown."},
        {object(622), "A task's ID is repeated."},
        {object(631), "The course of a student is unknown."},
        {object(632), "A student has a section without a course."},
        {object(633), "The section of a student is unknown."},
        {object(635), "A user name or a student's ID is taken."},
        {object(641), "The objective of a question, or the course of a student that is saved, is unknown."},
        {object(642), "The task of a question, or the section of a student that is saved, is unknown."},
        {object(643), "A background image has no step."},
        {object(644), "An image of the right answer has no step."},
        {object(645), "A dialog box has no index."},
        {object(646), "A page element has no step."},
        {object(647), "A dialog box has no step."},
        {object(648), "The step of a dialog box is repeated."},
        {object(649), "The step of a page element is repeated."},
        {object(650), "Two questions of a module have the same ID."},
        {object(651), "The step of a background image is repeated."},
        {object(652), "The step of an image of the right answer is repeated."},
        {object(653), "A question's ID is repeated."},
        {kNoReply, "A server did not answer, or not completely."},
    };
    return meanings;
}

} // namespace norvakavlor
