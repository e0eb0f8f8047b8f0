"""NorvaKavlor for Python: curricula, rosters, exams and lessons as objects.

The classes below are those of the library, with its own names; help(norvakavlor.Students) shows what one can do.

    from norvakavlor import Student, Students
    roster = Students()
    roster.AddStudent("roster.xml", Student(FirstName="Mila", LastName="Novak"))
    for student in roster.Students:
        print(student.StudentID, student.LastName)

What the library raises is a norvakavlor.Error. Where a member answers False, last_reason() says why, when it is known.
"""

from norvakavlor._classes import make_classes, make_enumerations
from norvakavlor._errors import (
    Error,
    NoSuchFile,
    NoSuchKey,
    NoSuchPosition,
    NotPermitted,
    OutOfMemory,
    Place,
    WrongArgument,
)
from norvakavlor._functions import CreateObject, last_reason, parse, version
from norvakavlor._object import Object

__version__ = version()
globals().update(make_enumerations())
globals().update(make_classes())
del make_classes, make_enumerations
__all__ = [name for name in globals() if not name.startswith("_") and name != "version"]
