// The interventions screen driven from outside, as a storekeeper uses it: every save
// moves the part's stock by what the screen shows, and the quirks of that arithmetic are
// the program's own (see each test's words before "fixing" any of them).
#include "spares/Form14.h"

#include "support/DriveScript.h"
#include "support/SparesTest.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

namespace {

class Form14Road : public InterventionsTest
{
protected:
    QString get(const QString& what) { return InterventionsTest::get("Form14", what); }

    /// The entry area filled as a user does it on unit 1: the machine, the model, the
    /// number and the category picked from their lists, the rest typed.
    void enter(const QString& category, const QString& part, const QString& quantity, const QString& cause = "Usura")
    {
        for (const auto& [control, text] : std::initializer_list<std::pair<const char*, QString>>{
                 {"DataCombo3", "PRESSA"}, {"DataCombo2", "AX100"}, {"DataCombo4", "1"}, {"DataCombo1", category}})
            drive(QStringLiteral("choose Form14.%1 %2").arg(control, text));
        for (const auto& [control, text] : std::initializer_list<std::pair<const char*, QString>>{
                 {"DataCombo5", part}, {"DataCombo6", "Mandrino"}, {"DataCombo7", cause}, {"Txt_prelievo", quantity}})
            drive(QStringLiteral("type Form14.%1 %2").arg(control, text));
    }

    /// A new intervention entered on unit 1 and saved.
    void addNew(const QString& category, const QString& part, const QString& quantity)
    {
        drive("click Form14.Cmd_Add");
        enter(category, part, quantity);
        drive("click Form14.Cmd_Edit");
    }

    /// The first machine, then its intervention in row `row`. After a save the list
    /// stands on the machine already, so the click goes to another of its cells.
    void choose(int row)
    {
        if (drive("get Form14.DataGrid1.Row").toInt() == 0)
            drive(QStringLiteral("set Form14.DataGrid1.Col %1")
                      .arg(drive("get Form14.DataGrid1.Col").toInt() == 1 ? 2 : 1));
        drive("select Form14.DataGrid1 0");
        drive(QStringLiteral("select Form14.DataGrid2 %1").arg(row));
    }
};

const QString Updated =
    "MAGAZZINO RICAMBI AGGIORNATO: Aggiornato Magazzino Ricambi [CUSCINETTI] Tipo [Radiale 6204] !!!";

} // namespace

TEST_F(Form14Road, AWithdrawalAnEditAndADeleteMoveTheStockAsTheScreenShowsIt)
{
    drive("show Form14");
    drive("click Form14.Cmd_Add");
    EXPECT_EQ(get("Cmd_Edit.Caption"), "SALVA");
    enter("CUSCINETTI", "Radiale 6204", "3");
    EXPECT_EQ(get("Txt_ID_DESCRIZIONE_RIC.Text"), "1") << "the typed description found its part";
    EXPECT_EQ(get("Txt_Giac.Text"), "10");
    drive("click Form14.Cmd_Edit");
    EXPECT_EQ(drive.boxes(), QStringList{Updated});
    EXPECT_EQ(stock(1), 7) << "a fresh load withdraws Q: G - Q";
    EXPECT_EQ(lines("SELECT Data, ID_NUM, Quantita, ID_CAUSA FROM Tbl_Ricerca"), QStringList{"15/11/2026|1|3|1"});
    EXPECT_EQ(get("Label6.Caption"), "Conteggio Macchine: 1") << "the machine is listed after the reload";

    // An edit to another quantity moves the stock by the difference only.
    choose(0);
    EXPECT_EQ(get("Label1.Caption"), "Trovati Componenti Macchina N° 1");
    EXPECT_EQ(get("Txt_prelievo_OLD.Text"), "3");
    kit::run(drive, {"type Form14.Txt_prelievo 5", "answer yes", "click Form14.Cmd_Edit"});
    EXPECT_EQ(drive.boxes(), (QStringList{"MODIFICA DATI: Stai per eseguire una Modifica, Controlla la 'Giacenza' e la "
                                          "'Scorta Min', Vuoi Procedere??",
                                          Updated}));
    EXPECT_EQ(stock(1), 5);
    EXPECT_EQ(drive("get Form14.DataGrid1.Row").toInt(), 0) << "the reload stands on the machine again";
    EXPECT_EQ(get("Label1.Caption"), "Trovati Componenti Macchina N°") << "without reloading its interventions";

    // The same quantity writes the stock as typed: the storekeeper's correction by hand.
    choose(0);
    kit::run(drive, {"type Form14.Txt_Giac 20", "type Form14.Txt_Scorta 4", "answer yes", "click Form14.Cmd_Edit"});
    EXPECT_EQ(stock(1), 20);
    EXPECT_EQ(value("SELECT Scorta FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 1").toDouble(), 4);

    // A delete gives nothing back to the store.
    choose(0);
    drive.boxes();
    drive("answer yes");
    drive("click Form14.Cmd_Delete");
    EXPECT_EQ(drive.boxes(), QStringList{"ELIMINAZIONE DATI: Vuoi Veramente eliminare il Dato Selezionato?"});
    EXPECT_TRUE(rows("SELECT ID FROM Tbl_Ricerca").empty());
    EXPECT_EQ(stock(1), 20);
}

TEST_F(Form14Road, TheArithmeticGoesByTheTextsOnTheScreenNotByTheStoredRows)
{
    addIntervention(1, 5);
    drive("show Form14");

    // "05" against a stored 5: the texts differ, so G + O - Q runs, and gives G.
    choose(0);
    kit::run(drive, {"type Form14.Txt_prelievo 05", "answer yes", "click Form14.Cmd_Edit"});
    EXPECT_EQ(stock(1), 10);

    // Another part with the same quantity: the new part keeps its stock as loaded, and
    // the old one is never given its 5 back.
    exec("UPDATE Tbl_Descrizione_Ricambi SET Giacenza = 7 WHERE ID_DESCRIZIONE_RICAMBI = 1");
    choose(0);
    kit::run(drive, {"type Form14.DataCombo5 Assiale 51105", "answer yes", "click Form14.Cmd_Edit"});
    EXPECT_EQ(value("SELECT ID_DESCRIZIONE_RICAMBI FROM Tbl_Ricerca").toLong(), 2);
    EXPECT_EQ(std::pair(stock(1), stock(2)), std::pair(7.0, 5.0));

    // A new intervention after choosing one of quantity 5 moves by O - Q: entering 5
    // withdraws nothing, entering 2 gives 3 back.
    choose(0);
    addNew("CUSCINETTI", "Radiale 6204", "5");
    EXPECT_EQ(stock(1), 7);
    choose(0);
    addNew("CUSCINETTI", "Radiale 6204", "2");
    EXPECT_EQ(stock(1), 10);

    // Past 32767 the 16-bit conversion fails and the stock is written as 0.
    exec("UPDATE Tbl_Descrizione_Ricambi SET Giacenza = 32765 WHERE ID_DESCRIZIONE_RICAMBI = 2");
    choose(0);
    kit::run(drive, {"type Form14.Txt_prelievo 1", "answer yes", "click Form14.Cmd_Edit"});
    EXPECT_EQ(stock(2), 0);
}

TEST_F(Form14Road, NothingBlocksAWithdrawalAboveTheStockAndTheMinimumTurnsRed)
{
    drive("show Form14");
    addNew("OLIO", "Idraulico HLP46", "12");
    EXPECT_EQ(
        drive.boxes(),
        QStringList{"MAGAZZINO RICAMBI AGGIORNATO: Aggiornato Magazzino Ricambi [OLIO] Tipo [Idraulico HLP46] !!!"});
    EXPECT_EQ(stock(3), -9);
    choose(0);
    const QJsonArray red{231, 29, 33};
    EXPECT_EQ(drive("get Form14.Txt_Scorta.BackColor").toArray(), red);

    // The last piece above the minimum is orange, at the minimum red, both 0 leave it.
    drive("type Form14.Txt_Scorta 2");
    drive("type Form14.Txt_Giac 3");
    EXPECT_EQ(drive("get Form14.Txt_Scorta.BackColor").toArray(), (QJsonArray{255, 153, 0}));
    drive("type Form14.Txt_Giac 9");
    EXPECT_EQ(drive("get Form14.Txt_Scorta.BackColor").toArray(), (QJsonArray{255, 255, 255}));
    drive("type Form14.Txt_Scorta 0");
    drive("type Form14.Txt_Giac 0");
    EXPECT_EQ(drive("get Form14.Txt_Scorta.BackColor").toArray(), (QJsonArray{255, 255, 255}));
    drive("type Form14.Txt_Giac x");
    EXPECT_EQ(get("Txt_Giac.Text"), "0") << "only digits reach a quantity field";
}

TEST_F(Form14Road, RefusalsComeBeforeAnythingIsWritten)
{
    kit::run(drive, {"show Form14", "click Form14.Cmd_Add", "click Form14.Cmd_Edit"});
    EXPECT_EQ(drive.boxes(), QStringList{"MANCANZA DATI!!: Inserisci i dati Richiesti!"});
    enter("CUSCINETTI", "Radiale 6205", "1");
    EXPECT_EQ(get("Txt_ID_DESCRIZIONE_RIC.Text"), "") << "no part has this description";
    drive("click Form14.Cmd_Edit");
    EXPECT_EQ(drive.boxes(),
              QStringList{"RICAMBIO MANCANTE: Questo Ricambio non è presente nella Lista !! Inserisci in "
                          "'Descrizione Ricambi' [CUSCINETTI: Radiale 6205] "});
    EXPECT_TRUE(rows("SELECT ID FROM Tbl_Ricerca").empty());
}

TEST_F(Form14Road, ANewCauseIsCreatedEvenWhenTheSaveThenFailsAndEndsTheRun)
{
    // The save has no trap of its own. A machine typed that the plant does not have
    // leaves the model key empty, its write fails, and the run ends with the error box;
    // the cause typed on the way was already created, and stays.
    drive("show Form14");
    drive("click Form14.Cmd_Add");
    for (const char* typed : {"DataCombo3 GRU", "DataCombo2 G1", "DataCombo4 1", "DataCombo1 CUSCINETTI",
                              "DataCombo5 Radiale 6204", "DataCombo6 Gancio", "DataCombo7 Vibrazioni"})
        drive(QStringLiteral("type Form14.") + QString::fromLatin1(typed));
    drive.boxes();
    drive("click Form14.Cmd_Edit");
    const QStringList boxes = drive.boxes();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes[0].contains(": 13 ")) << boxes[0].toStdString();
    EXPECT_FALSE(drive("loaded Form14").toBool()) << "the run has ended";
    EXPECT_EQ(rows("SELECT Causa_Interv FROM Tbl_Causa_Intervento ORDER BY ID_CAUSA")[1][0].toString(), "Vibrazioni");
    EXPECT_TRUE(rows("SELECT ID FROM Tbl_Ricerca").empty());
    EXPECT_EQ(stock(1), 10);
}

TEST_F(Form14Road, TheHistoryRelatesMonthsWithoutTheirYear)
{
    // Each March heading lists the March events of every year: the report came out so.
    addIntervention(1, 1, QDate(2025, 3, 10));
    addIntervention(2, 1, QDate(2026, 3, 20));
    addMaintenance(1, 2, QDate(2026, 3, 2), QDate(2026, 3, 30));
    drive("show Form14");
    drive("select Form14.DataGrid1 0");
    drive("click Form14.Cmd_History_GO");
    const QStringList texts = drive.printed("DataReport14");
    EXPECT_EQ(texts.count("Radiale 6204"), 2) << "under March 2026 and March 2025";
    EXPECT_EQ(texts.count("Assiale 51105"), 2);
    EXPECT_EQ(texts.count("Mensile"), 2) << "the last execution enters the history";
}

TEST_F(Form14Road, EveryLoadPutsEachNextDateBackAtTheLastExecutionPlusTheFrequency)
{
    // Also what an edit or a stop's shift set: the register's next load shifts it again.
    const int id = addMaintenance(1, 2, QDate(2026, 10, 1), QDate(2027, 1, 1));
    start();
    drive("tick frmMain.Timer2");
    EXPECT_TRUE(drive("loaded Form14").toBool()) << "the low-stock flash loads the screen hidden";
    EXPECT_EQ(rows(QStringLiteral("SELECT Prossima FROM Tbl_Maintenance WHERE ID = %1").arg(id))[0][0].toString(),
              "29/10/2026");
}

TEST_F(Form14Road, TheSearchesNarrowTheMachinesAndTheOrderReminderPrefillsTheOrders)
{
    addIntervention(1, 1);
    addIntervention(3, 2);
    drive("show Form14");
    drive("type Form14.Txt_Search_Ric OLI");
    EXPECT_EQ(get("Label6.Caption"), "Conteggio Macchine: 1");
    EXPECT_EQ(rows("SELECT Ricambi FROM Tbl_Search")[0][0].toString(), "OLIO");
    drive("select Form14.DataGrid1 0");
    EXPECT_EQ(get("Label1.Caption"), "Trovati Componenti Macchina N° 1") << "the part search narrows the rows";
    drive("type Form14.Txt_Search_Destin Nessuna");
    EXPECT_EQ(get("Label6.Caption"), "Conteggio Macchine: 0");
    EXPECT_EQ(get("Txt_Search_Ric.Text"), "");
    for (int i = 0; i < 7; ++i)
        drive("key Form14.Txt_Search_Destin 8");
    EXPECT_EQ(get("Label6.Caption"), "Conteggio Macchine: 1") << "an emptied destination shows every machine";

    // The order reminder writes nothing: the orders screen opens on the part.
    start();
    drive("show Form14");
    drive("click Form14.Cmd_Add");
    enter("OLIO", "Idraulico HLP46", "1");
    drive("click Form14.Cmd_Order");
    EXPECT_EQ(drive("get Form19.Txt_ID_Ricambi.Text").toString(), "2");
    EXPECT_EQ(drive("get Form19.Txt_ID_DESCRIZIONE_RIC.Text").toString(), "3");
    EXPECT_EQ(drive("get Form19.DataCombo2.Text").toString(), "Idraulico HLP46");
    EXPECT_EQ(drive("get frmMain.Caption").toString(), "VELMORA <ORDINI RICAMBI>");
    EXPECT_TRUE(drive("loaded Form14").toBool());
    EXPECT_TRUE(rows("SELECT * FROM Tbl_Order").empty());
}

TEST_F(Form14Road, APictureIsReferredToWhereItIsAndTheScreenCloses)
{
    addIntervention(1, 1);
    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    const QString file = path() + "/cuscinetto.jpg";
    ASSERT_TRUE(picture.save(file, "JPG"));
    drive("show Form14");
    choose(0);
    drive("file " + file);
    drive("answer yes no");
    drive("click Form14.Cmd_Photo");
    const QJsonArray dialogs = drive("dialogs").toArray();
    ASSERT_EQ(dialogs.size(), 1);
    EXPECT_EQ(dialogs[0]["title"].toString(), "Selezionare il file da aprire");
    EXPECT_EQ(dialogs[0]["filter"].toString(),
              "JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC FILES)|*.Gif");
    EXPECT_EQ(drive.boxes(), (QStringList{"SALVA IMMAGINE'cuscinetto.jpg': Vuoi salvare l'Immagine 'cuscinetto.jpg' ?",
                                          "VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?'cuscinetto.jpg': SI per Aggiungere "
                                          "l'Immagine, NO per sostituire quella esistente'cuscinetto.jpg' ?"}));
    EXPECT_FALSE(drive("loaded Form14").toBool()) << "the user opens the screen again from the menu";
    EXPECT_EQ(lines("SELECT Images, Percorso FROM Tbl_Ricerca"), QStringList{"cuscinetto.jpg|" + file})
        << "either answer replaces: a row has one picture";

    // Chosen again, the row shows its picture in the button's place.
    drive("show Form14");
    choose(0);
    EXPECT_TRUE(drive("get Form14.Image4.Visible").toBool());
    EXPECT_FALSE(drive("get Form14.Cmd_Photo.Visible").toBool());
}
