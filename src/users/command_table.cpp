#include "users/command_table.h"

namespace users {

namespace {

// Menus of the menu band.
const QString SABIT = QStringLiteral("popSabitBilgiler");
const QString ILK = QStringLiteral("popIlkIslem");
const QString ODEME = QStringLiteral("popOdemeIslemleri");
const QString RAPOR = QStringLiteral("popRaporlar");
const QString RAPOR_SEKIL = QStringLiteral("popRaporOdemeSekli"); // under RAPOR
const QString SERVIS = QStringLiteral("popOzelServis");
const QString FATURA = QStringLiteral("popFaturaSenet");
const QString MESAJ = QStringLiteral("popMesaj");
const QString KASA = QStringLiteral("popKasa");
const QString BAND; // tool band only

struct Row
{
    const char *tool;
    const char *caption;
    const char *screen;
    bool okulTesti;
    const QString *menu;
    bool band;
};

QList<Komut> build()
{
    // Tool names, captions, screens and school tests as the program has always had them; the
    // menu a command stands under only groups them for the menu band. A '&' marks the letter of
    // the entry in its menu, one letter for each entry of a menu; the caption itself is without.
    static const Row rows[] = {
        {"btnCalismaAc", "Çalışma Aç", "frmCalismaAc", false, &BAND, true},
        {"btnOgrenciBilgileri", "", "FrmOgrenci", true, &BAND, true},
        {"popOgrenciBilgileri", "Öğrenci Bilgileri", "FrmOgrenci", true, &BAND, false},
        {"popYoneticiRaporu", "Yönetici Raporu", "FrmYoneticiRaporu", true, &BAND, false},
        {"popYapilanOdeme", "&Yapılan Ödemenin İşlenmesi", "FrmOdemeIsleme", true, &ODEME, false},
        {"popBankayaOdeme", "Bankaya &Gelen Ödemenin İşlenmesi", "FrmBankayaGelenOdemeIsleme", true,
         &ODEME, false},
        {"popOtomatikOdeme", "&Otomatik Toplu Ödeme", "FrmOtomatikOdeme", true, &ODEME, false},
        {"popAidatIade", "&Aidat İade İşlemleri", "Frm_Aidat_Iade", false, &ODEME, false},
        {"popKimdenTahsilatYapilacak", "(&A) Kimden Tahsilat Yapılacak?",
         "FrmKimdenTahsilatYapilacak", true, &RAPOR, false},
        {"popNeKadarTahsilatYapildi", "(B) &Ne Kadar Tahsilat Yapıldı?",
         "FrmNeKadarTahsilatYapildi", true, &RAPOR, false},
        {"popYillikRapor", "(&C) Yıllık Rapor", "FrmYillikRapor", true, &RAPOR, false},
        {"popTopluCari", "&Toplu Cari Detay Listesi", "FrmcariDetayToplu", false, &RAPOR, false},
        {"popTaksitOdemeRaporu", "Taksit Ödeme &Raporu", "FrmTaksitOdemeRaporu", true, &RAPOR,
         false},
        {"popBugunBankayaYatirilan", "&Bankaya Yapılan Ödemeler", "FrmBankayaYatirilan", true,
         &RAPOR_SEKIL, false},
        {"popKrediOdeme", "&Kredi Kartı İle Ödeme", "FrmBankayaYatirilan", true, &RAPOR_SEKIL,
         false},
        {"popBugunYapilanTahsilatlar", "&Nakit-Çek-Senet ile Yapılan Tahsilatlar",
         "FrmNakitTahsilatlar", true, &RAPOR_SEKIL, false},
        {"popBloke", "Bloke &Hesap ile Yapılan Ödemeler", "FrmBankayaYatirilan", true, &RAPOR_SEKIL,
         false},
        {"popMailOrder", "&Mail Order İle Yapılan Ödemeler", "FrmBankayaYatirilan", true,
         &RAPOR_SEKIL, false},
        {"popDiger", "&Diğer Şekilde Yapılan Ödemeler", "FrmBankayaYatirilan", true, &RAPOR_SEKIL,
         false},
        {"popBorcuOlanlar", "Borcu &Olanlar/Olmayanlar", "FrmBorcuOlanlar", true, &RAPOR, false},
        {"popKatkiPayiToplamaListesi", "&Katkı Payı Toplama Listesi", "FrmKatkiPayiToplamaListesi",
         true, &RAPOR, false},
        {"popKatkiPayiIcmalCetveli", "Katkı &Payı İcmal Cetveli", "FrmKatkiPayiIcmalCetveli", true,
         &RAPOR, false},
        {"popAyBazindaOdemeDurumuListesi", "Ay Ba&zında Ödeme Durumu Listesi",
         "FrmAyBazindaOdemeDurumuListesi", true, &RAPOR, false},
        {"popAylaraGoreOgrenciOdemeListesi", "Aylara &Göre Öğrenci Ödeme Listesi",
         "FrmAylaraGoreOgrenciOdemeListesi", true, &RAPOR, false},
        {"popSinifaGoreOdemeDurumu", "Sını&fa Göre Ödeme Durumu", "FrmSinifaGoreOdemeListesi", true,
         &RAPOR, false},
        {"popOgrencilereGoreOdemeDurumu", "Ö&ğrencilere Göre Ödeme Durumu",
         "FrmOgrencilereGoreOdemeListesi", true, &RAPOR, false},
        {"popEylulAgustosTahsilatlari", "&Eylül-Ağustos Aylarında Ne Kadar Tahsilat Yapıldı",
         "FrmEylulAgustosTahsilat", true, &RAPOR, false},
        {"popOdemePlani", "Öde&me Planı Listesi", "Frm_Odeme_Plani", false, &RAPOR, false},
        {"popSerbestListe", "&Serbest Listeleme", "frm_serbest_liste_dizayn", false, &RAPOR, false},
        {"popYillikCariDurumRaporu", "Yıllık Cari &Durum Raporu", "FrmYillikCariDurumRaporu", true,
         &RAPOR, false},
        {"popOgrencilereGoreOdemeDurumu2", "&Öğrenci Bazında Yapılan Ödemelerin Ayrıntıları",
         "FrmOgrencilereGoreOdemeListesi2", true, &RAPOR, false},
        {"popGecikmisBorclarListesi", "Öğrenci &Bazında Gecikmiş Borçlar Listesi",
         "frmGecikmisBorclarListesi", true, &RAPOR, false},
        {"popOgrenciUcretleriListesi", "Ögrenci &Ücretleri Listesi", "FrmOgrenciUcretleri", true,
         &RAPOR, false},
        {"popOdemeTebligati", "&Ödeme Tebligatı", "FrmOdemeTebligati", true, &FATURA, false},
        {"popOdemeListesi", "Ödeme &Listesi", "FrmOdemeListesi", true, &RAPOR, false},
        {"popTaahhutnameListesi", "&Taahhütname Listesi", "FrmTaahhutname", true, &FATURA, false},
        {"popBankaDisketi", "&Banka Disketi Hazırlama", "FrmBankaDisketi", true, &ODEME, false},
        {"popBursListesi", "Öğrenci B&urs Listesi", "FrmOgrenciAidat.BursListesi", false, &RAPOR,
         false},
        {"popSenetDokumu", "&Senet Dökümü", "FrmSenetDokumu", true, &FATURA, false},
        {"popFaturaDokumu", "&Aylık Toplu Fatura Çekimi", "FrmFaturaDokumu_Ayrinti", true, &FATURA,
         false},
        {"popFaturaLst", "Fatura &Listesi", "FrmFaturaLst", true, &FATURA, false},
        {"popIskontoYapilanOgrenciler", "İskonto &Yapılan Öğrenciler",
         "FrmIskontaYapilanOgrenciler", true, &RAPOR, false},
        {"popFaturaIptal", "&Fatura İptali", "Frm_Fatura_Sil", false, &FATURA, false},
        {"popFaturasiz", "Faturası &Çekilmemiş Ödemeler", "Frm_Faturasiz_Odemeler", false, &FATURA,
         false},
        {"popHizliOgrenciGirisi", "&Hızlı Öğrenci Girişi", "FrmHizliOgrenciKayit", true, &ILK,
         false},
        {"popTopluNufusBilgisiIsleme", "TopluNüfus &Bilgisi işleme", "FrmTopluNufusBilgisiIsleme",
         true, &ILK, false},
        {"popTopluVeliIsimAdresIsleme", "Toplu &Veli İsim/Adres İşleme",
         "FrmTopluVeliBilgisiAdresIsleme", true, &ILK, false},
        {"popTopluBorclandirma", "&Toplu Borçlandırma", "FrmTopluBorclandirma", true, &ILK, false},
        {"popTopluBorcIptali", "To&plu Borç İptali", "FrmTopluBorcIptali", true, &ILK, false},
        {"popTumBorcTanimlarininIptali", "Tü&m Borç Tanımlarının İptali", "FrmTumBorcIptali", true,
         &ILK, false},
        {"popTopluBorcTanimiDegistirme", "Toplu Borç Tanımı &Değiştirme",
         "FrmTopluBorcTanimiDegistirme", true, &ILK, false},
        {"popYTLCevrim", "&Excel Öğrenci Aktar", "Form_Excel_Ogrenci_Aktar", true, &ILK, false},
        {"popSinifAtlatma", "Sınıf &Atlatma", "Form_Sinif_Atlatma", true, &ILK, false},
        {"popDigerKurumOgrenciAktar", "Diğer &Okullara Bilgi Aktarma",
         "frmDigerKurumlaraOgrenciAktar", false, &ILK, false},
        {"popDosAidatCevrim", "DOS Aidat Bilgi &Çevrimi", "FrmDosBilgiCevrimi", false, &ILK, false},
        {"popBakimIslemi", "&Bakım İşlemi", "FrmBakim", true, &SERVIS, false},
        {"popYedeklemeIslemleri", "&Yedekleme İşlemleri", "FrmYedeklemeIslemleri", true, &SERVIS,
         false},
        {"popProgramaGirisSifresiDegistirme", "&Programa Giriş Şifresi Değiştirme",
         "FrmProgramaGirisSifresiDegistirme", false, &SABIT, false},
        {"popLogGoster", "Yapılan &Değişiklerin Gösterilmesi", "Frm_Log", true, &SERVIS, false},
        {"popTopluBorcSinifDegistirme", "Toplu &Sınıf Değiştirme", "FrmTopluSinifDegistirme", false,
         &ILK, false},
        {"popOkulBilgileri", "&Okul Bilgileri", "FrmOkulBilgileri", false, &SABIT, false},
        {"popOnayBilgiGirisi", "Onay &Bilgi Girişi", "frmOnay", false, &SABIT, false},
        {"btnFaturaDizayn", "&Fatura Dizaynı", "FrmEvrakDizayn", false, &SABIT, false},
        {"btnMAKBUZdizayn", "&Makbuz Dizaynı", "FrmMakbuzDizayn", false, &SABIT, false},
        {"popKullanici", "&Kullanıcı Belirleme ve Şifre", "Kullanici_Sifre", false, &SABIT, false},
        {"btnOkulBilgileri", "Okul Bilgileri", "FrmOkulBilgileri", false, &BAND, true},
        {"btnCariDurum", "Cari Durum", "FrmOgrenciAidat", true, &BAND, true},
        {"btnYedekAl", "Yedek Al", "FrmYedeklemeIslemleri", true, &BAND, true},
        {"btnYedekAc", "Yedek Aç", "FrmYedeklemeIslemleri", true, &BAND, true},
        {"btnCikis", "Çıkış", "", false, &BAND, true},
        {"cmdLogo", "&Logo Ekle", "frm_LogoEkleme", true, &SABIT, false},
        {"popOgrenciAktar", "&Öğrenci Aktarımı", "FrmOgrenciAktarimi", false, &ILK, false},
        {"popAidatTanimlama", "&Aidat/Taksit Tanımlaması", "FrmAidatTanimlama", false, &SABIT,
         false},
        {"popBankaEkle", "Banka &Ekle", "FrmBanka_Ekle", false, &SABIT, false},
        {"popMsjParam", "Mesaj &Parametreleri", "Frm_SMSSabitBilgiler", false, &MESAJ, false},
        {"popVelimesaj", "Özel &Mesaj Gönderme", "Frm_OzelSms", false, &MESAJ, false},
        {"popOgrDogumGunu", "Öğrenci &Doğum Günü Mesajları", "Frm_SmsDogumgunu", false, &MESAJ,
         false},
        {"popOgrTaksit", "Öğrenci &Taksit Bildirim Mesajları", "Frm_SmsTaksit", false, &MESAJ,
         false},
        {"popGonMesajLst", "&Gönderilen Mesaj Listesi", "Frm_SMSSendList", false, &MESAJ, false},
        {"popKasaislemleri", "&Kasa İşlemleri", "frmKASAgiris", true, &KASA, false},
        {"popKasaKodlari", "Kasa İşlem Kodları &Tanımla", "frmKASA", true, &KASA, false},
        {"popPersonelTanimla", "&Personel Tanımla", "frmKASAPersonel", true, &KASA, false},
        {"popEgitimDestekDurumGirisi", "&Eğitim Destek Durum Girişi ve  Listesi",
         "FRM_EgitimDestekDurumGirisi", false, &ODEME, false},
        {"popEgitimDestekOdemeGirisi", "Eğitim &Destek Ödeme Girişi ve  Listesi",
         "FRM_EgitimDestekOdemeGirisi", false, &ODEME, false},
        {"popCikis", "Çıkış", "", false, &BAND, false},
    };
    QList<Komut> list;
    for (const Row &r : rows) {
        const QString menuCaption = QString::fromUtf8(r.caption);
        QString caption = menuCaption;
        caption.remove(u'&');
        list.append(Komut{QString::fromLatin1(r.tool), caption, QString::fromLatin1(r.screen),
                          r.okulTesti, *r.menu, r.band, menuCaption});
    }
    return list;
}

} // namespace

const QList<Komut> &KomutTablosu()
{
    static const QList<Komut> s_table = build();
    return s_table;
}

const Komut *KomutBul(const QString &tool)
{
    for (const Komut &k : KomutTablosu()) {
        if (k.tool == tool)
            return &k;
    }
    return nullptr;
}

const QList<AnaMenu> &AnaMenuler()
{
    static const QList<AnaMenu> s_menus = {
        {SABIT, QStringLiteral("&Sabit Bilgiler")},
        {ILK, QStringLiteral("İ&lk İşlemler")},
        {QStringLiteral("popOgrenciBilgileri"), QStringLiteral("Öğrenci &Bilgileri")},
        {ODEME, QStringLiteral("Ö&deme İşlemleri")},
        {KASA, QStringLiteral("K&asa")},
        {RAPOR, QStringLiteral("&Raporlar")},
        {QStringLiteral("popYoneticiRaporu"), QStringLiteral("&Yönetici Raporu")},
        {FATURA, QStringLiteral("&Fatura / Senet")},
        {MESAJ, QStringLiteral("&Mesaj")},
        {SERVIS, QStringLiteral("Ö&zel Servis")},
        // The reports of the payments by the way they were made, a menu of their own so that
        // every entry of the reports keeps a letter.
        {RAPOR_SEKIL, QStringLiteral("Ödeme &Şekline Göre Tahsilatlar"), RAPOR},
    };
    return s_menus;
}

bool HakTestsiz(const QString &tool)
{
    return tool == QLatin1String("popDiger") || tool == QLatin1String("popBloke")
           || tool == QLatin1String("popMailOrder");
}

const QStringList &CalismaGerektirenler()
{
    static const QStringList s_list = {
        QStringLiteral("btnOkulBilgileri"),
        QStringLiteral("btnCariDurum"),
        QStringLiteral("btnYedekAl"),
        QStringLiteral("btnYedekAc"),
        QStringLiteral("popSabitBilgiler"),
        QStringLiteral("popIlkIslem"),
        QStringLiteral("popOgrenciBilgileri"),
        QStringLiteral("popOdemeIslemleri"),
        QStringLiteral("popRaporlar"),
        QStringLiteral("popYoneticiRaporu"),
        QStringLiteral("popOzelServis"),
        QStringLiteral("popFaturaSenet"),
        // the two menus that group commands which sit elsewhere on the old bands
        QStringLiteral("popMesaj"),
        QStringLiteral("popKasa"),
        QStringLiteral("btnOgrenciBilgileri"),
    };
    return s_list;
}

} // namespace users
