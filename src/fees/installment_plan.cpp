#include "fees/installment_plan.h"

#include "base/turkish_text.h"

#include <algorithm>
#include <limits>

namespace fees {

namespace {

using Wide = __int128;

// Parts per ten-thousandth in which the exact Kalan is carried: a rate has four decimals and
// is a percentage, so Toplam x rate / 100 needs six more places than an amount has.
constexpr qint64 KalanOlcek = 1000000;

qint64 placesStep(int places)
{
    qint64 step = 1;
    for (int i = std::clamp(places, 0, 4); i < 4; ++i) {
        step *= 10;
    }
    return step;
}

// num / den rounded half away from zero; den > 0.
Wide roundedDivision(Wide num, Wide den)
{
    const bool negative = num < 0;
    const Wide magnitude = negative ? -num : num;
    Wide q = magnitude / den;
    if (2 * (magnitude % den) >= den) {
        ++q;
    }
    return negative ? -q : q;
}

Para fromWide(Wide raw)
{
    // A school's amounts never come near the edge; should they, the end of the range stands.
    constexpr qint64 hi = std::numeric_limits<qint64>::max();
    constexpr qint64 lo = std::numeric_limits<qint64>::min();
    return Para::fromRaw(raw > hi ? hi : raw < lo ? lo : qint64(raw));
}

// An exact amount in parts of KalanOlcek ten-thousandths, rounded once to `places`.
Para roundExact(Wide exact, int places)
{
    const qint64 step = placesStep(places);
    return fromWide(roundedDivision(exact, Wide(KalanOlcek) * step) * step);
}

int formatPlaces(const QString &paraFormati)
{
    return std::min(base::BicimOndalik(paraFormati), 4);
}

} // namespace

PlanSonucu TaksitPlanla(const PlanGirdisi &g)
{
    PlanSonucu sonuc;
    if (!g.baslangic.isValid()) {
        sonuc.durum = PlanDurumu::TarihGecersiz;
        return sonuc;
    }
    const int places = formatPlaces(g.paraFormati);
    // Kalan = Toplam - rate x Toplam / 100 - Pesinat, in millionths of a ten-thousandth.
    const Wide kalan = Wide(g.toplam.raw()) * (KalanOlcek - g.genelOran.raw())
                       - Wide(g.pesinat.raw()) * KalanOlcek;
    sonuc.kalan = roundExact(kalan, places);
    const int n = g.taksitSayisi;
    if (n < 1) {
        sonuc.durum = PlanDurumu::TaksitYok;
        return sonuc;
    }

    // Kalan / n, rounded once from its exact value.
    const qint64 step = placesStep(places);
    Para taksit = fromWide(roundedDivision(kalan, Wide(KalanOlcek) * n * step) * step);
    Para artan;
    if (g.yuvarlama > Para()) {
        // Cut down to a multiple of the step (Int goes down, also below zero); what was cut
        // goes to the first installment.
        taksit = base::BicimeYuvarla(taksit.floorToMultiple(g.yuvarlama), g.paraFormati);
        artan = roundExact(kalan - Wide(taksit.raw()) * n * KalanOlcek, places);
    } else {
        artan = g.toplam - taksit * n - g.pesinat;
    }

    sonuc.durum = PlanDurumu::Planlandi;
    sonuc.taksit = taksit;
    sonuc.artan = artan;
    sonuc.taksitler.reserve(n);
    for (int i = 1; i <= n; ++i) {
        sonuc.taksitler.append(
            TaksitSatiri{base::AyEkle(g.baslangic, i - 1), i == 1 ? taksit + artan : taksit});
    }
    return sonuc;
}

TaksitOzeti TaksitTutarHesapla(Para toplam, Para pesinat, const QList<Para> &tutarlar,
                               Para genelOran, const QString &paraFormati)
{
    const int places = formatPlaces(paraFormati);
    const Para t = base::BicimeYuvarla(toplam, paraFormati);
    const Para p = base::BicimeYuvarla(pesinat, paraFormati);
    Para s;
    for (const Para &tutar : tutarlar) {
        s += base::BicimeYuvarla(tutar, paraFormati);
    }
    const Para iskonto = t.percent(genelOran, places, base::RoundingMode::HalfAwayFromZero);
    TaksitOzeti ozet;
    ozet.taksitToplami = s;
    if (genelOran > Para()) {
        ozet.etiket = QStringLiteral("İskonto");
        ozet.kalan = t - p - s;
        ozet.ikinciKutu = t - iskonto;
    } else {
        ozet.etiket = QStringLiteral("Kalan");
        ozet.kalan = t - p - s - iskonto;
        ozet.ikinciKutu = t;
    }
    return ozet;
}

Para BirimFiyatToplami(Para birimFiyat, qint64 adet)
{
    return birimFiyat * adet;
}

Para OndalikToplam(Para birimFiyat, qint64 adet)
{
    const QString metin = (birimFiyat * adet).toDecimalString().replace(u'.', u',');
    const qsizetype virgul = metin.indexOf(u',');
    const QString tam = virgul < 0 ? metin : metin.left(virgul);
    const QString kesir = virgul < 0 ? QString() : metin.mid(virgul + 1);
    Para toplam = Para::fromDecimalString(tam).value_or(Para());
    if (!kesir.isEmpty() && kesir.toLongLong() >= 5) {
        toplam += Para::fromUnits(1);
    }
    return toplam;
}

} // namespace fees
