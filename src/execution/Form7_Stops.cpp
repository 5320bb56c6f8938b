// Machine stops: the stop record of a machine number, its stop and restart, the list of
// stopped machines, and the push of the schedule by the days stopped at every load.
#include "execution/Form7.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/VBFunctions.h"
#include "store/Batch.h"
#include "store/DataStore.h"

#include <cmath>

namespace execution {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;

namespace {

/// VB's Integer: every result of the shift's arithmetic is held in 16 bits.
std::int16_t int16(long long value)
{
    if (value < -32768 || value > 32767)
        throw vb::VBError(err::Overflow);
    return std::int16_t(value);
}

/// DateDiff("d", from, to): the midnights between the two dates.
long long daysBetween(const Variant& from, const Variant& to)
{
    return static_cast<long long>(std::floor(to.toDate().serial) - std::floor(from.toDate().serial));
}

/// A stop date counts only as "dd/mm/yyyy": ten characters.
bool isStopDate(const Variant& fermaDal)
{
    return !fermaDal.isNull() && vb::CStr(fermaDal).toString().size() == 10;
}

/// VB's "+" on a counter read from the record: Null stays Null.
Variant addTo(const Variant& counter, long long amount)
{
    if (counter.isNull())
        return Variant::null();
    return Variant(static_cast<std::int64_t>(vb::CDbl(counter).toDouble() + double(amount)));
}

} // namespace

// ---- display --------------------------------------------------------------------------

void Form7::Show_Stop_State(bool fromStoppedList)
{
    Trap trap = Trap::ignoreAll();
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("SELECT * From Tbl_Fermi_Macchina WHERE ID_NUM=") + ID_NUM->Text()); });
    bool eof = true;
    trap.step([&] { eof = rs.Eof(); });
    if (eof)
        return; // the panel stays as Clear_Fields left it
    Variant fermaDal;
    trap.step([&] { fermaDal = rs.Fields(QStringLiteral("Ferma_Dal")).Value(); });
    if (!isStopDate(fermaDal)) {
        // Running.
        for (QWidget* w : std::initializer_list<QWidget*>{Frame2, DTPicker3, Cmd_Confirm, Cmd_Avviamento, DTPicker4})
            w->setVisible(false);
        return;
    }
    for (QWidget* w : std::initializer_list<QWidget*>{Frame2, DTPicker3, DTPicker6, Cmd_Confirm, Cmd_Avviamento})
        w->setVisible(true);
    trap.step([&] { DTPicker3->setValue(fermaDal); });
    trap.step([&] { DTPicker6->setValue(fermaDal); });
    if (fromStoppedList)
        Frame2->raise();
    trap.step([&] {
        const Variant numero = rs.Fields(QStringLiteral("Numero_Stop")).Value();
        if (numero.isNull() || numero.isEmpty() || numero.toString().isEmpty()) {
            Txt_Day_Stop->setText(QStringLiteral("0"));
            return;
        }
        const long long days = daysBetween(fermaDal, vb::Today());
        if (numero.toDouble() <= 1)
            Txt_Day_Stop->setText(Variant(static_cast<std::int64_t>(days)));
        else
            Txt_Day_Stop->setText(addTo(rs.Fields(QStringLiteral("TOT_Giorni_Stop")).Value(), days));
    });
    trap.step([&] { Txt_Numero_Stop->setText(rs.Fields(QStringLiteral("Numero_Stop")).Value()); });
}

// ---- the shift on load ----------------------------------------------------------------

void Form7::Apply_Stop_Shift()
{
    // Every fault goes on with the next statement, except an overflow of the 16-bit
    // arithmetic, which ends the load.
    Trap trap = Trap::ignoreAll();
    trap.on(err::Overflow, [] { throw vb::VBError(err::Overflow); });

    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral(
            "SELECT Tbl_Maintenance.ID, Tbl_Maintenance.ID_NUM, Tbl_Fermi_Macchina.Ferma_Dal, "
            "Tbl_Fermi_Macchina.Giorni_Stop, Tbl_Fermi_Macchina.TOT_Giorni_Stop, Tbl_Fermi_Macchina.Numero_Stop, "
            "Tbl_Maintenance.Ultima, Tbl_Maintenance.Prossima, Tbl_Maintenance.Frequenza_Sett, "
            "Tbl_Fermi_Macchina.ID_MAINT_TIPO FROM Tbl_Fermi_Macchina INNER JOIN Tbl_Maintenance ON "
            "(Tbl_Fermi_Macchina.ID_NUM = Tbl_Maintenance.ID_NUM) AND (Tbl_Fermi_Macchina.ID_MAINT_TIPO = "
            "Tbl_Maintenance.ID_MAINT_TIPO);"));
    });

    // Declared once for the walk, as the old procedure's variables were: a value that
    // cannot be read keeps the one of the row before.
    std::int16_t idNum = 0, frequenza = 0, tot = 0, g = 0, d = 0;
    Variant ultima, id, giorni, numero, fermaDal;
    auto field = [&rs](const QString& name) { return rs.Fields(name).Value(); };

    bool eof = true;
    trap.step([&] { eof = rs.Eof(); });
    store::Batch batch;
    while (!eof) {
        trap.step([&] { idNum = field(QStringLiteral("ID_NUM")).toInteger(); });
        trap.step([&] { frequenza = field(QStringLiteral("Frequenza_Sett")).toInteger(); });
        trap.step([&] { tot = field(QStringLiteral("TOT_Giorni_Stop")).toInteger(); });
        trap.step([&] { ultima = Variant(field(QStringLiteral("Ultima")).toDate()); });
        trap.step([&] { id = field(QStringLiteral("ID")); });
        trap.step([&] { giorni = field(QStringLiteral("Giorni_Stop")); });
        trap.step([&] { numero = field(QStringLiteral("Numero_Stop")); });
        trap.step([&] { fermaDal = field(QStringLiteral("Ferma_Dal")); });

        trap.step([&] { g = isStopDate(fermaDal) ? int16(daysBetween(vb::CDate(fermaDal), vb::Today())) : tot; });
        // A running machine after more than one stop counts its total twice: g is the
        // total already, and the total is added again.
        trap.step([&] {
            if (numero.isNull())
                return;
            if (numero.toDouble() <= 1)
                d = int16(g + int16(frequenza * 7));
            else if (numero.toDouble() > 1)
                d = int16(int16(g + tot) + int16(frequenza * 7));
        });
        trap.step([&] {
            DTPicker5->setValue(
                vb::Format(Variant(vb::JetDate{ultima.toDate().serial + d}), QStringLiteral("dd/mm/yyyy")));
        });
        trap.step([&] { rs.MoveNext(); });

        trap.step([&] {
            store::Recordset row;
            row.Open(QStringLiteral("Select * From Tbl_Maintenance WHERE ID = ") + id.toString());
            row.Fields(QStringLiteral("Prossima")) = DTPicker5->Value();
            row.UpdateBatch();
        });
        trap.step([&] {
            store::Recordset update;
            update.Open(QStringLiteral("UPDATE Tbl_Fermi_Macchina SET GIORNI_STOP = ") + QString::number(g) +
                        QStringLiteral(" WHERE ID_NUM = ") + QString::number(idNum));
        });
        eof = true;
        trap.step([&] { eof = rs.Eof(); });
    }
}

// ---- stop and restart -------------------------------------------------------------------

void Form7::Cmd_Stop_Click()
{
    Trap trap = Trap::ignoreAll();
    if (!DTPicker3->isHidden()) {
        for (QWidget* w : std::initializer_list<QWidget*>{Frame2, DTPicker6, DTPicker3, Cmd_Confirm})
            w->setVisible(false);
        return;
    }
    for (QWidget* w : std::initializer_list<QWidget*>{Frame2, DTPicker6, DTPicker3, Cmd_Confirm})
        w->setVisible(true);
    trap.step([&] { DTPicker3->setValue(vb::Today()); });
    trap.step([&] { DTPicker6->setValue(vb::Today()); });
}

void Form7::Cmd_Avviamento_Click()
{
    Trap trap = Trap::ignoreAll();
    if (!DTPicker4->isHidden()) {
        DTPicker4->setVisible(false);
        return;
    }
    DTPicker4->setVisible(true);
    trap.step([&] { DTPicker4->setValue(vb::Today()); });
}

void Form7::Cmd_Confirm_Click()
{
    Trap trap = Trap::ignoreAll();
    std::int16_t id = 0, idNum = 0;
    trap.step([&] { id = Variant(txtID->Text()).toInteger(); });
    trap.step([&] { idNum = Variant(ID_NUM->Text()).toInteger(); });
    Q_UNUSED(id)
    const bool restart = !DTPicker4->isHidden();

    // The record is looked up by the machine number alone, once per maintenance of the
    // machine: each of them adds its share again to the one record, so a machine with
    // three types counts a stop three times. That is how the counters are meant to rise.
    auto walk = [&](const std::function<void(store::Recordset&, const Variant& tipo, bool isNew)>& write) {
        store::Recordset rs;
        trap.step(
            [&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance where ID_NUM =") + QString::number(idNum)); });
        bool eof = true;
        trap.step([&] { eof = rs.Eof(); });
        while (!eof) {
            Variant tipo;
            trap.step([&] { tipo = rs.Fields(QStringLiteral("ID_MAINT_TIPO")).Value(); });
            trap.step([&] { rs.MoveNext(); });
            store::Recordset stop;
            trap.step([&] {
                stop.Open(QStringLiteral("Select * From Tbl_Fermi_Macchina where ID_NUM=") + QString::number(idNum));
            });
            bool isNew = false;
            trap.step([&] {
                if (stop.Eof()) {
                    stop.AddNew();
                    isNew = true;
                }
            });
            write(stop, tipo, isNew);
            trap.step([&] { stop.UpdateBatch(); });
            eof = true;
            trap.step([&] { eof = rs.Eof(); });
        }
    };
    // A new record's counters start from their column default, 0.
    auto counter = [](store::Recordset& stop, const char* name, bool isNew) {
        const Variant v = stop.Fields(QString::fromLatin1(name)).Value();
        return isNew && v.isNull() ? Variant(0) : v;
    };

    if (restart) {
        const QString date = DTPicker4->Value().toString();
        if (vb::MsgBox(QStringLiteral("Confermi L'Avviamento di questa Macchina in data ") + date + QStringLiteral("?"),
                       vb::mb::YesNo + vb::mb::Question,
                       QStringLiteral("MACCHINA RIAVVIATE IL **") + date + QStringLiteral("**")) == vb::answer::Yes) {
            walk([&](store::Recordset& stop, const Variant& tipo, bool isNew) {
                store::WriteFields(trap, stop,
                                   {{"Ferma_Dal", Variant::null()},
                                    {"Giorni_Stop", 0},
                                    {"ID_NUM", Variant::fromInteger(idNum)},
                                    {"ID_MAINT_TIPO", tipo}});
                trap.step([&] {
                    stop.Fields(QStringLiteral("TOT_Giorni_Stop")) = addTo(
                        counter(stop, "TOT_Giorni_Stop", isNew), daysBetween(DTPicker3->Value(), DTPicker4->Value()));
                });
            });
        }
    } else {
        const QString date = DTPicker3->Value().toString();
        if (vb::MsgBox(QStringLiteral("Confermi La Fermata di questa Macchina in data ") + date + QStringLiteral("?"),
                       vb::mb::YesNo + vb::mb::Question,
                       QStringLiteral("FERMATA MACCHINA DAL **") + date + QStringLiteral("**")) == vb::answer::Yes) {
            walk([&](store::Recordset& stop, const Variant& tipo, bool isNew) {
                store::WriteFields(trap, stop,
                                   {{"Ferma_Dal", DTPicker3->Value()},
                                    {"ID_NUM", Variant::fromInteger(idNum)},
                                    {"Giorni_Stop", 0},
                                    {"ID_MAINT_TIPO", tipo}});
                trap.step([&] {
                    stop.Fields(QStringLiteral("Numero_Stop")) = addTo(counter(stop, "Numero_Stop", isNew), 1);
                });
            });
        }
    }
    // Answering No writes nothing, and the screen reloads all the same.
    Reload();
}

void Form7::Cmd_Chiudi_Click()
{
    Frame2->setVisible(false);
}

void Form7::DTPicker3_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DTPicker6->setValue(DTPicker3->Value()); });
}

void Form7::DTPicker6_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DTPicker3->setValue(DTPicker6->Value()); });
}

// ---- the list of stopped machines -------------------------------------------------------

void Form7::Command3_Click()
{
    Refresh_Grid_Stopped();
}

void Form7::Refresh_Grid_Stopped()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Frame3->setVisible(true); });
    trap.step([&] {
        Adodc8->setRecordSource(QStringLiteral(
            "SELECT Tbl_Fermi_Macchina.Ferma_Dal, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
            "Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione FROM Tbl_Macchina INNER JOIN (Tbl_Numerazione "
            "INNER JOIN Tbl_Fermi_Macchina ON Tbl_Numerazione.ID_NUM = Tbl_Fermi_Macchina.ID_NUM) ON "
            "Tbl_Macchina.ID_MODELLO = Tbl_Numerazione.ID_MODELLO GROUP BY Tbl_Fermi_Macchina.Ferma_Dal, "
            "Tbl_Macchina.Macchina, Tbl_Macchina.Modello, Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione "
            "Having (((Tbl_Fermi_Macchina.Ferma_Dal) Is Not Null)) ORDER BY val(Tbl_Numerazione.Numerazione);"));
        Adodc8->Refresh();
    });
    struct Layout
    {
        const char* caption;
        int width;
    };
    static const Layout columns[] = {
        {"FERMA DAL", 1100}, {"MACCHINA", 2500}, {"MODELLO", 2900}, {nullptr, 0}, {"N°", 600}};
    for (int i = 0; i < 5; ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid3->Columns(i);
            if (columns[i].caption)
                c.setCaption(QString::fromUtf8(columns[i].caption));
            c.setWidth(columns[i].width);
            c.setLocked(true);
        });
    }
    trap.step([&] {
        Frame3->setCaption(QStringLiteral("Sono ") + QString::number(Adodc8->RecordCount()) +
                           QStringLiteral(" le Macchine Ferme"));
    });
}

void Form7::Lbl_CHIUDI_Click()
{
    Frame3->setVisible(false);
}

} // namespace execution
