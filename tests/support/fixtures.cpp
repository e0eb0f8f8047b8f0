#include "fixtures.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/node_object.h>
#include <random>
#include <stdexcept>
#ifdef _WIN32
#include <windows.h>
#endif

namespace norvakavlor::testing {
namespace {

std::filesystem::path fromUtf8(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string toUtf8(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

void finishField(std::string& field) {
    field.erase(0, std::min(field.find_first_not_of(' '), field.size()));
    field.erase(field.find_last_not_of(' ') + 1);
    std::string text;
    for (size_t at = 0; at < field.size(); ++at) {
        if (field[at] != '\\') {
            text += field[at];
            continue;
        }
        switch (const char kind = field.at(++at)) {
        case 'x':
            text += static_cast<char>(std::stoi(field.substr(at + 1, 2), nullptr, 16));
            at += 2;
            break;
        case 'e':
            break;
        default: {
            constexpr std::string_view kNames = "snrt";
            const size_t known = kNames.find(kind);
            text += known == std::string_view::npos ? kind : " \n\r\t"[known];
        }
        }
    }
    field = text;
}

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields(1);
    for (size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '|') {
            fields.emplace_back();
            continue;
        }
        fields.back() += line[at];
        if (line[at] == '\\' && at + 1 < line.size())
            fields.back() += line[++at];
    }
    std::ranges::for_each(fields, finishField);
    return fields;
}

} // namespace

std::vector<std::vector<std::string>> tableRows(std::string_view table) {
    const std::string name(table.substr(0, table.find('.')));
    const std::string section = "[" + std::string(table.substr(table.find('.') + 1)) + "]";
    std::ifstream file(std::string(KAVLOR_SOURCE_FOLDER) + "/tests/data/" + name + ".txt", std::ios::binary);
    std::vector<std::vector<std::string>> result;
    std::string line;
    while (std::getline(file, line) && line != section) {
    }
    while (std::getline(file, line) && !line.starts_with('[')) {
        if (!line.empty() && !line.starts_with('#'))
            result.push_back(fieldsOf(line));
    }
    if (result.empty())
        throw std::runtime_error("no table " + std::string(table));
    return result;
}

xml::Document parsed(std::string_view text) {
    platform::ParseError error;
    auto document = platform::parseXml(text, &error);
    if (!document)
        throw std::runtime_error("a test's document does not parse: " + error.reason);
    return std::move(*document);
}

Value callOnDocument(Object& object, const char* method, const std::shared_ptr<xml::Document>& document,
                     const std::vector<Ref<Object>>& collections) {
    std::vector<Value> arguments;
    for (const Parameter& parameter : object.dynamicClass().find(method)->parameters) {
        Value& argument = arguments.emplace_back();
        if (parameter.type.kind == Type::Kind::Node)
            argument = New<NodeObject>(document, document->root());
        else if (parameter.type.kind == Type::Kind::Document)
            argument = New<NodeObject>(document, document->node());
        else if (!parameter.optional)
            argument = "";
        for (const Ref<Object>& collection : collections) {
            if (parameter.type.objectClass && &parameter.type.objectClass() == &collection->dynamicClass())
                argument = collection;
        }
    }
    return call(object, method, std::move(arguments));
}

TemporaryFolder::TemporaryFolder() {
    // A name of its own for each process and object, so that runs side by side do not meet.
    static std::mt19937_64 random(std::random_device{}());
    const auto now = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    path_ = std::filesystem::temp_directory_path() / ("norvakavlor-" + std::to_string(random() ^ now));
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored)) {
        std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::path() const { return toUtf8(path_) + "/"; }

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const std::filesystem::path target = path_ / fromUtf8(name);
    std::filesystem::create_directories(target.parent_path());
    std::ofstream(target, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
    return toUtf8(target);
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::ifstream stream(path_ / fromUtf8(name), std::ios::binary);
    if (!stream)
        return "(no file)";
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

bool TemporaryFolder::has(std::string_view name) const {
    return std::filesystem::exists(path_ / fromUtf8(name));
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(toUtf8(entry.path().filename()));
    }
    std::ranges::sort(names);
    return names;
}

bool runsUnderWine() {
#ifdef _WIN32
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
#else
    return false;
#endif
}

RecordedMessages::RecordedMessages()
    : previous_(platform::setNotifier([this](const std::string& text, const std::string& title) {
          messages_.push_back(title + "|" + text);
      })) {}

RecordedMessages::~RecordedMessages() { platform::setNotifier(previous_); }

} // namespace norvakavlor::testing
