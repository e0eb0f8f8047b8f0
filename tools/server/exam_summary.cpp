#include "exam_summary.h"

#include "roster_filter.h"

#include <filesystem>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/runtime/convert.h>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/store/documents.h>
#include <system_error>

namespace norvakavlor::server {
namespace {

/// A file outside the folder that is gone with the object.
class ScratchFile {
public:
    explicit ScratchFile(const xml::Document& document)
        : path_((std::filesystem::temp_directory_path() / platform::temporaryName("roster.xml")).string()) {
        writeLocalDocument(path_, document);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

} // namespace

std::string examSummary(const DocumentFolder& folder, const RequestTarget& target,
                        const std::string& roster) {
    const std::string examPath = folder.pathOf(target.directory, target.value("FileName"));
    const std::string rosterPath = folder.pathOf(target.directory, roster);
    const int16_t attempt = toInt16(target.value("AttemptNum"));
    const RosterFilter filter{target.value("CourseID"), target.value("SectionID"), {}};
    return folder.reading([&] {
        // A local summary counts the whole roster: it is given the part that was asked for.
        const ScratchFile students(matchingStudents(DocumentFolder::parsedFile(rosterPath).root(), filter));
        auto authored = New<Exam>();
        auto summary = New<Exam>();
        if (authored->Load(examPath, nullptr)) {
            summary->ID = authored->ID;
            summary->ExternalID = authored->ExternalID;
            summary->Title = authored->Title;
            summary->Source = authored->Source;
            summary->IsChallenge = authored->IsChallenge;
            summary->Prefs = authored->Prefs;
        }
        summary->LoadExamSummary(students.path(), nullptr, nullptr, examPath, attempt, "", "");
        xml::Document document;
        summary->SaveToXMLNode(document.createRoot("exam"));
        return document.toText();
    });
}

} // namespace norvakavlor::server
