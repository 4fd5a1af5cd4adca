#include "fees/ledger.h"

#include "store/database.h"

#include <QHash>
#include <QMap>

namespace fees {

// ---- a student's accounts ------------------------------------------------------------------

base::Result<std::optional<Hesap>> OgrenciHesabi(store::Database &db, qint64 ogrKayitId,
                                                 qint64 aidatId, const QString &etiket)
{
    store::Query q(db, QStringLiteral("SELECT KayitID, Borc, Kalan, AidatTanim, AidatID "
                                      "FROM OgrenciAidatTanim WHERE OgrKayitID = ? AND AidatID = ? "
                                      "ORDER BY KayitID"));
    q.bind(ogrKayitId).bind(aidatId);
    if (!q.exec()) {
        return q.error(etiket);
    }
    if (!q.next()) {
        return std::optional<Hesap>();
    }
    return std::optional<Hesap>(Hesap{q.integer(0), q.integer(4), q.text(3), q.para(1), q.para(2)});
}

base::Result<bool> AidatKullaniliyor(store::Database &db, qint64 aidatId, const QString &etiket)
{
    store::Query q(db, QStringLiteral("SELECT KayitID FROM OgrenciAidatTanim "
                                      "WHERE AidatID = ? LIMIT 1"));
    q.bind(aidatId);
    if (!q.exec()) {
        return q.error(etiket);
    }
    return q.next();
}

base::Result<int> YerTutuculariSifirla(store::Database &db, qint64 ogrKayitId, qint64 aidatId,
                                       const QString &etiket)
{
    store::Query q(db, QStringLiteral("UPDATE OgrenciAidatTanim SET Borc = 0, Kalan = 0 "
                                      "WHERE Kalan <= 0 AND AidatTanim = ? AND OgrKayitID = ? "
                                      "AND AidatID = ?"));
    q.bind(YerTutucuHesapAdi).bind(ogrKayitId).bind(aidatId);
    if (!q.exec()) {
        return q.error(etiket);
    }
    return q.rowsAffected();
}

base::Status OgrenciHesaplariniSil(store::Database &db, qint64 ogrKayitId, const QString &etiket)
{
    // The rows of the accounts first: they are found through the accounts.
    for (const QString &sql :
         {QStringLiteral("DELETE FROM OgrenciAidatDetay WHERE KayitID IN "
                         "(SELECT KayitID FROM OgrenciAidatTanim WHERE OgrKayitID = ?)"),
          QStringLiteral("DELETE FROM OgrenciAidatOdeme WHERE KayitID IN "
                         "(SELECT KayitID FROM OgrenciAidatTanim WHERE OgrKayitID = ?)"),
          QStringLiteral("DELETE FROM OgrenciAidatTanim WHERE OgrKayitID = ?")}) {
        store::Query q(db, sql);
        q.bind(ogrKayitId);
        if (!q.exec()) {
            return q.error(etiket);
        }
    }
    return {};
}

// ---- balances --------------------------------------------------------------------------------

base::Result<QList<HesapToplami>> HesapToplamlari(store::Database &db, qint64 ogrKayitId,
                                                  const QDate &oncesi, const QString &etiket)
{
    const QString limit = oncesi.isValid() ? QStringLiteral(" AND OdemeTarihi < ?") : QString();
    store::Query q(db, QStringLiteral("SELECT T.KayitID, T.AidatTanim, "
                                      "(SELECT CAST(SUM(D.Odenecek) AS BIGINT) FROM "
                                      "OgrenciAidatDetay D WHERE D.KayitID = T.KayitID%1) "
                                      "AS Odenecek, "
                                      "(SELECT CAST(SUM(P.Odenen) AS BIGINT) FROM "
                                      "OgrenciAidatOdeme P WHERE P.KayitID = T.KayitID%1) "
                                      "AS Odenen "
                                      "FROM OgrenciAidatTanim T WHERE T.OgrKayitID = ? "
                                      "ORDER BY T.AidatTanim, T.KayitID")
                           .arg(limit));
    if (oncesi.isValid()) {
        q.bind(oncesi).bind(oncesi);
    }
    q.bind(ogrKayitId);
    if (!q.exec()) {
        return q.error(etiket);
    }
    QList<HesapToplami> hesaplar;
    while (q.next()) {
        hesaplar.append(HesapToplami{q.integer(0), q.text(1), q.para(2), q.para(3)});
    }
    return hesaplar;
}

namespace {

// The months before the first day `oncesi`, from the sums the store keeps by month, less the
// rows of accounts whose student is gone (there are seldom any: a student's deletion takes his
// accounts with it).
base::Result<QList<AyToplami>> ayOzetinden(store::Database &db, const QDate &oncesi,
                                           const QString &etiket)
{
    struct Ay
    {
        qint64 taksit = 0;
        base::Para odenecek;
        base::Para odenen;
    };
    QMap<int, Ay> aylar;
    const int sinir = oncesi.year() * 100 + oncesi.month();
    {
        store::Query q(db, QStringLiteral("SELECT Ay, TaksitSayisi, Odenecek, Odenen FROM "
                                          "AyOzeti WHERE Ay < ?"));
        q.bind(sinir);
        if (!q.exec()) {
            return q.error(etiket);
        }
        while (q.next()) {
            aylar.insert(int(q.integer(0)), Ay{q.integer(1), q.para(2), q.para(3)});
        }
    }
    // The accounts without a student: usually none, and then nothing more is read.
    QStringList gone;
    {
        store::Query q(db, QStringLiteral("SELECT T.KayitID FROM OgrenciAidatTanim T WHERE NOT "
                                          "EXISTS (SELECT 1 FROM Ogrenci O WHERE O.KayitID = "
                                          "T.OgrKayitID)"));
        if (!q.exec()) {
            return q.error(etiket);
        }
        while (q.next()) {
            gone << QString::number(q.integer(0));
        }
    }
    for (const bool taksit : {true, false}) {
        if (gone.isEmpty()) {
            break;
        }
        store::Query q(db, QStringLiteral("SELECT year(R.OdemeTarihi) * 100 + "
                                          "month(R.OdemeTarihi), COUNT(*), "
                                          "CAST(SUM(R.%1) AS BIGINT) FROM %2 R WHERE "
                                          "R.KayitID IN (%3) AND R.OdemeTarihi < ? GROUP BY "
                                          "year(R.OdemeTarihi) * 100 + month(R.OdemeTarihi)")
                               .arg(taksit ? QStringLiteral("Odenecek") : QStringLiteral("Odenen"),
                                    taksit ? QStringLiteral("OgrenciAidatDetay")
                                           : QStringLiteral("OgrenciAidatOdeme"),
                                    gone.join(QLatin1Char(','))));
        q.bind(oncesi);
        if (!q.exec()) {
            return q.error(etiket);
        }
        while (q.next()) {
            Ay &ay = aylar[int(q.integer(0))];
            if (taksit) {
                ay.taksit -= q.integer(1);
                ay.odenecek = ay.odenecek - q.para(2);
            } else {
                ay.odenen = ay.odenen - q.para(2);
            }
        }
    }
    QList<AyToplami> sonuc;
    for (auto it = aylar.cbegin(); it != aylar.cend(); ++it) {
        // Months with payments but no installment are left out.
        if (it->taksit > 0) {
            sonuc.append(AyToplami{it.key() / 100, it.key() % 100, it->odenecek, it->odenen});
        }
    }
    return sonuc;
}

} // namespace

base::Result<QList<AyToplami>> AyToplamlari(store::Database &db, const QDate &oncesi,
                                            const QString &etiket)
{
    if (oncesi.isValid() && oncesi.day() == 1) {
        return ayOzetinden(db, oncesi, etiket);
    }
    // The accounts of students that still exist.
    const QString accounts = QStringLiteral("SELECT OT.KayitID FROM OgrenciAidatTanim OT "
                                            "JOIN Ogrenci O ON O.KayitID = OT.OgrKayitID");
    QHash<int, base::Para> paid; // by year * 100 + month
    {
        store::Query q(db, QStringLiteral("SELECT year(P.OdemeTarihi), month(P.OdemeTarihi), "
                                          "sum(P.Odenen) FROM OgrenciAidatOdeme P WHERE "
                                          "P.OdemeTarihi < ? AND P.KayitID IN (%1) GROUP BY "
                                          "year(P.OdemeTarihi), month(P.OdemeTarihi)")
                               .arg(accounts));
        q.bind(oncesi);
        if (!q.exec()) {
            return q.error(etiket);
        }
        while (q.next()) {
            paid.insert(int(q.integer(0) * 100 + q.integer(1)), q.para(2));
        }
    }
    store::Query due(db, QStringLiteral("SELECT year(D.OdemeTarihi), month(D.OdemeTarihi), "
                                        "sum(D.Odenecek) FROM OgrenciAidatDetay D WHERE "
                                        "D.OdemeTarihi < ? AND D.KayitID IN (%1) GROUP BY "
                                        "year(D.OdemeTarihi), month(D.OdemeTarihi) ORDER BY "
                                        "year(D.OdemeTarihi), month(D.OdemeTarihi)")
                             .arg(accounts));
    due.bind(oncesi);
    if (!due.exec()) {
        return due.error(etiket);
    }
    QList<AyToplami> aylar;
    while (due.next()) {
        const int yil = int(due.integer(0));
        const int ay = int(due.integer(1));
        aylar.append(AyToplami{yil, ay, due.para(2), paid.value(yil * 100 + ay)});
    }
    return aylar;
}

} // namespace fees
