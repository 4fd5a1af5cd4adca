#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace store {
class Database;
}

namespace maintenance {

// One row of Sabit: the school and the options of a school year.
struct OkulBilgisi
{
    bool kayitVar = false;       // a row was read
    QString yuklenenOgretimYili; // the school year of the row as read: the row's identity

    QString OkulAdi;
    QString OkulIlAdi;
    QString OkulIlceAdi;
    QString Telefon;
    QString Banka;
    qint64 SonSenetNo = 0;
    qint64 SonFaturaNo = 0;
    qint64 SonFisNo = 0;
    QString OgretimYili;
    QString BaslangicAy;
    QString CariAy;
    base::Para TaksitYuvarlama = base::Para::fromUnits(1);
    QDateTime DonemBasTarihi;
    QDateTime DonemBitTarihi;
    int ParaTuru = 1;
    QString ParaBirimi = QStringLiteral("YTL");
    QString OgrAOtoDeg = QStringLiteral("0");
    int TaksitKilitle = 0;
    QString FisNoKilitle = QStringLiteral("0");
    QString TaksitFatura = QStringLiteral("0");
    QString OgrKayitSilinenRapordaGoster = QStringLiteral("0");
    QString ResmiListeBaslik;
    base::Para EgitimDestekTutari;
    int EgitimDestekAy[4] = {12, 2, 6, 0};
    base::Para EgitimDestekTaksit[4];
    QString MersisNo;
    QString TicaretSicilNo;
    QString VergiSicilNo;
    QString VergiDairesiAdi;
    QString Adres;
};

// The row in force: the one with the greatest school year.
base::Result<OkulBilgisi> OkulbilgisiGetir(store::Database &db);
struct OfisAyarlari;
// Writes the row that was read (or a new one), and with them the office switches when given:
// one transaction, all or nothing.
base::Status OkulbilgisiKaydet(store::Database &db, const OkulBilgisi &okul,
                               const OfisAyarlari *ofis = nullptr);
base::Status OkulbilgisiSil(store::Database &db);
// A new school's row: this school year, the working month, the period from September to June.
// When the working year's name reads as a school year ("2025-2026"), the new row is of that
// school year, its working month today's month within it.
OkulBilgisi YeniOkulBilgisi(const QDate &bugun, const QString &calismaAdi = QString());
// The first year of a school year written "2025-2026"; nullopt for any other text.
std::optional<int> OkulYiliBasi(const QString &metin);

// Copies the row in force into the working state; true when a row was read. The currency is
// YTL with two decimals afterwards, whatever the row says.
bool SabitBilgileriOku(store::Database &db);

// Stores the working month in the row in force.
base::Status CariAyKaydet(store::Database &db, const QString &cariAy);

// The office switches that used to be marker files beside the program: the fee screen locked
// ("okkilit.txt"), the voucher number locked ("fiskilit.txt"), and the cash-box hand-over of
// payments ("okbilg.txt": on, the code to post to, ask before each).
struct OfisAyarlari
{
    bool okKilit = false;
    bool fisKilit = false;
    bool kasaAyarVar = false; // "okbilg.txt" existed
    int kasaAktar = 0;
    QString kasaKod = QStringLiteral("100");
    int kasaSor = 0;
};
OfisAyarlari OfisAyarlariOku(store::Database &db);
base::Status OfisAyarlariYaz(store::Database &db, const OfisAyarlari &ayar);

} // namespace maintenance
