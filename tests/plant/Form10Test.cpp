// The machine numbering of Form10: the three lists, insert, edit, delete, roads in.
#include "plant/Form10.h"

#include "execution/Form7.h"
#include "support/ScreenTest.h"

using plant::Form10;
namespace answer = vb::answer;
using vb::mb::Critical, vb::mb::Exclamation;
constexpr int YesNoQuestion = vb::mb::YesNo + vb::mb::Question;

namespace {

class Form10Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // The register as far as this screen reads it: the model handed over.
        standIn("Form7", {"T:ID_MOD"});
        // Models 1 PRESSA AX100 (units 1 "10", 2 "2"), 2 PRESSA BX200 (none), 3 TORNIO T1
        // (unit 3 "1"), 4 PRESSA PIEGATRICE PP1 (unit 4 "3"), 5 a model without a kind.
        plant.units(plant.model("PRESSA", "AX100"), {"10", "2"});
        plant.model("PRESSA", "BX200");
        plant.unit(plant.model("TORNIO", "T1"), "1");
        plant.unit(plant.model("PRESSA PIEGATRICE", "PP1"), "3");
        plant.model("", "SENZA TIPO");
        // Register rows of units 1 and 2, and one of model 2 whose key equals unit 2's;
        // chart rows of units 1 and 2.
        for (const auto& [model, unit, number] : {std::tuple{1, 1, "10"}, {1, 2, "2"}, {2, 9, "X"}})
            plant.registerRow({{"ID_MODELLO", model}, {"ID_NUM", unit}, {"Numerazione", number}});
        for (const auto& [unit, number] : {std::pair{1, "10"}, {2, "2"}})
            plant.add("Tbl_Planned", {{"ID_MODELLO", 1}, {"ID_NUM", unit}, {"Numerazione", number}});
    }

    // A screen that reloaded itself is gone by now.
    static Form10* form() { return reopened<Form10>("Form10"); }

    /// Kind, model and (when given) unit picked in the three lists.
    static void pick(Form10* f, const QString& kind, const QString& model, const QString& unit = {})
    {
        f->List1->choose(kind);
        f->List2->choose(model);
        if (!unit.isEmpty())
            f->List3->choose(unit);
    }

    static QStringList count(const QString& where)
    {
        QStringList out;
        for (const char* table : {"Tbl_Numerazione", "Tbl_Maintenance", "Tbl_Planned"})
            out << column(QStringLiteral("SELECT Count(*) FROM %1 WHERE %2").arg(table, where));
        return out;
    }
};

} // namespace

TEST_F(Form10Test, FromTheMenuEveryKindLeadsToItsModelsAndUnits)
{
    Form10* f = form();
    EXPECT_EQ(f->ID_MODELLO->Text(), "");
    EXPECT_EQ(f->List1->items(), QStringList({"PRESSA", "PRESSA PIEGATRICE", "TORNIO"})) << "no empty kind";
    EXPECT_EQ(texts({f->Label2, f->Cmd_Edit}), QStringList({"3", "MODIFICA"}));

    // A kind lists the models of every kind that contains it.
    f->List1->choose("PRESSA");
    EXPECT_EQ(f->List2->items(), QStringList({"AX100", "BX200", "PP1"}));
    f->List2->choose("AX100");
    EXPECT_EQ(texts({f->Text1, f->Txt_Modello}), QStringList({"1", "AX100"}));
    EXPECT_EQ(f->List3->items(), QStringList({"2", "10"})) << "by the number's value";
    f->List3->choose("10");
    EXPECT_EQ(texts({f->Txt_Num, f->Txt_ID_NUM}), QStringList({"10", "1"}));
    EXPECT_TRUE(boxes().empty());

    // A model without units says so and empties the numbers.
    f->List2->choose("BX200");
    EXPECT_BOX(oneBox(), "NUMERAZIONE [BX200] MANCANTE!!",
               "Non è stata trovata nessuna Numerazione per la Macchina [BX200]!!!", Exclamation);
    EXPECT_EQ(f->List3->ListCount(), 0);
    EXPECT_EQ(texts({f->Txt_Num, f->Text1}), QStringList({"", "2"}));

    // AGGIORNA starts again from the kinds.
    f->Cmd_Add->click();
    f->Cmd_Aggiorna->click();
    EXPECT_EQ(f->List1->ListCount(), 3);
    EXPECT_EQ(f->List2->ListCount(), 0);
    EXPECT_EQ(texts({f->Txt_Modello, f->Cmd_Edit}), QStringList({"", "MODIFICA"}));
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
}

TEST_F(Form10Test, ModelHandedOverByTheRegisterListsOnlyItsKind)
{
    shell::screens().form("Form7")->controlAs<vb::TextBox>("ID_MOD")->setText("3");
    Form10* f = form();
    EXPECT_EQ(f->ID_MODELLO->Text(), "3");
    EXPECT_EQ(f->List1->items(), QStringList({"TORNIO"}));
    EXPECT_EQ(f->Label2->Caption(), "1");
    pick(f, "TORNIO", "T1", "1");
    EXPECT_EQ(f->Txt_ID_NUM->Text(), "3");
}

TEST_F(Form10Test, InsertRefusesANumberContainedInAnExistingOne)
{
    Form10* f = form();
    pick(f, "PRESSA", "AX100");
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_FALSE(f->Cmd_Add->isEnabled());

    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI", "Macchina o Numerazione Mancante!", Critical);

    // "1" is part of "10": taken.
    f->Txt_Num->setText("1");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "NUMERAZIONE GIA' ESISTENTE", "Esiste già la Numerazione [1] per la Macchina [AX100] !!!",
               Exclamation);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Numerazione WHERE ID_MODELLO = 1"), QStringList({"2"}));
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");

    // Another model's "3" does not count; the new unit gets no register row.
    f->Txt_Num->setText("3");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT ID_NUM FROM Tbl_Numerazione WHERE ID_MODELLO = 1 AND Numerazione = '3'"),
              QStringList({"5"}));
    EXPECT_EQ(f->Txt_ID_NUM->Text(), "5");
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Maintenance"), QStringList({"3"}));
    EXPECT_EQ(f->Cmd_Edit->Caption(), "MODIFICA");
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
    EXPECT_EQ(f->List2->ListCount(), 0) << "the lists start again from the kinds";

    // An apostrophe is doubled in the check and stored as typed.
    pick(f, "PRESSA", "AX100");
    f->Cmd_Add->click();
    f->Txt_Num->setText("4'B");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    pick(f, "PRESSA", "AX100");
    EXPECT_EQ(f->List3->items(), QStringList({"2", "3", "4'B", "10"}));
}

TEST_F(Form10Test, EditFollowsTheRegisterOnlyWhereTheModelKeyEqualsTheUnitKey)
{
    Form10* f = form();
    pick(f, "PRESSA", "AX100", "2");
    f->Txt_Num->setText("20");
    answer({answer::No});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Numerazione Macchina **AX100**",
               "Stai per modificare la Numerazione della Macchina [AX100] Vuoi Procedere??", YesNoQuestion);
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Numerazione WHERE ID_NUM = 2"), QStringList({"2"}));

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Numerazione WHERE ID_NUM = 2"), QStringList({"20"}));
    // Unit 2's key picks model 2's register row; the unit's own row and the chart keep "2".
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Maintenance ORDER BY ID"), QStringList({"10", "2", "20"}));
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Planned WHERE ID_NUM = 2"), QStringList({"2"}));
    EXPECT_EQ(f->List1->ListCount(), 3);
    EXPECT_EQ(f->List3->ListCount(), 0);

    // A taken number: the box, the unit unchanged, and the register sought with key 0.
    plant.registerRow({{"ID_MODELLO", 0}, {"ID_NUM", 0}, {"Numerazione", "ZERO"}});
    pick(f, "PRESSA", "AX100", "20");
    f->Txt_Num->setText("1");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1].title, "NUMERAZIONE GIA' ESISTENTE");
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Numerazione WHERE ID_NUM = 2"), QStringList({"20"}));
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Maintenance ORDER BY ID"), QStringList({"10", "2", "20", "1"}));

    // A model name changed in its field is only asked about: the number alone is written.
    pick(f, "PRESSA", "AX100", "10");
    f->Txt_Modello->setText("AX100 NUOVA");
    f->Txt_Num->setText("30");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Numerazione Macchina **AX100**",
               "La Numerazione della Macchina [AX100] Sta per essere modificata con [AX100 NUOVA] Vuoi Procedere??",
               YesNoQuestion);
    EXPECT_EQ(column("SELECT Numerazione FROM Tbl_Numerazione WHERE ID_NUM = 1"), QStringList({"30"}));
    EXPECT_EQ(column("SELECT Modello FROM Tbl_Macchina WHERE ID_MODELLO = 1"), QStringList({"AX100"}));
}

TEST_F(Form10Test, DeleteAsksThreeTimesAndReloadsTheScreen)
{
    Form10* f = form();
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "NESSUNA DATO SELEZIONATO", "Non è stato selezionato nessun dato!", Exclamation);

    pick(f, "PRESSA", "AX100", "2");
    answer({answer::No});
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Numerazione"), QStringList({"4"}));

    // No to both cascades: the register and the chart keep the unit's rows.
    answer({answer::Yes, answer::No, answer::No});
    f->Cmd_Delete->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_BOX(shown[0], "ELIMINAZIONE DATI", "Vuoi Veramente eliminare il Dato Selezionato?", YesNoQuestion);
    EXPECT_BOX(shown[1], "ELIMINA NUMERAZIONE DALLE MANUTENZIONI",
               "Vuoi eliminare la numerazione di questa macchina anche dalle Manutenzioni?", YesNoQuestion);
    EXPECT_BOX(shown[2], "ELIMINA NUMERAZIONE DAL PLANNED MANUTENZIONI",
               "Vuoi eliminare la numerazione di questa macchina anche dal Plannned Manutenzioni?", YesNoQuestion);
    EXPECT_EQ(count("ID_NUM = 2"), QStringList({"0", "1", "1"}));

    // The screen came back fresh; Yes to both takes the unit's rows everywhere.
    f = form();
    ASSERT_TRUE(f);
    EXPECT_EQ(f->Txt_ID_NUM->Text(), "");
    EXPECT_EQ(f->List1->ListCount(), 3);
    pick(f, "PRESSA", "AX100", "10");
    answer({answer::Yes, answer::Yes, answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(boxes().size(), 3u);
    EXPECT_EQ(count("ID_NUM = 1"), QStringList({"0", "0", "0"}));
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Maintenance"), QStringList({"2"}));
}

// ---- the roads in ----------------------------------------------------------------------

class Form10Roads : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        upgradeStore();
        plant.registerPlant();
    }
};

TEST_F(Form10Roads, RegisterHandsOverAModelWithoutNumbers)
{
    auto* register7 = screen<execution::Form7>("Form7");
    ASSERT_TRUE(register7);
    answer({answer::Yes});
    register7->DataCombo3->choose("FRESA");
    register7->DataCombo2->choose("F10");
    QCoreApplication::processEvents();
    EXPECT_FALSE(shell::screens().isLoaded("Form7"));
    auto* f = screen<Form10>("Form10");
    ASSERT_TRUE(f);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->ID_MODELLO->Text(), "3");
    EXPECT_EQ(f->List1->items(), QStringList({"FRESA"}));
    boxes();

    // The number goes on at once.
    f->List1->choose("FRESA");
    f->List2->choose("F10");
    EXPECT_EQ(boxes().size(), 1u) << "no numbers yet";
    f->Cmd_Add->click();
    f->Txt_Num->setText("1");
    f->Cmd_Edit->click();
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Numerazione WHERE ID_MODELLO = 3"), QStringList({"1"}));
}

// The plant's menu entries: each opens its screen, shown, under the main screen's title.
struct MenuEntry
{
    const char *label, *screen, *caption, *mainCaption;
};

class PlantMenu : public Form10Roads, public ::testing::WithParamInterface<MenuEntry>
{
};

TEST_P(PlantMenu, OpensItsScreenUnderTheMainScreensTitle)
{
    const MenuEntry& e = GetParam();
    shell::frmMain* main = start();
    ASSERT_TRUE(main);
    boxes();
    main->control(e.label)->click();
    vb::Form* f = shell::screens().form(e.screen);
    ASSERT_TRUE(f);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->Caption(), e.caption);
    EXPECT_EQ(main->Caption(), e.mainCaption);
    if (QString(e.screen) == "Form10") {
        EXPECT_EQ(screen<Form10>("Form10")->List1->items(), QStringList({"FRESA", "PRESSA", "TORNIO"}));
        EXPECT_TRUE(shell::screens().isLoaded("Form7")) << "reading its field loads the register";
    }
    EXPECT_TRUE(boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Entries, PlantMenu,
    ::testing::Values(MenuEntry{"lblReparto", "Form4", "REPARTO MACCHINE", "VELMORA <Reparto Macchine>"},
                      MenuEntry{"lblMacc", "Form5", "INSERISCI MACCHINE", "VELMORA <Inserisci Macchine>"},
                      MenuEntry{"lblNum_Macc", "Form10", "NUMERAZIONE MACCHINE", "VELMORA <Numera Macchine>"}));
