#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What is done again and again while it is disturbed, and how to see afterwards that nothing was lost.
namespace norvakavlor::torture {

struct Act {
    std::string_view name;
    int refusal; ///< how every failure is answered: 1 is False, else an error's number; 0: each with its own
    /// Makes what the act needs in an empty folder (with "/" at its end).
    void (*prepare)(const std::string& folder);
    /// Does it for the number-th time, numbers from 1 up; True once it is stored.
    bool (*run)(const std::string& folder, const std::string& prefix, int number);
    /// What is wrong in the folder when at least these ("prefix" and number, in order) were reported as
    /// stored; "" when nothing is. The act may have been disturbed at any point.
    std::string (*fault)(const std::string& folder, const std::vector<std::string>& reported);
};

const std::vector<Act>& acts();
const Act& actOf(std::string_view name);

/// The document that the number-th save stores.
std::string documentOf(int number);

/// Waits for locks take a few milliseconds here and not seconds.
void shortenWaits();

} // namespace norvakavlor::torture
