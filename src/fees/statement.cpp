#include "fees/statement.h"

#include "base/para.h"
#include "base/turkish_text.h"
#include "store/database.h"

#include <algorithm>

namespace fees {

using base::Para;

namespace {

const QString Label = QStringLiteral("FrmOgrenciAidat:CariDurumListesiDoldur");
const QString Money = QStringLiteral("###,##0.00");

enum Column {
    OgrAdi,
    OgrSoyadi,
    OgrSinifi,
    OgrNo,
    VeliAdSoyadi,
    VeliEvAdresi,
    VeliEvTelefonu,
    VeliIsAdresi,
    VeliIsTelefonu,
    PesinatTutari,
    OdenenPesinat,
    IndirimSiraNo,
    IndirimAciklama,
    IndirimOran,
    IndirimTutari,
    IndirimToplam,
    OdenecekSiraNo,
    OdenecekTarih,
    OdenecekTutar,
    OdenecekToplam,
    OdenenSiraNo,
    OdenenTarih,
    OdenenTutar,
    OdenenAciklama,
    OdenenToplam,
    GenelBorc,
    GenelOdenen,
    GenelKalan,
    CariDurumAciklama,
    AidatTanim,
    AidatKalan,
    OgrenciId,
    AidatId,
    ColumnCount
};

struct Line
{
    QString no;
    QString a;
    QString b;
    QString c;
};

QString money(Para p)
{
    return base::Bicimle(p, Money);
}

// The rows of one list of an account, by the statement's selections.
base::Result<QList<Line>> lines(store::Database &db, const QString &sql, qint64 account, Para *sum)
{
    store::Query q(db, sql);
    q.bind(account);
    if (!q.exec()) {
        return q.error(Label);
    }
    QList<Line> out;
    while (q.next()) {
        Line l;
        l.no = QString::number(out.size() + 1);
        const QDateTime tarih = q.dateTime(0);
        l.a = tarih.isValid() ? base::TarihYaz(tarih) : QString();
        l.b = money(q.para(1));
        l.c = q.text(2);
        *sum = *sum + q.para(1);
        out.append(l);
    }
    return out;
}

// The one amount of an account's row with Sira 0 in a table.
base::Result<Para> downPayment(store::Database &db, const QString &table, const QString &field,
                               qint64 account)
{
    store::Query q(db, QStringLiteral("SELECT %1 FROM %2 WHERE KayitID = ? AND PesinatTaksitID = 1 "
                                      "AND Sira = 0")
                           .arg(field, table));
    q.bind(account);
    if (!q.exec()) {
        return q.error(Label);
    }
    return q.next() ? q.para(0) : Para();
}

} // namespace

const QStringList &CariDurumSutunlari()
{
    static const QStringList s = {
        QStringLiteral("1.OgrAdi"),
        QStringLiteral("2.OgrSoyadi"),
        QStringLiteral("3.OgrSinifi"),
        QStringLiteral("4.OgrNo"),
        QStringLiteral("5.VeliAdSoyadi"),
        QStringLiteral("6.VeliEvAdresi"),
        QStringLiteral("7.VeliEvTelefonu"),
        QStringLiteral("8.VeliIsAdresi"),
        QStringLiteral("9.VeliIsTelefonu"),
        QStringLiteral("10.AidatOdenecekPesinatTutari"),
        QStringLiteral("11.AidatOdenenPesinatTutari"),
        QStringLiteral("12.IndirimSiraNo"),
        QStringLiteral("13.IndirimAciklama"),
        QStringLiteral("14.IndirimOran"),
        QStringLiteral("15.IndirimTutari"),
        QStringLiteral("16.IndirimToplamTutar"),
        QStringLiteral("17.OdenecekSiraNo"),
        QStringLiteral("18.OdenecekTarih"),
        QStringLiteral("19.OdenecekTutar"),
        QStringLiteral("20.OdenecekToplamTutar"),
        QStringLiteral("21.OdenenSiraNo"),
        QStringLiteral("22.OdenenTarih"),
        QStringLiteral("23.OdenenTutar"),
        QStringLiteral("24.OdenenAciklama"),
        QStringLiteral("25.OdenenToplamTutar"),
        QStringLiteral("26.GenelToplamBorc"),
        QStringLiteral("27.GenelToplamOdenen"),
        QStringLiteral("28.GenelKalanTutar"),
        QStringLiteral("29.CariDurumAciklama"),
        QStringLiteral("30.Aidat Tanım Açıklama"),
        QStringLiteral("31.Aidat İçin Kalan Borç"),
        QStringLiteral("ÖğrenciId"),
        QStringLiteral("AidatId"),
    };
    return s;
}

base::Result<QList<QStringList>> CariDurumListesiDoldur(store::Database &db,
                                                        const OgrenciOzeti &ogr)
{
    store::Query accounts(db, QStringLiteral("SELECT KayitID, AidatTanim FROM OgrenciAidatTanim "
                                             "WHERE OgrKayitID = ? ORDER BY Sira, KayitID"));
    accounts.bind(ogr.kayitId);
    if (!accounts.exec()) {
        return accounts.error(Label);
    }
    QList<std::pair<qint64, QString>> hesaplar;
    while (accounts.next()) {
        hesaplar.append({accounts.integer(0), accounts.text(1)});
    }
    accounts.finish();

    QList<QStringList> rows;
    Para genelBorc;
    Para genelOdenen;
    for (const auto &[hesap, tanim] : hesaplar) {
        Para indirimToplam;
        Para odenecekToplam;
        Para odenenToplam;
        base::Result<QList<Line>> indirimler = [&]() -> base::Result<QList<Line>> {
            store::Query q(db, QStringLiteral("SELECT IskontoAdi, IskontoMiktari, IskontoOrani "
                                              "FROM OgrenciIskonto WHERE KayitID = ? "
                                              "ORDER BY IskontoID"));
            q.bind(hesap);
            if (!q.exec()) {
                return q.error(Label);
            }
            QList<Line> out;
            while (q.next()) {
                const base::Result<Para> oran = q.decimal(2);
                out.append(
                    Line{QString::number(out.size() + 1), q.text(0), money(q.para(1)),
                         oran ? base::Bicimle(*oran, QStringLiteral("#,##0.##")) : QString()});
                indirimToplam = indirimToplam + q.para(1);
            }
            return out;
        }();
        if (!indirimler) {
            return indirimler.error();
        }
        const base::Result<Para> pesinat = downPayment(db, QStringLiteral("OgrenciAidatDetay"),
                                                       QStringLiteral("Odenecek"), hesap);
        const base::Result<Para> odenenPesinat
            = downPayment(db, QStringLiteral("OgrenciAidatOdeme"), QStringLiteral("Odenen"), hesap);
        if (!pesinat || !odenenPesinat) {
            return !pesinat ? pesinat.error() : odenenPesinat.error();
        }
        const base::Result<QList<Line>> taksitler
            = lines(db,
                    QStringLiteral("SELECT OdemeTarihi, Odenecek, '' FROM OgrenciAidatDetay "
                                   "WHERE KayitID = ? AND PesinatTaksitID = 0 AND Sira > 0 "
                                   "ORDER BY OdemeTarihi, Sira"),
                    hesap, &odenecekToplam);
        const base::Result<QList<Line>> odemeler
            = lines(db,
                    QStringLiteral("SELECT OdemeTarihi, Odenen, Ogr_Cari_Durum_Aciklamasi "
                                   "FROM OgrenciAidatOdeme WHERE KayitID = ? AND "
                                   "PesinatTaksitID = 0 AND Sira > 0 ORDER BY OdemeTarihi, Sira"),
                    hesap, &odenenToplam);
        if (!taksitler || !odemeler) {
            return !taksitler ? taksitler.error() : odemeler.error();
        }
        odenecekToplam = odenecekToplam + *pesinat;
        odenenToplam = odenenToplam + *odenenPesinat;
        genelBorc = genelBorc + odenecekToplam;
        genelOdenen = genelOdenen + odenenToplam;

        qsizetype count = std::max({indirimler->size(), taksitler->size(), odemeler->size()});
        // An account with only a down payment still has its row.
        if (count == 0 && (*pesinat > Para() || *odenenPesinat > Para())) {
            count = 1;
        }
        const Para kalan = odenecekToplam - odenenToplam;
        for (qsizetype i = 0; i < count; ++i) {
            QStringList r(ColumnCount);
            r[PesinatTutari] = *pesinat > Para() ? money(*pesinat) : QString();
            r[OdenenPesinat] = *odenenPesinat > Para() ? money(*odenenPesinat) : QString();
            if (i < indirimler->size()) {
                const Line &l = indirimler->at(i);
                r[IndirimSiraNo] = l.no;
                r[IndirimAciklama] = l.a;
                r[IndirimOran] = l.c;
                r[IndirimTutari] = l.b;
            }
            if (i < taksitler->size()) {
                const Line &l = taksitler->at(i);
                r[OdenecekSiraNo] = l.no;
                r[OdenecekTarih] = l.a;
                r[OdenecekTutar] = l.b;
            }
            if (i < odemeler->size()) {
                const Line &l = odemeler->at(i);
                r[OdenenSiraNo] = l.no;
                r[OdenenTarih] = l.a;
                r[OdenenTutar] = l.b;
                r[OdenenAciklama] = l.c;
            }
            r[IndirimToplam] = indirimToplam > Para() ? money(indirimToplam) : QString();
            r[OdenecekToplam] = odenecekToplam > Para() ? money(odenecekToplam) : QString();
            r[OdenenToplam] = odenenToplam > Para() ? money(odenenToplam) : QStringLiteral("-");
            r[AidatTanim] = tanim;
            r[AidatKalan] = kalan > Para() ? money(kalan) : QStringLiteral("-");
            r[AidatId] = QString::number(hesap);
            rows.append(r);
        }
    }
    if (rows.isEmpty()) {
        return base::Error::refusal(QStringLiteral("Açıklama"),
                                    QStringLiteral("Öğrenci İçin Aidat ve Ödeme Bilgileri "
                                                   "Bulunamadı."),
                                    base::Icon::Information);
    }
    // The student's own columns and sums, once he has been read whole.
    for (QStringList &r : rows) {
        r[OgrAdi] = ogr.adi;
        r[OgrSoyadi] = ogr.soyadi;
        r[OgrSinifi] = ogr.sinif;
        r[OgrNo] = QString::number(ogr.numara);
        r[VeliAdSoyadi] = ogr.veliAdSoyad;
        r[VeliEvAdresi] = ogr.veliEvAdresi;
        r[VeliEvTelefonu] = ogr.veliEvTelefonu;
        r[VeliIsAdresi] = ogr.veliIsAdresi;
        r[VeliIsTelefonu] = ogr.veliIsTelefonu;
        r[GenelBorc] = money(genelBorc);
        r[GenelOdenen] = money(genelOdenen);
        r[GenelKalan] = money(genelBorc - genelOdenen);
        r[CariDurumAciklama] = ogr.cariDurumAciklama;
        r[OgrenciId] = QString::number(ogr.kayitId);
    }
    return rows;
}

} // namespace fees
