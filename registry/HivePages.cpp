#include "registry/HivePages.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "registry/HiveFile.h"
#include "registry/HivePlace.h"

namespace fs = std::filesystem;

namespace {

// The types of a page of a tree: inner ones refer to others; those of an index (here the values) hold rows
// too.
enum : unsigned char { kIndexInner = 2, kTableInner = 5, kIndexLeaf = 10, kTableLeaf = 13 };

constexpr std::size_t kFileHeader = 100, kSmallestPage = 512, kLargestPage = 65536;

// Bytes that are read from the front; behind the end there are zeros, and `good` is false from then on.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes, std::size_t at = 0)
        : rest_(bytes.substr(std::min(at, bytes.size()))), good(at <= bytes.size()) {}

    std::uint64_t Number(std::size_t size) {
        std::uint64_t number = 0;
        for (const char c : Take(size)) number = number << 8 | static_cast<unsigned char>(c);
        return number;
    }
    // SQLite's numbers of variable length: seven bits a byte, eight in the ninth.
    std::uint64_t Varint() {
        std::uint64_t number = 0;
        for (int i = 0; i < 8; ++i) {
            const auto byte = Number(1);
            number = number << 7 | (byte & 0x7F);
            if (!(byte & 0x80)) return number;
        }
        return number << 8 | Number(1);
    }
    std::string_view Take(std::size_t size) {
        if (size > rest_.size()) good = false;
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(taken.size());
        return taken;
    }
    std::size_t Left() const { return rest_.size(); }

  private:
    std::string_view rest_;

  public:
    bool good;
};

// The pages of a file, those of its log in place of older ones.
class Pages {
  public:
    explicit Pages(const fs::path& file) {
        isReadable = ReadWhole(file, file_);
        isReadable = ReadWhole(Beside(file, "-wal"), log_) && isReadable;
        const bool known = std::string_view(file_).starts_with(std::string_view("SQLite format 3\0", 16));
        Bytes header(file_, 16);
        const std::uint64_t size = header.Number(2);
        size_ = size == 1 ? kLargestPage : size;
        reserved_ = static_cast<std::size_t>((header.Number(2), header.Number(1)));
        isSound = known && header.good && size_ >= kSmallestPage && (size_ & (size_ - 1)) == 0 &&
                  reserved_ == 0 && file_.size() % size_ == 0;
        if (!isSound) {
            size_ = 4096;  // what every hive is made with
            reserved_ = 0;
        }
        count_ = file_.size() / size_;
        ReadLog();
    }

    std::size_t Count() const { return count_; }
    std::size_t Size() const { return size_; }

    // Empty when there is none. Pages count from 1.
    std::string_view Page(std::uint64_t number) const {
        if (const auto logged = logged_.find(number); logged != logged_.end()) return logged->second;
        if (number == 0 || number > file_.size() / size_) return {};
        return std::string_view(file_).substr((number - 1) * size_, size_);
    }

    bool isSound = false, isReadable = false;

  private:
    // Takes the pages of all finished transactions, up to the first that is not as it was written.
    void ReadLog() {
        constexpr std::size_t kLogHeader = 32, kFrameHeader = 24;
        Bytes header(log_);
        const std::uint64_t magic = header.Number(4);
        const bool bigEndian = magic == 0x377F0683;
        if ((!bigEndian && magic != 0x377F0682) || (header.Number(4), header.Number(4)) != size_) return;
        Checksum sum(bigEndian);
        sum.Add(std::string_view(log_).substr(0, 24));
        if (!sum.Is(std::string_view(log_).substr(24, 8))) return;
        const std::string_view salt = std::string_view(log_).substr(16, 8);
        std::map<std::uint64_t, std::string_view> transaction;
        for (std::size_t at = kLogHeader; at + kFrameHeader + size_ <= log_.size();
             at += kFrameHeader + size_) {
            const std::string_view frame = std::string_view(log_).substr(at, kFrameHeader + size_);
            sum.Add(frame.substr(0, 8));
            sum.Add(frame.substr(kFrameHeader));
            if (frame.substr(8, 8) != salt || !sum.Is(frame.substr(16, 8))) return;
            Bytes start(frame);
            transaction[start.Number(4)] = frame.substr(kFrameHeader);
            const std::uint64_t count = start.Number(4);
            if (count == 0) continue;
            for (const auto& [number, page] : transaction) logged_[number] = page;
            transaction.clear();
            count_ = count;
        }
    }

    // SQLite's checksum of the log.
    class Checksum {
      public:
        explicit Checksum(bool bigEndian) : bigEndian_(bigEndian) {}
        void Add(std::string_view bytes) {
            for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8) {
                a_ += Word(bytes.substr(at)) + b_;
                b_ += Word(bytes.substr(at + 4)) + a_;
            }
        }
        bool Is(std::string_view stored) const {
            Bytes bytes(stored);
            const std::uint64_t a = bytes.Number(4), b = bytes.Number(4);
            return bytes.good && a == a_ && b == b_;
        }

      private:
        std::uint32_t Word(std::string_view bytes) const {
            std::uint32_t word = 0;
            for (std::size_t i = 0; i < 4; ++i)
                word = word << 8 | static_cast<unsigned char>(bytes[bigEndian_ ? i : 3 - i]);
            return word;
        }
        bool bigEndian_;
        std::uint32_t a_ = 0, b_ = 0;
    };

    std::string file_, log_;
    std::size_t size_ = 0, reserved_ = 0, count_ = 0;
    std::map<std::uint64_t, std::string_view> logged_;
};

struct Column {
    enum { kNull, kNumber, kBytes } kind = kNull;
    std::int64_t number = 0;
    std::string bytes;
};

struct Row {
    std::int64_t id = 0;  // in a table
    std::vector<Column> columns;
};

std::optional<std::vector<Column>> ColumnsOf(const std::string& record) {
    Bytes header(record);
    const std::uint64_t headerSize = header.Varint();
    if (headerSize > record.size()) return std::nullopt;
    Bytes body(record, headerSize);
    std::vector<Column> columns;
    const std::size_t behindHeader = record.size() - headerSize;
    while (header.good && header.Left() > behindHeader) {
        const std::uint64_t type = header.Varint();
        Column column;
        static constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
        if (type >= 12) {
            column.kind = Column::kBytes;
            column.bytes = body.Take((type - 12) / 2);
        } else if (type >= 10) {
            return std::nullopt;
        } else if (type != 0) {
            column.kind = type == 7 ? Column::kNull : Column::kNumber;
            const std::size_t size = kSizes[type];
            const int unused = static_cast<int>(64 - 8 * size);
            const std::uint64_t number = body.Number(size);
            column.number = size == 0 ? static_cast<std::int64_t>(type) - 8
                                      : static_cast<std::int64_t>(number << unused) >> unused;
        }
        columns.push_back(std::move(column));
    }
    if (!header.good || !body.good) return std::nullopt;
    return columns;
}

// Walks the trees and takes their rows.
class Reader {
  public:
    explicit Reader(const fs::path& file) : pages_(file), seen_(pages_.Count() + 1) {}

    FoundRows Read() {
        std::vector<Row> schema;
        found_.readable = pages_.isReadable;
        found_.whole = Walk(1, schema) && pages_.isSound;
        const struct {
            const char* name;
            bool needed;
            void (Reader::*take)(const Row&);
        } tables[] = {{"registry_key", true, &Reader::TakeKey},
                      {"key_value", true, &Reader::TakeValue},
                      {"key_checksum", false, &Reader::TakeChecksum}};
        for (const auto& table : tables) {
            const std::uint64_t root = RootOf(schema, table.name);
            std::vector<Row> rows;
            const bool isWhole = root ? Walk(root, rows) : !table.needed;
            if (!isWhole) found_.whole = false;
            for (const Row& row : rows) (this->*table.take)(row);
        }
        if (!found_.whole) TakeStrayRows();
        return std::move(found_);
    }

  private:
    static std::uint64_t RootOf(const std::vector<Row>& schema, const char* table) {
        for (const Row& row : schema)
            if (row.columns.size() == 5 && row.columns[0].bytes == "table" && row.columns[1].bytes == table)
                return static_cast<std::uint64_t>(row.columns[3].number);
        return 0;
    }

    // Takes the rows of a tree. False when a page of it is damaged; the rows of the others are there.
    bool Walk(std::uint64_t root, std::vector<Row>& rows) {
        bool good = true;
        std::vector<std::uint64_t> open{root};
        while (!open.empty()) {
            const std::uint64_t number = open.back();
            open.pop_back();
            if (number == 0 || number >= seen_.size() || seen_[number]) {
                good = false;
                continue;
            }
            seen_[number] = true;
            good = ReadPage(number, rows, &open) && good;
        }
        return good;
    }

    // Takes the rows of a page, and the pages below it when `below` is given. False when something of it is
    // damaged.
    bool ReadPage(std::uint64_t number, std::vector<Row>& rows, std::vector<std::uint64_t>* below) {
        const std::string_view page = pages_.Page(number);
        Bytes header(page, number == 1 ? kFileHeader : 0);
        const auto type = static_cast<unsigned char>(header.Number(1));
        const bool isInner = type == kIndexInner || type == kTableInner;
        if (!isInner && type != kIndexLeaf && type != kTableLeaf) return false;
        header.Number(2);
        const std::uint64_t cells = header.Number(2);
        header.Number(3);
        if (isInner && below) below->push_back(header.Number(4));
        bool good = true;
        Bytes pointers(page, (number == 1 ? kFileHeader : 0) + (isInner ? 12 : 8));
        for (std::uint64_t i = 0; i < cells && pointers.Left() >= 2; ++i) {
            Bytes cell(page, pointers.Number(2));
            if (isInner) {
                const std::uint64_t child = cell.Number(4);
                if (below) below->push_back(child);
            }
            if (type == kTableInner) continue;
            Row row;
            const std::uint64_t size = cell.Varint();
            if (type == kTableLeaf) row.id = static_cast<std::int64_t>(cell.Varint());
            const auto record = Payload(cell, size, type == kTableLeaf);
            auto columns = record ? ColumnsOf(*record) : std::nullopt;
            if (!columns) {
                good = false;
                continue;
            }
            row.columns = std::move(*columns);
            rows.push_back(std::move(row));
        }
        return good && pointers.good && header.good;
    }

    // What is stored in a cell, and what does not fit there in a chain of further pages.
    std::optional<std::string> Payload(Bytes& cell, std::uint64_t size, bool inTable) {
        const std::size_t page = pages_.Size();
        if (size > page * pages_.Count()) return std::nullopt;
        const std::size_t most = inTable ? page - 35 : (page - 12) * 64 / 255 - 23;
        const std::size_t least = (page - 12) * 32 / 255 - 23;
        std::size_t local = size;
        if (size > most) {
            local = least + (size - least) % (page - 4);
            if (local > most) local = least;
        }
        std::string payload(cell.Take(local));
        std::uint64_t next = size > local ? cell.Number(4) : 0;
        while (cell.good && payload.size() < size) {
            const std::string_view chained = pages_.Page(next);
            if (chained.empty()) return std::nullopt;
            if (next < seen_.size()) seen_[next] = true;
            Bytes bytes(chained);
            next = bytes.Number(4);
            payload += bytes.Take(std::min<std::size_t>(size - payload.size(), page - 4));
        }
        if (!cell.good) return std::nullopt;
        return payload;
    }

    // From pages that no tree led to; they may be left-overs, so what was found properly stays.
    void TakeStrayRows() {
        for (std::uint64_t number = 1; number < seen_.size(); ++number) {
            if (seen_[number] || IsFree(number)) continue;
            std::vector<Row> rows;
            ReadPage(number, rows, nullptr);
            for (const Row& row : rows) {
                switch (row.columns.size()) {
                    case 2:
                        TakeChecksum(row);
                        break;
                    case 3:
                        TakeKey(row);
                        break;
                    case 4:
                        TakeValue(row);
                        break;
                    default:
                        break;
                }
            }
        }
    }

    bool IsFree(std::uint64_t number) {
        if (free_.empty()) {
            free_.insert(0);
            std::uint64_t trunk = Bytes(pages_.Page(1), 32).Number(4);
            while (trunk != 0 && free_.insert(trunk).second) {
                Bytes page(pages_.Page(trunk));
                trunk = page.Number(4);
                for (std::uint64_t left = page.Number(4); left > 0 && page.Left() >= 4; --left)
                    free_.insert(page.Number(4));
            }
        }
        return free_.contains(number);
    }

    void TakeKey(const Row& row) {
        if (row.columns.size() != 3 || row.columns[2].kind != Column::kBytes) return;
        if (row.columns[1].kind == Column::kNumber)
            found_.keys.try_emplace(row.id, FoundRows::Key{row.columns[1].number, row.columns[2].bytes});
    }

    void TakeValue(const Row& row) {
        if (row.columns.size() != 4 || row.columns[0].kind != Column::kNumber) return;
        const Column& data = row.columns[3];
        const std::string& name = row.columns[1].bytes;
        found_.values[row.columns[0].number].try_emplace(
            name, HiveValue{name, static_cast<std::uint32_t>(row.columns[2].number),
                            data.kind == Column::kNumber ? RegistryBytes(data.number) : data.bytes});
    }

    void TakeChecksum(const Row& row) {
        if (row.columns.size() == 2 && row.columns[1].kind == Column::kNumber)
            found_.checksums.try_emplace(row.id, static_cast<std::uint64_t>(row.columns[1].number));
    }

    Pages pages_;
    std::vector<bool> seen_;
    std::set<std::uint64_t> free_;
    FoundRows found_;
};

}  // namespace

std::unique_ptr<HiveImage> FoundRows::Image() const {
    auto image = std::make_unique<HiveImage>();
    for (const auto& [id, key] : keys) image->LoadKey(id, key.parent, key.name);
    for (const auto& [id, byName] : values)
        for (const auto& [name, value] : byName) image->LoadValue(id, value);
    for (const auto& [id, checksum] : checksums) image->LoadChecksum(id, checksum);
    return image;
}

FoundRows ReadPages(const fs::path& file) { return Reader(file).Read(); }
