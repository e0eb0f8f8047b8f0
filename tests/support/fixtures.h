#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/runtime/value.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <string_view>
#include <tests/support/tables.h>
#include <utility>
#include <vector>

/// What many tests need: tables of cases, documents from literals, a folder of their own, errors and messages
/// as values.
namespace norvakavlor::testing {

/// A document from its text; a text that does not parse fails the test that holds it.
xml::Document parsed(std::string_view text);

/// Calls LoadFromXMLNode or SaveToXMLNode by its name with the document's root. A collection that the method
/// takes is found among these by its class; else it is Nothing.
Value callOnDocument(Object& object, const char* method, const std::shared_ptr<xml::Document>& document,
                     const std::vector<Ref<Object>>& collections = {});

/// New collections that documents refer to, those of the table documents.library.
std::vector<Ref<Object>> library();

/// The document element as an object's SaveToXMLNode fills it.
template <class Save> std::string written(std::string_view root, Save save) {
    xml::Document document;
    save(document, document.createRoot(root));
    return document.toText();
}

/// "number|source|description" of the error that an act raises; "nothing" when it raises none. Object errors
/// show their code as "object 621".
template <class Act> std::string raised(Act act) {
    try {
        act();
    } catch (const Error& error) {
        constexpr int64_t kObjectErrorBase = 0x80040000;
        const int64_t code = static_cast<uint32_t>(error.number()) - kObjectErrorBase;
        const std::string number = error.number() < 0 && code < 0x10000 ? "object " + std::to_string(code)
                                                                        : std::to_string(error.number());
        return number + "|" + error.source() + "|" + error.description();
    }
    return "nothing";
}

/// The number alone, for the runtime's errors; 0 when nothing is raised.
template <class Act> int32_t errorNumber(Act act) {
    try {
        act();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

/// What an act gives as text, or "error 13" for what it raises: one column of a table for both.
template <class Act> std::string outcome(Act act) {
    std::string result;
    const int32_t error = errorNumber([&] { result = act(); });
    return error == 0 ? result : "error " + std::to_string(error);
}

/// A folder that is there while the object lives. Paths are UTF-8 and end in "/" where they are folders.
class TemporaryFolder {
public:
    /// In a folder that is there, or in the system's place for what is temporary.
    explicit TemporaryFolder(std::string_view parent = {});
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path() const;
    std::string file(std::string_view name) const { return path() + std::string(name); }
    /// Writes bytes as they are and gives the file's path.
    std::string write(std::string_view name, std::string_view content) const;
    /// The bytes of a file; "(no file)" when there is none.
    std::string read(std::string_view name) const;
    bool has(std::string_view name) const;
    /// The names of the files, sorted.
    std::vector<std::string> names() const;

protected:
    std::filesystem::path path_;
};

/// Is the Windows here Wine's? Where that is known to do less than Windows, a row of a test says so.
bool runsUnderWine();

/// Records the messages that the user would see, as "title|text".
class RecordedMessages {
public:
    RecordedMessages();
    ~RecordedMessages();
    RecordedMessages(const RecordedMessages&) = delete;
    RecordedMessages& operator=(const RecordedMessages&) = delete;

    const std::vector<std::string>& all() const { return messages_; }

private:
    std::vector<std::string> messages_;
    platform::Notifier previous_;
};

} // namespace norvakavlor::testing
