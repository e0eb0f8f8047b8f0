#include "support/fixtures.h"
#include "support/servers.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/xml/node_object.h>

// Calls by name, as scripts make them: what the last one gives, the requests that they send and the files
// that are there afterwards. The tables have two kinds of row:
//
//     file | NAME | CONTENT                                     of the folder in which each row below begins
//     CLASS | VALIDATION STRING | STEPS | RESULT | REQUESTS | CHANGED FILES
//
// Steps stand one behind the other with ">" between:
//
//     Title=Sheets           puts a property, also Tasks(1).TaskName=Sum
//     Tasks(1).TaskName      gets one, or calls a method: Load(file:a.xml, Nothing); also @TaskPool.Tasks
//     Tasks[ID TaskName]     shows these properties of a collection's members; without a list, all
//     lock NAME, unlock NAME, locked NAME, cat NAME, write NAME CONTENT, remove NAME, setting NAME VALUE
//     says STEP              shows the whole error that a step raises
//     launches FOLDER        has launches wait there, and not in the row's folder
//
// It is five past midnight on March 4, 2004.
//
// Locations begin with "file:" for the folder, "server:" for a folder of kavlor-server with the same files,
// "web:" for the misbehaving server, "nobody:" for a refused connection. An argument is a text ("" alone is
// none), a number, a text that is none ('3'), "Nothing", "@TaskPool" (of the library that documents refer
// to), a document's element (<exam/>) or a new object: Student{StudentID=S1; UserName=ann}.
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

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

constexpr const char* kApplication = "NorvaKavlor Test";

/// Where launches wait for the results of live exercises.
void setResultsDirectory(const std::string& directory) {
    const auto registry = New<Registry>();
    registry->fSaveString(registry->HKEY_LOCAL_MACHINE(), "Software\\Norvalis\\Kavlor\\Lumio", "resultsDir",
                          directory);
}

/// One row's objects, folders and steps.
class Scene {
public:
    Scene(const std::string& className, const std::vector<std::pair<std::string, std::string>>& files)
        : object_(CreateObject("NorvaKavlor." + className)) {
        for (const auto& [name, content] : files) {
            folder_.write(name, located(content));
            if (name.find('/') == std::string::npos)
                server_.write(name, content);
        }
        before_ = folder_.names();
        if (className == "LiveExResults")
            setResultsDirectory(folder_.path());
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene() {
        if (object_->dynamicClass().name == "LiveExResults")
            setResultsDirectory("");
        for (const std::string& name : settings_)
            platform::deleteSetting(kApplication, "Paths", name);
    }

    /// The outcome of the last step, and behind "!" what the user was shown.
    std::string run(const std::string& steps) {
        std::string result;
        for (const std::string& text : pieces(steps, " > ")) {
            const bool isWhole = text.starts_with("says ");
            const std::string fault = raised([&] { result = step(text.substr(isWhole ? 5 : 0)); });
            if (fault != "nothing")
                result = isWhole || fault.find("|NorvaKavlor|") == std::string::npos
                             ? fault
                             : "error " + fault.substr(0, fault.find('|'));
        }
        for (const std::string& message : messages_.all())
            result += " !" + message;
        for (const auto& [prefix, place] : places_)
            replaceAll(result, place, prefix);
        return result;
    }

    /// What has come and gone in the folder: "+new.xml -old.xml".
    std::string changes() const {
        const std::vector<std::string> now = folder_.names();
        std::string text;
        for (const std::string& name : now)
            text += std::ranges::count(before_, name) ? "" : " +" + name;
        for (const std::string& name : before_)
            text += std::ranges::count(now, name) ? "" : " -" + name;
        return text.empty() ? "" : text.substr(1);
    }

private:
    std::string located(std::string text) const {
        for (const auto& [prefix, place] : places_)
            replaceAll(text, prefix, place);
        return text;
    }

    std::string step(const std::string& text) {
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
            put(*holder, text.substr(start, equals - start), located(text.substr(equals + 1)));
            return {};
        }
        const bool hasList = text.ends_with(']');
        const size_t list = hasList ? text.rfind('[') : text.size();
        const Value value = reached(text.substr(0, list));
        return shown(value, hasList ? text.substr(list + 1, text.size() - list - 2) : "");
    }

    /// Does what a step says of files and settings; false when it says none of that.
    bool prepares(const std::string& text) {
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

    /// Not so in the brackets of a call.
    static bool isAssignment(const std::string& text, size_t equals) {
        return std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals), '(') ==
               std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals), ')');
    }

    /// Goes along "Tasks(1).TaskName", as far as there are objects.
    Value reached(const std::string& path) {
        Value value = object_;
        for (size_t start = 0; start < path.size() && !value.isAbsent();) {
            size_t end = start;
            for (int depth = 0; end < path.size() && (depth > 0 || path[end] != '.'); ++end)
                depth += (path[end] == '(') - (path[end] == ')');
            const std::string part = path.substr(start, end - start);
            const size_t open = std::min(part.find('('), part.size());
            const Ref<Object> holder = value.toObject();
            value = part.starts_with('@') ? argument(part)
                                          : call(*holder, part.substr(0, open), arguments(part.substr(open)));
            start = end + 1;
        }
        return value;
    }

    std::vector<Value> arguments(const std::string& inBrackets) {
        std::vector<Value> result;
        if (inBrackets.size() <= 2)
            return result;
        for (const std::string& text : pieces(inBrackets.substr(1, inBrackets.size() - 2), ", "))
            result.push_back(argument(text));
        return result;
    }

    Value argument(const std::string& text) {
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
            for (const Ref<Object>& collection : library_) {
                if (collection->dynamicClass().name == text.substr(1))
                    return collection;
            }
        }
        if (!text.ends_with('}'))
            return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos
                       ? Value(std::stoi(text))
                       : Value(located(text));
        const size_t brace = text.find('{');
        const Ref<Object> object = CreateObject("NorvaKavlor." + text.substr(0, brace));
        for (const std::string& assignment : pieces(text.substr(brace + 1, text.size() - brace - 2), "; ")) {
            if (const size_t sign = assignment.find('='); sign != std::string::npos)
                put(*object, assignment.substr(0, sign), assignment.substr(sign + 1));
        }
        return object;
    }

    static std::string shown(const Value& value, const std::string& properties) {
        if (!value.isObject())
            return value.toText();
        if (value.isAbsent())
            return "Nothing";
        std::string text;
        const Ref<Object> collection = value.toObject();
        if (!collection->dynamicClass().nextElement)
            return collection->dynamicClass().name;
        for (const Value& element : elementsOf(*collection)) {
            text += text.empty() ? "" : ";";
            if (!element.isObject()) {
                text += element.toText();
                continue;
            }
            const Ref<Object> object = element.toObject();
            std::string line;
            for (const Member& member : object->dynamicClass().members()) {
                if (member.kind == Member::Kind::Property && properties.empty())
                    line += get(*object, member.name).toText() + ",";
            }
            for (const std::string& name : pieces(properties, " "))
                line += name.empty() ? "" : get(*object, name).toText() + ",";
            text += line.substr(0, line.size() - 1);
        }
        return text;
    }

    const std::string web_ = misbehaving("x").substr(0, misbehaving("x").size() - 2);
    const RecordedMessages messages_;
    const Ref<Object> object_;
    const TemporaryFolder folder_;
    const ServerFolder server_;
    std::vector<std::string> before_;
    std::vector<std::string> settings_;
    const std::vector<Ref<Object>> library_ = library();
    const std::vector<std::pair<std::string, std::string>> places_ = {
        {"file:", folder_.path()}, {"server:", server_.url()}, {"web:", web_}, {"nobody:", refusingServer()}};
};

/// A request's body behind a blank; of a long one that it is there.
std::string bodyOf(const std::string& request) {
    constexpr size_t kLong = 400;
    const std::string body = request.substr(request.find("\r\n\r\n") + 4);
    return body.empty() ? "" : body.size() > kLong ? " ..." : " " + body;
}

TEST(Calls, GiveTheirResults) {
    receivedRequests(); // of other tests
    for (const char* table :
         {"calls.web", "calls.exam_files", "calls.moves", "calls.summary", "calls.lessons", "calls.menus",
          "calls.rosters", "calls.store", "calls.gradebook", "calls.live", "calls.pools", "calls.switches"}) {
        std::vector<std::pair<std::string, std::string>> files;
        for (std::vector<std::string> row : tableRows(table)) {
            row.resize(6);
            if (row[0] == "file") {
                files.emplace_back(row[1], row[2]);
                continue;
            }
            SCOPED_TRACE(row[0] + ": " + row[2]);
            Scene scene(row[0], files);
            const ScopedClockSource clock({.now = [] { return toDate("3/4/2004 12:05:09 AM"); }});
            LoginGlobals::StoreValidationString(row[1]);
            std::string result = scene.run(row[2]);
            LoginGlobals::StoreValidationString("");
            std::string requests;
            for (const std::string& request : receivedRequests())
                requests += (requests.empty() ? "" : " > ") + requestLine(request) + bodyOf(request);
            EXPECT_EQ(result, row[3]);
            EXPECT_EQ(requests, row[4]);
            EXPECT_EQ(scene.changes(), row[5]);
        }
    }
}

} // namespace
} // namespace norvakavlor
