from norvakavlor import Error, Objectives, QuestionPool, last_reason

objectives, pool = Objectives(), QuestionPool()
if not objectives.Load("spring/objectives.xml"):
    print("Not loaded:", last_reason())
objectives.Load("objectives.xml")
try:
    pool.Load("spring/questionpool.xml", objectives)
except Error as error:
    print(f"Error {error.number & 0xFFFF}: {error.description}")
    print("Where:", last_reason())  # error.place has it in parts
    print("Loaded before it:", len(pool.Questions))
