#include "fees/account_extras.h"

#include "fees/store_steps.h"
#include "store/database.h"
#include "users/rights.h"

namespace fees {

namespace {

const QString s_faturaLabel = QStringLiteral("FrmOgrenciAidat:FaturaGoster");
const QString s_bursLabel = QStringLiteral("FrmOgrenciAidat:BursDokumuAl");
const QString s_bursKayitLabel = QStringLiteral("FrmOgrenciAidat:cmdBursDokumuKaydet");

} // namespace

base::Result<QList<FaturaSatiri>> FaturaListesi(store::Database &db, qint64 ogrKayitId,
                                                qint64 kayitId, bool taksitFatura)
{
    // The date of the first row that carries the invoice's number.
    const QString table
        = taksitFatura ? QStringLiteral("OgrenciAidatDetay") : QStringLiteral("OgrenciAidatOdeme");
    store::Query q(db, QStringLiteral("SELECT F.FaturaTarihi, F.FaturaTutar, F.FaturaNo, "
                                      "(SELECT MIN(R.OdemeTarihi) FROM %1 R WHERE "
                                      "R.Fatura_ID = F.FaturaNo AND R.KayitID = F.KayitID) "
                                      "FROM Fatura F WHERE F.OgrKayitID = ? AND F.KayitID = ? "
                                      "ORDER BY F.FaturaNo")
                           .arg(table));
    q.bind(ogrKayitId).bind(kayitId);
    if (!q.exec()) {
        return q.error(s_faturaLabel);
    }
    QList<FaturaSatiri> out;
    while (q.next()) {
        out.append(
            FaturaSatiri{q.dateTime(0).date(), q.para(1), q.integer(2), q.dateTime(3).date()});
    }
    return out;
}

base::Result<QStringList> BankaAdlari(store::Database &db)
{
    store::Query q(db, QStringLiteral("SELECT BankaAdi FROM Bankalar ORDER BY BankaAdi"));
    if (!q.exec()) {
        return q.error(QStringLiteral("FrmCekBilgisi:BankaYukle"));
    }
    QStringList out;
    while (q.next()) {
        out << q.text(0);
    }
    return out;
}

const QStringList &BursTurleri()
{
    static const QStringList s
        = {QStringLiteral("Eğitim"), QStringLiteral("Yemek"), QStringLiteral("Servis"),
           QStringLiteral("Kitap"), QStringLiteral("Etüt")};
    return s;
}

base::Result<QList<BursSatiri>> BursDokumuAl(store::Database &db, qint64 ogrKayitId)
{
    QList<BursSatiri> out;
    for (const QString &tur : BursTurleri()) {
        out.append(BursSatiri{tur});
    }
    store::Query q(db, QStringLiteral("SELECT BursAdi, BursMiktari, BursOrani, BursAciklama "
                                      "FROM OgrenciBurs WHERE Ogr_KayitID = ?"));
    q.bind(ogrKayitId);
    if (!q.exec()) {
        return q.error(s_bursLabel);
    }
    while (q.next()) {
        const qsizetype at = BursTurleri().indexOf(q.text(0));
        if (at < 0) {
            continue;
        }
        const base::Result<Para> oran = q.decimal(2);
        out[at] = BursSatiri{q.text(0), q.text(1), oran ? *oran : Para(), q.text(3)};
    }
    return out;
}

base::Status BursDokumuKaydet(store::Database &db, qint64 ogrKayitId, qint64 ogrenciNo,
                              const QString &adSoyad, const QList<BursSatiri> &satirlar)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki;
    }
    const store::Operation op(db, store::Store::Year, s_bursKayitLabel);
    if (!op) {
        return op.error();
    }
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), s_bursKayitLabel);
    }
    for (const BursSatiri &b : satirlar) {
        if (b.miktar.trimmed().isEmpty() && b.oran.isZero() && b.aciklama.trimmed().isEmpty()) {
            continue;
        }
        store::Query update(db, QStringLiteral("UPDATE OgrenciBurs SET OgrenciNo = ?, "
                                               "OgrenciAdSoyad = ?, BursOrani = ?, "
                                               "BursAciklama = ?, BursMiktari = ? "
                                               "WHERE Ogr_KayitID = ? AND BursAdi = ?"));
        update.bind(ogrenciNo)
            .bind(adSoyad.left(50))
            .bindDecimal(b.oran)
            .bind(b.aciklama.left(200))
            .bind(b.miktar.trimmed().left(100))
            .bind(ogrKayitId)
            .bind(b.bursAdi);
        if (!update.exec()) {
            return rollBack(tx, update, s_bursKayitLabel);
        }
        if (update.rowsAffected() > 0) {
            continue;
        }
        store::Query insert(db, QStringLiteral("INSERT INTO OgrenciBurs (Ogr_KayitID, OgrenciNo, "
                                               "OgrenciAdSoyad, BursAdi, BursOrani, BursAciklama, "
                                               "BursMiktari) VALUES (?, ?, ?, ?, ?, ?, ?)"));
        insert.bind(ogrKayitId)
            .bind(ogrenciNo)
            .bind(adSoyad.left(50))
            .bind(b.bursAdi)
            .bindDecimal(b.oran)
            .bind(b.aciklama.left(200))
            .bind(b.miktar.trimmed().left(100));
        if (!insert.exec()) {
            return rollBack(tx, insert, s_bursKayitLabel);
        }
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), s_bursKayitLabel);
    }
    return {};
}

base::Status BursSil(store::Database &db, qint64 ogrKayitId)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki;
    }
    const store::Operation op(db, store::Store::Year, s_bursKayitLabel);
    if (!op) {
        return op.error();
    }
    store::Query q(db, QStringLiteral("DELETE FROM OgrenciBurs WHERE Ogr_KayitID = ?"));
    q.bind(ogrKayitId);
    if (!q.exec()) {
        return q.error(s_bursKayitLabel);
    }
    return {};
}

} // namespace fees
