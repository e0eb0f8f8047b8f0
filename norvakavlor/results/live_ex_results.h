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
    std::string ExamFileName; ///< file name of the record last loaded; ends in "." without extension
    std::string StudentID;
    std::string
        origFilename; ///< where the record was loaded from or first stored; "" after a Load that raised

    /// Loads a record. False, with nothing changed, when it cannot be had or does not parse. Raises 13 or 6
    /// for a step or number of attempts that is no 16-bit number, 457 for a repeated step; the scores before
    /// it stay.
    bool Load(const std::string& filename);
    /// The same from a liveResults element; `filename` only gives ExamFileName.
    bool LoadFromXMLNode(xml::Node examNode, const std::string& filename = {});

    /// Stores the record. When the gradebook launched the exercise, its percentage is submitted first, and
    /// the record is stored without its scores: a client that wants them keeps a record of its own beside.
    /// When every try failed, it is stored with them.
    /// The launch file goes once the gradebook has accepted, and stays while it has not, so that saving again
    /// submits again.
    ///
    /// With `deleteOldIfChanged`, the record at origFilename is then deleted when it lies elsewhere; not when
    /// the save is not proven, as it would be the only one. False when it is not proven that the server took
    /// the record, which the user has then been shown. Raises 6 when there is no score to submit, and as
    /// saving a document does.
    bool Save(const std::string& filename, bool deleteOldIfChanged = false);
    /// Fills a liveResults element. Always True.
    bool SaveToXMLNode(xml::Node resultsNode) const;

    /// Deletes a record. True; a failure raises: 53 for a missing local file, 70 for a read-only one.
    bool Delete(const std::string& filename) const;

    /// The launch that waits for this exercise's result; Nothing when there is none.
    Ref<GradiumLiveEx> GetGradiumLiveEx() const;

    /// Percentage of the steps done right, with all its digits. Raises 6 without scores.
    double CalcScore() const;

    static const ClassInfo& classInfo();

private:
    std::string pendingLaunchFile() const;
    bool submitTo(GradiumLiveEx& launch) const;
};

} // namespace norvakavlor
