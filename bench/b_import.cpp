// Import of the old plant file (every table into a new store, counts checked) against
// mdbtools' own mdb-export of the same tables to CSV files, in the same run. Prints both
// times and the ratio.
#include "importer/Importer.h"
#include "importer/MdbReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QString mdb =
        QFileInfo(QStringLiteral(__FILE__)).dir().filePath(QStringLiteral("../../shared/fixtures/legacy/Velmora.mdb"));
    if (!QFile::exists(mdb)) {
        std::printf("import: the old plant file is not beside the clone\n");
        return 0;
    }
    constexpr int Runs = 10;
    QTemporaryDir dir;

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < Runs; ++i) {
        QFile::remove(dir.filePath(QStringLiteral("Velmora.sqlite")));
        if (!importer::importMdb({mdb, dir.path(), false}).ok) {
            std::printf("import failed\n");
            return 1;
        }
    }
    const double ours = double(timer.nsecsElapsed()) / Runs / 1e6;

    importer::MdbReader reader;
    reader.open(mdb);
    const QString exporter = QStandardPaths::findExecutable(QStringLiteral("mdb-export"));
    double theirs = 0;
    if (!exporter.isEmpty()) {
        timer.restart();
        for (int i = 0; i < Runs; ++i) {
            for (const importer::MdbTableInfo& t : reader.tables()) {
                QProcess p;
                p.setStandardOutputFile(dir.filePath(t.name + QStringLiteral(".csv")));
                p.start(exporter, {mdb, t.name});
                p.waitForFinished(-1);
            }
        }
        theirs = double(timer.nsecsElapsed()) / Runs / 1e6;
    }
    std::printf("import of %zu tables: %.1f ms; mdb-export to CSV: %.1f ms; ratio %.2f\n", reader.tables().size(), ours,
                theirs, theirs > 0 ? ours / theirs : 0.0);
    return 0;
}
