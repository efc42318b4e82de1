#include "model/TextHistory.h"

#include <algorithm>
#include <cwctype>
#include <utility>

namespace {

bool IsBlank(wchar_t c) { return std::iswspace(static_cast<std::wint_t>(c)) != 0; }

}  // namespace

// Typing belongs together until a new word begins, deleting character by character as long as it goes on in
// one direction.
bool TextHistory::Continues(const Step& last, const Step& next) {
    const bool typed = last.removed.empty() && next.removed.empty() && next.inserted.size() == 1 &&
                       next.at == last.at + last.inserted.size();
    if (typed) return !IsBlank(last.inserted.back()) || IsBlank(next.inserted.front());
    const bool deleted = last.inserted.empty() && next.inserted.empty() && next.removed.size() == 1;
    return deleted && (next.at == last.at || next.at + 1 == last.at);
}

void TextHistory::Change(const std::wstring& text) {
    if (text == text_) return;
    const std::size_t shorter = std::min(text.size(), text_.size());
    const auto prefix = static_cast<std::size_t>(
        std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(shorter), text_.begin())
            .first -
        text.begin());
    std::size_t suffix = 0;
    while (suffix < shorter - prefix && text[text.size() - suffix - 1] == text_[text_.size() - suffix - 1])
        ++suffix;
    Step step{.at = prefix,
              .removed = text_.substr(prefix, text_.size() - suffix - prefix),
              .inserted = text.substr(prefix, text.size() - suffix - prefix)};
    text_ = text;
    undone_.clear();
    kept_ += step.removed.size() + step.inserted.size();
    const bool single = step.removed.size() + step.inserted.size() == 1;
    if (open_ && single && Continues(done_.back(), step)) {
        Step& last = done_.back();
        last.inserted += step.inserted;
        last.removed = step.at < last.at ? step.removed + last.removed : last.removed + step.removed;
        last.at = std::min(last.at, step.at);
    } else {
        done_.push_back(std::move(step));
    }
    open_ = single;
    Forget();
}

void TextHistory::Forget() {
    while (kept_ > kMostHistory) {
        kept_ -= done_.front().removed.size() + done_.front().inserted.size();
        done_.pop_front();
    }
    if (done_.empty()) open_ = false;
}

std::optional<std::size_t> TextHistory::Undo() {
    if (done_.empty()) return std::nullopt;
    Step step = std::move(done_.back());
    done_.pop_back();
    kept_ -= step.removed.size() + step.inserted.size();
    open_ = false;
    text_.replace(step.at, step.inserted.size(), step.removed);
    const std::size_t caret = step.at + step.removed.size();
    undone_.push_back(std::move(step));
    return caret;
}

std::optional<std::size_t> TextHistory::Redo() {
    if (undone_.empty()) return std::nullopt;
    Step step = std::move(undone_.back());
    undone_.pop_back();
    kept_ += step.removed.size() + step.inserted.size();
    text_.replace(step.at, step.removed.size(), step.inserted);
    const std::size_t caret = step.at + step.inserted.size();
    done_.push_back(std::move(step));
    return caret;
}
