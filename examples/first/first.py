from norvakavlor import Student, Students

roster = Students()
if not roster.AddStudent("students.xml", Student(FirstName="Mila", LastName="Novak")):
    raise SystemExit(1)
for one in roster.Students:
    print(one.StudentID, one.FirstName, one.LastName)
