#pragma once

#include "base/para.h"

#include <QDate>
#include <QLineEdit>

#include <optional>

class QWidget;

// The entry boxes every screen shares: a date box with the mask "__.__.____" that cannot be
// left holding a day that does not exist, a money box that reads and writes "1.250,50", Enter
// and the arrow keys moving through a screen, and the colour of a required box.
namespace ui {

class DateEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit DateEdit(QWidget *parent = nullptr);

    // An empty box gives an invalid date.
    QDate date() const;
    void setDate(const QDate &date);
    bool isBlank() const;
    // True when the box is blank or holds a real calendar day.
    bool isAcceptable() const;
    // A box that warns itself when it is left holding a day that does not exist (grids check
    // their cells themselves).
    void setWarnOnLeave(bool warn) { m_warnOnLeave = warn; }

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    bool m_warnOnLeave = true;
};

class MoneyEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit MoneyEdit(QWidget *parent = nullptr);

    // The amount typed; nullopt when the text is not an amount. A blank box is zero.
    std::optional<base::Para> value() const;
    void setValue(base::Para value);
    void setFormat(const QString &format) { m_format = format; }
    // A unit price, a down payment or a total is never below zero.
    void setNegativeAllowed(bool allowed) { m_negativeAllowed = allowed; }
    bool isAcceptable() const { return refusal().isEmpty(); }
    // Why the text cannot stand: not an amount, or below zero where that makes no sense; ""
    // when it can.
    QString refusal() const;

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QString m_format = QStringLiteral("#,##0.00");
    bool m_negativeAllowed = true;
    bool m_warning = false;
};

// Enter and the down arrow move to the next box, the up arrow to the previous one, in every
// line edit, combo and check box below `form`; a box's whole text is selected on entry.
void moveWithEnter(QWidget *form);
// A required box is tinted while it must still be filled.
void markRequired(QWidget *box, bool required);
// Cuts a box's text to the size of its field.
void limitTo(QLineEdit *box, int size);

} // namespace ui
