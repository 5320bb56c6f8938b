#include "definition/Form9.h"

#include "controls/ScreenKit.h"
#include "definition/Workload.h"
#include "reports/ReportLayout.h"
#include "reports/ReportViewer.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace definition {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;

namespace {

const QString ScreenName = QStringLiteral("Form9");
using vb::caption::Edit;
using vb::caption::Save;

// The screen in twips, within the main screen's working area: the models with their
// fields, commands and searches on top, the steps below, the step's fields and commands
// at the bottom.
constexpr int ScreenWidth = vb::WorkAreaWidth;
constexpr int ScreenHeight = vb::WorkAreaHeight;
constexpr int ModelGridWidth = 4800;
constexpr int ModelGridHeight = 1800;
constexpr int PanelLeft = 5040;
constexpr int ComboLeft = 5940;
constexpr int ComboWidth = 1860;
constexpr int ModelButtonsLeft = 7920;
constexpr int ModelButtonWidth = 1185;
constexpr int RowHeight = 315;
constexpr int ButtonHeight = 330;
constexpr int ButtonStep = 360;
constexpr int StepGridTop = 2280;
constexpr int StepGridHeight = 1800;
constexpr int StepFieldsTop = 4440;
constexpr int StepButtonsLeft = 6060;
constexpr int StepButtonWidth = 1500;
constexpr int SecondColumn = StepButtonsLeft + StepButtonWidth + 90;
constexpr int SecondWidth = ScreenWidth - 120 - SecondColumn;

constexpr int stepButtonTop(int index)
{
    return StepFieldsTop + index * ButtonStep;
}

/// The steps of one model, by number.
QString stepsOf(const QString& id)
{
    return QStringLiteral("SELECT Tbl_Proc_General.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                          "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura FROM "
                          "Tbl_Macchina INNER JOIN  Tbl_Proc_General ON Tbl_Macchina.ID_MODELLO = "
                          "Tbl_Proc_General.ID_MODELLO WHERE Tbl_Proc_General.ID_MODELLO =") +
           id + QStringLiteral("  Order by Num");
}

/// The grids' columns by position: width (twips) and caption.
struct ColumnLayout
{
    int width;
    const char* caption;
};
constexpr ColumnLayout ModelGridColumns[] = {{0, "ID"}, {2100, "Macchina"}, {2100, "Modello"}, {0, "ID_MODELLO"}};
constexpr ColumnLayout StepGridColumns[] = {{0, "ID_Procedura"}, {1500, "Macchina"}, {1500, "Modello"},
                                            {500, "Num"},        {2400, "Titolo"},   {2700, "Procedura"}};

template <std::size_t N> void formatGrid(vb::DataGrid* grid, const ColumnLayout (&columns)[N])
{
    Trap trap = Trap::ignoreAll();
    for (int i = 0; i < int(N); ++i) {
        trap.step([&] {
            vb::GridColumn& column = grid->Columns(i);
            column.setWidth(columns[i].width);
            column.setCaption(QString::fromLatin1(columns[i].caption));
            column.setLocked(true);
        });
    }
}

/// The text of a control of another screen (loading that screen hidden when needed).
QString textOf(const QString& screen, const QString& name)
{
    vb::Control* c = shell::screens().control(screen, name);
    return c ? c->vbProperty(QStringLiteral("Text")).toString() : QString();
}

void clearTextOf(const QString& screen, const QString& name)
{
    if (vb::Control* c = shell::screens().control(screen, name))
        c->setVbProperty(QStringLiteral("Text"), QString());
}

/// The trap of the two saves: Null, a refused value and a type mismatch carry on, any
/// other failure shows its number and description and ends the save.
Trap saveTrap()
{
    return Trap{{err::InvalidUseOfNull, err::InvalidPropertyValue, err::TypeMismatch}, Trap::ShowBox};
}

} // namespace

Form9::Form9(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("PROCEDURE MANUTENZIONI"))
{
    buildControls();
    connectEvents();
}

void Form9::buildControls()
{
    Move(0, 0, ScreenWidth, ScreenHeight);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    // ---- the models
    DataGrid2 = kit.grid(this, "DataGrid2", Adodc5, "Adodc5", 120, 120, ModelGridWidth, ModelGridHeight);
    Label3 = kit.label(this, "Label3", QStringLiteral("Macchina:"), PanelLeft, 150, ComboLeft - PanelLeft);
    DataCombo2 = kit.dataCombo(this, "DataCombo2", Adodc2, "Adodc2", ComboLeft, 120, ComboWidth);
    Label4 =
        kit.label(this, "Label4", QStringLiteral("Modello:"), PanelLeft, 150 + ButtonStep + 60, ComboLeft - PanelLeft);
    DataCombo3 = kit.dataCombo(this, "DataCombo3", Adodc3, "Adodc3", ComboLeft, 120 + ButtonStep + 60, ComboWidth);
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), ModelButtonsLeft, 120, ModelButtonWidth);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Edit, ModelButtonsLeft, 120 + ButtonStep, ModelButtonWidth);
    Cmd_Edit->setEnabled(false); // a click on the models or INSERISCI enables it
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), ModelButtonsLeft, 120 + 2 * ButtonStep,
                            ModelButtonWidth);
    Txt_Search_Macc = kit.searchFrame(this, "Frame1", QStringLiteral("Per Macchina"), "Txt_Search_Macc", PanelLeft,
                                      1230, 1980, 690, &Frame1);
    Txt_Search_Modello = kit.searchFrame(this, "Frame2", QStringLiteral("Per Modello"), "Txt_Search_Modello",
                                         PanelLeft + 2085, 1230, ScreenWidth - 120 - PanelLeft - 2085, 690, &Frame2);
    Label2 = kit.label(this, "Label2", QString(), 120, 120 + ModelGridHeight + 60, ScreenWidth - 240);
    Txt_ID = kit.hidden("Txt_ID");
    ID_MOD = kit.hidden("ID_MOD");
    ID_MOD_OLD = kit.hidden("ID_MOD_OLD");
    Txt_Posizione = kit.hidden("Txt_Posizione");
    Txt_ID_MODELLO = kit.hidden("Txt_ID_MODELLO");

    // ---- the steps
    DataGrid1 = kit.grid(this, "DataGrid1", Adodc1, "Adodc1", 120, StepGridTop, ScreenWidth - 240, StepGridHeight);
    Label1 = kit.label(this, "Label1", QStringLiteral("N° Procedure"), 120, StepGridTop + StepGridHeight + 60, 3000);
    Label5 = kit.label(this, "Label5", QStringLiteral("N°:"), 120, StepFieldsTop + 30, 500);
    Txt_Num_Procedura = kit.field(this, "Txt_Num_Procedura", 660, StepFieldsTop, 700);
    Label6 = kit.label(this, "Label6", QStringLiteral("Titolo:"), 1500, StepFieldsTop + 30, 700);
    Txt_Titolo = kit.field(this, "Txt_Titolo", 2220, StepFieldsTop, StepButtonsLeft - 160 - 2220);
    Label7 = kit.label(this, "Label7", QStringLiteral("Procedura:"), 120, StepFieldsTop + 390, 1200);
    Txt_Procedura = kit.textArea(this, "Txt_Procedura", 120, StepFieldsTop + 660, StepButtonsLeft - 160 - 120, 1000);
    Txt_ID_PROCEDURA = kit.hidden("Txt_ID_PROCEDURA");
    Txt_Copy_Titolo = kit.hidden("Txt_Copy_Titolo");
    Txt_Copy_Procedura = kit.hidden("Txt_Copy_Procedura");

    Cmd_Add2 =
        kit.button(this, "Cmd_Add2", QStringLiteral("INSERISCI"), StepButtonsLeft, stepButtonTop(0), StepButtonWidth);
    Cmd_Edit2 = kit.button(this, "Cmd_Edit2", Edit, StepButtonsLeft, stepButtonTop(1), StepButtonWidth);
    Cmd_Delete2 =
        kit.button(this, "Cmd_Delete2", QStringLiteral("ELIMINA"), StepButtonsLeft, stepButtonTop(2), StepButtonWidth);
    Cmd_Print =
        kit.button(this, "Cmd_Print", QStringLiteral("STAMPA"), StepButtonsLeft, stepButtonTop(3), StepButtonWidth);
    Cmd_Copy = kit.button(this, "Cmd_Copy", QStringLiteral("COPIA"), SecondColumn, stepButtonTop(0), SecondWidth);
    Cmd_Copy->setEnabled(false); // a step selected enables it
    Cmd_Paste = kit.button(this, "Cmd_Paste", QStringLiteral("INCOLLA"), SecondColumn, stepButtonTop(1), SecondWidth);
    Cmd_Paste->setEnabled(false); // a copied step and a model selected after it enable it
    Cmd_Aggiorna =
        kit.button(this, "Cmd_Aggiorna", QStringLiteral("Aggiorna dati"), SecondColumn, stepButtonTop(2), SecondWidth);
    Cmd_Vis_All = kit.button(this, "Cmd_Vis_All", QStringLiteral("Visualizza Tutto"), SecondColumn, stepButtonTop(3),
                             SecondWidth);
}

void Form9::connectEvents()
{
    DataGrid2->Click = [this] { DataGrid2_Click(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    DataGrid1->Click = [this] { DataGrid1_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };

    // The two searches exclude each other.
    Txt_Search_Macc->Change = [this] {
        Trap trap = Trap::ignoreAll();
        trap.step([&] { Txt_Search_Modello->setText(QString()); });
    };
    Txt_Search_Modello->Change = [this] {
        Trap trap = Trap::ignoreAll();
        trap.step([&] { Txt_Search_Macc->setText(QString()); });
    };
    Txt_Search_Macc->KeyUp = [this] { Txt_Search_Macc_KeyUp(); };
    Txt_Search_Modello->KeyUp = [this] { Txt_Search_Modello_KeyUp(); };

    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Add2->Click = [this] { Cmd_Add2_Click(); };
    Cmd_Edit2->Click = [this] { Cmd_Edit2_Click(); };
    Cmd_Delete2->Click = [this] { Cmd_Delete2_Click(); };
    Cmd_Copy->Click = [this] { Cmd_Copy_Click(); };
    Cmd_Paste->Click = [this] { Cmd_Paste_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Aggiorna->Click = [this] { Cmd_Aggiorna_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
}

// ---- load and lists ---------------------------------------------------------------------

void Form9::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] {
        Adodc2->setRecordSource(QStringLiteral("SELECT Tbl_Macchina.Macchina From Tbl_Macchina GROUP BY "
                                               "Tbl_Macchina.Macchina "
                                               "HAVING (((Tbl_Macchina.Macchina)<>''));"));
        Adodc2->Refresh();
        DataCombo2->bind(Adodc2, QStringLiteral("Macchina"));
    });
    trap.step([&] { Fill_Models(); });
    trap.step([&] { Fill_Steps(); });
}

void Form9::Fill_Models()
{
    Trap trap = Trap::ignoreAll();
    // The register's model, when it hands one over, narrows the list. Its statement lacks
    // a closing bracket: the store refuses it and the list stays empty.
    trap.step([&] { Txt_ID_MODELLO->setText(textOf(QStringLiteral("Form7"), QStringLiteral("ID_MOD"))); });
    trap.step([&] {
        if (Txt_ID_MODELLO->Text().isEmpty())
            Adodc5->setRecordSource(QStringLiteral(
                "SELECT Tbl_Proc_General_Macc.ID, Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
                "Tbl_Proc_General_Macc.ID_MODELLO From Tbl_Proc_General_Macc Order by Macchina, Modello"));
        else
            Adodc5->setRecordSource(
                QStringLiteral("SELECT Tbl_Proc_General_Macc.ID, Tbl_Proc_General_Macc.Macchina, "
                               "Tbl_Proc_General_Macc.Modello, Tbl_Proc_General_Macc.ID_MODELLO From "
                               "Tbl_Proc_General_Macc WHERE (((Tbl_Proc_General_Macc.ID_MODELLO)= ") +
                vb::KeyText(Txt_ID_MODELLO->Text()) + QStringLiteral(") Order by Macchina, Modello ;"));
        Adodc5->Refresh();
    });
    trap.step([&] { Format_Models(); });
}

void Form9::Fill_Steps()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_ID_MODELLO->setText(textOf(QStringLiteral("Form7"), QStringLiteral("ID_MOD"))); });
    trap.step([&] {
        if (Txt_ID_MODELLO->Text().isEmpty())
            Adodc1->setRecordSource(
                QStringLiteral("SELECT Tbl_Proc_General.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                               "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura FROM "
                               "Tbl_Macchina INNER JOIN  Tbl_Proc_General ON Tbl_Macchina.ID_MODELLO = "
                               "Tbl_Proc_General.ID_MODELLO  Order by Num"));
        else
            Adodc1->setRecordSource(stepsOf(vb::KeyText(Txt_ID_MODELLO->Text())));
        Adodc1->Refresh();
    });
    trap.step([&] { Format_Steps(); });
}

void Form9::Format_Models()
{
    Trap trap = Trap::ignoreAll();
    formatGrid(DataGrid2, ModelGridColumns);
    // The weekly workload of every assignment, beside the count of models listed.
    Variant T;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(
            QStringLiteral("SELECT Sum(Tbl_Assegna_M.Tot_Minuti_Sett) AS SommaDiTot_Minuti_Sett FROM Tbl_Assegna_M;"));
        if (!rs.Eof())
            T = rs.Fields(QStringLiteral("SommaDiTot_Minuti_Sett")).Value();
    });
    trap.step([&] { Label2->setCaption(form9WorkloadLine(Adodc5->RecordCount(), workloadTotal(T))); });
}

void Form9::Format_Steps()
{
    formatGrid(DataGrid1, StepGridColumns);
}

// ---- the selection of a model -----------------------------------------------------------

void Form9::DataGrid2_Click()
{
    Trap trap = Trap::ignoreAll();
    // A click on the models leaves the insert of a model; the model's save stays closed
    // while a step is being inserted.
    trap.step([&] {
        Cmd_Edit->setCaption(Edit);
        Cmd_Add->setEnabled(true);
        Cmd_Delete->setEnabled(true);
        Cmd_Edit->setEnabled(Cmd_Edit2->Caption() != Save);
    });
}

void Form9::DataGrid2_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess}, Trap::Resume};
    trap.step([&] {
        if (DataGrid2->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        Txt_ID->setText(DataGrid2->Columns(QStringLiteral("ID")).Value());
    });
    trap.step([&] {
        const Variant model = DataGrid2->Columns(QStringLiteral("ID_Modello")).Value();
        ID_MOD->setText(model);
        ID_MOD_OLD->setText(model);
    });
    trap.step([&] {
        Adodc1->setRecordSource(stepsOf(vb::KeyText(ID_MOD->Text())));
        Adodc1->Refresh();
    });
    trap.step([&] { Format_Steps(); });
    trap.step([&] { Label1->setCaption(QStringLiteral("N° Procedure ") + QString::number(Adodc1->RecordCount())); });

    // The model's names go to the combos, whose changes look the model up; the row's own
    // key has the last word.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Tbl_Proc_General_Macc WHERE ID= ") + vb::KeyText(Txt_ID->Text()));
        trap.step([&] { DataCombo2->setText(rs.Fields(QStringLiteral("Macchina")).Value()); });
        trap.step([&] { DataCombo3->setText(rs.Fields(QStringLiteral("Modello")).Value()); });
        trap.step([&] { ID_MOD->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value()); });
    });
    // A copied step can now go to this model.
    trap.step([&] {
        if (!Txt_Copy_Titolo->Text().isEmpty() && !Txt_Copy_Procedura->Text().isEmpty() && !ID_MOD->Text().isEmpty() &&
            !DataCombo2->Text().isEmpty() && !DataCombo3->Text().isEmpty())
            Cmd_Paste->setEnabled(true);
    });
    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid2->Row())); });
}

void Form9::DataCombo2_Change()
{
    Trap trap = Trap::ignoreAll();
    const QString kind = DataCombo2->Text();
    if (kind.size() < 1)
        return;
    trap.step([&] {
        Adodc3->setRecordSource(
            QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello From "
                           "Tbl_Macchina "
                           "GROUP BY Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello Having "
                           "(((Tbl_Macchina.Macchina) = '") +
            vb::DoubledQuotes(kind) + QStringLiteral("'))ORDER BY Tbl_Macchina.Modello;"));
        Adodc3->Refresh();
    });
    trap.step([&] { DataCombo3->bind(Adodc3, QStringLiteral("Modello")); });
    trap.step([&] {
        store::Recordset* rs = Adodc3->Recordset();
        if (rs && !rs->Eof())
            ID_MOD->setText(rs->Fields(QStringLiteral("ID_MODELLO")).Value());
    });
}

void Form9::DataCombo3_Change()
{
    Trap trap = Trap::ignoreAll();
    // The model's name goes in as typed: a name with an apostrophe finds no key.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello "
                               "From Tbl_Macchina Where (((Tbl_Macchina.Modello) = '") +
                DataCombo3->Text() +
                QStringLiteral("')) "
                               "ORDER BY Tbl_Macchina.Modello; "));
        ID_MOD->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value());
    });
}

// ---- searches ---------------------------------------------------------------------------

void Form9::search(const QString& steps, const QString& models, const QString& text)
{
    Trap trap = Trap::ignoreAll();
    const QString typed = vb::DoubledQuotes(text);
    trap.step([&] {
        Adodc1->setRecordSource(steps + typed + QStringLiteral("%'))ORDER BY Tbl_Proc_General.Num;"));
        Adodc1->Refresh();
    });
    trap.step([&] {
        Adodc5->setRecordSource(models + typed + QStringLiteral("%')) Order by Macchina,Modello;"));
        Adodc5->Refresh();
    });
    trap.step([&] { Format_Steps(); });
    trap.step([&] { Format_Models(); });
}

void Form9::Txt_Search_Macc_KeyUp()
{
    search(QStringLiteral("SELECT Tbl_Proc_General.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                          "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura FROM "
                          "Tbl_Macchina INNER JOIN Tbl_Proc_General ON Tbl_Macchina.ID_MODELLO = "
                          "Tbl_Proc_General.ID_MODELLO WHERE (((Tbl_Macchina.Macchina) Like '"),
           QStringLiteral("SELECT Tbl_Proc_General_Macc.ID, Tbl_Proc_General_Macc.Macchina, "
                          "Tbl_Proc_General_Macc.Modello, Tbl_Proc_General_Macc.ID_MODELLO From Tbl_Proc_General_Macc "
                          "WHERE (((Tbl_Proc_General_Macc.Macchina) Like '%"),
           Txt_Search_Macc->Text());
}

void Form9::Txt_Search_Modello_KeyUp()
{
    search(QStringLiteral("SELECT Tbl_Proc_General.ID_Procedura, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                          "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura FROM "
                          "Tbl_Macchina INNER JOIN Tbl_Proc_General ON Tbl_Macchina.ID_MODELLO = "
                          "Tbl_Proc_General.ID_MODELLO WHERE (((Tbl_Macchina.Modello) Like '"),
           QStringLiteral("SELECT Tbl_Proc_General_Macc.ID, Tbl_Proc_General_Macc.Macchina, "
                          "Tbl_Proc_General_Macc.Modello, Tbl_Proc_General_Macc.ID_MODELLO From Tbl_Proc_General_Macc "
                          "WHERE (((Tbl_Proc_General_Macc.Modello) Like '%"),
           Txt_Search_Modello->Text());
}

// ---- the model --------------------------------------------------------------------------

void Form9::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    for (vb::TextBox* t : {Txt_ID, ID_MOD, ID_MOD_OLD})
        trap.step([&] { t->setText(QString()); });
    for (vb::DataCombo* c : {DataCombo2, DataCombo3})
        trap.step([&] { c->setText(QString()); });
    trap.step([&] {
        Cmd_Edit->setCaption(Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form9::Cmd_Edit_Click()
{
    Trap trap = saveTrap();
    if (DataCombo2->Text().isEmpty() || DataCombo3->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }
    // A model typed by hand that names no row has no key: nothing to save.
    if (ID_MOD->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }
    auto writeModel = [&](store::Recordset& rs) {
        store::WriteFields(
            trap, rs,
            {{"ID_MODELLO", ID_MOD->Text()}, {"Macchina", DataCombo2->Text()}, {"Modello", DataCombo3->Text()}});
    };

    if (Cmd_Edit->Caption() == Save) {
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("Select * from Tbl_Proc_General_Macc"));
            rs.AddNew();
            Txt_ID->setText(rs.Fields(QStringLiteral("ID")).Value());
            writeModel(rs);
            trap.step([&] { rs.UpdateBatch(); });
        });
        trap.step([&] {
            Cmd_Edit->setCaption(Edit);
            Cmd_Add->setEnabled(true);
            Cmd_Delete->setEnabled(true);
        });
        trap.step([&] { reopen(false); });
        return;
    }

    if (vb::MsgBox(QStringLiteral("Stai per eseguire una Modifica, Vuoi Procedere??"), mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Dati")) != vb::answer::Yes)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Proc_General_Macc where ID =") + vb::KeyText(Txt_ID->Text()));
        writeModel(rs);
        trap.step([&] { rs.UpdateBatch(); });
    });
    // The model's new key reaches its steps, its assignments (with the names), every row
    // of the same old key, and the assigned steps. The names go in as typed.
    QString now, old;
    trap.step([&] { now = vb::KeyText(ID_MOD->Text()); });
    trap.step([&] { old = vb::KeyText(ID_MOD_OLD->Text()); });
    const QString machine = DataCombo2->Text();
    const QString model = DataCombo3->Text();
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Proc_General SET Tbl_Proc_General.ID_MODELLO = ") + now +
                   QStringLiteral(" Where Tbl_Proc_General.ID_MODELLO = ") + old);
    });
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Assegna_M SET Tbl_Assegna_M.ID_MODELLO = ") + now +
                   QStringLiteral(", Tbl_Assegna_M.Macchina = '") + machine +
                   QStringLiteral("' ,Tbl_Assegna_M.Modello= '") + model +
                   QStringLiteral("' Where Tbl_Assegna_M.ID_MODELLO = ") + old);
    });
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Proc_General_Macc SET Tbl_Proc_General_Macc.ID_MODELLO = ") + now +
                   QStringLiteral(", Tbl_Proc_General_Macc.Macchina = '") + machine +
                   QStringLiteral("' ,Tbl_Proc_General_Macc.Modello= '") + model +
                   QStringLiteral("' Where Tbl_Proc_General_Macc.ID_MODELLO = ") + old);
    });
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_ProcedureM SET Tbl_ProcedureM.ID_MODELLO = ") + now +
                   QStringLiteral(" Where Tbl_ProcedureM.ID_MODELLO = ") + old);
    });
    trap.step([&] { reopen(true); });
}

void Form9::Cmd_Delete_Click()
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
    // The model's heading by its own key, its steps by the model's key.
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Proc_General_Macc WHERE ID  = ") + vb::KeyText(Txt_ID->Text()));
    });
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Proc_General WHERE ID_MODELLO  = ") + vb::KeyText(ID_MOD->Text()));
    });
    trap.step([&] { reopen(false); });
}

// ---- the step ---------------------------------------------------------------------------

void Form9::DataGrid1_Click()
{
    Trap trap = Trap::ignoreAll();
    // A click on the steps leaves the insert of a step; the step's save stays closed while
    // a model is being inserted.
    trap.step([&] {
        Cmd_Edit2->setCaption(Edit);
        Cmd_Add2->setEnabled(true);
        Cmd_Delete2->setEnabled(true);
        Cmd_Edit2->setEnabled(Cmd_Edit->Caption() != Save);
    });
}

void Form9::DataGrid1_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::GridDataAccess}, Trap::Resume};
    for (vb::TextBox* t : {Txt_Titolo, Txt_Num_Procedura, Txt_Procedura})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    QString id;
    trap.step([&] {
        if (DataGrid1->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        id = vb::KeyText(DataGrid1->Columns(QStringLiteral("ID_Procedura")).Value().toString());
    });
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Tbl_Proc_General WHERE ID_Procedura= ") + id);
        trap.step([&] { Txt_Num_Procedura->setText(rs.Fields(QStringLiteral("Num")).Value()); });
        trap.step([&] { Txt_Titolo->setText(rs.Fields(QStringLiteral("Titolo")).Value()); });
        trap.step([&] { Txt_Procedura->setText(rs.Fields(QStringLiteral("Procedura")).Value()); });
        trap.step([&] { Txt_ID_PROCEDURA->setText(rs.Fields(QStringLiteral("ID_Procedura")).Value()); });
    });
    // Selecting a step lets go of a copied one.
    trap.step([&] {
        Txt_Copy_Titolo->setText(QString());
        Txt_Copy_Procedura->setText(QString());
        Cmd_Copy->setEnabled(true);
    });
}

void Form9::Cmd_Add2_Click()
{
    Trap trap = Trap::ignoreAll();
    if (ID_MOD->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non hai selezionato nessuna Manutenzione"), mb::Exclamation,
                   QStringLiteral("SELEZIONA MANUTENZIONE"));
        return;
    }
    trap.step([&] {
        const int count = Adodc1->RecordCount();
        Txt_Num_Procedura->setText(count == 0 ? QStringLiteral("1") : QString::number(count + 1));
    });
    trap.step([&] {
        Cmd_Edit2->setCaption(Save);
        Cmd_Edit2->setEnabled(true);
        Cmd_Delete2->setEnabled(false);
        Cmd_Add2->setEnabled(false);
    });
}

void Form9::Cmd_Edit2_Click()
{
    Trap trap = saveTrap();
    if (Txt_Titolo->Text().isEmpty() || Txt_Procedura->Text().isEmpty() || Txt_Num_Procedura->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation, QStringLiteral("MANCANZA DATI!!"));
        return;
    }
    // The step's number orders the sheet: a number it must be, or nothing is saved.
    if (!vb::IsNumeric(Variant(Txt_Num_Procedura->Text()))) {
        vb::MsgBox(QStringLiteral("Il N° della Procedura deve essere un numero!"), mb::Exclamation,
                   QStringLiteral("DATO NON VALIDO"));
        return;
    }
    auto writeStep = [&](store::Recordset& rs) {
        store::WriteFields(
            trap, rs,
            {{"Num", Txt_Num_Procedura->Text()}, {"Titolo", Txt_Titolo->Text()}, {"Procedura", Txt_Procedura->Text()}});
    };

    if (Cmd_Edit2->Caption() == Save) {
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("Select * from Tbl_Proc_General"));
            rs.AddNew();
            Txt_ID_PROCEDURA->setText(rs.Fields(QStringLiteral("ID_Procedura")).Value());
            trap.step([&] { rs.Fields(QStringLiteral("ID_MODELLO")) = ID_MOD->Text(); });
            writeStep(rs);
            trap.step([&] { rs.UpdateBatch(); });
        });
        trap.step([&] { Cmd_Edit2->setCaption(Edit); });
        // The model's units are counted (none counts as one); nothing on this screen
        // keeps the count.
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("SELECT Tbl_Proc_General_Macc.ID_MODELLO, Count(Tbl_Numerazione.Numerazione) AS "
                                   "ConteggioDiNumerazione FROM Tbl_Numerazione INNER JOIN Tbl_Proc_General_Macc ON "
                                   "Tbl_Numerazione.ID_MODELLO = Tbl_Proc_General_Macc.ID_MODELLO GROUP BY "
                                   "Tbl_Proc_General_Macc.ID_MODELLO HAVING Tbl_Proc_General_Macc.ID_MODELLO=") +
                    vb::KeyText(ID_MOD->Text()));
            const Variant units = rs.Eof() ? Variant(1) : rs.Fields(QStringLiteral("ConteggioDiNumerazione")).Value();
            static_cast<void>(units);
        });
        trap.step([&] { reopen(true); });
        return;
    }

    if (vb::MsgBox(QStringLiteral("Stai per eseguire una Modifica, Vuoi Procedere??"), mb::YesNo + mb::Question,
                   QStringLiteral("Modifica Dati")) != vb::answer::Yes)
        return;
    // The step's title before the edit, as the list still shows it.
    QString oldTitle;
    trap.step([&] {
        const int row = Adodc1->currentRow();
        if (row < 0)
            throw vb::VBError(err::GridDataAccess);
        oldTitle = Adodc1->value(row, Adodc1->columnIndex(QStringLiteral("Titolo"))).toString();
    });
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Proc_General where ID_Procedura =") +
                vb::KeyText(Txt_ID_PROCEDURA->Text()));
        writeStep(rs);
        trap.step([&] { rs.UpdateBatch(); });
    });
    // The assigned copies of the step follow it by their old title.
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_ProcedureM SET Tbl_ProcedureM.Titolo = '") +
                   vb::DoubledQuotes(Txt_Titolo->Text()) + QStringLiteral("', Tbl_ProcedureM.Procedura= '") +
                   vb::DoubledQuotes(Txt_Procedura->Text()) + QStringLiteral("' Where Tbl_ProcedureM.ID_MODELLO = ") +
                   vb::KeyText(ID_MOD_OLD->Text()) + QStringLiteral(" and Tbl_ProcedureM.Titolo= '") + oldTitle +
                   QStringLiteral("'"));
    });
    trap.step([&] { reopen(true); });
}

void Form9::Cmd_Delete2_Click()
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
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Proc_General WHERE ID_PROCEDURA  = ") +
                   vb::KeyText(Txt_ID_PROCEDURA->Text()));
    });
    trap.step([&] { reopen(false); });
}

// ---- copy and paste of a step -----------------------------------------------------------

void Form9::Cmd_Copy_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Txt_Copy_Titolo->setText(Txt_Titolo->Text());
        Txt_Copy_Procedura->setText(Txt_Procedura->Text());
        Cmd_Copy->setEnabled(false);
    });
}

void Form9::Cmd_Paste_Click()
{
    Trap trap = Trap::ignoreAll();
    // The step goes after the steps listed, without minutes.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Proc_General"));
        rs.AddNew();
        static_cast<void>(rs.Fields(QStringLiteral("ID_Procedura")).Value());
        store::WriteFields(trap, rs,
                           {{"ID_MODELLO", ID_MOD->Text()},
                            {"Num", Adodc1->RecordCount() + 1},
                            {"Titolo", Txt_Copy_Titolo->Text()},
                            {"Procedura", Txt_Copy_Procedura->Text()}});
        trap.step([&] { rs.UpdateBatch(); });
    });
    trap.step([&] { Adodc1->Refresh(); });
    trap.step([&] { Format_Steps(); });
    trap.step([&] {
        Txt_Copy_Titolo->setText(QString());
        Txt_Copy_Procedura->setText(QString());
        Cmd_Paste->setEnabled(false);
    });
}

// ---- refresh ----------------------------------------------------------------------------

Form9* Form9::reopen(bool backToRow)
{
    const QString kept = Txt_Posizione->Text();
    auto* again = static_cast<Form9*>(shell::ReopenScreen(ScreenName, false));
    if (!again || !backToRow)
        return again;
    // The row kept is one of the models.
    bool isRow = false;
    const int row = kept.toInt(&isRow);
    if (isRow && row >= 0 && row < again->Adodc5->RecordCount())
        again->Adodc5->moveTo(row);
    return again;
}

void Form9::Cmd_Aggiorna_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { reopen(false); });
}

void Form9::Cmd_Vis_All_Click()
{
    Trap trap = Trap::ignoreAll();
    // The register's preselection goes, so the lists come back whole.
    trap.step([] { shell::screens().unload(ScreenName); });
    trap.step([] { clearTextOf(QStringLiteral("Form7"), QStringLiteral("ID_MOD")); });
    trap.step([] { clearTextOf(QStringLiteral("Form7"), QStringLiteral("ID_MAINT")); });
    trap.step([] { clearTextOf(QStringLiteral("Form7"), QStringLiteral("DataCombo4")); });
    trap.step([] { shell::screens().show(ScreenName); });
}

// ---- print ------------------------------------------------------------------------------

void Form9::Cmd_Print_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport6")); });
    if (ID_MOD->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non hai selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("MANCANZA DATI"));
        return;
    }
    if (Adodc1->RecordCount() == 0) {
        vb::MsgBox(QStringLiteral("Non c'è nessuna Procedura di Manutenzione!"), mb::Information,
                   QStringLiteral("MANCANZA DATI!"));
        return;
    }
    QString id;
    trap.step([&] { id = vb::KeyText(ID_MOD->Text()); });
    // The model's heading, and under it the steps of every model of the same name.
    const QString statement =
        QStringLiteral("SHAPE {SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello FROM "
                       "Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General ON Tbl_Proc_General_Macc.ID_MODELLO = "
                       "Tbl_Proc_General.ID_MODELLO GROUP BY Tbl_Proc_General_Macc.Macchina, "
                       "Tbl_Proc_General_Macc.Modello, Tbl_Proc_General.ID_MODELLO HAVING "
                       "(((Tbl_Proc_General.ID_MODELLO)=") +
        id + QStringLiteral("));} ") +
        QStringLiteral("APPEND ({SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
                       "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura FROM "
                       "Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General ON Tbl_Proc_General_Macc.ID_MODELLO = "
                       "Tbl_Proc_General.ID_MODELLO;} ") +
        QStringLiteral("RELATE Modello to Modello) as Dati");
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox11"), QStringLiteral("Macchina"));
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox4"), QStringLiteral("Modello"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport6"), statement, options); });
}

VELMORA_SCREEN(Form9);

} // namespace definition
