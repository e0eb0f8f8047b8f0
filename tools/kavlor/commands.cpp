#include "command.h"

namespace norvakavlor::kavlor {

extern const Command kList;
extern const Command kRoster;
extern const Command kSummary;
extern const Command kReport;
extern const Command kUnlock;
extern const Command kReplay;
extern const Command kHash;

std::span<const Command> commands() {
    static const Command all[] = {kList, kRoster, kSummary, kReport, kUnlock, kReplay, kHash};
    return all;
}

} // namespace norvakavlor::kavlor
