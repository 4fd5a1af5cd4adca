#pragma once

#include <QString>

namespace store {
class Database;
}

namespace testing {

// An office as the program leaves it after its first morning: a user who may do everything,
// one working year opened and brought to the full schema (the main window's late fields
// included), the school's row saved and read into the working state, the user logged in.
// False when a step failed.
bool openOffice(store::Database &db, const QString &user = QStringLiteral("Müdür"),
                const QString &password = QStringLiteral("1"),
                const QString &cariAy = QStringLiteral("202510"));

} // namespace testing
