#include "operation.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/students/students.h>

namespace norvakavlor::bench {
namespace {

template <class Class, class... Context> Ref<Class> loaded(const std::string& path, Context... context) {
    auto object = New<Class>();
    if (!object->Load(path, context...)) {
        std::fprintf(stderr, "%s does not load\n", path.c_str());
        std::exit(1);
    }
    return object;
}

Ref<Objectives> objectives(const Documents& documents) {
    return loaded<Objectives>(documents.folder + "objectives.xml", nullptr);
}

Ref<TaskPool> tasks(const Documents& documents, Objectives& objectives) {
    return loaded<TaskPool>(documents.document("taskpool"), &objectives);
}

/// A pool and what its references were resolved against.
struct Pools {
    Ref<Objectives> objectives;
    Ref<TaskPool> tasks;
    Ref<QuestionPool> questions;
};

Pools pools(const Documents& documents, int size) {
    Documents sized = documents;
    sized.size = size;
    Pools all{bench::objectives(sized), nullptr, nullptr};
    all.tasks = bench::tasks(sized, *all.objectives);
    all.questions =
        loaded<QuestionPool>(sized.document("questionpool"), all.objectives.get(), all.tasks.get());
    return all;
}

auto document(const char* name) {
    return [name](const Documents& documents) { return documents.document(name); };
}
auto folder(const char* name) {
    return [name](const Documents& documents) { return documents.sized(name) + "/"; };
}

/// Where saves go. CPU time is what counts, so it matters little how fast the disk is.
std::string scratch(const std::string& name) {
    const auto place = std::filesystem::temp_directory_path() / "kavlor-bench";
    std::filesystem::create_directories(place);
    return (place / name).string();
}

Operation parse(const char* name) {
    return {std::string("parse ") + name,
            [name](const Documents& documents) -> Round {
                return [text = readBytes(documents.document(name))] {
                    return keep(std::make_shared<std::optional<xml::Document>>(platform::parseXml(text)));
                };
            },
            document(name)};
}

Round poolLoad(const Documents& documents) {
    const Ref<Objectives> objectives = bench::objectives(documents);
    const Ref<TaskPool> tasks = bench::tasks(documents, *objectives);
    return [objectives, tasks, path = documents.document("questionpool")] {
        return keep(loaded<QuestionPool>(path, objectives.get(), tasks.get()));
    };
}

Round poolSave(const Documents& documents) {
    return [all = pools(documents, documents.size), path = scratch("questionpool.xml")] {
        all.questions->Save(path);
        return keep(0);
    };
}

Round taskPoolLoad(const Documents& documents) {
    return [objectives = bench::objectives(documents), path = documents.document("taskpool")] {
        return keep(loaded<TaskPool>(path, objectives.get()));
    };
}

Round taskPoolSave(const Documents& documents) {
    const Ref<Objectives> objectives = bench::objectives(documents);
    return [objectives, tasks = bench::tasks(documents, *objectives), path = scratch("taskpool.xml")] {
        tasks->Save(path);
        return keep(0);
    };
}

Ref<Students> roster(const Documents& documents) {
    return loaded<Students>(documents.document("students"), nullptr);
}

Round rosterLoad(const Documents& documents) {
    return [path = documents.document("students")] { return keep(loaded<Students>(path, nullptr)); };
}

Round rosterSave(const Documents& documents) {
    return [roster = bench::roster(documents), path = scratch("students.xml")] {
        roster->Save(path, nullptr);
        return keep(0);
    };
}

Round rosterSort(const Documents& documents) {
    return [roster = bench::roster(documents)] {
        return keep(roster->Sort("LastName", "FirstName", "StudentID"));
    };
}

Round rosterFilter(const Documents& documents) {
    return [roster = bench::roster(documents)] {
        return keep(roster->Filter("LastName", "Quist", "FirstName", "Nora", "", ""));
    };
}

/// The whole insertion: lock, load, add, save, unlock.
Round rosterAdd(const Documents& documents) {
    const std::string path = scratch("roster.xml");
    std::filesystem::copy_file(documents.document("students"), path,
                               std::filesystem::copy_options::overwrite_existing);
    auto number = std::make_shared<int>(0);
    return [path, number] {
        auto student = New<Student>();
        student->StudentID = "NEW" + std::to_string(++*number);
        student->UserName = student->StudentID;
        student->FirstName = "New";
        student->LastName = "Student";
        New<Students>()->AddStudent(path, student, nullptr);
        return keep(0);
    };
}

Round examLoad(const Documents& documents) {
    return [all = pools(documents, 1000), path = documents.document("exam")] {
        return keep(loaded<Exam>(path, all.questions.get()));
    };
}

Round classSummary(const Documents& documents) {
    const std::string folder = documents.sized("class") + "/";
    const auto roster = loaded<Students>(folder + "students.xml", nullptr);
    return [all = pools(documents, 1000), roster, exam = folder + "exam_kvqm.xml"] {
        auto summary = New<Exam>();
        summary->AddAttempts(*roster, all.questions.get(), exam, 1);
        return keep(summary);
    };
}

Round listing(const Documents& documents) {
    return [folder = documents.sized("attempts")] {
        constexpr int32_t kAttempts = 2; // students' attempts alone
        return keep(New<Exam>()->GetExamInfo(folder, "", kAttempts));
    };
}

Round httpLoad(const Documents& documents) {
    return [objectives = bench::objectives(documents),
            url = documents.server + "taskpool_" + std::to_string(documents.size) + ".xml"] {
        return keep(loaded<TaskPool>(url, objectives.get()));
    };
}

/// A round of so many calls, so that a call is measured and not the round around it, which is one as well.
template <class Call> Round manyTimes(Call call) {
    return [call] {
        for (int times = 0; times < kTinyCalls; ++times)
            call();
        return std::function<void()>();
    };
}

/// A 16-bit property by the number that its name was looked up for, as a script host reads it.
Round lateBoundRead(const Documents&) {
    auto question = New<Question>();
    const Member* member = question->dynamicClass().find("Attempts");
    return manyTimes([question, member] {
        std::vector<Value> none;
        benchmark::DoNotOptimize(callMember(*question, *member, none));
    });
}

/// Of a base with one class the compiler knows what is called, and calls nothing.
struct Counter {
    virtual ~Counter() = default;
    virtual int16_t attempts() const = 0;
};
struct Stored final : Counter {
    int16_t stored = 3;
    int16_t attempts() const override { return stored; }
};
struct Fixed final : Counter {
    int16_t attempts() const override { return 3; }
};

Round virtualCall(const Documents& documents) {
    std::shared_ptr<Counter> counter = std::make_shared<Stored>();
    if (documents.size < 0)
        counter = std::make_shared<Fixed>();
    return manyTimes([counter] {
        Counter* direct = counter.get();
        benchmark::DoNotOptimize(direct);
        benchmark::DoNotOptimize(direct->attempts());
    });
}

Round creation(const Documents&) {
    return manyTimes([] { benchmark::DoNotOptimize(CreateObject("NorvaKavlor.TextBook")); });
}

} // namespace

std::vector<Operation> ownOperations() {
    return {
        parse("questionpool"),
        parse("students"),
        {"pool load", poolLoad, document("questionpool")},
        {"pool save", poolSave, document("questionpool")},
        {"task pool load", taskPoolLoad, document("taskpool")},
        {"task pool save", taskPoolSave, document("taskpool")},
        {"roster load", rosterLoad, document("students")},
        {"roster save", rosterSave, document("students")},
        {"roster sort", rosterSort, document("students")},
        {"roster filter", rosterFilter, document("students")},
        {"roster add", rosterAdd, document("students")},
        {"exam load", examLoad, document("exam")},
        {"class summary", classSummary, folder("class")},
        {"listing", listing, folder("attempts")},
        {"http load", httpLoad, document("taskpool")},
        {"late-bound read", lateBoundRead, nullptr, true},
        {"virtual call", virtualCall, nullptr, true},
        {"create and release", creation, nullptr, true},
    };
}

} // namespace norvakavlor::bench
