#include "store/change_log.h"

#include "store/migration.h"
#include "store/schema.h"

namespace store {

base::Status YeniTabloEkle(Database &db)
{
    Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const schema::Table &t : schema::tables()) {
        if (t.store != Store::Log)
            continue;
        if (base::Status s = createDeclaredTable(db, t); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

namespace {

// The moment a log row is written, to the second as the log keeps it.
QDateTime simdi()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QTime t = now.time();
    return QDateTime(now.date(), QTime(t.hour(), t.minute(), t.second()));
}

} // namespace

base::Status LogOgrenci(Database &db, const OgrenciLogSatiri &o, const QString &islemTuru,
                        const QString &kullanici)
{
    Query q(db,
            QStringLiteral("INSERT INTO %1 (Kayit_Id, Donem, Ogr_Numarasi, Ogr_Soyadi, Ogr_Adi, "
                           "Ogr_Sinif, Tarih, Kullanici, Islem_Turu) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
                .arg(db.table(Store::Log, QStringLiteral("Ogrenci"))));
    // The log's fields are no wider than the student's own.
    q.bind(o.kayitId)
        .bind(o.donem.left(10))
        .bind(o.numara)
        .bind(o.soyadi.left(20))
        .bind(o.adi.left(20))
        .bind(o.sinif.left(6))
        .bind(simdi())
        .bind(kullanici.left(50))
        .bind(islemTuru.left(50));
    // A writer's failure is reported on its caller's failure path, under the caller's label.
    if (!q.exec()) {
        return q.error(QString());
    }
    return {};
}

base::Status LogOgrenciAidatTanim(Database &db, const HesapLogSatiri &h, const QString &islemTuru,
                                  const QString &kullanici)
{
    Query q(db, QStringLiteral("INSERT INTO %1 (OgrKayitID, KayitID, Sira, Borc, Kalan, AidatID, "
                               "IskontoTutari, YTLCevrim, Tarih, Islem_Turu, Kullanici, "
                               "AidatTanim) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                    .arg(db.table(Store::Log, QStringLiteral("OgrenciAidatTanim"))));
    q.bind(h.ogrKayitId)
        .bind(h.kayitId)
        .bind(h.sira)
        .bind(h.borc)
        .bind(h.kalan)
        .bind(h.aidatId)
        .bind(h.iskontoTutari)
        .bind(h.ytlCevrim)
        .bind(simdi())
        .bind(islemTuru.left(50))
        .bind(kullanici.left(50))
        .bind(h.aidatTanim.left(30));
    if (!q.exec()) {
        return q.error(QString());
    }
    return {};
}

base::Status LogOgrenciAidatOdeme(Database &db, const OdemeLogSatiri &o, const QString &islemTuru,
                                  const QString &kullanici)
{
    Query q(db, QStringLiteral("INSERT INTO %1 (KayitID, Sira, OdemeTarihi, Odenen, Aciklama, "
                               "OdemeSekli, PesinatTaksitID, FisNo, Kullanici, Tarih, Islem_Turu) "
                               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                    .arg(db.table(Store::Log, QStringLiteral("OgrenciAidatOdeme"))));
    q.bind(o.kayitId)
        .bind(o.sira)
        .bind(o.odemeTarihi)
        .bind(o.odenen)
        .bind(o.aciklama.left(50))
        .bind(o.odemeSekli.left(1))
        .bind(o.pesinatTaksitId)
        .bind(o.fisNo)
        .bind(kullanici.left(50))
        .bind(simdi())
        .bind(islemTuru.left(50));
    if (!q.exec()) {
        return q.error(QString());
    }
    return {};
}

} // namespace store
