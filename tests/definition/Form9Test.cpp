// The general procedures of Form9: models and their steps, edits carried to the assignments.
#include "definition/Form9.h"

#include "definition/Workload.h"
#include "reports/ReportViewer.h"
#include "support/InProcessDrive.h"
#include "support/ScreenTest.h"

using definition::Form9;

namespace {

class Form9Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // Models 1 PRESSA AX100, 2 PRESSA P9, 3 TORNIO T200; a model without a kind.
        for (const auto& [kind, model] :
             {std::pair{"PRESSA", "AX100"}, {"PRESSA", "P9"}, {"TORNIO", "T200"}, {"", "X"}})
            plant.model(kind, model);
        // AX100 has three steps, T200 one; P9 is named but has none.
        plant.generalModel(1, "PRESSA", "AX100");
        plant.generalModel(3, "TORNIO", "T200");
        plant.generalModel(2, "PRESSA", "P9");
        plant.generalStep(1, 1, "Olio", "Cambio olio", 30);
        plant.generalStep(1, 2, "Filtri", "Pulizia filtri", 20);
        plant.generalStep(1, 3, "Cinghie", "Tensione cinghie", 10);
        plant.generalStep(3, 1, "Controllo dell'asse", "Verifica dell'asse", 15);
        // The register hands no model over.
        standIn("Form7", {"T:ID_MOD", "T:ID_MAINT", "C:DataCombo4"});
    }

    Form9* form9() { return screen<Form9>("Form9"); }
    Form9* reopened() { return ScreenTest::reopened<Form9>("Form9"); }
    static void selectModel(Form9* f, const QString& model) { selectRow(f->DataGrid2, "Modello", model, true); }
    static void selectStep(Form9* f, const QString& title) { selectRow(f->DataGrid1, "Titolo", title, true); }
};

} // namespace

TEST_F(Form9Test, ListsModelsAndStepsAndSelectsThem)
{
    Form9* f = form9();
    EXPECT_EQ(captions(f->DataGrid2), (QStringList{"ID", "Macchina", "Modello", "ID_MODELLO"}));
    EXPECT_EQ(f->DataGrid2->cellText(2, "Modello"), "T200") << "by kind, then model";
    EXPECT_EQ(f->Label2->Caption(), "N° 3 Macchine    [-Ore Settimanali: hh:mm:ss 00:00:00 -Persone Necessarie: ]");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 4) << "every step of every model";
    EXPECT_EQ(f->DataCombo2->items(), (QStringList{"PRESSA", "TORNIO"})) << "kinds once each, none empty";
    EXPECT_FALSE(f->Cmd_Copy->isEnabled() || f->Cmd_Paste->isEnabled());

    selectModel(f, "AX100");
    EXPECT_EQ(texts({f->Txt_ID, f->ID_MOD, f->ID_MOD_OLD, f->DataCombo2, f->DataCombo3}),
              QStringList({"1", "1", "1", "PRESSA", "AX100"}));
    EXPECT_EQ(f->DataCombo3->items(), (QStringList{"AX100", "P9"})) << "the models of the kind";
    EXPECT_EQ(texts({f->Label1, f->Txt_Posizione}), QStringList({"N° Procedure 3", "0"}));

    selectModel(f, "T200");
    EXPECT_EQ(f->ID_MOD->Text(), "3");
    selectStep(f, "Controllo dell'asse");
    EXPECT_EQ(texts({f->Txt_Num_Procedura, f->Txt_Procedura}), QStringList({"1", "Verifica dell'asse"}));
    EXPECT_FALSE(f->Txt_ID_PROCEDURA->Text().isEmpty());
    EXPECT_TRUE(f->Cmd_Copy->isEnabled());
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form9Test, TheRegistersModelNarrowsTheStepsAndEmptiesTheModels)
{
    shell::screens().control("Form7", "ID_MOD")->setVbProperty("Text", QString("1"));
    shell::screens().control("Form7", "ID_MAINT")->setVbProperty("Text", QString("2"));
    Form9* f = form9();
    EXPECT_EQ(f->Txt_ID_MODELLO->Text(), "1");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 3);
    // The models' statement with the register's key is one bracket short: no model lists.
    EXPECT_EQ(f->DataGrid2->RecordCount(), 0);
    EXPECT_TRUE(f->Label2->Caption().startsWith("N° 0 Macchine"));

    f->Cmd_Vis_All->click();
    Form9* again = reopened();
    EXPECT_EQ(shell::screens().control("Form7", "ID_MOD")->vbProperty("Text").toString(), "");
    EXPECT_EQ(shell::screens().control("Form7", "ID_MAINT")->vbProperty("Text").toString(), "");
    EXPECT_EQ(again->DataGrid2->RecordCount(), 3);
    EXPECT_EQ(again->DataGrid1->RecordCount(), 4);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form9Test, PasteGoesOnFromTheLastCountWithoutMinutes)
{
    Form9* f = form9();
    selectModel(f, "T200");
    selectStep(f, "Controllo dell'asse");
    f->Cmd_Copy->click();
    EXPECT_FALSE(f->Cmd_Copy->isEnabled());
    EXPECT_EQ(f->Txt_Copy_Titolo->Text(), "Controllo dell'asse");
    EXPECT_FALSE(f->Cmd_Paste->isEnabled()) << "only the next model's selection opens the paste";

    selectModel(f, "AX100");
    ASSERT_TRUE(f->Cmd_Paste->isEnabled());
    f->Cmd_Paste->click();
    EXPECT_EQ(lines("SELECT Num, Titolo, Procedura, Minuti FROM Tbl_Proc_General WHERE ID_MODELLO = 1 ORDER BY Num"),
              (QStringList{"1|Olio|Cambio olio|30", "2|Filtri|Pulizia filtri|20", "3|Cinghie|Tensione cinghie|10",
                           "4|Controllo dell'asse|Verifica dell'asse|"}));
    EXPECT_EQ(f->DataGrid1->RecordCount(), 4);
    EXPECT_EQ(texts({f->Txt_Copy_Titolo, f->Txt_Copy_Procedura}), QStringList({"", ""}));
    EXPECT_FALSE(f->Cmd_Paste->isEnabled());

    // Selecting another step lets go of a copy.
    selectStep(f, "Olio");
    f->Cmd_Copy->click();
    selectStep(f, "Filtri");
    selectModel(f, "T200");
    EXPECT_FALSE(f->Cmd_Paste->isEnabled());
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form9Test, ModelInsertAndTheChangeOfKeyCarriedEverywhere)
{
    exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello) VALUES (3, 1, 'TORNIO', 'T200')");
    exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Titolo) VALUES (3, 1, 'Controllo dell''asse')");
    Form9* f = form9();
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled() || f->Cmd_Delete->isEnabled());
    f->Cmd_Edit->click();
    // A kind and model typed by hand name no model: no key, nothing saved.
    f->DataCombo2->typeText("FRESA");
    f->DataCombo3->typeText("F1");
    f->Cmd_Edit->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    EXPECT_EQ(rows("SELECT * FROM Tbl_Proc_General_Macc").size(), 3u);

    f->DataCombo2->choose("PRESSA");
    f->DataCombo3->choose("P9");
    EXPECT_EQ(f->ID_MOD->Text(), "2");
    f->DataCombo2->choose("TORNIO");
    EXPECT_EQ(f->ID_MOD->Text(), "3") << "the kind's first model";
    EXPECT_EQ(f->DataCombo3->Text(), "P9") << "the model's text stays until a model is chosen";
    f->DataCombo3->choose("T200");
    f->Cmd_Edit->click();
    EXPECT_EQ(lines("SELECT ID_MODELLO, Macchina, Modello FROM Tbl_Proc_General_Macc WHERE ID > 3"),
              QStringList{"3|TORNIO|T200"});
    f = reopened();
    EXPECT_EQ(f->DataGrid2->RecordCount(), 4);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");

    // T200's heading now names P9 (key 2): steps, assignments, headings and assigned steps
    // of key 3 follow. A No first changes nothing.
    exec("DELETE FROM Tbl_Proc_General_Macc WHERE ID > 3");
    f->Cmd_Aggiorna->click();
    f = reopened();
    selectModel(f, "T200");
    f->DataCombo2->choose("PRESSA");
    f->DataCombo3->choose("P9");
    answer({vb::answer::No});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Dati", "Stai per eseguire una Modifica, Vuoi Procedere??",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(lines("SELECT Modello FROM Tbl_Proc_General_Macc WHERE ID = 2"), QStringList{"T200"});

    answer({vb::answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(lines("SELECT ID_MODELLO, Macchina, Modello FROM Tbl_Proc_General_Macc ORDER BY ID"),
              (QStringList{"1|PRESSA|AX100", "2|PRESSA|P9", "2|PRESSA|P9"}));
    EXPECT_EQ(lines("SELECT ID_MODELLO FROM Tbl_Proc_General WHERE Titolo = 'Controllo dell''asse'"), QStringList{"2"});
    EXPECT_EQ(lines("SELECT ID_MODELLO, Macchina, Modello FROM Tbl_Assegna_M"), QStringList{"2|PRESSA|P9"});
    EXPECT_EQ(lines("SELECT ID_MODELLO FROM Tbl_ProcedureM"), QStringList{"2"});
    f = reopened();
    EXPECT_EQ(f->Txt_Posizione->Text(), "2") << "back on the row kept";
    EXPECT_EQ(f->ID_MOD->Text(), "2");
}

TEST_F(Form9Test, AnApostropheInTheModelsNameStopsTheCascadeWithItsError)
{
    exec("UPDATE Tbl_Macchina SET Modello = 'P''9' WHERE ID_MODELLO = 2");
    exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello) VALUES (3, 1, 'TORNIO', 'T200')");
    Form9* f = form9();
    selectModel(f, "T200");
    f->DataCombo2->choose("PRESSA");
    f->DataCombo3->choose("P'9");
    // The model's name goes into its lookup as typed: no key is found, and the key stays
    // the kind's first model's.
    EXPECT_EQ(f->ID_MOD->Text(), "1");
    f->ID_MOD->setText("2");
    answer({vb::answer::Yes});
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1].buttons, vb::mb::OKOnly);
    EXPECT_TRUE(shown[1].prompt.startsWith("-2147217900 ")) << shown[1].prompt.toStdString();
    // The heading and the steps moved; the assignments' statement failed and ended the save.
    EXPECT_EQ(lines("SELECT ID_MODELLO, Modello FROM Tbl_Proc_General_Macc WHERE ID = 2"), QStringList{"2|P'9"});
    EXPECT_EQ(lines("SELECT ID_MODELLO FROM Tbl_Proc_General WHERE Minuti = 15"), QStringList{"2"});
    EXPECT_EQ(lines("SELECT ID_MODELLO, Modello FROM Tbl_Assegna_M"), QStringList{"3|T200"});
    EXPECT_EQ(form9(), f) << "not reopened";
}

TEST_F(Form9Test, StepInsertAndEditFollowedByTheAssignedSteps)
{
    exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Titolo, Procedura) VALUES (1, 1, 'Olio', 'x')");
    exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Titolo, Procedura) VALUES (3, 1, 'Olio', 'y')");
    Form9* f = form9();
    f->Cmd_Add2->click();
    EXPECT_BOX(oneBox(), "SELEZIONA MANUTENZIONE", "Non hai selezionato nessuna Manutenzione", vb::mb::Exclamation);

    selectModel(f, "AX100");
    f->Cmd_Add2->click();
    EXPECT_EQ(texts({f->Txt_Num_Procedura, f->Cmd_Edit2}), QStringList({"4", "SALVA"}));
    EXPECT_FALSE(f->Cmd_Add2->isEnabled());
    f->Txt_Titolo->setText("Livello dell'olio");
    f->Cmd_Edit2->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
    f->Txt_Procedura->setText("Rabbocco all'occorrenza");
    f->Txt_Num_Procedura->setText("4a");
    f->Cmd_Edit2->click();
    EXPECT_BOX(oneBox(), "DATO NON VALIDO", "Il N° della Procedura deve essere un numero!", vb::mb::Exclamation);
    EXPECT_EQ(lines("SELECT Num FROM Tbl_Proc_General WHERE ID_MODELLO = 1"), (QStringList{"1", "2", "3"}));
    f->Txt_Num_Procedura->setText("4");
    f->Cmd_Edit2->click();
    EXPECT_EQ(lines("SELECT Num, Titolo, Procedura, Minuti FROM Tbl_Proc_General WHERE ID_MODELLO = 1 AND Num = 4"),
              QStringList{"4|Livello dell'olio|Rabbocco all'occorrenza|"});
    f = reopened();
    EXPECT_EQ(f->Cmd_Edit2->Caption(), "MODIFICA");
    EXPECT_EQ(f->ID_MOD->Text(), "1") << "back on the model kept";
    EXPECT_EQ(f->DataGrid1->RecordCount(), 4);
    selectModel(f, "P9");
    f->Cmd_Add2->click();
    EXPECT_EQ(f->Txt_Num_Procedura->Text(), "1") << "an empty list starts at 1";

    // An edit reaches the assigned steps of the model by their old title, quotes doubled.
    selectModel(f, "AX100");
    selectStep(f, "Olio");
    f->Txt_Titolo->setText("Olio dell'impianto");
    f->Txt_Procedura->setText("Cambio dell'olio");
    answer({vb::answer::Yes});
    f->Cmd_Edit2->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(lines("SELECT ID_MODELLO, Titolo, Procedura FROM Tbl_ProcedureM ORDER BY ID_MODELLO"),
              (QStringList{"1|Olio dell'impianto|Cambio dell'olio", "3|Olio|y"}));
    EXPECT_EQ(lines("SELECT Titolo FROM Tbl_Proc_General WHERE ID_MODELLO = 1 AND Num = 1"),
              QStringList{"Olio dell'impianto"});
}

TEST_F(Form9Test, DeletesAskFirstAndNeedASelection)
{
    Form9* f = form9();
    f->Cmd_Delete->click();
    f->Cmd_Delete2->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "NESSUNA MANUTENZIONE SELEZIONATA", "Non è stato selezionato nessun dato!",
               vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "NESSUNA PROCEDURA SELEZIONATA", "Non è stato selezionato nessun dato!", vb::mb::Exclamation);

    selectModel(f, "AX100");
    selectStep(f, "Filtri");
    answer({vb::answer::No, vb::answer::Yes});
    f->Cmd_Delete2->click();
    f->Cmd_Delete2->click();
    shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "Eliminazione Procedura", "Vuoi Veramente eliminare la Procedura selezionata?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(lines("SELECT Titolo FROM Tbl_Proc_General WHERE ID_MODELLO = 1 ORDER BY Num"),
              (QStringList{"Olio", "Cinghie"}));

    f = reopened();
    selectModel(f, "AX100");
    answer({vb::answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "Eliminazione Manutenzione e Procedure",
               "Vuoi Veramente eliminare la Manutenzione selezionata con tutte le sue procedure?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(lines("SELECT Modello FROM Tbl_Proc_General_Macc ORDER BY ID"), (QStringList{"T200", "P9"}));
    EXPECT_EQ(lines("SELECT ID_MODELLO FROM Tbl_Proc_General"), QStringList{"3"});
    EXPECT_EQ(reopened()->DataGrid2->RecordCount(), 2);
}

TEST_F(Form9Test, SearchesNarrowBothListsAndClearEachOther)
{
    Form9* f = form9();
    f->Txt_Search_Macc->typeText("tor");
    EXPECT_EQ(f->DataGrid2->RecordCount(), 1);
    EXPECT_EQ(f->DataGrid1->RecordCount(), 1);
    EXPECT_TRUE(f->Label2->Caption().startsWith("N° 1 Macchine"));
    // The first key in the other field empties the kind's search, whose change empties the
    // model's search in turn: that key is lost and both lists come back whole.
    f->Txt_Search_Modello->typeText("9");
    EXPECT_EQ(texts({f->Txt_Search_Macc, f->Txt_Search_Modello}), QStringList({"", ""}));
    EXPECT_EQ(f->DataGrid2->RecordCount(), 3);
    f->Txt_Search_Modello->typeText("9");
    EXPECT_EQ(f->DataGrid2->RecordCount(), 1) << "a model name containing the text";
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0) << "steps by a model name starting with it";
    f->Txt_Search_Modello->setText(QString());
    f->Txt_Search_Modello->typeText("d'");
    EXPECT_EQ(f->DataGrid2->RecordCount(), 0);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form9Test, PrintsTheGeneralProceduresOfTheSelectedModel)
{
    start(); // the main screen hosts the previews
    boxes();
    Form9* f = form9();
    f->Cmd_Print->click();
    selectModel(f, "P9");
    f->Cmd_Print->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "MANCANZA DATI", "Non hai selezionato nessun dato!", vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "MANCANZA DATI!", "Non c'è nessuna Procedura di Manutenzione!", vb::mb::Information);
    EXPECT_FALSE(reports::IsReportLoaded("DataReport6"));

    selectModel(f, "AX100");
    f->Cmd_Print->click();
    const QStringList t = printed("DataReport6");
    EXPECT_TRUE(t.contains("AX100") && t.contains("Pulizia filtri"));
    EXPECT_FALSE(t.contains("Verifica dell'asse")) << "another model's steps";
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form9Test, TheMenuEntryOpensTheScreen)
{
    InProcessDrive drive;
    drive("start");
    drive("click frmMain.lblWrite_Manut");
    EXPECT_EQ(drive("get Form9.Caption").toString(), "PROCEDURE MANUTENZIONI");
    EXPECT_TRUE(drive("get Form9.Visible").toBool());
    drive("select Form9.DataGrid2 0");
    EXPECT_EQ(drive("get Form9.Label1.Caption").toString(), "N° Procedure 3");
}

TEST_F(Form9Test, AStepWhoseOldTitleHasAnApostropheLeavesTheAssignedStepsBehind)
{
    exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Titolo, Procedura) "
         "VALUES (3, 1, 'Controllo dell''asse', 'z')");
    Form9* f = form9();
    selectModel(f, "T200");
    selectStep(f, "Controllo dell'asse");
    f->Txt_Titolo->setText("Asse");
    answer({vb::answer::Yes});
    f->Cmd_Edit2->click();
    // The new title and text go in with their quotes doubled, the old title as it is: the
    // statement breaks, its error is shown, and the save ends there.
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(shown[1].prompt.startsWith("-2147217900 ")) << shown[1].prompt.toStdString();
    EXPECT_EQ(lines("SELECT Titolo FROM Tbl_Proc_General WHERE ID_MODELLO = 3"), QStringList{"Asse"});
    EXPECT_EQ(lines("SELECT Titolo FROM Tbl_ProcedureM"), QStringList{"Controllo dell'asse"});
    EXPECT_EQ(form9(), f) << "not reopened";
}

TEST_F(Form9Test, TheWorkloadLineCountsTheModelsListed)
{
    exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Tot_Minuti_Sett) VALUES (1, 1, '1.200,00')");
    exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Tot_Minuti_Sett) VALUES (3, 1, '1.800,00')");
    Form9* f = form9();
    // 1.200,00 + 1.800,00 as texts, 3000 minutes: 50 hours are no time of day and read 00:00:00; 1,25 people show as
    // 1,3.
    EXPECT_EQ(f->Label2->Caption(), "N° 3 Macchine    [-Ore Settimanali: hh:mm:ss 00:00:00 -Persone Necessarie: 1,3]");
    f->Txt_Search_Macc->typeText("TOR");
    EXPECT_EQ(f->Label2->Caption(), "N° 1 Macchine    [-Ore Settimanali: hh:mm:ss 00:00:00 -Persone Necessarie: 1,3]");
    exec("DELETE FROM Tbl_Assegna_M WHERE ID_MODELLO = 3");
    definition::Show_Workload_Total();
    EXPECT_EQ(f->Label2->Caption(), "N° 1 Macchine    [-Ore Settimanali: hh:mm:ss 20:00:00 -Persone Necessarie: 1]");
}
