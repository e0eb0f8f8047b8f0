import sys

from norvakavlor import GradiumExam, Objectives, QuestionPool, last_reason

server = sys.argv[1] if len(sys.argv) > 1 else "http://127.0.0.1:8080/"
record = "record_SID00001_E-SHEETS.xml"
objectives, pool, launched = Objectives(), QuestionPool(), GradiumExam()
if not (objectives.Load("objectives.xml") and pool.Load("questionpool.xml", objectives)
        and launched.Load(server + "launch.xml", pool, "none")):
    sys.exit(last_reason())
for question in launched.theExam.Questions:
    question.Attempts = question.Correct = 1
if not launched.Save("", True):
    print(f"Not taken ({launched.ServerErrorStr}), so it is kept")
    launched.Save(record)

# Later, perhaps in another program:
kept = GradiumExam()
if kept.Load(record, pool, "none") and kept.Save("", True):
    print(f"Taken: {len(kept.theExam.Questions)} answers of {kept.StudentFirstName}")
    kept.Delete(record)
