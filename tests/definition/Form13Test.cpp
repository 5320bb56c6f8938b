// The assigned maintenance of Form13: assignments, their sheets, steps and the workload.
#include "definition/Form13.h"

#include "execution/Form7.h"
#include "reports/ReportViewer.h"
#include "support/InProcessDrive.h"
#include "support/ScreenTest.h"

using definition::Form13;
namespace answer = vb::answer;

namespace {

class Form13Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // The sheet table, as the start of the program makes it.
        exec("CREATE TABLE Tbl_Certif_Proced_Manut (ID_Assegna_M Integer Null,Scheda CHAR(50) NOT NULL, "
             "Data_Scheda DATE, Rev Integer Null,Data_Rev DATE)");
        // The register hands its pair through these; frmMain shows the workload line.
        standIn("Form7", {"T:ID_MOD", "T:ID_MAINT", "T:DataCombo4"});
        standIn("frmMain", {"L:Label1"});
        shell::screens().form("frmMain");
        // Models 1 PRESSA AX100 with two units, 2 TORNIO T200 with none, both with general
        // procedures; types of a new store: 1 Settimanale (coefficient 1), 2 Mensile (0.25).
        plant.units(plant.model("PRESSA", "AX100"), {"1", "2"});
        plant.model("TORNIO", "T200");
        plant.generalModel(1, "PRESSA", "AX100");
        plant.generalModel(2, "TORNIO", "T200");
        plant.generalStep(1, 1, "Olio", "Cambio olio del circuito", 30);
        plant.generalStep(1, 2, "Filtri", "Pulizia dei filtri", 20);
    }

    /// The register itself in place of its stand-in.
    void realRegister() { standIn("Form7", original("Form7")); }

    /// The main screen and the register themselves, none of the stand-ins loaded.
    void realProgram()
    {
        shell::screens().discardAll();
        standIn("frmMain", original("frmMain"));
        realRegister();
    }

    static Form13* form13() { return reopened<Form13>("Form13"); }

    /// Assignment (m, t) with its sheet, as the screen saves it.
    void assign(int m, int t, const char* machine, const char* model, const char* type, int rev = 0)
    {
        const int id = plant.assignment(m, t, {{"Macchina", machine}, {"Modello", model}, {"Manutenzione_Tipo", type}});
        exec(QStringLiteral("INSERT INTO Tbl_Certif_Proced_Manut (ID_Assegna_M, Scheda, Data_Scheda, Rev, Data_Rev) "
                            "VALUES (%1, '%2', #01/02/2026#, %3, #01/02/2026#)")
                 .arg(id)
                 .arg(Form13::Scheda(QString::number(m), QString::number(t), machine, model, type))
                 .arg(rev));
    }

    void step(int m, int t, int num, const char* title, int minutes) { plant.step(m, t, num, title, minutes, "testo"); }

    /// A register row of unit n of model 1.
    void registerRow(int n, int t, const char* type)
    {
        plant.registerRow({{"ID_MODELLO", 1},
                           {"ID_NUM", n},
                           {"ID_MAINT_TIPO", t},
                           {"Manutenzione_Tipo", type},
                           {"Frequenza_Sett", 1},
                           {"Tempo_Minuti", 0},
                           {"Ultima", kit::date(2026, 11, 1)},
                           {"Prossima", kit::date(2026, 11, 8)}});
    }

    static void selectAssignment(Form13* f, int id) { selectKey(f->DataGrid2, id, true); }

    static QString workloadLine()
    {
        return shell::screens().control("frmMain", "Label1")->vbProperty("Caption").toString();
    }
    /// The main screen's workload line for these weekly hours and one person.
    static QString line(const char* hours)
    {
        return QStringLiteral("Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss %1 "
                              "-Persone Necessarie: 1]")
            .arg(hours);
    }
};

} // namespace

TEST_F(Form13Test, ListsAndTheSelectionOfAnAssignment)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    assign(2, 1, "TORNIO", "T200", "Settimanale");
    step(1, 2, 2, "Filtri", 20);
    step(1, 2, 1, "Olio", 40);
    Form13* f = form13();
    EXPECT_EQ(f->DataCombo2->items(), (QStringList{"PRESSA", "TORNIO"}));
    EXPECT_EQ(f->DataCombo3->items(), (QStringList{"AX100", "T200"}));
    EXPECT_EQ(f->DataCombo4->items().size(), 7);
    EXPECT_EQ(captions(f->DataGrid2), (QStringList{"ID", "Macchina", "Modello", "Manutenzione", "Tot Min", "ID_MODELLO",
                                                   "ID_MAINT_TIPO", "N° Macch", "Ore per Settimana"}));
    EXPECT_EQ(column(f->DataGrid2, "Modello"), (QStringList{"AX100", "T200"}));
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0) << "no assignment selected, no steps";
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());

    selectAssignment(f, 1);
    EXPECT_EQ(texts({f->Txt_ID, f->ID_MOD, f->ID_MAINT, f->ID_MOD_OLD, f->ID_MAINT_OLD, f->DataCombo2, f->DataCombo3,
                     f->DataCombo4}),
              QStringList({"1", "1", "2", "1", "2", "PRESSA", "AX100", "Mensile"}));
    EXPECT_TRUE(f->DataCombo2->Locked() && f->DataCombo3->Locked());
    EXPECT_EQ(column(f->DataGrid1, "Titolo"), (QStringList{"Olio", "Filtri"})) << "by step number";
    EXPECT_EQ(f->Frame2->Caption(), "N° Procedure Manutenzione Mensile 2");
    EXPECT_EQ(f->Frame1->Caption(), "2 Procedure Generali AX100");
    EXPECT_FALSE(f->DataGrid1->Columns(7).Locked()) << "the minutes are open to typing";
    EXPECT_TRUE(f->DataGrid1->Columns(5).Locked());
    // The selection stores the figures through the row, without the two hour texts.
    EXPECT_EQ(column("SELECT Tempo_Minuti & '|' & Minuti_Sett & '|' & Num_Macchine & '|' & Tot_Minuti_Sett & '|' & "
                     "Tot_Ore_Sett FROM Tbl_Assegna_M WHERE ID = 1"),
              QStringList{"60|15,00|2|30,00|"});

    // An assignment without steps stores nothing and reads 0 minutes.
    selectAssignment(f, 2);
    EXPECT_EQ(texts({f->Txt_Tot_Min, f->Frame1}), QStringList({"0", "0 Procedure Generali T200"}));
    EXPECT_EQ(column("SELECT '' & Minuti_Sett FROM Tbl_Assegna_M WHERE ID = 2"), QStringList{""});
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form13Test, NewAssignmentGetsItsSheetAtRevisionZeroAndNoTwin)
{
    Form13* f = form13();
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled() || f->Cmd_Delete->isEnabled());
    f->DataCombo2->choose("PRESSA");
    EXPECT_EQ(f->ID_MOD->Text(), "1") << "the first model of the machine";
    f->DataCombo3->choose("AX100");
    f->Cmd_Edit->click(); // no type
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);

    // A type typed by hand that is no type's has no key: nothing is saved.
    f->DataCombo4->typeText("Quindicinale");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    EXPECT_TRUE(column("SELECT ID FROM Tbl_Assegna_M").isEmpty());

    f->DataCombo4->choose("Mensile");
    EXPECT_EQ(f->ID_MAINT->Text(), "2");
    f->Cmd_Edit->click();
    EXPECT_EQ(column("SELECT ID_MODELLO & '|' & ID_MAINT_TIPO & '|' & Macchina & '|' & Modello & '|' & "
                     "Manutenzione_Tipo FROM Tbl_Assegna_M"),
              QStringList{"1|2|PRESSA|AX100|Mensile"});
    EXPECT_EQ(column("SELECT ID_Assegna_M & '|' & Scheda & '|' & Rev & '|' & Format(Data_Scheda, 'dd/mm/yyyy') & "
                     "'|' & Format(Data_Rev, 'dd/mm/yyyy') FROM Tbl_Certif_Proced_Manut"),
              QStringList{"1|1_2PRE_AX1_Men|0|15/11/2026|15/11/2026"});

    // Reopened with the new assignment listed; the same pair again is refused.
    f = form13();
    EXPECT_EQ(f->DataGrid2->RecordCount(), 1);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    f->Cmd_Add->click();
    f->DataCombo2->choose("PRESSA");
    f->DataCombo3->choose("AX100");
    f->DataCombo4->choose("Mensile");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "DUPPLICATO DI MANUTENZIONE", "Questa manutenzione è già stata assegnata a questa Macchina!!",
               vb::mb::Critical);
    EXPECT_EQ(column("SELECT ID FROM Tbl_Assegna_M").size(), 1);
}

TEST_F(Form13Test, StepComesFromThePickedGeneralStepAndTheWorkloadFollows)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    registerRow(1, 2, "Mensile");
    registerRow(2, 2, "Mensile");
    Form13* f = form13();
    selectAssignment(f, 1);
    ASSERT_EQ(f->DataGrid3->RecordCount(), 2);
    f->DataGrid3->select(1); // Filtri
    EXPECT_EQ(texts({f->Txt_Titolo, f->Txt_Procedura, f->Txt_Num}), QStringList({"Filtri", "Pulizia dei filtri", "2"}));
    EXPECT_EQ(f->Txt_Min->Text(), "0") << "an emptied minutes field reads 0";

    // No minutes yet: the warning, and the minutes' frame is flagged and painted.
    f->Cmd_Inserisci->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    EXPECT_EQ(f->Txt_Control_Min->Text(), "1");
    EXPECT_EQ(f->Frame10->ForeColor(), vb::colour::Red);
    EXPECT_TRUE(column("SELECT ID_Procedura FROM Tbl_ProcedureM").isEmpty());

    // Only digits and backspace reach the minutes.
    f->Txt_Min->keyPress('x');
    EXPECT_EQ(f->Txt_Min->Text(), "0");
    f->Txt_Min->setText("45");
    // What is typed into the title is checked, not stored: the general step's is.
    f->Txt_Titolo->setText("scritto a mano");
    f->Cmd_Inserisci->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_MODELLO & '|' & ID_MAINT_TIPO & '|' & Num & '|' & Titolo & '|' & Procedura & '|' & "
                     "Minuti FROM Tbl_ProcedureM"),
              QStringList{"1|2|2|Filtri|Pulizia dei filtri|45"});
    // 45 minutes a month on two units: 22,50 a week.
    EXPECT_EQ(column("SELECT Tempo_Minuti & '|' & Tempo_Ore & '|' & Minuti_Sett & '|' & Num_Macchine & '|' & "
                     "Tot_Minuti_Sett & '|' & Tot_Ore_Sett FROM Tbl_Assegna_M"),
              QStringList{"45|00:45:00|11,25|2|22,50|00:22:30"});
    EXPECT_EQ(column("SELECT Tempo_Minuti FROM Tbl_Maintenance"), (QStringList{"45", "45"}));
    EXPECT_EQ(column("SELECT Rev FROM Tbl_Certif_Proced_Manut"), QStringList{"1"}) << "a step is a revision";
    EXPECT_EQ(workloadLine(), line("00:22:30"));

    f = form13();
    EXPECT_EQ(f->Txt_Control_Min->Text(), "0");
    EXPECT_EQ(f->DataGrid2->cellText(0, "Tot_Ore_Sett"), "00:22:30");
}

TEST_F(Form13Test, EditMovesStepsAndRegisterRowsToTheNewTypeAndRaisesTheRevision)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile", 3);
    step(1, 2, 1, "Olio", 60);
    registerRow(1, 2, "Mensile");
    Form13* f = form13();
    selectAssignment(f, 1);
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "the save waits for a step to be selected";
    f->DataGrid3->select(0); // a general step enables it
    f->DataCombo4->choose("Settimanale");
    f->Cmd_Edit->click(); // answered No: only the workload line
    EXPECT_BOX(oneBox(), "Modifica Dati", "Stai per eseguire una Modifica, Vuoi Procedere??",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_Assegna_M"), QStringList{"2"});
    EXPECT_TRUE(workloadLine().startsWith("Tempo previsto per le Manutenzioni inserite"));

    // Without a step selected nothing moves: the new pair has no steps to weigh.
    answer({answer::Yes});
    f->Cmd_Edit->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[1], "SELEZIONA PROCEDURE MANUTENZIONE 'Mensile'", // the type as listed
               "Devi prima selezionare una delle procedure già assegnate per questa Macchina", vb::mb::Information);
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_Assegna_M"), QStringList{"2"});
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_ProcedureM"), QStringList{"2"});

    f = form13();
    selectAssignment(f, 1);
    f->DataGrid1->select(0);
    EXPECT_EQ(texts({f->Txt_Grid_Modello, f->Txt_Grid_Manutenzione}), QStringList({"AX100", "Mensile"}));
    f->DataCombo4->choose("Settimanale");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    boxes();
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO & '|' & Manutenzione_Tipo & '|' & Tot_Minuti_Sett FROM Tbl_Assegna_M"),
              QStringList{"1|Settimanale|120,00"});
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_ProcedureM"), QStringList{"1"});
    EXPECT_EQ(column("SELECT Scheda & '|' & Rev & '|' & Format(Data_Rev, 'dd/mm/yyyy') FROM Tbl_Certif_Proced_Manut"),
              QStringList{"1_1PRE_AX1_Set|4|15/11/2026"});
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO & '|' & Manutenzione_Tipo & '|' & Frequenza_Sett & '|' & Tempo_Minuti & "
                     "'|' & Format(Prossima, 'dd/mm/yyyy') FROM Tbl_Maintenance"),
              QStringList{"1|Settimanale|1|60|08/11/2026"})
        << "the due date stays";
    EXPECT_EQ(workloadLine(), line("02:00:00"));
}

TEST_F(Form13Test, DeletesAskFirstAndLeaveTheWallChart)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    assign(1, 1, "PRESSA", "AX100", "Settimanale");
    step(1, 2, 1, "Olio", 60);
    step(1, 2, 2, "Filtri", 30);
    step(1, 1, 1, "Pulizia", 10);
    registerRow(1, 2, "Mensile");
    registerRow(1, 1, "Settimanale");
    exec("INSERT INTO Tbl_Planned (ID_MODELLO, ID_NUM, [3]) VALUES (1, 1, 'Mensile')");
    Form13* f = form13();
    f->Cmd_Delete->click();
    EXPECT_FALSE(f->Cmd_Delete2->isEnabled()) << "a click on the steps enables it";
    selectAssignment(f, 1);
    f->DataGrid1->click();
    f->Cmd_Delete2->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "NESSUNA MANUTENZIONE SELEZIONATA", "Non è stato selezionato nessun dato!",
               vb::mb::Exclamation);
    EXPECT_EQ(shown[1].title, "NESSUNA PROCEDURA SELEZIONATA");

    // One step of the monthly assignment: the minutes follow on the assignment and the register.
    f->DataGrid1->select(1); // Filtri
    answer({answer::Yes});
    f->Cmd_Delete2->click();
    EXPECT_BOX(oneBox(), "Eliminazione Procedura", "Vuoi Veramente eliminare la Procedura selezionata?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT Titolo FROM Tbl_ProcedureM WHERE ID_MAINT_TIPO = 2"), QStringList{"Olio"});
    EXPECT_EQ(column("SELECT Tempo_Minuti FROM Tbl_Assegna_M WHERE ID = 1"), QStringList{"60"});
    EXPECT_EQ(column("SELECT Tempo_Minuti FROM Tbl_Maintenance WHERE ID_MAINT_TIPO = 2"), QStringList{"60"});
    EXPECT_EQ(column(f->DataGrid1, "Titolo"), QStringList{"Olio"});

    // The whole assignment: its steps, sheet and register rows, on every unit; not the chart.
    f->Cmd_Delete->click(); // answered No
    EXPECT_BOX(oneBox(), "Eliminazione Manutenzione e Procedure",
               "Vuoi Veramente eliminare la Manutenzione selezionata con tutte le sue procedure?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT ID FROM Tbl_Assegna_M").size(), 2);
    answer({answer::Yes});
    f->Cmd_Delete->click();
    boxes();
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_Assegna_M"), QStringList{"1"});
    EXPECT_EQ(column("SELECT ID_Assegna_M FROM Tbl_Certif_Proced_Manut"), QStringList{"2"});
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_ProcedureM"), QStringList{"1"});
    EXPECT_EQ(column("SELECT ID_MAINT_TIPO FROM Tbl_Maintenance"), QStringList{"1"});
    EXPECT_EQ(column("SELECT [3] FROM Tbl_Planned"), QStringList{"Mensile"});
    EXPECT_EQ(form13()->DataGrid2->RecordCount(), 1);
}

TEST_F(Form13Test, PrintsNeedAnAssignmentWithASheet)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    step(1, 2, 1, "Olio", 60);
    step(1, 2, 2, "Filtri", 30);
    Form13* f = form13();
    f->Cmd_Print_Rapporto->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI", "Non hai selezionato nessun dato!", vb::mb::Exclamation);
    EXPECT_FALSE(reports::IsReportLoaded("DataReport5"));

    selectAssignment(f, 1);
    f->Cmd_Print_Rapporto->click();
    const QStringList sheet = printed("DataReport5");
    for (const char* t : {"RAPPORTO MANUTENZIONE", "PRESSA", "AX100", "Mensile", "Olio", "Filtri"})
        EXPECT_TRUE(sheet.contains(t)) << t;
    f->Cmd_Print->click();
    const QStringList procedures = printed("DataReport7");
    EXPECT_TRUE(procedures.contains("Mensile") && procedures.contains("Olio"));
    EXPECT_TRUE(boxes().empty());

    // A key that is no model's number: nothing to print.
    f->ID_MOD->setText("0");
    f->Cmd_Print_Rapporto->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!", "Non c'è nessuna Procedura di Manutenzione!", vb::mb::Information);
    f->ID_MOD->setText("1");

    // Without its sheet row the assignment drops out of the print.
    exec("DELETE FROM Tbl_Certif_Proced_Manut");
    f->Cmd_Print->click();
    EXPECT_FALSE(printed("DataReport7").contains("Olio"));
}

TEST_F(Form13Test, PairHandedFromTheRegisterNarrowsTheListsUntilVisualizzaTutto)
{
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    assign(1, 1, "PRESSA", "AX100", "Settimanale");
    step(1, 2, 1, "Olio", 60);
    shell::screens().control("Form7", "ID_MOD")->setVbProperty("Text", "1");
    shell::screens().control("Form7", "ID_MAINT")->setVbProperty("Text", "2");
    Form13* f = form13();
    EXPECT_EQ(texts({f->Txt_ID_MODELLO, f->Txt_ID_MAINT_TIPO}), QStringList({"1", "2"}));
    EXPECT_EQ(column(f->DataGrid2, "Manutenzione_Tipo"), QStringList{"Mensile"});
    EXPECT_EQ(column(f->DataGrid1, "Titolo"), QStringList{"Olio"});

    f->Cmd_Vis_All->click();
    EXPECT_EQ(shell::screens().control("Form7", "ID_MOD")->vbProperty("Text").toString(), "");
    f = form13();
    EXPECT_EQ(f->DataGrid2->RecordCount(), 2);
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0);
}

// A step's own recomputation counts the week's seconds in 16 bits: above 546 minutes a
// week the hours read 00:00:00. Deleting a step counts them wide again.
TEST_F(Form13Test, WeekHoursOfAStepOverflowAbove546MinutesButNotAfterADelete)
{
    assign(1, 1, "PRESSA", "AX100", "Settimanale");
    step(1, 1, 0, "Pulizia", 10);
    Form13* f = form13();
    selectAssignment(f, 1);
    f->DataGrid3->select(0); // Olio
    f->Txt_Min->setText("600");
    f->Cmd_Inserisci->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT Tempo_Ore & '|' & Tot_Minuti_Sett & '|' & Tot_Ore_Sett FROM Tbl_Assegna_M"),
              QStringList{"10:10:00|1.220,00|00:00:00"});
    EXPECT_EQ(workloadLine(), line("20:20:00"));

    f = form13();
    selectAssignment(f, 1);
    f->DataGrid1->click();
    f->DataGrid1->select(0); // Pulizia, step 0
    answer({answer::Yes});
    f->Cmd_Delete2->click();
    boxes();
    EXPECT_EQ(column("SELECT Titolo FROM Tbl_ProcedureM"), QStringList{"Olio"});
    EXPECT_EQ(column("SELECT Tempo_Minuti & '|' & Tot_Minuti_Sett & '|' & Tot_Ore_Sett FROM Tbl_Assegna_M"),
              QStringList{"600|1.200,00|20:00:00"});
}

TEST_F(Form13Test, RegisterShowsTheProcedureOfItsSelectedRow)
{
    realRegister();
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    assign(1, 1, "PRESSA", "AX100", "Settimanale");
    step(1, 2, 1, "Olio", 60);
    step(1, 1, 1, "Pulizia", 10);
    exec("INSERT INTO Tbl_Maintenance (ID_MODELLO, ID_NUM, ID_MAINT_TIPO, Macchina, Modello, Numerazione, "
         "Manutenzione_Tipo, Frequenza_Sett, Ultima, Prossima) VALUES (1, 1, 2, 'PRESSA', 'AX100', '1', 'Mensile', 4, "
         "#11/01/2026#, #11/29/2026#)");
    auto* register7 = shell::screens().formAs<execution::Form7>(QStringLiteral("Form7"));
    ASSERT_NE(register7, nullptr);
    register7->DataGrid1->select(0);
    register7->Cmd_Vis_Procedura->click();
    Form13* f = shell::screens().formAs<Form13>(QStringLiteral("Form13"));
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(texts({f->Txt_ID_MODELLO, f->Txt_ID_MAINT_TIPO, f->DataCombo2, f->DataCombo3, f->DataCombo4}),
              QStringList({"1", "2", "PRESSA", "AX100", "Mensile"}));
    EXPECT_EQ(column(f->DataGrid2, "Manutenzione_Tipo"), QStringList{"Mensile"});
    EXPECT_EQ(column(f->DataGrid1, "Titolo"), QStringList{"Olio"});
    EXPECT_TRUE(boxes().empty());
}

// A step typed without an assignment behind it has no keys: the plain error box, and no
// step is written.
TEST_F(Form13Test, StepWithoutAnAssignmentStopsAtTheErrorBox)
{
    Form13* f = form13();
    f->Txt_Titolo->setText("Olio");
    f->Txt_Procedura->setText("Cambio olio");
    f->Txt_Min->setText("30");
    f->Cmd_Inserisci->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_TRUE(shown[0].prompt.startsWith("13 ")) << qPrintable(shown[0].prompt);
    EXPECT_TRUE(column("SELECT ID_Procedura FROM Tbl_ProcedureM").isEmpty());
    EXPECT_TRUE(shell::screens().isLoaded("Form13"));
}

TEST_F(Form13Test, TheMenuEntryOpensTheScreenThroughTheDriver)
{
    realProgram();
    assign(1, 2, "PRESSA", "AX100", "Mensile");
    step(1, 2, 1, "Olio", 60);
    InProcessDrive drive;
    drive("start");
    drive("click frmMain.lblAss_Manut");
    EXPECT_EQ(drive("get Form13.Caption").toString(), "PROCEDURA MANUTENZIONI");
    EXPECT_TRUE(drive("get Form13.Visible").toBool());
    drive("select Form13.DataGrid2 0");
    EXPECT_EQ(drive("get Form13.Frame2.Caption").toString(), "N° Procedure Manutenzione Mensile 1");
    // The total shows what was stored before this selection's recomputation: nothing yet.
    EXPECT_EQ(drive("get Form13.Txt_Tot_Min.Text").toString(), "");
    drive("click Form13.Cmd_Aggiorna");
    EXPECT_EQ(drive("get frmMain.Label1.Caption").toString(), line("00:30:00"));
    drive("select Form13.DataGrid2 0");
    EXPECT_EQ(drive("get Form13.Txt_Tot_Min.Text").toString(), "60");
}
