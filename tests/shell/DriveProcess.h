#pragma once
// The real program driven through standard input: `velmora --home DIR --drive -` with a
// script, one parsed JSON answer per command.

#include "support/TestPaths.h"

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
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(testpaths::velmoraBinary(),
            {QStringLiteral("--home"), home, QStringLiteral("--drive"), QStringLiteral("-")});
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

/// The value of a successful answer; an error answer fails the test.
inline QJsonValue value(const QJsonObject& o)
{
    EXPECT_TRUE(o.value(QStringLiteral("ok")).toBool()) << QJsonDocument(o).toJson().toStdString();
    return o.value(QStringLiteral("value"));
}
