#include "fees/definitions.h"

#include "base/turkish_text.h"
#include "fees/ledger.h"
#include "fees/store_steps.h"
#include "store/database.h"
#include "users/rights.h"

namespace fees {

namespace {

QDate tarihVeyaBos(const QDateTime &stored)
{
    if (!stored.isValid() || base::SifirTarihMi(stored)) {
        return QDate();
    }
    return stored.date();
}

QDateTime tarihVeyaSifir(const QDate &tarih)
{
    return tarih.isValid() ? QDateTime(tarih, QTime(0, 0)) : base::SifirTarih;
}

} // namespace

const QStringList &AidatTurleri()
{
    static const QStringList turler = {
        QStringLiteral("Öğrenim"),  QStringLiteral("Kıyafet"),         QStringLiteral("Yemek"),
        QStringLiteral("Kahvaltı"), QStringLiteral("Takviye Kursu"),   QStringLiteral("Yatakhane"),
        QStringLiteral("Kitap"),    QStringLiteral("Kırtasiye"),       QStringLiteral("Servis"),
        QStringLiteral("Etüt"),     QStringLiteral("Sosyal Etkinlik"),
    };
    return turler;
}

base::Result<QList<AidatListeSatiri>> AidatTaksitGoster(store::Database &db, const QString &etiket)
{
    const QString label
        = etiket.isEmpty() ? QStringLiteral("FrmAidatTanimlama:AidatTaksitGoster") : etiket;
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Query q(db, QStringLiteral("SELECT KayitID, AidatTanim, AidatToplam, AidatBirimAdeti, "
                                      "AidatBirimFiyati FROM AidatTanim ORDER BY KayitID"));
    if (!q.exec()) {
        return q.error(label);
    }
    QList<AidatListeSatiri> liste;
    while (q.next()) {
        liste.append(AidatListeSatiri{q.integer(0), q.text(1), q.para(2), q.integer(3), q.para(4)});
    }
    return liste;
}

base::Result<std::optional<AidatTanimi>> AidatTaksitDetayGoster(store::Database &db, qint64 kayitId)
{
    const QString label = QStringLiteral("FrmAidatTanimlama:AidatTaksitDetayGoster");
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Query q(db,
                   QStringLiteral("SELECT KayitID, AidatTanim, AidatTuru, AidatToplam, Pesinat, "
                                  "AidatBirimFiyati, AidatBirimAdeti, KDVOrani, TaksitSayisi, "
                                  "OdemeBasTarihi, YTLCevrim FROM AidatTanim WHERE KayitID = ?"));
    q.bind(kayitId);
    if (!q.exec()) {
        return q.error(label);
    }
    if (!q.next()) {
        return std::optional<AidatTanimi>();
    }
    AidatTanimi t;
    t.kayitId = q.integer(QStringLiteral("KayitID"));
    t.aidatTanim = q.text(QStringLiteral("AidatTanim"));
    t.aidatTuru = int(q.integer(QStringLiteral("AidatTuru")));
    if (t.aidatTuru < 0 || t.aidatTuru >= AidatTurleri().size()) {
        t.aidatTuru = 0;
    }
    t.toplam = q.para(QStringLiteral("AidatToplam"));
    t.pesinat = q.para(QStringLiteral("Pesinat"));
    t.birimFiyati = q.para(QStringLiteral("AidatBirimFiyati"));
    t.birimAdeti = q.integer(QStringLiteral("AidatBirimAdeti"));
    const base::Result<Para> kdvOrani = q.decimal(QStringLiteral("KDVOrani"));
    if (!kdvOrani) {
        return kdvOrani.error().withLabel(label);
    }
    t.kdvOrani = *kdvOrani;
    t.taksitSayisi = int(q.integer(QStringLiteral("TaksitSayisi")));
    t.odemeBasTarihi = tarihVeyaBos(q.dateTime(QStringLiteral("OdemeBasTarihi")));
    t.ytlCevrim = int(q.integer(QStringLiteral("YTLCevrim")));
    q.finish();

    store::Query d(db, QStringLiteral("SELECT OdemeTarihi, OdemeMiktari FROM AidatDetay "
                                      "WHERE KayitID = ? ORDER BY Sira"));
    d.bind(kayitId);
    if (!d.exec()) {
        return d.error(label);
    }
    while (d.next()) {
        t.taksitler.append(TaksitSatiri{tarihVeyaBos(d.dateTime(0)), d.para(1)});
    }
    return std::optional<AidatTanimi>(t);
}

base::Result<KayitSonucu> AidatTaksitDetayKaydet(store::Database &db, const AidatTanimi &t)
{
    const QString label = QStringLiteral("FrmAidatTanimlama:AidatTaksitDetayKaydet");
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki.error();
    }
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), label);
    }
    qint64 key = 0;
    if (t.kayitId != 0) {
        store::Query bak(db, QStringLiteral("SELECT KayitID FROM AidatTanim WHERE KayitID = ?"));
        bak.bind(t.kayitId);
        if (!bak.exec()) {
            return rollBack(tx, bak, label);
        }
        if (bak.next()) {
            key = t.kayitId;
        }
    }
    const QString alanlar = QStringLiteral("AidatTuru = ?, AidatTanim = ?, AidatToplam = ?, "
                                           "Pesinat = ?, AidatBirimFiyati = ?, "
                                           "AidatBirimAdeti = ?, OdemeBasTarihi = ?, "
                                           "TaksitSayisi = ?, YTLCevrim = ?, KDVOrani = ?");
    if (key == 0) {
        store::Query yeni(db, QStringLiteral("INSERT INTO AidatTanim (AidatTanim) VALUES (?) "
                                             "RETURNING KayitID"));
        yeni.bind(t.aidatTanim.trimmed().left(30));
        if (!yeni.exec() || !yeni.next()) {
            return rollBack(tx, yeni, label);
        }
        key = yeni.integer(0);
    }
    store::Query q(db, QStringLiteral("UPDATE AidatTanim SET %1 WHERE KayitID = ?").arg(alanlar));
    q.bind(t.aidatTuru)
        .bind(t.aidatTanim.trimmed().left(30))
        .bind(t.toplam)
        .bind(t.pesinat)
        .bind(t.birimFiyati)
        .bind(qint64(t.birimAdeti))
        .bind(tarihVeyaSifir(t.odemeBasTarihi))
        .bind(t.taksitSayisi)
        .bind(t.ytlCevrim)
        .bindDecimal(t.kdvOrani)
        .bind(key);
    if (!q.exec()) {
        return rollBack(tx, q, label);
    }

    store::Query sil(db, QStringLiteral("DELETE FROM AidatDetay WHERE KayitID = ?"));
    sil.bind(key);
    if (!sil.exec()) {
        return rollBack(tx, sil, label);
    }
    store::Query ekle(db, QStringLiteral("INSERT INTO AidatDetay (KayitID, Sira, OdemeTarihi, "
                                         "OdemeMiktari, YTLCevrim) VALUES (?, ?, ?, ?, ?)"));
    for (int i = 0; i < t.taksitler.size(); ++i) {
        const TaksitSatiri &satir = t.taksitler.at(i);
        ekle.bind(key)
            .bind(i + 1)
            .bind(tarihVeyaSifir(satir.odemeTarihi))
            .bind(satir.tutar)
            .bind(t.ytlCevrim);
        if (!ekle.exec()) {
            return rollBack(tx, ekle, label);
        }
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), label);
    }
    return KayitSonucu{key};
}

base::Status TaksitAidatSil(store::Database &db, qint64 kayitId, const QString &aidatTanim)
{
    const QString label = QStringLiteral("FrmAidatTanimlama:TaksitAidatSil");
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki.error();
    }
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), label);
    }
    const base::Result<bool> kullaniliyor = AidatKullaniliyor(db, kayitId, label);
    if (!kullaniliyor) {
        tx.rollback();
        return kullaniliyor.error();
    }
    if (*kullaniliyor) {
        tx.rollback();
        return base::Error::refusal(
            QStringLiteral("AİDAT KULLANILIYOR"),
            aidatTanim + QStringLiteral(" Aidat/Taksit tanımlaması kullanıldığı için silinemedi!"));
    }
    for (const char *tablo : {"AidatTanim", "AidatDetay"}) {
        store::Query q(
            db, QStringLiteral("DELETE FROM %1 WHERE KayitID = ?").arg(QString::fromLatin1(tablo)));
        q.bind(kayitId);
        if (!q.exec()) {
            return rollBack(tx, q, label);
        }
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), label);
    }
    return {};
}

} // namespace fees
