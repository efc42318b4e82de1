#include "net/Receiver.h"

#include <algorithm>

#include "base/Text.h"

namespace {

constexpr int kOutOfMemory = 7;
constexpr int kNoObject = 91;

}  // namespace

std::string Receiver::GreetingLine() { return ToAnsi(Greeting()) + "\r\n"; }

std::optional<Receiver::Step> Receiver::Next() {
    std::string bytes;
    const LineBuffer::Took took = buffer_.Take(bytes);
    if (took == LineBuffer::Took::Nothing) return std::nullopt;
    line_ = FromAnsi(bytes);
    Step step;
    if (took == LineBuffer::Took::TooLong) {
        line_ += L"...";
        step.reply = Fail(kOutOfMemory, L"The line is too long");
    } else {
        CarryOut(step);
    }
    if (!step.note) std::wstring().swap(line_);  // with its memory
    return step;
}

std::size_t Receiver::HeldBytes() const {
    return buffer_.Capacity() + line_.capacity() * sizeof(wchar_t) + (note_ ? note_->text.capacity() : 0);
}

std::string Receiver::Fail(int number, std::wstring_view description) {
    buffer_.Clear();
    return ToReply(ExecutionErrorReply(number, description, line_));
}

void Receiver::CarryOut(Step& step) {
    const std::wstring_view word = CommandWord(line_), parameter = CommandParameter(line_);
    // Neither an empty line nor one that begins with a blank has a command.
    if (word.empty()) return;
    const std::string ok = ToReply(L"OK");
    if (word == L"QUIT") {
        note_.reset();
        step.reply = ok;
        step.quit = quit_ = true;
        return;
    }
    if (word == L"NOTE_NEW") {
        note_.emplace();
        step.reply = ok;
        return;
    }
    NoteLook unused;
    const std::optional<bool> attribute = SetAttribute(note_ ? note_->look : unused, word, parameter);
    const bool known = attribute || word == L"NOTE_TEXT" || word == L"NOTE_FINISHED";
    if (!known) {
        step.reply = ToReply(UnknownCommandReply(line_));
    } else if (attribute == false) {
        step.reply = ToReply(InvalidParameterReply(line_));
    } else if (!note_) {
        step.reply = Fail(kNoObject, L"There is no current note");
    } else if (word == L"NOTE_TEXT" && !AppendText(parameter)) {
        step.reply = Fail(kOutOfMemory, L"The text of the note is too long");
    } else {
        if (word == L"NOTE_FINISHED") step.note = Finished();
        step.reply = ok;
    }
}

bool Receiver::AppendText(std::wstring_view parameter) {
    std::string& text = note_->text;
    const std::string added = (text.empty() ? "" : "\r\n") + ToAnsi(parameter);
    if (text.size() + added.size() > kLongestNoteText) return false;
    text += added;
    return true;
}

Note Receiver::Finished() {
    // A NUL would end the text for windows and registry and hide what follows it.
    std::replace(note_->text.begin(), note_->text.end(), '\0', ' ');
    Note note{.text = FromAnsi(note_->text), .creationTime = {}, .look = note_->look, .place = {}};
    note_.reset();
    return note;
}

std::string Receiver::ToReply(const std::wstring& line) const {
    return quit_ ? std::string() : ToAnsi(line) + "\r\n";
}
