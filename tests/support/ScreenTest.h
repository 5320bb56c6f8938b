#pragma once
// The screen tests' fixture: a fresh store in a temporary data folder, the frozen clock,
// scripted boxes, recorded file openings and stand-in screens taken away again; the
// screens loaded by name, the boxes answered and taken, statements and grids read as
// text, and the user's typing and clicking.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "shell/ScreenRegistry.h"
#include "shell/frmMain.h"
#include "support/Boxes.h"
#include "support/Fields.h"
#include "support/Plant.h"
#include "support/TestServer.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>

class ScreenTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // ---- the store --------------------------------------------------------------------
    using Rows = std::vector<std::vector<vb::Variant>>;
    static void exec(const QString& jet);
    static Rows rows(const QString& jet);
    /// The first column of a statement's rows as text, Null as "<null>".
    static QStringList column(const QString& jet);
    /// One text per row: the columns joined by "|", Null as "".
    static QStringList lines(const QString& jet);
    /// The first value of the first row; Null when there is no row.
    static vb::Variant value(const QString& jet);
    /// The start-up's upgrade of the store (note types, images, the sheets), as the main
    /// screen applies it; a step already made is skipped.
    static void upgradeStore();

    // ---- the screens ------------------------------------------------------------------
    /// A screen by name, loaded (hidden) when needed.
    template <class F> static F* screen(const QString& name) { return shell::screens().formAs<F>(name); }
    /// The screen after a reload of its own, once the old one is gone.
    template <class F> static F* reopened(const QString& name)
    {
        QCoreApplication::processEvents();
        return screen<F>(name);
    }
    template <class F> static F* reload(const QString& name)
    {
        shell::screens().unload(name);
        return screen<F>(name);
    }
    /// The main screen shown, as the program starts.
    static shell::frmMain* start();

    /// Puts a stand-in screen under a name for this test.
    void standIn(const QString& name, shell::ScreenRegistry::Factory factory);
    /// A stand-in with the given controls: "T:" text box, "L:" label, "F:" frame, "C:"
    /// data combo, "P:" date picker. loads counts its loads.
    void standIn(const QString& name, const QStringList& controls, int* loads = nullptr);
    /// The screen registered under a name before this test put a stand-in there.
    shell::ScreenRegistry::Factory original(const QString& name) const;

    // ---- the boxes --------------------------------------------------------------------
    /// The answers of the next boxes, in order (vb::answer::Yes...).
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }
    /// The boxes shown since the last call.
    static std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    /// The one box shown since the last call; a failure when there were none or more.
    static vb::ShownBox oneBox();

    // ---- grids, lists and prints ------------------------------------------------------
    /// The texts of a grid's column (by field or caption), row by row.
    static QStringList column(vb::DataGrid* grid, const QString& name);
    /// A grid as shown, one "a|b|c" line per row.
    static QStringList shown(vb::DataGrid* grid);
    static QStringList captions(vb::DataGrid* grid);
    static QList<int> widths(vb::DataGrid* grid);
    /// Clicks the first row whose column shows the text; clickFirst clicks the grid
    /// itself before, as a mouse does on a grid that reacts to its Click.
    static void selectRow(vb::DataGrid* grid, const QString& column, const QString& text, bool clickFirst = false);
    /// The same by the key in the grid's first column.
    static void selectKey(vb::DataGrid* grid, int key, bool clickFirst = false);
    /// Every text a report lays out, page by page.
    static QStringList printed(const QString& report);

    // ---- typing -----------------------------------------------------------------------
    /// Empties a field and types the text, without moving the focus.
    static void retype(vb::TextBox* field, const QString& text);
    /// Enters the field (which selects its text), types over it and leaves it.
    static void typeOver(vb::Control* field, const QString& text);
    /// Puts all of text but its last letter in the field, then types that letter, so a
    /// search as you type runs once on the whole text.
    static void typeLastKey(vb::TextBox* field, const QString& text);

    static QStringList texts(std::initializer_list<const vb::Control*> controls) { return kit::texts(controls); }

    // ---- the clock --------------------------------------------------------------------
    /// Moves the frozen clock to 08:00 of another day (the tests start on 15/11/2026).
    static void setToday(const QDate& day) { vb::Clock::freeze(QDateTime(day, QTime(8, 0, 0))); }

    // ---- files ------------------------------------------------------------------------
    /// The temporary data folder (the program's path).
    QString path() const { return m_dir.path(); }
    /// The lines of a file of the data folder, CR LF read as LF.
    QStringList linesOf(const QString& name) const;

    class StandIn : public vb::Form
    {
    public:
        StandIn(QWidget* owner, const QString& name, int* loads) : vb::Form(owner, name), m_loads(loads) { }
        void Form_Load() override
        {
            if (m_loads)
                ++*m_loads;
            if (onLoad)
                onLoad();
        }
        std::function<void()> onLoad;

    private:
        int* m_loads;
    };

    kit::Plant plant;

private:
    QTemporaryDir m_dir;
    std::map<QString, shell::ScreenRegistry::Factory> m_saved;
    std::unique_ptr<testserver::ScratchDatabase> m_server; ///< the test's database on the server store
};
