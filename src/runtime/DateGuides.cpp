#include "runtime/DateGuides.h"

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"

#include <cmath>

namespace vb {

namespace {

/// How to set the date format, one line as the old guide had it.
QString guideParagraph()
{
    return QStringLiteral(
        "dal menu avvio (o start) di Windows, selezionare l'opzione “Impostazioni” e, successivamente, "
        "“Pannello di Controllo” (se si usa Windows XP, è possibile che quest'ultima opzione sia compresa nel "
        "menu di avvio, senza scelte intermedie); "
        "tra le diverse voci del Pannello di Controllo cercare “Opzioni Internazionali” o “Opzioni "
        "Internazionali e della Lingua” e fare doppio Click su questa voce; "
        "selezionate l 'area; Personalizza; "
        "selezionate l 'area Data, e inserire i seguenti formati: "
        "formato data breve: gg/MM/aaaa "
        "separatore data: / "
        "formato data estesa: gggg g MMMM aaaa "
        "attivare la variazione impostata cliccando su  “applica” e premere “OK” "
        "riavviare il computer per essere sicuri che il sistema recepisca la modifica e il problema dovrebbe "
        "essere risolto.");
}

QStringList guide(const QStringList& heading)
{
    QStringList lines{QStringLiteral("DATA ") + ShortDate(Clock::today()), QString()};
    lines += heading;
    lines += {guideParagraph(), QString(), QString(), vb::DegreeRule(),
              QStringLiteral("Per Ulteriori Anomalie scrivete una Email a ") + SupportAddress()};
    return lines;
}

QString pad2(qint64 v)
{
    const QString s = QString::number(v);
    return s.size() == 1 ? u'0' + s : s;
}

/// VB's Mod on a floating value: the value is first rounded to a whole number
/// (halves to even), the remainder keeps the dividend's sign.
qint64 vbMod(double value, qint64 divisor)
{
    return static_cast<qint64>(std::nearbyint(value)) % divisor;
}

QString duration(double seconds)
{
    const auto h = static_cast<qint64>(std::trunc(seconds / 3600.0));
    const qint64 n = static_cast<qint64>(std::trunc(seconds / 60.0)) % 60;
    const qint64 s = vbMod(seconds, 60);
    return pad2(h) + u':' + pad2(n) + u':' + pad2(s);
}

} // namespace

QStringList DateErrorGuideLines()
{
    return guide({QStringLiteral("IL FORMATO DATA IMPOSTATO SU QUESTO PC HA CAUSATO UN ERRORE AL SOFTWARE"),
                  QStringLiteral("PER UN CORRETTO FUNZIONAMENTO DEVI IMPOSTARE IL SEGUENTE FORMATO gg/MM/aaaa"),
                  QString(), QStringLiteral("SEGUI LA PROCEDURA SOTTOSTANTE:")});
}

QStringList DateInfoLines()
{
    return guide({QStringLiteral("INFORMAZIONI PER UNA VISUALIZZAZIONE CORRETTA DELLE DATE"), QString(), QString()});
}

void WriteDateErrorGuide()
{
    const QString path = AppFile(QStringLiteral("Errore_Formato_Data.txt"));
    WriteTextFile(path, DateErrorGuideLines());
    OpenFile(path);
}

void WriteDateInfo()
{
    const QString path = AppFile(QStringLiteral("Info.txt"));
    WriteTextFile(path, DateInfoLines());
    MsgBox(QStringLiteral("Il File 'Info.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ")
               + AppPath(),
           mb::Information, QStringLiteral("Info --"));
    OpenFile(path);
}

QString SessionStamp(const QDateTime& at)
{
    const QDate d = at.date();
    const QTime t = at.time();
    return QStringLiteral("%1/%2/%3  %4.%5.%6")
        .arg(d.day())
        .arg(d.month())
        .arg(d.year())
        .arg(t.hour())
        .arg(t.minute())
        .arg(t.second());
}

QString DurationText(double minutes)
{
    return duration(minutes * 60.0);
}

QString DurationText16(double minutes)
{
    // The seconds go into a VB Integer first: rounded half to even, overflow above 32767.
    const double seconds = std::nearbyint(minutes * 60.0);
    if (!(seconds >= -32768.0 && seconds <= 32767.0))
        throw VBError(err::Overflow);
    return duration(seconds);
}

} // namespace vb
