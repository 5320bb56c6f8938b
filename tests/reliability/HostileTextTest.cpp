// Hostile text pasted into every text field of every screen, then the screen's save: the
// program never ends, no table changes beyond what a plain save of the screen changes,
// and the text is either stored as the field held it or refused with a box.

#include "controls/Controls.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"
#include "support/ScreenTest.h"
#include "support/StoreSnapshot.h"

#include <QPointer>

namespace {

const QStringList& hostileTexts()
{
    static const QStringList texts = {
        QStringLiteral("O'Brien \"doppio\""),
        QStringLiteral("x'; DROP TABLE Tbl_Maintenance; --"),
        QStringLiteral("#1/1/2000# 100% [a-z] * ? _"),
        QString(100000, QLatin1Char('W')),
        QStringLiteral("a\tb\r\nc") + QChar(0x01) + QChar(0x1b),
        QStringLiteral("guasto \U0001F525\U0001F9F0"),
        QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u202E\u0645\u0631\u062D\u0628\u0627"),
    };
    return texts;
}

class HostileText : public ScreenTest
{
protected:
    /// The screen with its add and save pressed around `fill`; what changed in the store.
    /// The screen with its add pressed, `type` run on each text field open to typing (one
    /// that a change before it took away is passed over), then its save pressed; what
    /// changed in the store.
    testkit::StoreChange save(const QString& screen, const std::function<void(vb::TextBox*)>& type)
    {
        const testkit::StoreSnapshot before;
        shell::screens().show(screen);
        if (vb::Form* form = shell::screens().loaded(screen)) {
            press(screen, QStringLiteral("Cmd_Add"));
            std::vector<QPointer<vb::TextBox>> boxes;
            for (QWidget* w : form->findChildren<QWidget*>())
                if (auto* box = dynamic_cast<vb::TextBox*>(w))
                    boxes.emplace_back(box);
            for (const QPointer<vb::TextBox>& box : boxes)
                if (box && box->isEnabled() && !box->Locked())
                    type(box);
            press(screen, QStringLiteral("Cmd_Edit"));
        }
        shell::screens().unloadAllScreens();
        return testkit::StoreSnapshot().since(before);
    }
    static void press(const QString& screen, const QString& button)
    {
        if (vb::Control* c = shell::screens().controlIfAny(screen, button))
            c->click();
    }
};

TEST_F(HostileText, EveryFieldOfEveryScreenStoresTheTextOrRefusesIt)
{
    upgradeStore();
    int aborts = 0, fields = 0, stored = 0, refused = 0;
    shell::endOnUncaughtErrors();
    shell::setEndHandler([&] { ++aborts; });
    for (const QString& screen : shell::ScreenRegistry::workingScreens()) {

        // What a plain save of the screen changes is what a hostile one may change.
        const testkit::StoreChange plain =
            save(screen, [](vb::TextBox* box) { box->setText(QStringLiteral("Prova")); });
        boxes();
        for (const QString& text : hostileTexts()) {
            QStringList held;
            const testkit::StoreChange change = save(screen, [&](vb::TextBox* box) {
                box->setText(text);
                held << box->Text();
                ++fields;
            });
            const bool boxShown = !boxes().empty();
            EXPECT_TRUE(change.oneRowAtMost() || change.within(plain))
                << screen.toStdString() << ": " << change.describe().toStdString();
            const bool kept = change.holdsAnyOf(held);
            EXPECT_TRUE(kept || boxShown || plain.empty())
                << screen.toStdString() << ": " << text.left(40).toStdString();
            stored += kept ? 1 : 0;
            refused += boxShown && !kept ? 1 : 0;
        }
    }
    EXPECT_EQ(aborts, 0);
    shell::setEndHandler({});
    std::printf("hostile text: %d fields fuzzed, %d saves stored the text, %d refused with a box, %d aborts\n", fields,
                stored, refused, aborts);
}

} // namespace
