#include "spares/Form14.h"

#include "controls/PictureFit.h"
#include "controls/ScreenKit.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "spares/EntryFields.h"
#include "store/DataStore.h"

#include <cmath>
#include <optional>

namespace spares {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;

namespace {

const QString ScreenName = QStringLiteral("Form14");
const QString& Saving = vb::caption::Save;
const QString& Editing = vb::caption::Edit;

// The three columns of the screen, in twips: machines and searches, interventions and
// prints, the entry area.
constexpr int ListWidth = 4300;
constexpr int MiddleLeft = 4560;
constexpr int MiddleWidth = 4900;
constexpr int EntryLeft = 9600;
constexpr int EntryLabelWidth = 1300;
constexpr int EntryFieldLeft = EntryLeft + EntryLabelWidth + 60;
constexpr int EntryFieldWidth = 3300;
constexpr int RowHeight = 315;
constexpr int RowStep = 400;
constexpr int ButtonHeight = 435;

/// A key held on the screen, through the 16-bit passage into a statement.
QString key(const vb::TextBox* field)
{
    return vb::KeyText(field->Text());
}

/// A number typed in one of the stock fields, read as the arithmetic reads it.
double number(const vb::TextBox* field)
{
    return vb::CDbl(Variant(field->Text())).toDouble();
}

/// The machine list of the searches: five columns, model and number shown.
void setFiveColumns(vb::DataGrid* grid, Trap& trap)
{
    vb::setColumns(trap, grid,
                   {{QStringLiteral("ID"), 0, true},
                    {QStringLiteral("MODELLO"), 2000, true},
                    {QStringLiteral("N°"), 800, true},
                    {QStringLiteral("STATO"), 0, true},
                    {QStringLiteral("ID_NUMER0"), 0, true}});
}

void machineCount(vb::Label* label, const vb::Adodc* source)
{
    label->setCaption(QStringLiteral("Conteggio Macchine: ") + QString::number(source->RecordCount()));
}

} // namespace

Form14::Form14(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("DESTINAZIONE RICAMBI"))
{
    buildControls();
    connectEvents();
}

void Form14::buildControls()
{
    Move(0, 0, 14400, 8400);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    // The machines with interventions, and the searches that narrow them.
    Label6 = kit.label(this, "Label6", QStringLiteral("Conteggio Macchine:"), 120, 120, ListWidth);
    DataGrid1 = kit.grid(this, "DataGrid1", Adodc6, "Adodc6", 120, 400, ListWidth, 3900);
    Txt_Posizione = kit.hidden("Txt_Posizione");

    Frame4 = kit.frame(this, "Frame4", QStringLiteral("CERCA PER..."), 120, 4400, ListWidth, 1960);
    auto search = [&](const char* labelName, const QString& caption, const char* name, int row) {
        kit.label(Frame4, labelName, caption, 120, 330 + row * RowStep, 1300);
        return kit.field(Frame4, name, 1480, 300 + row * RowStep, ListWidth - 1600);
    };
    Txt_Search_Mod_Macc = search("Label15", QStringLiteral("Modello"), "Txt_Search_Mod_Macc", 0);
    Txt_Search_Ric = search("Label16", QStringLiteral("Ricambio"), "Txt_Search_Ric", 1);
    Txt_Search_Desc = search("Label17", QStringLiteral("Descrizione"), "Txt_Search_Desc", 2);
    Txt_Search_Destin = search("Label18", QStringLiteral("Destinazione"), "Txt_Search_Destin", 3);

    // The interventions of the machine chosen, and the prints under them.
    Label1 = kit.label(this, "Label1", QStringLiteral("Trovati Componenti Macchina N°"), MiddleLeft, 120, MiddleWidth);
    DataGrid2 = kit.grid(this, "DataGrid2", Adodc3, "Adodc3", MiddleLeft, 400, MiddleWidth, 3900);
    constexpr int HalfWidth = (MiddleWidth - 120) / 2;
    constexpr int RightHalf = MiddleLeft + HalfWidth + 120;
    Cmd_History_GO =
        kit.button(this, "Cmd_History_GO", QStringLiteral("STORICO MACCHINA"), MiddleLeft, 4460, HalfWidth);
    Cmd_History_GO->setEnabled(false); // a unit key enables it
    Cmd_Print_List =
        kit.button(this, "Cmd_Print_List", QStringLiteral("STAMPA LISTA SELEZIONATA"), RightHalf, 4460, HalfWidth);
    Cmd_Print_All =
        kit.button(this, "Cmd_Print_All", QStringLiteral("STAMPA RICAMBI MACCHINE"), MiddleLeft, 4960, HalfWidth);
    Cmd_Print_Consumi =
        kit.button(this, "Cmd_Print_Consumi", QStringLiteral("STAMPA TUTTI I CONSUMI"), RightHalf, 4960, HalfWidth);
    Cmd_Statistic = kit.button(this, "Cmd_Statistic", QStringLiteral("Statistiche"), MiddleLeft, 5460, HalfWidth);
    Cmd_Vis_All = kit.button(this, "Cmd_Vis_All", QStringLiteral("VISUALIZZA TUTTO"), RightHalf, 5460, HalfWidth);
    Cmd_Info = kit.button(this, "Cmd_Info", QStringLiteral("Info"), MiddleLeft, 5960, HalfWidth);

    // The yearly consumption of the part chosen, over the prints while it is open.
    Frame10 = kit.frame(this, "Frame10", QStringLiteral("Consumi relativi a"), MiddleLeft, 4400, MiddleWidth, 2500);
    Frame10->setVisible(false);
    Frame10->setAutoFillBackground(true); // it stands over the prints
    DataGrid3 = kit.grid(Frame10, "DataGrid3", Adodc10, "Adodc10", 120, 300, MiddleWidth - 240, 1560);
    Cmd_Print_This = kit.button(Frame10, "Cmd_Print_This", QStringLiteral("STAMPA CONSUMI"), 120, 1940, HalfWidth - 60);
    Cmd_Close = kit.button(Frame10, "Cmd_Close", QStringLiteral("CHIUDI"), HalfWidth + 120, 1940, HalfWidth - 60);

    // The entry area: each row's field, then its caption.
    int top = 120;
    auto entry = [&](const char* labelName, const QString& caption) {
        kit.label(this, labelName, caption, EntryLeft, top + 30, EntryLabelWidth);
        top += RowStep;
    };
    auto combo = [&](const char* labelName, const QString& caption, const char* name) {
        vb::DataCombo* c = kit.dataCombo(this, name, EntryFieldLeft, top, EntryFieldWidth);
        entry(labelName, caption);
        return c;
    };
    DTPicker1 = kit.datePicker(this, "DTPicker1", EntryFieldLeft, top, 1800);
    entry("Label7", QStringLiteral("Data:"));
    DTPicker1->setVisible(false);
    DataCombo3 = combo("Label8", QStringLiteral("Macchina:"), "DataCombo3");
    DataCombo2 = combo("Label9", QStringLiteral("Modello:"), "DataCombo2");
    DataCombo4 = combo("Label10", QStringLiteral("N°:"), "DataCombo4");
    DataCombo1 = combo("Label11", QStringLiteral("Ricambio:"), "DataCombo1");
    DataCombo5 = combo("Label12", QStringLiteral("Descrizione:"), "DataCombo5");
    DataCombo6 = combo("Label13", QStringLiteral("Destinazione:"), "DataCombo6");
    DataCombo7 = combo("Label14", QStringLiteral("Causa:"), "DataCombo7");
    Adodc1 = new vb::Adodc(this, QStringLiteral("Adodc1"));
    Adodc2 = new vb::Adodc(this, QStringLiteral("Adodc2"));
    Adodc4 = new vb::Adodc(this, QStringLiteral("Adodc4"));
    Adodc5 = new vb::Adodc(this, QStringLiteral("Adodc5"));
    Adodc7 = new vb::Adodc(this, QStringLiteral("Adodc7"));
    Adodc8 = new vb::Adodc(this, QStringLiteral("Adodc8"));
    Adodc9 = new vb::Adodc(this, QStringLiteral("Adodc9"));
    DataCombo3->bind(Adodc1, QStringLiteral("Macchina"));
    DataCombo2->bind(Adodc2, QStringLiteral("Modello"));
    DataCombo4->bind(Adodc5, QStringLiteral("Numerazione"));
    DataCombo1->bind(Adodc4, QStringLiteral("Ricambi"));
    DataCombo5->bind(Adodc7, QStringLiteral("Descrizione"));
    DataCombo6->bind(Adodc8, QStringLiteral("Destinazione"));
    DataCombo7->bind(Adodc9, QStringLiteral("Causa_Interv"));

    top += 80;
    auto stock = [&](const char* frameName, const QString& caption, const char* name, int column, vb::Frame*& frame) {
        constexpr int Width = (EntryFieldLeft + EntryFieldWidth - EntryLeft - 240) / 3;
        vb::TextBox* t = kit.framedField(this, frameName, caption, name, EntryLeft + column * (Width + 120), top, Width,
                                         660, 280, &frame);
        t->setText(QStringLiteral("0"));
        return t;
    };
    Txt_Giac = stock("Frame1", QStringLiteral("Giacenza"), "Txt_Giac", 0, Frame1);
    Txt_Scorta = stock("Frame2", QStringLiteral("Scorta Min"), "Txt_Scorta", 1, Frame2);
    Txt_prelievo = stock("Frame3", QStringLiteral("Prelievo"), "Txt_prelievo", 2, Frame3);
    top += 760;

    constexpr int EntryWidth = EntryFieldLeft + EntryFieldWidth - EntryLeft;
    Cmd_Photo = kit.button(this, "Cmd_Photo", QStringLiteral("INSERISCI IMMAGINE"), EntryLeft, top, EntryWidth, 1300);
    Cmd_Photo->setEnabled(false);
    Image4 = new vb::Image(this, QStringLiteral("Image4"));
    Image4->Move(Cmd_Photo->Left(), Cmd_Photo->Top(), Cmd_Photo->Width(), Cmd_Photo->Height());
    Image4->setVisible(false);
    top += 1400;
    constexpr int Third = (EntryWidth - 240) / 3;
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), EntryLeft, top, Third);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Editing, EntryLeft + Third + 120, top, Third);
    Cmd_Edit->setEnabled(false); // an intervention chosen, or INSERISCI, enables it
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), EntryLeft + 2 * (Third + 120), top, Third);
    Cmd_Order = kit.button(this, "Cmd_Order", QStringLiteral("PROMEMORIA ORDINI"), EntryLeft, top + 500, EntryWidth);

    // The descriptions the typed words match, over the picture: the fields below the
    // description stay in sight while it shows.
    List1 = kit.list(this, "List1", Cmd_Photo->Left(), Cmd_Photo->Top(), Cmd_Photo->Width(), Cmd_Photo->Height());
    List1->setVisible(false);
    List1->setFocusHighlight(true);

    // The large picture, over the whole screen.
    Frame11 = kit.frame(this, "Frame11", QString(), Width() / 25, Height() / 25, Width() - 2 * (Width() / 25),
                        Height() - 2 * (Height() / 25));
    Frame11->setVisible(false);
    Frame11->setAutoFillBackground(true);
    Image1 = new vb::Image(Frame11, QStringLiteral("Image1"));
    Image1->Move(60, 120);
    Apri = new vb::CommonDialog(this, QStringLiteral("Apri"));

    txtID = kit.hidden("txtID");
    Txt_ID = kit.hidden("Txt_ID");
    ID_MODELLO = kit.hidden("ID_MODELLO");
    Txt_ID_NUM = kit.hidden("Txt_ID_NUM");
    Txt_ID_Ricambi = kit.hidden("Txt_ID_Ricambi");
    Txt_ID_DESCRIZIONE_RIC = kit.hidden("Txt_ID_DESCRIZIONE_RIC");
    Txt_ID_CAUSA = kit.hidden("Txt_ID_CAUSA");
    Txt_prelievo_OLD = kit.hidden("Txt_prelievo_OLD", QStringLiteral("0"));
    TXT_ID_IMG = kit.hidden("TXT_ID_IMG");
    Txt_Images = kit.hidden("Txt_Images");
    Txt_Percorso = kit.hidden("Txt_Percorso");
}

void Form14::connectEvents()
{
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo4->Change = [this] { DataCombo4_Change(); };
    DataCombo1->Change = [this] { DataCombo1_Change(); };
    DataCombo5->Change = [this] { DataCombo5_Change(); };
    DataCombo5->Click = [this] { DataCombo5_Click(); };
    DataCombo7->Change = [this] { DataCombo7_Change(); };
    List1->Click = [this] { List1_Click(); };
    Txt_Images->Change = [this] { Txt_Images_Change(); };

    // Quantities are whole numbers; an emptied field is "0" again at once.
    for (vb::TextBox* t : {Txt_Giac, Txt_Scorta, Txt_prelievo}) {
        t->KeyPress = [](int& k) { digitsOnly(k); };
        t->Change = [t] {
            if (t->Text().isEmpty())
                t->setText(QStringLiteral("0"));
        };
    }
    Txt_Giac->Change.connect([this] { Txt_Giac_Change(); });
    Txt_ID_NUM->Change = [this] { Cmd_History_GO->setEnabled(!Txt_ID_NUM->Text().isEmpty()); };

    // List1 goes away as soon as the user works elsewhere.
    for (vb::Control* c : std::initializer_list<vb::Control*>{DataCombo1, DataCombo2, DataCombo3, DataCombo6, Txt_Giac,
                                                              Txt_prelievo, Txt_Scorta})
        c->GotFocus = [this] { List1->setVisible(false); };
    DataCombo5->LostFocus = [this] { List1->setVisible(false); };
    for (vb::TextBox* t : {Txt_Search_Mod_Macc, Txt_Search_Ric, Txt_Search_Desc, Txt_Search_Destin}) {
        // One search in force at a time: entering a field empties the other three.
        t->GotFocus = [this, t] {
            for (vb::TextBox* other : {Txt_Search_Mod_Macc, Txt_Search_Ric, Txt_Search_Desc, Txt_Search_Destin})
                if (other != t)
                    other->setText(QString());
            List1->setVisible(false);
        };
        t->KeyUp = [this, t] { Search_KeyUp(t); };
    }

    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Order->Click = [this] { Cmd_Order_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
    Cmd_Info->Click = [] { reports::WriteDateInfo(); };
    Cmd_Statistic->Click = [] { shell::screens().show(QStringLiteral("Form11")); };
    Cmd_Photo->Click = [this] { Insert_Intervention_Image(); };
    Image1->Click = [this] { Insert_Intervention_Image(); };
    Image4->Click = [this] { Insert_Intervention_Image(); };
    Cmd_History_GO->Click = [this] { Cmd_History_GO_Click(); };
    Cmd_Print_List->Click = [this] { Cmd_Print_List_Click(); };
    Cmd_Print_All->Click = [this] { Cmd_Print_All_Click(); };
    Cmd_Print_Consumi->Click = [this] { Cmd_Print_Consumi_Click(); };
    Cmd_Print_This->Click = [this] { Cmd_Print_This_Click(); };
    Cmd_Close->Click = [this] { Cmd_Close_Click(); };

    // The large picture over the small one; anywhere else on the screen puts it away.
    Image4->MouseMove = [this] {
        Frame11->Move(Width() / 25, Height() / 25);
        Frame11->setVisible(true);
        Frame11->raise();
    };
    MouseMove = [this] { Frame11->setVisible(false); };
}

// ---- load and the machine list -------------------------------------------------------

void Form14::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    auto fill = [&](vb::Adodc* source, const QString& statement) {
        trap.step([&] {
            source->setRecordSource(statement);
            source->Refresh();
        });
    };
    fill(Adodc1, QStringLiteral("SELECT Tbl_Macchina.Macchina From Tbl_Macchina GROUP BY Tbl_Macchina.Macchina HAVING "
                                "(((Tbl_Macchina.Macchina)<>''));"));
    fill(Adodc4,
         QStringLiteral("SELECT Tbl_Ricambi.ID_RICAMBI, Tbl_Ricambi.Ricambi From Tbl_Ricambi GROUP BY "
                        "Tbl_Ricambi.ID_RICAMBI, Tbl_Ricambi.Ricambi HAVING (((Tbl_Ricambi.Ricambi)<>''))ORDER BY "
                        "Tbl_Ricambi.Ricambi;"));
    fill(Adodc2, QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello From Tbl_Macchina GROUP BY "
                                "Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello ORDER BY Tbl_Macchina.Modello;"));
    fill(Adodc9, QStringLiteral("SELECT Tbl_Causa_Intervento.ID_CAUSA, Tbl_Causa_Intervento.Causa_Interv From "
                                "Tbl_Causa_Intervento GROUP BY Tbl_Causa_Intervento.ID_CAUSA, "
                                "Tbl_Causa_Intervento.Causa_Interv Having (((Tbl_Causa_Intervento.Causa_Interv) <> "
                                "'')) ORDER BY Tbl_Causa_Intervento.Causa_Interv;"));

    // Every load puts each next date back at the last execution plus the frequency,
    // whatever set it meanwhile (an edit by hand, a stop's shift): one UPDATE per row.
    store::RunForEachRow(QStringLiteral("SELECT Tbl_Maintenance.ID, Tbl_Maintenance.Frequenza_Sett, "
                                        "Tbl_Maintenance.Ultima, Tbl_Maintenance.Prossima FROM Tbl_Maintenance;"),
                         QStringLiteral("UPDATE Tbl_Maintenance SET Tbl_Maintenance.Prossima = "
                                        "[Tbl_Maintenance.Ultima]+([Tbl_Maintenance.Frequenza_Sett]*7) WHERE "
                                        "((Tbl_Maintenance.ID = {key}))"),
                         trap);
    trap.step([&] { DTPicker1->setValue(vb::Today()); });
    trap.step([&] { Refresh_Machine_List(); });
}

void Form14::Refresh_Machine_List()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc6->setRecordSource(QStringLiteral(
            "SELECT Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, "
            "Tbl_Ricerca.ID_NUM, Count(Tbl_Ricerca.ID_RICAMBI) AS ConteggioDiID_RICAMBI FROM Tbl_Ricerca INNER JOIN "
            "Tbl_Macchina ON Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Ricerca.ID_MODELLO, "
            "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, Tbl_Ricerca.ID_NUM, "
            "Val([Tbl_Ricerca].[Numerazione])ORDER BY Val([Tbl_Ricerca].[Numerazione]);"));
        Adodc6->Refresh();
    });
    trap.step([&] { Set_Machine_Grid_Columns(); });
    trap.step([&] { machineCount(Label6, Adodc6); });
}

void Form14::Set_Machine_Grid_Columns()
{
    Trap trap = Trap::ignoreAll();
    setFiveColumns(DataGrid1, trap);
    trap.step([&] {
        vb::GridColumn& c = DataGrid1->Columns(5);
        c.setCaption(QStringLiteral("Interventi"));
        c.setLocked(true);
        c.setWidth(1100);
    });
}

void Form14::Set_Search_Grid_Columns()
{
    Trap trap = Trap::ignoreAll();
    setFiveColumns(DataGrid1, trap);
}

QString Form14::searchMode() const
{
    QString mode = QStringLiteral("Normal");
    if (!Txt_Search_Ric->Text().isEmpty())
        mode = QStringLiteral("Ricambi");
    if (!Txt_Search_Desc->Text().isEmpty())
        mode = QStringLiteral("Descrizione");
    if (!Txt_Search_Destin->Text().isEmpty())
        mode = QStringLiteral("Destinazione");
    return mode;
}

// ---- a machine chosen ------------------------------------------------------------------

void Form14::DataGrid1_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { Cmd_Edit->setCaption(Editing); });
    trap.step([&] { Cmd_Edit->setEnabled(false); });
    trap.step([&] { Cmd_Delete->setEnabled(true); });
    trap.step([&] { Cmd_Add->setEnabled(true); });
    trap.step([&] { List1->setVisible(false); });
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport9")); });
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport14")); });
    trap.step([&] { Txt_ID->setText(DataGrid1->Columns(QStringLiteral("ID")).Value()); });
    trap.step([&] { Txt_ID_NUM->setText(DataGrid1->Columns(QStringLiteral("ID_NUMER0")).Value()); });

    const QString mode = searchMode();
    trap.step([&] {
        const QString unit = key(Txt_ID_NUM);
        QString statement;
        if (mode == QLatin1String("Descrizione"))
            statement = QStringLiteral("SELECT * From Tbl_Ricerca Where ID_NUM= ") + unit +
                        QStringLiteral(" and Descrizione Like '%") + vb::DoubledQuotes(Txt_Search_Desc->Text()) +
                        QStringLiteral("%'");
        else if (mode == QLatin1String("Destinazione"))
            statement = QStringLiteral("SELECT * From Tbl_Ricerca Where ID_NUM= ") + unit +
                        QStringLiteral(" and Destinazione Like '%") + vb::DoubledQuotes(Txt_Search_Destin->Text()) +
                        QStringLiteral("%'");
        else if (mode == QLatin1String("Ricambi"))
            statement = QStringLiteral("SELECT * From Tbl_Ricerca Where ID_NUM= ") + unit +
                        QStringLiteral(" and Ricambi Like '%") + vb::DoubledQuotes(Txt_Search_Ric->Text()) +
                        QStringLiteral("%' ORDER BY Ricambi;");
        else
            statement = QStringLiteral("SELECT * From Tbl_Ricerca Where ID_MODELLO = ") + key(Txt_ID) +
                        QStringLiteral(" and ID_NUM= ") + unit + QStringLiteral(" ORDER BY Ricambi ;");
        Adodc3->setRecordSource(statement);
        Adodc3->Refresh();
    });
    // Only the part and where it went show; the quantity is read into the entry area.
    static const std::pair<int, const char*> captions[] = {
        {0, "ID"},        {7, "ID_DESCRIZIONE_RICAMBI"}, {8, "Descrizione"}, {9, "ID_RICAMBI"}, {10, "Ricambio"},
        {11, "Quantita"}, {12, "Destinazione"}};
    for (int i = 0; i < 16; ++i)
        trap.step([&] {
            vb::GridColumn& c = DataGrid2->Columns(i);
            c.setLocked(true);
            c.setWidth(i == 8 ? 2000 : i == 10 ? 1300 : i == 12 ? 1500 : 0);
        });
    for (const auto& [column, caption] : captions)
        trap.step([&] { DataGrid2->Columns(column).setCaption(QString::fromLatin1(caption)); });
    trap.step([&] {
        Label1->setCaption(QStringLiteral("Trovati Componenti Macchina N° ") + QString::number(Adodc3->RecordCount()));
    });
    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid1->Row())); });
}

// ---- an intervention chosen ------------------------------------------------------------

void Form14::DataGrid2_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport14")); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    trap.step([&] { TXT_ID_IMG->setText(DataGrid2->Columns(QStringLiteral("ID")).Value()); });

    // The stock first: Txt_Giac is painted against the minimum still on the screen.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Tbl_Descrizione_Ricambi.Giacenza, Tbl_Descrizione_Ricambi.Scorta, "
                               "Tbl_Ricerca.Quantita, Tbl_Ricerca.ID FROM Tbl_Ricerca INNER JOIN "
                               "Tbl_Descrizione_Ricambi ON Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI = "
                               "Tbl_Descrizione_Ricambi.ID_DESCRIZIONE_RICAMBI GROUP BY "
                               "Tbl_Descrizione_Ricambi.Giacenza, Tbl_Descrizione_Ricambi.Scorta, "
                               "Tbl_Ricerca.Quantita, Tbl_Ricerca.ID HAVING (((Tbl_Ricerca.ID)=") +
                key(TXT_ID_IMG) + QStringLiteral("));"));
        trap.step([&] {
            m_stockRead = rs.Fields(QStringLiteral("Giacenza")).Value();
            Txt_Giac->setText(m_stockRead);
        });
        trap.step([&] { Txt_Scorta->setText(rs.Fields(QStringLiteral("Scorta")).Value()); });
        trap.step([&] { Txt_prelievo->setText(rs.Fields(QStringLiteral("Quantita")).Value()); });
        trap.step([&] { Txt_prelievo_OLD->setText(rs.Fields(QStringLiteral("Quantita")).Value()); });
    });

    // A row whose cause is unknown is not found here: only the stock shows.
    store::Recordset rs;
    bool found = false;
    trap.step([&] {
        rs.Open(
            QStringLiteral("SELECT Tbl_Ricerca.*, Tbl_Causa_Intervento.Causa_Interv FROM Tbl_Causa_Intervento "
                           "INNER JOIN Tbl_Ricerca ON Tbl_Causa_Intervento.ID_CAUSA = Tbl_Ricerca.ID_CAUSA Where ID "
                           "= ") +
            key(TXT_ID_IMG));
        found = !rs.Eof();
    });
    if (!found)
        return;
    auto field = [&rs](const char* name) { return rs.Fields(QString::fromLatin1(name)).Value(); };
    trap.step([&] {
        const Variant data = field("Data");
        if (data.isString() && data.toString().isEmpty()) {
            DTPicker1->setVisible(false);
        } else {
            DTPicker1->setVisible(true);
            DTPicker1->setValue(data);
        }
    });
    // In this order: each list's change runs its lookups on what is already in place,
    // and the picture loads from Txt_Percorso when Txt_Images changes.
    const std::pair<vb::Control*, const char*> copies[] = {
        {ID_MODELLO, "ID_MODELLO"},
        {DataCombo1, "Ricambi"},
        {txtID, "ID"},
        {DataCombo3, "Macchina"},
        {Txt_ID_NUM, "ID_NUM"},
        {DataCombo5, "Descrizione"},
        {DataCombo6, "Destinazione"},
        {Txt_ID_Ricambi, "ID_Ricambi"},
        {Txt_ID_DESCRIZIONE_RIC, "ID_DESCRIZIONE_RICAMBI"},
        {DataCombo2, "Modello"},
        {DataCombo4, "Numerazione"},
        {Txt_ID_CAUSA, "ID_CAUSA"},
        {DataCombo7, "Causa_Interv"},
        {Txt_Percorso, "Percorso"},
        {Txt_Images, "Images"},
    };
    for (const auto& [control, column] : copies)
        trap.step([&] { control->setVbProperty(QStringLiteral("Text"), field(column)); });
    trap.step([&] { Show_Part_Consumption(); });
    trap.step([&] { Cmd_Photo->setEnabled(!Txt_Posizione->Text().isEmpty()); });
}

void Form14::Clear_Fields()
{
    // Txt_prelievo_OLD, Txt_ID_CAUSA and the cause stay: a new intervention after a
    // chosen one moves the stock by the difference from that one's quantity.
    Trap trap = Trap::ignoreAll();
    trap.step([&] { txtID->setText(QString()); });
    trap.step([&] { DataCombo3->setText(QString()); });
    trap.step([&] { ID_MODELLO->setText(QString()); });
    for (vb::DataCombo* c : {DataCombo2, DataCombo4, DataCombo1, DataCombo5, DataCombo6})
        trap.step([&] { c->setText(QString()); });
    for (vb::TextBox* t : {Txt_Scorta, Txt_Giac, Txt_prelievo})
        trap.step([&] { t->setText(QStringLiteral("0")); });
    for (vb::TextBox* t : {Txt_ID_DESCRIZIONE_RIC, Txt_ID_NUM})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { DTPicker1->setVisible(false); });
    for (vb::TextBox* t : {Txt_Percorso, Txt_Images, TXT_ID_IMG, Txt_ID})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { Frame11->setVisible(false); });
    trap.step([&] { Cmd_Photo->setEnabled(false); });
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport14")); });
}

// ---- the entry area's lookups ----------------------------------------------------------

void Form14::DataCombo3_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { DataCombo2->setText(QString()); });
    trap.step([&] { DataCombo4->setText(QString()); });
    trap.step([&] { Txt_ID_NUM->setText(QString()); });
    const QString text = DataCombo3->Text();
    if (text.size() < 3)
        return;
    trap.step([&] {
        Adodc2->setRecordSource(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, "
                                               "Tbl_Macchina.Modello From Tbl_Macchina GROUP BY "
                                               "Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello "
                                               "Having (((Tbl_Macchina.Macchina) = '") +
                                vb::DoubledQuotes(text) + QStringLiteral("'))ORDER BY Tbl_Macchina.Modello;"));
        Adodc2->Refresh();
    });
    trap.step([&] { ID_MODELLO->setText(Adodc2->Recordset()->Fields(QStringLiteral("ID_MODELLO")).Value()); });
}

void Form14::DataCombo2_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataCombo4->setText(QString()); });
    trap.step([&] { Txt_ID_NUM->setText(QString()); });
    const QString text = DataCombo2->Text();
    if (text.size() < 3)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello From "
                               "Tbl_Macchina Where (((Tbl_Macchina.Modello) = '") +
                vb::DoubledQuotes(text) + QStringLiteral("')) ORDER BY Tbl_Macchina.Modello; "));
        ID_MODELLO->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value());
    });
    const QString model = ID_MODELLO->Text();
    if (model.isEmpty() || model == QLatin1String("0"))
        return;
    trap.step([&] {
        Adodc5->setRecordSource(QStringLiteral("SELECT Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione From "
                                               "Tbl_Numerazione WHERE (((Tbl_Numerazione.ID_MODELLO)=") +
                                key(ID_MODELLO) + QStringLiteral("))ORDER BY Tbl_Numerazione.Numerazione;"));
        Adodc5->Refresh();
    });
}

void Form14::DataCombo4_Change()
{
    // The one lookup whose text goes in as typed, apostrophes and all.
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * From Tbl_Numerazione WHERE ID_MODELLO=") + key(ID_MODELLO) +
                QStringLiteral(" AND  Numerazione= '") + DataCombo4->Text() + QStringLiteral("'"));
        Txt_ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value());
    });
}

void Form14::DataCombo1_Change()
{
    Trap trap = Trap::ignoreAll();
    const QString text = DataCombo1->Text();
    if (text.size() < 3)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT * From Tbl_Ricambi WHERE RICAMBI= '") + vb::DoubledQuotes(text) +
                QStringLiteral("';"));
        Txt_ID_Ricambi->setText(rs.Fields(QStringLiteral("ID_RICAMBI")).Value());
    });
    const QString category = Txt_ID_Ricambi->Text();
    if (category.isEmpty() || category == QLatin1String("0"))
        return;
    trap.step([&] {
        Adodc7->setRecordSource(QStringLiteral("SELECT * from Tbl_Descrizione_Ricambi WHERE ID_Ricambi=") +
                                key(Txt_ID_Ricambi) + QStringLiteral(" ORDER BY Descrizione;"));
        Adodc7->Refresh();
    });
}

void Form14::DataCombo5_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_ID_DESCRIZIONE_RIC->setText(QString()); });
    trap.step([&] { List1->setVisible(true); });
    trap.step([&] { List1->Clear(); });
    const QString text = DataCombo5->Text();
    // The first word begins the description, every further word is somewhere in it.
    const QString pattern =
        vb::DoubledQuotes(text).replace(QLatin1Char(' '), QStringLiteral("%' and Descrizione like '%"));
    store::Recordset rs;
    bool rows = false;
    trap.step([&] {
        rs.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi WHERE Descrizione like '") + pattern +
                QStringLiteral("%' ORDER by Descrizione"));
        rows = !rs.Eof();
    });
    if (rows) {
        addRows(trap, List1, rs, QStringLiteral("Descrizione"));
    } else {
        trap.step([&] { List1->Clear(); });
        trap.step([&] { List1->setVisible(false); });
    }
    if (!text.isEmpty())
        trap.step([&] { lookUpDescription(text, true); });
}

void Form14::DataCombo5_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { lookUpDescription(DataCombo5->Text(), false); });
}

void Form14::lookUpDescription(const QString& text, bool destinations)
{
    // The description alone decides: the same text in two categories finds the first.
    Trap trap = Trap::ignoreAll();
    store::Recordset rs;
    bool found = false;
    trap.step([&] {
        rs.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi WHERE Descrizione = '") +
                vb::DoubledQuotes(text) + QStringLiteral("' "));
        found = !rs.Eof();
    });
    if (!found) {
        trap.step([&] { Txt_ID_DESCRIZIONE_RIC->setText(QString()); });
        return;
    }
    trap.step([&] { Txt_ID_DESCRIZIONE_RIC->setText(rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")).Value()); });
    trap.step([&] {
        m_stockRead = rs.Fields(QStringLiteral("Giacenza")).Value();
        Txt_Giac->setText(m_stockRead);
    });
    trap.step([&] { Txt_Scorta->setText(rs.Fields(QStringLiteral("Scorta")).Value()); });
    if (!destinations)
        return;
    trap.step([&] {
        Adodc8->setRecordSource(QStringLiteral("SELECT ID_DESCRIZIONE_RICAMBI, Destinazione from Tbl_Ricerca Group by "
                                               "Destinazione,ID_DESCRIZIONE_RICAMBI HAVING ID_DESCRIZIONE_RICAMBI=") +
                                key(Txt_ID_DESCRIZIONE_RIC) + QStringLiteral(" ORDER BY Destinazione"));
        Adodc8->Refresh();
    });
}

void Form14::List1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataCombo5->setText(List1->Text()); });
    trap.step([&] { List1->setVisible(false); });
}

void Form14::DataCombo7_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_ID_CAUSA->setText(QString()); });
    const QString text = DataCombo7->Text();
    if (text.size() < 2)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT ID_CAUSA, Causa_Interv From Tbl_Causa_Intervento WHERE Causa_Interv= '") +
                vb::DoubledQuotes(text) + QStringLiteral("';"));
        if (!rs.Eof())
            Txt_ID_CAUSA->setText(rs.Fields(QStringLiteral("ID_CAUSA")).Value());
    });
}

void Form14::Txt_Giac_Change()
{
    // The minimum is reached at a difference of 0; the last piece above it already warns.
    // Both at 0 say nothing, and a change of the minimum alone repaints nothing.
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        const double g = number(Txt_Giac);
        const double s = number(Txt_Scorta);
        if (g == 0 && s == 0)
            return;
        const double d = std::nearbyint(g - s);
        if (d <= 0) {
            Txt_Scorta->setBackColor(vb::colour::Red);
            Txt_Scorta->setForeColor(vb::colour::White);
        } else if (d == 1) {
            Txt_Scorta->setBackColor(vb::colour::Orange);
            Txt_Scorta->setForeColor(vb::colour::White);
        } else {
            Txt_Scorta->setBackColor(vb::colour::White);
            Txt_Scorta->setForeColor(vb::colour::Black);
        }
    });
}

// ---- insert, save, delete --------------------------------------------------------------

void Form14::Cmd_Add_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::InvalidPropertyValue, [] { reports::WriteDateErrorGuide(); });
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { Cmd_Edit->setCaption(Saving); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });
    trap.step([&] { Cmd_Delete->setEnabled(false); });
    trap.step([&] { Cmd_Add->setEnabled(false); });
    trap.step([&] { DTPicker1->setVisible(true); });
}

void Form14::Cmd_Edit_Click()
{
    // No trap: a statement that fails here reaches the top and ends the run, keeping what
    // was already written (a cause created on the way, for one).
    for (vb::DataCombo* c : {DataCombo3, DataCombo2, DataCombo1, DataCombo6, DataCombo4, DataCombo7}) {
        if (c->Text().isEmpty()) {
            vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), mb::Exclamation,
                       QStringLiteral("MANCANZA DATI!!"));
            return;
        }
    }
    if (Txt_ID_DESCRIZIONE_RIC->Text().isEmpty()) {
        // A new part is made on the parts register, never from here.
        vb::MsgBox(
            QStringLiteral("Questo Ricambio non è presente nella Lista !! Inserisci in 'Descrizione Ricambi' [") +
                DataCombo1->Text() + QStringLiteral(": ") + DataCombo5->Text() + QStringLiteral("] "),
            mb::Exclamation, QStringLiteral("RICAMBIO MANCANTE"));
        return;
    }

    auto write = [this](store::Recordset& rs) {
        rs.Fields(QStringLiteral("DATA")) = DTPicker1->Value();
        const std::pair<const char*, QString> fields[] = {
            {"ID_MODELLO", ID_MODELLO->Text()},   {"Macchina", DataCombo3->Text()},
            {"Modello", DataCombo2->Text()},      {"ID_NUM", Txt_ID_NUM->Text()},
            {"Numerazione", DataCombo4->Text()},  {"ID_DESCRIZIONE_RICAMBI", Txt_ID_DESCRIZIONE_RIC->Text()},
            {"Descrizione", DataCombo5->Text()},  {"ID_RICAMBI", Txt_ID_Ricambi->Text()},
            {"Ricambi", DataCombo1->Text()},      {"Quantita", Txt_prelievo->Text()},
            {"Destinazione", DataCombo6->Text()}, {"ID_CAUSA", Txt_ID_CAUSA->Text()},
        };
        for (const auto& [column, value] : fields)
            rs.Fields(QString::fromLatin1(column)) = value;
        rs.UpdateBatch();
    };

    if (Cmd_Edit->Caption() == Saving) {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Ricerca"));
        rs.AddNew();
        txtID->setText(rs.Fields(QStringLiteral("ID")).Value());
        Resolve_Cause();
        write(rs);
        Update_Stock();
        Cmd_Edit->setCaption(Editing);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        Reload_Screen();
        return;
    }

    const QString part = Txt_ID_DESCRIZIONE_RIC->Text();
    if (part.isEmpty() || part == QLatin1String("0")) {
        vb::MsgBox(QStringLiteral("ATTENZIONE!! Questo Ricambio non è presente nella Lista, quindi non può essere "
                                  "Modificato"),
                   mb::Exclamation, QStringLiteral("DATO INESISTENTE"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Stai per eseguire una Modifica, Controlla la 'Giacenza' e la 'Scorta Min', Vuoi "
                                  "Procedere??"),
                   mb::YesNo | mb::Question, QStringLiteral("MODIFICA DATI")) == vb::answer::Yes) {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Ricerca where ID =") + key(txtID));
        Resolve_Cause();
        write(rs);
        Update_Stock();
    }
    Reload_Screen();
}

void Form14::Resolve_Cause()
{
    // Causes grow by themselves: a new text becomes a row here, and nothing deletes one.
    // One character is never looked up: Txt_ID_CAUSA keeps whatever it holds.
    const QString text = DataCombo7->Text();
    if (text.size() < 2)
        return;
    store::Recordset rs;
    rs.Open(QStringLiteral("SELECT ID_CAUSA, Causa_Interv From Tbl_Causa_Intervento WHERE Causa_Interv= '") +
            vb::DoubledQuotes(text) + QStringLiteral("';"));
    if (!rs.Eof())
        return;
    rs.AddNew();
    Txt_ID_CAUSA->setText(rs.Fields(QStringLiteral("ID_CAUSA")).Value());
    rs.Fields(QStringLiteral("Causa_Interv")) = text;
    rs.UpdateBatch();
    Adodc9->Refresh();
}

void Form14::Update_Stock()
{
    // The store moves by what the screen shows, not by what is stored: an edit with the
    // same quantity writes the stock as typed (the correction by hand), a new quantity
    // moves it by the difference from the row last chosen, a new part is never given
    // back the old part's quantity, and a delete gives nothing back.
    Trap trap = Trap::ignoreAll();
    if (Txt_ID_DESCRIZIONE_RIC->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Il ricambio che hai utilizzato non è stato ancora inserito nel Magazzino!!"),
                   mb::Exclamation, QStringLiteral("MANCANZA DATI A MAGAZZINO"));
        return;
    }
    const QString G = Txt_Giac->Text();
    const QString S = Txt_Scorta->Text();
    const QString Q = Txt_prelievo->Text();
    const QString O = Txt_prelievo_OLD->Text();

    // A lookup that fails goes on as if the part were there: each write fails in silence
    // and the box says the store was updated all the same.
    std::optional<store::RowLock> lock(std::in_place);
    store::Recordset rs;
    bool found = true;
    trap.step([&] {
        rs.OpenLocked(QStringLiteral("Select * from Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = ") +
                      key(Txt_ID_DESCRIZIONE_RIC));
        found = !rs.Eof();
    });
    if (found) {
        // What other workstations withdrew since the screen read the stock (none on one
        // workstation, and never on the embedded store).
        double elsewhere = 0;
        if (!store::DataStore::server().isEmpty())
            trap.step(
                [&] { elsewhere = rs.Fields(QStringLiteral("Giacenza")).Value().toDouble() - m_stockRead.toDouble(); });
        if (Q == O) {
            trap.step([&] { rs.Fields(QStringLiteral("Giacenza")) = G; });
        } else {
            // Through a 16-bit whole number, ties to even: past 32767 the conversion
            // fails and the stock is written as 0.
            std::int16_t stock = 0;
            trap.step([&] {
                stock =
                    vb::CInt(Variant(number(Txt_Giac) + number(Txt_prelievo_OLD) - number(Txt_prelievo) + elsewhere))
                        .toInteger();
            });
            trap.step([&] { rs.Fields(QStringLiteral("Giacenza")) = Variant(stock); });
        }
        trap.step([&] { rs.Fields(QStringLiteral("Scorta")) = S; });
        trap.step([&] { rs.UpdateBatch(); });
        trap.step([&] { rs.Close(); });
        lock.reset();
        vb::MsgBox(QStringLiteral("Aggiornato Magazzino Ricambi [") + DataCombo1->Text() + QStringLiteral("] Tipo [") +
                       DataCombo5->Text() + QStringLiteral("] !!!"),
                   mb::Exclamation, QStringLiteral("MAGAZZINO RICAMBI AGGIORNATO"));
        return;
    }

    lock.reset();
    // The part has gone since it was read: it is made again under a new key, its stock
    // the withdrawal from what the screen shows.
    store::Recordset all;
    trap.step([&] { all.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi")); });
    trap.step([&] { all.AddNew(); });
    trap.step([&] { all.Fields(QStringLiteral("Giacenza")) = Variant(number(Txt_Giac) - number(Txt_prelievo)); });
    trap.step([&] {
        all.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) =
            all.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")).Value();
    });
    store::WriteFields(trap, all,
                       {{"Scorta", S},
                        {"ID_Ricambi", Txt_ID_Ricambi->Text()},
                        {"Ricambi", DataCombo1->Text()},
                        {"Descrizione", DataCombo5->Text()}});
    trap.step([&] { all.UpdateBatch(); });
    vb::MsgBox(QStringLiteral("Inserito a Magazzino Ricambi [") + DataCombo1->Text() + QStringLiteral("] Tipo [") +
                   DataCombo5->Text() + QStringLiteral("] !!!"),
               mb::Exclamation, QStringLiteral("MAGAZZINO RICAMBI AGGIORNATO"));
}

void Form14::Reload_Screen()
{
    // Back on the same machine row, without its row change: the interventions and the
    // entry area come back empty.
    shell::ReopenScreen(ScreenName, true, shell::Placement::WorkingScreen, false);
}

void Form14::reopen()
{
    shell::ReopenScreen(ScreenName, false);
}

void Form14::Cmd_Delete_Click()
{
    // The store keeps the withdrawal: nothing is given back, and the picture file stays.
    Trap trap = Trap::ignoreAll();
    if (txtID->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), mb::Exclamation,
                   QStringLiteral("NESSUNA DATO SELEZIONATO"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare il Dato Selezionato?"), mb::YesNo | mb::Question,
                   QStringLiteral("ELIMINAZIONE DATI")) != vb::answer::Yes)
        return;
    trap.step([&] { store::Run(QStringLiteral("Delete * from Tbl_Ricerca WHERE ID  = ") + key(txtID)); });
    trap.step([&] { reopen(); });
}

void Form14::Cmd_Vis_All_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { reopen(); });
    trap.step([&] {
        if (auto* again = shell::screens().formAs<Form14>(ScreenName))
            again->Adodc6->Refresh();
    });
}

void Form14::Cmd_Order_Click()
{
    // Nothing is ordered here: the order screen opens on this part, this screen stays
    // loaded behind it.
    Trap trap = Trap::ignoreAll();
    auto pass = [&](const char* control, const QString& text) {
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form19"), QString::fromLatin1(control)))
                c->setVbProperty(QStringLiteral("Text"), text);
        });
    };
    pass("Txt_ID_Ricambi", Txt_ID_Ricambi->Text());
    pass("Txt_ID_DESCRIZIONE_RIC", Txt_ID_DESCRIZIONE_RIC->Text());
    pass("DataCombo1", DataCombo1->Text());
    pass("DataCombo2", DataCombo5->Text());
    trap.step([] { shell::screens().show(QStringLiteral("Form19")); });
    trap.step([] {
        if (vb::Form* orders = shell::screens().loaded(QStringLiteral("Form19")))
            shell::TitleMainScreen(orders->Caption());
    });
}

// ---- the picture of an intervention ----------------------------------------------------

void Form14::Txt_Images_Change()
{
    // No trap: a picture that will not load stops here and goes to the caller's trap,
    // the last picture staying in place.
    if (Txt_Images->Text().isEmpty()) {
        Image4->setVisible(false);
        Frame11->setVisible(false);
        Cmd_Photo->setVisible(true);
        return;
    }
    Image4->setVisible(true);
    Cmd_Photo->setVisible(false);
    Image4->setPicture(Txt_Percorso->Text());
    Image1->setPicture(Txt_Percorso->Text());
    Image4->Move(Cmd_Photo->Left(), Cmd_Photo->Top());
    vb::CONTROLLO_IMMAGINE(*Image4, Cmd_Photo->Width(), Cmd_Photo->Height());
    vb::CONTROLLO_IMMAGINE(*Image1, Width() - 200, Height() - 200);
}

void Form14::Insert_Intervention_Image()
{
    // A cancel is passed over like any error: the questions come all the same, with the
    // name still in the dialog. The file is referred to where it is, never copied.
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Apri->Filter = QStringLiteral("JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC "
                                      "FILES)|*.Gif");
        Apri->FilterIndex = 1;
        Apri->DefaultExt = QStringLiteral("Jpg");
        Apri->DialogTitle = QStringLiteral("Selezionare il file da aprire");
        Apri->Flags = vb::cdl::FileMustExist;
        Apri->FileName = Txt_Percorso->Text();
        Apri->InitDir = vb::AppPath() + QStringLiteral("\\");
        Apri->CancelError = true;
    });
    trap.step([&] { Apri->ShowOpen(); });
    trap.step([&] { Txt_Percorso->setText(Apri->FileName); });
    const QString name = Apri->FileTitle;
    trap.step([&] { Image4->setPicture(Txt_Percorso->Text()); });
    trap.step([&] { Image1->setPicture(Txt_Percorso->Text()); });
    trap.step([&] {
        vb::CONTROLLO_IMMAGINE(*Image4, Cmd_Photo->Width(), Cmd_Photo->Height());
        vb::CONTROLLO_IMMAGINE(*Image1, Width() - 200, Height() - 200);
        Image4->Move(Cmd_Photo->Left() + (Cmd_Photo->Width() - Image4->Width()) / 2,
                     Cmd_Photo->Top() + (Cmd_Photo->Height() - Image4->Height()) / 2);
    });
    const QString quoted = QStringLiteral("'") + name + QStringLiteral("'");
    if (vb::MsgBox(QStringLiteral("Vuoi salvare l'Immagine ") + quoted + QStringLiteral(" ?"), mb::YesNo | mb::Question,
                   QStringLiteral("SALVA IMMAGINE") + quoted) == vb::answer::Yes) {
        const QString id = TXT_ID_IMG->Text().isEmpty() ? QStringLiteral("0") : TXT_ID_IMG->Text();
        QString row = id;
        trap.step([&] { row = vb::KeyText(id); });
        // Yes adds and No replaces in the wording; a row has one picture, so both replace.
        vb::MsgBox(QStringLiteral("SI per Aggiungere l'Immagine, NO per sostituire quella esistente") + quoted +
                       QStringLiteral(" ?"),
                   mb::YesNo | mb::Question, QStringLiteral("VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?") + quoted);
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Ricerca WHERE ID=") + row); });
        store::WriteFields(trap, rs, {{"Images", name}, {"Percorso", Txt_Percorso->Text()}});
        trap.step([&] { Image4->setPicture(Txt_Percorso->Text()); });
        trap.step([&] { rs.UpdateBatch(); });
    }
    // The user opens the screen again from the menu.
    trap.step([] { shell::screens().unload(ScreenName); });
}

// ---- searches --------------------------------------------------------------------------

void Form14::Search_KeyUp(vb::TextBox* field)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Fields(); });
    for (vb::TextBox* other : {Txt_Search_Mod_Macc, Txt_Search_Ric, Txt_Search_Desc, Txt_Search_Destin})
        if (other != field)
            trap.step([&] { other->setText(QString()); });
    const QString text = vb::DoubledQuotes(field->Text());

    QString statement;
    if (field == Txt_Search_Ric || field == Txt_Search_Desc) {
        // An emptied part or description search leaves the list as it stands.
        if (text.isEmpty())
            return;
        trap.step([&] { Drop_Tbl_Search(); });
        trap.step([&] { Build_Tbl_Search(); });
        statement = QStringLiteral(
            "SELECT Tbl_Search.ID_MODELLO, Tbl_Search.Modello, Tbl_Search.Numerazione, Tbl_Search.Stato, "
            "Tbl_Search.ID_NUM From Tbl_Search GROUP BY Tbl_Search.ID_MODELLO, Tbl_Search.Modello, "
            "Tbl_Search.Numerazione, Tbl_Search.Stato, Tbl_Search.ID_NUM ORDER BY Tbl_Search.Modello, "
            "Val(Tbl_Search.Numerazione);");
    } else if (field == Txt_Search_Destin) {
        statement =
            QStringLiteral("SELECT Tbl_Ricerca.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                           "Tbl_Macchina.Stato, Tbl_Ricerca.ID_NUM FROM Tbl_Ricerca INNER JOIN Tbl_Macchina ON "
                           "Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Ricerca.ID_MODELLO, "
                           "Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, "
                           "Val([Tbl_Ricerca].[Numerazione]), Tbl_Ricerca.Destinazione, Tbl_Ricerca.ID_NUM HAVING "
                           "(((Tbl_Ricerca.Destinazione) Like '%") +
            text + QStringLiteral("%')) ORDER BY Val([Tbl_Ricerca].[Numerazione]);");
    } else {
        statement =
            QStringLiteral("SELECT Tbl_Ricerca.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                           "Tbl_Macchina.Stato, Tbl_Ricerca.ID_NUM FROM Tbl_Ricerca INNER JOIN Tbl_Macchina ON "
                           "Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO WHERE (((Tbl_Macchina.Modello) Like '") +
            text +
            QStringLiteral("%')) GROUP BY Tbl_Ricerca.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                           "Tbl_Macchina.Stato, Val([Tbl_Ricerca].[Numerazione]), Tbl_Ricerca.ID_NUM ORDER BY "
                           "Val([Tbl_Ricerca].[Numerazione]);");
    }
    trap.step([&] {
        Adodc6->setRecordSource(statement);
        Adodc6->Refresh();
    });
    trap.step([&] { DataGrid1->setDataSource(Adodc6); });
    trap.step([&] { Set_Search_Grid_Columns(); });
    trap.step([&] { machineCount(Label6, Adodc6); });
}

void Form14::Drop_Tbl_Search()
{
    store::Run(QStringLiteral("Drop TABLE Tbl_Search"));
}

void Form14::Build_Tbl_Search()
{
    if (!Txt_Search_Desc->Text().isEmpty()) {
        store::Run(
            QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                           "Tbl_Macchina.Stato, Tbl_Ricerca.Descrizione, Tbl_Ricerca.ID_NUM INTO Tbl_Search FROM "
                           "Tbl_Ricerca INNER JOIN Tbl_Macchina ON Tbl_Ricerca.ID_MODELLO = "
                           "Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello, "
                           "Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, Tbl_Ricerca.Descrizione, "
                           "Tbl_Ricerca.ID_NUM HAVING (((Tbl_Ricerca.Descrizione) Like '%") +
            vb::DoubledQuotes(Txt_Search_Desc->Text()) +
            QStringLiteral("%'))ORDER BY Tbl_Macchina.Modello, Val(Tbl_Ricerca.Numerazione);"));
        return;
    }
    store::Run(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                              "Tbl_Macchina.Stato, Tbl_Ricerca.Ricambi, Tbl_Ricerca.ID_NUM INTO Tbl_Search FROM "
                              "Tbl_Ricerca INNER JOIN Tbl_Macchina ON Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO "
                              "GROUP BY Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello, Tbl_Ricerca.Numerazione, "
                              "Tbl_Macchina.Stato, Tbl_Ricerca.Ricambi, Tbl_Ricerca.ID_NUM HAVING "
                              "(((Tbl_Ricerca.Ricambi) Like '%") +
               vb::DoubledQuotes(Txt_Search_Ric->Text()) +
               QStringLiteral("%'))ORDER BY Tbl_Macchina.Modello, Val(Tbl_Ricerca.Numerazione);"));
}

// ---- the consumption panel and the prints ------------------------------------------------

void Form14::Show_Part_Consumption()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Frame10->setVisible(true); });
    trap.step([&] { Frame10->raise(); });
    trap.step([&] {
        Adodc10->setRecordSource(
            QStringLiteral("SELECT Year([Tbl_Ricerca]![Data]) AS Anno, Tbl_Ricerca.ID_RICAMBI, "
                           "Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, "
                           "Sum(Tbl_Ricerca.Quantita) AS SommaDiQuantita From Tbl_Ricerca GROUP BY "
                           "Year([Tbl_Ricerca]![Data]), Tbl_Ricerca.ID_RICAMBI, Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, "
                           "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione Having "
                           "(((Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI) = ") +
            key(Txt_ID_DESCRIZIONE_RIC) + QStringLiteral("))ORDER BY Year([Tbl_Ricerca]![Data]) DESC;"));
        Adodc10->Refresh();
    });
    vb::setColumns(trap, DataGrid3,
                   {{QStringLiteral("Anno"), 600, true},
                    {QStringLiteral("ID_RICAMBI"), 0, true},
                    {QStringLiteral("ID_DESCRIZIONE"), 0, true},
                    {QStringLiteral("Ricambi"), 1500, true},
                    {QStringLiteral("Descrizione"), 1500, true},
                    {QStringLiteral("Qtà"), 600, true}});
    trap.step([&] {
        Frame10->setCaption(QStringLiteral("Consumi relativi a [") +
                            Adodc10->value(0, Adodc10->columnIndex(QStringLiteral("Descrizione"))).toString() +
                            QStringLiteral("]"));
    });
}

void Form14::Cmd_Close_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::UnloadReport(QStringLiteral("DataReport16")); });
    trap.step([&] { Frame10->setVisible(false); });
}

void Form14::Cmd_History_GO_Click()
{
    // Interventions and the last execution of each maintenance, month by month. The
    // months relate without their year: each March shows the Marches of every year.
    Trap trap = Trap::ignoreAll();
    QString id;
    trap.step([&] { id = key(Txt_ID_NUM); });
    trap.step([] { store::Run(QStringLiteral("Drop TABLE Tbl_History_Macchina")); });
    trap.step([&] {
        store::Run(QStringLiteral("SELECT Tbl_Ricerca.Data, Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Macchina, "
                                  "Tbl_Ricerca.Modello, Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Numerazione, '' AS "
                                  "Manutenzione_Tipo, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Ricambi, "
                                  "Tbl_Ricerca.Destinazione INTO Tbl_History_Macchina From Tbl_Ricerca WHERE "
                                  "(((Tbl_Ricerca.ID_NUM)=") +
                   id + QStringLiteral("));"));
    });
    trap.step([&] {
        store::Run(QStringLiteral("INSERT INTO Tbl_History_Macchina (Data, ID_MODELLO, Macchina, Modello, ID_NUM, "
                                  "Numerazione, Manutenzione_Tipo)  SELECT Tbl_Maintenance.Ultima, "
                                  "Tbl_Maintenance.ID_MODELLO, Tbl_Maintenance.Macchina, Tbl_Maintenance.Modello, "
                                  "Tbl_Maintenance.ID_NUM, Tbl_Maintenance.Numerazione, "
                                  "Tbl_Maintenance.Manutenzione_Tipo From Tbl_Maintenance WHERE "
                                  "Tbl_Maintenance.ID_NUM = ") +
                   id);
    });
    const QString statement =
        QStringLiteral(
            "SHAPE {SELECT Year([Tbl_History_Macchina]![Data]) AS Anno, Month([Tbl_History_Macchina]![Data]) AS Mese, "
            "Tbl_History_Macchina.Macchina, Tbl_History_Macchina.Modello, Tbl_History_Macchina.ID_NUM, "
            "Tbl_History_Macchina.Numerazione, Count(Tbl_History_Macchina.Data) AS ConteggioDiData From "
            "Tbl_History_Macchina GROUP BY Year([Tbl_History_Macchina]![Data]), "
            "Month([Tbl_History_Macchina]![Data]), Tbl_History_Macchina.Macchina, Tbl_History_Macchina.Modello, "
            "Tbl_History_Macchina.ID_NUM, Tbl_History_Macchina.Numerazione Having (((Tbl_History_Macchina.ID_NUM) = ") +
        id +
        QStringLiteral(
            ")) ORDER BY Year([Tbl_History_Macchina]![Data]) DESC , Month([Tbl_History_Macchina]![Data]) DESC , "
            "Tbl_History_Macchina.Macchina, Tbl_History_Macchina.Modello;} APPEND ({SELECT "
            "Month([Tbl_History_Macchina].[Data]) AS Mese, Year([Tbl_History_Macchina].[Data]) AS Anno, "
            "Tbl_History_Macchina.Data, IIf([Manutenzione_Tipo] Is Null Or [Manutenzione_Tipo]='','- - - "
            "',[Manutenzione_Tipo]) AS Manutenzione, IIf([Ricambi] Is Null Or [Ricambi]='','- - - ',[Ricambi]) AS "
            "Rica, IIf([Descrizione] Is Null Or [Descrizione]='','- - - ',[Descrizione]) AS Descri, "
            "IIf([Destinazione] Is Null Or [Destinazione]='','- - - ',[Destinazione]) AS Destina, "
            "Tbl_History_Macchina.ID_NUM From Tbl_History_Macchina GROUP BY Tbl_History_Macchina.Data, "
            "IIf([Manutenzione_Tipo] Is Null Or [Manutenzione_Tipo]='','- - - ',[Manutenzione_Tipo]), IIf([Ricambi] "
            "Is Null Or [Ricambi]='','- - - ',[Ricambi]), IIf([Descrizione] Is Null Or [Descrizione]='','- - - "
            "',[Descrizione]), IIf([Destinazione] Is Null Or [Destinazione]='','- - - ',[Destinazione]), "
            "Tbl_History_Macchina.ID_NUM Having (((Tbl_History_Macchina.ID_NUM) = ") +
        id +
        QStringLiteral(
            ")) ORDER BY Month([Tbl_History_Macchina].[Data]) DESC , Year([Tbl_History_Macchina].[Data]) DESC , "
            "Tbl_History_Macchina.Data DESC , IIf([Ricambi] Is Null Or [Ricambi]='','- - - ',[Ricambi]), "
            "IIf([Descrizione] Is Null Or [Descrizione]='','- - - ',[Descrizione]);} RELATE Mese to Mese) as Dati");
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::Detail, QStringLiteral("TextBox13"), QStringLiteral("Manutenzione"));
        layout.setDataField(reports::Section::GroupFooter, QStringLiteral("TextBox10"),
                            QStringLiteral("ConteggioDiData"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport14"), statement, options); });
}

void Form14::Cmd_Print_List_Click()
{
    Trap trap = Trap::ignoreAll();
    QString id = Txt_ID_NUM->Text();
    if (id.isEmpty() || id == QLatin1String("0")) {
        vb::MsgBox(QStringLiteral("Non hai selezionato nessuna Macchina!"), mb::Information,
                   QStringLiteral("MACCHINA NON SELEZIONATA!"));
        return;
    }
    trap.step([&] { id = key(Txt_ID_NUM); });
    // A model search alone prints every intervention of the machine.
    const QString mode = searchMode();
    QString having;
    if (mode == QLatin1String("Ricambi"))
        having = QStringLiteral("HAVING (((Tbl_Ricerca.Ricambi) Like '%") + vb::DoubledQuotes(Txt_Search_Ric->Text()) +
                 QStringLiteral("%')) ");
    else if (mode == QLatin1String("Descrizione"))
        having = QStringLiteral("HAVING (((Tbl_Ricerca.Descrizione) Like '%") +
                 vb::DoubledQuotes(Txt_Search_Desc->Text()) + QStringLiteral("%')) ");
    else if (mode == QLatin1String("Destinazione"))
        having = QStringLiteral("HAVING (((Tbl_Ricerca.Destinazione) Like '%") +
                 vb::DoubledQuotes(Txt_Search_Destin->Text()) + QStringLiteral("%')) ");
    const QString statement =
        QStringLiteral("SHAPE {SELECT Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                       "Tbl_Ricerca.Numerazione From Tbl_Ricerca GROUP BY Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Macchina, "
                       "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione Having (((Tbl_Ricerca.ID_NUM) = ") +
        id +
        QStringLiteral(
            ")) ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello; } APPEND ({SELECT Tbl_Ricerca.ID_NUM, "
            "Tbl_Ricerca.Data, Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione, "
            "Tbl_Ricerca.Quantita From Tbl_Ricerca GROUP BY Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Data, "
            "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione, Tbl_Ricerca.Quantita ") +
        having +
        QStringLiteral("ORDER BY Tbl_Ricerca.Data DESC , Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione;} RELATE ID_NUM "
                       "to ID_NUM) as Dati");
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Macchina"));
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox9"), QStringLiteral("Modello"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport9"), statement, options); });
}

void Form14::Cmd_Print_All_Click()
{
    Trap trap = Trap::ignoreAll();
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Macchina"));
    };
    trap.step([&] {
        reports::ShowReport(
            QStringLiteral("DataReport3"),
            QStringLiteral("SHAPE {SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello From Tbl_Ricerca GROUP BY "
                           "Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello ORDER BY Tbl_Ricerca.Macchina, "
                           "Tbl_Ricerca.Modello;} APPEND ({SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                           "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione From Tbl_Ricerca "
                           "GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Ricambi, "
                           "Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione ORDER BY Tbl_Ricerca.Ricambi, "
                           "Tbl_Ricerca.Descrizione;} RELATE MODELLO to MODELLO) as Dati"),
            options);
    });
}

void Form14::Cmd_Print_Consumi_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        reports::ShowReport(
            QStringLiteral("DataReport15"),
            QStringLiteral(
                "SHAPE {SELECT Year([Tbl_Ricerca]![Data]) AS Anno, Count(Tbl_Ricerca.Descrizione) AS "
                "ConteggioDiDescrizione, Sum(Tbl_Ricerca.Quantita) AS SommaDiQuantita From Tbl_Ricerca GROUP BY "
                "Year([Tbl_Ricerca]![Data]) ORDER BY Year([Tbl_Ricerca]![Data]) DESC , Sum(Tbl_Ricerca.Quantita) "
                "DESC;} APPEND ({SELECT Year([Tbl_Ricerca]![Data]) AS Anno, Tbl_Ricerca.Ricambi, "
                "Tbl_Ricerca.Descrizione, Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Sum(Tbl_Ricerca.Quantita) AS "
                "SommaDiQuantita From Tbl_Ricerca GROUP BY Year([Tbl_Ricerca]![Data]), Tbl_Ricerca.Ricambi, "
                "Tbl_Ricerca.Descrizione, Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI ORDER BY Year([Tbl_Ricerca]![Data]) DESC "
                ", Tbl_Ricerca.Ricambi, Sum(Tbl_Ricerca.Quantita) DESC;} RELATE Anno to Anno) as Dati"));
    });
}

void Form14::Cmd_Print_This_Click()
{
    Trap trap = Trap::ignoreAll();
    QString id;
    trap.step([&] { id = key(Txt_ID_DESCRIZIONE_RIC); });
    trap.step([&] {
        reports::ShowReport(
            QStringLiteral("DataReport16"),
            QStringLiteral("SHAPE {SELECT Year([Tbl_Ricerca]![Data]) AS Anno, Tbl_Ricerca.Ricambi, "
                           "Tbl_Ricerca.Descrizione, Sum(Tbl_Ricerca.Quantita) AS SommaDiQuantita From Tbl_Ricerca "
                           "GROUP BY Year([Tbl_Ricerca]![Data]), Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, "
                           "Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI Having (((Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI) = ") +
                id +
                QStringLiteral(
                    ")) ORDER BY Year([Tbl_Ricerca]![Data]) DESC , Sum(Tbl_Ricerca.Quantita) DESC;} APPEND ({SELECT "
                    "Year([Tbl_Ricerca]![Data]) AS Anno, Month([Tbl_Ricerca]![Data]) AS Mese, Tbl_Ricerca.Ricambi, "
                    "Tbl_Ricerca.Descrizione, Sum(Tbl_Ricerca.Quantita) AS SommaDiQuantita, Tbl_Ricerca.Modello, "
                    "Tbl_Ricerca.Destinazione, Tbl_Ricerca.Numerazione From Tbl_Ricerca GROUP BY "
                    "Year([Tbl_Ricerca]![Data]), Month([Tbl_Ricerca]![Data]), Tbl_Ricerca.Ricambi, "
                    "Tbl_Ricerca.Descrizione, Tbl_Ricerca.Modello, Tbl_Ricerca.Destinazione, "
                    "Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI, Tbl_Ricerca.Numerazione Having "
                    "(((Tbl_Ricerca.ID_DESCRIZIONE_RICAMBI) = ") +
                id +
                QStringLiteral("))ORDER BY Year([Tbl_Ricerca]![Data]) DESC , Month([Tbl_Ricerca]![Data]) DESC , "
                               "Tbl_Ricerca.Ricambi, Sum(Tbl_Ricerca.Quantita) DESC;} RELATE Anno to Anno) as Dati"));
    });
}

VELMORA_SCREEN(Form14);

} // namespace spares
