#include "tests/faults/Rows.h"

#include <fcntl.h>

#include <cerrno>
#include <map>
#include <sstream>
#include <utility>

#include "tests/faults/Scenarios.h"

namespace {

const std::pair<const char*, Fault::Kind> kFaults[] = {{"none", Fault::None},
                                                       {"kill-before", Fault::KillBefore},
                                                       {"kill-inside", Fault::KillInside},
                                                       {"kill-after", Fault::KillAfter},
                                                       {"fail", Fault::FailOnce},
                                                       {"fails", Fault::FailForGood}};
const std::pair<const char*, Disk::Rest> kRests[] = {
    {"lost", Disk::Rest::Lost}, {"kept", Disk::Rest::Kept}, {"partly", Disk::Rest::Partly}};
const std::pair<const char*, int> kErrors[] = {
    {"-", 0},           {"ENOSPC", ENOSPC}, {"EDQUOT", EDQUOT}, {"EIO", EIO},       {"EROFS", EROFS},
    {"EACCES", EACCES}, {"EMFILE", EMFILE}, {"ENOMEM", ENOMEM}, {"EAGAIN", EAGAIN}, {"ENOLCK", ENOLCK}};

template <class Value, std::size_t n>
const char* NameOf(const std::pair<const char*, Value> (&table)[n], Value value) {
    for (const auto& [name, each] : table)
        if (each == value) return name;
    return "?";
}
template <class Value, std::size_t n>
bool ValueOf(const std::pair<const char*, Value> (&table)[n], const std::string& name, Value& value) {
    for (const auto& [each, its] : table)
        if (each == name) {
            value = its;
            return true;
        }
    return false;
}

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

// Whether a call can leave something else on the disk than was there before.
bool Changes(const LoggedCall& call) {
    switch (call.kind) {
        case CallKind::Open:
            return (call.flags & O_CREAT) != 0;
        case CallKind::Write:
        case CallKind::Truncate:
        case CallKind::Sync:
        case CallKind::Rename:
        case CallKind::Link:
        case CallKind::Remove:
        case CallKind::MakeFolder:
            return true;
        default:
            return false;
    }
}

void AddRows(Sort sort, const std::string& scenario, std::int64_t at, const LoggedCall& call,
             std::vector<Row>& rows) {
    if (sort == Sort::Failures) {
        for (const int error : ErrorsOf(call.kind))
            for (const Fault::Kind kind : {Fault::FailOnce, Fault::FailForGood})
                rows.push_back({scenario, {kind, at, error}});
        return;
    }
    if (!Changes(call)) return;
    if (sort == Sort::Kills) {
        rows.push_back({scenario, {Fault::KillBefore, at, 0}});
        if (call.kind == CallKind::Write) rows.push_back({scenario, {Fault::KillInside, at, 0}});
        rows.push_back({scenario, {Fault::KillAfter, at, 0}});
        return;
    }
    const Fault fault{Fault::KillBefore, at, 0};
    rows.push_back({scenario, fault, true, Disk::Rest::Lost, 0});
    for (std::uint32_t seed = 1; seed <= 2; ++seed)
        rows.push_back({scenario, fault, true, Disk::Rest::Partly, seed});
    rows.push_back({scenario, fault, true, Disk::Rest::Kept, 0});
}

}  // namespace

std::string ToText(const Row& row) {
    std::string text = row.scenario + " ";
    if (row.cutsPower)
        return text + "cut " + std::to_string(row.fault.at) + " " + NameOf(kRests, row.rest) + " " +
               std::to_string(row.seed);
    return text + NameOf(kFaults, row.fault.kind) + " " + std::to_string(row.fault.at) + " " +
           NameOf(kErrors, row.fault.error);
}

bool ToRow(const std::string& text, Row& row) {
    std::istringstream words(text);
    std::string what, with;
    if (!(words >> row.scenario >> what >> row.fault.at >> with)) return false;
    row.cutsPower = what == "cut";
    if (!row.cutsPower)
        return ValueOf(kFaults, what, row.fault.kind) && ValueOf(kErrors, with, row.fault.error);
    row.fault.kind = Fault::KillBefore;
    return ValueOf(kRests, with, row.rest) && (words >> row.seed);
}

std::vector<Row> RowsOf(Sort sort) {
    static std::map<std::string, std::vector<LoggedCall>> calls;
    std::vector<Row> rows;
    for (const std::string& scenario : Scenarios()) {
        std::vector<LoggedCall>& its = calls[scenario];
        if (its.empty()) its = CallsOf(scenario);
        for (std::size_t i = 0; i < its.size(); ++i)
            AddRows(sort, scenario, static_cast<std::int64_t>(i) + 1, its[i], rows);
    }
    return rows;
}
