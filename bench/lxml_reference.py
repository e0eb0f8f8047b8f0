#!/usr/bin/env python3
"""A question pool read by lxml into plain classes: bench/lxml_reference.py FILE ROUNDS

Prints the CPU time of each round in milliseconds.
"""
import sys
import time

from lxml import etree


class Question:
    __slots__ = ("id", "text", "answers", "objective", "task", "hint", "images", "correct", "boxes", "panes", "divisions")

    def __init__(self, node):
        self.id = node.findtext("id")
        self.text = node.findtext("text")
        self.answers = [answer.text for answer in node.iterfind("answers/answer")]
        self.objective = node.findtext("objectiveRef")
        self.task = node.findtext("taskRef")
        self.hint = node.findtext("hint")
        self.images = {image.get("step"): image.text for image in node.iterfind("backgroundImageList/image")}
        self.correct = {image.get("step"): image.text for image in node.iterfind("correctImageList/image")}
        self.boxes = {box.get("step"): (int(box.get("index")), box.text) for box in node.iterfind("dialogBoxList/dialogBox")}
        self.panes = [pane.text for pane in node.iterfind("taskPaneList/taskPane")]
        self.divisions = {division.get("step"): division.text for division in node.iterfind("divIDList/divID")}


for _ in range(int(sys.argv[2])):
    start = time.process_time()
    root = etree.parse(sys.argv[1]).getroot()
    pool = {question.id: question for question in map(Question, root)}
    del root, pool
    print(1000 * (time.process_time() - start))
