#include "spares/Form19.h"

#include "controls/ScreenKit.h"
#include "reports/ReportData.h"
#include "reports/ReportViewer.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "spares/EntryFields.h"
#include "store/DataStore.h"

#include <span>

namespace spares {

using vb::Trap;
using vb::Variant;
namespace mb = vb::mb;

namespace {

const QString ScreenName = QStringLiteral("Form19");
const QString OpenOrder = QStringLiteral("0");
const QString OfDate = QStringLiteral("1");
const QString WaitingOfDate = QStringLiteral("2");
const QString AllDates = QStringLiteral("0");
const QString WaitingDates = QStringLiteral("1");

// Two columns of the screen, in twips: the line being typed, the lines and their commands
// on the left; the evasion, the arrival and the dates on the right.
constexpr int LabelWidth = 1300;
constexpr int FieldLeft = 120 + LabelWidth + 60;
constexpr int FieldWidth = 3000;
constexpr int RowHeight = 315;
constexpr int RowStep = 400;
constexpr int ButtonHeight = 435;
constexpr int LeftWidth = 9300;
constexpr int RightLeft = 9600;
constexpr int RightWidth = 4680;

/// The grid's columns by position, each view its own: caption (none keeps the field's
/// name) and width; every column locked. The row selection and the prints find their
/// cells by these captions.
struct ColumnLayout
{
    const char* caption;
    int width;
};
constexpr ColumnLayout OrderColumns[] = {{"ID", 0},
                                         {"ID_RICAMBI", 0},
                                         {"Ricambi", 2500},
                                         {"ID_DESCRIZIONE_RICAMBI", 0},
                                         {"Descrizione", 2500},
                                         {"Codice", 1000},
                                         {"Q.ta", 500},
                                         {nullptr, 0},
                                         {"Fornitore", 2000}};
constexpr ColumnLayout HistoryColumns[] = {
    {"ID_Historian_Orders", 0}, {"DATA", 0},      {"ID_RICAMBI", 0}, {"Ricambi", 2500},  {"ID_DESCRIZIONE_RICAMBI", 0},
    {"Descrizione", 2500},      {"Codice", 1000}, {"Q.ta", 500},     {"Ricevuto", 1000}, {nullptr, 0},
    {"Fornitore", 1000}};

/// A key held on the screen, through the 16-bit passage into a statement.
QString key(const vb::TextBox* field)
{
    return vb::KeyText(field->Text());
}

} // namespace

Form19::Form19(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("ORDINI RICAMBI"))
{
    buildControls();
    connectEvents();
}

void Form19::buildControls()
{
    Move(0, 0, 14400, 8400);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    // The line being ordered. List1 stands beside the fields, so that the code, the
    // quantity and the supplier stay in sight while it shows.
    int top = 120;
    auto label = [&](const char* name, const QString& caption) {
        kit.label(this, name, caption, 120, top + 30, LabelWidth);
    };
    auto combo = [&](const char* labelName, const QString& caption, const char* name, vb::Adodc*& source,
                     const char* sourceName, const char* listField) {
        label(labelName, caption);
        vb::DataCombo* c = kit.dataCombo(this, name, source, sourceName, FieldLeft, top, FieldWidth);
        c->bind(source, QString::fromLatin1(listField));
        top += RowStep;
        return c;
    };
    auto field = [&](const char* labelName, const QString& caption, const char* name, int width) {
        label(labelName, caption);
        vb::TextBox* t = kit.field(this, name, FieldLeft, top, width);
        top += RowStep;
        return t;
    };
    DataCombo1 = combo("Label1", QStringLiteral("Ricambio:"), "DataCombo1", Adodc1, "Adodc1", "Ricambi");
    DataCombo2 = combo("Label2", QStringLiteral("Descrizione:"), "DataCombo2", Adodc3, "Adodc3", "Descrizione");
    Txt_Codice = field("Label3", QStringLiteral("Codice:"), "Txt_Codice", 1800);
    Txt_Quant = field("Label4", QStringLiteral("Q.ta"), "Txt_Quant", 800);
    DataCombo3 = combo("Label5", QStringLiteral("Fornitore:"), "DataCombo3", Adodc4, "Adodc4", "Fornitore");
    List1 = kit.list(this, "List1", FieldLeft + FieldWidth + 180, 120, LeftWidth + 120 - (FieldLeft + FieldWidth + 180),
                     top - 200);
    List1->setVisible(false);

    top += 80;
    constexpr int Quarter = (LeftWidth - 360) / 4;
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), 120, top, Quarter);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), 120 + (Quarter + 120), top, Quarter);
    Cmd_Vis_Ordine =
        kit.button(this, "Cmd_Vis_Ordine", QStringLiteral("ORDINE IN CORSO"), 120 + 2 * (Quarter + 120), top, Quarter);
    Cmd_Print = kit.button(this, "Cmd_Print", QStringLiteral("STAMPA"), 120 + 3 * (Quarter + 120), top, Quarter);
    top += ButtonHeight + 120;

    // The lines of the view shown.
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("Conteggio Ricambi in Ordine:"), 120, top, LeftWidth,
                       Height() - top - 120);
    DataGrid2 = kit.grid(Frame1, "DataGrid2", Adodc2, "Adodc2", 120, 300, LeftWidth - 240, Frame1->Height() - 420);

    // The two safety catches and their commands: each command works only while its box
    // is ticked. The arrival's box shows only on a line still waiting.
    constexpr int CheckWidth = RightWidth - 1800 - 120;
    Check1 = new vb::CheckBox(this, QStringLiteral("Check1"), QStringLiteral("EVADI ORDINE"));
    Check1->Move(RightLeft, 180, CheckWidth, RowHeight);
    Cmd_Evadi = kit.button(this, "Cmd_Evadi", QStringLiteral("PROCEDI"), RightLeft + CheckWidth + 120, 120, 1800);
    Cmd_Evadi->setEnabled(false);
    Check2 = new vb::CheckBox(this, QStringLiteral("Check2"), QStringLiteral("MERCE ARRIVATA"));
    Check2->Move(RightLeft, 740, CheckWidth, RowHeight);
    Check2->setVisible(false);
    Cmd_Confirm = kit.button(this, "Cmd_Confirm", QStringLiteral("CONFERMA"), RightLeft + CheckWidth + 120, 680, 1800);
    Cmd_Confirm->setEnabled(false);

    // The evasion dates and which of them List2 holds.
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("Visualizza Storico Ordini per..."), RightLeft, 1320, RightWidth,
                       Height() - 1320 - 120);
    constexpr int Inner = RightWidth - 240;
    Cmd_Storico_Ordini = kit.button(Frame3, "Cmd_Storico_Ordini", QStringLiteral("STORICO ORDINI"), 120, 300, Inner);
    Cmd_Merce_da_Ricevere = kit.button(Frame3, "Cmd_Merce_da_Ricevere", QStringLiteral("SOLO MERCE DA RICEVERE"), 120,
                                       360 + ButtonHeight, Inner);
    constexpr int DatesTop = 480 + 2 * ButtonHeight;
    Frame2 = kit.frame(Frame3, "Frame2", QStringLiteral("N° Storico Ordini"), 120, DatesTop, Inner,
                       Frame3->Height() - DatesTop - 120);
    List2 = kit.list(Frame2, "List2", 120, 300, Frame2->Width() - 240, Frame2->Height() - 420);

    Txt_Info_Print = kit.hidden("Txt_Info_Print");
    Txt_Vis_List = kit.hidden("Txt_Vis_List", AllDates);
    Txt_ID_Ricambi = kit.hidden("Txt_ID_Ricambi");
    Txt_ID_DESCRIZIONE_RIC = kit.hidden("Txt_ID_DESCRIZIONE_RIC");
    Txt_ID_Fornitore = kit.hidden("Txt_ID_Fornitore");
    Txt_ID_Historian_Orders = kit.hidden("Txt_ID_Historian_Orders");
    Txt_ID_DR = kit.hidden("Txt_ID_DR");
    Txt_Qta = kit.hidden("Txt_Qta", QStringLiteral("0"));
}

void Form19::connectEvents()
{
    DataCombo1->Change = [this] { DataCombo1_Change(); };
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };
    List1->Click = [this] { List1_Click(); };
    List2->Click = [this] { List2_Click(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    Txt_Quant->KeyPress = [](int& k) { digitsOnly(k); };

    // The descriptions stay in sight while the line is typed, and go at its start or
    // once the user leaves it.
    DataCombo1->GotFocus = [this] { List1->setVisible(false); };
    for (vb::Control* c : std::initializer_list<vb::Control*>{DataCombo2, DataCombo3, Txt_Codice, Txt_Quant})
        c->LostFocus = [this] { List1->setVisible(false); };

    Check1->Click = [this] { Cmd_Evadi->setEnabled(Check1->Value() == 1); };
    Check2->Click = [this] { Cmd_Confirm->setEnabled(Check2->Value() == 1); };

    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Evadi->Click = [this] { Cmd_Evadi_Click(); };
    Cmd_Confirm->Click = [this] { Cmd_Confirm_Click(); };
    Cmd_Vis_Ordine->Click = [this] { Cmd_Vis_Ordine_Click(); };
    Cmd_Storico_Ordini->Click = [this] { Cmd_Storico_Ordini_Click(); };
    Cmd_Merce_da_Ricevere->Click = [this] { Cmd_Merce_da_Ricevere_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
}

// ---- load, the views and the dates ---------------------------------------------------------

void Form19::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] {
        Adodc1->setRecordSource(QStringLiteral("SELECT Tbl_Descrizione_Ricambi.Ricambi From Tbl_Descrizione_Ricambi "
                                               "GROUP BY Tbl_Descrizione_Ricambi.Ricambi;"));
        Adodc1->Refresh();
    });
    trap.step([&] { Fill_History_Dates(); });
    trap.step([&] {
        Adodc4->setRecordSource(QStringLiteral("SELECT Tbl_Fornitori.Fornitore From Tbl_Fornitori GROUP BY "
                                               "Tbl_Fornitori.Fornitore order by Fornitore;"));
        Adodc4->Refresh();
    });
    trap.step([&] { Show_Current_Order(); });
}

void Form19::showLines(const QString& statement, const QString& view)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc2->setRecordSource(statement);
        Adodc2->Refresh();
    });
    trap.step([&] { DataGrid2->setDataSource(Adodc2); });
    const bool order = view == OpenOrder;
    const std::span<const ColumnLayout> layout =
        order ? std::span<const ColumnLayout>(OrderColumns) : std::span<const ColumnLayout>(HistoryColumns);
    for (size_t i = 0; i < layout.size(); ++i)
        trap.step([&] {
            vb::GridColumn& c = DataGrid2->Columns(int(i));
            if (layout[i].caption)
                c.setCaption(QString::fromLatin1(layout[i].caption));
            c.setWidth(layout[i].width);
            c.setLocked(true);
        });
    trap.step([&] {
        Frame1->setCaption(QStringLiteral("Conteggio Ricambi in Ordine: ") + QString::number(Adodc2->RecordCount()));
    });
    // Only the open order can be evaded.
    trap.step([&] { Check1->setVisible(order); });
    trap.step([&] { Txt_Info_Print->setText(view); });
}

void Form19::Show_Current_Order()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { showLines(QStringLiteral("SELECT * From Tbl_Order Order by Ricambi;"), OpenOrder); });
    trap.step([&] { Cmd_Vis_Ordine->setEnabled(true); });
    trap.step([&] { Cmd_Delete->setEnabled(Adodc2->RecordCount() > 0); });
}

void Form19::Show_History_Of_Date()
{
    // The outstanding lines first: 'Non Ricevuto' sorts above every date text, descending.
    showLines(QStringLiteral("SELECT * From Tbl_Historian_Orders Where Data = '") + List2->Text() +
                  QStringLiteral("' Order by Data_Ricevuto desc;"),
              OfDate);
}

void Form19::Show_Undelivered_Of_Date()
{
    showLines(QStringLiteral("SELECT * From Tbl_Historian_Orders Where Data = '") + List2->Text() +
                  QStringLiteral("' and Data_Ricevuto ='Non Ricevuto' Order by Ricambi,Descrizione;"),
              WaitingOfDate);
}

void Form19::fillDates(const QString& statement, const QString& caption)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { List2->Clear(); });
    store::Recordset rs;
    int count = 0;
    if (trap.step([&] { rs.Open(statement); }))
        count = addRows(trap, List2, rs, QStringLiteral("Data"));
    trap.step([&] { Frame2->setCaption(caption + QString::number(count)); });
}

void Form19::Fill_History_Dates()
{
    fillDates(QStringLiteral("SELECT Data from Tbl_Historian_Orders group by Data order by Data desc;"),
              QStringLiteral("N° Storico Ordini "));
}

void Form19::Fill_Waiting_Dates()
{
    fillDates(QStringLiteral("SELECT Tbl_Historian_Orders.DATA From Tbl_Historian_Orders GROUP BY "
                             "Tbl_Historian_Orders.DATA, Tbl_Historian_Orders.Data_Ricevuto Having "
                             "(((Tbl_Historian_Orders.Data_Ricevuto) ='Non Ricevuto')) ORDER BY "
                             "Tbl_Historian_Orders.DATA DESC;"),
              QStringLiteral("N°Ordini in Attesa "));
}

void Form19::Clear_Order_Inputs()
{
    // The supplier stays: the next line is often from the same one.
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { Txt_ID_Ricambi->setText(QString()); });
    trap.step([&] { DataCombo2->setText(QString()); });
    for (vb::TextBox* t : {Txt_ID_DESCRIZIONE_RIC, Txt_Quant, Txt_Codice})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { List1->Clear(); });
    trap.step([&] { Txt_Qta->setText(QStringLiteral("0")); });
    trap.step([&] { Txt_ID_DR->setText(QString()); });
    for (vb::CheckBox* c : {Check2, Check1})
        trap.step([&] { c->setValue(0); });
    for (vb::CheckBox* c : {Check2, Check1})
        trap.step([&] { c->setVisible(false); });
}

// ---- the lookups of the line being typed ---------------------------------------------------

void Form19::DataCombo1_Change()
{
    // The category's first part comes with it, code included: a description chosen later
    // changes the part's key but leaves that code, unless the user types another.
    Trap trap = Trap::ignoreAll();
    const QString text = DataCombo1->Text();
    if (text.size() < 3)
        return;
    {
        store::Recordset rs;
        trap.step([&] {
            rs.Open(QStringLiteral("SELECT * From Tbl_Descrizione_Ricambi WHERE RICAMBI= '") + vb::DoubledQuotes(text) +
                    QStringLiteral("';"));
        });
        // No such category: every read fails, and each field keeps what it held.
        trap.step([&] { Txt_ID_Ricambi->setText(rs.Fields(QStringLiteral("ID_RICAMBI")).Value()); });
        trap.step(
            [&] { Txt_ID_DESCRIZIONE_RIC->setText(rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")).Value()); });
        trap.step([&] { DataCombo2->setText(rs.Fields(QStringLiteral("Descrizione")).Value()); });
        trap.step([&] { Txt_Codice->setText(rs.Fields(QStringLiteral("Codice")).Value()); });
    }
    if (Txt_ID_Ricambi->Text().isEmpty())
        return;
    trap.step([&] { List1->setVisible(true); });
    trap.step([&] { List1->Clear(); });
    const QString statement = QStringLiteral("Select * from Tbl_Descrizione_Ricambi WHERE ID_RICAMBI =") +
                              Txt_ID_Ricambi->Text() + QStringLiteral(" ORDER by Descrizione");
    store::Recordset rs;
    bool rows = false;
    trap.step([&] {
        rs.Open(statement);
        rows = !rs.Eof();
    });
    if (!rows) {
        trap.step([&] { List1->Clear(); });
        trap.step([&] { List1->setVisible(false); });
        return;
    }
    addRows(trap, List1, rs, QStringLiteral("Descrizione"));
    trap.step([&] { rs.Close(); });
    trap.step([&] {
        Adodc3->setRecordSource(statement);
        Adodc3->Refresh();
        DataCombo2->bind(Adodc3, QStringLiteral("Descrizione"));
    });
}

void Form19::DataCombo2_Change()
{
    // Only the part's key follows the description; the code stays as it stands.
    Trap trap = Trap::ignoreAll();
    const QString text = DataCombo2->Text();
    if (text.isEmpty())
        return;
    store::Recordset rs;
    bool found = false;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT * From Tbl_Descrizione_Ricambi WHERE Descrizione= '") + vb::DoubledQuotes(text) +
                QStringLiteral("';"));
        found = !rs.Eof();
    });
    if (!found) {
        trap.step([&] { Txt_ID_DESCRIZIONE_RIC->setText(QString()); });
        return;
    }
    trap.step([&] { Txt_ID_DESCRIZIONE_RIC->setText(rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")).Value()); });
}

void Form19::DataCombo3_Change()
{
    // A supplier is not required: a name that matches none keeps the key found before,
    // and the line stores the name as typed.
    Trap trap = Trap::ignoreAll();
    const QString text = DataCombo3->Text();
    if (text.size() < 3)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * From Tbl_Fornitori WHERE Fornitore= '") + vb::DoubledQuotes(text) +
                QStringLiteral("';"));
        Txt_ID_Fornitore->setText(rs.Fields(QStringLiteral("ID_FORNITORE")).Value());
    });
}

void Form19::List1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataCombo2->setText(List1->Text()); });
    trap.step([&] { DataCombo2_Change(); });
}

// ---- the open order ---------------------------------------------------------------------------

void Form19::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    for (vb::CheckBox* c : {Check1, Check2}) {
        trap.step([&] { c->setValue(0); });
        trap.step([&] { c->setVisible(false); });
    }
    // The quantity has no message of its own: a part is what the box asks for.
    if (Txt_ID_DESCRIZIONE_RIC->Text().isEmpty() || Txt_Quant->Text().isEmpty() || Txt_ID_Ricambi->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Seleziona la Descrizione Ricambi dalla Lista, se dovesse mancare devi prima "
                                  "aggiungerlo nella Scheda 'Descrizione Ricambi'"),
                   mb::Information, QStringLiteral("MANCANZA DATI"));
        return;
    }

    // Only evaded lines still waiting warn, from the first one found; the same part may
    // stand in the open order any number of times. A No leaves the evasion's catch hidden
    // until the view is built again.
    const QString category = DataCombo1->Text();
    const QString description = DataCombo2->Text();
    {
        store::Recordset rs;
        bool waiting = false;
        trap.step([&] {
            rs.Open(QStringLiteral("Select * from Tbl_Historian_Orders Where ID_DESCRIZIONE_RICAMBI= ") +
                    key(Txt_ID_DESCRIZIONE_RIC) + QStringLiteral(" and Data_Ricevuto ='Non Ricevuto'"));
            waiting = !rs.Eof();
        });
        if (waiting) {
            QString when, quantity;
            trap.step([&] { when = rs.Fields(QStringLiteral("Data")).Value().toString(); });
            trap.step([&] { quantity = rs.Fields(QStringLiteral("Quantita")).Value().toString(); });
            const QString part = category + QStringLiteral(":") + description;
            if (vb::MsgBox(QStringLiteral("Attenzione!! In Data:") + when + QStringLiteral(" Sono stati ordinati ") +
                               quantity + QStringLiteral(" pezzi di questo Ricambio ") + part +
                               QStringLiteral(" Vuoi ugualmente inserirlo in un altro Ordine?"),
                           mb::YesNo | mb::Exclamation, part + QStringLiteral(" GIA IN ORDINE")) != vb::answer::Yes)
                return;
        }
    }

    // The texts go in as typed; the fields keep them, so a second click adds the line again.
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Order")); });
    trap.step([&] { rs.AddNew(); });
    const std::pair<const char*, QString> columns[] = {
        {"ID_RICAMBI", Txt_ID_Ricambi->Text()},
        {"Ricambi", category},
        {"ID_DESCRIZIONE_RICAMBI", Txt_ID_DESCRIZIONE_RIC->Text()},
        {"Descrizione", description},
        {"Codice", Txt_Codice->Text()},
        {"Quantita", Txt_Quant->Text()},
        {"ID_FORNITORE", Txt_ID_Fornitore->Text()},
        {"Fornitore", DataCombo3->Text()},
    };
    for (const auto& [column, value] : columns)
        trap.step([&] { rs.Fields(QString::fromLatin1(column)) = value; });
    trap.step([&] { rs.UpdateBatch(); });
    trap.step([&] { Adodc2->Refresh(); });
    trap.step([&] { Show_Current_Order(); });
}

void Form19::Cmd_Delete_Click()
{
    // No trap: a key the 16-bit passage refuses ends the run. The cell is never Null, so
    // the question always comes; the screen's reload is the whole of the refresh.
    const Variant id = DataGrid2->Columns(QStringLiteral("ID")).Value();
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare Questo Articolo dall'Ordine?"), mb::YesNo,
                   QStringLiteral("Eliminazione Articolo")) != vb::answer::Yes)
        return;
    store::Run(QStringLiteral("Delete * from Tbl_Order WHERE ID  = ") + vb::KeyText(id.toString()));
    shell::ReopenScreen(ScreenName, false);
}

void Form19::Cmd_Evadi_Click()
{
    if (Check1->Value() != 1)
        return;
    if (vb::MsgBox(QStringLiteral("Una volta Evaso l'ordine, non sarà possibile recuperare i dati presenti, "
                                  "Procediamo?"),
                   mb::YesNo, QStringLiteral("EVADI ORDINE")) != vb::answer::Yes)
        return;
    // Two statements, no transaction, no trap: a failure here ends the run. The lines
    // take the store's date and Data_Ricevuto's default; all evasions of one day make one
    // order under that date.
    store::Run(QStringLiteral("INSERT INTO Tbl_Historian_Orders ( DATA, ID_RICAMBI, Ricambi, ID_DESCRIZIONE_RICAMBI, "
                              "Descrizione, Codice, Quantita, ID_FORNITORE, Fornitore )SELECT Date() AS Data, "
                              "Tbl_Order.ID_RICAMBI, Tbl_Order.Ricambi, Tbl_Order.ID_DESCRIZIONE_RICAMBI, "
                              "Tbl_Order.Descrizione, Tbl_Order.Codice, Tbl_Order.Quantita,Tbl_Order.ID_FORNITORE "
                              ",Tbl_Order.Fornitore FROM Tbl_Order;"));
    store::Run(QStringLiteral("Delete * from Tbl_Order"));
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Adodc2->Refresh(); });
    trap.step([&] { Check1->setValue(0); });
    vb::MsgBox(QStringLiteral("L'Ordine è Stato Evaso!!"), mb::Information, QStringLiteral("ORDINE EVASO"));
    trap.step([&] { Cmd_Evadi->setEnabled(false); });
    trap.step([&] {
        const QString caption = Caption();
        shell::ReopenScreen(ScreenName, false);
        shell::TitleMainScreen(caption);
    });
}

// ---- the evaded lines ------------------------------------------------------------------------

void Form19::DataGrid2_RowColChange()
{
    // Only a line still waiting can be confirmed; the open order has none.
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Check2->setVisible(false); });
    const QString view = Txt_Info_Print->Text();
    if (view != OfDate && view != WaitingOfDate)
        return;
    auto cell = [this](const char* caption) { return DataGrid2->Columns(QString::fromLatin1(caption)).Value(); };
    trap.step([&] { Txt_ID_Historian_Orders->setText(cell("ID_Historian_Orders")); });
    trap.step([&] { Txt_ID_DR->setText(cell("ID_DESCRIZIONE_RICAMBI")); });
    trap.step([&] { Txt_Qta->setText(cell("Q.ta")); });
    bool waiting = false;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Tbl_Historian_Orders WHERE ID_Historian_Orders= ") +
                key(Txt_ID_Historian_Orders) + QStringLiteral(" and Data_Ricevuto = 'Non Ricevuto'"));
        waiting = !rs.Eof();
    });
    if (waiting) {
        trap.step([&] { Check2->setVisible(true); });
        return;
    }
    trap.step([&] { Check2->setValue(0); });
    trap.step([&] { Check2->setVisible(false); });
}

void Form19::Cmd_Confirm_Click()
{
    Trap trap = Trap::ignoreAll();
    QString category, description;
    trap.step([&] { category = DataGrid2->Columns(QStringLiteral("Ricambi")).Text(); });
    trap.step([&] { description = DataGrid2->Columns(QStringLiteral("Descrizione")).Text(); });
    const QString prompt = QStringLiteral("Confermi il ricevimento della seguente merce: [") + category +
                           QStringLiteral("] [") + description +
                           QStringLiteral("] ? Cliccando si verrà aggiornato automaticamente anche il magazzino "
                                          "ricambi...");
    const QString title = QStringLiteral("AGGIORNA MAGAZZINO PER ARRIVO MERCE: [") + category + QStringLiteral("] [") +
                          description + QStringLiteral("]");
    if (vb::MsgBox(prompt, mb::YesNo | mb::Question, title) != vb::answer::Yes)
        return;

    // The line first, then the stock, with no way back between them: a part that has gone
    // leaves the line received and no stock moved.
    const QDate today = vb::Clock::today();
    const QString arrived = QStringLiteral("%1/%2/%3").arg(today.day()).arg(today.month()).arg(today.year());
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Historian_Orders SET Tbl_Historian_Orders.Data_Ricevuto = '") + arrived +
                   QStringLiteral("' WHERE Tbl_Historian_Orders.ID_Historian_Orders = ") +
                   key(Txt_ID_Historian_Orders));
    });
    {
        // The stock is read and written back with the part's row locked: goods received
        // at two workstations at once both count.
        store::RowLock lock;
        store::Recordset rs;
        trap.step([&] {
            rs.OpenLocked(QStringLiteral("Select * from Tbl_Descrizione_Ricambi Where ID_DESCRIZIONE_RICAMBI= ") +
                          key(Txt_ID_DR));
        });
        trap.step([&] {
            rs.Fields(QStringLiteral("Giacenza")) = rs.Fields(QStringLiteral("Giacenza")).Value().toDouble() +
                                                    vb::CDbl(Variant(Txt_Qta->Text())).toDouble();
        });
        trap.step([&] { rs.UpdateBatch(); });
    }
    // The whole date again, also from the waiting lines; the dates' choice stays.
    trap.step([&] { Show_History_Of_Date(); });
    trap.step([&] { Check2->setValue(0); });
    trap.step([&] { Check2->setVisible(false); });
}

// ---- the views ---------------------------------------------------------------------------------

void Form19::Cmd_Vis_Ordine_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Order_Inputs(); });
    trap.step([&] { Show_Current_Order(); });
    trap.step([&] { Check1->setVisible(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
}

void Form19::Cmd_Storico_Ordini_Click()
{
    offerDates(AllDates);
}

void Form19::Cmd_Merce_da_Ricevere_Click()
{
    offerDates(WaitingDates);
}

void Form19::offerDates(const QString& which)
{
    // The button of the dates on offer goes off, the other comes on.
    Trap trap = Trap::ignoreAll();
    const bool all = which == AllDates;
    trap.step([&] { Clear_Order_Inputs(); });
    trap.step([&] { Txt_Vis_List->setText(which); });
    trap.step([&] { all ? Fill_History_Dates() : Fill_Waiting_Dates(); });
    trap.step([&] { Cmd_Storico_Ordini->setEnabled(!all); });
    trap.step([&] { Cmd_Merce_da_Ricevere->setEnabled(all); });
}

void Form19::List2_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Order_Inputs(); });
    trap.step([&] { Cmd_Vis_Ordine->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    const QString dates = Txt_Vis_List->Text();
    if (dates == AllDates)
        trap.step([&] { Show_History_Of_Date(); });
    else if (dates == WaitingDates)
        trap.step([&] { Show_Undelivered_Of_Date(); });
}

void Form19::Cmd_Print_Click()
{
    // The print sorts an evaded order by category, where the grid puts the waiting lines
    // first. An empty view prints an empty document under an empty heading.
    Trap trap = Trap::ignoreAll();
    const QString view = Txt_Info_Print->Text();
    const QString date = List2->Text();
    QString statement;
    if (view == OpenOrder)
        statement = QStringLiteral("Select * From Tbl_Order Order by Ricambi");
    else if (view == OfDate)
        statement = QStringLiteral("Select * From Tbl_Historian_Orders where Data = '") + date +
                    QStringLiteral("' Order by Ricambi");
    else if (view == WaitingOfDate)
        statement = QStringLiteral("SELECT * From Tbl_Historian_Orders Where Data = '") + date +
                    QStringLiteral("' and Data_Ricevuto = 'Non Ricevuto' Order by Ricambi,Descrizione;");
    else
        return;
    store::Recordset rs;
    if (!trap.step([&] { rs.Open(statement); }))
        return;
    QString heading;
    trap.step([&] {
        if (view == OpenOrder)
            heading = Variant::fromDateTime(vb::Clock::now()).displayText();
        else
            heading = QStringLiteral("Ordine Evaso in Data ") + rs.Fields(QStringLiteral("Data")).Value().toString() +
                      (view == WaitingOfDate ? QStringLiteral(" Ma non ancora Ricevuto!") : QString());
    });
    reports::ShowOptions options;
    options.setup = [heading](reports::ReportLayout& layout) {
        layout.setCaption(reports::Section::ReportHeader, QStringLiteral("Label1"), heading);
    };
    trap.step([&] {
        reports::ShowReport(QStringLiteral("DataReport1"), reports::ReportData::fromRecordset(rs, false), options);
    });
}

VELMORA_SCREEN(Form19);

} // namespace spares
