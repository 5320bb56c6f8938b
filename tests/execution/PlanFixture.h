#pragma once
// The register screen pointed at one machine number with its row of the wall chart, and
// the chart's cells read back by week.

#include "Form7Fixture.h"

#include <map>

class PlanFixture : public Form7Fixture
{
protected:
    /// A hidden register screen on machine number 2 of model 1, its chart row made sure
    /// of (and emptied), with Ultima, the type and its frequency as the save leaves them.
    execution::Form7* prepare(const QDate& ultima, const QString& type, int frequency)
    {
        exec("Delete * from Tbl_Planned");
        exec("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione) "
             "VALUES (1, 'PRESSA', 'AX100', 2, '2')");
        execution::Form7* f = form7();
        f->ID_MOD->setText("1");
        f->ID_NUM->setText("2");
        f->DTPicker1->setValue(vb::Variant::fromDate(ultima));
        f->DataCombo4->setText(type);
        f->txtFrequenza->setText(QString::number(frequency));
        return f;
    }

    /// Writes cells of the row by week number.
    void setCells(const std::map<int, QString>& cells)
    {
        for (const auto& [week, text] : cells)
            exec(QStringLiteral("UPDATE Tbl_Planned SET [%1] = '%2' WHERE ID_NUM = 2").arg(week).arg(text));
    }

    /// The row's cells that hold text, by week number.
    std::map<int, QString> cells()
    {
        std::map<int, QString> out;
        const auto r = rows("Select * from Tbl_Planned where ID_MODELLO =1 AND ID_NUM=2");
        for (int week = 1; week <= 145; ++week) {
            const vb::Variant& v = r.at(0).at(size_t(week + 5));
            if (!v.isNull() && !v.displayText().isEmpty())
                out[week] = v.displayText();
        }
        return out;
    }

    static std::vector<int> weeksOf(const std::map<int, QString>& c)
    {
        std::vector<int> weeks;
        for (const auto& [w, t] : c)
            weeks.push_back(w);
        return weeks;
    }
};
