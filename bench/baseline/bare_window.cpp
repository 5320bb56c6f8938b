// The whole-program benchmarks' baseline: a bare QApplication showing one window. With a
// store, the window is a table of the register's list (the rows, columns and order the
// register screen lists) read with SQLite's C API into a plain model; without, an empty
// table. Ends as soon as the window is on the screen.
#include <QAbstractTableModel>
#include <QApplication>
#include <QDate>
#include <QHeaderView>
#include <QTableView>
#include <QWindow>

#include <sqlite3.h>
#include <vector>

namespace {

struct Row
{
    qint64 id;
    QString macchina, modello, numerazione, tipo;
    double ultima, prossima;
};

class RegisterModel : public QAbstractTableModel
{
public:
    std::vector<Row> rows;
    int rowCount(const QModelIndex& = {}) const override { return int(rows.size()); }
    int columnCount(const QModelIndex& = {}) const override { return 7; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const Row& r = rows[size_t(index.row())];
        const auto date = [](double d) { return QDate(1899, 12, 30).addDays(qint64(d)).toString(u"dd/MM/yyyy"); };
        switch (index.column()) {
        case 0: return r.id;
        case 1: return r.macchina;
        case 2: return r.modello;
        case 3: return r.numerazione;
        case 4: return r.tipo;
        case 5: return date(r.ultima);
        default: return date(r.prossima);
        }
    }
};

QString text(sqlite3_stmt* st, int i)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)), sqlite3_column_bytes(st, i));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTableView view;
    RegisterModel model;
    if (argc > 1) {
        sqlite3* db = nullptr;
        sqlite3_open_v2(argv[1], &db, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT ID, Macchina, Modello, Numerazione, Manutenzione_Tipo, Ultima, Prossima FROM "
                           "Tbl_Maintenance ORDER BY Prossima",
                           -1, &st, nullptr);
        while (sqlite3_step(st) == SQLITE_ROW)
            model.rows.push_back({sqlite3_column_int64(st, 0), text(st, 1), text(st, 2), text(st, 3), text(st, 4),
                                  sqlite3_column_double(st, 5), sqlite3_column_double(st, 6)});
        sqlite3_finalize(st);
        sqlite3_close(db);
    }
    view.setModel(&model);
    view.resize(1000, 600);
    view.show();
    while (!view.windowHandle() || !view.windowHandle()->isExposed())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    QApplication::processEvents();
    return model.rows.empty() && argc > 1 ? 1 : 0;
}
