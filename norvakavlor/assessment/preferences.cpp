#include <norvakavlor/assessment/preferences.h>

#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

/// A switch that reads every spelling of a boolean that scripts know.
struct Switch {
    std::string_view element;
    bool Preferences::*member;
    std::string_view falseWord = "false";
};

void readField(const Switch& field, xml::Node node, Preferences& preferences) {
    if (const xml::Node element = node.child(field.element))
        preferences.*field.member = toBoolean(element.text());
}

void writeField(const Switch& field, xml::Node node, const Preferences& preferences) {
    node.append(field.element, preferences.*field.member ? "true" : field.falseWord);
}

// The lists in written order; between them come the special fields. Unlike the others, the first three
// switches are True only for exactly "true".
constexpr auto kRetakes = fields(                                 //
    always("loginRequired", &Preferences::StudentLoginRequired),  //
    always("examRetakeAllowed", &Preferences::ExamRetakeAllowed), //
    always("questionRetakeAllowed", &Preferences::QuestionRetakeAllowed));
constexpr auto kRetakeCount = always("questionRetakeCount", &Preferences::QuestionRetakeCount);
constexpr auto kFeedback = fields(                            //
    Switch{"displayFeedback", &Preferences::DisplayFeedback}, //
    Switch{"detailedFeedback", &Preferences::DetailedFeedback});
constexpr auto kPassword = unlessEmpty("password", &Preferences::EncryptedPasswordProp);
constexpr auto kDelivery = fields(                          //
    Switch{"enablePrinting", &Preferences::EnablePrinting}, //
    always("timeLimit", &Preferences::TimeLimit));
// Three switches write "False" with a capital letter; older clients compare with it.
constexpr auto kAccess = fields(                                             //
    unlessEmpty("startDate", &Preferences::StartDate),                       //
    unlessEmpty("endDate", &Preferences::EndDate),                           //
    Switch{"displayHint", &Preferences::DisplayHint},                        //
    Switch{"enableRef", &Preferences::EnableRef, "False"},                   //
    Switch{"allowSelfRegister", &Preferences::AllowSelfRegister, "False"},   //
    Switch{"enablePause", &Preferences::EnablePause, "False"},               //
    unlessEmpty("delayExamResultsDate", &Preferences::DelayExamResultsDate), //
    Switch{"displayRemediation", &Preferences::DisplayRemediation});

} // namespace

bool Preferences::Load(const std::string& location) {
    return loadFrom(*this, kPreferencesDocument.kind, location);
}

bool Preferences::LoadFromXMLNode(xml::Node prefNode) {
    Inherited = prefNode.attribute("inherited").value_or("1") == "1";
    readFields(kRetakes, prefNode, *this);
    loadRetakeCount(prefNode);
    readFields(kFeedback, prefNode, *this);
    // With an empty password element, no password opens the exam.
    const xml::Node password = prefNode.child(kPassword.name);
    storeDigest(password.text(), static_cast<bool>(password));
    readFields(kDelivery, prefNode, *this);
    loadRandomQuestions(prefNode);
    readFields(kAccess, prefNode, *this);
    return true;
}

void Preferences::loadRetakeCount(xml::Node node) {
    // The count is read only if the document allows retakes with exactly "true".
    if (node.child("questionRetakeAllowed").text() != "true")
        return;
    if (node.child(kRetakeCount.name))
        norvakavlor::readField(kRetakeCount, node, *this);
    else
        QuestionRetakeCount = 1;
}

void Preferences::loadRandomQuestions(xml::Node node) {
    const xml::Node element = node.child("randomQuestions");
    // False changes nothing: it is never saved.
    if (!element || !toBoolean(element.text()))
        return;
    RandomQuestionOrder = true;
    if (const auto limit = element.attribute("limit"))
        RandomQuestionLimit = toInt16(*limit);
}

bool Preferences::Save(const std::string& location) const {
    saveAs(kPreferencesDocument, location,
           [this](xml::Document& document, xml::Node root) { SaveToXMLNode(document, root); });
    return true;
}

void Preferences::SaveToXMLNode(xml::Document&, xml::Node node) const {
    node.setAttribute("inherited", Inherited ? "1" : "0");
    writeFields(kRetakes, node, *this);
    norvakavlor::writeField(kRetakeCount, node, *this);
    writeFields(kFeedback, node, *this);
    norvakavlor::writeField(kPassword, node, *this);
    writeFields(kDelivery, node, *this);
    saveRandomQuestions(node);
    writeFields(kAccess, node, *this);
}

void Preferences::saveRandomQuestions(xml::Node node) const {
    if (!RandomQuestionOrder)
        return;
    const xml::Node element = node.append("randomQuestions", "true");
    if (RandomQuestionLimit != 0)
        element.setAttribute("limit", std::to_string(RandomQuestionLimit));
}

void Preferences::SetPassword(const std::string& password) {
    storeDigest(storedPassword(password), !password.empty());
}

void Preferences::storeDigest(const std::string& digest, bool inForce) {
    EncryptedPasswordProp = digest;
    ExamPWRequired = inForce;
    passwordInForce_ = inForce;
}

bool Preferences::CheckPassword(const std::string& password) const {
    return passwordOpens(password, passwordInForce_, EncryptedPasswordProp);
}

const ClassInfo& Preferences::classInfo() {
    static const ClassInfo info =
        describe<Preferences>("Preferences", "The settings for delivering an exam.")
            .property("StudentLoginRequired", &Preferences::StudentLoginRequired, "Must students sign in?")
            .property("ExamPWRequired", &Preferences::ExamPWRequired, "Does the exam need a password?")
            .property("ExamRetakeAllowed", &Preferences::ExamRetakeAllowed, "May the exam be taken again?")
            .property("QuestionRetakeAllowed", &Preferences::QuestionRetakeAllowed,
                      "May a question be tried again?")
            .property("QuestionRetakeCount", &Preferences::QuestionRetakeCount,
                      "How often a question may be tried again.")
            .property("DisplayFeedback", &Preferences::DisplayFeedback, "Show feedback?")
            .property("EnablePrinting", &Preferences::EnablePrinting, "May results be printed?")
            .property("DetailedFeedback", &Preferences::DetailedFeedback, "Show detailed feedback?")
            .property("TimeLimit", &Preferences::TimeLimit, "Time limit in minutes.")
            .property("RandomQuestionOrder", &Preferences::RandomQuestionOrder,
                      "Show the questions in random order?")
            .property("RandomQuestionLimit", &Preferences::RandomQuestionLimit,
                      "How many questions of a random order are shown.")
            .property("Inherited", &Preferences::Inherited, "Do the settings come from the container?")
            .property("StartDate", &Preferences::StartDate, "First date of the exam, as text.")
            .property("EndDate", &Preferences::EndDate, "Last date of the exam, as text.")
            .property("DisplayHint", &Preferences::DisplayHint, "Show hints?")
            .property("EnableRef", &Preferences::EnableRef, "Show references into textbooks?")
            .property("AllowSelfRegister", &Preferences::AllowSelfRegister,
                      "May students register themselves?")
            .property("EnablePause", &Preferences::EnablePause, "May the exam be paused?")
            .property("DelayExamResultsDate", &Preferences::DelayExamResultsDate,
                      "When results are shown, as text.")
            .property("DisplayRemediation", &Preferences::DisplayRemediation, "Show remediation texts?")
            .property("EncryptedPasswordProp", &Preferences::EncryptedPasswordProp,
                      "The stored digest of the password.")
            .method("Load", &Preferences::Load, {"location"}, "Loads a document; False if it does not parse.")
            .method("LoadFromXMLNode", &Preferences::LoadFromXMLNode, {"prefNode"}, "Reads a pref element.")
            .method("Save", &Preferences::Save, {"location"}, "Stores the preferences as a document.")
            .method("SaveToXMLNode", &Preferences::SaveToXMLNode, {"document", "node"},
                    "Fills a pref element.")
            .method("SetPassword", &Preferences::SetPassword, {"password"},
                    "Sets the password; \"\" removes it.")
            .method("CheckPassword", &Preferences::CheckPassword, {"password"},
                    "Does the password open the exam?");
    return info;
}

} // namespace norvakavlor
