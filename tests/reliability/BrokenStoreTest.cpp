// Stores a failing machine leaves behind (damaged, cut short, empty, read-only, locked),
// and the copies that put them right, on the embedded store and on the plant's server.

#include "runtime/AppPath.h"
#include "shell/DriveProcess.h"
#include "shell/StoreCheck.h"
#include "store/Backup.h"
#include "store/Batch.h"
#include "support/ErrorOf.h"
#include "support/LiveDrive.h"
#include "support/ScreenTest.h"
#include "support/TestServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>

#include <sqlite3.h>

namespace backup = store::backup;

namespace {

const QString Refused =
    QStringLiteral("Impossibile aggiornare. Database o oggetto di sola lettura o bloccato da un altro utente.");

QByteArray contents(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

/// velmora OPTION FILE on the folder: its exit code.
int runOption(const QString& home, const QString& option, const QString& file)
{
    return runVelmora({QStringLiteral("--home"), home, option, file}).first;
}

class BrokenStore : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        exec(QStringLiteral("INSERT INTO Tbl_Reparto (Reparto) VALUES ('SALDATURA')"));
        store::DataStore::reset();
        store = vb::AppFile(QStringLiteral("Velmora.sqlite"));
        copy = backup::makeDailyCopy(path(), QDate(2026, 11, 15));
    }
    void TearDown() override
    {
        backup::releaseFolder();
        ScreenTest::TearDown();
    }
    QString store, copy;
};

} // namespace

TEST_F(BrokenStore, ADamagedStoreOffersTheNewestSoundCopyAndIsReplacedOnlyOnYes)
{
    const QByteArray sound = contents(store);
    for (const QByteArray& damaged : {QByteArray(8192, '\x5a'), sound.left(sound.size() / 2), QByteArray()}) {
        for (int reply : {vb::answer::No, vb::answer::Yes}) {
            QFile f(store);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(damaged);
            f.close();
            answer({reply});
            shell::checkStoreAtStart();
            backup::releaseFolder();
            const vb::ShownBox box = boxes().at(0);
            EXPECT_TRUE(box.prompt.startsWith(QStringLiteral("L'archivio dei dati è danneggiato")));
            EXPECT_TRUE(box.prompt.contains(copy));
            EXPECT_EQ(box.buttons, vb::mb::YesNo | vb::mb::Critical);
            // Never overwritten unasked; on Yes put right, the damaged one kept dated.
            EXPECT_TRUE(reply == vb::answer::No ? contents(store) == damaged : backup::problemOf(store).isEmpty());
        }
    }
    EXPECT_TRUE(QFile::exists(vb::AppFile(QStringLiteral("Velmora-2026-11-15-3.sqlite"))));
}

TEST_F(BrokenStore, DailyCopiesKeepSevenDaysAndFourWeeks)
{
    EXPECT_EQ(backup::makeDailyCopy(path(), QDate(2026, 11, 15)), QString()); // one a day
    for (int day = 1; day <= 60; ++day)
        backup::makeDailyCopy(path(), QDate(2026, 11, 15).addDays(day));
    const QStringList kept = backup::dailyCopies(path());
    ASSERT_EQ(kept.size(), 11);
    EXPECT_TRUE(kept[0].endsWith(QStringLiteral("Velmora-2027-01-14.sqlite")));
    EXPECT_TRUE(kept[7].endsWith(QStringLiteral("Velmora-2027-01-07.sqlite")));
    EXPECT_TRUE(kept[10].endsWith(QStringLiteral("Velmora-2026-12-20.sqlite")));
}

TEST_F(BrokenStore, BackupAndRestoreFromTheCommandLine)
{
    const QString file = path() + QStringLiteral("/copy.sqlite"), notAStore = path() + QStringLiteral("/x.sqlite");
    EXPECT_EQ(runOption(path(), QStringLiteral("--backup"), file), 0);
    {
        LiveDrive running(path()); // another Velmora with the folder open
        running.send(QStringLiteral("sql SELECT 1 AS x"));
        running.answer();
        EXPECT_NE(runOption(path(), QStringLiteral("--restore"), file), 0);
    }
    QFile::copy(testpaths::velmoraBinary(), notAStore);
    EXPECT_NE(runOption(path(), QStringLiteral("--restore"), notAStore), 0);
    EXPECT_EQ(runOption(path(), QStringLiteral("--restore"), file), 0);
    EXPECT_EQ(backup::problemOf(store), QString());
}

TEST_F(BrokenStore, AReadOnlyStoreOpensToReadAndSaysSo)
{
    // Permissions bind an ordinary user; for the administrator the files are made
    // immutable, where the system allows it.
    const QStringList both = {store, path()};
    for (const QString& f : both)
        QFile::setPermissions(f, QFile::ReadOwner | QFile::ExeOwner);
    if (QFileInfo(store).isWritable())
        QProcess::execute(QStringLiteral("chattr"), QStringList{QStringLiteral("+i")} + both);
    const bool enforced = !QFileInfo(store).isWritable();
    if (enforced) {
        shell::checkStoreAtStart();
        EXPECT_TRUE(oneBox().prompt.contains(QStringLiteral("sola lettura")));
        EXPECT_EQ(value(QStringLiteral("SELECT Reparto FROM Tbl_Reparto")).toString(), QStringLiteral("SALDATURA"));
        EXPECT_EQ(errorTextOf([] { exec(QStringLiteral("DELETE FROM Tbl_Reparto")); }), Refused);
        store::DataStore::reset();
    }
    QProcess::execute(QStringLiteral("chattr"), QStringList{QStringLiteral("-i")} + both);
    for (const QString& f : both)
        QFile::setPermissions(f, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!enforced)
        GTEST_SKIP() << "the files could not be made read-only for this user";
}

TEST_F(BrokenStore, ALockedStoreKeepsTheWaitAndItsText)
{
    sqlite3* other = nullptr;
    sqlite3_open(store.toUtf8().constData(), &other);
    sqlite3_exec(other, "BEGIN IMMEDIATE; INSERT INTO Tbl_Reparto (Reparto) VALUES ('B')", nullptr, nullptr, nullptr);
    QElapsedTimer timer;
    timer.start();
    {
        store::Batch batch; // does not wait for the lock: the statement does, as before
        EXPECT_LT(timer.elapsed(), 1000);
        EXPECT_EQ(errorTextOf([] { exec(QStringLiteral("DELETE FROM Tbl_Reparto")); }), Refused);
    }
    EXPECT_GE(timer.elapsed(), store::LockWaitMs);
    sqlite3_close(other);
}

// On the plant's server the same options copy and put back the database with the server's
// own tools; the database as it stood is kept as a dated archive first.
TEST(ServerCopies, BackupAndRestoreWithTheServersTools)
{
    SKIP_WITHOUT_SERVER();
    testserver::ScratchDatabase db;
    QTemporaryDir home;
    // Set for this test only, whatever way it ends.
    struct StoreChoice
    {
        explicit StoreChoice(const QByteArray& uri) { qputenv("VELMORA_STORE", uri); }
        ~StoreChoice() { qunsetenv("VELMORA_STORE"); }
    } onServer(db.uri().toUtf8());
    const auto count = [&] {
        const auto answers = drive(home.path(), {"sql SELECT count(*) AS n FROM Tbl_Reparto"});
        return answers.empty() ? QJsonObject() : answers[0];
    };
    drive(home.path(), {"exec INSERT INTO Tbl_Reparto (Reparto) VALUES ('SALDATURA')"});
    const QString file = home.filePath("impianto.dump");
    EXPECT_EQ(runOption(home.path(), QStringLiteral("--backup"), file), 0);
    drive(home.path(), {"exec DELETE FROM Tbl_Reparto"});
    EXPECT_NE(runOption(home.path(), QStringLiteral("--restore"), testpaths::velmoraBinary()), 0); // not an archive
    EXPECT_EQ(runOption(home.path(), QStringLiteral("--restore"), file), 0);
    EXPECT_EQ(value(count()).toArray().at(0).toObject().value("n").toInt(), 1);
    EXPECT_EQ(QDir(home.filePath("backup")).entryList(QDir::Files).size(), 1);
}
