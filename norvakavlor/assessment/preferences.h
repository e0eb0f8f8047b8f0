#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Preferences;

/// The switches under which an exam is delivered: a document of its own, or part of an exam or exam list.
class Preferences final : public Object {
public:
    bool StudentLoginRequired = false;
    bool ExamPWRequired = false;
    bool ExamRetakeAllowed = false;
    bool QuestionRetakeAllowed = true;
    int16_t QuestionRetakeCount = 1;
    bool DisplayFeedback = true;
    bool EnablePrinting = true;
    bool DetailedFeedback = true;
    int16_t TimeLimit = 30; ///< minutes
    bool RandomQuestionOrder = false;
    int16_t RandomQuestionLimit = 0; ///< how many questions of a random order are shown
    bool Inherited = true;           ///< taken over from the container? Stored and reported, nothing more
    std::string StartDate;
    std::string EndDate;
    bool DisplayHint = false;
    bool EnableRef = true;
    bool AllowSelfRegister = true;
    bool EnablePause = true;
    std::string DelayExamResultsDate;
    bool DisplayRemediation = true;
    std::string EncryptedPasswordProp; ///< the password's digest, as it is stored; setting it hashes nothing

    /// Loads a document. False, with nothing changed, when it cannot be had or does not parse.
    bool Load(const std::string& location);
    /// Reads a pref element; what it lacks stays as it is, but for the password, which goes, and Inherited,
    /// which becomes True. Raises 13 or 6 for a switch or number that is none; the fields before it keep
    /// their new values.
    bool LoadFromXMLNode(xml::Node prefNode);

    /// Stores the preferences. True whenever no error was raised; raises 70, 76, 61 or 57 when a local file
    /// cannot be written.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Sets the password; "" removes it. Raises 9 beyond 256 characters.
    void SetPassword(const std::string& password);
    /// True for any password while none is in force.
    bool CheckPassword(const std::string& password) const;

    static const ClassInfo& classInfo();

private:
    void storeDigest(const std::string& digest, bool inForce);
    void loadRetakeCount(xml::Node node);
    void loadRandomQuestions(xml::Node node);
    void saveRandomQuestions(xml::Node node) const;

    bool passwordInForce_ = false;
};

} // namespace norvakavlor
