#include "notes/NoteText_unix.h"

#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>

#include <algorithm>

#include "base/Text.h"
#include "notes/BoxText.h"

NoteText::NoteText(const Note& note, const NoteLayout& layout, double twipsX, double twipsY) : note_(note) {
    note_.text = BoxText(note.text).ToStdWstring();
    lines_ = PaintedLines(note_, layout, 1 / twipsX, 1 / twipsY);
}

wchar_t NoteText::At(int offset) const {
    return offset >= 0 && offset < Count() ? note_.text[static_cast<std::size_t>(offset)] : L'\0';
}

std::string NoteText::Piece(int start, int end) const {
    if (end < 0 || end > Count()) end = Count();
    start = std::clamp(start, 0, end);
    return ToUtf8({note_.text.data() + start, static_cast<std::size_t>(end - start)});
}

std::vector<int> NoteText::Boundaries(AtkTextBoundary kind) const {
    std::vector<int> found{0};
    const auto add = [&](int at) {
        if (at > found.back() && at <= Count()) found.push_back(at);
    };
    if (kind == ATK_TEXT_BOUNDARY_LINE_START) {
        for (const PaintedLine& line : lines_) add(Start(line));
    } else if (kind == ATK_TEXT_BOUNDARY_LINE_END) {
        for (const PaintedLine& line : lines_) add(Start(line) + static_cast<int>(line.text.size()));
    } else {
        const std::string bytes = ToUtf8(note_.text);
        std::vector<PangoLogAttr> marks(note_.text.size() + 1);
        pango_get_log_attrs(bytes.data(), static_cast<int>(bytes.size()), -1, pango_language_get_default(),
                            marks.data(), static_cast<int>(marks.size()));
        for (std::size_t i = 0; i < marks.size(); ++i) {
            const PangoLogAttr& mark = marks[i];
            if (kind == ATK_TEXT_BOUNDARY_WORD_START       ? mark.is_word_start
                : kind == ATK_TEXT_BOUNDARY_WORD_END       ? mark.is_word_end
                : kind == ATK_TEXT_BOUNDARY_SENTENCE_START ? mark.is_sentence_start
                : kind == ATK_TEXT_BOUNDARY_SENTENCE_END   ? mark.is_sentence_end
                                                           : mark.is_cursor_position)
                add(static_cast<int>(i));
        }
    }
    add(Count());
    return found;
}

std::vector<int> NoteText::Paragraphs() const {
    std::vector<int> found{0};
    for (int i = 0; i < Count(); ++i)
        if (At(i) == L'\n') found.push_back(i + 1);
    if (found.back() < Count()) found.push_back(Count());
    return found;
}

wxRect NoteText::PlaceOf(int offset) const {
    const auto after = std::find_if(lines_.begin(), lines_.end(),
                                    [&](const PaintedLine& line) { return Start(line) > offset; });
    if (offset < 0 || after == lines_.begin()) return {};
    const PaintedLine& line = *(after - 1);
    // A line break, or blanks at which the line was broken, have no width at its end.
    const auto at = std::min(static_cast<std::size_t>(offset - Start(line)), line.ends.size());
    const int left = at == 0 ? 0 : line.ends[at - 1];
    const int right = at < line.ends.size() ? line.ends[at] : left;
    return {line.place.x + left, line.place.y, right - left, line.place.height};
}

int NoteText::OffsetAt(const wxPoint& place) const {
    for (const PaintedLine& line : lines_) {
        if (!line.place.Contains(place)) continue;
        const auto end = std::upper_bound(line.ends.begin(), line.ends.end(), place.x - line.place.x);
        return Start(line) + static_cast<int>(end - line.ends.begin());
    }
    return -1;
}

namespace {

ReadPart* (*noteOf)(AtkObject* object);
ReadPart* PartOf(void* object) { return noteOf(ATK_OBJECT(object)); }

char* Copy(const std::string& text) { return g_strdup(text.c_str()); }

// The piece that an offset is in, or the one so many pieces further.
char* PieceAt(void* object, const std::vector<int>& boundaries, int offset, int further, int* start,
              int* end) {
    *start = *end = 0;
    ReadPart* const part = PartOf(object);
    const auto next = std::upper_bound(boundaries.begin(), boundaries.end(), offset);
    const auto piece = next - boundaries.begin() - 1 + further;
    const bool inside =
        part && offset >= 0 && piece >= 0 && piece + 1 < static_cast<std::ptrdiff_t>(boundaries.size());
    if (!inside) return Copy("");
    *start = boundaries[static_cast<std::size_t>(piece)];
    *end = boundaries[static_cast<std::size_t>(piece) + 1];
    return Copy(part->Text().Piece(*start, *end));
}

template <int kFurther>
char* AtOffset(AtkText* object, int offset, AtkTextBoundary kind, int* start, int* end) {
    ReadPart* const part = PartOf(object);
    return PieceAt(object, part ? part->Text().Boundaries(kind) : std::vector<int>(), offset, kFurther, start,
                   end);
}

char* StringAt(AtkText* object, int offset, AtkTextGranularity kind, int* start, int* end) {
    ReadPart* const part = PartOf(object);
    if (part && kind == ATK_TEXT_GRANULARITY_PARAGRAPH)
        return PieceAt(object, part->Text().Paragraphs(), offset, 0, start, end);
    return AtOffset<0>(object, offset,
                       kind == ATK_TEXT_GRANULARITY_WORD       ? ATK_TEXT_BOUNDARY_WORD_START
                       : kind == ATK_TEXT_GRANULARITY_SENTENCE ? ATK_TEXT_BOUNDARY_SENTENCE_START
                       : kind == ATK_TEXT_GRANULARITY_LINE     ? ATK_TEXT_BOUNDARY_LINE_START
                                                               : ATK_TEXT_BOUNDARY_CHAR,
                       start, end);
}

wxPoint Origin(void* object, AtkCoordType from) {
    int x = 0, y = 0, width = 0, height = 0;
    atk_component_get_extents(ATK_COMPONENT(object), &x, &y, &width, &height, from);
    // What is not on the screen has no place, which GTK tells by a number that cannot be reckoned with.
    if (x == G_MININT || y == G_MININT) return {};
    return {x, y};
}

void Extents(AtkText* object, int offset, int* x, int* y, int* width, int* height, AtkCoordType from) {
    ReadPart* const part = PartOf(object);
    const wxPoint origin = Origin(object, from);
    const wxRect place = part ? part->Text().PlaceOf(offset) : wxRect();
    *x = origin.x + place.x;
    *y = origin.y + place.y;
    *width = place.width;
    *height = place.height;
}

AtkAttributeSet* With(AtkAttributeSet* set, AtkTextAttribute name, const std::string& value) {
    auto* const attribute = g_new(AtkAttribute, 1);
    attribute->name = g_strdup(atk_text_attribute_get_name(name));
    attribute->value = Copy(value);
    return g_slist_prepend(set, attribute);
}

AtkAttributeSet* Attributes(AtkText* object) {
    ReadPart* const part = PartOf(object);
    if (!part) return nullptr;
    const NoteLook& look = part->Text().Look();
    AtkAttributeSet* set = With(nullptr, ATK_TEXT_ATTR_SIZE, std::to_string(look.size));
    set = With(set, ATK_TEXT_ATTR_WEIGHT, look.bold ? "700" : "400");
    set = With(set, ATK_TEXT_ATTR_STYLE, look.italic ? "italic" : "normal");
    set = With(set, ATK_TEXT_ATTR_UNDERLINE, look.underlined ? "single" : "none");
    return With(set, ATK_TEXT_ATTR_JUSTIFICATION,
                look.alignment == kAlignRight    ? "right"
                : look.alignment == kAlignCentre ? "center"
                                                 : "left");
}

void AnswerForText(void* iface, void*) {
    auto& text = *static_cast<AtkTextIface*>(iface);
    text.get_character_count = [](AtkText* object) {
        ReadPart* const part = PartOf(object);
        return part ? part->Text().Count() : 0;
    };
    text.get_text = [](AtkText* object, int start, int end) {
        ReadPart* const part = PartOf(object);
        return Copy(part ? part->Text().Piece(start, end) : std::string());
    };
    text.get_character_at_offset = [](AtkText* object, int offset) {
        ReadPart* const part = PartOf(object);
        return part ? static_cast<gunichar>(part->Text().At(offset)) : 0;
    };
    text.get_text_before_offset = AtOffset<-1>;
    text.get_text_at_offset = AtOffset<0>;
    text.get_text_after_offset = AtOffset<1>;
    text.get_string_at_offset = StringAt;
    text.get_character_extents = Extents;
    text.get_offset_at_point = [](AtkText* object, int x, int y, AtkCoordType from) {
        ReadPart* const part = PartOf(object);
        return part ? part->Text().OffsetAt(wxPoint(x, y) - Origin(object, from)) : -1;
    };
    text.get_caret_offset = [](AtkText*) { return 0; };  // nothing is written on a note itself
    text.get_n_selections = [](AtkText*) { return 0; };
    text.get_default_attributes = Attributes;
    // The whole text has the same look.
    text.get_run_attributes = [](AtkText* object, int, int* start, int* end) {
        ReadPart* const part = PartOf(object);
        *start = 0;
        *end = part ? part->Text().Count() : 0;
        return Attributes(object);
    };
}

void AnswerForPart(void* type, void*) {
    auto& object = *static_cast<AtkObjectClass*>(type);
    object.get_name = [](AtkObject* asked) {
        ReadPart* const part = PartOf(asked);
        return part ? part->PartName() : "";
    };
    object.get_role = [](AtkObject* asked) {
        ReadPart* const part = PartOf(asked);
        return part ? part->PartRole() : ATK_ROLE_STATIC;
    };
}

// Like that of any widget, with a name, a role and a text of its own.
GType PartType() {
    static const GType type = [] {
        GTypeQuery usual;
        g_type_query(GTK_TYPE_CONTAINER_ACCESSIBLE, &usual);
        const GType made = g_type_register_static_simple(GTK_TYPE_CONTAINER_ACCESSIBLE, "KivoraReadPart",
                                                         usual.class_size, AnswerForPart, usual.instance_size,
                                                         nullptr, static_cast<GTypeFlags>(0));
        const GInterfaceInfo text{AnswerForText, nullptr, nullptr};
        g_type_add_interface_static(made, ATK_TYPE_TEXT, &text);
        return made;
    }();
    return type;
}

}  // namespace

AtkObject* MakeReadPart(void* widget, ReadPart* (*part)(AtkObject* object)) {
    noteOf = part;
    auto* const object = ATK_OBJECT(g_object_new(PartType(), "widget", widget, nullptr));
    atk_object_initialize(object, widget);
    return object;
}
