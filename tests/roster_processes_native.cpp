#include "support/fixtures.h"

#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/students/students.h>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

constexpr int kProcesses = 8;
constexpr int kInsertions = 50;

/// Adds students to the roster and notes, a line each, the user names whose insertion succeeded.
void addStudents(const std::string& roster, const TemporaryFolder& folder, int process) {
    std::string accepted;
    for (int number = 0; number < kInsertions; ++number) {
        auto student = New<Student>();
        student->UserName = "p" + std::to_string(process) + "n" + std::to_string(number);
        if (New<Students>()->AddStudent(roster, student, nullptr))
            accepted += student->UserName + "\n";
    }
    folder.write("accepted" + std::to_string(process), accepted);
}

TEST(RosterProcesses, LoseNoInsertion) {
    const TemporaryFolder folder;
    const std::string file = folder.file("roster.xml"); // not there at first
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            int failed = 0;
            try {
                addStudents(file, folder, process);
            } catch (const std::exception&) {
                failed = 1;
            }
            ::_exit(failed); // the folder stays the parent's
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    const auto roster = New<Students>();
    ASSERT_TRUE(roster->Load(file, nullptr));
    EXPECT_FALSE(platform::isReadOnly(file)) << "the roster ends unlocked";
    std::set<std::string> stored;
    for (const Ref<Student>& student : *roster->StudentMembers)
        stored.insert(student->UserName);
    std::set<std::string> accepted;
    for (int process = 0; process < kProcesses; ++process) {
        std::string names = folder.read("accepted" + std::to_string(process));
        for (size_t end = names.find('\n'); end != std::string::npos; end = names.find('\n')) {
            accepted.insert(names.substr(0, end));
            names.erase(0, end + 1);
        }
    }
    EXPECT_EQ(stored, accepted) << "what returned True is there, what returned False is not";
    // How many are refused is chance, and a matter of the disk; but somebody always comes through.
    EXPECT_GE(accepted.size(), static_cast<size_t>(kInsertions));
    EXPECT_EQ(folder.names().size(), static_cast<size_t>(kProcesses) + 1) << "no temporary file is left";
}

} // namespace
} // namespace norvakavlor
