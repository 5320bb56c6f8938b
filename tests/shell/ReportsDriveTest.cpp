// The documents driven end to end on the real program: rows written before and after
// the start, a flat and two shaped prints shown, their pages read back and written as
// PDF, with the clock frozen.
#include "DriveProcess.h"
#include "support/ScreenTest.h"

#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>

namespace {

struct Page
{
    QStringList texts;
    std::vector<std::pair<int, int>> places; ///< x, y of each text
    int indexOf(const QString& text, int from = 0) const { return static_cast<int>(texts.indexOf(text, from)); }
};

std::vector<Page> pagesOf(const QJsonValue& report)
{
    std::vector<Page> out;
    for (const QJsonValue& p : report[QStringLiteral("pages")].toArray()) {
        Page page;
        for (const QJsonValue& t : p.toArray()) {
            page.texts << t[QStringLiteral("text")].toString();
            page.places.emplace_back(t[QStringLiteral("x")].toInt(), t[QStringLiteral("y")].toInt());
        }
        out.push_back(std::move(page));
    }
    return out;
}

/// Pages of a PDF file: pdfinfo's count where the tool is there, else the page objects.
int pdfPages(const QString& path)
{
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {path});
    if (info.waitForFinished(30000) && info.exitStatus() == QProcess::NormalExit && info.exitCode() == 0) {
        for (const QByteArray& line : info.readAllStandardOutput().split('\n'))
            if (line.startsWith("Pages:"))
                return line.mid(6).trimmed().toInt();
    }
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? static_cast<int>(f.readAll().count("/Type /Page\n")) : -1;
}

QByteArray head(const QString& path, int n)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.read(n) : QByteArray();
}

using ReportsDrive = ScreenTest;

} // namespace

TEST_F(ReportsDrive, ReportsShowReadAndWritePdfEndToEnd)
{
    QTemporaryDir out;
    ASSERT_TRUE(out.isValid());
    const QString partsPdf = out.filePath(QStringLiteral("ricambi.pdf"));
    const QString notesPdf = out.filePath(QStringLiteral("note.pdf"));

    QStringList s{QStringLiteral("clock 2026-11-15T08:00:00")};
    // Sixty parts: more than one page of the flat parts list.
    for (int i = 1; i <= 60; ++i)
        s << QStringLiteral("exec INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Codice, Costo, "
                            "Giacenza, NOTE) VALUES ('%1', 'Pezzo %2', 'C%2', %3, %4, 'scaffale')")
                 .arg(i <= 25 ? QStringLiteral("CINGHIE") : QStringLiteral("CUSCINETTI"))
                 .arg(i, 2, 10, QLatin1Char('0'))
                 .arg(i)
                 .arg(i % 7);
    s << QStringLiteral("exec INSERT INTO Tbl_Fornitori (Fornitore, Nome_Soceta, [Part_IVA/Cod_Fisc], [Citta/Paese], "
                        "CAP, Provincia, Via, Tel, Fax, Email, Url) VALUES ('ROSSI', 'Rossi Forniture srl', "
                        "'01234567890', 'Brescia', '25100', 'BS', 'Via Milano 4', '030 123456', '030 654321', "
                        "'info@rossi.example', 'www.rossi.example')")
      << QStringLiteral("exec INSERT INTO Tbl_Fornitori (Fornitore, Nome_Soceta, Tel) VALUES ('BIANCHI', "
                        "'Bianchi Utensili', '02 998877')")
      << QStringLiteral("exec INSERT INTO Tbl_Macchina (Macchina, Modello, REPARTO) VALUES ('PRESSA', 'PX200', "
                        "'STAMPAGGIO')")
      << QStringLiteral("start")
      // The note's type comes with the start's upgrade. The second note's machine is gone.
      << QStringLiteral("exec INSERT INTO Tbl_Maintenance_Note (ID_MODELLO, ID_NUM, Ultima, NOTE, Tipo_Nota) "
                        "VALUES (1, 0, '10/11/2026', 'Cambio olio', 'GENERALE')")
      << QStringLiteral("exec INSERT INTO Tbl_Maintenance_Note (ID_MODELLO, ID_NUM, Ultima, NOTE, Tipo_Nota) "
                        "VALUES (99, 0, '12/11/2026', 'Macchina dismessa', 'GENERALE')");
    const int first = static_cast<int>(s.size());
    s << QStringLiteral("showreport DataReport4 Select * from Tbl_Descrizione_Ricambi order by "
                        "Ricambi,Descrizione,Giacenza,Costo")
      << QStringLiteral("report DataReport4") << QStringLiteral("pdf DataReport4 %1").arg(partsPdf)
      << QStringLiteral("showreport DataReport13 SHAPE {SELECT Tbl_Fornitori.ID_FORNITORE, Tbl_Fornitori.Fornitore "
                        "From Tbl_Fornitori ORDER BY Tbl_Fornitori.Fornitore;} APPEND ({SELECT "
                        "Tbl_Fornitori.ID_FORNITORE, Tbl_Fornitori.Fornitore, Tbl_Fornitori.Nome_Soceta, "
                        "Tbl_Fornitori.[Part_IVA/Cod_Fisc], Tbl_Fornitori.[Citta/Paese], Tbl_Fornitori.CAP, "
                        "Tbl_Fornitori.Provincia, Tbl_Fornitori.Via, Tbl_Fornitori.Tel, Tbl_Fornitori.Fax, "
                        "Tbl_Fornitori.Email, Tbl_Fornitori.Url From Tbl_Fornitori ORDER BY Tbl_Fornitori.Fornitore;} "
                        "RELATE ID_FORNITORE to ID_FORNITORE) as Dati")
      << QStringLiteral("report DataReport13")
      << QStringLiteral(
             "showreport DataReport10 SHAPE {SELECT Tbl_Maintenance_Note.Tipo_Nota, "
             "Count(Tbl_Maintenance_Note.NOTE) AS ConteggioDiNOTE From Tbl_Maintenance_Note GROUP BY "
             "Tbl_Maintenance_Note.Tipo_Nota;} APPEND ({SELECT Qry_Report10.Ultima, Tbl_Maintenance_Note.NOTE, "
             "Qry_Report10.Tipo_Nota, Qry_Report10.Macchina, Qry_Report10.Modello, "
             "Qry_Report10.Numerazione, Qry_Report10.Images, Qry_Report10.Percorso, "
             "Qry_Report10.ConteggioDiTipo_Nota FROM Tbl_Maintenance_Note INNER JOIN Qry_Report10 ON "
             "Tbl_Maintenance_Note.ID = Qry_Report10.ID;} RELATE Tipo_Nota to Tipo_Nota) as Dati")
      << QStringLiteral("report DataReport10") << QStringLiteral("pdf DataReport10 \"%1\"").arg(notesPdf)
      << QStringLiteral("get DataReport13.Visible") << QStringLiteral("unload DataReport13")
      << QStringLiteral("report DataReport13") << QStringLiteral("showreport DataReport4 SELECT * FROM Tbl_Niente")
      << QStringLiteral("loaded DataReport4")
      << QStringLiteral(
             "showreport DataReport11 SHAPE {SELECT Count(Tbl_Descrizione_Ricambi.Ricambi) AS ConteggioDiRicambi, "
             "Format(Min(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MinDiCosto, "
             "Format(Max(Tbl_Descrizione_Ricambi.Costo),'Standard') AS MaxDiCosto, Sum(Tbl_Descrizione_Ricambi.Costo) "
             "AS SommaDiCosto, Tbl_Descrizione_Ricambi.Ricambi, Sum(Tbl_Descrizione_Ricambi.Giacenza) AS "
             "SommaDiGiacenza From Tbl_Descrizione_Ricambi GROUP BY Tbl_Descrizione_Ricambi.Ricambi;} APPEND "
             "({SELECT Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
             "Tbl_Descrizione_Ricambi.Descrizione, Tbl_Descrizione_Ricambi.Giacenza From Tbl_Descrizione_Ricambi "
             "GROUP BY Tbl_Descrizione_Ricambi.Ricambi, Tbl_Descrizione_Ricambi.Costo, "
             "Tbl_Descrizione_Ricambi.Descrizione, Tbl_Descrizione_Ricambi.Giacenza;} RELATE Ricambi to Ricambi) as "
             "Dati")
      << QStringLiteral("report DataReport11");
    const auto r = drive(path(), s);
    ASSERT_EQ(r.size(), static_cast<size_t>(s.size()));
    for (int i = 0; i < first; ++i)
        ::value(r[i]);

    // The flat parts list: two pages, the page header on both, rows in the statement's
    // order with their bound values, the page text counting the whole document.
    const QJsonValue parts = ::value(r[first + 1]);
    EXPECT_TRUE(parts[QStringLiteral("visible")].toBool());
    const auto pp = pagesOf(parts);
    ASSERT_EQ(pp.size(), 2u);
    EXPECT_EQ(pp[0].texts.first(), QStringLiteral("LISTA RICAMBI"));
    EXPECT_EQ(pp[0].texts.mid(1, 5), (QStringList{"RICAMBI", "Descrizione", "COSTO €", "Giacenza", "NOTE"}));
    EXPECT_EQ(pp[0].texts.mid(6, 5), (QStringList{"CINGHIE", "Pezzo 01", "1", "1", "scaffale"}));
    EXPECT_EQ(pp[0].texts.last(), QStringLiteral("Pagina 1 di 2"));
    EXPECT_GE(pp[1].indexOf(QStringLiteral("COSTO €")), 0);
    EXPECT_EQ(pp[1].texts.last(), QStringLiteral("Pagina 2 di 2"));
    EXPECT_EQ(pp[1].texts[pp[1].texts.size() - 2], QStringLiteral("by Velmora"));
    const int lastRow = pp[1].indexOf(QStringLiteral("Pezzo 60"));
    ASSERT_GT(lastRow, 0);
    EXPECT_EQ(pp[1].texts[lastRow - 1], QStringLiteral("CUSCINETTI"));
    EXPECT_EQ(pp[1].texts[lastRow + 1], QStringLiteral("60"));
    EXPECT_EQ(pp[1].texts[lastRow + 2], QStringLiteral("4")); // 60 Mod 7
    // Written as PDF: a file that is there, with the document's two pages.
    EXPECT_TRUE(::value(r[first + 2]).isNull());
    EXPECT_TRUE(head(partsPdf, 5).startsWith("%PDF"));
    EXPECT_EQ(pdfPages(partsPdf), 2);

    // The suppliers: today's date and time in the header, each supplier's header before
    // its card, in the order of the names.
    const auto sp = pagesOf(::value(r[first + 4]));
    ASSERT_EQ(sp.size(), 1u);
    const Page& cards = sp[0];
    EXPECT_EQ(cards.texts.mid(0, 2), (QStringList{"LISTA FORNITORI", "15/11/2026 08.00.00"}));
    const int bianchi = cards.indexOf(QStringLiteral("FORNITORE: "));
    const int rossi = cards.indexOf(QStringLiteral("FORNITORE: "), bianchi + 1);
    ASSERT_GT(bianchi, 0);
    ASSERT_GT(rossi, bianchi);
    EXPECT_EQ(cards.texts.mid(bianchi, 6),
              (QStringList{"FORNITORE: ", "BIANCHI", "Fornitore:", "BIANCHI", "Nome Società:", "Bianchi Utensili"}));
    EXPECT_EQ(cards.texts.mid(rossi, 2), (QStringList{"FORNITORE: ", "ROSSI"}));
    EXPECT_GT(cards.places[rossi + 2].second, cards.places[rossi].second);
    EXPECT_GE(cards.indexOf(QStringLiteral("Via Milano 4"), rossi), 0);
    EXPECT_EQ(cards.texts.last(), QStringLiteral("Pagina 1 di 1"));

    // The notes: one group with its two notes; the note whose machine is gone prints
    // with empty machine columns; the footer counts both.
    const auto np = pagesOf(::value(r[first + 6]));
    ASSERT_EQ(np.size(), 1u);
    const Page& notes = np[0];
    const int group = notes.indexOf(QStringLiteral("NOTA:"));
    ASSERT_GE(group, 0);
    EXPECT_EQ(notes.texts.mid(group, 6), (QStringList{"NOTA:", "GENERALE", "DATA", "MACCHINA", "N°", "NOTA"}));
    const int oil = notes.indexOf(QStringLiteral("Cambio olio"));
    const int gone = notes.indexOf(QStringLiteral("Macchina dismessa"));
    ASSERT_GT(oil, 0);
    ASSERT_GT(gone, 0);
    EXPECT_EQ(notes.texts.mid(oil - 2, 2), (QStringList{"10/11/2026", "PX200"}));
    EXPECT_EQ(notes.texts[gone - 1], QStringLiteral("12/11/2026"));
    const int footer = notes.indexOf(QStringLiteral("Totale note"));
    ASSERT_GT(footer, std::max(oil, gone));
    EXPECT_EQ(notes.texts.mid(footer, 3), (QStringList{"Totale note", "GENERALE", "2"}));
    EXPECT_TRUE(head(notesPdf, 5).startsWith("%PDF"));
    EXPECT_EQ(pdfPages(notesPdf), 1);

    // Shown and visible; once closed it has no pages to read.
    EXPECT_TRUE(::value(r[first + 8]).toBool());
    ::value(r[first + 9]);
    EXPECT_FALSE(r[first + 10][QStringLiteral("ok")].toBool());
    EXPECT_EQ(r[first + 10][QStringLiteral("error")][QStringLiteral("number")].toInt(), 9);
    // A statement that fails answers its error, and the earlier instance is closed all
    // the same.
    EXPECT_FALSE(r[first + 11][QStringLiteral("ok")].toBool());
    EXPECT_FALSE(::value(r[first + 12]).toBool());

    // The parts by category: each category's footer with its costs under "Standard" and
    // its stock; at the end of the last page the count of categories and the sum of
    // their parts.
    const auto cp = pagesOf(::value(r[first + 14]));
    ASSERT_EQ(cp.size(), 2u);
    const int belts = cp[0].indexOf(QStringLiteral("CINGHIE"));
    ASSERT_GT(belts, 0);
    EXPECT_EQ(cp[0].texts[belts - 1], QStringLiteral("Ricambi:"));
    EXPECT_EQ(cp[0].texts[belts + 4], QStringLiteral("Pezzo 01")); // after the column headings
    const int beltsTotal = cp[0].indexOf(QStringLiteral("CONTEGGIO DI"));
    ASSERT_GT(beltsTotal, belts);
    EXPECT_EQ(cp[0].texts[beltsTotal - 1], QStringLiteral("25"));
    // 1 to 25 Mod 7: three weeks of 21 and 1 + 2 + 3 + 4
    EXPECT_EQ(cp[0].texts.mid(beltsTotal + 5, 3), (QStringList{"1,00", "25,00", "73"}));
    const Page& last = cp[1];
    const int count = last.indexOf(QStringLiteral("CONTEGGIO DI RICAMBI N°"));
    ASSERT_GE(count, 0);
    EXPECT_EQ(last.texts.mid(count, 4),
              (QStringList{"CONTEGGIO DI RICAMBI N°", "2", "TOTALE MATERIALI PRESENTI N°", "60"}));
    EXPECT_EQ(last.texts.last(), QStringLiteral("Pagina 2 di 2"));
}
