// The program's own command line: --demo on a folder with data refuses, --demo with
// --screenshot makes the demo plant and writes a PNG of every screen that exists.
#include "shell/ScreenRegistry.h"
#include "support/TestPaths.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

struct Outcome
{
    int exitCode = -1;
    QString err;
};

Outcome velmora(const QStringList& args)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(testpaths::velmoraBinary(), args);
    EXPECT_TRUE(p.waitForFinished(180000)) << "velmora did not end";
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardError())};
}

/// The rows of the tables the demo fills, read from the file by SQLite itself.
QString rowCounts(const QString& path)
{
    sqlite3* db = nullptr;
    QString out;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        for (const char* table : {"Tbl_Macchina", "Tbl_Maintenance", "Tbl_Ricerca", "Tbl_Planned"}) {
            sqlite3_stmt* st = nullptr;
            const QByteArray sql = QByteArray("SELECT count(*) FROM ") + table;
            if (sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr) == SQLITE_OK &&
                sqlite3_step(st) == SQLITE_ROW)
                out += QString::number(sqlite3_column_int(st, 0)) + QLatin1Char(' ');
            sqlite3_finalize(st);
        }
    }
    sqlite3_close(db);
    return out;
}

TEST(DemoCommandLine, ScreenshotsOfEveryScreenOnTheDemoPlantThenNoSecondDemo)
{
    QTemporaryDir home, pictures;
    const Outcome made = velmora({QStringLiteral("--demo"), QStringLiteral("--screenshot"), pictures.path(),
                                  QStringLiteral("--home"), home.path()});
    EXPECT_EQ(made.exitCode, 0) << qPrintable(made.err);
    EXPECT_TRUE(made.err.contains(QStringLiteral("Impianto dimostrativo:"))) << qPrintable(made.err);

    // The main screen, the about screen and every working screen built so far (the
    // documents show only from a print command), each a real PNG.
    QStringList expected{QStringLiteral("frmMain"), QStringLiteral("frmAbout")};
    for (const QString& name : shell::ScreenRegistry::names())
        if (shell::ScreenRegistry::built(name) && !expected.contains(name) &&
            !name.startsWith(QLatin1String("DataReport")))
            expected << name;
    for (const QString& name : expected) {
        QFile f(QDir(pictures.path()).filePath(name + QStringLiteral(".png")));
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << qPrintable(name) << " missing; " << qPrintable(made.err);
        const QByteArray head = f.read(8);
        EXPECT_EQ(head, QByteArray("\x89PNG\r\n\x1a\n", 8)) << qPrintable(name);
        EXPECT_GT(f.size(), 1000) << qPrintable(name);
    }

    // The folder now holds a store with data: a second --demo leaves it alone.
    const QString store = QDir(home.path()).filePath(QStringLiteral("Velmora.sqlite"));
    const QString before = rowCounts(store);
    ASSERT_FALSE(before.startsWith(QLatin1String("0 ")));
    const Outcome again = velmora({QStringLiteral("--demo"), QStringLiteral("--home"), home.path()});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.err.contains(QStringLiteral("contiene già dei dati"))) << qPrintable(again.err);
    EXPECT_EQ(rowCounts(store), before);
}

} // namespace
