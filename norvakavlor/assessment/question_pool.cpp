#include <norvakavlor/assessment/question_pool.h>

#include <norvakavlor/assessment/question_format.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {

Ref<KeyedCollection<std::string>> QuestionPool::GetModules() const { return modules_.copy(); }

Ref<KeyedCollection<Question>> QuestionPool::GetQuestionsByModule(const std::string& moduleName) const {
    auto questions = New<KeyedCollection<Question>>();
    for (const Ref<Question>& question : *Questions) {
        if (question->Module != moduleName)
            continue;
        if (questions->contains(question->ID)) {
            const std::string source = "QuestionPool.GetQuestionsByModule";
            throw objectError(650, source,
                              source + ": duplicate question '" + question->ID + "' in module " + moduleName);
        }
        questions->Add(question->Clone(), question->ID);
    }
    return questions;
}

bool QuestionPool::Load(const std::string& fileName, Objectives* objectives, TaskPool* taskPool) {
    return Operation("load", kQuestionPoolDocument.kind, fileName).run([&] {
        auto loaded =
            LoadedMembers<Question>::from(kQuestionPoolDocument.kind, fileName, [&](xml::Node node) {
                return readQuestion(node, objectives, taskPool);
            });
        if (!loaded)
            return false;
        Questions->reserve(static_cast<size_t>(Questions->Count()) + loaded->count());
        return loaded->addEach([this](const Ref<Question>& question) { add(question); });
    });
}

bool QuestionPool::LoadFromXMLNode(xml::Node poolNode, Objectives* objectives, TaskPool* taskPool) {
    // Every child is a question, whatever its name; a comment gives empty fields.
    for (const xml::Node child : xml::children(poolNode))
        readsNode(child, [&] { add(readQuestion(child, objectives, taskPool)); });
    return true;
}

void QuestionPool::add(const Ref<Question>& question) {
    if (!Questions->tryAdd(question, question->ID))
        return reportFault(questionPoolError(653, "found duplication question id '" + question->ID + "'"),
                           FaultKind::Duplicate, question->ID);
    modules_.add(question->Module);
}

bool QuestionPool::Save(const std::string& fileName) const {
    saveEach(kQuestionPoolDocument, fileName, *Questions,
             [](const Question& question, xml::Document&, xml::Node root) {
                 writeQuestion(question, root.append("question"));
             });
    return true;
}

void QuestionPool::SaveToXMLNode(xml::Node poolNode) const {
    for (const Ref<Question>& question : *Questions)
        writeQuestion(*question, poolNode.append("question"));
}

const ClassInfo& QuestionPool::classInfo() {
    static const ClassInfo info =
        describe<QuestionPool>("QuestionPool", "The questions of a title, one document.")
            .readOnly("Questions", &QuestionPool::Questions, "The questions, keyed by ID, in document order.")
            .method("GetModules", &QuestionPool::GetModules, {},
                    "The questions' modules, in order of first use.")
            .method("GetQuestionsByModule", &QuestionPool::GetQuestionsByModule, {"moduleName"},
                    "Clones of a module's questions, in pool order.")
            .method("Load", &QuestionPool::Load,
                    {"fileName", {"objectives", optional}, {"taskPool", optional}},
                    "Adds a document's questions; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &QuestionPool::LoadFromXMLNode,
                    {"poolNode", {"objectives", optional}, {"taskPool", optional}},
                    "Adds the questions of a questionPool element.")
            .method("Save", &QuestionPool::Save, {"fileName"}, "Stores the questions as one document.")
            .method("SaveToXMLNode", &QuestionPool::SaveToXMLNode, {"poolNode"},
                    "Fills a questionPool element.");
    return info;
}

} // namespace norvakavlor
