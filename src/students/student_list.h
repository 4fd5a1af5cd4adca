#pragma once

#include "base/result.h"

#include <QList>
#include <QString>

namespace store {
class Database;
}

// The pick-list by which every screen finds a student by first name or surname.
namespace students {

enum class ListeSirasi { Ad, Soyad };

struct ListeSatiri
{
    qint64 kayitId = 0;
    qint64 numara = 0;
    QString adi;
    QString soyadi;
    QString sinif;
    QString tcNo;
};

// OgrenciYukle: the students whose first name ("AD") or surname ("SOYAD") begins with `metin`,
// in the order of that name and then the other. The beginning is compared in Turkish upper
// case, so "ism" finds "İsmail" and "ış" finds "IŞIK"; an empty text gives every student.
base::Result<QList<ListeSatiri>> OgrenciYukle(store::Database &db, ListeSirasi tur,
                                              const QString &metin = QString());

// The name of a row that the list is ordered by, in Turkish upper case.
QString ListeAnahtari(const ListeSatiri &satir, ListeSirasi tur);
// The first row whose key begins with the text (compared in Turkish upper case); -1 when none.
// `anahtarlar` holds ListeAnahtari of each row.
int IlkEslesen(const QStringList &anahtarlar, const QString &metin);

} // namespace students
