#pragma once

#include <norvakavlor/assessment/question.h>
#include <norvakavlor/curriculum/module_list.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] QuestionPool;

/// The questions of a title, one document. It owns its members.
class QuestionPool final : public Object {
public:
    const Ref<KeyedCollection<Question>> Questions = New<KeyedCollection<Question>>(); ///< live; keyed by ID

    /// A new collection of the modules, in the order loaded.
    Ref<KeyedCollection<std::string>> GetModules() const;
    /// Clones of the questions whose module is exactly this one, keyed by ID, in pool order. Raises object
    /// error 650 if two of them now share an ID.
    Ref<KeyedCollection<Question>> GetQuestionsByModule(const std::string& moduleName) const;

    /// Adds a document's questions. False, and nothing changed, if it is missing, unreachable or ill-formed.
    /// Raises object errors for a faulty question: 641 an objective and 642 a task that the arguments lack;
    /// 643, 644, 646, 647 a missing step; 645 a missing index; 651, 652, 649, 648 a repeated step; 653 a
    /// repeated ID. That question is not added; those before it stay.
    bool Load(const std::string& fileName, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);
    bool LoadFromXMLNode(xml::Node poolNode, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);

    /// Stores the pool. Set-up and question images are not written, and markup in a text becomes plain text.
    /// True unless it raises: 70, 76, 61 or 57 if a local file cannot be written.
    bool Save(const std::string& fileName) const;
    void SaveToXMLNode(xml::Node poolNode) const;

    static const ClassInfo& classInfo();

private:
    void add(const Ref<Question>& question);

    ModuleList modules_;
};

} // namespace norvakavlor
