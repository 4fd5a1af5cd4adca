#pragma once

#include "base/notice.h"
#include "fees/account.h"

#include <QHash>

#include <optional>

// What the account screen does to an account before it is saved: a payment made from an
// installment, a fee given or replaced, and the laying of what was paid over the installments.
// Plain values in and out; nothing here reads or writes the store.
namespace fees {

struct AidatTanimi;

// The payment code for an installment's planned way of payment, by meaning: "Kredi Kartı" is
// "K", "Banka Havalesi" "B", "Kredi Kart Taksit" "T"; the other words as the payment kinds name
// them ("Nakit" "N", "Çek" "C", "Senet" "S", "Diğer" "D", "Bloke" "L"); "" for none.
QString OdemeSekliKodu(const QString &taksitOdemeSekli);

// The question "Taksidi Öde" asks when a payment of the installment's date is already on the
// account; none when there is none.
std::optional<base::Soru> TaksidiOdeSorusu(const HesapKaydi &hesap, int taksit);

// "Taksidi Öde": the installment at position `taksit` becomes a payment dated as it, of its
// amount and way of payment, under its Sira, so that the two meet in the month's column. Gives
// the new payment's position; refused when the installment has no calendar date.
base::Result<int> TaksidiOde(HesapKaydi &hesap, int taksit);

// Gives the account the fee definition's plan: its name, key, down payment and installments
// (Sira 1 … n). Payments stay; the account's discount goes, rows and total, since it was
// worked out on the fee being replaced. Refused, changing nothing, when an installment carries
// an invoice.
base::Status AidatEkle(HesapKaydi &hesap, const AidatTanimi &tanim);

// The invoice mode: payments meet the invoiced installments in step. A cursor goes over the
// installments; for each payment that is written it moves to the next installment whose invoice
// holds money (`faturaOdenen`: what each invoice number's invoices hold), and the payment takes
// that invoice's number, filling it; a filled invoice moves the cursor on past the installments
// of the same number. A payment larger than its invoice, or than an uninvoiced installment, is
// still written (once), with a note for the operator. Gives each payment's invoice number, in
// the order of `hesap.odemeler`, and the notes.
struct FaturaDagilimi
{
    QList<qint64> faturaNo;
    QStringList uyarilar;
};
FaturaDagilimi FaturaEslestir(const HesapKaydi &hesap, const QHash<qint64, Para> &faturaOdenen);

// A fee chosen with another count or unit price: the definition's plan made anew over
// `toplam` (count × price), from its down payment, count and start date, as the automatic plan
// makes it. The definition itself is not changed. Refused when the definition has no start
// date or no count to plan by.
base::Result<AidatTanimi> AdetliTanim(const AidatTanimi &tanim, Para toplam, Para yuvarlama,
                                      const QString &paraFormati);

// First in, first out: `odenen` laid over the amounts in their order. Gives, for each amount,
// what is left unpaid of it (0 for one fully covered); an overpayment covers them all.
QList<Para> OdenmemisKisimlar(const QList<Para> &tutarlar, Para odenen);

} // namespace fees
