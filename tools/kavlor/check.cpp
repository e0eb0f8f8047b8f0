#include "check.h"

#include "console.h"

#include <algorithm>
#include <map>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/text/text.h>
#include <tuple>

namespace norvakavlor::kavlor {
namespace {

struct Single {
    std::string_view kind;
    const char* file;
};
constexpr Single kSingles[] = {
    {kTextBooksDocument.kind, "textbooks.xml"},       {kCoursesDocument.kind, "courses.xml"},
    {kObjectivesDocument.kind, "objectives.xml"},     {kTaskPoolDocument.kind, "taskpool.xml"},
    {kQuestionPoolDocument.kind, "questionpool.xml"}, {kStudentsDocument.kind, "students.xml"},
};

constexpr const char* kPreferencesFile = "preferences.xml";
constexpr const char* kModulesFile = "modules.xml";

/// Does a file's name tell what the document is?
bool isNamedByKind(const std::string& name) {
    return std::any_of(std::begin(kSingles), std::end(kSingles),
                       [&](const Single& single) { return name == single.file; }) ||
           name == kPreferencesFile || name == kModulesFile || name.ends_with(kExamListEnd) ||
           isExamFile(name, int32_t(ExamTypes::ExamAll)) || isLessonFile(name, int32_t(LessonTypes::All)) ||
           isLessonMenuFile(name);
}

const char* fileOf(std::string_view kind) {
    const auto* found = std::find_if(std::begin(kSingles), std::end(kSingles),
                                     [&](const Single& single) { return single.kind == kind; });
    return found == std::end(kSingles) ? nullptr : found->file;
}

/// "<textBookRef>" of "classes/class[1]/textBookRef".
std::string elementOf(const ErrorPlace& place) {
    const std::string last = place.member.substr(place.member.rfind('/') + 1);
    return "<" + last.substr(0, last.find('[')) + ">";
}

std::string inQuotes(const std::string& text) { return "\"" + text + "\""; }

/// What is wrong, and what to do.
std::string describe(const norvakavlor::Fault& fault) {
    const std::string element = elementOf(fault.place);
    switch (fault.kind) {
    case FaultKind::Unreadable:
        if (fault.text.starts_with("the root is <html>"))
            return fault.text + ": this is an HTML page; put the document in its place";
        if (!fault.wanted.empty())
            return fault.text + ": this is another document; put the right one in its place";
        return fault.text + "; mend this place: nothing in the document can be read";
    case FaultKind::Unknown:
        if (const char* const file = fileOf(fault.wanted))
            return element + " names " + inQuotes(fault.id) + ", which is not in " + file +
                   "; add it there or correct the name here";
        return element + " names " + inQuotes(fault.id) +
               ", and there is no such file; put it in the folder or take the name out";
    case FaultKind::Duplicate:
        if (fault.id.empty())
            return "a second member without an ID (a comment between the members counts as one); take it out";
        return inQuotes(fault.id) + " is there already; give this one another ID, or take it out";
    case FaultKind::Missing:
        return element + (fault.id.empty() ? "" : " of " + inQuotes(fault.id)) + " has no " + fault.wanted +
               "; add it";
    case FaultKind::Value:
        return inQuotes(fault.id) + " is no value for " + fault.wanted + " (" + fault.text + "); correct it";
    case FaultKind::Other:
        break;
    }
    return fault.text;
}

/// A reason without the document's name, which stands before it anyway.
std::string withoutPlace(const std::string& reason, const std::string& path) {
    return reason.starts_with(path + ": ") ? reason.substr(path.size() + 2) : reason;
}

bool isAddress(const std::string& place) { return place.starts_with("http:"); }

/// The folder, or what the server lists.
Installation lookAt(const std::string& place) {
    if (!isAddress(place))
        return Installation(place);
    const std::string directory = place.ends_with("/") ? place : place + "/";
    std::vector<std::string> files;
    for (const auto& rows : {New<Exam>()->GetExams(directory, int32_t(ExamTypes::ExamRaw)),
                             New<ExamList>()->GetExamLists(directory),
                             New<Lesson>()->GetLessons(directory, int32_t(LessonTypes::Raw)),
                             New<LessonMenu>()->GetLessonMenus(directory)}) {
        for (const Ref<TitleFilename>& row : *rows)
            files.push_back(row->Filename);
    }
    return {directory, std::move(files)};
}

} // namespace

Check::Check(const std::string& place, Named named)
    : installation_(lookAt(place)), named_(std::move(named)), isWeb_(isAddress(place)) {
    for (const Installation::Folder& part : installation_.folders())
        directories_ += (directories_.empty() ? "" : ";") + part.path;
    checkSingles();
    checkSets();
    checkRemains();
    sortOut();
    for (const Fault& fault : installation_.faults)
        add(Finding::Rank::Error, fault.document, "", fault.text);
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& left, const Finding& right) {
        return std::tie(left.document, left.line, left.column) <
               std::tie(right.document, right.line, right.column);
    });
}

size_t Check::count(Finding::Rank rank) const {
    return static_cast<size_t>(std::count_if(findings.begin(), findings.end(),
                                             [&](const Finding& finding) { return finding.rank == rank; }));
}

void Check::add(Finding::Rank rank, const std::string& path, const std::string& id, const std::string& text) {
    findings.push_back({rank, installation_.relative(path), 0, 0, id, text});
}

bool Check::load(const std::string& path, const Load& load) {
    checkInterrupted();
    const size_t before = collector_.faults.size();
    collector_.mentions.clear();
    bool loaded = false;
    try {
        loaded = load(path);
        if (!loaded && collector_.faults.size() == before)
            add(Finding::Rank::Error, path, "", withoutPlace(lastReason(), path));
    } catch (const Error& error) {
        if (isOutOfMemory(error))
            throw;
        add(Finding::Rank::Error, path, "", kavlor::describe(error));
    }
    read_.insert(path);
    documents = read_.size();
    if (!loaded)
        unread_.insert(path.substr(path.rfind('/') + 1));
    return loaded;
}

std::vector<std::string> Check::findAll(const std::string& fileName) const {
    const auto named = named_.find(fileName);
    return named == named_.end() ? installation_.findAll(fileName) : std::vector{named->second};
}

void Check::checkSingles() {
    const Installation& all = installation_;
    const Load loads[] = {
        [&](const std::string& path) { return all.textBooks->Load(path); },
        [&](const std::string& path) { return all.courses->Load(path, all.textBooks.get()); },
        [&](const std::string& path) { return all.objectives->Load(path, all.textBooks.get()); },
        [&](const std::string& path) { return all.tasks->Load(path, all.objectives.get()); },
        [&](const std::string& path) {
            return all.questions->Load(path, all.objectives.get(), all.tasks.get());
        },
        [&](const std::string& path) { return all.students->Load(path, all.courses.get()); },
    };
    static_assert(std::size(kSingles) == std::size(loads));
    for (size_t at = 0; at < std::size(loads); ++at) {
        // One that cannot be read takes the place of one in a lower folder; that one still tells what IDs
        // there are.
        const std::vector<std::string> paths = findAll(kSingles[at].file);
        const bool isRead = std::any_of(paths.begin(), paths.end(),
                                        [&](const std::string& path) { return load(path, loads[at]); });
        if (!isRead)
            (paths.empty() ? missing_ : unread_).emplace(kSingles[at].kind);
        for (const std::string& path : paths) {
            if (!read_.contains(path))
                add(Finding::Rank::Note, path, "",
                    "not read: " + installation_.relative(paths.front()) +
                        " counts in this installation; check this one's folder by itself");
        }
    }
    for (const std::string& preferences : findAll(kPreferencesFile))
        load(preferences, [](const std::string& path) { return New<Preferences>()->Load(path); });
    for (const std::string& modules : findAll(kModulesFile))
        load(modules, [](const std::string& path) { return New<ModuleDiscManager>()->LoadConfigFile(path); });
}

void Check::checkFiles(
    const std::function<bool(const std::string& name)>& isWanted,
    const std::function<void(const Installation::Folder& folder, const std::string& name)>& act) {
    for (const Installation::Folder& folder : installation_.folders()) {
        for (const std::string& name : folder.files) {
            if (isWanted(name))
                act(folder, name);
        }
    }
}

void Check::checkSets() {
    const Installation& all = installation_;
    Progress progress("checking", all.fileCount());
    checkFiles([](const std::string& name) { return isExamFile(name, int32_t(ExamTypes::ExamRaw)); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   load(folder.path + name, [&](const std::string& path) {
                       return New<Exam>()->Load(path, all.questions.get());
                   });
                   checkAssignments();
               });
    checkFiles([](const std::string& name) { return name.ends_with(kExamListEnd); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   load(folder.path + name,
                        [&](const std::string& path) { return New<ExamList>()->Load(path, directories_); });
               });
    // Without the pools: what an exam or a lesson lacks is not told again for each student.
    checkFiles([](const std::string& name) { return isExamFile(name, int32_t(ExamTypes::ExamStudent)); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   checkWork(folder, name, kExamMark, "exam",
                             [](const std::string& path) { return New<Exam>()->Load(path, nullptr); });
               });
    checkFiles([](const std::string& name) { return isLessonFile(name, int32_t(LessonTypes::Raw)); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   load(folder.path + name,
                        [&](const std::string& path) { return New<Lesson>()->Load(path, all.tasks.get()); });
                   checkAssignments();
               });
    checkFiles([](const std::string& name) { return isLessonFile(name, int32_t(LessonTypes::Student)); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   checkWork(folder, name, kLessonMark, "lesson",
                             [](const std::string& path) { return New<Lesson>()->Load(path, nullptr); });
               });
    checkFiles([](const std::string& name) { return isLessonMenuFile(name); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   load(folder.path + name, [&](const std::string& path) {
                       return New<LessonMenu>()->Load(path, directories_, nullptr, "", "");
                   });
               });
    checkFiles([](const std::string& name) { return name.ends_with(kDocumentEnd) && !isNamedByKind(name); },
               [&](const Installation::Folder& folder, const std::string& name) {
                   progress.step();
                   checkOther(folder.path + name);
               });
}

/// Launch documents and records of live exercises have any name: their root tells what they are.
void Check::checkOther(const std::string& path) {
    std::string root;
    const bool isRead = load(path, [&](const std::string& file) {
        const auto document = readDocument(std::string_view(), file);
        root = document ? document->root().name() : "";
        return document.has_value();
    });
    const auto isRoot = [&](const DocumentNames& names) { return names.root == root; };
    if (!isRead || std::any_of(std::begin(kDocumentNames), std::end(kDocumentNames), isRoot)) {
        if (root == kLiveExResultsDocument.root)
            load(path, [](const std::string& file) { return New<LiveExResults>()->Load(file); });
        else if (isRead)
            add(Finding::Rank::Note, path, "",
                "the root is <" + root +
                    ">, but such documents go by other names: no list shows it, and only "
                    "that it is well-formed was checked");
    } else if (root == kLaunchRoot) {
        // Each reads its own part of the document; the gradebook puts any of them in.
        load(path, [&](const std::string& file) {
            return New<GradiumExam>()->Load(file, installation_.questions.get(), "none") &&
                   New<GradiumLesson>()->Load(file, installation_.tasks.get(), "none") &&
                   New<GradiumLiveEx>()->Load(file, "none");
        });
    } else if (equalIgnoringCase(root, "html")) {
        add(Finding::Rank::Error, path, "",
            "the root is <" + root + ">: this is an HTML page; put the document in its place");
    } else {
        add(Finding::Rank::Note, path, "", "the root is <" + root + ">: no document of this product's");
    }
}

/// An attempt at an exam or a copy of a lesson: NAME + mark + "_" + student, and for an attempt "_01".
void Check::checkWork(const Installation::Folder& folder, const std::string& name, std::string_view mark,
                      const char* what, const Load& load) {
    const std::string path = folder.path + name;
    this->load(path, load);
    const size_t end = name.find(std::string(mark) + "_");
    if (end == std::string::npos)
        return; // the mark is in other letters
    const std::string base = name.substr(0, end + mark.size());
    const std::string authored = base + std::string(kDocumentEnd);
    if (!std::binary_search(folder.files.begin(), folder.files.end(), authored))
        add(Finding::Rank::Error, path, authored,
            "the " + std::string(what) + " " + inQuotes(authored) +
                " is not in this folder; put it back, or keep this file elsewhere");
    std::string id = name.substr(base.size() + 1, name.rfind('.') - base.size() - 1);
    if (mark == kExamMark)
        id.erase(std::min(id.rfind('_'), id.size()));
    if (missing_.contains(kStudentsDocument.kind)) {
        ++needed_[fileOf(kStudentsDocument.kind)];
    } else if (unread_.contains(kStudentsDocument.kind)) {
        following += installation_.students->Exists(id) ? 0 : 1;
    } else if (!installation_.students->Exists(id)) {
        add(Finding::Rank::Error, path, id,
            "the student " + inQuotes(id) +
                " is not in students.xml; add the student, or keep this file elsewhere");
    }
}

/// Looks up the classes that the document just read is assigned to.
void Check::checkAssignments() {
    for (const norvakavlor::Fault& mention : collector_.mentions) {
        const std::string& course = mention.id;
        const std::string& section = mention.text;
        const Ref<Course>* found = installation_.courses->CourseMembers->find(course);
        const bool isKnown = found && (section.empty() || (*found)->Sections->contains(section));
        if (isKnown || course.empty())
            continue;
        if (missing_.contains(mention.wanted))
            ++needed_[fileOf(mention.wanted)];
        else if (unread_.contains(mention.wanted))
            ++following;
        else
            findings.push_back(
                {Finding::Rank::Warning, installation_.relative(mention.place.document), mention.place.line,
                 mention.place.column, found ? section : course,
                 "it is assigned to " +
                     (found ? "section " + inQuotes(section) + " of class " + inQuotes(course)
                            : "class " + inQuotes(course)) +
                     ", which is not in courses.xml; add it there or take the assignment out"});
    }
}

/// What programs that ended too early left, and what waits for one.
void Check::checkRemains() {
    namespace fs = std::filesystem;
    if (isWeb_)
        return;
    const std::string roster = installation_.find(fileOf(kStudentsDocument.kind));
    if (!roster.empty() &&
        (fs::status(pathFrom(roster)).permissions() & fs::perms::owner_write) == fs::perms::none)
        add(Finding::Rank::Warning, roster, "",
            "the roster is locked since " + attributesChanged(roster).value_or("an unknown time") +
                " or earlier: nobody can add a student; unlock it with kavlor unlock, unless a program is "
                "adding one just now");
    for (const Installation::Folder& folder : installation_.folders()) {
        std::error_code unreadable; // the walk through the folders told of it
        for (const fs::directory_entry& entry : fs::directory_iterator(pathFrom(folder.path), unreadable)) {
            const std::string name = pathText(entry.path().filename());
            std::error_code gone;
            // A younger one may be a save that is going on.
            if (platform::isTemporaryName(name) &&
                fs::file_time_type::clock::now() - entry.last_write_time(gone) > platform::kTemporaryAge &&
                !gone)
                add(Finding::Rank::Warning, folder.path + name, "",
                    "a save that was cut off left this file; the document itself is as it was before; look "
                    "what is in it and delete it");
        }
    }
    checkFiles(
        [](const std::string& name) {
            return name.starts_with(kLiveLaunchStart) && name.ends_with(kDocumentEnd);
        },
        [&](const Installation::Folder& folder, const std::string& name) {
            auto launch = New<GradiumLiveEx>();
            if (load(folder.path + name, [&](const std::string& path) { return launch->Load(path, "none"); }))
                add(Finding::Rank::Note, folder.path + name, launch->ExamID,
                    "the exercise " + inQuotes(launch->ExamID) + " of student " +
                        inQuotes(launch->StudentID) +
                        " waits for its result; it ends when the result is stored, or with kavlor replay");
        });
}

/// Is the fault there only because a document with other faults could not be read?
bool Check::follows(const norvakavlor::Fault& fault) const {
    return fault.kind == FaultKind::Unknown && (unread_.contains(fault.wanted) || unread_.contains(fault.id));
}

void Check::sortOut() {
    std::set<std::string> told; // a document may have been read more than once
    for (const norvakavlor::Fault& fault : collector_.faults) {
        const std::string text = describe(fault);
        if (!told.insert(fault.place.text() + text).second)
            continue;
        if (follows(fault))
            ++following;
        else if (fault.kind == FaultKind::Unknown && missing_.contains(fault.wanted))
            ++needed_[fileOf(fault.wanted)];
        else
            findings.push_back({fault.isWarning ? Finding::Rank::Warning : Finding::Rank::Error,
                                installation_.relative(fault.place.document), fault.place.line,
                                fault.place.column, fault.id, text});
    }
    for (const auto& [file, references] : needed_) {
        if (isWeb_) {
            add(Finding::Rank::Note, file, "",
                counted(references, "reference", "references") +
                    " into it not looked up: name the document with --document " + file + "=ADDRESS");
            continue;
        }
        add(Finding::Rank::Error, file, "",
            "there is no such file, and " + counted(references, "reference needs", "references need") +
                " it; put it in the folder");
    }
}

} // namespace norvakavlor::kavlor
