// Stores a failing machine leaves behind: damaged, cut short, empty, read-only, locked;
// and the copies that put them right.

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "shell/StoreCheck.h"
#include "store/Backup.h"
#include "store/Batch.h"
#include "store/DataStore.h"
#include "support/ErrorOf.h"
#include "support/LiveDrive.h"
#include "support/ScreenTest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <sqlite3.h>

namespace backup = store::backup;

namespace {

QByteArray contents(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void write(const QString& file, const QByteArray& bytes)
{
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

/// velmora --backup / --restore FILE on the folder: its exit code.
int runOption(const QString& home, const QString& option, const QString& file)
{
    QProcess p;
    p.start(testpaths::velmoraBinary(), {QStringLiteral("--home"), home, option, file});
    p.waitForFinished(30000);
    return p.exitCode();
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
        copy = backup::makeDailyCopy(path(), vb::Clock::today());
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
    const struct
    {
        const char* what;
        QByteArray bytes;
    } damages[] = {
        {"random bytes", QByteArray(8192, '\x5a')},
        {"cut short", sound.left(sound.size() / 2)},
        {"empty", QByteArray()},
    };
    for (const auto& d : damages) {
        for (int reply : {vb::answer::No, vb::answer::Yes}) {
            write(store, d.bytes);
            QFile::remove(store + QStringLiteral("-wal"));
            EXPECT_NE(backup::problemOf(store, true), QString()) << d.what;
            answer({reply});
            shell::checkStoreAtStart();
            backup::releaseFolder();
            const std::vector<vb::ShownBox> shown = boxes();
            ASSERT_GE(shown.size(), 1u) << d.what;
            EXPECT_TRUE(shown[0].prompt.startsWith(QStringLiteral("L'archivio dei dati è danneggiato"))) << d.what;
            EXPECT_TRUE(shown[0].prompt.contains(copy)) << d.what;
            EXPECT_EQ(shown[0].buttons, vb::mb::YesNo | vb::mb::Critical);
            if (reply == vb::answer::No)
                EXPECT_EQ(contents(store), d.bytes) << d.what; // never overwritten unasked
            else
                EXPECT_EQ(backup::problemOf(store), QString()) << d.what;
        }
    }
    // Each Yes kept the damaged store beside the restored one, dated.
    EXPECT_TRUE(QFile::exists(vb::AppFile(QStringLiteral("Velmora-2026-11-15.sqlite"))));
}

TEST_F(BrokenStore, WithoutASoundCopyTheBoxSaysSo)
{
    QFile::remove(copy);
    write(store, QByteArray(4096, '\x01'));
    shell::checkStoreAtStart();
    const vb::ShownBox box = oneBox();
    EXPECT_TRUE(box.prompt.contains(QStringLiteral("non c'è una copia di sicurezza valida")));
    EXPECT_EQ(box.buttons, vb::mb::Critical);
}

TEST_F(BrokenStore, DailyCopiesKeepSevenDaysAndFourWeeks)
{
    EXPECT_EQ(backup::makeDailyCopy(path(), vb::Clock::today()), QString()); // one a day
    for (int day = 1; day <= 60; ++day)
        backup::makeDailyCopy(path(), vb::Clock::today().addDays(day));
    const QStringList kept = backup::dailyCopies(path());
    ASSERT_EQ(kept.size(), 11);
    EXPECT_TRUE(kept.first().endsWith(QStringLiteral("Velmora-2027-01-14.sqlite")));
    EXPECT_TRUE(kept[6].endsWith(QStringLiteral("Velmora-2027-01-08.sqlite")));
    EXPECT_TRUE(kept.last().endsWith(QStringLiteral("Velmora-2026-12-20.sqlite")));
}

TEST_F(BrokenStore, BackupAndRestoreFromTheCommandLine)
{
    const QString file = path() + QStringLiteral("/copy.sqlite");
    EXPECT_EQ(runOption(path(), QStringLiteral("--backup"), file), 0);
    EXPECT_EQ(backup::problemOf(file), QString());
    {
        LiveDrive running(path()); // a Velmora with the folder open
        running.send(QStringLiteral("sql SELECT 1 AS x"));
        running.answer();
        EXPECT_NE(runOption(path(), QStringLiteral("--restore"), file), 0);
    }
    const QString notAStore = path() + QStringLiteral("/notes.sqlite");
    write(notAStore, "not a store");
    EXPECT_NE(runOption(path(), QStringLiteral("--restore"), notAStore), 0);
    EXPECT_EQ(runOption(path(), QStringLiteral("--restore"), file), 0);
    EXPECT_EQ(backup::problemOf(store), QString());
}

TEST_F(BrokenStore, AReadOnlyStoreOpensToReadAndSaysSo)
{
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::ExeOwner);
    QFile::setPermissions(store, QFile::ReadOwner);
    const bool enforced = !QFileInfo(store).isWritable();
    if (enforced) {
        shell::checkStoreAtStart();
        EXPECT_TRUE(oneBox().prompt.contains(QStringLiteral("sola lettura")));
        EXPECT_EQ(value(QStringLiteral("SELECT Reparto FROM Tbl_Reparto")).toString(), QStringLiteral("SALDATURA"));
        EXPECT_EQ(errorTextOf([] { exec(QStringLiteral("DELETE FROM Tbl_Reparto")); }),
                  QStringLiteral("Impossibile aggiornare. Database o oggetto di sola lettura o bloccato da un altro "
                                 "utente."));
    }
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::setPermissions(store, QFile::ReadOwner | QFile::WriteOwner);
    if (!enforced)
        GTEST_SKIP() << "file permissions are not enforced for this user";
}

TEST_F(BrokenStore, ALockedStoreKeepsTheWaitAndItsText)
{
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(store.toUtf8().constData(), &other), SQLITE_OK);
    sqlite3_exec(other, "BEGIN IMMEDIATE; INSERT INTO Tbl_Reparto (Reparto) VALUES ('ALTRO')", nullptr, nullptr,
                 nullptr);
    QElapsedTimer timer;
    timer.start();
    {
        store::Batch batch; // does not wait for the lock
        EXPECT_LT(timer.elapsed(), 1000);
        EXPECT_EQ(errorTextOf([] { exec(QStringLiteral("DELETE FROM Tbl_Reparto")); }),
                  QStringLiteral("Impossibile aggiornare. Database o oggetto di sola lettura o bloccato da un altro "
                                 "utente."));
    }
    EXPECT_GE(timer.elapsed(), store::LockWaitMs);
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM Tbl_Reparto")).toString(), QStringLiteral("1"));
}
