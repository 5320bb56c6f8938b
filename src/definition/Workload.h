#pragma once
/// @file Workload.h
/// The weekly workload: from the minutes of the steps of an assignment, the hours a week
/// of maintenance brings and the people it takes. The figures are stored in
/// Tbl_Assegna_M and summed into the workload line of frmMain (and of Form9).
///
/// Shared procedures of the screens that change steps or assignments (Form13, Form9);
/// frmMain runs Show_Workload_Total as the last step of its load once the start has
/// installed it (installWorkloadLine).

#include "runtime/Variant.h"

#include <QString>

namespace definition {

/// How the week's duration (Tot_Ore_Sett) is computed.
enum class DurationWidth {
    Wide,    ///< wide values: hours beyond 24, no limit
    Narrow16 ///< Cmd_Inserisci's 16-bit seconds: above 546 minutes a week the text is "00:00:00"
};

/// Where the figures go.
enum class StoreBy {
    Update,   ///< one UPDATE of every figure (the commands)
    Recordset ///< the row change of Form13's DataGrid2: the recordset of the assignment,
              ///< without Tempo_Ore and Tot_Ore_Sett
};

/// The figures of one assignment as Recompute_Workload worked them out.
struct WorkloadFigures
{
    bool found = false;    ///< the assignment has steps; nothing is stored without
    vb::Variant S;         ///< sum of the steps' minutes (Tempo_Minuti)
    vb::Variant K;         ///< Koeff_Settimanale of the type
    vb::Variant N;         ///< numbered units of the model; Empty when it has none
    QString tempoOre;      ///< S as "hh:mm:ss"
    QString minutiSett;    ///< S × K under "##,##0.00"
    QString totMinutiSett; ///< S × N × K under "##,##0.00"
    QString totOreSett;    ///< Tot_Minuti_Sett as "hh:mm:ss"
};

/// Makes Show_Workload_Total the last step of frmMain's load. The program installs it
/// before anything starts frmMain; so does whatever starts frmMain as the program does.
void installWorkloadLine();

/// Recomputes and stores the workload of assignment (m = ID_MODELLO, t = ID_MAINT_TIPO).
/// Every statement carries on after a failure, as the commands' traps do.
WorkloadFigures Recompute_Workload(const vb::Variant& m, const vb::Variant& t,
                                   DurationWidth width = DurationWidth::Wide, StoreBy by = StoreBy::Update);

/// Sums Tot_Minuti_Sett of every assignment and writes the workload line into
/// frmMain.Label1 and, when Form9 is loaded, Form9.Label2.
void Show_Workload_Total();

/// The texts Show_Workload_Total shows.
struct WorkloadTotal
{
    QString time = QStringLiteral("00:00:00"); ///< "00:00:00" also from 24 hours on
    QString persons;                           ///< "" when nothing is assigned
};
/// The time and persons of a week of T minutes (T Null or not above 0: nothing assigned).
WorkloadTotal workloadTotal(const vb::Variant& T);
/// The line of frmMain.Label1 and that of Form9.Label2 (n: Form9.Adodc5's record count).
QString mainWorkloadLine(const WorkloadTotal& total);
QString form9WorkloadLine(int n, const WorkloadTotal& total);

/// The refresh of Tempo_Ore that Form13's load runs: every assignment's Tempo_Minuti
/// as "hh:mm:ss".
void Refresh_Tempo_Ore();

} // namespace definition
