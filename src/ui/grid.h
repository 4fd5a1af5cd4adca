#pragma once

#include "base/para.h"

#include <QAbstractTableModel>
#include <QDate>
#include <QStringList>
#include <QTableView>
#include <QVector>

// The grid that every list of the program is: columns by number, each of a kind (text, whole
// number, money, date with its mask, check box, a list to choose from), hidden key columns,
// locked columns, Enter moving to the next cell, a cell's whole text selected when it is entered.
// Money cells hold base::Para, date cells QDate, check cells bool, number cells qint64.
namespace ui {

enum class ColumnKind { Text, Number, Money, Date, Check, Combo };

struct GridColumn
{
    QString title;
    ColumnKind kind = ColumnKind::Text;
    int width = 100;
    bool editable = true;
    bool hidden = false;
    int maxLength = 0;      // Text, Combo: the field's size; Number: the digits (9 when 0)
    QStringList items = {}; // Combo: the entries
    QString format = QStringLiteral("#,##0.00"); // Money: the picture
    bool negativeAllowed = true;                 // Money: false refuses an amount below 0
};

class GridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit GridModel(QObject *parent = nullptr);

    void setColumns(const QList<GridColumn> &columns);
    const QList<GridColumn> &columns() const { return m_columns; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void clear();
    int appendRow();
    void insertRowAt(int row);
    void removeRowAt(int row);
    QVariant value(int row, int column) const;
    void setValue(int row, int column, const QVariant &value);
    // The cell as the grid shows it.
    QString text(int row, int column) const;
    void setColumnEditable(int column, bool editable);
    void setRowLocked(int row, bool locked);
    bool isRowLocked(int row) const;

signals:
    // A cell changed by the operator (not by setValue).
    void cellEdited(int row, int column);

private:
    QList<GridColumn> m_columns;
    QVector<QVector<QVariant>> m_rows;
    QVector<bool> m_locked;
};

class Grid : public QTableView
{
    Q_OBJECT

public:
    explicit Grid(QWidget *parent = nullptr);

    GridModel *gridModel() const { return m_model; }
    void setColumns(const QList<GridColumn> &columns);
    void setColumnHidden(int column, bool hidden);
    void setColumnEditable(int column, bool editable);
    // Locks or opens the whole grid for editing.
    void setLocked(bool locked);
    bool isLocked() const { return m_locked; }

    int rowCount() const { return m_model->rowCount(); }
    int appendRow() { return m_model->appendRow(); }
    void removeRowAt(int row) { m_model->removeRowAt(row); }
    void clearRows() { m_model->clear(); }
    QVariant value(int row, int column) const { return m_model->value(row, column); }
    void setValue(int row, int column, const QVariant &v) { m_model->setValue(row, column, v); }
    QString text(int row, int column) const { return m_model->text(row, column); }
    base::Para para(int row, int column) const;
    QDate date(int row, int column) const { return value(row, column).toDate(); }
    bool checked(int row, int column) const { return value(row, column).toBool(); }
    qint64 number(int row, int column) const { return value(row, column).toLongLong(); }
    int currentRowIndex() const;
    void setCurrentCell(int row, int column);

signals:
    void cellEdited(int row, int column);
    // The operator left a cell (to another cell or out of the grid).
    void cellLeft(int row, int column);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void moveToNextCell();

    GridModel *m_model = nullptr;
    bool m_locked = false;
};

} // namespace ui

Q_DECLARE_METATYPE(base::Para)
