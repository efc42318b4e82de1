#pragma once
// What only the platform's window system can do for a note.

#include <wx/frame.h>

#include <cstdint>
#include <functional>
#include <optional>

// Twips of one window pixel. 15 on a screen of 96 dots an inch.
double TwipsPerPixelX(const wxWindow& window);
double TwipsPerPixelY(const wxWindow& window);

// Bits a pixel of the desktop, read anew on every call.
int DisplayDepth();

// The colour painted for a colour code on the display as it is now.
std::int32_t DisplayColor(std::int32_t code);

// Cuts the window to the note's outline for its size in pixels.
void ShapeNoteWindow(wxFrame& window, int widthPixels, int heightPixels);

// Asks for a place on the desktop and a size, in pixels. The window manager may take its time.
void PlaceWindow(wxFrame& window, const wxRect& rect);

// Where the window stands on the screen at this moment, in pixels of the whole desktop, as whoever draws the
// screen says it. Nothing while it is hidden or still on its way there.
std::optional<wxRect> RectOnScreen(const wxFrame& window);

// Puts the window above others of its kind without activating it.
void RaiseNoteWindow(wxFrame& window);

// Keeps a window that is created without a frame, and not shown yet, as large as it is asked to be.
void HaveNoFrame(wxFrame& window);

// Lets a window without controls get key events.
void AcceptKeys(wxFrame& window);

// Gives the window the keyboard, as its user just asked for.
void ActivateNoteWindow(wxFrame& window);

// Shows the window without activating it, above all normal windows when `topmost` is set, and keeps it out of
// the task bar.
void ShowNoteWindow(wxFrame& window, bool topmost);

// Calls `then` once when a window that was just shown has come to the screen, or has gone for good, or after
// a second: a window manager may keep it from the screen for as long as it likes. Inside an event.
void WhenOnScreen(wxFrame& window, std::function<void()> then);
