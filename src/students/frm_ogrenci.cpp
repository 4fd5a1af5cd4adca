#include "students/frm_ogrenci.h"

#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/notifications.h"
#include "ui/screen_registry.h"
#include "users/session.h"
#include "base/turkish_text.h"
#include "store/database.h"
#include "store/schema.h"
#include "students/frm_bilgi_degistir.h"
#include "students/frm_ogrenci_list.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/record_lock.h"
#include "users/secrets.h"
#include "users/rights.h"

#include <QAction>
#include <QBuffer>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace students {

namespace {

const QString Ogr = QStringLiteral("Ogrenci");
const QString Nufus = QStringLiteral("OgrenciNufus");
const QString KardesSay = QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say");

QLabel *amountLabel(const QString &name, QWidget *parent)
{
    auto *l = new QLabel(parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setFrameShape(QFrame::StyledPanel);
    l->setMinimumWidth(120);
    return l;
}

// A label without its trailing colon, for messages.
QString bare(const QString &caption)
{
    QString c = caption.trimmed();
    if (c.endsWith(QLatin1Char(':'))) {
        c.chop(1);
    }
    return c.trimmed();
}

} // namespace

FrmOgrenci::FrmOgrenci(store::Database &db, QWidget *mainWindow, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmOgrenci"), QStringLiteral("Öğrenci Bilgileri"), parent)
    , m_db(db)
    , m_anaPencere(mainWindow)
{
    using K = Kutu;
    // ---- the main frame
    auto *ana = new QGroupBox(QStringLiteral("[ Öğrenci Bilgileri ]"), this);
    const QList<Alan> anaAlanlar = {
        {Ogr, QStringLiteral("Ogr_Numarasi"), QStringLiteral("Öğrenci No :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Adi"), QStringLiteral("Adı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Soyadi"), QStringLiteral("Soyadı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Sinif"), QStringLiteral("Sınıfı :"), K::Liste},
        {Ogr, QStringLiteral("Ogr_Bolumu"), QStringLiteral("Alan / Bölüm :"), K::Liste},
        {Ogr, QStringLiteral("Ogr_YabanciDil"), QStringLiteral("Yabancı Dili :"), K::Liste},
        {Ogr,
         QStringLiteral("Ogr_Kayit_Turu"),
         QStringLiteral("Kayıt Türü :"),
         K::SabitListe,
         {QStringLiteral("Yeni Kayıt"), QStringLiteral("Nakil Geldi"),
          QStringLiteral("Kayıt Yenileme")}},
        {Ogr, QStringLiteral("Ogr_Adres"), QStringLiteral("Adres :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Adres_PostaKodu"), QStringLiteral("Posta Kodu :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Semt"), QStringLiteral("Semt :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Il"), QStringLiteral("Şehir :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Telefon"), QStringLiteral("Telefon :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_CepTelefon"), QStringLiteral("Cep Telefonu :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Email"), QStringLiteral("e-mail :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Kayit_Tarihi"), QStringLiteral("Kayıt Tarihi :"), K::Tarih},
        {Ogr, QStringLiteral("Ogr_Kayit_Silme_Tarihi"), QStringLiteral("Kayıt Silme Tarihi :"),
         K::Tarih},
        {Ogr, QStringLiteral("Ogr_TaahutNo"), QStringLiteral("Taahhütname No : "), K::Metin},
        {Ogr, QStringLiteral("Ogr_Muaf"), QStringLiteral("Muaf"), K::Onay},
        {Ogr, QStringLiteral("Ogr_Ayrildi"), QStringLiteral("Ayrıldı"), K::Onay},
    };
    auto *anaGrid = new QGridLayout;
    anaGrid->setHorizontalSpacing(8);
    anaGrid->setVerticalSpacing(4);
    for (int i = 0; i < anaAlanlar.size(); ++i) {
        const Alan &a = anaAlanlar.at(i);
        QWidget *box = kutuYap(a, ana);
        const int column = (i / 7) * 2;
        const int row = i % 7;
        if (a.kutu != K::Onay) {
            auto *l = new QLabel(a.etiket, ana);
            l->setBuddy(box);
            anaGrid->addWidget(l, row, column);
        }
        anaGrid->addWidget(box, row, column + 1);
    }
    // "Muaf" and "Ayrıldı" share a row; the users who wrote the record come under them.
    for (const QString &f : {QStringLiteral("Ogr_Muaf"), QStringLiteral("Ogr_Ayrildi")}) {
        anaGrid->removeWidget(m_kutular.value(f));
    }
    anaGrid->addWidget(m_kutular.value(QStringLiteral("Ogr_Muaf")), 3, 4);
    anaGrid->addWidget(m_kutular.value(QStringLiteral("Ogr_Ayrildi")), 3, 5);
    m_ilkKullanici = new QLabel(ana);
    m_ilkKullanici->setObjectName(QStringLiteral("lblIlkKullanici"));
    m_islemYapan = new QLabel(ana);
    m_islemYapan->setObjectName(QStringLiteral("lblIslemYapan"));
    for (QLabel *l : {m_ilkKullanici, m_islemYapan}) {
        l->setFrameShape(QFrame::StyledPanel);
    }
    anaGrid->addWidget(new QLabel(QStringLiteral("İlkKayıt Yapan Kullanıcı"), ana), 4, 4);
    anaGrid->addWidget(m_ilkKullanici, 5, 4);
    anaGrid->addWidget(new QLabel(QStringLiteral("İşlem Yapan Kullanıcı"), ana), 4, 5);
    anaGrid->addWidget(m_islemYapan, 5, 5);
    anaGrid->setColumnStretch(1, 2);
    anaGrid->setColumnStretch(3, 3);
    anaGrid->setColumnStretch(5, 2);

    m_numara = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Numarasi")));
    m_numara->setMaxLength(10);
    m_adi = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Adi")));
    m_soyadi = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_Soyadi")));
    m_sinif = qobject_cast<QComboBox *>(m_kutular.value(QStringLiteral("Ogr_Sinif")));
    for (QWidget *w : {static_cast<QWidget *>(m_numara), static_cast<QWidget *>(m_adi),
                       static_cast<QWidget *>(m_soyadi)}) {
        ui::markRequired(w, true);
    }

    // The photograph
    m_foto = new QLabel(ana);
    m_foto->setObjectName(QStringLiteral("Image1"));
    m_foto->setFixedSize(120, 150);
    m_foto->setFrameShape(QFrame::Box);
    m_foto->setAlignment(Qt::AlignCenter);
    m_foto->setToolTip(QStringLiteral("Sol tık: fotoğraf seç; sağ tık: fotoğrafı kaldır"));
    m_foto->installEventFilter(this);
    auto *resimSil = new QAction(QStringLiteral("Resim Sil (Öğrenci Fotoğrafını Siler.)"), this);
    resimSil->setObjectName(QStringLiteral("mnuResimSil"));
    connect(resimSil, &QAction::triggered, this, [this] {
        m_resim.clear();
        resmiGoster();
        setDirty(true);
    });
    m_cmdFotograf
        = ui::button(QStringLiteral("cmdFotografAl"), QStringLiteral("&Fotoğraf Al"), ana);
    auto *fotoKutu = new QVBoxLayout;
    fotoKutu->addWidget(m_foto, 0, Qt::AlignHCenter);
    fotoKutu->addWidget(m_cmdFotograf);
    fotoKutu->addStretch();

    auto *anaKutu = new QHBoxLayout(ana);
    anaKutu->addLayout(anaGrid, 1);
    anaKutu->addSpacing(8);
    anaKutu->addLayout(fotoKutu);

    // ---- moving through the students
    m_arama = new QComboBox(this);
    m_arama->setObjectName(QStringLiteral("cmbArama"));
    m_arama->addItems({QStringLiteral("Numaraya Göre"), QStringLiteral("Ada Göre"),
                       QStringLiteral("Soyada Göre"), QStringLiteral("Sınıfa Göre")});
    auto *ilk = ui::button(QStringLiteral("cmdIlk"), QStringLiteral("|< İlk"), this);
    auto *onceki = ui::button(QStringLiteral("cmdOnceki"), QStringLiteral("< Önceki"), this);
    auto *sonraki = ui::button(QStringLiteral("cmdSonraki"), QStringLiteral("Sonraki >"), this);
    auto *son = ui::button(QStringLiteral("cmdSon"), QStringLiteral("Son >|"), this);
    ilk->setToolTip(QStringLiteral("Home"));
    onceki->setToolTip(QStringLiteral("Page Up"));
    sonraki->setToolTip(QStringLiteral("Page Down"));
    son->setToolTip(QStringLiteral("End"));
    auto *liste
        = ui::button(QStringLiteral("cmdListe"), QStringLiteral("Öğrenci &Listesi (F10)"), this);
    auto *yeni = ui::button(QStringLiteral("cmdYeni"), QStringLiteral("&Yeni Öğrenci"), this);
    auto *arama = new QHBoxLayout;
    arama->addWidget(new QLabel(QStringLiteral("Arama :"), this));
    arama->addWidget(m_arama);
    for (QPushButton *b : {ilk, onceki, sonraki, son}) {
        arama->addWidget(b);
    }
    arama->addSpacing(12);
    arama->addWidget(liste);
    arama->addStretch();
    arama->addWidget(yeni);

    // ---- the tabs
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("SSTab1"));

    // "&Aylık Borç"
    auto *borc = new QWidget(m_tabs);
    auto *buAy = new QGroupBox(QStringLiteral("[ Bu Ay Ödemesi Gereken ]"), borc);
    m_buAy = new ui::Grid(buAy);
    m_buAy->setObjectName(QStringLiteral("grdBuAy"));
    m_buAy->setColumns({{QStringLiteral("Borç Tanımı"), ui::ColumnKind::Text, 220, false},
                        {QStringLiteral("Tutar"), ui::ColumnKind::Money, 120, false}});
    m_buAy->setLocked(true);
    m_buAy->horizontalHeader()->setStretchLastSection(true);
    m_buAyToplam = amountLabel(QStringLiteral("lblBuAyToplam"), buAy);
    auto *buAyToplam = new QHBoxLayout;
    buAyToplam->addStretch();
    buAyToplam->addWidget(new QLabel(QStringLiteral("Toplam Ödenecek Tutar :"), buAy));
    buAyToplam->addWidget(m_buAyToplam);
    auto *buAyKutu = new QVBoxLayout(buAy);
    buAyKutu->addWidget(m_buAy);
    buAyKutu->addLayout(buAyToplam);

    auto *genel = new QGroupBox(QStringLiteral("[ Genel Durum ]"), borc);
    m_toplamBorc = amountLabel(QStringLiteral("lblToplamBorc"), genel);
    m_toplamOdenen = amountLabel(QStringLiteral("lblToplamOdenen"), genel);
    m_kalan = amountLabel(QStringLiteral("lblKalan"), genel);
    auto *genelKutu = new QGridLayout(genel);
    genelKutu->addWidget(new QLabel(QStringLiteral("Toplam Borç :"), genel), 0, 0);
    genelKutu->addWidget(m_toplamBorc, 0, 1);
    genelKutu->addWidget(new QLabel(QStringLiteral("Toplam Ödenen :"), genel), 1, 0);
    genelKutu->addWidget(m_toplamOdenen, 1, 1);
    genelKutu->addWidget(new QLabel(QStringLiteral("Kalan :"), genel), 2, 0);
    genelKutu->addWidget(m_kalan, 2, 1);
    genelKutu->setRowStretch(3, 1);

    auto *hesap = new QGroupBox(borc);
    const QList<Alan> hesapAlanlari = {
        {Ogr, QStringLiteral("Ogr_CariHesap_Kodu"), QStringLiteral("Cari Hesap No"), K::Metin},
        {Ogr,
         QStringLiteral("Ogr_Ucret_Odeme_Turu"),
         QStringLiteral("Ücret Ödeme Türü"),
         K::SiraListe,
         {QStringLiteral("Taksitli Ödeme"), QStringLiteral("Peşin Ödeme"),
          QStringLiteral("Banka Kredisi (STS)")}},
        {Ogr,
         QStringLiteral("Ogr_EgitimDestekDurumu"),
         QStringLiteral("Eğitim Destek Durumu"),
         K::SiraListe,
         {QStringLiteral("BAŞVURU YAPTI"), QStringLiteral("DESTEK ALIYOR"),
          QStringLiteral("KABUL EDİLMEDİ")}},
    };
    auto *hesapKutu = new QGridLayout(hesap);
    for (int i = 0; i < hesapAlanlari.size(); ++i) {
        hesapKutu->addWidget(new QLabel(hesapAlanlari.at(i).etiket, hesap), i, 0);
        hesapKutu->addWidget(kutuYap(hesapAlanlari.at(i), hesap), i, 1);
    }
    hesapKutu->setRowStretch(3, 1);
    auto *borcSag = new QVBoxLayout;
    borcSag->addWidget(genel);
    borcSag->addWidget(hesap);
    auto *borcKutu = new QHBoxLayout(borc);
    borcKutu->addWidget(buAy, 3);
    borcKutu->addLayout(borcSag, 2);
    m_tabs->addTab(borc, QStringLiteral("&Aylık Borç"));

    // "&Veli Bilgileri"
    const QList<Alan> veli = {
        {Ogr, QStringLiteral("Ogr_Veli_Adi"), QStringLiteral("Adı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Soyadi"), QStringLiteral("Soyadı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Yakinlik"), QStringLiteral("Yakınlığı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_MernisNo"), QStringLiteral("T.C.KimlikNo:"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Isi"), QStringLiteral("Mesleği :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Gorevi"), QStringLiteral("Görevi :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Isyeri"), QStringLiteral("İş Yeri :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Isyeri_SahibiMi"), QStringLiteral("İş Yeri Sahibi"),
         K::Onay},
        {Ogr, QStringLiteral("Ogr_Veli_Ev_Adresi"), QStringLiteral("Ev Adresi :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_EvAdres_PostaKodu"), QStringLiteral("Posta Kodu :"),
         K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Ev_Telefon"), QStringLiteral("Ev Telefonu :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Is_Adresi"), QStringLiteral("İş Adresi :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_IsAdres_PostaKodu"), QStringLiteral("İş Posta Kodu :"),
         K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Is_Telefon"), QStringLiteral("İş Telefonu :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_CepTelefon"), QStringLiteral("Cep Telefonu :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Email"), QStringLiteral("e-mail :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Fax"), QStringLiteral("Fax :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_Maas"), QStringLiteral("Maaşı :"), K::Para},
        {Ogr, QStringLiteral("Ogr_Veli_KrediKarti"), QStringLiteral("K. Kartı No :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Veli_KK_SonGec"),
         QStringLiteral("Kredi Kartı Son Geçerlilik Tarihi"), K::Metin},
        {Ogr, QStringLiteral("Ogr_FaturaAdiSoyadi"),
         QStringLiteral("Faturanın Kesildiği Adı Soyadı :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_FaturaAdres"), QStringLiteral("Fatura Adresi :"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Diger_VergiAdi"), QStringLiteral("Vergi Dairesi Adı:"), K::Metin},
        {Ogr, QStringLiteral("Ogr_Diger_vergiNo"), QStringLiteral("Vergi No :"), K::Metin},
    };
    m_tabs->addTab(alanlarSayfasi(veli, 3, m_tabs), QStringLiteral("&Veli Bilgileri"));

    // "Ana Baba"
    auto *anaBaba = new QWidget(m_tabs);
    auto *anaBabaKutu = new QHBoxLayout(anaBaba);
    anaBabaKutu->addWidget(anaBabaGrubu(QStringLiteral("ANNE BİLGİSİ"), QStringLiteral("Ana"),
                                        QStringLiteral("Ogr_Anne_Is_Adresi"), anaBaba));
    anaBabaKutu->addWidget(anaBabaGrubu(QStringLiteral("BABA BİLGİSİ"), QStringLiteral("Baba"),
                                        QStringLiteral("Ogr_Baba_Is_Adresi"), anaBaba));
    m_tabs->addTab(anaBaba, QStringLiteral("Ana Baba"));

    // " &Nüfus Bilgileri"
    const QList<Alan> nufus = {
        {Nufus, QStringLiteral("Ogr_MernisNo"), QStringLiteral("T.C. Kimlik No :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Baba_Adi"), QStringLiteral("Baba Adı :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Ana_Adi"), QStringLiteral("Ana Adı :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Dogum_Yeri"), QStringLiteral("Doğum Yeri :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Dogum_Tarih"), QStringLiteral("Doğum Tarihi :"),
         K::Tarih},
        {Nufus,
         QStringLiteral("Ogr_Nufus_Cinsiyet"),
         QStringLiteral("Cinsiyeti :"),
         K::SabitListe,
         {QStringLiteral("ERKEK"), QStringLiteral("KIZ")}},
        {Nufus,
         QStringLiteral("Ogr_Nufus_Medeni_Hali"),
         QStringLiteral("Medeni Hali :"),
         K::SabitListe,
         {QStringLiteral("BEKAR"), QStringLiteral("EVLİ")}},
        {Nufus,
         QStringLiteral("Ogr_Nufus_Kan_grubu"),
         QStringLiteral("Kan Grubu :"),
         K::SabitListe,
         {QStringLiteral("A (RH+)"), QStringLiteral("A (RH-)"), QStringLiteral("B (RH+)"),
          QStringLiteral("B (RH-)"), QStringLiteral("AB(RH+)"), QStringLiteral("AB(RH-)"),
          QStringLiteral("0 (RH+)"), QStringLiteral("0 (RH-)")}},
        {Nufus,
         QStringLiteral("Ogr_Nufus_Dini"),
         QStringLiteral("Dini :"),
         K::SabitListe,
         {QStringLiteral("İSLAM"), QStringLiteral("HRİSTİYAN"), QStringLiteral("MUSEVİ"),
          QStringLiteral("DİĞER")}},
        {Nufus, QStringLiteral("Ogr_Nufus_Uyrugu"), QStringLiteral("Uyruğu :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Ili"), QStringLiteral("İli :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Ilce"), QStringLiteral("İlçesi :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Mahalle_Koy"), QStringLiteral("Mahalle / Köy :"),
         K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Cilt"), QStringLiteral("Cilt No :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Aile_Sira_No"), QStringLiteral("Aile Sıra No :"),
         K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Sira_No"), QStringLiteral("Sıra No :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Kayit_No"), QStringLiteral("Kayıt No :"), K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Cuzdan_Seri_No"), QStringLiteral("Cüzdan Seri No :"),
         K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Verildigi_Nufus"), QStringLiteral("Verildiği Yer :"),
         K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Verilis_Nedeni"), QStringLiteral("Veriliş Nedeni :"),
         K::Metin},
        {Nufus, QStringLiteral("Ogr_Nufus_Veris_Tarihi"), QStringLiteral("Veriliş Tarihi :"),
         K::Tarih},
    };
    m_tabs->addTab(alanlarSayfasi(nufus, 3, m_tabs), QStringLiteral(" &Nüfus Bilgileri"));

    // " Kardeş Bilgileri"
    auto *kardes = new QWidget(m_tabs);
    m_kardesSayisi = new QLineEdit(kardes);
    m_kardesSayisi->setObjectName(KardesSay);
    m_kardesSayisi->setReadOnly(true);
    m_kardesSayisi->setMaximumWidth(60);
    m_kardesSayisi->setAlignment(Qt::AlignRight);
    m_kardesSayisi->setToolTip(QStringLiteral("Listedeki kardeşlerin sayısı; kaydederken "
                                              "yeniden sayılır."));
    m_kardesler = new ui::Grid(kardes);
    m_kardesler->setObjectName(QStringLiteral("grdKardesler"));
    const QString kt = QStringLiteral("OgrenciKardesler");
    auto size = [&kt](const char *f) {
        return store::schema::textSize(store::Store::Year, kt, QString::fromLatin1(f));
    };
    m_kardesler->setColumns({
        {QStringLiteral("Ad"), ui::ColumnKind::Text, 160, true, false, size("OgrKardesAd")},
        {QStringLiteral("Soyad"), ui::ColumnKind::Text, 160, true, false, size("OgrKardesSoyad")},
        {QStringLiteral("Okuduğu okul"), ui::ColumnKind::Text, 260, true, false,
         size("OgrKardesOkul")},
        {QStringLiteral("Sınıf"), ui::ColumnKind::Text, 80, true, false, size("OgrKardesSinif")},
    });
    m_kardesler->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    auto *kardesEkle
        = ui::button(QStringLiteral("cmdKardesEkle"), QStringLiteral("Kardeş Ekle"), kardes);
    auto *kardesSil
        = ui::button(QStringLiteral("cmdKardesSil"), QStringLiteral("Kardeş Sil"), kardes);
    auto *kardesUst = new QHBoxLayout;
    kardesUst->addWidget(new QLabel(QStringLiteral("Okuyan Kardeş Sayısı :"), kardes));
    kardesUst->addWidget(m_kardesSayisi);
    kardesUst->addStretch();
    kardesUst->addWidget(kardesEkle);
    kardesUst->addWidget(kardesSil);
    auto *kardesKutu = new QVBoxLayout(kardes);
    kardesKutu->addLayout(kardesUst);
    kardesKutu->addWidget(m_kardesler);
    m_tabs->addTab(kardes, QStringLiteral(" Kardeş Bilgileri"));

    // "Özel &Bilgiler"
    auto *ozel = new QWidget(m_tabs);
    m_ozel = new QPlainTextEdit(ozel);
    m_ozel->setObjectName(QStringLiteral("OzelBilgi"));
    m_ozel->setTabChangesFocus(true);
    auto *ozelKutu = new QVBoxLayout(ozel);
    ozelKutu->addWidget(m_ozel);
    m_tabs->addTab(ozel, QStringLiteral("Özel &Bilgiler"));

    // ---- commands
    m_cmdKaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    m_cmdSil = ui::button(QStringLiteral("cmdSil"), QStringLiteral("&Sil"), this);
    m_cmdDegistir = ui::button(QStringLiteral("cmdDegistir"),
                           QStringLiteral("Numara Ad Soyad Sınıf &Değiştirme"), this);
    m_cmdCariDurum
        = ui::button(QStringLiteral("cmdCariDurum"), QStringLiteral("&Cari Durum (F4)"), this);
    auto *gecmis = ui::button(QStringLiteral("cmdGecmisYil"),
                          QStringLiteral("Öğrenci Geçmiş Yıl Aidatları (F2)"), this);
    auto *sinifListesi = ui::button(QStringLiteral("cmdSinifListesi"),
                                    QStringLiteral("S&ınıf Listesi Göster"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    auto *komutlar = new QHBoxLayout;
    komutlar->addWidget(m_cmdSil);
    komutlar->addWidget(m_cmdDegistir);
    komutlar->addWidget(sinifListesi);
    komutlar->addStretch();
    komutlar->addWidget(gecmis);
    komutlar->addWidget(m_cmdCariDurum);
    komutlar->addSpacing(12);
    komutlar->addWidget(m_cmdKaydet);
    komutlar->addWidget(cikis);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ana);
    layout->addLayout(arama);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(komutlar);
    resize(1080, 690);

    COMBO_DOLDUR();
    AlanBolumYabancidilCombo();

    // ---- wiring
    watchForChanges(this);
    // The number is also how a student is looked up: typing it marks a shown student only.
    disconnect(m_numara, &QLineEdit::textEdited, this, nullptr);
    connect(m_numara, &QLineEdit::textEdited, this, [this] {
        if (m_kayitId != 0) {
            setDirty(true);
        }
    });
    connect(m_kardesler, &ui::Grid::cellEdited, this, [this] { setDirty(true); });
    for (QLineEdit *e : {m_numara, m_adi, m_soyadi}) {
        connect(e, &QLineEdit::textChanged, this, &FrmOgrenci::kayitDurumu);
    }
    connect(m_cmdKaydet, &QPushButton::clicked, this, [this] { OgrenciKaydet(); });
    connect(m_cmdSil, &QPushButton::clicked, this, &FrmOgrenci::OgrenciSil);
    connect(m_cmdDegistir, &QPushButton::clicked, this, &FrmOgrenci::OgrenciBilgiDegistir);
    connect(m_cmdCariDurum, &QPushButton::clicked, this, &FrmOgrenci::cariDurum);
    connect(gecmis, &QPushButton::clicked, this, &FrmOgrenci::gecmisYilAidatlari);
    connect(sinifListesi, &QPushButton::clicked, this,
            [this] { ui::notReady(QStringLiteral("Sınıf Listesi"), this); });
    connect(cikis, &QPushButton::clicked, this, &ui::Screen::closeWindow);
    connect(m_cmdFotograf, &QPushButton::clicked, this, &FrmOgrenci::fotografAl);
    connect(kardesEkle, &QPushButton::clicked, this, &FrmOgrenci::kardesEkle);
    connect(kardesSil, &QPushButton::clicked, this, &FrmOgrenci::kardesSil);
    connect(ilk, &QPushButton::clicked, this, [this] { OgrenciAra(Yon::Ilk); });
    connect(onceki, &QPushButton::clicked, this, [this] { OgrenciAra(Yon::Onceki); });
    connect(sonraki, &QPushButton::clicked, this, [this] { OgrenciAra(Yon::Sonraki); });
    connect(son, &QPushButton::clicked, this, [this] { OgrenciAra(Yon::Son); });
    connect(liste, &QPushButton::clicked, this, &FrmOgrenci::listedenSec);
    connect(yeni, &QPushButton::clicked, this, [this] {
        if (askToSaveChanges()) {
            ekraniTemizle();
            m_numara->setFocus();
        }
    });

    connect(&ui::Bildirimler::instance(), &ui::Bildirimler::ogrenciDegisti, this,
            &FrmOgrenci::baskasiDegistirdi);

    ui::moveWithEnter(this);
    // Installed after Enter's own filter, so that the number box sees its keys first.
    for (QWidget *w : findChildren<QWidget *>()) {
        w->installEventFilter(this);
    }
    m_kartNoAcik = users::KartNoGorebilir(m_db);
    ekraniTemizle();
}

// ---- building the form ---------------------------------------------------------------------

QWidget *FrmOgrenci::kutuYap(const Alan &a, QWidget *parent)
{
    QWidget *w = nullptr;
    switch (a.kutu) {
    case Kutu::Metin: {
        auto *e = new QLineEdit(parent);
        ui::limitTo(e, store::schema::textSize(store::Store::Year, a.tablo, a.ad));
        w = e;
        break;
    }
    case Kutu::Tarih:
        w = new ui::DateEdit(parent);
        break;
    case Kutu::Para: {
        auto *m = new ui::MoneyEdit(parent);
        m->setFormat(users::durum().ParaFormati);
        w = m;
        break;
    }
    case Kutu::Onay:
        w = new QCheckBox(a.etiket, parent);
        break;
    case Kutu::Liste: {
        auto *c = new QComboBox(parent);
        c->setEditable(true);
        c->setInsertPolicy(QComboBox::NoInsert);
        ui::limitTo(c->lineEdit(), store::schema::textSize(store::Store::Year, a.tablo, a.ad));
        w = c;
        break;
    }
    case Kutu::SabitListe:
    case Kutu::SiraListe: {
        auto *c = new QComboBox(parent);
        c->addItem(QString());
        c->addItems(a.liste);
        w = c;
        break;
    }
    }
    w->setObjectName(a.ad);
    m_alanlar.insert(a.ad, a);
    m_kutular.insert(a.ad, w);
    return w;
}

QWidget *FrmOgrenci::alanlarSayfasi(const QList<Alan> &alanlar, int sutun, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *grid = new QGridLayout(page);
    grid->setVerticalSpacing(4);
    const int rows = int((alanlar.size() + sutun - 1) / sutun);
    for (int i = 0; i < alanlar.size(); ++i) {
        const Alan &a = alanlar.at(i);
        QWidget *box = kutuYap(a, page);
        const int column = (i / rows) * 2;
        const int row = i % rows;
        if (a.kutu != Kutu::Onay) {
            auto *l = new QLabel(a.etiket, page);
            l->setBuddy(box);
            grid->addWidget(l, row, column);
        }
        grid->addWidget(box, row, column + 1);
        grid->setColumnStretch(column + 1, 1);
    }
    grid->setRowStretch(rows, 1);
    return page;
}

QWidget *FrmOgrenci::anaBabaGrubu(const QString &baslik, const QString &kim,
                                  const QString &isAdresi, QWidget *parent)
{
    const QString p = QStringLiteral("Ogr_") + kim + QLatin1Char('_');
    const QList<Alan> alanlar = {
        {Ogr, p + QStringLiteral("TcNo"), QStringLiteral("T.C. Kimlik No :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Adi"), QStringLiteral("Adı :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Soyadi"), QStringLiteral("Soyadı :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Meslegi"), QStringLiteral("Mesleği :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Gorevi"), QStringLiteral("Görevi :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("isYeri"), QStringLiteral("İş Yeri :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("isyeriSahibiMi"), QStringLiteral("İş Yeri Sahibi"), Kutu::Onay},
        {Ogr, p + QStringLiteral("isTel"), QStringLiteral("İş Telefonu :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("EvTel"), QStringLiteral("Ev Telefonu :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("CepTel"), QStringLiteral("Cep Telefonu :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Fax"), QStringLiteral("Fax :"), Kutu::Metin},
        {Ogr, p + QStringLiteral("Email"), QStringLiteral("e-mail :"), Kutu::Metin},
        {Ogr, isAdresi, QStringLiteral("İş Adresi :"), Kutu::Metin},
    };
    auto *group = new QGroupBox(baslik, parent);
    auto *inner = alanlarSayfasi(alanlar, 2, group);
    inner->layout()->setContentsMargins(0, 0, 0, 0);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(inner);
    return group;
}

void FrmOgrenci::COMBO_DOLDUR()
{
    // The fixed lists are made with their boxes; this only puts every one on its empty entry.
    for (auto it = m_alanlar.cbegin(); it != m_alanlar.cend(); ++it) {
        if (it->kutu == Kutu::SabitListe || it->kutu == Kutu::SiraListe) {
            qobject_cast<QComboBox *>(m_kutular.value(it.key()))->setCurrentIndex(0);
        }
    }
}

void FrmOgrenci::AlanBolumYabancidilCombo()
{
    for (const QString &f : {QStringLiteral("Ogr_Sinif"), QStringLiteral("Ogr_Bolumu"),
                             QStringLiteral("Ogr_YabanciDil")}) {
        auto *c = qobject_cast<QComboBox *>(m_kutular.value(f));
        base::Result<QStringList> values = FarkliDegerler(m_db, f);
        if (!values) {
            ui::HataBildir(values.error());
            return;
        }
        const QString current = c->currentText();
        const QSignalBlocker block(c);
        c->clear();
        c->addItems(*values);
        c->setCurrentIndex(-1);
        c->setEditText(current);
    }
}

// ---- the form and the record -------------------------------------------------------------------

QVariant FrmOgrenci::kutuDegeri(const QString &alan) const
{
    const Alan a = m_alanlar.value(alan);
    QWidget *w = m_kutular.value(alan);
    switch (a.kutu) {
    case Kutu::Metin: {
        const QString t = qobject_cast<QLineEdit *>(w)->text();
        if (alan == QLatin1String("Ogr_Numarasi")) {
            return base::TamSayiCoz(t).value_or(0);
        }
        return t;
    }
    case Kutu::Tarih:
        return static_cast<ui::DateEdit *>(w)->date();
    case Kutu::Para:
        return QVariant::fromValue(
            static_cast<ui::MoneyEdit *>(w)->value().value_or(base::Para()));
    case Kutu::Onay: {
        const bool on = qobject_cast<QCheckBox *>(w)->isChecked();
        if (alanTuru(a.tablo, alan) == AlanTuru::Metin) {
            return on ? QStringLiteral("1") : QStringLiteral("0");
        }
        return qint64(on ? 1 : 0);
    }
    case Kutu::Liste:
    case Kutu::SabitListe:
        return qobject_cast<QComboBox *>(w)->currentText();
    case Kutu::SiraListe:
        return qint64(qMax(0, qobject_cast<QComboBox *>(w)->currentIndex()));
    }
    return QVariant();
}

void FrmOgrenci::kutuyaYaz(const QString &alan, const QVariant &v)
{
    const Alan a = m_alanlar.value(alan);
    QWidget *w = m_kutular.value(alan);
    if (!w) {
        return;
    }
    switch (a.kutu) {
    case Kutu::Metin:
        if (alan == KartNoAlani) {
            // Those without the right see only the last four digits, and cannot change it.
            auto *box = qobject_cast<QLineEdit *>(w);
            box->setText(m_kartNoAcik ? v.toString() : users::KartNoMaskele(v.toString()));
            box->setReadOnly(!m_kartNoAcik);
            box->setMaxLength(KartNoUzunlugu);
        } else if (alan == QLatin1String("Ogr_Numarasi")) {
            qobject_cast<QLineEdit *>(w)->setText(v.isValid() ? QString::number(v.toLongLong())
                                                              : QString());
        } else {
            qobject_cast<QLineEdit *>(w)->setText(v.toString());
        }
        break;
    case Kutu::Tarih:
        static_cast<ui::DateEdit *>(w)->setDate(v.toDate());
        break;
    case Kutu::Para: {
        const base::Para p = v.value<base::Para>();
        if (p.isZero()) {
            static_cast<ui::MoneyEdit *>(w)->clear();
        } else {
            static_cast<ui::MoneyEdit *>(w)->setValue(p);
        }
        break;
    }
    case Kutu::Onay:
        qobject_cast<QCheckBox *>(w)->setChecked(v.toString() == QLatin1String("1"));
        break;
    case Kutu::Liste:
        qobject_cast<QComboBox *>(w)->setCurrentText(v.toString());
        break;
    case Kutu::SabitListe: {
        auto *c = qobject_cast<QComboBox *>(w);
        const QString t = v.toString();
        int i = t.isEmpty() ? 0 : c->findText(t, Qt::MatchExactly);
        if (i < 0) {
            // A value that the list does not know stays, so that a save does not lose it.
            c->addItem(t);
            i = c->count() - 1;
        }
        c->setCurrentIndex(i);
        break;
    }
    case Kutu::SiraListe: {
        auto *c = qobject_cast<QComboBox *>(w);
        const qint64 i = v.toLongLong();
        c->setCurrentIndex(i > 0 && i < c->count() ? int(i) : 0);
        break;
    }
    }
}

void FrmOgrenci::ekraniTemizle()
{
    for (auto it = m_kutular.cbegin(); it != m_kutular.cend(); ++it) {
        QWidget *w = it.value();
        if (auto *c = qobject_cast<QComboBox *>(w)) {
            c->setCurrentIndex(c->isEditable() ? -1 : 0);
            if (c->isEditable()) {
                c->setEditText(QString());
            }
        } else if (auto *b = qobject_cast<QCheckBox *>(w)) {
            b->setChecked(false);
        } else if (auto *e = qobject_cast<QLineEdit *>(w)) {
            e->clear();
        }
    }
    m_kardesSayisi->setText(QStringLiteral("0"));
    m_kardesler->clearRows();
    m_buAy->clearRows();
    m_ozel->clear();
    m_resim.clear();
    resmiGoster();
    for (QLabel *l : {m_buAyToplam, m_toplamBorc, m_toplamOdenen, m_kalan, m_islemYapan}) {
        l->clear();
    }
    m_ilkKullanici->setText(users::durum().AktifKullanici);
    m_kayitId = 0;
    m_yuklenen = Kimlik();
    m_kayit = OgrenciKaydi();
    if (auto *kart = qobject_cast<QLineEdit *>(m_kutular.value(KartNoAlani))) {
        kart->setReadOnly(!m_kartNoAcik);
        kart->setMaxLength(KartNoUzunlugu);
    }
    kayitDurumu();
    setDirty(false);
}

OgrenciKaydi FrmOgrenci::ekrandanKayit()
{
    OgrenciKaydi k = m_kayit;
    k.kayitId = m_kayitId;
    for (const QString &f : OgrenciAlanlari()) {
        // A masked card number stays as it was read.
        if (m_kutular.contains(f) && (f != KartNoAlani || m_kartNoAcik)) {
            k.ogrenci.insert(f, kutuDegeri(f));
        }
    }
    for (const QString &f : NufusAlanlari()) {
        k.nufus.insert(f, kutuDegeri(f));
    }
    // A last sibling row without a first name is dropped; the count is then the rows.
    const int last = m_kardesler->rowCount() - 1;
    if (last >= 0 && m_kardesler->text(last, 0).trimmed().isEmpty()) {
        m_kardesler->removeRowAt(last);
    }
    k.kardesler.clear();
    for (int r = 0; r < m_kardesler->rowCount(); ++r) {
        k.kardesler.append(Kardes{m_kardesler->text(r, 0), m_kardesler->text(r, 1),
                                  m_kardesler->text(r, 2), m_kardesler->text(r, 3)});
    }
    kardesSayisiniYaz();
    k.ogrenci.insert(KardesSay, qint64(m_kardesler->rowCount()));
    k.ozelBilgi = m_ozel->toPlainText();
    k.resim = m_resim;
    return k;
}

Kimlik FrmOgrenci::ekrandakiKimlik() const
{
    return Kimlik{base::TamSayiCoz(m_numara->text()).value_or(0), m_adi->text().trimmed(),
                  m_soyadi->text().trimmed(), m_sinif->currentText().trimmed()};
}

bool FrmOgrenci::girisleriDenetle()
{
    auto refuse = [this](QWidget *w, const QString &text) {
        for (int i = 0; i < m_tabs->count(); ++i) {
            if (m_tabs->widget(i)->isAncestorOf(w)) {
                m_tabs->setCurrentIndex(i);
            }
        }
        ui::notify(QStringLiteral("Dikkat"), text, ui::Icon::Warning, this);
        w->setFocus();
        return false;
    };
    const std::optional<qint64> numara = base::TamSayiCoz(m_numara->text());
    if (!numara || !OgrenciNoGecerli(*numara)) {
        return refuse(m_numara, QStringLiteral("\"%1\" geçerli bir öğrenci numarası değil. Öğrenci "
                                               "No olarak yalnız rakam giriniz.")
                                    .arg(m_numara->text().trimmed()));
    }
    for (auto it = m_alanlar.cbegin(); it != m_alanlar.cend(); ++it) {
        QWidget *w = m_kutular.value(it.key());
        if (it->kutu == Kutu::Tarih && !static_cast<ui::DateEdit *>(w)->isAcceptable()) {
            return refuse(w, QStringLiteral("%1 alanına yazılan \"%2\" geçerli bir tarih değil. "
                                            "Lütfen tarihi gg.aa.yyyy biçiminde, takvimde bulunan "
                                            "bir gün olarak giriniz.")
                                 .arg(bare(it->etiket), static_cast<ui::DateEdit *>(w)->text()));
        }
        if (it->kutu == Kutu::Para && !static_cast<ui::MoneyEdit *>(w)->isAcceptable()) {
            return refuse(w, QStringLiteral("%1 alanına yazılan \"%2\" geçerli bir tutar değil. "
                                            "Tutarı 1.250,50 biçiminde giriniz.")
                                 .arg(bare(it->etiket), static_cast<ui::MoneyEdit *>(w)->text()));
        }
    }
    return true;
}

void FrmOgrenci::kayitDurumu()
{
    m_cmdKaydet->setEnabled(!m_numara->text().trimmed().isEmpty()
                            && !m_adi->text().trimmed().isEmpty()
                            && !m_soyadi->text().trimmed().isEmpty());
    const bool saved = m_kayitId != 0;
    for (QPushButton *b : {m_cmdSil, m_cmdDegistir, m_cmdCariDurum, m_cmdFotograf}) {
        b->setEnabled(saved);
    }
}

// ---- showing ---------------------------------------------------------------------------------

bool FrmOgrenci::OgrenciGoster(qint64 numara, bool kayitIdIle)
{
    qint64 key = numara;
    if (!kayitIdIle) {
        base::Result<std::optional<qint64>> found = NumaradanBul(m_db, numara);
        if (!found) {
            ui::HataBildir(found.error());
            return false;
        }
        if (!found->has_value()) {
            return false;
        }
        key = **found;
    }
    base::Result<std::optional<OgrenciKaydi>> read = OgrenciOku(m_db, key);
    if (!read) {
        ui::HataBildir(read.error());
        return false;
    }
    if (!read->has_value()) {
        return false;
    }
    ekraniTemizle();
    if (!ui::passed(users::OgrenciKilitle(m_db, key))) {
        return false;
    }
    m_kartNoAcik = users::KartNoGorebilir(m_db);
    const OgrenciKaydi &k = **read;
    m_kayit = k;
    m_kayitId = key;
    for (const QString &f : OgrenciAlanlari()) {
        kutuyaYaz(f, k.ogrenci.value(f));
    }
    for (const QString &f : NufusAlanlari()) {
        kutuyaYaz(f, k.nufus.value(f));
    }
    m_kardesSayisi->setText(QString::number(k.ogrenci.value(KardesSay).toLongLong()));
    for (const Kardes &s : k.kardesler) {
        const int r = m_kardesler->appendRow();
        m_kardesler->setValue(r, 0, s.ad);
        m_kardesler->setValue(r, 1, s.soyad);
        m_kardesler->setValue(r, 2, s.okul);
        m_kardesler->setValue(r, 3, s.sinif);
    }
    m_ozel->setPlainText(k.ozelBilgi);
    m_resim = k.resim;
    resmiGoster();
    m_ilkKullanici->setText(k.ilkKullanici);
    m_islemYapan->setText(users::durum().AktifKullanici);
    m_yuklenen = Kimlik{k.numara(), k.adi(), k.soyadi(), k.sinif()};
    Genel_Durum();
    BuAyYapilacakOdemeler();
    kayitDurumu();
    setDirty(false);
    return true;
}

void FrmOgrenci::Genel_Durum()
{
    for (QLabel *l : {m_toplamBorc, m_toplamOdenen, m_kalan}) {
        l->clear();
    }
    if (m_kayitId == 0) {
        return;
    }
    base::Result<GenelDurumSonucu> r = GenelDurum(m_db, m_kayitId);
    if (!r) {
        ui::HataBildir(r.error());
        return;
    }
    const QString &format = users::durum().ParaFormati;
    m_toplamBorc->setText(base::Bicimle(r->toplamBorc, format));
    m_toplamOdenen->setText(base::Bicimle(r->toplamOdenen, format));
    m_kalan->setText(base::Bicimle(r->kalan, format));
}

void FrmOgrenci::BuAyYapilacakOdemeler()
{
    m_buAy->clearRows();
    m_buAyToplam->clear();
    if (m_kayitId == 0) {
        return;
    }
    base::Result<BuAySonucu> r
        = students::BuAyYapilacakOdemeler(m_db, m_kayitId, users::durum().CariAy);
    if (!r) {
        ui::HataBildir(r.error());
        return;
    }
    for (const BuAySatiri &s : r->satirlar) {
        const int row = m_buAy->appendRow();
        m_buAy->setValue(row, 0, s.aidatTanim);
        if (s.tutar) {
            m_buAy->setValue(row, 1, QVariant::fromValue(*s.tutar));
        }
    }
    m_buAyToplam->setText(base::Bicimle(r->toplam, users::durum().ParaFormati));
}

// ---- saving and deleting -------------------------------------------------------------------

bool FrmOgrenci::OgrenciKaydet()
{
    if (!ui::YazmaYetkisiVar()) {
        return false;
    }
    if (!m_cmdKaydet->isEnabled() || !girisleriDenetle()) {
        return false;
    }
    OgrenciKaydi k = ekrandanKayit();
    if (m_kayitId == 0) {
        base::Result<std::optional<qint64>> twin
            = AyniOgrenciyiBul(m_db, k.numara(), k.soyadi(), k.adi());
        if (!twin) {
            ui::HataBildir(twin.error());
            return false;
        }
        if (twin->has_value()) {
            const QString question = QStringLiteral("%1 Numaralı %2 %3 kayıtlıdır.\n Bu öğrenciyi "
                                                    "yeni bir kayıt olarak kaydetmek istediğinize "
                                                    "emin misiniz?")
                                         .arg(k.numara())
                                         .arg(k.adi().trimmed(), k.soyadi().trimmed());
            if (!ui::askYesNo(QStringLiteral("Dikkat"), question, this)) {
                setDirty(false);
                OgrenciGoster(**twin, true);
                return false;
            }
        }
    }
    bool borclariKapat = false;
    if (k.ayrildi() && k.ayrilmaTarihi().isValid()) {
        borclariKapat = ui::askYesNo(QStringLiteral("Dikkat"),
                                     QStringLiteral("Öğrencinin borçları kapatılsın mı?"), this);
    }
    base::Result<KaydetSonucu> saved = students::OgrenciKaydet(m_db, k, borclariKapat);
    if (!saved) {
        ui::HataBildir(saved.error());
        return false;
    }
    m_kayitId = saved->kayitId;
    k.kayitId = m_kayitId;
    if (saved->yeni) {
        k.ilkKullanici = users::durum().AktifKullanici;
        if (ui::passed(users::OgrenciKilitle(m_db, m_kayitId))) {
            m_islemYapan->setText(users::durum().AktifKullanici);
        }
    }
    m_kayit = k;
    m_ilkKullanici->setText(k.ilkKullanici);
    m_yuklenen = Kimlik{k.numara(), k.adi().trimmed(), k.soyadi().trimmed(), k.sinif().trimmed()};
    AlanBolumYabancidilCombo();
    kayitDurumu();
    setDirty(false);
    bildir(m_kayitId, borclariKapat);
    Genel_Durum();
    BuAyYapilacakOdemeler();
    if (k.ayrildi() && !k.ayrilmaTarihi().isValid()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Öğrenci -ayrıldı- işaretli olmasına rağmen ayrılma tarihi "
                                  "girilmemiş.\nBu sebeple borçları silinmeyecek!"),
                   ui::Icon::Warning, this);
    }
    return true;
}

void FrmOgrenci::OgrenciSil()
{
    if (!ui::YazmaYetkisiVar() || m_kayitId == 0) {
        return;
    }
    const Kimlik shown = ekrandakiKimlik();
    const QString question = QStringLiteral("%1 numaralı %2 %3%4 bilgilerini silmek istiyor "
                                            "musunuz?")
                                 .arg(m_numara->text().trimmed(), shown.adi, shown.soyadi,
                                      base::EkGetir(shown.soyadi));
    if (!ui::askYesNo(QStringLiteral("Uyarı"), question, this)) {
        return;
    }
    base::Result<qint64> deleted
        = students::OgrenciSil(m_db, m_kayitId, shown.numara, shown.adi, shown.soyadi);
    if (!deleted) {
        ui::HataBildir(deleted.error());
        return;
    }
    if (*deleted == 0) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Bu numara, ad ve soyadla kayıtlı öğrenci bulunamadı; hiçbir "
                                  "şey silinmedi."),
                   ui::Icon::Warning, this);
        return;
    }
    bildir(*deleted, true);
    ekraniTemizle();
    AlanBolumYabancidilCombo();
}

void FrmOgrenci::OgrenciBilgiDegistir()
{
    if (m_kayitId == 0 || !askToSaveChanges()) {
        return;
    }
    FrmBilgiDegistir panel(m_db, m_kayitId, m_yuklenen, this);
    panel.exec();
    if (panel.degisti()) {
        const qint64 key = m_kayitId;
        bildir(key, false);
        OgrenciGoster(key, true);
        AlanBolumYabancidilCombo();
    }
}

// ---- moving ----------------------------------------------------------------------------------

void FrmOgrenci::OgrenciAra(Yon yon)
{
    if (!askToSaveChanges()) {
        return;
    }
    const auto anahtar = static_cast<AramaAnahtari>(qMax(0, m_arama->currentIndex()));
    base::Result<std::optional<qint64>> found
        = students::OgrenciAra(m_db, anahtar, yon, ekrandakiKimlik(), m_kayitId);
    if (!found) {
        ui::HataBildir(found.error());
        return;
    }
    if (found->has_value()) {
        OgrenciGoster(**found, true);
    }
}

void FrmOgrenci::listedenSec()
{
    const std::optional<qint64> key = OgrenciSec(m_db, this);
    if (key && askToSaveChanges()) {
        OgrenciGoster(*key, true);
    }
}

void FrmOgrenci::bildir(qint64 kayitId, bool aidat)
{
    m_bildiriyor = true;
    emit ui::Bildirimler::instance().ogrenciDegisti(kayitId);
    if (aidat) {
        emit ui::Bildirimler::instance().aidatDegisti(kayitId);
    }
    m_bildiriyor = false;
}

void FrmOgrenci::baskasiDegistirdi(qint64 kayitId)
{
    // Another screen changed the shown student (a class move): he is read again, unless the
    // operator is in the middle of changing him here.
    if (m_bildiriyor || kayitId == 0 || kayitId != m_kayitId || isDirty()) {
        return;
    }
    OgrenciGoster(kayitId, true);
}

void FrmOgrenci::tusaBas(int key)
{
    switch (key) {
    case Qt::Key_F2:
        gecmisYilAidatlari();
        break;
    case Qt::Key_F4:
        cariDurum();
        break;
    case Qt::Key_F10:
        listedenSec();
        break;
    case Qt::Key_PageUp:
        OgrenciAra(Yon::Onceki);
        break;
    case Qt::Key_PageDown:
        OgrenciAra(Yon::Sonraki);
        break;
    case Qt::Key_Home:
        OgrenciAra(Yon::Ilk);
        break;
    case Qt::Key_End:
        OgrenciAra(Yon::Son);
        break;
    default:
        break;
    }
}

void FrmOgrenci::cariDurum()
{
    if (m_kayitId == 0) {
        return;
    }
    users::CalismaDurumu &d = users::durum();
    const bool okuma = d.HakOkuma;
    const bool yazma = d.HakYazma;
    auto restore = [&d, okuma, yazma] {
        d.HakOkuma = okuma;
        d.HakYazma = yazma;
    };
    if (!ui::HakKontrol(m_db, QStringLiteral("popBankayaOdeme"))) {
        restore();
        ui::notify(QStringLiteral("Uyarı !"), users::YetkiYokMesaji, ui::Icon::Warning, this);
        return;
    }
    // The fee account opens on the shown student and class, in front, with the rights just
    // tested; the student screen's own come back when it is in front again. When nothing
    // opened, they come back at once.
    if (!ui::EkranAc(QStringLiteral("FrmOgrenciAidat"), QStringLiteral("btnCariDurum"),
                        {{QStringLiteral("ogrKayitId"), m_kayitId},
                         {QStringLiteral("ogrSinif"), m_sinif->currentText()}})) {
        restore();
    }
}

void FrmOgrenci::gecmisYilAidatlari()
{
    const auto *tc = qobject_cast<QLineEdit *>(m_kutular.value(QStringLiteral("Ogr_MernisNo")));
    if (tc->text().trimmed().isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral(" Öğrenci T.C. Kimlik No bilgisi olmadığı için geçmiş yıl aidat "
                                  "bilgilerine ulaşılamadı."),
                   ui::Icon::Warning, this);
        return;
    }
    ui::notReady(QStringLiteral("Öğrenci Geçmiş Yıl Aidatları"), this);
}

// ---- siblings and the photograph -------------------------------------------------------------

void FrmOgrenci::kardesSayisiniYaz()
{
    m_kardesSayisi->setText(QString::number(m_kardesler->rowCount()));
}

void FrmOgrenci::kardesEkle()
{
    const int rows = m_kardesler->rowCount();
    if (rows > 0 && m_kardesler->text(rows - 1, 0).trimmed().isEmpty()) {
        m_kardesler->setCurrentCell(rows - 1, 0);
        m_kardesler->setFocus();
        return;
    }
    const int row = m_kardesler->appendRow();
    kardesSayisiniYaz();
    m_kardesler->setCurrentCell(row, 0);
    m_kardesler->setFocus();
}

void FrmOgrenci::kardesSil()
{
    const int row = m_kardesler->currentRowIndex();
    if (row < 0) {
        return;
    }
    m_kardesler->removeRowAt(row);
    kardesSayisiniYaz();
    setDirty(true);
}

void FrmOgrenci::resmiGoster()
{
    QPixmap picture;
    if (!m_resim.isEmpty() && picture.loadFromData(m_resim)) {
        m_foto->setPixmap(picture.scaled(m_foto->size() - QSize(4, 4), Qt::KeepAspectRatio,
                                         Qt::SmoothTransformation));
        return;
    }
    m_foto->setPixmap(QPixmap());
    m_foto->setText(QStringLiteral("Fotoğraf\nYok"));
}

void FrmOgrenci::resimSec(const QString &dosya)
{
    const QByteArray picture = FotografHazirla(dosya);
    if (picture.isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("\"%1\" bir resim dosyası olarak okunamadı.").arg(dosya),
                   ui::Icon::Warning, this);
        return;
    }
    m_resim = picture;
    resmiGoster();
    setDirty(true);
}

void FrmOgrenci::fotografAl()
{
    if (!m_cmdFotograf->isEnabled()) {
        return;
    }
    QFileDialog dialog(this, QStringLiteral("Öğrenci Fotoğrafı"));
    dialog.setObjectName(QStringLiteral("dlgFotograf"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilter(QStringLiteral("Resim Dosyaları (*.bmp *.jpg *.jpeg *.png)"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    resimSec(dialog.selectedFiles().constFirst());
}

// ---- events ----------------------------------------------------------------------------------

bool FrmOgrenci::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_foto && event->type() == QEvent::MouseButtonPress) {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton) {
            fotografAl();
            return true;
        }
        if (mouse->button() == Qt::RightButton && !m_resim.isEmpty()) {
            QMenu menu(this);
            menu.addAction(findChild<QAction *>(QStringLiteral("mnuResimSil")));
            menu.exec(mouse->globalPosition().toPoint());
            return true;
        }
        return false;
    }
    if (event->type() != QEvent::KeyPress) {
        return ui::Screen::eventFilter(watched, event);
    }
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) {
        return false;
    }
    const int k = key->key();
    if (watched == m_numara && (k == Qt::Key_Return || k == Qt::Key_Enter || k == Qt::Key_Down)) {
        const qint64 numara = base::TamSayiCoz(m_numara->text()).value_or(0);
        if (numara <= 0) {
            return false; // Enter moves on
        }
        if (isDirty() && !askToSaveChanges()) {
            return true;
        }
        OgrenciGoster(numara, false);
        m_adi->setFocus();
        return true;
    }
    const bool moving
        = k == Qt::Key_PageUp || k == Qt::Key_PageDown || k == Qt::Key_Home || k == Qt::Key_End;
    if (!moving && k != Qt::Key_F2 && k != Qt::Key_F4 && k != Qt::Key_F10) {
        return false;
    }
    // The lists keep their own keys (F2 opens a cell, as in every list of the program), and so
    // do the notes and an open choice list for moving.
    auto *w = qobject_cast<QWidget *>(watched);
    for (QWidget *p = w; p && p != this; p = p->parentWidget()) {
        if (qobject_cast<QAbstractItemView *>(p) && (moving || k == Qt::Key_F2)) {
            return false;
        }
        if (qobject_cast<QPlainTextEdit *>(p) && moving) {
            return false;
        }
    }
    if (auto *c = qobject_cast<QComboBox *>(w); c && moving && c->view()->isVisible()) {
        return false;
    }
    tusaBas(k);
    return true;
}

void FrmOgrenci::closeEvent(QCloseEvent *event)
{
    ui::Screen::closeEvent(event);
    if (!event->isAccepted()) {
        return;
    }
    if (base::Status s = users::OgrenciKilitBirak(m_db, false); !s) {
        ui::HataBildir(s.error());
    }
}

} // namespace students
