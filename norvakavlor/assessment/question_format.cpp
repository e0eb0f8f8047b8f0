#include <norvakavlor/assessment/question_format.h>

#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {
namespace {

// The alternative texts: written if not empty.
constexpr auto kAlternatives = fields(                  //
    unlessEmpty("vantel", &Question::Vantel),           //
    unlessEmpty("pelmarintos", &Question::Pelmarintos), //
    unlessEmpty("quorvenda", &Question::Quorvenda),     //
    unlessEmpty("alttext1", &Question::AltText1),       //
    unlessEmpty("alttext2", &Question::AltText2),       //
    unlessEmpty("alttext3", &Question::AltText3));
// Read after the alternatives, written after the references.
constexpr auto kHint = unlessEmpty("hint", &Question::Hint);

/// A list whose elements have a step each; it fills a dictionary.
struct StepList {
    const char* list;
    const char* element;
    NotNull<Dictionary> Question::*dictionary;
    int missingStep;           ///< error code
    int duplicate;             ///< error code
    const char* duplicateName; ///< what the error text calls the list
};
constexpr StepList kBackgroundImages{"backgroundImageList", "image", &Question::BGImages, 643, 651,
                                     "backgroundImageList"};
constexpr StepList kCorrectImages{"correctImageList", "image", &Question::CorrectBGImages, 644, 652,
                                  "correctImageList"};
constexpr StepList kDialogBoxes{"dialogBoxList", "dialogBox", &Question::DialogBoxes, 647, 648,
                                "dialogBoxList"};
constexpr StepList kDivIDs{"divIDList", "divID", &Question::DivIDs, 646, 649, "divID"};

/// For an image the text leaves out the question's ID; for the others it has it.
std::string missingStepText(const StepList& list, const Question& question) {
    const std::string element = list.element;
    return element == "image" ? "Step attribute required for image in " + std::string(list.list)
                              : "step attribute required for " + element + " for question ID " + question.ID;
}

/// Reads a list of steps; `item` turns an element into the dictionary's item.
template <class ItemOf>
void readSteps(const StepList& list, xml::Node node, Question& question, ItemOf item) {
    const auto elements = xml::children(node.child(list.list), list.element);
    if (elements.count() == 0)
        return;
    Dictionary& dictionary = *(question.*list.dictionary);
    dictionary.reserve(elements.count());
    for (const xml::Node element : elements) {
        // The attribute must exist; it may be empty.
        const auto step = element.attribute("step");
        if (!step) {
            reportFault(
                xml::at(element, questionPoolError(list.missingStep, missingStepText(list, question))),
                FaultKind::Missing, question.ID, "step");
            continue;
        }
        readsNode(element, [&] {
            if (!dictionary.tryAdd(*step, item(element))) {
                reportFault(questionPoolError(list.duplicate, "duplicate " + std::string(list.duplicateName) +
                                                                  " step attribute '" + std::string(*step) +
                                                                  "' for question ID " + question.ID),
                            FaultKind::Duplicate, std::string(*step));
            }
        });
    }
}

Value textOf(xml::Node element) {
    // Nearly every element holds one text alone: taken as it stands, it is copied once.
    const xml::Node only = element.firstChild();
    if (only.kind() == xml::NodeKind::Text && !only.nextSibling())
        return only.value();
    return element.text();
}

Value dialogBoxOf(xml::Node element) {
    const auto index = element.attribute("index");
    if (!index)
        throw questionPoolError(645, "index attribute required for dialogBox");
    auto box = New<DialogBox>();
    box->SetValues(toInt16(*index), element.text());
    return box;
}

void readList(const NotNull<KeyedCollection<std::string>>& list, xml::Node node, const char* element) {
    const auto texts = xml::children(node, element);
    if (texts.count() == 0)
        return;
    list->reserve(texts.count());
    for (const xml::Node child : texts)
        list->Add(child.text());
}

/// The markup inside the text element: its serialised form without the first 6 and last 7 characters. These
/// are its tags, unless the start tag has attributes; readers rely on the same cut then.
std::string innerMarkup(xml::Node element) {
    constexpr size_t kStartTag = 6;
    constexpr size_t kEndTag = 7;
    std::string markup = element.markup();
    if (markup.size() < kStartTag + kEndTag)
        return {};
    if (markup.ends_with("</text>")) {
        markup.resize(markup.size() - kEndTag);
        markup.erase(0, kStartTag);
        return markup;
    }
    // An element without content: the end cut off may hold more than ASCII, so count characters.
    const std::u16string characters = toUtf16(markup);
    if (characters.size() < kStartTag + kEndTag)
        return {};
    return toUtf8(std::u16string_view(characters).substr(kStartTag, characters.size() - kStartTag - kEndTag));
}

/// The value as text: nearly all are text already and need not be copied into `spare`.
std::string_view writtenText(const Value& value, std::string& spare) {
    const auto* text = value.as<CompactText>();
    return text ? text->view() : spare = value.toText();
}

template <class AppendItem>
void writeSteps(const StepList& list, const Question& question, xml::Node node, AppendItem appendItem) {
    const Dictionary* const dictionary = (question.*list.dictionary).ifMade();
    if (!dictionary || dictionary->empty())
        return;
    const xml::Node parent = node.append(list.list);
    std::string spare;
    for (size_t position = 0; position < static_cast<size_t>(dictionary->Count()); ++position)
        appendItem(parent, writtenText(dictionary->keyAt(position), spare), dictionary->itemAt(position));
}

void writeList(const KeyedCollection<std::string>& list, xml::Node parent, const char* element) {
    for (const std::string& text : list)
        parent.append(element, text);
}

} // namespace

Error questionPoolError(int code, const std::string& description) {
    const std::string source = "QuestionPool.LoadFromXMLNode";
    return objectError(code, source, source + ": " + description);
}

Ref<Question> readQuestion(xml::Node node, Objectives* objectives, TaskPool* taskPool) {
    auto question = New<Question>();
    question->ID = node.child("id").text();
    if (const xml::Node answers = node.child("answers")) {
        const auto inOrder = answers.attribute("inorder");
        question->AnswerInOrder = inOrder == "true" || inOrder == "1";
        readList(question->Answers, answers, "answer");
    }
    readFields(kAlternatives, node, *question);
    readField(kHint, node, *question);
    // Reading keeps the markup and writing escapes it: readers of saved pools rely on plain text.
    question->Text = innerMarkup(node.child("text"));
    // These two sources have a colon, all others a dot; callers compare them.
    if (const xml::Node reference = node.child("objectiveRef")) {
        const auto* found = objectives ? objectives->ObjectiveMembers->find(reference.text()) : nullptr;
        if (found) {
            question->Objective = *found;
            question->Module = question->Objective->Module;
        } else {
            reportFault(
                xml::at(reference, objectError(641, "QuestionPool:LoadFromXMLNode", "Invalid Objective ID")),
                FaultKind::Unknown, reference.text(), kObjectivesDocument.kind);
        }
    }
    if (const xml::Node reference = node.child("taskRef")) {
        const std::string taskID = reference.text();
        const auto* found = taskPool ? taskPool->Tasks->find(taskID) : nullptr;
        if (found) {
            question->Task = *found;
        } else {
            reportFault(xml::at(reference,
                                objectError(642, "QuestionPool:LoadFromXMLNode",
                                            "Invalid Task ID " + taskID + " in question ID " + question->ID)),
                        FaultKind::Unknown, taskID, kTaskPoolDocument.kind);
        }
    }
    readSteps(kBackgroundImages, node, *question, textOf);
    readSteps(kCorrectImages, node, *question, textOf);
    readSteps(kDialogBoxes, node, *question, dialogBoxOf);
    readList(question->TaskPaneList, node.child("taskPaneList"), "taskPane");
    readSteps(kDivIDs, node, *question, textOf);
    const xml::Node setup = node.child("questionSetup");
    question->QuestionSetupFunction = setup.child("questionSetupFunction").text();
    question->QuestionSetupParam = setup.child("questionSetupParam").text();
    readList(question->QuestionImages, node.child("questionImageList"), "image");
    return question;
}

void writeQuestion(const Question& question, xml::Node node) {
    node.append("id", question.ID);
    node.append("text", question.Text);
    if (const auto* answers = question.Answers.ifMade(); answers && !answers->empty()) {
        const xml::Node element = node.append("answers");
        element.setAttribute("inorder", question.AnswerInOrder ? "true" : "false");
        writeList(*answers, element, "answer");
    }
    writeFields(kAlternatives, node, question);
    if (question.Objective)
        node.append("objectiveRef", question.Objective->ID);
    if (question.Task)
        node.append("taskRef", question.Task->ID);
    writeField(kHint, node, question);
    std::string spare;
    const auto appendImage = [&](xml::Node parent, std::string_view step, const Value& image) {
        parent.append("image", writtenText(image, spare)).setAttribute("step", step);
    };
    writeSteps(kBackgroundImages, question, node, appendImage);
    writeSteps(kCorrectImages, question, node, appendImage);
    writeSteps(kDialogBoxes, question, node, [](xml::Node parent, std::string_view step, const Value& item) {
        const auto box = ArgumentTraits<DialogBox>::take(item);
        const xml::Node element = parent.append("dialogBox", box->Answer);
        element.setAttribute("index", std::to_string(box->Index));
        element.setAttribute("step", step);
    });
    if (const auto* panes = question.TaskPaneList.ifMade(); panes && !panes->empty())
        writeList(*panes, node.append("taskPaneList"), "taskPane");
    writeSteps(kDivIDs, question, node, [&](xml::Node parent, std::string_view step, const Value& id) {
        parent.append("divID", writtenText(id, spare)).setAttribute("step", step);
    });
    // This version of the format reads set-up and question images but never writes them.
}

} // namespace norvakavlor
