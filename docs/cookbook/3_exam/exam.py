import sys

from norvakavlor import Exam, Objectives, Preferences, QuestionPool, Students, last_reason

objectives, pool, students = Objectives(), QuestionPool(), Students()
if not (objectives.Load("objectives.xml") and pool.Load("questionpool.xml", objectives)
        and students.Load("students.xml")):
    sys.exit(last_reason())

exam = Exam(ID="E-SHEETS", Title="Spreadsheets, first term", Prefs=Preferences(TimeLimit=20))  # minutes
for question in pool.Questions:
    exam.Questions.Add(question.Clone(), question.ID)
exam.Save("sheets_kvqm.xml")

wrong = {"mila": ["Q-2"], "daniel": ["Q-2", "Q-4"]}
for student in students.Students:
    attempt = Exam()
    attempt.Load("sheets_kvqm.xml", pool)
    attempt.StudentID, attempt.Started = student.StudentID, True
    for question in attempt.Questions:
        question.Attempts = 1
        question.Correct = -1 if question.ID in wrong.get(student.UserName, []) else 1
    right = sum(question.Correct == 1 for question in attempt.Questions)
    attempt.PctCorrect = 100 * right / len(attempt.Questions)
    attempt.CompletionDate = "9/21/2026 10:40:00 AM"
    attempt.Save(f"sheets_kvqm_{student.StudentID}_01.xml")
    print(f"{student.FirstName} has {right} of {len(attempt.Questions)} right")
