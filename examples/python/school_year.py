"""A school year of one class: 200 students sit 50 exams, and the teacher gets a report.
school_year.py CURRICULUM PLACE [STUDENTS EXAMS]. CURRICULUM holds the curriculum's documents; the year's go to PLACE,
an empty folder or the address of a kavlor-server. Both end in "/".
"""
import random
import sys
from typing import Any

from norvakavlor import (Courses, Exam, ExamTypes, Objectives, QuestionPool, Security, Student, Students, TaskPool,
                         TextBooks, last_reason)

def require(holds: bool, what: str) -> None:
    if not holds:
        raise SystemExit(f"not done: {what} {last_reason()}")

def loaded(kind: Any, location: str, *others: Any) -> Any:
    made = kind()
    require(made.Load(location, *others), f"loading {location}")
    return made

def year(curriculum: str, place: str, students: int = 200, exams: int = 50) -> None:
    chance = random.Random(1)
    require(not place.startswith("http:") or Security().Login(place), "the handshake with the server")
    books = loaded(TextBooks, curriculum + "textbooks.xml")
    courses = loaded(Courses, curriculum + "courses.xml", books)
    objectives = loaded(Objectives, curriculum + "objectives.xml", books)
    tasks = loaded(TaskPool, curriculum + "taskpool.xml", objectives)
    pool = loaded(QuestionPool, curriculum + "questionpool.xml", objectives, tasks)

    roster, file = Students(), place + "students.xml"
    for number in range(students):
        student = Student(LastName=f"Student {number}", Course="1", Section="0", UserName=f"user{number}")
        student.SetPassword(f"password {number}")
        require(roster.AddStudent(file, student, courses), f"adding {student.UserName}")

    for number in range(exams):
        exam = Exam(ID=f"E-{number}", Title=f"Exam {number + 1}")
        for question in chance.sample(list(pool.Questions), 10):
            exam.Questions.Add(question.Clone(), question.ID)
        require(exam.Save(f"{place}exam{number:02}_kvqm.xml"), f"storing {exam.Title}")

    for listed in Exam().GetExams(place, ExamTypes.ExamRaw):
        for student in roster.Students:
            attempt = loaded(Exam, place + listed.Filename, pool)
            attempt.StudentID, attempt.Started = student.StudentID, True
            for question in attempt.Questions:
                question.Attempts, question.Correct = 1, chance.choice([1, 1, -1])
            attempt.PctCorrect = 10 * sum(question.Correct == 1 for question in attempt.Questions)
            name = listed.Filename.replace(".xml", f"_{student.StudentID}_01.xml")
            require(attempt.Save(place + name), f"storing {name}")

    for listed in Exam().GetExams(place, ExamTypes.ExamRaw):
        total = Exam()
        require(total.LoadExamSummary(file, pool, courses, place + listed.Filename, 1, "1", "0"), "adding up")
        percent = sorted((100 * question.Correct / question.Attempts, question.ID) for question in total.Questions)
        mean = sum(right for right, _ in percent) / len(percent)
        print(f"{listed.Title:8} {mean:5.1f} %   hardest: {percent[0][1]} {percent[0][0]:5.1f} %")

if __name__ == "__main__":
    year(sys.argv[1], sys.argv[2], *map(int, sys.argv[3:]))
