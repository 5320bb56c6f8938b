#pragma once
// The real program under the driver, kept running: a command sent, its answer awaited,
// or the process killed at any moment, as a failing machine ends it.

#include "support/TestPaths.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

class LiveDrive
{
public:
    explicit LiveDrive(const QString& home)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_process.setProcessEnvironment(env);
        m_process.start(testpaths::velmoraBinary(),
                        {QStringLiteral("--home"), home, QStringLiteral("--drive"), QStringLiteral("-")});
    }
    ~LiveDrive() { kill(); }
    void send(const QString& line) { m_process.write((line + QLatin1Char('\n')).toUtf8()); }
    /// The next answer line; an empty object when none comes in time.
    QJsonObject answer(int waitMs = 10000)
    {
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(waitMs))
                return {};
        return QJsonDocument::fromJson(m_process.readLine()).object();
    }
    void kill() // SIGKILL: nothing of the program runs after it
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};
