#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/xml/node_object.h>
#include <optional>
#include <sstream>
#include <string>
#include <tests/support/fixtures.h>
#include <vector>

// Puts each member of each class by its name, alone, and finds it under its own element or attribute of the
// saved document, back in an object that loads that document, and in a clone. Nothing else may change.
namespace norvakavlor {
namespace {

using testing::callOnDocument;
using testing::TemporaryFolder;

/// One "member=place" of a format, or "member=place:value", "member=place:value:text of the document".
struct Row {
    std::string member;   ///< "TextBook.ID" is a member of the object that a property holds
    std::string place;    ///< "name/first", "@ID", or "" for what is in no document
    bool isRead = true;   ///< not so with "member>place": a load needs the collection that it refers into
    bool isCloned = true; ///< not so with "member~=place"
    std::string value;    ///< as a script would put it; the member's name when none is given
    std::string text;
};

/// A class with the root of its document, or with the container that saves it: its class, the name of its
/// collection and the element in it.
struct Format {
    const char* name;
    const char* root;
    const char* rows;
    const char* container = nullptr;
    const char* collection = nullptr;
    const char* element = "";
};

constexpr const char* kRecordRows =
    "CourseID=@ID courseName=str_Name SubmitHost=SUBMIT_HOST_V3 SubmitBackupHost=SUBMIT_HOST_V3_BACKUP "
    "CurrentLocation=CURRENT_LOCATION StudentID=STUDENT/@ID StudentFirstName=STUDENT/str_FirstName "
    "StudentLastName=STUDENT/str_LastName InstructorFirstName=INSTRUCTOR/str_FirstName "
    "InstructorLastName=INSTRUCTOR/str_LastName InstructorHost=INSTRUCTOR/HOST theXML= ServerErrorStr=";

constexpr Format kFormats[] = {
    {"TextBook", "textBook", "ID=id Title=title Author=author"},
    {"Reference", "reference", "TextBook.ID=textBookRef RefText=referenceText"},
    {"Objective", "objective", "ID=id Module=module SkillSet=skillSet Label=objectiveLabel"},
    {"Task", "taskPool",
     "ID=id TaskName=taskName Objective.ID>objectiveRef BaseHREF=baseHREF CompletionDate=:3/14/2004",
     "TaskPool", "Tasks", "task"},
    {"CourseSection", "section", "ID=id Name=sectionName"},
    {"Course", "class", "ID=id:7 Name=className TextBook.ID=textBookRef NewSectionID=:5"},
    {"Student", "student",
     "StudentID=id FirstName=name/first MiddleInit=name/middle LastName=name/last Course=classRef "
     "Section>sectionRef UserName=username hasPassword=:true"},
    {"Question", "questionPool",
     "ID=id Text=text AnswerInOrder~=answers/@inorder:true Vantel=vantel Pelmarintos=pelmarintos "
     "Quorvenda=quorvenda AltText1=alttext1 AltText2=alttext2 AltText3=alttext3 Objective.ID>objectiveRef "
     "Task.ID>taskRef Hint=hint Skill= Module= Correct=:2 Attempts=:3 Points=:4 Remediation= "
     "QuestionSetupFunction~= QuestionSetupParam~=",
     "QuestionPool", "Questions", "question"},
    {"Question", "exam",
     "ID=questionRef Correct=questionRef/@correct:2 Attempts=questionRef/@attempts:3 "
     "Points=questionRef/@points:4 Remediation=examRemediation",
     "Exam", "Questions"},
    {"ExamAssignment", "examAssignment", "ExamRef=examRef ClassRef=classRef SectionRef=sectionRef"},
    {"Preferences", "pref",
     "Inherited=@inherited:0 StudentLoginRequired=loginRequired:true "
     "ExamRetakeAllowed=examRetakeAllowed:true "
     "QuestionRetakeAllowed=questionRetakeAllowed:false QuestionRetakeCount=questionRetakeCount:4 "
     "DisplayFeedback=displayFeedback:false DetailedFeedback=detailedFeedback:false "
     "EncryptedPasswordProp=password ExamPWRequired=:true EnablePrinting=enablePrinting:false "
     "TimeLimit=timeLimit:45 RandomQuestionOrder=:false RandomQuestionLimit=randomQuestions/@limit:20 "
     "StartDate=startDate EndDate=endDate DisplayHint=displayHint:true EnableRef=enableRef:False "
     "AllowSelfRegister=allowSelfRegister:False EnablePause=enablePause:False "
     "DelayExamResultsDate=delayExamResultsDate DisplayRemediation=displayRemediation:false"},
    {"Exam", "exam",
     "ID=@ID ExternalID=@EXTERNAL_ID CurrentQuestion=@currentQuestion:2 TimeExpired=@timeExpired:-1 "
     "CompletionDate=@completionDate Started=@started:true PctCorrect=@pctCorrect:62.5 "
     "IsChallenge=@isChallenge:true Title=title Source=source:3 StudentID=studentID ExamFileName="},
    {"ExamList", "examList", "Title=title ExamListFileName="},
    {"LessonAssignment", "lessonAssignment",
     "LessonFilename=lessonRef CourseID=classRef SectionID=sectionRef"},
    {"Lesson", "lesson",
     "LessonID=@ID ExternalID=@EXTERNAL_ID Completed=@COMPLETED:true Title=title Source=source:2 "
     "LessonFilename= LessonObjType=:2"},
    {"Task", "lesson", "ID=taskList/taskRef CompletionDate=taskList/taskRef/@completed:3/14/2004", "Lesson",
     "Tasks"},
    {"LessonMenu", "lessonMenu", "Title=title LessonMenuObjType=:2"},
    {"Tutorial", "tutorial",
     "Title=title Spacer=@spacer:true TutorialType=@type:2:single BaseHREF= LessonObjType=:2"},
    {"LiveExResults", "liveResults",
     "ExamID=@ID CompletionDate=@completionDate Title=title StudentID=studentID ExamFileName= "
     "origFilename="},
    {"LiveExScore", "liveResults",
     "ID=score:7 Correct=score/@correct:True Attempts=score/@attempts:3 ExamID=", "LiveExResults", "Scores"},
    {"GradiumLiveEx", "ORBEX_INPUTS",
     "SubmitHost=SUBMIT_HOST_V3 SubmitBackupHost=SUBMIT_HOST_V3_BACKUP ExamID=liveExercise/id "
     "CourseID=liveExercise/courseId StudentID=liveExercise/studentId assignmentID=liveExercise/assignmentId "
     "Score=liveExercise/score:62.5 courseName= CompletionDate= theXML="},
    {"GradiumExam", "COURSE", kRecordRows},
    {"GradiumLesson", "COURSE", kRecordRows},
};

std::vector<Row> rowsOf(const Format& format) {
    std::vector<Row> rows;
    std::istringstream words(format.rows);
    for (std::string word; words >> word;) {
        const size_t sign = word.find_first_of("=>");
        Row row{word.substr(0, sign), {}, word[sign] == '=', word[sign - 1] != '~', {}, {}};
        if (!row.isCloned)
            row.member.pop_back();
        std::istringstream parts(word.substr(sign + 1));
        std::getline(parts, row.place, ':');
        row.value = std::getline(parts, row.value, ':') ? row.value : row.member;
        row.text = std::getline(parts, row.text) ? row.text : row.value;
        rows.push_back(row);
    }
    return rows;
}

/// An object with what some of its members need to be saved at all.
Ref<Object> made(const std::string& name) {
    Ref<Object> object = CreateObject("NorvaKavlor." + name);
    if (name == "Question") {
        const Ref<Object> answers = get(*object, "Answers").toObject();
        call(*answers, "Add", {"answer"});
    } else if (name == "Reference") {
        call(*object, "SetTextBookID", {"none"});
    } else if (name == "Course" || name == "LiveExScore") {
        put(*object, "ID", "1");
    } else if (name == "Preferences") {
        put(*object, "QuestionRetakeAllowed", true);
        put(*object, "RandomQuestionOrder", true);
    }
    return object;
}

/// The object that a dotted name goes through, made when it is not there, and the last part of the name.
std::pair<Ref<Object>, std::string> holderOf(const Ref<Object>& object, const std::string& member) {
    const size_t dot = member.find('.');
    if (dot == std::string::npos)
        return {object, member};
    const std::string property = member.substr(0, dot);
    if (get(*object, property).isAbsent())
        put(*object, property, object->dynamicClass().find(property)->type.objectClass().create());
    return {get(*object, property).toObject(), member.substr(dot + 1)};
}

std::string textOf(const Ref<Object>& object, const Row& row) {
    const auto [holder, name] = holderOf(object, row.member);
    return get(*holder, name).toText();
}

std::shared_ptr<xml::Document> saved(const Format& format, Ref<Object> object) {
    if (format.container) {
        const Ref<Object> container = CreateObject("NorvaKavlor." + std::string(format.container));
        const Ref<Object> collection = get(*container, format.collection).toObject();
        call(*collection, "Add", {object, "key"});
        object = container;
    }
    if (!object->dynamicClass().find("SaveToXMLNode")) {
        const TemporaryFolder folder;
        call(*object, "Save", {folder.file("saved.xml")});
        return std::make_shared<xml::Document>(testing::parsed(folder.read("saved.xml")));
    }
    auto document = std::make_shared<xml::Document>();
    document->createRoot(format.root);
    callOnDocument(*object, "SaveToXMLNode", document);
    return document;
}

Ref<Object> loaded(const Format& format, const std::shared_ptr<xml::Document>& document) {
    const char* const name = format.container ? format.container : format.name;
    Ref<Object> object = CreateObject("NorvaKavlor." + std::string(name));
    if (object->dynamicClass().find("LoadFromXMLNode")) {
        EXPECT_TRUE(callOnDocument(*object, "LoadFromXMLNode", document).toBoolean());
    } else {
        const TemporaryFolder folder;
        EXPECT_TRUE(call(*object, "Load", {folder.write("saved.xml", document->toText())}).toBoolean());
    }
    if (!format.container)
        return object;
    const Ref<Object> collection = get(*object, format.collection).toObject();
    return elementsOf(*collection).at(0).toObject();
}

/// The text at a row's place; nothing when the document lacks the place.
std::optional<std::string> at(const Format& format, const xml::Document& document, const Row& row) {
    xml::Node node = *format.element ? document.root().child(format.element) : document.root();
    std::istringstream steps(row.place);
    for (std::string step; std::getline(steps, step, '/');) {
        if (step.starts_with('@')) {
            const auto value = node.attribute(step.substr(1));
            return value ? std::optional(std::string(*value)) : std::nullopt;
        }
        node = node.child(step);
    }
    return node ? std::optional(node.text()) : std::nullopt;
}

TEST(SavedMember, HasAPlaceOfItsOwnAndComesBack) {
    for (const Format& format : kFormats) {
        const std::vector<Row> rows = rowsOf(format);
        const Ref<Object> plain = made(format.name);
        const auto before = saved(format, plain);
        for (const Row& row : rows) {
            SCOPED_TRACE(std::string(format.root) + ": " + format.name + "." + row.member);
            const Ref<Object> object = made(format.name);
            const auto [holder, name] = holderOf(object, row.member);
            put(*holder, name, row.value);
            const std::string text = textOf(object, row);
            EXPECT_NE(text, textOf(plain, row));
            const auto document = saved(format, object);
            const bool comesBack = !row.place.empty() && row.isRead;
            const Ref<Object> back = comesBack ? loaded(format, document) : nullptr;
            const bool clones = object->dynamicClass().find("Clone");
            const Ref<Object> clone = clones ? call(*object, "Clone").toObject() : nullptr;
            for (const Row& other : rows) {
                SCOPED_TRACE(other.member);
                const bool isThis = &other == &row;
                const std::string expected = isThis ? text : textOf(plain, other);
                if (!other.place.empty()) {
                    EXPECT_EQ(at(format, *document, other),
                              isThis ? std::optional(row.text) : at(format, *before, other));
                    EXPECT_EQ(back ? textOf(back, other) : expected, expected);
                }
                const bool isCloned = clone && other.isCloned;
                EXPECT_EQ(isCloned ? textOf(clone, other) : expected, expected);
            }
        }
    }
}

TEST(SavedMember, IsEveryPropertyThatClientsMayPut) {
    for (const Format& format : kFormats) {
        if (format.container && !*format.element)
            continue; // what an exam or a lesson keeps of a member is less than all
        const std::vector<Row> rows = rowsOf(format);
        for (const Member& member : made(format.name)->dynamicClass().members()) {
            const auto isRow = [&](const Row& row) {
                return row.member.substr(0, row.member.find('.')) == member.name;
            };
            const bool isText = member.put && (member.type.kind != Type::Kind::Object);
            EXPECT_TRUE(!isText || std::ranges::any_of(rows, isRow)) << format.name << "." << member.name;
        }
    }
}

} // namespace
} // namespace norvakavlor
