#pragma once
// The former shell fixture, for the tests not yet on the kit: the screen fixture's set-up
// and its store, screens and stand-ins under the old names, without its other helpers,
// whose names the driver tests use for their own.

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/OpenFile.h"
#include "shell/Driver.h"
#include "store/DataStore.h"
#include "support/ScreenTest.h"

class ShellFixture : public ::testing::Test
{
    struct Kit : ScreenTest
    {
        void TestBody() override { }
        using ScreenTest::path;
        using ScreenTest::rows;
        using ScreenTest::SetUp;
        using ScreenTest::StandIn;
        using ScreenTest::standIn;
        using ScreenTest::start;
        using ScreenTest::TearDown;
    };

protected:
    using StandIn = Kit::StandIn;
    void SetUp() override { m_kit.SetUp(); }
    void TearDown() override { m_kit.TearDown(); }
    void standIn(const QString& name, shell::ScreenRegistry::Factory factory)
    {
        m_kit.standIn(name, std::move(factory));
    }
    void standIn(const QString& name, const QStringList& controls, int* loads = nullptr)
    {
        m_kit.standIn(name, controls, loads);
    }
    static void exec(const QString& jet) { store::DataStore::instance().Execute(jet); }
    static std::vector<std::vector<vb::Variant>> rows(const QString& jet) { return Kit::rows(jet); }
    static shell::frmMain* start() { return Kit::start(); }
    QString path() const { return m_kit.path(); }

private:
    Kit m_kit;
};
