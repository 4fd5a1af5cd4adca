#pragma once

#include "base/para.h"
#include "base/result.h"
#include "fees/installment_plan.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace store {
class Database;
}

// Fee definitions (AidatTanim with its installment rows in AidatDetay): the templates that are
// copied into a student's account when a fee is assigned. Nothing flows back: a change of a
// definition touches no account.
namespace fees {

// The kinds of fee, in the order whose position AidatTuru keeps.
const QStringList &AidatTurleri();

// One line of the lists of definitions.
struct AidatListeSatiri
{
    qint64 kayitId = 0;
    QString aidatTanim;
    Para toplam;
    qint64 birimAdeti = 0;
    Para birimFiyati;
};

// A whole definition as the screen holds it.
struct AidatTanimi
{
    qint64 kayitId = 0; // 0: not written yet
    QString aidatTanim;
    int aidatTuru = 0;
    Para toplam;
    Para pesinat;
    Para birimFiyati;
    qint64 birimAdeti = 0;
    Para kdvOrani;
    int taksitSayisi = 0;
    QDate odemeBasTarihi; // invalid: no date (stored as the zero date)
    int ytlCevrim = 1;
    QList<TaksitSatiri> taksitler; // invalid dates are stored as the zero date
};

// Every definition, in the order of their keys ("AidatTaksitGoster", "AidatYukle").
base::Result<QList<AidatListeSatiri>> AidatTaksitGoster(store::Database &db,
                                                        const QString &etiket = QString());
// One definition with its rows by Sira; nullopt when it is no longer there.
base::Result<std::optional<AidatTanimi>> AidatTaksitDetayGoster(store::Database &db,
                                                                qint64 kayitId);

struct KayitSonucu
{
    qint64 kayitId = 0;
};
// Writes the definition (a new row when its key is 0 or no longer stands) and replaces its
// installment rows by the given ones, Sira from 1 in list order, all in one transaction.
// No check ties the rows' sum to the total.
base::Result<KayitSonucu> AidatTaksitDetayKaydet(store::Database &db, const AidatTanimi &tanim);

// Deletes a definition with its rows, unless a student's account holds it; then nothing is
// deleted and the refusal reads "{name} Aidat/Taksit tanımlaması kullanıldığı için silinemedi!".
base::Status TaksitAidatSil(store::Database &db, qint64 kayitId, const QString &aidatTanim);

} // namespace fees
