#include "definition/Workload.h"

#include "runtime/DateTexts.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "shell/frmMain.h"
#include "store/DataStore.h"

namespace definition {

using vb::Variant;

namespace {

const QString WeekPattern = QStringLiteral("##,##0.00");
const QString PersonsPattern = QStringLiteral("##,##0.0");
/// Minutes of one person's working week (40 hours).
constexpr double PersonWeekMinutes = 2400.0;
/// What a duration shows when its seconds could not be worked out: the seconds stay at 0.
const QString NoDuration = QStringLiteral("00:00:00");

/// A key on its way into a statement: through a 16-bit integer, back to plain decimal text.
QString key(const Variant& v)
{
    return vb::CInt(v).toString();
}

/// A value joined into statement text as VB's "&" joins it (Null gives nothing).
QString text(const Variant& v)
{
    return vb::Concat(Variant(QString()), v).toString();
}

/// VB's "*" on Variants: Null spreads, Empty counts as 0.
Variant times(const Variant& a, const Variant& b)
{
    if (a.isNull() || b.isNull())
        return Variant::null();
    return Variant((a.isEmpty() ? 0.0 : a.toDouble()) * (b.isEmpty() ? 0.0 : b.toDouble()));
}

} // namespace

void installWorkloadLine()
{
    shell::setWorkloadTotal([] { Show_Workload_Total(); });
}

WorkloadFigures Recompute_Workload(const Variant& m, const Variant& t, DurationWidth width, StoreBy by)
{
    WorkloadFigures f;
    vb::Trap trap = vb::Trap::ignoreAll();
    QString mKey, tKey;
    trap.step([&] { mKey = key(m); });
    trap.step([&] { tKey = key(t); });

    store::Recordset sum;
    trap.step([&] {
        sum.Open(QStringLiteral("SELECT Sum(Tbl_ProcedureM.Minuti) AS SommaDiMinuti, Tbl_Maint_Tipo.Koeff_Settimanale "
                                "FROM Tbl_Macchina INNER JOIN (Tbl_Maint_Tipo INNER JOIN Tbl_ProcedureM ON "
                                "Tbl_Maint_Tipo.ID_MAINT_TIPO = Tbl_ProcedureM.ID_MAINT_TIPO) ON "
                                "Tbl_Macchina.ID_MODELLO = Tbl_ProcedureM.ID_MODELLO GROUP BY "
                                "Tbl_Maint_Tipo.Koeff_Settimanale, Tbl_ProcedureM.ID_MODELLO, "
                                "Tbl_ProcedureM.ID_MAINT_TIPO Having Tbl_ProcedureM.ID_MODELLO = ") +
                 mKey + QStringLiteral(" And Tbl_ProcedureM.ID_MAINT_TIPO = ") + tKey);
        f.found = !sum.Eof();
    });
    if (!f.found)
        return f; // no steps: nothing is stored
    trap.step([&] { f.S = sum.Fields(QStringLiteral("SommaDiMinuti")).Value(); });
    trap.step([&] { f.K = sum.Fields(QStringLiteral("Koeff_Settimanale")).Value(); });

    // N stays Empty when the model has no units, and the week's products become 0.
    trap.step([&] {
        store::Recordset units;
        units.Open(QStringLiteral("SELECT Tbl_Assegna_M.ID_MODELLO, Tbl_Assegna_M.ID_MAINT_TIPO, "
                                  "Count(Tbl_Numerazione.Numerazione) AS ConteggioDiNumerazione FROM "
                                  "Tbl_Numerazione INNER JOIN Tbl_Assegna_M ON Tbl_Numerazione.ID_MODELLO = "
                                  "Tbl_Assegna_M.ID_MODELLO GROUP BY Tbl_Assegna_M.ID_MODELLO, "
                                  "Tbl_Assegna_M.ID_MAINT_TIPO HAVING Tbl_Assegna_M.ID_MODELLO= ") +
                   mKey + QStringLiteral(" AND Tbl_Assegna_M.ID_MAINT_TIPO= ") + tKey);
        if (!units.Eof())
            f.N = units.Fields(QStringLiteral("ConteggioDiNumerazione")).Value();
    });

    trap.step([&] { f.minutiSett = vb::Format(times(f.S, f.K), WeekPattern).toString(); });
    trap.step([&] { f.totMinutiSett = vb::Format(times(times(f.S, f.N), f.K), WeekPattern).toString(); });

    // The week's total enters as its formatted text, read back under Italian settings.
    f.totOreSett = NoDuration;
    if (width == DurationWidth::Narrow16)
        trap.step([&] { f.totOreSett = vb::DurationText16(vb::CDbl(f.totMinutiSett).toDouble()); });
    else
        trap.step([&] { f.totOreSett = vb::DurationText(vb::CDbl(f.totMinutiSett).toDouble()); });
    f.tempoOre = NoDuration;
    trap.step([&] { f.tempoOre = vb::DurationText(f.S.toDouble()); });

    if (by == StoreBy::Update) {
        trap.step([&] {
            store::Run(QStringLiteral("UPDATE Tbl_Assegna_M SET Tbl_Assegna_M.Tempo_Minuti = ") + text(f.S) +
                       QStringLiteral(", Tbl_Assegna_M.Tempo_Ore = '") + f.tempoOre +
                       QStringLiteral("', Tbl_Assegna_M.Minuti_Sett = '") + f.minutiSett +
                       QStringLiteral("', Tbl_Assegna_M.Num_Macchine= '") + text(f.N) +
                       QStringLiteral("', Tbl_Assegna_M.Tot_Minuti_Sett= '") + f.totMinutiSett +
                       QStringLiteral("', Tbl_Assegna_M.Tot_Ore_Sett= '") + f.totOreSett +
                       QStringLiteral("' Where Tbl_Assegna_M.ID_MODELLO = ") + mKey +
                       QStringLiteral(" And Tbl_Assegna_M.ID_MAINT_TIPO = ") + tKey);
        });
        return f;
    }

    store::Recordset row;
    bool opened = trap.step([&] {
        row.Open(QStringLiteral("SELECT Tbl_Assegna_M.ID_MODELLO, Tbl_Assegna_M.ID_MAINT_TIPO, "
                                "Tbl_Assegna_M.Tempo_Minuti, Tbl_Assegna_M.Minuti_Sett, Tbl_Assegna_M.Tot_Ore_Sett, "
                                "Tbl_Assegna_M.Num_Macchine, Tbl_Assegna_M.Minuti_Sett, "
                                "Tbl_Assegna_M.Tot_Minuti_Sett From Tbl_Assegna_M WHERE "
                                "Tbl_Assegna_M.ID_MODELLO = ") +
                 mKey + QStringLiteral(" And Tbl_Assegna_M.ID_MAINT_TIPO = ") + tKey);
    });
    if (!opened || row.Eof())
        return f;
    trap.step([&] { row.Fields(QStringLiteral("Tempo_Minuti")) = f.S; });
    trap.step([&] { row.Fields(QStringLiteral("Minuti_Sett")) = f.minutiSett; });
    trap.step([&] { row.Fields(QStringLiteral("Num_Macchine")) = f.N; });
    trap.step([&] { row.Fields(QStringLiteral("Tot_Minuti_Sett")) = f.totMinutiSett; });
    trap.step([&] { row.UpdateBatch(); });
    return f;
}

WorkloadTotal workloadTotal(const Variant& T)
{
    WorkloadTotal total;
    if (T.isNull() || T.isEmpty() || !(T.toDouble() > 0))
        return total;
    const double minutes = T.toDouble();
    // The time goes through a date conversion that takes only a time of day: from 24
    // hours on it fails and the time stays at midnight, 00:00:00.
    try {
        const double serial = vb::CDate(vb::DurationText(minutes)).toDouble();
        total.time = vb::fromSerial(serial).time().toString(QStringLiteral("hh:mm:ss"));
    } catch (const vb::VBError&) {
    }
    // One person is the floor; above it one decimal, not rounded up to whole people.
    const double persons = minutes / PersonWeekMinutes;
    total.persons = persons <= 1 ? QStringLiteral("1") : vb::Format(persons, PersonsPattern).toString();
    return total;
}

QString mainWorkloadLine(const WorkloadTotal& total)
{
    return QStringLiteral("Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss ") + total.time +
           QStringLiteral(" -Persone Necessarie: ") + total.persons + QStringLiteral("]");
}

QString form9WorkloadLine(int n, const WorkloadTotal& total)
{
    return QStringLiteral("N° ") + QString::number(n) + QStringLiteral(" Macchine    [-Ore Settimanali: hh:mm:ss ") +
           total.time + QStringLiteral(" -Persone Necessarie: ") + total.persons + QStringLiteral("]");
}

void Show_Workload_Total()
{
    vb::Trap trap = vb::Trap::ignoreAll();
    Variant T;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Sum(Tbl_Assegna_M.Tot_Minuti_Sett) AS SommaDiTot_Minuti_Sett FROM "
                               "Tbl_Assegna_M;"));
        if (!rs.Eof())
            T = rs.Fields(QStringLiteral("SommaDiTot_Minuti_Sett")).Value();
    });
    WorkloadTotal total;
    trap.step([&] { total = workloadTotal(T); });

    shell::ScreenRegistry& screens = shell::screens();
    // Form9's line only while Form9 is open: the total does not bring it into being.
    if (vb::Form* form9 = screens.loaded(QStringLiteral("Form9"))) {
        trap.step([&] {
            int n = 0;
            if (vb::Control* adodc = form9->control(QStringLiteral("Adodc5")))
                n = adodc->vbProperty(QStringLiteral("RecordCount")).toLong();
            if (vb::Control* label = form9->control(QStringLiteral("Label2")))
                label->setVbProperty(QStringLiteral("Caption"), form9WorkloadLine(n, total));
        });
    }
    if (vb::Form* main = screens.loaded(QStringLiteral("frmMain"))) {
        trap.step([&] {
            if (vb::Control* label = main->control(QStringLiteral("Label1")))
                label->setVbProperty(QStringLiteral("Caption"), mainWorkloadLine(total));
        });
    }
}

void Refresh_Tempo_Ore()
{
    vb::Trap trap = vb::Trap::ignoreAll();
    store::Recordset rs;
    if (!trap.step([&] { rs.Open(QStringLiteral("SELECT ID, Tempo_Minuti, Tempo_Ore FROM Tbl_Assegna_M;")); }))
        return;
    while (!rs.Eof()) {
        // A row whose minutes are missing keeps the Tempo_Ore it has.
        trap.step([&] {
            const QString tempoOre = vb::DurationText(rs.Fields(QStringLiteral("Tempo_Minuti")).Value().toDouble());
            store::Run(QStringLiteral("UPDATE Tbl_Assegna_M SET Tbl_Assegna_M.Tempo_Ore = '") + tempoOre +
                       QStringLiteral("' WHERE ID = ") + rs.Fields(QStringLiteral("ID")).Value().toString());
        });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
}

} // namespace definition
