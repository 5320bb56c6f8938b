#pragma once
/// @file ScreenKit.h
/// The builders of a screen's recurring controls, so that a screen's buildControls reads
/// as its layout: where each control stands, in twips, and nothing else.
///
/// @code
///     vb::ScreenKit kit(this, {.button = 375, .field = 315});
///     Label1 = kit.label(this, "Label1", u"REPARTI PRESENTI", 120, 120, 2100);
///     Cmd_Add = kit.button(this, "Cmd_Add", u"INSERISCI", 120, 5880, 1500);
///     DataGrid1 = kit.grid(Frame2, "DataGrid1", Adodc1, "Adodc1", 120, 270, 4000, 2910);
///     Txt_Search = kit.searchFrame(Frame1, "Frame1", u"Cerca Reparto", "Txt_Search", 120, 4400, 3000);
/// @endcode
///
/// Names are the program's own control names, which the driver and the registry find
/// them by; captions are the screen's texts as shown.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "runtime/Trap.h"

#include <QString>

#include <initializer_list>

namespace vb {

class Form;

/// The captions of the edit button, shared by every register screen.
namespace caption {
inline const QString Save = QStringLiteral("SALVA");
inline const QString Edit = QStringLiteral("MODIFICA");
} // namespace caption

/// The main screen's working area on the old 800 x 600 display, in twips: the size the
/// working screens were drawn for.
inline constexpr int WorkAreaWidth = 9225;
inline constexpr int WorkAreaHeight = 6200;

/// The heights of one screen's controls, in twips (the old screens differ).
struct KitHeights
{
    int label = 255;
    int button = 375;
    int field = 315;
};

/// A grid column's caption and width in twips; locked columns refuse typing.
struct ColumnSpec
{
    QString caption;
    int width = -1; ///< -1 keeps the width the grid gave it
    bool locked = false;
};

class ScreenKit
{
public:
    explicit ScreenKit(Form* form, KitHeights heights = {});

    /// A caption over the screen's background (BackStyle 0), one row high unless told.
    Label* label(QWidget* parent, const char* name, const QString& caption, int left, int top, int width,
                 int height = -1) const;
    /// A push button of the screen's button height unless told.
    CommandButton* button(QWidget* parent, const char* name, const QString& caption, int left, int top, int width,
                          int height = -1) const;
    /// A one-line text field of the screen's field height unless told.
    TextBox* field(QWidget* parent, const char* name, int left, int top, int width, int height = -1) const;
    /// A text field of several lines.
    TextBox* textArea(QWidget* parent, const char* name, int left, int top, int width, int height) const;
    /// A field that holds a key or a state for the screen's code and is never shown.
    TextBox* hidden(const char* name, const QString& text = {}) const;
    /// A frame, with its caption.
    Frame* frame(QWidget* parent, const char* name, const QString& caption, int left, int top, int width,
                 int height) const;
    /// A grid bound to a new data control of the screen (@p source is set to it).
    DataGrid* grid(QWidget* parent, const char* name, Adodc*& source, const char* sourceName, int left, int top,
                   int width, int height) const;
    /// A data combo with its own new data control of the screen (@p source is set to it).
    DataCombo* dataCombo(QWidget* parent, const char* name, Adodc*& source, const char* sourceName, int left, int top,
                         int width, int height = -1) const;
    /// A data combo whose list the screen fills from a data control of its own choosing.
    DataCombo* dataCombo(QWidget* parent, const char* name, int left, int top, int width, int height = -1) const;
    /// A list box.
    ListBox* list(QWidget* parent, const char* name, int left, int top, int width, int height) const;
    /// A date picker of the screen's field height unless told.
    DTPicker* datePicker(QWidget* parent, const char* name, int left, int top, int width, int height = -1) const;
    /// A picture's place, empty until the screen loads one.
    Image* image(QWidget* parent, const char* name, int left, int top, int width, int height) const;
    /// The framed search field: a frame with its caption and one text field inside,
    /// 120 twips in from each side. @p frame is set to the frame when asked for.
    TextBox* searchFrame(QWidget* parent, const char* frameName, const QString& caption, const char* fieldName,
                         int left, int top, int width, int height = 690, Frame** frame = nullptr) const;

    /// A grid bound to a data control the screen already has.
    DataGrid* boundGrid(QWidget* parent, const char* name, Adodc* source, int left, int top, int width,
                        int height) const;
    /// A frame with its caption and one text field inside, 120 twips in from each side and
    /// @p fieldTop from the frame's top. @p frame is set to the frame when asked for.
    TextBox* framedField(QWidget* parent, const char* frameName, const QString& caption, const char* fieldName,
                         int left, int top, int width, int height, int fieldTop, Frame** frame = nullptr) const;

    const KitHeights& heights() const { return m_heights; }

private:
    Form* m_form;
    KitHeights m_heights;
};

/// Gives a grid's columns, from the first, their captions, widths and locks: one
/// trapped step a column, so that a grid with fewer columns keeps what it has.
void setColumns(Trap& trap, DataGrid* grid, std::initializer_list<ColumnSpec> columns);

} // namespace vb
