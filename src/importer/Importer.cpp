#include "importer/Importer.h"

#include "importer/MdbReader.h"
#include "importer/StoreWriter.h"
#include "runtime/Clock.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTextStream>

#include <cstdio>
#include <cstring>
#include <sqlite3.h>

namespace importer {

namespace {

constexpr qint64 ProgressBlock = 50000;

QString unreadableMessage(const QString& path, MdbProblem problem, const QString& detail)
{
    const QString name = QDir::toNativeSeparators(path);
    switch (problem) {
    case MdbProblem::Missing: return QStringLiteral("Il file \"%1\" non esiste o non si può leggere.").arg(name);
    case MdbProblem::NotJet:
        return QStringLiteral("Il file \"%1\" non è un archivio di Velmora: non è un database Access (Jet).").arg(name);
    case MdbProblem::Damaged:
    case MdbProblem::None: break;
    }
    return QStringLiteral("Il file \"%1\" è danneggiato (%2): importazione annullata, non è stato scritto nulla.")
        .arg(name, detail);
}

// The backup's name carries the moment of the replacement; a second replacement in the
// same second gets a counter rather than overwriting the first backup.
QString backupPathFor(const QString& storePath)
{
    const QFileInfo info(storePath);
    const QString stamp = vb::Clock::now().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString base = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1Char('-') + stamp;
    QString path = base + QStringLiteral(".sqlite");
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = base + QStringLiteral("-%1.sqlite").arg(n);
    return path;
}

// Moves the store aside as it is: its write-ahead log is folded into the file first, so
// the backup is one self-contained file.
bool moveAside(const QString& storePath, const QString& backupPath)
{
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK)
        sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    if (!QFile::rename(storePath, backupPath))
        return false;
    for (const char* suffix : {"-wal", "-shm"}) {
        const QString side = storePath + QLatin1String(suffix);
        if (QFileInfo::exists(side))
            QFile::rename(side, backupPath + QLatin1String(suffix));
    }
    return true;
}

// The program's own rule for its data folder. The import runs before the application
// object exists, so the names the per-user folder is made of are given here.
QString defaultHome()
{
    const QByteArray env = qgetenv("VELMORA_HOME");
    if (!env.isEmpty())
        return QString::fromLocal8Bit(env);
    if (QCoreApplication::applicationName().isEmpty())
        QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    if (QCoreApplication::organizationName().isEmpty())
        QCoreApplication::setOrganizationName(QStringLiteral("Velmora"));
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

} // namespace

void printTable(QTextStream& out, const std::vector<TableCount>& tables)
{
    const QString h1 = QStringLiteral("Tabella"), h2 = QStringLiteral("Righe nel file"),
                  h3 = QStringLiteral("Righe importate");
    int w1 = int(h1.size());
    for (const TableCount& t : tables)
        w1 = std::max(w1, int(t.table.size()));
    out << h1.leftJustified(w1) << "  " << h2 << "  " << h3 << '\n';
    for (const TableCount& t : tables)
        out << t.table.leftJustified(w1) << "  " << QString::number(t.inOldFile).rightJustified(int(h2.size())) << "  "
            << QString::number(t.imported).rightJustified(int(h3.size())) << '\n';
}

bool storeHasData(const QString& path)
{
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return true;
    }
    QStringList tables;
    sqlite3_stmt* stmt = nullptr;
    bool readable = sqlite3_prepare_v2(db,
                                       "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE "
                                       "'sqlite\\_%' ESCAPE '\\'",
                                       -1, &stmt, nullptr) == SQLITE_OK;
    int rc = SQLITE_DONE;
    while (readable && (rc = sqlite3_step(stmt)) == SQLITE_ROW)
        tables << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    readable = readable && rc == SQLITE_DONE;

    bool data = !readable;
    for (const QString& table : std::as_const(tables)) {
        // Rows a store gets by itself: the seeded frequency kinds and the sessions.
        if (table.compare(QLatin1String("Tbl_Maint_Tipo"), Qt::CaseInsensitive) == 0 ||
            table.compare(QLatin1String("Tbl_Register"), Qt::CaseInsensitive) == 0)
            continue;
        const QByteArray sql = "SELECT EXISTS (SELECT 1 FROM \"" + table.toUtf8().replace('"', "\"\"") + "\")";
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK ||
            sqlite3_step(stmt) != SQLITE_ROW || sqlite3_column_int(stmt, 0) != 0)
            data = true;
        sqlite3_finalize(stmt);
        if (data)
            break;
    }
    sqlite3_close(db);
    return data;
}

ImportResult importMdb(const ImportRequest& request, const std::function<void(const QString&)>& progress)
{
    ImportResult result;
    auto say = [&](const QString& line) {
        if (progress)
            progress(line);
    };
    const QString home = QDir(request.home).absolutePath();
    result.storePath = home + QLatin1Char('/') + QLatin1String(store::StoreFileName);
    const QString storeName = QDir::toNativeSeparators(result.storePath);

    // Refusals come first, before anything is read or written.
    const bool storeExists = QFileInfo::exists(result.storePath);
    if (storeExists && !request.replace && storeHasData(result.storePath)) {
        result.message = QStringLiteral("L'archivio \"%1\" esiste già e contiene dati: non viene sovrascritto. "
                                        "Per sostituirlo ripetere il comando con --replace "
                                        "(l'archivio attuale sarà conservato come copia datata).")
                             .arg(storeName);
        return result;
    }
    MdbReader reader;
    if (!reader.open(request.mdbPath)) {
        result.message = unreadableMessage(request.mdbPath, reader.problem(), reader.detail());
        return result;
    }

    const bool madeHome = !QFileInfo::exists(home);
    if (madeHome && !QDir().mkpath(home)) {
        result.message = QStringLiteral("Impossibile creare la cartella \"%1\".").arg(QDir::toNativeSeparators(home));
        return result;
    }
    auto abandon = [&](const QString& message) {
        result.tables.clear();
        result.message = message;
        if (madeHome)
            QDir().rmdir(home);
        return result;
    };

    // The new store is written beside the old one under a temporary name; it only takes
    // the store's name once it is complete and checked.
    QTemporaryFile temp(home + QStringLiteral("/Velmora-import-XXXXXX.sqlite"));
    if (!temp.open())
        return abandon(
            QStringLiteral("Impossibile scrivere nella cartella \"%1\".").arg(QDir::toNativeSeparators(home)));
    temp.close();
    {
        StoreWriter writer;
        if (!writer.create(temp.fileName()))
            return abandon(QStringLiteral("Importazione annullata: %1.").arg(writer.error()));
        for (const MdbTableInfo& table : reader.tables()) {
            say(QStringLiteral("%1: %2 righe...").arg(table.name).arg(table.rowCount));
            if (!writer.beginTable(table))
                return abandon(QStringLiteral("Importazione annullata: %1.").arg(writer.error()));
            bool written = true;
            qint64 done = 0;
            const qint64 read = reader.readRows(table, [&](const std::vector<MdbValue>& row) {
                written = writer.insert(row);
                if (++done % ProgressBlock == 0)
                    say(QStringLiteral("%1: %2 di %3 righe").arg(table.name).arg(done).arg(table.rowCount));
                return written;
            });
            if (!written)
                return abandon(QStringLiteral("Importazione annullata: %1.").arg(writer.error()));
            if (read < 0)
                return abandon(unreadableMessage(request.mdbPath, MdbProblem::Damaged, reader.detail()));
            const qint64 imported = writer.endTable();
            result.tables.push_back({table.name, table.rowCount, imported});
            // A row the reader could not reach shows as a count short of the file's own.
            if (read != table.rowCount || imported != table.rowCount)
                return abandon(unreadableMessage(
                    request.mdbPath, MdbProblem::Damaged,
                    QStringLiteral("la tabella %1 dichiara %2 righe, ne sono state lette %3 e importate %4")
                        .arg(table.name)
                        .arg(table.rowCount)
                        .arg(read)
                        .arg(imported)));
        }
        if (!writer.finish())
            return abandon(QStringLiteral("Importazione annullata: %1.").arg(writer.error()));
    }

    if (storeExists) {
        result.backupPath = backupPathFor(result.storePath);
        if (!moveAside(result.storePath, result.backupPath))
            return abandon(QStringLiteral("Impossibile mettere da parte l'archivio \"%1\": importazione annullata.")
                               .arg(storeName));
    }
    if (!temp.rename(result.storePath)) {
        if (!result.backupPath.isEmpty())
            moveAside(result.backupPath, result.storePath);
        result.backupPath.clear();
        return abandon(QStringLiteral("Impossibile dare al nuovo archivio il nome \"%1\": importazione annullata.")
                           .arg(storeName));
    }
    temp.setAutoRemove(false);

    qint64 rows = 0;
    for (const TableCount& t : result.tables)
        rows += t.imported;
    result.ok = true;
    result.message = QStringLiteral("Importazione completata: %1 tabelle, %2 righe in \"%3\".")
                         .arg(result.tables.size())
                         .arg(rows)
                         .arg(storeName);
    if (!result.backupPath.isEmpty())
        result.message += QStringLiteral("\nL'archivio precedente è conservato in \"%1\".")
                              .arg(QDir::toNativeSeparators(result.backupPath));
    return result;
}

int runImport(const QStringList& args, QTextStream& out, QTextStream& err)
{
    const QString usage = QStringLiteral("Uso: velmora --import VECCHIO.mdb [--home CARTELLA] [--replace]");
    ImportRequest request;
    bool haveHome = false;
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--import") && i + 1 < args.size()) {
            request.mdbPath = args.at(++i);
        } else if (a == QLatin1String("--home") && i + 1 < args.size()) {
            request.home = args.at(++i);
            haveHome = true;
        } else if (a == QLatin1String("--replace")) {
            request.replace = true;
        } else {
            err << QStringLiteral("Argomento non riconosciuto: \"%1\".").arg(a) << '\n' << usage << '\n';
            err.flush();
            return 2;
        }
    }
    if (request.mdbPath.isEmpty()) {
        err << usage << '\n';
        err.flush();
        return 2;
    }
    if (!haveHome)
        request.home = defaultHome();

    const ImportResult result = importMdb(request, [&err](const QString& line) {
        err << line << '\n';
        err.flush();
    });
    if (!result.ok) {
        err << result.message << '\n';
        err.flush();
        return 1;
    }
    printTable(out, result.tables);
    out << result.message << '\n';
    out.flush();
    return 0;
}

bool wantsImport(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--import") == 0)
            return true;
    return false;
}

int runImport(int argc, char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return runImport(args, out, err);
}

} // namespace importer
