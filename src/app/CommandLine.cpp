#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QStringList>

#include <cstdio>

namespace app {

namespace {

const char* const UsageLine =
    "Uso: velmora [--home CARTELLA] [--demo | --demo-if-new] [--screenshot CARTELLA] [--drive FILE|-] [--store URL] "
    "| --import VECCHIO.mdb [--store URL] [--replace] | --copy-to URL [--replace] | --backup FILE | --restore FILE "
    "| --help | --version";

const char* const Help = R"(
Velmora, la gestione della manutenzione del reparto manutenzione.

Opzioni:
  --home CARTELLA        la cartella dei dati; senza, VELMORA_HOME, altrimenti la
                         cartella dei dati dell'utente
  --demo                 crea l'impianto dimostrativo in un archivio nuovo, poi avvia
  --demo-if-new          lo stesso, solo se la cartella non ha ancora un archivio
  --screenshot CARTELLA  salva come PNG la schermata principale e ogni schermata, poi
                         termina
  --import VECCHIO.mdb   importa l'archivio del vecchio programma e termina, senza
                         avviare il programma
  --store URL            lavora sull'archivio del server dell'impianto (PostgreSQL),
                         per esempio postgresql://utente@server/velmora; senza,
                         VELMORA_STORE, altrimenti la riga url= di velmora.ini
  --copy-to URL          copia l'archivio della cartella dei dati sul server e termina
  --replace              con --import o --copy-to: sostituisce un archivio che contiene già dati,
                         tenendone una copia
  --backup FILE          scrive in FILE una copia dell'archivio, anche mentre il
                         programma è aperto, e termina
  --restore FILE         rimette FILE al posto dell'archivio, dopo averlo controllato;
                         l'archivio sostituito resta accanto come copia datata
  --drive FILE|-         guida il programma con i comandi di FILE (- è lo standard
                         input), senza finestre a video
  --help                 mostra questo aiuto
  --version              mostra la versione
)";

/// Qt's own options, which take a value unless listed in qtFlags; left for QApplication.
const char* const qtValued[] = {
    "-platform", "-platformpluginpath", "-platformtheme", "-plugin",      "-style",   "-stylesheet",   "-display",
    "-geometry", "-qwindowgeometry",    "-qwindowtitle",  "-qwindowicon", "-session", "-qmljsdebugger"};
const char* const qtFlags[] = {"-reverse", "-widgetcount", "-nograb", "-dograb", "-sync"};

bool listed(const QString& arg, const auto& names)
{
    for (const char* n : names)
        if (arg == QLatin1String(n) || arg == QLatin1String("-") + QLatin1String(n))
            return true;
    return false;
}

/// argv without Qt's own options.
QStringList ours(int argc, char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        if (i > 0 && listed(arg.section(QLatin1Char('='), 0, 0), qtValued)) {
            if (!arg.contains(QLatin1Char('=')))
                ++i;
            continue;
        }
        if (i > 0 && listed(arg, qtFlags))
            continue;
        args << arg;
    }
    return args;
}

int refuse(const QString& what)
{
    std::fprintf(stderr, "velmora: %s\n%s\n", qPrintable(what), UsageLine);
    return 2;
}

} // namespace

std::variant<Options, int> parseCommandLine(int argc, char** argv)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help(QStringList{QStringLiteral("help"), QStringLiteral("h"), QStringLiteral("?")});
    const QCommandLineOption version(QStringList{QStringLiteral("version"), QStringLiteral("v")});
    const QCommandLineOption home(QStringLiteral("home"), QString(), QStringLiteral("CARTELLA"));
    const QCommandLineOption drive(QStringLiteral("drive"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption import(QStringLiteral("import"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption replace(QStringLiteral("replace"));
    const QCommandLineOption demo(QStringLiteral("demo"));
    const QCommandLineOption demoIfNew(QStringLiteral("demo-if-new"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"), QString(), QStringLiteral("CARTELLA"));
    const QCommandLineOption backup(QStringLiteral("backup"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption restore(QStringLiteral("restore"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption store(QStringLiteral("store"), QString(), QStringLiteral("URL"));
    const QCommandLineOption copyTo(QStringLiteral("copy-to"), QString(), QStringLiteral("URL"));
    parser.addOptions(
        {help, version, home, drive, import, replace, demo, demoIfNew, screenshot, backup, restore, store, copyTo});

    const QStringList args = ours(argc, argv);
    if (!parser.parse(args)) {
        if (!parser.unknownOptionNames().isEmpty()) {
            const QString name = parser.unknownOptionNames().constFirst();
            return refuse(QStringLiteral("opzione sconosciuta: %1%2")
                              .arg(name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--"), name));
        }
        return refuse(QStringLiteral("manca il valore di %1").arg(args.constLast()));
    }
    if (parser.isSet(help)) {
        std::printf("%s\n%s", UsageLine, Help);
        return 0;
    }
    if (parser.isSet(version)) {
        std::printf("Velmora %s\n", Version);
        return 0;
    }
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("argomento non riconosciuto: %1").arg(parser.positionalArguments().constFirst()));

    Options o;
    o.home = parser.value(home);
    if (parser.isSet(drive))
        o.drive = parser.value(drive);
    if (parser.isSet(import))
        o.importFile = parser.value(import);
    return o;
}

} // namespace app
