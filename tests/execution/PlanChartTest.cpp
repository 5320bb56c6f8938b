// The wall chart: tokens written from the week of Ultima on, and taken out again before
// an edit writes the new positions.
#include "execution/WeeklyPlan.h"
#include "runtime/VBFunctions.h"
#include "support/Fields.h"
#include "support/RegisterTest.h"

using execution::Form7;

namespace {

std::vector<int> weeksFrom(int first, int step, int last = 145)
{
    std::vector<int> out;
    for (int w = first; w <= last; w += step)
        out.push_back(w);
    return out;
}

// The register screen pointed at machine number 2 of model 1 with its row of the wall
// chart, and the chart's cells read back by week.
class PlanChart : public RegisterTest
{
protected:
    /// A hidden register screen on machine number 2 of model 1, its chart row made sure
    /// of (and emptied), with Ultima, the type and its frequency as the save leaves them.
    Form7* prepare(const QDate& ultima, const QString& type, int frequency)
    {
        exec("Delete * from Tbl_Planned");
        exec("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione) "
             "VALUES (1, 'PRESSA', 'AX100', 2, '2')");
        Form7* f = form7();
        f->ID_MOD->setText("1");
        f->ID_NUM->setText("2");
        f->DTPicker1->setValue(vb::Variant::fromDate(ultima));
        f->DataCombo4->setText(type);
        f->txtFrequenza->setText(QString::number(frequency));
        return f;
    }

    /// The same, its tokens then written from the week of Ultima on.
    Form7* written(const QDate& ultima, const QString& type, int frequency)
    {
        Form7* f = prepare(ultima, type, frequency);
        execution::Update_Planned_Row(*f);
        return f;
    }

    /// Writes cells of the row by week number.
    static void setCells(const std::map<int, QString>& cells)
    {
        for (const auto& [week, text] : cells)
            exec(QStringLiteral("UPDATE Tbl_Planned SET [%1] = '%2' WHERE ID_NUM = 2").arg(week).arg(text));
    }

    /// The row's cells that hold text, by week number.
    static std::map<int, QString> cells()
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

} // namespace

TEST_F(PlanChart, TokensLandEveryFrequencyPlusOneWeeksFromTheWeekOfUltima)
{
    // 4 March 2026 is in week 10. A four-week type lands on weeks 10, 15, 20, ...: the
    // frequency plus the loop's own step. Kept exactly so, though the type is every 4 weeks.
    written(QDate(2026, 3, 4), "Mensile", 4);
    auto c = cells();
    EXPECT_EQ(weeksOf(c), weeksFrom(10, 5));
    EXPECT_EQ(c[10], "Men");
    EXPECT_EQ(c[145], "Men") << "position 150 is the last column and is written";

    // Ultima in week 50: positions 55, 60, ... 150, i.e. weeks 50, 55, ... 145.
    written(QDate(2026, 12, 9), "Mensile", 4);
    EXPECT_EQ(weeksOf(cells()), weeksFrom(50, 5));

    // A frequency that jumps past the chart at once writes just one token; so does a
    // week near the end with any frequency.
    written(QDate(2026, 12, 9), "Mensile", 200);
    EXPECT_EQ(weeksOf(cells()), std::vector<int>{50});
    written(QDate(2026, 12, 30), "Mensile", 95);
    EXPECT_EQ(weeksOf(cells()), (std::vector<int>{53})) << "30 December 2026 is week 53; the next would be 149";

    // A frequency of 0 still moves one week a time: the loop's own step.
    written(QDate(2026, 12, 9), "Mensile", 0);
    EXPECT_EQ(cells().size(), 96u);
}

TEST_F(PlanChart, ASecondTypeJoinsWithASlashAndATokenAlreadyThereIsNotRepeated)
{
    Form7* f = written(QDate(2026, 3, 4), "Mensile", 4);
    f->DataCombo4->setText("Bimestrale");
    f->txtFrequenza->setText("8");
    execution::Update_Planned_Row(*f);
    execution::Update_Planned_Row(*f); // "ESISTE" everywhere: nothing written again
    auto c = cells();
    EXPECT_EQ((QStringList{c[10], c[15], c[19]}), QStringList({"Men/Bim", "Men", "Bim"}));
    // The scratch cell Txt_Db is emptied after each column.
    EXPECT_EQ(kit::texts({f->TXT, f->Txt_Db, f->Txt_Week}), QStringList({"ESISTE", "", "10"}));

    // The cell test is a substring test: "Men" counts as there inside a longer text, so
    // a type whose token hides in another's writes nothing in that cell.
    f = prepare(QDate(2026, 3, 4), "Mensile", 200);
    setCells({{10, "XMenX"}});
    execution::Update_Planned_Row(*f);
    EXPECT_EQ(cells()[10], "XMenX");
}

TEST_F(PlanChart, FourPrefixesNeverReachTheChartAndShortNamesAreWhole)
{
    // Settimanale, Annuale, Biennale and Trimestrale are "not to be inserted", even into
    // an empty cell; the program has no other list of them. A name merely holding those
    // letters later on is not kept off.
    for (const char* type : {"Settimanale", "Annuale", "Biennale", "Trimestrale"}) {
        Form7* f = written(QDate(2026, 3, 4), type, 4);
        EXPECT_TRUE(cells().empty()) << type;
        EXPECT_EQ(f->TXT->Text(), "NON INSERIRE") << type;
    }
    written(QDate(2026, 3, 4), "Semestrale", 200);
    EXPECT_EQ(cells()[10], "Sem");

    // A name shorter than three characters is its own token.
    written(QDate(2026, 3, 4), "XY", 50);
    EXPECT_EQ(cells()[10], "XY");
}

TEST_F(PlanChart, AnEditTakesOutTheOldAndNewTokensInItsOrderWithoutStraySlashes)
{
    Form7* f = prepare(QDate(2026, 3, 4), "Bimestrale", 8);
    // Old type first, last, between, alone; the new type likewise; other tokens stay.
    setCells({{1, "Men/Bim"},
              {2, "Bim/Men"},
              {3, "Sem/Men/Qua"},
              {4, "Men"},
              {5, "Qua/Bim"},
              {6, "Sem/Qua"},
              {145, "Qua/Men/Bim/Sem"}});
    f->Txt_Man_Tip->setText("Mensile");
    execution::Clear_Planned_Tokens(*f);
    EXPECT_EQ(cells(), (std::map<int, QString>{{3, "Sem/Qua"}, {5, "Qua"}, {6, "Sem/Qua"}, {145, "Qua/Sem"}}));
    // The scratch copy is rebuilt from the chart at each edit.
    EXPECT_EQ(rows("SELECT * FROM Tbl_Planned_2").size(), 1u);

    // Then the new positions: Bim from the week of Ultima every nine weeks.
    execution::Update_Planned_Row(*f);
    auto c = cells();
    EXPECT_EQ((QStringList{c[10], c[19], c[3]}), QStringList({"Bim", "Bim", "Sem/Qua"}));

    // The tokens of another maintenance of the same machine with the same prefix go too.
    // The removal works on bare substrings: a two-letter token eats those letters
    // wherever they stand in the cell ("XY" out of "XYZ/Men" leaves "Z/Men").
    f = prepare(QDate(2026, 3, 4), "Bimestrale", 8);
    setCells({{20, "XYZ/Men"}});
    f->Txt_Man_Tip->setText("XY");
    execution::Clear_Planned_Tokens(*f);
    EXPECT_EQ(cells()[20], "Z/Men");

    // With no old type name the first removal is of a bare "/": every slash of the row
    // goes and the remaining tokens run together. Kept as the removal always worked.
    f = prepare(QDate(2026, 3, 4), "Bimestrale", 8);
    setCells({{20, "Men/Sem"}, {21, "Men/Bim/Sem"}});
    f->Txt_Man_Tip->setText("");
    execution::Clear_Planned_Tokens(*f);
    EXPECT_EQ(cells(), (std::map<int, QString>{{20, "MenSem"}, {21, "MenSem"}}));
}

TEST_F(PlanChart, TheProgressGroupFollowsTheWork)
{
    Form7* f = prepare(QDate(2026, 3, 4), "Mensile", 4);
    f->Shape1->setVisible(true);
    f->Lbl_ProgressBar->setVisible(true);
    f->Label1->setVisible(false);
    f->ProgressBar1->setValue(0);

    // Half a point per column, the text by the column reached: the last band's text.
    execution::Clear_Planned_Tokens(*f);
    EXPECT_DOUBLE_EQ(f->ProgressBar1->Value(), 72.5);
    EXPECT_EQ(f->Lbl_ProgressBar->Caption(), "Creazione Nuovo Planned in corso... 72,5%");
    EXPECT_EQ(f->Shape1->Width(), 7231) << "72.5 x 9975 / 100 through \"##.00\"";

    // 1.7 a token while the shape shows. The bar cannot pass 100, so the rise that would
    // take it over is refused and the bar stays just below: the save sets 100 itself.
    execution::Update_Planned_Row(*f);
    EXPECT_NEAR(f->ProgressBar1->Value(), 99.7, 1e-9);
    EXPECT_EQ(f->Lbl_ProgressBar->Caption(), "Final Procedure...99,7%");
    EXPECT_FALSE(f->Shape1->isHidden());

    // At 100 the group hides and the count line comes back.
    f->ProgressBar1->setValue(95);
    execution::Clear_Planned_Tokens(*f);
    EXPECT_EQ((std::array{f->Shape1->isHidden(), f->Lbl_ProgressBar->isHidden(), f->Label1->isHidden()}),
              (std::array{true, true, false}));

    // With the group hidden (a new row's save) the bar does not move.
    f->ProgressBar1->setValue(0);
    execution::Update_Planned_Row(*f);
    EXPECT_EQ(f->ProgressBar1->Value(), 0);
}

TEST_F(PlanChart, SavingOnTheRegisterWritesTheChart)
{
    // The whole road: a new row's save fills the chart; an edit to another type takes
    // the old tokens out and writes the new ones from the week of Ultima.
    Form7* f = form7();
    f->Cmd_Add->click();
    f->DataCombo3->setText("PRESSA");
    f->DataCombo2->setText("AX100");
    f->DataCombo1->setText("2");
    f->DataCombo4->setText("Mensile");
    f->DTPicker1->setValue(vb::Variant::fromDate(QDate(2026, 3, 4)));
    f->Cmd_Edit->click();
    auto c = cells();
    EXPECT_EQ(weeksOf(c), weeksFrom(10, 5));

    f = form7();
    const int id = value("SELECT ID FROM Tbl_Maintenance WHERE ID_NUM = 2").toLong();
    selectRow(f, id);
    f->DataCombo4->setText("Bimestrale");
    answer({vb::answer::Yes});
    f->Cmd_Edit->click();
    c = cells();
    EXPECT_EQ(weeksOf(c), weeksFrom(10, 9));
    EXPECT_EQ(c[10], "Bim");
}
