#include "dialogs/frmMessage.h"

#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <algorithm>

#include "dialogs/ControlNames.h"
#include "dialogs/ControlSize.h"
#include "dialogs/MessageFlags.h"
#include "res/Resources.h"

namespace {

// The text is that wide, whichever is more, but no wider than the screen.
constexpr int kTextWidth = 440;  // device-independent pixels
constexpr int kTextCharacters = 60;
// More of one word, a path or an address, is left out in its middle: the box has to fit on the screen.
constexpr std::size_t kLongestWord = 600;
// Lines that are left free on the screen above and below the box, for frames that nobody knows in advance.
constexpr int kFreeLines = 5;
constexpr int kLeastLines = 10;
// What stands beside the title in the caption, in characters.
constexpr int kBesideTitle = 12;

struct Kind {
    ResourceId picture;
    const wchar_t* name;
};

Kind KindOf(int flags) {
    switch (flags & ~kYesNo) {
        case kCritical:
            return {kCriticalPicture, L"Fehler"};
        case kExclamation:
            return {kWarningPicture, L"Warnung"};
        default:
            return {kInformationPicture, L"Hinweis"};
    }
}

// The word in pieces that are no wider than the width, broken behind a separator where there is one.
std::wstring Broken(std::wstring word, int width, wxWindow& measuring) {
    if (word.size() > kLongestWord) {
        const std::size_t half = kLongestWord / 2;
        word = word.substr(0, half) + L'…' + word.substr(word.size() - half);
    }
    wxClientDC dc(&measuring);
    dc.SetFont(measuring.GetFont());
    std::wstring pieces;
    for (wxArrayInt ends; dc.GetPartialTextExtents(word, ends) && !ends.empty() && ends.back() > width;) {
        std::size_t fitting = 1;
        while (ends[fitting] <= width) ++fitting;
        const std::size_t separator = word.find_last_of(L"/\\-_.,;:@", fitting - 1);
        if (separator != std::wstring::npos && separator > fitting / 2) fitting = separator + 1;
        pieces += word.substr(0, fitting) + L'\n';
        word.erase(0, fitting);
    }
    return pieces + word;
}

// The text with the words broken that are wider than the width. Lines are left to the label.
std::wstring WithBrokenWords(const std::wstring& text, int width, wxWindow& measuring) {
    std::wstring broken;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L" \r\n", at), text.size());
        broken += Broken(text.substr(at, end - at), width, measuring);
        if (end < text.size() && text[end] != L'\r') broken += text[end];
        at = end + 1;
    }
    return broken;
}

// Where the first so many lines end; npos when there are no more than that.
std::size_t EndOfLines(const std::wstring& text, int count) {
    std::size_t end = text.find(L'\n');
    for (; count > 1 && end != text.npos; --count) end = text.find(L'\n', end + 1);
    return end;
}

// The label with what would not fit on the screen left out at the end.
void FillLabel(wxStaticText& label, const std::wstring& text, int width, int mostLines) {
    // No line has more characters than pixels: what lies beyond need not be measured.
    const auto most = static_cast<std::size_t>(mostLines) * static_cast<std::size_t>(width);
    label.SetLabelText(WithBrokenWords(text.substr(0, most), width, label));
    label.Wrap(width);
    const std::wstring lines = label.GetLabelText().ToStdWstring();
    if (EndOfLines(lines, mostLines) == lines.npos) return;
    label.SetLabelText(lines.substr(0, EndOfLines(lines, mostLines - 1)) + L"\n…");
}

}  // namespace

frmMessage::frmMessage(const std::wstring& text, int flags, const wxString& title) : DialogWindow(title) {
    Fill(text, flags, title);
}

frmMessage::frmMessage(Alone alone, const std::wstring& text, int flags, const wxString& title)
    : DialogWindow(alone, title) {
    Fill(text, flags, title);
}

void frmMessage::Tell(const std::wstring& text, int flags, const wxString& title) {
    (new frmMessage(Alone(), text, flags, title))->Begin();
}

void frmMessage::Fill(const std::wstring& text, int flags, const wxString& title) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    const Kind kind = KindOf(flags);
    auto* picture = new wxStaticBitmap(this, wxID_ANY, LoadPicture(kind.picture));
    AnnounceAs(*this, DialogRole::Alert);
    NameControl(*picture, kind.name);
    content->Add(picture, wxSizerFlags().Top());
    content->AddSpacer(FromDIP(kDialogMargin));
    auto* label = new wxStaticText(this, wxID_ANY, wxString());
    const int width = std::min(std::max(FromDIP(kTextWidth), RoomForText(*this, kTextCharacters, 1).x),
                               Area().width - 2 * picture->GetSize().x - 4 * FromDIP(kDialogMargin));
    content->Add(label, wxSizerFlags(1).CentreVertical());
    // The title is not cut either.
    const int titled = static_cast<int>(title.length()) + kBesideTitle;
    content->SetMinSize({std::min(RoomForText(*this, titled, 1).x, width), -1});
    const bool question = flags & kYesNo;
    SetContent(content, CreateButtons(question ? L"&Ja" : L"OK", question ? L"&Nein" : L""));
    // What the box needs beside its text is known now.
    const int room = Area().height - GetSize().y - kFreeLines * GetCharHeight();
    FillLabel(*label, text, width, std::max(room / label->GetCharHeight(), kLeastLines));
    FitLabel(*label);
    GetSizer()->SetSizeHints(this);
    SetEscapeId(question ? wxID_CANCEL : wxID_OK);
    cmdOK->SetFocus();
}
