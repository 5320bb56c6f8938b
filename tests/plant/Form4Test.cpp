// The departments of Form4: what each holds, insert, rename, delete and the search.
#include "plant/Form4.h"

#include "support/ScreenTest.h"

using plant::Form4;
namespace answer = vb::answer;
using vb::mb::Exclamation, vb::mb::Critical;
constexpr int YesNoQuestion = vb::mb::YesNo + vb::mb::Question;

namespace {

// A model name longer than the 30 characters the machines grid shows.
const QString LongModel = QStringLiteral("PIEGATRICE IDRAULICA SERIE 2000 XL");

class Form4Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // 1 PRESSE with three models and five units, 2 MONTAGGIO with one model, 3
        // VERNICIATURA empty.
        for (const char* d : {"PRESSE", "MONTAGGIO", "VERNICIATURA"})
            plant.department(d);
        addModel("PRESSA", "AX100", 1, "PRESSE", {"10", "2", "1"});
        addModel("PRESSA", "BX200", 1, "PRESSE", {"5"});
        addModel("PIEGATRICE", LongModel, 1, "PRESSE", {"7"});
        // A model of MONTAGGIO whose copy of the name is out of step with its key.
        addModel("AVVITATORE", "AV1", 2, "PRESSE", {"1"});
    }

    void addModel(const QString& kind, const QString& model, int department, const QString& name,
                  const QStringList& units)
    {
        plant.units(plant.model(kind, model, {{"ID_REPARTO", department}, {"REPARTO", name}}), units);
    }

    Form4* form() { return screen<Form4>("Form4"); }
};

} // namespace

TEST_F(Form4Test, ADepartmentShowsItsModelsUnitsAndTheUnitsOfTheMachineChosen)
{
    Form4* f = form();
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE", "VERNICIATURA"}));
    EXPECT_EQ(f->Label2->Caption(), "3");
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "nothing changed yet";

    f->List1->choose("PRESSE");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(texts({f->TextREPARTO, f->Text1}), QStringList({"PRESSE", "1"}));
    EXPECT_TRUE(f->Cmd_Edit->isEnabled());
    // Models by key (the MONTAGGIO model with the stale name is not counted), units by key.
    EXPECT_EQ(texts({f->Txt_Num_Macc, f->Txt_Num_Mod}), QStringList({"3", "5"}));

    // Machines by the copy of the name: the stale MONTAGGIO model shows here.
    EXPECT_EQ(captions(f->DataGrid1), QStringList({"Macchina", "Modello", "N°"}));
    EXPECT_EQ(shown(f->DataGrid1), QStringList({"AVVITATORE|AV1|1", "PIEGATRICE|" + LongModel.left(30) + "|1",
                                                "PRESSA|AX100|3", "PRESSA|BX200|1"}));
    EXPECT_EQ(f->Frame2->Caption(), "Conteggio Macchine: 4");
    EXPECT_EQ(captions(f->DataGrid2), QStringList({"Modello", "Numeraz"}));
    EXPECT_EQ(shown(f->DataGrid2),
              QStringList({"AV1|1", "AX100|1", "AX100|2", "AX100|10", "BX200|5", LongModel + "|7"}));
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 6");

    // A machine chosen narrows the units to its model, by number; a long model is found by
    // the 30 characters the grid knows.
    f->DataGrid1->select(2);
    EXPECT_EQ(shown(f->DataGrid2), QStringList({"AX100|1", "AX100|2", "AX100|10"}));
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 3");
    f->DataGrid1->select(1);
    EXPECT_EQ(shown(f->DataGrid2), QStringList({LongModel + "|7"}));

    // A department without machines: 0 and empty grids.
    f->List1->choose("VERNICIATURA");
    EXPECT_EQ(
        QStringList({f->Txt_Num_Macc->Text(), f->Txt_Num_Mod->Text(), f->Frame2->Caption(), f->Frame3->Caption()}),
        QStringList({"0", "0", "Conteggio Macchine: 0", "Conteggio Modelli: 0"}));
    EXPECT_EQ(f->DataGrid1->RecordCount() + f->DataGrid2->RecordCount(), 0);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form4Test, InsertNeedsANameAndLetsATwinThrough)
{
    Form4* f = form();
    f->List1->choose("PRESSE");
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled() || f->Cmd_Delete->isEnabled());
    EXPECT_EQ(f->TextREPARTO->Text() + f->Text1->Text() + f->Txt_Num_Macc->Text(), "");

    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI", "Non sono stati compilati tutti i dati richiesti", Critical);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA") << "still inserting";

    typeOver(f->TextREPARTO, "SALDATURA");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_Reparto FROM Tbl_Reparto WHERE Reparto = 'SALDATURA'"), QStringList({"4"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE", "SALDATURA", "VERNICIATURA"}));
    EXPECT_EQ(texts({f->Label2, f->Cmd_Edit}), QStringList({"4", "MODIFICA"}));
    EXPECT_TRUE(f->Cmd_Add->isEnabled() && f->Cmd_Delete->isEnabled());
    EXPECT_EQ(f->TextREPARTO->Text(), "");
    EXPECT_EQ(f->Text1->Text(), "") << "the list's refresh clears the new key";

    // The twin check never finds anything: an existing name, or one with an apostrophe,
    // goes in without a word.
    for (const char* twin : {"presse", "REPARTO DELL'OFFICINA"}) {
        f->Cmd_Add->click();
        typeOver(f->TextREPARTO, twin);
        f->Cmd_Edit->click();
    }
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto WHERE Reparto LIKE 'PRESSE' ORDER BY ID_Reparto"),
              QStringList({"PRESSE", "presse"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Reparto WHERE Reparto = 'REPARTO DELL''OFFICINA'"), QStringList({"1"}));
    EXPECT_EQ(f->Label2->Caption(), "6");

    // VISUALIZZA TUTTO leaves an insert begun.
    f->Cmd_Add->click();
    f->Command1->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
}

TEST_F(Form4Test, RenameCarriesTheNameToTheModelsByKeyWithTheApostropheDoubled)
{
    Form4* f = form();
    f->List1->choose("PRESSE");

    // No leaves everything as it was.
    typeOver(f->TextREPARTO, "PRESSE DELL'OFFICINA");
    answer({answer::No});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Reparto **PRESSE**",
               "Il Reparto [PRESSE] Sta per essere modificato con [PRESSE DELL'OFFICINA] Vuoi Procedere??",
               YesNoQuestion);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto WHERE ID_Reparto = 1"), QStringList({"PRESSE"}));

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto WHERE ID_Reparto = 1"), QStringList({"PRESSE DELL'OFFICINA"}));
    // The copies follow by key: the MONTAGGIO model keeps its stale "PRESSE".
    EXPECT_EQ(column("SELECT REPARTO FROM Tbl_Macchina ORDER BY ID_MODELLO"),
              QStringList({"PRESSE DELL'OFFICINA", "PRESSE DELL'OFFICINA", "PRESSE DELL'OFFICINA", "PRESSE"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE DELL'OFFICINA", "VERNICIATURA"}));
    EXPECT_EQ(f->TextREPARTO->Text() + f->Text1->Text(), "");

    // The list finds the new name; the counts go by key, but the grids take the name as it
    // stands and the apostrophe breaks their statements: empty, counting 0, and no box.
    f->List1->choose("PRESSE DELL'OFFICINA");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(QStringList({f->Text1->Text(), f->Txt_Num_Macc->Text(), f->Txt_Num_Mod->Text(), f->Frame2->Caption(),
                           f->Frame3->Caption()}),
              QStringList({"1", "3", "5", "Conteggio Macchine: 0", "Conteggio Modelli: 0"}));
    EXPECT_EQ(f->DataGrid1->RecordCount() + f->DataGrid2->RecordCount(), 0);

    // The same name asks the other question and still rewrites the copies.
    exec("UPDATE Tbl_Macchina SET REPARTO = 'X' WHERE ID_MODELLO = 1");
    f->Cmd_Edit->setEnabled(true);
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Reparto **PRESSE DELL'OFFICINA**",
               "Stai per modificare i dati del Reparto [PRESSE DELL'OFFICINA] Vuoi Procedere??", YesNoQuestion);
    EXPECT_EQ(column("SELECT REPARTO FROM Tbl_Macchina WHERE ID_MODELLO = 1"), QStringList({"PRESSE DELL'OFFICINA"}));
}

TEST_F(Form4Test, RenameWithoutADepartmentChosenWritesNothing)
{
    Form4* f = form();
    f->Command1->click();
    typeOver(f->TextREPARTO, "NUOVO");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    // Only the question: the failures pass in silence.
    EXPECT_BOX(oneBox(), "Modifica Reparto ****",
               "Il Reparto [] Sta per essere modificato con [NUOVO] Vuoi Procedere??", YesNoQuestion);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto ORDER BY ID_Reparto"),
              QStringList({"PRESSE", "MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Macchina WHERE REPARTO = 'NUOVO'"), QStringList({"0"}));
    EXPECT_EQ(f->TextREPARTO->Text(), "") << "the list was refreshed";
}

TEST_F(Form4Test, DeleteAsksFirstAndLeavesTheModelsTheirDepartment)
{
    Form4* f = form();
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "NESSUN Reparto SELEZIONATO", "Non è stato selezionato nessun dato!", Exclamation);

    f->List1->choose("PRESSE");
    answer({answer::No});
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "Eliminazione Reparto **PRESSE**", "Vuoi Veramente eliminare il Reparto selezionato?",
               YesNoQuestion);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Reparto"), QStringList({"3"}));

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto ORDER BY Reparto"), QStringList({"MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(column("SELECT ID_REPARTO & ' ' & REPARTO FROM Tbl_Macchina WHERE ID_MODELLO = 1"),
              QStringList({"1 PRESSE"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(texts({f->Label2, f->Text1}), QStringList({"2", ""}));

    // With the key gone, a delete asks nothing again.
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().at(0).title, "NESSUN Reparto SELEZIONATO");
}

TEST_F(Form4Test, SearchMatchesTheStartAndEachFurtherWordAtTheEnd)
{
    for (const char* d : {"LINEA B", "LINEA", "PRESSE DELL'OFFICINA", "L'OFFICINA"})
        plant.department(d);
    Form4* f = form();

    typeLastKey(f->Txt_Search, "pr");
    EXPECT_EQ(f->List1->items(), QStringList({"PRESSE", "PRESSE DELL'OFFICINA"}));
    EXPECT_EQ(f->Label2->Caption(), "2");
    typeLastKey(f->Txt_Search, "l'o");
    EXPECT_EQ(f->List1->items(), QStringList({"L'OFFICINA"}));
    EXPECT_EQ(f->Label2->Caption(), "1");
    EXPECT_TRUE(boxes().empty());

    // Two words: the first is the whole name, so "linea b" finds neither line.
    typeLastKey(f->Txt_Search, "linea b");
    EXPECT_BOX(oneBox(), "REPARTO NON TROVATO !!",
               "Non è stata trovata nessun Reparto con le seguenti parole chiave < linea b > !!!", Exclamation);
    EXPECT_EQ(f->List1->ListCount(), 0);

    // A search found is a list to click in; an emptied field searches nothing.
    typeLastKey(f->Txt_Search, "mon");
    f->List1->choose("MONTAGGIO");
    EXPECT_EQ(texts({f->Text1, f->Txt_Num_Macc}), QStringList({"2", "1"}));
    f->Txt_Search->setText(QString());
    f->Txt_Search->KeyUp();
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO"}));
    EXPECT_TRUE(boxes().empty());
}
