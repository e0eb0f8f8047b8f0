kavlor check .
