#pragma once

#include <cstdint>
#include <norvakavlor/platform/document_lock.h>
#include <optional>
#include <string>
#include <string_view>

/// What a lock file says, in lines of text:
///
///     document 12be4f 18a5b3c2d1e0f000
///     machine lab3 4c4c4544-0042
///     process 812
///     taken 11/26/2026 9:02:00 AM
///
/// The first two lines are the evidence. A process that takes over writes the same two again, so that a
/// death at any moment leaves them whole. What follows the last line is left of a former text.
namespace norvakavlor::platform {

/// The line that tells one state of a document from every other: the file's number and its time of change.
std::string lockDocumentLine(uint64_t file, uint64_t changed);

/// The whole text for a lock that this process takes now.
std::string lockMark(const std::string& documentLine);

/// Was the text written on this machine for a document of this line?
bool isOwnLockMark(std::string_view mark, const std::string& documentLine);

/// Nothing when the text is about another state of the document. Whether a process of this machine still runs
/// it cannot tell.
std::optional<LockOwner> lockOwnerIn(std::string_view mark, const std::string& documentLine);

/// Brought by each platform: this process's number.
uint32_t processNumber();

} // namespace norvakavlor::platform
