// Shaped documents fed from a real store: the rows written with the program's own Jet
// statements, read back through a SHAPE command and shown by the one show function.
#include "reports/LayoutCatalogue.h"
#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "store/DataStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace reports;

namespace {

constexpr int Margin = 283; // the left margin every design is offset by

class StoreDocuments : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        vb::setAppPath(m_dir.path());
        store::DataStore::reset();
    }

    void TearDown() override
    {
        for (const QString& name : LayoutNames())
            UnloadReport(name);
        store::DataStore::reset();
    }

    void exec(const QString& jet) { store::DataStore::instance().Execute(jet); }

    /// The first page's texts of a shown report, top to bottom.
    static std::vector<PlacedText> page(const QString& report, size_t n = 0)
    {
        const auto laidOut = LaidOutPages(report);
        if (!laidOut || laidOut->pages.size() <= n) {
            ADD_FAILURE() << report.toStdString() << " has no page " << n;
            return {};
        }
        return laidOut->pages[n];
    }

    static QStringList texts(const std::vector<PlacedText>& page)
    {
        QStringList out;
        for (const PlacedText& t : page)
            out << t.text;
        return out;
    }

    static const PlacedText* at(const std::vector<PlacedText>& page, const QString& text, int from = 0)
    {
        for (size_t i = static_cast<size_t>(from); i < page.size(); ++i)
            if (page[i].text == text)
                return &page[i];
        return nullptr;
    }

private:
    QTemporaryDir m_dir;
};

} // namespace

// Departments with their machines: the department without machines still has its header
// and footer, the footer counts over every department, and a machine name too long for
// its column wraps and pushes the rows and the footer below it down.
TEST_F(StoreDocuments, DepartmentsWithEmptyGroupsTotalsAndGrowingNames)
{
    for (const char* r : {"ASSEMBLAGGIO", "ACCETTAZIONE", "STAMPAGGIO"})
        exec(QStringLiteral("INSERT INTO Tbl_Reparto (Reparto) VALUES ('%1')").arg(QLatin1String(r)));
    const QString longName = QStringLiteral("PRESSA IDRAULICA A DOPPIO EFFETTO CON CUSCINO MOBILE");
    exec(QStringLiteral("INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) "
                        "VALUES ('AVVITATORE', 'AV1', 'Attiva', 'ASSEMBLAGGIO', 'Bosco', '2019')"));
    exec(QStringLiteral("INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) "
                        "VALUES ('%1', 'PX200', 'Attiva', 'STAMPAGGIO', 'Ferri', '2015')")
             .arg(longName));
    exec(QStringLiteral("INSERT INTO Tbl_Macchina (Macchina, Modello, Stato, REPARTO, Costruttore, Anno) "
                        "VALUES ('TRANCIA', 'TR5', 'Ferma', 'STAMPAGGIO', 'Ferri', '2001')"));

    // The machines screen's child rows, under departments read from their own table.
    ShowReport(QStringLiteral("DataReport8"),
        QStringLiteral("SHAPE {SELECT Tbl_Reparto.Reparto, Count(Tbl_Macchina.Macchina) AS ConteggioDiMacchina "
                       "FROM Tbl_Reparto LEFT JOIN Tbl_Macchina ON Tbl_Reparto.Reparto = Tbl_Macchina.REPARTO "
                       "GROUP BY Tbl_Reparto.Reparto;} "
                       "APPEND ({SELECT Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                       "Tbl_Macchina.Stato, Tbl_Macchina.Costruttore, Tbl_Macchina.Anno From Tbl_Macchina "
                       "GROUP BY Tbl_Macchina.REPARTO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                       "Tbl_Macchina.Stato, Tbl_Macchina.Costruttore, Tbl_Macchina.Anno "
                       "ORDER BY Tbl_Macchina.REPARTO;} RELATE Reparto to Reparto) as Dati"));
    const auto p = page(QStringLiteral("DataReport8"));
    const QStringList t = texts(p);

    // The empty department, the first of all: its header, its column headings, then at
    // once its footer with the count 0 (bound under the print's own spelling of it).
    const int empty = static_cast<int>(t.indexOf(QStringLiteral("ACCETTAZIONE")));
    ASSERT_GT(empty, 0);
    EXPECT_EQ(t[empty - 1], QStringLiteral("REPARTO:"));
    EXPECT_EQ(t.mid(empty + 1, 9),
        (QStringList{"MACCHINA", "Modello", "Costruttore", "Stato", "Anno", "TOTALE MACCHINE", "ACCETTAZIONE", "0",
            "REPARTO:"}));

    // The report footer sums the counts of all three departments.
    const int total = static_cast<int>(t.indexOf(QStringLiteral("TOTALE MACCHINE IN TUTTI I REPARTI:")));
    ASSERT_GE(total, 0);
    EXPECT_EQ(t[total + 1], QStringLiteral("3"));

    // The long name takes several lines at the left; TRANCIA's row starts below the last
    // of them, and the department's footer below TRANCIA.
    QStringList nameLines;
    int firstLine = -1, lastLine = -1;
    for (const PlacedText& x : p) {
        if (x.x != Margin || !longName.contains(x.text) || (firstLine < 0 && !x.text.startsWith(u"PRESSA")))
            continue;
        nameLines << x.text;
        firstLine = firstLine < 0 ? x.y : firstLine;
        lastLine = x.y;
    }
    EXPECT_GE(nameLines.size(), 3) << nameLines.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(nameLines.join(QLatin1Char(' ')), longName);
    const PlacedText* model = at(p, QStringLiteral("PX200"));
    ASSERT_TRUE(model);
    EXPECT_EQ(model->y, firstLine);
    const PlacedText* next = at(p, QStringLiteral("TRANCIA"));
    ASSERT_TRUE(next);
    EXPECT_GT(next->y, lastLine);
    EXPECT_EQ(at(p, QStringLiteral("TR5"))->y, next->y);
    const int footerAt = static_cast<int>(t.lastIndexOf(QStringLiteral("TOTALE MACCHINE")));
    EXPECT_GT(p[footerAt].y, next->y);
    EXPECT_EQ(t[footerAt + 1], QStringLiteral("STAMPAGGIO"));
    EXPECT_EQ(t[footerAt + 2], QStringLiteral("2"));
}

// The parts by category as the parts screen prints them: the costs come from the
// statement already under "Standard"; the footer counts the categories and sums their
// parts.
TEST_F(StoreDocuments, PartsByCategoryWithStandardCostsAndFooterTotals)
{
    auto part = [&](const char* category, const char* description, const char* cost, int stock) {
        exec(QStringLiteral("INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Costo, Giacenza) "
                            "VALUES ('%1', '%2', %3, %4)")
                 .arg(QLatin1String(category), QLatin1String(description), QLatin1String(cost))
                 .arg(stock));
    };
    part("CUSCINETTI", "Cuscinetto 6204", "12.5", 4);
    part("CUSCINETTI", "Cuscinetto 6305 a doppia corona di sfere", "1234.5", 2);
    part("CINGHIE", "Cinghia A40", "7", 10);

    ShowReport(QStringLiteral("DataReport11"),
        QStringLiteral("SHAPE {SELECT Count(Tbl_Descrizione_Ricambi.Ricambi) AS ConteggioDiRicambi, "
                       "Format(Min(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MinDiCosto, "
                       "Format(Max(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MaxDiCosto, "
                       "Sum(Tbl_Descrizione_Ricambi.Costo) AS SommaDiCosto, Tbl_Descrizione_Ricambi.Ricambi, "
                       "Sum(Tbl_Descrizione_Ricambi.Giacenza) AS SommaDiGiacenza From Tbl_Descrizione_Ricambi "
                       "GROUP BY Tbl_Descrizione_Ricambi.Ricambi;} APPEND ({SELECT Tbl_Descrizione_Ricambi.Ricambi, "
                       "Tbl_Descrizione_Ricambi.Costo, Tbl_Descrizione_Ricambi.Descrizione, "
                       "Tbl_Descrizione_Ricambi.Giacenza From Tbl_Descrizione_Ricambi GROUP BY "
                       "Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
                       "Tbl_Descrizione_Ricambi.Descrizione, Tbl_Descrizione_Ricambi.Giacenza;} "
                       "RELATE Ricambi to Ricambi) as Dati"));
    const QStringList t = texts(page(QStringLiteral("DataReport11")));
    const int bearings = static_cast<int>(t.indexOf(QStringLiteral("CUSCINETTI")));
    ASSERT_GT(bearings, 0);
    // Group header, its parts with their raw costs, the footer with the formatted ones.
    EXPECT_EQ(t.mid(bearings - 1, 17),
        (QStringList{"Ricambi:", "CUSCINETTI", "RICAMBI", "COSTO €", "GIACENZA", "Cuscinetto 6204", "12,5", "4",
            "Cuscinetto 6305 a doppia corona di sfere", "1234,5", "2", "2", "CONTEGGIO DI", "CUSCINETTI", "Costo Min €",
            "Costo Max €", "Totale in Giacenza"}));
    EXPECT_EQ(t.mid(bearings + 16, 3), (QStringList{"12,50", "1.234,50", "6"}));
    const int count = static_cast<int>(t.indexOf(QStringLiteral("CONTEGGIO DI RICAMBI N°")));
    ASSERT_GE(count, 0);
    EXPECT_EQ(t.mid(count, 4), (QStringList{"CONTEGGIO DI RICAMBI N°", "2", "TOTALE MATERIALI PRESENTI N°", "3"}));
}

// The general procedures as the machines screen prints them: the hours, minutes / 60,
// under "#,###.00" in the (unprinted) hours field, so that half an hour reads ",50".
TEST_F(StoreDocuments, GeneralProcedureHoursUnderTheirFormat)
{
    exec(QStringLiteral("INSERT INTO Tbl_Proc_General_Macc (ID_MODELLO, Macchina, Modello, Tempo_Minuti) "
                        "VALUES (7, 'PRESSA', 'PX200', 75000)"));
    exec(QStringLiteral("INSERT INTO Tbl_Proc_General_Macc (ID_MODELLO, Macchina, Modello, Tempo_Minuti) "
                        "VALUES (8, 'TRANCIA', 'TR5', 30)"));
    exec(QStringLiteral("INSERT INTO Tbl_Proc_General (ID_MODELLO, Num, Titolo, Procedura, Minuti) "
                        "VALUES (7, 1, 'Olio', 'Controllo livello olio', 20)"));
    exec(QStringLiteral("INSERT INTO Tbl_Proc_General (ID_MODELLO, Num, Titolo, Procedura, Minuti) "
                        "VALUES (8, 1, 'Lame', 'Affilatura lame', 30)"));
    const ReportLayout layout = *MakeLayout(QStringLiteral("DataReport6"));
    const Control* hours = layout.control(QStringLiteral("TextBox1"));
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
        const std::vector<BoundBand> flow = Bind(layout, ReportData::fromRecordset(rs, true));
        for (const BoundBand& b : flow)
            if (b.section == Section::GroupHeader)
                for (size_t i = 0; i < b.band->controls.size(); ++i)
                    if (&b.band->controls[i] == hours)
                        return b.texts[i];
        return QStringLiteral("(no group)");
    };
    EXPECT_EQ(hoursOf(7), QStringLiteral("1.250,00"));
    EXPECT_EQ(hoursOf(8), QStringLiteral(",50"));
}
