#pragma once
// B3: the interventions screen's load on a large register. Every load puts each next
// date back at the last execution plus seven times the frequency, one UPDATE per row as
// the screen's walk does; the baseline is one bulk UPDATE in SQLite's words, same run,
// and the two must leave the same date on every row.

#include "LargeBench.h"
#include "definition/Workload.h"
#include "shell/ScreenRegistry.h"
#include "spares/Form14.h"

#include <QApplication>

#include <map>

namespace bench {

inline std::map<int, double> nextDates(sqlite3* db)
{
    std::map<int, double> out;
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT ID, Prossima FROM Tbl_Maintenance", -1, &st, nullptr);
    while (sqlite3_step(st) == SQLITE_ROW)
        out[sqlite3_column_int(st, 0)] = sqlite3_column_double(st, 1);
    sqlite3_finalize(st);
    return out;
}

inline int runB3(int argc, char** argv, int registerRows)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    demo::LargeSummary made;
    sqlite3* db = largeStore(dir, {registerRows, 0, 0, 0}, &made);
    definition::installWorkloadLine();
    shell::screens().form(QStringLiteral("frmMain"));
    // Every round starts from next dates that the load has to put right.
    // The log is written back before each timed run, so that neither side pays for the
    // other's pages.
    auto scramble = [db] {
        exec(db, "UPDATE Tbl_Maintenance SET Prossima = Prossima + 3");
        exec(db, "PRAGMA wal_checkpoint(TRUNCATE)");
    };

    // The load alone: the screen before it is gone already, as after a menu click.
    auto unload = [] {
        shell::screens().unload(QStringLiteral("Form14"));
        QCoreApplication::processEvents();
    };
    auto ours = [&] { shell::screens().form(QStringLiteral("Form14")); };
    sqlite3_stmt* bulk = nullptr;
    sqlite3_prepare_v2(db, "UPDATE Tbl_Maintenance SET Prossima = Ultima + Frequenza_Sett * 7", -1, &bulk, nullptr);
    auto raw = [&] {
        sqlite3_step(bulk);
        sqlite3_reset(bulk);
    };

    scramble();
    ours();
    unload();
    const std::map<int, double> byScreen = nextDates(db);
    scramble();
    raw();
    const bool same = byScreen == nextDates(db);

    const int rounds = 10;
    double tOurs = 1e300, tRaw = 1e300;
    for (int i = 0; i < rounds; ++i) {
        scramble();
        tOurs = std::min(tOurs, bestOf(1, ours));
        unload();
        scramble();
        tRaw = std::min(tRaw, bestOf(1, raw));
    }
    std::printf("B3 Form14 load (%d register rows): best of %d runs\n", made.registerRows, rounds);
    std::printf("  Form14 (one Jet UPDATE per row):     %8.1f ms\n", tOurs);
    std::printf("  SQLite C API (one bulk UPDATE):      %8.1f ms\n", tRaw);
    std::printf("  ratio: %.2fx; next dates %s row for row\n", tOurs / tRaw, same ? "identical" : "DIFFERENT");
    sqlite3_finalize(bulk);
    shell::screens().discardAll();
    return same ? 0 : 1;
}

} // namespace bench
