#include "plant/Form10.h"

#include "controls/ScreenKit.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace plant {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;

namespace {

const QString ScreenName = QStringLiteral("Form10");
const QString& Saving = vb::caption::Save;
const QString& Browsing = vb::caption::Edit;

// Three lists side by side over the entry fields and the commands, in twips: the whole
// screen fits the main screen's working area of a small display.
constexpr int ListFrameWidth = 2900;
constexpr int ListFrameTop = 120;
constexpr int ListFrameHeight = 5300;
constexpr int FieldHeight = 315;
constexpr int ButtonWidth = 2100;
constexpr int ButtonHeight = 375;
constexpr int FieldsTop = ListFrameTop + ListFrameHeight + 120;
constexpr int ButtonsTop = FieldsTop + 780;

constexpr int listFrameLeft(int index)
{
    return 120 + index * (ListFrameWidth + 120);
}
constexpr int buttonLeft(int index)
{
    return 120 + index * (ButtonWidth + 180);
}

/// The box of a kind or a model without numbers.
void noNumbersBox(const QString& text)
{
    vb::MsgBox(QStringLiteral("Non è stata trovata nessuna Numerazione per la Macchina [") + text +
                   QStringLiteral("]!!!"),
               mb::Exclamation, QStringLiteral("NUMERAZIONE [") + text + QStringLiteral("] MANCANTE!!"));
}

/// Fills a list with one column of a statement's rows, the list emptied first.
void fillList(Trap& trap, vb::ListBox* list, const QString& statement, const QString& column, bool* empty = nullptr)
{
    store::Recordset rs;
    if (!trap.step([&] { rs.Open(statement); }))
        return;
    bool none = true;
    trap.step([&] { none = rs.Eof(); });
    if (empty)
        *empty = none;
    if (none)
        return;
    trap.step([&] { list->Clear(); });
    while (!rs.Eof()) {
        trap.step([&] { list->AddItem(rs.Fields(column).Value().toString()); });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
}

} // namespace

Form10::Form10(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("NUMERAZIONE MACCHINE"))
{
    buildControls();
}

void Form10::buildControls()
{
    Move(0, 0, 120 + 3 * (ListFrameWidth + 120) + 120, 7800);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = FieldHeight});

    Frame1 = kit.frame(this, "Frame1", QStringLiteral("MACCHINE PRESENTI              "), listFrameLeft(0),
                       ListFrameTop, ListFrameWidth, ListFrameHeight);
    List1 = kit.list(Frame1, "List1", 120, 270, ListFrameWidth - 240, ListFrameHeight - 690);
    List1->setFocusHighlight(true);
    Label2 = kit.label(Frame1, "Label2", QStringLiteral("0"), 120, ListFrameHeight - 360, ListFrameWidth - 240);
    Label2->setAlignment(1);
    Frame2 = kit.frame(this, "Frame2", QStringLiteral("MODELLO MACCHINA"), listFrameLeft(1), ListFrameTop,
                       ListFrameWidth, ListFrameHeight);
    List2 = kit.list(Frame2, "List2", 120, 270, ListFrameWidth - 240, ListFrameHeight - 390);
    List2->setFocusHighlight(true);
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("NUMERAZIONE MACCHINE"), listFrameLeft(2), ListFrameTop,
                       ListFrameWidth, ListFrameHeight);
    List3 = kit.list(Frame3, "List3", 120, 270, ListFrameWidth - 240, ListFrameHeight - 390);
    List3->setFocusHighlight(true);

    Txt_Modello = kit.searchFrame(this, "Frame4", QStringLiteral("Modello"), "Txt_Modello", 120, FieldsTop,
                                  2 * ListFrameWidth + 120, 660, &Frame4);
    Txt_Num = kit.searchFrame(this, "Frame5", QStringLiteral("Numerazione"), "Txt_Num", listFrameLeft(2), FieldsTop,
                              ListFrameWidth, 660, &Frame5);

    Text1 = kit.hidden("Text1");
    Txt_ID_NUM = kit.hidden("Txt_ID_NUM");
    ID_MODELLO = kit.hidden("ID_MODELLO");

    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), buttonLeft(0), ButtonsTop, ButtonWidth);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Browsing, buttonLeft(1), ButtonsTop, ButtonWidth);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), buttonLeft(2), ButtonsTop, ButtonWidth);
    Cmd_Aggiorna = kit.button(this, "Cmd_Aggiorna", QStringLiteral("AGGIORNA"), buttonLeft(3), ButtonsTop, ButtonWidth);

    List1->Click = [this] { List1_Click(); };
    List2->Click = [this] { List2_Click(); };
    List3->Click = [this] { List3_Click(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Aggiorna->Click = [this] { Fill_All_Kinds(); };
}

// ---- load and the kinds -------------------------------------------------------------------

void Form10::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    // The register hands a model over in its own field; reading it loads the register
    // hidden when it is not there.
    trap.step([&] {
        if (vb::Control* handed = shell::screens().control(QStringLiteral("Form7"), QStringLiteral("ID_MOD")))
            ID_MODELLO->setText(handed->vbProperty(QStringLiteral("Text")));
    });
    if (!ID_MODELLO->Text().isEmpty())
        trap.step([&] { Fill_Model_Only(); });
    else
        trap.step([&] { Fill_All_Kinds(); });
}

void Form10::Fill_All_Kinds()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { List1->Clear(); });
    trap.step([&] { List2->Clear(); });
    trap.step([&] { List3->Clear(); });
    trap.step([&] { Txt_Modello->setText(QString()); });
    trap.step([&] { Txt_Num->setText(QString()); });
    listKinds(QStringLiteral("SELECT Tbl_Macchina.Macchina From Tbl_Macchina GROUP BY Tbl_Macchina.Macchina "
                             "Having (((Tbl_Macchina.Macchina) <> ''))ORDER BY Tbl_Macchina.Macchina;"));
}

void Form10::Fill_Model_Only()
{
    QString id;
    Trap trap = Trap::ignoreAll();
    trap.step([&] { id = vb::KeyText(ID_MODELLO->Text()); });
    listKinds(QStringLiteral("SELECT * From Tbl_Macchina Where ID_MODELLO = ") + id +
              QStringLiteral(" ORDER BY Macchina;"));
}

void Form10::listKinds(const QString& statement)
{
    Trap trap = Trap::ignoreAll();
    int count = 0;
    store::Recordset rs;
    if (trap.step([&] { rs.Open(statement); })) {
        while (!rs.Eof()) {
            trap.step([&] { List1->AddItem(rs.Fields(QStringLiteral("Macchina")).Value().toString()); });
            ++count;
            if (!trap.step([&] { rs.MoveNext(); }))
                break;
        }
    }
    trap.step([&] { Label2->setCaption(QString::number(count)); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
}

// ---- the three lists ----------------------------------------------------------------------

void Form10::List1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Num->setText(QString()); });
    trap.step([&] { Txt_Modello->setText(QString()); });
    trap.step([&] { List3->Clear(); });
    const QString kind = List1->Text();
    bool found = false;
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("SELECT * from Tbl_Macchina ORDER BY Tbl_Macchina.Macchina;")); });
        trap.step(
            [&] { rs.setFilter(QStringLiteral("Macchina like '") + vb::DoubledQuotes(kind) + QStringLiteral("'")); });
        trap.step([&] {
            rs.Fields(QStringLiteral("Macchina")).Value().toString();
            rs.Fields(QStringLiteral("ID_MODELLO")).Value();
            found = true;
        });
    }
    if (!found)
        return;
    // Every model whose kind contains the one chosen. The kind goes in as it stands: with an
    // apostrophe the statement breaks and the models stay as they were.
    bool none = false;
    fillList(trap, List2,
             QStringLiteral("Select * from Tbl_Macchina WHERE Macchina like '%") + kind +
                 QStringLiteral("%' ORDER by Modello"),
             QStringLiteral("Modello"), &none);
    if (none) {
        noNumbersBox(kind);
        trap.step([&] { List2->Clear(); });
    }
}

void Form10::List2_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Num->setText(QString()); });
    const QString model = List2->Text();
    {
        // The model is looked up as it stands: with an apostrophe the filter fails and the
        // first model by name is the one read.
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("SELECT * from Tbl_Macchina ORDER BY Tbl_Macchina.Modello;")); });
        trap.step([&] { rs.setFilter(QStringLiteral("Modello like '") + model + QStringLiteral("'")); });
        QString name;
        trap.step([&] { name = rs.Fields(QStringLiteral("Modello")).Value().toString(); });
        trap.step([&] { Text1->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value()); });
        trap.step([&] { Txt_Modello->setText(name); });
    }
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    bool none = false;
    QString id;
    trap.step([&] { id = vb::KeyText(Text1->Text()); });
    fillList(trap, List3,
             QStringLiteral("Select * from Tbl_Numerazione WHERE ID_MODELLO = ") + id +
                 QStringLiteral(" ORDER by val(Numerazione)"),
             QStringLiteral("Numerazione"), &none);
    if (none) {
        noNumbersBox(model);
        trap.step([&] { List3->Clear(); });
    }
}

void Form10::List3_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_ID_NUM->setText(QString()); });
    trap.step([&] { Txt_Num->setText(List3->Text()); });
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * from Tbl_Numerazione Where ID_MODELLO = ") + vb::KeyText(Text1->Text()) +
                QStringLiteral(" And Numerazione= '") + Txt_Num->Text() + QStringLiteral("'"));
        Txt_ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value());
    });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
}

// ---- insert, save, delete -------------------------------------------------------------------

void Form10::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Cmd_Edit->setCaption(Saving); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
}

bool Form10::numberTaken()
{
    // A contains match: with "10" present, "1" counts as taken.
    store::Recordset rs;
    rs.Open(QStringLiteral("Select * from Tbl_Numerazione WHERE Numerazione like '%") +
            vb::DoubledQuotes(Txt_Num->Text()) + QStringLiteral("%' and ID_MODELLO = ") + vb::KeyText(Text1->Text()));
    return !rs.Eof();
}

void Form10::Cmd_Edit_Click()
{
    Trap trap = Trap::ignoreAll();
    if (Txt_Modello->Text().isEmpty() || Text1->Text().isEmpty() || Txt_Num->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Macchina o Numerazione Mancante!"), mb::Critical, QStringLiteral("MANCANZA DATI"));
        return;
    }
    const QString number = Txt_Num->Text();
    auto takenBox = [&] {
        vb::MsgBox(QStringLiteral("Esiste già la Numerazione [") + number + QStringLiteral("] per la Macchina [") +
                       Txt_Modello->Text() + QStringLiteral("] !!!"),
                   mb::Exclamation, QStringLiteral("NUMERAZIONE GIA' ESISTENTE"));
    };

    if (Cmd_Edit->Caption() == Saving) {
        bool taken = false;
        trap.step([&] { taken = numberTaken(); });
        if (taken) {
            takenBox();
            return;
        }
        // A new unit has no maintenance yet: the list of machines without maintenance
        // finds it.
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Numerazione")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { Txt_ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value()); });
            store::WriteFields(
                trap, rs, {{"Numerazione", number}, {"ID_NUM", Txt_ID_NUM->Text()}, {"ID_MODELLO", Text1->Text()}});
            trap.step([&] { rs.UpdateBatch(); });
        }
        trap.step([&] { Cmd_Edit->setCaption(Browsing); });
        trap.step([&] { Cmd_Add->setEnabled(true); });
        trap.step([&] { Fill_All_Kinds(); });
        return;
    }

    const QString listed = List2->Text();
    const QString prompt = listed != Txt_Modello->Text()
                               ? QStringLiteral("La Numerazione della Macchina [") + listed +
                                     QStringLiteral("] Sta per essere modificata con [") + Txt_Modello->Text() +
                                     QStringLiteral("] Vuoi Procedere??")
                               : QStringLiteral("Stai per modificare la Numerazione della Macchina [") + listed +
                                     QStringLiteral("] Vuoi Procedere??");
    if (vb::MsgBox(prompt, mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Numerazione Macchina **") + listed + QStringLiteral("**")) !=
        vb::answer::Yes)
        return;

    bool taken = false;
    trap.step([&] { taken = numberTaken(); });
    // The register's copies are sought by model key compared with the unit's key (0 when
    // the number was taken): they follow only where the two keys happen to agree.
    QString key = QStringLiteral("0");
    if (taken) {
        takenBox();
    } else {
        trap.step([&] { key = vb::KeyText(Txt_ID_NUM->Text()); });
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Numerazione where ID_NUM =") + key); });
        trap.step([&] { rs.Fields(QStringLiteral("Numerazione")) = number; });
        trap.step([&] { rs.UpdateBatch(); });
    }
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Maintenance SET Tbl_Maintenance.Numerazione = '") + number +
                   QStringLiteral("' WHERE ((Tbl_Maintenance.ID_MODELLO = ") + key + QStringLiteral("))"));
    });
    trap.step([&] { Fill_All_Kinds(); });
}

void Form10::Cmd_Delete_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    if (Txt_ID_NUM->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUNA DATO SELEZIONATO"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare il Dato Selezionato?"), mb::YesNo + mb::Question,
                   QStringLiteral("ELIMINAZIONE DATI")) != vb::answer::Yes)
        return;
    QString id;
    trap.step([&] { id = vb::KeyText(Txt_ID_NUM->Text()); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Numerazione WHERE ID_NUM  = ") + id); });
    if (trap.ended())
        return;
    if (vb::MsgBox(QStringLiteral("Vuoi eliminare la numerazione di questa macchina anche dalle Manutenzioni?"),
                   mb::YesNo + mb::Question,
                   QStringLiteral("ELIMINA NUMERAZIONE DALLE MANUTENZIONI")) == vb::answer::Yes)
        trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Maintenance WHERE ID_NUM  = ") + id); });
    if (trap.ended())
        return;
    if (vb::MsgBox(QStringLiteral("Vuoi eliminare la numerazione di questa macchina anche dal Plannned Manutenzioni?"),
                   mb::YesNo + mb::Question,
                   QStringLiteral("ELIMINA NUMERAZIONE DAL PLANNED MANUTENZIONI")) == vb::answer::Yes)
        trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Planned WHERE ID_NUM  = ") + id); });
    if (trap.ended())
        return;
    // The screen shows the change by loading again, in its place.
    trap.step([&] {
        shell::screens().unload(ScreenName);
        shell::screens().show(ScreenName);
    });
}

VELMORA_SCREEN(Form10);

} // namespace plant
