#pragma once
/// @file DataControls.h
/// The list controls and the data-bound ones: ComboBox, ListBox, the data control Adodc,
/// DataCombo and DataGrid. A list is bound as the program bound it: the Adodc gets a
/// RecordSource, the DataGrid or DataCombo is bound to the Adodc, Refresh() runs the
/// statement through the store, and the bound controls show its rows in order.

#include "controls/Control.h"
#include "store/DataStore.h"

#include <QComboBox>
#include <QListWidget>
#include <QPointer>
#include <QTableView>

#include <memory>
#include <vector>

namespace vb {

/// ComboBox: style 0 a drop-down combo (free text), style 2 a drop-down list.
/// Change fires when the text is typed or set by the program; picking from the list (by
/// the user or by setting ListIndex) fires Click.
class ComboBox : public QComboBox, public Control
{
public:
    ComboBox(QWidget* parent, const QString& name, int style = 0);
    QString Text() const { return currentText(); }
    void setText(const Variant& text); ///< style 2: a text not in the list raises 383
    int ListIndex() const;
    void setListIndex(int index); ///< -1 clears; outside the list raises 380
    int ListCount() const { return count(); }
    QString List(int index) const; ///< outside the list raises 381
    void AddItem(const QString& item, int index = -1);
    void RemoveItem(int index);
    void Clear();
    bool Locked() const { return m_locked; }
    void setLocked(bool on);
    QStringList items() const;

    void select(int index) override;           ///< the user picks item index
    void choose(const QString& text) override; ///< the user picks the item with this text

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;
    void acceptKey(int keyAscii) override;
    void selectAllText() override;
    /// Replaces the list without touching the text and without firing anything.
    void replaceItems(const QStringList& items);
    /// Sets the text, firing Change when it differs.
    void changeText(const QString& text);
    /// DataCombo: a pick from the list is also a change of the text.
    bool m_changeOnPick = false;

private:
    void makeEditable();
    void pick(int index);
    QString m_lastText;
    int m_lastIndex = -1;
    bool m_silent = false;
    bool m_locked = false;
};

/// ListBox: List, ListIndex, ListCount, Text (the selected line). A change of ListIndex,
/// by the user or the program, fires Click.
class ListBox : public QListWidget, public Control
{
public:
    ListBox(QWidget* parent, const QString& name);
    QString Text() const;
    int ListIndex() const { return currentRow(); }
    void setListIndex(int index); ///< outside -1..ListCount-1 raises 380
    int ListCount() const { return count(); }
    QString List(int index) const; ///< outside the list raises 381
    void AddItem(const QString& item, int index = -1);
    void RemoveItem(int index);
    void Clear();
    QStringList items() const;

    void select(int index) override;
    void choose(const QString& text) override;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;
    void focusInEvent(QFocusEvent* event) override;

private:
    bool m_silent = false;
};

class DataGrid;
class DataCombo;

/// The data control: RecordSource is a Jet statement; Refresh() runs it through the store
/// and the bound grids and combos show the rows. ConnectionString is kept and ignored:
/// there is one store. The rows are read once per Refresh, in the statement's order.
class Adodc : public QObject, public Control
{
public:
    Adodc(QObject* parent, const QString& name);
    ~Adodc() override;

    QString ConnectionString() const { return m_connection; }
    void setConnectionString(const QString& s) { m_connection = s; }
    QString RecordSource() const { return m_source; }
    void setRecordSource(const QString& jetSql) { m_source = jetSql; }

    /// Runs RecordSource; a statement the store refuses raises its error and leaves the
    /// control (and its grids) empty.
    void Refresh();
    /// Shows the rows of a recordset opened elsewhere (a named parameter command).
    void setRecordset(std::unique_ptr<store::Recordset> rs);
    /// The recordset of the last Refresh (nullptr before one), at the current row.
    store::Recordset* Recordset() const { return m_rs.get(); }

    int RecordCount() const { return m_rowCount; }
    int ColumnCount() const { return int(m_columns.size()); }
    QString columnName(int column) const;
    int columnIndex(const QString& name) const; ///< -1 when none (case-insensitive)
    const Variant& value(int row, int column) const;

    /// The current row (-1 when there are no rows).
    int currentRow() const { return m_current; }
    /// Makes row current, as Recordset.Move from the first row does; the bound grids follow
    /// and fire RowColChange, unless rowChange is false: then they only show the row.
    void moveTo(int row, bool rowChange = true);
    /// Whether the move under way lets the bound grids fire RowColChange.
    bool movingWithRowChange() const { return m_moveFires; }
    /// Narrows the rows to a criteria text ("Reparto like 'A%'"); "" shows all again.
    void setFilter(const QString& criteria);

    /// Fired after every Refresh (and setRecordset, setFilter): the bound controls reload.
    Event<> Refreshed;
    /// Fired when moveTo changed the current row: the bound grids follow.
    Event<> Moved;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    friend class DataGrid;
    void load();
    void clearRows();
    QString m_connection;
    QString m_source;
    std::unique_ptr<store::Recordset> m_rs;
    std::vector<QString> m_columns;
    int m_rowCount = 0; ///< the recordset's rows when it was read
    int m_current = -1;
    bool m_moveFires = true;
};

/// DataCombo: a drop-down combo whose list is the ListField column of its RowSource;
/// BoundText is the BoundColumn value of the row whose ListField is the text. Change fires
/// on every change of the text: typed, picked from the list or set by the program.
class DataCombo : public ComboBox
{
public:
    DataCombo(QWidget* parent, const QString& name);
    Adodc* RowSource() const { return m_source; }
    void setRowSource(Adodc* source);
    QString ListField() const { return m_listField; }
    void setListField(const QString& field);
    QString BoundColumn() const { return m_boundColumn; }
    void setBoundColumn(const QString& field);
    /// Binds in one step: RowSource and ListField (and BoundColumn, default ListField).
    void bind(Adodc* source, const QString& listField, const QString& boundColumn = {});
    Variant BoundText() const;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    void reload();
    QPointer<Adodc> m_source;
    QString m_listField;
    QString m_boundColumn;
    std::vector<Variant> m_bound;
};

/// One column of a DataGrid, as Columns(i) gave it.
class GridColumn
{
public:
    QString Caption() const { return m_caption; }
    void setCaption(const QString& caption);
    int Width() const { return m_width; } ///< twips
    void setWidth(int twips);
    bool Locked() const { return m_locked; }
    void setLocked(bool on) { m_locked = on; }
    bool Visible() const { return m_visible; }
    void setVisible(bool on);
    QString DataField() const { return m_field; }
    /// The current row's value, and as shown.
    Variant Value() const;
    QString Text() const;

private:
    friend class DataGrid;
    DataGrid* m_grid = nullptr;
    int m_index = 0;
    QString m_field;
    QString m_caption;
    int m_width = 0;
    bool m_locked = false;
    bool m_visible = true;
};

/// DataGrid bound to an Adodc: the rows in the statement's order, values shown as VB
/// showed them (dates dd/mm/yyyy, Italian numbers). Every Refresh of the source rebuilds
/// the columns (captions the field names, default widths), so the screen sets widths and
/// captions after it, as the program did. A change of the current row or column, by the
/// user or by the program, fires RowColChange.
class DataGrid : public QTableView, public Control
{
public:
    DataGrid(QWidget* parent, const QString& name);
    ~DataGrid() override;

    Adodc* DataSource() const { return m_source; }
    void setDataSource(Adodc* source);

    int ColumnCount() const { return int(m_columns.size()); }
    GridColumn& Columns(int index);           ///< outside the columns raises 9
    GridColumn& Columns(const QString& name); ///< by field, then caption; none raises 9
    int RecordCount() const;                  ///< rows shown

    int Row() const { return m_row; } ///< current row from 0, -1 without rows
    void setRow(int row);             ///< outside the rows raises 6148
    int Col() const { return m_col; }
    void setCol(int col);
    /// The current cell as shown.
    QString Text() const;
    /// A cell as shown, by column position or by column field name.
    QString cellText(int row, int column) const;
    QString cellText(int row, const QString& columnName) const;
    Variant cellValue(int row, int column) const;
    QString Caption() const { return m_caption; }
    void setCaption(const QString& caption) { m_caption = caption; }

    void select(int row) override; ///< the user clicks row row

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;

private:
    friend class GridColumn;
    class Model;
    void reload();
    void followSource(int row);
    void applyColumn(int index);
    void moveCurrent(int row, int col, bool fire);
    int columnIndex(const QString& name) const;
    Model* m_model;
    QPointer<Adodc> m_source;
    std::vector<GridColumn> m_columns;
    int m_row = -1;
    int m_col = 0;
    bool m_hasCurrent = false; // no cell made current since the last reload
    bool m_silent = false;
    QString m_caption;
};

} // namespace vb
