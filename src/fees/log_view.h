#pragma once

#include "base/result.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

namespace store {
class Database;
}

// The change log of the working year as "Yapılan Değişiklerin Gösterilmesi" lists it: one
// table's rows by one user within a date range, with the student each row concerns.
namespace fees {

enum class LogTablosu { Ogrenci, Fatura, OgrenciAidatTanim, OgrenciAidatOdeme };

// The tables in the order the screen offers them, by their names.
const QStringList &LogTablolari();

struct LogListesi
{
    QStringList basliklar;
    QList<QStringList> satirlar;
};

// The rows of the table that `kullanici` wrote from `ilk` to `son`, both days whole, in the
// order they were written. The operation words read as the office says them ("Yeni Kayıt",
// "Değişiklik", "Kayıt Sil").
base::Result<LogListesi> LogOku(store::Database &db, LogTablosu tablo, const QString &kullanici,
                                const QDate &ilk, const QDate &son);

} // namespace fees
