#include "fees/auto_plan.h"

#include "base/turkish_text.h"
#include "fees/installment_plan.h"

#include <algorithm>

namespace fees {

namespace {

const QString s_label = QStringLiteral("FrmOtomatikTaksit:TaksitPlanla");

int places(const QString &paraFormati)
{
    return std::min(base::BicimOndalik(paraFormati), 4);
}

base::Error refused(const QString &text)
{
    return base::Error::refusal(QStringLiteral("UYARI"), text, base::Icon::Warning);
}

} // namespace

QList<IskontoSecimi> IskontoListesi(const QList<IskontoTanimi> &standart,
                                    const QList<IskontoSatiri> &hesabin)
{
    QList<IskontoSecimi> liste;
    for (const IskontoTanimi &t : standart) {
        IskontoSecimi s{t.id, false, t.aciklama, t.kalanTutardan, t.tipi, t.deger};
        s.sira = t.sira;
        for (const IskontoSatiri &h : hesabin) {
            if (h.iskontoId == t.id) {
                // As it was stored, whatever the standard says now.
                s.isaretli = true;
                s.kalanTutardan = h.iskontoKalanTutardan;
                s.tipi = h.iskontoTipi;
                s.deger = h.iskontoOrani;
                s.matrah = h.iskontoMatrahi;
                s.indirim = h.iskontoMiktari;
                break;
            }
        }
        liste.append(s);
    }
    return liste;
}

base::Result<Para> IskontolariYenidenHesapla(QList<IskontoSecimi> &liste, Para aidatTutari,
                                             const QString &paraFormati)
{
    const int p = places(paraFormati);
    Para kalan = aidatTutari;
    Para toplam;
    QList<IskontoSecimi> sonuc = liste;
    for (IskontoSecimi &s : sonuc) {
        if (!s.isaretli) {
            s.matrah = Para();
            s.indirim = Para();
            continue;
        }
        if (s.tipi == Oran && (s.deger < Para() || s.deger > Para::fromUnits(100))) {
            return refused(QStringLiteral("%1 indiriminin oranı 0 ile 100 arasında olmalıdır.")
                               .arg(s.aciklama));
        }
        if (s.tipi == Tutar && s.deger < Para()) {
            return refused(QStringLiteral("%1 indiriminin tutarı eksi olamaz.").arg(s.aciklama));
        }
        s.matrah = s.kalanTutardan == KalanTutardan ? kalan : aidatTutari;
        if (s.tipi == Oran) {
            const std::optional<Para> indirim = Para::mulDiv(
                s.matrah, s.deger, Para::fromUnits(100), p, base::RoundingMode::HalfAwayFromZero);
            if (!indirim) {
                return base::TutarTasmasi(s_label);
            }
            s.indirim = *indirim;
        } else {
            s.indirim = s.deger;
        }
        kalan = kalan - s.indirim;
        toplam = toplam + s.indirim;
    }
    if (kalan.overflowed() || toplam.overflowed()) {
        return base::TutarTasmasi(s_label);
    }
    liste = sonuc;
    return toplam;
}

base::Result<QList<Para>> TaksitleriYenidenDagit(const QList<Para> &tutarlar, int baslangic,
                                                 Para toplam, Para pesinat, Para yuvarlama,
                                                 const QString &paraFormati)
{
    const int n = int(tutarlar.size());
    if (baslangic < 1 || baslangic >= n) {
        return tutarlar;
    }
    Para kalan = toplam - pesinat;
    for (int i = 0; i < baslangic; ++i) {
        kalan = kalan - tutarlar.at(i);
    }
    std::optional<Para> taksit
        = kalan.divided(n - baslangic, places(paraFormati), base::RoundingMode::HalfAwayFromZero);
    if (!taksit) {
        return base::TutarTasmasi(s_label);
    }
    if (yuvarlama > Para()) {
        taksit = base::BicimeYuvarla(taksit->floorToMultiple(yuvarlama), paraFormati);
    }
    QList<Para> sonuc = tutarlar;
    for (int i = baslangic; i < n; ++i) {
        sonuc[i] = *taksit;
    }
    return sonuc;
}

base::Status OtomatikTaksitUygula(HesapKaydi &hesap, const OtomatikPlan &plan)
{
    for (const DetaySatiri &t : hesap.taksitler) {
        if (t.faturaNo > 0) {
            return refused(QStringLiteral("Bu aidatın taksitlerine fatura kesilmiş; taksit planı "
                                          "değiştirilemez."));
        }
    }
    Para iskonto;
    for (const IskontoSecimi &s : plan.iskontolar) {
        iskonto = iskonto + s.indirim;
    }
    const Para toplam = plan.aidatTutari - iskonto;
    if (toplam < Para() || toplam < plan.pesinat) {
        return refused(QStringLiteral("İndirimlerden sonra kalan toplam tutar (%1) peşinattan "
                                      "(%2) az olamaz. Bir indirimi ya da peşinatı azaltınız.")
                           .arg(base::Bicimle(toplam, plan.paraFormati),
                                base::Bicimle(plan.pesinat, plan.paraFormati)));
    }
    Para taksitToplami;
    for (const TaksitSatiri &t : plan.taksitler) {
        taksitToplami = taksitToplami + t.tutar;
    }
    const Para kalan = toplam - plan.pesinat - taksitToplami;
    if (!kalan.isZero()) {
        return refused(QStringLiteral("Taksitlerin toplamı tutmuyor: Kalan %1. Taksitleri "
                                      "düzeltiniz ya da planı yeniden yapınız.")
                           .arg(base::Bicimle(kalan, plan.paraFormati)));
    }
    for (const TaksitSatiri &t : plan.taksitler) {
        if (!t.odemeTarihi.isValid() || base::SifirTarihMi(t.odemeTarihi)) {
            return refused(QStringLiteral("Her taksidin bir ödeme tarihi olmalıdır."));
        }
    }

    const QList<DetaySatiri> eski = hesap.taksitler;
    hesap.satir.aidatTanim = plan.aidatTanim;
    hesap.satir.iskontoTutari = iskonto;
    hesap.pesinat = plan.pesinat;
    hesap.taksitler.clear();
    for (qsizetype i = 0; i < plan.taksitler.size(); ++i) {
        DetaySatiri d;
        d.sira = int(i + 1);
        d.odemeTarihi = QDateTime(plan.taksitler.at(i).odemeTarihi, QTime(0, 0));
        d.odenecek = plan.taksitler.at(i).tutar;
        // The way of payment of the row that stood in this place.
        d.odemeSekli = i < eski.size() ? eski.at(i).odemeSekli : QString();
        d.elle = true;
        hesap.taksitler.append(d);
    }
    hesap.iskontolar.clear();
    for (const IskontoSecimi &s : plan.iskontolar) {
        if (s.isaretli) {
            hesap.iskontolar.append(IskontoSatiri{s.id, s.aciklama, s.deger, s.indirim, s.matrah,
                                                  s.tipi, s.kalanTutardan, s.sira});
        }
    }
    return {};
}

} // namespace fees
