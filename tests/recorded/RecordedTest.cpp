// What version 1.6.1 wrote and said, against the program as it is now. README.md tells what the recordings
// are.
#include <gtest/gtest.h>

#include <filesystem>

#include "base/Text.h"
#include "net/Receiver.h"
#include "tests/exchange/SampleNotes.h"

namespace {

std::string Recorded(const char* name) {
    ByteSource file = ByteSource::OfFile(std::filesystem::path(KIVORA_RECORDED) / name);
    EXPECT_FALSE(file.Failure()) << name;
    return file.ReadRest();
}

// A dialogue line by line, each with its line end: what one side sent, and what the other replied to it.
struct Exchange {
    std::string sent, replied;
};
std::vector<Exchange> RecordedDialogue(const char* name) {
    std::vector<Exchange> dialogue(1);  // the greeting replies to nothing
    std::string rest = Recorded(name);
    for (std::size_t end; (end = rest.find("\r\n")) != rest.npos; rest.erase(0, end + 2)) {
        const std::string line = rest.substr(2, end);
        if (rest[0] == 'S') {
            dialogue.push_back({line, {}});
        } else {
            dialogue.back().replied += line;
        }
    }
    return dialogue;
}

TEST(Recorded, AnExportFileIsReadAndWrittenByteForByte) {
    std::string written;
    for (const ExportedNote& note : RecordsOf(Recorded("notizen.kvr")))
        EXPECT_TRUE(WriteRecord(written, note));
    EXPECT_EQ(written, Recorded("notizen.kvr"));
}

TEST(Recorded, ASenderGetsTheSameReplies) {
    Receiver receiver;
    std::string replied = Receiver::GreetingLine();
    for (const Exchange& exchange : RecordedDialogue("receiving.txt")) {
        receiver.Append(exchange.sent);
        while (const auto step = receiver.Next()) replied += step->reply;
        EXPECT_EQ(replied, exchange.replied) << "to " << exchange.sent;
        replied.clear();
    }
}

TEST(Recorded, AReceiverGetsTheSameCommands) {
    const std::vector<Exchange> dialogue = RecordedDialogue("sending.txt");
    auto exchange = dialogue.begin() + 1;
    for (const ExportedNote& record : RecordsOf(Recorded("notizen.kvr"))) {
        for (const std::wstring& command : CommandsFor(ToNote(record))) {
            ASSERT_EQ(ToAnsi(command) + "\r\n", exchange->sent);
            if (exchange++->replied != "OK\r\n") break;
        }
    }
    EXPECT_EQ(exchange->sent, "QUIT\r\n");
    EXPECT_EQ(++exchange, dialogue.end());
}

}  // namespace
