#pragma once

#include "base/result.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace store {
class Database;
}

// The account statement of a student ("Aidat Cari Durum Raporu" and the statements of the
// receivables lists): for each of his accounts its discounts, installments and payments side by
// side on the same rows, with the account's and the student's sums.
namespace fees {

// What the statement shows of the student; the student's own screen reads it.
struct OgrenciOzeti
{
    qint64 kayitId = 0;
    QString adi;
    QString soyadi;
    QString sinif;
    qint64 numara = 0;
    QString veliAdSoyad;
    QString veliEvAdresi;
    QString veliEvTelefonu;
    QString veliIsAdresi;
    QString veliIsTelefonu;
    QString cariDurumAciklama;
};

// The heads of the statement's 31 columns and of its two hidden keys.
const QStringList &CariDurumSutunlari();

// The statement's rows, each with 33 cells: the 31 columns, the student's key and the account's
// key. Money as "###,##0.00"; an account's sums stand on every row of its block, blank (or "-"
// for what was paid and what is left) when not above zero. No row at all is a refusal titled
// "Açıklama": "Öğrenci İçin Aidat ve Ödeme Bilgileri Bulunamadı.".
base::Result<QList<QStringList>> CariDurumListesiDoldur(store::Database &db,
                                                        const OgrenciOzeti &ogrenci);

} // namespace fees
