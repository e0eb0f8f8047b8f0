"""The installed package, as its clients see it."""

import datetime
import decimal
import gc
import inspect
import os
import pathlib
import re
import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import norvakavlor as nk
import pytest
from norvakavlor import _library, _tables

SOURCE = pathlib.Path(os.environ["KAVLOR_SOURCE"])
CURRICULUM = f"{SOURCE}/examples/curriculum/"


def one_of_each_class():
    handed_out = {
        "Dictionary": lambda: nk.Question().BGImages,
        "Collection": lambda: nk.Exam().Questions,
        "XMLNode": lambda: nk.parse("<list><id>1</id></list>"),
    }
    for row in _tables.read_classes():
        made = getattr(nk, row.name)() if row.is_creatable else handed_out[row.name]()
        assert type(made).__name__ == row.name
        yield row, made


def test_the_reference_page_shows_what_is_offered():
    page = (SOURCE / "docs/reference.md").read_text(encoding="utf-8")
    shown = re.findall(r"#### (\w+)\.(\w+)\n\n```text\n[^`]*\nPython +([^`]*)\n```", page)
    assert len(shown) > 100
    for owner, name, form in shown:
        offered = getattr(getattr(nk, owner), name)
        form = re.sub(r"\s+", " ", form).partition(".")[2]
        if isinstance(offered, property):
            assert form.startswith(f"{name}["), f"{owner}.{name}"
            continue
        signature = re.sub(r"self, /(, )?|'| \| PathLike\[str\]", "", str(inspect.signature(offered)))
        assert form == name + signature, owner


def fitting(kind):
    return {
        _library.TYPE_TEXT: "document.xml",
        _library.TYPE_BOOLEAN: True,
        _library.TYPE_DOUBLE: 2.5,
        _library.TYPE_DATE: datetime.datetime(2026, 11, 10, 9, 30),
        _library.TYPE_NODE: nk.parse("<list/>"),
        _library.TYPE_DOCUMENT: nk.parse("<list/>"),
        _library.TYPE_ARRAY: [None, "a"],
        _library.TYPE_OBJECT: None,
    }.get(kind, 1)


def test_every_member_of_every_class_is_reached_by_name(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    reached = 0
    for row, made in one_of_each_class():
        assert type(made).__doc__ == row.summary
        for member in row.members:
            inputs = [fitting(parameter.type.kind) for parameter in member.inputs]
            described = inspect.getattr_static(made, member.name)
            assert described.__doc__.startswith(member.help)
            try:
                if member.is_method:
                    assert list(inspect.signature(described).parameters)[1:] == [p.name for p in member.inputs]
                    answer = getattr(made, member.name)(*inputs)
                    count = len(member.results) + (member.type.kind != _library.TYPE_NONE)
                    assert count < 2 or len(answer) == count
                elif member.parameters:
                    getattr(made, member.name)[tuple(inputs)]
                else:
                    before = getattr(made, member.name)
                    if member.is_writable:
                        new = fitting(member.type.kind) if member.type.kind != _library.TYPE_OBJECT else before
                        setattr(made, member.name, new)
                        assert getattr(made, member.name) == new
                    else:
                        with pytest.raises(AttributeError):
                            setattr(made, member.name, before)
            except nk.Error as error:
                unknown = error.number in (438, 448, 449, 450) and member.is_readable
                assert error.description and not unknown, f"{row.name}.{member.name}: {error}"
            reached += 1
    nk.Diagnostics().LogFile = ""  # the walk has set it
    assert reached > 350
    assert {row.name for row in _tables.read_enumerations()} <= set(nk.__all__)


def test_a_roster_is_what_python_expects(tmp_path):
    file = tmp_path / "roster.xml"
    courses = nk.Courses()
    books = nk.TextBooks()
    assert books.Load(CURRICULUM + "textbooks.xml") and courses.Load(CURRICULUM + "courses.xml", textBooks=books)
    roster = nk.Students()
    mila = nk.Student(FirstName="Mila", LastName="Nov\u00e1k", UserName="mila", Course="1", Section="0")
    assert roster.AddStudent(file, mila, courses)
    assert roster.AddStudent(str(file), theStudent=nk.Student(LastName="Abel", UserName="abel"))
    mila = roster.Students[1]  # the roster was read anew
    assert [s.LastName for s in roster.Students] == ["Nov\u00e1k", "Abel"]
    assert len(roster.Students) == 2
    assert roster.Students["sid00001"] == roster.Students[1] == mila != roster.Students[2]
    assert roster.Students["SID00001"] in {mila}
    assert ["SID00002" in roster.Students, "SID9" in roster.Students, "SID00002" in roster] == [True, False, True]
    assert mila in roster.Students and nk.Student() not in roster.Students
    assert mila.Validate(courses) == (True, 0, "")
    assert nk.Student(Course="9").Validate(courses=courses)[:2] == (False, 631)
    array = [None, *roster.Students]
    assert roster.Selectionsort(array, "LastName") is None
    assert [held.LastName for held in array[1:]] == ["Abel", "Nov\u00e1k"]
    del roster.Students[2]
    assert len(roster.Students) == 1
    assert nk.CreateObject("norvakavlor.STUDENTS").Load(file)
    node = nk.parse("<students/>")
    roster.SaveToXMLNode(node)
    assert node.name == "students" and "Nov\u00e1k" in node.xml


def test_a_dictionary_is_a_mapping():
    question = nk.Question()
    images = question.BGImages
    values = [None, True, 7, -(2**31), 2.5, "\u00fc", 10**18 + 1, decimal.Decimal("0.12345678901234567"), nk.Task()]
    values += [datetime.datetime(2026, 2, 28, 23, 59, 59), datetime.datetime(1899, 12, 29, 6), [1, ["a", None]]]
    for place, value in enumerate(values):
        images[str(place)] = value
    assert [images[str(place)] for place in range(len(values))] == values
    assert list(images) == list(images.keys()) == images.Keys() == [str(place) for place in range(len(values))]
    assert dict(question.BGImages) == dict(zip(images.Keys(), values))
    with pytest.raises(KeyError):
        images["absent"]
    assert "absent" not in images and images.get("absent", 5) == 5
    images.Key["0"] = "first"
    images.Item["first"] = 2**40
    assert images.Item("first") == images.pop("first") == 2**40 and len(images) == len(values) - 1
    images.clear()
    assert not images
    task = nk.Task(CompletionDate=datetime.date(2026, 5, 1))
    assert task.CompletionDate == datetime.datetime(2026, 5, 1)
    task.CompletionDate = None
    assert task.CompletionDate is None


@pytest.mark.parametrize(
    "act, kind, number",
    [
        (lambda: nk.Students().Students["nobody"], KeyError, 5),
        (lambda: nk.Question().BGImages.Remove("nobody"), KeyError, 32811),
        (lambda: nk.Students().Students[1], IndexError, 9),
        (lambda: nk.Exam().Save("nowhere/exam.xml"), FileNotFoundError, 76),
        (lambda: nk.ExamList().Delete("nowhere.xml"), FileNotFoundError, 53),
        (lambda: setattr(nk.Exam(), "CurrentQuestion", 40000), nk.Error, 6),
        (lambda: setattr(nk.Exam(), "CurrentQuestion", "one"), TypeError, 13),
        (lambda: setattr(nk.Exam(), "Prefs", nk.Exam()), TypeError, 13),
        (lambda: nk.Exam().Load(), TypeError, 449),
        (lambda: nk.CreateObject("NorvaKavlor.Nobody"), nk.Error, 429),
        (lambda: nk.parse("<a>"), TypeError, 13),
    ],
)
def test_errors_are_pythons_own_kinds_too(act, kind, number, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    with pytest.raises(kind) as raised:
        act()
    assert isinstance(raised.value, nk.Error)
    assert raised.value.number == number and raised.value.source == "NorvaKavlor"
    assert raised.value.description in str(raised.value)


def test_an_error_shows_its_place():
    place = nk.Place("pool.xml", 12, 5, "Q9")
    cases = {641: "error 641", -2147220863: "error 641", -2146697211: "error &H800C0005"}
    for number, shown in cases.items():
        assert str(nk.Error(number, "Course", "No", place)) == f"pool.xml:12:5 (Q9): No (Course, {shown})"


@pytest.mark.parametrize(
    "act, kind",
    [
        (lambda: nk.Exam().Load("a", "b", "c"), TypeError),
        (lambda: nk.Exam().Load(place="a"), TypeError),
        (lambda: nk.Exam().Load("a", location="a"), TypeError),
        (lambda: nk.Exam(Load=1), TypeError),
        (lambda: setattr(nk.Exam(), "Titel", "a"), AttributeError),
        (lambda: nk.Collection(), TypeError),
        (lambda: nk.Exam().__reduce_ex__(4), TypeError),
        (lambda: setattr(nk.Exam(), "Title", {}), TypeError),
        (lambda: setattr(nk.Task(), "CompletionDate", datetime.datetime.now(datetime.timezone.utc)), TypeError),
    ],
)
def test_what_python_itself_refuses(act, kind):
    with pytest.raises(kind) as raised:
        act()
    assert not isinstance(raised.value, nk.Error)


def test_threads_share_objects_and_end_each_others():
    shared = nk.Exam()
    crowd = nk.Question().DialogBoxes
    leave = threading.Event()

    def collector():
        while not leave.wait(0.001):
            gc.collect()

    def work(number):
        ring = []
        for turn in range(300):
            question = nk.Question(ID=f"{number}-{turn}")
            shared.Questions.Add(question, question.ID)
            crowd[question.ID] = question
            ring.append([question, ring])  # only the collector ends it, in its own thread
            if turn % 2:
                del crowd[question.ID]
            ring = ring if turn % 50 else []
        return sum(held.ID.startswith(f"{number}-") for held in shared.Questions)

    ends = threading.Thread(target=collector)
    ends.start()
    with ThreadPoolExecutor(8) as pool:
        counts = list(pool.map(work, range(8)))
    leave.set()
    ends.join()
    assert counts == [300] * 8
    assert len(shared.Questions) == 2400 and len(crowd) == 1200


def resident_pages():
    return int(pathlib.Path("/proc/self/statm").read_text().split()[1])


def test_a_million_objects_leave_nothing_behind():
    books = nk.TextBooks()
    books.textBooks.Add(nk.TextBook(ID="B", Title="A title that is too long for a short text's own room"), "B")

    def turns(count):
        for _ in range(count):
            nk.TextBook()
            books.textBooks["B"].Title

    turns(20_000)
    before = resident_pages()
    turns(330_000)  # a book, the collection and its member: three objects a turn
    assert resident_pages() - before < 500


def school_year(place):
    script = SOURCE / "examples/python/school_year.py"
    done = subprocess.run([sys.executable, script, CURRICULUM, place, "20", "4"], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_a_school_year_is_the_same_in_a_folder_and_on_a_server(tmp_path):
    report = school_year(f"{tmp_path}/")
    assert len(report.splitlines()) == 4 and "hardest" in report
    assert school_year(os.environ["KAVLOR_SERVER"]) == report


def test_types_are_known_to_mypy(tmp_path):
    client = tmp_path / "client.py"
    client.write_text(
        "from norvakavlor import Course, Students, TextBook\n"
        "book: TextBook = Course().TextBook or TextBook(Title='a')\n"
        "valid: int = Students().Load('a', None)\n"
        "Students().Lod('a')\n"
        "Students().Load(1)\n"
        "book.Title = 3\n"
        "Course(Titel='a')\n"
        "Students().MatchUserName('a').LastName\n"
        "Course().Sections.Add(book, 'a')\n"
    )
    command = [sys.executable, "-m", "mypy", "--cache-dir", tmp_path / "cache", client]
    said = subprocess.run(command, capture_output=True, text=True).stdout
    assert [line.split(":")[1] for line in said.splitlines() if ": error:" in line] == ["4", "5", "6", "7", "8"]


def test_a_fault_says_where_it_is_and_why(tmp_path):
    file = tmp_path / "objectives.xml"
    file.write_text(
        "<objectiveList>\n<objective><id>O1</id></objective>\n<objective><id>O2</id><referenceList><reference>"
        "<textBookRef>none</textBookRef></reference></referenceList></objective></objectiveList>"
    )
    with pytest.raises(nk.Error) as raised:
        nk.Objectives().Load(file, nk.TextBooks())
    assert raised.value.place[:2] == (str(file), 3)
    assert f"{file}:3:" in str(raised.value) and raised.value.description in nk.last_reason()
    assert nk.TextBooks().Load(tmp_path / "none.xml") is False
    assert nk.last_reason().endswith("none.xml: there is no such file")
