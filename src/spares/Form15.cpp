#include "spares/Form15.h"

#include "controls/ScreenKit.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "spares/EntryFields.h"
#include "store/DataStore.h"
#include "store/StoreErrors.h"

namespace spares {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;

namespace {

const QString& Saving = vb::caption::Save;
const QString& Browsing = vb::caption::Edit;

} // namespace

Form15::Form15(QWidget* owner) : vb::Form(owner, QStringLiteral("Form15"), QStringLiteral("INSERISCI RICAMBI"))
{
    buildControls();
}

void Form15::buildControls()
{
    Move(0, 0, 9600, 6600);
    const vb::ScreenKit kit(this, {.button = 495});

    List1 = kit.list(this, "List1", 240, 240, 4200, 5100);
    List1->setFocusHighlight(true);
    // This screen's captions are opaque (BackStyle 1), unlike the kit's.
    Label2 = new vb::Label(this, QStringLiteral("Label2"), QStringLiteral("0"));
    Label2->Move(240, 5460, 4200, 285);

    Label1 = new vb::Label(this, QStringLiteral("Label1"), QStringLiteral("Ricambio"));
    Label1->Move(4680, 240, 4500, 255);
    TextRICAMBI = kit.field(this, "TextRICAMBI", 4680, 510, 4500);
    Label3 = new vb::Label(this, QStringLiteral("Label3"), QStringLiteral("Unità di Misura"));
    Label3->Move(4680, 960, 4500, 255);
    DataCombo1 = kit.dataCombo(this, "DataCombo1", 4680, 1230, 2400);
    Adodc1 = new vb::Adodc(this, QStringLiteral("Adodc1"));

    Text1 = kit.hidden("Text1");
    Text1->Move(7320, 1230, 900, 315);

    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), 4680, 1800, 1440);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Browsing, 6210, 1800, 1440);
    // Typing in the entry fields is what lets a save through.
    Cmd_Edit->setEnabled(false);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), 7740, 1800, 1440);
    Command1 = kit.button(this, "Command1", QStringLiteral("VISUALIZZA TUTTO"), 4680, 2400, 4500);

    Txt_Search = kit.framedField(this, "Frame1", QStringLiteral("Per Ricambio"), "Txt_Search", 4680, 3120, 4500, 780,
                                 300, &Frame1);
    Txt_Search_UN_MIS = kit.framedField(this, "Frame2", QStringLiteral("Per Unità di Misura"), "Txt_Search_UN_MIS",
                                        4680, 4020, 4500, 780, 300, &Frame2);

    List1->Click = [this] { List1_Click(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Command1->Click = [this] { Command1_Click(); };
    TextRICAMBI->KeyPress = [this](int&) { Cmd_Edit->setEnabled(true); };
    DataCombo1->KeyPress = [this](int&) { Cmd_Edit->setEnabled(true); };
    Txt_Search->KeyPress = [this](int&) { Txt_Search_KeyPress(); };
    Txt_Search->KeyUp = [this] { Txt_Search_KeyUp(); };
    Txt_Search_UN_MIS->KeyPress = [this](int&) { Txt_Search_UN_MIS_KeyPress(); };
    Txt_Search_UN_MIS->KeyUp = [this] { Txt_Search_UN_MIS_KeyUp(); };
}

void Form15::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    // The units offered are those already in use: there is no table of units.
    trap.step([&] {
        Adodc1->setRecordSource(
            QStringLiteral("Select Unita_Misura From Tbl_Ricambi group by Unita_Misura Order by Unita_Misura asc"));
        Adodc1->Refresh();
        DataCombo1->bind(Adodc1, QStringLiteral("Unita_Misura"));
    });
    trap.step([&] { Refresh_Category_List(); });
}

void Form15::Refresh_Category_List()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { List1->Clear(); });
    store::Recordset rs;
    if (trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Ricambi order by Ricambi")); })) {
        while (!rs.Eof()) {
            // A category without a name is left out of the list.
            trap.step([&] { List1->AddItem(rs.Fields(QStringLiteral("Ricambi")).Value().toString()); });
            if (!trap.step([&] { rs.MoveNext(); }))
                break;
        }
    }
    trap.step([&] { Label2->setCaption(QString::number(List1->ListCount())); });
    trap.step([&] { TextRICAMBI->setText(QString()); });
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Adodc1->Refresh(); });
}

void Form15::List1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { TextRICAMBI->setText(QString()); });
    trap.step([&] { DataCombo1->setText(QString()); });
    const QString name = List1->Text();
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * from Tbl_Ricambi ORDER BY Tbl_Ricambi.Ricambi;")); });
    trap.step([&] { rs.setFilter(QStringLiteral("Ricambi like '") + vb::DoubledQuotes(name) + QStringLiteral("'")); });
    bool none = true;
    trap.step([&] { none = rs.Eof(); });
    if (none) {
        vb::MsgBox(QStringLiteral("Non ci sono ") + name + QStringLiteral(" nel DataBase"), mb::Information,
                   QStringLiteral("RICAMBIO NON PRESENTE"));
        return;
    }
    trap.step([&] { Text1->setText(rs.Fields(QStringLiteral("ID_Ricambi")).Value()); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { TextRICAMBI->setText(List1->Text()); });
    trap.step([&] { DataCombo1->setText(rs.Fields(QStringLiteral("Unita_Misura")).Value()); });
}

void Form15::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Cmd_Edit->setCaption(Saving); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { TextRICAMBI->setText(QString()); });
}

void Form15::Cmd_Edit_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.on(err::TypeMismatch, [] {
        vb::MsgBox(QStringLiteral("Controlla i dati inseriti!!"), mb::Exclamation, QStringLiteral("DATI ERRARI !!!"));
    });

    if (TextRICAMBI->Text().isEmpty() || DataCombo1->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non sono stati compilati tutti i dati richiesti o non è stato selezionato nessun "
                                  "Ricambi"),
                   mb::Critical, QStringLiteral("MANCANZA DATI"));
        trap.step([&] { Adodc1->Refresh(); });
        return;
    }

    if (Cmd_Edit->Caption() == Saving) {
        // A twin is a category whose name contains the new one and that already has parts;
        // one without parts does not count, so it can be entered twice. The name goes in as
        // typed: an apostrophe breaks the statement and the save stops at the error box.
        bool twin = false;
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("SELECT Tbl_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Descrizione FROM Tbl_Ricambi "
                                   "INNER JOIN Tbl_Descrizione_Ricambi ON Tbl_Ricambi.ID_RICAMBI = "
                                   "Tbl_Descrizione_Ricambi.ID_Ricambi GROUP BY Tbl_Ricambi.Ricambi, "
                                   "Tbl_Descrizione_Ricambi.Descrizione HAVING Tbl_Ricambi.Ricambi like '%") +
                    TextRICAMBI->Text() + QStringLiteral("%';"));
            twin = !rs.Eof();
        });
        if (trap.ended())
            return;
        if (twin) {
            vb::MsgBox(QStringLiteral("Un Ricambio simile a questo, è gia presente !!!"), mb::Exclamation,
                       QStringLiteral("RICAMBIO GIA ESISTENTE"));
            return;
        }
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Ricambi")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { Text1->setText(rs.Fields(QStringLiteral("ID_Ricambi")).Value()); });
            store::WriteFields(trap, rs, {{"Ricambi", TextRICAMBI->Text()}, {"Unita_Misura", DataCombo1->Text()}});
            trap.step([&] { rs.UpdateBatch(); });
        }
        if (trap.ended())
            return;
        Cmd_Edit->setCaption(Browsing);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        Refresh_Category_List();
        return;
    }

    const QString line = List1->Text();
    if (!confirmCategoryChange(line, TextRICAMBI->Text()))
        return;

    QString id;
    trap.step([&] { id = vb::KeyText(Text1->Text()); });
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Ricambi where ID_Ricambi =") + id); });
        store::WriteFields(trap, rs, {{"Ricambi", TextRICAMBI->Text()}, {"Unita_Misura", DataCombo1->Text()}});
        trap.step([&] { rs.UpdateBatch(); });
    }
    // The copies of the name follow by key, past interventions included. The name goes in
    // as typed: with an apostrophe the category is renamed and the copies are not.
    const QString name = TextRICAMBI->Text();
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("UPDATE Tbl_Descrizione_Ricambi SET Tbl_Descrizione_Ricambi.Ricambi = '") + name +
                QStringLiteral("' Where ID_Ricambi =") + id);
    });
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("UPDATE Tbl_Ricerca SET Tbl_Ricerca.Ricambi = '") + name +
                QStringLiteral("' Where ID_Ricambi =") + id);
    });
    if (trap.ended())
        return;
    Refresh_Category_List();
}

void Form15::Cmd_Delete_Click()
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
    // The category's parts stay, pointing at nothing: they drop out of every list that
    // joins them to their category.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Delete * from Tbl_Ricambi WHERE ID_Ricambi  = ") + vb::KeyText(Text1->Text()));
    });
    trap.step([&] { TextRICAMBI->setText(QString()); });
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { Txt_Search->setText(QString()); });
    trap.step([&] { Txt_Search_UN_MIS->setText(QString()); });
    trap.step([&] { Refresh_Category_List(); });
}

void Form15::Command1_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Cmd_Edit->setEnabled(false); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { Txt_Search->setText(QString()); });
    trap.step([&] { Txt_Search_UN_MIS->setText(QString()); });
    trap.step([&] { Refresh_Category_List(); });
}

void Form15::Txt_Search_KeyPress()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Search_UN_MIS->setText(QString()); });
    trap.step([&] { TextRICAMBI->setText(QString()); });
    trap.step([&] { DataCombo1->setText(QString()); });
}

void Form15::Txt_Search_UN_MIS_KeyPress()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Search->setText(QString()); });
    trap.step([&] { TextRICAMBI->setText(QString()); });
    trap.step([&] { DataCombo1->setText(QString()); });
}

void Form15::Txt_Search_KeyUp()
{
    if (Txt_Search->Text().isEmpty())
        return;
    // Each word but the last must end the name, and the first starts it.
    QString text = vb::DoubledQuotes(Txt_Search->Text());
    text.replace(QLatin1Char(' '), QStringLiteral("' and Ricambi like '%"));
    search(QStringLiteral("Select * from Tbl_Ricambi WHERE Ricambi like '") + text +
               QStringLiteral("%' ORDER by Ricambi"),
           Txt_Search->Text(), false);
}

void Form15::Txt_Search_UN_MIS_KeyUp()
{
    if (Txt_Search_UN_MIS->Text().isEmpty())
        return;
    // UN_MIS names no column: two words make a statement the store refuses.
    QString text = vb::DoubledQuotes(Txt_Search_UN_MIS->Text());
    text.replace(QLatin1Char(' '), QStringLiteral("' and UN_MIS  like '%"));
    search(QStringLiteral("Select * from Tbl_Ricambi WHERE Unita_Misura like '") + text +
               QStringLiteral("%' ORDER by Ricambi"),
           Txt_Search_UN_MIS->Text(), true);
}

void Form15::search(const QString& statement, const QString& text, bool byUnit)
{
    // Two words in the unit field name a column that does not exist: the list stays
    // empty and nothing is said.
    Trap trap = byUnit ? Trap{{err::InvalidUseOfNull, err::InvalidPropertyValue, store::errors::TooFewParameters},
                              Trap::ShowBox}
                       : Trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.on(err::NoCurrentRecord, [byUnit, text] {
        if (byUnit)
            vb::MsgBox(QStringLiteral("Nessuna Definizione trovata contenente [ ") + text + QStringLiteral(" ]"),
                       mb::Critical, QStringLiteral("DEFINIZIONE NON TROVATA!!"));
        else
            vb::MsgBox(QStringLiteral("Nessuna Ricambio contenente [ ") + text + QStringLiteral(" ]"), mb::Critical,
                       QStringLiteral("RICAMBIO NON TROVATO!!"));
    });

    trap.step([&] { List1->Clear(); });
    store::Recordset rs;
    if (!trap.step([&] { rs.Open(statement); }))
        return;
    bool none = false;
    trap.step([&] { none = rs.Eof(); });
    if (trap.ended())
        return;
    if (none) {
        if (byUnit)
            vb::MsgBox(QStringLiteral("Non è stata trovata nessuna Definizione con le seguenti parole chiave < ") +
                           text + QStringLiteral(" > !!!"),
                       mb::Exclamation, QStringLiteral("Definizione non trovata !!"));
        else
            vb::MsgBox(QStringLiteral("Non è stata trovata nessun Ricambio con le seguenti parole chiave < ") + text +
                           QStringLiteral(" > !!!"),
                       mb::Exclamation, QStringLiteral("RICAMBIO NON TROVATO !!"));
        trap.step([&] { List1->Clear(); });
        trap.step([&] { Label2->setCaption(QStringLiteral("0")); });
        return;
    }
    while (!trap.ended() && !rs.Eof()) {
        trap.step([&] { List1->AddItem(rs.Fields(QStringLiteral("Ricambi")).Value().toString()); });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
    trap.step([&] { Label2->setCaption(QString::number(List1->ListCount())); });
}

VELMORA_SCREEN(Form15);

} // namespace spares
