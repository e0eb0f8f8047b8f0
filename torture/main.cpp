// Disturbs what stores documents, and counts what was lost. Started by torture/run.

#include "acts.h"
#include "traced.h"
#include "workers.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <list>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/text/error.h>
#include <random>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace norvakavlor::torture {
namespace {

namespace fs = std::filesystem;

struct Plan {
    bool isShort = false;
    int percent = 100;               ///< of the long form
    std::vector<std::string> worker; ///< the command that starts one
    bool isForeign = false;          ///< the worker is no native program
};

/// How many rounds: of the short form, or the part that is wanted of the long one.
int roundsOf(const Plan& plan, int shortOnes, int longOnes) {
    return plan.isShort ? shortOnes : std::max(1, longOnes * plan.percent / 100);
}

std::mt19937& chance() {
    static std::mt19937 engine(std::random_device{}());
    return engine;
}

int between(int low, int high) { return std::uniform_int_distribution(low, high)(chance()); }

void pause(int milliseconds) { ::usleep(static_cast<useconds_t>(1000 * milliseconds)); }

class Folder {
public:
    explicit Folder(const fs::path& parent = fs::temp_directory_path())
        : path_((parent / "kavlor-torture-XXXXXX").string()) {
        if (!::mkdtemp(path_.data()))
            throw std::runtime_error("no folder for temporary files");
        path_ += '/';
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(path_); }
    const std::string& path() const { return path_; }

    std::vector<fs::path> temporaries() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(path_)) {
            if (platform::isTemporaryName(entry.path().filename().string()))
                found.push_back(entry.path());
        }
        return found;
    }

private:
    std::string path_;
};

/// Counts of one kind of disturbance; a line of the report.
struct Tally {
    std::string what;
    int disturbed = 0;
    int reported = 0; ///< stored, as the caller was told
    int faults = 0;
    std::string remark;

    void fault(const std::string& text) {
        if (!text.empty() && ++faults <= 5)
            std::printf("    %s: %s\n", what.c_str(), text.c_str());
    }
    void print() const {
        std::printf("%-28s %7d disturbed %7d reported %4d faults%s%s\n", what.c_str(), disturbed, reported,
                    faults, remark.empty() ? "" : "; ", remark.c_str());
        std::fflush(stdout);
    }
};

/// What a disturbed act leaves is in no one's way: it is gone after the next one, once it is old.
std::string leftovers(const Act& act, const Folder& folder, int& cleaned) {
    const auto found = folder.temporaries();
    for (const fs::path& path : found)
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    if (!act.run(folder.path(), "z", 1000000))
        return "the next one is not stored";
    cleaned += static_cast<int>(found.size());
    return folder.temporaries().empty() ? "" : "stays for ever: " + folder.temporaries().front().string();
}

/// To this native program one of the other product is as one on another machine, whose locks it leaves alone.
/// So another of those has to take over first.
std::string takeoverByForeign(const Plan& plan, const Folder& folder) {
    fs::remove(folder.path() + "stop");
    return !plan.isForeign || Worker(plan.worker, "insertion", folder.path(), "t", 1).ends(60)
               ? ""
               : "the roster is locked for ever";
}

/// Kills after 2 to 160 ms.
int kills(const Plan& plan) {
    const int rounds = plan.isForeign ? roundsOf(plan, 15, 500) : roundsOf(plan, 75, 5000);
    int faults = 0;
    for (const Act& act : acts()) {
        if (plan.isForeign && (act.name == "server" || act.name == "setting"))
            continue; // its settings are not in a folder of their own
        if (act.name == "takeover")
            continue; // an insertion but for its first moment
        Tally tally{"kills " + std::string(act.name)};
        int cleaned = 0;
        for (int round = 0; round < rounds; ++round) {
            const Folder folder;
            act.prepare(folder.path());
            Worker worker(plan.worker, act.name, folder.path(), "n", 0);
            if (!worker.begins())
                tally.fault("a worker does not begin");
            pause(between(2, 160));
            worker.kill();
            ++tally.disturbed;
            const auto reported = worker.reported();
            tally.reported += static_cast<int>(reported.size());
            if (act.name == "insertion")
                tally.fault(takeoverByForeign(plan, folder));
            tally.fault(act.fault(folder.path(), reported));
            tally.fault(leftovers(act, folder, cleaned));
        }
        tally.remark = std::to_string(cleaned) + " temporaries left and cleaned";
        tally.print();
        faults += tally.faults;
    }
    return faults;
}

/// An act in the process of a Disturbance: its exit code is 0 when it is stored, 1 when not, else the
/// error's.
int once(const Act& act, const Folder& folder) {
    constexpr int kObjectError = 254;
    try {
        if (!act.run(folder.path(), "n", 1))
            return 1;
        const std::string line = "n1\n";
        return ::write(STDOUT_FILENO, line.data(), line.size()) > 0 ? 0 : 255;
    } catch (const Error& error) {
        return error.number() > 0 && error.number() < kObjectError ? error.number() : kObjectError;
    }
}

std::vector<std::string> linesOf(const Outcome& outcome) {
    std::vector<std::string> lines;
    if (!outcome.said.empty())
        lines.emplace_back("n1");
    return lines;
}

/// Kills at each system call.
int calls(const Plan&) {
    int faults = 0;
    for (const Act& act : acts()) {
        Tally tally{"calls " + std::string(act.name)};
        int cleaned = 0;
        for (int call = 1;; ++call) {
            const Folder folder;
            act.prepare(folder.path());
            const Outcome outcome =
                runDisturbed([&] { return once(act, folder); }, {.call = call, .kills = true});
            if (!outcome.wasDisturbed)
                break;
            ++tally.disturbed;
            const auto reported = linesOf(outcome);
            tally.reported += static_cast<int>(reported.size());
            tally.fault(act.fault(folder.path(), reported));
            tally.fault(leftovers(act, folder, cleaned));
        }
        tally.remark = std::to_string(cleaned) + " temporaries left and cleaned";
        tally.print();
        faults += tally.faults;
    }
    return faults;
}

constexpr int kWorkers = 8;

std::vector<Worker> startWorkers(const Plan& plan, const Folder& folder, int round, int count, Tally& tally) {
    std::vector<Worker> workers;
    for (int i = 0; i < kWorkers; ++i)
        workers.emplace_back(plan.worker, "insertion", folder.path(),
                             "r" + std::to_string(round) + "w" + std::to_string(i) + "n", count);
    for (Worker& worker : workers) {
        if (!worker.begins())
            tally.fault("a worker does not begin");
    }
    return workers;
}

void append(std::vector<std::string>& all, Worker& worker) {
    const auto more = worker.reported();
    all.insert(all.end(), more.begin(), more.end());
}

/// The process that has the roster locked; 0 when nobody has. A foreign one has another number here.
pid_t ownerOf(const Folder& folder) {
    const auto owner = platform::lockOwner(folder.path() + "roster.xml");
    return owner ? static_cast<pid_t>(owner->process) : 0;
}

/// Rather who holds the lock than any other.
Worker& victim(std::vector<Worker>& workers, pid_t owner) {
    const auto holder = std::ranges::find(workers, owner, &Worker::process);
    return holder != workers.end() ? *holder : workers[static_cast<size_t>(between(0, kWorkers - 1))];
}

/// Eight processes add to one roster, and one after another is killed and replaced.
int locks(const Plan& plan) {
    constexpr int kKillsEach = 10;
    const int rounds = plan.isForeign ? roundsOf(plan, 1, 40) : roundsOf(plan, 3, 200);
    const Act& act = actOf("insertion");
    Tally tally{"locks"};
    int died = 0;
    for (int round = 0; round < rounds; ++round) {
        const Folder folder;
        act.prepare(folder.path());
        std::vector<std::string> reported;
        std::vector<Worker> workers = startWorkers(plan, folder, round, 0, tally);
        for (int kill = 0; kill < kKillsEach; ++kill) {
            pause(between(2, 160));
            Worker& worker = victim(workers, ownerOf(folder));
            const pid_t process = worker.process();
            worker.kill();
            died += ownerOf(folder) == process ? 1 : 0;
            ++tally.disturbed;
            append(reported, worker);
            worker = Worker(plan.worker, "insertion", folder.path(),
                            "r" + std::to_string(round) + "k" + std::to_string(kill) + "n", 0);
            if (!worker.begins())
                tally.fault("a worker does not begin");
        }
        std::fclose(std::fopen((folder.path() + "stop").c_str(), "w"));
        for (Worker& worker : workers) {
            if (!worker.ends(60))
                tally.fault("a worker does not end well");
            append(reported, worker);
        }
        tally.reported += static_cast<int>(reported.size());
        tally.fault(takeoverByForeign(plan, folder));
        tally.fault(act.fault(folder.path(), reported));
        int cleaned = 0;
        tally.fault(leftovers(act, folder, cleaned));
    }
    tally.remark = plan.isForeign ? "" : std::to_string(died) + " killed while they held the lock";
    tally.print();
    return tally.faults;
}

/// Eight processes add a number of students each to one roster, and one is killed meanwhile.
int insertions(const Plan& plan) {
    const int rounds = plan.isForeign ? roundsOf(plan, 1, 20) : roundsOf(plan, 2, 500);
    const int count = plan.isShort ? 20 : 100;
    const Act& act = actOf("insertion");
    Tally tally{"insertions"};
    for (int round = 0; round < rounds; ++round) {
        const Folder folder;
        act.prepare(folder.path());
        std::vector<std::string> reported;
        std::vector<Worker> workers = startWorkers(plan, folder, round, count, tally);
        pause(between(2, 160));
        const auto victim = static_cast<size_t>(between(0, kWorkers - 1));
        workers[victim].kill();
        ++tally.disturbed;
        for (size_t i = 0; i < workers.size(); ++i) {
            if (i != victim && !workers[i].ends(600))
                tally.fault("a worker does not end well");
            append(reported, workers[i]);
        }
        tally.reported += static_cast<int>(reported.size());
        tally.fault(reported.size() < (kWorkers - 1) * static_cast<size_t>(count) ? "not all were stored"
                                                                                  : "");
        tally.fault(takeoverByForeign(plan, folder));
        tally.fault(act.fault(folder.path(), reported));
        int cleaned = 0;
        tally.fault(leftovers(act, folder, cleaned));
    }
    tally.print();
    return tally.faults;
}

/// Each call of the system that has to do with files fails, one after another.
int failures(const Plan&) {
    const struct {
        const char* name;
        int code;
        int error; ///< what the caller is to see; 0: nothing
    } cases[] = {
        {"ENOSPC", ENOSPC, 61}, {"EIO", EIO, 57},    {"EACCES", EACCES, 70},
        {"EMFILE", EMFILE, 57}, {"EINTR", EINTR, 0},
    };
    int faults = 0;
    for (const Act& act : acts()) {
        for (const auto& c : cases) {
            Tally tally{"failures " + std::string(act.name) + " " + c.name};
            for (int call = 1;; ++call) {
                const Folder folder;
                act.prepare(folder.path());
                const Outcome outcome = runDisturbed([&] { return once(act, folder); },
                                                     {.call = call, .failure = c.code, .filesOnly = true});
                if (!outcome.wasDisturbed)
                    break;
                ++tally.disturbed;
                const auto reported = linesOf(outcome);
                tally.reported += static_cast<int>(reported.size());
                const std::string where = " at call " + std::to_string(call) + ", " + outcome.call;
                const int error = c.error != 0 && act.refusal != 0 ? act.refusal : c.error;
                if (outcome.exitCode != 0 && outcome.exitCode != error)
                    tally.fault("error " + std::to_string(outcome.exitCode) + where);
                // What cannot be removed stays, and so does what proves that another one died.
                for (const fs::path& left : folder.temporaries()) {
                    const bool isProof =
                        act.name == "takeover" && left.filename() == platform::lockFileName("roster.xml");
                    if (outcome.call != "unlink" && !isProof)
                        tally.fault("left " + left.string() + where);
                }
                if (const std::string fault = act.fault(folder.path(), reported); !fault.empty())
                    tally.fault(fault + where);
            }
            tally.print();
            faults += tally.faults;
        }
    }
    return faults;
}

/// Who saves one version of a document after the other on kavlor-server.
struct Client {
    explicit Client(const Folder& served) : folder(served.path()) {}

    /// Until the server says no more.
    void save(const std::string& server) {
        const std::string place = fs::path(folder.path()).parent_path().filename().string();
        const std::string url = server + place + "/SaveKavlorObject.asp?ObjName=TextBooks&FileName=books.xml";
        for (int number = 1; fault.empty(); ++number) {
            try {
                const platform::HttpReply reply = platform::sendHttp(
                    {.url = url, .headers = {{"Content-Type", "text/xml"}}, .body = documentOf(number)});
                if (reply.status == 200 && reply.text.empty())
                    reported.push_back("n" + std::to_string(number));
                else
                    fault = "the server answered " + reply.text;
            } catch (const Error&) {
                return; // it is dead
            }
        }
    }

    const Folder folder;
    std::vector<std::string> reported;
    std::string fault;
};

/// Kills kavlor-server itself after 2 to 160 ms, while clients store on it, each a document of its own.
int server(const Plan& plan) {
    constexpr int kClients = 4;
    const int rounds = roundsOf(plan, 20, 2000);
    const Act& act = actOf("save");
    const fs::path program = fs::path(plan.worker.at(0)).parent_path().parent_path() / "kavlor-server";
    Tally tally{"server"};
    int cleaned = 0;
    for (int round = 0; round < rounds; ++round) {
        const Folder folder;
        std::list<Client> clients;
        for (int i = 0; i < kClients; ++i)
            act.prepare(clients.emplace_back(folder).folder.path());
        Worker worker({program.string(), folder.path()});
        const std::string line = worker.firstLine();
        const std::string address = line.substr(std::min(line.find("http://"), line.size()));
        tally.fault(address.empty() ? "kavlor-server does not begin" : "");
        std::vector<std::thread> threads;
        for (Client& client : clients)
            threads.emplace_back(&Client::save, &client, address);
        pause(between(2, 160));
        worker.kill();
        ++tally.disturbed;
        for (std::thread& thread : threads)
            thread.join();
        for (const Client& client : clients) {
            tally.reported += static_cast<int>(client.reported.size());
            tally.fault(client.fault);
            tally.fault(act.fault(client.folder.path(), client.reported));
            tally.fault(leftovers(act, client.folder, cleaned));
        }
    }
    tally.remark = std::to_string(cleaned) + " temporaries left and cleaned";
    tally.print();
    return tally.faults;
}

const struct {
    const char* name;
    int (*run)(const Plan&);
    bool ofBoth; ///< also for workers of the Windows product
} kItems[] = {{"kills", kills, true}, {"server", server, false},        {"calls", calls, false},
              {"locks", locks, true}, {"insertions", insertions, true}, {"failures", failures, false}};

int run(const std::vector<std::string>& arguments) {
    Plan plan;
    std::vector<std::string> wanted;
    for (const std::string& argument : arguments) {
        if (argument == "--short")
            plan.isShort = true;
        else if (argument.starts_with("--percent="))
            plan.percent = std::atoi(argument.c_str() + argument.find('=') + 1);
        else if (argument == "--foreign")
            plan.isForeign = true;
        else if (argument.find('/') != std::string::npos)
            plan.worker.push_back(argument);
        else
            wanted.push_back(argument);
    }
    shortenWaits();
    const auto runThese = [&](const auto& isAmong) {
        int faults = 0;
        for (const auto& item : kItems) {
            const bool isWanted = wanted.empty() || std::ranges::count(wanted, item.name) > 0;
            if (isWanted && isAmong(item.run) && (item.ofBoth || !plan.isForeign))
                faults += item.run(plan);
        }
        return faults;
    };
    // Kills wait for their moments and the others for the disk: the short form runs them side by side.
    const pid_t others = plan.isShort ? ::fork() : -1;
    if (others == 0)
        ::_exit(std::min(runThese([](auto run) { return run != kills; }), 100));
    int faults = runThese([&](auto run) { return others < 0 || run == kills; });
    int status = 0;
    if (others > 0 && ::waitpid(others, &status, 0) == others)
        faults += WIFEXITED(status) ? WEXITSTATUS(status) : 1;
    std::printf("%d faults\n", faults);
    return faults == 0 ? 0 : 1;
}

} // namespace
} // namespace norvakavlor::torture

int main(int argc, char** argv) {
    try {
        return norvakavlor::torture::run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kavlor_torture: %s\n", failure.what());
        return 2;
    }
}
