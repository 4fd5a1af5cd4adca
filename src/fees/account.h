#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace store {
class Database;
}

// A student's fee account as the account screen holds it: the header line, the planned and the
// paid down payment, and three row lists (installments, payments, discounts). It is read whole,
// changed as a value, and written back whole in one transaction. A row keeps its `sira` as its
// identity through every rewrite; rows read from the store go back exactly as they were read.
namespace fees {

using base::Para;

// An installment: a row of OgrenciAidatDetay with Sira above 0.
struct DetaySatiri
{
    int sira = 0;
    QDateTime odemeTarihi; // invalid: no date in the store, or none typed
    Para odenecek;
    QString odemeSekli; // the planned way of payment as its word: "Nakit", "Kredi Kartı", ...
    qint64 faturaNo = 0;
    int ytlCevrim = 0;
    bool elle = false; // entered or changed on screen since it was read

    friend bool operator==(const DetaySatiri &, const DetaySatiri &) = default;
};

// A payment: a row of OgrenciAidatOdeme with Sira above 0.
struct OdemeSatiri
{
    int sira = 0;
    QDateTime odemeTarihi;
    Para odenen;
    QString odemeSekli; // the one-letter code: "N", "K", "C", ...; "" for none
    QString aciklama;
    qint64 fisNo = 0;
    qint64 faturaNo = 0;
    QString bankaAdi;
    QDateTime vadeTarihi; // Tahsilat_Vade_Tarihi; invalid for none
    QString sube;
    QString ciro;
    QString kullanici;
    int ytlCevrim = 0;
    QDateTime pesinatTarihi; // kept as it was read; only the down payment's row uses it
    bool elle = false;

    friend bool operator==(const OdemeSatiri &, const OdemeSatiri &) = default;
};

// A discount given on the account: a row of OgrenciIskonto.
struct IskontoSatiri
{
    qint64 iskontoId = 0;
    QString iskontoAdi;
    Para iskontoOrani; // the rate or the amount as typed, exact
    Para iskontoMiktari;
    Para iskontoMatrahi;
    int iskontoTipi = 0;
    int iskontoKalanTutardan = 0;
    int iskontoSirasi = 0;

    friend bool operator==(const IskontoSatiri &, const IskontoSatiri &) = default;
};

// A line of the student's account list: the header of OgrenciAidatTanim.
struct HesapSatiri
{
    qint64 kayitId = 0; // 0 until the first save
    qint64 ogrKayitId = 0;
    qint64 aidatId = 0;
    QString aidatTanim;
    int sira = 0;
    Para borc;
    Para kalan;
    Para iskontoTutari;
    int ytlCevrim = 0;
    qint64 surum = 0; // raised by every write of the account; a save checks it is still its own

    Para odenen() const { return borc - kalan; }

    friend bool operator==(const HesapSatiri &, const HesapSatiri &) = default;
};

// The down payment paid: the payment row with Sira 0.
struct OdenenPesinat
{
    Para tutar;
    QDate tarih; // Pesinat_Tarihi; invalid when none was typed
    int ytlCevrim = 0;

    friend bool operator==(const OdenenPesinat &, const OdenenPesinat &) = default;
};

struct HesapKaydi
{
    HesapSatiri satir;
    Para pesinat;                 // the planned down payment: the installment row with Sira 0
    QDateTime pesinatKayitTarihi; // that row's moment of first writing; invalid until then
    std::optional<OdenenPesinat> odenenPesinat;
    QList<DetaySatiri> taksitler; // in the screen's order: by due date, then Sira
    QList<OdemeSatiri> odemeler;
    QList<IskontoSatiri> iskontolar;    // by IskontoSirasi, then IskontoID
    QList<OdemeSatiri> silinenOdemeler; // removed on screen since the last save: the log hears

    friend bool operator==(const HesapKaydi &, const HesapKaydi &) = default;
};

// The Sira a row added on screen takes: one above the highest of its list.
int YeniSira(const QList<DetaySatiri> &taksitler);
int YeniSira(const QList<OdemeSatiri> &odemeler);

// Whether a save writes the row: a row read from the store always, as it was read; a row entered
// or changed on screen only with a calendar date (and a payment only with an amount above 0).
bool Yazilir(const DetaySatiri &taksit);
bool Yazilir(const OdemeSatiri &odeme);

// ---- reading ---------------------------------------------------------------------------------

// The student's accounts in their order (Sira, then key).
base::Result<QList<HesapSatiri>> OgrenciAidatTanimGoster(store::Database &db, qint64 ogrKayitId);

// One account whole. `taksitFatura`: the invoice mode orders the payments by Sira alone.
base::Result<HesapKaydi> HesapOku(store::Database &db, qint64 kayitId, bool taksitFatura);

// ---- totals ----------------------------------------------------------------------------------

struct Toplamlar
{
    Para borc;   // the installments the save writes, and the planned down payment
    Para odenen; // the payments the save writes, and the down payment paid
    Para kalan() const { return borc - odenen; }
};

// The totals of an account, counted over exactly the rows a save writes.
Toplamlar ToplamlariYenile(const HesapKaydi &hesap);

// ---- the month's position ----------------------------------------------------------------------

// One account's split at the first day of a month.
struct HesapCariDurumu
{
    qint64 kayitId = 0;
    QString aidatTanim;
    std::optional<Para> toplam;     // arrears: installments due before the month less payments
                                    // dated before it; none when no installment falls before
    std::optional<Para> cariToplam; // this month's installments less this month's payments
                                    // that meet an installment of equal Sira; none when no
                                    // installment falls in the month
};

struct CariDurum
{
    QList<HesapCariDurumu> hesaplar;
    Para buAykiBorc;      // the months' debts summed, an overpaid account lowering it
    Para oncekiAylarBorc; // the arrears above zero summed
    QString metin;        // " {fee} : {amount} TL." for each account that owes
    Para toplam() const { return buAykiBorc + oncekiAylarBorc; }
};

// The student's position at the month that begins on `ilkGun`, in one statement. Down payments
// take no part on either side. Amounts in the text follow `paraFormati`.
base::Result<CariDurum> CariDurumHesapla(store::Database &db, qint64 ogrKayitId,
                                         const QDate &ilkGun, const QString &paraFormati);

// ---- writing ---------------------------------------------------------------------------------

struct KayitBaglami
{
    QString kullanici;         // who saves, for the change log
    int paraTuru = 1;          // the money scale stamped on every row written (YTLCevrim)
    bool taksitFatura = false; // installments carry their invoice numbers
};

// What a save says besides its refusals: notes for the operator that did not stop it.
struct HesapKayitSonucu
{
    QStringList uyarilar;
};

// Writes the account: the header (its Borc and Kalan from ToplamlariYenile), all installment
// rows, all payment rows and the discount rows, with their change-log rows, in one transaction.
// Refused, with nothing written, when another workstation changed the account since it was
// read. On success the account learns its key, its new version and the totals written.
base::Result<HesapKayitSonucu> HesapKaydet(store::Database &db, HesapKaydi &hesap,
                                           const KayitBaglami &baglam);

// Deletes the account with its installments, payments, invoices and discounts, and logs it.
base::Status AidatSil(store::Database &db, const HesapSatiri &satir, const QString &kullanici);

} // namespace fees
