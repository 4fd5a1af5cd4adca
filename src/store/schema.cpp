#include "store/schema.h"

namespace store::schema {

namespace {

using T = FieldType;

Field f(const QString &name, FieldType type, int size = 0)
{
    return Field{name, type, type == T::Text ? size : 0};
}
Field text(const QString &name, int size)
{
    return f(name, T::Text, size);
}
Field autoNumber(const QString &name)
{
    Field field = f(name, T::Long);
    field.autoNumber = true;
    return field;
}
Field later(Field field)
{
    field.added = true;
    return field;
}
Index index(const QString &name, const QStringList &fields, bool unique = false)
{
    return Index{name, fields, unique, false};
}
Index laterIndex(const QString &name, const QStringList &fields, bool unique = false)
{
    return Index{name, fields, unique, true};
}
// The rows whose field is still Null: an index that stays empty, so that the back-fill that
// opening a year runs every time ("... WHERE f IS NULL") finds nothing without reading the
// whole ledger.
Index nullsOf(const QString &table, const QString &field)
{
    return Index{table + QLatin1Char('_') + field + QStringLiteral("_Bos"),
                 {field},
                 false,
                 true,
                 field + QStringLiteral(" IS NULL")};
}

// The guardian's, mother's and father's fields share sizes.
void addParent(std::vector<Field> &fields, const QString &who)
{
    const QString p = QStringLiteral("Ogr_") + who + QLatin1Char('_');
    fields.push_back(later(text(p + QStringLiteral("TcNo"), 20)));
    fields.push_back(later(text(p + QStringLiteral("Adi"), 50)));
    fields.push_back(later(text(p + QStringLiteral("Soyadi"), 50)));
    fields.push_back(later(text(p + QStringLiteral("Meslegi"), 50)));
    fields.push_back(later(text(p + QStringLiteral("Gorevi"), 50)));
    fields.push_back(later(text(p + QStringLiteral("isYeri"), 50)));
    fields.push_back(later(f(p + QStringLiteral("isyeriSahibiMi"), T::Byte)));
    fields.push_back(later(text(p + QStringLiteral("isTel"), 20)));
    fields.push_back(later(text(p + QStringLiteral("EvTel"), 20)));
    fields.push_back(later(text(p + QStringLiteral("Fax"), 20)));
    fields.push_back(later(text(p + QStringLiteral("Email"), 50)));
    fields.push_back(later(text(p + QStringLiteral("CepTel"), 20)));
}

std::vector<Table> globalTables()
{
    std::vector<Table> t;
    t.push_back({QStringLiteral("Calisma"),
                 Store::Global,
                 false,
                 {autoNumber(QStringLiteral("CalismaID")), text(QStringLiteral("CalismaAdi"), 50),
                  text(QStringLiteral("DataFile"), 50)},
                 {}});
    // Username holds the scrambled name, Password an Argon2id hash (or, until the first login,
    // the old scrambled password).
    t.push_back({QStringLiteral("Sifre"),
                 Store::Global,
                 false,
                 {text(QStringLiteral("Username"), 100), text(QStringLiteral("Password"), 255)},
                 {}});
    // Settings that lived in files beside the program, shared by every workstation.
    t.push_back(
        {QStringLiteral("IniAyar"),
         Store::Global,
         false,
         {text(QStringLiteral("Dosya"), 60), text(QStringLiteral("Bolum"), 255),
          text(QStringLiteral("Anahtar"), 255), f(QStringLiteral("Deger"), T::Memo)},
         {index(QStringLiteral("IniAyar_Anahtar"),
                {QStringLiteral("Dosya"), QStringLiteral("Bolum"), QStringLiteral("Anahtar")},
                true)}});

    // Students' photographs, kept in the store so that every workstation sees them: one a
    // student of a working year, by the year's store name and the student's key.
    t.push_back({QStringLiteral("OgrenciFotograf"),
                 Store::Global,
                 false,
                 {text(QStringLiteral("Calisma"), 20), f(QStringLiteral("KayitID"), T::Long),
                  f(QStringLiteral("Resim"), T::Blob)},
                 {index(QStringLiteral("OgrenciFotograf_Anahtar"),
                        {QStringLiteral("Calisma"), QStringLiteral("KayitID")}, true)}});

    // The SMS store.
    t.push_back(
        {QStringLiteral("SabitBilgiler"),
         Store::Global,
         false,
         {text(QStringLiteral("Ulke_Kodu"), 6), f(QStringLiteral("GSM_Number"), T::Integer),
          f(QStringLiteral("GSM_Prefix"), T::Integer), text(QStringLiteral("SMSUser"), 50),
          text(QStringLiteral("SMSPass"), 50), later(f(QStringLiteral("SMS_Paket"), T::Integer)),
          later(f(QStringLiteral("SMS_Long"), T::Boolean))},
         {}});
    t.push_back({QStringLiteral("SMSLog"),
                 Store::Global,
                 false,
                 {text(QStringLiteral("KayitID"), 40), text(QStringLiteral("SessionID"), 20),
                  text(QStringLiteral("MesajTuru"), 5), f(QStringLiteral("MesajMethod"), T::Byte),
                  f(QStringLiteral("Tarih"), T::Date), f(QStringLiteral("MesajSayisi"), T::Integer),
                  f(QStringLiteral("ProgramKodu"), T::Byte), text(QStringLiteral("AktifKurum"), 1),
                  text(QStringLiteral("AktifDonem"), 10), text(QStringLiteral("Sonuc"), 1)},
                 {index(QStringLiteral("SMSLog_Index"), {QStringLiteral("SessionID")}, true)}});
    t.push_back({QStringLiteral("SMSDetay"),
                 Store::Global,
                 false,
                 {autoNumber(QStringLiteral("KayitID")), text(QStringLiteral("SessionID"), 20),
                  f(QStringLiteral("OgrNo"), T::Long), later(text(QStringLiteral("MebsisNo"), 15)),
                  text(QStringLiteral("Ad"), 30), text(QStringLiteral("Soyad"), 30),
                  text(QStringLiteral("Sinif"), 10), text(QStringLiteral("VeliStatu"), 1),
                  text(QStringLiteral("Telefon"), 25), text(QStringLiteral("Mesaj"), 250),
                  text(QStringLiteral("Sonuc"), 1)},
                 {index(QStringLiteral("SMSDetay_SessionID"), {QStringLiteral("SessionID")})}});

    // The free lists.
    t.push_back({QStringLiteral("SerbestListeler"),
                 Store::Global,
                 false,
                 {text(QStringLiteral("Meb_Listeler_Liste_Adi"), 50),
                  text(QStringLiteral("Meb_Listeler_Tablo_Adi"), 30),
                  text(QStringLiteral("Meb_Listeler_Alan_Adi"), 50),
                  text(QStringLiteral("Meb_Listeler_Ilk_Deger"), 50),
                  text(QStringLiteral("Meb_Listeler_Son_Deger"), 50),
                  f(QStringLiteral("Meb_Listeler_Sayfa_Sutunu"), T::Boolean),
                  text(QStringLiteral("Meb_Listeler_Sutun_Baslik"), 20),
                  f(QStringLiteral("Meb_Listeler_Sira_No"), T::Long)},
                 {index(QStringLiteral("SerbestListeler_Liste"),
                        {QStringLiteral("Meb_Listeler_Liste_Adi")})}});
    t.push_back(
        {QStringLiteral("DokumOzellikleri"),
         Store::Global,
         false,
         {text(QStringLiteral("Meb_Listeler_Liste_Adi"), 50),
          text(QStringLiteral("Ust_Baslik"), 100),
          f(QStringLiteral("Ust_Baslik_Her_Sayfaya"), T::Boolean),
          text(QStringLiteral("Alt_Baslik"), 100),
          f(QStringLiteral("Alt_Baslik_Her_Sayfaya"), T::Boolean),
          f(QStringLiteral("Tarih_Her_Sayfaya"), T::Boolean), text(QStringLiteral("Sol_Bosluk"), 5),
          text(QStringLiteral("Sag_Bosluk"), 5), text(QStringLiteral("Ust_Bosluk"), 5),
          text(QStringLiteral("Alt_Bosluk"), 5),
          f(QStringLiteral("Cizelge_Ortalansin"), T::Boolean),
          f(QStringLiteral("Sira_No_Verilsin"), T::Boolean),
          f(QStringLiteral("Liste_Basliklari_Kullanilsin"), T::Boolean),
          f(QStringLiteral("Liste_Basliklari_Her_Sayfaya"), T::Boolean),
          f(QStringLiteral("Sayfa_No_Var"), T::Boolean),
          f(QStringLiteral("Ust_Sayfa_No_Var"), T::Boolean),
          f(QStringLiteral("Alt_Sayfa_No_Var"), T::Boolean), text(QStringLiteral("Kagit_Turu"), 2)},
         {}});
    return t;
}

// Rights of a user on a command; in the global store and, unused but kept, in every year.
Table haklar(Store store)
{
    // A scrambled name is two hex digits a character, so the user-name field is wider than
    // twenty characters: a name of eleven letters must still get its rights.
    return {QStringLiteral("Haklar"),
            store,
            true,
            {text(QStringLiteral("Kullanici_Adi"), 100),
             f(QStringLiteral("Haklar_Okuma"), T::Boolean),
             f(QStringLiteral("Haklar_Yazma"), T::Boolean),
             text(QStringLiteral("Haklar_Program_Adi"), 60),
             text(QStringLiteral("Kullanici_Program"), 60)},
            {}};
}

Table sabit()
{
    std::vector<Field> x = {
        text(QStringLiteral("OkulAdi"), 100),
        text(QStringLiteral("OkulIlAdi"), 50),
        text(QStringLiteral("OkulIlceAdi"), 50),
        f(QStringLiteral("SonSenetNo"), T::Long),
        f(QStringLiteral("SonFaturaNo"), T::Long),
        f(QStringLiteral("SonFisNo"), T::Long),
        text(QStringLiteral("Banka"), 50),
        later(f(QStringLiteral("ParaTuru"), T::Byte)),
        f(QStringLiteral("TaksitYuvarlama"), T::Money),
        later(text(QStringLiteral("ParaBirimi"), 10)),
        text(QStringLiteral("OgretimYili"), 20),
        text(QStringLiteral("Telefon"), 30),
        f(QStringLiteral("DonemBasTarihi"), T::Date),
        f(QStringLiteral("DonemBitTarihi"), T::Date),
        text(QStringLiteral("CariAy"), 6),
        text(QStringLiteral("BaslangicAy"), 6),
        later(text(QStringLiteral("OgrAOtoDeg"), 1)),
        later(f(QStringLiteral("TaksitKilitle"), T::Byte)),
        later(text(QStringLiteral("FisNoKilitle"), 1)),
        later(text(QStringLiteral("TaksitFatura"), 1)),
        later(text(QStringLiteral("OgrKayitSilinenRapordaGoster"), 1)),
        text(QStringLiteral("ResmiListeBaslik"), 100),
        later(f(QStringLiteral("EgitimDestekTutari"), T::Money)),
    };
    for (int i = 1; i <= 4; ++i)
        x.push_back(later(f(QStringLiteral("EgitimDestekAy%1").arg(i), T::Byte)));
    for (int i = 1; i <= 4; ++i)
        x.push_back(later(f(QStringLiteral("EgitimDestekTaksit%1").arg(i), T::Money)));
    x.push_back(later(text(QStringLiteral("MersisNo"), 16)));
    x.push_back(later(text(QStringLiteral("TicaretSicilNo"), 16)));
    x.push_back(later(text(QStringLiteral("VergiSicilNo"), 10)));
    x.push_back(later(text(QStringLiteral("VergiDairesiAdi"), 30)));
    x.push_back(later(text(QStringLiteral("Adres"), 150)));
    return {QStringLiteral("Sabit"), Store::Year, false, x, {}};
}

Table ogrenci()
{
    std::vector<Field> x = {
        autoNumber(QStringLiteral("KayitID")),
        f(QStringLiteral("Ogr_Numarasi"), T::Long),
        text(QStringLiteral("Ogr_Soyadi"), 20),
        text(QStringLiteral("Ogr_Adi"), 20),
        text(QStringLiteral("Ogr_Sinif"), 6),
        text(QStringLiteral("Ogr_YabanciDil"), 30),
        text(QStringLiteral("Ogr_Bolumu"), 30),
        text(QStringLiteral("Ogr_Adres"), 150),
        text(QStringLiteral("Ogr_Adres_PostaKodu"), 10),
        text(QStringLiteral("Ogr_Semt"), 30),
        text(QStringLiteral("Ogr_Il"), 30),
        text(QStringLiteral("Ogr_Telefon"), 20),
        text(QStringLiteral("Ogr_CepTelefon"), 20),
        text(QStringLiteral("Ogr_Email"), 50),
        text(QStringLiteral("Ogr_Veli_Soyadi"), 30),
        text(QStringLiteral("Ogr_Veli_Adi"), 30),
        text(QStringLiteral("Ogr_Veli_Yakinlik"), 20),
        text(QStringLiteral("Ogr_Veli_Isi"), 50),
        text(QStringLiteral("Ogr_Veli_Ev_Adresi"), 150),
        text(QStringLiteral("Ogr_Veli_EvAdres_PostaKodu"), 10),
        text(QStringLiteral("Ogr_Veli_Ev_Telefon"), 20),
        text(QStringLiteral("Ogr_Veli_Is_Adresi"), 150),
        text(QStringLiteral("Ogr_Veli_IsAdres_PostaKodu"), 10),
        text(QStringLiteral("Ogr_Veli_Is_Telefon"), 20),
        text(QStringLiteral("Ogr_Veli_Email"), 50),
        text(QStringLiteral("Ogr_Veli_Fax"), 20),
        text(QStringLiteral("Ogr_Veli_MernisNo"), 20),
        text(QStringLiteral("Ogr_Veli_Gorevi"), 50),
        text(QStringLiteral("Ogr_Veli_Isyeri"), 50),
        f(QStringLiteral("Ogr_Veli_Isyeri_SahibiMi"), T::Byte),
        // brought in by the migration, in its order
        later(f(QStringLiteral("Ogr_Kayit_Tarihi"), T::Date)),
        later(f(QStringLiteral("Ogr_Kayit_Silme_Tarihi"), T::Date)),
        later(text(QStringLiteral("Ogr_Kayit_Turu"), 20)),
        later(text(QStringLiteral("Donem"), 10)),
        later(text(QStringLiteral("Ogr_Diger_vergiNo"), 20)),
        later(text(QStringLiteral("Ogr_Diger_VergiAdi"), 60)),
        later(text(QStringLiteral("Ogr_Veli_CepTelefon"), 20)),
        later(f(QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say"), T::Byte)),
        later(text(QStringLiteral("Ogr_Ayrildi"), 1)),
        later(text(QStringLiteral("Ogr_Muaf"), 1)),
        // kept encrypted, which takes more room than the number itself
        later(text(QStringLiteral("Ogr_Veli_KrediKarti"), 120)),
        later(text(QStringLiteral("Ogr_Veli_KK_SonGec"), 10)),
        later(text(QStringLiteral("Ogr_TaahutNo"), 20)),
        later(text(QStringLiteral("Ogr_FaturaAdiSoyadi"), 60)),
        later(text(QStringLiteral("Ogr_FaturaAdres"), 60)),
        later(f(QStringLiteral("Ogr_Veli_Maas"), T::Money)),
        later(text(QStringLiteral("Ogr_Cari_Durum_Aciklama"), 250)),
    };
    addParent(x, QStringLiteral("Ana"));
    addParent(x, QStringLiteral("Baba"));
    x.push_back(later(text(QStringLiteral("Ogr_CariHesap_Kodu"), 20)));
    x.push_back(later(f(QStringLiteral("Ogr_Ucret_Odeme_Turu"), T::Byte)));
    x.push_back(later(f(QStringLiteral("Ogr_EgitimDestekDurumu"), T::Byte)));
    x.push_back(later(text(QStringLiteral("Ogr_Islem_Yapan_Kullanici"), 20)));
    x.push_back(later(text(QStringLiteral("Ogr_Islem_Yapan_Kullanici_Ilk"), 20)));
    x.push_back(later(text(QStringLiteral("Ogr_Anne_Is_Adresi"), 90)));
    x.push_back(later(text(QStringLiteral("Ogr_Baba_Is_Adresi"), 90)));
    // the sibling fields that the student screen has always added for itself
    x.push_back(later(text(QStringLiteral("KardesAd"), 50)));
    x.push_back(later(text(QStringLiteral("KardesSoyad"), 50)));
    x.push_back(later(text(QStringLiteral("KardesOkul"), 50)));
    // The triple is how the office finds a student, but not unique: a duplicate is allowed
    // when the operator confirms it.
    return {QStringLiteral("Ogrenci"),
            Store::Year,
            false,
            x,
            {index(QStringLiteral("Ogrenci_index2"),
                   {QStringLiteral("Ogr_Numarasi"), QStringLiteral("Ogr_Soyadi"),
                    QStringLiteral("Ogr_Adi")}),
             laterIndex(QStringLiteral("Ogrenci_Ogr_Adi"), {QStringLiteral("Ogr_Adi")}),
             laterIndex(QStringLiteral("Ogrenci_Ogr_Soyadi"), {QStringLiteral("Ogr_Soyadi")}),
             laterIndex(QStringLiteral("Ogrenci_Ogr_Sinif"), {QStringLiteral("Ogr_Sinif")}),
             // The record lock looks a user's marks up by it.
             laterIndex(QStringLiteral("Ogrenci_Islem_Yapan"),
                        {QStringLiteral("Ogr_Islem_Yapan_Kullanici")})}};
}

Table ogrenciNufus()
{
    std::vector<Field> x
        = {f(QStringLiteral("KayitID"), T::Long), text(QStringLiteral("Donem"), 10)};
    const char *texts[] = {"Ogr_Nufus_Baba_Adi", "Ogr_Nufus_Ana_Adi", "Ogr_Nufus_Dogum_Yeri"};
    for (const char *n : texts)
        x.push_back(text(QString::fromLatin1(n), 30));
    x.push_back(f(QStringLiteral("Ogr_Nufus_Dogum_Tarih"), T::Date));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Cinsiyet"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Medeni_Hali"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Kan_grubu"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Dini"), 15));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Ili"), 30));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Ilce"), 30));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Mahalle_Koy"), 50));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Cilt"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Aile_Sira_No"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Sira_No"), 10));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Verildigi_Nufus"), 30));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Verilis_Nedeni"), 30));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Kayit_No"), 20));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Cuzdan_Seri_No"), 20));
    x.push_back(f(QStringLiteral("Ogr_Nufus_Veris_Tarihi"), T::Date));
    x.push_back(text(QStringLiteral("Ogr_Nufus_Uyrugu"), 20));
    x.push_back(text(QStringLiteral("Ogr_MernisNo"), 11));
    return {QStringLiteral("OgrenciNufus"),
            Store::Year,
            false,
            x,
            {laterIndex(QStringLiteral("OgrenciNufus_KayitID"), {QStringLiteral("KayitID")})}};
}

std::vector<Table> yearTables()
{
    std::vector<Table> t;
    t.push_back(sabit());
    t.push_back(
        {QStringLiteral("AidatTanim"),
         Store::Year,
         false,
         {autoNumber(QStringLiteral("KayitID")), text(QStringLiteral("AidatTanim"), 30),
          f(QStringLiteral("AidatToplam"), T::Money), f(QStringLiteral("TaksitSayisi"), T::Integer),
          f(QStringLiteral("Pesinat"), T::Money), f(QStringLiteral("OdemeBasTarihi"), T::Date),
          later(f(QStringLiteral("YTLCevrim"), T::Byte)),
          later(f(QStringLiteral("KDVOrani"), T::Double)),
          later(f(QStringLiteral("AidatTuru"), T::Byte)),
          later(f(QStringLiteral("AidatBirimFiyati"), T::Money)),
          later(f(QStringLiteral("AidatBirimAdeti"), T::Integer))},
         {index(QStringLiteral("AidatTanim_index1"), {QStringLiteral("KayitID")}, true)}});
    t.push_back(
        {QStringLiteral("AidatDetay"),
         Store::Year,
         false,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Long),
          f(QStringLiteral("OdemeTarihi"), T::Date), f(QStringLiteral("OdemeMiktari"), T::Money),
          later(f(QStringLiteral("YTLCevrim"), T::Byte))},
         {index(QStringLiteral("AidatDetay_index1"),
                {QStringLiteral("KayitID"), QStringLiteral("Sira")}, true)}});
    t.push_back(ogrenci());
    t.push_back(ogrenciNufus());
    t.push_back({QStringLiteral("OgrenciOzel"),
                 Store::Year,
                 false,
                 {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("OzelBilgi"), T::Memo)},
                 {laterIndex(QStringLiteral("OgrenciOzel_KayitID"), {QStringLiteral("KayitID")})}});
    // The ledger's sums by month (yyyyMM) of due date and of payment date, kept by the store
    // itself at every write of an installment or a payment.
    t.push_back({QStringLiteral("AyOzeti"),
                 Store::Year,
                 true,
                 {f(QStringLiteral("Ay"), T::Long), f(QStringLiteral("TaksitSayisi"), T::Long),
                  f(QStringLiteral("Odenecek"), T::Money), f(QStringLiteral("Odenen"), T::Money)},
                 {index(QStringLiteral("AyOzeti_Ay"), {QStringLiteral("Ay")}, true)}});
    t.push_back(
        {QStringLiteral("OgrenciKardesler"),
         Store::Year,
         true,
         {f(QStringLiteral("OgrAnaNo"), T::Long), text(QStringLiteral("OgrKardesAd"), 30),
          text(QStringLiteral("OgrKardesSoyad"), 30), text(QStringLiteral("OgrKardesOkul"), 50),
          text(QStringLiteral("OgrKardesSinif"), 20)},
         {laterIndex(QStringLiteral("OgrenciKardesler_OgrAnaNo"), {QStringLiteral("OgrAnaNo")})}});
    t.push_back(
        {QStringLiteral("OgrenciAidatTanim"),
         Store::Year,
         false,
         {f(QStringLiteral("OgrKayitID"), T::Long), autoNumber(QStringLiteral("KayitID")),
          f(QStringLiteral("Sira"), T::Integer), f(QStringLiteral("Borc"), T::Money),
          f(QStringLiteral("Kalan"), T::Money), f(QStringLiteral("AidatID"), T::Long),
          text(QStringLiteral("AidatTanim"), 30), later(f(QStringLiteral("YTLCevrim"), T::Byte)),
          later(f(QStringLiteral("IskontoTutari"), T::Money)),
          later(f(QStringLiteral("Aidatiptal"), T::Boolean)),
          // Raised by every write of the account, so that a save can tell that the rows it
          // read are still the stored ones.
          later(f(QStringLiteral("Surum"), T::Long))},
         {laterIndex(QStringLiteral("OgrenciAidatTanim_index2"), {QStringLiteral("OgrKayitID")}),
          laterIndex(QStringLiteral("OgrenciAidatTanim_AidatID"), {QStringLiteral("AidatID")}),
          nullsOf(QStringLiteral("OgrenciAidatTanim"), QStringLiteral("YTLCevrim")),
          nullsOf(QStringLiteral("OgrenciAidatTanim"), QStringLiteral("IskontoTutari"))}});
    t.push_back(
        {QStringLiteral("OgrenciAidatDetay"),
         Store::Year,
         false,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Integer),
          f(QStringLiteral("OdemeTarihi"), T::Date), f(QStringLiteral("Odenecek"), T::Money),
          f(QStringLiteral("PesinatTaksitID"), T::Byte),
          later(f(QStringLiteral("YTLCevrim"), T::Byte)),
          later(text(QStringLiteral("OdemeSekli"), 20)),
          later(f(QStringLiteral("Fatura_ID"), T::Double)),
          later(autoNumber(QStringLiteral("ID")))},
         {index(QStringLiteral("OgrenciAidatDetay_index1"),
                {QStringLiteral("KayitID"), QStringLiteral("Sira")}, true),
          laterIndex(QStringLiteral("OgrenciAidatDetay_OdemeTarihi"),
                     {QStringLiteral("OdemeTarihi")}),
          nullsOf(QStringLiteral("OgrenciAidatDetay"), QStringLiteral("YTLCevrim")),
          nullsOf(QStringLiteral("OgrenciAidatDetay"), QStringLiteral("Fatura_ID"))}});
    Field aciklama = text(QStringLiteral("Ogr_Cari_Durum_Aciklamasi"), 50);
    aciklama.modelName = QStringLiteral("Aciklama");
    t.push_back(
        {QStringLiteral("OgrenciAidatOdeme"),
         Store::Year,
         false,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Integer),
          f(QStringLiteral("OdemeTarihi"), T::Date), f(QStringLiteral("Odenen"), T::Money),
          aciklama, text(QStringLiteral("OdemeSekli"), 1),
          f(QStringLiteral("PesinatTaksitID"), T::Byte), f(QStringLiteral("FisNo"), T::Double),
          text(QStringLiteral("Kullanici"), 50), later(f(QStringLiteral("Fatura_ID"), T::Double)),
          later(autoNumber(QStringLiteral("ID"))), later(text(QStringLiteral("BankaAdi"), 30)),
          later(f(QStringLiteral("YTLCevrim"), T::Byte)),
          later(f(QStringLiteral("Tahsilat_Vade_Tarihi"), T::Date)),
          later(f(QStringLiteral("Pesinat_Tarihi"), T::Date)),
          later(text(QStringLiteral("Sube"), 50)), later(text(QStringLiteral("Ciro"), 30))},
         {index(QStringLiteral("Idx_Genel"),
                {QStringLiteral("Ogr_Cari_Durum_Aciklamasi"), QStringLiteral("FisNo"),
                 QStringLiteral("KayitID"), QStringLiteral("OdemeSekli"),
                 QStringLiteral("OdemeTarihi"), QStringLiteral("Odenen"),
                 QStringLiteral("PesinatTaksitID"), QStringLiteral("Sira"),
                 QStringLiteral("Kullanici")}),
          laterIndex(QStringLiteral("OgrenciAidatOdeme_KayitID"), {QStringLiteral("KayitID")}),
          laterIndex(QStringLiteral("OgrenciAidatOdeme_OdemeTarihi"),
                     {QStringLiteral("OdemeTarihi")}),
          nullsOf(QStringLiteral("OgrenciAidatOdeme"), QStringLiteral("YTLCevrim"))}});
    t.push_back(
        {QStringLiteral("Fatura"),
         Store::Year,
         false,
         {f(QStringLiteral("OgrKayitID"), T::Long), f(QStringLiteral("KayitID"), T::Long),
          f(QStringLiteral("FaturaTarihi"), T::Date), f(QStringLiteral("FaturaTutar"), T::Money),
          f(QStringLiteral("Iskonta"), T::Money), f(QStringLiteral("OdenenTutar"), T::Money),
          f(QStringLiteral("FaturaNo"), T::Double), later(f(QStringLiteral("YTLCevrim"), T::Byte)),
          later(f(QStringLiteral("KDVOrani"), T::Double)),
          later(f(QStringLiteral("KDVTutari"), T::Money)),
          later(f(QStringLiteral("KDVsizTutar"), T::Money)),
          later(text(QStringLiteral("FaturaAdiSoyadi"), 60)),
          later(text(QStringLiteral("FaturaAdres"), 60)), later(autoNumber(QStringLiteral("ID")))},
         {laterIndex(QStringLiteral("Fatura_OgrKayitID"), {QStringLiteral("OgrKayitID")}),
          laterIndex(QStringLiteral("Fatura_KayitID"), {QStringLiteral("KayitID")}),
          laterIndex(QStringLiteral("Fatura_FaturaNo"), {QStringLiteral("FaturaNo")}),
          nullsOf(QStringLiteral("Fatura"), QStringLiteral("YTLCevrim")),
          nullsOf(QStringLiteral("Fatura"), QStringLiteral("KDVOrani")),
          nullsOf(QStringLiteral("Fatura"), QStringLiteral("KDVTutari")),
          nullsOf(QStringLiteral("Fatura"), QStringLiteral("KDVsizTutar"))}});
    t.push_back(haklar(Store::Year));
    t.push_back({QStringLiteral("IskontoTanim"),
                 Store::Year,
                 true,
                 {autoNumber(QStringLiteral("ID")), text(QStringLiteral("IskontoAciklama"), 30),
                  f(QStringLiteral("IskontoOrani"), T::Single),
                  later(f(QStringLiteral("IskontoTipi"), T::Byte)),
                  later(f(QStringLiteral("IskontoKalanTutardan"), T::Byte)),
                  later(f(QStringLiteral("IskontoSirasi"), T::Byte))},
                 {}});
    t.push_back(
        {QStringLiteral("OgrenciIskonto"),
         Store::Year,
         true,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("IskontoID"), T::Long),
          f(QStringLiteral("IskontoMiktari"), T::Money), text(QStringLiteral("IskontoAdi"), 30),
          f(QStringLiteral("IskontoOrani"), T::Single),
          later(f(QStringLiteral("IskontoMatrahi"), T::Money)),
          later(f(QStringLiteral("IskontoTipi"), T::Byte)),
          later(f(QStringLiteral("IskontoKalanTutardan"), T::Byte)),
          later(f(QStringLiteral("IskontoSirasi"), T::Byte))},
         {laterIndex(QStringLiteral("OgrenciIskonto_KayitID"), {QStringLiteral("KayitID")}),
          laterIndex(QStringLiteral("OgrenciIskonto_IskontoID"), {QStringLiteral("IskontoID")})}});
    t.push_back({QStringLiteral("Bankalar"),
                 Store::Year,
                 true,
                 {autoNumber(QStringLiteral("ID")), text(QStringLiteral("BankaAdi"), 30),
                  text(QStringLiteral("Aciklama"), 30)},
                 {}});
    t.push_back(
        {QStringLiteral("KASA"),
         Store::Year,
         true,
         {f(QStringLiteral("KasaTarih"), T::Date), text(QStringLiteral("KasaTip"), 1),
          text(QStringLiteral("KasaKod"), 3), f(QStringLiteral("KasaTutar"), T::Money),
          text(QStringLiteral("KasaAciklama"), 200), text(QStringLiteral("KasaPersonelKod"), 4),
          text(QStringLiteral("KasaPersonelAdSoyad"), 61), f(QStringLiteral("KasaID"), T::Long)},
         {laterIndex(QStringLiteral("KASA_KasaTarih"), {QStringLiteral("KasaTarih")})}});
    t.push_back({QStringLiteral("KASAKOD"),
                 Store::Year,
                 true,
                 {text(QStringLiteral("GelirTip"), 1), text(QStringLiteral("GelirKod"), 3),
                  text(QStringLiteral("GelirAciklama"), 200)},
                 {index(QStringLiteral("idx_kasakod"),
                        {QStringLiteral("GelirTip"), QStringLiteral("GelirKod")}, true)}});
    std::vector<Field> personel = {
        text(QStringLiteral("PerKodu"), 4),           text(QStringLiteral("PerAd"), 30),
        text(QStringLiteral("PerSoyad"), 30),         text(QStringLiteral("PerGorev"), 45),
        f(QStringLiteral("PerNetUcret"), T::Money),   text(QStringLiteral("PerAdres"), 200),
        text(QStringLiteral("PerMEBsicil"), 30),      text(QStringLiteral("PerSSKsicil"), 30),
        text(QStringLiteral("PerEvTel"), 11),         text(QStringLiteral("PerCepTel"), 11),
        text(QStringLiteral("PerOgrenim"), 30),       text(QStringLiteral("PerAciklama"), 200),
        text(QStringLiteral("PerUcretTipi"), 20),     text(QStringLiteral("PerGrubu"), 20),
        f(QStringLiteral("PerGirisTarihi"), T::Date), text(QStringLiteral("PerCalismiyor"), 1),
        text(QStringLiteral("PerCuzdanNo"), 20),      text(QStringLiteral("PerBaba"), 30),
        text(QStringLiteral("PerAna"), 30),           text(QStringLiteral("PerDin"), 10),
        text(QStringLiteral("PerMedeni"), 5),         text(QStringLiteral("PerILI"), 30),
        text(QStringLiteral("PerILCESI"), 45),        text(QStringLiteral("PerMAHALLE"), 45),
        text(QStringLiteral("PerHANE"), 4),           text(QStringLiteral("PerCiltSayfa"), 4),
        text(QStringLiteral("PerVerildigiYer"), 30),  text(QStringLiteral("PerDogumYer"), 30),
        f(QStringLiteral("PerDogumTarihi"), T::Date),
    };
    t.push_back({QStringLiteral("PERSONEL"),
                 Store::Year,
                 true,
                 personel,
                 {index(QStringLiteral("idx_personel"), {QStringLiteral("PerKodu")}, true)}});
    t.push_back(
        {QStringLiteral("OgrenciBurs"),
         Store::Year,
         true,
         {autoNumber(QStringLiteral("KayitID")), f(QStringLiteral("Ogr_KayitID"), T::Long),
          f(QStringLiteral("OgrenciNo"), T::Long), text(QStringLiteral("OgrenciAdSoyad"), 50),
          text(QStringLiteral("BursAdi"), 40), f(QStringLiteral("BursOrani"), T::Single),
          text(QStringLiteral("BursAciklama"), 200),
          // kept as text, as it always was
          later(text(QStringLiteral("BursMiktari"), 100))},
         {index(QStringLiteral("OgrenciBurs_INX"), {QStringLiteral("KayitID")}, true),
          laterIndex(QStringLiteral("OgrenciBurs_Ogr_KayitID"), {QStringLiteral("Ogr_KayitID")})}});
    t.push_back(
        {QStringLiteral("AidatIade"),
         Store::Year,
         true,
         {autoNumber(QStringLiteral("KayitID")), f(QStringLiteral("Ogr_KayitID"), T::Long),
          text(QStringLiteral("Tarih"), 8), f(QStringLiteral("Tutar"), T::Money),
          f(QStringLiteral("BorcDus"), T::Byte), f(QStringLiteral("GeriOdeme"), T::Byte)},
         {index(QStringLiteral("AidatIade_INX"), {QStringLiteral("KayitID")}, true),
          laterIndex(QStringLiteral("AidatIade_Ogr_KayitID"), {QStringLiteral("Ogr_KayitID")})}});
    return t;
}

// Each change-log table mirrors its table and adds the moment, the user and the operation word.
// A log keeps every row it is given, so none of its indexes is unique.
std::vector<Table> logTables()
{
    const Field tarih = f(QStringLiteral("Tarih"), T::Date);
    const Field kullanici = text(QStringLiteral("Kullanici"), 50);
    const Field islem = text(QStringLiteral("Islem_Turu"), 50);
    std::vector<Table> t;
    t.push_back({QStringLiteral("AidatDetay"),
                 Store::Log,
                 false,
                 {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Long),
                  f(QStringLiteral("OdemeTarihi"), T::Date),
                  f(QStringLiteral("OdemeMiktari"), T::Money), tarih, kullanici, islem},
                 {index(QStringLiteral("AidatDetay_index1"),
                        {QStringLiteral("KayitID"), QStringLiteral("Sira")})}});
    t.push_back(
        {QStringLiteral("AidatTanim"),
         Store::Log,
         false,
         {f(QStringLiteral("KayitID"), T::Long), text(QStringLiteral("AidatTanim"), 30),
          f(QStringLiteral("AidatToplam"), T::Money), f(QStringLiteral("TaksitSayisi"), T::Integer),
          f(QStringLiteral("Pesinat"), T::Money), f(QStringLiteral("OdemeBasTarihi"), T::Date),
          tarih, kullanici, islem},
         {index(QStringLiteral("AidatTanim_index1"), {QStringLiteral("KayitID")})}});
    t.push_back({QStringLiteral("Ogrenci"),
                 Store::Log,
                 false,
                 {f(QStringLiteral("Kayit_Id"), T::Long), text(QStringLiteral("Donem"), 10),
                  f(QStringLiteral("Ogr_Numarasi"), T::Long),
                  text(QStringLiteral("Ogr_Soyadi"), 20), text(QStringLiteral("Ogr_Adi"), 20),
                  text(QStringLiteral("Ogr_Sinif"), 6), tarih, kullanici, islem},
                 {index(QStringLiteral("Ogrenci_index1"), {QStringLiteral("Kayit_Id")}),
                  index(QStringLiteral("Ogrenci_index2"),
                        {QStringLiteral("Ogr_Numarasi"), QStringLiteral("Ogr_Soyadi"),
                         QStringLiteral("Ogr_Adi")})}});
    t.push_back(
        {QStringLiteral("OgrenciAidatDetay"),
         Store::Log,
         false,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Integer),
          f(QStringLiteral("OdemeTarihi"), T::Date), f(QStringLiteral("Odenecek"), T::Money),
          f(QStringLiteral("PesinatTaksitID"), T::Byte), tarih, kullanici, islem},
         {index(QStringLiteral("OgrenciAidatDetay_index1"),
                {QStringLiteral("KayitID"), QStringLiteral("Sira")})}});
    t.push_back(
        {QStringLiteral("OgrenciAidatOdeme"),
         Store::Log,
         false,
         {f(QStringLiteral("KayitID"), T::Long), f(QStringLiteral("Sira"), T::Integer),
          f(QStringLiteral("OdemeTarihi"), T::Date), f(QStringLiteral("Odenen"), T::Money),
          text(QStringLiteral("Aciklama"), 50), text(QStringLiteral("OdemeSekli"), 1),
          f(QStringLiteral("PesinatTaksitID"), T::Byte), f(QStringLiteral("FisNo"), T::Double),
          kullanici, tarih, islem},
         {index(QStringLiteral("Idx_Genel"),
                {QStringLiteral("KayitID"), QStringLiteral("Sira"), QStringLiteral("OdemeTarihi"),
                 QStringLiteral("Odenen"), QStringLiteral("Aciklama"), QStringLiteral("OdemeSekli"),
                 QStringLiteral("PesinatTaksitID"), QStringLiteral("FisNo"),
                 QStringLiteral("Kullanici"), QStringLiteral("Islem_Turu")})}});
    t.push_back(
        {QStringLiteral("OgrenciAidatTanim"),
         Store::Log,
         false,
         {f(QStringLiteral("OgrKayitID"), T::Long), f(QStringLiteral("KayitID"), T::Long),
          f(QStringLiteral("Sira"), T::Integer), f(QStringLiteral("Borc"), T::Money),
          f(QStringLiteral("Kalan"), T::Money), f(QStringLiteral("AidatID"), T::Long),
          f(QStringLiteral("IskontoTutari"), T::Money), f(QStringLiteral("YTLCevrim"), T::Byte),
          tarih, islem, kullanici, text(QStringLiteral("AidatTanim"), 30)},
         {index(QStringLiteral("OgrenciAidatTanim_KayitID"), {QStringLiteral("KayitID")})}});
    t.push_back(
        {QStringLiteral("Fatura"),
         Store::Log,
         false,
         {f(QStringLiteral("OgrKayitID"), T::Long), f(QStringLiteral("KayitID"), T::Long),
          f(QStringLiteral("FaturaTarihi"), T::Date), f(QStringLiteral("FaturaTutar"), T::Money),
          f(QStringLiteral("Iskonta"), T::Money), f(QStringLiteral("OdenenTutar"), T::Money),
          f(QStringLiteral("FaturaNo"), T::Double), f(QStringLiteral("YTLCevrim"), T::Byte),
          f(QStringLiteral("KDVOrani"), T::Double), f(QStringLiteral("KDVTutari"), T::Money),
          f(QStringLiteral("KDVsizTutar"), T::Money), f(QStringLiteral("ID"), T::Long),
          text(QStringLiteral("FaturaAdiSoyadi"), 60), text(QStringLiteral("FaturaAdres"), 60),
          islem, kullanici, tarih},
         {index(QStringLiteral("Fatura_Tarih"), {QStringLiteral("Tarih")})}});
    return t;
}

std::vector<Table> allTables()
{
    std::vector<Table> all = globalTables();
    all.push_back(haklar(Store::Global));
    for (Table &t : yearTables())
        all.push_back(std::move(t));
    for (Table &t : logTables())
        all.push_back(std::move(t));
    return all;
}

} // namespace

const Field *Table::field(const QString &fieldName) const
{
    for (const Field &x : fields) {
        if (x.name.compare(fieldName, Qt::CaseInsensitive) == 0)
            return &x;
    }
    return nullptr;
}

const Index *Table::index(const QString &indexName) const
{
    for (const Index &x : indexes) {
        if (x.name.compare(indexName, Qt::CaseInsensitive) == 0)
            return &x;
    }
    return nullptr;
}

const std::vector<Table> &tables()
{
    static const std::vector<Table> s_tables = allTables();
    return s_tables;
}

const Table *table(Store store, const QString &name)
{
    for (const Table &t : tables()) {
        if (t.store == store && t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    }
    return nullptr;
}

const Field *field(Store store, const QString &tableName, const QString &fieldName)
{
    const Table *t = table(store, tableName);
    return t ? t->field(fieldName) : nullptr;
}

int textSize(Store store, const QString &tableName, const QString &fieldName)
{
    const Field *x = field(store, tableName, fieldName);
    return x && x->type == FieldType::Text ? x->size : 0;
}

const Table &errorTable()
{
    static const Table s_table{
        QStringLiteral("HATALAR"),
        Store::Global,
        false,
        {text(QStringLiteral("MAKINEADI"), 100), text(QStringLiteral("KULLANICI"), 100),
         text(QStringLiteral("MODUL"), 100), text(QStringLiteral("OBJE"), 100),
         f(QStringLiteral("HATA_KODU"), T::Long), f(QStringLiteral("HATA_SATIRI"), T::Long),
         f(QStringLiteral("ACIKLAMA"), T::Memo), f(QStringLiteral("ZAMAN"), T::Date)},
        {}};
    return s_table;
}

} // namespace store::schema
