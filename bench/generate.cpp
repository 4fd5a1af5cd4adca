#include "generate.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QStringList>

namespace bench {

using namespace store;

bool generate(Database &db, int students, int payments)
{
    Transaction tx(db);
    QSqlQuery ogr(db.sql()), tanim(db.sql()), detay(db.sql()), odeme(db.sql());
    ogr.prepare(QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi, Ogr_Soyadi, Ogr_Sinif) "
                               "VALUES (?, ?, ?, ?) RETURNING KayitID"));
    // Rows as the ledger writes them, with the markers that opening a year fills in otherwise.
    tanim.prepare(
        QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, AidatID, "
                       "AidatTanim, YTLCevrim, IskontoTutari) VALUES (?, ?, ?, ?, ?, ?, 0, 0) "
                       "RETURNING KayitID"));
    detay.prepare(
        QStringLiteral("INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, Odenecek, "
                       "PesinatTaksitID, YTLCevrim, Fatura_ID) VALUES (?, ?, ?, ?, 1, 0, 0)"));
    odeme.prepare(
        QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, Odenen, "
                       "OdemeSekli, PesinatTaksitID, YTLCevrim, Fatura_ID) "
                       "VALUES (?, ?, ?, ?, 'N', 1, 0, 0)"));
    const QStringList names
        = {QStringLiteral("Ayşe"),    QStringLiteral("Mehmet"), QStringLiteral("Çağla"),
           QStringLiteral("İbrahim"), QStringLiteral("Ömer"),   QStringLiteral("Zeynep")};
    for (int i = 0; i < students; ++i) {
        ogr.bindValue(0, 1000 + i);
        ogr.bindValue(1, names[i % names.size()]);
        ogr.bindValue(2, names[(i / 7) % names.size()] + QStringLiteral("oğlu"));
        ogr.bindValue(3, QStringLiteral("%1-%2").arg(i % 12 + 1).arg(QChar(u'A' + i % 4)));
        if (!ogr.exec() || !ogr.next())
            return false;
        const qint64 student = ogr.value(0).toLongLong();
        ogr.finish();
        for (int fee = 1; fee <= 2; ++fee) {
            tanim.bindValue(0, student);
            tanim.bindValue(1, fee);
            tanim.bindValue(2, qint64(100000000));
            tanim.bindValue(3, qint64(50000000));
            tanim.bindValue(4, fee);
            tanim.bindValue(5,
                            fee == 1 ? QStringLiteral("Öğrenim Ücreti") : QStringLiteral("Yemek"));
            if (!tanim.exec() || !tanim.next())
                return false;
            const qint64 account = tanim.value(0).toLongLong();
            tanim.finish();
            for (int k = 1; k <= 10; ++k) {
                const QVariant due = toStoredDate(
                    db.engine(), QDateTime(QDate(2025, 9, 1).addMonths(k - 1), QTime(0, 0)));
                detay.bindValue(0, account);
                detay.bindValue(1, k);
                detay.bindValue(2, due);
                detay.bindValue(3, qint64(10000000));
                if (!detay.exec())
                    return false;
                if (k <= payments) {
                    odeme.bindValue(0, account);
                    odeme.bindValue(1, k);
                    odeme.bindValue(2, due);
                    odeme.bindValue(3, qint64(10000000));
                    if (!odeme.exec())
                        return false;
                }
            }
        }
    }
    return tx.commit();
}

} // namespace bench
