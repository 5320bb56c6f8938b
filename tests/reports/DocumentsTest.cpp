// The 21 documents as they print, each kept whole in tests/data/documents/<name>.txt:
// one line per printed line of text, "page x y [right|centre wWIDTH] [colour N] | text", in twips.
// Each design is fed rows in every column it prints (three parents, the first with two
// children); a few are also shown from a real store or with their run-time texts.
// VELMORA_UPDATE_GOLDEN=1 rewrites the files.
#include "reports/LayoutCatalogue.h"
#include "reports/ReportRender.h"
#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "store/DataStore.h"
#include "support/GoldenFile.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace reports;
using vb::Variant;

namespace {

/// Rows for a design: `parents` parents, the first with two children, the others with
/// none, every bound column holding "{column}{n}" (numbers for the totals' columns).
ReportData sampleData(const ReportLayout& l, int parents = 3)
{
    ReportData d;
    auto addColumn = [](QStringList& cols, const QString& name) {
        if (!cols.contains(name, Qt::CaseInsensitive))
            cols << name;
    };
    QStringList totals;
    for (int s = 0; s < SectionCount; ++s) {
        for (const Control& c : l.band(static_cast<Section>(s)).controls) {
            if (c.dataField.isEmpty())
                continue;
            if (c.kind == ControlKind::Function)
                totals << c.dataField.toLower();
            addColumn(c.kind != ControlKind::Function && !c.dataMember.isEmpty() ? d.childColumns : d.columns,
                      c.dataField);
        }
    }
    auto values = [&](const QStringList& cols, int n) {
        ReportData::Values v;
        for (const QString& c : cols)
            v.push_back(totals.contains(c.toLower()) ? Variant(n + 2) : Variant(c + QString::number(n)));
        return v;
    };
    for (int p = 0; p < parents; ++p) {
        ReportData::Row row;
        row.values = values(d.columns, p);
        if (p == 0 && !d.childColumns.isEmpty())
            row.children = {values(d.childColumns, 10), values(d.childColumns, 11)};
        d.rows.push_back(std::move(row));
    }
    return d;
}

/// The document as golden text: every printed line, top to bottom and left to right.
QString goldenText(const Document& doc)
{
    QStringList out;
    const int total = static_cast<int>(doc.pages.size());
    for (int p = 0; p < total; ++p) {
        std::vector<std::pair<QPoint, QString>> page;
        for (const PlacedItem& it : doc.pages[p].items) {
            if (it.kind != PlacedItem::Kind::Text)
                continue;
            for (int i = 0; i < it.lines.size(); ++i) {
                const QString text = printedLine(it, i, p + 1, total);
                if (text.isEmpty())
                    continue;
                QString attrs;
                if (it.align == Align::Right)
                    attrs += QStringLiteral(" right w%1").arg(it.rect.width());
                else if (it.align == Align::Centre)
                    attrs += QStringLiteral(" centre w%1").arg(it.rect.width());
                if (it.foreColor != 0)
                    attrs += QStringLiteral(" colour %1").arg(it.foreColor);
                page.push_back({QPoint(it.rect.left(), it.rect.top() + i * it.lineHeight), attrs + " | " + text});
            }
        }
        std::stable_sort(page.begin(), page.end(), [](const auto& a, const auto& b) {
            return a.first.y() != b.first.y() ? a.first.y() < b.first.y() : a.first.x() < b.first.x();
        });
        for (const auto& [at, rest] : page)
            out << QStringLiteral("%1 %2 %3").arg(p + 1).arg(at.x()).arg(at.y()) + rest;
    }
    return out.join(u'\n') + u'\n';
}

/// Departments with their machines (one without machines, one machine name too long for
/// its column), parts by category with costs under "Standard", as their screens print them.
const char* const kStoreRows[] = {
    "INSERT INTO Tbl_Reparto (Reparto) VALUES ('ASSEMBLAGGIO')",
    "INSERT INTO Tbl_Reparto (Reparto) VALUES ('ACCETTAZIONE')",
    "INSERT INTO Tbl_Reparto (Reparto) VALUES ('STAMPAGGIO')",
    "INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) "
    "VALUES ('AVVITATORE', 'AV1', 'Attiva', 'ASSEMBLAGGIO', 'Bosco', '2019')",
    "INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) VALUES "
    "('PRESSA IDRAULICA A DOPPIO EFFETTO CON CUSCINO MOBILE', 'PX200', 'Attiva', 'STAMPAGGIO', 'Ferri', '2015')",
    "INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) "
    "VALUES ('TRANCIA', 'TR5', 'Ferma', 'STAMPAGGIO', 'Ferri', '2001')",
    "INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Costo, Giacenza) "
    "VALUES ('CUSCINETTI', 'Cuscinetto 6204', 12.5, 4)",
    "INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Costo, Giacenza) "
    "VALUES ('CUSCINETTI', 'Cuscinetto 6305 a doppia corona di sfere', 1234.5, 2)",
    "INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Costo, Giacenza) "
    "VALUES ('CINGHIE', 'Cinghia A40', 7, 10)",
};

struct StoreCase
{
    const char* golden;
    const char* report;
    const char* statement;
};
const StoreCase kStoreCases[] = {
    {"DataReport8-store", "DataReport8",
     "SHAPE {SELECT Tbl_Reparto.Reparto, Count(Tbl_Macchina.Macchina) AS ConteggioDiMacchina "
     "FROM Tbl_Reparto LEFT JOIN Tbl_Macchina ON Tbl_Reparto.Reparto = Tbl_Macchina.REPARTO "
     "GROUP BY Tbl_Reparto.Reparto;} "
     "APPEND ({SELECT Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
     "Tbl_Macchina.Stato, Tbl_Macchina.Costruttore, Tbl_Macchina.Anno From Tbl_Macchina "
     "GROUP BY Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
     "Tbl_Macchina.Stato, Tbl_Macchina.Costruttore, Tbl_Macchina.Anno "
     "ORDER BY Tbl_Macchina.REPARTO;} RELATE Reparto to Reparto) as Dati"},
    {"DataReport11-store", "DataReport11",
     "SHAPE {SELECT Count(Tbl_Descrizione_Ricambi.Ricambi) AS ConteggioDiRicambi, "
     "Format(Min(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MinDiCosto, "
     "Format(Max(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MaxDiCosto, "
     "Sum(Tbl_Descrizione_Ricambi.Costo) AS SommaDiCosto, Tbl_Descrizione_Ricambi.Ricambi, "
     "Sum(Tbl_Descrizione_Ricambi.Giacenza) AS SommaDiGiacenza From Tbl_Descrizione_Ricambi "
     "GROUP BY Tbl_Descrizione_Ricambi.Ricambi;} APPEND ({SELECT Tbl_Descrizione_Ricambi.Ricambi, "
     "Tbl_Descrizione_Ricambi.Costo, Tbl_Descrizione_Ricambi.Descrizione, "
     "Tbl_Descrizione_Ricambi.Giacenza From Tbl_Descrizione_Ricambi GROUP BY "
     "Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
     "Tbl_Descrizione_Ricambi.Descrizione, Tbl_Descrizione_Ricambi.Giacenza;} "
     "RELATE Ricambi to Ricambi) as Dati"},
};

/// A fresh store in a temporary folder and the clock on 11/11/2026 9:00 (week 46).
class Documents : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        vb::setAppPath(m_dir.path());
        store::DataStore::reset();
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 11), QTime(9, 0)));
    }
    void TearDown() override
    {
        for (const QString& name : LayoutNames())
            UnloadReport(name);
        store::DataStore::reset();
        vb::Clock::unfreeze();
    }
    static QString shown(const QString& report)
    {
        const Document* doc = ReportDocument(report);
        return doc ? goldenText(*doc) : QStringLiteral("(not shown)");
    }
    QTemporaryDir m_dir;
};

class EveryDocument : public Documents, public ::testing::WithParamInterface<QString>
{
};

} // namespace

TEST_P(EveryDocument, PrintsAsItsGoldenFile)
{
    QtTextMeasurer m;
    const ReportLayout l = *MakeLayout(GetParam());
    EXPECT_EQ(l.name, GetParam());
    const Document doc = LayOut(l, sampleData(l), m);
    golden::expectMatches("documents/" + GetParam() + ".txt", goldenText(doc));
    // VELMORA_GOLDEN_PDF=<folder> prints each document there, to look at with the golden.
    if (const QString folder = qEnvironmentVariable("VELMORA_GOLDEN_PDF"); !folder.isEmpty())
        writePdf(doc, folder + "/" + GetParam() + ".pdf", l.title);
    // No rows give a document of headers and footers, not a failure.
    ShowReport(GetParam(), ReportData{});
    const auto pages = LaidOutPages(GetParam());
    ASSERT_TRUE(pages);
    EXPECT_FALSE(pages->pages.empty());
}

INSTANTIATE_TEST_SUITE_P(Reports, EveryDocument, ::testing::ValuesIn(LayoutNames()),
                         [](const auto& info) { return info.param.toStdString(); });

TEST_F(Documents, ShapedFromTheStoreAsTheirGoldenFiles)
{
    for (const char* sql : kStoreRows)
        store::DataStore::instance().Execute(QString::fromUtf8(sql));
    for (const StoreCase& c : kStoreCases) {
        ShowReport(c.report, QString::fromUtf8(c.statement));
        golden::expectMatches(QStringLiteral("documents/%1.txt").arg(c.golden), shown(c.report));
        if (const QString folder = qEnvironmentVariable("VELMORA_GOLDEN_PDF"); !folder.isEmpty())
            WritePdf(c.report, folder + "/" + c.golden + ".pdf");
    }
}

// The week plan's run-time texts (its week and the ones either side) and the date of
// the report header, shown, printed as PDF and closed.
TEST_F(Documents, WeekPlanShownWithItsRunTimeTextsAndPdf)
{
    ReportData data;
    data.columns = {"Macchina", "Modello", "Numerazione", "Week_meno", "Week", "Week_Piu"};
    data.rows.push_back(
        {{Variant("PRESSA"), Variant("AX100"), Variant("2"), Variant(""), Variant("Men"), Variant("")}, {}});
    ShowReport("DataReport12", data);
    golden::expectMatches("documents/DataReport12-shown.txt", shown("DataReport12"));

    const QString pdf = m_dir.filePath("plan.pdf");
    WritePdf("DataReport12", pdf);
    QFile f(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.read(5).startsWith("%PDF"));
    UnloadReport("DataReport12");
    EXPECT_FALSE(IsReportLoaded("DataReport12"));
    EXPECT_FALSE(MakeLayout("DataReport22"));
    EXPECT_EQ(LayoutNames().size(), 21);
}

// The hours of the general procedures print under "#,###.00" in a field the document
// does not show: 1250 hours read "1.250,00", half an hour ",50".
TEST_F(Documents, GeneralProcedureHoursUnderTheirFormat)
{
    for (const char* sql : {"INSERT INTO Tbl_Proc_General_Macc (ID_MODELLO, Macchina, Modello, Tempo_Minuti) "
                            "VALUES (7, 'PRESSA', 'PX200', 75000)",
                            "INSERT INTO Tbl_Proc_General_Macc (ID_MODELLO, Macchina, Modello, Tempo_Minuti) "
                            "VALUES (8, 'TRANCIA', 'TR5', 30)",
                            "INSERT INTO Tbl_Proc_General (ID_MODELLO, Num, Titolo, Procedura, Minuti) "
                            "VALUES (7, 1, 'Olio', 'Controllo livello olio', 20)",
                            "INSERT INTO Tbl_Proc_General (ID_MODELLO, Num, Titolo, Procedura, Minuti) "
                            "VALUES (8, 1, 'Lame', 'Affilatura lame', 30)"})
        store::DataStore::instance().Execute(QString::fromUtf8(sql));
    const ReportLayout layout = *MakeLayout("DataReport6");
    const Control* hours = layout.control("TextBox1");
    ASSERT_TRUE(hours);
    EXPECT_FALSE(hours->visible);
    auto hoursOf = [&](int model) {
        store::Recordset rs;
        rs.Open(QStringLiteral(
                    "SHAPE {SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
                    "Sum(Tbl_Proc_General.Minuti) AS SommaDiMinuti, [Tbl_Proc_General_Macc]![Tempo_Minuti]/60 AS Ore "
                    "FROM Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General ON Tbl_Proc_General_Macc.ID_MODELLO = "
                    "Tbl_Proc_General.ID_MODELLO GROUP BY Tbl_Proc_General_Macc.Macchina, "
                    "Tbl_Proc_General_Macc.Modello, [Tbl_Proc_General_Macc]![Tempo_Minuti]/60, "
                    "Tbl_Proc_General.ID_MODELLO HAVING (((Tbl_Proc_General.ID_MODELLO)=%1));} "
                    "APPEND ({SELECT Tbl_Proc_General_Macc.Macchina, Tbl_Proc_General_Macc.Modello, "
                    "Tbl_Proc_General.Num, Tbl_Proc_General.Titolo, Tbl_Proc_General.Procedura, "
                    "Tbl_Proc_General.Minuti FROM Tbl_Proc_General_Macc INNER JOIN Tbl_Proc_General on "
                    "(Tbl_Proc_General_Macc.ID_MODELLO = Tbl_Proc_General.ID_MODELLO);} "
                    "RELATE Modello to Modello) as Dati")
                    .arg(model));
        for (const BoundBand& b : Bind(layout, ReportData::fromRecordset(rs, true)))
            if (b.section == Section::GroupHeader)
                for (size_t i = 0; i < b.band->controls.size(); ++i)
                    if (&b.band->controls[i] == hours)
                        return b.texts[i];
        return QStringLiteral("(no group)");
    };
    EXPECT_EQ(hoursOf(7), "1.250,00");
    EXPECT_EQ(hoursOf(8), ",50");
}

// Every fixed text of every design prints whole: a heading wider than its place would
// lose its last words, since only growing controls take more lines.
TEST(DocumentDesigns, EveryFixedTextPrintsWhole)
{
    QtTextMeasurer m;
    for (const QString& name : LayoutNames()) {
        const ReportLayout l = *MakeLayout(name);
        for (int s = 0; s < SectionCount; ++s) {
            for (const Control& c : l.band(static_cast<Section>(s)).controls) {
                if (c.kind != ControlKind::Label || !c.visible || c.caption.isEmpty())
                    continue;
                QString caption = c.caption;
                caption.replace("%p", "99").replace("%P", "99");
                const int fit = c.canGrow ? 99 : std::max(1, c.height / m.lineHeight(c.font));
                EXPECT_LE(wrapText(caption, c.width, c.font, m, false).size(), fit)
                    << name.toStdString() << " " << c.name.toStdString() << " \"" << c.caption.toStdString() << "\"";
            }
        }
    }
}

TEST(DocumentDesigns, PdfHasOnePagePerLaidOutPage)
{
    QtTextMeasurer m;
    const ReportLayout l = *MakeLayout("DataReport9");
    const Document doc = LayOut(l, sampleData(l), m);
    QTemporaryDir dir;
    const QString path = dir.filePath("r9.pdf");
    ASSERT_TRUE(writePdf(doc, path, l.title));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray pdf = f.readAll();
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_EQ(pdf.count("/Type /Page\n"), 3);
    // A folder that does not exist gives false, not a half-written file.
    EXPECT_FALSE(writePdf(doc, dir.filePath("missing/r9.pdf")));
}

// A line of text is painted where drawing it in its rectangle would put it: from the
// left, up to the right with its trailing blank, centred, and with a tab (drawn in its
// rectangle, where the tab prints as a blank).
TEST(DocumentDesigns, LinesPaintWhereTheirRectanglesPutThem)
{
    const std::pair<const char*, Align> lines[] = {{"MACCHINA:", Align::Left}, {"FORNITORE: ", Align::Right},
                                                   {"N°:", Align::Right},      {"LISTA RICAMBI", Align::Centre},
                                                   {"Q.Tà\t12", Align::Left},  {"Pagina 1 di 1", Align::Centre}};
    Page page;
    int top = 0;
    for (const auto& [text, align] : lines) {
        PlacedItem it;
        it.rect = QRect(283, top += 300, 2001, 255);
        it.lines = {QString::fromUtf8(text)};
        it.lineHeight = 255;
        it.align = align;
        it.font = Font{top % 600 ? 180 : 280, align != Align::Left};
        page.items.push_back(it);
    }
    auto painted = [&](auto paint) {
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter p(&image);
        p.scale(0.3, 0.3);
        paint(p);
        return image;
    };
    const QImage inRectangles = painted([&](QPainter& p) {
        for (const PlacedItem& it : page.items) {
            p.setFont(qtFont(it.font));
            const auto align = it.align == Align::Right    ? Qt::AlignRight
                               : it.align == Align::Centre ? Qt::AlignHCenter
                                                           : Qt::AlignLeft;
            p.drawText(it.rect, align | Qt::AlignTop | Qt::TextDontClip, it.lines.front());
        }
    });
    EXPECT_TRUE(painted([&](QPainter& p) { paintPage(p, page, 1, 1); }) == inRectangles);
}
