#include "installation.h"

#include "command.h"
#include "console.h"

#include <algorithm>
#include <cstdio>

namespace norvakavlor::kavlor {
namespace {

std::string atLine(size_t line, size_t column) {
    return line == 0 ? "" : "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
}

} // namespace

bool loads(std::vector<Fault>& faults, const std::string& document, const std::function<bool()>& load) {
    try {
        if (load())
            return true;
        faults.push_back({document, reasonAbout(document)});
    } catch (const Error& error) {
        if (isOutOfMemory(error))
            throw;
        faults.push_back({document, atLine(error.place().line, error.place().column) + describe(error)});
    }
    return false;
}

std::string reasonAbout(const std::string& document) {
    std::string reason = lastReason();
    const size_t name = reason.find(document + ":");
    if (name == std::string::npos)
        return reason;
    reason.erase(0, name + document.size() + 1);
    size_t line = 0;
    size_t column = 0;
    int length = 0;
    if (std::sscanf(reason.c_str(), "%zu:%zu: %n", &line, &column, &length) == 2 && length > 0)
        return atLine(line, column) + reason.substr(static_cast<size_t>(length));
    return reason.substr(reason.starts_with(" ") ? 1 : 0);
}

Installation::Installation(const std::string& folder, size_t depth)
    : path_(folder.ends_with("/") ? folder : folder + "/") {
    namespace fs = std::filesystem;
    if (!fs::is_directory(pathFrom(folder)))
        throw Failure("there is no folder " + folder);
    std::vector<std::pair<fs::path, size_t>> waiting = {{pathFrom(path_), 0}};
    // Breadth first: what lies higher counts before what lies deeper.
    for (size_t next = 0; next < waiting.size(); ++next) {
        checkInterrupted();
        const auto [place, level] = waiting[next];
        Folder found{pathText(place / ""), {}};
        std::vector<fs::path> below;
        std::error_code unreadable;
        for (const fs::directory_entry& entry : fs::directory_iterator(place, unreadable)) {
            const std::string name = pathText(entry.path().filename());
            std::error_code gone;
            if (name.starts_with("."))
                continue;
            if (entry.is_directory(gone)) {
                // A link could lead round in a circle.
                if (level < depth && !entry.is_symlink(gone))
                    below.push_back(entry.path());
            } else if (entry.is_regular_file(gone)) {
                found.files.push_back(name);
            }
        }
        if (unreadable && next == 0)
            throw Failure("the folder " + folder + " cannot be read");
        if (unreadable) {
            faults.push_back({relative(found.path), "the folder cannot be read"});
            continue;
        }
        std::sort(found.files.begin(), found.files.end());
        std::sort(below.begin(), below.end());
        for (const fs::path& folderBelow : below)
            waiting.emplace_back(folderBelow, level + 1);
        folders_.push_back(std::move(found));
    }
}

Installation::Installation(std::string address, std::vector<std::string> files) : path_(std::move(address)) {
    std::sort(files.begin(), files.end());
    folders_.push_back({path_, std::move(files)});
}

size_t Installation::fileCount() const {
    size_t count = 0;
    for (const Folder& folder : folders_)
        count += folder.files.size();
    return count;
}

std::string Installation::find(const std::string& fileName) const {
    const std::vector<std::string> all = findAll(fileName);
    return all.empty() ? "" : all.front();
}

std::vector<std::string> Installation::findAll(const std::string& fileName) const {
    std::vector<std::string> found;
    for (const Folder& folder : folders_) {
        if (std::binary_search(folder.files.begin(), folder.files.end(), fileName))
            found.push_back(folder.path + fileName);
    }
    return found;
}

std::string Installation::relative(const std::string& path) const {
    return path.starts_with(path_) ? path.substr(path_.size()) : path;
}

void Installation::loadOne(const std::string& fileName,
                           const std::function<bool(const std::string& path)>& load) {
    checkInterrupted();
    const std::string path = find(fileName);
    if (!path.empty())
        loads(faults, relative(path), [&] { return load(path); });
}

void Installation::load() {
    loadOne("textbooks.xml", [&](const std::string& path) { return textBooks->Load(path); });
    loadOne("courses.xml", [&](const std::string& path) { return courses->Load(path, textBooks.get()); });
    loadOne("objectives.xml",
            [&](const std::string& path) { return objectives->Load(path, textBooks.get()); });
    loadOne("taskpool.xml", [&](const std::string& path) { return tasks->Load(path, objectives.get()); });
    loadOne("questionpool.xml",
            [&](const std::string& path) { return questions->Load(path, objectives.get(), tasks.get()); });
    // Without courses, so that one student of an unknown course does not hide the others.
    loadOne("students.xml", [&](const std::string& path) { return students->Load(path, nullptr); });
    checkStudents();
}

void Installation::checkStudents() {
    const std::string roster = relative(find("students.xml"));
    if (find("courses.xml").empty())
        return;
    for (const Ref<Student>& student : *students->StudentMembers) {
        int32_t number = 0;
        std::string reason;
        if (!student->Validate(courses.get(), number, reason))
            faults.push_back({roster, student->StudentID + ": " + reason});
    }
}

} // namespace norvakavlor::kavlor
