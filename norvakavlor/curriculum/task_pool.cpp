#include <norvakavlor/curriculum/task_pool.h>

#include <norvakavlor/store/collection.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr const char* kTaskPoolSource = "TaskPool.LoadFromXMLNode";

Error loadError(int code, const std::string& description) {
    return objectError(code, kTaskPoolSource, std::string(kTaskPoolSource) + ": " + description);
}

/// Every child of a pool is a task, whatever its name; a comment gives empty fields.
Ref<Task> readTask(xml::Node node, Objectives* objectives) {
    auto task = New<Task>();
    task->ID = node.child("id").text();
    task->TaskName = node.child("taskName").text();
    task->BaseHREF = node.child("baseHREF").text();
    if (const xml::Node reference = node.child("objectiveRef")) {
        const auto* found = objectives ? objectives->ObjectiveMembers->find(reference.text()) : nullptr;
        if (found)
            task->Objective = *found;
        else
            reportFault(xml::at(reference, loadError(621, "Invalid Objective ID")), FaultKind::Unknown,
                        reference.text(), kObjectivesDocument.kind);
    }
    // Pools get no textbooks, so each reference gets its own one with only an ID.
    loadReferences(*task->References, node, nullptr);
    return task;
}

} // namespace

Ref<Task> Task::Clone() const {
    auto clone = New<Task>();
    clone->ID = ID;
    clone->TaskName = TaskName;
    clone->Objective = Objective;
    clone->BaseHREF = BaseHREF;
    clone->CompletionDate = CompletionDate;
    clone->References = References;
    return clone;
}

void Task::SaveToXMLNode(xml::Node node) const {
    node.append("id", ID);
    node.append("taskName", TaskName);
    if (Objective)
        node.append("objectiveRef", Objective->ID);
    node.append("baseHREF", BaseHREF);
    saveReferences(*References, node);
}

void Task::SetObjectiveID(const std::string& objectiveID) {
    if (!Objective)
        Objective = New<norvakavlor::Objective>();
    Objective->ID = objectiveID;
}

Ref<KeyedCollection<std::string>> TaskPool::GetModules() const { return modules_.copy(); }

Ref<KeyedCollection<Task>> TaskPool::GetTasksByModule(const std::string& moduleName) const {
    auto tasks = New<KeyedCollection<Task>>();
    for (const Ref<Task>& task : *Tasks) {
        if (!task->Objective)
            throw runtimeError(RuntimeError::ObjectNotSet);
        if (task->Objective->Module == moduleName)
            tasks->Add(task->Clone(), task->ID);
    }
    return tasks;
}

bool TaskPool::Load(const std::string& location, Objectives* objectives) {
    return Operation("load", kTaskPoolDocument.kind, location).run([&] {
        auto loaded = LoadedMembers<Task>::from(kTaskPoolDocument.kind, location,
                                                [&](xml::Node node) { return readTask(node, objectives); });
        if (!loaded)
            return false;
        Tasks->reserve(static_cast<size_t>(Tasks->Count()) + loaded->count());
        return loaded->addEach([this](const Ref<Task>& task) { add(task); });
    });
}

bool TaskPool::LoadFromXMLNode(xml::Node poolNode, Objectives* objectives) {
    for (const xml::Node child : xml::children(poolNode))
        readsNode(child, [&] { add(readTask(child, objectives)); });
    return true;
}

void TaskPool::add(const Ref<Task>& task) {
    if (!Tasks->tryAdd(task, task->ID))
        return reportFault(loadError(622, "Duplicate task ID '" + task->ID + "'"), FaultKind::Duplicate,
                           task->ID);
    if (task->Objective)
        modules_.add(task->Objective->Module);
}

bool TaskPool::Save(const std::string& location) const {
    saveEach(kTaskPoolDocument, location, *Tasks, [](const Task& task, xml::Document&, xml::Node root) {
        task.SaveToXMLNode(root.append("task"));
    });
    return true;
}

void TaskPool::SaveToXMLNode(xml::Node poolNode) const {
    for (const Ref<Task>& task : *Tasks)
        task->SaveToXMLNode(poolNode.append("task"));
}

const ClassInfo& Task::classInfo() {
    static const ClassInfo info =
        describe<Task>("Task", "A skill to be performed.")
            .property("ID", &Task::ID, "Key in TaskPool.")
            .property("TaskName", &Task::TaskName, "The task's name.")
            .property("Objective", &Task::Objective, "Its objective; shared, may be Nothing.")
            .property("BaseHREF", &Task::BaseHREF, "Base address of the task's content.")
            .property("CompletionDate", &Task::CompletionDate,
                      "When the student completed it; the zero date if not.")
            .property("References", &Task::References, "References into textbooks; clones share them.")
            .method("Clone", &Task::Clone, {}, "A new task with the same fields.")
            .method("SaveToXMLNode", &Task::SaveToXMLNode, {"node"}, "Fills a task element.")
            .method("SetObjectiveID", &Task::SetObjectiveID, {"objectiveID"},
                    "Renames the objective in place, or makes one.");
    return info;
}

const ClassInfo& TaskPool::classInfo() {
    static const ClassInfo info =
        describe<TaskPool>("TaskPool", "The tasks of a title, one document.")
            .readOnly("Tasks", &TaskPool::Tasks, "The tasks, keyed by ID, in document order.")
            .method("GetModules", &TaskPool::GetModules, {}, "The tasks' modules, in order of first use.")
            .method("GetTasksByModule", &TaskPool::GetTasksByModule, {"moduleName"},
                    "Clones of a module's tasks.")
            .method("Load", &TaskPool::Load, {"location", {"objectives", optional}},
                    "Adds a document's tasks; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &TaskPool::LoadFromXMLNode, {"poolNode", {"objectives", optional}},
                    "Adds the tasks of a taskPool element.")
            .method("Save", &TaskPool::Save, {"location"}, "Stores the tasks as one document.")
            .method("SaveToXMLNode", &TaskPool::SaveToXMLNode, {"poolNode"}, "Fills a taskPool element.");
    return info;
}

} // namespace norvakavlor
