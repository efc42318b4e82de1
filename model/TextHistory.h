#pragma once
// What was done to a text, so that it can be undone and done again. Whoever lets a user edit a text tells of
// every change. Typing goes back word by word, any other change as a whole. Costs memory for what was changed
// only, and no more than kMostHistory characters of it.

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

class TextHistory {
  public:
    // Characters that were inserted and removed by the changes that can be taken back. The oldest changes
    // beyond that are forgotten.
    static constexpr std::size_t kMostHistory = 1'000'000;

    // Begins anew with this text.
    explicit TextHistory(std::wstring text = {}) : text_(std::move(text)) {}

    // The text as it is now.
    const std::wstring& Text() const { return text_; }

    // The user has made this of the text. What was undone before cannot be done again then.
    void Change(const std::wstring& text);

    // Takes the last change back, or does it again. Where the caret belongs then, in characters from the
    // beginning of Text(); nothing when there is no such change.
    std::optional<std::size_t> Undo();
    std::optional<std::size_t> Redo();

  private:
    struct Step {
        std::size_t at = 0;  // of the first character that changed
        std::wstring removed, inserted;
    };
    static bool Continues(const Step& last, const Step& next);
    void Forget();

    std::wstring text_;
    std::deque<Step> done_, undone_;  // the newest last
    std::size_t kept_ = 0;            // characters in done_
    bool open_ = false;               // more typing may belong to the last step
};
