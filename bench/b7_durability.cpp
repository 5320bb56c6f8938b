// B7: what a commit synchronised to the disk costs. The same single-row saves run on the
// store as it opens (synchronous=FULL) and with SQLite's weaker NORMAL, which survives
// the program's end but not a power cut; then a loop of row-by-row updates inside one
// Batch, as the screens' walks run.
#include "BenchStore.h"
#include "store/Batch.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    auto store = bench::sampleStore(dir);
    constexpr int Saves = 200;
    int n = 0;
    auto saves = [&] {
        for (int i = 0; i < Saves; ++i)
            store->Execute(QStringLiteral("INSERT INTO Tbl_Reparto (Reparto) VALUES ('B%1')").arg(++n));
    };
    auto walk = [&] {
        store::Batch batch(*store);
        for (int i = 0; i < Saves; ++i)
            store->Execute(QStringLiteral("UPDATE Tbl_Reparto SET Reparto = 'W%1' WHERE Reparto = 'B%1'").arg(i + 1));
    };
    const double full = bench::bestOf(3, saves);
    const double batched = bench::bestOf(3, walk);
    bench::exec(store->handle(), "PRAGMA synchronous=NORMAL");
    const double normal = bench::bestOf(3, saves);
    std::printf("B7 %d single-row saves, FULL sync vs NORMAL: best of 3 runs\n", Saves);
    std::printf("  synchronous=FULL:   %8.1f ms (%.2f ms a save)\n", full, full / Saves);
    std::printf("  synchronous=NORMAL: %8.1f ms (%.2f ms a save)\n", normal, normal / Saves);
    std::printf("  %d row updates in one Batch (FULL): %8.1f ms\n", Saves, batched);
    return 0;
}
