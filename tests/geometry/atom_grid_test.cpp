// The atom grid against a plain list of cells: results, order, and the box of cells that is
// searched.
#include "geometry/atom_grid.h"
#include "tests/geometry/atom_clouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

namespace kelmo {

namespace {

using tSerials = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();

cAtomGrid gridOf(const tAtoms& atoms) {
    const sCorners box(atoms);
    return {atoms.data(), static_cast<unsigned>(atoms.size()), box.maxPoint, box.minPoint, -1};
}

tSerials serialsOf(const cResidueAtom* atoms, unsigned count) {
    tSerials serials;
    for (unsigned i = 0; i < count; ++i) {
        serials.push_back(atoms[i].serial);
    }
    return serials;
}

tSerials byCenter(const cAtomGrid& grid, const cResidueAtom& query, double range,
                  std::size_t room = 2000) {
    tAtoms out(room);
    return serialsOf(out.data(), grid.getNeighboursInRangeByCenter(query, range, out.data(), room));
}

tSerials byRadius(const cAtomGrid& grid, const cResidueAtom& query, double enlargement,
                  double maxRadius, std::size_t room = 2000) {
    tAtoms out(room);
    return serialsOf(out.data(), grid.getNeighboursInRangeByRadius(query, enlargement, maxRadius,
                                                                   out.data(), room));
}

/// The same grid as a list of atoms with their cells, asked one by one.
class cListedCells {
  public:
    explicit cListedCells(const tAtoms& allAtoms) : atoms(allAtoms), box(allAtoms) {
        const std::array<double, 3> extents{std::abs(box.maxPoint.x - box.minPoint.x),
                                            std::abs(box.maxPoint.y - box.minPoint.y),
                                            std::abs(box.maxPoint.z - box.minPoint.z)};
        const double volume =
            extents[0] * extents[1] * extents[2] / static_cast<double>(atoms.size());
        while (volume > cellSize * cellSize * cellSize) {
            cellSize *= 2.0;
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            cells[axis] = std::ceil(extents[axis] / cellSize) + 1.0;
        }
        for (std::size_t i = 0; i < atoms.size(); ++i) {
            const auto relative = relativePosition(atoms[i]);
            order.emplace_back(std::floor(relative[0] / cellSize),
                               std::floor(relative[1] / cellSize),
                               std::floor(relative[2] / cellSize), -static_cast<double>(i));
        }
        std::sort(order.begin(), order.end());
    }

    template <typename Accept>
    tSerials search(const cResidueAtom& query, double reach, Accept accept) const {
        const auto relative = relativePosition(query);
        std::array<double, 3> low{};
        std::array<double, 3> high{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            high[axis] = std::min(cells[axis], std::ceil((relative[axis] + reach) / cellSize));
            const double quotient = (relative[axis] - reach) / cellSize;
            low[axis] = quotient >= 0.0 ? std::trunc(quotient) : 0.0;
        }
        tSerials found;
        for (const auto& [ix, iy, iz, minusIndex] : order) {
            const cResidueAtom& atom = atoms[static_cast<std::size_t>(-minusIndex)];
            if (ix >= low[0] && ix < high[0] && iy >= low[1] && iy < high[1] && iz >= low[2] &&
                iz < high[2] && accept(atom)) {
                found.push_back(atom.serial);
            }
        }
        return found;
    }

    tSerials byCenter(const cResidueAtom& query, double range) const {
        return search(query, range + 1.0, [&](const cResidueAtom& atom) {
            return query.isInRangeByCenter(atom, range);
        });
    }
    tSerials byRadius(const cResidueAtom& query, double enlargement, double maxRadius) const {
        return search(query, enlargement + 2.0 * maxRadius + 1.0, [&](const cResidueAtom& atom) {
            return query.doesIntersect(atom, enlargement);
        });
    }
    tSerials everything() const {
        return search(atoms[0], infinity, [](const cResidueAtom&) { return true; });
    }

    double cellSize = 1.0;
    std::array<double, 3> cells{};

  private:
    std::array<double, 3> relativePosition(const cResidueAtom& atom) const {
        return {atom.x + -box.minPoint.x, atom.y + -box.minPoint.y, atom.z + -box.minPoint.z};
    }

    const tAtoms& atoms;
    sCorners box;
    std::vector<std::tuple<double, double, double, double>> order;
};

/// Clouds of every shape: dense, sparse, planar, collinear, with far-flung and coincident atoms.
std::vector<tAtoms> cloudsOfEveryShape() {
    const std::vector<double> radii{0.0, 1.4, 1.75, 2.0, 3.5};
    std::vector<tAtoms> clouds{randomCloud(1, 1, 10.0),
                               randomCloud(2, 500, 6.0, radii),
                               randomCloud(3, 1000, 20.0, radii),
                               randomCloud(4, 300, 40.0, radii),
                               randomCloud(5, 60, 200.0, radii),
                               randomCloud(6, 400, sPoint{30.0, 25.0, 0.0}, radii),
                               randomCloud(7, 400, sPoint{0.0, 25.0, 60.0}, radii),
                               randomCloud(8, 300, sPoint{0.0, 0.0, 300.0}, radii),
                               randomCloud(9, 300, sPoint{300.0, 0.0, 0.0}, radii),
                               randomCloud(10, 300, sPoint{3.0, 1000.0, 0.5}, radii)};
    cRandom random(11);
    tAtoms lattice;
    tAtoms farAway = randomCloud(12, 300, 20.0, radii);
    for (unsigned i = 0; i < 400; ++i) {
        lattice.emplace_back("CA", std::to_string(i), random.below(12), random.below(12),
                             random.below(12), 0.5 * random.below(5));
    }
    for (const double place : {-5000.0, 7000.0, 100000.0}) {
        farAway.emplace_back("CA", std::to_string(farAway.size()), place, place, -place, 1.5);
    }
    for (cResidueAtom& atom : clouds[2]) {
        atom = {atom.atomName,  atom.serial,  atom.x - 50.0,
                atom.y + 7.125, atom.z - 9.7, atom.radius};
    }
    clouds.push_back(lattice);
    clouds.push_back(farAway);
    return clouds;
}

/// Some atoms of the cloud and some points beside and far outside it.
tAtoms queriesFor(const tAtoms& cloud) {
    cRandom random(100);
    tAtoms queries;
    const sCorners box(cloud);
    for (int i = 0; i < 25; ++i) {
        queries.push_back(cloud[random.below(static_cast<unsigned>(cloud.size()))]);
        queries.emplace_back("CA", "query",
                             random.between(box.minPoint.x - 9.0, box.maxPoint.x + 9.0),
                             random.between(box.minPoint.y - 9.0, box.maxPoint.y + 9.0),
                             random.between(box.minPoint.z - 9.0, box.maxPoint.z + 9.0), 1.5);
    }
    queries.emplace_back("CA", "far", box.maxPoint.x + 1e6, box.minPoint.y, box.minPoint.z, 1.5);
    queries.emplace_back("CA", "far", box.maxPoint.x, box.minPoint.y - 1e6, box.minPoint.z, 1.5);
    queries.emplace_back("CA", "far", box.maxPoint.x, box.minPoint.y, box.maxPoint.z + 1e6, 1.5);
    queries.emplace_back("CA", "huge", box.minPoint.x, box.minPoint.y, box.minPoint.z, 50.0);
    return queries;
}

// Layout

TEST(AtomGrid, ThousandAtomsInTwentyAngstromsGetElevenCellsOfTwo) {
    const tAtoms atoms = randomCloud(1, 1000, 20.0);
    const cAtomGrid grid(atoms.data(), 1000, sPoint{20.0, 20.0, 20.0}, sPoint{0.0, 0.0, 0.0}, -1);
    EXPECT_EQ(grid.cellSize, 2) << "a volume per atom of exactly 8 does not exceed 8";
    EXPECT_EQ(grid.cellsX, 11U);
    EXPECT_EQ(grid.cellsY, 11U);
    EXPECT_EQ(grid.cellsZ, 11U);
    EXPECT_EQ(grid.cellCount, 1331U);
}

TEST(AtomGrid, CellEdgeDoublesWhenTheVolumePerAtomExceedsTheCell) {
    const tAtoms atoms = randomCloud(1, 1000, 20.0);
    const cAtomGrid grid(atoms.data(), 1000, sPoint{20.0, 20.001, 20.0}, sPoint{}, -1);
    EXPECT_EQ(grid.cellSize, 4);
    EXPECT_EQ(grid.cellsX, 6U);
    EXPECT_EQ(grid.cellsY, 7U);
    EXPECT_EQ(grid.cellCount, 6U * 7U * 6U);
    const cAtomGrid small(atoms.data(), 1000, sPoint{10.0, 10.0, 10.0}, sPoint{}, 0);
    EXPECT_EQ(small.cellSize, 1);
    EXPECT_EQ(small.cellsX, 11U);
}

TEST(AtomGrid, OffsetsAreTheNegatedMinimumCorner) {
    const tAtoms atoms{atomAt(-3.5, 2.25, 7.0), atomAt(5.0, 9.0, 8.5)};
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_EQ(grid.offsetX, 3.5);
    EXPECT_EQ(grid.offsetY, -2.25);
    EXPECT_EQ(grid.offsetZ, -7.0);
}

TEST(AtomGrid, FlatBoxKeepsCellsOfOne) {
    const tAtoms planar = randomCloud(3, 10, sPoint{1000.0, 1000.0, 0.0}, {1.5});
    const cAtomGrid grid = gridOf(planar);
    EXPECT_EQ(grid.cellSize, 1);
    EXPECT_EQ(grid.cellsZ, 1U);
}

TEST(AtomGrid, AtomsAtOnePointShareOneCellAndFindNothing) {
    const tAtoms atoms(50, atomAt(1.5, -2.0, 3.0));
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_EQ(grid.cellSize, 1);
    EXPECT_EQ(grid.cellCount, 1U);
    EXPECT_TRUE(byCenter(grid, atoms[7], 100.0).empty());
    EXPECT_TRUE(byRadius(grid, atoms[7], 100.0, 2.0).empty());
    EXPECT_EQ(byCenter(grid, atomAt(1.5, -2.0, 3.5), 1.0).size(), 50U);
}

TEST(AtomGrid, CellSizeFollowsTheFullCountWhenFewerAreInserted) {
    const tAtoms atoms = randomCloud(1, 1000, 20.0);
    const cAtomGrid grid(atoms.data(), 1000, sPoint{20.0, 20.0, 20.0}, sPoint{}, 10);
    EXPECT_EQ(grid.cellSize, 2);
    EXPECT_EQ(grid.entriesInCellOrder().size(), 10U);
    tSerials found = byCenter(grid, atomAt(-1.0, 10.0, 10.0), 100.0);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (tSerials{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
    const cAtomGrid empty(atoms.data(), 1000, sPoint{20.0, 20.0, 20.0}, sPoint{}, 0);
    EXPECT_EQ(empty.cellSize, 2);
    EXPECT_TRUE(byCenter(empty, atoms[0], 100.0).empty());
}

TEST(AtomGrid, NoAtomsMakeAGridThatFindsNothing) {
    const cAtomGrid grid(nullptr, 0, sPoint{}, sPoint{}, -1);
    double distance = -1.0;
    EXPECT_TRUE(byCenter(grid, atomAt(0, 0, 0), 10.0).empty());
    EXPECT_EQ(grid.nearest(atomAt(0, 0, 0), &distance), nullptr);
}

TEST(AtomGrid, CellIndexRunsSlowestAlongX) {
    const tAtoms atoms = randomCloud(1, 100, sPoint{20.0, 30.0, 40.0}, {1.5});
    const cAtomGrid grid(atoms.data(), 100, sPoint{20.0, 30.0, 40.0}, sPoint{}, -1);
    ASSERT_EQ(grid.cellSize, 8); // 240 Å³ for every atom
    ASSERT_EQ(grid.cellsX, 4U);
    ASSERT_EQ(grid.cellsY, 5U);
    ASSERT_EQ(grid.cellsZ, 6U);
    EXPECT_EQ(grid.getGridIndex(0.0, 0.0, 0.0), 0U);
    EXPECT_EQ(grid.getGridIndex(7.999, 7.999, 7.999), 0U);
    EXPECT_EQ(grid.getGridIndex(0.0, 0.0, 8.0), 1U);
    EXPECT_EQ(grid.getGridIndex(0.0, 8.0, 0.0), 6U);
    EXPECT_EQ(grid.getGridIndex(8.0, 0.0, 0.0), 30U);
    EXPECT_EQ(grid.getGridIndex(20.0, 30.0, 40.0), (2U * 5U + 3U) * 6U + 5U);
}

TEST(AtomGrid, LayoutIsThatOfTheListedCells) {
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        const cListedCells listed(cloud);
        EXPECT_EQ(grid.cellSize, listed.cellSize);
        EXPECT_EQ(grid.cellsX, listed.cells[0]);
        EXPECT_EQ(grid.cellsY, listed.cells[1]);
        EXPECT_EQ(grid.cellsZ, listed.cells[2]);
    }
}

TEST(AtomGrid, AtomsStandInCellOrderTheLastInsertedFirst) {
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        tSerials serials;
        for (const cAtomGrid::sEntry& entry : grid.entriesInCellOrder()) {
            serials.push_back(grid.atomOf(entry).serial);
        }
        EXPECT_EQ(serials, cListedCells(cloud).everything());
    }
}

TEST(AtomGrid, ColumnsHoldWhatTheEntriesHold) {
    const tAtoms cloud = randomCloud(5, 333, 20.0);
    const cAtomGrid grid = gridOf(cloud);
    const auto& entries = grid.entriesInCellOrder();
    const cAtomGrid::sColumns& columns = grid.columnsInCellOrder();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(columns.x[i], entries[i].x);
        EXPECT_EQ(columns.y[i], entries[i].y);
        EXPECT_EQ(columns.z[i], entries[i].z);
        EXPECT_EQ(columns.radius[i], entries[i].radius);
    }
    EXPECT_GE(columns.radius.size(), entries.size() + 8U) << "room for a whole vector";
}

TEST(AtomGrid, CentreGridHasTheSameOrder) {
    const tAtoms cloud = randomCloud(6, 300, 20.0);
    const sCorners box(cloud);
    const cCentreGrid centres(cloud.data(), 300, box.maxPoint, box.minPoint, 300);
    const cAtomGrid grid = gridOf(cloud);
    ASSERT_EQ(centres.entriesInCellOrder().size(), 300U);
    for (std::size_t i = 0; i < 300; ++i) {
        EXPECT_EQ(centres.entriesInCellOrder()[i].index, grid.entriesInCellOrder()[i].index);
    }
}

// Copies

TEST(AtomGrid, AtomsMayBeOverwrittenWhileTheGridLives) {
    tAtoms atoms{atomAt(0, 0, 0), {"CB", "7", 1.0, 0.0, 0.0, 1.7}};
    cChainResidue* const residue = reinterpret_cast<cChainResidue*>(atoms.data()); // not followed
    atoms[1].asa = 3.0;
    atoms[1].depthIndex = 4.0;
    atoms[1].residue = residue;
    const cAtomGrid grid = gridOf(atoms);
    const cResidueAtom query = atoms[0];
    for (cResidueAtom& atom : atoms) {
        atom = cResidueAtom("X", "gone", 50.0, 50.0, 50.0, 9.0);
    }
    tAtoms out(2);
    ASSERT_EQ(grid.getNeighboursInRangeByCenter(query, 2.0, out.data()), 1U);
    EXPECT_EQ(out[0].atomName, "CB");
    EXPECT_EQ(out[0].serial, "7");
    EXPECT_EQ(out[0].x, 1.0);
    EXPECT_EQ(out[0].radius, 1.7);
    EXPECT_EQ(out[0].zMax, 1.7);
    EXPECT_EQ(out[0].asa, 3.0);
    EXPECT_EQ(out[0].depthIndex, 4.0);
    EXPECT_EQ(out[0].residue, residue);
}

TEST(AtomGrid, InsertedAtomComesFirstInItsCell) {
    const tAtoms atoms{
        {"CA", "a", 0, 0, 0, 1.5}, {"CA", "b", 0.5, 0, 0, 1.5}, {"CA", "c", 3.0, 3.0, 3.0, 1.5}};
    cAtomGrid grid = gridOf(atoms);
    ASSERT_EQ(grid.cellSize, 4);
    grid.insertAtom({"CA", "d", 0.25, 0, 0, 1.5});
    EXPECT_EQ(byCenter(grid, atomAt(0, 0, 9.0), 20.0), (tSerials{"d", "c", "b", "a"}));
    cResidueAtom found;
    EXPECT_TRUE(grid.findAtom(0.25, 0.0, 0.0, found));
    EXPECT_EQ(found.serial, "d");
}

TEST(AtomGrid, InsertingOneByOneIsBuildingAtOnce) {
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        if (cloud.size() > 400) {
            continue;
        }
        const sCorners box(cloud);
        cAtomGrid grid(cloud.data(), static_cast<unsigned>(cloud.size()), box.maxPoint,
                       box.minPoint, 0);
        for (const cResidueAtom& atom : cloud) {
            grid.insertAtom(atom);
        }
        EXPECT_EQ(byCenter(grid, cloud[0], 15.0), byCenter(gridOf(cloud), cloud[0], 15.0));
    }
}

TEST(AtomGrid, PrintedGridIsTheSerialsInCellOrder) {
    // Cells of 1 Å: (0,0,0) holds a and then d, (0,0,2) holds c, (2,0,0) holds b.
    const tAtoms atoms{{"N", "a", 0, 0, 0, 1.5},
                       {"N", "b", 2.0, 0, 0, 1.5},
                       {"N", "c", 0, 0, 2.0, 1.5},
                       {"N", "d", 0.5, 0, 0.5, 1.5}};
    const cAtomGrid grid = gridOf(atoms);
    testing::internal::CaptureStdout();
    grid.printGrid();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "dacb");
}

// Looking an atom up

TEST(AtomGrid, FindsEveryAtomWhileCellsAreOne) {
    const tAtoms cloud = randomCloud(7, 500, 6.0);
    const cAtomGrid grid = gridOf(cloud);
    ASSERT_EQ(grid.cellSize, 1);
    cResidueAtom found;
    for (const cResidueAtom& atom : cloud) {
        ASSERT_TRUE(grid.findAtom(atom.x, atom.y, atom.z, found));
        EXPECT_EQ(found.x, atom.x);
        EXPECT_EQ(found.y, atom.y);
        EXPECT_EQ(found.z, atom.z);
        EXPECT_FALSE(grid.findAtom(std::nextafter(atom.x, 99.0), atom.y, atom.z, found));
        EXPECT_FALSE(grid.findAtom(atom.x, atom.y, std::nextafter(atom.z, 99.0), found));
    }
    EXPECT_FALSE(grid.findAtom(-100.0, 0.0, 0.0, found));
    EXPECT_FALSE(grid.findAtom(0.0, 1000.0, 0.0, found));
}

// The coordinates are divided by the cell size twice. So an atom is found only where that leads to
// its own cell.
TEST(AtomGrid, LargerCellsHideAtomsBeyondTheFirst) {
    const tAtoms cloud = randomCloud(8, 1000, 20.0);
    const cAtomGrid grid = gridOf(cloud);
    ASSERT_EQ(grid.cellSize, 2);
    unsigned foundCount = 0;
    for (const cResidueAtom& atom : cloud) {
        const auto once = [&](double relative) { return std::floor(relative / 2.0); };
        const auto twice = [&](double relative) {
            return std::floor(std::trunc(relative / 2.0) / 2.0);
        };
        const auto index = [&](auto cell) {
            return (cell(atom.x + grid.offsetX) * grid.cellsY + cell(atom.y + grid.offsetY)) *
                       grid.cellsZ +
                   cell(atom.z + grid.offsetZ);
        };
        cResidueAtom found;
        const bool isFound = grid.findAtom(atom.x, atom.y, atom.z, found);
        EXPECT_EQ(isFound, index(once) == index(twice));
        foundCount += isFound ? 1U : 0U;
    }
    EXPECT_GT(foundCount, 0U);
    EXPECT_LT(foundCount, 50U);
    EXPECT_EQ(grid.getGridIndex(0.0, 0.0, 0.0), 0U);
}

TEST(AtomGrid, OfAtomsAtOnePlaceTheLastInsertedIsFound) {
    const tAtoms atoms{
        {"CA", "first", 1, 1, 1, 1.5}, {"CA", "last", 1, 1, 1, 1.5}, atomAt(2, 2, 2)};
    cResidueAtom found;
    ASSERT_TRUE(gridOf(atoms).findAtom(1.0, 1.0, 1.0, found));
    EXPECT_EQ(found.serial, "last");
}

// Neighbours

TEST(AtomGrid, NeighboursByCenterAreThoseOfTheListedCellsInTheirOrder) {
    std::size_t neighbours = 0;
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        const cListedCells listed(cloud);
        for (const cResidueAtom& query : queriesFor(cloud)) {
            for (const double range : {0.0, 0.5, 1.0, 5.0, 10.0, 60.0, -3.0}) {
                const tSerials found = byCenter(grid, query, range);
                ASSERT_EQ(found, listed.byCenter(query, range)) << range;
                neighbours += found.size();
            }
        }
    }
    EXPECT_GT(neighbours, 50000U);
}

TEST(AtomGrid, NeighboursByRadiusAreThoseOfTheListedCellsInTheirOrder) {
    std::size_t neighbours = 0;
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        const cListedCells listed(cloud);
        for (const cResidueAtom& query : queriesFor(cloud)) {
            for (const double enlargement : {0.0, 1.4, 2.8, -1.0, 20.0}) {
                for (const double maxRadius : {0.0, 2.0, 4.0}) {
                    const tSerials found = byRadius(grid, query, enlargement, maxRadius);
                    ASSERT_EQ(found, listed.byRadius(query, enlargement, maxRadius)) << enlargement;
                    neighbours += found.size();
                }
            }
        }
    }
    EXPECT_GT(neighbours, 50000U);
}

// Every atom within range by centre lies within the box of cells, so there a search without cells
// finds the same atoms.
TEST(AtomGrid, CellsNeverHideANeighbourByCenter) {
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        for (const cResidueAtom& query : queriesFor(cloud)) {
            for (const double range : {1.0, 5.0, 30.0}) {
                const auto expected =
                    std::count_if(cloud.begin(), cloud.end(), [&](const cResidueAtom& atom) {
                        return query.isInRangeByCenter(atom, range);
                    });
                ASSERT_EQ(byCenter(grid, query, range).size(), static_cast<std::size_t>(expected));
            }
        }
    }
}

TEST(AtomGrid, VisitingNeighboursIsCopyingThem) {
    const tAtoms cloud = randomCloud(13, 700, 18.0);
    const cAtomGrid grid = gridOf(cloud);
    for (unsigned i = 0; i < 700; i += 37) {
        tSerials visited;
        const auto visit = [&](const cAtomGrid::sEntry& entry) {
            visited.push_back(grid.atomOf(entry).serial);
        };
        grid.forEachInRangeByCenter(cloud[i], 6.0, visit);
        EXPECT_EQ(visited, byCenter(grid, cloud[i], 6.0));
        visited.clear();
        grid.forEachInRangeByRadius(cloud[i], 1.4, 2.0, visit);
        EXPECT_EQ(visited, byRadius(grid, cloud[i], 1.4, 2.0));
    }
}

TEST(AtomGrid, NeighbourExactlyAtRangeIsFound) {
    const tAtoms atoms{{"CA", "0", 0, 0, 0, 1.5}, {"CA", "1", 3, 4, 0, 1.25}};
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_EQ(byCenter(grid, atoms[0], 5.0), tSerials{"1"});
    EXPECT_TRUE(byCenter(grid, atoms[0], std::nextafter(5.0, 0.0)).empty());
    EXPECT_EQ(byRadius(grid, atoms[0], 1.125, 2.0), tSerials{"1"}) << "1.5 + 1.25 + 2 * 1.125";
    EXPECT_TRUE(byRadius(grid, atoms[0], 1.1249, 2.0).empty());
}

TEST(AtomGrid, QueryAtomAndAtomsAtItsPlaceAreNeverFound) {
    const tAtoms atoms{
        {"CA", "0", 1, 1, 1, 1.5}, {"CA", "1", 1, 1, 1, 1.5}, {"CA", "2", 2, 1, 1, 1.5}};
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_EQ(byCenter(grid, atoms[0], 5.0), tSerials{"2"});
    EXPECT_EQ(byRadius(grid, atoms[0], 1.4, 2.0), tSerials{"2"});
    EXPECT_EQ(byCenter(grid, atoms[2], 5.0), (tSerials{"1", "0"}));
}

TEST(AtomGrid, QueryAtTheMinimumCornerBeginsAtTheFirstCell) {
    const tAtoms atoms{
        {"CA", "0", -7, -7, -7, 1.5}, {"CA", "1", -6.5, -7, -7, 1.5}, {"CA", "2", 3, 3, 3, 1.5}};
    const cAtomGrid grid = gridOf(atoms);
    const cAtomGrid::sCellBox box = grid.cellsAround(-7.0, -7.0, -7.0, 3.0);
    EXPECT_EQ(box.loX, 0U);
    EXPECT_EQ(box.loY, 0U);
    EXPECT_EQ(box.loZ, 0U);
    EXPECT_EQ(byCenter(grid, atoms[0], 2.0), tSerials{"1"});
}

/// Atoms on a line along x with cells of 1 Å; each is as large as to touch all others.
tAtoms line(const std::vector<double>& places) {
    tAtoms atoms;
    for (const double x : places) {
        atoms.emplace_back("CA", std::to_string(atoms.size()), x, 0.0, 0.0, 50.0);
    }
    return atoms;
}

// A reach of 5 Å from a point at 10 Å covers the cells from 5 up to, not including, 15.
TEST(AtomGrid, BoxOfCellsIncludesItsLowerAndExcludesItsUpperBound) {
    const tAtoms atoms = line({0.0, 4.999, 5.0, 10.0, 14.999, 15.0, 30.0});
    const cAtomGrid grid = gridOf(atoms);
    ASSERT_EQ(grid.cellSize, 1);
    EXPECT_EQ(byRadius(grid, atoms[3], 0.0, 2.0), (tSerials{"2", "4"}));
    EXPECT_EQ(byRadius(grid, atoms[3], 0.001, 2.0), (tSerials{"1", "2", "4", "5"}))
        << "now a part of the cells 4 and 15 is within reach";
    EXPECT_EQ(byRadius(grid, atoms[3], 0.0, 20.0).size(), 6U);
}

TEST(AtomGrid, WholeCellsAreSearchedWhereTheReachEndsInside) {
    const tAtoms atoms = line({0.0, 5.0, 10.5, 15.9, 16.0, 30.0});
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_EQ(byRadius(grid, atoms[2], 0.0, 2.0), (tSerials{"1", "3"}))
        << "5.5 and 5.4 away, though the reach is 5";
}

// Spheres larger than the query allows for touch beyond the cells that it looks at.
TEST(AtomGrid, NeighbourByRadiusBeyondTheReachIsNotFound) {
    const tAtoms atoms{{"CA", "0", 0, 0, 0, 10.0}, {"CA", "1", 15, 0, 0, 10.0}};
    const cAtomGrid grid = gridOf(atoms);
    ASSERT_TRUE(atoms[0].doesIntersect(atoms[1], 0.0));
    EXPECT_TRUE(byRadius(grid, atoms[0], 0.0, 2.0).empty());
    EXPECT_TRUE(byRadius(grid, atoms[1], 0.0, 2.0).empty());
    EXPECT_EQ(byRadius(grid, atoms[0], 0.0, 10.0), tSerials{"1"});
}

// At 8 Å, a reach of 7.8 Å ends before the cell of the farther atom but after the cell of the
// nearer.
TEST(AtomGrid, BoxOfCellsMayBeSeenFromOneSideOnly) {
    const tAtoms atoms{{"CA", "0", 0, 0, 0, 2.0}, {"CA", "1", 8, 0, 0, 2.0}};
    const cAtomGrid grid = gridOf(atoms);
    EXPECT_TRUE(byRadius(grid, atoms[0], 2.8, 2.0).empty());
    EXPECT_EQ(byRadius(grid, atoms[1], 2.8, 2.0), tSerials{"0"});
}

TEST(AtomGrid, QueryBesideTheGridScansNothing) {
    const tAtoms atoms = randomCloud(14, 100, 10.0);
    const cAtomGrid grid = gridOf(atoms);
    for (const sPoint& place :
         {sPoint{-500.0, 5.0, 5.0}, sPoint{5.0, -500.0, 5.0}, sPoint{5.0, 5.0, -500.0},
          sPoint{500.0, 5.0, 5.0}, sPoint{5.0, 500.0, 5.0}, sPoint{5.0, 5.0, 500.0}}) {
        EXPECT_TRUE(grid.cellsAround(place.x, place.y, place.z, 8.0).isEmpty());
        EXPECT_TRUE(byCenter(grid, atomAt(place.x, place.y, place.z), 7.0).empty());
        EXPECT_EQ(byCenter(grid, atomAt(place.x, place.y, place.z), 600.0).size(), 100U);
    }
}

// A box of 10^12 or 10^18 cells: neither memory nor time may follow the volume.
TEST(AtomGrid, AtomsAMillionAngstromsApartCostNoMoreThanOthers) {
    for (const sPoint& edges : {sPoint{1e6, 1e6, 0.0}, sPoint{0.0, 1e6, 1e6}, sPoint{1e6, 0.0, 1e6},
                                sPoint{1e6, 0.0, 0.0}, sPoint{0.0, 0.0, 1e6},
                                sPoint{1e6, 1e6, 0.001}, sPoint{9e7, 9e7, 0.0}}) {
        tAtoms atoms = randomCloud(15, 1000, edges, {1.5});
        // A neighbour within a few ångström for every tenth atom, or there would be none.
        for (std::size_t i = 0; i < 1000; i += 10) {
            const cResidueAtom& atom = atoms[i];
            atoms.emplace_back("CA", std::to_string(atoms.size()),
                               edges.x > 1.0 ? std::min(atom.x + 1.5, edges.x) : atom.x, atom.y,
                               edges.x > 1.0 ? atom.z : std::min(atom.z + 1.5, edges.z), 1.5);
        }
        const cAtomGrid grid = gridOf(atoms);
        const cListedCells listed(atoms);
        std::size_t neighbours = 0;
        for (std::size_t i = 0; i < atoms.size(); i += 10) {
            const tSerials found = byRadius(grid, atoms[i], 2.8, 2.0);
            ASSERT_EQ(found, listed.byRadius(atoms[i], 2.8, 2.0));
            ASSERT_EQ(byCenter(grid, atoms[i], 20000.0), listed.byCenter(atoms[i], 20000.0));
            neighbours += found.size();
        }
        EXPECT_GT(neighbours, 50U);
    }
}

// Capacity

TEST(AtomGrid, ExactlyEnoughRoomIsEnough) {
    const tAtoms atoms = randomCloud(16, 200, 8.0);
    const cAtomGrid grid = gridOf(atoms);
    const std::size_t byCenterCount = byCenter(grid, atoms[0], 5.0).size();
    const std::size_t byRadiusCount = byRadius(grid, atoms[0], 1.4, 2.0).size();
    ASSERT_GT(byCenterCount, 1U);
    tAtoms out(byCenterCount + 1, cResidueAtom("guard", "", 0, 0, 0, 0));
    EXPECT_EQ(grid.getNeighboursInRangeByCenter(atoms[0], 5.0, out.data(), byCenterCount),
              byCenterCount);
    EXPECT_EQ(out.back().atomName, "guard");
    out.assign(byRadiusCount + 1, cResidueAtom("guard", "", 0, 0, 0, 0));
    EXPECT_EQ(grid.getNeighboursInRangeByRadius(atoms[0], 1.4, 2.0, out.data(), byRadiusCount),
              byRadiusCount);
    EXPECT_EQ(out.back().atomName, "guard");
}

#ifndef NDEBUG
TEST(AtomGridDeathTest, TooLittleRoomIsNoticed) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const tAtoms atoms = randomCloud(16, 200, 8.0);
    const cAtomGrid grid = gridOf(atoms);
    tAtoms out(200);
    EXPECT_DEATH(grid.getNeighboursInRangeByCenter(atoms[0], 5.0, out.data(), 1), "capacity");
    EXPECT_DEATH(grid.getNeighboursInRangeByRadius(atoms[0], 1.4, 2.0, out.data(), 1), "capacity");
}
#endif

// The nearest atom

TEST(AtomGrid, NearestIsTheNearestOfAll) {
    for (const tAtoms& cloud : cloudsOfEveryShape()) {
        const cAtomGrid grid = gridOf(cloud);
        for (const cResidueAtom& query : queriesFor(cloud)) {
            double expected = infinity;
            for (const cResidueAtom& atom : cloud) {
                const double distance = centreDistance(query, atom);
                expected = distance != 0.0 ? std::min(expected, distance) : expected;
            }
            double distance = -1.0;
            const cAtomGrid::sEntry* const entry = grid.nearest(query, &distance);
            ASSERT_EQ(entry == nullptr, expected == infinity);
            if (entry != nullptr) {
                ASSERT_EQ(distance, expected);
                ASSERT_EQ(centreDistance(query, *entry), expected);
            }
        }
    }
}

TEST(AtomGrid, NearestPassesOverAtomsAtThePlaceOfTheQuery) {
    tAtoms atoms(20, cResidueAtom("CA", "here", 5.0, 5.0, 5.0, 1.5));
    double distance = -1.0;
    EXPECT_EQ(gridOf(atoms).nearest(atoms[0], &distance), nullptr);
    EXPECT_EQ(distance, -1.0) << "nothing is written then";
    atoms.emplace_back("CA", "there", 5.0, 5.0, 4000.0, 1.5);
    const cAtomGrid grid = gridOf(atoms);
    const cAtomGrid::sEntry* const entry = grid.nearest(atoms[0], &distance);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(grid.atomOf(*entry).serial, "there");
    EXPECT_EQ(distance, 3995.0);
}

TEST(AtomGrid, NearestIsFoundFromFarOutside) {
    const tAtoms atoms = randomCloud(17, 200, 10.0);
    const cAtomGrid grid = gridOf(atoms);
    for (const double away : {1e3, 1e6, 1e8, -1e8}) {
        double distance = -1.0;
        ASSERT_NE(grid.nearest(atomAt(away, away, 0.0), &distance), nullptr);
        EXPECT_NEAR(distance, std::sqrt(2.0) * std::abs(away), 20.0);
    }
}

} // namespace

} // namespace kelmo
