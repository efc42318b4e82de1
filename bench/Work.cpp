// Measures single works of the program without a window, each beside the least that the libraries below it
// need for the same. Google Benchmark finds out how often each has to be done; bench/run starts it.
#include <benchmark/benchmark.h>
#include <cairo-pdf.h>
#include <fcntl.h>
#include <pango/pangocairo.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/NewFile.h"
#include "base/Text.h"
#include "bench/Figures.h"
#include "bench/SampleNotes.h"
#include "bench/Store.h"
#include "exchange/ExportedNote.h"
#include "exchange/ImportFile.h"
#include "mail/MailText.h"
#include "model/StoredImage.h"
#include "print/PageLayout.h"
#include "print/PdfPaper_unix.h"

namespace {

using benchmark::State;

void Require(State& state, bool holds, const char* what) {
    if (!holds) state.SkipWithError(what);
}

std::filesystem::path File(const char* name) { return std::filesystem::path(getenv("HOME")) / name; }

// ---- Saving

void Change(Note& note) { note.text.back() = note.text.back() == L'a' ? L'b' : L'a'; }

// A save of so many notes, so many of which have changed.
void Save(State& state, int count, int changed) {
    std::vector<Note> notes = SampleNotes(count);
    std::vector<const Note*> all;
    for (const Note& note : notes) all.push_back(&note);
    Require(state, WriteStoredImage(false, all, {}).Kept(), "cannot save");
    for (auto _ : state) {
        for (int i = 0; i < changed; ++i) Change(notes[static_cast<std::size_t>(i)]);
        Require(state, WriteStoredImage(false, all, {}).Kept(), "cannot save");
    }
}

// One commit of SQLite with the bytes of so many notes, each a row, with the settings of the hive.
void Commit(State& state, int count, int changed) {
    sqlite3* database = nullptr;
    sqlite3_open(File("floor.sqlite").c_str(), &database);
    const auto run = [&](const char* sql) {
        Require(state, sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK, "SQLite fails");
    };
    run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; DROP TABLE IF EXISTS note;"
        "CREATE TABLE note(id INTEGER PRIMARY KEY, data BLOB)");
    sqlite3_stmt* write = nullptr;
    sqlite3_prepare_v2(database, "REPLACE INTO note VALUES(?, ?)", -1, &write, nullptr);
    std::vector<std::string> bytes;
    for (const Note& note : SampleNotes(count))
        bytes.push_back(ToUtf8(note.text + note.creationTime) + std::string(60, '0'));
    const auto commit = [&](int rows) {
        run("BEGIN");
        for (int i = 0; i < rows; ++i) {
            std::string& row = bytes[static_cast<std::size_t>(i)];
            ++row.back();
            sqlite3_bind_int(write, 1, i);
            sqlite3_bind_blob(write, 2, row.data(), static_cast<int>(row.size()), SQLITE_STATIC);
            sqlite3_step(write);
            sqlite3_reset(write);
        }
        run("COMMIT");
    };
    commit(count);
    for (auto _ : state) commit(changed);
    sqlite3_finalize(write);
    sqlite3_close(database);
}

// ---- Files

std::string Records(int count) {
    std::string records;
    for (const Note& note : SampleNotes(count)) WriteRecord(records, ToRecord(note));
    return records;
}

void Export(State& state, int count) {
    const std::vector<Note> notes = SampleNotes(count);
    for (auto _ : state) {
        std::string records;
        for (const Note& note : notes) WriteRecord(records, ToRecord(note));
        Require(state, !SaveFile(File("notes.kvr"), records, Rest::Cut), "cannot export");
    }
}

void WriteBytes(State& state, int count) {
    const std::string bytes = Records(count);
    const std::string name = File("floor.kvr"), temporary = name + "~";
    for (auto _ : state) {
        const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        Require(state, write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "cannot write");
        fsync(file);
        close(file);
        rename(temporary.c_str(), name.c_str());
    }
}

void Import(State& state, int count) {
    Require(state, !SaveFile(File("notes.kvr"), Records(count), Rest::Cut), "cannot export");
    for (auto _ : state) {
        const ReadNotes read = ReadNotesOf(File("notes.kvr"), kMostRecords, [](std::size_t) { return true; });
        Require(state, read.notes.size() == static_cast<std::size_t>(count), "not all are read");
    }
}

void ReadBytes(State& state, int count) {
    Require(state, !SaveFile(File("notes.kvr"), Records(count), Rest::Cut), "cannot export");
    for (auto _ : state) {
        std::ifstream file(File("notes.kvr"), std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        benchmark::DoNotOptimize(bytes.view().size());
    }
}

// ---- Paper

void PrintPdf(State& state, int count) {
    const std::vector<Note> notes = SampleNotes(count);
    for (auto _ : state) {
        std::FILE* const file = std::fopen(File("notes.pdf").c_str(), "wb");
        PdfPaper paper(file, {}, L"Notizen");
        PageLayout layout(notes, {}, {}, [&](std::wstring_view text, const PrintFont& font) {
            return paper.Measure(text, font);
        });
        while (const std::optional<PrintedPage> page = layout.NextPage())
            Require(state, paper.Put(*page), "cannot write");
        Require(state, paper.Finish(), "cannot write");
        std::fclose(file);
    }
}

// The same texts set by Pango, a layout for each note, as many on a page as fit.
void PangoPdf(State& state, int count) {
    const std::vector<Note> notes = SampleNotes(count);
    constexpr double kWidth = 595, kHeight = 842, kMargin = 50;
    for (auto _ : state) {
        cairo_surface_t* const surface = cairo_pdf_surface_create(File("floor.pdf").c_str(), kWidth, kHeight);
        cairo_t* const cairo = cairo_create(surface);
        PangoLayout* const layout = pango_cairo_create_layout(cairo);
        PangoFontDescription* const font = pango_font_description_from_string("Arial 12");
        pango_layout_set_font_description(layout, font);
        pango_layout_set_width(layout, static_cast<int>(kWidth - 2 * kMargin) * PANGO_SCALE);
        double y = kMargin;
        for (const Note& note : notes) {
            pango_layout_set_text(layout, ToUtf8(note.creationTime + L"\n" + note.text).c_str(), -1);
            int width = 0, height = 0;
            pango_layout_get_size(layout, &width, &height);
            if (y + height / double{PANGO_SCALE} > kHeight - kMargin) {
                cairo_show_page(cairo);
                y = kMargin;
            }
            cairo_move_to(cairo, kMargin, y);
            pango_cairo_show_layout(cairo, layout);
            y += height / double{PANGO_SCALE};
        }
        pango_font_description_free(font);
        g_object_unref(layout);
        cairo_destroy(cairo);
        cairo_surface_finish(surface);
        cairo_surface_destroy(surface);
    }
}

// ---- Mail

const std::wstring& Megabyte() {
    static const std::wstring text = [] {
        std::wstring all;
        while (all.size() < 1'000'000) all += L"Milch, Brot und Äpfel holen\r\n";
        return all;
    }();
    return text;
}

void EncodeMail(State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(EncodeMailBody(MailBody({Megabyte()})).size());
}

void CopyMail(State& state) {
    for (auto _ : state) {
        std::wstring copy;
        for (const wchar_t character : Megabyte()) copy += character;
        benchmark::DoNotOptimize(copy.size());
    }
}

// Prints the runs as lines for bench/table.
class Lines : public benchmark::BenchmarkReporter {
  public:
    bool failed = false;
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const std::string name = run.benchmark_name();
            const std::string what = name.substr(0, name.find('/'));
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
                failed = true;
            } else if (run.run_type == Run::RT_Iteration) {
                Figure(what, name.find("/floor") == name.npos ? kKivora : kFloor, "ms",
                       run.GetAdjustedRealTime());
            }
        }
    }
};

template <class Work, class... Numbers>
void Add(const char* what, Work work, Work floor, Numbers... numbers) {
    for (const auto& [function, program] : {std::pair(work, "/Kivora"), std::pair(floor, "/floor")}) {
        if (!function) continue;
        benchmark::RegisterBenchmark((std::string(what) + program).c_str(),
                                     [=, function = function](State& state) { function(state, numbers...); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const User user({});
    Add("one edit of one note to the disk", Save, Commit, 1, 1);
    Add<void (*)(State&, int, int)>("save of 1,000 notes, nothing changed", Save, nullptr, 1000, 0);
    Add("save of 1,000 notes, one changed", Save, Commit, 1000, 1);
    Add("save of 1,000 notes, all changed", Save, Commit, 1000, 1000);
    Add("export of 1,000 notes", Export, WriteBytes, 1000);
    Add("export of 20,000 notes", Export, WriteBytes, 20'000);
    Add("import of 1,000 notes", Import, ReadBytes, 1000);
    Add("import of 20,000 notes", Import, ReadBytes, 20'000);
    Add("PDF of 1,000 notes", PrintPdf, PangoPdf, 1000);
    Add("mail of 1 MB", EncodeMail, CopyMail);
    Lines lines;
    benchmark::RunSpecifiedBenchmarks(&lines);
    return lines.failed ? 1 : 0;
}
