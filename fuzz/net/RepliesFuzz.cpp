// What a foreign server answers to a sender: its greeting and its replies.
#include "base/Text.h"
#include "fuzz/support/FuzzTarget.h"
#include "net/LineBuffer.h"
#include "net/Protocol.h"

namespace {

void Listen(FuzzInput& input) {
    LineBuffer received(kLongestLine);
    received.Append(input.Rest());
    std::string bytes;
    while (received.Take(bytes) == LineBuffer::Took::Line) {
        const std::wstring reply = FromAnsi(bytes);
        const std::wstring word = ReplyWord(reply), rest = ReplyRest(reply), version = RemoteVersion(reply);
        Require(reply.starts_with(word) && word.find(L' ') == word.npos,
                "the word is all before the first blank");
        Require(reply.ends_with(rest) && word.size() + rest.size() <= reply.size(),
                "the rest is what follows");
        Require(version.find(L' ') == version.npos, "a version has no blank");
        // A greeting like this program's own, with this text for the version, is understood as such.
        if (word.empty() || word.find(L"PROTOCOL") != word.npos) continue;
        Require(RemoteVersion(L"OK PROTOCOL_VERSION " + word + L" READY") == word, "any version is read");
    }
}

const FuzzTarget kTarget("Replies", Listen);

}  // namespace
