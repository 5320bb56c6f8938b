// Recording a maintenance as done, and the notes of a machine.
#include "execution/Form7.h"
#include "runtime/MsgBox.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace execution {

using vb::Trap;
using vb::Variant;

namespace {

/// The picker's value as text in a message or a statement, as VB's "&" turns a date.
QString shown(const vb::DTPicker* picker)
{
    return picker->Value().toString();
}

} // namespace

void Form7::Cmd_Eseguita_Click()
{
    // Nothing selected: txtID is empty and reading it as a number is a type mismatch.
    Trap trap = Trap::ignoreAll();
    trap.on(vb::err::TypeMismatch, [] {
        vb::MsgBox(QStringLiteral("Non è stata selezinata nessuna Manutenzione!!"), vb::mb::Exclamation,
                   QStringLiteral("MANCANZA DATI"));
    });
    std::int16_t id = 0;
    trap.step([&] { id = Variant(txtID->Text()).toInteger(); });
    if (trap.ended())
        return;

    const QString date = shown(DTPicker2);
    if (vb::MsgBox(QStringLiteral("Confermi questa Manutenzione eseguita in data ") + date +
                       QStringLiteral("? Se la data non corrisponde modifica 'Prossima'"),
                   vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("MANUTENZIONE ESEGUITA IL **") + date + QStringLiteral("**")) == vb::answer::No)
        return;

    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance where ID =") + QString::number(id)); });
        trap.step([&] {
            if (ID_OPERATORE->Text().isEmpty())
                ID_OPERATORE->setText(QStringLiteral("0"));
        });
        // The schedule is anchored on the day the work was done.
        trap.step([&] { rs.Fields(QStringLiteral("Ultima")) = DTPicker2->Value(); });
        trap.step([&] {
            rs.Fields(QStringLiteral("Prossima")) = Variant(
                vb::JetDate{DTPicker2->Value().toDate().serial + vb::CDbl(txtFrequenza->Text()).toDouble() * 7});
        });
        store::WriteFields(trap, rs, {{"Operatore", DataCombo5->Text()}, {"ID_Operatore", ID_OPERATORE->Text()}});
        trap.step([&] { rs.UpdateBatch(); });
    }
    if (trap.ended())
        return;
    trap.step([&] { DTPicker2->setVisible(false); });

    // The stop record of this type goes with its counters. The plan is not touched: its
    // tokens follow the row only at the next save.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("DELETE * from Tbl_Fermi_Macchina where ID_MAINT_TIPO =") + ID_MAINT->Text() +
                QStringLiteral(" And ID_NUM= ") + ID_NUM->Text());
    });
    if (trap.ended())
        return;

    if (vb::MsgBox(QStringLiteral("Vuoi inserire delle Note sulla manutenzione appena eseguita?"),
                   vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("INSERISCI NOTA MANUTENZIONE ESEGUITA IL **") + date + QStringLiteral("**")) ==
        vb::answer::No) {
        Reload();
        return;
    }
    writeNoteRow(trap, Variant::fromInteger(id), true);
    // The register stays as it is, not reloaded: the list shows the old dates until the
    // next refresh.
    openNotes(trap);
}

void Form7::Cmd_Add_Note_Click()
{
    Trap trap = Trap::ignoreAll();
    Variant id;
    trap.step([&] { id = Variant::fromInteger(Variant(txtID->Text()).toInteger()); });
    writeNoteRow(trap, id, false);
    openNotes(trap);
}

void Form7::writeNoteRow(Trap& trap, const Variant& idMaintenance, bool withType)
{
    // One row per machine number and date, compared as text: a second note of the same
    // day overwrites the first's keys, whichever type it was.
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note where ID_MODELLO = ") + ID_MOD->Text() +
                QStringLiteral(" AND ID_NUM= ") + ID_NUM->Text() + QStringLiteral(" AND Ultima = '") +
                shown(DTPicker2) + QStringLiteral("'"));
    });
    bool exists = false;
    trap.step([&] { exists = !rs.Eof(); });
    if (!exists) {
        trap.step([&] {
            rs.Close();
            rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note"));
        });
        trap.step([&] { rs.AddNew(); });
    }
    store::WriteFields(trap, rs,
                       {{"Ultima", DTPicker2->Value()},
                        {"ID_MAINTENANCE", idMaintenance},
                        {"ID_MODELLO", ID_MOD->Text()},
                        {"ID_NUM", ID_NUM->Text()},
                        {"ID_Operatore", ID_OPERATORE->Text()}});
    if (withType)
        trap.step([&] { rs.Fields(QStringLiteral("Tipo_Nota")) = QStringLiteral("Manutenzione"); });
    trap.step([&] { rs.UpdateBatch(); });
    if (exists) {
        trap.step([&] { rs.UpdateBatch(); });
        trap.step([&] { rs.Close(); });
    }
}

void Form7::openNotes(Trap& trap)
{
    auto hand = [&](const char* control, const char* property, const Variant& value) {
        trap.step([&] {
            if (vb::Control* c = shell::screens().control(QStringLiteral("Form3"), QString::fromLatin1(control)))
                c->setVbProperty(QString::fromLatin1(property), value);
        });
    };
    hand("Txt_ID_MODELLO", "Text", ID_MOD->Text());
    hand("Txt_DATA", "Text", shown(DTPicker2));
    hand("Txt_ID_NUM", "Text", ID_NUM->Text());
    hand("DTPicker2", "Value", DTPicker2->Value());
    trap.step([] { shell::screens().show(QStringLiteral("Form3")); });
}

} // namespace execution
