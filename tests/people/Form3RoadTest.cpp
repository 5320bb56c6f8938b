// The notebook on the roads that lead to it: an execution on the register that offers a
// note, the main menu, and the automation driver.
#include "execution/Form7Fixture.h"
#include "support/InProcessDrive.h"
#include "people/Form3.h"
#include "shell/Driver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using people::Form3;
namespace answer = vb::answer;

namespace {

class Form3Road : public Form7Fixture
{
protected:
    Form3* form3() { return shell::screens().formAs<Form3>(QStringLiteral("Form3")); }
};

} // namespace

TEST_F(Form3Road, AnExecutionOpensTheNotebookOnItsNoteAndTheTextIsWrittenThere)
{
    start();
    const int id = addMaintenance(2, 3, QDate(2026, 9, 1), QDate(2026, 10, 27));
    shell::screens().show("Form7");
    execution::Form7* f7 = form7();
    selectRow(f7, id);
    boxes();
    answer({answer::Yes, answer::Yes});
    f7->Cmd_Eseguita->click();
    EXPECT_EQ(boxes().size(), 2u);

    // The notebook shows the note just written, of the execution's date.
    ASSERT_TRUE(shell::screens().isLoaded("Form3"));
    Form3* f = form3();
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->Txt_ID_MODELLO->Text(), "1");
    EXPECT_EQ(f->Txt_ID_NUM->Text(), "2");
    EXPECT_EQ(f->Txt_DATA->Text(), "27/10/2026");
    EXPECT_EQ(f->DTPicker2->Value().toString(), "27/10/2026");
    EXPECT_EQ(f->Frame1->Caption(), "N° 1 Note 27/10/2026");
    ASSERT_EQ(f->DataGrid1->RecordCount(), 1);

    // The note has a type and no text yet: its empty columns leave their fields empty.
    f->DataGrid1->select(0);
    EXPECT_EQ(f->Cmd_Add_Note->Caption(), "MODIFICA NOTA");
    EXPECT_EQ(f->DataCombo3->Text(), "PRESSA");
    EXPECT_EQ(f->DataCombo2->Text(), "AX100");
    EXPECT_EQ(f->DataCombo1->Text(), "2");
    EXPECT_EQ(f->DataCombo5->Text(), "Manutenzione");
    EXPECT_EQ(f->DataCombo4->Text(), "");
    f->Txt_Nota->setText("Sostituito il filtro dell'aria");
    f->DataCombo4->setText("Meccanico");
    f->Cmd_Add_Note->click();
    EXPECT_TRUE(boxes().empty());
    const auto notes = rows("SELECT ID_MAINTENANCE, ID_MODELLO, ID_NUM, Ultima, NOTE, Tipo_Nota, Tipo_Nota2 FROM "
                            "Tbl_Maintenance_Note");
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0][0].toLong(), id);
    EXPECT_EQ(notes[0][1].toLong(), 1);
    EXPECT_EQ(notes[0][2].toLong(), 2);
    EXPECT_EQ(notes[0][3].toString(), "27/10/2026") << "the execution's date stays";
    EXPECT_EQ(notes[0][4].toString(), "Sostituito il filtro dell'aria");
    EXPECT_EQ(notes[0][5].toString(), "Manutenzione");
    EXPECT_EQ(notes[0][6].toString(), "Meccanico");

    // The main menu's entry opens it afresh: every note, the register being reloaded hidden.
    shell::screens().control("frmMain", "lblNoteBooks")->click();
    f = form3();
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->Frame1->Caption(), "N° 1 Note 15/11/2026");
    EXPECT_EQ(f->Frame3->Caption(), "NOTE MACCHINE: 1");
}

TEST_F(Form3Road, TheDriverWritesAMachinesNoteThroughTheControls)
{
    InProcessDrive drive;
    drive("start");
    drive("click frmMain.lblNoteBooks");
    EXPECT_EQ(drive("get Form3.Caption").toString(), "NOTE");
    drive("type Form3.Txt_Nota Cinghia da tendere");
    drive("click Form3.Cmd_Add_Note");
    const QJsonArray refused = drive("boxes").toArray();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0].toObject().value("prompt").toString(), "Selezionare o inserisci il Tipo Nota...");
    drive("type Form3.DataCombo5 Ispezione");
    drive("type Form3.DataCombo4 Meccanico");
    drive("choose Form3.DataCombo3 TORNIO");
    drive("choose Form3.DataCombo2 T200");
    drive("choose Form3.DataCombo1 10");
    drive("click Form3.Cmd_Add_Note");
    const QJsonArray none = drive("boxes").toArray();
    EXPECT_TRUE(none.isEmpty()) << QJsonDocument(none).toJson().toStdString();
    const QJsonArray saved = drive("sql SELECT ID_MODELLO, ID_NUM, NOTE, Ultima FROM Tbl_Maintenance_Note").toArray();
    ASSERT_EQ(saved.size(), 1);
    EXPECT_EQ(saved[0].toObject().value("ID_MODELLO").toInt(), 2);
    EXPECT_EQ(saved[0].toObject().value("ID_NUM").toInt(), 3);
    EXPECT_EQ(saved[0].toObject().value("Ultima").toString(), "15/11/2026");
    const QJsonObject machines = drive("grid Form3.DataGrid2").toObject();
    ASSERT_EQ(machines.value("rows").toArray().size(), 1);
    EXPECT_EQ(machines.value("rows").toArray()[0].toArray()[0].toString(), "T200");
    EXPECT_EQ(drive("get Form3.Frame3.Caption").toString(), "NOTE MACCHINE: 1");
}
