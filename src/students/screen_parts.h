#pragma once

#include <QString>

class QWidget;

// Small pieces the student screens share.
namespace students {

// Closes a screen together with the child window of the main window that holds it.
void ekraniKapat(QWidget *screen);
// Tells the operator that a part of the program that a command leads to is not built yet.
void hazirDegil(const QString &caption, QWidget *parent);

} // namespace students
