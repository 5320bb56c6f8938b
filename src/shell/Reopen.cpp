#include "shell/Reopen.h"

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "runtime/AppPath.h"
#include "shell/ScreenRegistry.h"

namespace shell {

vb::Form* ReopenScreen(const QString& name, bool backToRow, Placement placement, bool rowChange)
{
    QString kept;
    if (vb::Form* old = screens().loaded(name))
        if (auto* position = old->controlAs<vb::TextBox>(QStringLiteral("Txt_Posizione")))
            kept = position->Text();
    screens().unload(name);
    if (placement == Placement::About)
        screens().showAbout(name);
    else
        screens().show(name);
    vb::Form* again = screens().loaded(name);
    if (!again)
        return nullptr;
    auto* grid = again->controlAs<vb::DataGrid>(QStringLiteral("DataGrid1"));
    if (!grid)
        return again;
    grid->clearSelection();
    bool isRow = false;
    const int row = kept.toInt(&isRow);
    vb::Adodc* source = grid->DataSource();
    if (!backToRow || !isRow || !source || row < 0 || row >= source->RecordCount())
        return again;
    if (rowChange)
        if (auto* position = again->controlAs<vb::TextBox>(QStringLiteral("Txt_Posizione")))
            position->setText(kept);
    source->moveTo(row, rowChange);
    return again;
}

void TitleMainScreen(const QString& caption)
{
    if (vb::Form* main = screens().loaded(QStringLiteral("frmMain")))
        main->setCaption(QString::fromLatin1(vb::AppTitle) + QStringLiteral(" <") + caption + QStringLiteral(">"));
}

} // namespace shell
