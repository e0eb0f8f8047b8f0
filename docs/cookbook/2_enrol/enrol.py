import csv
import sys

from norvakavlor import Courses, Error, Student, Students, last_reason

courses = Courses()
if not courses.Load("courses.xml"):
    sys.exit(last_reason())
course = courses.Courses[1]
with open("class.csv", encoding="utf-8", newline="") as file:
    for row in csv.DictReader(file):
        student = Student(LastName=row["LastName"], FirstName=row["FirstName"], UserName=row["UserName"],
                          Course=course.ID, Section=course.Sections[1].ID)
        student.SetPassword(row["Password"])
        name = f"{student.FirstName} {student.LastName}"
        try:
            if Students().AddStudent("students.xml", student, courses):
                print(student.StudentID, name)
            else:
                print(f"{name} is to be added again: {last_reason()}")
        except Error as error:
            print(f"{name} is not added: {error.description}")
