// The start-up of the main screen, its menu and its close, on a real store.
#include "controls/DateControls.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/OpenFile.h"
#include "runtime/VBError.h"
#include "support/ErrorOf.h"
#include "support/GoldenFile.h"
#include "support/ScreenTest.h"

#include <QFile>
#include <QTextStream>

using shell::frmMain;
using shell::screens;
using vb::Variant;
using StartupTest = ScreenTest;

namespace {

bool columnExists(const QString& table, const QString& column)
{
    return errorOf([&] { store::Recordset().Open(QStringLiteral("SELECT %1 FROM %2").arg(column, table)); }) == 0;
}

} // namespace

// Upgrade and copy come before anything reads the store; the alerts (frmAbout's load) come
// before the time stamp, which therefore excludes the time spent on them; the workload line
// comes last.
TEST_F(StartupTest, LoadRunsItsStepsInOrder)
{
    std::vector<QString> seen;
    standIn("frmAbout", [&](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, "frmAbout", nullptr);
        f->onLoad = [&] {
            seen.push_back(columnExists("Tbl_Certif_Proced_Manut", "Scheda") ? "about after upgrade"
                                                                             : "about before upgrade");
            auto* main = screens().formAs<frmMain>("frmMain");
            seen.push_back(main->Txt_Apertura->Text().isEmpty() ? "not stamped" : "stamped");
            seen.push_back(main->isVisible() ? "main visible" : "main hidden");
            vb::Clock::advance(90); // the user reads the alert boxes
        };
        return f;
    });
    shell::setWorkloadTotal([&] {
        auto* main = screens().formAs<frmMain>("frmMain");
        seen.push_back("workload " + main->Txt_Apertura->Text());
    });

    frmMain* main = start();
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(seen, (std::vector<QString>{"about after upgrade", "not stamped", "main hidden",
                                          "workload 15/11/2026  8.1.30"}));
    EXPECT_EQ(main->Txt_Apertura->Text(), "15/11/2026  8.1.30");
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(main->Caption(), "VELMORA");
    vb::Form* about = screens().loaded("frmAbout");
    ASSERT_NE(about, nullptr);
    EXPECT_TRUE(about->isVisible());
    // frmAbout's placement has no 300 twips added.
    EXPECT_EQ(about->Top(), 2200);
    EXPECT_EQ(about->Left(), main->PicMenu->Width());
    EXPECT_EQ(about->Height(), main->Image2->Height() - 2200);
    EXPECT_TRUE(boxes().empty());
}

// A new store lacks the five columns and the sheet table: the first start adds them, and
// a second start finds them there, swallows six failures and shows nothing.
TEST_F(StartupTest, UpgradeRunsOnAnOldStoreAndIsHarmlessTheSecondTime)
{
    EXPECT_FALSE(columnExists("Tbl_Ricerca", "Images"));
    EXPECT_FALSE(columnExists("Tbl_Maintenance_Note", "Tipo_Nota"));
    start();
    for (const auto& [table, column] :
         std::vector<std::pair<const char*, const char*>>{{"Tbl_Ricerca", "Images"},
                                                          {"Tbl_Ricerca", "Percorso"},
                                                          {"Tbl_Maintenance_Note", "Tipo_Nota"},
                                                          {"Tbl_Maintenance_Note", "Images"},
                                                          {"Tbl_Maintenance_Note", "Percorso"},
                                                          {"Tbl_Certif_Proced_Manut", "Data_Rev"}})
        EXPECT_TRUE(columnExists(QString::fromLatin1(table), QString::fromLatin1(column))) << table << "." << column;

    plant.assignment(1, 1, {{"Macchina", "TORNIO"}, {"Modello", "T200"}, {"Manutenzione_Tipo", "Settimanale"}});
    shell::screens().discardAll();
    start();
    EXPECT_TRUE(boxes().empty());
    // No assignment existed at the first start, so the table stayed empty; the copy is
    // guarded by emptiness, not by the table being new, so this start copies.
    EXPECT_EQ(rows("SELECT * FROM Tbl_Certif_Proced_Manut").size(), 1u);
    shell::screens().discardAll();
    plant.assignment(2, 1, {{"Macchina", "FRESA"}, {"Modello", "F1"}, {"Manutenzione_Tipo", "Mensile"}});
    start();
    // With a row present, even one, nothing is copied, also for assignments added since.
    EXPECT_EQ(rows("SELECT * FROM Tbl_Certif_Proced_Manut").size(), 1u);
    EXPECT_TRUE(boxes().empty());
}

// The sheet code joins the type and the machine without "_": the codes in use have that form.
TEST_F(StartupTest, SheetCopyBuildsOneRowPerAssignment)
{
    plant.assignment(12, 3, {{"Macchina", "PRESSA"}, {"Modello", "AX100"}, {"Manutenzione_Tipo", "Mensile"}});
    plant.assignment(7, 1, {{"Macchina", "PR"}, {"Modello", "B"}, {"Manutenzione_Tipo", "Annuale"}});
    start();
    const auto r = rows("SELECT ID_Assegna_M, Scheda, Data_Scheda, Rev, Data_Rev FROM "
                        "Tbl_Certif_Proced_Manut ORDER BY ID_Assegna_M");
    ASSERT_EQ(r.size(), 2u);
    const Variant today = Variant::fromDate(QDate(2026, 11, 15));
    EXPECT_EQ(r[0][1].toString().trimmed(), "12_3PRE_AX1_Men");
    EXPECT_EQ(r[1][1].toString().trimmed(), "7_1PR_B_Ann"); // short texts are taken whole
    for (const auto& row : r) {
        EXPECT_EQ(row[3].toLong(), 0);
        EXPECT_EQ(row[2].toDate(), today.toDate());
        EXPECT_EQ(row[4].toDate(), today.toDate());
    }
    EXPECT_EQ(shell::sheetCode(Variant(12), Variant(3), Variant::null(), Variant("AX100"), Variant("Mensile")),
              "12_3_AX1_Men");
}

TEST_F(StartupTest, StampHasNoLeadingZeros)
{
    vb::Clock::freeze(QDateTime(QDate(2016, 7, 3), QTime(9, 5, 0)));
    EXPECT_EQ(start()->Txt_Apertura->Text(), "3/7/2016  9.5.0");
}

TEST_F(StartupTest, MenuIsStackedAndAClickOpensOneScreen)
{
    int loads15 = 0;
    standIn("Form15", QStringList{}, &loads15);
    standIn("Form4", QStringList{});
    frmMain* main = start();
    const auto labels = main->menuLabels();
    ASSERT_EQ(labels.size(), 13u);
    EXPECT_EQ(labels[0]->Top(), 120);
    for (size_t i = 1; i < labels.size(); ++i)
        EXPECT_EQ(labels[i]->Top(), labels[i - 1]->Top() + labels[i - 1]->Height() + 165);
    EXPECT_EQ(main->lblInterventi->Caption(), "Interventi a Macchine");
    EXPECT_EQ(main->Label9->Caption(), "V3.0.3");

    screens().show("Form4");
    main->lblRicambi->click();
    EXPECT_FALSE(screens().isLoaded("Form4"));    // unloaded by the click
    EXPECT_FALSE(screens().isLoaded("frmAbout")); // also the About screen
    vb::Form* f = screens().loaded("Form15");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(loads15, 1);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->Left(), main->PicMenu->Width());
    EXPECT_EQ(f->Top(), 2200);
    EXPECT_EQ(f->Width(), main->Width() - main->PicMenu->Width());
    EXPECT_EQ(f->Height(), main->Image2->Height() - 2200 + 300);
    EXPECT_EQ(main->Caption(), "VELMORA <Ricambi>");
    EXPECT_TRUE(main->Img_Indicatore->isVisibleTo(main));
    EXPECT_EQ(main->Img_Indicatore->Top(), main->lblRicambi->Top() + 40);

    // A label whose screen is not built yet changes title and marker and opens nothing.
    main->lblOperatore->click();
    EXPECT_FALSE(screens().isLoaded("Form15"));
    EXPECT_EQ(main->Caption(), "VELMORA <Operatori>");

    // The logo shows the About screen again and hides the marker.
    main->Image6->click();
    EXPECT_TRUE(screens().loaded("frmAbout")->isVisible());
    EXPECT_FALSE(main->Img_Indicatore->isVisibleTo(main));
}

// Assegna Manutenzioni clears what Form7 hands to Form13, loading Form7 hidden to do so.
TEST_F(StartupTest, AssignMenuClearsThePreselection)
{
    int loads7 = 0;
    standIn("Form7", QStringList{"T:ID_MOD", "T:ID_MAINT", "T:DataCombo4"}, &loads7);
    standIn("Form13", [](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, "Form13", nullptr);
        auto* model = new vb::TextBox(f, "Txt_ID_MODELLO");
        auto* type = new vb::TextBox(f, "Txt_ID_MAINT_TIPO");
        f->onLoad = [model, type] {
            model->setText("12");
            type->setText("3");
        };
        return f;
    });
    frmMain* main = start();
    main->lblAss_Manut->click();
    EXPECT_EQ(loads7, 1);
    EXPECT_FALSE(screens().loaded("Form7")->isVisible());
    vb::Form* f13 = screens().loaded("Form13");
    ASSERT_NE(f13, nullptr);
    EXPECT_TRUE(f13->isVisible());
    EXPECT_EQ(f13->control("Txt_ID_MODELLO")->vbProperty("Text").toString(), QString());
    EXPECT_EQ(f13->Top(), 2200);
    EXPECT_EQ(main->Caption(), "VELMORA <Assegna Manutenzioni>");
}

// Closing writes one register row and recomputes Tempo of every row (no WHERE), hours
// taken as a time of day; lblExit writes nothing.
TEST_F(StartupTest, CloseWritesTheSessionRowAndExitDoesNot)
{
    exec("INSERT INTO Tbl_Register (Date_Open, Date_Close, Tempo) VALUES "
         "(#11/10/2026 08:00:00#, #11/11/2026 10:30:15#, 'x')");
    frmMain* main = start();
    vb::Clock::advance(3600 + 2 * 60 + 3);
    main->lblExit->click();
    EXPECT_EQ(rows("SELECT * FROM Tbl_Register").size(), 1u);

    shell::screens().discardAll();
    start();
    vb::Clock::advance(3600 + 2 * 60 + 3);
    screens().unload("frmMain");
    const auto r = rows("SELECT Date_Open, Date_Close, Tempo FROM Tbl_Register ORDER BY Date_Open");
    ASSERT_EQ(r.size(), 2u);
    // The old row of 26 h 30 m 15 s shows only what is over the whole day.
    EXPECT_EQ(r[0][2].toString(), "2.30.15");
    EXPECT_EQ(r[1][0].toDate().serial, vb::toSerial(QDateTime(QDate(2026, 11, 15), QTime(9, 2, 3))));
    EXPECT_EQ(r[1][1].toDate().serial, vb::toSerial(QDateTime(QDate(2026, 11, 15), QTime(10, 4, 6))));
    EXPECT_EQ(r[1][2].toString(), "1.2.3");
}

TEST_F(StartupTest, ProcedureGuideIsWrittenAndOpened)
{
    frmMain* main = start();
    main->Lbl_Procedure->click();
    const auto opened = vb::OpenFileService::takeOpened();
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0], path() + "/PROCEDURA.txt");
    golden::expectMatches("procedure_guide.txt", linesOf("PROCEDURA.txt").join(u'\n'));
}
