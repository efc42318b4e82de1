#include <map>

#include "tests/faults/Run.h"

namespace {

void AddRows(Sort sort, const std::string& scenario, std::int64_t at, const SeenCall& call,
             std::vector<Row>& rows) {
    if (sort == kFailures) {
        for (const int error : ErrorsOf(call.kind))
            for (const Fault::Kind kind : {Fault::FailOnce, Fault::FailForGood})
                rows.push_back({scenario, {kind, at, error}});
    } else if (call.changes && sort == kKills) {
        rows.push_back({scenario, {Fault::KillBefore, at}});
        if (call.kind == CallKind::Write) rows.push_back({scenario, {Fault::KillInside, at}});
    } else if (call.changes) {
        for (const std::uint32_t seed : {0, 1, 2}) rows.push_back({scenario, {Fault::KillBefore, at}, seed});
    }
}

}  // namespace

std::vector<Row> RowsOf(Sort sort) {
    static std::map<std::string, std::vector<SeenCall>> calls;
    std::vector<Row> rows;
    for (const std::string& scenario : kScenarios) {
        std::vector<SeenCall>& its = calls[scenario];
        if (its.empty()) its = CallsOf(scenario);
        for (std::size_t i = 0; i < its.size(); ++i)
            AddRows(sort, scenario, static_cast<std::int64_t>(i) + 1, its[i], rows);
    }
    return rows;
}
