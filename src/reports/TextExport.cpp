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

void WriteTextExport(const TextExport& text)
{
    const QString today = vb::ShortDate(vb::Clock::today());
    const QString path = vb::AppFile(text.fileName);
    {
        vb::TextFile file(path);
        file.print(QStringLiteral("DATA ") + today);
        file.print();
        file.print(text.lines);
        if (text.blankBeforeEnding)
            file.print();
        file.print(vb::DegreeRule());
        if (text.ending == TextExport::Ending::Signature) {
            file.print(QStringLiteral("VELMORA"));
            file.print(vb::DegreeRule());
        } else {
            file.print(QStringLiteral("Per Ulteriori Anomalie scrivete una Email a ") + vb::SupportAddress());
        }
        file.close();
    }
    vb::MsgBox(QStringLiteral("Il File '") + text.fileName +
                   QStringLiteral("' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ") +
                   vb::AppPath(),
               vb::mb::Information, text.title + QStringLiteral(" -") + today + QStringLiteral("-"));
    vb::OpenFile(path);
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

} // namespace reports
