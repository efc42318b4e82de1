#include "res/Resources.h"

#include <wx/image.h>

#include <algorithm>
#include <map>
#include <span>
#include <utility>

#include "res/Packing.h"
#include "res/ResourceImages.h"

namespace {

using Images = std::span<const ResourceImage>;

wxImage Unpack(const ResourceImage& source) {
    wxImage image(source.width, source.height, false);
    if (!source.opaque) image.SetAlpha();
    unsigned char* rgb = image.GetData();
    unsigned char* alpha = image.GetAlpha();
    for (const Pixel& pixel : UnpackPixels(source.packed, source.width, source.height)) {
        *rgb++ = pixel.red;
        *rgb++ = pixel.green;
        *rgb++ = pixel.blue;
        if (alpha) *alpha++ = pixel.alpha;
    }
    return image;
}

// The sizes of one picture. A bitmap is made when somebody asks for its size and shared by all who do.
class ResourceBundle : public wxBitmapBundleImpl {
  public:
    explicit ResourceBundle(Images images) : images_(images) {}

    wxSize GetDefaultSize() const override { return {images_.front().width, images_.front().height}; }

    wxSize GetPreferredBitmapSizeAtScale(double scale) const override { return DoGetPreferredSize(scale); }

    wxBitmap GetBitmap(const wxSize& size) override {
        wxBitmap& bitmap = made_[{size.x, size.y}];
        if (!bitmap.IsOk()) {
            bitmap = Make(size);
            // Set here, because wxWidgets would otherwise copy all pixels to set the same factor.
            bitmap.SetScaleFactor(static_cast<double>(size.y) / GetDefaultSize().y);
        }
        return bitmap;
    }

  protected:
    double GetNextAvailableScale(size_t& i) const override {
        return i < images_.size() ? static_cast<double>(images_[i++].width) / images_.front().width : 0.0;
    }

  private:
    wxBitmap Make(const wxSize& size) const {
        const ResourceImage* source = &images_.back();
        for (const ResourceImage& image : images_) {
            if (image.width >= size.x && image.height >= size.y) {
                source = &image;
                break;
            }
        }
        wxImage image = Unpack(*source);
        if (image.GetSize() != size) image = image.Scale(size.x, size.y, wxIMAGE_QUALITY_HIGH);
        return wxBitmap(image);
    }

    Images images_;
    std::map<std::pair<int, int>, wxBitmap> made_;
};

Images ImagesOf(int id) {
    const auto ofId = [id](const ResourceImage& image) { return image.id == id; };
    const auto first = std::find_if(kResourceImages.begin(), kResourceImages.end(), ofId);
    return {first, std::find_if_not(first, kResourceImages.end(), ofId)};
}

wxBitmapBundle MakeBundle(int id) {
    const Images images = ImagesOf(id);
    return images.empty() ? wxBitmapBundle() : wxBitmapBundle::FromImpl(new ResourceBundle(images));
}

}  // namespace

wxBitmapBundle LoadPicture(int id) {
    if (id == kSplashPicture) return MakeBundle(id);  // large, and shown once
    static std::map<int, wxBitmapBundle> loaded;
    wxBitmapBundle& bundle = loaded[id];
    if (!bundle.IsOk()) bundle = MakeBundle(id);
    return bundle;
}
