#include "res/Resources.h"

#include <wx/image.h>

#include <map>
#include <span>
#include <utility>

#include "res/ResourceImages.h"

namespace {

using Images = std::span<const ResourceImage>;

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
            // The same factor that the toolkit would set: it copies the pixels of a bitmap to change it.
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
        // The toolkit takes pixels that it does not own as writable, but only reads them here.
        wxImage image(source->width, source->height, const_cast<unsigned char*>(source->rgb), true);
        if (source->alpha) image.SetAlpha(const_cast<unsigned char*>(source->alpha), true);
        if (image.GetSize() != size) image = image.Scale(size.x, size.y, wxIMAGE_QUALITY_HIGH);
        return wxBitmap(image);
    }

    Images images_;
    std::map<std::pair<int, int>, wxBitmap> made_;
};

Images ImagesOf(int id) {
    const Images all(kResourceImages, kResourceImageCount);
    std::size_t first = 0;
    while (first < all.size() && all[first].id != id) ++first;
    std::size_t end = first;
    while (end < all.size() && all[end].id == id) ++end;
    return all.subspan(first, end - first);
}

}  // namespace

wxBitmapBundle LoadPicture(int id) {
    static std::map<int, wxBitmapBundle> loaded;
    wxBitmapBundle& bundle = loaded[id];
    if (!bundle.IsOk()) {
        const Images images = ImagesOf(id);
        if (!images.empty()) bundle = wxBitmapBundle::FromImpl(new ResourceBundle(images));
    }
    return bundle;
}
