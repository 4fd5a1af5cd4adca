#pragma once

#include <QString>

class QWidget;

namespace store {
class Database;
}

namespace shell {

class MDIAidat;

// What a screen is opened with: the connection, the main window, and the command that opened
// it (several commands open one screen in different modes).
struct EkranBaglami
{
    store::Database &db;
    MDIAidat *anaPencere = nullptr;
    QString tool;
};

// Makes the screen of that form name; nullptr while the screen is not part of the program yet.
QWidget *EkranYarat(const QString &formName, const EkranBaglami &baglam);

} // namespace shell
