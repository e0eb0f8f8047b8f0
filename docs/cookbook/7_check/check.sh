kavlor check spring
