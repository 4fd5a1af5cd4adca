#include "students/class_moves.h"

#include "store/change_log.h"
#include "store/database.h"
#include "store/schema.h"
#include "users/session.h"

namespace students {

namespace {

QString cut(const QString &value, const QString &table, const QString &field)
{
    const QString v
        = value.trimmed().left(store::schema::textSize(store::Store::Year, table, field));
    return v.isEmpty() ? QStringLiteral("") : v;
}

QString cutOgrenci(const QString &value, const char *field)
{
    return cut(value, QStringLiteral("Ogrenci"), QString::fromLatin1(field));
}

} // namespace

// ---- quick entry -------------------------------------------------------------------------------

base::Result<bool> OgrenciNoKontrol(store::Database &db, qint64 numara)
{
    store::Query q(db, QStringLiteral("SELECT Ogr_Numarasi FROM Ogrenci WHERE Ogr_Numarasi = ? "
                                      "LIMIT 1"));
    q.bind(numara);
    if (!q.exec()) {
        return q.error(QStringLiteral("FrmHizliOgrenciKayit:OgrenciNoKontrol"));
    }
    return q.next();
}

base::Result<QList<qint64>> HizliOgrenciKaydet(store::Database &db,
                                               const QList<HizliSatir> &satirlar,
                                               const std::function<void(int, int)> &ilerleme)
{
    // The save has always been reported under the label of the list filling.
    const QString where = QStringLiteral("FrmHizliOgrenciKayit:AlanBolumYabancidilCombo");
    const users::CalismaDurumu &durum = users::durum();
    const QString donem = cutOgrenci(durum.OgretimYili, "Donem");
    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    // A quick-entry row is the student's number, names, class, department and language, as
    // it has always been; the rest is filled in later on the student screen.
    store::Query ogrenci(db, QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Donem, Ogr_Adi, "
                                            "Ogr_Soyadi, Ogr_Sinif, Ogr_Bolumu, Ogr_YabanciDil) "
                                            "VALUES (?, ?, ?, ?, ?, ?, ?) RETURNING KayitID"));
    store::Query nufus(db, QStringLiteral("INSERT INTO OgrenciNufus (KayitID, Ogr_Nufus_Cinsiyet, "
                                          "Donem) VALUES (?, ?, ?)"));
    QList<qint64> keys;
    for (int i = 0; i < satirlar.size(); ++i) {
        const HizliSatir &s = satirlar.at(i);
        const QString adi = cutOgrenci(s.adi, "Ogr_Adi");
        const QString soyadi = cutOgrenci(s.soyadi, "Ogr_Soyadi");
        const QString sinif = cutOgrenci(s.sinif, "Ogr_Sinif");
        ogrenci.bind(s.numara)
            .bind(donem)
            .bind(adi)
            .bind(soyadi)
            .bind(sinif)
            .bind(cutOgrenci(s.bolum, "Ogr_Bolumu"))
            .bind(cutOgrenci(s.yabanciDil, "Ogr_YabanciDil"));
        if (!ogrenci.exec() || !ogrenci.next()) {
            return ogrenci.error(where);
        }
        const qint64 key = ogrenci.integer(0);
        ogrenci.finish();
        const store::OgrenciLogSatiri log{key, donem, s.numara, soyadi, adi, sinif};
        if (base::Status st = store::LogOgrenci(db, log, store::LogYeniKayit, durum.AktifKullanici);
            !st) {
            return st.error().withLabel(where);
        }
        nufus.bind(key)
            .bind(cut(s.cinsiyet, QStringLiteral("OgrenciNufus"),
                      QStringLiteral("Ogr_Nufus_Cinsiyet")))
            .bind(donem);
        if (!nufus.exec()) {
            return nufus.error(where);
        }
        keys.append(key);
        if (ilerleme) {
            ilerleme(i + 1, int(satirlar.size()));
        }
    }
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return keys;
}

// ---- class moves -------------------------------------------------------------------------------

base::Result<QList<SinifOgrencisi>> SinifOgrencileri(store::Database &db, const QString &sinif,
                                                     const QString &label)
{
    store::Query q(db,
                   QStringLiteral("SELECT KayitID, Ogr_Numarasi, Ogr_Adi, Ogr_Soyadi, Ogr_Sinif, "
                                  "Donem FROM Ogrenci WHERE COALESCE(Ogr_Sinif, '') = ? "
                                  "ORDER BY Ogr_Numarasi, KayitID"));
    q.bind(cutOgrenci(sinif, "Ogr_Sinif"));
    if (!q.exec()) {
        return q.error(label);
    }
    QList<SinifOgrencisi> rows;
    while (q.next()) {
        rows.append(
            SinifOgrencisi{q.integer(0), q.integer(1), q.text(2), q.text(3), q.text(4), q.text(5)});
    }
    return rows;
}

base::Result<QList<qint64>> SinifAtlat(store::Database &db, const QString &eskiSinif,
                                       const QString &yeniSinif, const QList<qint64> &numaralar)
{
    const QString where = QStringLiteral("Form_Sinif_Atlatma:KAYDET");
    const QString eski = cutOgrenci(eskiSinif, "Ogr_Sinif");
    const QString yeni = cutOgrenci(yeniSinif, "Ogr_Sinif");
    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    QList<qint64> moved;
    for (const qint64 numara : numaralar) {
        store::Query find(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE "
                                             "COALESCE(Ogr_Sinif, '') = ? AND Ogr_Numarasi = ? "
                                             "ORDER BY KayitID LIMIT 1"));
        find.bind(eski).bind(numara);
        if (!find.exec()) {
            return find.error(where);
        }
        if (!find.next()) {
            continue;
        }
        const qint64 key = find.integer(0);
        find.finish();
        store::Query update(db,
                            QStringLiteral("UPDATE Ogrenci SET Ogr_Sinif = ? WHERE KayitID = ?"));
        update.bind(yeni).bind(key);
        if (!update.exec()) {
            return update.error(where);
        }
        moved << key;
    }
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return moved;
}

base::Result<int> TopluSinifDegistir(store::Database &db,
                                     const QList<QPair<qint64, QString>> &kayitSinif)
{
    const QString where = QStringLiteral("FrmTopluSinifDegistirme:Kayit");
    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    store::Query update(db, QStringLiteral("UPDATE Ogrenci SET Ogr_Sinif = ? WHERE KayitID = ?"));
    int changed = 0;
    for (const QPair<qint64, QString> &row : kayitSinif) {
        update.bind(cutOgrenci(row.second, "Ogr_Sinif")).bind(row.first);
        if (!update.exec()) {
            return update.error(where);
        }
        changed += update.rowsAffected();
    }
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return changed;
}

} // namespace students
