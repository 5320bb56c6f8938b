#include "shell/Form20.h"

#include "controls/ScreenKit.h"
#include "reports/TextExport.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"

namespace shell {

Form20::Form20(QWidget* owner) : vb::Form(owner, QStringLiteral("Form20"), QString::fromLatin1(vb::AppTitle))
{
    buildControls();
}

void Form20::buildControls()
{
    Move(0, 0, 5400, 3600);
    const vb::ScreenKit kit(this, {.button = 495});
    Image1 = kit.image(this, "Image1", 240, 240, 1200, 1200);
    Txt_Pass = kit.field(this, "Txt_Pass", 1680, 600, 2400);
    Cmd_Pass = kit.button(this, "Cmd_Pass", QStringLiteral("ACCEDI"), 1680, 1080, 2400);
    Image2 = kit.image(this, "Image2", 1680, 240, 1200, 900);
    Image2->setVisible(false);
    Cmd_Procedura = kit.button(this, "Cmd_Procedura", QStringLiteral("Procedura"), 1680, 1320, 2400);
    Cmd_Procedura->setVisible(false);
    Image6 = kit.image(this, "Image6", 4440, 2520, 720, 720);

    Cmd_Pass->Click = [this] { Cmd_Pass_Click(); };
    Cmd_Procedura->Click = [this] { Cmd_Procedura_Click(); };
    Image6->Click = [this] { Image6_Click(); };
}

void Form20::Form_Load()
{
    centre();
}

void Form20::Cmd_Pass_Click()
{
    if (Txt_Pass->Text() == QLatin1String(AccessCode)) {
        Cmd_Pass->setVisible(false);
        Txt_Pass->setVisible(false);
        Image2->setVisible(true);
        Cmd_Procedura->setVisible(true);
        return;
    }
    vb::MsgBox(QStringLiteral("PASSWORD NON RICONOSCIUTA!!"), vb::mb::Critical, QStringLiteral("ACCESSO NEGATO!!"));
    Txt_Pass->focusIn();
}

QStringList Form20::TransferProcedureLines()
{
    const QString rule = vb::DegreeRule();
    return {
        QStringLiteral("INIZIO PROCEDURA TRASFERIMENTO DATI DA “” A “”"),
        rule,
        QString(),
        QStringLiteral("-Fare una Copia del Database “”"),
        QString(),
        QStringLiteral("-Verificare i dati presenti nelle tabelle per unificare i valori e non perdere informazioni."),
        QStringLiteral("Tipo:\tTbl_Unita_Misura.Unita_Misura"),
        QStringLiteral("Tipo:\tTbl_0_Economia.Costo_Economia"),
        QStringLiteral("Tipo:\tTbl_Materiale.Unita_Misura"),
        QStringLiteral("Il Contenuto del Campo Unita_Misura in Tbl_0_Economia e in Tbl_Materiali deve avere le voci "
                       "uguali es: m2, mq hanno lo stesso significato ma rappresentano 2 valori differenti"),
        QString(),
        QStringLiteral("Eliminare i record vuoti in Tutte le tabelle sottostanti"),
        QString(),
        QStringLiteral("Tbl_Materiali il campo “COSTO” non deve essere vuoto mettere valore “zero” dove manca"),
        QString(),
        QStringLiteral("Tbl_0_Economia  il campo “COSTO_ECONOMIA” non deve essere vuoto mettere valore “zero” dove "
                       "manca"),
        QString(),
        QStringLiteral("-Rinominare le seguenti Tabelle:"),
        QStringLiteral("NUOVO\tVECCHIO"),
        QStringLiteral("Tbl_1\tTbl_Unita_Misura"),
        QStringLiteral("Tbl_2\tTbl_Materiale"),
        QStringLiteral("Tbl_3\tTbl_0_Economia"),
        QStringLiteral("Tbl_4\tTbl_Cliente"),
        QStringLiteral("Tbl_5\tTbl_Preventivi"),
        QStringLiteral("Tbl_6\tTbl_Lavori"),
        QString(),
        QStringLiteral("-Nella Tbl_0_Economia Inserire Valore “Zero” in “Costo_Economia”"),
        QString(),
        QStringLiteral("-Nella Tbl_Clienti eliminare i record vuoti, il Campo “Cliente” deve contenere un Valore"),
        QString(),
        rule,
        QStringLiteral("FINE PROCEDURA TRASFERIMENTO DATI DA “v1” A “v2”"),
        QString(),
    };
}

void Form20::Cmd_Procedura_Click()
{
    // The name handed over has two dots where the file written has one, so the box
    // speaks of a file that is not there and the desktop finds nothing to open. The users
    // know it this way; it stays.
    reports::TextExport transfer;
    transfer.fileName = QStringLiteral("Velmora.txt");
    transfer.lines = TransferProcedureLines();
    transfer.boxTitle = QStringLiteral("PROCEDURA TRASFERIMENTO DATI");
    transfer.openedName = QStringLiteral("Velmora..txt");
    transfer.boxText =
        QStringLiteral("Il File 'Velmora..txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ");
    try {
        reports::WriteTextExport(transfer);
    } catch (const vb::VBError& e) {
        vb::MsgBox(e.description());
    }
}

void Form20::Image6_Click()
{
    screens().unload(QStringLiteral("Form20"));
}

VELMORA_SCREEN(Form20);

} // namespace shell
