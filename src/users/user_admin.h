#pragma once

#include "base/result.h"

#include <QHash>
#include <QList>
#include <QString>

namespace store {
class Database;
}

// The users who may log in and their rights on each command, as the users screen edits them.
// Passwords never leave here in clear: a row only says whether it has one, and a new password
// travels from the password boxes to the hash.
namespace users {

struct KullaniciSatiri
{
    QString ad;  // as the user types it
    QString kod; // as table Sifre keeps it (scrambled); empty for a user not saved yet
    bool sifreVar = false;
    QString yeniSifre; // set through the password boxes, written as a hash on save
    bool sifreDegisti = false;
};

struct HakSatiri
{
    QString tool;
    QString caption;
    bool okuma = false;
    bool yazma = false;
};

// Every user who can log in, the service user included, in name order.
base::Result<QList<KullaniciSatiri>> KullanicilariOku(store::Database &db);
// Every command of the command table with the user's marks (none for a command without a row).
base::Result<QList<HakSatiri>> HaklariOku(store::Database &db, const QString &kod);
// True when `sifre` is the user's stored password (an empty one matches a user without one).
bool SifreDogru(store::Database &db, const QString &kod, const QString &sifre);

// Why a row of the users grid cannot be saved; "" when it can.
QString KayitTus(const QList<KullaniciSatiri> &satirlar, int satir);

// Writes the users and, for each user whose rights were changed, his rights: the user's rows of
// Haklar are replaced by one row per command. When these are the first rights defined, every
// other user keeps read and write on every command. A save that would leave nobody able to
// change the users and their rights is refused. All in one transaction.
base::Status KullanicilariKaydet(store::Database &db, const QList<KullaniciSatiri> &satirlar,
                                 const QHash<QString, QList<HakSatiri>> &haklar);
// Goes through while some user may read and change the users and their rights.
base::Status yoneticiKaliyor(store::Database &db, const QString &label);
// Removes a user and his rights.
base::Status KullaniciSil(store::Database &db, const QString &kod);

} // namespace users
