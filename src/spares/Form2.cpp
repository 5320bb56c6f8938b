#include "spares/Form2.h"

#include "controls/PictureFit.h"
#include "controls/ScreenKit.h"
#include "reports/ReportLayout.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "spares/EntryFields.h"
#include "spares/RicambiFile.h"
#include "store/DataStore.h"

namespace spares {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;
using reports::Section;

namespace {

const QString& Saving = vb::caption::Save;
const QString& Browsing = vb::caption::Edit;

// The column of entry fields, in twips.
constexpr int FieldLabelLeft = 8280;
constexpr int FieldLeft = 9840;
constexpr int FieldWidth = 3600;
constexpr int RowHeight = 315;
constexpr int RowStep = 420;

void notFoundBox(const QString& text, bool byUnit)
{
    if (byUnit)
        vb::MsgBox(QStringLiteral("Non è stata trovata nessuna Definizione con le seguenti parole chiave < ") + text +
                       QStringLiteral(" > !!!"),
                   mb::Exclamation, QStringLiteral("Definizione non trovata !!"));
    else
        vb::MsgBox(QStringLiteral("Non è stata trovata nessun Ricambio con le seguenti parole chiave < ") + text +
                       QStringLiteral(" > !!!"),
                   mb::Exclamation, QStringLiteral("RICAMBIO NON TROVATO !!"));
}

void noRowBox(const QString& text, bool byUnit)
{
    if (byUnit)
        vb::MsgBox(QStringLiteral("Nessuna Definizione trovata contenente [ ") + text + QStringLiteral(" ]"),
                   mb::Critical, QStringLiteral("DEFINIZIONE NON TROVATA!!"));
    else
        vb::MsgBox(QStringLiteral("Nessuna Ricambio contenente [ ") + text + QStringLiteral(" ]"), mb::Critical,
                   QStringLiteral("RICAMBIO NON TROVATO!!"));
}

} // namespace

Form2::Form2(QWidget* owner) : vb::Form(owner, QStringLiteral("Form2"), QStringLiteral("DESCRIZIONE RICAMBI"))
{
    buildControls();
    connectEvents();
}

void Form2::buildControls()
{
    Move(0, 0, 13680, 7320);
    const vb::ScreenKit kit(this, {.button = 435, .field = RowHeight});

    // The two lists: categories, and the parts of the one clicked.
    Label1 = kit.label(this, "Label1", QStringLiteral("RICAMBI"), 120, 120, 3600);
    List1 = kit.list(this, "List1", 120, 400, 3600, 4560);
    List1->setFocusHighlight(true);
    Label2 = kit.label(this, "Label2", QStringLiteral("0"), 120, 5010, 3600);
    Label3 = kit.label(this, "Label3", QStringLiteral("DESCRIZIONI"), 3840, 120, 4200);
    List2 = kit.list(this, "List2", 3840, 400, 4200, 4560);
    List2->setFocusHighlight(true);

    // The part.
    int top = 400;
    auto caption = [&](const char* labelName, const QString& text) {
        return kit.label(this, labelName, text, FieldLabelLeft, top + 30, FieldLeft - FieldLabelLeft - 60);
    };
    auto field = [&](vb::Label*& l, const char* labelName, const QString& text, const char* name, int width) {
        l = caption(labelName, text);
        vb::TextBox* t = kit.field(this, name, FieldLeft, top, width);
        top += RowStep;
        return t;
    };
    TextRICAMBI = field(Label4, "Label4", QStringLiteral("Ricambio:"), "TextRICAMBI", FieldWidth);
    Label5 = caption("Label5", QStringLiteral("Unità di Misura:"));
    DataCombo1 = kit.dataCombo(this, "DataCombo1", FieldLeft, top, FieldWidth);
    Adodc1 = new vb::Adodc(this, QStringLiteral("Adodc1"));
    top += RowStep;
    Txt_Descrizione = field(Label6, "Label6", QStringLiteral("Descrizione:"), "Txt_Descrizione", FieldWidth);
    Txt_Codice = field(Label7, "Label7", QStringLiteral("Codice:"), "Txt_Codice", FieldWidth);
    const int photoTop = top;
    TextCosto = field(Label8, "Label8", QStringLiteral("Costo €:"), "TextCosto", 1400);
    Txt_Giacenza = field(Label9, "Label9", QStringLiteral("Giacenza:"), "Txt_Giacenza", 1400);
    Txt_Scorta = field(Label10, "Label10", QStringLiteral("Scorta Minima:"), "Txt_Scorta", 1400);
    for (vb::TextBox* t : {TextCosto, Txt_Giacenza, Txt_Scorta})
        t->setText(QStringLiteral("0"));
    Label11 = caption("Label11", QStringLiteral("Note:"));
    TextNOTE = new vb::TextBox(this, QStringLiteral("TextNOTE"), true);
    TextNOTE->Move(FieldLeft, top, FieldWidth, 900);

    // The picture stands in the button's place once the part has one.
    Cmd_Photo = kit.button(this, "Cmd_Photo", QStringLiteral("INSERISCI IMMAGINE"), FieldLeft + 1560, photoTop,
                           FieldWidth - 1560, 2 * RowStep + RowHeight);
    Cmd_Photo->setEnabled(false);
    Image4 = new vb::Image(this, QStringLiteral("Image4"));
    Image4->Move(Cmd_Photo->Left(), Cmd_Photo->Top(), Cmd_Photo->Width(), Cmd_Photo->Height());
    Image4->setVisible(false);

    Text1 = kit.hidden("Text1");
    TextID_DESCR_RIC = kit.hidden("TextID_DESCR_RIC");
    Txt_ID_IMAGES_DC = kit.hidden("Txt_ID_IMAGES_DC");
    Txt_Images = kit.hidden("Txt_Images");
    Txt_Percorso = kit.hidden("Txt_Percorso");

    // Commands.
    top = 4560;
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), FieldLabelLeft, top, 1640);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Browsing, FieldLabelLeft + 1760, top, 1640);
    // A part key or typing in the fields lets a save through.
    Cmd_Edit->setEnabled(false);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), FieldLabelLeft + 3520, top, 1640);
    top += 495;
    constexpr int CommandsWidth = 5160;
    Command1 = kit.button(this, "Command1", QStringLiteral("VISUALIZZA TUTTO"), FieldLabelLeft, top, CommandsWidth);
    top += 495;
    Cmd_print_A =
        kit.button(this, "Cmd_print_A", QStringLiteral("STAMPA TUTTI I RICAMBI"), FieldLabelLeft, top, CommandsWidth);
    top += 495;
    Cmd_Print_Group = kit.button(this, "Cmd_Print_Group", QStringLiteral("STAMPA IN ORDINE ALFABETICO"), FieldLabelLeft,
                                 top, CommandsWidth);
    top += 495;
    Cmd_Presence = kit.button(this, "Cmd_Presence", QStringLiteral("PRESENZA MACCHINE"), FieldLabelLeft, top, 2520);
    Cmd_Save_txt =
        kit.button(this, "Cmd_Save_txt", QStringLiteral("SALVA IN FILE Txt"), FieldLabelLeft + 2640, top, 2520);

    // Searches, each under the list it fills; the units under the categories.
    Txt_Search = kit.framedField(this, "Frame1", QStringLiteral("CERCA NEI RICAMBI"), "Txt_Search", 120, 5400, 3600,
                                 780, 300, &Frame1);
    Txt_Search_Desc = kit.framedField(this, "Frame2", QStringLiteral("CERCA NELLE DESCRIZIONI"), "Txt_Search_Desc",
                                      3840, 5400, 4200, 780, 300, &Frame2);
    Txt_Search_UN_MIS = kit.framedField(this, "Frame3", QStringLiteral("CERCA NELLE UNITà DI MISURA"),
                                        "Txt_Search_UN_MIS", 120, 6300, 3600, 780, 300, &Frame3);
}

void Form2::connectEvents()
{
    List1->Click = [this] { List1_Click(); };
    List2->Click = [this] { List2_Click(); };
    TextID_DESCR_RIC->Change = [this] { TextID_DESCR_RIC_Change(); };
    Txt_Images->Change = [this] { Txt_Images_Change(); };
    TextCosto->Change = [this] { TextCosto_Change(); };
    for (vb::Control* typed : std::initializer_list<vb::Control*>{TextCosto, TextRICAMBI, TextNOTE, DataCombo1})
        typed->KeyPress = [this](int&) { Cmd_Edit->setEnabled(true); };
    Txt_Giacenza->KeyPress = [](int& k) { digitsOnly(k); };
    Txt_Scorta->KeyPress = [](int& k) { digitsOnly(k); };

    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Command1->Click = [this] { Command1_Click(); };
    Cmd_print_A->Click = [this] { Cmd_print_A_Click(); };
    Cmd_Print_Group->Click = [this] { Cmd_Print_Group_Click(); };
    Cmd_Presence->Click = [this] { Cmd_Presence_Click(); };
    Cmd_Save_txt->Click = [this] { Cmd_Save_txt_Click(); };
    Cmd_Photo->Click = [this] { Cmd_Photo_Click(); };
    Image4->Click = [this] { Image4_Click(); };

    Txt_Search->KeyUp = [this] { Txt_Search_KeyUp(); };
    Txt_Search_Desc->KeyUp = [this] { Txt_Search_Desc_KeyUp(); };
    Txt_Search_UN_MIS->KeyUp = [this] { Txt_Search_UN_MIS_KeyUp(); };
}

// ---- load and the lists -------------------------------------------------------------

void Form2::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] {
        Adodc1->setRecordSource(
            QStringLiteral("Select Unita_Misura From Tbl_Ricambi Group by Unita_Misura Order by Unita_Misura asc"));
        Adodc1->Refresh();
        DataCombo1->bind(Adodc1, QStringLiteral("Unita_Misura"));
    });
    trap.step([&] { Refresh_Category_List(); });
}

void Form2::Refresh_Category_List()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { List1->Clear(); });
    trap.step([&] { List2->Clear(); });
    store::Recordset rs;
    if (trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Ricambi order by Ricambi")); }))
        addRows(trap, List1, rs, QStringLiteral("Ricambi"));
    trap.step([&] { Label2->setCaption(QString::number(List1->ListCount())); });
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { update(); });
}

void Form2::Clear_Fields()
{
    // Text1 stays: it is the category a new part goes into.
    Trap trap = Trap::ignoreAll();
    for (vb::TextBox* t : {TextRICAMBI, TextNOTE, Txt_Descrizione, Txt_Codice, Txt_Images, Txt_ID_IMAGES_DC,
                           TextID_DESCR_RIC, Txt_Percorso})
        trap.step([&] { t->setText(QString()); });
    for (vb::TextBox* t : {TextCosto, Txt_Giacenza, Txt_Scorta})
        trap.step([&] { t->setText(QStringLiteral("0")); });
}

void Form2::List1_Click()
{
    // No trap here: an error reaches whoever clicked.
    Clear_Fields();
    const QString name = List1->Text();
    store::Recordset rs;
    rs.Open(QStringLiteral("SELECT * from Tbl_Ricambi ORDER BY Tbl_Ricambi.Ricambi;"));
    rs.setFilter(QStringLiteral("Ricambi like '") + vb::DoubledQuotes(name) + QStringLiteral("'"));
    if (rs.Eof()) {
        List2->Clear();
        vb::MsgBox(QStringLiteral("Non ci sono ") + name + QStringLiteral(" nel DataBase"), mb::Information,
                   QStringLiteral("RICAMBIO NON PRESENTE"));
        return;
    }
    Text1->setText(rs.Fields(QStringLiteral("ID_Ricambi")).Value());
    TextRICAMBI->setText(name);
    DataCombo1->setText(rs.Fields(QStringLiteral("Unita_Misura")).Value());
    if (rs.Fields(QStringLiteral("Ricambi")).Value().toString().isEmpty()) {
        TextRICAMBI->setText(QString());
        return;
    }

    store::Recordset parts;
    parts.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi WHERE ID_RICAMBI = ") +
               vb::KeyText(Text1->Text()) + QStringLiteral(" ORDER by Descrizione"));
    if (parts.Eof()) {
        // Picking the category of a new part is no reason for a warning.
        if (Cmd_Add->isEnabled())
            vb::MsgBox(QStringLiteral("Non è stata trovato nessun Ricambio [") + name + QStringLiteral("]!!!"),
                       mb::Exclamation, QStringLiteral("RICAMBIO [") + name + QStringLiteral("] MANCANTE!!"));
        List2->Clear();
        return;
    }
    List2->Clear();
    while (!parts.Eof()) {
        List2->AddItem(parts.Fields(QStringLiteral("Descrizione")).Value().toString());
        parts.MoveNext();
    }
}

void Form2::List2_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT Tbl_Descrizione_Ricambi.*, Tbl_Ricambi.Unita_Misura FROM "
                               "Tbl_Descrizione_Ricambi INNER JOIN Tbl_Ricambi ON Tbl_Descrizione_Ricambi.ID_Ricambi = "
                               "Tbl_Ricambi.ID_RICAMBI;"));
    });
    // The category goes by the text copied into the part: after a search in descriptions
    // List1 is empty, and the first part of that description decides.
    const QString description = vb::DoubledQuotes(List2->Text());
    trap.step([&] {
        if (!List1->Text().isEmpty())
            rs.setFilter(QStringLiteral("Ricambi like '") + vb::DoubledQuotes(List1->Text()) +
                         QStringLiteral("' And Descrizione like '") + description + QStringLiteral("'"));
        else
            rs.setFilter(QStringLiteral("Descrizione like '") + description + QStringLiteral("'"));
    });
    // A Null leaves its field as cleared.
    struct Copy
    {
        const char* column;
        vb::TextBox* field;
    };
    for (const Copy& c :
         {Copy{"ID_DESCRIZIONE_RICAMBI", TextID_DESCR_RIC}, Copy{"ID_Ricambi", Text1}, Copy{"Note", TextNOTE},
          Copy{"Costo", TextCosto}, Copy{"Ricambi", TextRICAMBI}, Copy{"Giacenza", Txt_Giacenza},
          Copy{"Scorta", Txt_Scorta}, Copy{"Descrizione", Txt_Descrizione}, Copy{"Codice", Txt_Codice}})
        trap.step([&] { c.field->setText(rs.Fields(QString::fromLatin1(c.column)).Value()); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });

    // The part's first picture; Images last, so that it shows.
    store::Recordset pictures;
    trap.step([&] {
        pictures.Open(QStringLiteral("SELECT * FROM Tbl_Images_Desc_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = ") +
                      vb::KeyText(TextID_DESCR_RIC->Text()));
    });
    bool none = true;
    trap.step([&] { none = !pictures.isOpen() || pictures.Eof(); });
    if (none)
        return;
    trap.step([&] { Txt_ID_IMAGES_DC->setText(pictures.Fields(QStringLiteral("ID_IMAGES_DC")).Value()); });
    trap.step([&] { Txt_Percorso->setText(pictures.Fields(QStringLiteral("Percorso")).Value()); });
    trap.step([&] { Txt_Images->setText(pictures.Fields(QStringLiteral("Images")).Value()); });
}

// ---- the fields ---------------------------------------------------------------------

void Form2::TextID_DESCR_RIC_Change()
{
    const bool part = !TextID_DESCR_RIC->Text().isEmpty();
    Cmd_Photo->setEnabled(part);
    Cmd_Edit->setEnabled(part);
}

void Form2::Txt_Images_Change()
{
    Trap trap = Trap::ignoreAll();
    if (Txt_Images->Text().isEmpty()) {
        trap.step([&] { Image4->setVisible(false); });
        trap.step([&] { Cmd_Photo->setVisible(true); });
        return;
    }
    trap.step([&] { Image4->setVisible(true); });
    trap.step([&] { Cmd_Photo->setVisible(false); });
    // A picture whose file has gone leaves the last one in place.
    trap.step([&] { Image4->setPicture(Txt_Percorso->Text()); });
    trap.step([&] {
        Image4->Move(Cmd_Photo->Left(), Cmd_Photo->Top());
        vb::CONTROLLO_IMMAGINE(*Image4, Cmd_Photo->Width(), Cmd_Photo->Height());
    });
}

void Form2::TextCosto_Change()
{
    if (!TextCosto->Text().isEmpty())
        return;
    TextCosto->setText(QStringLiteral("0"));
    TextCosto->setSelStart(TextCosto->Text().size());
}

// ---- insert, save, delete -------------------------------------------------------------

void Form2::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    // Emptied first: clearing the part key would take the save button away again.
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { Text1->setText(QString()); });
    trap.step([&] { Cmd_Edit->setCaption(Saving); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
}

void Form2::Cmd_Edit_Click()
{
    // Every error goes on with the next statement: a type mismatch is blamed on the
    // price, any other is shown plainly. Nulls and refused properties pass in silence.
    Trap trap = Trap::ignoreAll();
    auto step = [&](auto&& statement) {
        trap.clearError();
        if (trap.step(statement))
            return true;
        const int number = trap.lastError();
        if (number == err::TypeMismatch)
            vb::MsgBox(QStringLiteral("Il Prezzo può contenere solo dati Numerici!!!"), mb::Exclamation,
                       QStringLiteral("DATI ERRARI !!!"));
        else if (number != err::InvalidUseOfNull && number != err::InvalidPropertyValue)
            vb::ShowErrorBox(number, trap.lastDescription());
        return false;
    };

    double price = 0;
    if (step([&] { price = vb::CDbl(Variant(TextCosto->Text())).toDouble(); }) && price < 0)
        return;

    if (Text1->Text().isEmpty() || DataCombo1->Text().isEmpty() || Txt_Descrizione->Text().isEmpty() ||
        TextRICAMBI->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non sono stati compilati tutti i dati richiesti o non è stato selezionato nessun "
                                  "Ricambi"),
                   mb::Critical, QStringLiteral("MANCANZA DATI"));
        return;
    }

    if (Cmd_Edit->Caption() == Saving) {
        // A twin: the same description in a category whose name holds this one.
        bool twin = false;
        step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral(
                        "SELECT Tbl_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Descrizione FROM Tbl_Ricambi INNER JOIN "
                        "Tbl_Descrizione_Ricambi ON Tbl_Ricambi.ID_RICAMBI = Tbl_Descrizione_Ricambi.ID_Ricambi GROUP "
                        "BY Tbl_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Descrizione HAVING "
                        "(((Tbl_Ricambi.Ricambi) like '%") +
                    vb::DoubledQuotes(TextRICAMBI->Text()) +
                    QStringLiteral("%') AND ((Tbl_Descrizione_Ricambi.Descrizione) = '") +
                    vb::DoubledQuotes(Txt_Descrizione->Text()) + QStringLiteral("'));"));
            twin = !rs.Eof();
        });
        if (twin) {
            vb::MsgBox(QStringLiteral("Un Ricambio simile a questo, è gia presente !!!"), mb::Exclamation,
                       QStringLiteral("RICAMBIO GIA ESISTENTE"));
            return;
        }
        {
            store::Recordset rs;
            step([&] { rs.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi")); });
            step([&] { rs.AddNew(); });
            step([&] { rs.Fields(QStringLiteral("Ricambi")) = TextRICAMBI->Text(); });
            step([&] { rs.Fields(QStringLiteral("Costo")) = TextCosto->Text(); });
            step([&] { rs.Fields(QStringLiteral("NOTE")) = TextNOTE->Text(); });
            step([&] { rs.Fields(QStringLiteral("Giacenza")) = Txt_Giacenza->Text(); });
            step([&] { rs.Fields(QStringLiteral("Scorta")) = Txt_Scorta->Text(); });
            step([&] { rs.Fields(QStringLiteral("Descrizione")) = Txt_Descrizione->Text(); });
            step([&] { rs.Fields(QStringLiteral("ID_Ricambi")) = vb::CInt(Variant(Text1->Text())); });
            step([&] { rs.Fields(QStringLiteral("Codice")) = Txt_Codice->Text(); });
            step([&] { rs.UpdateBatch(); });
        }
        step([&] { Cmd_Edit->setCaption(Browsing); });
        step([&] { Cmd_Delete->setEnabled(true); });
        step([&] { Cmd_Add->setEnabled(true); });
        step([&] { Refresh_Category_List(); });
        return;
    }

    const QString line = List1->Text();
    if (!confirmCategoryChange(line, TextRICAMBI->Text()))
        return;

    // The category first: a new name or unit here holds for all its parts.
    {
        store::Recordset rs;
        step([&] {
            rs.Open(QStringLiteral("Select * from Tbl_Ricambi where ID_Ricambi =") + vb::KeyText(Text1->Text()));
        });
        step([&] { rs.Fields(QStringLiteral("Ricambi")) = TextRICAMBI->Text(); });
        step([&] { rs.Fields(QStringLiteral("Unita_Misura")) = DataCombo1->Text(); });
        step([&] { rs.UpdateBatch(); });
    }
    // Then the part; the stock typed replaces the stock, with no trace of the difference.
    // Without a part chosen its key is no number: the part and the cascade are passed over
    // with the price's box each.
    const auto part = [this] { return vb::KeyText(TextID_DESCR_RIC->Text()); };
    {
        store::Recordset rs;
        bool found = false;
        step([&] {
            rs.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi where ID_DESCRIZIONE_RICAMBI =") + part());
            found = !rs.Eof();
        });
        if (found) {
            step([&] { rs.Fields(QStringLiteral("Ricambi")) = TextRICAMBI->Text(); });
            step([&] { rs.Fields(QStringLiteral("Costo")) = TextCosto->Text(); });
            step([&] { rs.Fields(QStringLiteral("Descrizione")) = Txt_Descrizione->Text(); });
            step([&] { rs.Fields(QStringLiteral("NOTE")) = TextNOTE->Text(); });
            step([&] { rs.Fields(QStringLiteral("Giacenza")) = Txt_Giacenza->Text(); });
            step([&] { rs.Fields(QStringLiteral("Scorta")) = Txt_Scorta->Text(); });
            step([&] { rs.Fields(QStringLiteral("Codice")) = Txt_Codice->Text(); });
            step([&] { rs.UpdateBatch(); });
        }
    }
    // Past interventions take the new description, not the category's name. The text goes
    // in as typed: with an apostrophe the statement fails, shown plainly, and they keep
    // the old one.
    step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("UPDATE Tbl_Ricerca SET Tbl_Ricerca.Descrizione = '") + Txt_Descrizione->Text() +
                QStringLiteral("' Where ID_DESCRIZIONE_RICAMBI =") + part());
    });
    step([&] { Refresh_Category_List(); });
}

void Form2::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (Text1->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUN Ricambio SELEZIONATO"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare il Ricambio selezionato?"), mb::YesNo + mb::Question,
                   QStringLiteral("Eliminazione Ricambio **") + TextRICAMBI->Text() + QStringLiteral("**")) !=
        vb::answer::Yes)
        return;
    // Interventions, pictures and orders of the part stay. With a category but no part
    // chosen there is no key and nothing goes.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Delete * from Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI  = ") +
                vb::KeyText(TextID_DESCR_RIC->Text()));
    });
    trap.step([&] { Refresh_Category_List(); });
}

void Form2::Command1_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    for (vb::TextBox* t : {Txt_Search, Txt_Search_Desc, Txt_Search_UN_MIS})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { Refresh_Category_List(); });
}

// ---- searches ---------------------------------------------------------------------------

bool Form2::startSearch(vb::TextBox* field)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { List2->Clear(); });
    trap.step([&] { Clear_Fields(); });
    for (vb::TextBox* t : {Txt_Search, Txt_Search_Desc, Txt_Search_UN_MIS})
        if (t != field)
            trap.step([&] { t->setText(QString()); });
    return !field->Text().isEmpty();
}

QString Form2::searchWords(const vb::TextBox* field, const QString& blank)
{
    // No per-cent sign leads a replaced blank: each word but the last must end the value.
    return vb::DoubledQuotes(field->Text()).replace(QLatin1Char(' '), blank);
}

void Form2::search(vb::TextBox* field, const QString& statement, vb::ListBox* list, const QString& column)
{
    const bool byUnit = field == Txt_Search_UN_MIS;
    const QString typed = field->Text();
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.on(err::NoCurrentRecord, [typed, byUnit] { noRowBox(typed, byUnit); });

    trap.step([&] { List1->Clear(); });
    store::Recordset rs;
    bool none = true;
    trap.step([&] {
        rs.Open(statement);
        none = rs.Eof();
    });
    if (trap.ended())
        return;
    if (none) {
        // The descriptions' box quotes the category field, empty by now.
        notFoundBox(byUnit ? Txt_Search_UN_MIS->Text() : Txt_Search->Text(), byUnit);
        trap.step([&] { List1->Clear(); });
        trap.step([&] { Label2->setCaption(QStringLiteral("0")); });
        return;
    }
    addRows(trap, list, rs, column);
    trap.step([&] { Label2->setCaption(QString::number(list->ListCount())); });
}

void Form2::Txt_Search_KeyUp()
{
    if (!startSearch(Txt_Search))
        return;
    search(Txt_Search,
           QStringLiteral("Select * from Tbl_Ricambi WHERE Ricambi like '%") +
               searchWords(Txt_Search, QStringLiteral("' and Ricambi like '%")) + QStringLiteral("%' ORDER by Ricambi"),
           List1, QStringLiteral("Ricambi"));
}

void Form2::Txt_Search_Desc_KeyUp()
{
    if (!startSearch(Txt_Search_Desc))
        return;
    search(
        Txt_Search_Desc,
        QStringLiteral("SELECT TBL_DESCRIZIONE_RICAMBI.Ricambi, Tbl_Descrizione_Ricambi.Descrizione From "
                       "TBL_DESCRIZIONE_RICAMBI GROUP BY TBL_DESCRIZIONE_RICAMBI.Ricambi, "
                       "Tbl_Descrizione_Ricambi.Descrizione Having (((TBL_DESCRIZIONE_RICAMBI.Descrizione) Like '%") +
            searchWords(Txt_Search_Desc, QStringLiteral("' and Descrizione like '%")) +
            QStringLiteral("%'))ORDER BY TBL_DESCRIZIONE_RICAMBI.Ricambi;"),
        List2, QStringLiteral("Descrizione"));
}

void Form2::Txt_Search_UN_MIS_KeyUp()
{
    if (!startSearch(Txt_Search_UN_MIS))
        return;
    // UN_MIS names no column: two words make a statement the store refuses, shown plainly.
    search(Txt_Search_UN_MIS,
           QStringLiteral("Select * from Tbl_Ricambi WHERE Unita_Misura like '%") +
               searchWords(Txt_Search_UN_MIS, QStringLiteral("' and UN_MIS  like '%")) +
               QStringLiteral("%' ORDER by Ricambi"),
           List1, QStringLiteral("Ricambi"));
}

// ---- prints and the text file -----------------------------------------------------------

void Form2::Cmd_print_A_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] {
        reports::ShowReport(
            QStringLiteral("DataReport4"),
            QStringLiteral("Select * from Tbl_Descrizione_Ricambi order by Ricambi,Descrizione,Giacenza,Costo"));
    });
}

void Form2::Cmd_Print_Group_Click()
{
    Trap trap = Trap::ignoreAll();
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setCaption(Section::PageHeader, QStringLiteral("Label5"), QStringLiteral("LISTA RICAMBI"));
        layout.setDataField(Section::GroupFooter, QStringLiteral("TextBox8"), QStringLiteral("ConteggioDiRicambi"));
        layout.setDataField(Section::GroupFooter, QStringLiteral("TextBox5"), QStringLiteral("MinDiCosto"));
        layout.setDataField(Section::GroupFooter, QStringLiteral("TextBox6"), QStringLiteral("MaxDiCosto"));
    };
    trap.step([&] {
        reports::ShowReport(
            QStringLiteral("DataReport11"),
            QStringLiteral(
                "SHAPE {SELECT Count(Tbl_Descrizione_Ricambi.Ricambi) AS ConteggioDiRicambi, "
                "Format(Min(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MinDiCosto, "
                "Format(Max(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MaxDiCosto, "
                "Sum(Tbl_Descrizione_Ricambi.Costo) "
                "AS SommaDiCosto, Tbl_Descrizione_Ricambi.Ricambi, Sum(Tbl_Descrizione_Ricambi.Giacenza) AS "
                "SommaDiGiacenza From Tbl_Descrizione_Ricambi GROUP BY Tbl_Descrizione_Ricambi.Ricambi;} APPEND "
                "({SELECT Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
                "Tbl_Descrizione_Ricambi.Descrizione, Tbl_Descrizione_Ricambi.Giacenza From Tbl_Descrizione_Ricambi "
                "GROUP "
                "BY Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
                "Tbl_Descrizione_Ricambi.Descrizione, "
                "Tbl_Descrizione_Ricambi.Giacenza;} RELATE Ricambi to Ricambi) as Dati"),
            options);
    });
}

void Form2::Cmd_Presence_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport17")); });
    if (TextID_DESCR_RIC->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non hai selezionato nessuna Ricambio!"), mb::Information,
                   QStringLiteral("RICAMBIO NON SELEZIONATA!"));
        return;
    }
    // Where the part has ever been fitted, from the interventions.
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Ricambi"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox9"), QStringLiteral("Descrizione"));
        layout.setCaption(Section::ReportHeader, QStringLiteral("Label2"), vb::ShortDate(vb::Clock::today()));
    };
    trap.step([&] {
        const QString id = vb::KeyText(TextID_DESCR_RIC->Text());
        reports::ShowReport(
            QStringLiteral("DataReport17"),
            QStringLiteral("SHAPE {SELECT Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Tbl_Ricerca.Ricambi, "
                           "Tbl_Ricerca.Descrizione From Tbl_Ricerca GROUP BY Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, "
                           "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione HAVING "
                           "(((Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI)=") +
                id +
                QStringLiteral(
                    "));} APPEND ({SELECT Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Tbl_Ricerca.ID_MODELLO, "
                    "Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Destinazione From Tbl_Ricerca GROUP BY "
                    "Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Macchina, "
                    "Tbl_Ricerca.Modello, Tbl_Ricerca.Destinazione ORDER BY Tbl_Ricerca.Macchina, "
                    "Tbl_Ricerca.Modello;} "
                    "RELATE ID_DESCRIZIONE_RICAMBI to ID_DESCRIZIONE_RICAMBI) as Dati"),
            options);
    });
}

void Form2::Cmd_Save_txt_Click()
{
    // A file held open elsewhere is not written, and no box comes.
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::WriteTextExport(RicambiExport()); });
}

// ---- the gallery --------------------------------------------------------------------------

void Form2::openGallery(bool withPicture)
{
    Trap trap = Trap::ignoreAll();
    auto hand = [&](const char* control, const QString& value) {
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form1"), QString::fromLatin1(control)))
                c->setVbProperty(QStringLiteral("Text"), value);
        });
    };
    hand("TextID_DESCR_RIC", TextID_DESCR_RIC->Text());
    if (withPicture)
        hand("TextID_IMAGES_DC", Txt_ID_IMAGES_DC->Text());
    trap.step([] { shell::screens().showModal(QStringLiteral("Form1")); });
}

void Form2::Cmd_Photo_Click()
{
    openGallery(true);
}

void Form2::Image4_Click()
{
    // Only the part is handed over: the gallery reads the picture's key from here itself.
    openGallery(false);
}

VELMORA_SCREEN(Form2);

} // namespace spares
