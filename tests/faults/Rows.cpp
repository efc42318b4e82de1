#include <fcntl.h>

#include <map>

#include "tests/faults/Run.h"

namespace {

void AddRows(Sort sort, const std::string& scenario, std::int64_t at, const FileCall& call,
             std::vector<Row>& rows) {
    // It can leave something else on the disk than was there before.
    const bool changes = call.kind == CallKind::Open
                             ? (call.flags & O_CREAT) != 0
                             : call.kind >= CallKind::Write && call.kind <= CallKind::MakeFolder;
    if (sort == kFailures) {
        for (const int error : ErrorsOf(call.kind))
            for (const Fault::Kind kind : {Fault::FailOnce, Fault::FailForGood})
                rows.push_back({scenario, {kind, at, error}});
    } else if (changes && sort == kKills) {
        rows.push_back({scenario, {Fault::KillBefore, at}});
        if (call.kind == CallKind::Write) rows.push_back({scenario, {Fault::KillInside, at}});
    } else if (changes) {
        for (const std::uint32_t seed : {0, 1, 2}) rows.push_back({scenario, {Fault::KillBefore, at}, seed});
    }
}

}  // namespace

std::vector<Row> RowsOf(Sort sort) {
    static std::map<std::string, std::vector<FileCall>> calls;
    std::vector<Row> rows;
    for (const std::string& scenario : kScenarios) {
        std::vector<FileCall>& its = calls[scenario];
        if (its.empty()) its = CallsOf(scenario);
        for (std::size_t i = 0; i < its.size(); ++i)
            AddRows(sort, scenario, static_cast<std::int64_t>(i) + 1, its[i], rows);
    }
    return rows;
}
