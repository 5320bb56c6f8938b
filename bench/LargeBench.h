#pragma once
// What the screens' benchmarks share: a QApplication, a temporary program folder holding
// a large store made by the demo's generator, scripted boxes and a frozen clock.

#include "BenchStore.h"
#include "demo/LargeStore.h"
#include "runtime/AppPath.h"
#include "shell/Driver.h"

namespace bench {

/// The demo day of the benchmarks.
inline QDate benchDay()
{
    return QDate(2026, 11, 16);
}

/// Makes the large store in dir (the program's folder from now on); the store's handle.
inline sqlite3* largeStore(const QTemporaryDir& dir, const demo::LargeSizes& sizes,
                           demo::LargeSummary* summary = nullptr)
{
    vb::setAppPath(dir.path());
    store::DataStore::reset();
    shell::Driver::setUpServices();
    vb::Clock::freeze(QDateTime(benchDay(), QTime(8, 0)));
    const demo::LargeSummary made = demo::makeLargeStore(2026, sizes);
    if (summary)
        *summary = made;
    return store::DataStore::instance().handle();
}

} // namespace bench
