// The floor of a program with wxWidgets: windows of the shape and size of notes with the same texts, and
// nothing else.
//   kivora_bench_bare NOTES LOOKS
//   kivora_bench_bare --toggle PROCESS     takes the windows of that one from the screen, or brings them back
#include <glib-unix.h>
#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/frame.h>
#include <wx/region.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "bench/SampleNotes.h"

namespace {

class BareNote : public wxFrame {
  public:
    explicit BareNote(const Note& note)
        : wxFrame(
              nullptr, wxID_ANY, wxString(note.text).BeforeFirst('\r'),
              wxPoint(static_cast<int>(note.place.left / 15), static_cast<int>(note.place.top / 15)),
              wxSize(kNoteWidth, kNoteHeight),
              wxFRAME_SHAPED | wxBORDER_NONE | wxFRAME_NO_TASKBAR | (note.foreground ? wxSTAY_ON_TOP : 0)),
          text_(note.text),
          look_(note.look) {
        text_.Replace(L"\r", L"");
        const int w = kNoteWidth, h = kNoteHeight;
        const wxPoint outline[] = {{0, 0}, {w, 0}, {w, h - 30}, {w - 27, h}, {0, h}};
        SetShape(wxRegion(5, outline));
        SetBackgroundStyle(wxBG_STYLE_PAINT);
        Bind(wxEVT_PAINT, &BareNote::OnPaint, this);
    }

  private:
    void OnPaint(wxPaintEvent&) {
        wxPaintDC dc(this);
        const unsigned long color = static_cast<unsigned long>(look_.color);
        dc.SetBrush(wxBrush(wxColour(color)));
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.DrawRectangle(GetClientSize());
        dc.SetFont(wxFontInfo(look_.size)
                       .FaceName(L"Arial")
                       .Bold(look_.bold)
                       .Italic(look_.italic)
                       .Underlined(look_.underlined));
        dc.DrawText(text_, 16, 16);
    }

    wxString text_;
    NoteLook look_;
};

class Bare : public wxApp {
  public:
    bool OnInit() override {
        if (argc != 3) return false;
        for (const Note& note :
             SampleNotes(std::atoi(argv[1].utf8_str()), Looks(std::atoi(argv[2].utf8_str()))))
            windows_.push_back(new BareNote(note));
        Toggle();
        const auto toggle = +[](void* bare) -> int {
            static_cast<Bare*>(bare)->Toggle();
            return G_SOURCE_CONTINUE;
        };
        g_unix_signal_add(SIGUSR1, toggle, this);
        return true;
    }

  private:
    void Toggle() {
        shown_ = !shown_;
        for (BareNote* window : windows_) window->Show(shown_);
    }

    std::vector<BareNote*> windows_;
    bool shown_ = false;
};

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(Bare);

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--toggle") == 0) return kill(std::atoi(argv[2]), SIGUSR1);
    return wxEntry(argc, argv);
}
