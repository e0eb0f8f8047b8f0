#pragma once

#include <norvakavlor/assessment/question.h>
#include <norvakavlor/xml/document.h>

namespace norvakavlor {

/// Reads a child of a question pool. Raises object errors 641 to 652.
Ref<Question> readQuestion(xml::Node node, Objectives* objectives, TaskPool* taskPool);

/// Fills a question element. Reading and writing differ: see the source.
void writeQuestion(const Question& question, xml::Node node);

/// An error of a pool's loader; most have this source and begin with it.
Error questionPoolError(int code, const std::string& description);

} // namespace norvakavlor
