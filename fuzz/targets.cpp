#include "targets.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <norvakavlor/assessment/preferences.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/platform/native/settings_lines.h>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/decode.h>
#include <norvakavlor/xml/node_object.h>
#include <optional>
#include <span>
#include <string>
#include <tools/server/service.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace norvakavlor::fuzz {
namespace {

/// Ends the process when a promise does not hold.
void expect(bool holds, std::string_view promise, std::string_view one = {}, std::string_view other = {}) {
    if (holds)
        return;
    std::cerr << "does not hold: " << promise << "\n  one:   " << one << "\n  other: " << other << std::endl;
    std::abort();
}

std::string_view takeLine(std::string_view& bytes) {
    const size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return line;
}

// Documents and the classes that read them.

/// The pools that documents refer to, from the samples; Nothing for another class.
Value sampleOf(const ClassInfo& info) {
    const struct {
        std::string_view className;
        const char* file;
    } files[] = {{"TextBooks", "textbooks.xml"},
                 {"Courses", "courses.xml"},
                 {"Objectives", "objectives.xml"},
                 {"TaskPool", "taskpool.xml"},
                 {"QuestionPool", "questionpool.xml"}};
    static std::map<std::string, Value> loaded;
    const auto known = loaded.find(info.name);
    if (known != loaded.end())
        return known->second;
    const auto* const found =
        std::ranges::find(files, info.name, &std::remove_reference_t<decltype(*files)>::className);
    if (found == std::end(files))
        return Value::nothing();
    const Ref<Object> pool = CreateObject("NorvaKavlor." + info.name);
    std::vector<Value> arguments{
        Value(std::string(KAVLOR_SOURCE_FOLDER "/examples/curriculum/") + found->file)};
    for (const Parameter& parameter : std::span(info.find("Load")->parameters).subspan(1))
        arguments.push_back(parameter.type.objectClass ? sampleOf(parameter.type.objectClass())
                                                       : Value::nothing());
    call(*pool, "Load", arguments);
    loaded[info.name] = pool;
    return pool;
}

/// The arguments of a reader or writer: the node, the document, and the pools.
std::vector<Value> argumentsFor(const Member& member, const Ref<NodeObject>& node) {
    std::vector<Value> arguments;
    for (const Parameter& parameter : member.parameters) {
        switch (parameter.type.kind) {
        case Type::Kind::Node:
            arguments.emplace_back(node);
            break;
        case Type::Kind::Document:
            arguments.emplace_back(New<NodeObject>(node->document, node->document->node()));
            break;
        case Type::Kind::Text:
            arguments.emplace_back("document.xml");
            break;
        case Type::Kind::Object:
            arguments.push_back(sampleOf(parameter.type.objectClass()));
            break;
        default:
            arguments.emplace_back(Value::nothing());
        }
    }
    return arguments;
}

const Member& memberOf(const Object& object, std::string_view name) {
    return *object.dynamicClass().find(name);
}

/// Nothing when the reader refuses the document.
Ref<Object> read(std::string_view className, const std::shared_ptr<xml::Document>& document) {
    Ref<Object> object = CreateObject("NorvaKavlor." + std::string(className));
    const auto node = New<NodeObject>(document, document->root());
    const bool isRead = ignoringErrors([&] {
        const Value answer =
            call(*object, "LoadFromXMLNode", argumentsFor(memberOf(*object, "LoadFromXMLNode"), node));
        if (answer.as<bool>() && !answer.toBoolean())
            object = {};
    });
    return isRead ? object : Ref<Object>();
}

std::optional<std::string> written(Object& object, std::string_view root) {
    const auto document = std::make_shared<xml::Document>();
    const auto node = New<NodeObject>(document, document->createRoot(root));
    const bool isWritten = ignoringErrors(
        [&] { call(object, "SaveToXMLNode", argumentsFor(memberOf(object, "SaveToXMLNode"), node)); });
    return isWritten ? std::optional(document->toText()) : std::nullopt;
}

/// What a reader accepts is written, read again and written again. What it writes once it writes again, but
/// for what the formats lose on purpose: markup becomes text one level deeper each time.
void feedDocument(std::string_view name, std::string_view bytes) {
    auto parsed = platform::parseXml(bytes);
    if (!parsed)
        return;
    const auto document = std::make_shared<xml::Document>(std::move(*parsed));
    const std::string root(document->root().name());
    const Ref<Object> first = read(name, document);
    const auto once = first ? written(*first, root) : std::nullopt;
    if (!once)
        return;
    auto again = platform::parseXml(*once);
    expect(again.has_value(), "what is written parses", *once);
    const Ref<Object> second = read(name, std::make_shared<xml::Document>(std::move(*again)));
    expect(static_cast<bool>(second), "what is written is read", *once);
    const auto twice = written(*second, root);
    expect(twice.has_value(), "what is read is written", *once);
    if (once->find("&lt;") == std::string::npos && once->find("&amp;") == std::string::npos)
        expect(*once == *twice, "what is written is written again", *once, *twice);
}

/// The tree alone, by way of every encoding.
void feedXml(std::string_view, std::string_view bytes) {
    std::string text(bytes);
    if (!xml::decodeFile(text))
        return;
    expect(xml::isWellFormedUtf8(text), "decoded text is UTF-8");
    const auto document = platform::parseXml(text);
    if (!document)
        return;
    const std::string once = document->toText();
    const auto again = platform::parseXml(once);
    expect(again.has_value(), "what is written parses", once);
    expect(again->toText() == once, "what is written is written again", once, again->toText());
}

void feedDecoding(std::string_view, std::string_view bytes) {
    const std::string_view contentType = takeLine(bytes);
    const std::string reply = xml::decodeReply(bytes, contentType);
    expect(xml::isWellFormedUtf8(reply), "a decoded reply is UTF-8", reply);
    std::string file(bytes);
    expect(!xml::decodeFile(file) || xml::isWellFormedUtf8(file), "a decoded file is UTF-8", file);
}

// Text.

void feedConversions(std::string_view, std::string_view bytes) {
    ignoringErrors([&] { toInt16(bytes); });
    ignoringErrors([&] { toInt32(bytes); });
    ignoringErrors([&] { toBoolean(bytes); });
    std::optional<double> number;
    ignoringErrors([&] { number = toDouble(bytes); });
    if (number) {
        const std::string text = toText(*number);
        std::string again = text;
        ignoringErrors([&] { again = toText(toDouble(text)); }); // 15 digits of the largest may exceed it
        expect(again == text, "a number's text is that of the same number", text, again);
    }
    expect(!number || isNumeric(bytes), "what is converted to a number is numeric", bytes);
    if (const auto date = parseDate(bytes)) {
        const std::string text = toText(*date);
        const auto again = parseDate(text);
        expect(again && toText(*again) == text, "a date's text is that of the same date", bytes, text);
    }
}

void feedUrls(std::string_view, std::string_view bytes) {
    const std::string location(bytes);
    const std::string encoded = platform::encodeUrl(bytes);
    expect(std::ranges::all_of(encoded, [](char c) { return c > ' ' && c < 0x7f && c != '#' && c != '"'; }),
           "an encoded url is one word of a request line", encoded);
    expect(platform::encodeUrl(encoded) == encoded, "an encoded url stays", encoded);
    platform::isWebAddress(bytes);
    platform::hostOf(bytes);
    const std::string_view base = takeLine(bytes);
    platform::resolveUrl(base, bytes);
    expect((IsURL(location) ? URLBase(location) : folderOf(location)).size() <= location.size() + 1,
           "a folder is a part of its location", location);
    URLExtraQuery(location);
    URLFileName(location);
    splitDirectories(location);
    documentFileName(location);
}

void feedSettings(std::string_view, std::string_view bytes) {
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    if (const auto entry = platform::entryOfLine(line)) {
        const auto again = platform::entryOfLine(platform::lineOfEntry(*entry));
        expect(again && again->name == entry->name && again->value == entry->value,
               "an entry's line is read as that entry", line, platform::lineOfEntry(*entry));
    }
    if (const auto key = platform::keyOfLine(line))
        expect(platform::keyOfLine(platform::lineOfKey(*key)) == key, "a key's line is read as that key",
               line);
    const platform::SettingsEntry any{std::string(takeLine(bytes)), std::string(bytes)};
    const std::string written = platform::lineOfEntry(any);
    const auto read = platform::entryOfLine(written);
    expect(written.find('\n') == std::string::npos, "an entry is one line", written);
    expect(read && read->name == any.name && read->value == any.value, "every entry can be stored", any.name,
           written);
}

void feedTitleFile(std::string_view, std::string_view bytes) {
    std::ofstream("title.ini", std::ios::binary) << bytes;
    const auto line = platform::firstLine("title.ini");
    expect(line && line->find_first_of("\r\n") == std::string::npos, "a first line is one", bytes);
    expect(xml::isWellFormedUtf8(*line), "a first line is UTF-8", *line);
    gradebookAccessKey("title.ini");
}

// What comes over the network.

void feedListing(std::string_view, std::string_view bytes) {
    setReply(200, "text/plain; charset=utf-8", bytes);
    const auto accepts = [](std::string_view) { return true; };
    ignoringErrors([&] { listDocuments("Exam", "http://h/", accepts); });
    for (const ClassTable table : creatableClasses()) {
        for (const Member& member : table().members()) {
            const bool takesLocation = member.name.starts_with("Get") && !member.parameters.empty() &&
                                       member.parameters[0].type.kind == Type::Kind::Text;
            std::vector<Value> arguments(member.parameters.size(), Value("http://h/"));
            std::fill(arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end(), Value(int32_t{1}));
            const Ref<Object> object = CreateObject("NorvaKavlor." + table().name);
            if (takesLocation)
                ignoringErrors([&] { call(*object, member.name, arguments); });
        }
    }
}

void feedReply(std::string_view, std::string_view bytes) {
    const std::string_view contentType = takeLine(bytes);
    for (const int status : {200, 404}) {
        setReply(status, contentType, bytes);
        for (const ClassTable table : creatableClasses()) {
            const Ref<Object> object = CreateObject("NorvaKavlor." + std::string(table().name));
            ignoringErrors([&] { call(*object, "Load", {Value("http://h/a.xml")}); });
            ignoringErrors([&] { call(*object, "Load", {Value("http://h/a.xml"), Value::nothing()}); });
        }
    }
}

void feedGradebook(std::string_view, std::string_view bytes) {
    const std::string_view contentType = takeLine(bytes);
    setReply(200, contentType, bytes);
    ignoringErrors([] { readLaunchDocument("http://h/launch", "key"); });
    const Submission submission = submitToGradebook("http://h/", "a=b");
    expect(submission.hasReply && xml::isWellFormedUtf8(submission.reply), "a gradebook's reply is text");
    expect(submission.isAccepted == submission.reply.starts_with("success"), "only a success is one");
    for (const char* name : {"GradiumExam", "GradiumLesson", "GradiumLiveEx"}) {
        const Ref<Object> object = CreateObject("NorvaKavlor." + std::string(name));
        for (const size_t count : {1, 2, 3})
            ignoringErrors([&] {
                std::vector<Value> arguments{Value("http://h/launch")};
                arguments.resize(count, Value::nothing());
                call(*object, "Load", std::move(arguments));
            });
    }
}

/// Lines of requests: method and target, then the body up to the next blank line.
void feedServer(std::string_view, std::string_view bytes) {
    static server::Service service({.folder = "."});
    const std::string_view method = takeLine(bytes);
    const std::string_view target = takeLine(bytes);
    const server::Reply reply = service.answer(
        {std::string(method), std::string(target), "text/xml", std::string(bytes)}, "http://127.0.0.1:1");
    expect(reply.status >= 200 && reply.status < 600, "an answer has a status", target);
    expect(!std::filesystem::exists("../escaped.xml"), "nothing is stored outside the folder", target);
    expect(server::maskedTarget(target).find_first_of("\r\n") == std::string::npos, "a log has lines",
           target);
}

/// A class, its members and their arguments, each by bytes. No text names another folder: what is called may
/// delete.
void feedArguments(std::string_view, std::string_view bytes) {
    const auto take = [&] {
        const auto byte = static_cast<unsigned char>(bytes.empty() ? 0 : bytes.front());
        bytes.remove_prefix(bytes.empty() ? 0 : 1);
        return size_t{byte};
    };
    const auto makeObject = [&] {
        const auto classes = creatableClasses();
        return CreateObject("NorvaKavlor." + std::string(classes[take() % classes.size()]().name));
    };
    const Ref<Object> object = makeObject();
    const auto makeValue = [&]() -> Value {
        switch (take() % 9) {
        case 0:
            return {};
        case 1:
            return Value::Null();
        case 2:
            return Value::nothing();
        case 3:
            return static_cast<int32_t>(take()) - 128;
        case 4:
            return static_cast<double>(take()) * 1e6 - 0.5;
        case 5:
            return take() % 2 == 0;
        case 6:
            return makeObject();
        case 7: {
            const auto document = std::make_shared<xml::Document>();
            return New<NodeObject>(document, document->createRoot("a"));
        }
        default: {
            std::string text(bytes.substr(0, take() % 40));
            std::erase_if(text, [](char c) { return c == '/' || c == '\\' || c == ':'; });
            return text;
        }
        }
    };
    setReply(200, "", "<a/>");
    for (int calls = 0; calls < 8 && !bytes.empty(); ++calls) {
        const auto& members = object->dynamicClass().members();
        if (members.empty())
            return;
        const Member& member = members[take() % members.size()];
        std::vector<Value> arguments(take() % 5);
        for (Value& argument : arguments)
            argument = makeValue();
        ignoringErrors([&] {
            if (take() % 3 == 0)
                put(*object, member.name, makeValue(), arguments);
            else
                call(*object, member.name, arguments);
        });
    }
}

constexpr Target kTargets[] = {
    {"TextBooks", "curriculum", feedDocument},
    {"Courses", "curriculum", feedDocument},
    {"Objectives", "curriculum", feedDocument},
    {"TaskPool", "curriculum", feedDocument},
    {"QuestionPool", "curriculum", feedDocument},
    {"Preferences", "curriculum", feedDocument},
    {"Students", "curriculum", feedDocument},
    {"Exam", "exams", feedDocument},
    {"Lesson", "lessons", feedDocument},
    {"Tutorial", "lessons", feedDocument},
    {"LiveExResults", "live", feedDocument},
    {"GradiumExam", "launches", feedDocument},
    {"GradiumLesson", "launches", feedDocument},
    {"GradiumLiveEx", "live", feedDocument},
    {"xml", "curriculum", feedXml},
    {"decoding", "", feedDecoding},
    {"conversions", "", feedConversions},
    {"urls", "", feedUrls},
    {"settings", "", feedSettings},
    {"title-file", "", feedTitleFile},
    {"listing", "", feedListing},
    {"reply", "", feedReply},
    {"gradebook", "", feedGradebook},
    {"server", "", feedServer},
    {"arguments", "", feedArguments},
};

} // namespace

std::span<const Target> targets() { return kTargets; }

const Target* findTarget(std::string_view name) {
    const auto* const found = std::ranges::find(kTargets, name, &Target::name);
    return found == std::end(kTargets) ? nullptr : found;
}

void prepare() {
    static std::string folder = (std::filesystem::temp_directory_path() / "kavlor-fuzz-XXXXXX").string();
    if (!::mkdtemp(folder.data()))
        std::abort();
    std::filesystem::create_directory(folder + "/inside");
    std::filesystem::current_path(folder + "/inside");
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    std::atexit([] {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(folder);
    });
    platform::setNotifier([](const std::string&, const std::string&) {});
    ClockSource source;
    source.now = [] { return dateOf({2026, 11, 10, 9, 0, 0}); };
    source.sleepFor = [](std::chrono::milliseconds) {};
    source.uniformRandom = [] { return 1.09; }; // no wait for a lock
    static const ScopedClockSource lasting(source);
}

} // namespace norvakavlor::fuzz
