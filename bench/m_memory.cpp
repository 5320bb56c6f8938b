// M1 and M2: the program's peak resident memory, each figure a process of its own (the
// kernel's high-water mark, read when the process is reaped).
// M1: the demo plant, the main screen, the register open and DataReport9 in preview,
// against a bare Qt program showing one empty window.
// M2: the register open on 100k register rows against the same on 1k rows: the grids
// must not grow with what they do not show.
#include "LargeBench.h"
#include "Process.h"
#include "demo/DemoPlant.h"

#include <QApplication>

namespace {

QByteArray clockLine()
{
    return "clock " + bench::benchDay().toString(Qt::ISODate).toLatin1() + "T08:00:00\n";
}

QStringList drive(const QTemporaryDir& dir)
{
    return {QStringLiteral("--home"), dir.path(), QStringLiteral("--drive"), QStringLiteral("-")};
}

/// The parts replaced on one machine, as the interventions screen prints them.
QByteArray partsReport(int idNum)
{
    const QByteArray id = QByteArray::number(idNum);
    return "showreport DataReport9 SHAPE {SELECT Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
           "Tbl_Ricerca.Numerazione From Tbl_Ricerca GROUP BY Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Macchina, "
           "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione Having (((Tbl_Ricerca.ID_NUM) = " +
           id +
           ")) ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello; } APPEND ({SELECT Tbl_Ricerca.ID_NUM, "
           "Tbl_Ricerca.Data, Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione, "
           "Tbl_Ricerca.Quantita From Tbl_Ricerca GROUP BY Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Data, "
           "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Destinazione, Tbl_Ricerca.Quantita "
           "ORDER BY Tbl_Ricerca.Data DESC , Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione;} RELATE ID_NUM to "
           "ID_NUM) as Dati\nget DataReport9.Visible\n";
}

bool allOk(const bench::ProcessRun& run)
{
    return run.exitCode == 0 && !run.output.isEmpty() && !run.output.contains("\"ok\":false") &&
           !run.output.contains("false\n");
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString velmora = bench::builtProgram(QStringLiteral("velmora"));
    const int rounds = 3;

    // M1 on the demo plant.
    QTemporaryDir demoDir;
    vb::setAppPath(demoDir.path());
    store::DataStore::reset();
    shell::Driver::setUpServices();
    vb::Clock::freeze(QDateTime(bench::benchDay(), QTime(8, 0)));
    demo::makeDemoPlant();
    store::Recordset unit;
    unit.Open(QStringLiteral("SELECT TOP 1 ID_NUM FROM Tbl_Ricerca ORDER BY ID_NUM"));
    const int idNum = unit.Fields(0).Value().toLong();
    unit.Close();
    store::DataStore::reset();
    const QByteArray m1Script = clockLine() + "start\nshow Form7\n" + partsReport(idNum) + "quit\n";
    const bench::ProcessRun ours = bench::bestRun(rounds, velmora, drive(demoDir), m1Script);
    const bench::ProcessRun bare = bench::bestRun(rounds, bench::builtProgram(QStringLiteral("bare_window")), {});
    if (!allOk(ours) || bare.exitCode != 0) {
        std::printf("M1 memory: failed\n%s", ours.output.constData());
        return 1;
    }
    std::printf("M1 memory: peak resident memory, best of %d runs, each a process of its own\n", rounds);
    std::printf("  demo plant, Form7 open, DataReport9 in preview: %8.1f MB\n", ours.peakMb);
    std::printf("  bare Qt window:                                 %8.1f MB\n", bare.peakMb);
    std::printf("  ratio: %.2fx (goal <= 3x and under 150 MB)\n", ours.peakMb / bare.peakMb);
    bench::tableRow(QStringLiteral("M1 peak memory (demo plant, Form7, DataReport9)"), ours.peakMb, bare.peakMb, "MB");

    // M2: the same start on two registers a hundred times apart.
    const QByteArray m2Script = clockLine() + "start\nshow Form7\nboxes\nget Form7.DataGrid1.Row\nquit\n";
    auto peakAt = [&](int registerRows) {
        QTemporaryDir dir;
        bench::largeStore(dir, {registerRows, 0, registerRows / 100, 0});
        store::DataStore::reset();
        const bench::ProcessRun run = bench::bestRun(rounds, velmora, drive(dir), m2Script);
        if (!allOk(run))
            std::fprintf(stderr, "M2 at %d rows: exit %d\n%s", registerRows, run.exitCode, run.output.constData());
        return allOk(run) ? run.peakMb : -1.0;
    };
    const double small = peakAt(1000);
    const double large = peakAt(100000);
    std::printf("M2 memory growth: peak resident memory with Form7 open, best of %d runs\n", rounds);
    std::printf("  100k register rows: %8.1f MB\n", large);
    std::printf("  1k register rows:   %8.1f MB\n", small);
    std::printf("  ratio: %.2fx (goal <= 2x)\n", large / small);
    bench::tableRow(QStringLiteral("M2 peak memory, Form7 at 100k rows / at 1k rows"), large, small, "MB");
    return small > 0 && large > 0 ? 0 : 1;
}
