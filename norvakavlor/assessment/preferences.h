#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Preferences;

/// The settings for delivering an exam: a document of its own, or part of an exam or exam list.
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
    bool Inherited = true;           ///< from the container? Only stored and reported
    std::string StartDate;
    std::string EndDate;
    bool DisplayHint = false;
    bool EnableRef = true;
    bool AllowSelfRegister = true;
    bool EnablePause = true;
    std::string DelayExamResultsDate;
    bool DisplayRemediation = true;
    std::string EncryptedPasswordProp; ///< the password's stored digest; setting it hashes nothing

    /// Loads a document. False, and nothing changed, if it is missing, unreachable or ill-formed. Raises as
    /// LoadFromXMLNode does.
    bool Load(const std::string& location);
    /// Reads a pref element. Fields that it lacks keep their values, but a missing password is removed and a
    /// missing Inherited becomes True. Raises 13 or 6 for a bad switch or number; the fields before it stay
    /// read.
    bool LoadFromXMLNode(xml::Node prefNode);

    /// Stores the preferences. Always True. Raises 70, 76, 61 or 57 if a local file cannot be written and
    /// 0x800C0005 if no reply comes.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Sets the password; "" removes it. Raises 9 beyond 256 characters.
    void SetPassword(const std::string& password);
    /// Does a password open the exam? If none is in force, any one does. Raises 9 beyond 256 characters if
    /// one is.
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
