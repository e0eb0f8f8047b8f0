#include "fixtures.h"

#include "client.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
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

} // namespace

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
    return client::call(object, method, std::move(arguments));
}

std::vector<Ref<Object>> library() {
    std::vector<Ref<Object>> collections;
    for (const auto& [name, text] : rows<2>("documents.library")) {
        collections.push_back(client::create(name));
        const auto document = std::make_shared<xml::Document>(parsed(text));
        callOnDocument(*collections.back(), "LoadFromXMLNode", document, collections);
    }
    return collections;
}

TemporaryFolder::TemporaryFolder(std::string_view parent) {
    // A name of its own for each process and object, so that runs side by side do not meet.
    static std::mt19937_64 random(std::random_device{}());
    const auto now = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    path_ = (parent.empty() ? std::filesystem::temp_directory_path() : fromUtf8(parent)) /
            ("norvakavlor-" + std::to_string(random() ^ now));
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
