// Form7 on a large plant: the register screen's load (stop shift of 1k stop records,
// pick lists, the list of 10k and of 100k rows) and one row change, against the same
// reads and writes as prepared SQLite statements read through the C API, same run.
#include "LargeBench.h"
#include "Process.h"
#include "definition/Workload.h"
#include "execution/Form7.h"
#include "shell/ScreenRegistry.h"

#include <QApplication>

namespace {

sqlite3_stmt* prepare(sqlite3* db, const char* sql)
{
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) != SQLITE_OK)
        std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db));
    return st;
}

void run(int registerRows)
{
    QTemporaryDir dir;
    demo::LargeSummary made;
    sqlite3* db = bench::largeStore(dir, {registerRows, 1000, 1000, 0}, &made);

    // The main screen is there already, as in the program (the register's load reads it).
    definition::installWorkloadLine();
    shell::screens().form(QStringLiteral("frmMain"));
    const int rounds = 5;
    auto ours = [&] {
        shell::screens().unload(QStringLiteral("Form7"));
        QCoreApplication::processEvents();
        auto* f = shell::screens().formAs<execution::Form7>(QStringLiteral("Form7"));
        f->DataGrid1->setRow(5000);
    };

    // The same work in SQLite's words.
    sqlite3_stmt* shift = prepare(
        db, "SELECT M.ID, M.ID_NUM, F.Ferma_Dal, F.Giorni_Stop, F.TOT_Giorni_Stop, F.Numero_Stop, M.Ultima, "
            "M.Prossima, M.Frequenza_Sett, F.ID_MAINT_TIPO FROM Tbl_Fermi_Macchina F INNER JOIN Tbl_Maintenance M "
            "ON F.ID_NUM = M.ID_NUM AND F.ID_MAINT_TIPO = M.ID_MAINT_TIPO");
    sqlite3_stmt* push = prepare(db, "UPDATE Tbl_Maintenance SET Prossima = ?1 WHERE ID = ?2");
    sqlite3_stmt* days = prepare(db, "UPDATE Tbl_Fermi_Macchina SET Giorni_Stop = ?1 WHERE ID_NUM = ?2");
    std::vector<sqlite3_stmt*> lists = {
        prepare(db, "SELECT M.Macchina FROM Tbl_Macchina M INNER JOIN Tbl_ProcedureM P ON M.ID_MODELLO = "
                    "P.ID_MODELLO GROUP BY M.Macchina"),
        prepare(db, "SELECT ID_MODELLO, Modello FROM Tbl_Macchina GROUP BY ID_MODELLO, Modello ORDER BY Modello"),
        prepare(db, "SELECT T.Maint_Tipo FROM Tbl_Maint_Tipo T INNER JOIN Tbl_ProcedureM P ON T.ID_MAINT_TIPO = "
                    "P.ID_MAINT_TIPO GROUP BY T.Maint_Tipo, P.ID_MODELLO, P.ID_MAINT_TIPO ORDER BY P.ID_MAINT_TIPO"),
        prepare(db, "SELECT * FROM Tbl_Operatore"),
        prepare(db, "SELECT ID, Macchina, Modello, Numerazione, Manutenzione_Tipo, Ultima, Prossima FROM "
                    "Tbl_Maintenance ORDER BY Prossima"),
    };
    sqlite3_stmt* row = prepare(db, "SELECT * FROM Tbl_Maintenance WHERE ID = 5000");
    sqlite3_stmt* notes = prepare(db, "SELECT * FROM Tbl_Maintenance_Note WHERE ID_MODELLO = 1 AND ID_NUM = 1");
    sqlite3_stmt* stop = prepare(db, "SELECT * FROM Tbl_Fermi_Macchina WHERE ID_NUM = 1");
    auto raw = [&] {
        const double today = vb::toSerial(bench::benchDay());
        while (sqlite3_step(shift) == SQLITE_ROW) {
            const int id = sqlite3_column_int(shift, 0);
            const int idNum = sqlite3_column_int(shift, 1);
            const bool standing = sqlite3_column_bytes(shift, 2) == 10;
            const int g =
                standing
                    ? int(today) - int(vb::toSerial(QDate::fromString(
                                       QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(shift, 2))),
                                       QStringLiteral("dd/MM/yyyy"))))
                    : sqlite3_column_int(shift, 4);
            const double next = sqlite3_column_double(shift, 6) + g + sqlite3_column_double(shift, 8) * 7;
            sqlite3_bind_double(push, 1, next);
            sqlite3_bind_int(push, 2, id);
            sqlite3_step(push);
            sqlite3_reset(push);
            sqlite3_bind_int(days, 1, g);
            sqlite3_bind_int(days, 2, idNum);
            sqlite3_step(days);
            sqlite3_reset(days);
        }
        sqlite3_reset(shift);
        for (sqlite3_stmt* st : lists)
            bench::readAll(st);
        bench::readAll(row);
        bench::readAll(notes);
        bench::readAll(stop);
    };

    ours();
    raw();
    const double tOurs = bench::bestOf(rounds, ours);
    const double tRaw = bench::bestOf(rounds, raw);
    std::printf("Form7 load + row change (%d rows, %d stops): best of %d runs\n", made.registerRows, made.stopRecords,
                rounds);
    std::printf("  Form7 (Jet text, recordsets, grid):  %8.1f ms\n", tOurs);
    std::printf("  SQLite C API (prepared, same work):  %8.1f ms\n", tRaw);
    std::printf("  ratio: %.2fx\n", tOurs / tRaw);
    bench::tableRow(QStringLiteral("Form7 load + row change (%1k rows, %2 stops)")
                        .arg(made.registerRows / 1000)
                        .arg(made.stopRecords),
                    tOurs, tRaw, "ms");
    for (sqlite3_stmt* st : lists)
        sqlite3_finalize(st);
    for (sqlite3_stmt* st : {shift, push, days, row, notes, stop})
        sqlite3_finalize(st);
    shell::screens().discardAll();
    store::DataStore::reset();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    run(10000);
    run(100000);
    return 0;
}
