#include "check.h"
#include "command.h"
#include "console.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

namespace norvakavlor::kavlor {
namespace {

using Rank = Finding::Rank;

struct CheckOptions {
    std::string place;
    std::vector<std::string> documents;
    bool json = false;
};

constexpr const char* kRankNames[] = {"error", "warning", "note"};
constexpr Tone kRankTones[] = {Tone::Low, Tone::Fair, Tone::Faint};

void print(const Check& check) {
    for (const Finding& finding : check.findings) {
        std::string place = finding.document;
        if (finding.line != 0)
            place += ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column);
        const auto rank = static_cast<size_t>(finding.rank);
        std::printf("%s: %s %s\n", inTone(Tone::Strong, plain(place)).c_str(),
                    inTone(kRankTones[rank], std::string(kRankNames[rank]) + ":").c_str(),
                    plain(finding.text).c_str());
    }
    std::printf("%s checked: %s, %s", counted(check.documents, "document", "documents").c_str(),
                counted(check.count(Rank::Error), "error", "errors").c_str(),
                counted(check.count(Rank::Warning), "warning", "warnings").c_str());
    if (check.following > 0)
        std::printf("; %s from these", counted(check.following, "more follows", "more follow").c_str());
    std::printf("\n");
}

void printJson(const Check& check) {
    auto findings = nlohmann::json::array();
    for (const Finding& finding : check.findings)
        findings.push_back({{"document", finding.document},
                            {"line", finding.line},
                            {"column", finding.column},
                            {"rank", kRankNames[static_cast<size_t>(finding.rank)]},
                            {"id", finding.id},
                            {"text", finding.text}});
    const nlohmann::json document = {{"documents", check.documents},
                                     {"errors", check.count(Rank::Error)},
                                     {"warnings", check.count(Rank::Warning)},
                                     {"following", check.following},
                                     {"findings", findings}};
    std::printf("%s\n", document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

int runCheck(const CheckOptions& options) {
    Check::Named named;
    for (const std::string& document : options.documents) {
        const size_t equals = document.find('=');
        if (equals == std::string::npos || equals == 0)
            throw Failure("--document takes NAME=PLACE, such as students.xml=http://host/students.xml");
        named[document.substr(0, equals)] = document.substr(equals + 1);
    }
    const Check check(options.place, std::move(named));
    if (options.json)
        printJson(check);
    else
        print(check);
    return check.count(Rank::Error) + check.count(Rank::Warning) > 0 ? kFound : kWell;
}

} // namespace

extern const Command kCheck;
const Command kCheck{
    "check", "Find every fault in an installation's documents",
    "Reads all documents under a folder, or those that a server lists, and names each fault with its place "
    "and what to do. "
    "Faults that follow\n"
    "from another one, such as references into a document that cannot be read, are counted "
    "alone. Nothing is\n"
    "changed. Code 1: there are errors or warnings.\n\n"
    "Example: kavlor check /srv/school",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<CheckOptions>();
        arguments.required("PLACE", options->place, "The installation's folder or web address");
        arguments.several("--document", options->documents,
                          "Where a single document lies, as students.xml=PLACE; may be given several times",
                          "NAME=PLACE");
        arguments.flag("--json", options->json, "Print JSON, for programs");
        return [options] { return runCheck(*options); };
    }};

} // namespace norvakavlor::kavlor
