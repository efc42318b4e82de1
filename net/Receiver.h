#pragma once
// The receiver's half of the protocol without its connection: bytes go in, replies and finished notes come
// out, one command at a time. It holds no more than one line and the note under construction.

#include <optional>
#include <string>
#include <string_view>

#include "net/LineBuffer.h"
#include "net/Protocol.h"

class Receiver {
  public:
    struct Step {
        // The reply, with its line end, in the code page of the wire; empty when there is none.
        std::string reply;
        // A finished note, text and look, to be taken into the store before the reply goes out.
        std::optional<Note> note;
        // The sender wants to end the session after this reply.
        bool quit = false;
    };

    // The first line that a sender gets.
    static std::string GreetingLine();

    void Append(std::string_view bytes) { buffer_.Append(bytes); }

    // Carries out the next complete line. Nothing when there is none. Behind QUIT commands still have their
    // effect but no reply any more.
    std::optional<Step> Next();

    // There may be something for Next to do.
    bool HasLine() const { return buffer_.HasLine(); }

    // The reply, in place of the step's own, when the note of the last step could not be taken in. Discards
    // what else has arrived.
    std::string Fail(int number, std::wstring_view description);

    // The memory that it takes beside the object itself.
    std::size_t HeldBytes() const;

  private:
    struct Construction {
        NoteLook look;
        std::string text;  // in bytes, a quarter of what characters take
    };

    void CarryOut(Step& step);
    bool AppendText(std::wstring_view parameter);
    Note Finished();
    std::string ToReply(const std::wstring& line) const;

    LineBuffer buffer_{kLongestLine};
    std::wstring line_;  // the last one taken, as long as an error may name it
    std::optional<Construction> note_;
    bool quit_ = false;
};
