#pragma once

#include <norvakavlor/assessment/question.h>
#include <norvakavlor/xml/document.h>

namespace norvakavlor {

/// Reads a child of a question pool; raises the object errors 641 to 652.
Ref<Question> readQuestion(xml::Node node, Objectives* objectives, TaskPool* taskPool);

/// Fills a question element. Reading and writing are not symmetric: see the source.
void writeQuestion(const Question& question, xml::Node node);

/// The source that most errors of a pool's loader carry, and with which their texts begin.
Error questionPoolError(int code, const std::string& description);

} // namespace norvakavlor
