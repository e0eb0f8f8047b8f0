// Feeds every target with its seeds: kavlor_fuzz_replay SOURCE_FOLDER. With --list it names the targets, each
// with the folder of its samples.

#include "targets.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace norvakavlor::fuzz {
namespace {

namespace fs = std::filesystem;

int feedAll(const Target& target, const fs::path& folder) {
    int count = 0;
    if (!fs::is_directory(folder))
        return 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        std::printf("%s\n", entry.path().c_str()); // the last one tells where it ended early
        std::fflush(stdout);
        target.feed(target.name, bytes);
        ++count;
    }
    return count;
}

int replay(const fs::path& source) {
    prepare();
    int count = 0;
    for (const Target& target : targets()) {
        const int own = feedAll(target, source / "fuzz" / "seeds" / target.name);
        const int samples = target.seeds.empty() ? 0 : feedAll(target, source / "examples" / target.seeds);
        if (own + samples == 0) {
            std::printf("no seeds for %s\n", std::string(target.name).c_str());
            return 1;
        }
        count += own + samples;
    }
    std::printf("%d inputs, %zu targets\n", count, targets().size());
    return 0;
}

} // namespace
} // namespace norvakavlor::fuzz

int main(int argc, char** argv) {
    using namespace norvakavlor::fuzz;
    if (argc != 2)
        return 2;
    if (std::string(argv[1]) != "--list")
        return replay(std::filesystem::absolute(argv[1]));
    for (const Target& target : targets())
        std::printf("%s %s\n", std::string(target.name).c_str(), std::string(target.seeds).c_str());
    return 0;
}
