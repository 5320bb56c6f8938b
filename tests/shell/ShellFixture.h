#pragma once
// A fresh store in a temporary program folder, a frozen clock, scripted boxes, recorded
// file openings and manual timers, and stand-in screens that are taken away again.

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "controls/Controls.h"
#include "controls/DateControls.h"
#include "shell/Driver.h"
#include "shell/ScreenRegistry.h"
#include "shell/frmMain.h"
#include "store/DataStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <memory>

class ShellFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        vb::setAppPath(m_dir.path());
        store::DataStore::reset();
        shell::Driver::setUpServices();
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0, 0)));
        vb::MsgBoxService::clear();
        vb::OpenFileService::takeOpened();
        shell::setWorkloadTotal({});
    }

    void TearDown() override
    {
        shell::screens().discardAll();
        vb::resumeEvents(); // a run that an uncaught error ended ends with the test
        for (auto& [name, original] : m_saved) {
            if (original)
                shell::ScreenRegistry::addFactory(name, original);
            else
                shell::ScreenRegistry::removeFactory(name);
        }
        shell::setWorkloadTotal({});
        store::DataStore::reset();
        vb::Clock::unfreeze();
        vb::MsgBoxService::clear();
    }

    /// Puts a stand-in screen under a name for this test.
    void standIn(const QString& name, shell::ScreenRegistry::Factory factory)
    {
        if (!m_saved.count(name))
            m_saved[name] = shell::ScreenRegistry::factory(name);
        shell::ScreenRegistry::addFactory(name, std::move(factory));
    }

    /// A screen with the given controls: "T:" text box, "L:" label, "F:" frame, "D:" date picker.
    void standIn(const QString& name, const QStringList& controls, int* loads = nullptr)
    {
        standIn(name, [name, controls, loads](QWidget* owner) -> vb::Form* {
            auto* f = new StandIn(owner, name, loads);
            for (const QString& c : controls) {
                const QString n = c.mid(2);
                if (c.startsWith(QLatin1String("T:")))
                    new vb::TextBox(f, n);
                else if (c.startsWith(QLatin1String("L:")))
                    new vb::Label(f, n);
                else if (c.startsWith(QLatin1String("F:")))
                    new vb::Frame(f, n);
                else if (c.startsWith(QLatin1String("D:")))
                    new vb::DTPicker(f, n);
            }
            return f;
        });
    }

    void exec(const QString& jet) { store::DataStore::instance().Execute(jet); }

    std::vector<std::vector<vb::Variant>> rows(const QString& jet)
    {
        std::vector<std::vector<vb::Variant>> out;
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

    shell::frmMain* start()
    {
        shell::screens().show(QStringLiteral("frmMain"));
        return shell::screens().formAs<shell::frmMain>(QStringLiteral("frmMain"));
    }

    QString path() const { return m_dir.path(); }

    class StandIn : public vb::Form
    {
    public:
        StandIn(QWidget* owner, const QString& name, int* loads) : vb::Form(owner, name), m_loads(loads) {}
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

private:
    QTemporaryDir m_dir;
    std::map<QString, shell::ScreenRegistry::Factory> m_saved;
};
