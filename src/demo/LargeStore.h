#pragma once
/// @file LargeStore.h
/// Large stores for the benchmarks: the register, the stop records, the wall chart and
/// the interventions of a big plant, of the sizes the benchmarks name, the same rows for
/// the same seed. Names come from the demo plant's catalogue; the workload figures are
/// the program's own (Recompute_Workload). The chart rows hold their machine and no
/// tokens, and the interventions move no stock: at these sizes the screens' one-row
/// procedures would take hours, and the benchmarks measure reading, not those.

#include <cstdint>

namespace demo {

struct LargeSizes
{
    int registerRows = 10000;
    int interventions = 100000;
    int stopRecords = 1000;
    int plannedRows = 2000;
};

struct LargeSummary
{
    int models = 0;
    int units = 0;
    int registerRows = 0;
    int interventions = 0;
    int stopRecords = 0;
    int plannedRows = 0;
};

/// Fills the program's store (store::DataStore::instance(), which must be new).
/// Raises vb::VBError when a statement fails.
LargeSummary makeLargeStore(std::uint64_t seed, const LargeSizes& sizes);

} // namespace demo
