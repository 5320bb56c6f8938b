#include "support/ScreenTest.h"

#include "reports/ReportViewer.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/OpenFile.h"
#include "runtime/VBError.h"
#include "shell/Driver.h"
#include "store/DataStore.h"

#include <QFile>

void ScreenTest::SetUp()
{
    ASSERT_TRUE(m_dir.isValid());
    vb::setAppPath(m_dir.path());
    store::DataStore::reset();
    // VELMORA_TEST_STORE=server: the same test on a new database of the test server.
    if (qEnvironmentVariable("VELMORA_TEST_STORE") == QLatin1String("server")) {
        SKIP_WITHOUT_SERVER();
        m_server = std::make_unique<testserver::ScratchDatabase>();
        store::DataStore::setServer(m_server->uri());
    }
    shell::Driver::setUpServices();
    vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0, 0)));
    vb::MsgBoxService::clear();
    vb::OpenFileService::takeOpened();
    shell::setWorkloadTotal({});
}

void ScreenTest::TearDown()
{
    shell::screens().discardAll();
    // A report's preview outlives the screen that printed it.
    reports::UnloadReport(QStringLiteral("DataReport"));
    for (int i = 1; i <= 25; ++i)
        reports::UnloadReport(QStringLiteral("DataReport%1").arg(i));
    vb::resumeEvents(); // a run that an uncaught error ended ends with the test
    for (auto& [name, original] : m_saved) {
        if (original)
            shell::ScreenRegistry::addFactory(name, original);
        else
            shell::ScreenRegistry::removeFactory(name);
    }
    shell::setWorkloadTotal({});
    store::DataStore::reset();
    store::DataStore::setServer({});
    m_server.reset();
    vb::Clock::unfreeze();
    vb::MsgBoxService::clear();
}

void ScreenTest::exec(const QString& jet)
{
    store::DataStore::instance().Execute(jet);
}

ScreenTest::Rows ScreenTest::rows(const QString& jet)
{
    Rows out;
    store::Recordset rs;
    rs.Open(jet);
    while (!rs.Eof()) {
        std::vector<vb::Variant> row;
        for (int i = 0; i < rs.FieldCount(); ++i)
            row.push_back(rs.Fields(i).Value());
        out.push_back(row);
        rs.MoveNext();
    }
    return out;
}

QStringList ScreenTest::column(const QString& jet)
{
    QStringList out;
    for (const auto& r : rows(jet))
        out << (r.front().isNull() ? QStringLiteral("<null>") : r.front().toString());
    return out;
}

QStringList ScreenTest::lines(const QString& jet)
{
    QStringList out;
    for (const auto& r : rows(jet)) {
        QStringList cells;
        for (const auto& v : r)
            cells << (v.isNull() ? QString() : v.toString());
        out << cells.join(QLatin1Char('|'));
    }
    return out;
}

vb::Variant ScreenTest::value(const QString& jet)
{
    const Rows r = rows(jet);
    return r.empty() ? vb::Variant::null() : r.front().front();
}

void ScreenTest::upgradeStore()
{
    for (const QString& s : shell::frmMain::upgradeStatements()) {
        try {
            exec(s);
        } catch (const vb::VBError&) {
        }
    }
}

shell::frmMain* ScreenTest::start()
{
    shell::screens().show(QStringLiteral("frmMain"));
    return screen<shell::frmMain>(QStringLiteral("frmMain"));
}

void ScreenTest::standIn(const QString& name, shell::ScreenRegistry::Factory factory)
{
    if (!m_saved.count(name))
        m_saved[name] = shell::ScreenRegistry::factory(name);
    shell::ScreenRegistry::addFactory(name, std::move(factory));
}

void ScreenTest::standIn(const QString& name, const QStringList& controls, int* loads)
{
    standIn(name, [name, controls, loads](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, name, loads);
        for (const QString& c : controls) {
            const QString n = c.mid(2);
            switch (c.front().unicode()) {
            case 'T': new vb::TextBox(f, n); break;
            case 'L': new vb::Label(f, n); break;
            case 'F': new vb::Frame(f, n); break;
            case 'C': new vb::DataCombo(f, n); break;
            case 'P': new vb::DTPicker(f, n); break;
            default: ADD_FAILURE() << "no stand-in control " << c.toStdString();
            }
        }
        return f;
    });
}

shell::ScreenRegistry::Factory ScreenTest::original(const QString& name) const
{
    const auto it = m_saved.find(name);
    return it != m_saved.end() ? it->second : shell::ScreenRegistry::factory(name);
}

vb::ShownBox ScreenTest::oneBox()
{
    const auto shown = boxes();
    if (shown.size() == 1)
        return shown.front();
    ADD_FAILURE() << shown.size() << " boxes shown, not one"
                  << (shown.empty() ? std::string() : ": first " + shown.front().prompt.toStdString());
    return {};
}

QStringList ScreenTest::column(vb::DataGrid* grid, const QString& name)
{
    QStringList out;
    for (int r = 0; r < grid->RecordCount(); ++r)
        out << grid->cellText(r, name);
    return out;
}

QStringList ScreenTest::shown(vb::DataGrid* grid)
{
    QStringList out;
    for (int r = 0; r < grid->RecordCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < grid->ColumnCount(); ++c)
            cells << grid->cellText(r, c);
        out << cells.join(QLatin1Char('|'));
    }
    return out;
}

QStringList ScreenTest::captions(vb::DataGrid* grid)
{
    QStringList out;
    for (int c = 0; c < grid->ColumnCount(); ++c)
        out << grid->Columns(c).Caption();
    return out;
}

void ScreenTest::selectRow(vb::DataGrid* grid, const QString& column, const QString& text, bool clickFirst)
{
    for (int r = 0; r < grid->RecordCount(); ++r) {
        if (grid->cellText(r, column) == text) {
            if (clickFirst)
                grid->click();
            return grid->select(r);
        }
    }
    ADD_FAILURE() << "no row with " << column.toStdString() << " " << text.toStdString();
}

void ScreenTest::selectKey(vb::DataGrid* grid, int key, bool clickFirst)
{
    for (int r = 0; r < grid->RecordCount(); ++r) {
        if (grid->cellValue(r, 0).toLong() == key) {
            if (clickFirst)
                grid->click();
            return grid->select(r);
        }
    }
    ADD_FAILURE() << "no row of key " << key;
}

QStringList ScreenTest::printed(const QString& report)
{
    QStringList t;
    if (const auto r = reports::LaidOutPages(report))
        for (const auto& page : r->pages)
            for (const auto& p : page)
                t << p.text;
    return t;
}

void ScreenTest::retype(vb::TextBox* field, const QString& text)
{
    field->setText(QString());
    field->typeText(text);
}

void ScreenTest::typeOver(vb::Control* field, const QString& text)
{
    field->focusIn();
    field->typeText(text);
    field->focusOut();
}

void ScreenTest::typeLastKey(vb::TextBox* field, const QString& text)
{
    field->setText(text.chopped(1));
    field->setSelStart(int(text.size()) - 1);
    field->keyPress(text.back().unicode());
}

QStringList ScreenTest::linesOf(const QString& name) const
{
    QFile f(path() + QLatin1Char('/') + name);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    QString all = QString::fromUtf8(f.readAll());
    all.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return all.split(u'\n');
}

QList<int> ScreenTest::widths(vb::DataGrid* grid)
{
    QList<int> out;
    for (int c = 0; c < grid->ColumnCount(); ++c)
        out << grid->Columns(c).Width();
    return out;
}
