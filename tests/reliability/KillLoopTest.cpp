// The program killed at random moments while it writes: every write it answered for is
// in the store afterwards, and the store passes SQLite's whole check.

#include "runtime/AppPath.h"
#include "store/Backup.h"
#include "support/LiveDrive.h"
#include "support/StoreSnapshot.h"

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>
#include <random>

TEST(KillLoop, EveryAcknowledgedWriteSurvivesTheKills)
{
    QTemporaryDir home;
    std::mt19937 random(19); // a fixed seed: the same moments at every run
    constexpr int Kills = 40;
    QStringList acknowledged;
    int sent = 0;
    for (int kill = 0; kill < Kills; ++kill) {
        LiveDrive program(home.path());
        const int writes = std::uniform_int_distribution<int>(1, 12)(random);
        for (int w = 0; w < writes; ++w) {
            const QString name = QStringLiteral("R%1-%2").arg(kill).arg(w);
            program.send(QStringLiteral("exec INSERT INTO Tbl_Reparto (Reparto) VALUES ('%1')").arg(name));
            ++sent;
            if (w + 1 < writes && program.answer().value(QStringLiteral("ok")).toBool())
                acknowledged << name;
        }
        // The last write is killed at a random moment of its run; answered before, it counts.
        QThread::usleep(std::uniform_int_distribution<unsigned>(0, 3000)(random));
        program.kill();
        if (program.answer(0).value(QStringLiteral("ok")).toBool())
            acknowledged << QStringLiteral("R%1-%2").arg(kill).arg(writes - 1);
    }
    const QString file = home.filePath(QStringLiteral("Velmora.sqlite"));
    EXPECT_EQ(store::backup::problemOf(file), QString());
    store::DataStore::reset();
    vb::setAppPath(home.path());
    const QStringList stored = testkit::storeRows(QStringLiteral("SELECT Reparto FROM Tbl_Reparto"));
    store::DataStore::reset();
    int lost = 0;
    for (const QString& name : std::as_const(acknowledged))
        lost += stored.contains(name) ? 0 : 1;
    EXPECT_EQ(lost, 0);
    EXPECT_GE(acknowledged.size(), Kills);
    std::printf("kill loop: %d kills, %d writes sent, %lld acknowledged, %d lost\n", Kills, sent,
                static_cast<long long>(acknowledged.size()), lost);
}
