#include "plant/Form4.h"

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

const QString& Saving = vb::caption::Save;
const QString& Browsing = vb::caption::Edit;

// The list column and the entry column on the left, the two grids on the right, in twips:
// the whole screen fits the main screen's working area of a small display.
constexpr int LeftWidth = 3000;
constexpr int RightLeft = 3240;
constexpr int RightWidth = 5880;
constexpr int ButtonWidth = 1440;
constexpr int ButtonHeight = 375;
constexpr int FieldHeight = 315;

/// The first column of a count statement's one row; 0 when the statement has no row.
Variant countOf(const QString& statement, const QString& column)
{
    store::Recordset rs;
    rs.Open(statement);
    if (rs.Eof())
        return Variant(0);
    return rs.Fields(column).Value();
}

} // namespace

Form4::Form4(QWidget* owner) : vb::Form(owner, QStringLiteral("Form4"), QStringLiteral("REPARTO MACCHINE"))
{
    buildControls();
}

void Form4::buildControls()
{
    Move(0, 0, RightLeft + RightWidth + 240, 7800);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = FieldHeight});

    Label1 = kit.label(this, "Label1", QStringLiteral("REPARTI PRESENTI"), 120, 120, 2100);
    Label2 = kit.label(this, "Label2", QStringLiteral("0"), 2280, 120, LeftWidth - 2160);
    Label2->setAlignment(1);
    List1 = new vb::ListBox(this, QStringLiteral("List1"));
    List1->Move(120, 400, LeftWidth, 3900);
    List1->setFocusHighlight(true);
    Txt_Search = kit.searchFrame(this, "Frame1", QStringLiteral("Cerca Reparto"), "Txt_Search", 120, 4400, LeftWidth,
                                 660, &Frame1);

    Label3 = kit.label(this, "Label3", QStringLiteral("REPARTO"), 120, 5160, LeftWidth);
    TextREPARTO = kit.field(this, "TextREPARTO", 120, 5430, LeftWidth);
    Text1 = kit.hidden("Text1");

    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), 120, 5880, ButtonWidth);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Browsing, 120 + LeftWidth - ButtonWidth, 5880, ButtonWidth);
    // A change of the department's name is what lets a save through.
    Cmd_Edit->setEnabled(false);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), 120, 6340, ButtonWidth);
    Command1 = kit.button(this, "Command1", QStringLiteral("VISUALIZZA TUTTO"), 120, 6800, LeftWidth);

    Label4 = kit.label(this, "Label4", QStringLiteral("MACCHINE"), RightLeft, 150, 1100);
    Txt_Num_Macc = kit.field(this, "Txt_Num_Macc", RightLeft + 1140, 120, 900);
    Txt_Num_Macc->setLocked(true);
    Label5 = kit.label(this, "Label5", QStringLiteral("MODELLI"), RightLeft + 2400, 150, 1000);
    Txt_Num_Mod = kit.field(this, "Txt_Num_Mod", RightLeft + 3440, 120, 900);
    Txt_Num_Mod->setLocked(true);

    Frame2 = kit.frame(this, "Frame2", QStringLiteral("MACCHINE"), RightLeft, 540, RightWidth, 3300);
    DataGrid1 = kit.grid(Frame2, "DataGrid1", Adodc1, "Adodc1", 120, 270, RightWidth - 240, 2910);
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("MODELLI"), RightLeft, 3940, RightWidth, 3235);
    DataGrid2 = kit.grid(Frame3, "DataGrid2", Adodc2, "Adodc2", 120, 270, RightWidth - 240, 2845);

    List1->Click = [this] { List1_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    Txt_Search->KeyUp = [this] { Txt_Search_KeyUp(); };
    TextREPARTO->Change = [this] { Cmd_Edit->setEnabled(true); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Command1->Click = [this] { Command1_Click(); };
}

// ---- the list of departments ----------------------------------------------------------

void Form4::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Refresh_Reparti(); });
}

void Form4::Refresh_Reparti()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Num_Macc->setText(QString()); });
    trap.step([&] { List1->Clear(); });
    int count = 0;
    store::Recordset rs;
    if (trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Reparto order by Reparto")); })) {
        while (!rs.Eof()) {
            // A department without a name is counted but has no line of its own.
            trap.step([&] { List1->AddItem(rs.Fields(QStringLiteral("Reparto")).Value().toString()); });
            ++count;
            if (!trap.step([&] { rs.MoveNext(); }))
                break;
        }
    }
    trap.step([&] { Label2->setCaption(QString::number(count)); });
    trap.step([&] { TextREPARTO->setText(QString()); });
    trap.step([&] { Text1->setText(QString()); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
}

void Form4::List1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { TextREPARTO->setText(QString()); });
    trap.step([&] {
        Cmd_Add->setEnabled(true);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(true);
        Cmd_Edit->setCaption(Browsing);
    });
    const QString item = List1->Text();
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * from Tbl_Reparto ORDER BY Reparto;")); });
    // The name is a pattern: "%" and "_" in it match as wildcards, and the first row
    // matching is the one taken.
    trap.step([&] { rs.setFilter(QStringLiteral("Reparto like '") + vb::DoubledQuotes(item) + QStringLiteral("'")); });
    bool none = true;
    trap.step([&] { none = rs.Eof(); });
    if (none) {
        vb::MsgBox(QStringLiteral("Non ci sono ") + item + QStringLiteral(" nel DataBase"), mb::Information,
                   QStringLiteral("REPARTO NON PRESENTE"));
        return;
    }
    QString name;
    trap.step([&] { name = rs.Fields(QStringLiteral("Reparto")).Value().toString(); });
    trap.step([&] { Text1->setText(rs.Fields(QStringLiteral("ID_Reparto")).Value()); });
    trap.step([&] { TextREPARTO->setText(name.isEmpty() ? QString() : item); });

    QString id;
    trap.step([&] { id = vb::KeyText(Text1->Text()); });
    if (!name.isEmpty()) {
        trap.step([&] {
            Txt_Num_Macc->setText(countOf(
                QStringLiteral("SELECT Count(Tbl_Macchina.ID_REPARTO) AS ConteggioDiID_REPARTO From Tbl_Macchina "
                               "GROUP BY Tbl_Macchina.ID_REPARTO HAVING (((Tbl_Macchina.ID_REPARTO)=") +
                    id + QStringLiteral("));"),
                QStringLiteral("ConteggioDiID_REPARTO")));
        });
    }
    trap.step([&] {
        Txt_Num_Mod->setText(countOf(
            QStringLiteral("SELECT Count(Tbl_Macchina.Macchina) AS ConteggioDiMacchina, Tbl_Macchina.ID_REPARTO FROM "
                           "Tbl_Numerazione INNER JOIN Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = "
                           "Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Macchina.ID_REPARTO HAVING "
                           "(((Tbl_Macchina.ID_REPARTO)=") +
                id + QStringLiteral("));"),
            QStringLiteral("ConteggioDiMacchina")));
    });
    trap.step([&] { Fill_Grid_Modelli(); });
    trap.step([&] { Fill_Grid_Macchine(); });
}

// ---- the grids --------------------------------------------------------------------------

// The grids take the department's name as it stands: with an apostrophe in it the
// statement breaks, the grid stays empty and its count reads 0.

void Form4::Fill_Grid_Macchine()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc1->setRecordSource(
            QStringLiteral("SELECT Tbl_Macchina.Macchina, Left([Tbl_Macchina]![Modello],30)  AS Modello, "
                           "Count(Tbl_Macchina.Modello) AS ConteggioDiModello FROM Tbl_Numerazione INNER JOIN "
                           "Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = Tbl_Macchina.ID_MODELLO GROUP BY "
                           "Tbl_Macchina.Macchina, Left([Tbl_Macchina]![Modello],30)  , Tbl_Macchina.REPARTO HAVING "
                           "(((Tbl_Macchina.REPARTO)='") +
            TextREPARTO->Text() + QStringLiteral("'));"));
        Adodc1->Refresh();
    });
    vb::setColumns(
        trap, DataGrid1,
        {{QStringLiteral("Macchina"), 2300}, {QStringLiteral("Modello"), 2500}, {QStringLiteral("N°"), 500}});
    trap.step(
        [&] { Frame2->setCaption(QStringLiteral("Conteggio Macchine: ") + QString::number(Adodc1->RecordCount())); });
}

void Form4::Fill_Grid_Modelli()
{
    showUnits(QStringLiteral("SELECT Tbl_Macchina.Modello, Tbl_Numerazione.Numerazione FROM Tbl_Numerazione INNER JOIN "
                             "Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = Tbl_Macchina.ID_MODELLO WHERE "
                             "(((Tbl_Macchina.REPARTO)='") +
              TextREPARTO->Text() + QStringLiteral("'))Order by Modello, val( Tbl_Numerazione.Numerazione);"));
}

void Form4::DataGrid1_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    QString machine;
    QString model;
    trap.step([&] { machine = DataGrid1->Columns(QStringLiteral("Macchina")).Value().toString(); });
    trap.step([&] { model = DataGrid1->Columns(QStringLiteral("Modello")).Value().toString(); });
    // The units of the model chosen, which the machines grid knows by its first 30
    // characters alone.
    showUnits(QStringLiteral("SELECT Tbl_Macchina.Modello, Tbl_Numerazione.Numerazione FROM Tbl_Numerazione INNER JOIN "
                             "Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = Tbl_Macchina.ID_MODELLO WHERE "
                             "(((Tbl_Macchina.Macchina)='") +
              machine + QStringLiteral("') AND (Left((Tbl_Macchina.Modello),30)='") + model +
              QStringLiteral("'))ORDER BY Val(Tbl_Numerazione.Numerazione);"));
}

void Form4::showUnits(const QString& statement)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc2->setRecordSource(statement);
        Adodc2->Refresh();
    });
    vb::setColumns(trap, DataGrid2, {{QStringLiteral("Modello"), 3800}, {QStringLiteral("Numeraz"), 1400}});
    trap.step(
        [&] { Frame3->setCaption(QStringLiteral("Conteggio Modelli: ") + QString::number(Adodc2->RecordCount())); });
}

// ---- search -----------------------------------------------------------------------------

void Form4::Txt_Search_KeyUp()
{
    const QString typed = Txt_Search->Text();
    if (typed.isEmpty())
        return;
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.on(err::NoCurrentRecord, [typed] {
        vb::MsgBox(QStringLiteral("Nessuna Reparto contenente [ ") + typed + QStringLiteral(" ]"), mb::Critical,
                   QStringLiteral("REPARTO NON TROVATO!!"));
    });
    // The first word must be the whole name from its start (a prefix when it is the only
    // one); each further word must end the name.
    QString text = vb::DoubledQuotes(typed);
    text.replace(QLatin1Char(' '), QStringLiteral("' and Reparto like '%"));
    trap.step([&] { List1->Clear(); });
    store::Recordset rs;
    if (!trap.step([&] {
            rs.Open(QStringLiteral("Select * from Tbl_Reparto WHERE Reparto like '") + text +
                    QStringLiteral("%' ORDER by Reparto"));
        }))
        return;
    bool none = false;
    trap.step([&] { none = rs.Eof(); });
    if (trap.ended())
        return;
    if (none) {
        vb::MsgBox(QStringLiteral("Non è stata trovata nessun Reparto con le seguenti parole chiave < ") + typed +
                       QStringLiteral(" > !!!"),
                   mb::Exclamation, QStringLiteral("REPARTO NON TROVATO !!"));
        return;
    }
    int count = 0;
    while (!trap.ended() && !rs.Eof()) {
        trap.step([&] { List1->AddItem(rs.Fields(QStringLiteral("Reparto")).Value().toString()); });
        ++count;
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
    trap.step([&] { Label2->setCaption(QString::number(count)); });
}

// ---- insert, save, delete -----------------------------------------------------------------

void Form4::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Cmd_Edit->setCaption(Saving); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
    trap.step([&] { TextREPARTO->setText(QString()); });
    trap.step([&] { Txt_Search->setText(QString()); });
    trap.step([&] { Txt_Num_Macc->setText(QString()); });
    trap.step([&] { Text1->setText(QString()); });
}

void Form4::Cmd_Edit_Click()
{
    Trap trap = Trap::ignoreAll();
    if (TextREPARTO->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non sono stati compilati tutti i dati richiesti"), mb::Critical,
                   QStringLiteral("MANCANZA DATI"));
        return;
    }
    const QString name = TextREPARTO->Text();

    if (Cmd_Edit->Caption() == Saving) {
        // The twin check puts WHERE after GROUP BY, which the store refuses: the check finds
        // nothing and every name passes, an existing one included. Twin departments are
        // possible by design of this screen.
        bool twin = false;
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("SELECT Reparto FROM Tbl_Reparto GROUP BY Reparto Where Reparto like '%") +
                    vb::DoubledQuotes(name) + QStringLiteral("%';"));
            twin = !rs.Eof();
        });
        if (twin) {
            vb::MsgBox(QStringLiteral("Un Reparto simile a questo, è gia presente !!!"), mb::Exclamation,
                       QStringLiteral("REPARTO GIA ESISTENTE"));
            return;
        }
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Reparto")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { Text1->setText(rs.Fields(QStringLiteral("ID_Reparto")).Value()); });
            trap.step([&] { rs.Fields(QStringLiteral("Reparto")) = name; });
            trap.step([&] { rs.Fields(QStringLiteral("ID_Reparto")) = Text1->Text(); });
            trap.step([&] { rs.UpdateBatch(); });
        }
        trap.step([&] { Cmd_Edit->setCaption(Browsing); });
        trap.step([&] { Cmd_Delete->setEnabled(true); });
        trap.step([&] { Cmd_Add->setEnabled(true); });
        trap.step([&] { Refresh_Reparti(); });
        return;
    }

    const QString old = List1->Text();
    const QString prompt =
        old != name
            ? QStringLiteral("Il Reparto [") + old + QStringLiteral("] Sta per essere modificato con [") + name +
                  QStringLiteral("] Vuoi Procedere??")
            : QStringLiteral("Stai per modificare i dati del Reparto [") + old + QStringLiteral("] Vuoi Procedere??");
    if (vb::MsgBox(prompt, mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Reparto **") + old + QStringLiteral("**")) != vb::answer::Yes)
        return;

    // Without a department chosen there is no key: the statements fail and nothing is
    // written.
    QString id;
    trap.step([&] { id = vb::KeyText(Text1->Text()); });
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Reparto where ID_Reparto =") + id); });
        trap.step([&] { rs.Fields(QStringLiteral("Reparto")) = name; });
        trap.step([&] { rs.UpdateBatch(); });
    }
    // Every model of the department keeps a copy of its name, found by key.
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Macchina SET Tbl_Macchina.REPARTO = '") + vb::DoubledQuotes(name) +
                   QStringLiteral("' WHERE Tbl_Macchina.ID_REPARTO = ") + id);
    });
    trap.step([&] { Refresh_Reparti(); });
}

void Form4::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (Text1->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUN Reparto SELEZIONATO"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare il Reparto selezionato?"), mb::YesNo + mb::Question,
                   QStringLiteral("Eliminazione Reparto **") + TextREPARTO->Text() + QStringLiteral("**")) !=
        vb::answer::Yes)
        return;
    // No cascade: the department's models keep its key and its name.
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Reparto WHERE ID_Reparto  = ") + vb::KeyText(Text1->Text()));
    });
    trap.step([&] { Refresh_Reparti(); });
}

void Form4::Command1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Refresh_Reparti(); });
    trap.step([&] { Cmd_Edit->setCaption(Browsing); });
}

VELMORA_SCREEN(Form4);

} // namespace plant
