#pragma once

#include "installation.h"

#include <map>
#include <set>

namespace norvakavlor::kavlor {

/// Something to tell about a document.
struct Finding {
    enum class Rank { Error, Warning, Note }; ///< a note is no fault
    Rank rank = Rank::Error;
    std::string document; ///< relative to the folder that was checked
    size_t line = 0;      ///< 0 when it concerns the document as a whole
    size_t column = 0;
    std::string id; ///< what it is about; may be empty
    std::string text;
};

/// Loads everything in an installation, in the order in which the documents need each other, and gathers what
/// is wrong.
class Check {
public:
    /// Documents by their usual file names, such as "students.xml", and where they are.
    using Named = std::map<std::string, std::string, std::less<>>;

    /// `place` is a folder, or a web directory: of that the exams, exam lists, lessons and menus that the
    /// server lists. Raises Failure when there is no such folder, and what the listings raise.
    explicit Check(const std::string& place, Named named = {});

    std::vector<Finding> findings;
    size_t documents = 0; ///< that were read
    size_t following = 0; ///< faults that are there only because of a document among the findings
    size_t count(Finding::Rank rank) const;

private:
    using Load = std::function<bool(const std::string& path)>;

    void checkSingles();
    void
    checkFiles(const std::function<bool(const std::string& name)>& isWanted,
               const std::function<void(const Installation::Folder& folder, const std::string& name)>& act);
    void checkSets();
    void checkRemains();
    void checkWork(const Installation::Folder& folder, const std::string& name, std::string_view mark,
                   const char* what, const Load& load);
    void checkAssignments();
    void checkOther(const std::string& path);
    bool load(const std::string& path, const Load& load);
    void sortOut();
    bool follows(const norvakavlor::Fault& fault) const;
    void add(Finding::Rank rank, const std::string& path, const std::string& id, const std::string& text);

    std::vector<std::string> findAll(const std::string& fileName) const;

    Installation installation_;
    Named named_;
    bool isWeb_;
    FaultCollector collector_;
    std::string directories_;
    std::set<std::string> read_;
    std::set<std::string, std::less<>> unread_;  ///< kinds of single documents, names of other files
    std::set<std::string, std::less<>> missing_; ///< kinds of single documents that are not there
    std::map<std::string, size_t> needed_;       ///< references into these, by file name
};

} // namespace norvakavlor::kavlor
