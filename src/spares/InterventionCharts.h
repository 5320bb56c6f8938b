#pragma once
/// @file InterventionCharts.h
/// The pictures of the intervention statistics: what a maintenance manager reads off the
/// three grids of Form11, drawn. Interventions by cause for the machine chosen (or for
/// every machine of the list), the machines ranked by their interventions, and the
/// interventions month by month, one line per year. As on the grids, an intervention
/// whose cause is not known counts nowhere.
///
/// The window prints and saves as PDF or PNG through the same services as the documents:
/// the printer dialog for a person at the screen, the file dialog service for the path.

#include "controls/DataControls.h"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

class QChartView;
class QTabWidget;

namespace spares {

/// One chart's figures: a value per label, or per label and series (the months).
struct ChartFigures
{
    QString title;
    QStringList labels;                      ///< the categories, in the order drawn
    QStringList series;                      ///< one name per series ("Interventi", or the years)
    std::vector<std::vector<double>> values; ///< values[series][label]
    bool empty() const;
};

/// Interventions by cause, from the rows of the causes grid (machine, model, number,
/// cause, count): those of the machine given, or all rows when machine is empty.
ChartFigures CausesChart(const vb::Adodc& causes, const QString& machine, const QString& model, const QString& number);
/// The machines by their interventions, most first, from the ranking grid's rows (count,
/// machine, model, number); at most `most` of them.
ChartFigures RankingChart(const vb::Adodc& ranking, int most = 15);
/// Interventions per month of every year in the store.
ChartFigures MonthsChart();

/// The statement of the ranking, as Form11's "Macchine con più Interventi" runs it.
QString RankingStatement();

/// The chart window: one tab per chart, and the commands to print and save the one shown.
class InterventionCharts : public QWidget
{
public:
    InterventionCharts(QWidget* owner, std::vector<ChartFigures> charts, int current);

    int count() const;
    const ChartFigures& figures(int index) const { return m_figures[size_t(index)]; }
    int current() const;

    /// Saves the chart shown; the kind goes by the file's extension (.pdf or .png).
    /// False when the file could not be written.
    bool save(const QString& path) const;
    /// Asks for a path through the file dialog service, then saves ("Salva grafico").
    void saveAs(bool pdf);
    /// Prints the chart shown on the printer a person chooses.
    void print();

private:
    QChartView* view(int index) const;
    std::vector<ChartFigures> m_figures;
    QTabWidget* m_tabs = nullptr;
};

} // namespace spares
