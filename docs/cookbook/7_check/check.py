from norvakavlor import Error, Objectives, QuestionPool, TextBooks, last_reason

books, objectives, pool = TextBooks(), Objectives(), QuestionPool()
if not books.Load("spring/textbooks.xml"):
    print("Not loaded:", last_reason())
try:
    objectives.Load("spring/objectives.xml", books)
    pool.Load("spring/questionpool.xml", objectives)
except Error as error:
    print(f"Error {error.number & 0xFFFF}: {error.description}")
    print("Where:", last_reason())  # error.place has it in parts
    print("Loaded before it:", len(pool.Questions))
