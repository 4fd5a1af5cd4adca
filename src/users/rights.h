#pragma once

#include "base/result.h"

#include <QSet>
#include <QString>

#include <optional>

namespace store {
class Database;
}

namespace users {

// The logged-in user's marks on a tool name: both true while no right is defined at all (an
// empty table, or rows whose tool names are all blank), both false for a tool without a row.
struct Hak
{
    bool okuma = false;
    bool yazma = false;
};
base::Result<Hak> HakOku(store::Database &db, const QString &tool);

// The rights test of a command: sets HakOkuma and HakYazma of the working state and gives
// HakOkuma. With no right defined at all (an empty table, or rows whose tool names are all
// blank) everyone may do everything; otherwise a command without a row for the user is closed.
// When the rights cannot be read, both marks are cleared and the failure comes back.
base::Result<bool> HakKontrol(store::Database &db, const QString &tool);

// Whether any right names a command: while none does, everyone may do everything.
base::Result<bool> HaklarTanimli(store::Database &db, const QString &label);

// The commands the logged-in user may read, for the menus; nullopt while no right is defined
// at all (everyone may do everything).
base::Result<std::optional<QSet<QString>>> OkunabilirKomutlar(store::Database &db);

// The write test at the head of every save and delete: a refusal with its notice ("Uyarı !")
// when the last rights test gave no write right.
base::Status YazmaYetkisiVar();

inline const QString YetkiYokMesaji
    = QStringLiteral("Bu programa giriş yetkiniz yok. Lütfen Sistem yetkilisi ile görüşünüz.");
inline const QString YazmaYetkisiYokMesaji
    = QStringLiteral("Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile görüşünüz");

} // namespace users
