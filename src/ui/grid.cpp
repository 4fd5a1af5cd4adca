#include "ui/grid.h"

#include "base/turkish_text.h"
#include "ui/inputs.h"
#include "ui/message.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <QTimer>

namespace ui {

namespace {

bool isBlank(const QVariant &v)
{
    return !v.isValid() || v.isNull();
}

// Turns a typed text into a cell value; nullopt with a message when it is not one.
std::optional<QVariant> parseCell(const GridColumn &c, const QString &typed, QWidget *parent)
{
    const QString text = typed.trimmed();
    switch (c.kind) {
    case ColumnKind::Text:
    case ColumnKind::Combo:
        return QVariant(c.maxLength > 0 ? typed.trimmed().left(c.maxLength) : typed.trimmed());
    case ColumnKind::Number: {
        if (text.isEmpty())
            return QVariant();
        if (const std::optional<qint64> n = base::TamSayiCoz(text))
            return QVariant(*n);
        notify(QStringLiteral("Dikkat"),
               QStringLiteral("\"%1\" bir tam sayı değil. %2 sütununa yalnız rakam yazınız.")
                   .arg(typed, c.title),
               Icon::Warning, parent);
        return std::nullopt;
    }
    case ColumnKind::Money: {
        if (text.isEmpty())
            return QVariant::fromValue(base::Para());
        if (const std::optional<base::Para> p = base::ParaCoz(text)) {
            if (p->isNegative() && !c.negativeAllowed) {
                notify(QStringLiteral("Dikkat"),
                       QStringLiteral("%1 sütununa eksi bir tutar yazılamaz.").arg(c.title),
                       Icon::Warning, parent);
                return std::nullopt;
            }
            return QVariant::fromValue(*p);
        }
        notify(QStringLiteral("Dikkat"),
               QStringLiteral("\"%1\" geçerli bir tutar değil. Tutarı 1.250,50 biçiminde giriniz.")
                   .arg(typed),
               Icon::Warning, parent);
        return std::nullopt;
    }
    case ColumnKind::Date: {
        QString digits = text;
        digits.remove(QLatin1Char('.')).remove(QLatin1Char('_'));
        if (digits.trimmed().isEmpty())
            return QVariant(QDate());
        if (const std::optional<QDate> d = base::TarihOku(text))
            return QVariant(*d);
        notify(QStringLiteral("Dikkat"),
               QStringLiteral("\"%1\" geçerli bir tarih değil. Lütfen tarihi gg.aa.yyyy biçiminde, "
                              "takvimde bulunan bir gün olarak giriniz.")
                   .arg(typed),
               Icon::Warning, parent);
        return std::nullopt;
    }
    case ColumnKind::Check:
        return QVariant(!text.isEmpty() && text != QLatin1String("0"));
    }
    return QVariant(text);
}

class GridDelegate : public QStyledItemDelegate
{
public:
    explicit GridDelegate(GridModel *model, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_model(model)
    {}

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        const GridColumn &c = m_model->columns().at(index.column());
        switch (c.kind) {
        case ColumnKind::Date: {
            auto *date = new DateEdit(parent);
            date->setWarnOnLeave(false);
            return date;
        }
        case ColumnKind::Combo: {
            auto *combo = new QComboBox(parent);
            combo->setEditable(true);
            combo->addItems(c.items);
            if (c.maxLength > 0)
                combo->lineEdit()->setMaxLength(c.maxLength);
            return combo;
        }
        case ColumnKind::Check:
            return nullptr;
        default: {
            auto *edit = new QLineEdit(parent);
            if (c.kind == ColumnKind::Text && c.maxLength > 0)
                edit->setMaxLength(c.maxLength);
            // A whole number is stored in a 32-bit field: nine digits always fit.
            if (c.kind == ColumnKind::Number)
                edit->setMaxLength(c.maxLength > 0 ? c.maxLength : 9);
            if (c.kind != ColumnKind::Text)
                edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            return edit;
        }
        }
        Q_UNUSED(option);
    }

    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        const GridColumn &c = m_model->columns().at(index.column());
        const QVariant v = m_model->value(index.row(), index.column());
        if (auto *date = qobject_cast<DateEdit *>(editor)) {
            date->setDate(v.toDate());
        } else if (auto *combo = qobject_cast<QComboBox *>(editor)) {
            combo->setCurrentText(v.toString());
            combo->lineEdit()->selectAll();
        } else if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
            edit->setText(c.kind == ColumnKind::Money && !isBlank(v)
                              ? base::Bicimle(v.value<base::Para>(), QStringLiteral("#,##0.00"))
                              : m_model->text(index.row(), index.column()));
        }
        // The view selects the whole text as it opens the cell, before the key that opened it
        // arrives: typing replaces the text, and every key after the first follows it. Nothing
        // may select it again later, or keys typed quickly would land on a selection.
    }

    void setModelData(QWidget *editor, QAbstractItemModel *,
                      const QModelIndex &index) const override
    {
        const GridColumn &c = m_model->columns().at(index.column());
        QString typed;
        if (auto *combo = qobject_cast<QComboBox *>(editor))
            typed = combo->currentText();
        else if (auto *edit = qobject_cast<QLineEdit *>(editor))
            typed = edit->text();
        const std::optional<QVariant> v = parseCell(c, typed, editor->window());
        if (v)
            m_model->setData(index, *v, Qt::EditRole);
    }

private:
    GridModel *m_model;
};

} // namespace

// ---- GridModel -------------------------------------------------------------------------------

GridModel::GridModel(QObject *parent)
    : QAbstractTableModel(parent)
{}

void GridModel::setColumns(const QList<GridColumn> &columns)
{
    beginResetModel();
    m_columns = columns;
    for (QVector<QVariant> &row : m_rows)
        row.resize(m_columns.size());
    endResetModel();
}

int GridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int GridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant GridModel::value(int row, int column) const
{
    if (row < 0 || row >= m_rows.size() || column < 0 || column >= m_columns.size())
        return QVariant();
    return m_rows[row][column];
}

void GridModel::setValue(int row, int column, const QVariant &value)
{
    if (row < 0 || row >= m_rows.size() || column < 0 || column >= m_columns.size())
        return;
    m_rows[row][column] = value;
    const QModelIndex i = index(row, column);
    emit dataChanged(i, i);
}

QString GridModel::text(int row, int column) const
{
    const QVariant v = value(row, column);
    if (isBlank(v) || column >= m_columns.size())
        return QString();
    const GridColumn &c = m_columns[column];
    switch (c.kind) {
    case ColumnKind::Money:
        return base::Bicimle(v.value<base::Para>(), c.format);
    case ColumnKind::Date:
        return base::TarihYaz(v.toDate());
    case ColumnKind::Check:
        return v.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case ColumnKind::Number:
        return QString::number(v.toLongLong());
    default:
        return v.toString();
    }
}

QVariant GridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const GridColumn &c = m_columns[index.column()];
    switch (role) {
    case Qt::DisplayRole:
        return c.kind == ColumnKind::Check ? QVariant()
                                           : QVariant(text(index.row(), index.column()));
    case Qt::EditRole:
        return value(index.row(), index.column());
    case Qt::CheckStateRole:
        if (c.kind == ColumnKind::Check)
            return value(index.row(), index.column()).toBool() ? Qt::Checked : Qt::Unchecked;
        return QVariant();
    case Qt::TextAlignmentRole:
        if (c.kind == ColumnKind::Money || c.kind == ColumnKind::Number)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (c.kind == ColumnKind::Date || c.kind == ColumnKind::Check)
            return int(Qt::AlignCenter);
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return QVariant();
    }
}

bool GridModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid())
        return false;
    QVariant stored = value;
    if (role == Qt::CheckStateRole)
        stored = value.toInt() == Qt::Checked;
    else if (role != Qt::EditRole)
        return false;
    m_rows[index.row()][index.column()] = stored;
    emit dataChanged(index, index);
    emit cellEdited(index.row(), index.column());
    return true;
}

Qt::ItemFlags GridModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const GridColumn &c = m_columns[index.column()];
    const bool open = c.editable && !isRowLocked(index.row());
    if (c.kind == ColumnKind::Check) {
        if (open)
            f |= Qt::ItemIsUserCheckable;
    } else if (open) {
        f |= Qt::ItemIsEditable;
    }
    return f;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Horizontal)
        return section < m_columns.size() ? m_columns[section].title : QString();
    return section + 1;
}

void GridModel::clear()
{
    beginResetModel();
    m_rows.clear();
    m_locked.clear();
    endResetModel();
}

int GridModel::appendRow()
{
    insertRowAt(int(m_rows.size()));
    return int(m_rows.size()) - 1;
}

void GridModel::insertRowAt(int row)
{
    row = qBound(0, row, int(m_rows.size()));
    beginInsertRows(QModelIndex(), row, row);
    QVector<QVariant> cells(m_columns.size());
    for (int c = 0; c < m_columns.size(); ++c) {
        if (m_columns[c].kind == ColumnKind::Check)
            cells[c] = false;
    }
    m_rows.insert(row, cells);
    m_locked.insert(row, false);
    endInsertRows();
}

void GridModel::removeRowAt(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    beginRemoveRows(QModelIndex(), row, row);
    m_rows.remove(row);
    m_locked.remove(row);
    endRemoveRows();
}

void GridModel::setColumnEditable(int column, bool editable)
{
    if (column < 0 || column >= m_columns.size())
        return;
    m_columns[column].editable = editable;
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, column), index(int(m_rows.size()) - 1, column));
}

void GridModel::setRowLocked(int row, bool locked)
{
    if (row >= 0 && row < m_locked.size())
        m_locked[row] = locked;
}

bool GridModel::isRowLocked(int row) const
{
    return row >= 0 && row < m_locked.size() && m_locked[row];
}

// ---- Grid ------------------------------------------------------------------------------------

Grid::Grid(QWidget *parent)
    : QTableView(parent)
    , m_model(new GridModel(this))
{
    setModel(m_model);
    setItemDelegate(new GridDelegate(m_model, this));
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                    | QAbstractItemView::AnyKeyPressed);
    setAlternatingRowColors(true);
    // The grid is one stop of the screen's Tab: Tab leaves it, Enter and the arrows move in it.
    setTabKeyNavigation(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    connect(m_model, &GridModel::cellEdited, this, &Grid::cellEdited);
    connect(itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
            [this](QWidget *, QAbstractItemDelegate::EndEditHint hint) {
                // Enter in a cell commits it and moves on, as in the boxes of a screen.
                if (hint == QAbstractItemDelegate::SubmitModelCache)
                    QTimer::singleShot(0, this, &Grid::moveToNextCell);
            });
}

void Grid::setColumns(const QList<GridColumn> &columns)
{
    m_model->setColumns(columns);
    for (int i = 0; i < columns.size(); ++i) {
        setColumnWidth(i, columns[i].width);
        QTableView::setColumnHidden(i, columns[i].hidden);
    }
}

void Grid::setColumnHidden(int column, bool hidden)
{
    QTableView::setColumnHidden(column, hidden);
}

void Grid::setColumnEditable(int column, bool editable)
{
    m_model->setColumnEditable(column, editable);
}

void Grid::setLocked(bool locked)
{
    m_locked = locked;
    setEditTriggers(locked ? QAbstractItemView::NoEditTriggers
                           : QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                 | QAbstractItemView::AnyKeyPressed);
}

base::Para Grid::para(int row, int column) const
{
    const QVariant v = value(row, column);
    return v.canConvert<base::Para>() ? v.value<base::Para>() : base::Para();
}

int Grid::currentRowIndex() const
{
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

void Grid::setCurrentCell(int row, int column)
{
    setCurrentIndex(m_model->index(row, column));
}

void Grid::moveToNextCell()
{
    const QModelIndex at = currentIndex();
    if (!at.isValid())
        return;
    const int columns = m_model->columnCount();
    int row = at.row();
    int column = at.column();
    for (int step = 0; step < columns * 2; ++step) {
        if (++column >= columns) {
            column = 0;
            if (++row >= m_model->rowCount())
                return; // the last cell: the screen decides what follows
        }
        const QModelIndex next = m_model->index(row, column);
        if (!isColumnHidden(column)
            && (m_model->flags(next) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable))) {
            setCurrentIndex(next);
            return;
        }
    }
}

void Grid::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        && state() != QAbstractItemView::EditingState) {
        moveToNextCell();
        return;
    }
    if (event->key() == Qt::Key_Space && currentIndex().isValid() && !m_locked) {
        const GridColumn &c = m_model->columns().at(currentIndex().column());
        if (c.kind == ColumnKind::Check
            && (m_model->flags(currentIndex()) & Qt::ItemIsUserCheckable)) {
            m_model->setData(currentIndex(),
                             value(currentIndex().row(), currentIndex().column()).toBool()
                                 ? Qt::Unchecked
                                 : Qt::Checked,
                             Qt::CheckStateRole);
            return;
        }
    }
    QTableView::keyPressEvent(event);
}

void Grid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (previous.isValid()
        && (current.row() != previous.row() || current.column() != previous.column()))
        emit cellLeft(previous.row(), previous.column());
}

void Grid::focusOutEvent(QFocusEvent *event)
{
    QTableView::focusOutEvent(event);
    if (currentIndex().isValid() && state() != QAbstractItemView::EditingState)
        emit cellLeft(currentIndex().row(), currentIndex().column());
}

} // namespace ui
