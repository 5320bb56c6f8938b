#include "execution/WeeklyPlan.h"

#include "controls/Controls.h"
#include "execution/Form7.h"
#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"
#include "store/Batch.h"
#include "store/DataStore.h"

#include <QFileInfo>

namespace execution {

using vb::Trap;
using vb::Variant;

namespace {

constexpr int FirstWeekColumn = 6;
constexpr int LastWeekColumn = 150;

/// The machine's row of the chart, and of its scratch copy.
QString plannedRow(Form7& form)
{
    return QStringLiteral("Select * from Tbl_Planned where ID_MODELLO =") + vb::KeyText(form.ID_MOD->Text()) +
           QStringLiteral(" AND ID_NUM=") + vb::KeyText(form.ID_NUM->Text());
}

QString plannedCopyRow(Form7& form)
{
    return QStringLiteral("Select * from Tbl_Planned_2 where ID_MODELLO =") + vb::KeyText(form.ID_MOD->Text()) +
           QStringLiteral(" AND ID_NUM=") + vb::KeyText(form.ID_NUM->Text());
}

/// InStr's test as the cell check makes it: nothing is found in an empty cell, and an
/// empty token is found in any other.
bool occursIn(const QString& cell, const QString& t)
{
    return !cell.isEmpty() && cell.contains(t);
}

/// The token of a type: its first three characters (the whole name when shorter).
QString token(const QString& typeName)
{
    return typeName.left(3);
}

/// These types are handled as not to be inserted; the chart has no other list of them.
bool neverOnChart(const QString& t)
{
    return t == QLatin1String("Set") || t == QLatin1String("Ann") || t == QLatin1String("Bie") ||
           t == QLatin1String("Tri");
}

void finishProgress(Form7& form)
{
    form.Lbl_ProgressBar->setVisible(false);
    form.Shape1->setVisible(false);
    form.Label1->setVisible(true);
}

} // namespace

void Update_Planned_Row(Form7& form)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        const QDate ultima = vb::dateFromSerial(form.DTPicker1->Value().toDate().serial);
        form.Txt_Week->setText(QString::number(vb::WeekOfYear(ultima)));
    });
    store::Recordset rs;
    trap.step([&] { rs.Open(plannedRow(form)); });

    int x = 0;
    trap.step([&] { x = int(vb::Val(form.Txt_Week->Text())) + 5; });
    store::Batch batch;
    while (x > 0 && x <= LastWeekColumn) {
        trap.step([&] { form.Txt_Db->setText(rs.Fields(x).Value()); });
        store::Recordset fresh;
        trap.step([&] { fresh.Open(plannedRow(form)); });
        const QString t = token(form.DataCombo4->Text());
        // A substring test: the token found anywhere in the cell counts as there.
        form.TXT->setText(occursIn(form.Txt_Db->Text(), t) ? QStringLiteral("ESISTE") : QStringLiteral("MANCA"));
        if (neverOnChart(t))
            form.TXT->setText(QStringLiteral("NON INSERIRE"));
        if (form.TXT->Text() == QLatin1String("MANCA")) {
            const QString cell = form.Txt_Db->Text();
            trap.step([&] { fresh.Fields(x) = cell.isEmpty() ? t : cell + QStringLiteral("/") + t; });
            trap.step([&] { fresh.UpdateBatch(); });
        }
        form.Txt_Db->setText(QString());
        // The frequency and then the loop's own step: two tokens of a type lie
        // Frequenza_Sett + 1 weeks apart (W, W+5, W+10 for four weeks). Kept exactly so.
        int step = 0;
        trap.step([&] { step = vb::Variant(form.txtFrequenza->Text()).toInteger(); });
        // A frequency below zero would never reach the chart's end: the row ends there.
        if (step < 0)
            break;
        x += step + 1;
        if (!form.Shape1->isHidden()) {
            if (form.ProgressBar1->Value() == 100)
                finishProgress(form);
            else
                form.raiseProgress(trap, 1.7, QStringLiteral("Final Procedure..."));
        }
    }
}

void Clear_Planned_Tokens(Form7& form)
{
    Trap trap = Trap::ignoreAll();
    // The scratch copy is made anew at each edit; its drop fails harmlessly on a first run.
    trap.step([&] { store::DataStore::instance().Execute(QStringLiteral("Drop Table Tbl_Planned_2")); });
    trap.step([&] {
        store::DataStore::instance().Execute(
            QStringLiteral("SELECT Tbl_Planned.* INTO Tbl_Planned_2 FROM Tbl_Planned;"));
    });
    store::Batch batch;
    for (int x = FirstWeekColumn; x <= LastWeekColumn; ++x) {
        QString c;
        {
            store::Recordset copy;
            trap.step([&] { copy.Open(plannedCopyRow(form)); });
            trap.step([&] { c = copy.Fields(x).Value().toString(); });
        }
        store::Recordset rs;
        trap.step([&] { rs.Open(plannedRow(form)); });
        const QString o = token(form.Txt_Man_Tip->Text());
        const QString n = token(form.DataCombo4->Text());
        // This order leaves no stray "/" whether the token stood first, last or between;
        // bare substrings go, so the same three letters elsewhere in the cell go too.
        // With no type name "/" + O is a bare "/", and every "/" of the cell goes.
        for (const QString& t : {o, n}) {
            c.replace(QStringLiteral("/") + t, QString());
            c.replace(t + QStringLiteral("/"), QString());
            if (!t.isEmpty())
                c.replace(t, QString());
        }
        trap.step([&] { rs.Fields(x) = c; });
        trap.step([&] { rs.UpdateBatch(); });

        if (form.ProgressBar1->Value() == 100) {
            finishProgress(form);
        } else {
            const QString text = x <= 15   ? QStringLiteral("Start Procedure ...")
                                 : x <= 35 ? QStringLiteral("Eliminazione dati obsoletei in corso... ")
                                 : x < 70  ? QStringLiteral("Rielabora Planned in corso... ")
                                           : QStringLiteral("Creazione Nuovo Planned in corso... ");
            form.raiseProgress(trap, 0.5, text);
        }
    }
}

void Print_Week()
{
    const int w = vb::WeekOfYear(vb::Clock::today());
    const QString before = QString::number(w - 1), week = QString::number(w), after = QString::number(w + 1);
    const QString statement =
        QStringLiteral("SELECT Tbl_Planned.Macchina, Tbl_Planned.Modello, Tbl_Planned.Numerazione, Tbl_Planned.[") +
        before + QStringLiteral("] AS Week_meno, Tbl_Planned.[") + week + QStringLiteral("] AS Week, Tbl_Planned.[") +
        after + QStringLiteral("] AS Week_Piu From Tbl_Planned Where (((Tbl_Planned.[") + before +
        QStringLiteral("]) <> '') Or ((Tbl_Planned.[") + week + QStringLiteral("]) <> '') Or ((Tbl_Planned.[") + after +
        QStringLiteral("]) <> '')) ORDER BY Tbl_Planned.Modello, Val(Numerazione);");
    try {
        reports::ShowOptions options;
        options.placement = reports::Placement::ScreenCentred;
        reports::ShowReport(QStringLiteral("DataReport12"), statement, options);
    } catch (const vb::VBError& e) {
        vb::MsgBox(e.description());
    }
}

void Print_Plan()
{
    // The report store lies beside the main one (on a server, its second schema); without
    // it nothing is copied or shown.
    const QString path = vb::AppFile(QStringLiteral("RPT_Velmora.sqlite"));
    if (store::DataStore::server().isEmpty() && (path.isEmpty() || !QFileInfo::exists(path)))
        return;
    Trap trap = Trap::ignoreAll();
    trap.step([&] { store::DataStore::report().Execute(QStringLiteral("Drop TABLE Tbl_Planned")); });
    bool copied = false;
    trap.step([&] {
        store::DataStore::instance().Execute(QStringLiteral("SELECT * INTO Tbl_Planned IN ") + QLatin1Char('"') + path +
                                             QLatin1Char('"') + QStringLiteral("FROM Tbl_Planned"));
        copied = true;
    });
    if (!copied)
        return;
    // The print reads the copy in the report store, as the chart's print always did.
    trap.step([&] {
        auto rs = store::DataStore::report().Query(
            QStringLiteral("SELECT * FROM Tbl_Planned ORDER BY Macchina, Modello, Val(Numerazione)"));
        reports::ShowOptions options;
        options.placement = reports::Placement::ScreenCentred;
        reports::ShowReport(QStringLiteral("Rpt_Planned"), reports::ReportData::fromRecordset(*rs, false), options);
    });
}

} // namespace execution
