#pragma once

#include <QString>

class QLineEdit;
class QPushButton;
class QWidget;

// The boxes and buttons of a screen.
namespace ui {

// A command button as every screen has it: named, and never pressed by an Enter in a box,
// which moves on.
QPushButton *button(const QString &name, const QString &caption, QWidget *parent);

// A box for a password: what is typed is not shown, at most 50 characters.
QLineEdit *passwordBox(const QString &name, QWidget *parent);

} // namespace ui
