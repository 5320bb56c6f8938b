#pragma once
// The real program under the driver, kept running: a command sent, its answer awaited,
// the process killed at any moment, as a failing machine ends it, or let end its script.

#include "support/TestPaths.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

class LiveDrive
{
public:
    /// On the folder's store, or on a server's (a libpq URI).
    explicit LiveDrive(const QString& home, const QString& store = {})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        if (!store.isEmpty())
            env.insert(QStringLiteral("VELMORA_STORE"), store);
        m_process.setProcessEnvironment(env);
        m_process.start(testpaths::velmoraBinary(),
                        {QStringLiteral("--home"), home, QStringLiteral("--drive"), QStringLiteral("-")});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~LiveDrive() { kill(); }
    void send(const QString& line) { m_process.write((line + QLatin1Char('\n')).toUtf8()); }
    void send(const QStringList& lines) { send(lines.join(QLatin1Char('\n'))); }
    /// The next answer line; an empty object when none comes in time.
    QJsonObject answer(int waitMs = 10000)
    {
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(waitMs))
                return {};
        return QJsonDocument::fromJson(m_process.readLine()).object();
    }
    /// The value of the next answer, which must be a success.
    QJsonValue value(int waitMs = 60000)
    {
        const QJsonObject o = answer(waitMs);
        EXPECT_TRUE(o.value(QStringLiteral("ok")).toBool()) << QJsonDocument(o).toJson().toStdString();
        return o.value(QStringLiteral("value"));
    }
    /// The end of the script: the program ends as it does there; its exit code.
    int finish()
    {
        m_process.closeWriteChannel();
        EXPECT_TRUE(m_process.waitForFinished(300000));
        return m_process.exitCode();
    }
    void kill() // SIGKILL: nothing of the program runs after it
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};
