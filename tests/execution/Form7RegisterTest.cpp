// The register of Form7: the list and its day filter, the selection of a row, the pick
// lists, and the new-row and edit paths of the save.
#include "runtime/VBFunctions.h"
#include "support/Fields.h"
#include "support/RegisterTest.h"

using execution::Form7;
namespace answer = vb::answer;

using Form7Register = RegisterTest;

TEST_F(Form7Register, ListIsSortedByNextDateWithItsColumnsAndCount)
{
    addMaintenance(1, 2, today().addDays(-20), today().addDays(8));
    addMaintenance(2, 2, today().addDays(-40), today().addDays(-12));
    Form7* f = form7();
    ASSERT_EQ(f->DataGrid1->RecordCount(), 2);
    EXPECT_EQ(f->DataGrid1->cellText(0, "Numerazione"), "2");
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni: 2");
    EXPECT_EQ(captions(f->DataGrid1).mid(0, 7),
              QStringList({"ID", "MACCHINA", "MODELLO", "NUM", "MANUTENZIONE TIPO", "ULTIMA", "PROSSIMA"}));
    EXPECT_EQ(widths(f->DataGrid1).mid(0, 7), QList<int>({0, 2000, 2800, 600, 1500, 1200, 1200}));
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(f->DataGrid1->Columns(i).Locked(), i > 0);
    // The load puts today in the Ultima fields.
    EXPECT_EQ(f->MaskEdBox1->Text(), "15/11/2026");
}

TEST_F(Form7Register, DayFilterIsStrictAndTakesDigitsOnly)
{
    addMaintenance(1, 2, today().addDays(-30), today().addDays(-3)); // overdue: always in
    addMaintenance(2, 2, today().addDays(-30), today().addDays(6));
    addMaintenance(1, 3, today().addDays(-30), today().addDays(7)); // exactly 7 days ahead: left out
    addMaintenance(3, 2, today().addDays(-30), today().addDays(8));
    Form7* f = form7();
    f->Txt_Search->typeText("a7x");
    EXPECT_EQ(f->Txt_Search->Text(), "7") << "only digits and backspace pass the key filter";
    EXPECT_EQ(f->DataGrid1->RecordCount(), 2);
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni: 2");
    f->Txt_Search->keyPress(8);
    EXPECT_EQ(f->DataGrid1->RecordCount(), 4) << "an empty filter lists the whole register";
    f->Txt_Search->setText("0");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 4) << "a filter of 0 lists the whole register";
    f->Txt_Search->setText("8");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 3);
}

TEST_F(Form7Register, RowChangeLoadsTheRowThroughThePickLists)
{
    exec("INSERT INTO Tbl_Maintenance_Note (ID_MODELLO, ID_NUM, Ultima) VALUES (1, 2, '01/11/2026')");
    const int id = addMaintenance(2, 3, QDate(2026, 9, 1), QDate(2026, 10, 27), 9);
    exec(QStringLiteral("UPDATE Tbl_Maintenance SET Operatore = 'ROSSI', ID_OPERATORE = 1 WHERE ID = %1").arg(id));
    Form7* f = form7();
    selectRow(f, id);
    EXPECT_EQ(f->txtID->Text(), QString::number(id));
    EXPECT_EQ(kit::texts({f->ID_MOD, f->ID_NUM, f->ID_MAINT, f->DataCombo3, f->DataCombo2, f->DataCombo1, f->DataCombo4,
                          f->DataCombo5, f->ID_OPERATORE, f->Txt_Qualifica}),
              QStringList({"1", "2", "3", "PRESSA", "AX100", "2", "Bimestrale", "ROSSI", "1", "Tecnico"}));
    // The type's change comes last in the fill and takes the frequency of the type, not
    // the row's own copy.
    EXPECT_EQ(kit::texts({f->txtFrequenza, f->Txt_Tot_Minuti, f->Txt_Man_Tip, f->MaskEdBox1, f->MaskEdBox2}),
              QStringList({"8", "60", "Bimestrale", "01/09/2026", "27/10/2026"}));
    EXPECT_FALSE(f->DTPicker2->isHidden());
    // Overdue: red and bold. The notes of the machine shown.
    EXPECT_EQ(kit::texts({f->Label16, f->Cmd_Edit, f->Label8, f->Frame1}),
              QStringList({"[PRESSA]-[AX100]-[N°2]", "Modifica", "Prossima!!:", "LEGGI NOTE MACCHINA: AX100  N°2"}));
    EXPECT_TRUE(f->Cmd_Add_Note->isEnabled() && f->Cmd_Stop->isEnabled());
    EXPECT_TRUE(f->Label8->ForeColor() == vb::colour::Red && f->Label8->FontBold());
    EXPECT_FALSE(f->Frame1->isHidden());
    EXPECT_EQ(f->DataGrid1->ToolTipText(), "CI SONO NOTE PRESENTI PER QUESTA MACCHINA!");
    EXPECT_EQ(f->DataGrid2->Columns(1).Caption(), "ID_MAINTENANCE");
    f->Form_MouseMove();
    EXPECT_TRUE(f->Frame1->isHidden());
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form7Register, DueTodayLeavesTheLabelAsItWas)
{
    // Kept as the screen always did it: a date equal to today runs neither branch.
    const int overdue = addMaintenance(1, 2, today().addDays(-40), today().addDays(-1));
    const int dueToday = addMaintenance(2, 2, today().addDays(-28), today());
    const int later = addMaintenance(3, 2, today().addDays(-20), today().addDays(5));
    Form7* f = form7();
    selectRow(f, overdue);
    selectRow(f, dueToday);
    EXPECT_EQ(f->Label8->Caption(), "Prossima!!:");
    EXPECT_EQ(f->Label8->ForeColor(), vb::colour::Red);
    selectRow(f, later);
    EXPECT_EQ(f->Label8->Caption(), "Prossima:");
    EXPECT_EQ(f->Label8->ForeColor(), vb::colour::Black);
    EXPECT_FALSE(f->Label8->FontBold());
    selectRow(f, dueToday);
    EXPECT_EQ(f->Label8->Caption(), "Prossima:");
}

TEST_F(Form7Register, ModelWithoutNumbersAsksBeforeGoingOn)
{
    Form7* f = form7();
    answer({answer::No});
    f->DataCombo3->choose("FRESA");
    f->DataCombo2->choose("F10");
    EXPECT_BOX(oneBox(), "NUMERAZIONE MACCHINA MANCANTE",
               "Macchina sprovvista di Numerazione, per procedere all'inserimento Manutenzioni devi prima assegnare "
               "la numerazione a questa macchina, Vuoi Procedere?",
               vb::mb::YesNo + vb::mb::Exclamation);
    EXPECT_EQ(f->DataCombo2->Text(), "") << "No empties the model";
    EXPECT_TRUE(shell::screens().isLoaded("Form7"));

    answer({answer::Yes});
    f->DataCombo2->setText("F10");
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_FALSE(shell::screens().isLoaded("Form7")) << "Yes goes to the numbering and leaves the register";
}

TEST_F(Form7Register, NewRowTakesNextDateFromUltimaAndMakesThePlanRow)
{
    Form7* f = form7();
    f->Cmd_Add->click();
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_TRUE(!f->Cmd_Add->isEnabled() && f->DTPicker2->isHidden());
    f->DataCombo3->choose("PRESSA");
    f->DataCombo2->choose("AX100");
    f->DataCombo1->choose("2");
    f->DataCombo4->choose("Mensile");
    EXPECT_EQ(kit::texts({f->txtFrequenza, f->ID_NUM}), QStringList({"4", "2"}));
    f->DTPicker1->setValue(vb::Variant::fromDate(QDate(2026, 11, 2)));
    EXPECT_EQ(f->MaskEdBox1->Text(), "02/11/2026");
    // The hidden next date is not read by a new row.
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2027, 5, 5)));
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());

    EXPECT_EQ(lines("SELECT ID_MODELLO, ID_NUM, ID_MAINT_TIPO, Ultima, Prossima, Tempo_Minuti, Operatore FROM "
                    "Tbl_Maintenance"),
              QStringList{"1|2|2|02/11/2026|30/11/2026|30|"});
    EXPECT_EQ(lines("SELECT Macchina, Numerazione FROM Tbl_Planned"), QStringList{"PRESSA|2"});

    // The save reloads the screen in browse state.
    Form7* again = form7();
    EXPECT_EQ(again->Cmd_Edit->Caption(), "Modifica");
    EXPECT_EQ(again->DataGrid1->RecordCount(), 1);
}

TEST_F(Form7Register, SaveChecksTheFieldsAndDuplicatesByText)
{
    const int id = addMaintenance(1, 2, today().addDays(-10), today().addDays(18));
    Form7* f = form7();
    f->Cmd_Add->click();
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Inserisci i dati Richiesti!", vb::mb::Exclamation);

    // Same model text, number text and type as the existing row; its unit key differs,
    // and the check still blocks, as it goes by the texts.
    exec(QStringLiteral("UPDATE Tbl_Maintenance SET ID_NUM = 99 WHERE ID = %1").arg(id));
    f->DataCombo3->choose("PRESSA");
    f->DataCombo2->choose("AX100");
    f->DataCombo1->choose("1");
    f->DataCombo4->choose("Mensile");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "DUPPLICATO DI MANUTENZIONE",
               "Questa manutenzione è già stata assegnata a questa numerazione di Macchina!!", vb::mb::Critical);
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Maintenance").toLong(), 1);
}

TEST_F(Form7Register, EditKeepsTheNextDateAsSetAndShowsProgress)
{
    const int id = addMaintenance(1, 2, QDate(2026, 10, 1), QDate(2026, 10, 29));
    Form7* f = form7();
    selectRow(f, id);

    // No changes nothing.
    answer({answer::No});
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2027, 1, 10)));
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Manutenzione **Mensile**",
               "Stai per modificare la Manutenzione Mensile di questa Macchina, Vuoi Procedere??",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(dateOf(QStringLiteral("SELECT Prossima FROM Tbl_Maintenance WHERE ID = %1").arg(id)),
              QDate(2026, 10, 29));

    // Yes: Ultima from DTPicker1, Prossima as the user set it, not from the frequency.
    answer({answer::Yes});
    f->DTPicker1->setValue(vb::Variant::fromDate(QDate(2026, 11, 3)));
    f->Cmd_Edit->click();
    EXPECT_EQ(f->ProgressBar1->Value(), 100);
    EXPECT_EQ(f->Lbl_ProgressBar->Caption(), "Final Procedure...100,0%");
    EXPECT_EQ(lines("SELECT Ultima, Prossima FROM Tbl_Maintenance"), QStringList{"03/11/2026|10/01/2027"});
    EXPECT_TRUE(value("SELECT ID_Operatore FROM Tbl_Maintenance").isNull());
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Planned").toLong(), 1);
}

TEST_F(Form7Register, DeleteLeavesAnEmptyPlanRowForTheOtherMaintenance)
{
    // Kept: the remaining maintenance's tokens do not come back until each is saved again.
    const int first = addMaintenance(1, 2, today().addDays(-10), today().addDays(18));
    addMaintenance(1, 3, today().addDays(-10), today().addDays(46));
    exec("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, [1], [9]) "
         "VALUES (1, 'PRESSA', 'AX100', 1, '1', 'Men', 'Men/Bim')");
    Form7* f = form7();

    selectRow(f, first);
    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(oneBox().title, "Elimina Manutenzione");
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Maintenance").toLong(), 1);
    const auto plan = rows("SELECT ID_NUM, [1], [9] FROM Tbl_Planned");
    ASSERT_EQ(plan.size(), 1u);
    EXPECT_TRUE(plan[0][0].toLong() == 1 && plan[0][1].isNull() && plan[0][2].isNull());
}

TEST_F(Form7Register, UltimaStepsByOneDayAndAsksForADate)
{
    Form7* f = form7();
    f->Command1->click();
    EXPECT_EQ(kit::texts({f->MaskEdBox1, f->DTPicker1}), QStringList({"14/11/2026", "14/11/2026"}));
    f->Command2->click();
    f->Command2->click();
    EXPECT_EQ(f->MaskEdBox1->Text(), "16/11/2026");
    EXPECT_TRUE(boxes().empty());

    f->MaskEdBox1->setText("__/__/____");
    f->Command1->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI", "Inserisci la Data!!", vb::mb::Critical);
}

TEST_F(Form7Register, PickListsNarrowEachOtherInTurn)
{
    Form7* f = form7();
    EXPECT_EQ(f->DataCombo3->items(), QStringList({"FRESA", "PRESSA", "TORNIO"})) << "only machines with procedures";
    f->DataCombo3->choose("PRESSA");
    EXPECT_EQ(f->DataCombo2->items(), QStringList({"AX100"}));
    EXPECT_EQ(f->ID_MOD->Text(), "1");
    EXPECT_EQ(f->DataCombo4->items(), QStringList({"Mensile", "Bimestrale"}));
    f->DataCombo2->choose("AX100");
    EXPECT_EQ(f->DataCombo1->items(), QStringList({"1", "2"}));
    f->DataCombo1->choose("2");
    f->DataCombo4->choose("Bimestrale");
    EXPECT_EQ(kit::texts({f->ID_NUM, f->ID_MAINT, f->Txt_Tot_Minuti}), QStringList({"2", "3", "60"}));
    // A new machine empties the lists below it; under three letters nothing else happens.
    f->DataCombo3->setText("TO");
    EXPECT_EQ(kit::texts({f->DataCombo2, f->DataCombo1, f->DataCombo4, f->ID_MOD}), QStringList({"", "", "", "1"}));
    f->DataCombo3->setText("TORNIO");
    EXPECT_EQ(f->ID_MOD->Text(), "2");
    EXPECT_EQ(f->DataCombo4->items(), QStringList({"Mensile"}));
    EXPECT_TRUE(boxes().empty());
}
