#pragma once
// The real program driven through standard input: `velmora --home DIR --drive -` with a
// script, one parsed JSON answer per command.

#include "support/LiveDrive.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QJsonObject>
#include <QStringList>

#include <gtest/gtest.h>
#include <vector>

/// Runs the program on the script; one parsed JSON answer per answered line.
inline std::vector<QJsonObject> drive(const QString& home, const QStringList& script)
{
    LiveDrive program(home);
    program.send(script);
    EXPECT_EQ(program.finish(), 0);
    std::vector<QJsonObject> out;
    for (QJsonObject o = program.answer(0); !o.isEmpty(); o = program.answer(0))
        out.push_back(o);
    return out;
}

/// The program run on the script of a file of tests/data.
inline std::vector<QJsonObject> driveFile(const QString& home, const QString& name)
{
    QFile f(testpaths::data(name));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    return drive(home, QString::fromUtf8(f.readAll()).split(u'\n'));
}
