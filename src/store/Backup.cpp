#include "store/Backup.h"

#include "store/Schema.h"
#include "store/jet/Jet.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <set>
#include <sqlite3.h>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace store::backup {

namespace {

const char* const DailyPrefix = "Velmora-";
const char* const LockFileName = "Velmora.lock";
constexpr int KeptDaily = 7;
constexpr int KeptWeekly = 4;

QString datedName(const QDate& day)
{
    return QLatin1String(DailyPrefix) + day.toString(QStringLiteral("yyyy-MM-dd")) + QStringLiteral(".sqlite");
}

QDate dateOf(const QString& path)
{
    static const QRegularExpression name(QStringLiteral("^Velmora-(\\d{4}-\\d{2}-\\d{2})\\.sqlite$"));
    const QRegularExpressionMatch m = name.match(QFileInfo(path).fileName());
    return m.hasMatch() ? QDate::fromString(m.captured(1), QStringLiteral("yyyy-MM-dd")) : QDate();
}

/// A connection closed however the function using it ends.
struct Connection
{
    sqlite3* db = nullptr;
    Connection(const QString& path, int flags)
    {
        if (sqlite3_open_v2(path.toUtf8().constData(), &db, flags, nullptr) != SQLITE_OK) {
            sqlite3_close(db);
            db = nullptr;
        }
    }
    ~Connection() { sqlite3_close(db); }
    QString error() const
    {
        return db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("apertura non riuscita");
    }
};

QString firstText(sqlite3* db, const char* sql)
{
    sqlite3_stmt* st = nullptr;
    QString out;
    if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
        out = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    else
        out = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(st);
    return out;
}

/// Pages from one open connection to another, whole (SQLite's backup API).
QString copyPages(sqlite3* from, sqlite3* to)
{
    sqlite3_backup* b = sqlite3_backup_init(to, "main", from, "main");
    if (!b)
        return QString::fromUtf8(sqlite3_errmsg(to));
    const int rc = sqlite3_backup_step(b, -1);
    sqlite3_backup_finish(b);
    return rc == SQLITE_DONE ? QString() : QString::fromUtf8(sqlite3_errstr(rc));
}

#ifdef Q_OS_UNIX
int g_heldFd = -1;
#endif

} // namespace

QString folder(const QString& dataFolder)
{
    return QDir(dataFolder).filePath(QStringLiteral("backup"));
}

QString problemOf(const QString& file, bool quick)
{
    const QFileInfo info(file);
    if (!info.exists())
        return QStringLiteral("il file '%1' non esiste").arg(file);
    if (info.size() == 0)
        return QStringLiteral("il file '%1' è vuoto").arg(file);
    Connection c(file, SQLITE_OPEN_READONLY);
    if (!c.db)
        return QStringLiteral("il file '%1' non si apre (%2)").arg(file, c.error());
    // The indexes of text columns are ordered by the store's own collation.
    jet::registerFunctions(c.db);
    const QString tables = firstText(c.db, "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name IN "
                                           "('Tbl_Maintenance', 'Tbl_Macchina', 'Tbl_Register')");
    if (tables != QLatin1String("3"))
        return QStringLiteral("il file '%1' non è un archivio di Velmora (%2)").arg(file, tables);
    const QString check = firstText(c.db, quick ? "PRAGMA quick_check" : "PRAGMA integrity_check");
    if (check != QLatin1String("ok"))
        return QStringLiteral("il controllo dell'archivio '%1' non è superato (%2)").arg(file, check);
    return {};
}

QString copy(const QString& from, const QString& to)
{
    const QString part = to + QStringLiteral(".part");
    QFile::remove(part);
    QString error;
    {
        Connection source(from, SQLITE_OPEN_READONLY);
        Connection target(part, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        if (!source.db)
            error = source.error();
        else if (!target.db)
            error = target.error();
        else
            error = copyPages(source.db, target.db);
    }
    if (error.isEmpty()) {
        QFile::remove(to);
        if (!QFile::rename(part, to))
            error = QStringLiteral("impossibile scrivere '%1'").arg(to);
    }
    if (!error.isEmpty())
        QFile::remove(part);
    return error;
}

QStringList dailyCopies(const QString& dataFolder)
{
    QStringList out;
    const QDir dir(folder(dataFolder));
    const QStringList names =
        dir.entryList({QLatin1String(DailyPrefix) + QLatin1Char('*')}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString& n : names)
        if (dateOf(n).isValid())
            out << dir.filePath(n);
    return out;
}

QString makeDailyCopy(const QString& dataFolder, const QDate& today)
{
    const QStringList existing = dailyCopies(dataFolder);
    if (!existing.isEmpty() && dateOf(existing.first()) >= today)
        return {};
    QDir().mkpath(folder(dataFolder));
    const QString target = QDir(folder(dataFolder)).filePath(datedName(today));
    if (!copy(QDir(dataFolder).filePath(QLatin1String(StoreFileName)), target).isEmpty())
        return {};
    // The newest seven, then the newest of each of the four weeks before them.
    const QStringList all = dailyCopies(dataFolder);
    std::set<std::pair<int, int>> weeks;
    for (int i = KeptDaily; i < all.size(); ++i) {
        int year = 0;
        const int week = dateOf(all[i]).weekNumber(&year);
        const bool newWeek = int(weeks.size()) < KeptWeekly && weeks.insert({year, week}).second;
        if (!newWeek)
            QFile::remove(all[i]);
    }
    return target;
}

QString restore(const QString& file, const QString& dataFolder, const QDate& today)
{
    if (const QString problem = problemOf(file); !problem.isEmpty())
        return QStringLiteral("Ripristino rifiutato: %1.").arg(problem);
#ifdef Q_OS_UNIX
    const QByteArray lockPath = QDir(dataFolder).filePath(QLatin1String(LockFileName)).toLocal8Bit();
    const int fd = ::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0 || ::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (fd >= 0)
            ::close(fd);
        return QStringLiteral("Ripristino rifiutato: Velmora è aperto su questa cartella dati. Chiudere il "
                              "programma e riprovare.");
    }
    struct Unlock
    {
        int fd;
        ~Unlock() { ::close(fd); }
    } unlock{fd};
#endif
    const QDir dir(dataFolder);
    const QString store = dir.filePath(QLatin1String(StoreFileName));
    // The store being replaced stays beside it, with its last writes (the -wal file).
    if (QFileInfo::exists(store)) {
        QString kept = dir.filePath(datedName(today));
        for (int n = 2; QFileInfo::exists(kept); ++n)
            kept = dir.filePath(
                QStringLiteral("Velmora-%1-%2.sqlite").arg(today.toString(QStringLiteral("yyyy-MM-dd"))).arg(n));
        // A damaged store may not copy page by page: then its files are copied as they are.
        if (!copy(store, kept).isEmpty()) {
            if (!QFile::copy(store, kept))
                return QStringLiteral("Ripristino non riuscito: impossibile copiare l'archivio attuale in '%1'.")
                    .arg(kept);
            if (QFileInfo::exists(store + QStringLiteral("-wal")))
                QFile::copy(store + QStringLiteral("-wal"), kept + QStringLiteral("-wal"));
        }
    }
    const QString part = store + QStringLiteral(".part");
    QFile::remove(part);
    if (const QString error = copy(file, part); !error.isEmpty())
        return QStringLiteral("Ripristino non riuscito: %1.").arg(error);
    QFile::remove(store + QStringLiteral("-wal"));
    QFile::remove(store + QStringLiteral("-shm"));
    QFile::remove(store);
    if (!QFile::rename(part, store))
        return QStringLiteral("Ripristino non riuscito: impossibile scrivere '%1'.").arg(store);
    return {};
}

bool holdFolder(const QString& dataFolder)
{
#ifdef Q_OS_UNIX
    releaseFolder();
    const QByteArray lockPath = QDir(dataFolder).filePath(QLatin1String(LockFileName)).toLocal8Bit();
    const int fd = ::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    if (::flock(fd, LOCK_SH | LOCK_NB) != 0) {
        ::close(fd);
        return false;
    }
    g_heldFd = fd;
    return true;
#else
    Q_UNUSED(dataFolder)
    return false;
#endif
}

void releaseFolder()
{
#ifdef Q_OS_UNIX
    if (g_heldFd >= 0)
        ::close(g_heldFd);
    g_heldFd = -1;
#endif
}

} // namespace store::backup
