#pragma once
/// @file DemoPlant.h
/// The demo plant: a store holding a believable Italian factory, entered as a
/// maintenance department would have entered it, dated relative to the day it is made
/// (vb::Clock::today()). The same seed always gives the same rows.
///
/// Everything goes into the program's store (store::DataStore::instance(), the store of
/// AppPath) through recordsets and Jet statements. What the program derives itself is
/// left to the program's own procedures: the workload figures (Recompute_Workload),
/// the sheet codes (sheetCode), the push of stopped machines (Form7's stop shift) and
/// the wall chart (Update_Planned_Row). The stock after each intervention is booked
/// by the interventions screen's own Update_Stock, and each delivery by the orders
/// screen's confirmation of the arrival.

#include <QDate>
#include <QString>

#include <cstdint>

namespace demo {

/// The seed of `velmora --demo`.
inline constexpr std::uint64_t DefaultSeed = 1987;

/// What a demo plant holds, counted while it was made.
struct PlantSummary
{
    int departments = 0;
    int models = 0;
    int units = 0;
    int assignments = 0;
    int registerRows = 0;
    int overdue = 0; ///< Prossima before the demo day
    int dueToday = 0;
    int dueTomorrow = 0;
    int stoppedNow = 0;
    int restarted = 0;
    int parts = 0;
    int interventions = 0;
    int openOrderLines = 0;
    int evadedOrderLines = 0;
    int operators = 0;
    int notes = 0;
};

/// Whether the store holds data of its own: anything beyond the frequency kinds that
/// every new store is seeded with.
bool storeHasData();

/// Makes the demo plant in the program's store, which must be new (see storeHasData).
/// Raises vb::VBError when a statement fails.
PlantSummary makeDemoPlant(std::uint64_t seed = DefaultSeed);

/// The italian line that tells what was made ("Impianto dimostrativo: ...").
QString describe(const PlantSummary& s);

} // namespace demo
