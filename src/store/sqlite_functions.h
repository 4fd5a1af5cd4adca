#pragma once

#include <QSqlDatabase>

namespace store {

// Gives a SQLite connection what the SQL of the program expects of it and PostgreSQL has of
// its own: the Turkish collation "turkce" and the functions year(), month(), day() and
// datevalue() over the stored date text. False when the handle is not a SQLite one.
bool registerSqliteFunctions(const QSqlDatabase &db);

// Puts the write guard into the engine: the connection's authorizer refuses to compile a
// statement that would change the global store, the working year or its change log (rows,
// tables, indexes, views, triggers) while store::writeGuardAllows() says no. Attaching and
// detaching, pragmas, transactions and the temporary database stay free. False when the
// handle is not a SQLite one.
bool installWriteGuard(const QSqlDatabase &db);

} // namespace store
