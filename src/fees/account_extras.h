#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

namespace store {
class Database;
}

// What the account screen shows beside the ledger: the invoices cut on an account, and the
// student's scholarships, which are notes only and take part in no sum.
namespace fees {

using base::Para;

struct FaturaSatiri
{
    QDate faturaTarihi;
    Para faturaTutar;
    qint64 faturaNo = 0;
    QDate kesildigiOdeme; // the date of the row the invoice was cut on; invalid for none
};

// The account's invoices by number. In the invoice mode an invoice is cut on an installment,
// otherwise on a payment: the date shown is that row's.
base::Result<QList<FaturaSatiri>> FaturaListesi(store::Database &db, qint64 ogrKayitId,
                                                qint64 kayitId, bool taksitFatura);

// The banks the school works with, by name, for the cheque details.
base::Result<QStringList> BankaAdlari(store::Database &db);

// The five kinds of scholarship, in the order the tab lists them.
const QStringList &BursTurleri();

struct BursSatiri
{
    QString bursAdi;
    QString miktar; // kept as text, as it always was
    Para oran;
    QString aciklama;

    friend bool operator==(const BursSatiri &, const BursSatiri &) = default;
};

// The five rows of the student's scholarships, empty where none is kept.
base::Result<QList<BursSatiri>> BursDokumuAl(store::Database &db, qint64 ogrKayitId);
// Writes the rows that carry anything, each kind once; a row with nothing typed is not written.
base::Status BursDokumuKaydet(store::Database &db, qint64 ogrKayitId, qint64 ogrenciNo,
                              const QString &adSoyad, const QList<BursSatiri> &satirlar);
base::Status BursSil(store::Database &db, qint64 ogrKayitId);

} // namespace fees
