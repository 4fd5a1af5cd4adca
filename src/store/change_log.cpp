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

base::Status LogOgrenci(Database &db, const OgrenciLogSatiri &o, const QString &islemTuru,
                        const QString &kullanici)
{
    Query q(db,
            QStringLiteral("INSERT INTO %1 (Kayit_Id, Donem, Ogr_Numarasi, Ogr_Soyadi, Ogr_Adi, "
                           "Ogr_Sinif, Tarih, Kullanici, Islem_Turu) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
                .arg(db.table(Store::Log, QStringLiteral("Ogrenci"))));
    // The log's fields are no wider than the student's own.
    const QDateTime now = QDateTime::currentDateTime();
    const QTime t = now.time();
    const QDateTime moment(now.date(), QTime(t.hour(), t.minute(), t.second()));
    q.bind(o.kayitId)
        .bind(o.donem.left(10))
        .bind(o.numara)
        .bind(o.soyadi.left(20))
        .bind(o.adi.left(20))
        .bind(o.sinif.left(6))
        .bind(moment)
        .bind(kullanici.left(50))
        .bind(islemTuru.left(50));
    // A writer's failure is reported on its caller's failure path, under the caller's label.
    if (!q.exec()) {
        return q.error(QString());
    }
    return {};
}

} // namespace store
