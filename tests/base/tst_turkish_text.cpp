#include "base/turkish_text.h"

#include <QLocale>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace base;

namespace {

// A literal amount in C-locale digits; every literal of these tests is well formed.
Para p(const char *text)
{
    const std::optional<Para> value = Para::fromDecimalString(QString::fromLatin1(text));
    Q_ASSERT(value);
    return value.value_or(Para());
}

} // namespace

class tst_TurkishText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Every test runs under a foreign default locale: nothing here may follow it.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }

    void bicimle_data()
    {
        QTest::addColumn<Para>("amount");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("expected");

        const QString kurus = ParaFormatiKurus;
        const QString tam = ParaFormatiTam;
        const Para max = Para::fromRaw(std::numeric_limits<qint64>::max());
        // clang-format off
        QTest::addRow("kurus-negatif") << p("-1250.5") << kurus << "-1.250,50";
        QTest::addRow("kurus-sifir") << p("0") << kurus << "0,00";
        QTest::addRow("kurus-yarim") << p("2.675") << kurus << "2,68";
        QTest::addRow("kurus-yarim-negatif") << p("-2.675") << kurus << "-2,68";
        QTest::addRow("kurus-eksi-sifira") << p("-0.004") << kurus << "0,00";
        QTest::addRow("kurus-ust-sinir") << max << kurus << "922.337.203.685.477,58";
        QTest::addRow("tam-sifir") << p("0") << tam << "";
        QTest::addRow("tam-sifira-yuvarlanan") << p("0.4") << tam << "";
        QTest::addRow("tam-yarim-negatif") << p("-1250.5") << tam << "-1.251";
        QTest::addRow("gruplamasiz") << p("1250.5") << "#0.00" << "1250,50";
        QTest::addRow("sifir-dolgulu") << p("7") << "000" << "007";
        QTest::addRow("istege-bagli-ondalik") << p("1234.5") << "#,###.##" << "1.234,5";
        // clang-format on
    }

    void bicimle()
    {
        QFETCH(Para, amount);
        QFETCH(QString, picture);
        QFETCH(QString, expected);
        QCOMPARE(Bicimle(amount, picture), expected);
        QCOMPARE(BicimeYuvarla(amount, picture), SayiOku(expected));
    }

    // The lenient reader takes the leading number; the strict one the whole text or nothing.
    void readers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Para>("lenient");
        QTest::addColumn<QString>("strict"); // C-locale digits, empty when refused

        // clang-format off
        QTest::addRow("gruplu") << "1.250,50" << p("1250.5") << "1250.5";
        QTest::addRow("negatif-bosluklu") << " -1250,5 " << p("-1250.5") << "-1250.5";
        QTest::addRow("nokta-ondalik-degil") << "1250.50" << p("125050") << "";
        QTest::addRow("bozuk-grup") << "12.50.000" << p("1250000") << "";
        QTest::addRow("kuyruklu") << "12abc" << p("12") << "";
        QTest::addRow("bos") << "" << p("0") << "";
        QTest::addRow("besinci-basamak") << "0,00005" << p("0.0001") << "0.0001";
        // clang-format on
    }

    void readers()
    {
        QFETCH(QString, text);
        QFETCH(Para, lenient);
        QFETCH(QString, strict);
        QCOMPARE(SayiOku(text), lenient);
        const std::optional<Para> parsed = ParaCoz(text);
        QCOMPARE(parsed ? parsed->toDecimalString() : QString(), strict);
    }

    void wholeNumbers()
    {
        QCOMPARE(Bicimle(std::numeric_limits<qint64>::min(), ParaFormatiTam),
                 u"-9.223.372.036.854.775.808"_s);
        QCOMPARE(Bicimle(qint64(-7), ParaFormatiKurus), u"-7,00"_s);
        QCOMPARE(TamSayiCoz(u" 7 "_s), std::optional<qint64>(7));
        QCOMPARE(TamSayiCoz(u"-9223372036854775808"_s),
                 std::optional<qint64>(std::numeric_limits<qint64>::min()));
        QVERIFY(!TamSayiCoz(u"9223372036854775808"_s));
        QVERIFY(!TamSayiCoz(u"1,5"_s));
    }

    // Words for amounts, letters and suffixes: each row is a call and the text it must give.
    void words_data()
    {
        QTest::addColumn<QString>("actual");
        QTest::addColumn<QString>("expected");

        const Para amount = p("1250.5");
        const QString words = u"BİNİKİYÜZELLİ TL ELLİ KRŞ"_s;
        // clang-format off
        QTest::addRow("yazi-lira-kurus") << YaziyaCevir(amount, false, true) << words;
        QTest::addRow("yazi-cerceveli") << YaziyaCevir(amount, true, true) << u'#' + words + u'#';
        // The sign is read as a digit 0: no word says minus.
        QTest::addRow("yazi-negatif") << YaziyaCevir(-amount, false, true) << words;
        QTest::addRow("yazi-lira") << YaziyaCevir(p("1000"), false, true) << "BİN TL";
        QTest::addRow("yazi-kurus") << YaziyaCevir(p("0.05"), false, true) << "BEŞ KRŞ";
        QTest::addRow("yazi-yuvarlanan") << YaziyaCevir(p("2.675"), false, true)
                                         << "İKİ TL ALTMIŞSEKİZ KRŞ";
        QTest::addRow("yazi-sifir") << YaziyaCevir(p("0"), false, true) << "";
        QTest::addRow("yazi-sifir-cerceveli") << YaziyaCevir(p("0"), true, true) << "##";
        QTest::addRow("yazi-kurussuz") << YaziyaCevir(p("21000"), false, false)
                                       << "YİRMİBİRBİN";
        QTest::addRow("sayi-bin") << SayiyiYaziya("1000") << "BİN";
        QTest::addRow("sayi-on-bir-bin") << SayiyiYaziya("11000") << "ONBİRBİN";
        QTest::addRow("sayi-yuz-bir-bin") << SayiyiYaziya("101000") << "YÜZBİRBİN";
        QTest::addRow("sayi-bir-milyon") << SayiyiYaziya("1000000") << "BİRMİLYON";
        QTest::addRow("sayi-milyar-bin") << SayiyiYaziya("1000001000") << "BİRMİLYARBİN";
        QTest::addRow("sayi-dokuzlar") << SayiyiYaziya("999999")
                                       << "DOKUZYÜZDOKSANDOKUZBİNDOKUZYÜZDOKSANDOKUZ";
        QTest::addRow("sayi-katrilyon") << SayiyiYaziya("2000000000000000") << "İKİKATRİLYON";
        QTest::addRow("sayi-degil") << SayiyiYaziya("12a") << "";
        QTest::addRow("ay-agustos") << AyAdi(8) << "AĞUSTOS";
        QTest::addRow("ay-yok") << AyAdi(13) << "-";
        QTest::addRow("buyuk-igdir") << BuyukHarf("iğdır ılık") << "İĞDIR ILIK";
        QTest::addRow("buyuk-ig") << BuyukHarf("ığ iğ") << "IĞ İĞ";
        QTest::addRow("buyuk-diger") << BuyukHarf("şüphe çöküş") << "ŞÜPHE ÇÖKÜŞ";
        QTest::addRow("kucuk-igdir") << KucukHarf("İĞDIR ILIK") << "iğdır ılık";
        QTest::addRow("kucuk-diger") << KucukHarf("ŞÜPHE ÇÖKÜŞ") << "şüphe çöküş";
        QTest::addRow("ek-ahmet") << EkGetir("Ahmet") << "'in";
        QTest::addRow("ek-ali") << EkGetir("Ali") << "'nin";
        QTest::addRow("ek-ayse") << EkGetir("AYŞE") << "'NİN";
        QTest::addRow("ek-oguz") << EkGetir("Oğuz") << "'un";
        QTest::addRow("ek-gul") << EkGetir("Gül") << "'ün";
        QTest::addRow("ek-kaya") << EkGetir("Kaya") << "'nın";
        QTest::addRow("ek-son-unlu-kucuk") << EkGetir("ÖMeR") << "'in";
        QTest::addRow("ek-unsuz") << EkGetir("Brk") << "";
        // The case of the name decides, not the case of its last vowel.
        QTest::addRow("ek-oz") << EkGetir("Öz") << "'ün";
        QTest::addRow("ek-ay") << EkGetir("Ay") << "'ın";
        QTest::addRow("ek-ok") << EkGetir("Ok") << "'un";
        QTest::addRow("ek-iz") << EkGetir("İz") << "'in";
        QTest::addRow("ek-ALI") << EkGetir("ALİ") << "'NİN";
        QTest::addRow("ek-OZ-kesme") << EkGetir("O'NEİL") << "'İN";
        // clang-format on
    }

    void words()
    {
        QFETCH(QString, actual);
        QFETCH(QString, expected);
        QCOMPARE(actual, expected);
    }

    void nullOkuyucular()
    {
        // An amount that may be Null or a text: blank gives nothing, not even the frame.
        QCOMPARE(YaziyaCevir(QVariant(0.05), false, true), u"BEŞ KRŞ"_s);
        QCOMPARE(YaziyaCevir(QVariant(u"1.000"_s), false, true), "BİN TL");
        QCOMPARE(YaziyaCevir(QVariant(u" "_s), true, true), QString());
        QCOMPARE(YaziyaCevir(QVariant(), true, true), QString());
        QCOMPARE(NullStr(QVariant()), QString());
        QCOMPARE(NullStr(QVariant(u" a "_s), true), u" a "_s);
        QCOMPARE(NullStr(QVariant(QDate(2024, 2, 9))), u"09.02.2024"_s);
        QCOMPARE(NullNum(QVariant(1250.5)), u"1250,5"_s);
        QCOMPARE(NullNum(QVariant(u"12abc"_s)), u"0"_s);
        QCOMPARE(SayiDegeri(QVariant(u"1.250,50"_s)), 1250.5);
        QCOMPARE(SayiDegeri(QVariant(u"12abc"_s)), 0.0);
        QCOMPARE(SifirBos(QVariant(u"0,00"_s)), QString());
        QCOMPARE(SifirBos(QVariant(1e20)), u"100000000000000000000"_s);
    }

    void tarihKontrol_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("wellFormed");

        QTest::addRow("egik-cizgi") << "01/01/2004" << true;
        QTest::addRow("tire-2100") << "15-06-2100" << true;
        QTest::addRow("olmayan-gun") << "31.02.2004" << true;
        QTest::addRow("kisa") << "1.1.2004" << false;
        QTest::addRow("ay-13") << "01.13.2004" << false;
        QTest::addRow("yil-1899") << "31.12.1899" << false;
        QTest::addRow("rakam-degil") << "0a.01.2004" << false;
    }

    void tarihKontrol()
    {
        QFETCH(QString, text);
        QFETCH(bool, wellFormed);
        QCOMPARE(TarihKontrol(text), wellFormed);
    }

    void tarihler()
    {
        QCOMPARE(TarihOku(u"29.02.2024"_s), std::optional(QDate(2024, 2, 29)));
        QVERIFY(!TarihOku(u"31.02.2024"_s));
        QVERIFY(!TarihOku(u"29.02.2023"_s));

        QCOMPARE(TarihYaz(QDate()), QString());
        QCOMPARE(TarihYaz(SifirTarih), QString());
        const QDateTime moment(QDate(2024, 2, 9), QTime(8, 5, 3));
        QCOMPARE(TarihSaatYaz(moment), u"09.02.2024 08:05:03"_s);

        QCOMPARE(AyEkle(QDate(2024, 1, 31), 1), QDate(2024, 2, 29));
        QCOMPARE(AyEkle(QDate(2023, 3, 31), -1), QDate(2023, 2, 28));
        QCOMPARE(AyEkle(QDate(2023, 11, 30), 3), QDate(2024, 2, 29));
    }

    void localeIndependence()
    {
        const QList<QLocale> locales = {
            QLocale(QLocale::English, QLocale::UnitedStates),
            QLocale(QLocale::Arabic, QLocale::Egypt),
            QLocale(QLocale::Turkish, QLocale::Turkey),
        };
        for (const QLocale &locale : locales) {
            QLocale::setDefault(locale);
            QCOMPARE(Bicimle(p("1250.5"), ParaFormatiKurus), u"1.250,50"_s);
            QCOMPARE(SayiOku(u"1.250,50"_s), p("1250.5"));
            QCOMPARE(NullStr(QVariant(0.5)), u"0,5"_s);
            QCOMPARE(SifirBos(QVariant(0.5)), u"0.5"_s);
            QCOMPARE(TarihYaz(QDate(2024, 2, 9)), u"09.02.2024"_s);
            QCOMPARE(KucukHarf(u"ISI"_s), u"ısı"_s);
        }
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }
};

QTEST_GUILESS_MAIN(tst_TurkishText)
#include "tst_turkish_text.moc"
