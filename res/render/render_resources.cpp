// Draws the vector pictures of this folder into what the program carries: one source file with the packed
// pixels of every picture in every size, and the program icon as PNG files for the desktop's icon folders.
// Runs on the building machine.
//
//   render_resources <folder of the SVG files> <source file to write> <folder for kivora-<size>.png>

#include <librsvg/rsvg.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "res/Packing.h"

namespace {

struct Colour {
    int red, green, blue;
};

Colour Mix(Colour a, Colour b, double share) {
    const auto mix = [share](int x, int y) { return static_cast<int>(x + (y - x) * share + 0.5); };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}

std::string Css(Colour c) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", c.red & 0xff, c.green & 0xff, c.blue & 0xff);
    return text;
}

// A kind of paper: its colour on the screen with few and with many colours, and the dark tone that shades it.
struct Paper {
    Colour pure, pale, dark;
};

// In the order of the picture numbers.
constexpr std::array<Paper, 4> kPapers = {{
    {{255, 0, 0}, {255, 128, 128}, {96, 0, 16}},
    {{0, 255, 255}, {37, 189, 255}, {0, 48, 104}},
    {{255, 255, 0}, {254, 254, 148}, {104, 52, 0}},
    {{0, 255, 0}, {125, 255, 125}, {0, 72, 24}},
}};
constexpr std::size_t kYellowPaper = 2;

// What gives the classes of the template `face` as colour of the paper and tones derived from it.
std::string Style(Colour face, Colour dark) {
    constexpr Colour white = {255, 255, 255};
    const auto rule = [](const char* name, const char* property, Colour c) {
        return std::string(".") + name + "{" + property + ":" + Css(c) + " !important}";
    };
    return rule("face", "fill", face) + rule("face1", "stop-color", Mix(face, white, 0.3)) +
           rule("face2", "stop-color", Mix(face, dark, 0.06)) + rule("shade", "fill", dark) +
           rule("edge", "stroke", Mix(face, dark, 0.55)) + rule("ink", "fill", Mix(face, dark, 0.6)) +
           rule("back", "fill", Mix(face, white, 0.82)) +
           rule("back1", "stop-color", Mix(face, white, 0.82)) +
           rule("back2", "stop-color", Mix(face, dark, 0.26)) +
           rule("back3", "stop-color", Mix(face, white, 0.35));
}

struct Drawing {
    std::string file;
    std::string style;  // on top of the file's own
};

struct Picture {
    int width = 0, height = 0;
    std::vector<Pixel> pixels;
    bool Opaque() const {
        return std::all_of(pixels.begin(), pixels.end(), [](const Pixel& p) { return p.alpha == 255; });
    }
};

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

// The drawing in a picture of this size, with `border` pixels left free all around.
Surface Render(const Drawing& drawing, int width, int height, int border) {
    GError* error = nullptr;
    const std::unique_ptr<RsvgHandle, decltype(&g_object_unref)> svg(
        rsvg_handle_new_from_file(drawing.file.c_str(), &error), g_object_unref);
    if (!svg) throw std::runtime_error(drawing.file + ": " + error->message);
    const auto* css = reinterpret_cast<const guint8*>(drawing.style.data());
    if (!rsvg_handle_set_stylesheet(svg.get(), css, drawing.style.size(), &error))
        throw std::runtime_error(drawing.file + ": " + error->message);
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                     cairo_destroy);
    const RsvgRectangle place = {static_cast<double>(border), static_cast<double>(border),
                                 static_cast<double>(width - 2 * border),
                                 static_cast<double>(height - 2 * border)};
    if (!rsvg_handle_render_document(svg.get(), context.get(), &place, &error))
        throw std::runtime_error(drawing.file + ": " + error->message);
    cairo_surface_flush(surface.get());
    return surface;
}

Picture Read(cairo_surface_t* surface) {
    Picture picture;
    picture.width = cairo_image_surface_get_width(surface);
    picture.height = cairo_image_surface_get_height(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    for (int y = 0; y < picture.height; ++y) {
        const auto* row =
            reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        for (int x = 0; x < picture.width; ++x) {
            const std::uint32_t alpha = row[x] >> 24;
            const auto part = [&](int shift) {  // colours are stored multiplied by their alpha
                const std::uint32_t value = (row[x] >> shift) & 0xff;
                return static_cast<std::uint8_t>(alpha ? (value * 255 + alpha / 2) / alpha : 0);
            };
            picture.pixels.push_back({part(16), part(8), part(0), static_cast<std::uint8_t>(alpha)});
        }
    }
    return picture;
}

// Collects pictures and writes them as one source file; pictures of one number stand together, smallest
// first.
class SourceWriter {
  public:
    explicit SourceWriter(const std::string& file) : out_(file) {
        out_ << "#include \"res/ResourceImages.h\"\n\nnamespace {\n";
    }

    void Add(int id, const Picture& picture) {
        const std::vector<std::uint8_t> packed = PackPixels(picture.pixels, picture.width);
        if (UnpackPixels(packed, picture.width, picture.height) != picture.pixels)
            throw std::runtime_error("picture " + std::to_string(id) + " does not unpack to itself");
        const std::string name = "packed" + std::to_string(count_++);
        WriteBytes(name, packed);
        table_ += "    {" + std::to_string(id) + ", " + std::to_string(picture.width) + ", " +
                  std::to_string(picture.height) + ", " + (picture.Opaque() ? "true" : "false") + ", {" +
                  name + ", " + std::to_string(packed.size()) + "}},\n";
    }

    void Finish() {
        out_ << "const ResourceImage images[] = {\n"
             << table_
             << "};\n}  // namespace\n\nconst std::span<const ResourceImage> kResourceImages(images);\n";
        out_.close();
        if (!out_) throw std::runtime_error("cannot write the source file");
    }

  private:
    // A string literal of octal numbers compiles many times faster than a list of numbers.
    void WriteBytes(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        std::string text = "const unsigned char " + name + "[] =\n";
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (i % 24 == 0) text += i ? "\"\n\"" : "\"";
            const int byte = bytes[i];
            text += '\\';
            for (const int shift : {6, 3, 0}) text += static_cast<char>('0' + ((byte >> shift) & 7));
        }
        out_ << text << "\";\n";
    }

    std::ofstream out_;
    std::string table_;
    int count_ = 0;
};

// The drawing of an icon that is meant for this size, and the border that it gets there.
std::string IconFile(int size) {
    if (size == 16) return "/icon16.svg";
    return size == 22 || size == 24 ? "/icon22.svg" : "/icon.svg";
}

int IconBorder(int size) { return size == 24 ? 1 : 0; }

void RenderAll(const std::string& folder, const std::string& sourceFile, const std::string& pngFolder) {
    SourceWriter source(sourceFile);
    const std::string programStyle = Style(kPapers[kYellowPaper].pale, kPapers[kYellowPaper].dark);
    for (const int size : {16, 22, 24, 32, 44, 48, 64, 96, 128, 256}) {
        const Surface icon = Render({folder + IconFile(size), programStyle}, size, size, IconBorder(size));
        if (size <= 128) source.Add(1, Read(icon.get()));
        const std::string png = pngFolder + "/kivora-" + std::to_string(size) + ".png";
        if (cairo_surface_write_to_png(icon.get(), png.c_str()) != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error("cannot write " + png);
    }
    for (const int scale : {1, 2})
        source.Add(2, Read(Render({folder + "/banner.svg", ""}, 240 * scale, 34 * scale, 0).get()));
    for (const int scale : {1, 2})
        source.Add(3, Read(Render({folder + "/splash.svg", ""}, 360 * scale, 220 * scale, 0).get()));
    int message = 4;
    for (const char* name : {"critical", "warning", "information"}) {
        for (const int size : {32, 64})
            source.Add(message,
                       Read(Render({folder + "/message-" + name + ".svg", ""}, size, size, 0).get()));
        ++message;
    }
    const std::string unsavedStyle = programStyle + ".warning{display:inline !important}";
    for (const int size : {16, 22, 24, 32, 44, 48, 64})
        source.Add(7,
                   Read(Render({folder + IconFile(size), unsavedStyle}, size, size, IconBorder(size)).get()));
    for (std::size_t i = 0; i < kPapers.size(); ++i) {
        const Paper& paper = kPapers[i];
        const int index = static_cast<int>(i);
        for (const int scale : {1, 2})
            source.Add(100 + index, Read(Render({folder + "/corner.svg", Style(paper.pure, paper.dark)},
                                                30 * scale, 32 * scale, 0)
                                             .get()));
        for (const int scale : {1, 2})
            source.Add(110 + index, Read(Render({folder + "/corner.svg", Style(paper.pale, paper.dark)},
                                                30 * scale, 32 * scale, 0)
                                             .get()));
        const std::string noteStyle = Style(paper.pale, paper.dark) +
                                      ".plain{display:inline !important}.program{display:none !important}";
        for (const int size : {16, 22, 24, 32, 44, 48, 64})
            source.Add(
                120 + index,
                Read(Render({folder + IconFile(size), noteStyle}, size, size, IconBorder(size)).get()));
    }
    source.Finish();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: render_resources <svg folder> <source file> <png folder>\n");
        return 2;
    }
    try {
        RenderAll(argv[1], argv[2], argv[3]);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "render_resources: %s\n", problem.what());
        return 1;
    }
    return 0;
}
