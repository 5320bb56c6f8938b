#pragma once
// The automation driver inside the test's own process: one command a call, its JSON
// answer parsed; an error answer fails the test.

#include "shell/Driver.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <gtest/gtest.h>

class InProcessDrive
{
public:
    /// Runs one command and returns its value.
    QJsonValue operator()(const QString& line)
    {
        const QString out = m_driver.execute(line);
        const QJsonObject answer = QJsonDocument::fromJson(out.toUtf8()).object();
        EXPECT_TRUE(answer.value(QStringLiteral("ok")).toBool()) << line.toStdString() << " -> " << out.toStdString();
        return answer.value(QStringLiteral("value"));
    }

private:
    shell::Driver m_driver;
};
