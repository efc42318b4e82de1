// Lines of any length in pieces of any size, with a limit that they reach.
#include "fuzz/support/FuzzTarget.h"
#include "net/LineBuffer.h"

namespace {

// The next line of what has come as a whole: what LineBuffer says must not depend on the pieces.
LineBuffer::Took TakeFrom(std::string_view& all, std::size_t longest, std::string_view& line) {
    const std::size_t end = all.find("\r\n");
    line = all.substr(0, end);
    const bool halfEnd = end == all.npos && line.ends_with('\r');
    if (line.size() - (halfEnd ? 1 : 0) > longest) {
        all.remove_prefix(end == all.npos ? all.size() : end + 2);
        return LineBuffer::Took::TooLong;
    }
    if (end == all.npos) return LineBuffer::Took::Nothing;
    all.remove_prefix(end + 2);
    return LineBuffer::Took::Line;
}

void Cut(FuzzInput& input) {
    const std::size_t longest = input.Number(40);
    LineBuffer buffer(longest);
    std::string all;
    std::vector<std::pair<LineBuffer::Took, std::string>> taken;
    while (!input.Empty()) {
        const std::string_view piece = input.Bytes(input.Byte());
        all += piece;
        buffer.Append(piece);
        std::string line;
        for (auto took = buffer.Take(line); took != LineBuffer::Took::Nothing; took = buffer.Take(line))
            taken.emplace_back(took, line);
        Require(buffer.Size() <= longest + 1, "no more is held than the longest line");
    }
    std::string_view rest = all, line;
    for (const auto& [took, text] : taken) {
        Require(TakeFrom(rest, longest, line) == took, "the same lines in any pieces");
        Require(took == LineBuffer::Took::Line ? text == line : line.starts_with(text),
                "lines are what was between the line ends");
    }
    Require(TakeFrom(rest, longest, line) == LineBuffer::Took::Nothing, "no line is missing");
}

const FuzzTarget kTarget("LineBuffer", Cut);

}  // namespace
