// The departments of Form4: the list and what a department holds, insert (twins let
// through), rename with the models' copy of the name, delete without cascade, the search,
// and the menu entry.
#include "shell/ShellFixture.h"
#include "support/InProcessDrive.h"

#include "plant/Form4.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using plant::Form4;
namespace answer = vb::answer;

namespace {

// A model name longer than the 30 characters the machines grid shows.
const QString LongModel = QStringLiteral("PIEGATRICE IDRAULICA SERIE 2000 XL");

class Form4Test : public ShellFixture
{
protected:
    void SetUp() override
    {
        ShellFixture::SetUp();
        // 1 PRESSE with three models and five units, 2 MONTAGGIO with one model, 3
        // VERNICIATURA empty.
        exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('PRESSE')");
        exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('MONTAGGIO')");
        exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('VERNICIATURA')");
        addModel("PRESSA", "AX100", 1, "PRESSE", {"10", "2", "1"});
        addModel("PRESSA", "BX200", 1, "PRESSE", {"5"});
        addModel("PIEGATRICE", LongModel, 1, "PRESSE", {"7"});
        // A model of MONTAGGIO whose copy of the name is out of step with its key.
        addModel("AVVITATORE", "AV1", 2, "PRESSE", {"1"});
    }

    void addModel(const QString& kind, const QString& model, int department, const QString& name,
                  const QStringList& units)
    {
        exec(QStringLiteral("INSERT INTO Tbl_Macchina (Macchina, Modello, ID_REPARTO, REPARTO) VALUES ('%1', '%2', %3, '%4')")
                 .arg(kind, model)
                 .arg(department)
                 .arg(name));
        const QString id = rows("SELECT Max(ID_MODELLO) FROM Tbl_Macchina")[0][0].toString();
        for (const QString& u : units)
            exec(QStringLiteral("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('%1', %2)").arg(u, id));
    }

    Form4* form() { return shell::screens().formAs<Form4>(QStringLiteral("Form4")); }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }

    QStringList column(const QString& jet)
    {
        QStringList out;
        for (const auto& r : rows(jet))
            out << (r.front().isNull() ? QStringLiteral("<null>") : r.front().toString());
        return out;
    }

    /// A grid as shown, one "a|b|c" line per row.
    static QStringList shown(vb::DataGrid* grid)
    {
        QStringList out;
        for (int r = 0; r < grid->RecordCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < grid->ColumnCount(); ++c)
                cells << grid->cellText(r, c);
            out << cells.join(QLatin1Char('|'));
        }
        return out;
    }

    static QStringList captions(vb::DataGrid* grid)
    {
        QStringList out;
        for (int c = 0; c < grid->ColumnCount(); ++c)
            out << grid->Columns(c).Caption();
        return out;
    }

    /// Types a name over TextREPARTO, as the user does.
    static void retype(Form4* f, const QString& name)
    {
        f->TextREPARTO->focusIn();
        f->TextREPARTO->typeText(name);
        f->TextREPARTO->focusOut();
    }

    /// Types one more key at the end of the search field.
    static void search(Form4* f, const QString& text)
    {
        f->Txt_Search->setText(text.chopped(1));
        f->Txt_Search->setSelStart(int(text.size()) - 1);
        f->Txt_Search->keyPress(text.back().unicode());
    }
};

} // namespace

TEST_F(Form4Test, ADepartmentShowsItsModelsUnitsAndTheUnitsOfTheMachineChosen)
{
    Form4* f = form();
    ASSERT_TRUE(f);
    EXPECT_EQ(f->Caption(), "REPARTO MACCHINE");
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE", "VERNICIATURA"}));
    EXPECT_EQ(f->Label2->Caption(), "3");
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "nothing changed yet";

    f->List1->choose("PRESSE");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(f->TextREPARTO->Text(), "PRESSE");
    EXPECT_EQ(f->Text1->Text(), "1");
    EXPECT_TRUE(f->Cmd_Edit->isEnabled());
    // Models by key (the MONTAGGIO model with the stale name is not counted), units by key.
    EXPECT_EQ(f->Txt_Num_Macc->Text(), "3");
    EXPECT_EQ(f->Txt_Num_Mod->Text(), "5");

    // Machines by the copy of the name: the stale MONTAGGIO model shows here.
    EXPECT_EQ(captions(f->DataGrid1), QStringList({"Macchina", "Modello", "N°"}));
    EXPECT_EQ(shown(f->DataGrid1), QStringList({"AVVITATORE|AV1|1", "PIEGATRICE|" + LongModel.left(30) + "|1",
                                                "PRESSA|AX100|3", "PRESSA|BX200|1"}));
    EXPECT_EQ(f->Frame2->Caption(), "Conteggio Macchine: 4");
    EXPECT_EQ(captions(f->DataGrid2), QStringList({"Modello", "Numeraz"}));
    EXPECT_EQ(shown(f->DataGrid2), QStringList({"AV1|1", "AX100|1", "AX100|2", "AX100|10", "BX200|5",
                                                LongModel + "|7"}));
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 6");

    // A machine chosen narrows the units to its model, by number; a long model is found by
    // the 30 characters the grid knows.
    f->DataGrid1->select(2);
    EXPECT_EQ(shown(f->DataGrid2), QStringList({"AX100|1", "AX100|2", "AX100|10"}));
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 3");
    f->DataGrid1->select(1);
    EXPECT_EQ(shown(f->DataGrid2), QStringList({LongModel + "|7"}));
    EXPECT_EQ(captions(f->DataGrid2), QStringList({"Modello", "Numeraz"}));

    // A department without machines: 0 and empty grids.
    f->List1->choose("VERNICIATURA");
    EXPECT_EQ(f->Txt_Num_Macc->Text(), "0");
    EXPECT_EQ(f->Txt_Num_Mod->Text(), "0");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0);
    EXPECT_EQ(f->DataGrid2->RecordCount(), 0);
    EXPECT_EQ(f->Frame2->Caption(), "Conteggio Macchine: 0");
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 0");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form4Test, InsertNeedsANameAndLetsATwinThrough)
{
    Form4* f = form();
    f->List1->choose("PRESSE");
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled());
    EXPECT_FALSE(f->Cmd_Delete->isEnabled());
    EXPECT_EQ(f->TextREPARTO->Text(), "");
    EXPECT_EQ(f->Text1->Text(), "");
    EXPECT_EQ(f->Txt_Num_Macc->Text(), "");

    f->Cmd_Edit->click();
    auto shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].title, "MANCANZA DATI");
    EXPECT_EQ(shownBoxes[0].prompt, "Non sono stati compilati tutti i dati richiesti");
    EXPECT_EQ(shownBoxes[0].buttons, 16);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA") << "still inserting";

    retype(f, "SALDATURA");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_Reparto FROM Tbl_Reparto WHERE Reparto = 'SALDATURA'"), QStringList({"4"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE", "SALDATURA", "VERNICIATURA"}));
    EXPECT_EQ(f->Label2->Caption(), "4");
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
    EXPECT_TRUE(f->Cmd_Delete->isEnabled());
    EXPECT_EQ(f->TextREPARTO->Text(), "");
    EXPECT_EQ(f->Text1->Text(), "") << "the list's refresh clears the new key";

    // The twin check never finds anything: an existing name, or one with an apostrophe,
    // goes in without a word.
    f->Cmd_Add->click();
    retype(f, "presse");
    f->Cmd_Edit->click();
    f->Cmd_Add->click();
    retype(f, "REPARTO DELL'OFFICINA");
    f->Cmd_Edit->click();
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
    retype(f, "PRESSE DELL'OFFICINA");
    answer({answer::No});
    f->Cmd_Edit->click();
    auto shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].title, "Modifica Reparto **PRESSE**");
    EXPECT_EQ(shownBoxes[0].prompt, "Il Reparto [PRESSE] Sta per essere modificato con [PRESSE DELL'OFFICINA] Vuoi Procedere??");
    EXPECT_EQ(shownBoxes[0].buttons, 36);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto WHERE ID_Reparto = 1"), QStringList({"PRESSE"}));

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto WHERE ID_Reparto = 1"), QStringList({"PRESSE DELL'OFFICINA"}));
    // The copies follow by key: the MONTAGGIO model keeps its stale "PRESSE".
    EXPECT_EQ(column("SELECT REPARTO FROM Tbl_Macchina ORDER BY ID_MODELLO"),
              QStringList({"PRESSE DELL'OFFICINA", "PRESSE DELL'OFFICINA", "PRESSE DELL'OFFICINA", "PRESSE"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "PRESSE DELL'OFFICINA", "VERNICIATURA"}));
    EXPECT_EQ(f->TextREPARTO->Text(), "");
    EXPECT_EQ(f->Text1->Text(), "");

    // The list finds the new name; the counts go by key, but the grids take the name as it
    // stands and the apostrophe breaks their statements: empty, counting 0, and no box.
    f->List1->choose("PRESSE DELL'OFFICINA");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(f->Text1->Text(), "1");
    EXPECT_EQ(f->Txt_Num_Macc->Text(), "3");
    EXPECT_EQ(f->Txt_Num_Mod->Text(), "5");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0);
    EXPECT_EQ(f->DataGrid2->RecordCount(), 0);
    EXPECT_EQ(f->Frame2->Caption(), "Conteggio Macchine: 0");
    EXPECT_EQ(f->Frame3->Caption(), "Conteggio Modelli: 0");

    // The same name asks the other question and still rewrites the copies.
    exec("UPDATE Tbl_Macchina SET REPARTO = 'X' WHERE ID_MODELLO = 1");
    f->Cmd_Edit->setEnabled(true);
    answer({answer::Yes});
    f->Cmd_Edit->click();
    shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].prompt, "Stai per modificare i dati del Reparto [PRESSE DELL'OFFICINA] Vuoi Procedere??");
    EXPECT_EQ(column("SELECT REPARTO FROM Tbl_Macchina WHERE ID_MODELLO = 1"), QStringList({"PRESSE DELL'OFFICINA"}));
}

TEST_F(Form4Test, RenameWithoutADepartmentChosenWritesNothing)
{
    Form4* f = form();
    f->Command1->click();
    retype(f, "NUOVO");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    auto shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u) << "only the question: the failures pass in silence";
    EXPECT_EQ(shownBoxes[0].prompt, "Il Reparto [] Sta per essere modificato con [NUOVO] Vuoi Procedere??");
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto ORDER BY ID_Reparto"),
              QStringList({"PRESSE", "MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Macchina WHERE REPARTO = 'NUOVO'"), QStringList({"0"}));
    EXPECT_EQ(f->TextREPARTO->Text(), "") << "the list was refreshed";
}

TEST_F(Form4Test, DeleteAsksFirstAndLeavesTheModelsTheirDepartment)
{
    Form4* f = form();
    f->Cmd_Delete->click();
    auto shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].title, "NESSUN Reparto SELEZIONATO");
    EXPECT_EQ(shownBoxes[0].prompt, "Non è stato selezionato nessun dato!");
    EXPECT_EQ(shownBoxes[0].buttons, 48);

    f->List1->choose("PRESSE");
    answer({answer::No});
    f->Cmd_Delete->click();
    shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].title, "Eliminazione Reparto **PRESSE**");
    EXPECT_EQ(shownBoxes[0].prompt, "Vuoi Veramente eliminare il Reparto selezionato?");
    EXPECT_EQ(shownBoxes[0].buttons, 36);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Reparto"), QStringList({"3"}));

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Reparto FROM Tbl_Reparto ORDER BY Reparto"), QStringList({"MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(column("SELECT ID_REPARTO & ' ' & REPARTO FROM Tbl_Macchina WHERE ID_MODELLO = 1"),
              QStringList({"1 PRESSE"}));
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO", "VERNICIATURA"}));
    EXPECT_EQ(f->Label2->Caption(), "2");
    EXPECT_EQ(f->Text1->Text(), "");

    // With the key gone, a delete asks nothing again.
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().at(0).title, "NESSUN Reparto SELEZIONATO");
}

TEST_F(Form4Test, SearchMatchesTheStartAndEachFurtherWordAtTheEnd)
{
    exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('LINEA B')");
    exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('LINEA')");
    exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('PRESSE DELL''OFFICINA')");
    exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('L''OFFICINA')");
    Form4* f = form();

    search(f, "pr");
    EXPECT_EQ(f->List1->items(), QStringList({"PRESSE", "PRESSE DELL'OFFICINA"}));
    EXPECT_EQ(f->Label2->Caption(), "2");
    search(f, "l'o");
    EXPECT_EQ(f->List1->items(), QStringList({"L'OFFICINA"}));
    EXPECT_EQ(f->Label2->Caption(), "1");
    EXPECT_TRUE(boxes().empty());

    // Two words: the first is the whole name, so "linea b" finds neither line.
    search(f, "linea b");
    auto shownBoxes = boxes();
    ASSERT_EQ(shownBoxes.size(), 1u);
    EXPECT_EQ(shownBoxes[0].title, "REPARTO NON TROVATO !!");
    EXPECT_EQ(shownBoxes[0].prompt, "Non è stata trovata nessun Reparto con le seguenti parole chiave < linea b > !!!");
    EXPECT_EQ(shownBoxes[0].buttons, 48);
    EXPECT_EQ(f->List1->ListCount(), 0);

    // A search found is a list to click in; an emptied field searches nothing.
    search(f, "mon");
    f->List1->choose("MONTAGGIO");
    EXPECT_EQ(f->Text1->Text(), "2");
    EXPECT_EQ(f->Txt_Num_Macc->Text(), "1");
    f->Txt_Search->setText(QString());
    f->Txt_Search->KeyUp();
    EXPECT_EQ(f->List1->items(), QStringList({"MONTAGGIO"}));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form4Test, MenuEntryOpensTheScreenAndTheDriverReachesIt)
{
    shell::frmMain* main = start();
    ASSERT_TRUE(main);
    boxes();
    InProcessDrive drive;
    drive("click frmMain.lblReparto");
    ASSERT_TRUE(drive("loaded Form4").toBool());
    EXPECT_TRUE(drive("get Form4.Visible").toBool());
    EXPECT_EQ(drive("get frmMain.Caption").toString(), "VELMORA <Reparto Macchine>");

    drive("select Form4.List1 1");
    EXPECT_EQ(drive("get Form4.TextREPARTO.Text").toString(), "PRESSE");
    EXPECT_EQ(drive("grid Form4.DataGrid1").toObject().value("rows").toArray().size(), 4);
    drive("type Form4.TextREPARTO STAMPAGGIO");
    drive("answer yes");
    drive("click Form4.Cmd_Edit");
    EXPECT_EQ(drive("boxes").toArray().size(), 1);
    EXPECT_EQ(drive("sql SELECT Count(*) AS N FROM Tbl_Macchina WHERE REPARTO = 'STAMPAGGIO'")
                  .toArray()[0]
                  .toObject()
                  .value("N")
                  .toInt(),
              3);
}
