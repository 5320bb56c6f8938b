#pragma once
// What the store's benchmarks share: a store in a temporary folder with the sample rows
// of the tests, timing, and reading a statement's rows through SQLite's C API alone.

#include "runtime/Clock.h"
#include "store/DataStore.h"
#include "store/jet/Jet.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <sqlite3.h>

namespace bench {

inline QString testData(const QString& name)
{
    return QStringLiteral(VELMORA_BENCH_DIR "/../tests/data/") + name;
}

inline void exec(sqlite3* db, const QByteArray& sql)
{
    char* message = nullptr;
    if (sqlite3_exec(db, sql.constData(), nullptr, nullptr, &message) != SQLITE_OK) {
        std::fprintf(stderr, "%s\n", message ? message : "");
        sqlite3_free(message);
    }
}

/// A new store, upgraded as the start-up does, holding the tests' sample rows.
inline std::unique_ptr<store::DataStore> sampleStore(const QTemporaryDir& dir)
{
    vb::Clock::freeze(QDateTime(QDate(2026, 11, 22), QTime(10, 30)));
    auto store = std::make_unique<store::DataStore>(dir.filePath(QStringLiteral("Velmora.sqlite")));
    sqlite3* db = store->handle();
    exec(db, "ALTER TABLE Tbl_Ricerca ADD COLUMN Images VARCHAR(255) NULL;"
             "ALTER TABLE Tbl_Ricerca ADD COLUMN Percorso VARCHAR(255) NULL;"
             "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Tipo_Nota VARCHAR(50) NULL;"
             "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Images VARCHAR(255) NULL;"
             "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Percorso VARCHAR(255) NULL;"
             "CREATE TABLE Tbl_Certif_Proced_Manut (ID_Assegna_M Integer Null,Scheda CHAR(50) NOT NULL, "
             "Data_Scheda DATE, Rev Integer Null,Data_Rev DATE);");
    QFile rows(testData(QStringLiteral("sample_store.sql")));
    if (!rows.open(QIODevice::ReadOnly))
        std::fprintf(stderr, "sample_store.sql not found\n");
    exec(db, rows.readAll());
    return store;
}

/// Steps a prepared statement to its end, reading every value as a hand-written Qt
/// program would (numbers as numbers, text into QString). Returns the rows read.
inline int readAll(sqlite3_stmt* st)
{
    int rows = 0;
    double sink = 0;
    while (sqlite3_step(st) == SQLITE_ROW) {
        ++rows;
        const int n = sqlite3_column_count(st);
        for (int i = 0; i < n; ++i) {
            switch (sqlite3_column_type(st, i)) {
            case SQLITE_INTEGER: sink += double(sqlite3_column_int64(st, i)); break;
            case SQLITE_FLOAT: sink += sqlite3_column_double(st, i); break;
            case SQLITE_NULL: break;
            default: {
                const QString s = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                                    sqlite3_column_bytes(st, i));
                sink += s.size();
            }
            }
        }
    }
    sqlite3_reset(st);
    return sink < 0 ? -rows : rows;
}

inline void bindAll(sqlite3_stmt* st, const std::vector<vb::Variant>& params)
{
    for (size_t i = 0; i < params.size(); ++i) {
        const vb::Variant& v = params[i];
        const int k = int(i) + 1;
        switch (v.type()) {
        case vb::Variant::Type::Integer:
        case vb::Variant::Type::Long: sqlite3_bind_int64(st, k, v.rawLong()); break;
        case vb::Variant::Type::Double:
        case vb::Variant::Type::Date: sqlite3_bind_double(st, k, v.rawDouble()); break;
        case vb::Variant::Type::Boolean: sqlite3_bind_int(st, k, v.rawBool() ? -1 : 0); break;
        case vb::Variant::Type::String: {
            const QByteArray b = v.rawString().toUtf8();
            sqlite3_bind_text(st, k, b.constData(), int(b.size()), SQLITE_TRANSIENT);
            break;
        }
        default: sqlite3_bind_null(st, k);
        }
    }
}

/// Best of several runs, in milliseconds.
template <typename F> double bestOf(int runs, F&& f)
{
    double best = 1e300;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer t;
        t.start();
        f();
        best = std::min(best, double(t.nsecsElapsed()) / 1e6);
    }
    return best;
}

} // namespace bench
