#pragma once

#include <memory>
#include <norvakavlor/c/group.h>
#include <norvakavlor/c/norvakavlor_c.h>
#include <norvakavlor/runtime/value.h>
#include <vector>

/// How values travel between C and the library.
namespace norvakavlor {

/// The handles in some values, those in arrays included.
void collectHandles(const nk_value* values, size_t count, std::vector<nk_object*>& handles);

/// A client's value. Only while its group is in use, as it takes hold of objects. Raises 5 for an unknown
/// kind, 6 for an array that is too long.
Value fromClient(const nk_value& value);

/// Values on their way to the client; those that are not handed over are cleared.
class ClientValues {
public:
    ClientValues() = default;
    ClientValues(const ClientValues&) = delete;
    ClientValues& operator=(const ClientValues&) = delete;
    ~ClientValues();

    void add(const Value& value, const std::shared_ptr<ObjectGroup>& group);
    /// An array of all of them, which the client clears; null when there are none.
    nk_value* handOver();
    /// The same into the client's own room.
    void handOver(nk_value* room);

private:
    std::vector<nk_value> values_;
};

} // namespace norvakavlor
