#pragma once

#include <cstddef>
#include <cstdint>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/path.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace norvakavlor {

class [[gnu::visibility("default")]] FaultCollector;

enum class FaultKind {
    Other,
    Unreadable, ///< the document as a whole: not well-formed, in another encoding, of another kind
    Unknown,    ///< it names what is not there
    Duplicate,  ///< an ID that another member has
    Missing,    ///< a required element or attribute
    Value,      ///< a text that is no number, date or boolean
};

/// What is wrong at one place of a document.
struct Fault {
    ErrorPlace place;
    std::string text;   ///< as the error says it that is raised without a collector
    int32_t number = 0; ///< likewise
    FaultKind kind = FaultKind::Other;
    /// The ID or file name that is unknown or taken, the value that does not convert, the ID of the member
    /// that lacks something.
    std::string id;
    /// Of an unknown ID the kind of document that lacks it, such as "Objectives"; the name of what is
    /// missing; of an unreadable document its kind, if that is known.
    std::string wanted;
    bool isWarning = false; ///< only a collector is told; without one the document loads
};

/// While one lives on a thread, reading a document on that thread raises nothing for a fault in it: the
/// collector notes the fault, and the reading goes on with what comes next. A document of another kind does
/// not load then. For programs that check documents; what was read from a faulty one is not fit to be saved.
class FaultCollector {
public:
    FaultCollector();
    ~FaultCollector(); ///< the thread's former collector notes again
    FaultCollector(const FaultCollector&) = delete;
    FaultCollector& operator=(const FaultCollector&) = delete;

    std::vector<Fault> faults; ///< in the order in which they were met
    /// No faults: what documents name that their readers do not look up, such as the class that an exam is
    /// assigned to (`id`, with the section as `text`), and where. Who checks looks it up.
    std::vector<Fault> mentions;

    /// The calling thread's, or null.
    static FaultCollector* current();

private:
    FaultCollector* former_;
};

/// Tells of a fault: the collector notes it and the caller goes on; without one the error is raised. What is
/// said of memory is always raised.
void reportFault(const Error& error, FaultKind kind, std::string id = {}, std::string_view wanted = {});
/// Tells a collector alone.
void noteFault(Fault fault);
void noteMention(xml::Node node, std::string id, std::string_view wanted, std::string text);
void noteWarning(xml::Node node, std::string id, std::string_view wanted, std::string text);

/// How many the calling thread's collector has noted; 0 without one.
size_t faultCount();

/// One step of reading, such as a member or a field. `locate(error)` gives an error of the step its place.
/// False when the step raised and a collector noted it; without one the error is raised, with its place.
template <class Step, class Locate> bool reads(Step&& step, Locate&& locate) {
    const size_t before = faultCount();
    bool isRead = true;
    try {
        step();
    } catch (const Error& error) {
        reportFault(locate(error), FaultKind::Other);
        isRead = false;
    }
    for (size_t at = before; at < faultCount(); ++at) {
        Fault& fault = FaultCollector::current()->faults[at];
        if (fault.place.document.empty())
            fault.place = locate(Error(fault.number, {}, fault.text).at(std::move(fault.place))).place();
    }
    return isRead;
}

/// The same for a step that reads a node.
template <class Step> bool readsNode(xml::Node node, Step&& step) {
    return reads(std::forward<Step>(step), [&](const Error& error) { return xml::at(node, error); });
}

} // namespace norvakavlor
