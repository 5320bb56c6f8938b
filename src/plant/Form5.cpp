#include "plant/Form5.h"

#include "controls/ScreenKit.h"
#include "reports/ReportLayout.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace plant {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;
using reports::Section;

namespace {

const QString ScreenName = QStringLiteral("Form5");
using vb::caption::Edit;
using vb::caption::Save;

// The screen in twips: the list over the whole width, below it the model's fields, the
// three searches and the commands side by side. The whole of it fits the main screen's
// working area of an 800 x 600 display.
constexpr int ScreenWidth = vb::WorkAreaWidth;
constexpr int ScreenHeight = vb::WorkAreaHeight;
constexpr int GridHeight = 2640;
constexpr int FieldsTop = 3120;
constexpr int RowStep = 420;
constexpr int RowHeight = 315;
constexpr int LabelWidth = 1230;
constexpr int FieldLeft = 1410;
constexpr int FieldWidth = 2700;
constexpr int SearchLeft = 4260;
constexpr int SearchWidth = 2235;
constexpr int ButtonsLeft = 6630;
constexpr int ButtonWidth = 2475;
constexpr int ButtonHeight = 345;
constexpr int ButtonStep = 390;

constexpr int rowTop(int row)
{
    return FieldsTop + row * RowStep;
}
constexpr int searchTop(int index)
{
    return FieldsTop - 60 + index * 840;
}
constexpr int buttonTop(int index)
{
    return FieldsTop - 60 + index * ButtonStep;
}

/// The grid's columns by field: the whole list's six, and so a search's rows too.
struct GridColumnLayout
{
    const char* field;
    const char* caption;
    int width;
};
constexpr GridColumnLayout GridColumns[] = {{"ID_MODELLO", "ID_MODELLO", 1350}, {"Macchina", "MACCHINA", 1650},
                                            {"Modello", "MODELLO", 1600},       {"Stato", "STATO", 950},
                                            {"reparto", "REPARTO", 1300},       {"Costruttore", "COSTRUTTORE", 1550}};

// A model's names in every table that copies them: the register first, then the general
// procedures, the assignments, the wall chart and the interventions.
const char* const RegisterRename = "UPDATE Tbl_Maintenance SET Tbl_Maintenance.Macchina = '%1', "
                                   "Tbl_Maintenance.Modello = '%2' WHERE ((Tbl_Maintenance.ID_MODELLO = %3))";
const char* const CopyRenames[] = {
    "UPDATE Tbl_Proc_General_Macc SET Tbl_Proc_General_Macc.Macchina = '%1', Tbl_Proc_General_Macc.Modello = '%2' "
    "WHERE ((Tbl_Proc_General_Macc.ID_MODELLO = %3))",
    "UPDATE Tbl_Assegna_M SET Tbl_Assegna_M.Macchina = '%1', Tbl_Assegna_M.Modello = '%2' "
    "WHERE ((Tbl_Assegna_M.ID_MODELLO = %3))",
    "UPDATE Tbl_Planned SET Tbl_Planned.Macchina = '%1', Tbl_Planned.Modello = '%2' "
    "WHERE ((Tbl_Planned.ID_MODELLO = %3))",
    "UPDATE Tbl_Ricerca SET Tbl_Ricerca.Macchina = '%1', Tbl_Ricerca.Modello = '%2' "
    "WHERE ((Tbl_Ricerca.ID_MODELLO = %3))",
};

/// One rename statement with the names, quotes doubled, and the key (all put in at once,
/// so a "%" in a name stays as typed).
QString renameStatement(const char* pattern, const QString& machine, const QString& model, const QString& id)
{
    return QString::fromLatin1(pattern).arg(vb::DoubledQuotes(machine), vb::DoubledQuotes(model), id);
}

} // namespace

Form5::Form5(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("INSERISCI MACCHINE"))
{
    buildControls();
    connectEvents();
}

void Form5::buildControls()
{
    Move(0, 0, ScreenWidth, ScreenHeight);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    DataGrid1 = kit.grid(this, "DataGrid1", Adodc2, "Adodc2", 120, 120, ScreenWidth - 240, GridHeight);
    Label1 = kit.label(this, "Label1", QStringLiteral("Conteggio Macchine:"), 120, 120 + GridHeight + 60, 5000);
    Txt_Posizione = kit.hidden("Txt_Posizione");
    txtID_MODELLO = kit.hidden("txtID_MODELLO");
    TxtID_REPARTO = kit.hidden("TxtID_REPARTO");

    // The model, one row per field.
    Label2 = kit.label(this, "Label2", QStringLiteral("Macchina:"), 120, rowTop(0) + 30, LabelWidth);
    txtMacchina = kit.field(this, "txtMacchina", FieldLeft, rowTop(0), FieldWidth);
    Label3 = kit.label(this, "Label3", QStringLiteral("Modello:"), 120, rowTop(1) + 30, LabelWidth);
    Txt_Modello = kit.field(this, "Txt_Modello", FieldLeft, rowTop(1), FieldWidth);
    Label4 = kit.label(this, "Label4", QStringLiteral("Reparto:"), 120, rowTop(2) + 30, LabelWidth);
    DataCombo3 = kit.dataCombo(this, "DataCombo3", Adodc4, "Adodc4", FieldLeft, rowTop(2), FieldWidth);
    Label5 = kit.label(this, "Label5", QStringLiteral("Costruttore:"), 120, rowTop(3) + 30, LabelWidth);
    DataCombo2 = kit.dataCombo(this, "DataCombo2", Adodc1, "Adodc1", FieldLeft, rowTop(3), FieldWidth);
    Label6 = kit.label(this, "Label6", QStringLiteral("Stato:"), 120, rowTop(4) + 30, LabelWidth);
    DataCombo4 = kit.dataCombo(this, "DataCombo4", Adodc3, "Adodc3", FieldLeft, rowTop(4), FieldWidth);
    Label7 = kit.label(this, "Label7", QStringLiteral("Anno:"), 120, rowTop(5) + 30, LabelWidth);
    txtAnno = kit.field(this, "txtAnno", FieldLeft, rowTop(5), 1200);

    // The searches, one frame each.
    Frame1 =
        kit.frame(this, "Frame1", QStringLiteral("Cerca per Macchina"), SearchLeft, searchTop(0), SearchWidth, 780);
    Text1 = kit.field(Frame1, "Text1", 120, 330, SearchWidth - 240);
    Frame2 = kit.frame(this, "Frame2", QStringLiteral("Cerca per Modello"), SearchLeft, searchTop(1), SearchWidth, 780);
    Text2 = kit.field(Frame2, "Text2", 120, 330, SearchWidth - 240);
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("Cerca per Stato"), SearchLeft, searchTop(2), SearchWidth, 780);
    DataCombo1 = kit.dataCombo(Frame3, "DataCombo1", 120, 330, SearchWidth - 240);

    // The commands in one column.
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), ButtonsLeft, buttonTop(0), ButtonWidth);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Edit, ButtonsLeft, buttonTop(1), ButtonWidth);
    Cmd_Edit->setEnabled(false); // a row selection or INSERISCI enables it
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), ButtonsLeft, buttonTop(2), ButtonWidth);
    Cmd_Print =
        kit.button(this, "Cmd_Print", QStringLiteral("PRINT LISTA MACCHINE"), ButtonsLeft, buttonTop(3), ButtonWidth);
    Cmd_Vis_Manut = kit.button(this, "Cmd_Vis_Manut", QStringLiteral("MANUTENZIONI GENERALI"), ButtonsLeft,
                               buttonTop(4), ButtonWidth);
    Cmd_Vis_All =
        kit.button(this, "Cmd_Vis_All", QStringLiteral("VISUALIZZA TUTTO"), ButtonsLeft, buttonTop(5), ButtonWidth);
    Cmd_Info = kit.button(this, "Cmd_Info", QStringLiteral("Info"), ButtonsLeft, buttonTop(6), ButtonWidth);
}

void Form5::connectEvents()
{
    DataGrid1->Click = [this] { DataGrid1_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };

    // The three searches exclude each other; leaving a typed search empties it.
    Text1->Change = [this] {
        Trap trap = Trap::ignoreAll();
        trap.step([&] { DataCombo1->setText(QString()); });
        trap.step([&] { Text2->setText(QString()); });
    };
    Text2->Change = [this] {
        Trap trap = Trap::ignoreAll();
        trap.step([&] { Text1->setText(QString()); });
        trap.step([&] { DataCombo1->setText(QString()); });
    };
    Text1->LostFocus.connect([this] { Text1->setText(QString()); });
    Text2->LostFocus.connect([this] { Text2->setText(QString()); });
    Text1->KeyUp = [this] { Text1_KeyUp(); };
    Text2->KeyUp = [this] { Text2_KeyUp(); };
    DataCombo1->Click = [this] { DataCombo1_Click(); };

    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Vis_Manut->Click = [this] { Cmd_Vis_Manut_Click(); };
    Cmd_Info->Click = [this] { Cmd_Info_Click(); };
}

// ---- load and list ------------------------------------------------------------------

void Form5::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    // The makers and the states offer what was typed before; the combos take new text.
    trap.step([&] {
        Adodc4->setRecordSource(QStringLiteral("Select * From Tbl_Reparto Order by REPARTO asc"));
        Adodc4->Refresh();
        DataCombo3->bind(Adodc4, QStringLiteral("Reparto"));
    });
    trap.step([&] {
        Adodc1->setRecordSource(QStringLiteral("SELECT Tbl_Macchina.Costruttore From Tbl_Macchina GROUP BY "
                                               "Tbl_Macchina.Costruttore ORDER BY Tbl_Macchina.Costruttore;"));
        Adodc1->Refresh();
        DataCombo2->bind(Adodc1, QStringLiteral("COSTRUTTORE"));
    });
    trap.step([&] {
        Adodc3->setRecordSource(
            QStringLiteral("SELECT Tbl_Macchina.Stato From Tbl_Macchina GROUP BY Tbl_Macchina.Stato;"));
        Adodc3->Refresh();
        DataCombo4->bind(Adodc3, QStringLiteral("STATO"));
        DataCombo1->bind(Adodc3, QStringLiteral("STATO"));
    });
    trap.step([&] { Fill_Grid_Macchine_All(); });
}

void Form5::Fill_Grid_Macchine_All()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc2->setRecordSource(
            QStringLiteral("SELECT ID_MODELLO, Macchina, "
                           "Modello, Stato,reparto,Costruttore From Tbl_Macchina Order by Macchina"));
        Adodc2->Refresh();
    });
    trap.step([&] { DataGrid1->setDataSource(Adodc2); });
    Set_Grid_Columns();
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("Conteggio Macchine: ") + QString::number(Adodc2->RecordCount())); });
}

void Form5::Set_Grid_Columns()
{
    Trap trap = Trap::ignoreAll();
    // A search lists whole rows: the department's key and the year stay out of sight.
    for (int i = 0; i < DataGrid1->ColumnCount(); ++i)
        trap.step([&] { DataGrid1->Columns(i).setWidth(0); });
    for (const GridColumnLayout& c : GridColumns) {
        trap.step([&] {
            vb::GridColumn& column = DataGrid1->Columns(QString::fromLatin1(c.field));
            column.setCaption(QString::fromLatin1(c.caption));
            column.setWidth(c.width);
            column.setLocked(true);
        });
    }
}

void Form5::Clear_Fields()
{
    Trap trap = Trap::ignoreAll();
    for (vb::TextBox* t : {txtID_MODELLO, txtMacchina, Txt_Modello, txtAnno, TxtID_REPARTO})
        trap.step([&] { t->setText(QString()); });
    for (vb::DataCombo* c : {DataCombo3, DataCombo2, DataCombo4})
        trap.step([&] { c->setText(QString()); });
}

// ---- the selection of a row ---------------------------------------------------------

void Form5::DataGrid1_Click()
{
    Trap trap = Trap::ignoreAll();
    // A click on the list leaves an insert.
    trap.step([&] {
        Cmd_Edit->setCaption(Edit);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
    });
}

void Form5::DataGrid1_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });

    std::int16_t id = 0;
    trap.step([&] {
        if (DataGrid1->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        id = DataGrid1->Columns(QStringLiteral("ID_MODELLO")).Value().toInteger();
    });
    // The general procedures can be printed only when the model has some.
    bool procedures = false;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Proc_General WHERE ID_MODELLO = ") + QString::number(id));
        procedures = !rs.Eof();
    });
    trap.step([&] { Cmd_Vis_Manut->setEnabled(procedures); });

    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Macchina WHERE ID_MODELLO= ") + QString::number(id)); });
    bool found = false;
    trap.step([&] { found = !rs.Eof(); });
    if (!found || trap.ended())
        return;

    // An empty column leaves its field as the clearing left it. The department's key is
    // read and let go: TxtID_REPARTO follows the department's name through DataCombo3.
    auto copy = [&](vb::Control* to, const char* column) {
        trap.step([&] { to->setVbProperty(QStringLiteral("Text"), rs.Fields(QString::fromLatin1(column)).Value()); });
    };
    copy(txtID_MODELLO, "ID_MODELLO");
    copy(txtMacchina, "Macchina");
    copy(Txt_Modello, "Modello");
    copy(DataCombo4, "Stato");
    trap.step([&] { static_cast<void>(rs.Fields(QStringLiteral("ID_REPARTO")).Value()); });
    copy(DataCombo3, "REPARTO");
    copy(DataCombo2, "Costruttore");
    copy(txtAnno, "Anno");
    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid1->Row())); });
}

void Form5::DataCombo3_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    const QString name = DataCombo3->Text();
    if (name.size() < 1)
        return;
    // A name that is no department's has no row: the box of the missing row says so.
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT * From Tbl_Reparto Where Reparto= '") + vb::DoubledQuotes(name) +
                QStringLiteral("' ORDER BY Reparto;"));
    });
    trap.step([&] { TxtID_REPARTO->setText(rs.Fields(QStringLiteral("ID_REPARTO")).Value()); });
}

// ---- searches -----------------------------------------------------------------------

void Form5::search(const QString& command, const QString& text)
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    if (text.isEmpty())
        return;
    trap.step([&] { Clear_Fields(); });
    // The command's rows stand in the grid until the screen is reopened.
    trap.step([&] { Adodc2->setRecordset(store::DataStore::instance().Command(command, text)); });
    trap.step([&] { Set_Grid_Columns(); });
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("Macchine Trovate n° ") + QString::number(Adodc2->RecordCount())); });
}

void Form5::Text1_KeyUp()
{
    search(QStringLiteral("Tbl_Macchina"), Text1->Text());
}

void Form5::Text2_KeyUp()
{
    search(QStringLiteral("Tbl_Macchina_Search_Modello"), Text2->Text());
}

void Form5::DataCombo1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Text1->setText(QString()); });
    trap.step([&] { Text2->setText(QString()); });
    search(QStringLiteral("Tbl_Macchina_Search_Stato"), DataCombo1->Text());
}

// ---- insert, save, delete -----------------------------------------------------------

void Form5::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    trap.step([&] {
        Cmd_Edit->setCaption(Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form5::Cmd_Edit_Click()
{
    // Every failure carries on with the next statement.
    Trap trap = Trap::ignoreAll();
    if (txtMacchina->Text().isEmpty() || Txt_Modello->Text().isEmpty() || DataCombo3->Text().isEmpty() ||
        DataCombo4->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }

    // The seven columns besides the key, from the fields. A department typed by hand has
    // no key: its key column is passed over and keeps what it held.
    auto writeModel = [&](store::Recordset& rs) {
        store::WriteFields(trap, rs,
                           {{"Macchina", txtMacchina->Text()},
                            {"Modello", Txt_Modello->Text()},
                            {"Stato", DataCombo4->Text()},
                            {"ID_REPARTO", TxtID_REPARTO->Text()},
                            {"Reparto", DataCombo3->Text()},
                            {"Costruttore", DataCombo2->Text()},
                            {"Anno", txtAnno->Text()}});
    };

    if (Cmd_Edit->Caption() == Save) {
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Macchina")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { txtID_MODELLO->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value()); });
            writeModel(rs);
            trap.step([&] { rs.UpdateBatch(); });
        }
        trap.step([&] { Cmd_Edit->setCaption(Edit); });
        trap.step([&] { reopen(false, true); });
        return;
    }

    // An edit of the selected model: the list still shows the names before the edit.
    QString old, oldModel;
    trap.step([&] {
        if (DataGrid1->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        old = DataGrid1->Columns(QStringLiteral("Macchina")).Text();
        oldModel = DataGrid1->Columns(QStringLiteral("Modello")).Text();
    });
    const QString machine = txtMacchina->Text();
    const QString model = Txt_Modello->Text();
    const QString prompt =
        old != machine || oldModel != model
            ? QStringLiteral("La Macchina [") + old + QStringLiteral("] Sta per essere modificata, Vuoi Procedere??")
            : QStringLiteral("Stai per modificare i dati della Macchina [") + old +
                  QStringLiteral("] Vuoi Procedere??");
    if (vb::MsgBox(prompt, mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Macchina **") + old + QStringLiteral("**")) != vb::answer::Yes)
        return;

    QString id;
    trap.step([&] { id = vb::KeyText(txtID_MODELLO->Text()); });
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Macchina where ID_MODELLO =") + id); });
        writeModel(rs);
        trap.step([&] { rs.UpdateBatch(); });
    }
    // Every copy of the names follows, renamed or not. The register and the procedures'
    // screen hold the old names in their lists: they go first.
    trap.step([] { shell::screens().unload(QStringLiteral("Form7")); });
    trap.step([&] { store::Run(renameStatement(RegisterRename, machine, model, id)); });
    trap.step([] { shell::screens().unload(QStringLiteral("Form9")); });
    for (const char* pattern : CopyRenames)
        trap.step([&] { store::Run(renameStatement(pattern, machine, model, id)); });
    trap.step([&] { reopen(false, true); });
}

void Form5::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (txtID_MODELLO->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUNA MACCHINA SELEZIONATA"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare la Macchina selezionata e tutti i suoi Dati?"),
                   mb::YesNo + mb::Question,
                   QStringLiteral("Eliminazione Macchina **") + Txt_Modello->Text() +
                       QStringLiteral("** e Corrispettivi Dati")) != vb::answer::Yes)
        return;
    // The model's units, steps of assigned maintenance, notes and interventions stay, and
    // so do its general procedure steps: only their heading goes.
    QString id;
    trap.step([&] { id = vb::KeyText(txtID_MODELLO->Text()); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Macchina WHERE ID_MODELLO  = ") + id); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Proc_General_Macc WHERE ID_MODELLO  = ") + id); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Assegna_M WHERE ID_MODELLO  = ") + id); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Maintenance WHERE ID_MODELLO  = ") + id); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Planned WHERE ID_MODELLO  = ") + id); });
    trap.step([&] { reopen(false, true); });
}

void Form5::Cmd_Vis_All_Click()
{
    Trap trap = Trap::ignoreAll();
    Form5* again = nullptr;
    trap.step([&] { again = reopen(true, false); });
    if (!again)
        return;
    trap.step([&] { again->Cmd_Print->setCaption(QStringLiteral("Stampa Tutti le Macchine")); });
    // The caption of a save to a text file: this screen has no such button, and the
    // caption goes nowhere.
    trap.step([&] {
        if (vb::Control* saveButton = again->control(QStringLiteral("Cmd_Save")))
            saveButton->setVbProperty(QStringLiteral("Caption"), QStringLiteral("Salva in Txt Tutti le Macchine"));
    });
}

Form5* Form5::reopen(bool plus300, bool backToRow)
{
    // Without the 300 twips the screen comes back placed as the About screen is.
    return static_cast<Form5*>(shell::ReopenScreen(
        ScreenName, backToRow, plus300 ? shell::Placement::WorkingScreen : shell::Placement::About));
}

// ---- prints and date advice ---------------------------------------------------------

void Form5::Cmd_Print_Click()
{
    Trap trap = Trap::ignoreAll();
    // A department with no model gives no group; models of no department group together.
    const QString statement =
        QStringLiteral("SHAPE {SELECT Tbl_Macchina.REPARTO, Count(Tbl_Macchina.Macchina) AS ConteggioDiMacchina From "
                       "Tbl_Macchina GROUP BY Tbl_Macchina.REPARTO;} ") +
        QStringLiteral("APPEND ({SELECT Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                       "Tbl_Macchina.Stato, Tbl_Macchina.Costruttore, Tbl_Macchina.Anno From Tbl_Macchina GROUP BY "
                       "Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, Tbl_Macchina.Stato, "
                       "Tbl_Macchina.Costruttore, Tbl_Macchina.Anno ORDER BY Tbl_Macchina.REPARTO;} ") +
        QStringLiteral("RELATE Reparto to Reparto) as Dati");
    // Label2 of the report header takes the present date and time with every show.
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Reparto"));
        layout.setDataField(Section::GroupFooter, QStringLiteral("TextBox7"), QStringLiteral("Reparto"));
        layout.setDataField(Section::GroupFooter, QStringLiteral("TextBox8"), QStringLiteral("ConteggioDiMAcchina"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport8"), statement, options); });
}

void Form5::Cmd_Vis_Manut_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport6")); });
    const QString key = txtID_MODELLO->Text();
    if (key.isEmpty()) {
        vb::MsgBox(QStringLiteral("Non hai selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("MANCANZA DATI"));
        return;
    }
    if (vb::Val(Variant(key)) == 0) {
        vb::MsgBox(QStringLiteral("Non c'è nessuna Procedura di Manutenzione!"), mb::Information,
                   QStringLiteral("MANCANZA DATI!"));
        return;
    }
    QString id;
    trap.step([&] { id = vb::KeyText(key); });
    // The steps come from every model of the same name; the hours print as "#,###.00".
    const QString statement =
        QStringLiteral(
            "SHAPE {SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
            "Sum(Tbl_Proc_General.Minuti) AS SommaDiMinuti, [Tbl_Proc_General_Macc]![Tempo_Minuti]/60 AS Ore FROM "
            "Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General ON Tbl_Proc_General_Macc.ID_MODELLO = "
            "Tbl_Proc_General.ID_MODELLO GROUP BY Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
            "[Tbl_Proc_General_Macc]![Tempo_Minuti]/60, Tbl_Proc_General.ID_MODELLO HAVING "
            "(((Tbl_Proc_General.ID_MODELLO)=") +
        id + QStringLiteral("));} ") +
        QStringLiteral("APPEND ({SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
                       "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura, "
                       "Tbl_Proc_General.Minuti FROM Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General on "
                       "(Tbl_Proc_General_Macc.ID_MODELLO = Tbl_Proc_General.ID_MODELLO);} ") +
        QStringLiteral("RELATE Modello to Modello) as Dati");
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox11"), QStringLiteral("Macchina"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox4"), QStringLiteral("Modello"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox7"), QStringLiteral("SommaDiMinuti"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Ore"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport6"), statement, options); });
}

void Form5::Cmd_Info_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::WriteDateInfo(); });
}

VELMORA_SCREEN(Form5);

} // namespace plant
