#include <gtest/gtest.h>

#include "net/Receiver.h"

namespace {

const std::string kNoNote =
    "ERROR Error during command execution: [91] There is no current note. Offending command: ";

// What a receiver answers and builds.
struct Dialogue {
    std::string replies;
    std::vector<Note> notes;
    int quits = 0;

    bool operator==(const Dialogue&) const = default;
};

void Feed(Receiver& receiver, Dialogue& dialogue) {
    while (const auto step = receiver.Next()) {
        dialogue.replies += step->reply;
        if (step->note) dialogue.notes.push_back(*step->note);
        dialogue.quits += step->quit;
    }
}

Dialogue Receive(const std::string& bytes, std::size_t piece = std::string::npos) {
    Receiver receiver;
    Dialogue dialogue;
    for (std::size_t at = 0; at < bytes.size(); at += std::min(piece, bytes.size() - at)) {
        receiver.Append(std::string_view(bytes).substr(at, piece));
        Feed(receiver, dialogue);
    }
    return dialogue;
}

std::string Repeated(const std::string& text, int times) {
    std::string result;
    while (times-- > 0) result += text;
    return result;
}

// The recorded dialogue has the others.
TEST(Receiver, AnswersToUnusualLines) {
    const std::pair<const char*, const char*> rows[] = {
        {"NOTE_TEXT\tTab\r\n", "ERROR Unknown command: NOTE_TEXT\tTab\r\n"},
        {"NOTE_NEW\r\nGr\xfc\xdf"
         "e \x81\x01\r\nNOTE_FONT_SIZE 8\r\n",
         "OK\r\nERROR Unknown command: Gr\xfc\xdf"
         "e \x81\x01\r\nOK\r\n"},
        {"a\nb\rc\r\r\n", "ERROR Unknown command: a\nb\rc\r\r\n"},
        {"NOTE_NEW", ""},
    };
    for (const auto& [lines, replies] : rows) EXPECT_EQ(Receive(lines).replies, replies) << lines;
}

TEST(Receiver, WithoutANoteTheRestOfTheBufferIsDiscarded) {
    for (const char* line : {"NOTE_TEXT x", "NOTE_FONT_SIZE 9", "NOTE_COLOR 255", "NOTE_FINISHED"}) {
        EXPECT_EQ(Receive(line + std::string("\r\nNOTE_NEW\r\nQUI")).replies, kNoNote + line + "\r\n")
            << line;
    }
}

TEST(Receiver, NotesAreBuiltLineByLine) {
    const struct {
        std::string commands;
        std::wstring text;
        NoteLook look = {};
    } rows[] = {
        {"NOTE_TEXT \r\nNOTE_TEXT b\r\nNOTE_TEXT c\r\n", L"b\r\nc"},
        {"NOTE_TEXT a\r\nNOTE_TEXT \r\nNOTE_TEXT \r\nNOTE_TEXT d\r\n", L"a\r\n\r\n\r\nd"},
        {"NOTE_TEXT a\r\nNOTE_TEXT \r\n", L"a\r\n"},
        {"NOTE_TEXT  vorn und hinten \r\n", L" vorn und hinten "},
        {"NOTE_TEXT\r\n", L"NOTE_TEXT"},
        {"", L""},
        {"NOTE_TEXT alt\r\nNOTE_NEW\r\nNOTE_TEXT neu\r\n", L"neu"},
        {"NOTE_TEXT \x80\xe4\xdf\r\n", L"€äß"},
        {std::string("NOTE_TEXT a\0b\r\n", 15), L"a b"},
        {"NOTE_TEXT a\nb\rc\r\n", L"a\nb\rc"},
        {"NOTE_FONT_SIZE 20\r\nNOTE_FONT_SIZE 26\r\nNOTE_COLOR 255\r\nNOTE_COLOR 1\r\n",
         L"",
         {.size = 20, .color = 255}},
    };
    for (const auto& row : rows) {
        const Dialogue dialogue = Receive("NOTE_NEW\r\n" + row.commands + "NOTE_FINISHED\r\n");
        ASSERT_EQ(dialogue.notes.size(), 1u) << row.commands;
        EXPECT_EQ(dialogue.notes[0], (Note{.text = row.text, .look = row.look})) << row.commands;
    }
}

TEST(Receiver, BehindQuitCommandsWorkWithoutReplies) {
    const Dialogue dialogue = Receive(
        "NOTE_NEW\r\nQUIT\r\nNOTE_FINISHED\r\nNOTE_NEW\r\nNOTE_TEXT "
        "x\r\nUNSINN\r\nNOTE_FINISHED\r\nQUIT\r\n");
    // The first NOTE_FINISHED has no note any more, and so discards everything behind it.
    EXPECT_EQ(dialogue, (Dialogue{"OK\r\nOK\r\n", {}, 1}));
    EXPECT_EQ(Receive("QUIT\r\nNOTE_NEW\r\nNOTE_TEXT x\r\nNOTE_FINISHED\r\n"),
              (Dialogue{"OK\r\n", {{.text = L"x"}}, 1}));
}

TEST(Receiver, LongLinesAreCut) {
    const std::string longest(kLongestLine, 'x');
    EXPECT_EQ(Receive(longest + "\r\n", 8192).replies, "ERROR Unknown command: " + longest + "\r\n");

    const std::string cut =
        "ERROR Error during command execution: [7] The line is too long. Offending command: " +
        std::string(256, 'x') + "...\r\n";
    // Broken within the line end.
    EXPECT_EQ(Receive(longest + "x\r\nNOTE_NEW\r\n", kLongestLine + 2).replies, cut + "OK\r\n");
    for (const std::size_t piece : {8192u, 8191u, 1048577u, 4194304u}) {
        Receiver receiver;
        Dialogue dialogue;
        for (std::size_t sent = 0; sent < 3 * kLongestLine; sent += piece) {
            receiver.Append(std::string(piece, 'x'));
            Feed(receiver, dialogue);
            EXPECT_LE(receiver.HeldBytes(), 2 * (kLongestLine + piece));
        }
        EXPECT_EQ(dialogue.replies, cut) << piece;
        receiver.Append("x\r");
        Feed(receiver, dialogue);
        receiver.Append("\nNOTE_NEW\r\n");
        Feed(receiver, dialogue);
        EXPECT_EQ(dialogue.replies, cut + "OK\r\n") << piece;
    }
}

// In one piece of many short lines: were each of them to cost what the others hold, this would take minutes.
TEST(Receiver, LongTextsAreRefused) {
    const std::string line = "NOTE_TEXT Zeile\r\n";
    const int fitting = (static_cast<int>(kLongestNoteText) + 2) / 7;
    const std::string refusal =
        "ERROR Error during command execution: [7] The text of the note is too long. Offending command: "
        "NOTE_TEXT Zeile\r\n";
    Receiver receiver;
    Dialogue dialogue;
    receiver.Append("NOTE_NEW\r\n" + Repeated(line, fitting + 1) + "NOTE_TEXT verworfen\r\n");
    Feed(receiver, dialogue);
    EXPECT_TRUE(dialogue.replies == Repeated("OK\r\n", fitting + 1) + refusal);
    EXPECT_LE(receiver.HeldBytes(), 2 * kLongestNoteText);
    receiver.Append("NOTE_FINISHED\r\n");
    Feed(receiver, dialogue);
    ASSERT_EQ(dialogue.notes.size(), 1u);
    EXPECT_EQ(dialogue.notes[0].text.size(), static_cast<std::size_t>(fitting) * 7 - 2);
}

}  // namespace
