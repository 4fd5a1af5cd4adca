#pragma once

#include "store/database.h"

#include <QStringList>

namespace shell {

// What the command line asks for: the data folder (SQLite, ./data by default) or a PostgreSQL
// server ("--pg 'host=... dbname=... user=...'").
struct KomutSatiri
{
    store::ConnectionSettings settings;
    bool surum = false;
    QString hata; // not empty when the line could not be read
};
KomutSatiri KomutSatiriOku(const QStringList &arguments);

// The program from its start: refuses a second start by the same user on the same machine, opens
// the store the command line names, shows the main window, and runs until it closes.
int Main(int argc, char *argv[]);

} // namespace shell
