#pragma once

#include "fees/account.h"
#include "fees/discounts.h"
#include "fees/installment_plan.h"

#include <QDate>
#include <QList>

// The automatic plan of an account ("Otomatik Taksitlendirme"): its discounts worked out in
// their order, the total they leave, the installments spread over it, and the whole put into
// the account. Plain values in and out; the screen shows them and the account's save writes.
namespace fees {

// A row of the screen's discount list: a standard discount, marked when it applies.
struct IskontoSecimi
{
    qint64 id = 0;
    bool isaretli = false;
    QString aciklama;
    int kalanTutardan = EsasTutardan;
    int tipi = Oran;
    Para deger;   // the percentage or the amount
    Para matrah;  // what it was worked out on; 0 for a row not marked
    Para indirim; // what it takes off
    int sira = 0;

    friend bool operator==(const IskontoSecimi &, const IskontoSecimi &) = default;
};

// Every standard discount in its order, those the account holds marked with the base, kind
// and rate they were stored with.
QList<IskontoSecimi> IskontoListesi(const QList<IskontoTanimi> &standart,
                                    const QList<IskontoSatiri> &hesabin);

// "İskontoları Yeniden Hesapla", down the list: a marked "Esas Tutardan" row works on the fee's
// amount, a "Kalan Tutardan" one on what the rows above left; a rate is the exact product
// rounded once to the money format's places before the next row; an amount is taken as it is.
// Unmarked rows are emptied. Gives the total taken off ("İskontoToplamla"); a marked rate
// outside 0–100 or a negative amount is refused, and the list is left as it was.
base::Result<Para> IskontolariYenidenHesapla(QList<IskontoSecimi> &liste, Para aidatTutari,
                                             const QString &paraFormati);

// A replan from an edited row: rows from `baslangic` (0-based) to the last are set equal to
// what the rows above leave of `toplam` − `pesinat`, divided by the count still to plan, cut to
// the rounding step. What that leaves over lands on no row; the screen shows it as "Kalan".
// A replan from the last row, or beyond, changes nothing.
base::Result<QList<Para>> TaksitleriYenidenDagit(const QList<Para> &tutarlar, int baslangic,
                                                 Para toplam, Para pesinat, Para yuvarlama,
                                                 const QString &paraFormati);

// What the plan screen hands to the account on "&Tamam".
struct OtomatikPlan
{
    QString aidatTanim;
    Para aidatTutari;
    Para pesinat;
    QList<TaksitSatiri> taksitler; // dates and amounts, in order
    QList<IskontoSecimi> iskontolar;
    QString paraFormati = QStringLiteral("#,##0.00");
};

// Puts the plan into the account: the debt after discount, the discount's total and rows
// (marked ones, with their order), the down payment, and installments Sira 1 … n, each keeping
// the way of payment of the installment that stood in its place. Refused, changing nothing,
// while "Kalan :" is not 0, when the discounts bring the total below 0 or below the down
// payment (the message names both amounts), or when an installment carries an invoice.
base::Status OtomatikTaksitUygula(HesapKaydi &hesap, const OtomatikPlan &plan);

} // namespace fees
