// The spare part categories of Form15: the list and its units, insert, rename with the
// copies of the name that follow it, delete and the two searches.
#include "spares/Form15.h"

#include "runtime/Helpers.h"
#include "support/Fields.h"
#include "support/ScreenTest.h"
#include "support/Shown.h"
#include "support/SparesTest.h"

using spares::Form15;
namespace answer = vb::answer;
using namespace vb::mb;

namespace {

class Form15Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // The parts register, and one past intervention with the oil as well.
        kit::partsRegister(plant);
        plant.intervention(
            {{"ID_DESCRIZIONE_RICAMBI", 3}, {"Descrizione", "Idraulico"}, {"ID_RICAMBI", 3}, {"Ricambi", "OLIO"}});
    }

    static Form15* form() { return screen<Form15>("Form15"); }

    /// Picks a category in List1, as a click does.
    static void pick(Form15* f, const QString& name) { f->List1->choose(name); }

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
    EXPECT_EQ(f->List1->items(), QStringList({"ALBERO", "OLIO", "VITE", "VITE M8"}));
    EXPECT_EQ(f->Label2->Caption(), "4");
    // Units are grouped as the store compares text: "PZ" and "pz" are one unit.
    EXPECT_EQ(f->DataCombo1->items().size(), 2);
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "nothing typed yet";
}

TEST_F(Form15Test, InsertRoadWritesTheCategoryAndOffersTheNewUnit)
{
    Form15* f = form();
    pick(f, "OLIO");
    f->Cmd_Add->click();
    EXPECT_EQ(kit::texts({f->Cmd_Edit, f->DataCombo1}), QStringList({"SALVA", ""}));
    EXPECT_TRUE(kit::enabledOf({f->Cmd_Add, f->Cmd_Delete, f->Cmd_Edit}).isEmpty());

    // Only typing lets the save through; a name without a unit is refused.
    f->TextRICAMBI->typeText("CINGHIA");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI",
               "Non sono stati compilati tutti i dati richiesti o non è stato selezionato nessun Ricambi", Critical);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA") << "still inserting";

    f->DataCombo1->typeText("mt");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_RICAMBI & ' ' & Unita_Misura FROM Tbl_Ricambi WHERE Ricambi = 'CINGHIA'"),
              QStringList({"4 mt"}));
    // The new key is read at once.
    EXPECT_EQ(kit::texts({f->Text1, f->Label2, f->Cmd_Edit}), QStringList({"4", "4", "MODIFICA"}));
    EXPECT_EQ(f->List1->items(), QStringList({"CINGHIA", "OLIO", "VITE", "VITE M8"}));
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
    EXPECT_BOX(oneBox(), "RICAMBIO GIA ESISTENTE", "Un Ricambio simile a questo, è gia presente !!!", Exclamation);
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
    EXPECT_EQ(kit::texts({f->Text1, f->TextRICAMBI, f->DataCombo1}), QStringList({"3", "OLIO", "lt"}));
    EXPECT_FALSE(f->Cmd_Edit->isEnabled()) << "a click is no typing";
    // A Null unit leaves the emptied field as it is, in silence.
    pick(f, "FILTRO");
    EXPECT_EQ(kit::texts({f->Text1, f->DataCombo1}), QStringList({"4", ""}));
    // An apostrophe is doubled in the filter and found.
    pick(f, "L'ANELLO");
    EXPECT_EQ(f->Text1->Text(), "6");
    // The line is a pattern: "_" stands for any character, and the first row it matches
    // in name order is taken, here "VITE M8" for "VITE_M8".
    pick(f, "VITE_M8");
    EXPECT_EQ(kit::texts({f->Text1, f->TextRICAMBI}), QStringList({"1", "VITE_M8"}));
    EXPECT_TRUE(boxes().empty());

    // A line whose row went meanwhile: the box, and the key found last stays.
    exec("Delete * from Tbl_Ricambi WHERE Ricambi = 'OLIO'");
    pick(f, "OLIO");
    EXPECT_BOX(oneBox(), "RICAMBIO NON PRESENTE", "Non ci sono OLIO nel DataBase", Information);
    EXPECT_EQ(kit::texts({f->Text1, f->TextRICAMBI}), QStringList({"1", ""}));

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
    EXPECT_BOX(oneBox(), "Modifica Ricambio **VITE M8**",
               "Il Ricambio [VITE M8] Sta per essere modificato con [BULLONE M8] Vuoi Procedere??", YesNo + Question);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 1"), QStringList({"VITE M8"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "BULLONE M8") << "No leaves the screen as it was";

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 1"), QStringList({"BULLONE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 1"),
              QStringList({"BULLONE M8", "BULLONE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"),
              QStringList({"BULLONE M8", "BULLONE M8", "BULLONE M8"}));
    // Copies under another key keep their text, whatever it says.
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE Descrizione = 'Copia'"),
              QStringList({"VITE M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(f->List1->items(), QStringList({"BULLONE M8", "OLIO", "VITE"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "");

    // The same name: the question speaks of the data, and the unit changes.
    pick(f, "OLIO");
    f->DataCombo1->setText(QString());
    f->DataCombo1->typeText("kg");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Ricambio **OLIO**",
               "Stai per modificare i dati del Ricambio [OLIO] Vuoi Procedere??", YesNo + Question);
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
    EXPECT_TRUE(kit::errorBox(shown[1], vb::err::SyntaxError));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 3"), QStringList({"OLIO D'IDRAULICA"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 3"), QStringList({"OLIO"}));
    EXPECT_EQ(f->TextRICAMBI->Text(), "OLIO D'IDRAULICA") << "no refresh after the error";

    // A new name with an apostrophe breaks the twin check: nothing is written.
    f->Cmd_Add->click();
    enter(f, "L'ANELLO", "pz");
    f->Cmd_Edit->click();
    EXPECT_TRUE(kit::errorBox(oneBox(), vb::err::SyntaxError));
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
    EXPECT_BOX(shown[0], "Modifica Ricambio ****",
               "Il Ricambio [] Sta per essere modificato con [CINGHIA] Vuoi Procedere??", YesNo + Question);
    EXPECT_BOX(shown[1], "DATI ERRARI !!!", "Controlla i dati inseriti!!", Exclamation);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi ORDER BY ID_RICAMBI"), QStringList({"VITE M8", "VITE", "OLIO"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"),
              QStringList({"VITE M8", "VITE M8", "VITE M8"}));
}

TEST_F(Form15Test, DeleteAsksAndLeavesThePartsBehind)
{
    Form15* f = form();
    pick(f, "VITE M8");
    f->Txt_Search_UN_MIS->setText("p");
    answer({answer::No});
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "Eliminazione Ricambio **VITE M8**", "Vuoi Veramente eliminare il Ricambio selezionato?",
               YesNo + Question);
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
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Ricerca WHERE ID_RICAMBI = 1"), QStringList({"3"}));
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO", "VITE"}));
    EXPECT_EQ(kit::texts({f->Label2, f->TextRICAMBI, f->DataCombo1, f->Txt_Search_UN_MIS}),
              QStringList({"2", "", "", ""}));
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
    EXPECT_EQ(kit::texts({f->Label2, f->Txt_Search_UN_MIS, f->TextRICAMBI, f->DataCombo1}),
              QStringList({"2", "", "", ""}));
    EXPECT_TRUE(boxes().empty());

    // An apostrophe is doubled.
    typeLastKey(f->Txt_Search, "L'OL");
    EXPECT_EQ(f->List1->items(), QStringList({"L'OLIATORE"}));

    // With two words the first must be the whole name: "VITE M8" is not found by "VITE M".
    typeLastKey(f->Txt_Search, "VITE M");
    EXPECT_BOX(oneBox(), "RICAMBIO NON TROVATO !!",
               "Non è stata trovata nessun Ricambio con le seguenti parole chiave < VITE M > !!!", Exclamation);
    EXPECT_EQ(f->List1->ListCount(), 0);
    EXPECT_EQ(f->Label2->Caption(), "0");
    // An emptied field searches nothing and leaves the list as it is.
    typeLastKey(f->Txt_Search, "o");
    typeLastKey(f->Txt_Search, "\b");
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO"}));
    EXPECT_TRUE(boxes().empty());

    // VISUALIZZA TUTTO: back to the whole list, browsing, nothing to save or delete.
    f->Cmd_Add->click();
    f->Txt_Search->setText("x");
    f->Command1->click();
    EXPECT_EQ(kit::texts({f->Label2, f->Cmd_Edit}), QStringList({"5", "MODIFICA"}));
    EXPECT_EQ(kit::enabledOf({f->Cmd_Edit, f->Cmd_Add}), QStringList{"Cmd_Add"});
}

TEST_F(Form15Test, SearchByUnitAndItsSilentTwoWords)
{
    Form15* f = form();
    f->Txt_Search->setText("V");
    f->Txt_Search_UN_MIS->typeText("P");
    EXPECT_EQ(kit::texts({f->Txt_Search, f->Label2}), QStringList({"", "2"}));
    EXPECT_EQ(f->List1->items(), QStringList({"VITE", "VITE M8"}));

    typeLastKey(f->Txt_Search_UN_MIS, "kg");
    EXPECT_BOX(oneBox(), "Definizione non trovata !!",
               "Non è stata trovata nessuna Definizione con le seguenti parole chiave < kg > !!!", Exclamation);
    EXPECT_EQ(f->Label2->Caption(), "0");

    // Two words name a column the table has not: the list empties and nothing is said.
    f->Command1->click();
    typeLastKey(f->Txt_Search_UN_MIS, "p z");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(f->List1->ListCount(), 0);
}
