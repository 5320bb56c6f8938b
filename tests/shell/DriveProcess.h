#pragma once
// The real program driven through standard input: `velmora --home DIR --drive -` with a
// script, one parsed JSON answer per command.

#include "support/TestPaths.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>
#include <vector>

/// Runs the program on the script; one parsed JSON answer per answered line.
inline std::vector<QJsonObject> drive(const QString& home, const QStringList& script)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    p.setProcessEnvironment(env);
    p.start(testpaths::velmoraBinary(), {"--home", home, "--drive", "-"});
    EXPECT_TRUE(p.waitForStarted());
    p.write((script.join(u'\n') + u'\n').toUtf8());
    p.closeWriteChannel();
    EXPECT_TRUE(p.waitForFinished(120000));
    EXPECT_EQ(p.exitCode(), 0);
    std::vector<QJsonObject> out;
    const QList<QByteArray> lines = p.readAllStandardOutput().split('\n');
    for (const QByteArray& line : lines) {
        if (line.isEmpty())
            continue;
        QJsonParseError err;
        const QJsonDocument doc = QJsonDocument::fromJson(line, &err);
        EXPECT_EQ(err.error, QJsonParseError::NoError) << "not JSON: " << line.toStdString();
        out.push_back(doc.object());
    }
    return out;
}

/// The program run on the script of a file of tests/data.
inline std::vector<QJsonObject> driveFile(const QString& home, const QString& name)
{
    QFile f(testpaths::data(name));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    return drive(home, QString::fromUtf8(f.readAll()).split(u'\n'));
}

/// The value of a successful answer; an error answer fails the test.
inline QJsonValue value(const QJsonObject& o)
{
    EXPECT_TRUE(o.value("ok").toBool()) << QJsonDocument(o).toJson().toStdString();
    return o.value("value");
}
