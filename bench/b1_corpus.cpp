// B1: the program's reading statements through DataStore (Jet text translated, rows in a
// recordset) against the same statements in SQLite's words, prepared once and read
// through the C API, every row stepped and every value read as a program would.
// Translation cache warm. Prints both times and the ratio. An argument sets the number
// of runs (a few are enough under a profiler).
#include "BenchStore.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    auto store = bench::sampleStore(dir);
    sqlite3* db = store->handle();
    // Some volume behind the lists: the interventions and the register, 64 times over.
    for (int i = 0; i < 6; ++i) {
        bench::exec(db, "INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                        "ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, Destinazione, ID_CAUSA) "
                        "SELECT Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, ID_DESCRIZIONE_RICAMBI, "
                        "Descrizione, ID_RICAMBI, Ricambi, Quantita, Destinazione, ID_CAUSA FROM Tbl_Ricerca");
        bench::exec(db, "INSERT INTO Tbl_Maintenance (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                        "ID_MAINT_TIPO, Manutenzione_Tipo, Frequenza_Sett, Ultima, Prossima, Tempo_Minuti, "
                        "ID_OPERATORE, Operatore) SELECT ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                        "ID_MAINT_TIPO, Manutenzione_Tipo, Frequenza_Sett, Ultima, Prossima, Tempo_Minuti, "
                        "ID_OPERATORE, Operatore FROM Tbl_Maintenance");
    }

    // The reading statements of the corpus: plain SELECTs (no INTO, no SHAPE).
    QFile file(bench::testData(QStringLiteral("statements.txt")));
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QStringList statements;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive) && !line.contains(QLatin1String(" INTO ")))
            statements << line;
    }
    // Those that read run-time tables are left out: they exist only after their writer.
    QStringList usable;
    std::vector<sqlite3_stmt*> prepared;
    std::vector<std::vector<vb::Variant>> params;
    store::jet::SqliteSchema schema(db);
    for (const QString& s : std::as_const(statements)) {
        try {
            store->Query(s);
        } catch (...) {
            continue;
        }
        const store::jet::Translation t = store::jet::translate(s, &schema);
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, t.statements.back().sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
            continue;
        usable << s;
        prepared.push_back(st);
        params.push_back(t.statements.back().params);
    }

    const int rounds = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 60;
    long rowsOurs = 0, rowsRaw = 0;
    auto ours = [&] {
        for (const QString& s : std::as_const(usable))
            rowsOurs += store->Query(s)->RecordCount();
    };
    auto raw = [&] {
        for (size_t i = 0; i < prepared.size(); ++i) {
            bench::bindAll(prepared[i], params[i]);
            rowsRaw += bench::readAll(prepared[i]);
        }
    };
    ours();
    raw(); // warm: translations cached, pages in memory
    if (rowsOurs != rowsRaw) {
        std::printf("B1 statement corpus: the rows read differ, %ld against %ld\n", rowsOurs, rowsRaw);
        return 1;
    }
    // Alternating runs, best of each: the machine's other work weighs on both alike.
    double tOurs = 1e300, tRaw = 1e300;
    for (int r = 0; r < rounds; ++r) {
        tOurs = std::min(tOurs, bench::bestOf(1, ours));
        tRaw = std::min(tRaw, bench::bestOf(1, raw));
    }
    for (sqlite3_stmt* st : prepared)
        sqlite3_finalize(st);
    std::printf("B1 statement corpus: %lld reading statements per run, best of %d runs\n",
                static_cast<long long>(usable.size()), rounds);
    std::printf("  DataStore (Jet text, recordsets): %8.2f ms\n", tOurs);
    std::printf("  SQLite C API (prepared once):     %8.2f ms\n", tRaw);
    std::printf("  ratio: %.2fx (goal <= 1.05x)\n", tOurs / tRaw);
    return 0;
}
