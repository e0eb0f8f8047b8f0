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

    /// Adds a document's questions, those before a faulty one. False, and nothing changed, if it is missing,
    /// unreachable or ill-formed. Raises object errors for a faulty question: 641 an objective and 642 a task
    /// that the arguments lack; 643, 644, 646, 647 a missing step; 645 a missing index; 651, 652, 649, 648 a
    /// repeated step; 653 a repeated ID. Raises 13 or 6 for an index that is not a 16-bit number.
    bool Load(const std::string& fileName, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);
    /// The same from a questionPool element. Raises as Load does.
    bool LoadFromXMLNode(xml::Node poolNode, Objectives* objectives = nullptr, TaskPool* taskPool = nullptr);

    /// Stores the pool. Set-up and question images are not written, and markup in a text becomes plain text.
    /// Always True. Raises 70, 76, 61 or 57 if a local file cannot be written, 0x800C0005 if no reply comes,
    /// and as SaveToXMLNode does.
    bool Save(const std::string& fileName) const;
    /// Fills a questionPool element. Raises 91 or 13 if a client put something else than a DialogBox into a
    /// question's DialogBoxes.
    void SaveToXMLNode(xml::Node poolNode) const;

    static const ClassInfo& classInfo();

private:
    void add(const Ref<Question>& question);

    ModuleList modules_;
};

} // namespace norvakavlor
