#include "reports/ReportViewer.h"

#include "controls/CommonDialog.h"
#include "controls/Control.h"
#include "reports/ChartPrint.h"
#include "reports/LayoutCatalogue.h"
#include "reports/ReportRender.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"

#include <QAction>
#include <QGuiApplication>
#include <QPointer>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QScreen>
#include <QToolBar>
#include <QVBoxLayout>

#include <map>

namespace reports {

namespace {

/// The preview: the pages as they will print, zoom, paging, print and save as PDF.
class PreviewWindow : public QWidget
{
public:
    PreviewWindow(const QString& name, const QString& title, const Document* doc, QWidget* owner)
        : QWidget(owner, Qt::Window), m_doc(doc)
    {
        setObjectName(name);
        setWindowTitle(title);
        setAttribute(Qt::WA_DeleteOnClose);

        m_printer.setFullPage(true);
        m_printer.setPageLayout(pageLayout(*doc));
        m_printer.setDocName(title);

        auto* bar = new QToolBar(this);
        m_preview = new QPrintPreviewWidget(&m_printer, this);
        m_preview->setObjectName(QStringLiteral("Preview"));
        QObject::connect(m_preview, &QPrintPreviewWidget::paintRequested, m_preview,
                         [this](QPrinter* printer) { reports::render(*printer, *m_doc); });

        auto add = [&](const QString& text, auto slot) {
            QAction* a = bar->addAction(text);
            QObject::connect(a, &QAction::triggered, this, slot);
            return a;
        };
        add(QStringLiteral("Stampa..."), [this] { print(); });
        add(QStringLiteral("Salva PDF..."), [this] { savePdf(); });
        bar->addSeparator();
        add(QStringLiteral("Zoom +"), [this] { m_preview->zoomIn(); });
        add(QStringLiteral("Zoom -"), [this] { m_preview->zoomOut(); });
        add(QStringLiteral("Pagina intera"), [this] { m_preview->fitInView(); });
        add(QStringLiteral("Larghezza pagina"), [this] { m_preview->fitToWidth(); });
        bar->addSeparator();
        add(QStringLiteral("Prima"), [this] { m_preview->setCurrentPage(1); });
        add(QStringLiteral("Precedente"), [this] { m_preview->setCurrentPage(m_preview->currentPage() - 1); });
        add(QStringLiteral("Successiva"), [this] { m_preview->setCurrentPage(m_preview->currentPage() + 1); });
        add(QStringLiteral("Ultima"), [this] { m_preview->setCurrentPage(m_preview->pageCount()); });

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(bar);
        layout->addWidget(m_preview, 1);
    }

private:
    // Dialogs only for a person at the screen; a scripted run never blocks on one.
    static bool interactive() { return !vb::MsgBoxService::scripted(); }

    void print()
    {
        if (!interactive())
            return;
        QPrintDialog dialog(&m_printer, this);
        if (dialog.exec() == QDialog::Accepted) {
            m_printer.setFullPage(true);
            reports::render(m_printer, *m_doc);
        }
    }

    void savePdf()
    {
        vb::FileDialogRequest request;
        request.title = QStringLiteral("Salva PDF");
        request.filter = QStringLiteral("PDF (Documento PDF)|*.pdf");
        request.defaultExt = QStringLiteral("pdf");
        request.fileName = objectName() + QStringLiteral(".pdf");
        request.save = true;
        const std::optional<QString> chosen = vb::FileDialogService::ask(request);
        if (!chosen)
            return;
        const QString path = *chosen;
        if (!writePdf(*m_doc, path, windowTitle()))
            vb::MsgBox(QStringLiteral("Impossibile salvare il file:  ") + path, vb::mb::Exclamation);
    }

    const Document* m_doc;
    QPrinter m_printer;
    QPrintPreviewWidget* m_preview = nullptr;
};

struct Instance
{
    ReportLayout layout;
    Document doc;
    QPointer<PreviewWindow> window;
};

struct Registry
{
    Host host;
    std::map<QString, std::unique_ptr<Instance>> shown; // by lower-case name
};

Registry& registry()
{
    static Registry r;
    return r;
}

Instance* instance(const QString& name)
{
    auto it = registry().shown.find(name.toLower());
    return it == registry().shown.end() ? nullptr : it->second.get();
}

/// The defaults every show sets before the caller's own changes.
void setRunTimeDefaults(ReportLayout& layout)
{
    if (layout.control(Section::ReportHeader, QStringLiteral("Label2")))
        layout.setCaption(Section::ReportHeader, QStringLiteral("Label2"),
                          vb::Variant::fromDateTime(vb::Clock::now()).displayText());
    if (layout.name.compare(QLatin1String("DataReport12"), Qt::CaseInsensitive) == 0) {
        // The plan is of the present week, flanked by the one before and the one after.
        const int w = vb::WeekOfYear(vb::Clock::today());
        layout.setCaption(Section::ReportHeader, QStringLiteral("Label5"),
                          QStringLiteral("MANUTENZIONI SETTIMANA N° %1").arg(w));
        layout.setCaption(Section::PageHeader, QStringLiteral("Label8"), QString::number(w - 1));
        layout.setCaption(Section::PageHeader, QStringLiteral("Label7"), QString::number(w));
        layout.setCaption(Section::PageHeader, QStringLiteral("Label9"), QString::number(w + 1));
    }
}

void place(QWidget* w, Placement placement)
{
    const Host& host = registry().host;
    if (placement == Placement::WorkArea && host.workArea) {
        const QRect area = host.workArea();
        w->setGeometry(vb::twipsToPixels(2200), vb::twipsToPixels(area.y()), vb::twipsToPixels(area.width() + 300),
                       vb::twipsToPixels(area.height() - 200));
        return;
    }
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect s = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 1024);
    const QSize size(s.width() * 9 / 10, s.height() * 9 / 10);
    w->setGeometry(QRect(s.topLeft() + QPoint((s.width() - size.width()) / 2, (s.height() - size.height()) / 2), size));
}

std::optional<ReportLayout> layoutOrError(const QString& name)
{
    std::optional<ReportLayout> layout = MakeLayout(name);
    if (!layout)
        throw vb::VBError(9);
    return layout;
}

} // namespace

void setHost(Host host)
{
    registry().host = std::move(host);
}

void ShowReport(const QString& name, ReportData data, const ShowOptions& options)
{
    UnloadReport(name);
    auto inst = std::make_unique<Instance>();
    inst->layout = *layoutOrError(name);
    setRunTimeDefaults(inst->layout);
    if (options.setup)
        options.setup(inst->layout);
    QtTextMeasurer measurer;
    // The whole chart is laid out slice of weeks by slice, each on its own pages.
    inst->doc =
        IsChartLayout(inst->layout) ? LayOutChart(inst->layout, data, measurer) : LayOut(inst->layout, data, measurer);

    QWidget* owner = registry().host.owner ? registry().host.owner() : nullptr;
    auto* window = new PreviewWindow(inst->layout.name, inst->layout.title, &inst->doc, owner);
    inst->window = window;
    const QString key = name.toLower();
    Instance* raw = inst.get();
    // Closing the window unloads the report, as closing the old preview did.
    QObject::connect(window, &QObject::destroyed, [key, raw] {
        auto it = registry().shown.find(key);
        if (it != registry().shown.end() && it->second.get() == raw)
            registry().shown.erase(it);
    });
    registry().shown[key] = std::move(inst);
    place(window, options.placement);
    window->show();
}

void UnloadReport(const QString& name)
{
    auto it = registry().shown.find(name.toLower());
    if (it == registry().shown.end())
        return;
    std::unique_ptr<Instance> inst = std::move(it->second);
    registry().shown.erase(it);
    if (inst->window)
        delete inst->window.data();
}

void HideReport(const QString& name)
{
    if (Instance* i = instance(name); i && i->window)
        i->window->hide();
}

bool IsReportLoaded(const QString& name)
{
    return instance(name) != nullptr;
}

bool IsReportVisible(const QString& name)
{
    const Instance* i = instance(name);
    return i && i->window && i->window->isVisible();
}

std::optional<LaidOutReport> LaidOutPages(const QString& name)
{
    const Instance* i = instance(name);
    if (!i)
        return std::nullopt;
    return LaidOutReport{i->window && i->window->isVisible(), placedTexts(i->doc)};
}

void WritePdf(const QString& name, const QString& path)
{
    const Instance* i = instance(name);
    if (!i)
        throw vb::VBError(9);
    if (!writePdf(i->doc, path, i->layout.title))
        throw vb::VBError(75);
}

const Document* ReportDocument(const QString& name)
{
    const Instance* i = instance(name);
    return i ? &i->doc : nullptr;
}

QWidget* ReportWindow(const QString& name)
{
    const Instance* i = instance(name);
    return i ? i->window.data() : nullptr;
}

} // namespace reports
