#pragma once
// What stands in the journal of a key that is being rewritten (ReplaceKey.h): all that the key is to hold, as
// bytes that show whether they are whole.

#include <optional>
#include <string>
#include <string_view>

#include "registry/KeyContent.h"

struct RewriteJournal {
    std::wstring mark;  // names the rewriting that this belongs to
    KeyContent content;
};

// A mark for the rewriting that brings this content.
std::wstring NewMark(const KeyContent& content);

std::string BytesOf(const RewriteJournal& journal);

// Nothing unless the bytes are those of a whole journal.
std::optional<RewriteJournal> JournalOf(std::string_view bytes);
