#pragma once
// The real program under the driver, kept running: a command sent, its answer awaited,
// the process killed at any moment, as a failing machine ends it, or let end its script;
// and the program run once to its end.

#include "support/TestPaths.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

/// The environment the program runs in: offscreen, on a server's store when one is given.
inline QProcessEnvironment programEnvironment(const QString& store = {})
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    if (!store.isEmpty())
        env.insert(QStringLiteral("VELMORA_STORE"), store);
    return env;
}

/// The program run to its end on the arguments, nothing on its input: its exit code and
/// what it wrote on the error stream.
inline std::pair<int, QString> runVelmora(const QStringList& args)
{
    QProcess p;
    p.setProcessEnvironment(programEnvironment());
    p.start(testpaths::velmoraBinary(), args);
    p.closeWriteChannel();
    EXPECT_TRUE(p.waitForFinished(180000)) << "velmora did not end";
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardError())};
}

/// The value of a driver's answer, which must be a success.
inline QJsonValue value(const QJsonObject& o)
{
    EXPECT_TRUE(o.value(QStringLiteral("ok")).toBool()) << QJsonDocument(o).toJson().toStdString();
    return o.value(QStringLiteral("value"));
}

class LiveDrive
{
public:
    /// On the folder's store, or on a server's (a libpq URI).
    explicit LiveDrive(const QString& home, const QString& store = {})
    {
        m_process.setProcessEnvironment(programEnvironment(store));
        m_process.start(testpaths::velmoraBinary(),
                        {QStringLiteral("--home"), home, QStringLiteral("--drive"), QStringLiteral("-")});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~LiveDrive() { kill(); }
    void send(const QString& line) { m_process.write((line + QLatin1Char('\n')).toUtf8()); }
    void send(const QStringList& lines) { send(lines.join(QLatin1Char('\n'))); }
    /// The next answer line, which must be JSON; an empty object when none comes in time.
    QJsonObject answer(int waitMs = 10000)
    {
        QByteArray line;
        while (line.trimmed().isEmpty()) {
            while (!m_process.canReadLine())
                if (!m_process.waitForReadyRead(waitMs))
                    return {};
            line = m_process.readLine();
        }
        QJsonParseError error;
        const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << "not JSON: " << line.toStdString();
        return doc.object();
    }
    /// The value of the next answer, which must be a success.
    QJsonValue value(int waitMs = 60000) { return ::value(answer(waitMs)); }
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
