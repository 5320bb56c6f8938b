// Hostile text pasted into every text field of every working screen, then the screen's
// save: the program never ends, one row of one table changes at most, and the text is
// either stored as the field held it or refused with a box.

#include "controls/Controls.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "support/ScreenTest.h"
#include "support/StoreSnapshot.h"

#include <QPointer>

TEST_F(ScreenTest, HostileTextInEveryFieldIsStoredExactlyOrRefused)
{
    const QStringList hostile = {
        QStringLiteral("O'Brien \"doppio\""),
        QStringLiteral("x'; DROP TABLE Tbl_Maintenance; --"),
        QStringLiteral("#1/1/2000# 100% [a-z] * ? _"),
        QString(100000, QLatin1Char('W')),
        QStringLiteral("a\tb\r\nc") + QChar(0x01) + QChar(0x1b),
        QStringLiteral("guasto \U0001F525\U0001F9F0"),
        QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u202E\u0645\u0631\u062D\u0628\u0627"),
    };
    upgradeStore();
    int aborts = 0, fields = 0, stored = 0, refused = 0;
    shell::endOnUncaughtErrors();
    shell::setEndHandler([&] { ++aborts; });
    auto press = [](const QString& screen, const char* button) {
        if (vb::Control* c = shell::screens().controlIfAny(screen, QLatin1String(button)))
            c->click();
    };
    for (const QString& screen : shell::ScreenRegistry::workingScreens()) {
        for (const QString& text : hostile) {
            const auto before = testkit::storeSnapshot();
            QStringList held;
            shell::screens().show(screen);
            if (vb::Form* form = shell::screens().loaded(screen)) {
                press(screen, "Cmd_Add");
                std::vector<QPointer<vb::TextBox>> boxes; // a change may take a later field away
                for (QWidget* w : form->findChildren<QWidget*>())
                    if (auto* box = dynamic_cast<vb::TextBox*>(w))
                        boxes.emplace_back(box);
                for (const QPointer<vb::TextBox>& box : boxes) {
                    if (!box || !box->isEnabled() || box->Locked())
                        continue;
                    box->setText(text);
                    held << box->Text();
                    ++fields;
                }
                press(screen, "Cmd_Edit");
            }
            shell::screens().unloadAllScreens();
            const testkit::StoreChange change(before);
            const bool boxShown = !boxes().empty(), kept = change.holdsAnyOf(held);
            EXPECT_TRUE(change.oneRowAtMost()) << screen.toStdString() << ": " << change.tables << " tables";
            EXPECT_TRUE(kept || boxShown || change.added.isEmpty()) << screen.toStdString();
            stored += kept ? 1 : 0;
            refused += boxShown && !kept ? 1 : 0;
        }
    }
    EXPECT_EQ(aborts, 0);
    shell::setEndHandler({});
    std::printf("hostile text: %d fields fuzzed, %d saves stored the text, %d refused with a box, %d aborts\n", fields,
                stored, refused, aborts);
}
