// The operators' register: the list and the selected operator with age, service and last
// job; insert, edit with the end of employment, delete; the searches; the date advice;
// the print; and the road from the main menu through the automation driver.
#include "people/Form18.h"

#include "execution/Form7.h"
#include "reports/ReportViewer.h"
#include "runtime/OpenFile.h"
#include "support/ScreenTest.h"

using kit::date;
using people::Form18;
using vb::Variant;
namespace answer = vb::answer;

namespace {

class Form18Test : public ScreenTest
{
protected:
    /// An operator; a Null date leaves its column empty, 0 is a running employment.
    int addOperator(const QString& name, const QString& qualification, const Variant& born, const Variant& started,
                    const Variant& ended = Variant(0), const QString& type = "Interno")
    {
        return plant.worker(name, qualification,
                            {{"Data_Nascita", born}, {"Inizio_Rapp", started}, {"Fine_Rapp", ended}, {"Tipo", type}});
    }

    /// A maintenance of the register last executed by this operator.
    void addJob(int operatorId, const QDate& ultima, const QString& type, const QString& model, const QString& number)
    {
        plant.registerRow({{"Macchina", "PRESSA"},
                           {"Modello", model},
                           {"Numerazione", number},
                           {"Manutenzione_Tipo", type},
                           {"Ultima", Variant::fromDate(ultima)},
                           {"Prossima", Variant::fromDate(ultima.addDays(28))},
                           {"ID_OPERATORE", operatorId}});
    }

    static Form18* form18() { return screen<Form18>("Form18"); }
    static Form18* reopened() { return ScreenTest::reopened<Form18>("Form18"); }
    static void selectOperator(Form18* f, int id) { selectKey(f->DataGrid1, id); }
};

} // namespace

TEST_F(Form18Test, ListAndTheSelectedOperatorWithAgeServiceAndLastJob)
{
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 12, 31), date(2010, 3, 1));
    const int bianchi =
        addOperator("bianchi", "Meccanico", date(1975, 5, 20), date(2001, 9, 1), date(2020, 6, 30), "Esterno");
    // A birth of 0 reads back as a time of day, shorter than a date: no date at all.
    const int verdi = addOperator("VERDI", "Meccanico", Variant(0), Variant::null(), Variant::null());
    addJob(rossi, QDate(2026, 10, 1), "Mensile", "AX100", "1");
    addJob(rossi, QDate(2026, 11, 10), "Bimestrale", "T200", "10");

    Form18* f = form18();
    EXPECT_EQ(f->Caption() + " " + f->Label1->Caption(), "MANUTENTORI 0peratori Presenti: 3");
    EXPECT_EQ(f->DataGrid1->cellValue(0, 0).toLong(), bianchi) << "by name, case ignored";
    EXPECT_EQ(captions(f->DataGrid1),
              QStringList({"ID_OPERATORE", "Operatore", "Qualifica", "Nascita", "Tipo", "Assunzione", "Fine_Rapp"}));
    EXPECT_EQ(widths(f->DataGrid1), QList<int>({0, 1800, 1800, 1100, 0, 1150, 0}));
    for (int i = 0; i < 7; ++i)
        EXPECT_TRUE(f->DataGrid1->Columns(i).Locked()) << i;
    EXPECT_TRUE(!f->Cmd_Edit->isEnabled() && f->DTPicker4->isHidden() && f->DTPicker3->isHidden());

    selectOperator(f, rossi);
    // Years only: born on 31 December 1980, counted 46 on 15 November 2026. The newest job.
    EXPECT_EQ(texts({f->TxtID_OPERATORE, f->Txt_Qualifica, f->Txt_Eta, f->Txt_Rapporto, f->Txt_Manutenzione,
                     f->Txt_Modello, f->Txt_Numero}),
              QStringList({QString::number(rossi), "Elettricista", "46", "16", "Bimestrale", "T200", "10"}));
    EXPECT_EQ(f->DTPicker2->date(), QDate(1980, 12, 31));
    EXPECT_EQ(f->DTPicker3->date(), QDate(2026, 11, 10));
    EXPECT_TRUE(f->DTPicker4->isHidden()) << "Fine_Rapp 0: the employment runs";
    EXPECT_TRUE(!f->DTPicker3->isHidden() && f->Cmd_Edit->isEnabled());

    // An ended employment: the end date shown, the service frozen at the end year; no
    // job, so nothing of ROSSI's job stays in the frame.
    selectOperator(f, bianchi);
    EXPECT_EQ(texts({f->Combo1, f->Txt_Rapporto}), QStringList({"Esterno", "19"}));
    EXPECT_EQ(f->DTPicker4->date(), QDate(2020, 6, 30));
    EXPECT_TRUE(!f->DTPicker4->isHidden() && f->DTPicker3->isHidden());
    EXPECT_EQ(f->Txt_Manutenzione->Text() + f->Txt_Modello->Text() + f->Txt_Numero->Text(), "");

    // No dates: the pickers show today and nothing is worked out.
    selectOperator(f, verdi);
    EXPECT_EQ(f->DTPicker2->date(), QDate(2026, 11, 15));
    EXPECT_EQ(texts({f->Txt_Eta, f->Txt_Rapporto}), QStringList({"", ""}));

    // From 1 January the one born on 31 December is counted a full year older.
    setToday(QDate(2027, 1, 1));
    selectOperator(f, rossi);
    EXPECT_EQ(f->Txt_Eta->Text(), "47");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form18Test, InsertNeedsNameAndQualificationAndSavesARunningEmployment)
{
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 1, 1), date(2010, 3, 1));
    Form18* f = form18();
    selectOperator(f, rossi);
    f->Cmd_Add->click();
    EXPECT_EQ(texts({f->TxtID_OPERATORE, f->Combo1, f->Cmd_Edit}), QStringList({"", "Interno", "SALVA"}));
    EXPECT_FALSE(f->Cmd_Add->isEnabled() || f->Cmd_Delete->isEnabled());

    f->Cmd_Edit->click();
    f->txtOperatore->typeText("NERI PAOLO");
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    for (const auto& b : shown)
        EXPECT_BOX(b, "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    EXPECT_EQ(column("SELECT Operatore FROM Tbl_Operatore"), QStringList{"ROSSI"});

    f->Txt_Qualifica->typeText("Saldatore");
    f->DTPicker2->setValue(date(1990, 4, 12));
    f->DTPicker1->setValue(date(2015, 2, 1));
    f->Combo1->choose("Esterno");
    f->Cmd_Edit->click();
    const auto saved = rows("SELECT Qualifica, Data_Nascita, Inizio_Rapp, Fine_Rapp, Tipo FROM Tbl_Operatore "
                            "WHERE Operatore = 'NERI PAOLO'");
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0][1].toString() + " " + saved[0][2].toString() + " " + saved[0][4].toString(),
              "12/04/1990 01/02/2015 Esterno");
    // A running employment is written as 0, which reads back as no date.
    EXPECT_TRUE(!people::IsTenCharacterDate(saved[0][3]) && saved[0][3].toDouble() == 0.0);
    EXPECT_TRUE(boxes().empty());

    // Reopened in browse mode on the row number kept before the insert: row 0, where
    // the new name now sorts.
    Form18* again = reopened();
    EXPECT_EQ(texts({again->Cmd_Edit, again->txtOperatore, again->Txt_Rapporto}),
              QStringList({"MODIFICA", "NERI PAOLO", "11"}));
    EXPECT_TRUE(again->DTPicker4->isHidden());

    // A click on the list leaves an insert for editing the selected operator.
    again->Cmd_Add->click();
    again->DataGrid1->select(1);
    again->DataGrid1->click();
    EXPECT_EQ(again->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(again->Cmd_Edit->isEnabled() && again->Cmd_Add->isEnabled());
}

TEST_F(Form18Test, EditAsksWithTheOldNameAndDimissioniEndsTheEmployment)
{
    addOperator("bianchi", "Meccanico", date(1975, 5, 20), date(2001, 9, 1));
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 6, 1), date(2012, 3, 1));
    const QString key = QString::number(rossi);
    Form18* f = form18();

    // Nothing changed in name or qualification: the plain question, answered No.
    selectOperator(f, rossi);
    f->Cmd_Edit->click();
    // The name changed: the other question, also No.
    f->txtOperatore->setText("ROSSI MARIO");
    f->Cmd_Edit->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "Modifica Operatore **ROSSI**",
               "Stai per modificare i dati dell' Operatore [ROSSI] Vuoi Procedere??", vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(shown[1].prompt, "L'Operatore [ROSSI] Sta per essere modificato, Vuoi Procedere??");
    EXPECT_EQ(column("SELECT Operatore FROM Tbl_Operatore WHERE ID_OPERATORE = " + key), QStringList{"ROSSI"});

    // Dimissioni shows the end date at today; the save writes it.
    f->Cmd_Dimissioni->click();
    EXPECT_TRUE(!f->DTPicker4->isHidden() && f->DTPicker4->date() == QDate(2026, 11, 15));
    answer({answer::Yes});
    f->Cmd_Edit->click();
    boxes();
    EXPECT_EQ(lines("SELECT Operatore, Fine_Rapp FROM Tbl_Operatore WHERE ID_OPERATORE = " + key),
              QStringList{"ROSSI MARIO|15/11/2026"});

    // Back on the kept row; two years on, the service stays at the end year less the start.
    setToday(QDate(2028, 11, 15));
    f = reopened();
    f->DataGrid1->select(0);
    f->DataGrid1->select(1);
    EXPECT_EQ(texts({f->txtOperatore, f->Txt_Rapporto, f->Txt_Eta}), QStringList({"ROSSI MARIO", "14", "48"}));
    EXPECT_FALSE(f->DTPicker4->isHidden());

    // A second click takes the end back: the save writes 0 again and the service runs on.
    f->Cmd_Dimissioni->click();
    EXPECT_TRUE(f->DTPicker4->isHidden());
    f->Txt_Qualifica->setText("Capo squadra");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes()[0].prompt, "L'Operatore [ROSSI MARIO] Sta per essere modificato, Vuoi Procedere??")
        << "a new qualification counts as a change";
    EXPECT_EQ(rows("SELECT Fine_Rapp FROM Tbl_Operatore WHERE ID_OPERATORE = " + key)[0][0].toDouble(), 0.0);
    EXPECT_EQ(reopened()->Txt_Rapporto->Text(), "16");
}

TEST_F(Form18Test, DeleteAsksFirstAndTheRegisterKeepsTheKey)
{
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 6, 1), date(2012, 3, 1));
    addJob(rossi, QDate(2026, 11, 10), "Mensile", "AX100", "1");
    Form18* f = form18();
    f->Cmd_Delete->click();
    selectOperator(f, rossi);
    f->Cmd_Delete->click(); // answered No
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "NESSUNA OPERATORE SELEZIONATA", "Non è stato selezionato nessun dato!", vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "Eliminazione Operatore **ROSSI**", "Vuoi Veramente eliminare l'Operatore ROSSI?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT Operatore FROM Tbl_Operatore").size(), 1);

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_TRUE(column("SELECT Operatore FROM Tbl_Operatore").isEmpty());
    EXPECT_EQ(column("SELECT ID_OPERATORE FROM Tbl_Maintenance"), QStringList{QString::number(rossi)});
    EXPECT_EQ(reopened()->Label1->Caption(), "0peratori Presenti: 0");
}

TEST_F(Form18Test, SearchesByNameAndQualificationAndTheFullListAgain)
{
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 6, 1), date(2012, 3, 1));
    addOperator("ROSSINI", "Meccanico", date(1982, 6, 1), date(2014, 3, 1));
    addOperator("BIANCHI", "Meccanico", date(1984, 6, 1), date(2016, 3, 1));
    Form18* f = form18();
    selectOperator(f, rossi);

    f->Text1->typeText("ross");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 2);
    EXPECT_EQ(f->TxtID_OPERATORE->Text(), "") << "a search leaves no operator selected";

    // Into the other search: the first one empties as it is left.
    f->Text2->click();
    EXPECT_EQ(f->Text1->Text(), "");
    f->Text2->typeText("MECC");
    EXPECT_EQ(column(f->DataGrid1, "Operatore"), QStringList({"BIANCHI", "ROSSINI"}));
    f->Text1->setText("x");
    f->Text2->click();
    EXPECT_EQ(f->Text1->Text(), "") << "a click in one search empties the other";

    // A quote breaks the statement: an empty list, no message, nothing changed.
    f->Text2->setText("");
    f->Text2->typeText("'");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0);
    EXPECT_TRUE(boxes().empty());

    f->Cmd_Vis_All->click();
    Form18* again = reopened();
    EXPECT_EQ(texts({again->Label1, again->Cmd_Print}), QStringList({"0peratori Presenti: 3", "Stampa Tutto"}));
}

TEST_F(Form18Test, APickerRefusingTodayWritesTheDateGuideAndInfoOnRequest)
{
    const int rossi = addOperator("ROSSI", "Elettricista", date(1980, 6, 1), date(2012, 3, 1));
    // A date the pickers cannot hold, as on a computer set to another date format.
    setToday(QDate(1600, 6, 1));
    Form18* f = form18();
    vb::OpenFileService::takeOpened();

    // The row selection passes the refused date by in silence.
    selectOperator(f, rossi);
    EXPECT_EQ(f->txtOperatore->Text(), "ROSSI");
    EXPECT_TRUE(vb::OpenFileService::takeOpened().empty());

    // INSERISCI blames the date format: the guide opens and the insert does not begin.
    f->Cmd_Add->click();
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{path() + "/Errore_Formato_Data.txt"});
    EXPECT_EQ(linesOf("Errore_Formato_Data.txt").value(2),
              "IL FORMATO DATA IMPOSTATO SU QUESTO PC HA CAUSATO UN ERRORE AL SOFTWARE");
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(boxes().empty());

    setToday(QDate(2026, 11, 15));
    f->Cmd_Info->click();
    EXPECT_BOX(oneBox(), "Info --",
               "Il File 'Info.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  " + path(),
               vb::mb::Information);
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{path() + "/Info.txt"});
}

TEST_F(Form18Test, PrintListsOperatorsWithJobsByQualificationNewestJobFirst)
{
    const int rossi = addOperator("ROSSI", "Meccanico", date(1980, 6, 1), date(2012, 3, 1));
    const int bianchi = addOperator("BIANCHI", "Elettricista", date(1975, 5, 20), date(2001, 9, 1));
    addOperator("VERDI", "Apprendista", date(2001, 1, 1), date(2024, 9, 1));
    addJob(rossi, QDate(2026, 9, 1), "Mensile", "AX100", "1");
    addJob(rossi, QDate(2026, 11, 10), "Bimestrale", "T200", "10");
    addJob(bianchi, QDate(2026, 10, 5), "Annuale", "PM160", "3");
    start(); // the main screen hosts the previews
    boxes();

    form18()->Cmd_Print->click();
    const QStringList t = printed("DataReport2");
    EXPECT_TRUE(t.contains("LISTA OPERATORI") && t.contains("15/11/2026 08.00.00"))
        << "Label2: the present date and time";
    EXPECT_FALSE(t.contains("VERDI")) << "no job, no place in the list";
    EXPECT_LT(t.indexOf("BIANCHI"), t.indexOf("ROSSI")) << "by qualification";
    EXPECT_LT(t.indexOf("T200"), t.indexOf("AX100")) << "newest job first";
    EXPECT_EQ(t.mid(t.indexOf("Interventi Eseguiti"), 2), (QStringList{"Interventi Eseguiti", "1"}));
    EXPECT_EQ(reports::ReportWindow("DataReport2")->geometry().left(), vb::twipsToPixels(2200)) << "work area";
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form18Test, TheMainMenuOpensTheScreenAndTheRegisterListsTheSameOperators)
{
    start()->control("lblOperatore")->click();
    ASSERT_TRUE(shell::screens().isLoaded("Form18"));
    EXPECT_TRUE(form18()->isVisible());
    boxes();

    // The register's operator list reads the same table.
    plant.worker("NERI PAOLO", "Saldatore", {{"Tipo", "Esterno"}});
    shell::screens().show("Form7");
    EXPECT_TRUE(screen<execution::Form7>("Form7")->DataCombo5->items().contains("NERI PAOLO"));
}
