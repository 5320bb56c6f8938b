#include "app/Backup.h"

#include "app/StoreChoice.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "store/Backup.h"
#include "store/Schema.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QString>

#include <cstdio>

namespace app {

namespace {

/// The value of `name` on the command line, given as "--name value" or "--name=value";
/// "" when the option is absent (a missing value is the command line's own refusal).
QString optionValue(int argc, char** argv, const char* name)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    QString ignored;
    return app::optionValue(args, QString::fromLatin1(name), ignored);
}

int fail(const QString& message)
{
    std::fprintf(stderr, "velmora: %s\n", qPrintable(message));
    return 1;
}

/// Runs one of the server's own tools; "" when it succeeded, else what it said.
QString runTool(const QString& tool, const QStringList& args)
{
    QProcess p;
    p.start(tool, args);
    if (!p.waitForStarted())
        return QStringLiteral("il programma %1 del server non è installato").arg(tool);
    p.waitForFinished(-1);
    if (p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        return {};
    return QString::fromLocal8Bit(p.readAllStandardError()).trimmed();
}

/// A store on the plant's server is copied and put back with the server's own tools: a
/// pg_dump archive, and pg_restore in one transaction after the database as it stands is
/// kept in the data folder's backup folder as a dated archive.
int serverCopy(const QString& uri, const QString& backupTo, const QString& restoreFrom, const QString& folder)
{
    const QString dbname = QStringLiteral("--dbname=") + uri;
    if (!backupTo.isEmpty()) {
        const QString file = QDir::current().absoluteFilePath(backupTo);
        if (const QString e = runTool(QStringLiteral("pg_dump"),
                                      {QStringLiteral("--format=custom"), dbname, QStringLiteral("--file=") + file});
            !e.isEmpty())
            return fail(QStringLiteral("copia non eseguita: %1.").arg(e));
        std::printf("%s\n",
                    qPrintable(QStringLiteral("Copia dell'archivio del server scritta in '%1'.").arg(backupTo)));
        return 0;
    }
    const QString file = QDir::current().absoluteFilePath(restoreFrom);
    QProcess list;
    list.start(QStringLiteral("pg_restore"), {QStringLiteral("--list"), file});
    if (!list.waitForStarted())
        return fail(QStringLiteral("ripristino non eseguito: il programma pg_restore del server non è installato."));
    list.waitForFinished(-1);
    if (list.exitCode() != 0 || !list.readAllStandardOutput().contains("Tbl_Maintenance"))
        return fail(QStringLiteral("'%1' non è una copia di un archivio di Velmora su server.").arg(restoreFrom));
    QDir().mkpath(store::backup::folder(folder));
    // A second restore on one day keeps the archive as the first one left it too.
    const QDir keptIn(store::backup::folder(folder));
    const QString day = vb::Clock::today().toString(QStringLiteral("yyyy-MM-dd"));
    QString kept = keptIn.filePath(QStringLiteral("Velmora-server-%1.dump").arg(day));
    for (int n = 2; QFileInfo::exists(kept); ++n)
        kept = keptIn.filePath(QStringLiteral("Velmora-server-%1-%2.dump").arg(day).arg(n));
    if (const QString e = runTool(QStringLiteral("pg_dump"),
                                  {QStringLiteral("--format=custom"), dbname, QStringLiteral("--file=") + kept});
        !e.isEmpty())
        return fail(
            QStringLiteral("ripristino non eseguito: la copia dell'archivio attuale non è riuscita: %1.").arg(e));
    if (const QString e = runTool(QStringLiteral("pg_restore"),
                                  {QStringLiteral("--clean"), QStringLiteral("--if-exists"),
                                   QStringLiteral("--no-owner"), QStringLiteral("--single-transaction"), dbname, file});
        !e.isEmpty())
        return fail(QStringLiteral("ripristino non eseguito, l'archivio del server è com'era: %1.").arg(e));
    std::printf("%s\n", qPrintable(QStringLiteral("Archivio del server ripristinato da '%1'; quello sostituito è in "
                                                  "'%2'.")
                                       .arg(restoreFrom, kept)));
    return 0;
}

} // namespace

bool wantsBackupCommandLine(int argc, char** argv)
{
    return !optionValue(argc, argv, "--backup").isEmpty() || !optionValue(argc, argv, "--restore").isEmpty();
}

std::optional<int> runBackupCommandLine(int argc, char** argv)
{
    const QString backupTo = optionValue(argc, argv, "--backup");
    const QString restoreFrom = optionValue(argc, argv, "--restore");
    if (backupTo.isEmpty() && restoreFrom.isEmpty())
        return std::nullopt;
    const QString folder = vb::AppPath();
    if (const QString server = chosenStore(optionValue(argc, argv, "--store"), folder); !server.isEmpty())
        return serverCopy(server, backupTo, restoreFrom, folder);
    if (!backupTo.isEmpty()) {
        const QString store = QDir(folder).filePath(QLatin1String(store::StoreFileName));
        if (const QString problem = store::backup::problemOf(store, true); !problem.isEmpty())
            return fail(QStringLiteral("copia non eseguita: %1.").arg(problem));
        if (const QString error = store::backup::copy(store, QDir::current().absoluteFilePath(backupTo));
            !error.isEmpty())
            return fail(QStringLiteral("copia non eseguita: %1.").arg(error));
        std::printf("%s\n", qPrintable(QStringLiteral("Copia dell'archivio scritta in '%1'.").arg(backupTo)));
        return 0;
    }
    const QString error =
        store::backup::restore(QDir::current().absoluteFilePath(restoreFrom), folder, vb::Clock::today());
    if (!error.isEmpty())
        return fail(error);
    std::printf("%s\n", qPrintable(QStringLiteral("Archivio ripristinato da '%1'.").arg(restoreFrom)));
    return 0;
}

} // namespace app
