#pragma once

#include "store/database.h"

namespace store {

// Creates the change-log tables of the open working year: each mirrors its table and adds the
// moment, the user and the operation word.
base::Status YeniTabloEkle(Database &db);

// The operation words that writers hand to the log.
inline const QString LogYeniKayit = QStringLiteral("AddNew");
inline const QString LogDegisiklik = QStringLiteral("Edit");
inline const QString LogKayitSil = QStringLiteral("Delete");

// What the log keeps of a student.
struct OgrenciLogSatiri
{
    qint64 kayitId = 0;
    QString donem;
    qint64 numara = 0;
    QString soyadi;
    QString adi;
    QString sinif;
};

// The student writer: one row in the log's Ogrenci table with the mirrored fields, the present
// moment, the user and the operation word. Called inside the save's transaction, after the
// student's own row is written, so that both stand or neither does.
base::Status LogOgrenci(Database &db, const OgrenciLogSatiri &ogrenci, const QString &islemTuru,
                        const QString &kullanici);

// What the log keeps of a fee account's header.
struct HesapLogSatiri
{
    qint64 ogrKayitId = 0;
    qint64 kayitId = 0;
    int sira = 0;
    base::Para borc;
    base::Para kalan;
    qint64 aidatId = 0;
    base::Para iskontoTutari;
    int ytlCevrim = 0;
    QString aidatTanim;
};

// What the log keeps of a payment.
struct OdemeLogSatiri
{
    qint64 kayitId = 0;
    int sira = 0;
    QDateTime odemeTarihi;
    base::Para odenen;
    QString aciklama;
    QString odemeSekli;
    int pesinatTaksitId = 0;
    qint64 fisNo = 0;
};

// The account and payment writers, alike: one row each, inside the caller's transaction.
base::Status LogOgrenciAidatTanim(Database &db, const HesapLogSatiri &hesap,
                                  const QString &islemTuru, const QString &kullanici);
base::Status LogOgrenciAidatOdeme(Database &db, const OdemeLogSatiri &odeme,
                                  const QString &islemTuru, const QString &kullanici);

} // namespace store
