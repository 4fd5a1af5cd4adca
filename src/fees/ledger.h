#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace store {
class Database;
}

// The ledger: the students' fee accounts (OgrenciAidatTanim), their installments
// (OgrenciAidatDetay), their payments (OgrenciAidatOdeme) and their discounts
// (OgrenciIskonto). Every statement on these tables is here; the other subsystems ask the
// ledger. The functions run on the open working year, inside the caller's transaction when it
// has one, and give their failures under the caller's label (`etiket`).
namespace fees {

// The name of the account that stands for a fee not yet given to a student.
inline const QString YerTutucuHesapAdi = QStringLiteral("Aidat Tanımı");

// ---- a student's accounts ------------------------------------------------------------------

// An account as OgrenciAidatTanim keeps it.
struct Hesap
{
    qint64 kayitId = 0;
    qint64 aidatId = 0;
    QString aidatTanim;
    base::Para borc;
    base::Para kalan;
};

// The student's first account (by key) of a fee definition; nullopt when he has none.
base::Result<std::optional<Hesap>> OgrenciHesabi(store::Database &db, qint64 ogrKayitId,
                                                 qint64 aidatId, const QString &etiket);

// Whether an account of any student holds the fee definition.
base::Result<bool> AidatKullaniliyor(store::Database &db, qint64 aidatId, const QString &etiket);

// The student's placeholder accounts of a fee that have nothing left (Kalan at or below zero)
// are set to zero debt and zero left. Gives the number of accounts set.
base::Result<int> YerTutuculariSifirla(store::Database &db, qint64 ogrKayitId, qint64 aidatId,
                                       const QString &etiket);

// Deletes the student's accounts with their installments and payments.
base::Status OgrenciHesaplariniSil(store::Database &db, qint64 ogrKayitId, const QString &etiket);

// ---- balances --------------------------------------------------------------------------------

// What the installments of an account ask and what its payments paid.
struct HesapToplami
{
    qint64 hesapId = 0;
    QString aidatTanim;
    base::Para odenecek;
    base::Para odenen;
};

// Every account of the student, by fee name and then by key, with its sums; with a valid
// `oncesi`, of the installments and payments dated before that day only. An account with no
// rows sums to zero; a student with no account gives an empty list.
base::Result<QList<HesapToplami>> HesapToplamlari(store::Database &db, qint64 ogrKayitId,
                                                  const QDate &oncesi, const QString &etiket);

// One calendar month of the whole ledger.
struct AyToplami
{
    int yil = 0;
    int ay = 0;
    base::Para odenecek; // the installments dated in the month
    base::Para odenen;   // the payments dated in the month, whichever installment they paid
};

// The months before `oncesi` in which an installment of a student who still exists falls, in
// order, each with what its installments ask and what was paid in it. Accounts of deleted
// students are left out; so are months with payments but no installment.
base::Result<QList<AyToplami>> AyToplamlari(store::Database &db, const QDate &oncesi,
                                            const QString &etiket);

} // namespace fees
