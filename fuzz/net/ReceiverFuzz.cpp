// Anything that a peer sends to the receiver, in pieces of any size.
#include <algorithm>

#include "base/Text.h"
#include "fuzz/support/FuzzTarget.h"
#include "net/Receiver.h"

namespace {

void RequireReply(const std::string& reply) {
    if (reply.empty()) return;
    Require(reply.ends_with("\r\n") && reply.find("\r\n") + 2 == reply.size(), "a reply is one line");
    Require(reply == "OK\r\n" || reply.starts_with("ERROR "), "a reply is OK or ERROR");
}

void RequireNote(const Note& note) {
    Require(ToAnsi(note.text).size() <= kLongestNoteText, "a text has its limit");
    Require(note.text.find(L'\0') == note.text.npos, "no text holds a NUL");
    Require(note.look.size >= kSmallestFontSize && note.look.size <= kLargestFontSize,
            "sizes are in their range");
    Require(note.look.alignment >= kAlignLeft && note.look.alignment <= kAlignCentre, "alignments are known");
    Require(std::ranges::find(kNoteColors, note.look.color) != kNoteColors.end(), "colours are known");
}

// Sent on to the next computer the note arrives as it is.
void RequireSendable(const Note& note) {
    Receiver next;
    for (const std::wstring& command : CommandsFor(note)) next.Append(ToAnsi(command) + "\r\n");
    std::optional<Note> arrived;
    while (const auto step = next.Next()) {
        Require(step->reply == "OK\r\n", "what this program sends it takes");
        if (step->note) arrived = step->note;
    }
    Require(arrived == note, "a note arrives as it was sent");
}

void Receive(FuzzInput& input) {
    Receiver receiver;
    std::size_t come = 0;
    bool quit = false;
    while (!input.Empty()) {
        // Mostly lines, sometimes all there is.
        const std::size_t piece = input.Byte();
        const std::string_view bytes = piece == 0xFF ? input.Rest() : input.Bytes(piece);
        come += bytes.size();
        receiver.Append(bytes);
        // A line and the text made of lines, which grow by doubling from what an empty one holds.
        Require(receiver.HeldBytes() <= 64 + 4 * come, "no more is held than has come");
        while (const auto step = receiver.Next()) {
            RequireReply(step->reply);
            Require(!quit || step->reply.empty(), "behind QUIT nothing is answered");
            quit = quit || step->quit;
            if (!step->note) continue;
            RequireNote(*step->note);
            RequireSendable(*step->note);
        }
        Require(!receiver.HasLine(), "all lines have been carried out");
    }
}

const FuzzTarget kTarget("Receiver", Receive);

}  // namespace
