import sys

from norvakavlor import Courses, Exam, ExamTypes, Objectives, QuestionPool, Students, last_reason

objectives, pool, courses, students = Objectives(), QuestionPool(), Courses(), Students()
if not (objectives.Load("objectives.xml") and pool.Load("questionpool.xml", objectives)
        and courses.Load("courses.xml") and students.Load("students.xml")):
    sys.exit(last_reason())

total = Exam()
total.LoadExamSummary("students.xml", pool, courses, "sheets_kvqm.xml", 1)
for question in total.Questions:
    print(f"{question.ID}: {question.Correct} of {question.Attempts} right")

for student in students.Sort("LastName", "FirstName"):
    for row in total.GetExamInfo("./", student.StudentID, ExamTypes.ExamStudent):
        print(f"{student.LastName}, attempt {row.Attempt}: {row.PctCorrect:g} %")
