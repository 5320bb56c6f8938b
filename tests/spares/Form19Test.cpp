// The orders screen driven from outside as the storekeeper works it: a line ordered from
// the interventions screen or typed, the order evaded, its goods received line by line
// into the stock. The quirks a test names are the program's own; keep them.
#include "support/DriveScript.h"
#include "support/ScreenTest.h"
#include "support/SparesTest.h"

namespace {

// On the parts of the register's plant (1 VITE M8 Testa esagonale V8-1, 100 in stock;
// 2 VITE M8 Brugola V8-2, 50; 3 OLIO Idraulico without a code, 4), with two suppliers.
class Form19Road : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        kit::partsRegister(plant);
        plant.supplier("Rossi", {{"Nome_Soceta", "Rossi Spa"}});
        plant.supplier("D'Angelo", {{"Nome_Soceta", "D'Angelo Srl"}});
    }

    /// A line of a part evaded on a day, waiting unless it came on `received`. A line
    /// still waiting does not name Data_Ricevuto, as the evasion does not.
    void evaded(int part, int quantity, const QDate& day, const QString& received = {})
    {
        const bool came = !received.isEmpty();
        exec(QStringLiteral("INSERT INTO Tbl_Historian_Orders (DATA, ID_RICAMBI, Ricambi, ID_DESCRIZIONE_RICAMBI, "
                            "Descrizione, Codice, Quantita%4) SELECT #%1#, ID_RICAMBI, Ricambi, "
                            "ID_DESCRIZIONE_RICAMBI, Descrizione, Codice, %2%5 FROM Tbl_Descrizione_Ricambi WHERE "
                            "ID_DESCRIZIONE_RICAMBI = %3")
                 .arg(day.toString("MM/dd/yyyy"))
                 .arg(quantity)
                 .arg(part)
                 .arg(came ? ", Data_Ricevuto" : "", came ? ", '" + received + "'" : ""));
    }

    QStringList stocks()
    {
        return column("SELECT Giacenza FROM Tbl_Descrizione_Ricambi ORDER BY ID_DESCRIZIONE_RICAMBI");
    }
    QStringList received()
    {
        return column("SELECT Data_Ricevuto FROM Tbl_Historian_Orders ORDER BY ID_Historian_Orders");
    }
    QString get(const QString& what) { return drive("get Form19." + what).toVariant().toString(); }

    /// The grid's row showing this description (-1, which no select takes, when none).
    int rowOf(const QString& description)
    {
        const QJsonArray grid = drive("grid Form19.DataGrid2")["rows"].toArray();
        for (int r = 0; r < grid.size(); ++r)
            if (grid[r].toArray().contains(description))
                return r;
        return -1;
    }

    /// The arrival of the line in that row, confirmed.
    void confirm(int row)
    {
        drive(QStringLiteral("select Form19.DataGrid2 %1").arg(row));
        kit::run(drive, {"click Form19.Check2", "answer yes", "click Form19.Cmd_Confirm"});
    }

    /// The order evaded, the question answered yes.
    void evade() { kit::run(drive, {"click Form19.Check1", "answer yes", "click Form19.Cmd_Evadi"}); }

    InProcessDrive drive;
};

} // namespace

TEST_F(Form19Road, AnOrderOfThreeLinesIsEvadedThenReceivedLineByLineIntoTheStock)
{
    start();
    // The only way in: the interventions screen's reminder, on the part typed there.
    kit::run(drive, {"show Form14", "click Form14.Cmd_Add", "choose Form14.DataCombo1 VITE M8",
                     "type Form14.DataCombo5 Brugola", "click Form14.Cmd_Order"});
    EXPECT_EQ(drive("get frmMain.Caption").toString(), "VELMORA <ORDINI RICAMBI>");
    EXPECT_EQ(get("DataCombo2.Text"), "Brugola");
    EXPECT_EQ(get("Txt_ID_DESCRIZIONE_RIC.Text"), "2");
    EXPECT_EQ(get("Txt_Codice.Text"), "V8-1") << "the category's first code stays with another description";
    kit::run(drive, {"type Form19.Txt_Quant 1x0", "type Form19.DataCombo3 D'Angelo", "click Form19.Cmd_Add"});

    drive("choose Form19.DataCombo1 OLIO");
    EXPECT_EQ(drive.items("Form19.List1"), QStringList{"Idraulico"});
    kit::run(drive, {"type Form19.Txt_Codice HLP46", "type Form19.Txt_Quant 3", "click Form19.Cmd_Add"});
    // A supplier that matches none is kept as typed, beside the key found before.
    kit::run(drive, {"choose Form19.DataCombo1 VITE M8", "choose Form19.List1 Testa esagonale",
                     "type Form19.Txt_Quant 4", "type Form19.DataCombo3 Verdi", "click Form19.Cmd_Add"});
    EXPECT_EQ(get("Frame1.Caption"), "Conteggio Ricambi in Ordine: 3");
    EXPECT_EQ(column("SELECT Ricambi & '|' & Descrizione & '|' & Codice & '|' & Quantita & '|' & ID_FORNITORE & '|' & "
                     "Fornitore FROM Tbl_Order ORDER BY ID"),
              (QStringList{"VITE M8|Brugola|V8-1|10|2|D'Angelo", "OLIO|Idraulico|HLP46|3|2|D'Angelo",
                           "VITE M8|Testa esagonale|V8-1|4|2|Verdi"}));

    evade();
    EXPECT_EQ(drive.boxes(), (QStringList{"EVADI ORDINE: Una volta Evaso l'ordine, non sarà possibile recuperare i "
                                          "dati presenti, Procediamo?",
                                          "ORDINE EVASO: L'Ordine è Stato Evaso!!"}));
    EXPECT_TRUE(rows("SELECT ID FROM Tbl_Order").empty());
    EXPECT_EQ(received(), (QStringList{"Non Ricevuto", "Non Ricevuto", "Non Ricevuto"})) << "the column's default";
    EXPECT_EQ(drive.items("Form19.List2"), QStringList{"15/11/2026"}) << "the reload lists the new date";
    EXPECT_EQ(get("Frame2.Caption"), "N° Storico Ordini 1");
    EXPECT_EQ(stocks(), (QStringList{"100", "50", "4"})) << "ordering and evading leave the stock alone";

    // The goods come on 3 December, one line after the other.
    kit::run(drive, {"clock 2026-12-03T09:00:00", "select Form19.List2 0", "click Form19.Cmd_Print"});
    EXPECT_TRUE(drive.printed("DataReport1").contains("Ordine Evaso in Data 15/11/2026"));
    confirm(rowOf("Idraulico"));
    EXPECT_EQ(drive.boxes(), QStringList{"AGGIORNA MAGAZZINO PER ARRIVO MERCE: [OLIO] [Idraulico]: Confermi il "
                                         "ricevimento della seguente merce: [OLIO] [Idraulico] ? Cliccando si verrà "
                                         "aggiornato automaticamente anche il magazzino ricambi..."});
    EXPECT_EQ(received(), (QStringList{"Non Ricevuto", "3/12/2026", "Non Ricevuto"})) << "d/m/yyyy, no padding";
    EXPECT_EQ(stocks(), (QStringList{"100", "50", "7"}));
    EXPECT_EQ(rowOf("Idraulico"), 2) << "the lines still waiting stand above";
    confirm(rowOf("Brugola"));
    EXPECT_EQ(stocks(), (QStringList{"100", "60", "7"}));
    confirm(rowOf("Testa esagonale"));
    EXPECT_EQ(stocks(), (QStringList{"104", "60", "7"}));
    EXPECT_EQ(received(), (QStringList{"3/12/2026", "3/12/2026", "3/12/2026"}));
}

TEST_F(Form19Road, APartStillAwaitedWarnsOnceFromItsFirstLineAndANoHidesTheEvasionCatch)
{
    evaded(2, 6, QDate(2026, 11, 10));
    evaded(2, 2, QDate(2026, 11, 12));
    evaded(2, 9, QDate(2026, 10, 1), "5/10/2026");
    drive("show Form19");
    drive("type Form19.DataCombo1 VI");
    EXPECT_EQ(get("Txt_ID_Ricambi.Text"), "") << "no lookup below three characters";
    kit::run(drive, {"choose Form19.DataCombo1 VITE M8", "choose Form19.List1 Brugola", "click Form19.Cmd_Add"});
    EXPECT_EQ(drive.boxes(), QStringList{"MANCANZA DATI: Seleziona la Descrizione Ricambi dalla Lista, se dovesse "
                                         "mancare devi prima aggiungerlo nella Scheda 'Descrizione Ricambi'"})
        << "an empty quantity asks for the part";

    kit::run(drive, {"type Form19.Txt_Quant 5", "answer no", "click Form19.Cmd_Add"});
    EXPECT_EQ(drive.boxes(), QStringList{"VITE M8:Brugola GIA IN ORDINE: Attenzione!! In Data:10/11/2026 Sono stati "
                                         "ordinati 6 pezzi di questo Ricambio VITE M8:Brugola Vuoi ugualmente "
                                         "inserirlo in un altro Ordine?"});
    EXPECT_TRUE(rows("SELECT ID FROM Tbl_Order").empty());
    EXPECT_EQ(get("Txt_Info_Print.Text"), "0");
    EXPECT_FALSE(drive("get Form19.Check1.Visible").toBool()) << "a No leaves the open order without its catch";
    drive("answer yes");
    drive("click Form19.Cmd_Add");
    EXPECT_TRUE(drive("get Form19.Check1.Visible").toBool());

    // A part standing only in the open order warns no one, and the fields stay for the
    // same line again.
    kit::run(drive, {"type Form19.DataCombo2 Testa esagonale", "click Form19.Cmd_Add", "click Form19.Cmd_Add"});
    EXPECT_EQ(drive.boxes().size(), 1) << "the warning answered yes, and nothing after it";
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Order ORDER BY ID"),
              (QStringList{"Brugola", "Testa esagonale", "Testa esagonale"}));

    // A delete is the screen's reload: the typed line and the view go with it.
    drive(QStringLiteral("select Form19.DataGrid2 %1").arg(rowOf("Brugola")));
    drive("answer yes");
    drive("click Form19.Cmd_Delete");
    EXPECT_EQ(drive.boxes(),
              QStringList{"Eliminazione Articolo: Vuoi Veramente eliminare Questo Articolo dall'Ordine?"});
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Order"), (QStringList{"Testa esagonale", "Testa esagonale"}));
    EXPECT_EQ(get("DataCombo2.Text"), "");
}

TEST_F(Form19Road, AfterAConfirmationAmongTheWaitingLinesTheWholeDateShows)
{
    evaded(2, 5, QDate(2026, 11, 10));
    evaded(3, 8, QDate(2026, 11, 10));
    evaded(1, 1, QDate(2026, 11, 10), "12/11/2026");
    evaded(1, 3, QDate(2026, 10, 1), "3/10/2026");
    drive("show Form19");
    EXPECT_EQ(drive.items("Form19.List2"), (QStringList{"10/11/2026", "01/10/2026"}));
    drive("click Form19.Cmd_Merce_da_Ricevere");
    EXPECT_EQ(drive.items("Form19.List2"), QStringList{"10/11/2026"});
    EXPECT_EQ(get("Frame2.Caption"), "N°Ordini in Attesa 1");
    drive("select Form19.List2 0");
    EXPECT_EQ(get("Frame1.Caption"), "Conteggio Ricambi in Ordine: 2");
    drive("click Form19.Cmd_Print");
    EXPECT_TRUE(drive.printed("DataReport1").contains("Ordine Evaso in Data 10/11/2026 Ma non ancora Ricevuto!"));

    // The oil has left the store meanwhile: its line is received all the same, no stock moves.
    exec("DELETE FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 3");
    confirm(rowOf("Idraulico"));
    EXPECT_EQ(received(), (QStringList{"Non Ricevuto", "15/11/2026", "12/11/2026", "3/10/2026"}));
    EXPECT_EQ(stocks(), (QStringList{"100", "50"}));
    EXPECT_EQ(get("Frame1.Caption"), "Conteggio Ricambi in Ordine: 3") << "the whole date, received lines too";
    EXPECT_EQ(get("Txt_Vis_List.Text"), "1");
    drive("select Form19.List2 0");
    EXPECT_EQ(get("Frame1.Caption"), "Conteggio Ricambi in Ordine: 1") << "the next click shows the waiting again";

    // A line whose key passes no 16-bit integer is never offered for confirmation.
    exec("INSERT INTO Tbl_Historian_Orders (ID_Historian_Orders, DATA, Ricambi, Descrizione, ID_DESCRIZIONE_RICAMBI, "
         "Quantita) VALUES (40000, #11/10/2026#, 'VITE M8', 'Grande', 1, 1)");
    drive("select Form19.List2 0");
    drive(QStringLiteral("select Form19.DataGrid2 %1").arg(rowOf("Grande")));
    EXPECT_FALSE(drive("get Form19.Check2.Visible").toBool());
}

TEST_F(Form19Road, TwoEvasionsOfOneDayMakeOneOrderAndAnEmptyOrderIsEvadedAllTheSame)
{
    start();
    drive("show Form19");
    evade();
    EXPECT_EQ(drive.boxes().last(), "ORDINE EVASO: L'Ordine è Stato Evaso!!");
    EXPECT_TRUE(drive.items("Form19.List2").isEmpty()) << "nothing evaded, no date";

    for (const char* part : {"Brugola", "Testa esagonale"}) {
        drive("choose Form19.DataCombo1 VITE M8");
        drive(QStringLiteral("choose Form19.List1 %1").arg(part));
        drive("type Form19.Txt_Quant 2");
        drive("click Form19.Cmd_Add");
        evade();
        drive("clock +3h");
    }
    EXPECT_EQ(drive.items("Form19.List2"), QStringList{"15/11/2026"});
    drive("select Form19.List2 0");
    EXPECT_EQ(get("Frame1.Caption"), "Conteggio Ricambi in Ordine: 2");
}
