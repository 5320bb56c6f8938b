// The machine models of Form5: insert, edits carried to every copy, delete, searches, prints.
#include "plant/Form5.h"

#include "reports/ReportViewer.h"
#include "runtime/OpenFile.h"
#include "support/ScreenTest.h"

using plant::Form5;
namespace answer = vb::answer;

namespace {

// Every table that copies a model's names.
const char* const Copies[] = {"Tbl_Maintenance", "Tbl_Proc_General_Macc", "Tbl_Assegna_M", "Tbl_Planned",
                              "Tbl_Ricerca"};

class Form5Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // Departments 1 PRESSE and 2 MONTAGGIO; models 1 PRESSA AX100 (with procedures),
        // 2 TORNIO T200, 3 PRESSA P9 with no maker.
        plant.department("PRESSE");
        plant.department("MONTAGGIO");
        addModel("PRESSA", "AX100", "In Uso", 1, "PRESSE", "Bruni", "1998");
        addModel("TORNIO", "T200", "Fermo", 2, "MONTAGGIO", "Colli", "2004");
        addModel("PRESSA", "P9", "In Uso", 1, "PRESSE");
        plant.generalModel(1, "PRESSA", "AX100", {{"Tempo_Minuti", 90}});
        plant.generalStep(1, 1, "Olio", "Cambio olio del circuito", 90);
    }

    void addModel(const QString& machine, const QString& model, const QString& state, int department,
                  const QString& name, const QString& maker = {}, const QString& year = {})
    {
        const auto orNull = [](const QString& s) { return s.isEmpty() ? vb::Variant::null() : vb::Variant(s); };
        plant.model(machine, model,
                    {{"Stato", state},
                     {"ID_REPARTO", department},
                     {"REPARTO", name},
                     {"Costruttore", orNull(maker)},
                     {"Anno", orNull(year)}});
    }

    /// A row of model 1 and one of model 2 in every copy.
    void addCopies()
    {
        for (const char* table : Copies) {
            plant.add(table, {{"ID_MODELLO", 1}, {"Macchina", "PRESSA"}, {"Modello", "AX100"}});
            plant.add(table, {{"ID_MODELLO", 2}, {"Macchina", "TORNIO"}, {"Modello", "T200"}});
        }
    }

    Form5* form5() { return screen<Form5>("Form5"); }
    Form5* reopened() { return ScreenTest::reopened<Form5>("Form5"); }
    static void selectModel(Form5* f, int id) { selectKey(f->DataGrid1, id, true); }

    /// The model's fields as shown: key, kind, model, state, department and its key, maker, year.
    static QStringList fields(const Form5* f)
    {
        return {f->txtID_MODELLO->Text(), f->txtMacchina->Text(),   f->Txt_Modello->Text(), f->DataCombo4->Text(),
                f->DataCombo3->Text(),    f->TxtID_REPARTO->Text(), f->DataCombo2->Text(),  f->txtAnno->Text()};
    }
};

} // namespace

TEST_F(Form5Test, ListListsAndTheSelectionOfAModel)
{
    Form5* f = form5();
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Macchine: 3");
    EXPECT_EQ(captions(f->DataGrid1),
              QStringList({"ID_MODELLO", "MACCHINA", "MODELLO", "STATO", "REPARTO", "COSTRUTTORE"}));
    EXPECT_EQ(f->DataGrid1->cellText(2, 1), "TORNIO") << "by kind";
    EXPECT_EQ(f->DataCombo3->items(), (QStringList{"MONTAGGIO", "PRESSE"}));
    EXPECT_EQ(f->DataCombo2->items(), (QStringList{"", "Bruni", "Colli"})) << "the makers typed before, once each";
    EXPECT_EQ(f->DataCombo4->items(), (QStringList{"Fermo", "In Uso"}));
    EXPECT_EQ(f->DataCombo1->items(), f->DataCombo4->items());
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());

    selectModel(f, 1);
    // The department's key is found by its name.
    EXPECT_EQ(fields(f), (QStringList{"1", "PRESSA", "AX100", "In Uso", "PRESSE", "1", "Bruni", "1998"}));
    EXPECT_TRUE(f->Cmd_Edit->isEnabled() && f->Cmd_Vis_Manut->isEnabled());

    // Empty columns leave their fields as the clearing left them; no procedures, no print.
    selectModel(f, 3);
    EXPECT_EQ(fields(f), (QStringList{"3", "PRESSA", "P9", "In Uso", "PRESSE", "1", "", ""}));
    EXPECT_FALSE(f->Cmd_Vis_Manut->isEnabled());
    EXPECT_EQ(f->Txt_Posizione->Text(), "1");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form5Test, InsertNeedsItsFourFieldsThenReopensOnTheKeptRow)
{
    Form5* f = form5();
    f->Cmd_Add->click();
    EXPECT_TRUE(f->Cmd_Edit->isEnabled()) << "the save is open to a new model";
    selectModel(f, 2); // a click in the list leaves the insert
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(f->Cmd_Add->isEnabled() && f->Cmd_Delete->isEnabled());
    f->Cmd_Add->click();
    EXPECT_EQ(texts({f->txtID_MODELLO, f->Cmd_Edit}), QStringList({"", "SALVA"}));
    EXPECT_FALSE(f->Cmd_Add->isEnabled() || f->Cmd_Delete->isEnabled());

    f->txtMacchina->typeText("SALDATRICE");
    f->Txt_Modello->typeText("DELL'ARCO 3");
    f->DataCombo3->choose("MONTAGGIO");
    f->Cmd_Edit->click(); // no state
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);

    f->DataCombo4->typeText("Nuova");
    f->DataCombo2->typeText("Ferri");
    f->Cmd_Edit->click();
    EXPECT_EQ(lines("SELECT Modello, Stato, ID_REPARTO, REPARTO, Costruttore, Anno FROM Tbl_Macchina "
                    "WHERE Macchina = 'SALDATRICE'"),
              QStringList{"DELL'ARCO 3|Nuova|2|MONTAGGIO|Ferri|"});
    // Reopened in browse mode on the row number kept before the insert (2): the new model
    // sorts there now.
    Form5* again = reopened();
    EXPECT_NE(again, f);
    EXPECT_EQ(texts({again->Label1, again->Cmd_Edit, again->txtMacchina}),
              QStringList({"Conteggio Macchine: 4", "MODIFICA", "SALDATRICE"}));
    EXPECT_TRUE(again->DataCombo4->items().contains("Nuova")) << "a new state is offered from now on";
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form5Test, RenameCarriesBothNamesToEveryCopyWithApostrophes)
{
    addCopies();
    for (const char* other : {"Form7", "Form9"}) {
        standIn(other, QStringList{});
        shell::screens().form(other);
    }
    Form5* f = form5();
    selectModel(f, 1);
    f->txtMacchina->setText("PRESSA D'ORO");
    f->Txt_Modello->setText("AX'2%1");
    f->Cmd_Edit->click(); // answered No
    EXPECT_BOX(oneBox(), "Modifica Macchina **PRESSA**",
               "La Macchina [PRESSA] Sta per essere modificata, Vuoi Procedere??", vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT Modello FROM Tbl_Macchina WHERE ID_MODELLO = 1"), QStringList{"AX100"});
    EXPECT_TRUE(shell::screens().isLoaded("Form7"));

    answer({answer::Yes});
    f->Cmd_Edit->click();
    boxes();
    QStringList tables(std::begin(Copies), std::end(Copies));
    for (const QString& table : tables << "Tbl_Macchina") {
        EXPECT_EQ(lines("SELECT DISTINCT Macchina, Modello FROM " + table + " WHERE ID_MODELLO = 1"),
                  QStringList{"PRESSA D'ORO|AX'2%1"})
            << table.toStdString();
        EXPECT_EQ(column("SELECT Modello FROM " + table + " WHERE ID_MODELLO = 2"), QStringList{"T200"})
            << table.toStdString();
    }
    EXPECT_FALSE(shell::screens().isLoaded("Form7") || shell::screens().isLoaded("Form9"));

    // Names unchanged: the plain question, and the copies are written all the same.
    exec("UPDATE Tbl_Ricerca SET Modello = 'a mano' WHERE ID_MODELLO = 2");
    f = reopened();
    selectModel(f, 2);
    f->txtAnno->setText("2005");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Macchina **TORNIO**",
               "Stai per modificare i dati della Macchina [TORNIO] Vuoi Procedere??", vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT Anno FROM Tbl_Macchina WHERE ID_MODELLO = 2"), QStringList{"2005"});
    EXPECT_EQ(column("SELECT Modello FROM Tbl_Ricerca WHERE ID_MODELLO = 2"), QStringList{"T200"});
}

TEST_F(Form5Test, DeleteAsksFirstAndLeavesUnitsStepsNotesAndInterventions)
{
    addCopies();
    plant.unit(1, "1");
    plant.step(1, 2, 1, "Olio");
    plant.note({{"ID_MODELLO", 1}, {"NOTE", "rumore"}});
    Form5* f = form5();
    f->Cmd_Delete->click();
    selectModel(f, 1);
    f->Cmd_Delete->click(); // answered No
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "NESSUNA MACCHINA SELEZIONATA", "Non è stato selezionato nessun dato!", vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "Eliminazione Macchina **AX100** e Corrispettivi Dati",
               "Vuoi Veramente eliminare la Macchina selezionata e tutti i suoi Dati?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(column("SELECT Modello FROM Tbl_Macchina").size(), 3);

    answer({answer::Yes});
    f->Cmd_Delete->click();
    const auto rowsOfModel1 = [&](const char* table) {
        return column(QStringLiteral("SELECT ID_MODELLO FROM %1 WHERE ID_MODELLO = 1").arg(table)).size();
    };
    for (const char* gone :
         {"Tbl_Macchina", "Tbl_Proc_General_Macc", "Tbl_Assegna_M", "Tbl_Maintenance", "Tbl_Planned"})
        EXPECT_EQ(rowsOfModel1(gone), 0) << gone;
    for (const char* kept :
         {"Tbl_Numerazione", "Tbl_Proc_General", "Tbl_ProcedureM", "Tbl_Maintenance_Note", "Tbl_Ricerca"})
        EXPECT_EQ(rowsOfModel1(kept), 1) << kept;
    EXPECT_EQ(column("SELECT Modello FROM Tbl_Maintenance").size(), 1) << "the other model's rows stay";
    EXPECT_EQ(reopened()->Label1->Caption(), "Conteggio Macchine: 2");
}

TEST_F(Form5Test, SearchesNarrowTheListAsTheUserTypes)
{
    addModel("TRAPANO D'ANGOLO", "TA'1", "Fermo", 2, "MONTAGGIO");
    Form5* f = form5();
    selectModel(f, 1);
    f->Text1->focusIn();
    f->Text1->typeText("pre");
    EXPECT_EQ(f->Label1->Caption(), "Macchine Trovate n° 2") << "contained, case ignored";
    EXPECT_EQ(f->DataGrid1->Columns("Modello").Caption(), "MODELLO") << "captions by field on whole rows";
    EXPECT_EQ(f->DataGrid1->Columns("Anno").Width(), 0);
    EXPECT_EQ(fields(f).join(""), "") << "the fields are emptied";

    f->Text1->focusOut();
    EXPECT_EQ(f->Text1->Text(), "") << "leaving a search empties it";
    f->Text2->focusIn();
    f->Text2->typeText("'1");
    EXPECT_EQ(f->Label1->Caption(), "Macchine Trovate n° 1");
    EXPECT_EQ(f->DataGrid1->cellText(0, "Macchina"), "TRAPANO D'ANGOLO");
    f->Text2->focusOut();

    f->DataCombo1->choose("Fermo");
    EXPECT_EQ(f->Label1->Caption(), "Macchine Trovate n° 2");
    EXPECT_EQ(f->DataGrid1->cellText(0, "Modello"), "T200") << "by model";
    // A typed search empties the state's choice, and an emptied field leaves the list.
    f->Text1->typeText("x");
    EXPECT_EQ(f->DataCombo1->Text(), "");
    f->Text1->keyPress(8);
    EXPECT_EQ(f->Label1->Caption(), "Macchine Trovate n° 0");
    EXPECT_TRUE(boxes().empty());

    f->Cmd_Vis_All->click();
    Form5* again = reopened();
    EXPECT_EQ(again->Label1->Caption(), "Conteggio Macchine: 4");
    EXPECT_EQ(again->Cmd_Print->Caption(), "Stampa Tutti le Macchine");
}

TEST_F(Form5Test, ADepartmentTypedByHandHasNoKey)
{
    Form5* f = form5();
    selectModel(f, 2);
    f->DataCombo3->setText("OFFICINA");
    const QString prompt = oneBox().prompt;
    EXPECT_TRUE(prompt.startsWith("3021 ")) << "no current row: " << prompt.toStdString();
    EXPECT_EQ(f->TxtID_REPARTO->Text(), "2") << "the key of the department before";

    // A new model in a department that is not in the list keeps no department key.
    f->Cmd_Add->click();
    f->txtMacchina->setText("SEGA");
    f->Txt_Modello->setText("S1");
    f->DataCombo4->setText("In Uso");
    f->DataCombo3->typeText("O'");
    f->Cmd_Edit->click();
    // One box for each letter's lookup, and one more when the reopened screen goes back to
    // row 2, which is now the new model.
    EXPECT_EQ(boxes().size(), 3u);
    EXPECT_EQ(column("SELECT ID_REPARTO FROM Tbl_Macchina WHERE Macchina = 'SEGA'"), QStringList{"<null>"});
    EXPECT_EQ(column("SELECT REPARTO FROM Tbl_Macchina WHERE Macchina = 'SEGA'"), QStringList{"O'"});
}

TEST_F(Form5Test, PrintsTheListByDepartmentAndAModelsGeneralProcedures)
{
    start(); // the main screen hosts the previews
    boxes();
    Form5* f = form5();
    f->Cmd_Print->click();
    QStringList t = printed("DataReport8");
    EXPECT_TRUE(t.contains("LISTA MACCHINE"));
    EXPECT_TRUE(t.contains("15/11/2026 08.00.00")) << "Label2: the present date and time";
    EXPECT_EQ(t.mid(t.indexOf("REPARTO:"), 2), (QStringList{"REPARTO:", "MONTAGGIO"}));
    const int presse = int(t.lastIndexOf("PRESSE"));
    ASSERT_GT(presse, 0);
    EXPECT_EQ(t.mid(presse - 1, 3), (QStringList{"TOTALE MACCHINE", "PRESSE", "2"})) << "the group's count";
    EXPECT_EQ(t.mid(t.indexOf("TOTALE MACCHINE IN TUTTI I REPARTI:"), 2),
              (QStringList{"TOTALE MACCHINE IN TUTTI I REPARTI:", "3"}));

    f->Cmd_Vis_Manut->click();
    EXPECT_FALSE(reports::IsReportLoaded("DataReport6"));
    selectModel(f, 1);
    f->Cmd_Vis_Manut->click();
    t = printed("DataReport6");
    EXPECT_TRUE(t.contains("PRESSA") && t.contains("Cambio olio del circuito"));
    f->txtID_MODELLO->setText("0");
    f->Cmd_Vis_Manut->click();
    EXPECT_FALSE(reports::IsReportLoaded("DataReport6")) << "the earlier one is closed first";
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "MANCANZA DATI", "Non hai selezionato nessun dato!", vb::mb::Exclamation);
    EXPECT_BOX(shown[1], "MANCANZA DATI!", "Non c'è nessuna Procedura di Manutenzione!", vb::mb::Information);

    f->Cmd_Info->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{path() + "/Info.txt"});
}
