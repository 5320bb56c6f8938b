// The documents driven end to end on the real program: rows written before and after
// the start, a flat and two shaped prints shown, their pages read back and written as
// PDF, with the clock frozen.
#include "DriveProcess.h"
#include "support/GoldenFile.h"
#include "support/ScreenTest.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

/// A shown report's pages as text: one line per printed line (the texts at one height,
/// joined by " | "), each page under its number.
QString pagesText(const QJsonValue& report)
{
    QStringList out;
    int n = 0;
    for (const QJsonValue& page : report["pages"].toArray()) {
        out << QStringLiteral("--- page %1").arg(++n);
        int y = -1;
        for (const QJsonValue& t : page.toArray()) {
            if (t["y"].toInt() == y)
                out.last() += " | " + t["text"].toString();
            else
                out << t["text"].toString();
            y = t["y"].toInt();
        }
    }
    return out.join(u'\n');
}

/// Pages of a PDF file: pdfinfo's count where the tool is there, else the page objects.
int pdfPages(const QString& path)
{
    QProcess info;
    info.start("pdfinfo", {path});
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
    const QString partsPdf = out.filePath("ricambi.pdf");
    const QString notesPdf = out.filePath("note.pdf");

    QStringList s{"clock 2026-11-15T08:00:00"};
    // Sixty parts: more than one page of the flat parts list.
    for (int i = 1; i <= 60; ++i)
        s << QStringLiteral("exec INSERT INTO Tbl_Descrizione_Ricambi (Ricambi, Descrizione, Codice, Costo, "
                            "Giacenza, NOTE) VALUES ('%1', 'Pezzo %2', 'C%2', %3, %4, 'scaffale')")
                 .arg(i <= 25 ? "CINGHIE" : "CUSCINETTI")
                 .arg(i, 2, 10, QLatin1Char('0'))
                 .arg(i)
                 .arg(i % 7);
    QFile script(testpaths::data("reports_drive.txt"));
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    for (const QString& line : QString::fromUtf8(script.readAll()).split(u'\n'))
        if (!line.isEmpty() && !line.startsWith(u'#'))
            s << QString(line).replace("{parts}", partsPdf).replace("{notes}", notesPdf);
    const int first = int(s.indexOf(QRegularExpression("showreport .*")));
    const auto r = drive(path(), s);
    ASSERT_EQ(r.size(), static_cast<size_t>(s.size()));
    for (int i = 0; i < first; ++i)
        ::value(r[i]);

    // The flat parts list: two pages, the page header on both, rows in the statement's
    // order with their bound values, the page text counting the whole document. The
    // suppliers: today's date and time in the header, each supplier's header before its
    // card. The notes: one group with its two notes, the note whose machine is gone with
    // empty machine columns, the footer counting both. The parts by category: each
    // category's footer with its costs under "Standard" and its stock; at the end the count
    // of categories and the sum of their parts.
    const QJsonValue parts = ::value(r[first + 1]);
    EXPECT_TRUE(parts["visible"].toBool());
    golden::expectMatches("reports_drive_pages.txt", "== DataReport4\n" + pagesText(parts) + "\n== DataReport13\n" +
                                                         pagesText(::value(r[first + 4])) + "\n== DataReport10\n" +
                                                         pagesText(::value(r[first + 6])) + "\n== DataReport11\n" +
                                                         pagesText(::value(r[first + 14])) + "\n");
    // Written as PDF: files that are there, with the documents' pages.
    EXPECT_TRUE(::value(r[first + 2]).isNull());
    EXPECT_TRUE(head(partsPdf, 5).startsWith("%PDF"));
    EXPECT_EQ(pdfPages(partsPdf), 2);
    EXPECT_TRUE(head(notesPdf, 5).startsWith("%PDF"));
    EXPECT_EQ(pdfPages(notesPdf), 1);

    // Shown and visible; once closed it has no pages to read.
    EXPECT_TRUE(::value(r[first + 8]).toBool());
    ::value(r[first + 9]);
    EXPECT_FALSE(r[first + 10]["ok"].toBool());
    EXPECT_EQ(r[first + 10]["error"]["number"].toInt(), 9);
    // A statement that fails answers its error, and the earlier instance is closed all
    // the same.
    EXPECT_FALSE(r[first + 11]["ok"].toBool());
    EXPECT_FALSE(::value(r[first + 12]).toBool());
}
