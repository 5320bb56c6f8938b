// The spare part categories of Form15: the list and its units, insert, rename with the
// copies of the name that follow it, delete, the two searches, and the menu entry.
#include "shell/ShellFixture.h"
#include "support/InProcessDrive.h"

#include "runtime/Helpers.h"
#include "spares/Form15.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using spares::Form15;
namespace answer = vb::answer;

namespace {

class Form15Test : public ShellFixture
{
protected:
    void SetUp() override
    {
        ShellFixture::SetUp();
        // 1 VITE M8 (pz) with two parts, 2 VITE (pz) without parts, 3 OLIO (lt) with one.
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('VITE M8', 'pz')");
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('VITE', 'pz')");
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('OLIO', 'lt')");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione) VALUES (1, 'VITE M8', 'Testa esagonale')");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione) VALUES (1, 'VITE M8', 'Brugola')");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione) VALUES (3, 'OLIO', 'Idraulico')");
        // Two past interventions with the first category, one with the oil.
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi) "
             "VALUES (1, 'Testa esagonale', 1, 'VITE M8')");
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi) "
             "VALUES (2, 'Brugola', 1, 'VITE M8')");
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi) "
             "VALUES (3, 'Idraulico', 3, 'OLIO')");
    }

    Form15* form() { return shell::screens().formAs<Form15>(QStringLiteral("Form15")); }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }

    QStringList column(const QString& jet)
    {
        QStringList out;
        for (const auto& r : rows(jet))
            out << (r.front().isNull() ? QStringLiteral("<null>") : r.front().toString());
        return out;
    }

    /// Picks a category in List1, as a click does.
    void pick(Form15* f, const QString& name) { f->List1->choose(name); }

    /// Puts text in a field and types one more key at its end.
    static void typeAfter(vb::TextBox* field, const QString& text, int key)
    {
        field->setText(text);
        field->setSelStart(int(text.size()));
        field->keyPress(key);
    }

    /// Types a new name (and unit) over the entry fields.
    void enter(Form15* f, const QString& name, const QString& unit)
    {
        f->TextRICAMBI->setText(QString());
        f->TextRICAMBI->typeText(name);
        f->DataCombo1->setText(QString());
        f->DataCombo1->typeText(unit);
    }
};

} // namespace

TEST_F(Form15Test, LoadListsTheCategoriesAndTheUnitsInUse)
{
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('ALBERO', 'PZ')");
    Form15* f = form();
    ASSERT_TRUE(f);
    EXPECT_EQ(f->List1->items(), QStringList({"ALBERO", "OLIO", "VITE", "VITE M8"}));
    EXPECT_EQ(f->Label2->Caption(), "4");
    // Units are grouped as the store compares text: "PZ" and "pz" are one unit.
    EXPECT_EQ(f->DataCombo1->items().size(), 2);
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "nothing typed yet";

    // Focus paints every list, entry and search field orange, leaving paints it white.
    for (vb::Control* c : std::initializer_list<vb::Control*>{f->List1, f->TextRICAMBI, f->DataCombo1, f->Txt_Search,
                                                              f->Txt_Search_UN_MIS}) {
        c->focusIn();
        EXPECT_EQ(c->BackColor(), vb::colour::Orange) << c->Name().toStdString();
        c->focusOut();
        EXPECT_EQ(c->BackColor(), vb::colour::White) << c->Name().toStdString();
    }
}

TEST_F(Form15Test, InsertRoadWritesTheCategoryAndOffersTheNewUnit)
{
    Form15* f = form();
    pick(f, "OLIO");
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled());
    EXPECT_FALSE(f->Cmd_Delete->isEnabled());
    EXPECT_EQ(f->DataCombo1->Text(), "");
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());

    // Only typing lets the save through; a name without a unit is refused.
    f->TextRICAMBI->typeText("CINGHIA");
    f->Cmd_Edit->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "MANCANZA DATI");
    EXPECT_EQ(shown[0].prompt,
              "Non sono stati compilati tutti i dati richiesti o non è stato selezionato nessun Ricambi");
    EXPECT_EQ(shown[0].buttons, 16);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA") << "still inserting";

    f->DataCombo1->typeText("mt");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_RICAMBI & ' ' & Unita_Misura FROM Tbl_Ricambi WHERE Ricambi = 'CINGHIA'"),
              QStringList({"4 mt"}));
    EXPECT_EQ(f->Text1->Text(), "4") << "the new key is read at once";
    EXPECT_EQ(f->List1->items(), QStringList({"CINGHIA", "OLIO", "VITE", "VITE M8"}));
    EXPECT_EQ(f->Label2->Caption(), "4");
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
    EXPECT_TRUE(f->DataCombo1->items().contains("mt"));
}

TEST_F(Form15Test, TwinCheckCountsOnlyCategoriesWithPartsWhoseNameContainsTheNewOne)
{
    Form15* f = form();
    auto add = [&](const QString& name) {
        f->Cmd_Add->click();
        enter(f, name, "pz");
        f->Cmd_Edit->click();
    };
    // "M8" is part of "VITE M8", which has parts: refused, and the screen stays inserting.
    add("m8");
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "RICAMBIO GIA ESISTENTE");
    EXPECT_EQ(shown[0].prompt, "Un Ricambio simile a questo, è gia presente !!!");
    EXPECT_EQ(shown[0].buttons, 48);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");

    // A name that contains an existing one is no twin: the test goes one way only.
    add("OLIO MOTORE");
    EXPECT_TRUE(boxes().empty());
    // "VITE" without parts of its own is still refused, through "VITE M8".
    add("VITE");
    EXPECT_EQ(boxes().size(), 1u);
    // A category without parts can be entered again and again.
    add("GUARNIZIONE");
    add("GUARNIZIONE");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI > 3"),
              QStringList({"OLIO MOTORE", "GUARNIZIONE", "GUARNIZIONE"}));
}

TEST_F(Form15Test, ClickInTheListLooksTheLineUpAndKeepsTheInsertMode)
{
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('FILTRO', Null)");
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('VITE_M8', 'nr')");
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('L''ANELLO', 'pz')");
    Form15* f = form();
    pick(f, "OLIO");
    EXPECT_EQ(f->Text1->Text(), "3");
    EXPECT_EQ(f->TextRICAMBI->Text(), "OLIO");
    EXPECT_EQ(f->DataCombo1->Text(), "lt");
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "a click is no typing";
    // A Null unit leaves the emptied field as it is, in silence.
    pick(f, "FILTRO");
    EXPECT_EQ(f->Text1->Text(), "4");
    EXPECT_EQ(f->DataCombo1->Text(), "");
    // An apostrophe is doubled in the filter and found.
    pick(f, "L'ANELLO");
    EXPECT_EQ(f->Text1->Text(), "6");
    // The line is a pattern: "_" stands for any character, and the first row it matches
    // in name order is taken, here "VITE M8" for "VITE_M8".
    pick(f, "VITE_M8");
    EXPECT_EQ(f->Text1->Text(), "1");
    EXPECT_EQ(f->TextRICAMBI->Text(), "VITE_M8");
    EXPECT_TRUE(boxes().empty());

    // A line whose row went meanwhile: the box, and the key found last stays.
    exec("Delete * from Tbl_Ricambi WHERE Ricambi = 'OLIO'");
    pick(f, "OLIO");
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "RICAMBIO NON PRESENTE");
    EXPECT_EQ(shown[0].prompt, "Non ci sono OLIO nel DataBase");
    EXPECT_EQ(shown[0].buttons, 64);
    EXPECT_EQ(f->Text1->Text(), "1");
    EXPECT_EQ(f->TextRICAMBI->Text(), "");

    // With "SALVA" showing, a click fills the fields and a save inserts a copy.
    f->Cmd_Add->click();
    pick(f, "L'ANELLO");
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    f->TextRICAMBI->typeText("ANELLO"); // the focus selects the whole name
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT Unita_Misura FROM Tbl_Ricambi WHERE Ricambi = 'ANELLO'"), QStringList({"pz"}));
}

TEST_F(Form15Test, RenameReachesThePartsAndThePastInterventionsByKey)
{
    exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione) VALUES (3, 'VITE M8', 'Copia')");
    Form15* f = form();
    pick(f, "VITE M8");
    f->TextRICAMBI->setText(QString());
    f->TextRICAMBI->typeText("BULLONE M8");
    ASSERT_TRUE(f->Cmd_Edit->isEnabled());

    answer({answer::No});
    f->Cmd_Edit->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Modifica Ricambio **VITE M8**");
    EXPECT_EQ(shown[0].prompt, "Il Ricambio [VITE M8] Sta per essere modificato con [BULLONE M8] Vuoi Procedere??");
    EXPECT_EQ(shown[0].buttons, 36);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 1"), QStringList({"VITE M8"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "BULLONE M8") << "No leaves the screen as it was";

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 1"), QStringList({"BULLONE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 1"),
              QStringList({"BULLONE M8", "BULLONE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"), QStringList({"BULLONE M8", "BULLONE M8"}));
    // Copies under another key keep their text, whatever it says.
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE Descrizione = 'Copia'"), QStringList({"VITE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(f->List1->items(), QStringList({"BULLONE M8", "OLIO", "VITE"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "");

    // The same name: the question speaks of the data, and the unit changes.
    pick(f, "OLIO");
    f->DataCombo1->setText(QString());
    f->DataCombo1->typeText("kg");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].prompt, "Stai per modificare i dati del Ricambio [OLIO] Vuoi Procedere??");
    EXPECT_EQ(column("SELECT Unita_Misura FROM Tbl_Ricambi WHERE ID_RICAMBI = 3"), QStringList({"kg"}));
}

TEST_F(Form15Test, ApostropheRenamesTheCategoryButNotItsCopies)
{
    Form15* f = form();
    pick(f, "OLIO");
    f->TextRICAMBI->setText(QString());
    f->TextRICAMBI->typeText("OLIO D'IDRAULICA");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    // The first copy's statement breaks on the apostrophe: the plain error box, and the
    // command ends there.
    EXPECT_EQ(shown[1].buttons, 0);
    EXPECT_TRUE(shown[1].prompt.startsWith(QString::number(vb::err::SyntaxError) + " ")) << shown[1].prompt.toStdString();
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 3"), QStringList({"OLIO D'IDRAULICA"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "OLIO D'IDRAULICA") << "no refresh after the error";

    // A new name with an apostrophe breaks the twin check: nothing is written.
    f->Cmd_Add->click();
    enter(f, "L'ANELLO", "pz");
    f->Cmd_Edit->click();
    const auto again = boxes();
    ASSERT_EQ(again.size(), 1u);
    EXPECT_TRUE(again[0].prompt.startsWith(QString::number(vb::err::SyntaxError) + " "));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Ricambi"), QStringList({"3"}));
}

TEST_F(Form15Test, SavingWithoutAChosenCategoryIsATypeMismatch)
{
    Form15* f = form();
    // Typed straight into the fields after the load: no line and no key.
    enter(f, "CINGHIA", "pz");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].prompt, "Il Ricambio [] Sta per essere modificato con [CINGHIA] Vuoi Procedere??");
    EXPECT_EQ(shown[1].title, "DATI ERRARI !!!");
    EXPECT_EQ(shown[1].prompt, "Controlla i dati inseriti!!");
    EXPECT_EQ(shown[1].buttons, 48);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi ORDER BY ID_RICAMBI"), QStringList({"VITE M8", "VITE", "OLIO"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"), QStringList({"VITE M8", "VITE M8"}));
}

TEST_F(Form15Test, DeleteAsksAndLeavesThePartsBehind)
{
    Form15* f = form();
    f->Cmd_Delete->click();
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "NESSUN Ricambio SELEZIONATO");
    EXPECT_EQ(shown[0].prompt, "Non è stato selezionato nessun dato!");
    EXPECT_EQ(shown[0].buttons, 48);

    pick(f, "VITE M8");
    f->Txt_Search_UN_MIS->setText("p");
    answer({answer::No});
    f->Cmd_Delete->click();
    shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Eliminazione Ricambio **VITE M8**");
    EXPECT_EQ(shown[0].prompt, "Vuoi Veramente eliminare il Ricambio selezionato?");
    EXPECT_EQ(shown[0].buttons, 36);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Ricambi"), QStringList({"3"}));

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi ORDER BY Ricambi"), QStringList({"OLIO", "VITE"}));
    // No cascade: the parts stay, pointing at nothing, and drop out of every join.
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 1"), QStringList({"2"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi INNER JOIN Tbl_Ricambi ON "
                     "Tbl_Descrizione_Ricambi.ID_Ricambi = Tbl_Ricambi.ID_RICAMBI"),
              QStringList({"1"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"), QStringList({"2"}));
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO", "VITE"}));
    EXPECT_EQ(f->Label2->Caption(), "2");
    EXPECT_EQ(f->TextRICAMBI->Text(), "");
    EXPECT_EQ(f->DataCombo1->Text(), "");
    EXPECT_EQ(f->Txt_Search_UN_MIS->Text(), "");
    // Now that it has no parts' category, "VITE" enters again: the twin was "VITE M8".
    f->Cmd_Add->click();
    enter(f, "VITE", "pz");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO", "VITE", "VITE"}));
}

TEST_F(Form15Test, SearchByNameStartsAtTheBeginningAndEmptiesTheOtherFields)
{
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('SVITATORE', 'pz')");
    exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('L''OLIATORE', 'pz')");
    Form15* f = form();
    pick(f, "OLIO");
    f->Txt_Search_UN_MIS->setText("lt");
    f->Txt_Search->typeText("vi");
    EXPECT_EQ(f->List1->items(), QStringList({"VITE", "VITE M8"})) << "SVITATORE does not start with it";
    EXPECT_EQ(f->Label2->Caption(), "2");
    EXPECT_EQ(f->Txt_Search_UN_MIS->Text(), "");
    EXPECT_EQ(f->TextRICAMBI->Text(), "");
    EXPECT_EQ(f->DataCombo1->Text(), "");
    EXPECT_TRUE(boxes().empty());

    // An apostrophe is doubled.
    typeAfter(f->Txt_Search, "L'O", 'L');
    EXPECT_EQ(f->List1->items(), QStringList({"L'OLIATORE"}));

    // With two words the first must be the whole name: "VITE M8" is not found by "VITE M".
    typeAfter(f->Txt_Search, "VITE ", 'M');
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "RICAMBIO NON TROVATO !!");
    EXPECT_EQ(shown[0].prompt, "Non è stata trovata nessun Ricambio con le seguenti parole chiave < VITE M > !!!");
    EXPECT_EQ(shown[0].buttons, 48);
    EXPECT_EQ(f->List1->ListCount(), 0);
    EXPECT_EQ(f->Label2->Caption(), "0");
    // An emptied field searches nothing and leaves the list as it is.
    typeAfter(f->Txt_Search, QString(), 'o');
    typeAfter(f->Txt_Search, QString(), 8);
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO"}));
    EXPECT_TRUE(boxes().empty());

    // VISUALIZZA TUTTO: back to the whole list, browsing, nothing to save or delete.
    f->Cmd_Add->click();
    f->Txt_Search->setText("x");
    f->Command1->click();
    EXPECT_EQ(f->Label2->Caption(), "5");
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
}

TEST_F(Form15Test, SearchByUnitAndItsSilentTwoWords)
{
    Form15* f = form();
    f->Txt_Search->setText("V");
    f->Txt_Search_UN_MIS->typeText("P");
    EXPECT_EQ(f->Txt_Search->Text(), "");
    EXPECT_EQ(f->List1->items(), QStringList({"VITE", "VITE M8"}));
    EXPECT_EQ(f->Label2->Caption(), "2");

    typeAfter(f->Txt_Search_UN_MIS, "k", 'g');
    auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Definizione non trovata !!");
    EXPECT_EQ(shown[0].prompt,
              "Non è stata trovata nessuna Definizione con le seguenti parole chiave < kg > !!!");
    EXPECT_EQ(shown[0].buttons, 48);
    EXPECT_EQ(f->Label2->Caption(), "0");

    // Two words name a column the table has not: the list empties and nothing is said.
    f->Command1->click();
    typeAfter(f->Txt_Search_UN_MIS, "p ", 'z');
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(f->List1->ListCount(), 0);
}

TEST_F(Form15Test, MenuEntryOpensTheScreenAndTheDriverReachesIt)
{
    shell::frmMain* main = start();
    ASSERT_TRUE(main);
    boxes();
    InProcessDrive drive;
    drive("click frmMain.lblRicambi");
    ASSERT_TRUE(drive("loaded Form15").toBool());
    EXPECT_TRUE(drive("get Form15.Visible").toBool());
    EXPECT_EQ(drive("get frmMain.Caption").toString(), "VELMORA <Ricambi>");

    drive("click Form15.Cmd_Add");
    drive("type Form15.TextRICAMBI CUSCINETTO");
    drive("type Form15.DataCombo1 pz");
    drive("click Form15.Cmd_Edit");
    EXPECT_EQ(drive("get Form15.Label2.Caption").toString(), "4");
    drive("select Form15.List1 0");
    EXPECT_EQ(drive("get Form15.TextRICAMBI.Text").toString(), "CUSCINETTO");
    drive("type Form15.TextRICAMBI CUSCINETTI");
    drive("answer yes");
    drive("click Form15.Cmd_Edit");
    EXPECT_EQ(drive("boxes").toArray().size(), 1);
    EXPECT_EQ(drive("sql SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 4").toArray()[0].toObject().value("Ricambi").toString(),
              "CUSCINETTI");
}
