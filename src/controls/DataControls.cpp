#include "controls/DataControls.h"

#include "runtime/VBError.h"

#include <QAbstractTableModel>
#include <QCompleter>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLineEdit>

namespace vb {

namespace {

bool is(const QString& n, const char* name)
{
    return n == QLatin1String(name);
}

VBError badListIndex()
{
    return VBError(381, QStringLiteral("Indice della matrice delle proprietà non valido"));
}

/// The completer a combo's editor holds while the combo takes it, so that the combo makes
/// none of its own; the editor lets it go at once.
QCompleter* noCompletion()
{
    static QPointer<QCompleter> none;
    if (!none)
        none = new QCompleter(QCoreApplication::instance());
    return none;
}

} // namespace

// ComboBox -------------------------------------------------------------------------------

ComboBox::ComboBox(QWidget* parent, const QString& name, int style) : QComboBox(parent), Control(this)
{
    setObjectName(name);
    if (style != 2)
        makeEditable();
    setInsertPolicy(QComboBox::NoInsert);
    if (QLineEdit* edit = lineEdit())
        edit->setObjectName(name + QStringLiteral("_editor"));
    connect(this, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (m_silent || text == m_lastText)
            return;
        m_lastText = text;
        // The index moves before the text when the user picks from the list: for a plain
        // combo that pick is a Click, not a Change.
        const bool picked = currentIndex() != m_lastIndex;
        m_lastIndex = currentIndex();
        if (!picked || m_changeOnPick)
            Change();
    });
    connect(this, &QComboBox::activated, this, [this](int) { Click(); });
    setFocusHighlight(true);
    initColours(colour::WindowBackground, colour::WindowText);
}

void ComboBox::makeEditable()
{
    // What setEditable(true) gives, without its eager parts: the list's popup is made when
    // first wanted (as for a drop-down list), and no completer is made only to be dropped,
    // since VB completes nothing while typing.
    auto* edit = new QLineEdit(this);
    edit->setPalette(palette());
    edit->setCompleter(noCompletion());
    setLineEdit(edit);
    setCompleter(nullptr);
    if (!testAttribute(Qt::WA_Resized))
        adjustSize();
}

QStringList ComboBox::items() const
{
    QStringList list;
    for (int i = 0; i < count(); ++i)
        list << itemText(i);
    return list;
}

void ComboBox::changeText(const QString& text)
{
    if (text == Text())
        return;
    m_silent = true;
    setEditText(text);
    m_silent = false;
    m_lastText = text;
    Change();
}

void ComboBox::setText(const Variant& value)
{
    const QString text = value.toString();
    if (isEditable()) {
        changeText(text);
        return;
    }
    int index = findText(text, Qt::MatchFixedString);
    if (index < 0)
        throw VBError(383, QStringLiteral("Proprietà 'Text' di sola lettura"));
    setListIndex(index);
}

int ComboBox::ListIndex() const
{
    const int i = currentIndex();
    if (i >= 0 && itemText(i) == currentText())
        return i;
    return findText(currentText(), Qt::MatchExactly);
}

void ComboBox::pick(int index)
{
    const QString before = Text();
    m_silent = true;
    setCurrentIndex(index);
    if (isEditable())
        setEditText(index >= 0 ? itemText(index) : QString());
    m_silent = false;
    m_lastText = Text();
    m_lastIndex = currentIndex();
    if (m_changeOnPick && Text() != before)
        Change();
    Click();
}

void ComboBox::setListIndex(int index)
{
    if (index < -1 || index >= count())
        throw VBError(err::InvalidPropertyValue);
    if (index == ListIndex())
        return;
    pick(index);
}

QString ComboBox::List(int index) const
{
    if (index < 0 || index >= count())
        throw badListIndex();
    return itemText(index);
}

void ComboBox::AddItem(const QString& item, int index)
{
    if (index > count())
        throw VBError(5);
    const QString text = Text();
    m_silent = true;
    insertItem(index < 0 ? count() : index, item);
    if (isEditable())
        setEditText(text); // adding to the list leaves the text alone
    m_silent = false;
}

void ComboBox::RemoveItem(int index)
{
    if (index < 0 || index >= count())
        throw badListIndex();
    const QString text = Text();
    m_silent = true;
    removeItem(index);
    if (isEditable())
        setEditText(text);
    m_silent = false;
}

void ComboBox::Clear()
{
    m_silent = true;
    clear();
    if (isEditable())
        setEditText(QString());
    m_silent = false;
    m_lastText = Text();
    m_lastIndex = currentIndex();
}

void ComboBox::replaceItems(const QStringList& list)
{
    const QString text = Text();
    m_silent = true;
    clear();
    addItems(list);
    if (isEditable())
        setEditText(text);
    else
        setCurrentIndex(-1);
    m_silent = false;
    m_lastText = Text();
    m_lastIndex = currentIndex();
}

void ComboBox::setLocked(bool on)
{
    m_locked = on;
    if (QLineEdit* edit = lineEdit())
        edit->setReadOnly(on);
}

void ComboBox::acceptKey(int keyAscii)
{
    QLineEdit* edit = lineEdit();
    if (!edit || m_locked)
        return;
    if (keyAscii == 8)
        edit->backspace();
    else if (keyAscii >= 32)
        edit->insert(QString(QChar(keyAscii)));
}

void ComboBox::selectAllText()
{
    if (QLineEdit* edit = lineEdit())
        edit->selectAll();
}

void ComboBox::select(int index)
{
    if (!reachable())
        return;
    if (index < 0 || index >= count())
        throw badListIndex();
    handleFocusIn();
    pick(index);
}

void ComboBox::choose(const QString& text)
{
    const int index = findText(text, Qt::MatchExactly);
    if (index < 0)
        throw VBError(5, QStringLiteral("\"%1\" non è nella lista di %2").arg(text, Name()));
    select(index);
}

void ComboBox::applyColours()
{
    paintRoles(this, QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
    if (QLineEdit* edit = lineEdit())
        paintRoles(edit, QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
}

std::optional<Variant> ComboBox::getProp(const QString& n) const
{
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "listindex"))
        return Variant(ListIndex());
    if (is(n, "listcount"))
        return Variant(ListCount());
    if (is(n, "locked"))
        return Variant(m_locked);
    return Control::getProp(n);
}

bool ComboBox::setProp(const QString& n, const Variant& v)
{
    if (is(n, "text"))
        setText(v);
    else if (is(n, "listindex"))
        setListIndex(v.toLong());
    else if (is(n, "locked"))
        setLocked(v.toBool());
    else
        return Control::setProp(n, v);
    return true;
}

// ListBox --------------------------------------------------------------------------------

ListBox::ListBox(QWidget* parent, const QString& name) : QListWidget(parent), Control(this)
{
    setObjectName(name);
    setSelectionMode(QAbstractItemView::SingleSelection);
    watch(viewport()); // the mouse lands on the viewport
    connect(this, &QListWidget::currentRowChanged, this, [this](int) {
        if (!m_silent)
            Click();
    });
    initColours(colour::WindowBackground, colour::WindowText);
}

QString ListBox::Text() const
{
    const QListWidgetItem* it = currentItem();
    return it ? it->text() : QString();
}

QStringList ListBox::items() const
{
    QStringList list;
    for (int i = 0; i < count(); ++i)
        list << item(i)->text();
    return list;
}

void ListBox::setListIndex(int index)
{
    if (index < -1 || index >= count())
        throw VBError(err::InvalidPropertyValue);
    setCurrentRow(index);
}

QString ListBox::List(int index) const
{
    if (index < 0 || index >= count())
        throw badListIndex();
    return item(index)->text();
}

void ListBox::AddItem(const QString& text, int index)
{
    if (index > count())
        throw VBError(5);
    m_silent = true;
    insertItem(index < 0 ? count() : index, text);
    m_silent = false;
}

void ListBox::RemoveItem(int index)
{
    if (index < 0 || index >= count())
        throw badListIndex();
    m_silent = true;
    delete takeItem(index);
    m_silent = false;
}

void ListBox::Clear()
{
    m_silent = true;
    clear();
    m_silent = false;
}

void ListBox::select(int index)
{
    if (!reachable())
        return;
    if (index < 0 || index >= count())
        throw badListIndex();
    handleFocusIn();
    if (index == currentRow())
        Click(); // a click on the selected line is still a click
    else
        setCurrentRow(index);
}

void ListBox::choose(const QString& text)
{
    const auto found = findItems(text, Qt::MatchExactly);
    if (found.isEmpty())
        throw VBError(5, QStringLiteral("\"%1\" non è nella lista di %2").arg(text, Name()));
    select(row(found.first()));
}

// A list filled by its load has no selected line until the user clicks one. Qt's view
// makes the first line current when the list takes the focus by the keyboard or at
// the screen's opening, which would be a Click the user never made.
void ListBox::focusInEvent(QFocusEvent* event)
{
    const bool hadLine = currentRow() >= 0;
    m_silent = true;
    QListWidget::focusInEvent(event);
    if (!hadLine && currentRow() >= 0)
        selectionModel()->clearCurrentIndex();
    m_silent = false;
}

void ListBox::applyColours()
{
    paintRoles(this, QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
}

std::optional<Variant> ListBox::getProp(const QString& n) const
{
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "listindex"))
        return Variant(ListIndex());
    if (is(n, "listcount"))
        return Variant(ListCount());
    return Control::getProp(n);
}

bool ListBox::setProp(const QString& n, const Variant& v)
{
    if (!is(n, "listindex"))
        return Control::setProp(n, v);
    setListIndex(v.toLong());
    return true;
}

// Adodc ----------------------------------------------------------------------------------

Adodc::Adodc(QObject* parent, const QString& name) : QObject(parent), Control(this)
{
    setObjectName(name);
}

Adodc::~Adodc() = default;

void Adodc::clearRows()
{
    m_columns.clear();
    m_rowCount = 0;
    m_current = -1;
}

void Adodc::Refresh()
{
    clearRows();
    m_rs.reset();
    auto rs = std::make_unique<store::Recordset>();
    try {
        rs->Open(m_source);
    } catch (...) {
        Refreshed(); // the grids go empty with the data control
        throw;
    }
    m_rs = std::move(rs);
    load();
    Refreshed();
}

void Adodc::setRecordset(std::unique_ptr<store::Recordset> rs)
{
    clearRows();
    m_rs = std::move(rs);
    load();
    Refreshed();
}

void Adodc::load()
{
    clearRows();
    if (!m_rs || !m_rs->isOpen())
        return; // an action statement leaves no rows
    for (const store::Column& c : m_rs->Columns())
        m_columns.push_back(c.name);
    // The rows stay in the recordset (the screens only read it): a list of 100k rows is
    // held once.
    m_rowCount = m_rs->RecordCount();
    if (m_rowCount > 0) {
        m_rs->MoveFirst();
        m_current = 0;
    }
}

QString Adodc::columnName(int column) const
{
    return column >= 0 && column < ColumnCount() ? m_columns[column] : QString();
}

int Adodc::columnIndex(const QString& name) const
{
    for (int i = 0; i < ColumnCount(); ++i)
        if (m_columns[i].compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const Variant& Adodc::value(int row, int column) const
{
    static const Variant none = Variant::null();
    if (row < 0 || row >= RecordCount() || column < 0 || column >= ColumnCount())
        return none;
    return m_rs->value(row, column);
}

void Adodc::moveTo(int row, bool rowChange)
{
    if (row < 0 || row >= RecordCount())
        throw VBError(err::NoCurrentRecord);
    m_rs->MoveFirst();
    m_rs->Move(row);
    m_current = row;
    m_moveFires = rowChange;
    Moved();
    m_moveFires = true;
}

void Adodc::setFilter(const QString& criteria)
{
    if (!m_rs)
        throw VBError(91);
    m_rs->setFilter(criteria);
    load();
    Refreshed();
}

std::optional<Variant> Adodc::getProp(const QString& n) const
{
    if (is(n, "recordsource"))
        return Variant(m_source);
    if (is(n, "connectionstring"))
        return Variant(m_connection);
    if (is(n, "recordcount"))
        return Variant(RecordCount());
    return Control::getProp(n);
}

bool Adodc::setProp(const QString& n, const Variant& v)
{
    if (is(n, "recordsource"))
        setRecordSource(v.toString());
    else if (is(n, "connectionstring"))
        setConnectionString(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

// DataCombo ------------------------------------------------------------------------------

DataCombo::DataCombo(QWidget* parent, const QString& name) : ComboBox(parent, name, 0)
{
    m_changeOnPick = true;
}

void DataCombo::setRowSource(Adodc* source)
{
    if (source && source != m_source) {
        source->Refreshed.connect([self = QPointer<DataCombo>(this), source] {
            if (self && self->m_source == source)
                self->reload();
        });
    }
    m_source = source;
    reload();
}

void DataCombo::setListField(const QString& field)
{
    m_listField = field;
    reload();
}

void DataCombo::setBoundColumn(const QString& field)
{
    m_boundColumn = field;
    reload();
}

void DataCombo::bind(Adodc* source, const QString& listField, const QString& boundColumn)
{
    m_listField = listField;
    m_boundColumn = boundColumn;
    setRowSource(source);
}

void DataCombo::reload()
{
    QStringList list;
    m_bound.clear();
    if (m_source && m_source->ColumnCount() > 0) {
        const int listColumn = m_listField.isEmpty() ? 0 : m_source->columnIndex(m_listField);
        const int boundColumn = m_boundColumn.isEmpty() ? listColumn : m_source->columnIndex(m_boundColumn);
        if (listColumn >= 0) {
            for (int r = 0; r < m_source->RecordCount(); ++r) {
                list << m_source->value(r, listColumn).displayText();
                m_bound.push_back(m_source->value(r, boundColumn));
            }
        }
    }
    replaceItems(list);
}

Variant DataCombo::BoundText() const
{
    const int index = findText(Text(), Qt::MatchExactly);
    if (index < 0 || index >= int(m_bound.size()))
        return Variant(QString());
    return m_bound[index];
}

std::optional<Variant> DataCombo::getProp(const QString& n) const
{
    if (is(n, "boundtext"))
        return BoundText();
    if (is(n, "listfield"))
        return Variant(m_listField);
    if (is(n, "boundcolumn"))
        return Variant(m_boundColumn);
    if (is(n, "listindex"))
        return std::nullopt; // a DataCombo has none
    return ComboBox::getProp(n);
}

bool DataCombo::setProp(const QString& n, const Variant& v)
{
    if (is(n, "listfield"))
        setListField(v.toString());
    else if (is(n, "boundcolumn"))
        setBoundColumn(v.toString());
    else if (is(n, "listindex"))
        return false;
    else
        return ComboBox::setProp(n, v);
    return true;
}

// DataGrid -------------------------------------------------------------------------------

class DataGrid::Model : public QAbstractTableModel
{
public:
    explicit Model(DataGrid* grid) : QAbstractTableModel(grid), m_grid(grid) { }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_grid->RecordCount(); }
    int columnCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : m_grid->ColumnCount();
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole || !index.isValid())
            return {};
        return m_grid->cellText(index.row(), index.column());
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section >= m_grid->ColumnCount())
            return {};
        return m_grid->m_columns[section].Caption();
    }
    void beginReset() { beginResetModel(); }
    void endReset() { endResetModel(); }
    void captionChanged(int section) { Q_EMIT headerDataChanged(Qt::Horizontal, section, section); }

private:
    DataGrid* m_grid;
};

void GridColumn::setCaption(const QString& caption)
{
    m_caption = caption;
    m_grid->m_model->captionChanged(m_index);
}

void GridColumn::setWidth(int twips)
{
    if (twips < 0)
        throw VBError(err::InvalidPropertyValue);
    m_width = twips;
    m_grid->applyColumn(m_index);
}

void GridColumn::setVisible(bool on)
{
    m_visible = on;
    m_grid->applyColumn(m_index);
}

Variant GridColumn::Value() const
{
    return m_grid->cellValue(m_grid->Row(), m_index);
}

QString GridColumn::Text() const
{
    return m_grid->cellText(m_grid->Row(), m_index);
}

DataGrid::DataGrid(QWidget* parent, const QString& name) : QTableView(parent), Control(this), m_model(new Model(this))
{
    setObjectName(name);
    setModel(m_model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    verticalHeader()->setVisible(false);
    watch(viewport());
    setClickOnMouseRelease(true);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& current) {
        if (!m_silent && current.isValid())
            moveCurrent(current.row(), current.column(), true);
    });
    initColours(colour::WindowBackground, colour::WindowText);
}

DataGrid::~DataGrid() = default;

void DataGrid::setDataSource(Adodc* source)
{
    if (source && source != m_source) {
        QPointer<DataGrid> self(this);
        source->Refreshed.connect([self, source] {
            if (self && self->m_source == source)
                self->reload();
        });
        source->Moved.connect([self, source] {
            if (self && self->m_source == source)
                self->followSource(source->currentRow());
        });
    }
    m_source = source;
    reload();
}

void DataGrid::reload()
{
    m_silent = true;
    m_model->beginReset();
    m_columns.clear();
    const int defaultWidth = pixelsToTwips(horizontalHeader()->defaultSectionSize(), this);
    const int count = m_source ? m_source->ColumnCount() : 0;
    for (int i = 0; i < count; ++i) {
        GridColumn c;
        c.m_grid = this;
        c.m_index = i;
        c.m_field = m_source->columnName(i);
        c.m_caption = c.m_field;
        c.m_width = defaultWidth;
        m_columns.push_back(c);
    }
    m_model->endReset();
    for (int i = 0; i < count; ++i)
        applyColumn(i);
    m_row = RecordCount() > 0 ? 0 : -1;
    m_col = 0;
    m_hasCurrent = false;
    if (m_row >= 0)
        setCurrentIndex(m_model->index(0, 0));
    m_silent = false;
}

void DataGrid::applyColumn(int index)
{
    const GridColumn& c = m_columns[index];
    setColumnHidden(index, !c.m_visible || c.m_width == 0);
    if (c.m_width > 0)
        horizontalHeader()->resizeSection(index, twipsToPixels(c.m_width, this));
}

GridColumn& DataGrid::Columns(int index)
{
    if (index < 0 || index >= ColumnCount())
        throw VBError(9);
    return m_columns[index];
}

int DataGrid::columnIndex(const QString& name) const
{
    for (int i = 0; i < ColumnCount(); ++i)
        if (m_columns[i].m_field.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    for (int i = 0; i < ColumnCount(); ++i)
        if (m_columns[i].m_caption.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

GridColumn& DataGrid::Columns(const QString& name)
{
    return Columns(columnIndex(name));
}

int DataGrid::RecordCount() const
{
    return m_source ? m_source->RecordCount() : 0;
}

Variant DataGrid::cellValue(int row, int column) const
{
    if (!m_source)
        return Variant::null();
    return m_source->value(row, column);
}

QString DataGrid::cellText(int row, int column) const
{
    return cellValue(row, column).displayText();
}

QString DataGrid::cellText(int row, const QString& columnName) const
{
    const int column = columnIndex(columnName);
    if (column < 0)
        throw VBError(9);
    return cellText(row, column);
}

QString DataGrid::Text() const
{
    return cellText(m_row, m_col);
}

void DataGrid::moveCurrent(int row, int col, bool fire)
{
    if (m_hasCurrent && row == m_row && col == m_col)
        return;
    m_row = row;
    m_col = col;
    m_hasCurrent = true;
    if (m_source && m_source->m_current != row && row >= 0) {
        // The grid and its data control share the current row, as in VB.
        m_source->m_rs->MoveFirst();
        m_source->m_rs->Move(row);
        m_source->m_current = row;
    }
    m_silent = true;
    setCurrentIndex(m_model->index(row, col));
    m_silent = false;
    if (fire)
        RowColChange();
}

void DataGrid::followSource(int row)
{
    moveCurrent(row, m_col, !m_source || m_source->movingWithRowChange());
}

void DataGrid::setRow(int row)
{
    if (row < 0 || row >= RecordCount())
        throw VBError(err::InvalidPropertyValue);
    moveCurrent(row, m_col, true);
}

void DataGrid::setCol(int col)
{
    if (col < 0 || col >= ColumnCount())
        throw VBError(err::InvalidPropertyValue);
    moveCurrent(m_row, col, true);
}

void DataGrid::select(int row)
{
    if (!reachable())
        return;
    if (row < 0 || row >= RecordCount())
        throw VBError(err::InvalidPropertyValue, QStringLiteral("%1 non ha la riga %2").arg(Name()).arg(row));
    handleFocusIn();
    moveCurrent(row, m_col, true);
}

void DataGrid::applyColours()
{
    paintRoles(this, QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
}

std::optional<Variant> DataGrid::getProp(const QString& n) const
{
    if (is(n, "row"))
        return Variant(m_row);
    if (is(n, "col"))
        return Variant(m_col);
    if (is(n, "recordcount"))
        return Variant(RecordCount());
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "columncount"))
        return Variant(ColumnCount());
    if (is(n, "caption"))
        return Variant(m_caption);
    return Control::getProp(n);
}

bool DataGrid::setProp(const QString& n, const Variant& v)
{
    if (is(n, "row"))
        setRow(v.toLong());
    else if (is(n, "col"))
        setCol(v.toLong());
    else if (is(n, "caption"))
        setCaption(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

} // namespace vb
