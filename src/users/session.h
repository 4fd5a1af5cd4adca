#pragma once

#include "base/para.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace users {

// A way of payment: its one-letter code and its name.
struct OdemeSekli
{
    QString kod;
    QString ad;
};

// The working state that every screen reads: the school's settings of the open year, who is
// logged in, and the rights of the command in use.
struct CalismaDurumu
{
    QString UygulamaYolu;
    int AktifCalismaID = 0;
    QString AktifCalismaAdi;
    QString AktifKullanici;
    // The logged-in user's name as table Sifre keeps it (scrambled); rights are looked up by it.
    QString AktifKullaniciKodu;
    QString OgretimYili;
    QString OkulAdi;
    QString OkulIlAdi;
    QString OkulIlceAdi;
    QString ResmiListeBaslik;
    QString Banka;
    qint64 SonFaturaNo = 0;
    qint64 SonSenetNo = 0;
    qint64 SonFisNo = 0;
    QString CariAy; // yyyyMM
    QString BaslangicAy;
    base::Para TaksitYuvarlama = base::Para::fromUnits(1000000);
    QDateTime DonemBasTarihi;
    QDateTime DonemBitTarihi;
    int ParaTuru = 1;
    QString ParaBirimi = QStringLiteral("YTL");
    QString ParaFormati = QStringLiteral("#,##0.00");
    QString OgrAOtoDeg = QStringLiteral("0");
    QString TaksitFatura = QStringLiteral("0");
    bool TaksitKilitle = false;
    bool FisNoKilitle = false;
    bool HakOkuma = true;
    bool HakYazma = true;
    QList<OdemeSekli> OdemeSekilleri;
};

CalismaDurumu &durum();

// The ways of payment in index order; the first is the empty entry.
const QList<OdemeSekli> &OdemeSekilleriTablosu();
// The name of a way of payment; "" when the code is unknown.
QString OdemeSekliAdi(const QString &kod);

} // namespace users
