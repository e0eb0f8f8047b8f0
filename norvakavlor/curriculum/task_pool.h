#pragma once

#include <norvakavlor/curriculum/module_list.h>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/text/date.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Task;
class [[gnu::visibility("default")]] TaskPool;

/// A skill to be performed. Its module is its objective's.
class Task final : public Object {
public:
    std::string ID; ///< key in TaskPool
    std::string TaskName;
    Ref<norvakavlor::Objective> Objective; ///< shared with the Objectives; may be Nothing
    std::string BaseHREF;                  ///< base address of the task's content
    Date CompletionDate;                   ///< when the student completed it; stored in lessons, not in pools
    NotNull<KeyedCollection<Reference>> References; ///< no keys; clones share it

    /// A new task with the same fields, sharing Objective and References.
    Ref<Task> Clone() const;
    /// Fills a task element. Raises 91 for a reference without a textbook.
    void SaveToXMLNode(xml::Node node) const;
    /// Renames the objective in place, for all who share it; without one, makes one with this ID.
    void SetObjectiveID(const std::string& objectiveID);

    static const ClassInfo& classInfo();
};

/// The tasks of a title, one document. It owns its members.
class TaskPool final : public Object {
public:
    const Ref<KeyedCollection<Task>> Tasks =
        New<KeyedCollection<Task>>(); ///< live; keyed by ID, in document order

    /// A new collection of the objectives' modules, in the order loaded.
    Ref<KeyedCollection<std::string>> GetModules() const;
    /// Clones of the tasks whose objective's module is exactly this one, keyed by ID. Raises 91 if any task
    /// has no objective, even if others match, and 457 if two of them now share an ID.
    Ref<KeyedCollection<Task>> GetTasksByModule(const std::string& moduleName) const;

    /// Adds a document's tasks. Textbooks of references have only IDs. False, and nothing changed, if it is
    /// missing, unreachable or ill-formed. Raises object error 621 for an objective that `objectives` lacks
    /// (any, without `objectives`) and 622 for a repeated ID; the tasks before it stay.
    bool Load(const std::string& location, Objectives* objectives = nullptr);
    /// The same from a taskPool element. Raises as Load does.
    bool LoadFromXMLNode(xml::Node poolNode, Objectives* objectives = nullptr);

    /// Stores the pool. Always True. Raises 70, 76, 61 or 57 if a local file cannot be written, 0x800C0005 if
    /// no reply comes, and as Task::SaveToXMLNode does.
    bool Save(const std::string& location) const;
    /// Fills a taskPool element. Raises as Task::SaveToXMLNode does.
    void SaveToXMLNode(xml::Node poolNode) const;

    static const ClassInfo& classInfo();

private:
    void add(const Ref<Task>& task);

    ModuleList modules_;
};

} // namespace norvakavlor
