// Velmora: the maintenance-management program of the maintenance department.
//
//   velmora [--home DIR] [--demo | --demo-if-new] [--screenshot DIR] [--drive FILE|-]
//   velmora --import OLD.mdb [--home DIR] [--replace]
//   velmora --backup FILE | --restore FILE [--home DIR]
//   velmora --store postgresql://user@host/db ...   (the plant's server: docs/server.md)
//   velmora --import OLD.mdb --store URL [--replace], velmora --copy-to URL [--replace]
//   velmora --help | --version
//
// The data folder is --home, else VELMORA_HOME, else the per-user data folder. With
// --drive the program is driven by the line protocol of docs/automation.md.
#include "app/Backup.h"
#include "app/CommandLine.h"
#include "app/StoreChoice.h"
#include "definition/Workload.h"
#include "demo/CommandLine.h"
#include "importer/Importer.h"
#include "runtime/AppPath.h"
#include "runtime/MsgBox.h"
#include "shell/DesktopServices.h"
#include "shell/Driver.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "shell/StoreCheck.h"
#include "store/Backup.h"
#include "store/DataStore.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>

namespace {

/// --home, else VELMORA_HOME, else the platform's per-user data folder; created when missing.
QString dataFolder(const app::Options& options)
{
    QString dir = options.home;
    if (dir.isEmpty())
        dir = qEnvironmentVariable("VELMORA_HOME");
    if (dir.isEmpty())
        dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(dir);
    return dir;
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    QCoreApplication::setOrganizationName(QStringLiteral("Velmora"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(app::Version));
}

} // namespace

int main(int argc, char** argv)
{
    const std::variant<app::Options, int> parsed = app::parseCommandLine(argc, argv);
    if (const int* rc = std::get_if<int>(&parsed))
        return *rc;
    const app::Options& options = std::get<app::Options>(parsed);
    QStringList commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine << QString::fromLocal8Bit(argv[i]);
    // A plant moved onto its server (docs/server.md), with no screen.
    if (const int rc = app::runServerMove(commandLine, [&] { return dataFolder(options); }); rc >= 0)
        return rc;
    // An old Velmora.mdb is taken over without starting the program (docs/importer.md).
    if (options.importFile)
        return importer::runImport(argc, argv);
    // --backup and --restore work on the store and end there, with no screen.
    if (app::wantsBackupCommandLine(argc, argv)) {
        QCoreApplication core(argc, argv);
        nameApplication();
        vb::setAppPath(dataFolder(options));
        return app::runBackupCommandLine(argc, argv).value_or(0);
    }

    const bool driving = options.drive.has_value();
    // Driven runs never put a window on a real display unless the caller asked for one.
    if (driving && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    demo::prepareCommandLine(argc, argv);

    QApplication app(argc, argv);
    nameApplication();
    shell::installItalianTranslations();
    vb::setAppPath(dataFolder(options));
    shell::registerBundledFonts();
    // frmMain's load ends with the workload line, whichever way it is started.
    definition::installWorkloadLine();
    // --demo, --demo-if-new and --screenshot (src/demo).
    if (const std::optional<int> rc = demo::runCommandLine(argc, argv))
        return *rc;
    // The plant's server, when this workstation names one; else the data folder's file.
    QString storeError;
    const QString server = app::optionValue(commandLine, QStringLiteral("--store"), storeError);
    if (storeError.isEmpty())
        storeError = app::openChosenStore(app::chosenStore(server, vb::AppPath()));
    if (!storeError.isEmpty()) {
        std::fprintf(stderr, "velmora: %s\n", qPrintable(storeError));
        if (!driving) {
            shell::installDesktopServices();
            vb::MsgBox(storeError, vb::mb::Critical, QStringLiteral("Velmora"));
        }
        return 1;
    }

    if (driving) {
        store::backup::holdFolder(vb::AppPath());
        shell::Driver driver(*options.drive);
        return driver.run();
    }

    shell::installDesktopServices();
    // The embedded store's soundness and its daily copy; a server keeps its own.
    if (store::DataStore::server().isEmpty())
        shell::checkStoreAtStart();
    // The program ends through frmMain: its close or lblExit. Other windows closing
    // (frmAbout, a report preview) do not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    shell::startProgram();
    const int rc = QApplication::exec();
    shell::ScreenRegistry::instance().discardAll();
    return rc;
}
