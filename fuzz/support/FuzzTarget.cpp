#include "fuzz/support/FuzzTarget.h"

#include <algorithm>

#include "base/Text.h"

std::uint8_t FuzzInput::Byte() {
    const std::string_view byte = Bytes(1);
    return byte.empty() ? 0 : static_cast<std::uint8_t>(byte[0]);
}

std::string_view FuzzInput::Bytes(std::size_t count) {
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(taken.size());
    return taken;
}

std::string_view FuzzInput::Field() {
    const std::string_view field = Bytes(std::min(bytes_.find('\x1E'), bytes_.size()));
    Bytes(1);
    return field;
}

std::wstring FuzzInput::Text() { return FromUtf8(Field()); }

FuzzTarget::FuzzTarget(const char* itsName, Run itsRun) : name(itsName), run(itsRun) {
    FuzzTargets().push_back(this);
}

std::vector<const FuzzTarget*>& FuzzTargets() {
    static std::vector<const FuzzTarget*> targets;
    return targets;
}
