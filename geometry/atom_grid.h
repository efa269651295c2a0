// A uniform cubic grid over a set of atoms for neighbour queries in time proportional to density.
#pragma once

#include "base/exported.h"
#include "model/residue_atom.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace KELMO_API kelmo {

/// Widest vector that any instruction set has, in doubles.
constexpr std::size_t widestVector = 8;

/// Centres and radii cell by cell, x slowest and z fastest, within a cell the last inserted first;
/// every query visits them in this order, called query order here. Building costs O(n log n) at
/// worst, memory O(n) whatever the extent of the atoms. Queries may run at the same time.
class cCentreGrid {
  public:
    /// What the calculations need of an atom, packed for scanning. Å throughout.
    struct sEntry {
        double x;            ///< of the centre
        double y;            ///< of the centre
        double z;            ///< of the centre
        double radius;       ///< without probe
        double zMax;         ///< z + radius
        double zMin;         ///< z - radius
        std::uint32_t index; ///< position in the order of insertion
    };

    /// Centres and radii in one array per quantity, in cell order, with room behind the last atom
    /// for a whole vector to be loaded from any of them. Å throughout.
    struct sColumns {
        std::vector<double> x;      ///< of the centres
        std::vector<double> y;      ///< of the centres
        std::vector<double> z;      ///< of the centres
        std::vector<double> radius; ///< without probe
    };

    /// A half-open box of cells.
    struct sCellBox {
        ///@{
        /// First cell along an axis.
        std::uint32_t loX, loY, loZ;
        ///@}
        ///@{
        /// The cell behind the last one along an axis.
        std::uint32_t hiX, hiY, hiZ;
        ///@}
        /// Whether no cell is in it.
        bool isEmpty() const { return hiX <= loX || hiY <= loY || hiZ <= loZ; }
        /// The number of its cells.
        double volume() const {
            return isEmpty() ? 0.0
                             : static_cast<double>(hiX - loX) * static_cast<double>(hiY - loY) *
                                   static_cast<double>(hiZ - loZ);
        }
    };

    /// The corners are those of the centres' bounding box, the maximum first. The cell size follows
    /// `atomCount`; only the first `insertCount` atoms are inserted.
    cCentreGrid(const cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                const sPoint& minPoint, unsigned insertCount);
    /// A grid of at least one entry, over the bounding box of their centres; their `index` is set
    /// to their order.
    explicit cCentreGrid(std::vector<sEntry> inserted);
    cCentreGrid(const cCentreGrid&) = delete;
    cCentreGrid& operator=(const cCentreGrid&) = delete;

    /// What an entry holds of an atom.
    static sEntry entryOf(const cResidueAtom& atom);

    /// Index of the cell of a point given relative to the minimum corner.
    unsigned getGridIndex(double x, double y, double z) const;

    /// The cells that a query around a point looks at, `reach` Å to each side.
    sCellBox cellsAround(double x, double y, double z, double reach) const;

    /// Calls `visit(first, last)` for every run of entries of the box that lie together in memory,
    /// in query order.
    template <typename Visit>
    void forEachRun(const sCellBox& box, Visit visit) const;

    /// Calls `visit(entry)` for every entry whose centre lies within `range` Å of the atom's, other
    /// than at it, in query order.
    template <typename Visit>
    void forEachInRangeByCenter(const cResidueAtom& atom, double range, Visit visit) const;
    /// Calls `visit(entry)`, in query order, for every entry whose sphere intersects the atom's
    /// when both are enlarged by `enlargement` Å, other than at its very place. The cells searched
    /// reach `enlargement` + 2 `maxRadius` + 1 Å from the atom; neighbours in other cells are not
    /// found.
    template <typename Visit>
    void forEachInRangeByRadius(const cResidueAtom& atom, double enlargement, double maxRadius,
                                Visit visit) const;

    /// The entry nearest to the atom, other than at its very place; null when there is none.
    const sEntry* nearest(const cResidueAtom& atom, double* distance) const;

    /// All entries, in the order of queries.
    const std::vector<sEntry>& entriesInCellOrder() const { return entries; }
    /// What entriesInCellOrder() holds, one array per quantity.
    const sColumns& columnsInCellOrder() const { return columns; }

    std::uint32_t cellCount = 0; ///< product of the three numbers of cells, modulo 2^32
    std::int32_t cellSize = 1;   ///< edge of a cell in Å, a power of two
    std::uint32_t cellsX = 0;    ///< cells along x
    std::uint32_t cellsY = 0;    ///< cells along y
    std::uint32_t cellsZ = 0;    ///< cells along z
    double offsetX = 0.0;        ///< negated minimum corner, Å
    double offsetY = 0.0;        ///< negated minimum corner, Å
    double offsetZ = 0.0;        ///< negated minimum corner, Å

  protected:
    /// The entries in order of insertion.
    std::vector<sEntry> insertedEntries() const;
    /// Replaces all entries; `index` is set to their order here.
    void sortIntoCells(std::vector<sEntry> inserted);
    /// Number of the entry's cell, z running fastest.
    std::uint64_t cellKeyOf(const sEntry& entry) const;
    /// Position of the first entry whose cell key is not below `key`.
    std::size_t firstEntryAt(std::uint64_t key) const;

  private:
    std::uint64_t cellKey(std::uint32_t ix, std::uint32_t iy, std::uint32_t iz) const {
        return (static_cast<std::uint64_t>(ix) * cellsY + iy) * cellsZ + iz;
    }
    struct sCell {
        std::uint32_t x, y, z;
    };
    void layOut(unsigned atomCount, const sPoint& maxPoint, const sPoint& minPoint);
    sCell cellOf(const sEntry& entry) const;
    bool isInBox(const sEntry& entry, const sCellBox& box) const;
    void sortDense(const std::vector<sEntry>& inserted);
    void sortSparse(const std::vector<sEntry>& inserted);
    double cellsPerAngstrom() const { return 1.0 / cellSize; } // exact: a power of two
    void fillColumns();

    std::vector<sEntry> entries; // in cell order
    sColumns columns;
    // Where each cell begins, while the box has not many more cells than atoms; otherwise empty,
    // and cells are searched in `keys`, so that a few far-flung atoms never ask for memory by
    // volume.
    std::vector<std::uint32_t> cellBegins;
    std::vector<std::uint64_t> keys;
};

/// The grid with copies of its atoms, so that the array that it was built from may be written to
/// while the grid lives.
class cAtomGrid : public cCentreGrid {
  public:
    /// Corners and counts as for a cCentreGrid, but -1 inserts all `atomCount` atoms.
    cAtomGrid(const cResidueAtom* atoms, unsigned atomCount, sPoint maxPoint, sPoint minPoint,
              int insertCount);

    /// Adds a copy of the atom, which must lie within the bounding box. Costs O(n); not to be mixed
    /// with queries of other threads.
    void insertAtom(const cResidueAtom& atom);

    /// Looks an atom up by its exact coordinates. The cell is computed by dividing by the cell size
    /// twice, so atoms beyond the first cells are found only while the cell size is 1.
    bool findAtom(double x, double y, double z, cResidueAtom& out) const;

    /// Copies what forEachInRangeByRadius() visits to `out`, which must have room for it, and
    /// returns the number of atoms.
    unsigned getNeighboursInRangeByRadius(const cResidueAtom& atom, double enlargement,
                                          double maxRadius, cResidueAtom* out,
                                          std::size_t capacity = SIZE_MAX) const;
    /// Copies what forEachInRangeByCenter() visits to `out`, which must have room for it, and
    /// returns the number of atoms.
    unsigned getNeighboursInRangeByCenter(const cResidueAtom& atom, double range, cResidueAtom* out,
                                          std::size_t capacity = SIZE_MAX) const;

    /// The copy of the atom that an entry of this grid was made from.
    const cResidueAtom& atomOf(const sEntry& entry) const { return copies[entry.index]; }

    /// Writes the serial of every atom to standard output, in cell order, without separators.
    void printGrid() const;

  private:
    std::vector<cResidueAtom> copies; // in order of insertion
};

inline std::size_t cCentreGrid::firstEntryAt(std::uint64_t key) const {
    if (!cellBegins.empty()) {
        return cellBegins[key];
    }
    return static_cast<std::size_t>(std::lower_bound(keys.begin(), keys.end(), key) - keys.begin());
}

template <typename Visit>
void cCentreGrid::forEachRun(const sCellBox& box, Visit visit) const {
    if (box.isEmpty()) {
        return;
    }
    const double cellColumns =
        static_cast<double>(box.hiX - box.loX) * static_cast<double>(box.hiY - box.loY);
    if (cellColumns > static_cast<double>(entries.size()) + 64.0) {
        // A box with more columns than atoms: asking every atom is cheaper than every column.
        for (const sEntry& entry : entries) {
            if (isInBox(entry, box)) {
                visit(&entry, &entry + 1);
            }
        }
        return;
    }
    for (std::uint32_t ix = box.loX; ix < box.hiX; ++ix) {
        for (std::uint32_t iy = box.loY; iy < box.hiY; ++iy) {
            // Cells along z follow each other, so a column of cells is one run of entries.
            const std::uint64_t firstKey = cellKey(ix, iy, box.loZ);
            const std::size_t first = firstEntryAt(firstKey);
            const std::size_t last = firstEntryAt(firstKey + (box.hiZ - box.loZ));
            if (first < last) {
                visit(entries.data() + first, entries.data() + last);
            }
        }
    }
}

/// Distance of the centres, Å.
inline double centreDistance(const cResidueAtom& atom, const cCentreGrid::sEntry& entry) {
    const double dx = atom.x - entry.x;
    const double dy = atom.y - entry.y;
    const double dz = atom.z - entry.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

template <typename Visit>
void cCentreGrid::forEachInRangeByCenter(const cResidueAtom& atom, double range,
                                         Visit visit) const {
    forEachRun(cellsAround(atom.x, atom.y, atom.z, range + 1.0),
               [&](const sEntry* first, const sEntry* last) {
                   for (; first != last; ++first) {
                       const double distance = centreDistance(atom, *first);
                       if (range >= distance && distance != 0.0) {
                           visit(*first);
                       }
                   }
               });
}

template <typename Visit>
void cCentreGrid::forEachInRangeByRadius(const cResidueAtom& atom, double enlargement,
                                         double maxRadius, Visit visit) const {
    forEachRun(cellsAround(atom.x, atom.y, atom.z, enlargement + 2.0 * maxRadius + 1.0),
               [&](const sEntry* first, const sEntry* last) {
                   for (; first != last; ++first) {
                       const double distance = centreDistance(atom, *first);
                       if (atom.radius + enlargement + first->radius + enlargement >= distance &&
                           distance != 0.0) {
                           visit(*first);
                       }
                   }
               });
}

} // namespace kelmo
