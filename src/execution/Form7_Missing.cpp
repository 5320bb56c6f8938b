// Maintenance missing: every numbered unit owes a register row to each type assigned to
// its model. The command rebuilds the scratch table Tbl_Not_Maintenance (one row per unit
// and assigned type), marks the pairs the register holds, and lists the rest in DataGrid3.
// A line of that list prepares the new register row in the entry fields.
#include "execution/Form7.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/Batch.h"
#include "store/DataStore.h"

namespace execution {

using vb::Trap;
using vb::Variant;

namespace {

/// The walk's colour of the progress shape.
constexpr int WalkColour = 49344;

/// The register is walked in passes of this many steps.
constexpr int PassSteps = 100;

/// What the progress label says at step i of a pass.
QString walkText(int i)
{
    if (i <= 15)
        return QStringLiteral("Start Procedure ...");
    if (i <= 30)
        return QStringLiteral("Eliminazione dati obsoletei in corso... ");
    if (i < 75)
        return QStringLiteral("Rielabora Manutenzioni in corso... ");
    return QStringLiteral("Creazione Nuova Tabella in corso... ");
}

/// Label16's "[{Macchina}]-[{Modello}]-[N°{Numerazione}]", Nulls as empty text.
Variant machineCaption(const Variant& macchina, const Variant& modello, const Variant& numero)
{
    Variant text = vb::Concat(QStringLiteral("["), macchina);
    text = vb::Concat(vb::Concat(text, QStringLiteral("]-[")), modello);
    text = vb::Concat(vb::Concat(text, QStringLiteral("]-[N°")), numero);
    return vb::Concat(text, QStringLiteral("]"));
}

} // namespace

void Form7::Cmd_Senza_Manutenzione_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { ProgressBar1->setValue(0); });
    auto putGroupAway = [this] {
        Lbl_ProgressBar->setVisible(false);
        Shape1->setVisible(false);
        Label1->setVisible(true);
    };

    // The scratch table is made anew at each use; its drop fails harmlessly on a first run.
    store::DataStore& db = store::DataStore::instance();
    trap.step([&] { db.Execute(QStringLiteral("Drop TABLE Tbl_Not_Maintenance")); });
    // One row per unit and assigned type; a unit of a model without assignments gets one
    // row with no type, which the list's inner join drops.
    const QString unmarked; // the mark of a pair not found in the register (yet)
    trap.step([&] {
        db.Execute(QStringLiteral("SELECT Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione, "
                                  "Tbl_Numerazione.ID_MODELLO, '") +
                   unmarked +
                   QStringLiteral("' AS Maintenance, Tbl_Assegna_M.ID_MAINT_TIPO INTO Tbl_Not_Maintenance FROM "
                                  "Tbl_Assegna_M RIGHT JOIN Tbl_Numerazione ON Tbl_Assegna_M.ID_MODELLO = "
                                  "Tbl_Numerazione.ID_MODELLO GROUP BY Tbl_Numerazione.ID_NUM, "
                                  "Tbl_Numerazione.Numerazione, Tbl_Numerazione.ID_MODELLO, '") +
                   unmarked + QStringLiteral("', Tbl_Assegna_M.ID_MAINT_TIPO;"));
    });

    // Each register row marks its pair with the unit's key. The walk goes in whole passes:
    // the steps of a pass after the register's end find no row, keep the last values and
    // mark the same pair again.
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Maintenance;")); });
    Variant idNum, idModello, idMaintTipo;
    auto field = [&rs](const char* name) { return rs.Fields(QString::fromLatin1(name)).Value(); };
    bool eof = true;
    trap.step([&] { eof = rs.Eof(); });
    store::Batch batch;
    while (!eof) {
        for (int i = 1; i <= PassSteps; ++i) {
            trap.step([&] { idNum = field("ID_NUM"); });
            trap.step([&] { idModello = field("ID_MODELLO"); });
            trap.step([&] { idMaintTipo = field("ID_MAINT_TIPO"); });
            trap.step([&] { rs.MoveNext(); });

            // A pair that no unit has matches no row, and its writes fail quietly.
            store::Recordset pair;
            trap.step([&] {
                pair.Open(QStringLiteral("Select * From Tbl_Not_Maintenance WHERE ID_NUM = ") +
                          vb::CStr(idNum).toString() + QStringLiteral(" and ID_MODELLO = ") +
                          vb::CStr(idModello).toString() + QStringLiteral(" and ID_MAINT_TIPO = ") +
                          vb::CStr(idMaintTipo).toString());
            });
            trap.step([&] { pair.Fields(QStringLiteral("Maintenance")) = idNum; });
            trap.step([&] { pair.UpdateBatch(); });

            trap.step([&] {
                Lbl_ProgressBar->setVisible(true);
                Shape1->setBackColor(WalkColour);
                Shape1->setFillColor(WalkColour);
                Shape1->setVisible(true);
                Label1->setVisible(false);
            });
            // The bar is full after the first pass; later steps only hide the group again.
            if (ProgressBar1->Value() == 100)
                putGroupAway();
            else
                raiseProgress(trap, 1.0, walkText(i));
        }
        eof = true;
        trap.step([&] { eof = rs.Eof(); });
    }

    putGroupAway();
    trap.step([&] { ProgressBar1->setValue(0); });
    trap.step([&] { Refresh_Grid_Missing(); });
}

void Form7::Refresh_Grid_Missing()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Frame3->setVisible(true); });
    // Only the pairs still unmarked, listed by machine and unit number.
    trap.step([&] {
        Adodc8->setRecordSource(QStringLiteral(
            "SELECT Tbl_Not_Maintenance.ID_NUM, Tbl_Not_Maintenance.Numerazione, Tbl_Not_Maintenance.ID_MODELLO, "
            "Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, Tbl_Assegna_M.Manutenzione_Tipo, "
            "Tbl_Assegna_M.ID_MAINT_TIPO FROM Tbl_Assegna_M INNER JOIN Tbl_Not_Maintenance ON "
            "(Tbl_Assegna_M.ID_MODELLO = Tbl_Not_Maintenance.ID_MODELLO) AND (Tbl_Assegna_M.ID_MAINT_TIPO = "
            "Tbl_Not_Maintenance.ID_MAINT_TIPO) GROUP BY Tbl_Not_Maintenance.ID_NUM, Tbl_Not_Maintenance.Numerazione, "
            "Tbl_Not_Maintenance.ID_MODELLO, Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, "
            "Tbl_Assegna_M.Manutenzione_Tipo, Tbl_Assegna_M.ID_MAINT_TIPO, Tbl_Not_Maintenance.Maintenance, "
            "Val(Tbl_Not_Maintenance.Numerazione), Tbl_Assegna_M.Modello HAVING "
            "(((Tbl_Not_Maintenance.Maintenance)=''))ORDER BY Tbl_Assegna_M.Macchina, "
            "Val(Tbl_Not_Maintenance.Numerazione), Tbl_Assegna_M.Modello;"));
        Adodc8->Refresh();
    });
    struct Layout
    {
        const char* caption;
        int width;
    };
    static const Layout columns[] = {{"ID_NUM", 0},       {"N°", 600},       {"ID_MODELLO", 0},
                                     {"MACCHINA", 2000},  {"MODELLO", 3000}, {"MANUTENZIONE", 1800},
                                     {"ID_MAINT_TIPO", 0}};
    for (int i = 0; i < 7; ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid3->Columns(i);
            c.setCaption(QString::fromUtf8(columns[i].caption));
            c.setWidth(columns[i].width);
            c.setLocked(i > 0);
        });
    }
    trap.step([&] {
        Frame3->setCaption(QStringLiteral("Sono ") + QString::number(Adodc8->RecordCount()) +
                           QStringLiteral(" le Manutenzioni Mancanti"));
    });
}

void Form7::DataGrid3_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        if (shell::screens().isLoaded(QStringLiteral("Form13")))
            shell::screens().unload(QStringLiteral("Form13"));
    });
    // The screen's New row state, as Inserisci leaves it: empty fields, Ultima today,
    // Prossima hidden, SALVA the only command.
    trap.step([&] { Cmd_Add_Click(); });

    // The keys of the line. The list of stopped machines has no type nor model column:
    // those reads fail and their keys stay 0, so no assignment matches.
    QString idNum = QStringLiteral("0"), idMaintTipo = QStringLiteral("0"), idModello = QStringLiteral("0");
    auto key = [this](const char* column) {
        return vb::KeyText(DataGrid3->Columns(QString::fromLatin1(column)).Value().displayText());
    };
    trap.step([&] { idNum = key("ID_NUM"); });
    trap.step([&] { idMaintTipo = key("ID_MAINT_TIPO"); });
    trap.step([&] { idModello = key("ID_MODELLO"); });
    store::Recordset rs;
    trap.step([&] {
        rs.Open(
            QStringLiteral(
                "SELECT Tbl_Not_Maintenance.ID_NUM, Tbl_Not_Maintenance.ID_MODELLO, Tbl_Not_Maintenance.Numerazione, "
                "Tbl_Assegna_M.Macchina, Tbl_Assegna_M.Modello, Tbl_Assegna_M.Manutenzione_Tipo, "
                "Tbl_Assegna_M.ID_MAINT_TIPO FROM Tbl_Assegna_M INNER JOIN Tbl_Not_Maintenance ON "
                "Tbl_Assegna_M.ID_MODELLO = Tbl_Not_Maintenance.ID_MODELLO GROUP BY Tbl_Not_Maintenance.ID_NUM, "
                "Tbl_Not_Maintenance.ID_MODELLO, Tbl_Not_Maintenance.Numerazione, Tbl_Assegna_M.Macchina, "
                "Tbl_Assegna_M.Modello, Tbl_Assegna_M.Manutenzione_Tipo, Tbl_Assegna_M.ID_MAINT_TIPO HAVING "
                "(((Tbl_Not_Maintenance.ID_NUM)=") +
            idNum + QStringLiteral(") AND ((Tbl_Not_Maintenance.ID_MODELLO)=") + idModello +
            QStringLiteral(") AND ((Tbl_Assegna_M.ID_MAINT_TIPO)=") + idMaintTipo + QStringLiteral("));"));
    });

    // The stop record of the unit of the line: on the list of stopped machines this is what
    // the line is for, and the stop panel then acts on that unit.
    trap.step([&] { ID_NUM->setText(idNum); });
    trap.step([&] { Show_Stop_State(true); });
    if (!Frame2->isHidden()) {
        trap.step([&] {
            auto cell = [this](const char* column) { return DataGrid3->Columns(QString::fromUtf8(column)).Value(); };
            Label16->setCaption(machineCaption(cell("MACCHINA"), cell("MODELLO"), cell("N°")));
        });
    }

    bool eof = true;
    trap.step([&] { eof = rs.Eof(); });
    if (eof)
        return;
    // The fill order matters: each pick list reacts to its own change, and the type's
    // change brings the frequency and the minutes, so SALVA is all that is left to do.
    auto field = [&rs](const char* name) { return rs.Fields(QString::fromLatin1(name)).Value(); };
    trap.step([&] { ID_MOD->setText(field("ID_MODELLO")); });
    trap.step([&] { ID_NUM->setText(field("ID_NUM")); });
    trap.step([&] { ID_MAINT->setText(field("ID_MAINT_TIPO")); });
    // The unit's key, not a register key: the row does not exist yet.
    trap.step([&] { txtID->setText(field("ID_NUM")); });
    trap.step([&] { DataCombo3->setText(field("Macchina")); });
    trap.step([&] { DataCombo2->setText(field("Modello")); });
    trap.step([&] { DataCombo1->setText(field("Numerazione")); });
    trap.step([&] { DataCombo4->setText(field("Manutenzione_Tipo")); });
    trap.step([&] { Label16->setCaption(machineCaption(field("Macchina"), field("Modello"), field("Numerazione"))); });
}

} // namespace execution
