#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QList>
#include <QString>

namespace store {
class Database;
}

// The school's standard discounts (table IskontoTanim): a list kept in the order in which a
// student's discounts are computed.
namespace fees {

using base::Para;

// The base of a discount: the fee's full amount, or what the discounts before it left.
enum IskontoEsasi : int { EsasTutardan = 0, KalanTutardan = 1 };
// The kind of a discount: a percentage or a fixed amount.
enum IskontoTipi : int { Oran = 0, Tutar = 1 };

struct IskontoTanimi
{
    qint64 id = 0; // 0 until the row is written
    QString aciklama;
    Para deger; // the percentage or the amount, as `tipi` says
    int kalanTutardan = EsasTutardan;
    int tipi = Oran;
    int sira = 0;
};

// The list, always read by IskontoSirasi.
base::Result<QList<IskontoTanimi>> IskontoTanimlariOku(store::Database &db);

// Writes every row of the list in one transaction, each with IskontoSirasi = its place in the
// list (from 1); new rows learn their ID. A new row left without a name is not written. Without
// the write right nothing is written and the refusal comes back.
base::Status IskontoTanimlariKaydet(store::Database &db, QList<IskontoTanimi> &liste);

// Deletes one row; without the write right, the refusal.
base::Status IskontoTanimiSil(store::Database &db, qint64 id);

// The general rate that a fee definition knows of: IskontoOrani of the first row in table order
// (the lowest ID), 0 when the table is empty. A first row of the kind "Tutar" holds an amount,
// not a rate, and gives no general rate.
base::Result<Para> GenelIskontoOrani(store::Database &db);

} // namespace fees
