#include "reports/TextExport.h"

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"

#include <QFile>

namespace reports {

namespace {

QString today()
{
    return vb::ShortDate(vb::Clock::today());
}

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

/// The advice files: their heading, the paragraph, two empty lines and the instruction ending.
TextExport dateGuide(const QString& fileName, QStringList heading)
{
    heading << guideParagraph();
    return {fileName, heading, QStringList{QString(), QString()} + InstructionEnding(), {}, {}};
}

} // namespace

QStringList SignatureEnding()
{
    return {vb::DegreeRule(), QStringLiteral("VELMORA"), vb::DegreeRule()};
}

QStringList InstructionEnding()
{
    return {vb::DegreeRule(), QStringLiteral("Per Ulteriori Anomalie scrivete una Email a ") + vb::SupportAddress()};
}

QString DatedTitle(const QString& shortName)
{
    return shortName + QStringLiteral(" -") + today() + QStringLiteral("-");
}

QStringList TextExportLines(const TextExport& text)
{
    QStringList all{QStringLiteral("DATA ") + today(), QString()};
    all += text.lines;
    all += text.ending;
    return all;
}

void WriteTextExport(const TextExport& text)
{
    const QString opened = text.openedName.isEmpty() ? text.fileName : text.openedName;
    vb::WriteTextFile(vb::AppFile(text.fileName), TextExportLines(text));
    if (!text.boxTitle.isEmpty()) {
        const QString words =
            text.boxText.isEmpty()
                ? QStringLiteral("Il File '") + opened +
                      QStringLiteral("' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ")
                : text.boxText;
        vb::MsgBox(words + vb::AppPath(), vb::mb::Information, text.boxTitle);
    }
    vb::OpenFile(vb::AppFile(opened));
}

void OpenNotesFile()
{
    const QString path = vb::AppFile(QStringLiteral("Note.txt"));
    QFile file(path);
    if (!file.open(QIODevice::Append))
        throw vb::VBError(75);
    file.close();
    vb::OpenFile(path);
}

void WriteDateErrorGuide()
{
    WriteTextExport(
        dateGuide(QStringLiteral("Errore_Formato_Data.txt"),
                  {QStringLiteral("IL FORMATO DATA IMPOSTATO SU QUESTO PC HA CAUSATO UN ERRORE AL SOFTWARE"),
                   QStringLiteral("PER UN CORRETTO FUNZIONAMENTO DEVI IMPOSTARE IL SEGUENTE FORMATO gg/MM/aaaa"),
                   QString(), QStringLiteral("SEGUI LA PROCEDURA SOTTOSTANTE:")}));
}

void WriteDateInfo()
{
    TextExport info =
        dateGuide(QStringLiteral("Info.txt"),
                  {QStringLiteral("INFORMAZIONI PER UNA VISUALIZZAZIONE CORRETTA DELLE DATE"), QString(), QString()});
    // The old box title left out the date between its two dashes; users know it as "Info --".
    info.boxTitle = QStringLiteral("Info --");
    info.boxText =
        QStringLiteral("Il File 'Info.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ");
    WriteTextExport(info);
}

} // namespace reports
