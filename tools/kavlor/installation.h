#pragma once

#include <functional>
#include <norvakavlor/norvakavlor.h>
#include <string>
#include <vector>

namespace norvakavlor::kavlor {

/// A document that could not be read whole, and why.
struct Fault {
    std::string document; ///< relative to the installation's folder, or a path
    std::string text;
};

/// Loads a document by calling `load`. False, with a fault noted, when that raises or gives False.
bool loads(std::vector<Fault>& faults, const std::string& document, const std::function<bool()>& load);
/// The last reason without the document's name: "there is no such file", "line 1, column 16: mismatched tag".
std::string reasonAbout(const std::string& document);

/// The documents under a folder: what exists once (roster, pools ...) is known by its usual file name, such
/// as students.xml, wherever it lies; of two the one in the upper folder, then the first by name, counts.
class Installation {
public:
    /// Looks through the folder and `depth` levels of subfolders, hidden ones left out; loads nothing. Raises
    /// Failure when there is no such folder.
    explicit Installation(const std::string& folder, size_t depth = 16);

    /// A web directory, "http://.../", with these files.
    Installation(std::string address, std::vector<std::string> files);

    struct Folder {
        std::string path; ///< ends in "/"
        std::vector<std::string> files;
    };
    const std::string& path() const { return path_; } ///< ends in "/"
    const std::vector<Folder>& folders() const { return folders_; }
    size_t fileCount() const;
    /// Where a usual file name lies; "" when it lies nowhere.
    std::string find(const std::string& fileName) const;
    /// Wherever it lies; the first is the one that counts.
    std::vector<std::string> findAll(const std::string& fileName) const;
    /// A path without the installation's own.
    std::string relative(const std::string& path) const;

    /// Loads the single documents in the order in which they need each other. One that is not there stays
    /// empty; one that is faulty keeps what was read before the fault.
    void load();

    const Ref<TextBooks> textBooks = New<TextBooks>();
    const Ref<Courses> courses = New<Courses>();
    const Ref<Objectives> objectives = New<Objectives>();
    const Ref<TaskPool> tasks = New<TaskPool>();
    const Ref<QuestionPool> questions = New<QuestionPool>();
    const Ref<Students> students = New<Students>();
    std::vector<Fault> faults;

private:
    void loadOne(const std::string& fileName, const std::function<bool(const std::string& path)>& load);
    void checkStudents();

    std::string path_;
    std::vector<Folder> folders_; ///< upper ones first
};

} // namespace norvakavlor::kavlor
