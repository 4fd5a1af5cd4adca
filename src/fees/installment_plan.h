#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

// The arithmetic of a fee definition's plan: the installments made from a total, a down
// payment and a count, the totals shown under the plan, and the total made from a unit price.
// Plain values in and out; the screen reads its boxes and the store, and shows what comes back.
namespace fees {

using base::Para;

// One row of a plan: its due date and its amount.
struct TaksitSatiri
{
    QDate odemeTarihi;
    Para tutar;

    friend bool operator==(const TaksitSatiri &, const TaksitSatiri &) = default;
};

struct PlanGirdisi
{
    Para toplam;  // the total box, VAT included
    Para pesinat; // the down payment
    int taksitSayisi = 0;
    QDate baslangic; // the first due date
    Para genelOran;  // the general discount rate in percent (GenelIskontoOrani)
    Para yuvarlama;  // TaksitYuvarlama: installments are cut to its multiples when above 0
    QString paraFormati = QStringLiteral("#,##0.00");
};

enum class PlanDurumu {
    Planlandi,     // the rows are in `taksitler`
    TarihGecersiz, // no start date: nothing is planned
    TaksitYok,     // fewer than one installment: the list is left as it is
};

struct PlanSonucu
{
    PlanDurumu durum = PlanDurumu::TaksitYok;
    QList<TaksitSatiri> taksitler;
    Para kalan;  // the amount to spread, as the money format shows it
    Para taksit; // every installment but the first
    Para artan;  // what the first installment carries on top of `taksit`
};

// The installments of a definition:
//   Kalan  = Toplam - genelOran x Toplam / 100 - Pesinat, exact (never rounded on its way);
//   Taksit = Kalan / n, rounded once to the money format's places, half away from zero;
//   with a rounding step y > 0 every installment is cut down to a multiple of y (down also for
//   a negative amount) and all that was cut, Kalan - Taksit x n, goes to the first one;
//   with y <= 0 the first one takes Toplam - Taksit x n - Pesinat: the general rate is left
//   out of that line, so in a school without rounding the plan sums to Toplam - Pesinat.
// Due dates run from the start by whole months, each counted from the start (31 January,
// 29 February, 31 March...).
// A figure beyond the range of money (a total typed far too large) is the error TutarTasmasi,
// never a plan of cut amounts.
base::Result<PlanSonucu> TaksitPlanla(const PlanGirdisi &girdi);

// The totals under the plan. With a general rate above 0 the fourth box is labelled
// "İskonto" and shows Toplam - Pesinat - the plan's sum, and the second box the discounted
// total; otherwise "Kalan" with the rate's share taken off the remainder, and the plain total.
struct TaksitOzeti
{
    QString etiket;     // "İskonto" or "Kalan"
    Para kalan;         // the fourth box
    Para ikinciKutu;    // the second box
    Para taksitToplami; // the sum of the plan's amounts
};
// Totals beyond the range are the error TutarTasmasi, as in the plan.
base::Result<TaksitOzeti> TaksitTutarHesapla(Para toplam, Para pesinat, const QList<Para> &tutarlar,
                                             Para genelOran, const QString &paraFormati);

// The total of a fee with units, entered in the money box: price x count, exact.
base::Result<Para> BirimFiyatToplami(Para birimFiyat, qint64 adet);
// The total entered through the decimal cell: price x count, written as text ("12,12"), then
// its whole part, raised by one when the digits behind the comma, read as a number, are 5 or
// more: 12,12 gives 13, 12,04 gives 12, 12,5 gives 13. The office has always seen totals made
// this way, so they stay.
base::Result<Para> OndalikToplam(Para birimFiyat, qint64 adet);

} // namespace fees
