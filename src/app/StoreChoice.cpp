#include "app/StoreChoice.h"

#include "importer/Importer.h"
#include "runtime/VBError.h"
#include "shell/frmMain.h"
#include "store/Backend.h"
#include "store/DataStore.h"
#include "store/PlantCopy.h"
#include "store/StoreErrors.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>

namespace app {

namespace {

const char* const SettingsFile = "velmora.ini";

QString wrongStore(const QString& uri)
{
    return QStringLiteral("Indirizzo del server del database non valido: \"%1\". Usare la forma "
                          "postgresql://utente@server/database.")
        .arg(uri);
}

int moveToServer(const QString& file, const QString& uri, bool replace,
                 const std::vector<importer::TableCount>& counted)
{
    QTextStream out(stdout), err(stderr);
    try {
        if (!store::backend::isServerUri(uri))
            throw vb::VBError(store::errors::Unspecified, wrongStore(uri));
        store::DataStore embedded(file);
        store::DataStore server(uri);
        // The server's tables as the main screen's start leaves them, as the copy's are.
        for (const QString& s : shell::frmMain::upgradeStatements()) {
            try {
                server.Execute(s);
            } catch (const vb::VBError&) {
            }
        }
        std::vector<importer::TableCount> tables;
        for (const auto& [name, rows] : store::copyPlant(embedded, server, replace)) {
            qint64 inFile = rows;
            for (const importer::TableCount& c : counted)
                if (c.table.compare(name, Qt::CaseInsensitive) == 0)
                    inFile = c.inOldFile;
            tables.push_back({name, inFile, rows});
        }
        importer::printTable(out, tables);
        qint64 rows = 0;
        for (const importer::TableCount& t : tables)
            rows += t.imported;
        out << QStringLiteral("Copia completata: %1 tabelle, %2 righe sul server.").arg(tables.size()).arg(rows)
            << '\n';
        return 0;
    } catch (const vb::VBError& e) {
        err << e.description() << '\n';
        return 1;
    }
}

} // namespace

QString optionValue(const QStringList& args, const QString& option, QString& error)
{
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == option) {
            if (i + 1 >= args.size()) {
                error = QStringLiteral("Manca il valore di %1").arg(option);
                return {};
            }
            return args[i + 1];
        }
        if (args[i].startsWith(option + QLatin1Char('=')))
            return args[i].mid(option.size() + 1);
    }
    return {};
}

QString chosenStore(const QString& fromCommandLine, const QString& dataFolder)
{
    if (!fromCommandLine.isEmpty())
        return fromCommandLine;
    const QString env = qEnvironmentVariable("VELMORA_STORE");
    if (!env.isEmpty())
        return env;
    const QString ini = QDir(dataFolder).filePath(QLatin1String(SettingsFile));
    if (!QFileInfo::exists(ini))
        return {};
    return QSettings(ini, QSettings::IniFormat).value(QStringLiteral("store/url")).toString().trimmed();
}

QString openChosenStore(const QString& uri)
{
    if (uri.isEmpty())
        return {};
    if (!store::backend::isServerUri(uri))
        return wrongStore(uri);
    store::DataStore::setServer(uri);
    try {
        store::DataStore::instance();
    } catch (const vb::VBError& e) {
        store::DataStore::setServer({});
        return e.description();
    }
    return {};
}

int runServerMove(const QStringList& args, const std::function<QString()>& dataFolder)
{
    QString error;
    const QString copyTo = optionValue(args, QStringLiteral("--copy-to"), error);
    const QString mdb = optionValue(args, QStringLiteral("--import"), error);
    const QString server = optionValue(args, QStringLiteral("--store"), error);
    const bool replace = args.contains(QStringLiteral("--replace"));
    if (!error.isEmpty()) {
        std::fprintf(stderr, "velmora: %s\n", qPrintable(error));
        return 2;
    }
    if (!copyTo.isEmpty()) {
        // A mistyped data folder must not send an empty plant to the server.
        const QString file = QDir(dataFolder()).filePath(QLatin1String(store::StoreFileName));
        if (!QFileInfo::exists(file)) {
            std::fprintf(stderr, "%s\n",
                         qPrintable(QStringLiteral("velmora: nessun archivio da copiare in '%1'.").arg(file)));
            return 1;
        }
        return moveToServer(file, copyTo, replace, {});
    }
    if (mdb.isEmpty() || server.isEmpty())
        return -1;
    // The old file is read into an embedded store aside, every count checked, then copied.
    QTemporaryDir aside;
    importer::ImportRequest request{mdb, aside.path(), false};
    const importer::ImportResult imported =
        importer::importMdb(request, [](const QString& line) { std::fprintf(stderr, "%s\n", qPrintable(line)); });
    if (!imported.ok) {
        std::fprintf(stderr, "%s\n", qPrintable(imported.message));
        return 1;
    }
    return moveToServer(imported.storePath, server, replace, imported.tables);
}

} // namespace app
