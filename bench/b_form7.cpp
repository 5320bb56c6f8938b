// Form7 on a large plant: the register screen's load (stop shift of 1k stop records,
// pick lists, the list of 10k and of 100k rows) and one row change, against the same
// reads and writes as prepared SQLite statements read through the C API, same run: the
// register row each stop reads before its next date is written, and the pick lists the
// row change fills for the row's machine, model, number and type.
#include "LargeBench.h"
#include "Process.h"
#include "definition/Workload.h"
#include "execution/Form7.h"
#include "shell/ScreenRegistry.h"

#include <QApplication>

#include <variant>

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
    sqlite3_stmt* registerRow = prepare(db, "SELECT * FROM Tbl_Maintenance WHERE ID = ?1");
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
    // The row change, with the values of the row the screen moved to (read from the screen
    // after a first run): the row, its machine's models and types, the model's numbers,
    // the number, the type and its minutes, the stop record and the notes.
    ours();
    const auto* shown = shell::screens().formAs<execution::Form7>(QStringLiteral("Form7"));
    const QByteArray machine = shown->DataCombo3->Text().toUtf8();
    const QByteArray model = shown->DataCombo2->Text().toUtf8();
    const QByteArray number = shown->DataCombo1->Text().toUtf8();
    const QByteArray type = shown->DataCombo4->Text().toUtf8();
    const int rowId = shown->txtID->Text().toInt();
    const int modelId = shown->ID_MOD->Text().toInt();
    const int numberId = shown->ID_NUM->Text().toInt();
    const int typeId = shown->ID_MAINT->Text().toInt();
    auto bound = [&](const char* sql, std::initializer_list<std::variant<int, const QByteArray*>> values) {
        sqlite3_stmt* st = prepare(db, sql);
        int i = 0;
        for (const auto& v : values) {
            if (const int* n = std::get_if<int>(&v))
                sqlite3_bind_int(st, ++i, *n);
            else
                sqlite3_bind_text(st, ++i, std::get<const QByteArray*>(v)->constData(), -1, SQLITE_STATIC);
        }
        return st;
    };
    sqlite3_stmt* minutes = bound("SELECT Tempo_Minuti FROM Tbl_Assegna_M GROUP BY ID_MODELLO, ID_MAINT_TIPO, "
                                  "Tempo_Minuti HAVING ID_MODELLO = ?1 AND ID_MAINT_TIPO = ?2",
                                  {modelId, typeId});
    sqlite3_stmt* types =
        bound("SELECT Manutenzione_Tipo FROM Tbl_Assegna_M WHERE ID_MODELLO = ?1 ORDER BY ID_MAINT_TIPO", {modelId});
    const std::vector<sqlite3_stmt*> change = {
        minutes,
        bound("SELECT M.ID_MODELLO, M.Macchina, M.Modello FROM Tbl_ProcedureM P INNER JOIN Tbl_Macchina M ON "
              "P.ID_MODELLO = M.ID_MODELLO GROUP BY M.ID_MODELLO, M.Macchina, M.Modello HAVING M.Macchina = ?1 "
              "ORDER BY M.Modello",
              {&machine}),
        types,
        bound("SELECT ID_MODELLO, Macchina, Modello FROM Tbl_Macchina WHERE Modello = ?1 ORDER BY Modello", {&model}),
        bound("SELECT ID_NUM, Numerazione, ID_MODELLO FROM Tbl_Numerazione WHERE ID_MODELLO = ?1", {modelId}),
        bound("SELECT Numerazione FROM Tbl_Numerazione GROUP BY Numerazione, ID_MODELLO HAVING ID_MODELLO = ?1",
              {modelId}),
        types,
        bound("SELECT * FROM Tbl_Numerazione WHERE ID_MODELLO = ?1 AND Numerazione = ?2", {modelId, &number}),
        bound("SELECT * FROM Tbl_Maint_Tipo WHERE Maint_Tipo = ?1", {&type}),
        minutes,
        bound("SELECT * FROM Tbl_Fermi_Macchina WHERE ID_NUM = ?1", {numberId}),
        bound("SELECT * FROM Tbl_Maintenance_Note WHERE ID_MODELLO = ?1 AND ID_NUM = ?2 ORDER BY Ultima DESC",
              {modelId, numberId}),
        bound("SELECT * FROM Tbl_Maintenance WHERE ID = ?1", {rowId}),
    };
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
            sqlite3_bind_int(registerRow, 1, id);
            bench::readAll(registerRow);
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
        for (sqlite3_stmt* st : change)
            bench::readAll(st);
    };

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
    for (sqlite3_stmt* st : change)
        if (st != minutes && st != types)
            sqlite3_finalize(st);
    for (sqlite3_stmt* st : {shift, registerRow, push, days, minutes, types})
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
