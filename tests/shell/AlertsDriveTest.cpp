// The start's alerts, the workload line and the access screen, driven end to end through
// the automation driver with the clock frozen.
#include "definition/Workload.h"
#include "support/InProcessDrive.h"
#include "support/ScreenTest.h"
#include "support/Shown.h"

#include <QFile>

namespace {

class AlertsDrive : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // The program's own workload line, which the shell's fixture takes away.
        definition::installWorkloadLine();
    }

    InProcessDrive drive;
};

} // namespace

TEST_F(AlertsDrive, StartAlertsWorkloadLineAndTransferText)
{
    drive(QStringLiteral("clock 2026-11-15T08:00:00"));
    // Five days late, two days late (silent), due tomorrow, and the day after (not due).
    const char* rows[][3] = {{"10", "Mensile", "#11/10/2026#"},
                             {"3", "Mensile", "#11/13/2026#"},
                             {"7", "Bimestrale", "#11/16/2026#"},
                             {"8", "Annuale", "#11/17/2026#"}};
    for (const auto& r : rows)
        drive(QStringLiteral("exec INSERT INTO Tbl_Maintenance (Macchina, Modello, Numerazione, Manutenzione_Tipo, "
                             "Tempo_Minuti, Prossima) VALUES ('PRESSA', 'AX100', '%1', '%2', 90, %3)")
                  .arg(QLatin1String(r[0]), QLatin1String(r[1]), QLatin1String(r[2])));
    // 3000 minutes a week as stored texts: 50 hours, beyond what the time of day can hold.
    drive(QStringLiteral("exec INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Tot_Minuti_Sett) VALUES (1, 1, "
                         "'2.999,50')"));
    drive(QStringLiteral("exec INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Tot_Minuti_Sett) VALUES (1, 2, "
                         "'0,50')"));

    drive(QStringLiteral("answer yes"));
    drive(QStringLiteral("start"));
    EXPECT_EQ(
        kit::titles(),
        (QStringList{QStringLiteral("MANUTENZIONE DA ESEGUIRE"),
                     QStringLiteral("PERIODO DI MANUTENZIONE SCADUTO DA 5 GIORNI PER LA MACCHINA: PRESSA AX100 N°10"),
                     QStringLiteral("MANUTENZIONE PREVISTA DOMANI: MACCHINA: PRESSA AX100 N°7")}));
    EXPECT_EQ(drive(QStringLiteral("get frmMain.Caption")).toString(), QStringLiteral("VELMORA <Esegui Manutenzioni>"));
    EXPECT_TRUE(drive(QStringLiteral("loaded Form7")).toBool());
    EXPECT_EQ(drive(QStringLiteral("get frmMain.Label1.Caption")).toString(),
              QStringLiteral("Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss 00:00:00 "
                             "-Persone Necessarie: 1,3]"));

    // The About screen fades in from 1, by 5 a tick.
    EXPECT_EQ(drive(QStringLiteral("get frmAbout.Opacity")).toInt(), 1);
    drive(QStringLiteral("tick frmAbout.timeInc"));
    drive(QStringLiteral("tick frmAbout.timeInc"));
    EXPECT_EQ(drive(QStringLiteral("get frmAbout.Opacity")).toInt(), 11);

    // Its Image2 leads to the access screen; the code is case-sensitive.
    drive(QStringLiteral("click frmAbout.Image2"));
    EXPECT_TRUE(drive(QStringLiteral("loaded Form20")).toBool());
    drive(QStringLiteral("type Form20.Txt_Pass gravolt"));
    drive(QStringLiteral("click Form20.Cmd_Pass"));
    EXPECT_EQ(kit::titles(), QStringList{QStringLiteral("ACCESSO NEGATO!!")});
    EXPECT_FALSE(drive(QStringLiteral("get Form20.Cmd_Procedura.Visible")).toBool());
    drive(QStringLiteral("set Form20.Txt_Pass.Text GRAVOLT"));
    drive(QStringLiteral("click Form20.Cmd_Pass"));
    ASSERT_TRUE(drive(QStringLiteral("get Form20.Cmd_Procedura.Visible")).toBool());
    drive(QStringLiteral("click Form20.Cmd_Procedura"));
    EXPECT_EQ(kit::titles(), QStringList{QStringLiteral("PROCEDURA TRASFERIMENTO DATI")});
    // Written with one dot, handed over with two.
    EXPECT_TRUE(QFile::exists(path() + QStringLiteral("/Velmora.txt")));
    EXPECT_EQ(drive(QStringLiteral("opened")).toArray(), QJsonArray{path() + QStringLiteral("/Velmora..txt")});

    // Image6 fades the About screen out until it goes.
    drive(QStringLiteral("click frmAbout.Image6"));
    drive(QStringLiteral("tick frmAbout.timeDec"));
    EXPECT_EQ(drive(QStringLiteral("get frmAbout.Opacity")).toInt(), 1);
    drive(QStringLiteral("tick frmAbout.timeDec"));
    EXPECT_FALSE(drive(QStringLiteral("loaded frmAbout")).toBool());
}
