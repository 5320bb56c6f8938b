// The parts register of Form2: the two lists, insert with its twin check, edit with the
// description carried to past interventions, delete, the searches, the field rules, the
// prints and the gallery's hand-over.
#include "spares/Form2.h"

#include "reports/ReportViewer.h"
#include "support/Fields.h"
#include "support/ScreenTest.h"
#include "support/Shown.h"
#include "support/SparesTest.h"

#include <QImage>
#include <QTimer>

using spares::Form2;
namespace answer = vb::answer;
using namespace vb::mb;

namespace {

class Form2Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        kit::partsRegister(plant);
    }

    static Form2* form() { return screen<Form2>("Form2"); }

    /// A category, then one of its parts, as two clicks do.
    static void pick(Form2* f, const QString& category, const QString& part = {})
    {
        f->List1->choose(category);
        if (!part.isEmpty())
            f->List2->choose(part);
    }
};

} // namespace

TEST_F(Form2Test, LoadListsCategoriesAndAClickListsTheirParts)
{
    Form2* f = form();
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO", "VITE", "VITE M8"}));
    EXPECT_EQ(f->Label2->Caption(), "3");
    EXPECT_EQ(f->DataCombo1->items(), QStringList({"lt", "pz"}));
    EXPECT_TRUE(kit::enabledOf({f->Cmd_Edit, f->Cmd_Photo}).isEmpty());

    pick(f, "VITE M8");
    EXPECT_EQ(kit::texts({f->Text1, f->TextRICAMBI, f->DataCombo1}), QStringList({"1", "VITE M8", "pz"}));
    EXPECT_EQ(f->List2->items(), QStringList({"Brugola", "Testa esagonale"}));
    EXPECT_TRUE(boxes().empty());

    f->List2->choose("Testa esagonale");
    EXPECT_EQ(kit::texts({f->TextID_DESCR_RIC, f->Txt_Descrizione, f->Txt_Codice, f->TextCosto, f->Txt_Giacenza,
                          f->Txt_Scorta, f->TextNOTE}),
              QStringList({"1", "Testa esagonale", "V8-1", "0,35", "100", "20", "zincata"}));
    // A part key lets the save through.
    EXPECT_EQ(kit::enabledOf({f->Cmd_Edit, f->Cmd_Photo}), QStringList({"Cmd_Edit", "Cmd_Photo"}));
    // No NOTE on the other part: the field stays as cleared.
    f->List2->choose("Brugola");
    EXPECT_EQ(kit::texts({f->TextID_DESCR_RIC, f->TextNOTE}), QStringList({"2", ""}));

    // A category with no parts warns while browsing.
    pick(f, "VITE");
    EXPECT_BOX(oneBox(), "RICAMBIO [VITE] MANCANTE!!", "Non è stata trovato nessun Ricambio [VITE]!!!", Exclamation);
    EXPECT_EQ(f->List2->ListCount(), 0);
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());
}

TEST_F(Form2Test, InsertRoadWithTheTwinCheckAndThePriceRules)
{
    Form2* f = form();
    pick(f, "VITE M8", "Brugola");
    f->Cmd_Add->click();
    EXPECT_EQ(kit::texts({f->Cmd_Edit, f->Text1, f->Txt_Descrizione}), QStringList({"SALVA", "", ""}));
    EXPECT_EQ(kit::enabledOf({f->Cmd_Edit, f->Cmd_Add, f->Cmd_Delete}), QStringList({"Cmd_Edit"}));

    // At once: no category chosen yet.
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI",
               "Non sono stati compilati tutti i dati richiesti o non è stato selezionato nessun Ricambi", Critical);

    // Picking the category keeps the insert mode, and its having no parts is no warning.
    pick(f, "VITE");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(kit::texts({f->Text1, f->Cmd_Edit}), QStringList({"2", "SALVA"}));

    // "VITE" is part of "VITE M8", which has a Brugola: refused, still inserting.
    f->Txt_Descrizione->typeText("Brugola");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "RICAMBIO GIA ESISTENTE", "Un Ricambio simile a questo, è gia presente !!!", Exclamation);
    EXPECT_EQ(f->Cmd_Edit->Caption(), "SALVA");
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi"), QStringList{"3"});

    // A negative price ends the save in silence.
    retype(f->Txt_Descrizione, "Autofilettante");
    retype(f->TextCosto, "-1");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi"), QStringList{"3"});

    retype(f->TextCosto, "1,25");
    f->Txt_Giacenza->typeText("3a0");
    f->Txt_Codice->typeText("AF-4");
    f->Cmd_Edit->click();
    EXPECT_TRUE(boxes().empty());
    // The stock field drops the letter.
    EXPECT_EQ(lines("SELECT ID_Ricambi, Ricambi, Costo * 100, Giacenza, Scorta, Codice FROM Tbl_Descrizione_Ricambi "
                    "WHERE Descrizione = 'Autofilettante'"),
              QStringList{"2|VITE|125|30|0|AF-4"});
    EXPECT_EQ(kit::texts({f->Cmd_Edit, f->Txt_Descrizione}), QStringList({"MODIFICA", ""}));
    EXPECT_TRUE(f->Cmd_Add->isEnabled());
    EXPECT_EQ(f->List2->ListCount(), 0);

    // A price that is no number is blamed on the price, and the save goes on regardless:
    // the part is written without a price.
    f->Cmd_Add->click();
    pick(f, "OLIO");
    f->Txt_Descrizione->typeText("Motore");
    retype(f->TextCosto, "abc");
    f->Cmd_Edit->click();
    EXPECT_BOX(boxes().at(0), "DATI ERRARI !!!", "Il Prezzo può contenere solo dati Numerici!!!", Exclamation);
    EXPECT_EQ(column("SELECT Costo FROM Tbl_Descrizione_Ricambi WHERE Descrizione = 'Motore'"), QStringList{"<null>"});
}

TEST_F(Form2Test, EditOverwritesThePartAndCarriesTheDescriptionToPastInterventions)
{
    Form2* f = form();
    pick(f, "VITE M8", "Testa esagonale");
    retype(f->Txt_Descrizione, "Testa esagonale lunga");
    retype(f->Txt_Giacenza, "80");

    answer({answer::No});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Ricambio **VITE M8**",
               "Stai per modificare i dati del Ricambio [VITE M8] Vuoi Procedere??", YesNo + Question);
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 1"),
              QStringList{"Testa esagonale"});
    EXPECT_EQ(f->Txt_Descrizione->Text(), "Testa esagonale lunga") << "No reloads nothing";

    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(boxes().size(), 1u);
    // The stock typed replaces the stock.
    EXPECT_EQ(lines("SELECT Descrizione, Giacenza FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 1"),
              QStringList{"Testa esagonale lunga|80"});
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 1"),
              QStringList({"Testa esagonale lunga", "Testa esagonale lunga"}));
    EXPECT_EQ(f->List2->ListCount(), 0);
    EXPECT_EQ(f->Label2->Caption(), "3");

    // A new category name: the category and this part take it; the other part and the
    // past interventions keep the old text.
    pick(f, "VITE M8", "Brugola");
    retype(f->TextRICAMBI, "VITI M8");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Ricambio **VITE M8**",
               "Il Ricambio [VITE M8] Sta per essere modificato con [VITI M8] Vuoi Procedere??", YesNo + Question);
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricambi WHERE ID_RICAMBI = 1"), QStringList{"VITI M8"});
    EXPECT_EQ(
        column("SELECT Ricambi FROM Tbl_Descrizione_Ricambi WHERE ID_Ricambi = 1 ORDER BY ID_DESCRIZIONE_RICAMBI"),
        QStringList({"VITE M8", "VITI M8"}));
    EXPECT_EQ(column("SELECT Ricambi FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 2"), QStringList{"VITE M8"});
    EXPECT_EQ(f->List1->items(), QStringList({"OLIO", "VITE", "VITI M8"}));

    // The first part still holds the old category text, so under the new line it is not
    // found and the fields stay cleared.
    pick(f, "VITI M8", "Testa esagonale lunga");
    EXPECT_EQ(f->TextID_DESCR_RIC->Text(), "");

    // A category alone: its unit changes; without a part key the part and the cascade are
    // passed over, each with the price's box.
    boxes();
    pick(f, "OLIO");
    f->DataCombo1->setText(QString());
    f->DataCombo1->typeText("kg");
    f->Txt_Descrizione->typeText("Idraulico");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(kit::titles(), QStringList({"Modifica Ricambio **OLIO**", "DATI ERRARI !!!", "DATI ERRARI !!!"}));
    EXPECT_EQ(column("SELECT Unita_Misura FROM Tbl_Ricambi WHERE ID_RICAMBI = 3"), QStringList{"kg"});
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi WHERE Descrizione = 'Idraulico'"), QStringList{"1"});
}

TEST_F(Form2Test, EditCascadeTakesTheDescriptionAsTypedSoAnApostropheStopsIt)
{
    Form2* f = form();
    pick(f, "VITE M8", "Brugola");
    retype(f->Txt_Descrizione, "Brugola d'acciaio");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    // The part takes the text with one apostrophe; the statement for the interventions
    // breaks on it and its error is shown plainly, under the program's title; they keep
    // the old text.
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 2"),
              QStringList{"Brugola d'acciaio"});
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 2"), QStringList{"Brugola"});
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(shown[1].title == "VELMORA" && kit::errorBox(shown[1], -2147217900));
    // The list is refreshed all the same.
    EXPECT_EQ(f->List2->ListCount(), 0);

    // A later search finds the part by its apostrophe.
    f->Txt_Search_Desc->typeText("d'acc");
    EXPECT_EQ(f->List2->items(), QStringList{"Brugola d'acciaio"});
}

TEST_F(Form2Test, DeleteAsksAndLeavesInterventionsBehind)
{
    Form2* f = form();
    // A category but no part: the statement has no key and nothing goes.
    pick(f, "VITE M8");
    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_BOX(oneBox(), "Eliminazione Ricambio **VITE M8**", "Vuoi Veramente eliminare il Ricambio selezionato?",
               YesNo + Question);
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi"), QStringList{"3"});

    pick(f, "VITE M8", "Brugola");
    answer({answer::No});
    f->Cmd_Delete->click();
    EXPECT_EQ(column("SELECT Count(*) FROM Tbl_Descrizione_Ricambi"), QStringList{"3"});
    EXPECT_EQ(f->TextID_DESCR_RIC->Text(), "2");

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Descrizione_Ricambi ORDER BY ID_DESCRIZIONE_RICAMBI"),
              QStringList({"Testa esagonale", "Idraulico"}));
    EXPECT_EQ(column("SELECT Descrizione FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 2"), QStringList{"Brugola"});
    EXPECT_EQ(f->List2->ListCount(), 0);
    EXPECT_EQ(f->List1->ListCount(), 3);
}

TEST_F(Form2Test, SearchesByCategoryDescriptionAndUnit)
{
    Form2* f = form();
    pick(f, "VITE M8", "Brugola");

    // A key in a search field empties the parts, the fields and the other fields.
    f->Txt_Search_UN_MIS->setText("x");
    f->Txt_Search->typeText("vite");
    EXPECT_EQ(f->List1->items(), QStringList({"VITE", "VITE M8"}));
    EXPECT_EQ(f->List2->ListCount(), 0);
    EXPECT_EQ(kit::texts({f->Label2, f->Txt_Descrizione, f->Txt_Search_UN_MIS}), QStringList({"2", "", ""}));
    EXPECT_TRUE(boxes().empty());

    // Each word but the last must end the name: "vite m8" finds nothing, "8 vite" finds it.
    retype(f->Txt_Search, "vite m8");
    EXPECT_BOX(kit::lastBox(), "RICAMBIO NON TROVATO !!",
               "Non è stata trovata nessun Ricambio con le seguenti parole chiave < vite m8 > !!!", Exclamation);
    EXPECT_EQ(f->List1->ListCount(), 0);
    EXPECT_EQ(f->Label2->Caption(), "0");
    retype(f->Txt_Search, "8 vite");
    EXPECT_EQ(f->List1->items(), QStringList{"VITE M8"});

    // Descriptions fill List2 and leave List1 empty; a click then goes by description.
    f->Txt_Search_Desc->typeText("esag");
    EXPECT_EQ(f->List1->ListCount(), 0);
    EXPECT_EQ(f->List2->items(), QStringList{"Testa esagonale"});
    EXPECT_EQ(kit::texts({f->Txt_Search, f->Label2}), QStringList({"", "1"}));
    f->List2->choose("Testa esagonale");
    EXPECT_EQ(kit::texts({f->TextID_DESCR_RIC, f->Text1}), QStringList({"1", "1"}));
    boxes();
    // Nothing found quotes the category field, empty by now.
    retype(f->Txt_Search_Desc, "zzz");
    EXPECT_BOX(kit::lastBox(), "RICAMBIO NON TROVATO !!",
               "Non è stata trovata nessun Ricambio con le seguenti parole chiave <  > !!!", Exclamation);

    f->Txt_Search_UN_MIS->setText(QString());
    f->Txt_Search_UN_MIS->typeText("l");
    EXPECT_EQ(f->List1->items(), QStringList{"OLIO"});
    boxes();
    retype(f->Txt_Search_UN_MIS, "q");
    EXPECT_BOX(kit::lastBox(), "Definizione non trovata !!",
               "Non è stata trovata nessuna Definizione con le seguenti parole chiave < q > !!!", Exclamation);
    // Two words name the column UN_MIS, which does not exist: the error is shown plainly.
    f->Txt_Search_UN_MIS->setText(QString());
    f->Txt_Search_UN_MIS->typeText("p");
    EXPECT_EQ(f->List1->items(), QStringList({"VITE", "VITE M8"}));
    boxes();
    f->Txt_Search_UN_MIS->typeText(" z");
    EXPECT_EQ(kit::lastBox().title, "VELMORA");
    EXPECT_EQ(f->List1->ListCount(), 0);

    // VISUALIZZA TUTTO empties the searches and lists everything again.
    f->Command1->click();
    EXPECT_EQ(f->List1->ListCount(), 3);
    EXPECT_EQ(kit::texts({f->Txt_Search_UN_MIS, f->Label2}), QStringList({"", "3"}));
}

TEST_F(Form2Test, FieldRulesAndKeys)
{
    Form2* f = form();
    f->Txt_Scorta->typeText("1x2");
    EXPECT_EQ(f->Txt_Scorta->Text(), "12");
    f->Txt_Giacenza->typeText("-5");
    EXPECT_EQ(f->Txt_Giacenza->Text(), "5");
    // The price takes any key; emptied it is "0" again, the caret after it.
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());
    f->TextCosto->typeText("abc");
    EXPECT_EQ(f->TextCosto->Text(), "abc");
    EXPECT_TRUE(f->Cmd_Edit->isEnabled()) << "typing lets the save through";
    f->TextCosto->focusOut();
    f->TextCosto->focusIn(); // the whole text selected, then Backspace
    f->TextCosto->keyPress(8);
    EXPECT_EQ(f->TextCosto->Text(), "0");
    EXPECT_EQ(f->TextCosto->SelStart(), 1);
}

TEST_F(Form2Test, PrintsAllPartsByCategoryAndWhereOneIsFitted)
{
    start();
    boxes();
    shell::screens().show("Form2");
    Form2* f = form();

    f->Cmd_print_A->click();
    ASSERT_TRUE(reports::IsReportVisible("DataReport4"));
    QStringList t = printed("DataReport4");
    EXPECT_LT(t.indexOf("Idraulico"), t.indexOf("Brugola"));
    EXPECT_LT(t.indexOf("Brugola"), t.indexOf("Testa esagonale"));

    f->Cmd_Print_Group->click();
    ASSERT_TRUE(reports::IsReportVisible("DataReport11"));
    t = printed("DataReport11");
    EXPECT_TRUE(t.contains("0,35")) << "the category's lowest cost";
    EXPECT_TRUE(t.contains("1.234,50")) << "under the Standard format";

    // Presence needs a part.
    f->Cmd_Presence->click();
    EXPECT_BOX(oneBox(), "RICAMBIO NON SELEZIONATA!", "Non hai selezionato nessuna Ricambio!", Information);
    EXPECT_FALSE(reports::IsReportLoaded("DataReport17"));

    pick(f, "VITE M8", "Testa esagonale");
    f->Cmd_Presence->click();
    ASSERT_TRUE(reports::IsReportVisible("DataReport17"));
    t = printed("DataReport17");
    for (const char* word : {"PRESSA", "TORNIO", "Testa esagonale"})
        EXPECT_TRUE(t.contains(word)) << word;
    EXPECT_TRUE(t.contains("15/11/2026")) << "today's date, no time";
    EXPECT_EQ(reports::ReportWindow("DataReport17")->geometry().left(), vb::twipsToPixels(2200));
}

TEST_F(Form2Test, PictureTakesThePhotoButtonsPlaceAndTheGalleryGetsThePart)
{
    QImage picture(300, 150, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QString file = path() + "/vite.png";
    ASSERT_TRUE(picture.save(file));
    exec(QStringLiteral("INSERT INTO Tbl_Images_Desc_Ricambi (ID_DESCRIZIONE_RICAMBI, Images, Percorso) "
                        "VALUES (1, 'vite.png', '%1')")
             .arg(file));

    Form2* f = form();
    pick(f, "VITE M8", "Testa esagonale");
    EXPECT_EQ(kit::texts({f->Txt_Images, f->Txt_ID_IMAGES_DC}), QStringList({"vite.png", "1"}));
    EXPECT_FALSE(f->Image4->isHidden());
    EXPECT_TRUE(f->Cmd_Photo->isHidden());
    // Wider than the button: the button's width decides, the proportions stay.
    EXPECT_EQ(f->Image4->Width(), f->Cmd_Photo->Width());
    EXPECT_EQ(f->Image4->Height(), f->Cmd_Photo->Width() / 2);
    EXPECT_EQ(f->Image4->ToolTipText(), "45%");

    // A part without pictures shows the button again.
    f->List2->choose("Brugola");
    EXPECT_TRUE(f->Image4->isHidden());
    EXPECT_FALSE(f->Cmd_Photo->isHidden());

    // The gallery is given the part (and, from the button, the picture) and shown modally.
    standIn("Form1", QStringList{"T:TextID_DESCR_RIC", "T:TextID_IMAGES_DC"});
    QStringList seen;
    auto closeGallery = [&] {
        QTimer::singleShot(0, [&] {
            for (const char* c : {"TextID_DESCR_RIC", "TextID_IMAGES_DC"})
                seen << shell::screens().control("Form1", c)->vbProperty("Text").toString();
            shell::screens().unload("Form1");
        });
    };
    closeGallery();
    f->Cmd_Photo->click();
    EXPECT_EQ(seen, QStringList({"2", ""}));
    pick(f, "VITE M8", "Testa esagonale");
    seen.clear();
    closeGallery();
    f->Image4->click();
    EXPECT_EQ(seen, QStringList({"1", ""})) << "the picture's key is not handed from the picture";
}
