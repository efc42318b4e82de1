#include "model/NewPlace.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

// So much of the ground is left between two notes at least, so that they are seen as two.
constexpr int kGap = 6;

// A span of whole cells, the last one excluded.
struct Cells {
    int first = 0, end = 0;
    static Cells Covering(std::int64_t start, std::int64_t end, int count) {
        const auto cell = [count](std::int64_t pixel) {
            return static_cast<int>(std::clamp<std::int64_t>(pixel / kCascadeStep, 0, count));
        };
        return {cell(std::max<std::int64_t>(start, 0)),
                cell(std::max<std::int64_t>(end + kCascadeStep - 1, 0))};
    }
};

// The ground in cells as large as a step, and how much of it is covered.
class Ground {
  public:
    Ground(const PixelRect& area, const std::vector<PixelRect>& others)
        : columns_(std::max(area.width / kCascadeStep, 0)),
          rows_(std::max(area.height / kCascadeStep, 0)),
          sums_(static_cast<std::size_t>(columns_ + 1) * static_cast<std::size_t>(rows_ + 1)) {
        for (const PixelRect& other : others) {
            const std::int64_t x = std::int64_t{other.x} - area.x, y = std::int64_t{other.y} - area.y;
            const Cells across = Cells::Covering(x, x + other.width + kGap, columns_);
            const Cells down = Cells::Covering(y, y + other.height + kGap, rows_);
            // Where a window begins and ends; added up from the upper left, that is how many lie on each
            // cell.
            ++At(across.first, down.first);
            --At(across.end, down.first);
            --At(across.first, down.end);
            ++At(across.end, down.end);
        }
        AddUp();
        // Once more: how much lies on all cells up to each, which stands one cell further then.
        std::vector<std::int64_t> counts = sums_;
        for (int column = 0; column <= columns_; ++column)
            for (int row = 0; row <= rows_; ++row)
                At(column, row) = column && row ? counts[Index(column - 1, row - 1)] : 0;
        AddUp();
    }

    int Columns() const { return columns_; }
    int Rows() const { return rows_; }
    // How many cells, of however many windows, lie below this part.
    std::int64_t Covered(int column, int row, int columns, int rows) const {
        return sums_[Index(column + columns, row + rows)] - sums_[Index(column, row + rows)] -
               sums_[Index(column + columns, row)] + sums_[Index(column, row)];
    }

  private:
    std::size_t Index(int column, int row) const {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_ + 1) +
               static_cast<std::size_t>(row);
    }
    std::int64_t& At(int column, int row) { return sums_[Index(column, row)]; }
    void AddUp() {
        for (int column = 0; column <= columns_; ++column)
            for (int row = 1; row <= rows_; ++row) At(column, row) += At(column, row - 1);
        for (int column = 1; column <= columns_; ++column)
            for (int row = 0; row <= rows_; ++row) At(column, row) += At(column - 1, row);
    }

    int columns_, rows_;
    std::vector<std::int64_t> sums_;
};

int CellsOf(int pixels) { return (pixels + kCascadeStep - 1) / kCascadeStep; }

}  // namespace

PixelPoint NewPlace(const PixelRect& area, const std::vector<PixelRect>& others, int width, int height) {
    const PixelRect room{area.x + kCascadeBegin, area.y + kCascadeBegin, area.width - kCascadeBegin,
                         area.height - kCascadeBegin};
    const Ground ground(room, others);
    const int columns = CellsOf(width), rows = CellsOf(height);
    PixelPoint best{room.x, room.y};
    std::int64_t least = -1;
    for (int column = 0; column + columns <= ground.Columns() && least != 0; ++column) {
        for (int row = 0; row + rows <= ground.Rows() && least != 0; ++row) {
            const std::int64_t covered = ground.Covered(column, row, columns, rows);
            if (least >= 0 && covered >= least) continue;
            least = covered;
            best = {room.x + column * kCascadeStep, room.y + row * kCascadeStep};
        }
    }
    const PixelRect inside = MovedInto(area, {best.x, best.y, width, height});
    return {inside.x, inside.y};
}

PixelRect BesideIcon(const PixelRect& area, const PixelRect& icon, int width, int height) {
    const bool upper = icon.y + icon.height / 2 < area.y + area.height / 2;
    const int y = upper ? icon.Bottom() + kGap : icon.y - kGap - height;
    const PixelRect inner{area.x + kGap, area.y + kGap, area.width - 2 * kGap, area.height - 2 * kGap};
    return MovedInto(inner, {icon.x + (icon.width - width) / 2, y, width, height});
}
