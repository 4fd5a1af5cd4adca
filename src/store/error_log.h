#pragma once

#include "store/database.h"

namespace store {

// One row of the error table.
struct ErrorRow
{
    QString machine;
    QString user;
    QString module;
    QString object;
    int code = 0;
    int line = 0;
    QString text;
    QDateTime time;
};

// Writes a row into the error table through a connection of its own, so that whatever
// transaction the failing screen left open neither hides nor blocks the row. On SQLite the table
// lives in HATALAR.db of the data folder; on PostgreSQL in the global schema. The table is made
// when missing.
base::Status writeErrorRow(const ConnectionSettings &settings, const ErrorRow &row);
// Reads the rows back, oldest first (for the tests and the maintenance screen).
base::Result<QList<ErrorRow>> readErrorRows(const ConnectionSettings &settings);

} // namespace store
