#include <unistd.h>

#include "tests/faults/FileCalls.h"

namespace {

void Put(std::string& bytes, const void* from, std::size_t size) {
    bytes.append(static_cast<const char*>(from), size);
}
template <class Number>
void Put(std::string& bytes, Number number) {
    Put(bytes, &number, sizeof number);
}
void Put(std::string& bytes, const std::string& text) {
    Put(bytes, static_cast<std::uint32_t>(text.size()));
    bytes += text;
}

bool Take(int log, void* to, std::size_t size) { return read(log, to, size) == static_cast<ssize_t>(size); }
bool Take(int log, std::string& text) {
    std::uint32_t size = 0;
    if (!Take(log, &size, sizeof size)) return false;
    text.resize(size);
    return Take(log, text.data(), size);
}

}  // namespace

void WriteLog(int log, const LoggedCall& call) {
    std::string bytes;
    Put(bytes, call.kind);
    Put(bytes, call.succeeded);
    Put(bytes, call.file);
    Put(bytes, call.flags);
    Put(bytes, call.offset);
    Put(bytes, call.path);
    Put(bytes, call.target);
    Put(bytes, call.bytes);
    (void)!write(log, bytes.data(), bytes.size());
}

bool ReadLog(int log, LoggedCall& call) {
    return Take(log, &call.kind, sizeof call.kind) && Take(log, &call.succeeded, sizeof call.succeeded) &&
           Take(log, &call.file, sizeof call.file) && Take(log, &call.flags, sizeof call.flags) &&
           Take(log, &call.offset, sizeof call.offset) && Take(log, call.path) && Take(log, call.target) &&
           Take(log, call.bytes);
}
