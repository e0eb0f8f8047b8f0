#include <norvakavlor/store/shared_document.h>

#include <chrono>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <optional>
#include <utility>

namespace norvakavlor {
namespace {

/// Waits as many seconds as chance says between two bounds, the first of which goes with the chance of 0. It
/// goes by the time of day as it stands: a wait that would end after midnight does not end, as with every
/// client of a shared roster.
void randomWait(double low, double high) {
    const double end = secondsSinceMidnight() + (high - low) * uniformRandom() + low;
    while (secondsSinceMidnight() < end)
        sleepFor(std::chrono::milliseconds(5));
}

/// "locked since 2:05:09 PM by process 812", as far as it is known.
std::string lockedBy(const std::string& path) {
    const auto owner = platform::lockOwner(path);
    return owner ? "locked since " + toText(owner->taken) + " by process " + std::to_string(owner->process)
                 : "read-only, and no lock file tells by whom: clear the attribute if no program adds to it";
}

bool takeLock(platform::DocumentLock& lock, const SharedChange& change) {
    constexpr int kTries = 3;
    seedRandom();
    bool wasMade = false;
    for (int tries = 0; tries < kTries;) {
        switch (lock.tryTake()) {
        case platform::LockResult::Taken:
            return true;
        case platform::LockResult::Missing:
            // Where a document was just made and is not to be had, there will be none.
            if (std::exchange(wasMade, true)) {
                noteReason(lock.path() + ": the file was made and is gone again");
                return false;
            }
            platform::createDocument(lock.path(), change.first().toText());
            break;
        case platform::LockResult::Held:
            wasMade = false;
            randomWait(3.0, 0.25); // the longer one first
            ++tries;
        }
    }
    noteReason(lock.path() + ": " + lockedBy(lock.path()));
    return false;
}

/// The document whose lock is held; nothing when it does not parse. What cannot be read now is nobody's fault
/// and keeps no lock.
std::optional<SourceDocument> readLocked(platform::DocumentLock& lock) {
    try {
        return parseLocalDocument(lock.path());
    } catch (const Error&) {
        lock.release();
        throw;
    }
}

bool changeFile(const std::string& path, const SharedChange& change) {
    platform::DocumentLock lock(path);
    if (!takeLock(lock, change))
        return false;
    std::string content;
    try {
        const auto document = readLocked(lock);
        if (!document)
            return false;
        if (!isOfKind(*document, change.names)) {
            lock.release();
            return false;
        }
        content = document->read([&](xml::Node root) { return change.change(root).toText(); });
    } catch (const Error&) {
        throw;
    } catch (...) {
        // Memory ran out, which says nothing about the document.
        lock.release();
        throw;
    }
    lock.replaceAndRelease(content);
    return true;
}

/// What a server says about a document.
enum class Answer { Document, Missing, Blank, Unclear };

Answer answerWithoutDocument(const platform::HttpReply& reply) {
    constexpr int kNotFound = 404;
    if (reply.status == kNotFound)
        return Answer::Missing;
    const bool isSuccess = reply.status / 100 == 2;
    const bool isBlank = reply.text.find_first_not_of(" \t\r\n") == std::string::npos;
    return isSuccess && isBlank ? Answer::Blank : Answer::Unclear;
}

std::string urlOf(std::string_view endpoint, const std::string& location, DocumentNames names) {
    auto request = EndpointRequest::forDocument(endpoint, names.kind, location);
    request.hasExtraQuery = false;
    request.alwaysEndsInValidation = true;
    return request.url();
}

/// The server's document, the first one stored where it has none. Nothing when its answers leave that open.
std::optional<SourceDocument> fetchOrMake(const std::string& location, const SharedChange& change) {
    const std::string url = urlOf(kLoadEndpoint, location, change.names);
    std::optional<SourceDocument> document;
    const auto ask = [&] {
        platform::HttpReply reply;
        bool isOurs = false;
        // A connection that was lost says nothing about the document: an empty one now could wipe it.
        const bool hasReply = ignoringErrors([&] {
            isOurs = Operation("load", change.names.kind, location).run([&] {
                reply = askServer(url);
                document = takeDocument(reply, location, change.names.root);
                return document && isOfKind(*document, change.names);
            });
        });
        if (isOurs)
            return Answer::Document;
        return hasReply && !document ? answerWithoutDocument(reply) : Answer::Unclear;
    };
    Answer answer = ask();
    // Some servers say so that there is none; once may be chance.
    if (answer == Answer::Blank) {
        answer = ask();
        if (answer == Answer::Blank)
            answer = Answer::Missing;
    }
    if (answer == Answer::Missing) {
        writeDocument(change.names.kind, location, change.first());
        answer = ask();
    }
    return answer == Answer::Document ? std::move(document) : std::nullopt;
}

bool changeOnServer(const std::string& location, const SharedChange& change) {
    const auto document = fetchOrMake(location, change);
    if (!document)
        return false;
    // A refusal has been shown; clients know the insertion as done all the same.
    const xml::Document changed = document->read(change.change);
    Operation("save", change.names.kind, location).run([&] {
        return sendDocument(urlOf(kSaveEndpoint, location, change.names), changed, location);
    });
    return true;
}

} // namespace

bool changeSharedDocument(const std::string& location, const SharedChange& change) {
    return Operation("change", change.names.kind, location).run([&] {
        return IsURL(location) ? changeOnServer(location, change) : changeFile(location, change);
    });
}

} // namespace norvakavlor
