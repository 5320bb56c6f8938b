#include "definition/Form13.h"

#include "controls/ScreenKit.h"
#include "definition/Workload.h"
#include "reports/ReportLayout.h"
#include "reports/ReportViewer.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace definition {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;
using reports::Section;

namespace {

const QString ScreenName = QStringLiteral("Form13");
using vb::caption::Edit;
using vb::caption::Save;
/// Object variable not set: a grid without a current row, among others.
constexpr int ObjectNotSet = 91;

// The screen in twips, within the main screen's working area: the pick lists and the
// commands on top, the assignments across the whole width, below them the steps of the
// assignment (left) and the model's general procedures (right).
constexpr int ScreenWidth = vb::WorkAreaWidth;
constexpr int ScreenHeight = vb::WorkAreaHeight;
constexpr int RowHeight = 315;
constexpr int ButtonHeight = 345;
constexpr int ButtonWidth = 1290;
constexpr int ButtonStep = 1320;
constexpr int ButtonsLeft = 3900;
constexpr int WideButtonStep = 1740;
constexpr int AssignmentsTop = 1320;
constexpr int AssignmentsHeight = 1560;
constexpr int LowerTop = 2940;
constexpr int LowerHeight = 3180;
constexpr int StepsWidth = 4560;
constexpr int GeneralLeft = 4800;
constexpr int GeneralWidth = ScreenWidth - GeneralLeft - 120;

constexpr int buttonLeft(int index)
{
    return ButtonsLeft + index * ButtonStep;
}
constexpr int wideButtonLeft(int index)
{
    return ButtonsLeft + index * WideButtonStep;
}

struct ColumnLayout
{
    const char* caption;
    int width;
};
// By position, as the statements list the columns.
constexpr ColumnLayout AssignmentColumns[] = {
    {"ID", 0},         {"Macchina", 2300},   {"Modello", 2300}, {"Manutenzione", 1800},     {"Tot Min", 700},
    {"ID_MODELLO", 0}, {"ID_MAINT_TIPO", 0}, {"N° Macch", 600}, {"Ore per Settimana", 1100}};
constexpr ColumnLayout StepColumns[] = {{"ID_PROCEDURA", 0}, {"Macchina", 0},  {"Modello", 0},   {"Manutenzione", 0},
                                        {"Num", 500},        {"Titolo", 3200}, {"Procedura", 0}, {"Minuti", 700}};
constexpr ColumnLayout GeneralColumns[] = {{"ID_PROCEDURA", 0}, {"Macchina", 0},  {"Modello", 0},   {"Num", 500},
                                           {"Titolo", 3100},    {"Procedura", 0}, {"ID_MODELLO", 0}};

/// Widths and captions by position; all locked but the column named open.
template <std::size_t N> void layColumns(vb::DataGrid* grid, const ColumnLayout (&columns)[N], int open = -1)
{
    for (int i = 0; i < int(N) && i < grid->ColumnCount(); ++i) {
        vb::GridColumn& c = grid->Columns(i);
        c.setCaption(QString::fromUtf8(columns[i].caption));
        c.setWidth(columns[i].width);
        c.setLocked(i != open);
    }
}

/// A number as VB's "&" puts it into statement text.
QString text(const Variant& v)
{
    return vb::Concat(Variant(QString()), v).toString();
}

/// The next revision of the sheet row at hand, dated today, saved. A sheet without a
/// revision number keeps none (Null plus one is Null).
void nextRevision(store::Recordset& rs, Trap& trap)
{
    trap.step([&] {
        const Variant rev = rs.Fields(QStringLiteral("Rev")).Value();
        rs.Fields(QStringLiteral("Rev")) = rev.isNull() ? rev : Variant(rev.toLong() + 1);
    });
    trap.step([&] { rs.Fields(QStringLiteral("Data_Rev")) = Variant::fromDate(vb::Clock::today()); });
    trap.step([&] { rs.UpdateBatch(); });
}

} // namespace

Form13::Form13(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("PROCEDURA MANUTENZIONI"))
{
    buildControls();
    connectEvents();
}

void Form13::buildControls()
{
    Move(0, 0, ScreenWidth, ScreenHeight);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    // The assignment: machine, model, type.
    Label1 = kit.label(this, "Label1", QStringLiteral("Macchina:"), 120, 150, 1300);
    DataCombo2 = kit.dataCombo(this, "DataCombo2", Adodc2, "Adodc2", 1440, 120, 2340);
    Label2 = kit.label(this, "Label2", QStringLiteral("Modello:"), 120, 540, 1300);
    DataCombo3 = kit.dataCombo(this, "DataCombo3", Adodc3, "Adodc3", 1440, 510, 2340);
    Label3 = kit.label(this, "Label3", QStringLiteral("Manutenzione:"), 120, 930, 1300);
    DataCombo4 = kit.dataCombo(this, "DataCombo4", Adodc4, "Adodc4", 1440, 900, 2340);
    Label4 = kit.label(this, "Label4", QStringLiteral("Tot. Minuti:"), ButtonsLeft, 150, 1200);
    Txt_Tot_Min = kit.field(this, "Txt_Tot_Min", ButtonsLeft + 1320, 120, 900);
    Txt_Tot_Min->setLocked(true);

    ID_MOD = kit.hidden("ID_MOD");
    ID_MAINT = kit.hidden("ID_MAINT");
    Txt_ID = kit.hidden("Txt_ID");
    ID_MOD_OLD = kit.hidden("ID_MOD_OLD");
    ID_MAINT_OLD = kit.hidden("ID_MAINT_OLD");
    Txt_ID_MODELLO = kit.hidden("Txt_ID_MODELLO");
    Txt_ID_MAINT_TIPO = kit.hidden("Txt_ID_MAINT_TIPO");
    Txt_Grid_Modello = kit.hidden("Txt_Grid_Modello");
    Txt_Grid_Manutenzione = kit.hidden("Txt_Grid_Manutenzione");
    Txt_ID_PROCEDURA = kit.hidden("Txt_ID_PROCEDURA");
    Txt_ID_PROCEDURA_General = kit.hidden("Txt_ID_PROCEDURA_General");
    Txt_Control_Min = kit.hidden("Txt_Control_Min", QStringLiteral("0"));

    // The commands in two rows beside the pick lists: four on the first row, the three
    // longer captions share the second.
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), buttonLeft(0), 510, ButtonWidth);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Edit, buttonLeft(1), 510, ButtonWidth);
    Cmd_Edit->setEnabled(false); // a row selection or INSERISCI enables it
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), buttonLeft(2), 510, ButtonWidth);
    Cmd_Aggiorna = kit.button(this, "Cmd_Aggiorna", QStringLiteral("AGGIORNA"), buttonLeft(3), 510, ButtonWidth);
    Cmd_Vis_All = kit.button(this, "Cmd_Vis_All", QStringLiteral("Visualizza Tutto"), wideButtonLeft(0), 900,
                             WideButtonStep - 30);
    Cmd_Print =
        kit.button(this, "Cmd_Print", QStringLiteral("PRINT PROCEDURA"), wideButtonLeft(1), 900, WideButtonStep - 30);
    Cmd_Print_Rapporto = kit.button(this, "Cmd_Print_Rapporto", QStringLiteral("PRINT RAPPORTO"), wideButtonLeft(2),
                                    900, WideButtonStep - 30);

    // The assignments.
    DataGrid2 =
        kit.grid(this, "DataGrid2", Adodc5, "Adodc5", 120, AssignmentsTop, ScreenWidth - 240, AssignmentsHeight);

    // The steps of the assignment, with the minutes of a new step.
    Frame2 =
        kit.frame(this, "Frame2", QStringLiteral("N° Procedure Manutenzione"), 120, LowerTop, StepsWidth, LowerHeight);
    DataGrid1 = kit.grid(Frame2, "DataGrid1", Adodc1, "Adodc1", 120, 240, StepsWidth - 240, 1860);
    Txt_Min = kit.searchFrame(Frame2, "Frame10", QStringLiteral("Minuti"), "Txt_Min", 120, 2220, 1300, 700, &Frame10);
    Txt_Min->setText(QStringLiteral("0"));
    Cmd_Inserisci = kit.button(Frame2, "Cmd_Inserisci", QStringLiteral("INSERISCI"), 1560, 2400, 1400);
    Cmd_Delete2 = kit.button(Frame2, "Cmd_Delete2", QStringLiteral("ELIMINA"), 3040, 2400, 1400);
    Cmd_Delete2->setEnabled(false); // a click on a step enables it

    // The model's general procedures: the step picked for copying.
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("Procedure Generali"), GeneralLeft, LowerTop, GeneralWidth,
                       LowerHeight);
    DataGrid3 = kit.grid(Frame1, "DataGrid3", Adodc6, "Adodc6", 120, 240, GeneralWidth - 240, 1320);
    Label5 = kit.label(Frame1, "Label5", QStringLiteral("N°"), 120, 1650, 300);
    Txt_Num = kit.field(Frame1, "Txt_Num", 420, 1620, 600);
    Txt_Titolo = kit.field(Frame1, "Txt_Titolo", 1080, 1620, GeneralWidth - 1200);
    Txt_Procedura = kit.textArea(Frame1, "Txt_Procedura", 120, 2010, GeneralWidth - 240, 1050);
}

void Form13::connectEvents()
{
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };
    DataCombo4->Change = [this] { DataCombo4_Change(); };
    DataGrid2->Click = [this] { DataGrid2_Click(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    DataGrid1->Click = [this] { DataGrid1_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataGrid3->RowColChange = [this] { DataGrid3_RowColChange(); };
    Txt_Min->KeyPress = [this](int& keyAscii) { Txt_Min_KeyPress(keyAscii); };
    Txt_Min->Change = [this] { Txt_Min_Change(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Inserisci->Click = [this] { Cmd_Inserisci_Click(); };
    Cmd_Delete2->Click = [this] { Cmd_Delete2_Click(); };
    Cmd_Aggiorna->Click = [this] { Cmd_Aggiorna_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Print_Rapporto->Click = [this] { Cmd_Print_Rapporto_Click(); };
}

// ---- load and lists -----------------------------------------------------------------

void Form13::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([] { Refresh_Tempo_Ore(); });

    auto bindList = [&](vb::Adodc* source, vb::DataCombo* combo, const QString& statement, const char* field) {
        trap.step([&] {
            source->setRecordSource(statement);
            combo->bind(source, QString::fromLatin1(field));
            source->Refresh();
        });
    };
    bindList(Adodc2, DataCombo2,
             QStringLiteral("SELECT Tbl_Proc_General_Macc.Macchina From Tbl_Proc_General_Macc GROUP BY "
                            "Tbl_Proc_General_Macc.Macchina HAVING (((Tbl_Proc_General_Macc.Macchina)<>''));"),
             "Macchina");
    bindList(
        Adodc3, DataCombo3,
        QStringLiteral("SELECT Tbl_Proc_General_Macc.ID_MODELLO, Tbl_Proc_General_Macc.Modello From "
                       "Tbl_Proc_General_Macc GROUP BY Tbl_Proc_General_Macc.ID_MODELLO, Tbl_Proc_General_Macc.Modello "
                       "ORDER BY Tbl_Proc_General_Macc.Modello;"),
        "Modello");
    bindList(
        Adodc4, DataCombo4,
        QStringLiteral("SELECT Tbl_Maint_Tipo.ID_MAINT_TIPO, Tbl_Maint_Tipo.Maint_Tipo, Tbl_Maint_Tipo.Frequenza_Sett "
                       "FROM Tbl_Maint_Tipo;"),
        "Maint_Tipo");

    // The pair handed from the register: reading it brings Form7 into being, as it did.
    auto handed = [&](vb::TextBox* to, const char* control) {
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form7"), QString::fromLatin1(control)))
                to->setText(c->vbProperty(QStringLiteral("Text")));
        });
    };
    handed(Txt_ID_MODELLO, "ID_MOD");
    handed(Txt_ID_MAINT_TIPO, "ID_MAINT");
    QString m, t;
    if (!Txt_ID_MODELLO->Text().isEmpty() && !Txt_ID_MAINT_TIPO->Text().isEmpty()) {
        trap.step([&] { m = vb::KeyText(Txt_ID_MODELLO->Text()); });
        trap.step([&] { t = vb::KeyText(Txt_ID_MAINT_TIPO->Text()); });
    }
    Fill_Assignments(m, t);
    Fill_Steps(m, t);
}

void Form13::Fill_Assignments(const QString& m, const QString& t)
{
    Trap trap = Trap::ignoreAll();
    const QString statement =
        m.isEmpty() || t.isEmpty()
            ? QStringLiteral("SELECT Tbl_Assegna_M.ID, Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, "
                             "Tbl_Assegna_M.Manutenzione_Tipo, Tbl_Assegna_M.Tempo_Minuti, Tbl_Assegna_M.ID_MODELLO, "
                             "Tbl_Assegna_M.ID_MAINT_TIPO, Tbl_Assegna_M.Num_Macchine, Tbl_Assegna_M.Tot_Ore_Sett FROM "
                             "Tbl_Assegna_M order by Modello;")
            : QStringLiteral("SELECT Tbl_Assegna_M.ID, Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, "
                             "Tbl_Assegna_M.Manutenzione_Tipo, Tbl_Assegna_M.Tempo_Minuti, Tbl_Assegna_M.ID_MODELLO, "
                             "Tbl_Assegna_M.ID_MAINT_TIPO, Tbl_Assegna_M.Num_Macchine, Tbl_Assegna_M.Tot_Ore_Sett FROM "
                             "Tbl_Assegna_M WHERE (((Tbl_Assegna_M.ID_MODELLO)=") +
                  m + QStringLiteral(") AND ((Tbl_Assegna_M.ID_MAINT_TIPO)=") + t +
                  QStringLiteral("))order by Modello;");
    trap.step([&] {
        Adodc5->setRecordSource(statement);
        Adodc5->Refresh();
    });
    trap.step([&] { layColumns(DataGrid2, AssignmentColumns); });
}

void Form13::Fill_Steps(const QString& m, const QString& t)
{
    Trap trap = Trap::ignoreAll();
    // Without a pair the statement is refused and the list stays empty.
    trap.step([&] {
        Adodc1->setRecordSource(
            QStringLiteral("SELECT Tbl_ProcedureM.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                           "Tbl_Maint_Tipo.Maint_Tipo, Tbl_ProcedureM.Num, Tbl_ProcedureM.Titolo, "
                           "Tbl_ProcedureM.Procedura, Tbl_ProcedureM.Minuti FROM Tbl_Macchina INNER JOIN "
                           "(Tbl_Maint_Tipo INNER JOIN Tbl_ProcedureM ON Tbl_Maint_Tipo.ID_MAINT_TIPO = "
                           "Tbl_ProcedureM.ID_MAINT_TIPO) ON Tbl_Macchina.ID_MODELLO = "
                           "Tbl_ProcedureM.ID_MODELLO WHERE Tbl_ProcedureM.ID_MODELLO =") +
            m + QStringLiteral(" AND Tbl_ProcedureM.ID_MAINT_TIPO = ") + t + QStringLiteral(" Order by Num"));
        Adodc1->Refresh();
    });
    // The minutes are the one column open to typing.
    trap.step([&] { layColumns(DataGrid1, StepColumns, 7); });
}

void Form13::Clear_Step_Fields()
{
    Trap trap = Trap::ignoreAll();
    for (vb::TextBox* t : {Txt_Num, Txt_Titolo, Txt_Procedura, Txt_Min, Txt_ID_PROCEDURA_General})
        trap.step([&] { t->setText(QString()); });
}

void Form13::Clear_Fields()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Step_Fields(); });
    for (vb::TextBox* t : {ID_MOD, ID_MAINT, Txt_ID, ID_MOD_OLD, ID_MAINT_OLD, Txt_Grid_Modello, Txt_Grid_Manutenzione,
                           Txt_ID_PROCEDURA, Txt_Tot_Min})
        trap.step([&] { t->setText(QString()); });
    for (vb::DataCombo* c : {DataCombo2, DataCombo3, DataCombo4})
        trap.step([&] { c->setText(QString()); });
}

// ---- pick lists ---------------------------------------------------------------------

void Form13::DataCombo2_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    const QString machine = DataCombo2->Text();
    if (machine.size() < 3)
        return;
    trap.step([&] {
        Adodc3->setRecordSource(QStringLiteral("SELECT Tbl_Proc_General_Macc.ID_MODELLO, Tbl_Proc_General_Macc.Modello "
                                               "From Tbl_Proc_General_Macc GROUP BY Tbl_Proc_General_Macc.ID_MODELLO, "
                                               "Tbl_Proc_General_Macc.Modello, Tbl_Proc_General_Macc.Macchina HAVING "
                                               "(((Tbl_Proc_General_Macc.Macchina)='") +
                                vb::DoubledQuotes(machine) +
                                QStringLiteral("')) ORDER BY Tbl_Proc_General_Macc.Modello;"));
        Adodc3->Refresh();
    });
    trap.step([&] {
        store::Recordset* rs = Adodc3->Recordset();
        if (rs && !rs->Eof())
            ID_MOD->setText(rs->Fields(QStringLiteral("ID_MODELLO")).Value());
    });
}

void Form13::DataCombo3_Change()
{
    keyOfName(DataCombo3->Text(), QStringLiteral("SELECT * From Tbl_Macchina Where Modello = '"),
              QStringLiteral("ID_MODELLO"), ID_MOD);
}

void Form13::DataCombo4_Change()
{
    keyOfName(DataCombo4->Text(), QStringLiteral("SELECT * From Tbl_Maint_Tipo WHERE Maint_Tipo = '"),
              QStringLiteral("ID_MAINT_TIPO"), ID_MAINT);
}

void Form13::keyOfName(const QString& name, const QString& select, const QString& keyColumn, vb::TextBox* key)
{
    Trap trap = Trap::ignoreAll();
    if (name.isEmpty())
        return;
    // A name that is no row's leaves the key as it was.
    store::Recordset rs;
    trap.step([&] { rs.Open(select + vb::DoubledQuotes(name) + QStringLiteral("'")); });
    trap.step([&] {
        if (!rs.Eof())
            key->setText(rs.Fields(keyColumn).Value());
    });
}

// ---- selections ---------------------------------------------------------------------

void Form13::DataGrid2_Click()
{
    Trap trap = Trap::ignoreAll();
    // Browse: the machine and model of an assignment are not changed from here.
    trap.step([&] {
        Cmd_Edit->setCaption(Edit);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        DataCombo3->setLocked(true);
        DataCombo2->setLocked(true);
    });
}

void Form13::DataGrid2_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess, err::InvalidPropertyValue}, Trap::Resume};
    trap.step([&] { Clear_Step_Fields(); });
    QString id;
    trap.step([&] {
        if (DataGrid2->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        id = vb::KeyText(DataGrid2->Columns(QStringLiteral("ID")).Text());
        Txt_ID->setText(id);
    });
    if (id.isEmpty())
        return;
    trap.step([&] {
        const Variant m = DataGrid2->Columns(QStringLiteral("ID_MODELLO")).Value();
        ID_MOD->setText(m);
        ID_MOD_OLD->setText(m);
    });
    trap.step([&] {
        const Variant t = DataGrid2->Columns(QStringLiteral("ID_MAINT_TIPO")).Value();
        ID_MAINT->setText(t);
        ID_MAINT_OLD->setText(t);
    });
    QString m, t;
    trap.step([&] { m = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });

    Fill_Steps(m, t);
    trap.step([&] {
        Frame2->setCaption(QStringLiteral("N° Procedure Manutenzione ") +
                           DataGrid2->Columns(QStringLiteral("Manutenzione_Tipo")).Text() + QStringLiteral(" ") +
                           QString::number(Adodc1->RecordCount()));
    });

    trap.step([&] {
        Adodc6->setRecordSource(
            QStringLiteral(
                "SELECT Tbl_Proc_General.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura, "
                "Tbl_Proc_General.ID_MODELLO FROM Tbl_Proc_General INNER JOIN Tbl_Macchina ON "
                "Tbl_Proc_General.ID_MODELLO = Tbl_Macchina.ID_MODELLO Where Tbl_Proc_General.ID_MODELLO = ") +
            m + QStringLiteral(" ORDER BY Tbl_Proc_General.Num;"));
        Adodc6->Refresh();
    });
    trap.step([&] { layColumns(DataGrid3, GeneralColumns); });
    trap.step([&] {
        Frame1->setCaption(QString::number(Adodc6->RecordCount()) + QStringLiteral(" Procedure Generali ") +
                           DataGrid2->Columns(QStringLiteral("Modello")).Text());
    });

    // The pick lists follow the assignment; each change runs its own lookup.
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Assegna_M WHERE ID= ") + id); });
        bool found = false;
        trap.step([&] { found = !rs.Eof(); });
        if (found) {
            trap.step([&] { DataCombo2->setText(rs.Fields(QStringLiteral("Macchina")).Value()); });
            trap.step([&] { DataCombo3->setText(rs.Fields(QStringLiteral("Modello")).Value()); });
            trap.step([&] { DataCombo4->setText(rs.Fields(QStringLiteral("Manutenzione_Tipo")).Value()); });
            trap.step([&] { Txt_Tot_Min->setText(rs.Fields(QStringLiteral("Tempo_Minuti")).Value()); });
        }
    }
    // The figures are written through the assignment's own row; without steps nothing is
    // stored and the total reads 0.
    WorkloadFigures figures;
    trap.step([&] { figures = Recompute_Workload(Variant(m), Variant(t), DurationWidth::Wide, StoreBy::Recordset); });
    if (!figures.found)
        trap.step([&] { Txt_Tot_Min->setText(QStringLiteral("0")); });
}

void Form13::DataGrid1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Cmd_Delete2->setEnabled(true); });
}

void Form13::DataGrid1_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess, err::InvalidPropertyValue}, Trap::Resume};
    if (DataGrid1->Row() < 0)
        return;
    trap.step([&] { Txt_Grid_Modello->setText(DataGrid1->Columns(QStringLiteral("Modello")).Value()); });
    trap.step([&] { Txt_Grid_Manutenzione->setText(DataGrid1->Columns(QStringLiteral("Maint_Tipo")).Value()); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    QString id;
    trap.step([&] { id = vb::KeyText(DataGrid1->Columns(QStringLiteral("ID_Procedura")).Text()); });
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_ProcedureM WHERE ID_Procedura= ") + id); });
    trap.step([&] { Txt_ID_PROCEDURA->setText(rs.Fields(QStringLiteral("ID_Procedura")).Value()); });
}

void Form13::DataGrid3_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess, err::InvalidPropertyValue}, Trap::Resume};
    trap.step([&] { Clear_Step_Fields(); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    if (DataGrid3->Row() < 0)
        return;
    QString id;
    trap.step([&] { id = vb::KeyText(DataGrid3->Columns(QStringLiteral("ID_Procedura")).Text()); });
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Proc_General WHERE ID_Procedura= ") + id); });
    bool found = false;
    trap.step([&] { found = !rs.Eof(); });
    if (!found)
        return;
    trap.step([&] { Txt_ID_PROCEDURA_General->setText(rs.Fields(QStringLiteral("ID_Procedura")).Value()); });
    trap.step([&] { Txt_Titolo->setText(rs.Fields(QStringLiteral("Titolo")).Value()); });
    trap.step([&] { Txt_Procedura->setText(rs.Fields(QStringLiteral("Procedura")).Value()); });
    trap.step([&] { Txt_Num->setText(rs.Fields(QStringLiteral("Num")).Value()); });
}

void Form13::Txt_Min_KeyPress(int& keyAscii)
{
    if (keyAscii != 8 && (keyAscii < '0' || keyAscii > '9'))
        keyAscii = 0;
}

void Form13::Txt_Min_Change()
{
    if (Txt_Min->Text().isEmpty())
        Txt_Min->setText(QStringLiteral("0"));
}

// ---- the assignment: insert, save, delete -------------------------------------------

QString Form13::Scheda(const QString& m, const QString& t, const QString& machine, const QString& model,
                       const QString& type)
{
    return m + QStringLiteral("_") + t + machine.left(3) + QStringLiteral("_") + model.left(3) + QStringLiteral("_") +
           type.left(3);
}

void Form13::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    trap.step([&] {
        DataCombo3->setLocked(false);
        DataCombo2->setLocked(false);
        Cmd_Edit->setCaption(Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form13::reload(bool workloadLine)
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { shell::screens().unload(ScreenName); });
    trap.step([] { shell::screens().unloadAllScreens(); });
    trap.step([] { shell::screens().show(ScreenName); });
    if (workloadLine)
        trap.step([] { Show_Workload_Total(); });
}

void Form13::Update_Register_Minutes(const QString& m, const QString& t, const QString& minutes)
{
    Trap trap = Trap::ignoreAll();
    bool rows = false;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Tbl_Maintenance Where Tbl_Maintenance.ID_MODELLO = ") + m +
                QStringLiteral(" And Tbl_Maintenance.ID_MAINT_TIPO = ") + t);
        rows = !rs.Eof();
    });
    if (rows)
        trap.step([&] {
            store::Run(QStringLiteral("UPDATE Tbl_Maintenance SET Tbl_Maintenance.Tempo_Minuti = ") + minutes +
                       QStringLiteral(" Where Tbl_Maintenance.ID_MODELLO = ") + m +
                       QStringLiteral(" And Tbl_Maintenance.ID_MAINT_TIPO = ") + t);
        });
}

void Form13::Cmd_Edit_Click()
{
    Trap trap = Trap::ignoreAll();
    if (DataCombo2->Text().isEmpty() || DataCombo3->Text().isEmpty() || DataCombo4->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }
    // A model or type typed by hand that names no row has no key: nothing to save.
    if (ID_MOD->Text().isEmpty() || ID_MAINT->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }
    const QString machine = DataCombo2->Text();
    const QString model = DataCombo3->Text();
    const QString type = DataCombo4->Text();
    QString m, t;
    trap.step([&] { m = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });
    auto writeAssignment = [&](store::Recordset& rs) {
        store::WriteFields(trap, rs,
                           {{"ID_MODELLO", ID_MOD->Text()},
                            {"ID_MAINT_TIPO", ID_MAINT->Text()},
                            {"Macchina", machine},
                            {"Modello", model},
                            {"Manutenzione_Tipo", type}});
    };

    if (Cmd_Edit->Caption() == Save) {
        // The names go in as picked: an apostrophe breaks the check, and the save goes on.
        bool duplicate = false;
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("Select * from Tbl_Assegna_M where Modello = '") + model +
                    QStringLiteral("' AND ID_MAINT_TIPO = ") + t + QStringLiteral(" AND Macchina = '") + machine +
                    QStringLiteral("'"));
            duplicate = !rs.Eof();
        });
        if (duplicate) {
            vb::MsgBox(QStringLiteral("Questa manutenzione è già stata assegnata a questa Macchina!!"), mb::Critical,
                       QStringLiteral("DUPPLICATO DI MANUTENZIONE"));
            return;
        }
        Variant newId;
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Assegna_M")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { newId = rs.Fields(QStringLiteral("ID")).Value(); });
            writeAssignment(rs);
            trap.step([&] { rs.UpdateBatch(); });
        }
        // The sheet of the new assignment, revision 0.
        {
            const Variant today = Variant::fromDate(vb::Clock::today());
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * FROM Tbl_Certif_Proced_Manut")); });
            trap.step([&] { rs.AddNew(); });
            store::WriteFields(trap, rs,
                               {{"ID_Assegna_M", newId},
                                {"Scheda", Scheda(m, t, machine, model, type)},
                                {"Data_Scheda", today},
                                {"Rev", 0},
                                {"Data_Rev", today}});
            trap.step([&] { rs.UpdateBatch(); });
        }
        trap.step([&] {
            Cmd_Edit->setCaption(Edit);
            Cmd_Delete->setEnabled(true);
            Cmd_Add->setEnabled(true);
        });
        trap.step([] {
            shell::screens().unload(ScreenName);
            shell::screens().show(ScreenName);
        });
        return;
    }

    if (vb::MsgBox(QStringLiteral("Stai per eseguire una Modifica, Vuoi Procedere??"), mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Dati")) != vb::answer::Yes) {
        trap.step([] { Show_Workload_Total(); });
        return;
    }
    QString mOld, tOld;
    trap.step([&] { mOld = vb::KeyText(ID_MOD_OLD->Text()); });
    trap.step([&] { tOld = vb::KeyText(ID_MAINT_OLD->Text()); });

    if (Txt_Grid_Modello->Text().isEmpty() || Txt_Grid_Manutenzione->Text().isEmpty()) {
        // The type of the assignment as listed, before any new pick.
        QString listed;
        trap.step([&] {
            if (DataGrid2->Row() >= 0)
                listed = DataGrid2->Columns(QStringLiteral("Manutenzione_Tipo")).Text();
        });
        vb::MsgBox(QStringLiteral("Devi prima selezionare una delle procedure già assegnate per questa Macchina"),
                   mb::Information,
                   QStringLiteral("SELEZIONA PROCEDURE MANUTENZIONE '") + listed + QStringLiteral("'"));
    } else {
        QString id;
        trap.step([&] { id = vb::KeyText(Txt_ID->Text()); });
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Assegna_M where ID =") + id); });
            writeAssignment(rs);
            trap.step([&] { rs.UpdateBatch(); });
        }
        // An edit is a new revision of the sheet, under the code of the new names.
        {
            store::Recordset rs;
            trap.step(
                [&] { rs.Open(QStringLiteral("Select * FROM Tbl_Certif_Proced_Manut Where ID_Assegna_M =") + id); });
            store::WriteFields(trap, rs, {{"ID_Assegna_M", id}, {"Scheda", Scheda(m, t, machine, model, type)}});
            nextRevision(rs, trap);
        }
        trap.step([&] {
            store::Run(QStringLiteral("UPDATE Tbl_ProcedureM SET Tbl_ProcedureM.ID_MAINT_TIPO = ") + t +
                       QStringLiteral(", Tbl_ProcedureM.ID_MODELLO = ") + m +
                       QStringLiteral(" Where Tbl_ProcedureM.ID_MODELLO = ") + mOld +
                       QStringLiteral(" And Tbl_ProcedureM.ID_MAINT_TIPO = ") + tOld);
        });
        // The steps named by the selected step's model and type follow as well.
        trap.step([&] {
            store::Run(
                QStringLiteral("UPDATE Tbl_Maint_Tipo INNER JOIN (Tbl_ProcedureM INNER JOIN Tbl_Macchina ON "
                               "Tbl_ProcedureM.ID_MODELLO = Tbl_Macchina.ID_MODELLO) ON Tbl_Maint_Tipo.ID_MAINT_TIPO = "
                               "Tbl_ProcedureM.ID_MAINT_TIPO SET Tbl_ProcedureM.ID_MODELLO = ") +
                m + QStringLiteral(", Tbl_ProcedureM.ID_MAINT_TIPO = ") + t +
                QStringLiteral(" WHERE (((Tbl_Maint_Tipo.Maint_Tipo)='") + Txt_Grid_Manutenzione->Text() +
                QStringLiteral("') AND ((Tbl_Macchina.Modello)='") + Txt_Grid_Modello->Text() + QStringLiteral("'));"));
        });
    }

    WorkloadFigures figures;
    trap.step([&] { figures = Recompute_Workload(Variant(m), Variant(t)); });
    if (figures.found) {
        // The register takes the new type and frequency on every unit; Prossima stays.
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("SELECT * From Tbl_Maint_Tipo WHERE ID_MAINT_TIPO=") + t); });
        Variant weeks, name;
        trap.step([&] { weeks = rs.Fields(QStringLiteral("Frequenza_Sett")).Value(); });
        trap.step([&] { static_cast<void>(rs.Fields(QStringLiteral("Koeff_Settimanale")).Value()); });
        trap.step([&] { name = rs.Fields(QStringLiteral("Maint_Tipo")).Value(); });
        trap.step([&] {
            store::Run(QStringLiteral("UPDATE Tbl_Maintenance SET Tbl_Maintenance.Tempo_Minuti = '") + text(figures.S) +
                       QStringLiteral("', Tbl_Maintenance.ID_MAINT_TIPO = ") + t +
                       QStringLiteral(", Tbl_Maintenance.Manutenzione_Tipo = '") + text(name) +
                       QStringLiteral("', Tbl_Maintenance.Frequenza_Sett = '") + text(weeks) +
                       QStringLiteral("' Where Tbl_Maintenance.ID_MODELLO = ") + mOld +
                       QStringLiteral(" And Tbl_Maintenance.ID_MAINT_TIPO = ") + tOld);
        });
    }
    reload(true);
}

void Form13::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (Txt_ID->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUNA MANUTENZIONE SELEZIONATA"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare la Manutenzione selezionata con tutte le sue procedure?"),
                   mb::YesNo + mb::Question,
                   QStringLiteral("Eliminazione Manutenzione e Procedure")) != vb::answer::Yes)
        return;
    QString id, m, t;
    trap.step([&] { id = vb::KeyText(Txt_ID->Text()); });
    trap.step([&] { m = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });
    // The wall chart keeps the tokens of the type: the cascade stops at the register.
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Assegna_M WHERE ID  = ") + id); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Certif_Proced_Manut WHERE ID_Assegna_M  = ") + id); });
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Maintenance WHERE ID_MODELLO  = ") + m +
                   QStringLiteral(" And ID_MAINT_TIPO = ") + t);
    });
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_ProcedureM WHERE ID_MODELLO  = ") + m +
                   QStringLiteral(" And ID_MAINT_TIPO = ") + t);
    });
    trap.step([&] { Clear_Fields(); });
    reload(true);
}

// ---- steps --------------------------------------------------------------------------

void Form13::Cmd_Inserisci_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue, ObjectNotSet, err::SyntaxError}, Trap::ShowBox};
    const QString minutes = Txt_Min->Text();
    const bool noMinutes = minutes.isEmpty() || vb::Val(Variant(minutes)) == 0;
    if (Txt_Titolo->Text().isEmpty() || Txt_Procedura->Text().isEmpty() || noMinutes) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        // The minutes' frame flashes from now on until a step goes in.
        trap.step([&] { Txt_Control_Min->setText(QStringLiteral("1")); });
        if (noMinutes && !Txt_Num->Text().isEmpty())
            trap.step([&] { Frame10->setForeColor(vb::colour::Red); });
        return;
    }
    QString m, t;
    trap.step([&] { m = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });
    // Number, title and text come from the picked general step, not from the fields.
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_ProcedureM")); });
        trap.step([&] { rs.AddNew(); });
        store::WriteFields(trap, rs, {{"ID_MODELLO", ID_MOD->Text()}, {"ID_MAINT_TIPO", ID_MAINT->Text()}});
        auto fromGeneral = [&](const char* column) {
            trap.step([&] {
                if (DataGrid3->Row() < 0)
                    throw vb::VBError(err::InvalidUseOfNull);
                rs.Fields(QString::fromLatin1(column)) = DataGrid3->Columns(QString::fromLatin1(column)).Value();
            });
        };
        fromGeneral("Num");
        fromGeneral("Titolo");
        fromGeneral("Procedura");
        trap.step([&] { rs.Fields(QStringLiteral("Minuti")) = minutes; });
        trap.step([&] { rs.UpdateBatch(); });
    }
    trap.step([&] {
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        Txt_Control_Min->setText(QStringLiteral("0"));
    });

    WorkloadFigures figures;
    trap.step([&] { figures = Recompute_Workload(Variant(m), Variant(t), DurationWidth::Narrow16); });
    if (figures.found) {
        trap.step([&] { Update_Register_Minutes(m, t, text(figures.S)); });
        // Each step is a new revision of the sheet.
        const QString sheet = Scheda(m, t, DataCombo2->Text(), DataCombo3->Text(), DataCombo4->Text());
        store::Recordset rs;
        trap.step([&] {
            rs.Open(QStringLiteral("Select * FROM Tbl_Certif_Proced_Manut Where Scheda = '") + sheet +
                    QStringLiteral("'"));
        });
        nextRevision(rs, trap);
    }
    if (!trap.ended())
        reload(true);
}

void Form13::Cmd_Delete2_Click()
{
    Trap trap = Trap::ignoreAll();
    if (Txt_ID_PROCEDURA->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUNA PROCEDURA SELEZIONATA"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare la Procedura selezionata?"), mb::YesNo + mb::Question,
                   QStringLiteral("Eliminazione Procedura")) != vb::answer::Yes)
        return;
    QString id, m, t;
    trap.step([&] { id = vb::KeyText(Txt_ID_PROCEDURA->Text()); });
    trap.step([&] { m = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_ProcedureM WHERE ID_Procedura  = ") + id); });
    WorkloadFigures figures;
    trap.step([&] { figures = Recompute_Workload(Variant(m), Variant(t)); });
    if (figures.found)
        trap.step([&] { Update_Register_Minutes(m, t, text(figures.S)); });
    trap.step([&] { Txt_ID_PROCEDURA->setText(QString()); });
    trap.step([&] { Cmd_Delete2->setEnabled(false); });
    // The steps again, of the assignment selected above.
    QString gm, gt;
    trap.step([&] {
        if (DataGrid2->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        gm = vb::KeyText(DataGrid2->Columns(QStringLiteral("ID_MODELLO")).Text());
        gt = vb::KeyText(DataGrid2->Columns(QStringLiteral("ID_MAINT_TIPO")).Text());
    });
    Fill_Steps(gm, gt);
}

void Form13::Cmd_Aggiorna_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] {
        shell::screens().unload(ScreenName);
        shell::screens().show(ScreenName);
    });
    trap.step([] { Show_Workload_Total(); });
}

void Form13::Cmd_Vis_All_Click()
{
    Trap trap = Trap::ignoreAll();
    // The register's pair no longer filters the lists.
    for (const char* control : {"ID_MOD", "ID_MAINT", "DataCombo4"})
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form7"), QString::fromLatin1(control)))
                c->setVbProperty(QStringLiteral("Text"), QString());
        });
    trap.step([] {
        shell::screens().unload(ScreenName);
        shell::screens().show(ScreenName);
    });
}

// ---- prints -------------------------------------------------------------------------

void Form13::printSheet(const QString& report, const QString& typeBox)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { reports::UnloadReport(report); });
    const QString key = ID_MOD->Text();
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
    QString m, t;
    trap.step([&] { m = vb::KeyText(key); });
    trap.step([&] { t = vb::KeyText(ID_MAINT->Text()); });
    // An assignment without a sheet row drops out through the inner join.
    const QString statement =
        QStringLiteral(
            "SHAPE {SELECT Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, Tbl_Maint_Tipo.Maint_Tipo, "
            "Sum(Tbl_ProcedureM.Minuti) AS SommaDiMinuti, Tbl_Assegna_M.Tempo_Ore AS Ore, "
            "Tbl_Certif_Proced_Manut.Scheda, Tbl_Certif_Proced_Manut.Data_Scheda, Tbl_Certif_Proced_Manut.Rev, "
            "Tbl_Certif_Proced_Manut.Data_Rev FROM Tbl_Certif_Proced_Manut INNER JOIN (Tbl_Assegna_M INNER JOIN "
            "(Tbl_Maint_Tipo INNER JOIN Tbl_ProcedureM ON Tbl_Maint_Tipo.ID_MAINT_TIPO = "
            "Tbl_ProcedureM.ID_MAINT_TIPO) ON (Tbl_Assegna_M.ID_MAINT_TIPO = Tbl_ProcedureM.ID_MAINT_TIPO) AND "
            "(Tbl_Assegna_M.ID_MODELLO = Tbl_ProcedureM.ID_MODELLO)) ON Tbl_Certif_Proced_Manut.ID_Assegna_M = "
            "Tbl_Assegna_M.ID GROUP BY Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, Tbl_Maint_Tipo.Maint_Tipo, "
            "Tbl_Assegna_M.Tempo_Ore, Tbl_ProcedureM.ID_MODELLO, Tbl_ProcedureM.ID_MAINT_TIPO, "
            "Tbl_Certif_Proced_Manut.Scheda, Tbl_Certif_Proced_Manut.Data_Scheda, Tbl_Certif_Proced_Manut.Rev, "
            "Tbl_Certif_Proced_Manut.Data_Rev HAVING (((Tbl_ProcedureM.ID_MODELLO)=") +
        m + QStringLiteral(") AND ((Tbl_ProcedureM.ID_MAINT_TIPO)=") + t + QStringLiteral("));} ") +
        QStringLiteral("APPEND ({SELECT Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, "
                       "Tbl_Assegna_M.Manutenzione_Tipo, Tbl_ProcedureM.Num, Tbl_ProcedureM.Titolo, "
                       "Tbl_ProcedureM.Procedura, Tbl_ProcedureM.Minuti FROM Tbl_Assegna_M INNER JOIN "
                       "Tbl_ProcedureM ON (Tbl_Assegna_M.ID_MODELLO = Tbl_ProcedureM.ID_MODELLO) AND "
                       "(Tbl_Assegna_M.ID_MAINT_TIPO = Tbl_ProcedureM.ID_MAINT_TIPO)ORDER BY Tbl_ProcedureM.Num;} ") +
        QStringLiteral("RELATE Modello to Modello, Maint_Tipo to Manutenzione_Tipo) as Dati");
    reports::ShowOptions options;
    options.setup = [typeBox](reports::ReportLayout& layout) {
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox11"), QStringLiteral("Macchina"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox4"), QStringLiteral("Modello"));
        layout.setDataField(Section::GroupHeader, typeBox, QStringLiteral("Maint_Tipo"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox7"), QStringLiteral("SommaDiMinuti"));
        layout.setDataField(Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Ore"));
    };
    trap.step([&] { reports::ShowReport(report, statement, options); });
}

void Form13::Cmd_Print_Click()
{
    printSheet(QStringLiteral("DataReport7"), QStringLiteral("TextBox6"));
}

void Form13::Cmd_Print_Rapporto_Click()
{
    printSheet(QStringLiteral("DataReport5"), QStringLiteral("TextBox5"));
}

VELMORA_SCREEN(Form13);

} // namespace definition
