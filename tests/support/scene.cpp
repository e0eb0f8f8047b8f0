#include "scene.h"

#include "client.h"
#include "memory.h"

#include <algorithm>
#include <new>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor::testing {
namespace {

constexpr const char* kApplication = "NorvaKavlor Test";

/// Where launches wait for the results of live exercises.
void setResultsDirectory(const std::string& directory) {
    const auto registry = New<Registry>();
    registry->fSaveString(registry->HKEY_LOCAL_MACHINE(), "Software\\Norvalis\\Kavlor\\Lumio", "resultsDir",
                          directory);
}

/// Not so in the brackets of a call.
bool isAssignment(const std::string& text, size_t equals) {
    return std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals), '(') ==
           std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals), ')');
}

std::string shown(const Value& value, const std::string& properties) {
    if (!value.isObject())
        return value.toText();
    if (value.isAbsent())
        return "Nothing";
    std::string text;
    const Ref<Object> collection = value.toObject();
    if (!collection->dynamicClass().nextElement)
        return collection->dynamicClass().name;
    for (const Value& element : client::elementsOf(*collection)) {
        text += text.empty() ? "" : ";";
        if (!element.isObject()) {
            text += element.toText();
            continue;
        }
        const Ref<Object> object = element.toObject();
        std::string line;
        for (const Member& member : object->dynamicClass().members()) {
            if (member.kind == Member::Kind::Property && properties.empty())
                line += client::get(*object, member.name).toText() + ",";
        }
        for (const std::string& name : pieces(properties, " "))
            line += name.empty() ? "" : client::get(*object, name).toText() + ",";
        text += line.substr(0, line.size() - 1);
    }
    return text;
}

} // namespace

std::vector<std::string> pieces(const std::string& text, std::string_view separator) {
    std::vector<std::string> result;
    size_t start = 0;
    for (size_t end = 0; (end = text.find(separator, start)) != std::string::npos;
         start = end + separator.size())
        result.push_back(text.substr(start, end - start));
    result.push_back(text.substr(start));
    return result;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

bool takesFile(const std::vector<std::string>& row, Files& files) {
    const bool isFile = row[0] == "file";
    if (isFile)
        files.emplace_back(row.at(1), row.size() > 2 ? row[2] : "");
    return isFile;
}

Scene::Scene(const std::string& className, const Files& files)
    : object_(client::create(className)), places_{{"file:", folder_.path()},
                                                  {"server:", server_.url()},
                                                  {"web:",
                                                   misbehaving("x").substr(0, misbehaving("x").size() - 2)},
                                                  {"nobody:", refusingServer()}} {
    for (const auto& [name, content] : files) {
        folder_.write(name, located(content));
        if (name.find('/') == std::string::npos)
            server_.write(name, content);
    }
    before_ = folder_.names();
    if (className == "LiveExResults")
        setResultsDirectory(folder_.path());
}

Scene::~Scene() {
    if (object_->dynamicClass().name == "LiveExResults")
        setResultsDirectory("");
    for (const std::string& name : settings_)
        platform::deleteSetting(kApplication, "Paths", name);
}

std::string Scene::run(const std::string& steps) {
    std::string result;
    for (const std::string& text : pieces(steps, " > ")) {
        const bool isWhole = text.starts_with("says ");
        const std::string fault = raised([&] {
            try {
                result = step(text.substr(isWhole ? 5 : 0));
            } catch (const std::bad_alloc&) {
                throw runtimeError(RuntimeError::OutOfMemory);
            }
        });
        if (fault != "nothing")
            result = isWhole || (fault.find("|NorvaKavlor|") == std::string::npos && !fault.starts_with("7|"))
                         ? fault
                         : "error " + fault.substr(0, fault.find('|'));
    }
    for (const std::string& message : messages_.all())
        result += " !" + message;
    for (const auto& [prefix, place] : places_)
        replaceAll(result, place, prefix);
    return result;
}

std::string Scene::changes() const {
    const std::vector<std::string> now = folder_.names();
    std::string text;
    for (const std::string& name : now)
        text += std::ranges::count(before_, name) ? "" : " +" + name;
    for (const std::string& name : before_)
        text += std::ranges::count(now, name) ? "" : " -" + name;
    return text.empty() ? "" : text.substr(1);
}

std::map<std::string, std::string> Scene::contents() const {
    std::map<std::string, std::string> result;
    for (const std::string& name : folder_.names())
        result["file:" + name] = folder_.read(name);
    for (const std::string& name : server_.names())
        result["server:" + name] = server_.read(name);
    return result;
}

std::string Scene::located(std::string text) const {
    for (const auto& [prefix, place] : places_)
        replaceAll(text, prefix, place);
    return text;
}

std::string Scene::step(const std::string& text) {
    if (text.starts_with("locked "))
        return platform::isReadOnly(folder_.file(text.substr(7))) ? "True" : "False";
    if (text.starts_with("cat "))
        return folder_.read(text.substr(4));
    if (prepares(text))
        return {};
    if (const size_t equals = text.find('='); equals != std::string::npos && isAssignment(text, equals)) {
        const size_t dot = text.rfind('.', equals);
        const bool isInside = dot != std::string::npos;
        const Ref<Object> holder = isInside ? reached(text.substr(0, dot)).toObject() : object_;
        const size_t start = isInside ? dot + 1 : 0;
        const std::string name = text.substr(start, equals - start);
        const Value value = located(text.substr(equals + 1));
        const memory::Watched watched;
        client::put(*holder, name, value);
        return {};
    }
    const bool hasList = text.ends_with(']');
    const size_t list = hasList ? text.rfind('[') : text.size();
    const Value value = reached(text.substr(0, list));
    return shown(value, hasList ? text.substr(list + 1, text.size() - list - 2) : "");
}

bool Scene::prepares(const std::string& text) {
    const size_t space = text.find(' ');
    const std::string verb = text.substr(0, space), about = text.substr(space + 1);
    const size_t end = about.find(' ');
    const std::string name = about.substr(0, end), content = about.substr(end + 1);
    if (verb == "lock" || verb == "unlock")
        platform::setReadOnly(folder_.file(name), verb == "lock");
    else if (verb == "write")
        folder_.write(name, content);
    else if (verb == "remove")
        platform::deleteFile(folder_.file(name), true);
    else if (verb == "launches")
        setResultsDirectory(located(name));
    else if (verb == "setting")
        platform::writeSetting(kApplication, "Paths", settings_.emplace_back(name), located(content));
    else
        return false;
    return true;
}

Value Scene::reached(const std::string& path) {
    Value value = object_;
    for (size_t start = 0; start < path.size() && !value.isAbsent();) {
        size_t end = start;
        for (int depth = 0; end < path.size() && (depth > 0 || path[end] != '.'); ++end)
            depth += (path[end] == '(') - (path[end] == ')');
        const std::string part = path.substr(start, end - start);
        const size_t open = std::min(part.find('('), part.size());
        start = end + 1;
        if (part.starts_with('@')) {
            value = argument(part);
            continue;
        }
        const Ref<Object> holder = value.toObject();
        const std::string name = part.substr(0, open);
        std::vector<Value> passed = arguments(part.substr(open));
        const memory::Watched watched;
        value = client::call(*holder, name, std::move(passed));
    }
    return value;
}

std::vector<Value> Scene::arguments(const std::string& inBrackets) {
    std::vector<Value> result;
    if (inBrackets.size() <= 2)
        return result;
    for (const std::string& text : pieces(inBrackets.substr(1, inBrackets.size() - 2), ", "))
        result.push_back(argument(text));
    return result;
}

Value Scene::argument(const std::string& text) {
    if (text == "Nothing")
        return Value::nothing();
    if (text == "\"\"")
        return "";
    if (text.starts_with('\''))
        return text.substr(1, text.size() - 2);
    if (text.starts_with('<')) {
        const auto document = std::make_shared<xml::Document>(parsed(text));
        return New<NodeObject>(document, document->root());
    }
    if (text.starts_with('@')) {
        for (const Ref<Object>& collection : collections()) {
            if (collection->dynamicClass().name == text.substr(1))
                return collection;
        }
    }
    if (!text.ends_with('}'))
        return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos
                   ? Value(std::stoi(text))
                   : Value(located(text));
    const size_t brace = text.find('{');
    const Ref<Object> object = client::create(text.substr(0, brace));
    for (const std::string& assignment : pieces(text.substr(brace + 1, text.size() - brace - 2), "; ")) {
        if (const size_t sign = assignment.find('='); sign != std::string::npos)
            client::put(*object, assignment.substr(0, sign), assignment.substr(sign + 1));
    }
    return object;
}

const std::vector<Ref<Object>>& Scene::collections() {
    if (library_.empty())
        library_ = library();
    return library_;
}

} // namespace norvakavlor::testing
