#pragma once

#include "base/result.h"

#include <QString>

namespace store {
class Database;
}

// Data kept encrypted at rest (the guardians' card numbers): libsodium's secretbox, with the
// office's key kept apart from the data, in a file of the user's configuration folder that only
// its owner may read. Every workstation of an office on PostgreSQL holds a copy of the same file.
namespace users {

// "" stays ""; anything else comes back as "v1:" and the nonce and box in base64; a value that
// is already sealed (one this computer could not open) comes back as it is. The office's key is
// made the first time it is needed, outside any transaction: so call this before the
// transaction of the save that stores the result. An error when the key cannot be had (no key
// file here while sealed numbers are stored), so that a save never blanks what it should keep.
base::Result<QString> GizliYaz(store::Database &db, const QString &acik);
// The clear text; a value written before encryption (no "v1:") comes back as it is. A value
// that does not open here (no key file, another office's key) comes back sealed, as stored.
QString GizliOku(store::Database &db, const QString &kayitli);
bool GizliMi(const QString &kayitli);

// Where the key file is: VORTEL_KART_ANAHTARI, else the setting "kartAnahtariDosyasi" of this
// workstation, else "kart-anahtari.key" in the user's configuration folder.
QString KartAnahtariDosyasi();
bool KartAnahtariVar(store::Database &db);
// Why numbers show masked on a computer without the key, and what to do.
QString KartAnahtariYokMesaji();

// A card number as those without the right see it: only its last four digits; a number that
// could not be opened here, nothing at all.
QString KartNoMaskele(const QString &kartNo);
// The right to see card numbers in clear; with no right defined at all, everyone has it.
inline const QString KartNoGormeAraci = QStringLiteral("hakKartNoGoster");
bool KartNoGorebilir(store::Database &db);

} // namespace users
