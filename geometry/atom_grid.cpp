#include "geometry/atom_grid.h"

#include <cassert>
#include <iostream>
#include <limits>

namespace kelmo {

namespace {

/// Cells per axis: one more than the extent needs, so that the last atom is inside.
std::uint32_t cellsAlong(double extent, std::int32_t cellSize) {
    const double cells = std::ceil(extent / cellSize) + 1.0;
    return cells < 4294967295.0 ? static_cast<std::uint32_t>(cells) : 4294967295U;
}

/// The whole cells below a position, not more than there are and not less than none.
std::uint32_t clampedCell(double cell, std::uint32_t cells) {
    if (!(cell > 0.0)) {
        return 0;
    }
    return cell < cells ? static_cast<std::uint32_t>(cell) : cells;
}

double squaredDistance(const cResidueAtom& atom, const cCentreGrid::sEntry& entry) {
    const double dx = atom.x - entry.x;
    const double dy = atom.y - entry.y;
    const double dz = atom.z - entry.z;
    return dx * dx + dy * dy + dz * dz;
}

} // namespace

cCentreGrid::cCentreGrid(const cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                         const sPoint& minPoint, unsigned insertCount) {
    layOut(atomCount, maxPoint, minPoint);
    std::vector<sEntry> inserted(insertCount);
    std::transform(atoms, atoms + insertCount, inserted.begin(), entryOf);
    sortIntoCells(std::move(inserted));
}

cCentreGrid::cCentreGrid(std::vector<sEntry> inserted) {
    sPoint maxPoint{inserted[0].x, inserted[0].y, inserted[0].z};
    sPoint minPoint = maxPoint;
    for (const sEntry& entry : inserted) {
        maxPoint = {std::max(maxPoint.x, entry.x), std::max(maxPoint.y, entry.y),
                    std::max(maxPoint.z, entry.z)};
        minPoint = {std::min(minPoint.x, entry.x), std::min(minPoint.y, entry.y),
                    std::min(minPoint.z, entry.z)};
    }
    layOut(static_cast<unsigned>(inserted.size()), maxPoint, minPoint);
    sortIntoCells(std::move(inserted));
}

cAtomGrid::cAtomGrid(const cResidueAtom* atoms, unsigned atomCount, sPoint maxPoint,
                     sPoint minPoint, int insertCount)
    : cCentreGrid(atoms, atomCount, maxPoint, minPoint,
                  insertCount == -1 ? atomCount : static_cast<unsigned>(insertCount)),
      copies(atoms, atoms + entriesInCellOrder().size()) {}

void cCentreGrid::layOut(unsigned atomCount, const sPoint& maxPoint, const sPoint& minPoint) {
    offsetX = -minPoint.x;
    offsetY = -minPoint.y;
    offsetZ = -minPoint.z;
    const double dx = std::abs(maxPoint.x - minPoint.x);
    const double dy = std::abs(maxPoint.y - minPoint.y);
    const double dz = std::abs(maxPoint.z - minPoint.z);
    const double volumePerAtom = dx * dy * dz / atomCount;
    constexpr std::int32_t largestCell = 1 << 30;
    while (cellSize < largestCell && volumePerAtom > std::pow(cellSize, 3.0)) {
        cellSize *= 2;
    }
    cellsX = cellsAlong(dx, cellSize);
    cellsY = cellsAlong(dy, cellSize);
    cellsZ = cellsAlong(dz, cellSize);
    cellCount = cellsX * cellsY * cellsZ;
}

cCentreGrid::sEntry cCentreGrid::entryOf(const cResidueAtom& atom) {
    return {atom.x, atom.y, atom.z, atom.radius, atom.zMax, atom.zMin, 0};
}

std::vector<cCentreGrid::sEntry> cCentreGrid::insertedEntries() const {
    std::vector<sEntry> inserted(entries.size());
    for (const sEntry& entry : entries) {
        inserted[entry.index] = entry;
    }
    return inserted;
}

cCentreGrid::sCell cCentreGrid::cellOf(const sEntry& entry) const {
    const double scale = cellsPerAngstrom();
    const auto cell = [scale](double relative, std::uint32_t cells) {
        return std::min(clampedCell(relative * scale, cells), cells - 1);
    };
    return {cell(entry.x + offsetX, cellsX), cell(entry.y + offsetY, cellsY),
            cell(entry.z + offsetZ, cellsZ)};
}

std::uint64_t cCentreGrid::cellKeyOf(const sEntry& entry) const {
    const sCell cell = cellOf(entry);
    return cellKey(cell.x, cell.y, cell.z);
}

bool cCentreGrid::isInBox(const sEntry& entry, const sCellBox& box) const {
    const sCell cell = cellOf(entry);
    return cell.x >= box.loX && cell.x < box.hiX && cell.y >= box.loY && cell.y < box.hiY &&
           cell.z >= box.loZ && cell.z < box.hiZ;
}

void cCentreGrid::sortIntoCells(std::vector<sEntry> inserted) {
    cellBegins.clear();
    keys.clear();
    for (std::size_t i = 0; i < inserted.size(); ++i) {
        inserted[i].index = static_cast<std::uint32_t>(i);
    }
    entries.resize(inserted.size());
    const double cells = static_cast<double>(cellsX) * cellsY * cellsZ;
    const auto atoms = static_cast<double>(inserted.size());
    // A table of the cells is not to cost more than its atoms, however many grids there are.
    if (cells <= 4.0 * atoms + std::min(4096.0, 64.0 * atoms)) {
        sortDense(inserted);
    } else {
        sortSparse(inserted);
    }
    fillColumns();
}

void cCentreGrid::fillColumns() {
    for (auto* column : {&columns.x, &columns.y, &columns.z, &columns.radius}) {
        column->resize(entries.size() + widestVector);
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        columns.x[i] = entries[i].x;
        columns.y[i] = entries[i].y;
        columns.z[i] = entries[i].z;
        columns.radius[i] = entries[i].radius;
    }
}

void cCentreGrid::sortDense(const std::vector<sEntry>& inserted) {
    const std::size_t cells = static_cast<std::size_t>(cellsX) * cellsY * cellsZ;
    cellBegins.assign(cells + 2, 0);
    std::vector<std::uint32_t> cellOfEntry(inserted.size());
    for (std::size_t i = 0; i < inserted.size(); ++i) {
        const std::uint64_t cell = cellKeyOf(inserted[i]);
        cellOfEntry[i] = static_cast<std::uint32_t>(cell);
        ++cellBegins[cell + 2];
    }
    for (std::size_t cell = 2; cell < cells + 2; ++cell) {
        cellBegins[cell] += cellBegins[cell - 1];
    }
    // Backwards, because the last inserted atom of a cell comes first. Placing an entry moves its
    // cell's slot one on, so that in the end slot c + 1 holds the end of cell c.
    for (std::size_t i = inserted.size(); i > 0; --i) {
        entries[cellBegins[cellOfEntry[i - 1] + 1]++] = inserted[i - 1];
    }
    cellBegins.pop_back();
}

void cCentreGrid::sortSparse(const std::vector<sEntry>& inserted) {
    std::vector<std::pair<std::uint64_t, std::uint32_t>> order;
    order.reserve(inserted.size());
    for (const sEntry& entry : inserted) {
        order.emplace_back(cellKeyOf(entry), entry.index);
    }
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : a.second > b.second;
    });
    keys.reserve(order.size());
    entries.clear();
    for (const auto& [key, index] : order) {
        keys.push_back(key);
        entries.push_back(inserted[index]);
    }
}

unsigned cCentreGrid::getGridIndex(double x, double y, double z) const {
    const auto cell = [this](double relative) {
        return static_cast<std::uint32_t>(
            static_cast<std::int64_t>(std::floor(relative / cellSize)));
    };
    return (cell(x) * cellsY + cell(y)) * cellsZ + cell(z);
}

void cAtomGrid::insertAtom(const cResidueAtom& atom) {
    std::vector<sEntry> inserted = insertedEntries();
    inserted.push_back(entryOf(atom));
    copies.push_back(atom);
    sortIntoCells(std::move(inserted));
}

bool cAtomGrid::findAtom(double x, double y, double z, cResidueAtom& out) const {
    const auto cell = [this](double relative) {
        return static_cast<double>(static_cast<std::int64_t>(relative / cellSize));
    };
    const unsigned index = getGridIndex(cell(x + offsetX), cell(y + offsetY), cell(z + offsetZ));
    const std::vector<sEntry>& sorted = entriesInCellOrder();
    for (std::size_t i = firstEntryAt(std::min<std::uint64_t>(index, cellCount));
         i < sorted.size() && cellKeyOf(sorted[i]) == index; ++i) {
        if (sorted[i].x == x && sorted[i].y == y && sorted[i].z == z) {
            out = copies[sorted[i].index];
            return true;
        }
    }
    return false;
}

cCentreGrid::sCellBox cCentreGrid::cellsAround(double x, double y, double z, double reach) const {
    const double scale = cellsPerAngstrom();
    const auto low = [&](double relative, std::uint32_t cells) {
        return clampedCell((relative - reach) * scale, cells);
    };
    const auto high = [&](double relative, std::uint32_t cells) {
        const double end = (relative + reach) * scale;
        const std::uint32_t cell = clampedCell(end, cells);
        return cell < cells && cell < end ? cell + 1 : cell;
    };
    const double px = x + offsetX;
    const double py = y + offsetY;
    const double pz = z + offsetZ;
    return {low(px, cellsX),  low(py, cellsY),  low(pz, cellsZ),
            high(px, cellsX), high(py, cellsY), high(pz, cellsZ)};
}

unsigned cAtomGrid::getNeighboursInRangeByRadius(const cResidueAtom& atom, double enlargement,
                                                 double maxRadius, cResidueAtom* out,
                                                 [[maybe_unused]] std::size_t capacity) const {
    unsigned count = 0;
    forEachInRangeByRadius(atom, enlargement, maxRadius, [&](const sEntry& entry) {
        assert(count < capacity);
        out[count++] = atomOf(entry);
    });
    return count;
}

unsigned cAtomGrid::getNeighboursInRangeByCenter(const cResidueAtom& atom, double range,
                                                 cResidueAtom* out,
                                                 [[maybe_unused]] std::size_t capacity) const {
    unsigned count = 0;
    forEachInRangeByCenter(atom, range, [&](const sEntry& entry) {
        assert(count < capacity);
        out[count++] = atomOf(entry);
    });
    return count;
}

const cCentreGrid::sEntry* cCentreGrid::nearest(const cResidueAtom& atom, double* distance) const {
    const sEntry* best = nullptr;
    double bestSquared = std::numeric_limits<double>::infinity();
    // Boxes of growing reach; beyond the extent of the grid a further step cannot find more.
    for (double reach = cellSize;; reach *= 2.0) {
        const sCellBox box = cellsAround(atom.x, atom.y, atom.z, reach);
        forEachRun(box, [&](const sEntry* first, const sEntry* last) {
            for (; first != last; ++first) {
                const double squared = squaredDistance(atom, *first);
                if (squared < bestSquared && squared > 0.0) {
                    bestSquared = squared;
                    best = first;
                }
            }
        });
        const bool coversGrid = box.loX == 0 && box.loY == 0 && box.loZ == 0 && box.hiX == cellsX &&
                                box.hiY == cellsY && box.hiZ == cellsZ;
        // A little less than the reach, so that rounding at the rim of the box cannot matter.
        if (std::sqrt(bestSquared) <= 0.999 * reach || coversGrid) {
            break;
        }
    }
    if (best != nullptr) {
        *distance = centreDistance(atom, *best);
    }
    return best;
}

void cAtomGrid::printGrid() const {
    for (const sEntry& entry : entriesInCellOrder()) {
        std::cout << atomOf(entry).serial;
    }
}

} // namespace kelmo
