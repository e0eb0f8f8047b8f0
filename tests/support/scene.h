#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tests/support/fixtures.h>
#include <tests/support/servers.h>
#include <utility>
#include <vector>

// Steps stand one behind the other with ">" between:
//
//     Title=Sheets           puts a property, also Tasks(1).TaskName=Sum
//     Tasks(1).TaskName      gets one, or calls a method: Load(file:a.xml, Nothing); also @TaskPool.Tasks
//     Tasks[ID TaskName]     shows these properties of a collection's members; without a list, all
//     lock NAME, unlock NAME, locked NAME, cat NAME, write NAME CONTENT, remove NAME, setting NAME VALUE
//     says STEP              shows the whole error that a step raises
//     launches FOLDER        has launches wait there, and not in the row's folder
//
// It is five past midnight on March 4, 2004.
//
// Locations begin with "file:" for the folder, "server:" for a folder of kavlor-server with the same files,
// "web:" for the misbehaving server, "nobody:" for a refused connection. An argument is a text ("" alone is
// none), a number, a text that is none ('3'), "Nothing", "@TaskPool" (of the library that documents refer
// to), a document's element (<exam/>) or a new object: Student{StudentID=S1; UserName=ann}.
namespace norvakavlor::testing {

std::vector<std::string> pieces(const std::string& text, std::string_view separator);
void replaceAll(std::string& text, std::string_view from, std::string_view to);

/// The name and the content of each file of a row's folder.
using Files = std::vector<std::pair<std::string, std::string>>;

/// A table's row "file | NAME | CONTENT" adds a file for the rows behind it. False for any other row.
bool takesFile(const std::vector<std::string>& row, Files& files);

/// One row's objects, folders and steps. All calls are those of a client.
class Scene {
public:
    /// A class of clients.
    Scene(const std::string& className, const Files& files);
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene();

    /// The outcome of the last step, and behind "!" what the user was shown.
    std::string run(const std::string& steps);
    /// What has come and gone in the folder: "+new.xml -old.xml".
    std::string changes() const;
    /// The files of both folders, by their locations, with what is in them.
    std::map<std::string, std::string> contents() const;

    /// A text of a table with the places for "file:", "server:" and the others.
    std::string located(std::string text) const;

private:
    std::string step(const std::string& text);
    bool prepares(const std::string& text);
    Value reached(const std::string& path);
    std::vector<Value> arguments(const std::string& inBrackets);
    Value argument(const std::string& text);
    const std::vector<Ref<Object>>& collections();

    const RecordedMessages messages_;
    const Ref<Object> object_;
    const TemporaryFolder folder_;
    const ServerFolder server_;
    std::vector<std::string> before_;
    std::vector<std::string> settings_;
    std::vector<Ref<Object>> library_; ///< made when it is wanted
    const std::vector<std::pair<std::string, std::string>> places_;
};

} // namespace norvakavlor::testing
