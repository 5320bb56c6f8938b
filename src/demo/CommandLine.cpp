#include "demo/CommandLine.h"

#include "demo/DemoPlant.h"
#include "demo/Screenshots.h"
#include "runtime/AppPath.h"
#include "runtime/VBError.h"
#include "store/DataStore.h"
#include "store/Schema.h"

#include <QFile>
#include <QString>

#include <cstdio>
#include <cstring>

namespace demo {

namespace {

struct Options
{
    bool demo = false;
    bool demoIfNew = false;
    bool screenshot = false;
    QString screenshotDir;
};

Options parse(int argc, char** argv)
{
    Options o;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--demo") == 0)
            o.demo = true;
        else if (std::strcmp(argv[i], "--demo-if-new") == 0)
            o.demoIfNew = true;
        else if (std::strcmp(argv[i], "--screenshot") == 0) {
            o.screenshot = true;
            if (i + 1 < argc)
                o.screenshotDir = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strncmp(argv[i], "--screenshot=", 13) == 0) {
            o.screenshot = true;
            o.screenshotDir = QString::fromLocal8Bit(argv[i] + 13);
        }
    }
    return o;
}

void say(const QString& line)
{
    std::fprintf(stderr, "velmora: %s\n", qPrintable(line));
}

/// Makes the demo plant; an exit code when it cannot.
std::optional<int> makeDemo()
{
    try {
        if (storeHasData()) {
            say(QStringLiteral("l'archivio %1 contiene già dei dati: l'impianto dimostrativo non lo sovrascrive. "
                               "Usare --home con una cartella vuota.")
                    .arg(vb::AppFile(QString::fromLatin1(store::StoreFileName))));
            return 1;
        }
        say(describe(makeDemoPlant()));
    } catch (const vb::VBError& e) {
        say(QStringLiteral("impossibile creare l'impianto dimostrativo: %1 %2").arg(e.number()).arg(e.description()));
        return 1;
    }
    return std::nullopt;
}

} // namespace

void prepareCommandLine(int argc, char** argv)
{
    if (parse(argc, argv).screenshot && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

std::optional<int> runCommandLine(int argc, char** argv)
{
    const Options o = parse(argc, argv);
    if (o.demoIfNew && !o.demo && !QFile::exists(vb::AppFile(QString::fromLatin1(store::StoreFileName)))) {
        say(QStringLiteral("nessun archivio in %1: si parte con l'impianto dimostrativo.").arg(vb::AppPath()));
        if (const auto rc = makeDemo())
            return rc;
    }
    if (o.demo) {
        if (const auto rc = makeDemo())
            return rc;
    }
    if (!o.screenshot)
        return std::nullopt;
    if (o.screenshotDir.isEmpty()) {
        say(QStringLiteral("manca la cartella di --screenshot"));
        return 2;
    }
    const QStringList written = writeScreenshots(o.screenshotDir);
    say(QStringLiteral("%1 immagini in %2: %3")
            .arg(written.size())
            .arg(o.screenshotDir, written.join(QStringLiteral(", "))));
    return written.isEmpty() ? 1 : 0;
}

} // namespace demo
