#include "students/student_fields.h"

#include "store/schema.h"
#include "students/student_record.h"

namespace students {

namespace {

const QString Ogr = QStringLiteral("Ogrenci");
const QString Nufus = QStringLiteral("OgrenciNufus");

// A field of the list; a text's size comes from the declaration of its table.
OgrenciAlani alan(const QString &tablo, Bolum bolum, const QString &ad, const QString &etiket,
                  Giris giris = Giris::Metin, const QStringList &secenekler = {})
{
    OgrenciAlani a{tablo, ad, etiket, giris, bolum, secenekler};
    if (giris == Giris::Metin || giris == Giris::Liste) {
        a.boyut = store::schema::textSize(store::Store::Year, tablo, ad);
    }
    return a;
}

// The mother's and the father's fields: one set each, under the parent's name in the field.
void anneBaba(QList<OgrenciAlani> &r, Bolum bolum, const QString &kim, const QString &isAdresi)
{
    const QString p = QStringLiteral("Ogr_") + kim + QLatin1Char('_');
    auto add = [&](const QString &ad, const QString &etiket, Giris giris = Giris::Metin) {
        r << alan(Ogr, bolum, ad, etiket, giris);
    };
    add(p + QStringLiteral("TcNo"), QStringLiteral("T.C. Kimlik No :"));
    add(p + QStringLiteral("Adi"), QStringLiteral("Adı :"));
    add(p + QStringLiteral("Soyadi"), QStringLiteral("Soyadı :"));
    add(p + QStringLiteral("Meslegi"), QStringLiteral("Mesleği :"));
    add(p + QStringLiteral("Gorevi"), QStringLiteral("Görevi :"));
    add(p + QStringLiteral("isYeri"), QStringLiteral("İş Yeri :"));
    add(p + QStringLiteral("isyeriSahibiMi"), QStringLiteral("İş Yeri Sahibi"), Giris::Onay);
    add(p + QStringLiteral("isTel"), QStringLiteral("İş Telefonu :"));
    add(p + QStringLiteral("EvTel"), QStringLiteral("Ev Telefonu :"));
    add(p + QStringLiteral("CepTel"), QStringLiteral("Cep Telefonu :"));
    add(p + QStringLiteral("Fax"), QStringLiteral("Fax :"));
    add(p + QStringLiteral("Email"), QStringLiteral("e-mail :"));
    add(isAdresi, QStringLiteral("İş Adresi :"));
}

QList<OgrenciAlani> tablo()
{
    using G = Giris;
    QList<OgrenciAlani> r;
    auto ogr = [&r](const char *ad, const char *etiket, G giris = G::Metin,
                    const QStringList &secenekler = {}) {
        r << alan(Ogr, Bolum::Ogrenci, QString::fromLatin1(ad), QString::fromUtf8(etiket), giris,
                  secenekler);
    };
    ogr("Ogr_Numarasi", "Öğrenci No :");
    ogr("Ogr_Adi", "Adı :");
    ogr("Ogr_Soyadi", "Soyadı :");
    ogr("Ogr_Sinif", "Sınıfı :", G::Liste);
    ogr("Ogr_Bolumu", "Alan / Bölüm :", G::Liste);
    ogr("Ogr_YabanciDil", "Yabancı Dili :", G::Liste);
    ogr("Ogr_Kayit_Turu", "Kayıt Türü :", G::SabitListe,
        {QStringLiteral("Yeni Kayıt"), QStringLiteral("Nakil Geldi"),
         QStringLiteral("Kayıt Yenileme")});
    ogr("Ogr_Adres", "Adres :");
    ogr("Ogr_Adres_PostaKodu", "Posta Kodu :");
    ogr("Ogr_Semt", "Semt :");
    ogr("Ogr_Il", "Şehir :");
    ogr("Ogr_Telefon", "Telefon :");
    ogr("Ogr_CepTelefon", "Cep Telefonu :");
    ogr("Ogr_Email", "e-mail :");
    ogr("Ogr_Kayit_Tarihi", "Kayıt Tarihi :", G::Tarih);
    ogr("Ogr_Kayit_Silme_Tarihi", "Kayıt Silme Tarihi :", G::Tarih);
    ogr("Ogr_TaahutNo", "Taahhütname No : ");
    ogr("Ogr_Muaf", "Muaf", G::Onay);
    ogr("Ogr_Ayrildi", "Ayrıldı", G::Onay);

    auto hesap = [&r](const char *ad, const char *etiket, G giris = G::Metin,
                      const QStringList &secenekler = {}) {
        r << alan(Ogr, Bolum::Hesap, QString::fromLatin1(ad), QString::fromUtf8(etiket), giris,
                  secenekler);
    };
    hesap("Ogr_CariHesap_Kodu", "Cari Hesap No");
    hesap("Ogr_Ucret_Odeme_Turu", "Ücret Ödeme Türü", G::SiraListe,
          {QStringLiteral("Taksitli Ödeme"), QStringLiteral("Peşin Ödeme"),
           QStringLiteral("Banka Kredisi (STS)")});
    hesap("Ogr_EgitimDestekDurumu", "Eğitim Destek Durumu", G::SiraListe,
          {QStringLiteral("BAŞVURU YAPTI"), QStringLiteral("DESTEK ALIYOR"),
           QStringLiteral("KABUL EDİLMEDİ")});

    auto veli = [&r](const char *ad, const char *etiket, G giris = G::Metin) {
        r << alan(Ogr, Bolum::Veli, QString::fromLatin1(ad), QString::fromUtf8(etiket), giris);
    };
    veli("Ogr_Veli_Adi", "Adı :");
    veli("Ogr_Veli_Soyadi", "Soyadı :");
    veli("Ogr_Veli_Yakinlik", "Yakınlığı :");
    veli("Ogr_Veli_MernisNo", "T.C.KimlikNo:");
    veli("Ogr_Veli_Isi", "Mesleği :");
    veli("Ogr_Veli_Gorevi", "Görevi :");
    veli("Ogr_Veli_Isyeri", "İş Yeri :");
    veli("Ogr_Veli_Isyeri_SahibiMi", "İş Yeri Sahibi", G::Onay);
    veli("Ogr_Veli_Ev_Adresi", "Ev Adresi :");
    veli("Ogr_Veli_EvAdres_PostaKodu", "Posta Kodu :");
    veli("Ogr_Veli_Ev_Telefon", "Ev Telefonu :");
    veli("Ogr_Veli_Is_Adresi", "İş Adresi :");
    veli("Ogr_Veli_IsAdres_PostaKodu", "İş Posta Kodu :");
    veli("Ogr_Veli_Is_Telefon", "İş Telefonu :");
    veli("Ogr_Veli_CepTelefon", "Cep Telefonu :");
    veli("Ogr_Veli_Email", "e-mail :");
    veli("Ogr_Veli_Fax", "Fax :");
    veli("Ogr_Veli_Maas", "Maaşı :", G::Para);
    veli("Ogr_Veli_KrediKarti", "K. Kartı No :");
    veli("Ogr_Veli_KK_SonGec", "Kredi Kartı Son Geçerlilik Tarihi");
    veli("Ogr_FaturaAdiSoyadi", "Faturanın Kesildiği Adı Soyadı :");
    veli("Ogr_FaturaAdres", "Fatura Adresi :");
    veli("Ogr_Diger_VergiAdi", "Vergi Dairesi Adı:");
    veli("Ogr_Diger_vergiNo", "Vergi No :");

    anneBaba(r, Bolum::Anne, QStringLiteral("Ana"), QStringLiteral("Ogr_Anne_Is_Adresi"));
    anneBaba(r, Bolum::Baba, QStringLiteral("Baba"), QStringLiteral("Ogr_Baba_Is_Adresi"));

    auto nufus = [&r](const char *ad, const char *etiket, G giris = G::Metin,
                      const QStringList &secenekler = {}) {
        r << alan(Nufus, Bolum::Nufus, QString::fromLatin1(ad), QString::fromUtf8(etiket), giris,
                  secenekler);
    };
    nufus("Ogr_MernisNo", "T.C. Kimlik No :");
    nufus("Ogr_Nufus_Baba_Adi", "Baba Adı :");
    nufus("Ogr_Nufus_Ana_Adi", "Ana Adı :");
    nufus("Ogr_Nufus_Dogum_Yeri", "Doğum Yeri :");
    nufus("Ogr_Nufus_Dogum_Tarih", "Doğum Tarihi :", G::Tarih);
    nufus("Ogr_Nufus_Cinsiyet", "Cinsiyeti :", G::SabitListe,
          {QStringLiteral("ERKEK"), QStringLiteral("KIZ")});
    nufus("Ogr_Nufus_Medeni_Hali", "Medeni Hali :", G::SabitListe,
          {QStringLiteral("BEKAR"), QStringLiteral("EVLİ")});
    nufus("Ogr_Nufus_Kan_grubu", "Kan Grubu :", G::SabitListe,
          {QStringLiteral("A (RH+)"), QStringLiteral("A (RH-)"), QStringLiteral("B (RH+)"),
           QStringLiteral("B (RH-)"), QStringLiteral("AB(RH+)"), QStringLiteral("AB(RH-)"),
           QStringLiteral("0 (RH+)"), QStringLiteral("0 (RH-)")});
    nufus("Ogr_Nufus_Dini", "Dini :", G::SabitListe,
          {QStringLiteral("İSLAM"), QStringLiteral("HRİSTİYAN"), QStringLiteral("MUSEVİ"),
           QStringLiteral("DİĞER")});
    nufus("Ogr_Nufus_Uyrugu", "Uyruğu :");
    nufus("Ogr_Nufus_Ili", "İli :");
    nufus("Ogr_Nufus_Ilce", "İlçesi :");
    nufus("Ogr_Nufus_Mahalle_Koy", "Mahalle / Köy :");
    nufus("Ogr_Nufus_Cilt", "Cilt No :");
    nufus("Ogr_Nufus_Aile_Sira_No", "Aile Sıra No :");
    nufus("Ogr_Nufus_Sira_No", "Sıra No :");
    nufus("Ogr_Nufus_Kayit_No", "Kayıt No :");
    nufus("Ogr_Nufus_Cuzdan_Seri_No", "Cüzdan Seri No :");
    nufus("Ogr_Nufus_Verildigi_Nufus", "Verildiği Yer :");
    nufus("Ogr_Nufus_Verilis_Nedeni", "Veriliş Nedeni :");
    nufus("Ogr_Nufus_Veris_Tarihi", "Veriliş Tarihi :", G::Tarih);

    // Two boxes take less than their fields hold: the number is kept as a whole number, of at
    // most as many digits as the largest one; the card number is kept encrypted, which takes
    // more room than the number itself.
    for (OgrenciAlani &a : r) {
        if (a.ad == QLatin1String("Ogr_Numarasi")) {
            a.boyut = int(QString::number(EnBuyukOgrenciNo).size());
        } else if (a.ad == KartNoAlani) {
            a.boyut = KartNoUzunlugu;
        }
    }
    return r;
}

QStringList alanlari(const QString &tabloAdi)
{
    QStringList r;
    for (const OgrenciAlani &a : OgrenciAlanTablosu()) {
        if (a.tablo == tabloAdi) {
            r << a.ad;
        }
    }
    return r;
}

} // namespace

const QList<OgrenciAlani> &OgrenciAlanTablosu()
{
    static const QList<OgrenciAlani> list = tablo();
    return list;
}

const OgrenciAlani *OgrenciAlaniBul(const QString &ad)
{
    for (const OgrenciAlani &a : OgrenciAlanTablosu()) {
        if (a.ad == ad) {
            return &a;
        }
    }
    return nullptr;
}

const QStringList &OgrenciAlanlari()
{
    static const QStringList fields = alanlari(Ogr) << KardesSayisiAlani;
    return fields;
}

const QStringList &NufusAlanlari()
{
    static const QStringList fields = alanlari(Nufus);
    return fields;
}

const QList<KardesAlani> &KardesAlanlari()
{
    static const QList<KardesAlani> list = [] {
        QList<KardesAlani> r;
        auto add = [&r](const char *ad, const char *etiket) {
            const QString field = QString::fromLatin1(ad);
            r << KardesAlani{field, QString::fromUtf8(etiket),
                             store::schema::textSize(store::Store::Year,
                                                     QStringLiteral("OgrenciKardesler"), field)};
        };
        add("OgrKardesAd", "Ad");
        add("OgrKardesSoyad", "Soyad");
        add("OgrKardesOkul", "Okuduğu okul");
        add("OgrKardesSinif", "Sınıf");
        return r;
    }();
    return list;
}

} // namespace students
