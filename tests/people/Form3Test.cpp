// The notebook: the three lists and the register's machine, the save with its checks and
// its two modes, the filters, the selections, the symbols, the pictures, Note.txt and the
// prints.
#include "people/Form3.h"

#include "controls/CommonDialog.h"
#include "execution/Form7.h"
#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "runtime/OpenFile.h"
#include "support/RegisterTest.h"
#include "support/Shown.h"

#include <QDir>
#include <QFile>
#include <QImage>

using people::Form3;
namespace answer = vb::answer;

namespace {

/// The register's small plant and the notebook on its roads in.
class Form3Road : public RegisterTest
{
protected:
    static Form3* form3() { return screen<Form3>("Form3"); }
};

/// Beside the register's plant, PRESSA BX200 (model 4, unit 4 "5") and TORNIO T-50
/// dell'officina (model 5, unit 5 "7"); notes of two machine numbers and one general note;
/// the register stood in for by a screen with the three fields the notebook reads.
class Form3Test : public Form3Road
{
protected:
    void SetUp() override
    {
        Form3Road::SetUp();
        plant.unit(plant.model("PRESSA", "BX200"), "5");
        plant.unit(plant.model("TORNIO", "T-50 dell'officina"), "7");
        olio = addNote(1, 1, "10/11/2026", "Cambiato olio", "Guasto", "Elettrico");
        filtri = addNote(1, 2, "03/03/2025", "Controllo olio e filtri", "Manutenzione", "Meccanico");
        guanti = addNote(0, 0, "12/11/2026", "Ordinare guanti", "Sicurezza", "Magazzino");
        standIn("Form7", {"T:ID_MOD", "T:ID_NUM", "P:DTPicker2"});
        shell::screens().form("Form7")->controlAs<vb::DTPicker>("DTPicker2")->setValue(kit::date(2026, 11, 10));
    }

    void TearDown() override
    {
        vb::FileDialogService::clear();
        Form3Road::TearDown();
    }

    int addNote(int model, int number, const QString& date, const QString& text, const QString& type,
                const QString& type2)
    {
        return plant.note({{"ID_MODELLO", model},
                           {"ID_NUM", number},
                           {"Ultima", date},
                           {"NOTE", text},
                           {"Tipo_Nota", type},
                           {"Tipo_Nota2", type2}});
    }

    static Form3* reload() { return ScreenTest::reload<Form3>("Form3"); }

    /// The register's fields, as it stands when it opens the notebook.
    static void setRegister(const QString& model, const QString& number, bool visible)
    {
        auto* f = shell::screens().form("Form7");
        f->control("ID_MOD")->setVbProperty("Text", model);
        f->control("ID_NUM")->setVbProperty("Text", number);
        f->setVisible(visible);
    }

    /// The keys of a grid's rows, from its ID column.
    static QList<int> keys(vb::DataGrid* grid)
    {
        QList<int> out;
        for (const QString& k : column(grid, "ID"))
            out << k.toInt();
        return out;
    }

    static void selectNote(vb::DataGrid* grid, int id) { selectRow(grid, "ID", QString::number(id)); }

    /// Model, number, operator, date, text, types, picture and its path of a note.
    static QString note(int id)
    {
        return lines(QStringLiteral("SELECT ID_MODELLO, ID_NUM, ID_OPERATORE, Ultima, NOTE, Tipo_Nota, Tipo_Nota2, "
                                    "Images, Percorso FROM Tbl_Maintenance_Note WHERE ID = %1")
                         .arg(id))
            .value(0);
    }

    /// A picture file away from the program's folder.
    QString picture(const QString& name)
    {
        QDir(path()).mkpath(QStringLiteral("foto"));
        const QString file = path() + QStringLiteral("/foto/") + name;
        QImage image(300, 100, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        EXPECT_TRUE(image.save(file, "BMP"));
        return file;
    }

    int olio = 0, filtri = 0, guanti = 0;
};

} // namespace

TEST_F(Form3Test, LoadShowsTheThreeListsAndTheRegistersMachine)
{
    Form3* f = form3();
    EXPECT_TRUE(shell::screens().isLoaded("Form7")) << "reading the register's date brings it into being";

    // Machines with notes: the general note has no machine and stays out. All notes, newest
    // first by the date's text: day first, so a March note of last year sorts below
    // November's. The register shows no machine: every note, under today's date.
    EXPECT_EQ(f->Caption(), "NOTE");
    EXPECT_EQ(texts({f->Frame3, f->Frame2, f->Txt_Specifica_Note, f->Frame1}),
              QStringList({"NOTE MACCHINE: 2", "TUTTE LE NOTE: 3", "0", "N° 3 Note 15/11/2026"}));
    auto* g2 = f->DataGrid2;
    ASSERT_EQ(g2->RecordCount(), 2);
    EXPECT_EQ(QStringList({g2->cellText(0, 0), g2->cellText(1, 1), g2->cellText(1, 2)}),
              QStringList({"AX100", "2", "1"}));
    EXPECT_EQ(widths(f->DataGrid2), QList<int>({2900, 500, 500, 0, 0}));
    EXPECT_EQ(captions(f->DataGrid2).mid(0, 3), QStringList({"Modello", "N°", "Note"}));
    EXPECT_EQ(keys(f->DataGrid3), (QList<int>{guanti, olio, filtri}));
    auto* g3 = f->DataGrid3;
    EXPECT_EQ(g3->Columns("Tipo_Nota").Caption(), "Nota Tipo");
    EXPECT_EQ(
        QList<int>({g3->Columns("Tipo_Nota").Width(), g3->Columns("NOTE").Width(), g3->Columns("Avvisa").Width()}),
        QList<int>({1000, 3000, 0}));
    EXPECT_EQ(f->DTPicker2->Value().toString(), "15/11/2026");
    // The other ten columns are there at no width.
    ASSERT_EQ(f->DataGrid1->ColumnCount(), 12);
    for (int i = 0; i < 12; ++i) {
        const vb::GridColumn& c = f->DataGrid1->Columns(i);
        const int width = c.DataField() == "Ultima" ? 1150 : c.DataField() == "NOTE" ? 8800 : 0;
        EXPECT_EQ(c.Width(), width) << c.DataField().toStdString();
    }

    // Open from the register on a machine: its notes of the register's date.
    setRegister("1", "1", true);
    f = reload();
    EXPECT_EQ(texts({f->DTPicker2, f->Frame1}), QStringList({"10/11/2026", "N° 1 Note 10/11/2026"}));
    EXPECT_EQ(keys(f->DataGrid1), (QList<int>{olio}));
    // A hidden register gives its keys but not its date: none of today.
    setRegister("1", "1", false);
    f = reload();
    EXPECT_EQ(f->Frame1->Caption(), "N° 0 Note 15/11/2026");
    // The keys the register handed over come first.
    f->Txt_ID_MODELLO->setText("1");
    f->Txt_ID_NUM->setText("2");
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2025, 3, 3)));
    f->Show_Notes_Of_Machine();
    EXPECT_EQ(keys(f->DataGrid1), (QList<int>{filtri}));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form3Test, SaveChecksInOrderThenInsertsGeneralAndMachineNotesOfToday)
{
    Form3* f = form3();
    auto save = [&] {
        f->Cmd_Add_Note->click();
        const auto b = boxes();
        EXPECT_LE(b.size(), 1u);
        return b.empty() ? vb::ShownBox{} : b.front();
    };
    EXPECT_BOX(save(), "MANCANO LE INFORMAZIONI BASE", "Inserisci la l'Annotazione ...", vb::mb::Exclamation);
    f->Txt_Nota->setText("Nuovi guanti\r\nin magazzino");
    EXPECT_EQ(save().prompt, "Selezionare o inserisci il Tipo Nota...");
    f->DataCombo5->setText("Sicurezza");
    EXPECT_EQ(save().prompt, "Selezionare o inserisci il Tipo Nota2...");
    EXPECT_EQ(rows("SELECT ID FROM Tbl_Maintenance_Note").size(), 3u) << "nothing written by a refused save";

    // No machine: a general note, of today whatever the picker says.
    f->DataCombo4->setText("Reparto B");
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2026, 1, 2)));
    EXPECT_EQ(save().prompt, "");
    EXPECT_EQ(lines("SELECT ID_MODELLO, ID_NUM, ID_OPERATORE, Ultima, NOTE, Tipo_Nota FROM Tbl_Maintenance_Note "
                    "WHERE Tipo_Nota2 = 'Reparto B'"),
              QStringList{"0|0|0|15/11/2026|Nuovi guanti\r\nin magazzino|Sicurezza"});
    // The inputs are cleared.
    EXPECT_EQ(texts({f->Txt_Nota, f->DataCombo5, f->Txt_DATA, f->Txt_ID_NUM, f->Frame2}),
              QStringList({"", "", "02/01/2026", "0", "TUTTE LE NOTE: 4"}));
    EXPECT_EQ(f->Frame3->Caption(), "NOTE MACCHINE: 2") << "a general note is no machine's";

    // Lookups start at three characters.
    f->DataCombo3->setText("PR");
    EXPECT_TRUE(!f->DataCombo2->isEnabled() && f->DataCombo2->ListCount() == 0);
    f->DataCombo3->setText("PRESSA");
    EXPECT_TRUE(f->DataCombo2->isEnabled());
    EXPECT_EQ(f->DataCombo2->items(), (QStringList{"AX100", "BX200"}));
    EXPECT_EQ(f->ID_MOD->Text(), "1") << "the machine's first model";
    // A name of no machine has no first model: the plain box of the empty list, and the
    // model stays closed.
    f->DataCombo3->setText("PRESSE");
    EXPECT_TRUE(kit::errorBox(oneBox(), 3021));
    EXPECT_FALSE(f->DataCombo2->isEnabled());
    f->DataCombo3->setText("PRESSA");

    f->Txt_Nota->setText("Perdita dal cilindro");
    f->DataCombo5->setText("Guasto");
    f->DataCombo4->setText("Idraulico");
    EXPECT_EQ(save().prompt, "Selezionare IL Modello...");
    f->DataCombo2->setText("BX");
    EXPECT_TRUE(f->DataCombo1->isEnabled() && f->DataCombo1->ListCount() == 0) << "any model text opens the number";
    f->DataCombo2->choose("BX200");
    EXPECT_EQ(f->ID_MOD->Text() + f->DataCombo1->items().join(","), "45");
    EXPECT_EQ(save().prompt, "Selezionare il Numero della Macchina...");
    f->DataCombo1->setText("9");
    EXPECT_EQ(f->ID_NUM->Text(), "") << "no such number: nothing changes";
    f->DataCombo1->choose("5");
    EXPECT_EQ(f->ID_NUM->Text(), "4");
    EXPECT_EQ(save().prompt, "");
    EXPECT_EQ(lines("SELECT ID_MODELLO, ID_NUM FROM Tbl_Maintenance_Note WHERE Tipo_Nota2 = 'Idraulico'"),
              QStringList{"4|4"});
    EXPECT_EQ(f->Frame3->Caption(), "NOTE MACCHINE: 3");

    // A name with an apostrophe is looked up with it doubled.
    f->DataCombo3->setText("TORNIO");
    EXPECT_EQ(f->DataCombo2->items(), (QStringList{"T-50 dell'officina", "T200"}));
    f->DataCombo2->choose("T-50 dell'officina");
    EXPECT_EQ(f->ID_MOD->Text() + f->DataCombo1->items().join(","), "57");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form3Test, EachFilterReplacesTheOthersAndEmptyingOneShowsEveryNote)
{
    Form3* f = form3();
    f->DataCombo5->setText("Guasto");
    EXPECT_EQ(f->Txt_Specifica_Note->Text(), "1");
    EXPECT_EQ(keys(f->DataGrid3), (QList<int>{olio}));
    // The text search ignores the classification chosen before.
    f->Txt_Search->typeText("olio");
    EXPECT_EQ(texts({f->Txt_Specifica_Note, f->Frame2}), QStringList({"3", "TUTTE LE NOTE: 2"}));
    EXPECT_EQ(keys(f->DataGrid3), (QList<int>{olio, filtri}));
    // Emptied, it does not go back to the classification: no filter at all.
    f->Txt_Search->setText("");
    EXPECT_EQ(texts({f->Txt_Specifica_Note, f->Frame2}), QStringList({"0", "TUTTE LE NOTE: 3"}));
    f->DataCombo4->setText("Meccanico");
    EXPECT_EQ(f->Txt_Specifica_Note->Text(), "2");
    EXPECT_EQ(keys(f->DataGrid3), (QList<int>{filtri}));
    // The text goes into the statement as typed: an apostrophe finds nothing, silently.
    f->Txt_Search->setText("l'olio");
    EXPECT_EQ(f->Frame2->Caption(), "TUTTE LE NOTE: 0");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form3Test, SelectionsChooseTheNoteAndAnEditTakesThePickersDate)
{
    Form3* f = form3();
    // A note of all notes: it alone below, ready for a new one.
    selectNote(f->DataGrid3, olio);
    EXPECT_EQ(texts({f->Cmd_Add_Note, f->Txt_ID, f->Txt_Grid}),
              QStringList({"INSERISCI NOTA", QString::number(olio), "0"}));
    EXPECT_EQ(keys(f->DataGrid1), (QList<int>{olio}));
    EXPECT_TRUE(f->Cmd_Photo->isEnabled());
    EXPECT_EQ(f->DataGrid3->Row(), 1) << "back on the row clicked after the rebuild";

    // The note itself into the input area, machine included.
    f->DataGrid1->select(0);
    EXPECT_EQ(texts({f->Cmd_Add_Note, f->DataCombo3, f->DataCombo2, f->DataCombo1, f->ID_MOD, f->ID_NUM, f->DataCombo5,
                     f->DataCombo4, f->Txt_Nota}),
              QStringList({"MODIFICA NOTA", "PRESSA", "AX100", "1", "1", "1", "Guasto", "Elettrico", "Cambiato olio"}));
    // Filling the classifications filters the list of all notes by them, the last one winning.
    EXPECT_EQ(f->Txt_Specifica_Note->Text(), "2");
    EXPECT_EQ(keys(f->DataGrid3), (QList<int>{olio}));

    // An edit writes the picker's date, not the note's: the note moves to that day.
    f->Txt_Nota->setText("Cambiato olio e filtro");
    f->DTPicker2->setValue(vb::Variant::fromDate(QDate(2026, 11, 14)));
    f->Cmd_Add_Note->click();
    EXPECT_EQ(note(olio), "1|1|0|14/11/2026|Cambiato olio e filtro|Guasto|Elettrico||");
    EXPECT_EQ(rows("SELECT ID FROM Tbl_Maintenance_Note").size(), 3u);

    // A general note is read without a machine and stays general.
    f->DataCombo4->setText("");
    selectNote(f->DataGrid3, guanti);
    EXPECT_EQ(f->Txt_Grid->Text(), "1");
    f->DataGrid1->select(0);
    EXPECT_EQ(texts({f->DataCombo3, f->Txt_Nota}), QStringList({"", "Ordinare guanti"}));
    f->Txt_Nota->setText("Ordinare guanti e occhiali");
    f->Cmd_Add_Note->click();
    EXPECT_EQ(note(guanti).section('|', 0, 0) + note(guanti).section('|', 4, 4), "0Ordinare guanti e occhiali");

    // A machine number: its notes, and they are notes of a machine.
    f->DataGrid2->select(1);
    EXPECT_EQ(texts({f->Cmd_Add_Note, f->Txt_Grid}), QStringList({"INSERISCI NOTA", "0"}));
    EXPECT_EQ(keys(f->DataGrid1), (QList<int>{filtri}));
    EXPECT_EQ(f->DataGrid2->Row(), 1);
    f->DataGrid1->select(0);
    EXPECT_EQ(f->DataCombo1->Text(), "2");

    // Found through the search: the note clicked, though the clearing empties the filter.
    f->Txt_Search->setText("guanti");
    ASSERT_EQ(keys(f->DataGrid3), (QList<int>{guanti}));
    f->DataGrid3->select(0);
    EXPECT_EQ(keys(f->DataGrid1), (QList<int>{guanti}));
    EXPECT_EQ(texts({f->Txt_Search, f->Frame2, f->Txt_Grid}), QStringList({"", "TUTTE LE NOTE: 3", "1"}));
    EXPECT_EQ(f->DataGrid3->cellText(f->DataGrid3->Row(), "ID"), QString::number(guanti));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form3Test, ASelectionInAnEmptyListSaysThereAreNoNotes)
{
    setRegister("2", "3", true); // TORNIO T200 10 has no notes
    Form3* f = form3();
    ASSERT_EQ(f->DataGrid1->RecordCount(), 0);
    f->DataGrid1_RowColChange();
    const vb::ShownBox b = oneBox();
    EXPECT_EQ(b.title, "NON CI SONO NOTE");
    EXPECT_TRUE(kit::errorBox(b, 6061));
}

TEST_F(Form3Test, SymbolsGoWhereTheLastChangeOrClickLeftTheCaret)
{
    Form3* f = form3();
    EXPECT_FALSE(f->Frame5->isVisible());
    f->show();
    f->Txt_Nota->typeText("abc");
    EXPECT_TRUE(f->Frame5->isVisible()) << "the symbols while the text has the focus";
    EXPECT_EQ(texts({f->txt_Lunghezza, f->Txt_Len}), QStringList({"abc", "3"}));
    // Arrow keys move the caret and nothing else: the symbol lands after the "c".
    f->Txt_Nota->setSelStart(1);
    f->Cmd_Diametro->click();
    EXPECT_EQ(f->Txt_Nota->Text(), "abcØ");
    // A click in the text is kept.
    f->Txt_Nota->focusIn();
    f->Txt_Nota->setSelStart(2);
    f->Txt_Nota->click();
    f->Cmd_Un_Mezzo->click();
    EXPECT_EQ(f->Txt_Nota->Text(), "ab½cØ");
    // Over a line end, counted as two characters as in the saved text.
    f->Txt_Nota->setText("");
    f->Txt_Nota->typeText("ab");
    f->Txt_Nota->keyPress(13);
    f->Txt_Nota->typeText("cd");
    f->Txt_Nota->focusIn();
    f->Txt_Nota->setSelStart(4);
    f->Txt_Nota->click();
    f->Cmd_Radice->click();
    EXPECT_EQ(f->Txt_Nota->Text(), "ab\r\nc\\/¯¯d");
    f->Cmd_Un_Quarto->click();
    EXPECT_EQ(f->Txt_Nota->Text(), "¼ab\r\nc\\/¯¯d") << "a text set by a button leaves the caret at its start";

    f->Txt_Search->focusIn();
    EXPECT_FALSE(f->Frame5->isVisible());
    f->Txt_Nota->focusIn();
    f->DataCombo3->MouseMove();
    EXPECT_FALSE(f->Frame5->isVisible());
}

TEST_F(Form3Test, PicturesShowFitAndAMissingOneIsNamedOnce)
{
    const QString photo = picture("pompa.bmp");
    exec(QStringLiteral("UPDATE Tbl_Maintenance_Note SET Images = 'pompa.bmp', Percorso = '%1' WHERE ID = %2")
             .arg(photo)
             .arg(olio));
    exec(QStringLiteral("UPDATE Tbl_Maintenance_Note SET Images = 'via.jpg', Percorso = '/nessuna/cartella/via.jpg' "
                        "WHERE ID = %1")
             .arg(filtri));
    Form3* f = form3();
    f->show();
    selectNote(f->DataGrid3, olio);
    EXPECT_TRUE(f->Image4->isVisible() && !f->Cmd_Photo->isVisible());
    EXPECT_EQ(QStringList({f->Image4->Picture(), f->Image2->Picture()}), QStringList({photo, photo}));
    EXPECT_TRUE(f->Image4->Width() <= f->Cmd_Photo->Width() && f->Image4->Height() <= f->Cmd_Photo->Height())
        << "fitted in the button's place";
    f->Image4->MouseMove();
    EXPECT_TRUE(f->Frame4->isVisible());
    f->MouseMove();
    EXPECT_FALSE(f->Frame4->isVisible());
    EXPECT_TRUE(boxes().empty());

    selectNote(f->DataGrid3, filtri);
    const auto b = boxes();
    ASSERT_EQ(b.size(), 1u) << "once for the change of the path, not for the name";
    EXPECT_BOX(b[0], "PERCORSO IMMAGINE NONVALIDO",
               "Impossibile caricare l'immagine [via.jpg] ... Controlla che il seguente percorso "
               "dell'Immagine [/nessuna/cartella/via.jpg]  sia valido!",
               0);
    EXPECT_EQ(note(filtri).section('|', 8), "/nessuna/cartella/via.jpg") << "the note is left as it is";

    // The dialog: cancelled, nothing; refused, nothing stored.
    vb::FileDialogService::queueAnswers({QString()});
    f->Image4->click();
    const auto asked = vb::FileDialogService::takeShown();
    ASSERT_EQ(asked.size(), 1u);
    const auto& d = asked[0];
    EXPECT_EQ(QStringList({d.title, d.filter, QString::number(d.filterIndex), d.defaultExt, d.initDir, d.fileName}),
              QStringList({"Selezionare il file da aprire",
                           "JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC FILES)|*.Gif",
                           "1", "Jpg", vb::AppPath() + "/", "/nessuna/cartella/via.jpg"}));
    EXPECT_TRUE(boxes().empty());
    const QString other = picture("valvola.bmp");
    vb::FileDialogService::queueAnswers({other});
    answer({answer::No});
    f->Image4->click();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(note(filtri).section('|', 7, 7), "via.jpg");

    // Saved: the one picture of the note is replaced, whichever the answer.
    vb::FileDialogService::queueAnswers({other});
    answer({answer::Yes, answer::No});
    f->Image4->MouseMove();
    f->Image2->click();
    const auto asks = boxes();
    ASSERT_EQ(asks.size(), 2u);
    EXPECT_BOX(asks[0], "SALVA IMMAGINE'valvola.bmp'", "Vuoi salvare l'Immagine 'valvola.bmp' ?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_BOX(asks[1], "VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?'valvola.bmp'",
               "SI per Aggiungere l'Immagine, NO per sostituire quella esistente'valvola.bmp' ?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_EQ(note(filtri).section('|', 7), "valvola.bmp|" + other);
    EXPECT_EQ(f->Image2->Picture(), other);
    EXPECT_EQ(rows("SELECT ID FROM Tbl_Maintenance_Note").size(), 3u);
}

TEST_F(Form3Test, NotesFileIsCreatedOnceAndKeepsWhatTheUserWrote)
{
    Form3* f = form3();
    const QString file = vb::AppFile("Note.txt");
    f->Cmd_Apri_Txt->click();
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_EQ(QFile(file).size(), 0);
    EXPECT_EQ(vb::OpenFileService::takeOpened(), (std::vector<QString>{file}));
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::Append));
        out.write("da ordinare: cinghie\n");
    }
    f->Cmd_Apri_Txt->click();
    QFile in(file);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    EXPECT_EQ(in.readAll(), "da ordinare: cinghie\n");
    EXPECT_EQ(vb::OpenFileService::takeOpened().size(), 1u);
    EXPECT_TRUE(boxes().empty()) << "no message for the user's own file";
}

TEST_F(Form3Test, PrintsFollowTheFilterAndTheMachinePrintResetsIt)
{
    start(); // the main screen hosts the previews
    boxes();
    Form3* f = form3();
    f->Cmd_Print->click();
    ASSERT_TRUE(reports::IsReportLoaded("DataReport10"));
    QStringList t = printed("DataReport10");
    EXPECT_TRUE(t.contains("NOTE GENERALI 15/11/2026") && t.contains("Ordinare guanti"))
        << "a general note prints without its machine";

    f->DataCombo5->setText("Guasto");
    f->Cmd_Print->click();
    EXPECT_FALSE(reports::IsReportLoaded("DataReport10"));
    t = printed("DataReport18");
    EXPECT_TRUE(t.contains("NOTE Guasto") && t.contains("Cambiato olio"));
    EXPECT_FALSE(t.contains("Ordinare guanti"));

    f->DataCombo4->setText("Meccanico");
    f->Cmd_Print->click();
    t = printed("DataReport19");
    EXPECT_TRUE(t.contains("NOTE Meccanico") && t.contains("Controllo olio e filtri"));

    f->Txt_Search->setText("olio");
    f->Cmd_Print->click();
    t = printed("DataReport20");
    EXPECT_TRUE(t.contains("Cerca 'olio'") && t.contains("Cambiato olio"));
    EXPECT_FALSE(t.contains("Ordinare guanti"));

    f->Cmd_Print_Macchin->click();
    EXPECT_FALSE(reports::IsReportLoaded("DataReport20"));
    EXPECT_EQ(f->Txt_Specifica_Note->Text(), "0");
    t = printed("DataReport21");
    EXPECT_TRUE(t.contains("NOTE MACCHINE") && t.contains("AX100"));
    EXPECT_FALSE(t.contains("Ordinare guanti")) << "a general note has no machine to group it";
    EXPECT_TRUE(boxes().empty());
}

// ---- the roads in: an execution on the register that offers a note, and the main menu ---------
// --------------------------------------------------------------------

TEST_F(Form3Road, AnExecutionOpensTheNotebookOnItsNoteAndTheTextIsWrittenThere)
{
    start();
    // Unit 2 (PRESSA AX100 "2"), Bimestrale every 8 weeks, due on 27/10/2026.
    const int id = addMaintenance(2, 3, QDate(2026, 9, 1), QDate(2026, 10, 27));
    shell::screens().show("Form7");
    selectRow(form7(), id);
    boxes();
    answer({answer::Yes, answer::Yes});
    form7()->Cmd_Eseguita->click();
    EXPECT_EQ(boxes().size(), 2u);

    // The notebook shows the note just written, of the execution's date.
    ASSERT_TRUE(shell::screens().isLoaded("Form3"));
    Form3* f = form3();
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(texts({f->Txt_ID_MODELLO, f->Txt_ID_NUM, f->Txt_DATA, f->DTPicker2, f->Frame1}),
              QStringList({"1", "2", "27/10/2026", "27/10/2026", "N° 1 Note 27/10/2026"}));
    ASSERT_EQ(f->DataGrid1->RecordCount(), 1);

    // The note has a type and no text yet: its empty columns leave their fields empty.
    f->DataGrid1->select(0);
    EXPECT_EQ(texts({f->Cmd_Add_Note, f->DataCombo3, f->DataCombo2, f->DataCombo1, f->DataCombo5, f->DataCombo4}),
              QStringList({"MODIFICA NOTA", "PRESSA", "AX100", "2", "Manutenzione", ""}));
    f->Txt_Nota->setText("Sostituito il filtro dell'aria");
    f->DataCombo4->setText("Meccanico");
    f->Cmd_Add_Note->click();
    EXPECT_TRUE(boxes().empty());
    // The execution's date stays.
    EXPECT_EQ(
        lines("SELECT ID_MAINTENANCE, ID_MODELLO, ID_NUM, Ultima, NOTE, Tipo_Nota, Tipo_Nota2 FROM "
              "Tbl_Maintenance_Note"),
        QStringList{QString::number(id) + "|1|2|27/10/2026|Sostituito il filtro dell'aria|Manutenzione|Meccanico"});

    // The main menu's entry opens it afresh: every note, the register being reloaded hidden.
    shell::screens().control("frmMain", "lblNoteBooks")->click();
    f = form3();
    ASSERT_TRUE(f && f->isVisible());
    EXPECT_EQ(texts({f->Frame1, f->Frame3}), QStringList({"N° 1 Note 15/11/2026", "NOTE MACCHINE: 1"}));
}
