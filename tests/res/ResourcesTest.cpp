#include <gtest/gtest.h>
#include <wx/image.h>

#include "model/NoteColor.h"
#include "res/Resources.h"

// The program has the pixels that were drawn: the build leaves the program icon as files, too.
TEST(Resources, PicturesAreUnpackedAsTheyWereDrawn) {
    wxInitAllImageHandlers();
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) GTEST_SKIP() << "this wxWidgets reads no such files";
    for (const int size : {16, 22, 24, 32, 48, 64, 96, 128}) {
        SCOPED_TRACE(size);
        wxImage drawn;
        ASSERT_TRUE(
            drawn.LoadFile(wxString::FromUTF8(DRAWN_PICTURES) + wxString::Format(L"/kivora-%d.png", size)));
        const wxImage image = LoadPicture(kProgramIcon).GetBitmap(wxSize(size, size)).ConvertToImage();
        ASSERT_EQ(image.GetSize(), drawn.GetSize());
        ASSERT_TRUE(image.HasAlpha() && drawn.HasAlpha());
        for (int i = 0; i < 3 * size * size; ++i) {
            const int pixel = i / 3, alpha = drawn.GetAlpha()[pixel];
            ASSERT_EQ(image.GetAlpha()[pixel], alpha) << pixel;
            // Colours multiplied by their alpha come back a little differently from each reader.
            if (alpha == 0) continue;
            ASSERT_NEAR(image.GetData()[i], drawn.GetData()[i], 1 + 255 / alpha) << pixel;
        }
    }
}

// A hundred notes show a hundred times the same bitmap.
TEST(Resources, BitmapsAreShared) {
    for (const wxSize& size : {wxSize(30, 32), wxSize(60, 64)})
        EXPECT_TRUE(LoadPicture(112).GetBitmap(size).IsSameAs(LoadPicture(112).GetBitmap(size))) << size.x;
}

TEST(Resources, CornersContinueTheNoteWithoutASeam) {
    for (const std::int32_t code : kNoteColors) {
        for (const auto& [depth, size] :
             {std::pair(8, wxSize(30, 32)), {24, wxSize(30, 32)}, {24, wxSize(60, 64)}}) {
            SCOPED_TRACE(code + size.x);
            const wxColour note(static_cast<unsigned long>(DisplayColor(code, depth)));
            const wxImage image = LoadPicture(CornerBitmap(code, depth)).GetBitmap(size).ConvertToImage();
            EXPECT_FALSE(image.HasAlpha());
            const auto at = [&](int x, int y) {
                return wxColour(image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y));
            };
            for (int x = 0; x < size.x; ++x) ASSERT_EQ(at(x, 0), note) << x;
            for (int y = 0; y < size.y; ++y) ASSERT_EQ(at(0, y), note) << y;
            EXPECT_NE(at(size.x / 2, size.y / 2), note);  // the flap
        }
    }
}
