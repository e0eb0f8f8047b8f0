#pragma once

#include <cstdint>
#include <norvakavlor/results/gradium_live_ex.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] LiveExScore;
class [[gnu::visibility("default")]] LiveExResults;

/// One graded step of a live exercise.
class LiveExScore final : public Object {
public:
    std::string ID;     ///< the step
    std::string ExamID; ///< ExamID of the results that it belongs to
    bool Correct = false;
    int16_t Attempts = 0;

    /// A new score with the same fields.
    Ref<LiveExScore> Clone() const;

    static const ClassInfo& classInfo();
};

/// What a student achieved in a live exercise, a task performed in a real application: one score for each
/// step.
class LiveExResults final : public Object {
public:
    NotNull<KeyedCollection<LiveExScore>> Scores; ///< live; keyed by ID
    std::string Title;
    std::string ExamID; ///< the exercise
    std::string CompletionDate;
    std::string ExamFileName; ///< file name of the record last loaded; "name." if it has no extension
    std::string StudentID;
    std::string origFilename; ///< where it was loaded from or first stored; "" after a Load that raised

    /// Loads a record. False, and nothing changed, if it is missing, unreachable or ill-formed. Raises 13 or
    /// 6 if a step or attempt count is not a 16-bit number, 457 for a repeated step; scores before it stay.
    bool Load(const std::string& filename);
    /// The same from a liveResults element; `filename` only gives ExamFileName. Raises as Load does.
    bool LoadFromXMLNode(xml::Node examNode, const std::string& filename = {});

    /// Stores the record. If the gradebook launched the exercise, the percentage is submitted first and the
    /// record is stored without its scores; a client that wants them keeps a record of its own. If every try
    /// failed, the scores are stored too. The launch file is deleted once the gradebook accepts; until then
    /// saving again submits again.
    ///
    /// `deleteOldIfChanged` then deletes the record at origFilename if that is another place, unless the save
    /// is not proven: it may be the only copy. False if it is not proven that the server took the record; the
    /// user has been told. Raises 6 if there is no score to submit, 70, 76, 61 or 57 if a local file cannot
    /// be written, 0x800C0005 if no reply comes, and as Delete does.
    bool Save(const std::string& filename, bool deleteOldIfChanged = false);
    /// Fills a liveResults element. Always True.
    bool SaveToXMLNode(xml::Node resultsNode) const;

    /// Deletes a record. Always True. Raises 53, 70 or 57 if a local file is missing, read-only or not to be
    /// deleted, and 0x800C0005 if no reply comes.
    bool Delete(const std::string& filename) const;

    /// The launch that waits for this exercise's result, or Nothing.
    Ref<GradiumLiveEx> GetGradiumLiveEx() const;

    /// Percentage of steps done right, not rounded. Raises 6 without scores.
    double CalcScore() const;

    static const ClassInfo& classInfo();

private:
    std::string pendingLaunchFile() const;
    bool submitTo(GradiumLiveEx& launch) const;
};

} // namespace norvakavlor
