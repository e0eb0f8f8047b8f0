#pragma once

#include <functional>
#include <string>
#include <vector>

/// What is measured. Each run of the program measures one operation, so that no other one has grown its heap.
namespace norvakavlor::bench {

/// The documents of one run, which bench/generate.py has written.
struct Documents {
    std::string folder; ///< ends in "/"
    int size = 0;       ///< members, questions, students or files, as the operation counts them
    std::string server; ///< address of a kavlor-server that serves the folder; "" when none runs

    std::string sized(const std::string& name) const { return folder + name + "_" + std::to_string(size); }
    std::string document(const std::string& name) const { return sized(name) + ".xml"; }
};

/// One round. What it returns is kept until the memory that it holds was counted; giving it back is part of
/// the round's time.
using Round = std::function<std::function<void()>()>;

struct Operation {
    std::string name;
    /// Loads what the rounds need, which is not measured, and gives the round.
    std::function<Round(const Documents&)> prepare;
    /// The document whose size and whose reference tree the figures are compared with.
    std::function<std::string(const Documents&)> measuredBy;
    /// Takes far less than a microsecond: measured over many rounds of kTinyCalls.
    bool isTiny = false;
};
constexpr int kTinyCalls = 100;

std::vector<Operation> ownOperations();
std::vector<Operation> references();
/// The binding that CodeSynthesis XSD generates for the question pool; none when it was not built.
std::vector<Operation> generatedBinding();

/// The bytes of a file; ends the program when it cannot be read.
std::string readBytes(const std::string& path);

/// The path of every file in a folder.
std::vector<std::string> filesOf(const std::string& folder);

/// Keeps a result until it goes out of scope, as a round returns it.
template <class Result> std::function<void()> keep(Result result) {
    return [result = std::move(result)] {};
}

} // namespace norvakavlor::bench
