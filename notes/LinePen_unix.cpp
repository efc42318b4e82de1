#include <gtk/gtk.h>
#include <wx/dcscreen.h>
#include <wx/font.h>
#include <wx/fontutil.h>
#include <wx/graphics.h>

#include <deque>
#include <utility>

#include "base/Text.h"
#include "notes/LinePen.h"

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Layout = std::unique_ptr<PangoLayout, Unref>;

constexpr std::size_t kMostKept = 100;  // more lines than notes usually have

bool IsContinuation(char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

struct LinePen::Lines {
    struct Measured {
        std::wstring_view text;
        Layout layout;
    };

    Layout Make(std::wstring_view text) const {
        Layout layout(pango_layout_new(context.get()));
        pango_layout_set_font_description(layout.get(), font.GetNativeFontInfo()->description);
        font.GTKSetPangoAttrs(layout.get());
        const std::string bytes = ToUtf8(text);
        pango_layout_set_text(layout.get(), bytes.data(), static_cast<int>(bytes.size()));
        return layout;
    }

    cairo_t* cairo;
    wxFont font;
    std::unique_ptr<PangoContext, Unref> context;
    std::deque<Measured> measured;  // and not drawn yet
};

LinePen::LinePen(wxDC& dc, const wxFont& font) {
    auto* const cairo = static_cast<cairo_t*>(dc.GetGraphicsContext()->GetNativeContext());
    lines_.reset(new Lines{cairo, font, {}, {}});
    lines_->context.reset(pango_cairo_create_context(cairo));
}

LinePen::~LinePen() = default;

std::vector<int> LinePen::Measure(std::wstring_view text) {
    Layout layout = lines_->Make(text);
    const char* const bytes = pango_layout_get_text(layout.get());
    std::vector<int> ends;
    int byte = 0, width = 0;
    PangoLayoutIter* const iter = pango_layout_get_iter(layout.get());
    bool more = true;
    while (more) {
        PangoRectangle cluster;
        pango_layout_iter_get_cluster_extents(iter, nullptr, &cluster);
        width += cluster.width;
        more = pango_layout_iter_next_cluster(iter);
        // A letter and its accents are one cluster and end together.
        const int next = more ? pango_layout_iter_get_index(iter) : byte + 1;
        for (; byte < next && bytes[byte]; ++byte)
            if (!IsContinuation(bytes[byte])) ends.push_back(PANGO_PIXELS(width));
    }
    pango_layout_iter_free(iter);
    ends.resize(text.size(), PANGO_PIXELS(width));
    if (lines_->measured.size() < kMostKept) lines_->measured.push_back({text, std::move(layout)});
    return ends;
}

void LinePen::Draw(std::wstring_view text, int x, int y, const wxColour& ink) {
    auto& measured = lines_->measured;
    while (!measured.empty() && measured.front().text.data() < text.data()) measured.pop_front();
    Layout layout;
    const bool ready = !measured.empty() && measured.front().text.data() == text.data() &&
                       measured.front().text.size() == text.size();
    if (ready) {
        layout = std::move(measured.front().layout);
        measured.pop_front();
    } else {
        layout = lines_->Make(text);
    }
    cairo_t* const cairo = lines_->cairo;
    cairo_set_source_rgb(cairo, ink.Red() / 255.0, ink.Green() / 255.0, ink.Blue() / 255.0);
    cairo_move_to(cairo, x, y);
    pango_cairo_show_layout(cairo, layout.get());
}

std::unique_ptr<wxDC> MeasuringDC() {
    // Pango keeps fonts by the options that a surface has for them: for a picture in memory each would be
    // looked for and opened a second time, and its letters could have other widths.
    return std::make_unique<wxScreenDC>();
}

// Pango calls this outdated for the sake of whoever lays out text without it.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
bool AlignsTheOtherWay(std::wstring_view line) {
    // As GTK sees a paragraph: the first letter decides.
    const std::string bytes = ToUtf8(line);
    return pango_find_base_dir(bytes.data(), static_cast<int>(bytes.size())) == PANGO_DIRECTION_RTL;
}
G_GNUC_END_IGNORE_DEPRECATIONS
