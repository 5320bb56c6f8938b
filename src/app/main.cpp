// Velmora: the maintenance-management program of the maintenance department.
//
//   velmora [--home DIR] [--drive FILE|-]
//   velmora --import OLD.mdb [--home DIR] [--replace]
//   velmora --store postgresql://user@host/db ...   (the plant's server: docs/server.md)
//   velmora --import OLD.mdb --store URL [--replace], velmora --copy-to URL [--replace]
//
// The data folder is --home, else VELMORA_HOME, else the per-user data folder. With
// --drive the program is driven by the line protocol of docs/automation.md.
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

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>
#include <cstring>
#include <optional>

namespace {

struct Arguments
{
    QString home;
    std::optional<QString> drive;
    QString error;
};

Arguments parseArguments(int argc, char** argv)
{
    Arguments a;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        auto value = [&](const char* name) -> QString {
            if (i + 1 >= argc) {
                a.error = QStringLiteral("Manca il valore di %1").arg(QLatin1String(name));
                return {};
            }
            return QString::fromLocal8Bit(argv[++i]);
        };
        if (std::strcmp(arg, "--home") == 0)
            a.home = value("--home");
        else if (std::strncmp(arg, "--home=", 7) == 0)
            a.home = QString::fromLocal8Bit(arg + 7);
        else if (std::strcmp(arg, "--drive") == 0)
            a.drive = value("--drive");
        else if (std::strncmp(arg, "--drive=", 8) == 0)
            a.drive = QString::fromLocal8Bit(arg + 8);
        // Anything else (Qt's own options such as -platform) passes through to Qt.
        if (!a.error.isEmpty())
            break;
    }
    return a;
}

/// --home, else VELMORA_HOME, else the platform's per-user data folder; created when missing.
QString dataFolder(const Arguments& args)
{
    QString dir = args.home;
    if (dir.isEmpty())
        dir = qEnvironmentVariable("VELMORA_HOME");
    if (dir.isEmpty())
        dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(dir);
    return dir;
}

} // namespace

int main(int argc, char** argv)
{
    QStringList commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine << QString::fromLocal8Bit(argv[i]);
    // A plant moved onto its server (docs/server.md).
    if (const int rc = app::runServerMove(commandLine, [&] { return dataFolder(parseArguments(argc, argv)); }); rc >= 0)
        return rc;
    // An old Velmora.mdb is taken over without starting the program (docs/importer.md).
    if (importer::wantsImport(argc, argv))
        return importer::runImport(argc, argv);
    const Arguments args = parseArguments(argc, argv);
    if (!args.error.isEmpty()) {
        std::fprintf(stderr, "velmora: %s\n", qPrintable(args.error));
        return 2;
    }
    const bool driving = args.drive.has_value();
    // Driven runs never put a window on a real display unless the caller asked for one.
    if (driving && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    demo::prepareCommandLine(argc, argv);

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Velmora"));
    QApplication::setOrganizationName(QStringLiteral("Velmora"));
    QApplication::setApplicationVersion(QStringLiteral("3.0.3"));
    vb::setAppPath(dataFolder(args));
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
        shell::Driver driver(*args.drive);
        return driver.run();
    }

    shell::installDesktopServices();
    // The program ends through frmMain: its close or lblExit. Other windows closing
    // (frmAbout, a report preview) do not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    shell::startProgram();
    const int rc = QApplication::exec();
    shell::ScreenRegistry::instance().discardAll();
    return rc;
}
