#include <gtest/gtest.h>

#include "res/Resources.h"
#include "tray/Notification.h"

TEST(Notification, KeepsTheFirst63CharactersOfATip) {
    for (const std::size_t length : {0, 63, 64}) {
        Notification notification;
        const std::wstring tip(length, L'ä');
        notification.IconToolTip(tip);
        EXPECT_EQ(notification.IconToolTip(), tip.substr(0, 63));
    }
}

TEST(Notification, OnlyTheCheckingSetterRefusesBitmaps) {
    const Picture icon = ResourcePicture(kFirstNoteIcon), other = ResourcePicture(kLastNoteIcon);
    const Picture bitmap = ResourcePicture(kMenuBanner);
    const struct {
        const char* name;
        Picture given;
        bool checking;
        Picture::Type type;
        bool same;  // the first icon is still there
    } table[] = {
        {"icon", other, true, Picture::Icon, false},
        {"bitmap refused", bitmap, true, Picture::Icon, true},
        {"nothing refused", Picture(), true, Picture::Icon, true},
        {"bitmap let in", bitmap, false, Picture::Bitmap, false},
        {"nothing let in", Picture(), false, Picture::Empty, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Notification notification;
        notification.SetIconFile(icon);
        notification.ShowIcon();
        if (row.checking)
            notification.SetIconFile(row.given);
        else
            notification.LetIconFile(row.given);
        EXPECT_EQ(notification.IconFile().type, row.type);
        EXPECT_EQ(notification.IconFile().bitmap.IsSameAs(icon.bitmap), row.same);
        EXPECT_TRUE(notification.Shown());
    }
}

TEST(Notification, IsShownByShowIconAndEnabledOnly) {
    Notification notification;
    const auto set = [&] {
        notification.IconToolTip(L"Notiz");
        notification.SetIconFile(ResourcePicture(kFirstNoteIcon));
        return notification.Shown();
    };
    EXPECT_FALSE(set());
    notification.ShowIcon();
    EXPECT_TRUE(set());
    notification.Enabled(false);
    EXPECT_FALSE(set());
    notification.Enabled(true);
    EXPECT_TRUE(notification.Shown());
    notification.HideIcon();
    EXPECT_FALSE(set());
    EXPECT_TRUE(notification.Enabled());
    notification.Enabled(false);
    notification.ShowIcon();
    EXPECT_TRUE(notification.Shown());
    EXPECT_FALSE(notification.Enabled());
}
