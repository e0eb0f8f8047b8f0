#include <algorithm>
#include <fstream>
#include <map>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/enumerations.h>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tools/idl/descriptions.h>
#include <tools/idl/header_reader.h>
#include <tools/idl/member_declarations.h>
#include <tools/idl/member_forms.h>
#include <tools/idl/raised_errors.h>
#include <vector>

// The page is one long one: a reader who knows a member's name finds it by searching the page, whatever the
// class, and can print or keep it as a whole.
namespace norvakavlor {
namespace {

constexpr std::string_view kIntroduction =
    R"(# Reference of the classes

<!-- Written by kavlor-idl from the tables of the classes and the public headers; do not edit. -->

One page for scripts (VBScript and other clients of `NorvaKavlor.dll`), C++ and Python. To find a member, search the
page for `Class.Member`, or begin at the [contents](#contents); for an error's number see the [errors](#errors).

## How to read it

A method shows its three forms, then what it does and what it raises. A property has one name in all three languages:
its table shows the script form, the C++ form and the meaning. In Python it is `exam.Title`.

* Letter case of names does not matter to scripts. Scripts may leave out what stands in brackets, or give Nothing or
  Null for it.
* C++ calls are made through a `Ref`, as `exam->Load(location)`. `norvakavlor/norvakavlor.h` includes every header.
* Python takes paths as `str` or `pathlib` paths. See [python.md](python.md) for collections, dictionaries and dates.
* Locations are local paths or addresses on the server: see [clients.md](clients.md#locations). `False` says that
  something did not work, and `Diagnostics.LastReason` (Python: `last_reason()`) says why.

| script type | C++ | Python |
|---|---|---|
| String | `std::string` | `str` |
| Boolean | `bool` | `bool` |
| Integer, Long | `int16_t`, `int32_t` | `int` |
| Double | `double` | `float` |
| Date | `Date` | `datetime`, or None |
| a class | `Ref<Exam>`; `Exam*` if it is only used during the call | `Exam`, or None |
| Collection, Dictionary | `KeyedCollection<T>`, `Dictionary` | behave like a list, a `dict` |
| Node, Document | `xml::Node`, `xml::Document` | what `parse(text)` gives |
| Array, Variant | `std::shared_ptr<Array>`, `Value` | `list`, any value |

**Any member can raise** 13 if an argument's type does not fit or a text is not a number, 6 if a number is too large
for its type, 91 if an object that must be there is Nothing, 7 if memory runs out, and 51 for a fault of the library
itself. Late-bound calls can raise 438, 448, 449 and 450 for a member or arguments that do not exist or are missing.
The members below name only what they raise besides. "Object error 601" has the number `vbObjectError + 601` in a
script. The [errors](#errors) at the end show the negative numbers that `Err.Number` and Python's `error.number` have.
)";

/// The parts of the page, by the folders of the headers.
constexpr struct {
    std::string_view folder;
    std::string_view title;
} kGroups[] = {
    {"curriculum", "Curriculum"}, {"assessment", "Assessment"},         {"students", "Students"},
    {"lessons", "Lessons"},       {"results", "Results and gradebook"}, {"modules", "Modules"},
    {"store", "Documents"},       {"config", "Installation"},           {"crypto", "Passwords"},
    {"runtime", "Collections"},
};

/// The section of docs/formats.md that shows a class's document or element.
constexpr struct {
    std::string_view className;
    std::string_view section;
} kFormats[] = {
    {"TextBook", "Textbooks"},
    {"TextBooks", "Textbooks"},
    {"CourseSection", "Courses"},
    {"Course", "Courses"},
    {"Courses", "Courses"},
    {"Reference", "Objectives"},
    {"Objective", "Objectives"},
    {"Objectives", "Objectives"},
    {"Task", "Task pool"},
    {"TaskPool", "Task pool"},
    {"DialogBox", "Question pool"},
    {"Question", "Question pool"},
    {"QuestionPool", "Question pool"},
    {"Preferences", "Preferences"},
    {"ExamAssignment", "Exams and attempts"},
    {"Exam", "Exams and attempts"},
    {"ExamList", "Exam lists"},
    {"Student", "Students"},
    {"Students", "Students"},
    {"LessonAssignment", "Lessons"},
    {"Lesson", "Lessons"},
    {"Tutorial", "Lesson menus"},
    {"LessonMenu", "Lesson menus"},
    {"ModuleDiscManager", "Module discs"},
    {"GradiumExam", "Gradebook launches and records"},
    {"GradiumLesson", "Gradebook launches and records"},
    {"LiveExScore", "Live exercises"},
    {"LiveExResults", "Live exercises"},
    {"GradiumLiveEx", "Live exercises"},
};

/// What Markdown pages call a heading in addresses.
std::string anchorOf(std::string_view heading) {
    std::string anchor;
    for (const char character : heading) {
        if (character == ' ')
            anchor += '-';
        else if (std::isalnum(static_cast<unsigned char>(character)))
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return anchor;
}

std::string linkTo(const std::string& heading) { return "[" + heading + "](#" + anchorOf(heading) + ")"; }

/// One line of a block of code under its language; a long one goes on below, behind a comma.
std::string codeLine(std::string_view language, std::string code) {
    constexpr size_t kIndent = 10;
    constexpr size_t kWidth = 100;
    std::string text(language);
    text.resize(kIndent, ' ');
    while (code.size() > kWidth) {
        const size_t comma = code.rfind(", ", kWidth);
        if (comma == std::string::npos)
            break;
        text += code.substr(0, comma + 1) + "\n" + std::string(kIndent + 4, ' ');
        code.erase(0, comma + 2);
    }
    return text + code + "\n";
}

/// A field or a property without indexes: a row of the class's table.
bool isPlain(const Member& member) {
    return member.kind == Member::Kind::Property && member.parameters.empty();
}

class Page {
public:
    explicit Page(const std::filesystem::path& root) : headers_(readHeaders(root)), root_(root) {}

    std::string write();

private:
    void writeContents();
    void writeClass(const ClassInfo& info);
    void writeMethodList(const ClassInfo& info);
    void writeProperties(const ClassInfo& info);
    void writeMember(const ClassInfo& info, const Member& member);
    void writeErrors();

    std::string heading(std::string_view marks, const std::string& text);
    std::string_view folderOf(const ClassInfo& info) const;
    std::string formatLink(const ClassInfo& info) const;

    const HeaderClasses headers_;
    const std::filesystem::path root_;
    std::string text_;
    std::set<std::string> anchors_;
};

std::string Page::heading(std::string_view marks, const std::string& text) {
    if (!anchors_.insert(anchorOf(text)).second)
        throw std::runtime_error("two headings of the reference have one address: " + text);
    return "\n" + std::string(marks) + " " + text + "\n\n";
}

std::string_view Page::folderOf(const ClassInfo& info) const {
    const std::string_view header = headerClassOf(headers_, info).header;
    const size_t start = header.find('/') + 1;
    return header.substr(start, header.find('/', start) - start);
}

std::string Page::formatLink(const ClassInfo& info) const {
    const auto* const found =
        std::ranges::find_if(kFormats, [&](const auto& row) { return row.className == info.name; });
    if (found == std::end(kFormats)) {
        if (info.find("LoadFromXMLNode"))
            throw std::runtime_error("kFormats in tools/idl/reference_page.cpp lacks " + info.name);
        return {};
    }
    const std::string section(found->section);
    std::ifstream formats(root_ / "docs/formats.md");
    for (std::string line; std::getline(formats, line);) {
        if (line == "## " + section)
            return "Format: [" + section + "](formats.md#" + anchorOf(section) + ").";
    }
    throw std::runtime_error("docs/formats.md has no section " + section);
}

void Page::writeContents() {
    text_ += heading("##", "Contents");
    size_t listed = 0;
    for (const auto& group : kGroups) {
        text_ += "**" + std::string(group.title) + "**\n\n";
        for (const ClassInfo* info : allClasses()) {
            if (folderOf(*info) != group.folder)
                continue;
            text_ += "* " + linkTo(info->name) + ": " + info->summary + "\n";
            ++listed;
        }
        text_ += "\n";
    }
    if (listed != allClasses().size())
        throw std::runtime_error("kGroups in tools/idl/reference_page.cpp lacks a folder with classes");
    text_ += "Then the " + linkTo("Named numbers") + " and the " + linkTo("Errors") + ".\n";
}

/// "Tutorial::LoadFromXMLNode" as a link to that member.
std::string linked(const std::string& text) {
    static const std::regex name(R"(\b(\w+)::(\w+)\b)");
    std::string result;
    auto at = text.cbegin();
    for (std::smatch found; std::regex_search(at, text.cend(), found, name); at = found[0].second) {
        const ClassInfo* const info = findCreatableClass(found[1].str());
        const bool isMember = info && info->find(found[2].str());
        result += found.prefix().str() +
                  (isMember ? linkTo(found[1].str() + "." + found[2].str()) : found[0].str());
    }
    return result.append(at, text.cend());
}

/// A comment without what stands elsewhere on the page.
std::string proseOf(const std::string& comment) {
    std::string text;
    for (const std::string& sentence : sentencesOf(comment)) {
        if (sentence.empty()) {
            text += text.empty() || text.ends_with('\n') ? "" : "\n\n";
        } else if (!tellsErrors(sentence) && !tellsName(sentence)) {
            text += (text.empty() || text.ends_with('\n') ? "" : " ") + sentence;
        }
    }
    while (text.ends_with('\n'))
        text.pop_back();
    return linked(text);
}

void Page::writeClass(const ClassInfo& info) {
    const HeaderClass& declared = headerClassOf(headers_, info);
    text_ += heading("###", info.name) + proseOf(declared.comment) + "\n\n```text\n";
    const std::string variable = variableOf(info);
    if (info.create) {
        text_ += codeLine("Script", "Set " + variable + " = CreateObject(\"NorvaKavlor." + info.name + "\")");
        text_ += codeLine("C++",
                          "auto " + variable + " = New<" + info.name + ">();   // <" + declared.header + ">");
        text_ += codeLine("Python", variable + " = " + info.name + "()");
    } else {
        text_ += codeLine("C++", "#include <" + declared.header + ">");
    }
    text_ += "```\n\n";
    std::string notes = formatLink(info);
    if (!info.create)
        notes += " Other objects hand it out.";
    if (info.nextElement)
        notes += " `For Each` walks it.";
    if (const Member* const member = info.defaultMember())
        notes += " Its default member is `" + member->name + "`: `" + variable + "(" +
                 member->parameters.front().name + ")` is the same.";
    if (!notes.empty())
        text_ += notes.substr(notes.starts_with(' ') ? 1 : 0) + "\n\n";
    writeMethodList(info);
    writeProperties(info);
    for (const Member& member : info.members()) {
        if (!isPlain(member))
            writeMember(info, member);
    }
}

/// "object error 631 or 633", "70, 76, 61 or 57"
std::string numbersOf(const ErrorRow& row) {
    constexpr std::string_view kObjectError = "object error ";
    std::string numbers;
    for (const int32_t number : row.numbers) {
        const std::string shown = errorName(number);
        const bool isFurther = !numbers.empty() && shown.starts_with(kObjectError);
        const bool isLast = number == row.numbers.back();
        numbers += (numbers.empty() ? ""
                    : isLast        ? " or "
                                    : ", ") +
                   shown.substr(isFurther ? kObjectError.size() : 0);
    }
    return numbers;
}

void Page::writeMethodList(const ClassInfo& info) {
    std::string list;
    for (const Member& member : info.members()) {
        if (!isPlain(member))
            list += (list.empty() ? "" : ", ") + ("[" + member.name + "](#") +
                    anchorOf(info.name + "." + member.name) + ")";
    }
    if (!list.empty())
        text_ += "Methods: " + list + ".\n\n";
}

void Page::writeProperties(const ClassInfo& info) {
    std::string rows;
    for (const Member& member : info.members()) {
        if (!isPlain(member))
            continue;
        std::string cpp;
        for (const Declaration* declared : declarationsOf(headers_, info, member))
            cpp += (cpp.empty() ? "`" : "<br>`") + declared->text + "`";
        std::string meaning = member.put ? member.help : "Read-only. " + member.help;
        const auto errors = errorRows().find(info.name + "." + member.name);
        if (errors != errorRows().end()) {
            for (const ErrorRow& row : errors->second)
                meaning += " Raises " + numbersOf(row) + " if " + row.when + ".";
        }
        rows +=
            "| `" + member.name + " As " + scriptType(member.type) + "` | " + cpp + " | " + meaning + " |\n";
    }
    if (!rows.empty())
        text_ += "| property | C++ | |\n|---|---|---|\n" + rows;
}

void Page::writeMember(const ClassInfo& info, const Member& member) {
    const std::string name = info.name + "." + member.name;
    const auto declarations = declarationsOf(headers_, info, member);
    text_ += heading("####", name) + "```text\n" + codeLine("Script", scriptForm(info, member));
    for (const Declaration* declared : declarations)
        text_ += codeLine(declared == declarations.front() ? "C++" : "", declared->text);
    text_ += codeLine("Python", pythonForm(info, member)) + "```\n\n";
    // Several overloads share the table's text.
    const std::string prose = declarations.size() == 1 ? proseOf(declarations.front()->comment) : "";
    text_ += prose.empty() ? member.help : prose;
    for (const Parameter& parameter : member.parameters) {
        if (parameter.isKept && prose.find("share") == std::string::npos)
            text_ += " `" + parameter.name + "` is kept: it is shared from then on.";
    }
    text_ += "\n";
    const auto errors = errorRows().find(name);
    if (errors == errorRows().end())
        return;
    // A few stand in a sentence, more in a list.
    const bool isList = errors->second.size() > 2;
    std::string separator = isList ? "\n\n* " : " ";
    text_ += "\n**Raises**";
    for (const ErrorRow& row : errors->second) {
        text_ += separator + numbersOf(row) + " if " + row.when + (isList ? "." : "");
        separator = isList ? "\n* " : "; ";
    }
    text_ += isList ? "\n" : ".\n";
}

void Page::writeErrors() {
    text_ += heading("##", "Errors");
    text_ += "| number | meaning | raised by |\n|---|---|---|\n";
    std::map<int32_t, std::string> raisers;
    // In the order of the page.
    for (const ClassInfo* info : allClasses()) {
        for (const Member& member : info->members()) {
            const std::string name = info->name + "." + member.name;
            const auto rows = errorRows().find(name);
            if (rows == errorRows().end())
                continue;
            std::set<int32_t> numbers;
            for (const ErrorRow& row : rows->second)
                numbers.insert(row.numbers.begin(), row.numbers.end());
            const std::string link = "[" + name + "](#" + anchorOf(isPlain(member) ? info->name : name) + ")";
            for (const int32_t number : numbers)
                raisers[number] += (raisers[number].empty() ? "" : ", ") + link;
        }
    }
    for (const ErrorMeaning& error : errorMeanings()) {
        std::string members = raisers[error.number];
        if (error.isCommon)
            members = members.empty() ? "any member" : "any member; for a reason of its own: " + members;
        // What scripts show of a large number.
        const std::string shown =
            error.number < 0 ? "<br>`" + std::to_string(error.number) + "`" : std::string();
        text_ += "| " + errorName(error.number) + shown + " | " + std::string(error.meaning) + " | " +
                 members + " |\n";
    }
}

void appendEnumeration(std::string& page, const Enumeration& enumeration) {
    page += "\n### " + std::string(enumeration.name) + "\n\n" + std::string(enumeration.summary) +
            "\n\n| name | number | |\n|---|---|---|\n";
    for (const Enumeration::Member& member : enumeration.members) {
        page += "| `" + std::string(member.name) + "` | " + std::to_string(member.value) + " | " +
                std::string(member.help) + " |\n";
    }
}

std::string Page::write() {
    if (const std::string faults = faultsOfErrors(headers_); !faults.empty())
        throw std::runtime_error(faults);
    text_ = kIntroduction;
    writeContents();
    for (const auto& group : kGroups) {
        text_ += "\n## " + std::string(group.title) + "\n";
        for (const ClassInfo* info : allClasses()) {
            if (folderOf(*info) == group.folder)
                writeClass(*info);
        }
    }
    text_ += heading("##", "Named numbers") +
             "The type library and Python have them; scripts write the numbers.\n";
    for (const Enumeration& enumeration : enumerations())
        appendEnumeration(text_, enumeration);
    writeErrors();
    return text_;
}

} // namespace

std::string referencePage(const std::string& root) { return Page(root).write(); }

} // namespace norvakavlor
