import sys

from norvakavlor import GradiumExam, Objectives, QuestionPool, last_reason

server = sys.argv[1] if len(sys.argv) > 1 else "http://127.0.0.1:8080/"
objectives, pool, launched = Objectives(), QuestionPool(), GradiumExam()
if not (objectives.Load("objectives.xml") and pool.Load("questionpool.xml", objectives)
        and launched.Load(server + "launch.xml", pool, "none")):
    sys.exit(last_reason())

exam = launched.theExam
print(f'{launched.StudentFirstName} is to take "{exam.Title}"')
for question in exam.Questions:
    question.Attempts = 1
    question.Correct = 1  # -1 for a wrong answer
    print(f"{question.ID}: {question.Text}")
if launched.Save("", True):
    print("The gradebook has the results")
else:
    print("Not taken:", launched.ServerErrorStr)
