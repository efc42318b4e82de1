#include "print/PdfPaper_unix.h"

#include <cairo-pdf.h>
#include <wx/fontutil.h>

#include <algorithm>

#include "base/Text.h"
#include "notes/NoteFont.h"

namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kRuleWidth = 0.5;

cairo_status_t WriteTo(void* file, const unsigned char* bytes, unsigned int count) {
    return std::fwrite(bytes, 1, count, static_cast<std::FILE*>(file)) == count ? CAIRO_STATUS_SUCCESS
                                                                                : CAIRO_STATUS_WRITE_ERROR;
}

// U+FFFD in the place of a character that would break the line or has no picture.
wchar_t Printable(wchar_t c) {
    const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    return control || c == 0x2028 || c == 0x2029 ? wchar_t{0xFFFD} : c;
}

double Points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

}  // namespace

PdfPaper::PdfPaper(std::FILE* file, const PaperSize& paper, const std::wstring& title)
    : surface_(cairo_pdf_surface_create_for_stream(WriteTo, file, paper.width * kPointsPerMillimetre,
                                                   paper.height * kPointsPerMillimetre)) {
    cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, ToUtf8(title).c_str());
    cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATOR, "Kivora");
    cairo_.reset(cairo_create(surface_.get()));
    context_.reset(pango_cairo_create_context(cairo_.get()));
    pango_cairo_context_set_resolution(context_.get(), 72);
    pango_context_set_round_glyph_positions(context_.get(), FALSE);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context_.get(), options);
    cairo_font_options_destroy(options);
    layout_.reset(pango_layout_new(context_.get()));
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
}

void PdfPaper::SetText(std::wstring_view text, const PrintFont& font) {
    if (font != font_) {
        const wxFont& styled = NoteFont(font.look);
        PangoFontDescription* description =
            pango_font_description_copy(styled.GetNativeFontInfo()->description);
        pango_font_description_set_size(description, static_cast<int>(font.size * PANGO_SCALE));
        pango_layout_set_font_description(layout_.get(), description);
        pango_font_description_free(description);
        // Lines under and through the text are no part of a description.
        pango_layout_set_attributes(layout_.get(), nullptr);
        styled.GTKSetPangoAttrs(layout_.get());
        font_ = font;
    }
    bytes_.clear();
    characterOfByte_.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = Printable(text[i]);
        bytes_ += ToUtf8({&c, 1});
        characterOfByte_.resize(bytes_.size(), i);
    }
    pango_layout_set_text(layout_.get(), bytes_.data(), static_cast<int>(bytes_.size()));
}

MeasuredText PdfPaper::Measure(std::wstring_view text, const PrintFont& font) {
    SetText(text, font);
    MeasuredText measured;
    measured.ends.assign(text.size(), 0);
    if (!text.empty()) {
        PangoLayoutIter* clusters = pango_layout_get_iter(layout_.get());
        do {
            const auto byte = static_cast<std::size_t>(pango_layout_iter_get_index(clusters));
            PangoRectangle logical;
            pango_layout_iter_get_cluster_extents(clusters, nullptr, &logical);
            if (byte < characterOfByte_.size()) {
                measured.ends[characterOfByte_[byte]] += Points(std::max(logical.width, 0));
            }
        } while (pango_layout_iter_next_cluster(clusters));
        pango_layout_iter_free(clusters);
        for (std::size_t i = 1; i < text.size(); ++i) measured.ends[i] += measured.ends[i - 1];
    }
    PangoRectangle ink, logical;
    pango_layout_get_extents(layout_.get(), &ink, &logical);
    const int baseline = pango_layout_get_baseline(layout_.get());
    const bool inked = ink.width > 0 && ink.height > 0;
    const int top = inked ? std::min(logical.y, ink.y) : logical.y;
    const int bottom =
        inked ? std::max(logical.y + logical.height, ink.y + ink.height) : logical.y + logical.height;
    measured.ascent = Points(baseline - top);
    measured.descent = Points(bottom - baseline);
    if (inked) {
        measured.left = Points(std::max(logical.x - ink.x, 0));
        measured.right = Points(std::max(ink.x + ink.width - logical.x - logical.width, 0));
    }
    return measured;
}

bool PdfPaper::Put(const PrintedPage& page) {
    for (const PrintedLine& line : page.lines) {
        for (const PrintedText& part : line.parts) {
            SetText(part.text, part.font);
            cairo_move_to(cairo_.get(), part.x, part.baseline);
            pango_cairo_show_layout_line(cairo_.get(), pango_layout_get_line_readonly(layout_.get(), 0));
        }
    }
    cairo_set_line_width(cairo_.get(), kRuleWidth);
    for (const PrintedPage::Rule& rule : page.rules) {
        cairo_move_to(cairo_.get(), rule.left, rule.y);
        cairo_line_to(cairo_.get(), rule.right, rule.y);
        cairo_stroke(cairo_.get());
    }
    cairo_show_page(cairo_.get());
    return cairo_status(cairo_.get()) == CAIRO_STATUS_SUCCESS &&
           cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
}

bool PdfPaper::Finish() {
    cairo_surface_finish(surface_.get());
    return cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
}
