#pragma once
/// @file Form.h
/// A screen of the program: a top-level window with VB's Caption, position and size in
/// twips, its load and unload, and its controls found by name. Every screen draws with
/// the screens' type (ScreenFont.h). Shown larger than the program drew it (placed on a
/// larger desktop), a screen keeps every control where the program put it and lets its
/// grids and lists grow right and down into the room, each as far as the screen grew,
/// where that covers no other control: their columns keep their widths, and the room
/// shows more rows.

#include "controls/Control.h"

#include <QWidget>

#include <functional>

namespace vb {

/// The display in twips (VB's Screen.Width, Screen.Height).
namespace Screen {
int Width();
int Height();
} // namespace Screen

class Form : public QWidget, public Control
{
public:
    /// A window of its own, owned by parent (frmMain owns every working screen).
    Form(QWidget* parent, const QString& name, const QString& caption = {});
    ~Form() override;

    QString Caption() const { return windowTitle(); }
    void setCaption(const Variant& caption);

    /// VB's load: the screen's controls exist, the screen is not shown yet.
    virtual void Form_Load() { }
    /// VB's unload: the screen is about to go.
    virtual void Form_Unload() { }

    /// The control called name on this screen, nullptr when there is none.
    Control* control(const QString& name) const;
    template <typename T> T* controlAs(const QString& name) const { return dynamic_cast<T*>(control(name)); }

    /// Puts the screen in the middle of the display (the loads' "centre the screen").
    void centre();

    /// Who unloads a screen closed from its title bar (the screen registry); without one
    /// the close runs Form_Unload and lets the window go.
    static void setCloseHandler(std::function<void(Form*)> handler);

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;
    void closeEvent(QCloseEvent* e) override;
    void showEvent(QShowEvent* e) override;
    /// A screen larger than the program drew it gives its grids and lists the room.
    void resizeEvent(QResizeEvent* e) override;

private:
    QSize m_drawnSize; ///< the size the program gave the screen before it first showed, in pixels
};

} // namespace vb
