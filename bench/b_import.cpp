// Import of the old plant file (every table into a new store, counts checked) against the
// same rows read through libmdb and written by SQLite's C API alone (a table of untyped
// columns each, prepared INSERTs, one transaction), same run. Prints both times and the
// ratio.
#include "importer/Importer.h"
#include "importer/MdbReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <sqlite3.h>

namespace {

/// The old plant file of the fixtures: in a "shared" folder beside the clone, or above it.
QString plantFile()
{
    QDir dir(QStringLiteral(VELMORA_BENCH_DIR));
    do {
        const QString candidate = dir.filePath(QStringLiteral("shared/fixtures/legacy/Velmora.mdb"));
        if (QFile::exists(candidate))
            return candidate;
    } while (dir.cdUp());
    return {};
}

/// Every table of the file into a new SQLite file, as plainly as the C API allows.
qint64 rawCopy(importer::MdbReader& reader, const QString& path)
{
    QFile::remove(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.toUtf8().constData(), &db);
    sqlite3_exec(db, "PRAGMA journal_mode=WAL; BEGIN", nullptr, nullptr, nullptr);
    qint64 rows = 0;
    for (const importer::MdbTableInfo& t : reader.tables()) {
        QStringList names, marks;
        for (const importer::MdbColumnInfo& c : t.columns) {
            names << QLatin1Char('"') + c.name + QLatin1Char('"');
            marks << QStringLiteral("?");
        }
        const QString table = QLatin1Char('"') + t.name + QLatin1Char('"');
        sqlite3_exec(db,
                     (QStringLiteral("CREATE TABLE ") + table + QLatin1Char('(') + names.join(QLatin1Char(',')) +
                      QLatin1Char(')'))
                         .toUtf8()
                         .constData(),
                     nullptr, nullptr, nullptr);
        sqlite3_stmt* ins = nullptr;
        sqlite3_prepare_v2(db,
                           (QStringLiteral("INSERT INTO ") + table + QStringLiteral(" VALUES (") +
                            marks.join(QLatin1Char(',')) + QLatin1Char(')'))
                               .toUtf8()
                               .constData(),
                           -1, &ins, nullptr);
        rows += reader.readRows(t, [&](const std::vector<importer::MdbValue>& row) {
            for (size_t i = 0; i < row.size(); ++i) {
                const importer::MdbValue& v = row[i];
                const int k = int(i) + 1;
                switch (v.kind) {
                case importer::MdbValue::Integer: sqlite3_bind_int64(ins, k, v.integer); break;
                case importer::MdbValue::Real: sqlite3_bind_double(ins, k, v.real); break;
                case importer::MdbValue::Text:
                    sqlite3_bind_text(ins, k, v.bytes.constData(), int(v.bytes.size()), SQLITE_STATIC);
                    break;
                case importer::MdbValue::Blob:
                    sqlite3_bind_blob(ins, k, v.bytes.constData(), int(v.bytes.size()), SQLITE_STATIC);
                    break;
                default: sqlite3_bind_null(ins, k);
                }
            }
            sqlite3_step(ins);
            sqlite3_reset(ins);
            return true;
        });
        sqlite3_finalize(ins);
    }
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return rows;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QString mdb = plantFile();
    if (mdb.isEmpty()) {
        std::printf("import: the old plant file is not beside the clone\n");
        return 0;
    }
    QTemporaryDir dir;
    importer::MdbReader reader;
    reader.open(mdb);
    qint64 rows = 0;
    auto ours = [&] {
        QFile::remove(dir.filePath(QStringLiteral("Velmora.sqlite")));
        return importer::importMdb({mdb, dir.path(), false}).ok;
    };
    auto raw = [&] { rows = rawCopy(reader, dir.filePath(QStringLiteral("raw.sqlite"))); };
    // Alternating runs, best of each: the machine's other work weighs on both alike.
    const int rounds = 10;
    double tOurs = 1e300, tRaw = 1e300;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer timer;
        timer.start();
        if (!ours()) {
            std::printf("import failed\n");
            return 1;
        }
        tOurs = std::min(tOurs, double(timer.nsecsElapsed()) / 1e6);
        timer.restart();
        raw();
        tRaw = std::min(tRaw, double(timer.nsecsElapsed()) / 1e6);
    }
    std::printf("import of %zu tables (%lld rows): best of %d runs\n", reader.tables().size(),
                static_cast<long long>(rows), rounds);
    std::printf("  importer (schema, conversions, checks): %8.1f ms\n", tOurs);
    std::printf("  libmdb read + SQLite C API inserts:     %8.1f ms\n", tRaw);
    std::printf("  ratio: %.2fx\n", tOurs / tRaw);
    return 0;
}
