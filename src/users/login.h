#pragma once

#include "base/result.h"

#include <QString>

namespace store {
class Database;
}

namespace users {

enum class GirisSonucu {
    Kabul,       // name and password match
    AdHatali,    // no such user
    SifreHatali, // the password does not match
};

// The login test. The name as typed becomes the active user before the test, so that it stands
// even after a failed try. The name is looked up in its scrambled form; the password is checked
// against its Argon2id hash, or, once, against the scrambled form the old program stored, which
// is then replaced by a hash.
base::Result<GirisSonucu> SifreKontrol(store::Database &db, const QString &ad,
                                       const QString &sifre);

// True when table Sifre holds at least one user.
base::Result<bool> KullaniciVarMi(store::Database &db);
// Adds a user, or gives an existing one a new password; the password is kept as a hash.
base::Status KullaniciKaydet(store::Database &db, const QString &ad, const QString &sifre);

// Failed logins slow the next tries down: after the third failure of a name, each try waits
// twice as long as the one before (2, 4, 8 ... up to 60 seconds). Counted in the global store,
// so that restarting the program does not reset them.
int GirisBeklemesi(store::Database &db, const QString &ad);
void GirisSonucuKaydet(store::Database &db, const QString &ad, bool basarili);

} // namespace users
