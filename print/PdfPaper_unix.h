#pragma once
// Pages as a PDF, written piece by piece to a file of its caller. Text is set by Pango without hinting or
// rounding for any screen, so what is measured is what is printed.

#include <pango/pangocairo.h>

#include <cstdio>
#include <memory>
#include <string>

#include "print/PageLayout.h"

class PdfPaper {
  public:
    // The file has to be open for writing for as long as this object lives.
    PdfPaper(std::FILE* file, const PaperSize& paper, const std::wstring& title);
    PdfPaper(const PdfPaper&) = delete;
    PdfPaper& operator=(const PdfPaper&) = delete;

    MeasuredText Measure(std::wstring_view text, const PrintFont& font);
    // False when the file takes no more; errno then tells why.
    bool Put(const PrintedPage& page);
    // Writes the end of the PDF. False as above. Nothing may be put or measured afterwards.
    bool Finish();

  private:
    struct Release {
        void operator()(cairo_t* context) const { cairo_destroy(context); }
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(PangoContext* context) const { g_object_unref(context); }
        void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    };
    void SetText(std::wstring_view text, const PrintFont& font);

    std::unique_ptr<cairo_surface_t, Release> surface_;
    std::unique_ptr<cairo_t, Release> cairo_;
    std::unique_ptr<PangoContext, Release> context_;
    std::unique_ptr<PangoLayout, Release> layout_;
    std::vector<std::size_t> characterOfByte_;  // of the text set last
    std::string bytes_;
    PrintFont font_{.size = 0};
};
