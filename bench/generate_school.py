#!/usr/bin/env python3
"""Writes a school to try programs on: bench/generate_school.py FOLDER [CLASSES STUDENTS EXAMS ATTEMPTS [QUESTIONS]]

40 classes with 1,200 students, 30 exams and 20,000 attempts when no numbers are given; the same school every time.
"""
import pathlib
import random
import sys

FIRST = ("Ana Björn Chiara Dilek Emil Farah Goran Hanna Ivo Jana Karim Lena Marek Nora Omar Petra Rui Sofia Tomás Yusuf "
         "Élodie Gintarė Hugo Ines Jakub Kavita Liam Mila").split()
LAST = ("Baptista Ekström D'Amico Kaya Lindqvist Haddad Marić Olsen Petrov Quist Rossi Silva Tanaka Unger Vega Weiß "
        "Kim Lefèvre Wójcik Sharma O'Brien Novák Müller").split()
SUBJECTS = ("Spreadsheets", "Writing and layout", "Slides", "Databases", "The computer itself", "Mail and calendar")
VERBS = ("Sort", "Format", "Insert", "Copy", "Name", "Freeze", "Filter", "Print", "Align", "Group")
THINGS = ("the price column", "a page header", "the first row", "a chart of sales", "the table of towns", "all even slides",
          "a footnote", "the selected cells", "the address list", "a summary")
TASKS = 6


def element(name, text, attributes=""):
    return f"<{name}{attributes}>{text}</{name}>"


def main():
    folder = pathlib.Path(sys.argv[1])
    classes, students, exams, attempts, questions = (list(map(int, sys.argv[2:])) + [40, 1200, 30, 20000, 40][len(sys.argv) - 2:])
    chance = random.Random(20261126)

    def write(name, root, lines, attributes=""):
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f"<{root}{attributes}>" + "".join(lines) + f"</{root}>", encoding="utf-8")

    courses = max(1, classes // 4)
    of_class = [(number % courses + 1, number // courses) for number in range(classes)]
    write("textbooks.xml", "textBookList", [element("textBook", "<id>BASICS</id><title>Office basics</title><author>R. Nyström</author>")])
    write("courses.xml", "classes", [
        element("class", f"<id>{course}</id><className>{SUBJECTS[course % 6]} {course}</className><sectionList>" + "".join(
            f"<section><id>{section}</id><sectionName>Group {'ABCDEFGHIJ'[section % 10]}</sectionName></section>"
            for own, section in of_class if own == course) + "</sectionList><textBookRef>BASICS</textBookRef>")
        for course in range(1, courses + 1)])
    write("objectives.xml", "objectiveList", [
        element("objective", f"<id>O-{n:02}</id><module>{SUBJECTS[n % 6]}</module>") for n in range(30)])
    write("taskpool.xml", "taskPool", [
        element("task", f"<id>T-{n:03}</id><taskName>{VERBS[n % 10]} {THINGS[n * 7 % 10]}</taskName>"
                        f"<objectiveRef>O-{n % 30:02}</objectiveRef>") for n in range(120)])
    pool = questions * 5
    write("questionpool.xml", "questionPool", [
        element("question", f"<id>Q-{n:03}</id><text>{VERBS[n % 10]} {THINGS[(n // 10 + n) % 10]}, as on sheet {n // 3 + 1}</text>"
                            f"<objectiveRef>O-{n % 30:02}</objectiveRef>") for n in range(pool)])

    roster = []
    skill = {}
    for number in range(1, students + 1):
        student = f"SID{number:05}"
        course, section = of_class[(number - 1) * classes // students]
        # A class has a level of its own, a few students have not begun.
        level = random.Random(course * 100 + section).uniform(0.6, 0.92)
        skill[student] = (course, section, min(0.98, max(0.1, chance.gauss(level, 0.13))), chance.random() < 0.08)
        roster.append(element("student", f"<id>{student}</id><name><first>{chance.choice(FIRST)}</first><last>{chance.choice(LAST)}</last>"
                                         f"</name><classRef>{course}</classRef><sectionRef>{section}</sectionRef><username>u{number}</username>"))
    write("students.xml", "students", roster, f' autoStudentID="{students}"')

    def result(exam, ids, hard, student, number):
        level = skill[student][2]
        right = [int(chance.random() < level * hard[question]) for question in ids]
        share = 100 * sum(right) / len(right)
        going = chance.random() < 0.005
        write(f"exams/exam{exam:02}_kvqm_{student}_{number:02}.xml", "exam", [
            f"<title>{titles[exam]}</title><source>1</source><studentID>{student}</studentID>"] + [
            f'<questionRef correct="{value}" attempts="1" points="1">{question}</questionRef>' for question, value in zip(ids, right)],
            f' ID="E-{exam:02}" currentQuestion="{len(ids)}" timeExpired="0"' + ("" if going else ' completionDate="11/9/2026"')
            + f' started="true" pctCorrect="{share:.4g}"')

    titles = [f"{SUBJECTS[n % 6]}, test {n // 6 + 1}" for n in range(exams)]
    taking = [student for student in skill if not skill[student][3]]
    # Every course has as many of the exams as give the wanted number of attempts; some students miss one.
    each = min(exams, max(1, int(attempts / max(1, len(taking)) / 1.03)))
    examined = {course: set(chance.sample(range(exams), each)) for course in range(1, courses + 1)}
    written = 0
    repeatable = []
    for exam in range(exams):
        ids = [f"Q-{n:03}" for n in sorted(chance.sample(range(pool), questions))]
        hard = {question: chance.choice((0.45, 0.85, 1, 1, 1.1, 1.1)) for question in ids}
        write(f"exams/exam{exam:02}_kvqm.xml", "exam", [f"<title>{titles[exam]}</title><source>1</source>"] + [
            f'<questionRef correct="0" attempts="0" points="1">{question}</questionRef>' for question in ids] + [
            f'<examRemediation questionRef="{ids[0]}">Read chapter {exam + 1} again and try the exercise at its end.</examRemediation>'] + [
            element("examAssignment", f"<examRef>E-{exam:02}</examRef><classRef>{course}</classRef><sectionRef>{section}</sectionRef>")
            for course, section in of_class if exam in examined[course]],
            f' ID="E-{exam:02}" currentQuestion="0" timeExpired="0" started="false" pctCorrect="0"')
        for student in taking:
            if written < attempts and exam in examined[skill[student][0]] and chance.random() < 0.985:
                result(exam, ids, hard, student, 1)
                written += 1
                repeatable.append((exam, ids, hard, student))
    for again in chance.sample(repeatable, min(len(repeatable), attempts - written)):
        result(*again, 2)

    lessons = 12 if students > 100 else 4
    for lesson in range(lessons):
        ids = [f"T-{lesson * TASKS + n:03}" for n in range(TASKS)]

        def write_lesson(name, dates):
            write(f"lessons/{name}", "lesson", [f"<title>{SUBJECTS[lesson % 6]}, lesson {lesson // 6 + 1}</title><source>1</source><taskList>"]
                  + [element("taskRef", task, f' completed="{date}"') for task, date in zip(ids, dates)] + ["</taskList>"],
                  f' ID="L-{lesson:02}" EXTERNAL_ID="" COMPLETED="false"')

        write_lesson(f"lesson{lesson:02}_kvl.xml", ["12:00:00 AM"] * TASKS)
        for student in taking:
            if skill[student][0] % lessons in (lesson, (lesson + 1) % lessons) and chance.random() < 0.85:
                done = TASKS if chance.random() < 0.85 else chance.randrange(1, TASKS)
                write_lesson(f"lesson{lesson:02}_kvl_{student}.xml", ["10/12/2026"] * done + ["12:00:00 AM"] * (TASKS - done))
    write("lessons/school_lm.xml", "lessonMenu", ["<title>All lessons</title><tutorialList>"] + [
        f'<tutorial type="normal"><title>{subject}</title><lessonList>' + "".join(
            element("lessonFile", f"lesson{n:02}_kvl.xml") for n in range(lessons) if n % 6 == place) + "</lessonList></tutorial>"
        for place, subject in enumerate(SUBJECTS[:min(6, lessons)])] + ["</tutorialList>"])


main()
