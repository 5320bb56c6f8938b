// The register's search screen narrowing Form7's list while the user types.
#include "execution/Form8.h"
#include "shell/ScreenRegistry.h"
#include "support/RegisterTest.h"

using execution::Form7;
using execution::Form8;

using Search = RegisterTest;

TEST_F(Search, FieldsNarrowTheRegisterWhileTyping)
{
    addMaintenance(1, 2, today().addDays(-20), today().addDays(8));
    addMaintenance(2, 2, today().addDays(-40), today().addDays(-12));
    addMaintenance(3, 3, today().addDays(-40), today().addDays(30));
    Form7* f = form7();
    f->Cmd_Search->click();
    auto* s = shell::ScreenRegistry::instance().formAs<Form8>("Form8");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->windowTitle(), "CERCA MANUTENZIONE");

    // A fragment of the machine's name, in any case; the count line has no colon here.
    s->Text1->typeText("pre");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 2);
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni 2");
    EXPECT_EQ(f->DataGrid1->Columns(2).Caption(), "MACCHINA");
    EXPECT_EQ(f->DataGrid1->Columns(1).Width(), 0);
    EXPECT_EQ(f->DataGrid1->Columns(10).Caption(), "PROSSIMA");
    s->Text1->typeText("zzz");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 0);
    // Leaving a field empties it.
    s->Text1->focusOut();
    EXPECT_EQ(s->Text1->Text(), "");

    // The number matches whole and takes digits only; empty leaves the list as it was.
    s->Text3->typeText("a1");
    EXPECT_EQ(s->Text3->Text(), "1");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 1) << "unit 10 does not match 1";
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni 1");
    s->Text3->keyPress(8);
    EXPECT_EQ(f->DataGrid1->RecordCount(), 1);
}

TEST_F(Search, TypeSearchAndAnEmptyFieldListTheWholeRegisterByMachine)
{
    addMaintenance(3, 2, today().addDays(-40), today().addDays(30));  // TORNIO Mensile
    addMaintenance(1, 3, today().addDays(-20), today().addDays(8));   // PRESSA Bimestrale
    addMaintenance(2, 2, today().addDays(-40), today().addDays(-12)); // PRESSA Mensile
    Form7* f = form7();
    f->Cmd_Search->click();
    auto* s = shell::ScreenRegistry::instance().formAs<Form8>("Form8");
    ASSERT_TRUE(s);

    // The type search finds a fragment anywhere in the type's name, in any case, and
    // lists by machine.
    s->Text2->focusIn();
    s->Text2->typeText("SIL");
    ASSERT_EQ(f->DataGrid1->RecordCount(), 2);
    EXPECT_EQ(f->DataGrid1->cellValue(0, 2).toString() + f->DataGrid1->cellValue(1, 2).toString(), "PRESSATORNIO");
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni 2");
    s->Text2->focusOut();

    // Deleting the machine fragment down to nothing lists the whole register, by machine.
    s->Text1->typeText("t");
    EXPECT_EQ(f->DataGrid1->RecordCount(), 1);
    s->Text1->keyPress(8);
    ASSERT_EQ(s->Text1->Text(), "");
    ASSERT_EQ(f->DataGrid1->RecordCount(), 3);
    EXPECT_EQ(f->DataGrid1->cellValue(2, 2).toString(), "TORNIO");
    // The search grid keeps the key, so a row change works on the results as on the list.
    EXPECT_EQ(f->DataGrid1->Columns(0).Caption(), "ID");
    EXPECT_TRUE(!f->DataGrid1->Columns(0).Locked() && f->DataGrid1->Columns(13).Locked());
    EXPECT_EQ(f->DataGrid1->Columns(13).Width(), 0);

    // The register's own refresh brings its normal list back, with its colon.
    f->Cmd_Vis_All->click();
    f = form7();
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Manutenzioni: 3");
    EXPECT_EQ(f->DataGrid1->Columns(1).Caption(), "MACCHINA");
}
