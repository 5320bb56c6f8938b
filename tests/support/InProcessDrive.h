#pragma once
// The automation driver inside the test's own process: one command a call, its JSON
// answer parsed; an error answer fails the test. The boxes, a list's items and a
// report's printed texts read as plain text.

#include "shell/Driver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

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

    /// The boxes shown since the last call, each as "title: prompt".
    QStringList boxes()
    {
        QStringList out;
        for (const QJsonValue& b : (*this)(QStringLiteral("boxes")).toArray())
            out << b[QStringLiteral("title")].toString() + QStringLiteral(": ") +
                       b[QStringLiteral("prompt")].toString();
        return out;
    }

    /// The items of a list or a combo ("Form19.List2"), as shown.
    QStringList items(const QString& control)
    {
        QStringList out;
        for (const QJsonValue& item : (*this)(QStringLiteral("get ") + control + QStringLiteral(".items")).toArray())
            out << item.toString();
        return out;
    }

    /// Every text printed on the pages of a shown report, page by page.
    QStringList printed(const QString& report)
    {
        QStringList out;
        for (const QJsonValue& page : (*this)(QStringLiteral("report ") + report)[QStringLiteral("pages")].toArray())
            for (const QJsonValue& t : page.toArray())
                out << t[QStringLiteral("text")].toString();
        return out;
    }

private:
    shell::Driver m_driver;
};
