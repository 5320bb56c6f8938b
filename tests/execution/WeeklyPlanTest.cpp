// The wall chart: tokens written from the week of Ultima on, and taken out again before
// an edit writes the new positions.
#include "Form7Fixture.h"

#include "execution/WeeklyPlan.h"
#include "reports/ReportViewer.h"
#include "runtime/Clock.h"
#include "runtime/VBFunctions.h"

using execution::Form7;

namespace {

class WeeklyPlan : public Form7Fixture
{
protected:
    /// A hidden register screen pointed at machine number 2 of model 1, with the chart
    /// row made sure of.
    Form7* prepare(const QDate& ultima, const QString& type, int frequency)
    {
        exec("Delete * from Tbl_Planned");
        exec("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione) "
             "VALUES (1, 'PRESSA', 'PM 160', 2, '2')");
        Form7* f = form7();
        f->ID_MOD->setText("1");
        f->ID_NUM->setText("2");
        f->DTPicker1->setValue(vb::Variant::fromDate(ultima));
        f->DataCombo4->setText(type);
        f->txtFrequenza->setText(QString::number(frequency));
        return f;
    }

    /// The chart's cells of the row by week number, only those not empty.
    std::map<int, QString> cells()
    {
        std::map<int, QString> out;
        const auto r = rows("Select * from Tbl_Planned where ID_MODELLO =1 AND ID_NUM=2");
        for (int week = 1; week <= 145; ++week) {
            const vb::Variant& v = r.at(0).at(week + 5);
            if (!v.isNull() && !v.toString().isEmpty())
                out[week] = v.toString();
        }
        return out;
    }
};

} // namespace

TEST_F(WeeklyPlan, TokensLandEveryFrequencyPlusOneWeeksFromTheWeekOfUltima)
{
    // 9 December 2026 is in week 50. A four-week type lands on 50, 55, 60, ... 145:
    // the frequency plus the loop's own step, kept exactly so.
    Form7* f = prepare(QDate(2026, 12, 9), "Mensile", 4);
    ASSERT_EQ(vb::WeekOfYear(QDate(2026, 12, 9)), 50);
    execution::Update_Planned_Row(*f);
    auto c = cells();
    std::vector<int> weeks;
    for (const auto& [w, t] : c) {
        weeks.push_back(w);
        EXPECT_EQ(t, "Men");
    }
    std::vector<int> expected;
    for (int w = 50; w <= 145; w += 5)
        expected.push_back(w);
    EXPECT_EQ(weeks, expected);

    // A second type joins with "/"; a token already in the cell is not written twice.
    f->DataCombo4->setText("Bimestrale");
    f->txtFrequenza->setText("8");
    execution::Update_Planned_Row(*f);
    execution::Update_Planned_Row(*f);
    c = cells();
    EXPECT_EQ(c[50], "Men/Bim");
    EXPECT_EQ(c[55], "Men");
    EXPECT_EQ(c[59], "Bim");

    // A frequency that jumps past the chart at once writes one token only.
    f = prepare(QDate(2026, 12, 9), "Mensile", 200);
    execution::Update_Planned_Row(*f);
    EXPECT_EQ(cells().size(), 1u);
}

TEST_F(WeeklyPlan, FourPrefixesNeverReachTheChartAndShortNamesAreWhole)
{
    // Settimanale, Annuale, Biennale and Trimestrale are "not to be inserted": the program
    // has no other list of them.
    for (const char* type : {"Settimanale", "Annuale", "Biennale", "Trimestrale"}) {
        Form7* f = prepare(QDate(2026, 3, 4), type, 4);
        execution::Update_Planned_Row(*f);
        EXPECT_TRUE(cells().empty()) << type;
    }
    Form7* f = prepare(QDate(2026, 3, 4), "XY", 50);
    execution::Update_Planned_Row(*f);
    const auto c = cells();
    ASSERT_FALSE(c.empty());
    EXPECT_EQ(c.begin()->second, "XY");
}

TEST_F(WeeklyPlan, AnEditTakesOutTheOldAndNewTokensWithoutStraySlashes)
{
    Form7* f = prepare(QDate(2026, 3, 4), "Mensile", 4);
    exec("UPDATE Tbl_Planned SET [10] = 'Men/Bim', [11] = 'Bim/Men', [12] = 'Sem/Men/Bim', [13] = 'Sem/Men/Qua', "
         "[14] = 'Qua'");
    // From Mensile to Bimestrale: every Men and Bim of the row goes, whoever wrote it.
    f->Txt_Man_Tip->setText("Mensile");
    f->DataCombo4->setText("Bimestrale");
    execution::Clear_Planned_Tokens(*f);
    auto c = cells();
    EXPECT_EQ(c.count(10), 0u);
    EXPECT_EQ(c.count(11), 0u);
    EXPECT_EQ(c[12], "Sem");
    EXPECT_EQ(c[13], "Sem/Qua");
    EXPECT_EQ(c[14], "Qua");
    // The scratch copy is rebuilt from the chart at each edit.
    EXPECT_EQ(rows("SELECT * FROM Tbl_Planned_2").size(), 1u);
}

TEST_F(WeeklyPlan, WeekPrintListsTheThreeWeeksAndFailsInWeekOne)
{
    Form7* f = prepare(QDate(2026, 11, 11), "Mensile", 4);
    execution::Update_Planned_Row(*f);
    f->Cmd_Print_Week->click();
    EXPECT_TRUE(reports::IsReportVisible("DataReport12"));
    EXPECT_TRUE(boxes().empty());
    reports::UnloadReport("DataReport12");

    // No wrap at New Year: week 1 names column [0], which does not exist; the plain box
    // shows the error's description and no report opens.
    vb::Clock::freeze(QDateTime(QDate(2027, 1, 1), QTime(8, 0)));
    f->Cmd_Print_Week->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_FALSE(shown[0].prompt.isEmpty());
    EXPECT_FALSE(reports::IsReportVisible("DataReport12"));
}

TEST_F(WeeklyPlan, WholeChartGoesThroughTheReportStore)
{
    Form7* f = prepare(QDate(2026, 11, 11), "Mensile", 4);
    execution::Update_Planned_Row(*f);
    f->Print_Plan->click();
    f->Print_Plan->click(); // the copy in the report store is dropped and made again
    auto rs = store::DataStore::report().Query("SELECT Count(*) AS N FROM Tbl_Planned");
    EXPECT_EQ(rs->Fields("N").Value().toLong(), 1);
    const auto pages = reports::LaidOutPages("Rpt_Planned");
    ASSERT_TRUE(pages && !pages->pages.empty());
    bool found = false;
    for (const auto& t : pages->pages[0])
        found = found || t.text.contains("46: Men");
    EXPECT_TRUE(found);
    reports::UnloadReport("Rpt_Planned");
}
