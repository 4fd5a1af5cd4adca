#pragma once

#include "base/result.h"

#include <QString>

namespace store {
class Database;
}

// The mark on a student whose account a user is working on (Ogrenci.Ogr_Islem_Yapan_Kullanici),
// so that a second workstation is warned. Taking it is one statement that tests and sets at
// once: two workstations that open the same student at the same moment cannot both take it. A
// user's own mark never stops that user, and two sessions of one user name do not stop each
// other.
namespace users {

// The last lock result.
bool OgrenciKilitOK();

// Goes through when the student is free or marked by this user; otherwise a refusal that says
// who holds him.
base::Status OgrenciKilitKontrol(store::Database &db, qint64 kayitId);
// Clears this user's marks, or, with `tumu`, every mark (one left by a program that was killed).
base::Status OgrenciKilitBirak(store::Database &db, bool tumu);
// Clears this user's other marks and takes this student, unless another user holds him; then
// a refusal says who does.
base::Status OgrenciKilitle(store::Database &db, qint64 kayitId);

// The test-and-set itself, for a named user: "" when the user
// now holds the student (or there is no such student), else the name of the one who does. The
// mark keeps the first twenty characters of a name, and names are compared by them.
base::Result<QString> KilidiAl(store::Database &db, qint64 kayitId, const QString &kullanici);

// The message that names the holder.
QString KilitMesaji(const QString &kullanici);

} // namespace users
