#pragma once

#include <QSqlDatabase>

namespace store {

// Gives a SQLite connection what the SQL of the program expects of it and PostgreSQL has of
// its own: the Turkish collation "turkce" and the functions year(), month(), day() and
// datevalue() over the stored date text. False when the handle is not a SQLite one.
bool registerSqliteFunctions(const QSqlDatabase &db);

} // namespace store
