// Maintenance missing on Form7: the units that lack a register row for a type assigned to
// their model, the list of them, and a line that prepares the new row.
#include "support/Fields.h"
#include "support/RegisterTest.h"

#include <set>

using execution::Form7;
namespace answer = vb::answer;

class Form7Missing : public RegisterTest
{
protected:
    using RegisterTest::lines;
    /// The lines of the list as "{number} {type}", in the list's order.
    static std::vector<std::string> lines(Form7* f)
    {
        std::vector<std::string> out;
        for (int r = 0; r < f->DataGrid3->RecordCount(); ++r)
            out.push_back((f->DataGrid3->cellText(r, "Numerazione") + QLatin1Char(' ') +
                           f->DataGrid3->cellText(r, "Manutenzione_Tipo"))
                              .toStdString());
        return out;
    }
};

TEST_F(Form7Missing, ListsEachUnitAndAssignedTypeWithoutARegisterRow)
{
    // Unit 1 has its Mensile and lacks its Bimestrale; unit 2 lacks both; unit 3 lacks
    // its one type. A unit of a model without assignments owes nothing, and a register
    // row of a unit that does not exist marks nothing.
    addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('7', 3)");
    exec("INSERT INTO Tbl_Maintenance (ID_MODELLO, ID_NUM, ID_MAINT_TIPO, Macchina) VALUES (1, 99, 3, 'PRESSA')");
    Form7* f = form7();
    f->Cmd_Senza_Manutenzione->click();

    EXPECT_FALSE(f->Frame3->isHidden());
    EXPECT_EQ(f->Frame3->Caption(), "Sono 4 le Manutenzioni Mancanti");
    const auto listed = lines(f);
    ASSERT_EQ(listed.size(), 4u);
    // By machine, then by the number's value.
    EXPECT_EQ(listed[0], "1 Bimestrale");
    EXPECT_EQ(std::set<std::string>(listed.begin() + 1, listed.begin() + 3),
              (std::set<std::string>{"2 Mensile", "2 Bimestrale"}));
    EXPECT_EQ(listed[3], "10 Mensile");

    EXPECT_EQ(captions(f->DataGrid3),
              QStringList({"ID_NUM", "N°", "ID_MODELLO", "MACCHINA", "MODELLO", "MANUTENZIONE", "ID_MAINT_TIPO"}));
    EXPECT_EQ(widths(f->DataGrid3), QList<int>({0, 600, 0, 2000, 3000, 1800, 0}));
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(f->DataGrid3->Columns(i).Locked(), i > 0);
    // The unit of the model without assignments is in the scratch table, with no type.
    EXPECT_TRUE(value("SELECT ID_MAINT_TIPO FROM Tbl_Not_Maintenance WHERE ID_NUM = 4").isNull());
    // The group of the walk is put away and Label1 is back.
    EXPECT_TRUE(f->Lbl_ProgressBar->isHidden() && f->Shape1->isHidden() && !f->Label1->isHidden());
    EXPECT_EQ(f->ProgressBar1->Value(), 0);

    f->Lbl_CHIUDI->click();
    EXPECT_TRUE(f->Frame3->isHidden());
}

TEST_F(Form7Missing, EmptyRegisterListsAllAndAFullOneListsNone)
{
    Form7* f = form7();
    f->Cmd_Senza_Manutenzione->click();
    EXPECT_EQ(f->Frame3->Caption(), "Sono 5 le Manutenzioni Mancanti");
    EXPECT_EQ(f->DataGrid3->RecordCount(), 5);

    // The scratch table is dropped and made again: a second run sees the new rows.
    addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addMaintenance(1, 3, QDate(2026, 10, 20), QDate(2026, 12, 15));
    addMaintenance(2, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addMaintenance(2, 3, QDate(2026, 10, 20), QDate(2026, 12, 15));
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    f->Cmd_Senza_Manutenzione->click();
    EXPECT_FALSE(f->Frame3->isHidden());
    EXPECT_EQ(f->Frame3->Caption(), "Sono 0 le Manutenzioni Mancanti");
    EXPECT_EQ(f->DataGrid3->RecordCount(), 0);
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form7Missing, WalkReachesRowsBeyondItsFirstPasses)
{
    // 250 register rows take three passes of 100 steps; the rows that mark unit 2's
    // Bimestrale and unit 3's Mensile lie in the third.
    for (int i = 0; i < 248; ++i)
        addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addMaintenance(2, 3, QDate(2026, 10, 20), QDate(2026, 12, 15));
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    Form7* f = form7();
    f->Cmd_Senza_Manutenzione->click();
    EXPECT_EQ(lines(f), (std::vector<std::string>{"1 Bimestrale", "2 Mensile"}));
    EXPECT_EQ(value("SELECT Maintenance FROM Tbl_Not_Maintenance WHERE ID_NUM = 3").toString(), "3")
        << "a marked pair holds the unit's key";
    EXPECT_TRUE(f->Shape1->isHidden() && !f->Label1->isHidden());
    EXPECT_EQ(f->ProgressBar1->Value(), 0);
}

TEST_F(Form7Missing, LinePreparesTheNewRowAndSalvaSavesIt)
{
    addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    Form7* f = form7();
    f->Cmd_Senza_Manutenzione->click();
    ASSERT_EQ(lines(f).back(), "10 Mensile") << "unit 3's Mensile, last by machine";
    f->DataGrid3->select(3);

    // The New row state.
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_EQ(kit::enabledOf({f->Cmd_Edit, f->Cmd_Delete, f->Cmd_Add}), QStringList({"Cmd_Edit"}));
    EXPECT_EQ(f->MaskEdBox1->Text(), "15/11/2026");
    EXPECT_TRUE(f->DTPicker2->isHidden() && f->MaskEdBox2->isHidden());
    // The keys and names of the pair; txtID holds the unit's key, as there is no register
    // row yet.
    EXPECT_EQ(kit::texts({f->ID_MOD, f->ID_NUM, f->ID_MAINT, f->txtID, f->DataCombo3, f->DataCombo2, f->DataCombo1,
                          f->DataCombo4, f->txtFrequenza, f->Txt_Tot_Minuti}),
              QStringList({"2", "3", "2", "3", "TORNIO", "T200", "10", "Mensile", "4", "45"}));
    EXPECT_EQ(f->Label16->Caption(), QString::fromUtf8("[TORNIO]-[T200]-[N°10]"));

    // SALVA is all that is left: the row and its chart row are written.
    f->Cmd_Edit->click();
    EXPECT_EQ(lines("SELECT ID_MODELLO, ID_MAINT_TIPO, Numerazione, Tempo_Minuti, Ultima, Prossima FROM "
                    "Tbl_Maintenance WHERE ID_NUM = 3"),
              QStringList{"2|2|10|45|15/11/2026|13/12/2026"});
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Planned WHERE ID_NUM = 3").toLong(), 1);

    // The list is stale until the command runs again.
    EXPECT_EQ(value("SELECT Maintenance FROM Tbl_Not_Maintenance WHERE ID_NUM = 3").toString(), "");
    f = form7();
    f->Cmd_Senza_Manutenzione->click();
    EXPECT_EQ(f->Frame3->Caption(), "Sono 3 le Manutenzioni Mancanti");
}

TEST_F(Form7Missing, StoppedMachineLineShowsItsStopAndPreparesNothing)
{
    // The list of stopped machines shares DataGrid3; its lines carry no type, so no
    // assignment matches, and the line serves to show the unit's stop.
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addStop(3, 2, QStringLiteral("10/11/2026"), 1, 0);
    Form7* f = form7();
    f->Command3->click();
    ASSERT_EQ(f->DataGrid3->RecordCount(), 1);
    f->DataGrid3->select(0);
    EXPECT_FALSE(f->Frame2->isHidden());
    EXPECT_EQ(f->Txt_Day_Stop->Text(), "5");
    EXPECT_EQ(f->Label16->Caption(), QString::fromUtf8("[TORNIO]-[T200]-[N°10]"));
    EXPECT_EQ(kit::texts({f->ID_NUM, f->DataCombo3, f->txtID, f->Cmd_Edit}), QStringList({"3", "", "", "SALVA"}));
}
