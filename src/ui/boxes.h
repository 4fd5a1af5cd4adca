#pragma once

#include "ui/inputs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>

class QFormLayout;
class QWidget;

// The boxes and buttons of a screen. A screen declares its boxes and its command buttons as
// tables, one row each, in the order Tab goes through them; they are made from the rows, so
// that a box's name, caption, kind and size, or a button's name, caption and command, stand
// in one place.
namespace ui {

// A command button as every screen has it: named, and never pressed by an Enter in a box,
// which moves on.
QPushButton *button(const QString &name, const QString &caption, QWidget *parent);

// A box for a password: what is typed is not shown, at most 50 characters.
QLineEdit *passwordBox(const QString &name, QWidget *parent);

enum class BoxKind {
    Text,   // a line of text, cut to its size (QLineEdit)
    Number, // a whole number, right-aligned, cut to its size (QLineEdit)
    Memo,   // lines of text that Tab leaves (QPlainTextEdit)
    Date,   // DateEdit
    Money,  // MoneyEdit, in the row's format (the box's own when none is given)
    Choice, // one of the row's entries (QComboBox)
    Typed,  // one of the row's entries or a text typed in, cut to its size (editable QComboBox)
    Check,  // a tick box that carries its caption (QCheckBox)
    Option, // an option button that carries its caption (QRadioButton)
};

// A row of a screen's table of boxes.
struct Box
{
    QString name;         // the object name, by which code and tests find the box
    QString caption = {}; // the label before the box, or what a tick box or option carries
    BoxKind kind = BoxKind::Text;
    int size = 0;           // Text, Number, Typed: the longest text; 0: no limit
    QStringList items = {}; // Choice, Typed
    QString format = {};    // Money: the picture of the amount
    int maxWidth = 0;       // 0: as wide as its place
    QString toolTip = {};
};

// Whether the box carries its caption itself, rather than standing after a label.
bool carriesCaption(BoxKind kind);

// Makes the box of a row, named after it.
QWidget *makeBox(const Box &box, QWidget *parent);

// Puts boxes into a form, a row each, in the order given: a box after a label with its caption
// (the label's buddy, so that a mnemonic in the caption reaches the box), a tick box or an
// option on its own.
void addFormRows(QFormLayout *form, const QList<std::pair<Box, QWidget *>> &boxes);

// Where a screen keeps a box it made: a member of the box's own type (a base type will do).
template<class Form>
using BoxMember = std::variant<QLineEdit * Form::*, QPlainTextEdit * Form::*, DateEdit * Form::*,
                               MoneyEdit * Form::*, QComboBox * Form::*, QCheckBox * Form::*,
                               QRadioButton * Form::*>;

// Keeps a box in its member; the box must be of the member's type.
template<class Form>
void keepBox(Form &form, const BoxMember<Form> &member, QWidget *box)
{
    std::visit(
        [&form, box](auto m) {
            using Widget = std::remove_pointer_t<std::remove_reference_t<decltype(form.*m)>>;
            form.*m = qobject_cast<Widget *>(box);
            Q_ASSERT_X(form.*m, "ui::keepBox", "a box kept in a member of another type");
        },
        member);
}

// A row of a screen's table of command buttons.
template<class Form>
struct Command
{
    QString name;
    QString caption;
    void (*run)(Form &) = nullptr; // what a click does; nothing when null
    QString toolTip = {};
    QPushButton *Form::*member = nullptr; // where the screen keeps the button, if it does
};

// Makes the buttons of a table in its order, each wired to its command and kept where the
// screen keeps it; gives them back in the same order.
template<class Form, std::size_t N>
std::array<QPushButton *, N> makeCommands(Form &form, const Command<Form> (&commands)[N],
                                          QWidget *parent)
{
    std::array<QPushButton *, N> buttons{};
    for (std::size_t i = 0; i < N; ++i) {
        const Command<Form> &c = commands[i];
        QPushButton *b = button(c.name, c.caption, parent);
        if (!c.toolTip.isEmpty()) {
            b->setToolTip(c.toolTip);
        }
        if (c.member) {
            form.*(c.member) = b;
        }
        if (c.run) {
            QObject::connect(b, &QPushButton::clicked, &form, [&form, run = c.run] { run(form); });
        }
        buttons[i] = b;
    }
    return buttons;
}

} // namespace ui
