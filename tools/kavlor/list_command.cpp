#include "command.h"
#include "console.h"
#include "text_table.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <norvakavlor/norvakavlor.h>

namespace norvakavlor::kavlor {
namespace {

using Rows = Ref<KeyedCollection<TitleFilename>>;

struct Kind {
    const char* name;
    Rows (*list)(const std::string& place);
};

Rows exams(const std::string& place, ExamTypes type) {
    return New<Exam>()->GetExams(place, static_cast<int32_t>(type));
}

Rows lessons(const std::string& place, LessonTypes type) {
    return New<Lesson>()->GetLessons(place, static_cast<int32_t>(type));
}

constexpr Kind kKinds[] = {
    {"exams", [](const std::string& place) { return exams(place, ExamTypes::ExamRaw); }},
    {"attempts", [](const std::string& place) { return exams(place, ExamTypes::ExamStudent); }},
    {"examlists", [](const std::string& place) { return New<ExamList>()->GetExamLists(place); }},
    {"lessons", [](const std::string& place) { return lessons(place, LessonTypes::Raw); }},
    {"copies", [](const std::string& place) { return lessons(place, LessonTypes::Student); }},
    {"menus", [](const std::string& place) { return New<LessonMenu>()->GetLessonMenus(place); }},
};

struct ListOptions {
    std::string kind;
    std::string place;
    bool json = false;
};

/// A folder or web directory with the separator that a listing wants.
std::string listedPlace(const std::string& place) {
    if (!place.starts_with("http:") && !std::filesystem::is_directory(pathFrom(place)))
        throw Failure("there is no folder " + place);
    return place.ends_with("/") || place.ends_with("\\") ? place : place + "/";
}

int list(const ListOptions& options) {
    const std::string place = listedPlace(options.place);
    auto documents = nlohmann::json::array();
    TextTable table({"kind", "file", "title"});
    bool known = false;
    for (const Kind& kind : kKinds) {
        if (options.kind != kind.name && options.kind != "all")
            continue;
        known = true;
        checkInterrupted();
        const Rows rows = kind.list(place);
        for (const Ref<TitleFilename>& row : *rows) {
            documents.push_back({{"kind", kind.name}, {"file", row->Filename}, {"title", row->Title}});
            table.add({kind.name, row->Filename, row->Title});
        }
    }
    if (!known)
        throw Failure("there is no kind " + options.kind +
                      ": it is exams, attempts, examlists, lessons, copies, menus or all");
    if (options.json) {
        // Whatever bytes a server sent, what is printed is JSON.
        std::printf("%s\n", documents.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
    } else if (table.size() == 0) {
        std::printf("nothing there\n");
    } else {
        table.print();
    }
    return kWell;
}

} // namespace

extern const Command kList;
const Command kList{
    "list", "List a folder's or server's documents with their titles",
    "KIND is exams, attempts, examlists, lessons, copies (students' lessons), menus or all. A document that\n"
    "cannot be read is left out.\n\n"
    "Example: kavlor list exams /srv/school/exams",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<ListOptions>();
        arguments.required("KIND", options->kind, "What to list");
        arguments.required("PLACE", options->place, "A folder, or a web address of the product's server");
        arguments.flag("--json", options->json, "Print JSON, for programs");
        return [options] { return list(*options); };
    }};

} // namespace norvakavlor::kavlor
