// B6: the interventions grid sorted by a text column over 100k rows: the store's JET
// collation (case ignored, accents kept) against SQLite's BINARY, both read through the
// C API; and the whole grid query through DataStore. Prints times and ratios.
#include "BenchStore.h"

#include <QCoreApplication>
#include <QRandomGenerator>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    auto store = bench::sampleStore(dir);
    sqlite3* db = store->handle();

    // 100k interventions; descriptions in mixed case, some with accents, as typed.
    const char* words[] = {"Cuscinetto",  "cuscinetto",     "CINGHIA",        "Filtro",      "filtro olio",
                           "Guarnizione", "Elettrovalvola", "élettrovalvola", "Motore",      "Pompa idraulica",
                           "Sensore",     "Relè",           "Fusibile",       "Tubo",        "Raccordo",
                           "Valvola",     "Interruttore",   "Encoder",        "Ingranaggio", "Vite"};
    QRandomGenerator rng(42);
    bench::exec(db, "DELETE FROM Tbl_Ricerca; BEGIN");
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                       "ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, Destinazione, ID_CAUSA) "
                       "VALUES (?1, 1, 'PRESSA', 'AX100', ?2, ?3, ?4, ?5, 1, 'CUSCINETTI', ?6, ?7, 1)",
                       -1, &ins, nullptr);
    for (int i = 0; i < 100000; ++i) {
        const QByteArray desc = QByteArray(words[rng.bounded(20)]) + ' ' + QByteArray::number(rng.bounded(5000));
        const QByteArray dest = QByteArray(words[rng.bounded(20)]) + " lato " + QByteArray::number(rng.bounded(9));
        const QByteArray num = QByteArray::number(rng.bounded(300));
        sqlite3_bind_double(ins, 1, 44000 + rng.bounded(2400));
        sqlite3_bind_int(ins, 2, rng.bounded(300));
        sqlite3_bind_text(ins, 3, num.constData(), int(num.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int(ins, 4, rng.bounded(500));
        sqlite3_bind_text(ins, 5, desc.constData(), int(desc.size()), SQLITE_TRANSIENT);
        sqlite3_bind_double(ins, 6, rng.bounded(10));
        sqlite3_bind_text(ins, 7, dest.constData(), int(dest.size()), SQLITE_TRANSIENT);
        sqlite3_step(ins);
        sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    bench::exec(db, "COMMIT");

    const QString grid = QStringLiteral("SELECT * From Tbl_Ricerca ORDER BY Descrizione");
    store::jet::SqliteSchema schema(db);
    const QByteArray jetSql = store::jet::translate(grid, &schema).statements.back().sql.toUtf8();
    const QByteArray binarySql = "SELECT * FROM Tbl_Ricerca ORDER BY Descrizione COLLATE BINARY";
    sqlite3_stmt* jet = nullptr;
    sqlite3_stmt* binary = nullptr;
    sqlite3_prepare_v2(db, jetSql.constData(), -1, &jet, nullptr);
    sqlite3_prepare_v2(db, binarySql.constData(), -1, &binary, nullptr);

    const int rounds = 5;
    double tJet = 1e300, tBinary = 1e300, tStore = 1e300;
    int rows = 0;
    bench::readAll(jet);
    bench::readAll(binary);
    for (int r = 0; r < rounds; ++r) {
        tJet = std::min(tJet, bench::bestOf(1, [&] { rows = bench::readAll(jet); }));
        tBinary = std::min(tBinary, bench::bestOf(1, [&] { bench::readAll(binary); }));
        tStore = std::min(tStore, bench::bestOf(1, [&] { store->Query(grid); }));
    }
    sqlite3_finalize(jet);
    sqlite3_finalize(binary);
    std::printf("B6 grid sort: %d Tbl_Ricerca rows by Descrizione, best of %d runs\n", rows, rounds);
    std::printf("  C API, JET collation:    %8.1f ms\n", tJet);
    std::printf("  C API, BINARY collation: %8.1f ms\n", tBinary);
    std::printf("  ratio JET/BINARY: %.2fx (goal <= 3x)\n", tJet / tBinary);
    std::printf("  DataStore grid query (JET, rows into a recordset): %8.1f ms (%.2fx BINARY)\n", tStore,
                tStore / tBinary);
    return 0;
}
