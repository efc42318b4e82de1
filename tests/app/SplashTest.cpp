// The picture at the start, with a user in a hurry.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/dcscreen.h>
#include <wx/frame.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include "app/frmSplash.h"
#include "res/Resources.h"
#include "tests/support/Events.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Shows the splash and does something to it, again and again because it takes its time to come to the screen.
// Tells how long it stayed.
Clock::duration Stay(std::chrono::milliseconds moment, const std::function<void(frmSplash&)>& act) {
    Repeated* const user = Repeated::Every(100ms, [&] {
        for (wxWindow* window : wxTopLevelWindows) {
            auto* const splash = dynamic_cast<frmSplash*>(window);
            if (!splash || !splash->IsShown()) continue;
            act(*splash);  // which may take until it has gone
            break;
        }
        return false;
    });
    const Clock::time_point begin = Clock::now();
    frmSplash::ShowForAMoment(moment);
    user->End();
    return Clock::now() - begin;
}

void Click(frmSplash& splash) {
    wxUIActionSimulator mouse;
    mouse.MouseMove(splash.ClientToScreen(wxPoint(50, 50)));
    mouse.MouseClick();
}

// A key as the display sends it to a window.
void PressKey(frmSplash& splash) {
    GdkEvent* event = gdk_event_new(GDK_KEY_PRESS);
    event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(splash.GetHandle())));
    event->key.time = GDK_CURRENT_TIME;
    event->key.keyval = GDK_KEY_Escape;
    gdk_event_set_device(event,
                         gdk_seat_get_keyboard(gdk_display_get_default_seat(gdk_display_get_default())));
    gtk_main_do_event(event);
    gdk_event_free(event);
}

}  // namespace

TEST(Splash, GoesByItselfAndAtOnceWhenItIsClickedOrAKeyReachesIt) {
    EXPECT_GE(Stay(300ms, [](frmSplash&) {}), 300ms);
    const wxImage picture = LoadPicture(kSplashPicture).GetBitmap(wxDefaultSize).ConvertToImage();
    EXPECT_LT(Stay(1min,
                   [&](frmSplash& splash) {
                       wxColour shown;
                       wxScreenDC().GetPixel(splash.ClientToScreen(wxPoint(5, 5)), &shown);
                       const auto rgb = picture.GetData() + 3 * (5 * picture.GetWidth() + 5);
                       if (shown == wxColour(rgb[0], rgb[1], rgb[2])) Click(splash);
                   }),
              1min);
    EXPECT_LT(Stay(1min, PressKey), 1min);
}

TEST(Splash, LeavesTheKeyboardWhereTheUserTypes) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, L"Writing");
    auto* text = new wxTextCtrl(frame, wxID_ANY);
    frame->Show();
    frame->Raise();
    text->SetFocus();
    ASSERT_TRUE(RunUntil([&] { return frame->IsActive() && text->HasFocus(); }));
    wxString typed;
    Stay(500ms, [&](frmSplash&) {
        wxUIActionSimulator().Text("a");
        typed += L'a';
    });
    EXPECT_TRUE(RunUntil([&] { return !typed.empty() && text->GetValue() == typed; })) << text->GetValue();
    EXPECT_TRUE(frame->IsActive());
    frame->Destroy();
    RunEvents();
}
