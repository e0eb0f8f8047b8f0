#include <norvakavlor/results/live_ex_results.h>

#include <norvakavlor/config/registry.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/stale_copy.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/node_object.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr auto kLiveExResultsFields = fields(                    //
    attribute("ID", &LiveExResults::ExamID),                     //
    attribute("completionDate", &LiveExResults::CompletionDate), //
    always("title", &LiveExResults::Title),                      //
    always("studentID", &LiveExResults::StudentID));

constexpr auto kAttempts = attribute("attempts", &LiveExScore::Attempts);

/// "true" in any letter case, or -1, Basic's number for it.
bool isTrue(std::string_view text) { return upperCase(text) == "TRUE" || text == "-1"; }

Ref<LiveExScore> readScore(xml::Node element) {
    auto score = New<LiveExScore>();
    // Through a number, so that "07" and "7" are one step.
    score->ID = std::to_string(toInt16(element.text()));
    if (const auto correct = element.attribute("correct"))
        score->Correct = isTrue(*correct);
    readField(kAttempts, element, *score);
    return score;
}

} // namespace

Ref<LiveExScore> LiveExScore::Clone() const {
    auto clone = New<LiveExScore>();
    clone->ID = ID;
    clone->ExamID = ExamID;
    clone->Correct = Correct;
    clone->Attempts = Attempts;
    return clone;
}

bool LiveExResults::Load(const std::string& filename) {
    std::string from = filename; // may be a member that loading changes
    // Empty while the record is read: if that raises, the record is not whole, and no save of it may delete
    // another.
    std::string former = std::exchange(origFilename, {});
    const bool loaded = loadFrom(*this, kLiveExResultsDocument.kind, from, from);
    origFilename = std::move(loaded ? from : former);
    return loaded;
}

bool LiveExResults::LoadFromXMLNode(xml::Node examNode, const std::string& filename) {
    ExamFileName = documentFileName(filename);
    readFields(kLiveExResultsFields, examNode, *this);
    for (const xml::Node element : xml::children(examNode, "score")) {
        const Ref<LiveExScore> score = readScore(element);
        score->ExamID = ExamID;
        Scores->Add(score, score->ID);
    }
    return true;
}

bool LiveExResults::Save(const std::string& filename, bool deleteOldIfChanged) {
    const Ref<GradiumLiveEx> launch = GetGradiumLiveEx();
    xml::Document document;
    const xml::Node root = document.createRoot(kLiveExResultsDocument.root);
    // Once the gradebook has accepted a launched exercise, its record is stored empty. Until then the record
    // keeps its scores, so that it can be loaded and submitted again.
    if (!launch || !submitTo(*launch))
        SaveToXMLNode(root);

    // Support staff search for this spelling.
    constexpr std::string_view kLead = "Gradium server repored an error: ";
    if (!writeDocument(kLiveExResultsDocument.kind, filename, document, kLead))
        return false;
    if (origFilename.empty())
        origFilename = filename;
    if (deleteOldIfChanged && leavesStaleCopy(origFilename, filename)) {
        Delete(origFilename);
        origFilename = filename;
    }
    return true;
}

/// Did the gradebook accept the percentage? Then the launch file is deleted, even if read-only.
bool LiveExResults::submitTo(GradiumLiveEx& launch) const {
    launch.Score = CalcScore();
    if (!launch.submit())
        return false;
    deleteRecord(pendingLaunchFile());
    return true;
}

bool LiveExResults::SaveToXMLNode(xml::Node resultsNode) const {
    writeFields(kLiveExResultsFields, resultsNode, *this);
    for (const Ref<LiveExScore>& score : *Scores) {
        const xml::Node element = resultsNode.append("score", score->ID);
        element.setAttribute("correct", toText(score->Correct));
        writeField(kAttempts, element, *score);
    }
    return true;
}

bool LiveExResults::Delete(const std::string& filename) const {
    deleteDocument(kLiveExResultsDocument.kind, filename);
    return true;
}

/// "" if no results directory is set, or if the exercise's name would lead out of it.
std::string LiveExResults::pendingLaunchFile() const {
    auto registry = New<Registry>();
    registry->Key = registry->HKEY_LOCAL_MACHINE();
    registry->SubKey = "Software\\Norvalis\\Kavlor\\Lumio";
    registry->Value = "resultsDir";
    registry->ReadValue();
    if (registry->Data.empty() || holdsSeparator(ExamID))
        return {};
    return registry->Data + "/GradiumLiveEx_" + ExamID + ".xml";
}

Ref<GradiumLiveEx> LiveExResults::GetGradiumLiveEx() const {
    const std::string launchFile = pendingLaunchFile();
    if (launchFile.empty())
        return nullptr;
    auto launch = New<GradiumLiveEx>();
    bool loaded = false;
    // If it does not load, none is waiting.
    ignoringErrors([&] { loaded = launch->Load(launchFile, "none"); });
    return loaded ? launch : nullptr;
}

double LiveExResults::CalcScore() const {
    int16_t correct = 0;
    for (const Ref<LiveExScore>& score : *Scores) {
        if (score->Correct)
            correct = toInt16(correct + 1.0);
    }
    // In Basic, 0 / 0 overflows.
    if (Scores->empty())
        throw runtimeError(RuntimeError::Overflow);
    return static_cast<double>(correct) / Scores->Count() * 100;
}

const ClassInfo& LiveExScore::classInfo() {
    static const ClassInfo info =
        describe<LiveExScore>("LiveExScore", "One graded step of a live exercise.")
            .property("ID", &LiveExScore::ID, "The step.")
            .property("ExamID", &LiveExScore::ExamID, "ExamID of the results that it belongs to.")
            .property("Correct", &LiveExScore::Correct, "Was the step done right?")
            .property("Attempts", &LiveExScore::Attempts, "The tries that it took.")
            .method("Clone", &LiveExScore::Clone, {}, "A new score with the same fields.");
    return info;
}

const ClassInfo& LiveExResults::classInfo() {
    static const ClassInfo info =
        describe<LiveExResults>("LiveExResults", "What a student achieved in a live exercise.")
            .property("Scores", &LiveExResults::Scores, "The scores, keyed by ID.")
            .property("Title", &LiveExResults::Title, "The exercise's title.")
            .property("ExamID", &LiveExResults::ExamID, "The exercise.")
            .property("CompletionDate", &LiveExResults::CompletionDate, "Completion date as text.")
            .property("ExamFileName", &LiveExResults::ExamFileName, "File name of the record last loaded.")
            .property("StudentID", &LiveExResults::StudentID, "The student.")
            .property("origFilename", &LiveExResults::origFilename,
                      "Where it was loaded from or first stored.")
            .method("Load", &LiveExResults::Load, {"filename"},
                    "Loads a record; False when it does not parse.")
            .method("LoadFromXMLNode", &LiveExResults::LoadFromXMLNode, {"examNode", {"filename", optional}},
                    "Reads a liveResults element.")
            .method("Save", &LiveExResults::Save, {"filename", {"deleteOldIfChanged", optional}},
                    "Submits a launched exercise and stores the record.")
            .method("GetGradiumLiveEx", &LiveExResults::GetGradiumLiveEx, {},
                    "The launch that waits for the result.")
            .method("SaveToXMLNode", &LiveExResults::SaveToXMLNode, {"resultsNode"},
                    "Fills a liveResults element.")
            .method("CalcScore", &LiveExResults::CalcScore, {}, "Percentage of steps done right.")
            .method("Delete", &LiveExResults::Delete, {"filename"}, "Deletes a record; a failure raises.");
    return info;
}

} // namespace norvakavlor
