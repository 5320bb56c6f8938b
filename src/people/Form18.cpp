#include "people/Form18.h"

#include "controls/ScreenKit.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace people {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;

namespace {

const QString ScreenName = QStringLiteral("Form18");
using vb::caption::Edit;
using vb::caption::Save;

// The screen in twips: the list with the searches beside it on top, the operator on the
// left below, the last job and the commands on the right. The whole of it fits the main
// screen's working area of an 800 x 600 display.
constexpr int ScreenWidth = vb::WorkAreaWidth;
constexpr int ScreenHeight = vb::WorkAreaHeight;
constexpr int FieldsTop = 2760;
constexpr int RowStep = 390;
constexpr int RowHeight = 315;
constexpr int LabelWidth = 1950;
constexpr int FieldLeft = 2130;
constexpr int FieldWidth = 2400;
constexpr int PickerWidth = 1410;
constexpr int RightLeft = 4680;
constexpr int RightWidth = 4425;
constexpr int ButtonHeight = 375;
constexpr int Third = (RightWidth - 150) / 3;

constexpr int rowTop(int row)
{
    return FieldsTop + row * RowStep;
}
/// A row of the last job's frame.
constexpr int jobTop(int row)
{
    return 300 + row * 345;
}

} // namespace

Variant YearsBetween(const Variant& later, const Variant& earlier)
{
    return Variant(vb::CDbl(vb::Right(later, 4)).toDouble() - vb::CDbl(vb::Right(earlier, 4)).toDouble());
}

bool IsTenCharacterDate(const Variant& value)
{
    const Variant length = vb::Len(value);
    return !length.isNull() && length.toLong() == 10;
}

Form18::Form18(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("MANUTENTORI"))
{
    buildControls();
}

void Form18::buildControls()
{
    Move(0, 0, ScreenWidth, ScreenHeight);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    DataGrid1 = kit.grid(this, "DataGrid1", Adodc2, "Adodc2", 120, 120, 6480, 2280);
    Label1 = kit.label(this, "Label1", QStringLiteral("0peratori Presenti:"), 120, 2430, 4000);
    Txt_Posizione = kit.hidden("Txt_Posizione");
    TxtID_OPERATORE = kit.hidden("TxtID_OPERATORE");

    // The searches beside the list.
    Frame4 = kit.frame(this, "Frame4", QStringLiteral("CERCA OPERATORE"), 6720, 60, 2385, 2340);
    Frame1 = kit.frame(Frame4, "Frame1", QStringLiteral("Cerca pe Operatore"), 120, 300, 2145, 840);
    Text1 = kit.field(Frame1, "Text1", 120, 360, 1905);
    Frame2 = kit.frame(Frame4, "Frame2", QStringLiteral("Cerca per Qualifica"), 120, 1260, 2145, 840);
    Text2 = kit.field(Frame2, "Text2", 120, 360, 1905);

    // The operator, one row per field.
    Label2 = kit.label(this, "Label2", QStringLiteral("Operatore:"), 120, rowTop(0) + 30, LabelWidth);
    txtOperatore = kit.field(this, "txtOperatore", FieldLeft, rowTop(0), FieldWidth);
    Label3 = kit.label(this, "Label3", QStringLiteral("Qualifica:"), 120, rowTop(1) + 30, LabelWidth);
    Txt_Qualifica = kit.field(this, "Txt_Qualifica", FieldLeft, rowTop(1), FieldWidth);
    Label4 = kit.label(this, "Label4", QStringLiteral("Tipo Operatore:"), 120, rowTop(2) + 30, LabelWidth);
    Combo1 = new vb::ComboBox(this, QStringLiteral("Combo1"));
    Combo1->AddItem(QStringLiteral("Interno"));
    Combo1->AddItem(QStringLiteral("Esterno"));
    Combo1->Move(FieldLeft, rowTop(2), PickerWidth, RowHeight);
    Label5 = kit.label(this, "Label5", QStringLiteral("Data di Nascita:"), 120, rowTop(3) + 30, LabelWidth);
    DTPicker2 = kit.datePicker(this, "DTPicker2", FieldLeft, rowTop(3), PickerWidth);
    Txt_Eta = kit.field(this, "Txt_Eta", FieldLeft + PickerWidth + 90, rowTop(3), FieldWidth - PickerWidth - 90);
    Txt_Eta->setLocked(true);
    Label6 = kit.label(this, "Label6", QStringLiteral("Data Inizio Rapporto:"), 120, rowTop(4) + 30, LabelWidth);
    DTPicker1 = kit.datePicker(this, "DTPicker1", FieldLeft, rowTop(4), PickerWidth);
    Label7 = kit.label(this, "Label7", QStringLiteral("Data Fine Rapporto:"), 120, rowTop(5) + 30, LabelWidth);
    DTPicker4 = kit.datePicker(this, "DTPicker4", FieldLeft, rowTop(5), PickerWidth);
    Txt_Durata = kit.label(this, "Txt_Durata", QStringLiteral("Durata Rapporto:"), 120, rowTop(6) + 30, LabelWidth);
    Txt_Rapporto = kit.field(this, "Txt_Rapporto", FieldLeft, rowTop(6), FieldWidth - PickerWidth - 90);
    Txt_Rapporto->setLocked(true);
    Cmd_Dimissioni = kit.button(this, "Cmd_Dimissioni", QStringLiteral("Dimissioni"),
                                FieldLeft + FieldWidth - PickerWidth, rowTop(6) - 30, PickerWidth);

    // The last job, on the right.
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("Ultimo Lavoro Eseguito"), RightLeft, FieldsTop - 60, RightWidth,
                       1740);
    Label8 = kit.label(Frame3, "Label8", QStringLiteral("In Data:"), 120, jobTop(0) + 30, 1350);
    DTPicker3 = kit.datePicker(Frame3, "DTPicker3", 1500, jobTop(0), PickerWidth);
    DTPicker3->setVisible(false); // until an operator with a dated job is selected
    Label9 = kit.label(Frame3, "Label9", QStringLiteral("Manutenzione:"), 120, jobTop(1) + 30, 1350);
    Txt_Manutenzione = kit.field(Frame3, "Txt_Manutenzione", 1500, jobTop(1), RightWidth - 1620);
    Txt_Manutenzione->setLocked(true);
    Label10 = kit.label(Frame3, "Label10", QStringLiteral("Macchina:"), 120, jobTop(2) + 30, 1350);
    Txt_Modello = kit.field(Frame3, "Txt_Modello", 1500, jobTop(2), RightWidth - 1620);
    Txt_Modello->setLocked(true);
    Label11 = kit.label(Frame3, "Label11", QStringLiteral("Numero:"), 120, jobTop(3) + 30, 1350);
    Txt_Numero = kit.field(Frame3, "Txt_Numero", 1500, jobTop(3), RightWidth - 1620);
    Txt_Numero->setLocked(true);

    // The commands under the last job.
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("INSERISCI"), RightLeft, 4560, Third);
    Cmd_Edit = kit.button(this, "Cmd_Edit", Edit, RightLeft + Third + 75, 4560, Third);
    Cmd_Edit->setEnabled(false); // a row selection or INSERISCI enables it
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("ELIMINA"), RightLeft + 2 * (Third + 75), 4560, Third);
    Cmd_Vis_All = kit.button(this, "Cmd_Vis_All", QStringLiteral("VISUALIZZA TUTTO"), RightLeft, 5010, 1950);
    Cmd_Print = kit.button(this, "Cmd_Print", QStringLiteral("Print Lista Operatori"), RightLeft + 2025, 5010,
                           RightWidth - 2025);
    Cmd_Info = kit.button(this, "Cmd_Info", QStringLiteral("Info"), RightLeft, 5460, Third);

    DataGrid1->Click = [this] { DataGrid1_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    Text1->KeyUp = [this] { Text1_KeyUp(); };
    Text2->KeyUp = [this] { Text2_KeyUp(); };
    // A click in one search empties the other; leaving a search empties it.
    Text1->Click = [this] { Text2->setText(QString()); };
    Text2->Click = [this] { Text1->setText(QString()); };
    Text1->LostFocus = [this] { Text1->setText(QString()); };
    Text2->LostFocus = [this] { Text2->setText(QString()); };
    Cmd_Dimissioni->Click = [this] { Cmd_Dimissioni_Click(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Info->Click = [this] { Cmd_Info_Click(); };
}

// ---- load and list ------------------------------------------------------------------

void Form18::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] { DTPicker1->setValue(vb::Today()); });
    trap.step([&] { DTPicker2->setValue(vb::Today()); });
    trap.step([&] { DTPicker4->setValue(vb::Today()); });
    trap.step([&] { DTPicker4->setVisible(false); });
    trap.step([&] { Load_All_Operators(); });
}

void Form18::Load_All_Operators()
{
    Adodc2->setRecordSource(QStringLiteral("SELECT * From Tbl_Operatore Order by Operatore"));
    Show_Operators();
}

void Form18::Show_Operators()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Adodc2->Refresh(); });
    trap.step([&] { DataGrid1->setDataSource(Adodc2); });
    // By position in the table's order: Tipo (4) and Fine_Rapp (6) are in the list but
    // take no room; the key takes none either.
    static const int widths[] = {0, 1800, 1800, 1100, 0, 1150, 0};
    static const char* const captions[] = {"ID_OPERATORE", "Operatore",  "Qualifica", "Nascita",
                                           nullptr,        "Assunzione", nullptr};
    for (int i = 0; i < 7; ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid1->Columns(i);
            c.setWidth(widths[i]);
            c.setLocked(true);
            if (captions[i])
                c.setCaption(QString::fromLatin1(captions[i]));
        });
    }
    // The first letter is a digit zero, as the users have always seen it.
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("0peratori Presenti: ") + QString::number(Adodc2->RecordCount())); });
}

void Form18::Clear_Operator_Fields()
{
    TxtID_OPERATORE->setText(QString());
    txtOperatore->setText(QString());
    Txt_Qualifica->setText(QString());
    Combo1->setText(QStringLiteral("Interno"));
    DTPicker1->setValue(vb::Today());
    DTPicker2->setValue(vb::Today());
    DTPicker4->setValue(vb::Today());
}

// ---- searches -----------------------------------------------------------------------

void Form18::search(vb::TextBox* box, const QString& before)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Operator_Fields(); });
    if (box->Text().isEmpty())
        return;
    // The text goes into the statement as typed: a quote in it leaves the list empty.
    trap.step([&] { Adodc2->setRecordSource(before + box->Text() + QStringLiteral("%' Order by Operatore")); });
    trap.step([&] { Show_Operators(); });
}

void Form18::Text1_KeyUp()
{
    search(Text1, QStringLiteral("SELECT * From Tbl_Operatore Where Operatore Like '"));
}

void Form18::Text2_KeyUp()
{
    search(Text2, QStringLiteral("SELECT * From Tbl_Operatore Where Qualifica Like '"));
}

// ---- the selection of a row ---------------------------------------------------------

void Form18::DataGrid1_Click()
{
    Trap trap = Trap::ignoreAll();
    // A click on the list leaves an insert: back to editing, and the edit waits for an
    // operator to be selected (the row change that came with the click has put its key).
    trap.step([&] {
        Cmd_Edit->setCaption(Edit);
        Cmd_Edit->setEnabled(!TxtID_OPERATORE->Text().isEmpty());
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
    });
}

void Form18::DataGrid1_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue, err::GridDataAccess}, Trap::ShowBox};
    trap.step([&] { Clear_Operator_Fields(); });
    trap.step([&] { Cmd_Edit->setEnabled(true); });

    std::int16_t id = 0;
    trap.step([&] {
        if (DataGrid1->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        id = DataGrid1->Columns(0).Value().toInteger();
    });
    store::Recordset rs;
    trap.step(
        [&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Operatore WHERE ID_OPERATORE= ") + QString::number(id)); });
    bool found = false;
    trap.step([&] { found = !rs.Eof(); });
    if (!found || trap.ended())
        return;
    trap.step([&] { TxtID_OPERATORE->setText(QString::number(id)); });

    auto value = [&](const char* column) {
        Variant v;
        trap.step([&] { v = rs.Fields(QString::fromLatin1(column)).Value(); });
        return v;
    };
    const Variant name = value("Operatore");
    const Variant qualification = value("Qualifica");
    const Variant born = value("Data_Nascita");
    const Variant started = value("Inizio_Rapp");
    const Variant ended = value("Fine_Rapp");
    const Variant type = value("Tipo");

    trap.step([&] { txtOperatore->setText(name.isNull() ? QString() : name.toString()); });
    trap.step([&] { Txt_Qualifica->setText(qualification.isNull() ? QString() : qualification.toString()); });
    trap.step([&] { DTPicker2->setValue(IsTenCharacterDate(born) ? born : vb::Today()); });
    trap.step([&] { DTPicker1->setValue(IsTenCharacterDate(started) ? started : vb::Today()); });

    if (IsTenCharacterDate(ended)) {
        trap.step([&] { DTPicker4->setValue(ended); });
        trap.step([&] { DTPicker4->setVisible(true); });
    } else {
        trap.step([&] { DTPicker4->setVisible(false); });
        // Calendar years of service so far; the count below replaces it in any case.
        trap.step([&] {
            Txt_Rapporto->setText(
                Variant(vb::Clock::today().year() - vb::CDbl(vb::Format(started, QStringLiteral("yyyy"))).toDouble()));
        });
    }
    trap.step([&] { Combo1->setText(type); });

    // The last job: the newest execution that names this operator.
    store::Recordset job;
    trap.step([&] {
        job.Open(QStringLiteral("SELECT Tbl_Operatore.ID_OPERATORE, Tbl_Maintenance.Ultima, "
                                "Tbl_Maintenance.Manutenzione_Tipo, Tbl_Maintenance.Modello, "
                                "Tbl_Maintenance.Numerazione FROM Tbl_Maintenance INNER JOIN Tbl_Operatore ON "
                                "Tbl_Maintenance.ID_OPERATORE = Tbl_Operatore.ID_OPERATORE Where "
                                "Tbl_Operatore.ID_OPERATORE = ") +
                 QString::number(id) + QStringLiteral(" Order by Ultima desc"));
    });
    bool hasJob = false;
    trap.step([&] { hasJob = !job.Eof(); });
    // The frame never keeps what it showed of the operator before: an empty column, or no
    // job at all, leaves its field empty and the date hidden.
    trap.step([&] {
        Txt_Manutenzione->setText(QString());
        Txt_Modello->setText(QString());
        Txt_Numero->setText(QString());
    });
    Variant last;
    if (hasJob)
        trap.step([&] { last = job.Fields(QStringLiteral("Ultima")).Value(); });
    if (IsTenCharacterDate(last)) {
        trap.step([&] { DTPicker3->setValue(last); });
        trap.step([&] { DTPicker3->setVisible(true); });
    } else {
        trap.step([&] { DTPicker3->setVisible(false); });
    }
    if (hasJob) {
        trap.step([&] { Txt_Manutenzione->setText(job.Fields(QStringLiteral("Manutenzione_Tipo")).Value()); });
        trap.step([&] { Txt_Modello->setText(job.Fields(QStringLiteral("Modello")).Value()); });
        trap.step([&] { Txt_Numero->setText(job.Fields(QStringLiteral("Numerazione")).Value()); });
    }

    // Age and service count years only: someone born on 31 December is a year older from
    // 1 January on. An ended employment stops counting at the end year.
    trap.step(
        [&] { Txt_Eta->setText(IsTenCharacterDate(born) ? YearsBetween(vb::Today(), born) : Variant(QString())); });
    trap.step([&] {
        Txt_Rapporto->setText(IsTenCharacterDate(started) ? YearsBetween(vb::Today(), started) : Variant(QString()));
    });
    if (IsTenCharacterDate(ended))
        trap.step([&] { Txt_Rapporto->setText(YearsBetween(ended, started)); });

    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid1->Row())); });
}

void Form18::Cmd_Dimissioni_Click()
{
    Trap trap = Trap::ignoreAll();
    if (!DTPicker4->isHidden()) {
        trap.step([&] { DTPicker4->setVisible(false); });
        return;
    }
    trap.step([&] { DTPicker4->setVisible(true); });
    trap.step([&] { DTPicker4->setValue(vb::Today()); });
}

// ---- insert, save, delete -------------------------------------------------------------

void Form18::Cmd_Add_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::InvalidPropertyValue, [] { reports::WriteDateErrorGuide(); });
    trap.step([&] { Clear_Operator_Fields(); });
    trap.step([&] {
        Cmd_Edit->setCaption(Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form18::Cmd_Edit_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::InvalidPropertyValue, [] { reports::WriteDateErrorGuide(); });

    if (txtOperatore->Text().isEmpty() || Txt_Qualifica->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), vb::mb::Exclamation,
                   QStringLiteral("MANCANZA DATI!!"));
        return;
    }

    // The six columns besides the key, from the fields. A running employment is 0.
    auto endOfEmployment = [&] { return DTPicker4->isHidden() ? Variant(0) : DTPicker4->Value(); };
    auto writeOperator = [&](store::Recordset& rs) {
        store::WriteFields(trap, rs,
                           {{"Operatore", txtOperatore->Text()},
                            {"Qualifica", Txt_Qualifica->Text()},
                            {"Data_Nascita", DTPicker2->Value()},
                            {"Inizio_Rapp", DTPicker1->Value()},
                            {"Fine_Rapp", endOfEmployment()},
                            {"Tipo", Combo1->Text()}});
    };

    if (Cmd_Edit->Caption() == Save) {
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Operatore")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { TxtID_OPERATORE->setText(rs.Fields(QStringLiteral("ID_OPERATORE")).Value()); });
            writeOperator(rs);
            trap.step([&] { rs.UpdateBatch(); });
        }
        if (trap.ended())
            return;
        Cmd_Edit->setCaption(Edit);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        trap.step([&] { reopen(true); });
        return;
    }

    // An edit of the selected operator: the list still shows the name before the edit.
    QString old, oldQualification;
    trap.step([&] {
        if (DataGrid1->Row() < 0)
            throw vb::VBError(err::GridDataAccess);
        old = DataGrid1->Columns(1).Text();
        oldQualification = DataGrid1->Columns(2).Text();
    });
    if (trap.ended())
        return;
    const bool changed = old != txtOperatore->Text() || oldQualification != Txt_Qualifica->Text();
    const QString prompt = changed ? QStringLiteral("L'Operatore [") + old +
                                         QStringLiteral("] Sta per essere modificato, Vuoi Procedere??")
                                   : QStringLiteral("Stai per modificare i dati dell' Operatore [") + old +
                                         QStringLiteral("] Vuoi Procedere??");
    if (vb::MsgBox(prompt, vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("Modifica Operatore **") + old + QStringLiteral("**")) != vb::answer::Yes)
        return;

    QString id;
    trap.step([&] { id = vb::KeyText(TxtID_OPERATORE->Text()); });
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Operatore where ID_OPERATORE =") + id); });
        writeOperator(rs);
        // The end of employment goes in a second time, with the same value.
        trap.step([&] { rs.Fields(QStringLiteral("Fine_Rapp")) = endOfEmployment(); });
        trap.step([&] { rs.UpdateBatch(); });
    }
    if (trap.ended())
        return;
    trap.step([&] { reopen(true); });
}

void Form18::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (TxtID_OPERATORE->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), vb::mb::Exclamation,
                   QStringLiteral("NESSUNA OPERATORE SELEZIONATA"));
        return;
    }
    const QString name = txtOperatore->Text();
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare l'Operatore ") + name + QStringLiteral("?"),
                   vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("Eliminazione Operatore **") + name + QStringLiteral("**")) != vb::answer::Yes)
        return;
    // The register keeps the key of whoever executed a maintenance, gone or not.
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_OPERATORE WHERE ID_OPERATORE  = ") +
                   vb::KeyText(TxtID_OPERATORE->Text()));
    });
    trap.step([&] { reopen(false); });
}

void Form18::Cmd_Vis_All_Click()
{
    Trap trap = Trap::ignoreAll();
    Form18* again = nullptr;
    trap.step([&] { again = reopen(false); });
    if (again)
        trap.step([&] { again->Cmd_Print->setCaption(QStringLiteral("Stampa Tutto")); });
}

Form18* Form18::reopen(bool backToRow)
{
    return dynamic_cast<Form18*>(shell::ReopenScreen(ScreenName, backToRow));
}

// ---- print and date advice ----------------------------------------------------------

void Form18::Cmd_Print_Click()
{
    Trap trap = Trap::ignoreAll();
    // Operators with no executed maintenance drop out of the list (inner join); each one's
    // jobs come newest first.
    const QString statement =
        QStringLiteral(
            "SHAPE {SELECT Tbl_Operatore.Qualifica, Tbl_Operatore.Data_Nascita, Tbl_Operatore.Inizio_Rapp, "
            "Tbl_Operatore.Tipo, Tbl_Operatore.ID_OPERATORE, Tbl_Operatore.Operatore, "
            "Count(Tbl_Maintenance.Manutenzione_Tipo) AS ConteggioDiManutenzione_Tipo FROM Tbl_Operatore INNER JOIN "
            "Tbl_Maintenance ON Tbl_Operatore.ID_OPERATORE = Tbl_Maintenance.ID_OPERATORE GROUP BY "
            "Tbl_Operatore.Qualifica, Tbl_Operatore.Data_Nascita, Tbl_Operatore.Inizio_Rapp, Tbl_Operatore.Tipo, "
            "Tbl_Operatore.ID_OPERATORE, Tbl_Operatore.Operatore ORDER BY Tbl_Operatore.Qualifica;} ") +
        QStringLiteral(
            "APPEND ({SELECT Tbl_Operatore.ID_OPERATORE, Tbl_Maintenance.Ultima, Tbl_Maintenance.Modello, "
            "Tbl_Maintenance.Numerazione, Tbl_Maintenance.Manutenzione_Tipo FROM Tbl_Maintenance RIGHT JOIN "
            "Tbl_Operatore ON Tbl_Maintenance.ID_OPERATORE = Tbl_Operatore.ID_OPERATORE GROUP BY "
            "Tbl_Operatore.ID_OPERATORE, Tbl_Maintenance.Ultima, Tbl_Maintenance.Modello, Tbl_Maintenance.Numerazione, "
            "Tbl_Maintenance.Manutenzione_Tipo ORDER BY Tbl_Maintenance.Ultima DESC , Tbl_Maintenance.Modello;} ") +
        QStringLiteral("RELATE ID_OPERATORE to ID_OPERATORE) as Dati");
    // Label2 of the report header takes the present date and time with every show.
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox1"), QStringLiteral("Operatore"));
        layout.setDataField(reports::Section::GroupFooter, QStringLiteral("TextBox12"),
                            QStringLiteral("ConteggioDiManutenzione_Tipo"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport2"), statement, options); });
}

void Form18::Cmd_Info_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::WriteDateInfo(); });
}

VELMORA_SCREEN(Form18);

} // namespace people
