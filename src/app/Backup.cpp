#include "app/Backup.h"

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "store/Backup.h"
#include "store/Schema.h"

#include <QDir>
#include <QString>

#include <cstdio>
#include <cstring>

namespace app {

namespace {

/// The value after `name` on the command line; "" when the option is absent.
QString optionValue(int argc, char** argv, const char* name)
{
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], name) == 0)
            return QString::fromLocal8Bit(argv[i + 1]);
    return {};
}

int fail(const QString& message)
{
    std::fprintf(stderr, "velmora: %s\n", qPrintable(message));
    return 1;
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
    // A store on a database server is copied and put back with the server's own tools.
    if (optionValue(argc, argv, "--store").contains(QLatin1String("://")))
        return fail(QStringLiteral("--backup e --restore non sono disponibili su un archivio su server: usare "
                                   "pg_dump e pg_restore del server."));
    const QString folder = vb::AppPath();
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
