#include "support/GoldenFile.h"

#include "support/TestPaths.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

namespace golden {

void expectMatches(const QString& name, const QString& actual)
{
    const QString path = testpaths::data(name);
    QFile file(path);
    if (qEnvironmentVariableIntValue("VELMORA_UPDATE_GOLDEN") == 1) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
        file.write(actual.toUtf8());
        return;
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly))
        << path.toStdString() << " is missing (VELMORA_UPDATE_GOLDEN=1 writes it)";
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n');
    const QStringList got = actual.split(u'\n');
    for (qsizetype i = 0; i < std::max(expected.size(), got.size()); ++i) {
        if (expected.value(i) != got.value(i)) {
            ADD_FAILURE() << name.toStdString() << ":" << i + 1
                          << "\n  expected: " << expected.value(i, "(end)").toStdString()
                          << "\n  actual:   " << got.value(i, "(end)").toStdString();
            return;
        }
    }
}

} // namespace golden
