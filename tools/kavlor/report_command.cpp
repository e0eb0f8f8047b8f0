#include "command.h"
#include "console.h"
#include "report.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <random>

namespace norvakavlor::kavlor {
namespace {

struct ReportOptions {
    std::string folder;
    std::string output;
};

std::string now() {
    const std::time_t moment = std::time(nullptr);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", std::localtime(&moment))};
}

/// Replaces a file as a whole: whoever looks, or interrupts, finds the old one or the new one.
void writeWhole(const std::string& file, const std::string& content) {
    const std::filesystem::path path = pathFrom(file);
    std::filesystem::path part = path;
    part += ".part" + std::to_string(std::random_device()());
    std::ofstream stream(part, std::ios::binary);
    stream << content;
    stream.close();
    std::error_code fault;
    if (stream)
        std::filesystem::rename(part, path, fault);
    if (stream && !fault)
        return;
    std::error_code ignored;
    std::filesystem::remove(part, ignored);
    throw Failure(file + " cannot be written" + (fault ? ": " + fault.message() : ""));
}

int report(const ReportOptions& options) {
    const School school(options.folder);
    if (school.installation.find("students.xml").empty() && school.exams.empty() && school.lessons.empty())
        throw Failure(options.folder + " holds no roster, exams or lessons");
    const std::string page = reportPage(school, now());
    if (options.output == "-") {
        std::fwrite(page.data(), 1, page.size(), stdout);
        return kWell;
    }
    checkInterrupted();
    writeWhole(options.output, page);
    std::printf("%s: %s in %s, %s, %s\n", plain(options.output).c_str(),
                counted(static_cast<size_t>(school.installation.students->StudentMembers->Count()), "student",
                        "students")
                    .c_str(),
                counted(school.classes.size(), "class", "classes").c_str(),
                counted(school.attempts(), "attempt", "attempts").c_str(),
                counted(school.faults.size(), "fault", "faults").c_str());
    return kWell;
}

} // namespace

extern const Command kReport;
const Command kReport{
    "report", "Write a page that shows how the classes are doing",
    "Reads everything under FOLDER and writes one HTML file that needs nothing else: what needs help, each\n"
    "class, exam and lesson menu, and what is faulty. Passwords' digests are not in it. The single "
    "documents\n"
    "go by their usual names: students.xml, courses.xml, textbooks.xml, objectives.xml, taskpool.xml,\n"
    "questionpool.xml.\n\n"
    "Example: kavlor report /srv/school -o report.html",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<ReportOptions>();
        options->output = "report.html";
        arguments.required("FOLDER", options->folder, "The installation's folder");
        arguments.option("-o,--output", options->output,
                         "The page's file (report.html); - for the standard output", "FILE");
        return [options] { return report(*options); };
    }};

} // namespace norvakavlor::kavlor
