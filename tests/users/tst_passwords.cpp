#include "users/passwords.h"

#include <QTest>

using namespace Qt::StringLiterals;

using users::Provider;

// Expected scrambled values were worked out apart from this program (RC4 over the Windows-1254
// bytes with the derived key), so they check the code page and the cipher, not just a round trip.
class tst_Passwords : public QObject
{
    Q_OBJECT

private slots:
    void derivedKey_data();
    void derivedKey();
    void knownAnswers_data();
    void knownAnswers();
    void codePage_data();
    void codePage();
    void everyByteSurvives();
    void hexOfEitherCase();
    void malformedHex_data();
    void malformedHex();
    void hashVerifies_data();
    void hashVerifies();
    void hashRefusesWhatIsNotAHash_data();
    void hashRefusesWhatIsNotAHash();
};

void tst_Passwords::derivedKey_data()
{
    QTest::addColumn<Provider>("provider");
    QTest::addColumn<QByteArray>("anahtar");
    QTest::addRow("enhanced-128") << Provider::Enhanced
                                  << QByteArray("0229C055059232A09F1F8C5A325C00EB");
    QTest::addRow("base-40-sifir-tuz")
        << Provider::Base << QByteArray("0229C055050000000000000000000000");
}

void tst_Passwords::derivedKey()
{
    QFETCH(Provider, provider);
    QFETCH(QByteArray, anahtar);
    QCOMPARE(users::TuretilmisAnahtar(provider).toHex().toUpper(), anahtar);
}

void tst_Passwords::knownAnswers_data()
{
    QTest::addColumn<QString>("metin");
    QTest::addColumn<Provider>("provider");
    QTest::addColumn<QString>("hex");
    QTest::addRow("admin-enhanced") << "admin" << Provider::Enhanced << "B65E830A6F";
    QTest::addRow("admin-base") << "admin" << Provider::Base << "8F63694E20";
    QTest::addRow("bastaki-bosluk-kalir") << " admin" << Provider::Enhanced << "F75B8A0E687D";
    QTest::addRow("sondaki-bosluk-kalir") << "admin " << Provider::Base << "8F63694E20AA";
    QTest::addRow("sekme-bos-sayilmaz") << "\t" << Provider::Enhanced << "DE";
    QTest::addRow("turkce-harfler-enhanced")
        << u"ÇçĞğİıÖöŞşÜü"_s << Provider::Enhanced << "10DD3E93DCEE3B831289BDB0";
    QTest::addRow("turkce-harfler-base")
        << u"ÇçĞğİıÖöŞşÜü"_s << Provider::Base << "29E0D4D7937704DCCD1698AD";
    QTest::addRow("turkce-ad") << u"Şükrü Güneş"_s << Provider::Enhanced
                               << "09C68511FD33AA89A2129F";
    QTest::addRow("euro-0x80") << u"€"_s << Provider::Enhanced << "57";
    QTest::addRow("bos") << "" << Provider::Enhanced << "";
    QTest::addRow("yalniz-bosluk") << "   " << Provider::Base << "";
}

void tst_Passwords::knownAnswers()
{
    QFETCH(QString, metin);
    QFETCH(Provider, provider);
    QFETCH(QString, hex);
    const auto sifreli = users::Sifrele(metin, provider);
    QVERIFY(sifreli.ok());
    QCOMPARE(*sifreli, hex);
    if (!hex.isEmpty()) {
        const auto cozulen = users::SifreCoz(hex, provider);
        QVERIFY(cozulen.ok());
        QCOMPARE(*cozulen, metin);
    }
}

void tst_Passwords::codePage_data()
{
    QTest::addColumn<QString>("harf");
    QTest::addColumn<int>("bayt");
    QTest::addRow("G-breve") << u"Ğ"_s << 0xD0;
    QTest::addRow("g-breve") << u"ğ"_s << 0xF0;
    QTest::addRow("I-noktali") << u"İ"_s << 0xDD;
    QTest::addRow("i-noktasiz") << u"ı"_s << 0xFD;
    QTest::addRow("S-cedilla") << u"Ş"_s << 0xDE;
    QTest::addRow("s-cedilla") << u"ş"_s << 0xFE;
    QTest::addRow("C-cedilla-latin1") << u"Ç"_s << 0xC7;
    QTest::addRow("o-umlaut-latin1") << u"ö"_s << 0xF6;
    QTest::addRow("Y-umlaut-0x9F") << u"Ÿ"_s << 0x9F;
    QTest::addRow("eth-yerini-Ge-aldi") << u"Ð"_s << int('?');
    QTest::addRow("thorn-yerini-se-aldi") << u"þ"_s << int('?');
    QTest::addRow("sayfada-yok") << u"Ā"_s << int('?');
}

void tst_Passwords::codePage()
{
    QFETCH(QString, harf);
    QFETCH(int, bayt);
    QCOMPARE(users::Windows1254(harf), QByteArray(1, char(bayt)));
}

void tst_Passwords::everyByteSurvives()
{
    QByteArray hepsi;
    for (int b = 0; b < 256; ++b) {
        hepsi.append(char(b));
    }
    QCOMPARE(users::Windows1254(users::Windows1254Coz(hepsi)), hepsi);
}

void tst_Passwords::hexOfEitherCase()
{
    for (const QString &hex : {u"b65e830a6f"_s, u"B65e830A6f"_s}) {
        const auto cozulen = users::SifreCoz(hex);
        QVERIFY(cozulen.ok());
        QCOMPARE(*cozulen, u"admin"_s);
    }
}

void tst_Passwords::malformedHex_data()
{
    QTest::addColumn<QString>("hex");
    QTest::addRow("tek-uzunluk") << "B65E830A6";
    QTest::addRow("tek-hane") << "B";
    QTest::addRow("hex-olmayan-harf") << "B65E830A6G";
    QTest::addRow("arti-isareti") << "+65E830A6F";
    QTest::addRow("eksi-isareti") << "-65E830A6F";
    QTest::addRow("0x-oneki") << "0xB65E830A6F";
    QTest::addRow("arada-bosluk") << "B6 5E 830A6F";
    QTest::addRow("basta-sonda-bosluk") << " B65E830A6F ";
    QTest::addRow("yalniz-bosluk") << "  ";
    QTest::addRow("tam-genislik-rakam") << u"０１"_s;
}

void tst_Passwords::malformedHex()
{
    QFETCH(QString, hex);
    const auto cozulen = users::SifreCoz(hex);
    QVERIFY(!cozulen.ok());
    QCOMPARE(cozulen.error().text, users::BozukVeriHatasi);
    QCOMPARE(cozulen.error().number, 1001);
}

void tst_Passwords::hashVerifies_data()
{
    QTest::addColumn<QString>("sifre");
    QTest::addColumn<QString>("yanlis");
    // clang-format off
    QTest::addRow("buyuk-kucuk-harf") << "Admin" << "admin";
    QTest::addRow("sondaki-bosluk") << "admin" << "admin ";
    QTest::addRow("bos-sifre") << "" << " ";
    QTest::addRow("turkce-harf-utf8") << u"ağaç"_s << u"aşaç"_s;
    // clang-format on
}

void tst_Passwords::hashVerifies()
{
    QFETCH(QString, sifre);
    QFETCH(QString, yanlis);
    const base::Result<QString> sonuc = users::SifreOzeti(sifre);
    QVERIFY(sonuc.ok());
    const QString ozet = *sonuc;
    QVERIFY(users::SifreOzetiMi(ozet));
    QVERIFY(users::SifreOzetiDogrula(ozet, sifre));
    QVERIFY(!users::SifreOzetiDogrula(ozet, yanlis));
}

void tst_Passwords::hashRefusesWhatIsNotAHash_data()
{
    QTest::addColumn<QString>("kayitli");
    QTest::addColumn<bool>("ozetMi");
    QTest::addRow("eski-karistirilmis") << "B65E830A6F" << false;
    QTest::addRow("bos") << "" << false;
    QTest::addRow("argon2i") << "$argon2i$v=19$m=65536,t=2,p=1$c2FsdA$aGFzaA" << false;
    QTest::addRow("buyuk-harf-onek") << "$ARGON2ID$v=19$m=65536,t=2,p=1$c2FsdA$aGFzaA" << false;
    QTest::addRow("bozuk-argon2id") << "$argon2id$bozuk" << true;
    QTest::addRow("cok-uzun") << "$argon2id$" + QString(500, u'a') << true;
}

void tst_Passwords::hashRefusesWhatIsNotAHash()
{
    QFETCH(QString, kayitli);
    QFETCH(bool, ozetMi);
    QCOMPARE(users::SifreOzetiMi(kayitli), ozetMi);
    QVERIFY(!users::SifreOzetiDogrula(kayitli, u"admin"_s));
}

QTEST_GUILESS_MAIN(tst_Passwords)
#include "tst_passwords.moc"
