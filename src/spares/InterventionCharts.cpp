#include "spares/InterventionCharts.h"

#include "controls/CommonDialog.h"
#include "runtime/MsgBox.h"
#include "store/DataStore.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QHorizontalBarSeries>
#include <QLineSeries>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>
#include <QValueAxis>

#include <algorithm>
#include <map>

namespace spares {

namespace {

const QString EmptyLine = QStringLiteral("Nessun intervento da mostrare: il grafico è vuoto");
const QStringList Months = {QStringLiteral("Gen"), QStringLiteral("Feb"), QStringLiteral("Mar"), QStringLiteral("Apr"),
                            QStringLiteral("Mag"), QStringLiteral("Giu"), QStringLiteral("Lug"), QStringLiteral("Ago"),
                            QStringLiteral("Set"), QStringLiteral("Ott"), QStringLiteral("Nov"), QStringLiteral("Dic")};

QString text(const vb::Adodc& source, int row, int column)
{
    return column < 0 ? QString() : source.value(row, column).displayText();
}

QChart* makeChart(const ChartFigures& f, bool lines)
{
    auto* chart = new QChart;
    chart->setTitle(f.empty() ? f.title + QStringLiteral("\n") + EmptyLine : f.title);
    chart->legend()->setVisible(f.series.size() > 1);
    double top = 0;
    for (const auto& values : f.values)
        for (double v : values)
            top = std::max(top, v);
    auto* counts = new QValueAxis;
    counts->setLabelFormat(QStringLiteral("%d"));
    counts->setRange(0, std::max(1.0, top));
    counts->applyNiceNumbers();
    auto* categories = new QBarCategoryAxis;
    if (lines) {
        categories->append(f.labels);
        chart->addAxis(categories, Qt::AlignBottom);
        chart->addAxis(counts, Qt::AlignLeft);
        for (qsizetype s = 0; s < f.series.size(); ++s) {
            auto* line = new QLineSeries;
            line->setName(f.series[s]);
            const std::vector<double>& values = f.values[size_t(s)];
            for (size_t i = 0; i < values.size(); ++i)
                line->append(double(i), values[i]);
            chart->addSeries(line);
            line->attachAxis(categories);
            line->attachAxis(counts);
        }
        return chart;
    }
    // Bars lying down, so that causes and machines keep their whole names; the first
    // (the most) at the top.
    QStringList labels = f.labels;
    std::reverse(labels.begin(), labels.end());
    categories->append(labels);
    chart->addAxis(categories, Qt::AlignLeft);
    chart->addAxis(counts, Qt::AlignBottom);
    auto* bars = new QHorizontalBarSeries;
    for (qsizetype s = 0; s < f.series.size(); ++s) {
        auto* set = new QBarSet(f.series[s]);
        const std::vector<double>& values = f.values[size_t(s)];
        for (auto v = values.rbegin(); v != values.rend(); ++v)
            *set << *v;
        bars->append(set);
    }
    chart->addSeries(bars);
    bars->attachAxis(categories);
    bars->attachAxis(counts);
    return chart;
}

} // namespace

bool ChartFigures::empty() const
{
    for (const auto& values : this->values)
        for (double v : values)
            if (v != 0)
                return false;
    return true;
}

ChartFigures CausesChart(const vb::Adodc& causes, const QString& machine, const QString& model, const QString& number)
{
    ChartFigures f;
    f.title = machine.isEmpty() ? QStringLiteral("Interventi per causa: tutte le macchine dell'elenco")
                                : QStringLiteral("Interventi per causa: ") + machine + QStringLiteral(" ") + model +
                                      QStringLiteral(" N° ") + number;
    f.series = QStringList{QStringLiteral("Interventi")};
    const int cMachine = causes.columnIndex(QStringLiteral("Macchina"));
    const int cModel = causes.columnIndex(QStringLiteral("Modello"));
    const int cNumber = causes.columnIndex(QStringLiteral("Numerazione"));
    const int cCause = causes.columnIndex(QStringLiteral("Causa_Interv"));
    std::map<QString, double> byCause;
    for (int r = 0; r < causes.RecordCount() && causes.ColumnCount() >= 5; ++r) {
        if (!machine.isEmpty() && (text(causes, r, cMachine) != machine || text(causes, r, cModel) != model ||
                                   text(causes, r, cNumber) != number))
            continue;
        byCause[text(causes, r, cCause)] += causes.value(r, 4).toDouble();
    }
    std::vector<std::pair<QString, double>> ordered(byCause.begin(), byCause.end());
    std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    f.values.resize(1);
    for (const auto& [cause, count] : ordered) {
        f.labels << cause;
        f.values[0].push_back(count);
    }
    return f;
}

ChartFigures RankingChart(const vb::Adodc& ranking, int most)
{
    ChartFigures f;
    f.title = QStringLiteral("Macchine con più interventi");
    f.series = QStringList{QStringLiteral("Interventi")};
    f.values.resize(1);
    const int cModel = ranking.columnIndex(QStringLiteral("Modello"));
    const int cNumber = ranking.columnIndex(QStringLiteral("Numerazione"));
    for (int r = 0; r < ranking.RecordCount() && r < most; ++r) {
        f.labels << text(ranking, r, cModel) + QStringLiteral(" N° ") + text(ranking, r, cNumber);
        f.values[0].push_back(ranking.value(r, 0).toDouble());
    }
    return f;
}

QString RankingStatement()
{
    return QStringLiteral(
        "SELECT Count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
        "Tbl_Ricerca.Numerazione, Tbl_Ricerca.ID_NUM FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
        "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
        "Tbl_Ricerca.Numerazione, Tbl_Ricerca.ID_NUM ORDER BY Count(Tbl_Ricerca.ID_CAUSA) DESC , Tbl_Ricerca.Macchina, "
        "Tbl_Ricerca.Modello, Val(Tbl_Ricerca.Numerazione), Count(Tbl_Causa_Intervento.Causa_Interv) DESC;");
}

ChartFigures MonthsChart()
{
    ChartFigures f;
    f.title = QStringLiteral("Interventi per mese");
    f.labels = Months;
    store::Recordset rs;
    rs.Open(QStringLiteral("SELECT Year(Tbl_Ricerca.Data) AS Anno, Month(Tbl_Ricerca.Data) AS Mese, "
                           "Count(Tbl_Ricerca.ID) AS Interventi FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                           "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Year(Tbl_Ricerca.Data), "
                           "Month(Tbl_Ricerca.Data) ORDER BY Year(Tbl_Ricerca.Data), Month(Tbl_Ricerca.Data);"));
    for (; !rs.Eof(); rs.MoveNext()) {
        const vb::Variant year = rs.Fields(0).Value();
        if (year.isNull())
            continue; // an intervention without a date has no month
        const QString name = year.displayText();
        if (f.series.isEmpty() || f.series.back() != name) {
            f.series << name;
            f.values.emplace_back(12, 0.0);
        }
        const int month = int(rs.Fields(1).Value().toDouble());
        if (month >= 1 && month <= 12)
            f.values.back()[size_t(month - 1)] = rs.Fields(2).Value().toDouble();
    }
    if (f.series.isEmpty()) {
        f.series << QStringLiteral("Interventi");
        f.values.emplace_back(12, 0.0);
    }
    return f;
}

// ---- the window ---------------------------------------------------------------------------

InterventionCharts::InterventionCharts(QWidget* owner, std::vector<ChartFigures> charts, int current)
    : QWidget(owner, Qt::Window), m_figures(std::move(charts))
{
    setObjectName(QStringLiteral("Grafici"));
    setWindowTitle(QStringLiteral("GRAFICI INTERVENTI"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* bar = new QToolBar(this);
    QObject::connect(bar->addAction(QStringLiteral("Stampa...")), &QAction::triggered, this, [this] { print(); });
    QObject::connect(bar->addAction(QStringLiteral("Salva PDF...")), &QAction::triggered, this,
                     [this] { saveAs(true); });
    QObject::connect(bar->addAction(QStringLiteral("Salva PNG...")), &QAction::triggered, this,
                     [this] { saveAs(false); });
    m_tabs = new QTabWidget(this);
    static const char* const names[] = {"Per causa", "Macchine", "Per mese"};
    for (size_t i = 0; i < m_figures.size(); ++i) {
        auto* view = new QChartView(makeChart(m_figures[i], i == 2), m_tabs);
        view->setRenderHint(QPainter::Antialiasing);
        m_tabs->addTab(view, QString::fromLatin1(i < 3 ? names[i] : ""));
    }
    m_tabs->setCurrentIndex(std::clamp(current, 0, std::max(0, count() - 1)));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar);
    layout->addWidget(m_tabs, 1);
    resize(900, 600);
}

int InterventionCharts::count() const
{
    return int(m_figures.size());
}

int InterventionCharts::current() const
{
    return m_tabs->currentIndex();
}

QChartView* InterventionCharts::view(int index) const
{
    return static_cast<QChartView*>(m_tabs->widget(index));
}

bool InterventionCharts::save(const QString& path) const
{
    QChartView* shown = view(current());
    if (!shown)
        return false;
    if (!path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
        return shown->grab().save(path, "PNG");
    QPdfWriter pdf(path);
    pdf.setPageOrientation(QPageLayout::Landscape);
    pdf.setTitle(m_figures[size_t(current())].title);
    QPainter painter;
    if (!painter.begin(&pdf))
        return false;
    shown->render(&painter);
    return painter.end();
}

void InterventionCharts::saveAs(bool pdf)
{
    vb::FileDialogRequest request;
    request.title = QStringLiteral("Salva grafico");
    request.filter = pdf ? QStringLiteral("PDF (Documento PDF)|*.pdf") : QStringLiteral("PNG (Immagine PNG)|*.png");
    request.defaultExt = pdf ? QStringLiteral("pdf") : QStringLiteral("png");
    request.fileName = QStringLiteral("Grafico.") + request.defaultExt;
    request.save = true;
    const std::optional<QString> path = vb::FileDialogService::ask(request);
    if (path && !save(*path))
        vb::MsgBox(QStringLiteral("Impossibile salvare il file:  ") + *path, vb::mb::Exclamation);
}

void InterventionCharts::print()
{
    // A person chooses the printer; a scripted run never waits on that dialog.
    if (vb::MsgBoxService::scripted())
        return;
    QPrinter printer;
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QPainter painter(&printer);
    view(current())->render(&painter);
}

} // namespace spares
