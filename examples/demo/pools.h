#pragma once

#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <string>

namespace demo {

/// What the other documents refer to, loaded in the order of their dependencies.
struct Pools {
    norvakavlor::Ref<norvakavlor::TextBooks> textBooks = norvakavlor::New<norvakavlor::TextBooks>();
    norvakavlor::Ref<norvakavlor::Objectives> objectives = norvakavlor::New<norvakavlor::Objectives>();
    norvakavlor::Ref<norvakavlor::TaskPool> tasks = norvakavlor::New<norvakavlor::TaskPool>();
    norvakavlor::Ref<norvakavlor::QuestionPool> questions = norvakavlor::New<norvakavlor::QuestionPool>();
    norvakavlor::Ref<norvakavlor::Courses> courses = norvakavlor::New<norvakavlor::Courses>();
};

/// `directory` is a folder or a web directory, with "/" at its end; textbooks.xml apart, the documents' names
/// end in `suffix`.
Pools loadPools(const std::string& directory, const std::string& suffix = "");

} // namespace demo
