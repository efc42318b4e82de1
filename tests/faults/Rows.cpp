#include <cerrno>
#include <map>

#include "tests/faults/Run.h"

namespace {

// What each call can fail with.
const std::vector<int>& ErrorsOf(CallKind kind) {
    static const std::map<CallKind, std::vector<int>> errors = {
        {CallKind::Open, {EACCES, EIO, ENOSPC, EROFS, EMFILE, EDQUOT}},
        {CallKind::Close, {EIO}},
        {CallKind::Read, {EIO}},
        {CallKind::Write, {ENOSPC, EIO, EDQUOT, EROFS}},
        {CallKind::Truncate, {EIO, EROFS}},
        {CallKind::Sync, {EIO, ENOSPC, EDQUOT}},
        {CallKind::Rename, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Link, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Remove, {EIO, EROFS, EACCES}},
        {CallKind::MakeFolder, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Rights, {EIO, EROFS}},
        {CallKind::Lock, {EAGAIN, ENOLCK}},
        {CallKind::Look, {EIO, EACCES}},
        {CallKind::Map, {ENOMEM}}};
    return errors.at(kind);
}

void AddRows(Sort sort, const std::string& scenario, std::int64_t at, const SeenCall& call,
             std::vector<Row>& rows) {
    if (sort == kFailures) {
        for (const int error : ErrorsOf(call.kind))
            for (const Fault::Kind kind : {Fault::FailOnce, Fault::FailForGood})
                rows.push_back({scenario, {kind, at, error}});
    } else if (call.changes && sort == kKills) {
        rows.push_back({scenario, {Fault::KillBefore, at}});
        if (call.kind == CallKind::Write) rows.push_back({scenario, {Fault::KillInside, at}});
        rows.push_back({scenario, {Fault::KillAfter, at}});
    } else if (call.changes) {
        using enum Disk::Rest;
        for (const Row::Cut cut : {Row::Cut{Lost, 0}, {Partly, 1}, {Partly, 2}, {Kept, 0}})
            rows.push_back({scenario, {Fault::KillBefore, at}, cut});
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
