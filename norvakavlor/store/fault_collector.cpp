#include <norvakavlor/store/fault_collector.h>

namespace norvakavlor {
namespace {

// A raw pointer: a thread_local with a destructor would keep the Windows library in memory.
thread_local FaultCollector* collectorOfThread = nullptr;

} // namespace

FaultCollector::FaultCollector() : former_(std::exchange(collectorOfThread, this)) {}
FaultCollector::~FaultCollector() { collectorOfThread = former_; }
FaultCollector* FaultCollector::current() { return collectorOfThread; }

void reportFault(const Error& error, FaultKind kind, std::string id, std::string_view wanted) {
    if (!FaultCollector::current() || isOutOfMemory(error))
        throw error;
    noteFault({error.place(), error.description(), error.number(), kind, std::move(id), std::string(wanted)});
}

void noteFault(Fault fault) {
    if (FaultCollector* const collector = FaultCollector::current())
        collector->faults.push_back(std::move(fault));
}

size_t faultCount() {
    const FaultCollector* const collector = FaultCollector::current();
    return collector ? collector->faults.size() : 0;
}

void noteMention(xml::Node node, std::string id, std::string_view wanted, std::string text) {
    if (FaultCollector* const collector = FaultCollector::current())
        collector->mentions.push_back({xml::placeOf(node), std::move(text), 0, FaultKind::Unknown,
                                       std::move(id), std::string(wanted), true});
}

void noteWarning(xml::Node node, std::string id, std::string_view wanted, std::string text) {
    if (FaultCollector::current())
        noteFault({xml::placeOf(node), std::move(text), 0, FaultKind::Unknown, std::move(id),
                   std::string(wanted), true});
}

} // namespace norvakavlor
