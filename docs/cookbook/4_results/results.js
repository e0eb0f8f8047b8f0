var ExamStudent = 2; // students' attempts; a script has no enumerations

function create(name) { return new ActiveXObject("NorvaKavlor." + name); }
// Calls `visit` for each item of a collection.
function each(collection, visit) {
    for (var items = new Enumerator(collection); !items.atEnd(); items.moveNext()) visit(items.item());
}

var objectives = create("Objectives"), pool = create("QuestionPool");
var courses = create("Courses"), students = create("Students");
if (!objectives.Load("objectives.xml") || !pool.Load("questionpool.xml", objectives) ||
    !courses.Load("courses.xml") || !students.Load("students.xml")) {
    WScript.Echo(create("Diagnostics").LastReason);
    WScript.Quit(1);
}

var total = create("Exam");
total.LoadExamSummary("students.xml", pool, courses, "sheets_kvqm.xml", 1, "", "");
each(total.Questions, function (question) {
    WScript.Echo(question.ID + ": " + question.Correct + " of " + question.Attempts + " right");
});

each(students.Sort("LastName", "FirstName", ""), function (student) {
    each(total.GetExamInfo(".\\", student.StudentID, ExamStudent), function (row) {
        WScript.Echo(student.LastName + ", attempt " + row.Attempt + ": " + row.PctCorrect + " %");
    });
});
