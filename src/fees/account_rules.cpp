#include "fees/account_rules.h"

#include "base/turkish_text.h"
#include "fees/definitions.h"
#include "users/session.h"

namespace fees {

QString OdemeSekliKodu(const QString &taksitOdemeSekli)
{
    const QString kelime = taksitOdemeSekli.trimmed();
    if (kelime.isEmpty()) {
        return QString();
    }
    // The installment list names three ways otherwise than the payment kinds do.
    static const QList<std::pair<QString, QString>> farkli = {
        {QStringLiteral("Kredi Kartı"), QStringLiteral("K")},
        {QStringLiteral("Banka Havalesi"), QStringLiteral("B")},
        {QStringLiteral("Kredi Kart Taksit"), QStringLiteral("T")},
    };
    for (const auto &[ad, kod] : farkli) {
        if (kelime == ad) {
            return kod;
        }
    }
    for (const users::OdemeSekli &s : users::OdemeSekilleriTablosu()) {
        if (!s.kod.isEmpty() && s.ad == kelime) {
            return s.kod;
        }
    }
    return QString();
}

std::optional<base::Soru> TaksidiOdeSorusu(const HesapKaydi &hesap, int taksit)
{
    if (taksit < 0 || taksit >= hesap.taksitler.size()) {
        return std::nullopt;
    }
    const QDate tarih = hesap.taksitler.at(taksit).odemeTarihi.date();
    for (const OdemeSatiri &o : hesap.odemeler) {
        if (o.odemeTarihi.isValid() && o.odemeTarihi.date() == tarih) {
            return base::Soru{QStringLiteral("Dikkat"),
                              base::TarihYaz(tarih)
                                  + QStringLiteral(" tarihinde yapılmış ödeme bulundu. \n"
                                                   "İşleme devam etmek istediğinizden emin "
                                                   "misiniz?")};
        }
    }
    return std::nullopt;
}

base::Result<int> TaksidiOde(HesapKaydi &hesap, int taksit)
{
    if (taksit < 0 || taksit >= hesap.taksitler.size()) {
        return base::Error::refusal(QStringLiteral("Dikkat"),
                                    QStringLiteral("Ödenecek taksidi listeden seçiniz."),
                                    base::Icon::Warning);
    }
    const DetaySatiri &t = hesap.taksitler.at(taksit);
    if (!t.odemeTarihi.isValid() || base::SifirTarihMi(t.odemeTarihi)) {
        return base::Error::refusal(QStringLiteral("Dikkat"),
                                    QStringLiteral("Seçilen taksidin ödeme tarihi yok; önce "
                                                   "tarihini giriniz."),
                                    base::Icon::Warning);
    }
    OdemeSatiri o;
    o.sira = t.sira;
    o.odemeTarihi = QDateTime(t.odemeTarihi.date(), QTime(0, 0));
    o.odenen = t.odenecek;
    o.odemeSekli = OdemeSekliKodu(t.odemeSekli);
    o.elle = true;
    hesap.odemeler.append(o);
    return int(hesap.odemeler.size() - 1);
}

base::Status AidatEkle(HesapKaydi &hesap, const AidatTanimi &tanim)
{
    for (const DetaySatiri &t : hesap.taksitler) {
        if (t.faturaNo > 0) {
            return base::Error::refusal(
                QStringLiteral("Dikkat"),
                QStringLiteral("Bu aidatın taksitlerine fatura kesilmiş; taksit planı "
                               "değiştirilemez."),
                base::Icon::Warning);
        }
    }
    hesap.satir.aidatId = tanim.kayitId;
    hesap.satir.aidatTanim = tanim.aidatTanim;
    hesap.satir.iskontoTutari = Para();
    hesap.iskontolar.clear();
    hesap.pesinat = tanim.pesinat;
    hesap.taksitler.clear();
    int sira = 0;
    for (const TaksitSatiri &t : tanim.taksitler) {
        DetaySatiri d;
        d.sira = ++sira;
        if (t.odemeTarihi.isValid() && !base::SifirTarihMi(t.odemeTarihi)) {
            d.odemeTarihi = QDateTime(t.odemeTarihi, QTime(0, 0));
        }
        d.odenecek = t.tutar;
        d.elle = true;
        hesap.taksitler.append(d);
    }
    return {};
}

FaturaDagilimi FaturaEslestir(const HesapKaydi &hesap, const QHash<qint64, Para> &faturaOdenen)
{
    FaturaDagilimi d;
    const QList<DetaySatiri> &taksitler = hesap.taksitler;
    const qsizetype son = taksitler.size();
    const auto faturasi = [&](qsizetype j) { return j < son ? taksitler.at(j).faturaNo : 0; };
    // Past the installments of this invoice, to the next one with another number.
    const auto ilerle = [&](qsizetype j) {
        const qint64 no = faturasi(j);
        ++j;
        while (j < son && no > 0 && faturasi(j) == no) {
            ++j;
        }
        return j;
    };
    qsizetype j = 0;
    Para biriken;
    for (qsizetype i = 0; i < hesap.odemeler.size(); ++i) {
        const OdemeSatiri &o = hesap.odemeler.at(i);
        if (!Yazilir(o)) {
            d.faturaNo.append(o.faturaNo);
            continue;
        }
        // The next installment whose invoice holds money; none: past the last one.
        while (j < son && faturaOdenen.value(faturasi(j)) <= Para()) {
            ++j;
        }
        const Para f = faturaOdenen.value(faturasi(j));
        const Para p = o.odenen;
        if (p > Para() && faturasi(j) > 0) {
            biriken = biriken + p;
            d.faturaNo.append(faturasi(j));
            if (f < biriken) {
                d.uyarilar.append(
                    QStringLiteral("%1. satırda yazmış olduğunuz ödeme kesilen fatura tutarından "
                                   "%2 TL büyüktür. \n Lütfen ödeme girişlerini taksit "
                                   "miktarlarına göre ayarlayınız.")
                        .arg(i + 1)
                        .arg(base::Bicimle(biriken - f, QStringLiteral("#,##0.00"))));
            }
            if (f <= biriken) {
                j = ilerle(j);
                biriken = Para();
            }
            continue;
        }
        const Para t = j < son ? taksitler.at(j).odenecek : Para();
        if (p > Para() && f.isZero() && t > Para() && t < p) {
            d.uyarilar.append(QStringLiteral("%1. satırda yazmış olduğunuz ödeme taksit tutarından "
                                             "büyüktür. \n Lütfen ödeme girişlerini taksit "
                                             "miktarlarına göre ayarlayınız.")
                                  .arg(i + 1));
            d.faturaNo.append(faturasi(j));
            j = ilerle(j);
            biriken = Para();
            continue;
        }
        d.faturaNo.append(o.faturaNo != 0 ? o.faturaNo : faturasi(j));
    }
    return d;
}

base::Result<AidatTanimi> AdetliTanim(const AidatTanimi &tanim, Para toplam, Para yuvarlama,
                                      const QString &paraFormati)
{
    PlanGirdisi g;
    g.toplam = toplam;
    g.pesinat = tanim.pesinat;
    g.taksitSayisi = tanim.taksitSayisi;
    g.baslangic = tanim.odemeBasTarihi;
    g.yuvarlama = yuvarlama;
    g.paraFormati = paraFormati;
    const base::Result<PlanSonucu> plan = TaksitPlanla(g);
    if (!plan) {
        return plan.error();
    }
    if (plan->durum != PlanDurumu::Planlandi) {
        return base::Error::refusal(
            QStringLiteral("Dikkat"),
            QStringLiteral("%1 aidatının ödeme başlangıç tarihi ya da taksit sayısı tanımlı "
                           "değil; adet ve fiyatla taksitlendirilemez.")
                .arg(tanim.aidatTanim),
            base::Icon::Warning);
    }
    AidatTanimi sonuc = tanim;
    sonuc.toplam = toplam;
    sonuc.taksitler = plan->taksitler;
    return sonuc;
}

QList<Para> OdenmemisKisimlar(const QList<Para> &tutarlar, Para odenen)
{
    QList<Para> kalan;
    kalan.reserve(tutarlar.size());
    Para kalanOdenen = odenen;
    for (const Para tutar : tutarlar) {
        if (tutar > kalanOdenen) {
            kalan.append(tutar - kalanOdenen);
            kalanOdenen = Para();
        } else {
            kalan.append(Para());
            kalanOdenen = kalanOdenen - tutar;
        }
    }
    return kalan;
}

} // namespace fees
