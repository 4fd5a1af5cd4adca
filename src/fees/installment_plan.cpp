#include "fees/installment_plan.h"

#include "base/turkish_text.h"

#include <algorithm>
#include <optional>

namespace fees {

namespace {

using base::RoundingMode;

const QString s_planEtiketi = QStringLiteral("FrmAidatTanimlama:TaksitPlanla");
const QString s_ozetEtiketi = QStringLiteral("FrmAidatTanimlama:TaksitTutarHesapla");

int formatPlaces(const QString &paraFormati)
{
    return std::min(base::BicimOndalik(paraFormati), 4);
}

// The value, or the overflow error under `etiket` when it left the range on its way here.
base::Result<Para> denetle(Para deger, const QString &etiket)
{
    if (deger.overflowed()) {
        return base::TutarTasmasi(etiket);
    }
    return deger;
}

} // namespace

base::Result<PlanSonucu> TaksitPlanla(const PlanGirdisi &g)
{
    PlanSonucu sonuc;
    if (!g.baslangic.isValid()) {
        sonuc.durum = PlanDurumu::TarihGecersiz;
        return sonuc;
    }
    const int places = formatPlaces(g.paraFormati);
    const Para yuz = Para::fromUnits(100);
    const Para kalanOrani = yuz - g.genelOran; // what the general rate leaves of a hundred
    // Kalan less `dusulen`, in `parca` equal parts:
    //   (Toplam x kalanOrani - dusulen x 100) / (100 x parca),
    // exact until its one rounding, although the rate's share has six places more than money.
    const auto kalandan = [&](Para dusulen, int parca) {
        return Para::mulDiv(g.toplam, kalanOrani, dusulen, yuz, yuz * parca, places,
                            RoundingMode::HalfAwayFromZero);
    };

    const std::optional<Para> kalan = kalandan(g.pesinat, 1);
    if (!kalan) {
        return base::TutarTasmasi(s_planEtiketi);
    }
    sonuc.kalan = *kalan;
    const int n = g.taksitSayisi;
    if (n < 1) {
        sonuc.durum = PlanDurumu::TaksitYok;
        return sonuc;
    }

    // Kalan / n, rounded once from its exact value.
    const std::optional<Para> esit = kalandan(g.pesinat, n);
    if (!esit) {
        return base::TutarTasmasi(s_planEtiketi);
    }
    Para taksit = *esit;
    std::optional<Para> artan;
    if (g.yuvarlama > Para()) {
        // Cut down to a multiple of the step (Int goes down, also below zero); what was cut
        // goes to the first installment.
        taksit = base::BicimeYuvarla(taksit.floorToMultiple(g.yuvarlama), g.paraFormati);
        artan = kalandan(g.pesinat + taksit * n, 1);
    } else {
        artan = (g.toplam - taksit * n - g.pesinat).checked();
    }
    const std::optional<Para> ilk = artan ? (taksit + *artan).checked() : std::nullopt;
    if (!ilk) {
        return base::TutarTasmasi(s_planEtiketi);
    }

    sonuc.durum = PlanDurumu::Planlandi;
    sonuc.taksit = taksit;
    sonuc.artan = *artan;
    sonuc.taksitler.reserve(n);
    for (int i = 1; i <= n; ++i) {
        sonuc.taksitler.append(
            TaksitSatiri{base::AyEkle(g.baslangic, i - 1), i == 1 ? *ilk : taksit});
    }
    return sonuc;
}

base::Result<TaksitOzeti> TaksitTutarHesapla(Para toplam, Para pesinat, const QList<Para> &tutarlar,
                                             Para genelOran, const QString &paraFormati)
{
    const int places = formatPlaces(paraFormati);
    const Para t = base::BicimeYuvarla(toplam, paraFormati);
    const Para p = base::BicimeYuvarla(pesinat, paraFormati);
    Para s;
    for (const Para &tutar : tutarlar) {
        s += base::BicimeYuvarla(tutar, paraFormati);
    }
    const std::optional<Para> iskonto
        = t.percent(genelOran, places, RoundingMode::HalfAwayFromZero);
    if (!iskonto) {
        return base::TutarTasmasi(s_ozetEtiketi);
    }
    TaksitOzeti ozet;
    ozet.taksitToplami = s;
    if (genelOran > Para()) {
        ozet.etiket = QStringLiteral("İskonto");
        ozet.kalan = t - p - s;
        ozet.ikinciKutu = t - *iskonto;
    } else {
        ozet.etiket = QStringLiteral("Kalan");
        ozet.kalan = t - p - s - *iskonto;
        ozet.ikinciKutu = t;
    }
    // A sum that left the range marks every figure made from it.
    if (ozet.kalan.overflowed() || ozet.ikinciKutu.overflowed()) {
        return base::TutarTasmasi(s_ozetEtiketi);
    }
    return ozet;
}

base::Result<Para> BirimFiyatToplami(Para birimFiyat, qint64 adet)
{
    return denetle(birimFiyat * adet, QStringLiteral("FrmAidatTanimlama:BirimFiyatToplami"));
}

base::Result<Para> OndalikToplam(Para birimFiyat, qint64 adet)
{
    const QString etiket = QStringLiteral("FrmAidatTanimlama:OndalikToplam");
    const base::Result<Para> carpim = denetle(birimFiyat * adet, etiket);
    if (!carpim) {
        return carpim;
    }
    const QString metin = carpim->toDecimalString().replace(u'.', u',');
    const qsizetype virgul = metin.indexOf(u',');
    const QString tam = virgul < 0 ? metin : metin.left(virgul);
    const QString kesir = virgul < 0 ? QString() : metin.mid(virgul + 1);
    Para toplam = Para::fromDecimalString(tam).value_or(Para());
    if (!kesir.isEmpty() && kesir.toLongLong() >= 5) {
        toplam += Para::fromUnits(1);
    }
    return denetle(toplam, etiket);
}

} // namespace fees
