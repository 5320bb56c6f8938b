// The register: the load, the list and its day filter, the selection of a row, the pick
// lists, and insert, edit and delete of a scheduled maintenance.
#include "controls/ScreenKit.h"
#include "execution/Form7.h"
#include "execution/WeeklyPlan.h"
#include "reports/TextExport.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace execution {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;

namespace {

constexpr const char* EmptyDate = "__/__/____";

Variant plusDays(const Variant& date, double days)
{
    return Variant(vb::JetDate{date.toDate().serial + days});
}

QString dateText(const Variant& date)
{
    return vb::Format(date, QStringLiteral("dd/mm/yyyy")).toString();
}

/// Points a data control at a statement and binds a pick list to it.
void bindList(vb::Adodc* source, vb::DataCombo* combo, const QString& statement, const QString& field)
{
    source->setRecordSource(statement);
    source->Refresh();
    combo->bind(source, field);
}

/// A field of a data control's current row (no rows: no current record).
Variant sourceField(vb::Adodc* source, const QString& field)
{
    if (!source->Recordset())
        throw vb::VBError(err::NoCurrentRecord);
    return source->Recordset()->Fields(field).Value();
}

/// The first row's field of a statement (none: no current record).
Variant firstField(const QString& statement, const QString& field)
{
    store::Recordset rs;
    rs.Open(statement);
    return rs.Fields(field).Value();
}

} // namespace

// ---- load -----------------------------------------------------------------------------

void Form7::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] { Cmd_Stop->setEnabled(!ID_MOD->Text().isEmpty()); });

    // Only machines with procedures can be scheduled.
    trap.step([&] {
        bindList(Adodc1, DataCombo3,
                 QStringLiteral("SELECT Tbl_Macchina.Macchina FROM Tbl_Macchina INNER JOIN Tbl_ProcedureM ON "
                                "Tbl_Macchina.ID_MODELLO = Tbl_ProcedureM.ID_MODELLO GROUP BY Tbl_Macchina.Macchina;"),
                 QStringLiteral("Macchina"));
    });
    trap.step([&] {
        bindList(Adodc2, DataCombo2,
                 QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello From Tbl_Macchina GROUP BY "
                                "Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello ORDER BY Tbl_Macchina.Modello;"),
                 QStringLiteral("Modello"));
    });
    trap.step([&] {
        bindList(Adodc5, DataCombo4,
                 QStringLiteral("SELECT Tbl_Maint_Tipo.Maint_Tipo FROM Tbl_Maint_Tipo INNER JOIN Tbl_ProcedureM ON "
                                "Tbl_Maint_Tipo.ID_MAINT_TIPO = Tbl_ProcedureM.ID_MAINT_TIPO GROUP BY "
                                "Tbl_Maint_Tipo.Maint_Tipo, Tbl_ProcedureM.ID_MODELLO, Tbl_ProcedureM.ID_MAINT_TIPO "
                                "ORDER BY Tbl_ProcedureM.ID_MAINT_TIPO;"),
                 QStringLiteral("Maint_Tipo"));
    });
    trap.step([&] {
        bindList(Adodc6, DataCombo5, QStringLiteral("SELECT * from Tbl_Operatore;"), QStringLiteral("Operatore"));
    });

    // An overflow here ends the load: it is not trapped.
    Apply_Stop_Shift();

    trap.step([&] { MaskEdBox1->setText(dateText(vb::Today())); });
    trap.step([&] { DTPicker1->setValue(vb::Today()); });
    trap.step([&] { Refresh_Grid_Maintenance(); });
    trap.step([&] {
        if (vb::Form* main = shell::screens().loaded(QStringLiteral("frmMain")))
            if (vb::Control* timer4 = main->control(QStringLiteral("Timer4")))
                timer4->setVbProperty(QStringLiteral("Enabled"), true);
    });
}

// ---- the list -------------------------------------------------------------------------

void Form7::Refresh_Grid_Maintenance()
{
    Trap trap = Trap::ignoreAll();
    const QString days = Txt_Search->Text();
    QString statement;
    if (days.isEmpty() || vb::Val(days) == 0) {
        statement =
            QStringLiteral("SELECT Tbl_Maintenance.ID, Tbl_Maintenance.Macchina, Tbl_Maintenance.Modello, "
                           "Tbl_Maintenance.Numerazione, Tbl_Maintenance.Manutenzione_Tipo, Tbl_Maintenance.Ultima, "
                           "Tbl_Maintenance.Prossima From Tbl_Maintenance ORDER BY Tbl_Maintenance.Prossima;");
    } else {
        // Strictly before today + n: a maintenance due exactly n days ahead is left out.
        statement = QStringLiteral("SELECT Tbl_Maintenance.ID, Tbl_Maintenance.Macchina, Tbl_Maintenance.Modello, "
                                   "Tbl_Maintenance.Numerazione, Tbl_Maintenance.Manutenzione_Tipo, "
                                   "Tbl_Maintenance.Ultima, Tbl_Maintenance.Prossima ") +
                    QStringLiteral("From Tbl_Maintenance Where (((Tbl_Maintenance.Prossima) < Date() + ") + days +
                    QStringLiteral("))ORDER BY Tbl_Maintenance.Prossima;");
    }
    trap.step([&] {
        Adodc3->setRecordSource(statement);
        Adodc3->Refresh();
    });
    // ID, the key, is the one column left unlocked.
    vb::setColumns(trap, DataGrid1,
                   {{QStringLiteral("ID"), 0},
                    {QStringLiteral("MACCHINA"), 2000, true},
                    {QStringLiteral("MODELLO"), 2800, true},
                    {QStringLiteral("NUM"), 600, true},
                    {QStringLiteral("MANUTENZIONE TIPO"), 1500, true},
                    {QStringLiteral("ULTIMA"), 1200, true},
                    {QStringLiteral("PROSSIMA"), 1200, true}});
    trap.step([&] {
        Label1->setCaption(QStringLiteral("Conteggio Manutenzioni: ") + QString::number(Adodc3->RecordCount()));
    });
}

void Form7::Txt_Search_KeyPress(int& keyAscii)
{
    const bool digit = keyAscii >= '0' && keyAscii <= '9';
    if (!digit && keyAscii != 8)
        keyAscii = 0;
}

// ---- the selection of a row -----------------------------------------------------------

void Form7::DataGrid1_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        if (shell::screens().isLoaded(QStringLiteral("Form13")))
            shell::screens().unload(QStringLiteral("Form13"));
    });
    trap.step([&] { Clear_Fields(); });
    trap.step([&] {
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        Cmd_Edit->setEnabled(true);
        Cmd_Edit->setCaption(QStringLiteral("Modifica"));
        DataGrid1->setToolTipText(QString());
    });

    std::int16_t id = 0;
    trap.step([&] { id = DataGrid1->Columns(QStringLiteral("ID")).Value().toInteger(); });
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * From Tbl_Maintenance WHERE ID=") + QString::number(id)); });
    bool eof = true;
    trap.step([&] { eof = rs.Eof(); });
    if (eof)
        return;

    // The fill order is part of the design: each pick list reacts to its own change. A
    // Null leaves its control as Clear_Fields left it.
    auto field = [&rs](const char* name) { return rs.Fields(QString::fromLatin1(name)).Value(); };
    struct Fill
    {
        vb::Control* control;
        const char* property;
        const char* field;
    };
    auto fill = [&](std::initializer_list<Fill> fills) {
        for (const Fill& f : fills)
            trap.step([&] { f.control->setVbProperty(QString::fromLatin1(f.property), field(f.field)); });
    };
    fill({{ID_MOD, "Text", "ID_MODELLO"},
          {ID_NUM, "Text", "ID_NUM"},
          {ID_MAINT, "Text", "ID_MAINT_TIPO"},
          {txtID, "Text", "ID"},
          {DataCombo3, "Text", "Macchina"},
          {MaskEdBox2, "Text", "Prossima"},
          {DTPicker2, "Value", "Prossima"}});
    trap.step([&] { DTPicker2->setVisible(false); });
    fill({{MaskEdBox1, "Text", "Ultima"},
          {DTPicker1, "Value", "Ultima"},
          {DataCombo5, "Text", "Operatore"},
          {ID_OPERATORE, "Text", "ID_Operatore"},
          {DataCombo2, "Text", "Modello"},
          {txtFrequenza, "Text", "Frequenza_Sett"},
          {DataCombo1, "Text", "Numerazione"},
          {DataCombo5, "Text", "Operatore"},
          {ID_OPERATORE, "Text", "ID_Operatore"},
          {DataCombo4, "Text", "Manutenzione_Tipo"}});

    trap.step([&] {
        Variant text = vb::Concat(QStringLiteral("["), field("Macchina"));
        text = vb::Concat(vb::Concat(text, QStringLiteral("]-[")), field("Modello"));
        text = vb::Concat(vb::Concat(text, QStringLiteral("]-[N°")), field("Numerazione"));
        Label16->setCaption(vb::Concat(text, QStringLiteral("]")));
    });

    trap.step([&] { Show_Stop_State(false); });
    trap.step([&] {
        DTPicker2->setVisible(true);
        MaskEdBox2->setVisible(true);
    });

    // Due today: neither branch runs, and the label keeps its last look.
    trap.step([&] {
        const double next = DTPicker2->Value().toDate().serial;
        const double now = vb::Today().toDate().serial;
        if (next > now) {
            Label8->setCaption(QStringLiteral("Prossima:"));
            Label8->setForeColor(vb::colour::Black);
            Label8->setFontBold(false);
        }
        if (next < now) {
            Label8->setCaption(QStringLiteral("Prossima!!:"));
            Label8->setForeColor(vb::colour::Red);
            Label8->setFontBold(true);
        }
    });
    trap.step([&] { Txt_Man_Tip->setText(DataCombo4->Text()); });

    // The notes of the machine number.
    trap.step([&] {
        Adodc7->setRecordSource(QStringLiteral("SELECT * FROM Tbl_Maintenance_Note WHERE ID_MODELLO=") +
                                ID_MOD->Text() + QStringLiteral(" AND ID_NUM=") + ID_NUM->Text() +
                                QStringLiteral("  Order by Ultima desc"));
        Adodc7->Refresh();
    });
    vb::setColumns(trap, DataGrid2,
                   {{QStringLiteral("ID")},
                    {QStringLiteral("ID_MAINTENANCE")},
                    {QStringLiteral("ID_MODELLO")},
                    {QStringLiteral("ID_NUM")},
                    {QStringLiteral("ID_OPERATORE")},
                    {QStringLiteral("Ultima")},
                    {QStringLiteral("Avvisa")},
                    {QStringLiteral("NOTE")}});
    trap.step([&] {
        if (Adodc7->RecordCount() == 0) {
            DataGrid2->setVisible(false);
            Frame1->setVisible(false);
            return;
        }
        DataGrid1->setToolTipText(QStringLiteral("CI SONO NOTE PRESENTI PER QUESTA MACCHINA!"));
        DataGrid2->setVisible(true);
        Frame1->setVisible(true);
        Variant caption =
            vb::Concat(QStringLiteral("LEGGI NOTE MACCHINA: "), DataGrid1->Columns(QStringLiteral("MODELLO")).Value());
        caption =
            vb::Concat(vb::Concat(caption, QStringLiteral("  N°")), DataGrid1->Columns(QStringLiteral("NUM")).Value());
        Frame1->setCaption(caption);
    });
    trap.step([&] { Cmd_Stop->setEnabled(!ID_MOD->Text().isEmpty()); });
}

void Form7::Clear_Fields()
{
    Trap trap = Trap::ignoreAll();
    for (vb::TextBox* t : {txtID, ID_MOD, ID_NUM, ID_MAINT})
        trap.step([&] { t->setText(QString()); });
    for (vb::DataCombo* c : {DataCombo4, DataCombo3, DataCombo2, DataCombo1, DataCombo5})
        trap.step([&] { c->setText(QString()); });
    for (vb::TextBox* t : {ID_OPERATORE, Txt_Qualifica, Txt_Tot_Minuti, Txt_Db, Txt_Week, TXT})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] { MaskEdBox1->setText(QString::fromLatin1(EmptyDate)); });
    trap.step([&] { MaskEdBox2->setText(QString::fromLatin1(EmptyDate)); });
    trap.step([&] { DTPicker1->setValue(vb::Today()); });
    trap.step([&] { DTPicker2->setValue(plusDays(vb::Today(), 15)); });
    trap.step([&] {
        DTPicker3->setVisible(false);
        DataGrid2->setVisible(false);
        Frame2->setVisible(false);
        Label16->setCaption(QString());
    });
}

void Form7::DataGrid2_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Adodc7->Refresh(); });
}

void Form7::Form_MouseMove()
{
    DataGrid2->setVisible(false);
    Frame1->setVisible(false);
}

// ---- the pick lists -------------------------------------------------------------------

void Form7::DataCombo3_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { DataCombo2->setText(QString()); });
    trap.step([&] { DataCombo4->setText(QString()); });
    const QString machine = DataCombo3->Text();
    if (machine.size() < 3)
        return;
    trap.step([&] {
        bindList(Adodc2, DataCombo2,
                 QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello FROM "
                                "Tbl_ProcedureM INNER JOIN Tbl_Macchina ON Tbl_ProcedureM.ID_MODELLO = "
                                "Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, "
                                "Tbl_Macchina.Modello HAVING (((Tbl_Macchina.Macchina)='") +
                     vb::DoubledQuotes(machine) + QStringLiteral("'))ORDER BY Tbl_Macchina.Modello;"),
                 QStringLiteral("Modello"));
    });
    trap.step([&] { ID_MOD->setText(sourceField(Adodc2, QStringLiteral("ID_MODELLO"))); });
    trap.step([&] {
        bindList(Adodc5, DataCombo4,
                 QStringLiteral("SELECT Tbl_Assegna_M.Manutenzione_Tipo From Tbl_Assegna_M Where "
                                "Tbl_Assegna_M.ID_MODELLO = ") +
                     ID_MOD->Text() + QStringLiteral(" ORDER BY Tbl_Assegna_M.ID_MAINT_TIPO;"),
                 QStringLiteral("Manutenzione_Tipo"));
    });
}

void Form7::DataCombo2_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { DataCombo4->setText(QString()); });
    const QString model = DataCombo2->Text();
    if (model.size() < 3)
        return;
    trap.step([&] {
        ID_MOD->setText(firstField(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Macchina, "
                                                  "Tbl_Macchina.Modello From Tbl_Macchina Where "
                                                  "(((Tbl_Macchina.Modello) = '") +
                                       vb::DoubledQuotes(model) + QStringLiteral("'))ORDER BY Tbl_Macchina.Modello;"),
                                   QStringLiteral("ID_MODELLO")));
    });
    bool numbered = true;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione, "
                               "Tbl_Numerazione.ID_MODELLO From Tbl_Numerazione WHERE "
                               "(((Tbl_Numerazione.ID_MODELLO)=") +
                ID_MOD->Text() + QStringLiteral("));"));
        numbered = !rs.Eof();
    });
    if (trap.ended())
        return;
    if (!numbered) {
        const int answer = vb::MsgBox(
            QStringLiteral("Macchina sprovvista di Numerazione, per procedere all'inserimento Manutenzioni devi prima "
                           "assegnare la numerazione a questa macchina, Vuoi Procedere?"),
            vb::mb::YesNo + vb::mb::Exclamation, QStringLiteral("NUMERAZIONE MACCHINA MANCANTE"));
        if (answer == vb::answer::Yes) {
            // The numbering screen reads ID_MOD in its load, so it is shown first.
            trap.step([&] { shell::screens().show(QStringLiteral("Form10")); });
            trap.step([&] { shell::screens().unload(QStringLiteral("Form7")); });
        } else {
            trap.step([&] { DataCombo2->setText(QString()); });
        }
    }
    trap.step([&] {
        bindList(Adodc4, DataCombo1,
                 QStringLiteral("SELECT Tbl_Numerazione.Numerazione From Tbl_Numerazione GROUP BY "
                                "Tbl_Numerazione.Numerazione, Tbl_Numerazione.ID_MODELLO HAVING "
                                "(((Tbl_Numerazione.ID_MODELLO)= ") +
                     ID_MOD->Text() + QStringLiteral("));"),
                 QStringLiteral("Numerazione"));
    });
    trap.step([&] {
        bindList(Adodc5, DataCombo4,
                 QStringLiteral("SELECT Tbl_Assegna_M.Manutenzione_Tipo From Tbl_Assegna_M Where "
                                "Tbl_Assegna_M.ID_MODELLO = ") +
                     ID_MOD->Text() + QStringLiteral(" ORDER BY Tbl_Assegna_M.ID_MAINT_TIPO;"),
                 QStringLiteral("Manutenzione_Tipo"));
    });
}

void Form7::DataCombo1_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        ID_NUM->setText(firstField(QStringLiteral("SELECT * From Tbl_Numerazione WHERE Tbl_Numerazione.ID_MODELLO=") +
                                       ID_MOD->Text() + QStringLiteral(" And Numerazione = '") + DataCombo1->Text() +
                                       QStringLiteral("'"),
                                   QStringLiteral("ID_NUM")));
    });
}

void Form7::DataCombo4_Change()
{
    Trap trap = Trap::ignoreAll();
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT * From Tbl_Maint_Tipo WHERE (((Tbl_Maint_Tipo.Maint_Tipo)='") +
                DataCombo4->Text() + QStringLiteral("'));"));
    });
    trap.step([&] { ID_MAINT->setText(rs.Fields(QStringLiteral("ID_MAINT_TIPO")).Value()); });
    trap.step([&] { txtFrequenza->setText(rs.Fields(QStringLiteral("Frequenza_Sett")).Value()); });
    trap.step([&] { lookUpMinutes(); });
}

void Form7::ID_MAINT_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { lookUpMinutes(); });
}

void Form7::lookUpMinutes()
{
    Txt_Tot_Minuti->setText(firstField(
        QStringLiteral("SELECT Tbl_Assegna_M.Tempo_Minuti From Tbl_Assegna_M GROUP BY Tbl_Assegna_M.ID_MODELLO, "
                       "Tbl_Assegna_M.ID_MAINT_TIPO, Tbl_Assegna_M.Tempo_Minuti HAVING Tbl_Assegna_M.ID_MODELLO = ") +
            ID_MOD->Text() + QStringLiteral(" AND Tbl_Assegna_M.ID_MAINT_TIPO = ") + ID_MAINT->Text(),
        QStringLiteral("Tempo_Minuti")));
}

void Form7::DataCombo5_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    if (DataCombo5->Text().isEmpty())
        return;
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT * from Tbl_Operatore  Where Operatore = '") + DataCombo5->Text() +
                QStringLiteral("' ORDER BY Operatore;"));
    });
    trap.step([&] { ID_OPERATORE->setText(rs.Fields(QStringLiteral("ID_OPERATORE")).Value()); });
    trap.step([&] { Txt_Qualifica->setText(rs.Fields(QStringLiteral("Qualifica")).Value()); });
}

void Form7::ID_NUM_Change()
{
    Cmd_Add_Note->setEnabled(!ID_NUM->Text().isEmpty());
}

void Form7::DTPicker1_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { MaskEdBox1->setText(dateText(DTPicker1->Value())); });
}

// ---- Ultima one day back or forward ----------------------------------------------------

namespace {

void stepUltima(Form7& f, int days, vb::Control* focusOnMissing)
{
    Trap trap = Trap::ignoreAll();
    if (f.MaskEdBox1->Text() == QLatin1String(EmptyDate)) {
        vb::MsgBox(QStringLiteral("Inserisci la Data!!"), vb::mb::Critical, QStringLiteral("MANCANZA DATI"));
        trap.step([&] { focusOnMissing->focusIn(); });
        return;
    }
    Variant moved;
    trap.step([&] { moved = plusDays(vb::CDate(f.MaskEdBox1->Text()), days); });
    trap.step([&] { f.MaskEdBox1->setText(dateText(moved)); });
    trap.step([&] { f.DTPicker1->setValue(moved); });
}

} // namespace

void Form7::Command1_Click()
{
    stepUltima(*this, -1, MaskEdBox1);
}

void Form7::Command2_Click()
{
    stepUltima(*this, 1, DTPicker1);
}

// ---- insert, save, delete ---------------------------------------------------------------

void Form7::Cmd_Add_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::InvalidPropertyValue, [] { reports::WriteDateErrorGuide(); });
    trap.step([&] { Clear_Fields(); });
    trap.step([&] { MaskEdBox1->setText(dateText(vb::Today())); });
    trap.step([&] { DTPicker1->setValue(vb::Today()); });
    trap.step([&] { MaskEdBox2->setText(dateText(plusDays(vb::Today(), 15))); });
    trap.step([&] { DTPicker2->setValue(plusDays(vb::Today(), 15)); });
    trap.step([&] {
        MaskEdBox2->setVisible(false);
        DTPicker2->setVisible(false);
        Cmd_Edit->setCaption(vb::caption::Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form7::ensurePlannedRow(Trap& trap)
{
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("Select * from Tbl_Planned where ID_MODELLO = ") + ID_MOD->Text() +
                QStringLiteral(" AND ID_NUM = ") + ID_NUM->Text());
    });
    bool missing = false;
    trap.step([&] { missing = rs.Eof(); });
    if (!missing)
        return;
    trap.step([&] { rs.AddNew(); });
    store::WriteFields(trap, rs,
                       {{"ID_MODELLO", ID_MOD->Text()},
                        {"Macchina", DataCombo3->Text()},
                        {"Modello", DataCombo2->Text()},
                        {"ID_NUM", ID_NUM->Text()},
                        {"Numerazione", DataCombo1->Text()}});
    trap.step([&] { rs.UpdateBatch(); });
}

void Form7::raiseProgress(Trap& trap, double by, const QString& text)
{
    trap.step([&] { ProgressBar1->setValue(ProgressBar1->Value() + by); });
    trap.step([&] {
        Lbl_ProgressBar->setCaption(text + vb::Format(ProgressBar1->Value(), QStringLiteral("##.0")).toString() +
                                    QStringLiteral("%"));
    });
    trap.step([&] {
        const Variant width = vb::Format(ProgressBar1->Value() * 9975 / 100, QStringLiteral("##.00"));
        Shape1->setWidth(int(vb::CDbl(width).toDouble()));
    });
}

void Form7::Cmd_Edit_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::Resume};
    trap.on(err::InvalidPropertyValue, [] { reports::WriteDateErrorGuide(); });

    // The type is not checked here.
    if (txtFrequenza->Text().isEmpty() || DataCombo3->Text().isEmpty() || DataCombo2->Text().isEmpty() ||
        DataCombo1->Text().isEmpty() || MaskEdBox1->Text() == QLatin1String(EmptyDate)) {
        vb::MsgBox(QStringLiteral("Inserisci i dati Richiesti!"), vb::mb::Exclamation,
                   QStringLiteral("MANCANZA DATI!!"));
        return;
    }

    auto writeCommon = [&](store::Recordset& rs) {
        store::WriteFields(trap, rs,
                           {{"ID_MODELLO", ID_MOD->Text()},
                            {"ID_MAINT_TIPO", ID_MAINT->Text()},
                            {"Macchina", DataCombo3->Text()},
                            {"Modello", DataCombo2->Text()},
                            {"ID_NUM", ID_NUM->Text()},
                            {"Numerazione", DataCombo1->Text()},
                            {"Manutenzione_Tipo", DataCombo4->Text()},
                            {"Frequenza_Sett", txtFrequenza->Text()}});
    };

    if (Cmd_Edit->Caption() == vb::caption::Save) {
        // A new row. The duplicate goes by model text and number text, not by the keys.
        bool duplicate = false;
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("Select * from Tbl_Maintenance where Modello = '") + DataCombo2->Text() +
                    QStringLiteral("' AND ID_MAINT_TIPO = ") + ID_MAINT->Text() +
                    QStringLiteral(" AND Numerazione = '") + DataCombo1->Text() + QStringLiteral("'"));
            duplicate = !rs.Eof();
        });
        if (trap.ended())
            return;
        if (duplicate) {
            vb::MsgBox(QStringLiteral("Questa manutenzione è già stata assegnata a questa numerazione di Macchina!!"),
                       vb::mb::Critical, QStringLiteral("DUPPLICATO DI MANUTENZIONE"));
            return;
        }
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { txtID->setText(rs.Fields(QStringLiteral("ID")).Value()); });
            writeCommon(rs);
            trap.step([&] { rs.Fields(QStringLiteral("Ultima")) = DTPicker1->Value(); });
            // A new row's next date always follows from Ultima; the hidden DTPicker2 is not read.
            trap.step([&] {
                rs.Fields(QStringLiteral("Prossima")) =
                    plusDays(DTPicker1->Value(), vb::CDbl(txtFrequenza->Text()).toDouble() * 7);
            });
            trap.step([&] { rs.Fields(QStringLiteral("Tempo_Minuti")) = Txt_Tot_Minuti->Text(); });
            if (DataCombo5->Text().isEmpty()) {
                trap.step([&] { rs.Fields(QStringLiteral("Operatore")) = QString(); });
            } else {
                store::WriteFields(trap, rs,
                                   {{"Operatore", DataCombo5->Text()}, {"ID_Operatore", ID_OPERATORE->Text()}});
            }
            trap.step([&] { rs.UpdateBatch(); });
        }
        if (trap.ended())
            return;
        ensurePlannedRow(trap);
        trap.step([&] { Update_Planned_Row(*this); });
        if (trap.ended())
            return;
        Cmd_Edit->setCaption(QStringLiteral("Modifica"));
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        Reload();
        return;
    }

    // An existing row.
    const int answer =
        vb::MsgBox(QStringLiteral("Stai per modificare la Manutenzione ") + DataCombo4->Text() +
                       QStringLiteral(" di questa Macchina, Vuoi Procedere??"),
                   vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("Modifica Manutenzione **") + DataCombo4->Text() + QStringLiteral("**"));
    if (answer == vb::answer::No)
        return;
    trap.step([&] {
        Lbl_ProgressBar->setVisible(true);
        Shape1->setVisible(true);
        Label1->setVisible(false);
    });
    raiseProgress(trap, 1.0, QStringLiteral("Modifica Dati in corso... "));
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance where ID =") + txtID->Text()); });
        writeCommon(rs);
        // Prossima is what the user set: not recomputed from the frequency.
        store::WriteFields(trap, rs,
                           {{"Tempo_Minuti", Txt_Tot_Minuti->Text()},
                            {"Ultima", DTPicker1->Value()},
                            {"Prossima", DTPicker2->Value()}});
        if (DataCombo5->Text().isEmpty()) {
            store::WriteFields(trap, rs, {{"Operatore", QString()}, {"ID_Operatore", Variant::null()}});
        } else {
            store::WriteFields(trap, rs, {{"Operatore", DataCombo5->Text()}, {"ID_Operatore", ID_OPERATORE->Text()}});
        }
        trap.step([&] { rs.UpdateBatch(); });
        trap.step([&] { rs.UpdateBatch(); });
    }
    raiseProgress(trap, 2.0, QStringLiteral("Start Procedure ... "));
    ensurePlannedRow(trap);
    raiseProgress(trap, 0.5, QStringLiteral("Start Procedure ... "));
    trap.step([&] { Clear_Planned_Tokens(*this); });
    trap.step([&] { Update_Planned_Row(*this); });
    trap.step([&] {
        if (ProgressBar1->Value() != 100) {
            ProgressBar1->setValue(100);
            Lbl_ProgressBar->setCaption(QStringLiteral("Final Procedure...") +
                                        vb::Format(ProgressBar1->Value(), QStringLiteral("##.0")).toString() +
                                        QStringLiteral("%"));
        }
    });
    if (trap.ended())
        return;
    Reload();
}

void Form7::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (txtID->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), vb::mb::Exclamation,
                   QStringLiteral("NESSUNA MANUTENZIONE SELEZIONATA"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare la Manutenzione Selezionata?"),
                   vb::mb::YesNo + vb::mb::Question, QStringLiteral("Elimina Manutenzione")) == vb::answer::No)
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Delete * from Tbl_Maintenance WHERE ID  = ") + txtID->Text());
    });
    // The whole plan row goes, with the tokens of the machine's other types.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Delete * from Tbl_Planned WHERE ID_Modello  = ") + ID_MOD->Text() +
                QStringLiteral(" and ID_NUM=") + ID_NUM->Text());
    });
    bool others = false;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Maintenance WHERE ID_Modello  = ") + ID_MOD->Text() +
                QStringLiteral(" and ID_NUM=") + ID_NUM->Text());
        others = !rs.Eof();
    });
    // The remaining maintenance get an empty row back: their tokens return only when each
    // of them is next saved.
    if (others)
        ensurePlannedRow(trap);
    Reload();
}

void Form7::Cmd_Vis_All_Click()
{
    Reload();
}

void Form7::Cmd_Info_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { reports::WriteDateInfo(); });
}

void Form7::Cmd_Vis_Procedura_Click()
{
    Trap trap = Trap::ignoreAll();
    auto hand = [&](const char* control, const QString& value) {
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form13"), QString::fromLatin1(control)))
                c->setVbProperty(QStringLiteral("Text"), value);
        });
    };
    hand("Txt_ID_MODELLO", ID_MOD->Text());
    hand("Txt_ID_MAINT_TIPO", ID_MAINT->Text());
    hand("DataCombo2", DataCombo3->Text());
    hand("DataCombo3", DataCombo2->Text());
    hand("DataCombo4", DataCombo4->Text());
    trap.step([] { shell::screens().show(QStringLiteral("Form13")); });
}

} // namespace execution
