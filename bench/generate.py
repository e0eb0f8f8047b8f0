#!/usr/bin/env python3
"""Writes the documents that the benchmarks read: bench/generate.py FOLDER

The same documents every time: what looks like chance comes from a fixed seed. A folder that is complete is left alone.
"""
import pathlib
import random
import sys

SIZES = (1000, 10000, 30000)
EXAM_QUESTIONS = (50, 200, 800)
CLASSES = (30, 100, 300)
ATTEMPTS = (200, 1000, 2000)
OBJECTIVES = 200

WORDS = ("select the range of cells that holds every price of the first quarter and give it a frame then sort the "
         "table by town and print its first page without the heading of the second column").split()


def sentence(chance, count):
    return " ".join(chance.choice(WORDS) for _ in range(count))


def objectives():
    yield "<objectiveList>"
    for number in range(OBJECTIVES):
        yield (f"<objective><id>OBJ-{number:04}</id><module>Module {number % 12}</module>"
               f"<skillSet>Skill set {number % 40}</skillSet><objectiveLabel>Objective {number}</objectiveLabel></objective>")
    yield "</objectiveList>"


def tasks(count, chance):
    yield "<taskPool>"
    for number in range(count):
        yield (f"<task><id>TASK-{number:06}</id><taskName>{sentence(chance, 7)}</taskName>"
               f"<objectiveRef>OBJ-{chance.randrange(OBJECTIVES):04}</objectiveRef>"
               f"<baseHREF>tasks/module{number % 12}/</baseHREF></task>")
    yield "</taskPool>"


def images(element, number):
    inside = "".join(f'<image step="{step}">image-{number}-{step}.gif</image>' for step in range(1, 4))
    return f"<{element}>{inside}</{element}>"


def questions(count, task_count, chance):
    """Dense questions: about a kilobyte each, with every list that a question can have."""
    yield "<questionPool>"
    for number in range(count):
        answers = "".join(f"<answer>{sentence(chance, 2)}</answer>" for _ in range(3))
        yield (f"<question><id>Q-{number:06}</id><text>{sentence(chance, 12)} <b>B{number % 99}</b>.</text>"
               f'<answers inorder="false">{answers}</answers><vantel>{sentence(chance, 3)}</vantel>'
               f"<objectiveRef>OBJ-{chance.randrange(OBJECTIVES):04}</objectiveRef>"
               f"<taskRef>TASK-{chance.randrange(task_count):06}</taskRef><hint>{sentence(chance, 8)}</hint>"
               f"{images('backgroundImageList', number)}{images('correctImageList', number)}"
               f'<dialogBoxList><dialogBox step="1" index="1">{sentence(chance, 2)}</dialogBox>'
               f'<dialogBox step="2" index="2">{sentence(chance, 2)}</dialogBox></dialogBoxList>'
               f"<taskPaneList><taskPane>{sentence(chance, 2)}</taskPane></taskPaneList>"
               f'<divIDList><divID step="1">cell-{number % 50}</divID></divIDList></question>')
    yield "</questionPool>"


FIRST = "Ana Björn Chiara Dilek Emil Farah Goran Hanna Ivo Jana Karim Lena Marek Nora Omar Petra".split()
LAST = "Baptista Ekström D'Amico Kaya Lindqvist Haddad Marić Olsen Petrov Quist Rossi Silva Tanaka Unger Vega Weiß".split()


def roster(count, chance):
    yield f'<students autoStudentID="{min(count, 32000)}">'
    for number in range(1, count + 1):
        yield (f"<student><id>SID{number:05}</id><name><first>{chance.choice(FIRST)}</first>"
               f"<middle>{chance.choice('ABCDEFGH')}</middle><last>{chance.choice(LAST)}</last></name>"
               f"<classRef>{chance.randrange(4)}</classRef><sectionRef>0</sectionRef>"
               f"<username>user{number}</username></student>")
    yield "</students>"


def exam(question_ids, student, chance):
    started = "true" if student else "false"
    yield (f'<exam ID="E-1" currentQuestion="1" timeExpired="0" completionDate="10/12/2026" started="{started}" '
           f'pctCorrect="{chance.randrange(101)}"><title>An exam</title><source>1</source>')
    if student:
        yield f"<studentID>{student}</studentID>"
    for question in question_ids:
        yield f'<questionRef correct="{chance.randrange(2)}" attempts="1" points="1">{question}</questionRef>'
    yield "</exam>"


def main():
    folder = pathlib.Path(sys.argv[1])
    complete = folder / "complete"
    if complete.exists():
        return
    chance = random.Random(20261125)
    folder.mkdir(parents=True, exist_ok=True)

    def write(name, lines):
        path = folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text("".join(lines), encoding="utf-8")

    write("objectives.xml", objectives())
    for size in SIZES:
        write(f"taskpool_{size}.xml", tasks(size, chance))
        write(f"questionpool_{size}.xml", questions(size, size, chance))
        write(f"students_{size}.xml", roster(size, chance))
    for size in EXAM_QUESTIONS:
        write(f"exam_{size}.xml", exam([f"Q-{n:06}" for n in range(size)], "", chance))
    ids = [f"Q-{n:06}" for n in range(40)]
    for size in CLASSES:
        write(f"class_{size}/students.xml", roster(size, chance))
        write(f"class_{size}/exam_kvqm.xml", exam(ids, "", chance))
        for number in range(1, size + 1):
            write(f"class_{size}/exam_kvqm_SID{number:05}_01.xml", exam(ids, f"SID{number:05}", chance))
    for size in ATTEMPTS:
        for number in range(size):
            write(f"attempts_{size}/exam{number // 100:02}_kvqm_SID{number % 100:05}_01.xml",
                  exam(ids, f"SID{number % 100:05}", chance))
    complete.touch()


main()
