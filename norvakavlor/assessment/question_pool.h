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

    /// The questions' modules as loading met them: a new collection.
    Ref<KeyedCollection<std::string>> GetModules() const;
    /// Clones of the questions whose module is exactly this one, keyed by ID, in pool order. Raises object
    /// error 650 when two of them have one ID by now.
    Ref<KeyedCollection<Question>> GetQuestionsByModule(const std::string& moduleName) const;

    /// Adds the questions of the document at a location. False, with nothing changed, when it cannot be had
    /// or does not parse. Raises object errors for what a question holds: 641 an objective and 642 a task
    /// that is not in what is passed; 643, 644, 646, 647 a step and 645 an index that is missing; 651, 652,
    /// 649, 648 a step that is repeated; 653 a repeated ID. The questions before it stay, that question is
    /// not added.
    bool Load(const std::string& fileName, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);
    bool LoadFromXMLNode(xml::Node poolNode, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);

    /// Stores the pool. The format loses what it has no writer for: set-up and question images; and markup in
    /// a text becomes text. True whenever no error was raised; raises 70, 76, 61 or 57 when a local file
    /// cannot be written.
    bool Save(const std::string& fileName) const;
    void SaveToXMLNode(xml::Node poolNode) const;

    static const ClassInfo& classInfo();

private:
    void add(const Ref<Question>& question);

    ModuleList modules_;
};

} // namespace norvakavlor
