// Velmora: the maintenance-management program of the maintenance department.
//
//   velmora [--home DIR] [--drive FILE|-]
//   velmora --import OLD.mdb [--home DIR] [--replace]
//   velmora --backup FILE | --restore FILE [--home DIR]
//
// The data folder is --home, else VELMORA_HOME, else the per-user data folder. With
// --drive the program is driven by the line protocol of docs/automation.md.
#include "app/Backup.h"
#include "definition/Workload.h"
#include "demo/CommandLine.h"
#include "importer/Importer.h"
#include "runtime/AppPath.h"
#include "shell/DesktopServices.h"
#include "shell/Driver.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "shell/StoreCheck.h"
#include "store/Backup.h"

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
    // An old Velmora.mdb is taken over without starting the program (docs/importer.md).
    if (importer::wantsImport(argc, argv))
        return importer::runImport(argc, argv);
    const Arguments args = parseArguments(argc, argv);
    if (!args.error.isEmpty()) {
        std::fprintf(stderr, "velmora: %s\n", qPrintable(args.error));
        return 2;
    }
    const bool driving = args.drive.has_value();
    // Driven runs and the store's copies never put a window on a real display unless the
    // caller asked for one.
    if ((driving || app::wantsBackupCommandLine(argc, argv)) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    demo::prepareCommandLine(argc, argv);

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Velmora"));
    QApplication::setOrganizationName(QStringLiteral("Velmora"));
    QApplication::setApplicationVersion(QStringLiteral("3.0.3"));
    vb::setAppPath(dataFolder(args));
    // --backup and --restore work on the store and end there.
    if (const std::optional<int> rc = app::runBackupCommandLine(argc, argv))
        return *rc;
    shell::registerBundledFonts();
    // frmMain's load ends with the workload line, whichever way it is started.
    definition::installWorkloadLine();
    // --demo, --demo-if-new and --screenshot (src/demo).
    if (const std::optional<int> rc = demo::runCommandLine(argc, argv))
        return *rc;

    if (driving) {
        store::backup::holdFolder(vb::AppPath());
        shell::Driver driver(*args.drive);
        return driver.run();
    }

    shell::installDesktopServices();
    shell::checkStoreAtStart();
    // The program ends through frmMain: its close or lblExit. Other windows closing
    // (frmAbout, a report preview) do not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    shell::startProgram();
    const int rc = QApplication::exec();
    shell::ScreenRegistry::instance().discardAll();
    return rc;
}
