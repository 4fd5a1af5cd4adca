#include "generate.h"

#include "base/turkish_text.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>

namespace bench {

using namespace store;

namespace {

struct Fee
{
    QString name;
    qint64 downPayment; // ten-thousandths
    qint64 installment;
};

// The fees in order; a shape with more fees than these repeats the last.
const Fee &feeAt(int index, bool downPayment)
{
    static const QList<Fee> s_plain
        = {{QStringLiteral("Öğrenim Ücreti"), 0, 10000000}, {QStringLiteral("Yemek"), 0, 10000000}};
    static const QList<Fee> s_withDown = {{QStringLiteral("Öğrenim Ücreti"), 36000000, 14400000},
                                          {QStringLiteral("Yemek Ücreti"), 5000000, 4000000},
                                          {QStringLiteral("Servis Ücreti"), 6000000, 3000000}};
    const QList<Fee> &fees = downPayment ? s_withDown : s_plain;
    return fees[std::min<qsizetype>(index, fees.size() - 1)];
}

} // namespace

bool generate(Database &db, const Shape &shape)
{
    const int paid = std::clamp(shape.paid, 0, shape.installments);
    Transaction tx(db);
    QSqlQuery ogr(db.sql()), tanim(db.sql()), detay(db.sql()), odeme(db.sql());
    ogr.prepare(QStringLiteral("INSERT INTO Ogrenci (Ogr_Numarasi, Ogr_Adi, Ogr_Soyadi, Ogr_Sinif) "
                               "VALUES (?, ?, ?, ?) RETURNING KayitID"));
    // Rows as the ledger writes them, with the markers that opening a year fills in otherwise.
    tanim.prepare(
        QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, AidatID, "
                       "AidatTanim, YTLCevrim, IskontoTutari, Surum) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, 0, 0) RETURNING KayitID"));
    detay.prepare(QStringLiteral(
        "INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, Odenecek, OdemeSekli, "
        "PesinatTaksitID, YTLCevrim, Fatura_ID) VALUES (?, ?, ?, ?, ?, ?, ?, 0)"));
    odeme.prepare(QStringLiteral(
        "INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, Odenen, OdemeSekli, "
        "PesinatTaksitID, YTLCevrim, Fatura_ID, Kullanici, Pesinat_Tarihi) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, 0, 'MUHASEBE', ?)"));
    const QStringList names
        = {QStringLiteral("Ayşe"),    QStringLiteral("Mehmet"), QStringLiteral("Çağla"),
           QStringLiteral("İbrahim"), QStringLiteral("Ömer"),   QStringLiteral("Zeynep")};
    const Engine engine = db.engine();
    const QVariant noDate = toStoredDate(engine, base::SifirTarih);
    // The planned down payment keeps the moment of its first writing; the one paid, its day.
    const QVariant written = toStoredDate(engine, QDateTime(QDate(2025, 8, 20), QTime(10, 15)));
    const QVariant paidOn = toStoredDate(engine, QDateTime(QDate(2025, 8, 20), QTime(0, 0)));
    QList<QVariant> due;
    for (int k = 1; k <= shape.installments; ++k)
        due.append(
            toStoredDate(engine, QDateTime(QDate(2025, 9, 1).addMonths(k - 1), QTime(0, 0))));

    const auto addDetay
        = [&](qint64 account, int sira, const QVariant &date, qint64 amount, int pesinat) {
              detay.bindValue(0, account);
              detay.bindValue(1, sira);
              detay.bindValue(2, date);
              detay.bindValue(3, amount);
              detay.bindValue(4, pesinat == 1 ? QString() : QStringLiteral("Nakit"));
              detay.bindValue(5, pesinat);
              detay.bindValue(6, shape.moneyScale);
              return detay.exec();
          };
    const auto addOdeme = [&](qint64 account, int sira, const QVariant &date, qint64 amount,
                              int pesinat, const QVariant &pesinatTarihi) {
        odeme.bindValue(0, account);
        odeme.bindValue(1, sira);
        odeme.bindValue(2, date);
        odeme.bindValue(3, amount);
        odeme.bindValue(4, pesinat == 1 ? QString() : QStringLiteral("N"));
        odeme.bindValue(5, pesinat);
        odeme.bindValue(6, shape.moneyScale);
        odeme.bindValue(7, pesinatTarihi);
        return odeme.exec();
    };

    for (int i = 0; i < shape.students; ++i) {
        ogr.bindValue(0, 1000 + i);
        ogr.bindValue(1, names[i % names.size()]);
        ogr.bindValue(2, names[(i / 7) % names.size()] + QStringLiteral("oğlu"));
        ogr.bindValue(3, QStringLiteral("%1-%2").arg(i % 12 + 1).arg(QChar(u'A' + i % 4)));
        if (!ogr.exec() || !ogr.next())
            return false;
        const qint64 student = ogr.value(0).toLongLong();
        ogr.finish();
        for (int fee = 1; fee <= shape.fees; ++fee) {
            const Fee &f = feeAt(fee - 1, shape.downPayment);
            const qint64 down = shape.downPayment ? f.downPayment : 0;
            const qint64 borc = down + f.installment * shape.installments;
            tanim.bindValue(0, student);
            tanim.bindValue(1, fee);
            tanim.bindValue(2, borc);
            tanim.bindValue(3, borc - down - f.installment * paid);
            tanim.bindValue(4, fee);
            tanim.bindValue(5, f.name);
            tanim.bindValue(6, shape.moneyScale);
            if (!tanim.exec() || !tanim.next())
                return false;
            const qint64 account = tanim.value(0).toLongLong();
            tanim.finish();
            if (shape.downPayment) {
                if (!addDetay(account, 0, written, down, 1)
                    || !addOdeme(account, 0, noDate, down, 1, paidOn)) {
                    return false;
                }
            }
            for (int k = 1; k <= shape.installments; ++k) {
                if (!addDetay(account, k, due[k - 1], f.installment, 0))
                    return false;
                if (k <= paid && !addOdeme(account, k, due[k - 1], f.installment, 0, QVariant()))
                    return false;
            }
        }
    }
    return tx.commit();
}

bool generate(Database &db, int students, int payments)
{
    Shape shape;
    shape.students = students;
    shape.paid = payments;
    return generate(db, shape);
}

} // namespace bench
