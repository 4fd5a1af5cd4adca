#pragma once

#include "base/result.h"

#include <QString>

namespace store {
class Database;
}

// Data kept encrypted at rest (the guardians' card numbers): libsodium's secretbox, with the
// office's key kept in the global store, apart from the working-year files and their backups.
namespace users {

// "" stays ""; anything else comes back as "v1:" and the nonce and box in base64. The office's
// key is made the first time it is needed, in a write of its own: so call this before the
// transaction of the save that stores the result. An error when the key cannot be had, so that
// a save never blanks what it should keep.
base::Result<QString> GizliYaz(store::Database &db, const QString &acik);
// The clear text; a value written before encryption (no "v1:") comes back as it is. A value
// that does not open (another office's key, a damaged row) gives "".
QString GizliOku(store::Database &db, const QString &kayitli);
bool GizliMi(const QString &kayitli);

// A card number as those without the right see it: only its last four digits.
QString KartNoMaskele(const QString &kartNo);
// The right to see card numbers in clear; with no right defined at all, everyone has it.
inline const QString KartNoGormeAraci = QStringLiteral("hakKartNoGoster");
bool KartNoGorebilir(store::Database &db);

} // namespace users
