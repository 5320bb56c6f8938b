// Qt's own words (the boxes' standard buttons, the file and print dialogs) speak Italian
// whatever the desktop's language, as every other word on the screens does.
#include "shell/DesktopServices.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

/// Every visible word a dialog puts on its buttons and labels, mnemonics removed.
QStringList wordsOf(const QWidget& w)
{
    QStringList words;
    for (const QAbstractButton* b : w.findChildren<QAbstractButton*>())
        words << b->text().remove(QLatin1Char('&'));
    for (const QLabel* l : w.findChildren<QLabel*>())
        words << l->text().remove(QLatin1Char('&'));
    words.removeAll(QString());
    return words;
}

const QRegularExpression english(QStringLiteral("\\b(Yes|Cancel|Open|Save|Look in|File name|Files of type|Print|"
                                                "Printer|Properties|Options|Close)\\b"));

TEST(ItalianWordsTest, BoxesAndDialogsSpeakItalian)
{
    ASSERT_TRUE(shell::installItalianTranslations()) << "Qt's Italian translations are not installed";

    QMessageBox box(QMessageBox::Question, "VELMORA", "?", QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    QStringList buttons;
    for (QAbstractButton* b : box.buttons())
        buttons << b->text().remove(QLatin1Char('&'));
    buttons.sort();
    EXPECT_EQ(buttons, QStringList({"Annulla", "No", "Sì"}));
    EXPECT_EQ(QLocale().monthName(1), "gennaio"); // the date pickers' calendars

    QFileDialog files(nullptr, "Apri");
    files.setOption(QFileDialog::DontUseNativeDialog);
    QPrinter printer;
    QPrintDialog print(&printer);
    for (const QWidget* dialog : {static_cast<const QWidget*>(&files), static_cast<const QWidget*>(&print)})
        for (const QString& word : wordsOf(*dialog))
            EXPECT_FALSE(english.match(word).hasMatch()) << word.toStdString();
}

} // namespace
