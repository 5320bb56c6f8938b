#include "shell/StoreCheck.h"

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "store/Backup.h"
#include "store/Schema.h"

#include <QFileInfo>

namespace shell {

namespace {

/// A damaged store: the newest sound copy is offered, never put back unasked.
void offerRestore(const QString& folder, const QString& problem)
{
    namespace backup = store::backup;
    QString sound;
    for (const QString& c : backup::dailyCopies(folder)) {
        if (backup::problemOf(c, true).isEmpty()) {
            sound = c;
            break;
        }
    }
    const QString damaged = QStringLiteral("L'archivio dei dati è danneggiato: %1.").arg(problem);
    if (sound.isEmpty()) {
        vb::MsgBox(damaged + QStringLiteral("\n\nNella cartella '%1' non c'è una copia di sicurezza valida da "
                                            "ripristinare.")
                                 .arg(backup::folder(folder)),
                   vb::mb::Critical);
        return;
    }
    const QString ask = damaged + QStringLiteral("\n\nLa copia di sicurezza valida più recente è '%1'.\nRipristinarla "
                                                 "ora? L'archivio danneggiato resta nella cartella dei dati come "
                                                 "copia datata.")
                                      .arg(sound);
    if (vb::MsgBox(ask, vb::mb::YesNo | vb::mb::Critical) != vb::answer::Yes)
        return;
    const QString error = backup::restore(sound, folder, vb::Clock::today());
    if (error.isEmpty())
        vb::MsgBox(QStringLiteral("La copia di sicurezza '%1' è stata ripristinata.").arg(sound), vb::mb::Information);
    else
        vb::MsgBox(error, vb::mb::Critical);
}

} // namespace

void checkStoreAtStart()
{
    const QString folder = vb::AppPath();
    const QString store = vb::AppFile(QLatin1String(store::StoreFileName));
    const QFileInfo info(store);
    if (info.exists()) {
        if (const QString problem = store::backup::problemOf(store, true); !problem.isEmpty()) {
            offerRestore(folder, problem);
        } else if (!info.isWritable() || !QFileInfo(folder).isWritable()) {
            vb::MsgBox(QStringLiteral("L'archivio dei dati '%1' è di sola lettura, o lo è la sua cartella: Velmora si "
                                      "apre per la sola consultazione e le modifiche non potranno essere salvate.")
                           .arg(store),
                       vb::mb::Exclamation);
        } else {
            store::backup::makeDailyCopy(folder, vb::Clock::today());
        }
    }
    store::backup::holdFolder(folder);
}

} // namespace shell
