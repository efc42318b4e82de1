#include "notes/NoteDrop.h"

#include <string>
#include <vector>

#include "base/Text.h"
#include "notes/NoteHost.h"

namespace {

// A list of what is dragged, as file managers and browsers give it: names of files, or addresses, which are
// a text.
class ListOfFiles : public wxFileDataObject {
  public:
    bool SetData(std::size_t length, const void* bytes) override {
        bytes_.assign(static_cast<const char*>(bytes), length);
        return wxFileDataObject::SetData(length, bytes);
    }

    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (const wxString& name : GetFilenames()) names.push_back(name.ToStdWstring());
        return names;
    }
    std::wstring Addresses() const { return FromUtf8(bytes_.substr(0, bytes_.find('\0'))); }

  private:
    std::string bytes_;
};

class Target : public wxDropTarget {
  public:
    explicit Target(NoteHost& host) : host_(host) {
        auto* const data = new wxDataObjectComposite;
        data->Add(files_ = new ListOfFiles, true);
        data->Add(text_ = new wxTextDataObject);
        SetDataObject(data);
        SetDefaultAction(wxDragCopy);  // or some programs would cut what is dragged out of their texts
    }

    wxDragResult OnData(wxCoord, wxCoord, wxDragResult) override {
        if (!GetData()) return wxDragNone;
        const auto* const data = static_cast<wxDataObjectComposite*>(GetDataObject());
        std::wstring text = text_->GetText().ToStdWstring();
        if (data->GetReceivedFormat() == wxDF_FILENAME) {
            const std::vector<std::wstring> names = files_->Names();
            if (!names.empty()) {
                host_.ImportFiles(names);
                return wxDragCopy;
            }
            text = files_->Addresses();
        }
        return host_.AddText(text) ? wxDragCopy : wxDragNone;
    }

  private:
    NoteHost& host_;
    ListOfFiles* files_;
    wxTextDataObject* text_;
};

}  // namespace

std::unique_ptr<wxDropTarget> NoteDropTarget(NoteHost& host) { return std::make_unique<Target>(host); }
