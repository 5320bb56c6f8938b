// Recording a maintenance as done on Form7, and the note offered after it.
#include "support/RegisterTest.h"

using execution::Form7;
namespace answer = vb::answer;

using Form7Execution = RegisterTest;

TEST_F(Form7Execution, NothingSelectedOrAnsweringNoChangesNothing)
{
    const int id = addMaintenance(1, 2, today().addDays(-30), today().addDays(-2));
    Form7* f = form7();
    f->Cmd_Eseguita->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI", "Non è stata selezinata nessuna Manutenzione!!", vb::mb::Exclamation);
    selectRow(f, id);
    answer({answer::No});
    f->Cmd_Eseguita->click();
    EXPECT_BOX(
        oneBox(), "MANUTENZIONE ESEGUITA IL **13/11/2026**",
        "Confermi questa Manutenzione eseguita in data 13/11/2026? Se la data non corrisponde modifica 'Prossima'",
        vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(lines("SELECT Ultima, Prossima FROM Tbl_Maintenance"), QStringList{"16/10/2026|13/11/2026"});
}

TEST_F(Form7Execution, ExecutionAnchorsOnTheCorrectedDateAndForgetsTheStop)
{
    const int id = addMaintenance(1, 2, QDate(2026, 10, 1), QDate(2026, 10, 29));
    addStop(1, 2, QString(), 1, 5); // restarted machine: its record still pushes the date
    Form7* f = form7();
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), QDate(2026, 11, 3)) << "Ultima + 28 + 5 stopped days";
    selectRow(f, id);
    // Done on the 5th, earlier than due: the schedule moves from the day of the work.
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2026, 11, 1)));
    answer({answer::Yes, answer::No});
    f->Cmd_Eseguita->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].title, "MANUTENZIONE ESEGUITA IL **01/11/2026**");
    EXPECT_EQ(shown[1].title, "INSERISCI NOTA MANUTENZIONE ESEGUITA IL **01/11/2026**");
    EXPECT_EQ(shown[1].prompt, "Vuoi inserire delle Note sulla manutenzione appena eseguita?");

    EXPECT_EQ(lines("SELECT Ultima, Prossima, Operatore, ID_Operatore FROM Tbl_Maintenance"),
              QStringList{"01/11/2026|29/11/2026||0"})
        << "no operator chosen: written as 0";
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Fermi_Macchina").toLong() +
                  value("SELECT Count(*) FROM Tbl_Maintenance_Note").toLong(),
              0);
    // No to the note reloads the register; the stop no longer pushes the date.
    Form7* again = form7();
    ASSERT_NE(again, f);
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), QDate(2026, 11, 29));
    EXPECT_EQ(again->DataGrid1->cellText(0, "Prossima"), "29/11/2026");
}

TEST_F(Form7Execution, NoteRowIsWrittenAndSharedByTheSameDate)
{
    // Two executions on one machine and one date share one note row: the second
    // overwrites the first's keys, whichever type it was.
    const int men = addMaintenance(1, 2, QDate(2026, 10, 1), QDate(2026, 10, 29));
    const int bim = addMaintenance(1, 3, QDate(2026, 9, 3), QDate(2026, 10, 29));
    Form7* f = form7();
    selectRow(f, men);
    f->DataCombo5->choose("ROSSI");
    answer({answer::Yes, answer::Yes});
    f->Cmd_Eseguita->click();
    EXPECT_EQ(lines("SELECT ID_MAINTENANCE, ID_MODELLO, ID_NUM, ID_OPERATORE, Ultima, Tipo_Nota FROM "
                    "Tbl_Maintenance_Note"),
              QStringList{QString::number(men) + "|1|1|1|29/10/2026|Manutenzione"});
    EXPECT_EQ(value(QStringLiteral("SELECT Operatore FROM Tbl_Maintenance WHERE ID = %1").arg(men)).toString(),
              "ROSSI");
    // The register is not reloaded after a note: the same screen stays.
    EXPECT_EQ(form7(), f);
    EXPECT_TRUE(f->DTPicker2->isHidden());

    selectRow(f, bim);
    answer({answer::Yes, answer::Yes});
    f->Cmd_Eseguita->click();
    EXPECT_EQ(column("SELECT ID_MAINTENANCE FROM Tbl_Maintenance_Note"), QStringList{QString::number(bim)});
}

TEST_F(Form7Execution, AddNoteWritesNoTypeAndLeavesTheDates)
{
    const int id = addMaintenance(2, 2, QDate(2026, 10, 1), QDate(2026, 10, 29));
    Form7* f = form7();
    EXPECT_FALSE(f->Cmd_Add_Note->isEnabled()) << "enabled only while ID_NUM holds a unit";
    selectRow(f, id);
    ASSERT_TRUE(f->Cmd_Add_Note->isEnabled());
    f->Cmd_Add_Note->click();
    EXPECT_TRUE(boxes().empty());
    const auto notes = rows("SELECT ID_MAINTENANCE, ID_NUM, Ultima, Tipo_Nota FROM Tbl_Maintenance_Note");
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(lines("SELECT ID_MAINTENANCE, ID_NUM, Ultima FROM Tbl_Maintenance_Note"),
              QStringList{QString::number(id) + "|2|29/10/2026"});
    EXPECT_TRUE(notes[0][3].isNull());
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), QDate(2026, 10, 29));
}

TEST_F(Form7Execution, KeysAreHandedToTheProcedureScreen)
{
    // The keys handed to the notebook are read by the notebook's own tests.
    standIn("Form13", {"T:Txt_ID_MODELLO", "T:Txt_ID_MAINT_TIPO", "T:DataCombo2", "T:DataCombo3", "T:DataCombo4"});
    const int id = addMaintenance(2, 3, QDate(2026, 9, 1), QDate(2026, 10, 27));
    const int other = addMaintenance(3, 2, QDate(2026, 9, 1), QDate(2026, 10, 29));
    Form7* f = form7();
    selectRow(f, id);
    f->Cmd_Vis_Procedura->click();
    ASSERT_TRUE(shell::screens().isLoaded("Form13"));
    QStringList handed;
    for (const char* c : {"Txt_ID_MODELLO", "Txt_ID_MAINT_TIPO", "DataCombo2", "DataCombo3", "DataCombo4"})
        handed << shell::screens().control("Form13", c)->vbProperty("Text").toString();
    EXPECT_EQ(handed, QStringList({"1", "3", "PRESSA", "AX100", "Bimestrale"}));
    // A new selection closes the procedure screen first.
    selectRow(f, other);
    EXPECT_FALSE(shell::screens().isLoaded("Form13"));
}
