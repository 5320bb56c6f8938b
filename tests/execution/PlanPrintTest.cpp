// The chart's two prints: the three weeks around today, and the whole chart through the
// report store.
#include "reports/ChartPrint.h"
#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/VBFunctions.h"
#include "support/RegisterTest.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>

using execution::Form7;

namespace {

class PlanPrint : public RegisterTest
{
protected:
    void TearDown() override
    {
        reports::UnloadReport("Rpt_Planned");
        RegisterTest::TearDown();
    }

    /// A chart row of a machine number with its cells by week.
    void chartRow(int idNum, const char* machine, const char* model, const char* number,
                  const std::map<int, QString>& weeks)
    {
        exec(QStringLiteral("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione) "
                            "VALUES (1, '%1', '%2', %3, '%4')")
                 .arg(QString::fromUtf8(machine), QString::fromUtf8(model))
                 .arg(idNum)
                 .arg(QString::fromUtf8(number)));
        for (const auto& [week, text] : weeks)
            exec(QStringLiteral("UPDATE Tbl_Planned SET [%1] = '%2' WHERE ID_NUM = %3").arg(week).arg(text).arg(idNum));
    }

    static std::vector<reports::PlacedText> page(const reports::LaidOutReport& r, size_t i) { return r.pages.at(i); }

    /// The texts of a page in reading order.
    static QStringList texts(const std::vector<reports::PlacedText>& page)
    {
        QStringList out;
        for (const auto& t : page)
            out << t.text;
        return out;
    }

    /// The texts standing at x on a page, top to bottom.
    static QStringList column(const std::vector<reports::PlacedText>& page, int x)
    {
        QStringList out;
        for (const auto& t : page)
            if (t.x == x)
                out << t.text;
        return out;
    }

    /// Where a text first stands on a page; a failure when it is not there.
    static reports::PlacedText find(const std::vector<reports::PlacedText>& page, const QString& text)
    {
        for (const auto& t : page)
            if (t.text == text)
                return t;
        ADD_FAILURE() << "no \"" << text.toStdString() << "\" on the page";
        return {-1, -1, {}};
    }
};

} // namespace

TEST_F(PlanPrint, WeekPrintListsTheThreeWeeksAroundTodayByModelAndNumber)
{
    const int w = vb::WeekOfYear(today());
    ASSERT_EQ(w, 47);
    exec("Delete * from Tbl_Planned");
    chartRow(10, "TORNIO", "T200", "10", {{w, "Men"}});
    chartRow(2, "TORNIO", "T200", "2", {{w - 1, "Bim"}, {w + 1, "Men/Bim"}});
    chartRow(3, "PRESSA", "AX100", "7", {{w + 2, "Men"}}); // outside the three weeks
    chartRow(4, "FRESA", "F10", "1", {{w, ""}});           // an empty text is no maintenance
    form7()->Cmd_Print_Week->click();
    EXPECT_TRUE(boxes().empty());
    ASSERT_TRUE(reports::IsReportVisible("DataReport12"));

    const auto r = reports::LaidOutPages("DataReport12");
    ASSERT_TRUE(r && r->pages.size() == 1);
    const QStringList t = texts(r->pages[0]);
    EXPECT_TRUE(t.contains("MANUTENZIONI SETTIMANA N° 47") && t.contains("N° Settimane"))
        << "the heading over the week columns prints whole";
    // The week labels before, of and after the week, over their columns.
    const auto before = find(r->pages[0], "46"), week = find(r->pages[0], "47"), after = find(r->pages[0], "48");
    EXPECT_TRUE(before.x < week.x && week.x < after.x);
    // By model, then by the numeric value of the number: 2 before 10.
    const auto two = find(r->pages[0], "2"), ten = find(r->pages[0], "10");
    EXPECT_LT(two.y, ten.y);
    EXPECT_FALSE(t.contains("PRESSA") || t.contains("FRESA"));
    EXPECT_EQ(find(r->pages[0], "Men/Bim").x, after.x);
    EXPECT_EQ(find(r->pages[0], "Bim").x, before.x);

    // Nine tenths of the screen, centred.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect g = reports::ReportWindow("DataReport12")->geometry();
    EXPECT_EQ(QList<int>({g.width(), g.height(), g.center().x()}),
              QList<int>({screen.width() * 9 / 10, screen.height() * 9 / 10, screen.center().x()}));
}

TEST_F(PlanPrint, WeekOneNamesColumnZeroAndShowsTheErrorsDescription)
{
    // No wrap at New Year: in week 1 the statement names column [0], which the chart does
    // not have. The statement fails, a plain box shows the error's description, and no
    // report opens. Kept: the program never carried week numbers into a new year.
    vb::Clock::freeze(QDateTime(QDate(2027, 1, 1), QTime(8, 0)));
    ASSERT_EQ(vb::WeekOfYear(vb::Clock::today()), 1);
    QString expected;
    try {
        store::DataStore::instance().Query(
            "SELECT Tbl_Planned.Macchina, Tbl_Planned.Modello, Tbl_Planned.Numerazione, Tbl_Planned.[0] AS "
            "Week_meno, Tbl_Planned.[1] AS Week, Tbl_Planned.[2] AS Week_Piu From Tbl_Planned Where "
            "(((Tbl_Planned.[0]) <> '') Or ((Tbl_Planned.[1]) <> '') Or ((Tbl_Planned.[2]) <> '')) ORDER BY "
            "Tbl_Planned.Modello, Val(Numerazione);");
    } catch (const vb::VBError& e) {
        expected = e.description();
    }
    ASSERT_FALSE(expected.isEmpty()) << "the statement of week 1 must fail";

    form7()->Cmd_Print_Week->click();
    EXPECT_BOX(oneBox(), "VELMORA", expected, 0);
    EXPECT_FALSE(reports::IsReportLoaded("DataReport12"));

    // The last week of December reads weeks 52 to 54, which only rows of the old year filled.
    vb::Clock::freeze(QDateTime(QDate(2026, 12, 30), QTime(8, 0)));
    exec("Delete * from Tbl_Planned");
    chartRow(2, "PRESSA", "AX100", "2", {{54, "Men"}});
    form7()->Cmd_Print_Week->click();
    EXPECT_TRUE(boxes().empty());
    const auto r = reports::LaidOutPages("DataReport12");
    ASSERT_TRUE(r);
    const QStringList t = texts(r->pages.at(0));
    EXPECT_TRUE(t.contains("MANUTENZIONI SETTIMANA N° 53") && t.contains("Men"));
}

TEST_F(PlanPrint, WholeChartPrintsEveryWeekInSlicesOnLandscapePages)
{
    exec("Delete * from Tbl_Planned");
    chartRow(2, "PRESSA", "AX100", "2", {{10, "Men"}, {16, "Men/Bim"}, {145, "Sem"}});
    chartRow(1, "PRESSA", "AX100", "1", {});
    Form7* f = form7();
    f->Print_Plan->click();
    f->Print_Plan->click(); // the copy in the report store is dropped and made again
    EXPECT_TRUE(boxes().empty());
    auto rs = store::DataStore::report().Query("SELECT Count(*) AS N FROM Tbl_Planned");
    EXPECT_EQ(rs->Fields("N").Value().toLong(), 2);

    ASSERT_TRUE(reports::IsReportVisible("Rpt_Planned"));
    const reports::Document* doc = reports::ReportDocument("Rpt_Planned");
    ASSERT_TRUE(doc);
    EXPECT_GT(doc->pageWidth, doc->pageHeight);
    const auto r = reports::LaidOutPages("Rpt_Planned");
    ASSERT_TRUE(r);
    // 145 weeks, 15 to a page: ten slices, one page each for two machine numbers.
    ASSERT_EQ(r->pages.size(), 10u);

    // Every page repeats the machine columns and carries the week numbers of its slice;
    // a token stands under its week's number; every row prints, also an empty one.
    const auto first = page(*r, 0);
    EXPECT_TRUE(texts(first).contains("PLANNED MANUTENZIONI"));
    EXPECT_EQ(find(first, "Men").x, find(first, "10").x);
    EXPECT_EQ(texts(first).count("PRESSA"), 2);
    EXPECT_EQ(column(first, find(first, "N°").x), (QStringList{"N°", "1", "2"})) << "by machine, model, number";
    EXPECT_FALSE(texts(first).contains("16"));

    const auto second = page(*r, 1);
    EXPECT_TRUE(!texts(second).contains("PLANNED MANUTENZIONI") && texts(second).contains("MACCHINA"));
    EXPECT_EQ(texts(second).count("PRESSA"), 2);
    EXPECT_EQ(find(second, "Men/Bim").x, find(second, "16").x);
    EXPECT_EQ(find(second, "30").x, find(first, "15").x);

    const auto last = page(*r, 9);
    EXPECT_EQ(find(last, "Sem").x, find(last, "145").x);
    EXPECT_TRUE(texts(last).contains("Pagina 10 di 10"));

    // The same pages as PDF, on A4 turned on its side.
    const QString pdf = QDir(vb::AppPath()).filePath("chart.pdf");
    reports::WritePdf("Rpt_Planned", pdf);
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF"));
    const auto m = QRegularExpression(R"(/MediaBox \[0 0 ([\d.]+) ([\d.]+)\])").match(QString::fromLatin1(bytes));
    ASSERT_TRUE(m.hasMatch());
    EXPECT_GT(m.captured(1).toDouble(), m.captured(2).toDouble());
}

TEST_F(PlanPrint, WholeChartShowsNothingWithoutTheReportStore)
{
    // A new program folder has its report store beside the main one.
    store::DataStore::instance();
    const QString report = QDir(vb::AppPath()).filePath("RPT_Velmora.sqlite");
    ASSERT_TRUE(QFileInfo::exists(report));

    // Without it nothing is copied and nothing shows; the chart stays as it was.
    store::DataStore::reset();
    ASSERT_TRUE(QFile::remove(report));
    exec("Delete * from Tbl_Planned");
    chartRow(2, "PRESSA", "AX100", "2", {{10, "Men"}});
    form7()->Print_Plan->click();
    EXPECT_FALSE(reports::IsReportLoaded("Rpt_Planned"));
    EXPECT_FALSE(QFileInfo::exists(report));
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(value("SELECT [10] FROM Tbl_Planned").displayText(), "Men");
}
