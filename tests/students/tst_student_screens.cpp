#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "shell/main_window.h"
#include "store/database.h"
#include "store/migration.h"
#include "students/form_sinif_atlatma.h"
#include "students/frm_hizli_ogrenci_kayit.h"
#include "students/frm_ogrenci.h"
#include "students/frm_ogrenci_list.h"
#include "students/frm_toplu_sinif_degistirme.h"
#include "students/student_record.h"
#include "ui/grid.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/session.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace students;
using testing::click;
using testing::typeInto;

using testing::run;
using testing::scalar;

namespace {

// One user, one working year, the school's row, the working month November 2025.
void prepareOffice(store::Database &db)
{
    users::durum() = users::CalismaDurumu();
    QVERIFY(testing::openOffice(db, QStringLiteral("muhasebe"), QStringLiteral("1"),
                                QStringLiteral("202511")));
}

qint64 addStudent(store::Database &db, qint64 no, const QString &ad, const QString &soyad,
                  const QString &sinif)
{
    OgrenciKaydi k;
    k.ogrenci.insert(QStringLiteral("Ogr_Numarasi"), no);
    k.ogrenci.insert(QStringLiteral("Ogr_Adi"), ad);
    k.ogrenci.insert(QStringLiteral("Ogr_Soyadi"), soyad);
    k.ogrenci.insert(QStringLiteral("Ogr_Sinif"), sinif);
    base::Result<KaydetSonucu> r = OgrenciKaydet(db, k, false);
    return r ? r->kayitId : 0;
}

template<typename T>
T *openScreen(shell::MDIAidat &w, const QString &tool, const QString &form)
{
    w.ActBar_Click(tool);
    QMdiSubWindow *sub = w.screenWindow(form);
    if (!sub) {
        return nullptr;
    }
    sub->resize(sub->widget()->sizeHint().expandedTo(sub->widget()->size()) + QSize(16, 40));
    QApplication::setActiveWindow(&w);
    return qobject_cast<T *>(sub->widget());
}

void typeRow(ui::Grid *grid, int row, const QStringList &cells)
{
    for (int c = 0; c < cells.size(); ++c) {
        if (!cells.at(c).isNull()) {
            testing::typeCell(grid, row, c, cells.at(c));
        }
    }
}

void tab(QWidget *screen, const QString &caption)
{
    auto *tabs = screen->findChild<QTabWidget *>();
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->tabText(i) == caption) {
            tabs->setCurrentIndex(i);
        }
    }
}

QString text(QWidget *screen, const QString &name)
{
    if (auto *e = screen->findChild<QLineEdit *>(name)) {
        return e->text();
    }
    if (auto *l = screen->findChild<QLabel *>(name)) {
        return l->text();
    }
    if (auto *c = screen->findChild<QComboBox *>(name)) {
        return c->currentText();
    }
    return QStringLiteral("<yok>");
}

} // namespace

class tst_StudentScreens : public QObject
{
    Q_OBJECT

private slots:
    void septemberAClassIsEnteredAndARecordCompleted();
    void studentsAreFoundMovedThroughAndDeleted();
    void aClassMovesOn();
};

void tst_StudentScreens::septemberAClassIsEnteredAndARecordCompleted()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    prepareOffice(db);
    QVERIFY(addStudent(db, 100, QStringLiteral("Eski"), QStringLiteral("Öğrenci"),
                       QStringLiteral("10-A")));
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    testing::MessageRecorder messages;

    // ---- quick entry of 9-A
    auto *quick = openScreen<FrmHizliOgrenciKayit>(w, QStringLiteral("popHizliOgrenciGirisi"),
                                                   QStringLiteral("FrmHizliOgrenciKayit"));
    QVERIFY(quick);
    ui::Grid *grid = quick->grid();
    typeRow(grid, 0,
            {QStringLiteral("201"), QStringLiteral("Bora"), QStringLiteral("Kurt"),
             QStringLiteral("9-A"), QStringLiteral("ERKEK"), QStringLiteral("Fen"),
             QStringLiteral("İngilizce")});
    // The next row takes class, sex, department and language from the one above.
    typeRow(grid, 1, {QStringLiteral("202"), QStringLiteral("Burcu"), QStringLiteral("Kurt")});
    QCOMPARE(grid->text(1, FrmHizliOgrenciKayit::Sinif), QStringLiteral("9-A"));
    QCOMPARE(grid->text(1, FrmHizliOgrenciKayit::Dil), QStringLiteral("İngilizce"));
    testing::typeCell(grid, 1, FrmHizliOgrenciKayit::Cinsiyet, QStringLiteral("KIZ"));
    // A number that a student has already is refused when its cell is left.
    testing::typeCell(grid, 2, FrmHizliOgrenciKayit::No, QStringLiteral("100"));
    QCOMPARE(messages.texts().value(0),
             QStringLiteral("100 öğrenci numarasında kayıtlı öğrenci var."));
    QCOMPARE(messages.titles().value(0), QStringLiteral("UYARI"));
    QCOMPARE(grid->text(2, FrmHizliOgrenciKayit::No), QString());
    // Not a number the store can keep.
    messages.clear();
    testing::typeCell(grid, 2, FrmHizliOgrenciKayit::No, QStringLiteral("-5"));
    QCOMPARE(messages.texts().value(0), QStringLiteral("\"-5\" geçerli bir öğrenci numarası değil. "
                                                       "Öğrenci No olarak yalnız rakam giriniz."));
    QCOMPARE(grid->text(2, FrmHizliOgrenciKayit::No), QString());
    typeRow(grid, 2, {QStringLiteral("203"), QStringLiteral("Çağla"), QStringLiteral("D'Souza")});
    // A row without a surname waits in the grid.
    typeRow(grid, 3, {QStringLiteral("204"), QStringLiteral("Deniz")});
    testing::screenshot(quick, QStringLiteral("hizli-ogrenci-girisi"));
    messages.clear();
    click(quick, QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(), QStringList());
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT COUNT(*) FROM Ogrenci WHERE Ogr_Sinif = '9-A'")).toInt(),
        3);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Soyadi FROM Ogrenci WHERE Ogr_Numarasi = 203"))
                 .toString(),
             QStringLiteral("D'Souza"));
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT N.Ogr_Nufus_Cinsiyet FROM OgrenciNufus N JOIN Ogrenci O "
                                  "ON O.KayitID = N.KayitID WHERE O.Ogr_Numarasi = 202"))
            .toString(),
        QStringLiteral("KIZ"));
    QCOMPARE(text(quick, QStringLiteral("lblDurum")), QStringLiteral("3 öğrenci kaydedildi."));
    QCOMPARE(grid->text(0, FrmHizliOgrenciKayit::Ad), QStringLiteral("Deniz"));
    QVERIFY(!quick->findChild<QProgressBar *>(QStringLiteral("PicProgress"))->isVisible());
    quick->setDirty(false);
    w.mdiArea()->closeAllSubWindows();

    // ---- Burcu's record, completed
    const qint64 burcu
        = scalar(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE Ogr_Numarasi = 202"))
              .toLongLong();
    store::Query acc(
        db,
        QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, AidatID, "
                       "AidatTanim) VALUES (?, 1, 0, 0, 1, 'Öğrenim Ücreti') RETURNING KayitID"));
    acc.bind(burcu);
    QVERIFY(acc.exec() && acc.next());
    const qint64 account = acc.integer(0);
    acc.finish();
    for (int m = 0; m < 4; ++m) {
        store::Query d(
            db,
            QStringLiteral("INSERT INTO OgrenciAidatDetay (KayitID, Sira, OdemeTarihi, Odenecek) "
                           "VALUES (?, ?, ?, ?)"));
        d.bind(account).bind(m + 1).bind(QDate(2025, 9 + m, 5)).bind(base::Para::fromUnits(12500));
        QVERIFY(d.exec());
    }
    store::Query p(
        db, QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, OdemeTarihi, Odenen) "
                           "VALUES (?, 1, ?, ?)"));
    p.bind(account).bind(QDate(2025, 9, 5)).bind(base::Para::fromRaw(125005000));
    QVERIFY(p.exec());

    auto *screen = openScreen<FrmOgrenci>(w, QStringLiteral("btnOgrenciBilgileri"),
                                          QStringLiteral("FrmOgrenci"));
    QVERIFY(screen);
    QVERIFY(!screen->findChild<QPushButton *>(QStringLiteral("cmdKaydet"))->isEnabled());
    typeInto(screen, QStringLiteral("Ogr_Numarasi"), QStringLiteral("202"));
    QTest::keyClick(screen->findChild<QLineEdit *>(QStringLiteral("Ogr_Numarasi")), Qt::Key_Return);
    QCOMPARE(screen->kayitId(), burcu);
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("Burcu"));
    QCOMPARE(text(screen, QStringLiteral("Ogr_Sinif")), QStringLiteral("9-A"));
    QCOMPARE(text(screen, QStringLiteral("Ogr_Nufus_Cinsiyet")), QStringLiteral("KIZ"));
    QCOMPARE(
        scalar(db,
               QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"),
               {burcu})
            .toString(),
        QStringLiteral("muhasebe"));
    // The totals: 4 x 12.500,00 owed, 12.500,50 paid; due by the end of November: 3 x 12.500,00.
    QCOMPARE(text(screen, QStringLiteral("lblToplamBorc")), QStringLiteral("50.000,00"));
    QCOMPARE(text(screen, QStringLiteral("lblToplamOdenen")), QStringLiteral("12.500,50"));
    QCOMPARE(text(screen, QStringLiteral("lblKalan")), QStringLiteral("37.499,50"));
    QCOMPARE(text(screen, QStringLiteral("lblBuAyToplam")), QStringLiteral("24.999,50"));
    testing::screenshot(screen, QStringLiteral("ogrenci-aylik-borc"));

    tab(screen, QStringLiteral("&Veli Bilgileri"));
    typeInto(screen, QStringLiteral("Ogr_Veli_Adi"), QStringLiteral("Hülya"));
    typeInto(screen, QStringLiteral("Ogr_Veli_Soyadi"), QStringLiteral("Kurt"));
    typeInto(screen, QStringLiteral("Ogr_Veli_Yakinlik"), QStringLiteral("ANNESİ"));
    typeInto(screen, QStringLiteral("Ogr_Veli_Maas"), QStringLiteral("42.750,25"));
    typeInto(screen, QStringLiteral("Ogr_Veli_Ev_Adresi"), QString(200, u'ş'));
    testing::screenshot(screen, QStringLiteral("ogrenci-veli"));
    tab(screen, QStringLiteral("Ana Baba"));
    typeInto(screen, QStringLiteral("Ogr_Ana_Adi"), QStringLiteral("Hülya"));
    typeInto(screen, QStringLiteral("Ogr_Baba_Adi"), QStringLiteral("Kemal"));
    typeInto(screen, QStringLiteral("Ogr_Baba_Is_Adresi"), QStringLiteral("Alsancak, İzmir"));
    testing::screenshot(screen, QStringLiteral("ogrenci-ana-baba"));
    tab(screen, QStringLiteral(" &Nüfus Bilgileri"));
    typeInto(screen, QStringLiteral("Ogr_MernisNo"), QStringLiteral("12345678901"));
    typeInto(screen, QStringLiteral("Ogr_Nufus_Dogum_Tarih"), QStringLiteral("01022010"));
    auto *kan = screen->findChild<QComboBox *>(QStringLiteral("Ogr_Nufus_Kan_grubu"));
    kan->setCurrentIndex(kan->findText(QStringLiteral("0 (RH-)")));
    emit kan->activated(kan->currentIndex());
    testing::screenshot(screen, QStringLiteral("ogrenci-nufus"));

    // An impossible date stops the save with a message; nothing is written.
    typeInto(screen, QStringLiteral("Ogr_Kayit_Tarihi"), QStringLiteral("31022025"));
    messages.clear();
    click(screen, QStringLiteral("cmdKaydet"));
    QVERIFY(messages.texts().value(0).startsWith(
        QStringLiteral("Kayıt Tarihi alanına yazılan \"31.02.2025\" geçerli bir tarih değil.")));
    QVERIFY(
        scalar(db, QStringLiteral("SELECT Ogr_Veli_Adi FROM Ogrenci WHERE KayitID = ?"), {burcu})
            .isNull());
    typeInto(screen, QStringLiteral("Ogr_Kayit_Tarihi"), QStringLiteral("08092025"));

    // Siblings: the count follows the rows.
    tab(screen, QStringLiteral(" Kardeş Bilgileri"));
    click(screen, QStringLiteral("cmdKardesEkle"));
    auto *kardesler = screen->findChild<ui::Grid *>(QStringLiteral("grdKardesler"));
    typeRow(kardesler, 0,
            {QStringLiteral("Bora"), QStringLiteral("Kurt"), QString(), QStringLiteral("9-A")});
    click(screen, QStringLiteral("cmdKardesEkle"));
    click(screen, QStringLiteral("cmdKardesEkle")); // an empty last row is not doubled
    QCOMPARE(kardesler->rowCount(), 2);
    typeRow(kardesler, 1,
            {QStringLiteral("Ela"), QStringLiteral("Kurt"), QStringLiteral("Ege İlkokulu")});
    QCOMPARE(text(screen, QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say")), QStringLiteral("2"));
    testing::screenshot(screen, QStringLiteral("ogrenci-kardes"));
    tab(screen, QStringLiteral("Özel &Bilgiler"));
    auto *ozel = screen->findChild<QPlainTextEdit *>(QStringLiteral("OzelBilgi"));
    ozel->setFocus();
    testing::typeText(ozel, QStringLiteral("Astım; spor dersinde dikkat."));

    // The photograph, chosen from a file.
    QTemporaryDir pictures;
    const QString file = pictures.filePath(QStringLiteral("burcu.png"));
    QImage picture(900, 1200, QImage::Format_RGB32);
    picture.fill(QColor(40, 120, 200));
    QVERIFY(picture.save(file));
    testing::ModalDriver driver;
    driver.then([file](QWidget *d) {
        auto *dialog = qobject_cast<QFileDialog *>(d);
        QVERIFY(dialog);
        // The operator types the file's full name and presses Enter.
        typeInto(d, QStringLiteral("fileNameEdit"), file);
        QTest::keyClick(d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
    });
    click(screen, QStringLiteral("cmdFotografAl"));
    QTRY_COMPARE(driver.remaining(), 0);
    QTRY_VERIFY(!screen->resim().isEmpty());
    // Not in the store before the save.
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM OgrenciFotograf")).toInt(), 0);
    tab(screen, QStringLiteral("&Aylık Borç"));
    testing::screenshot(screen, QStringLiteral("ogrenci-ana"));

    messages.clear();
    click(screen, QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(), QStringList());
    QVERIFY(!screen->isDirty());
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Veli_Adi FROM Ogrenci WHERE KayitID = ?"), {burcu})
            .toString(),
        QStringLiteral("Hülya"));
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Veli_Maas FROM Ogrenci WHERE KayitID = ?"), {burcu})
            .toLongLong(),
        427502500);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Veli_Ev_Adresi FROM Ogrenci WHERE KayitID = ?"),
                    {burcu})
                 .toString()
                 .size(),
             150);
    QCOMPARE(
        scalar(db,
               QStringLiteral("SELECT Ogr_Okulda_Okuyan_Kardes_Say FROM Ogrenci WHERE KayitID = ?"),
               {burcu})
            .toInt(),
        2);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT Ogr_Nufus_Kan_grubu FROM OgrenciNufus WHERE KayitID = ?"),
               {burcu})
            .toString(),
        QStringLiteral("0 (RH-)"));
    QCOMPARE(store::fromStoredDate(
                 scalar(db,
                        QStringLiteral("SELECT Ogr_Nufus_Dogum_Tarih FROM OgrenciNufus "
                                       "WHERE KayitID = ?"),
                        {burcu}))
                 .date(),
             QDate(2010, 2, 1));
    QCOMPARE(
        scalar(db, QStringLiteral(
                       "SELECT OgrKardesOkul FROM OgrenciKardesler WHERE OgrKardesAd = 'Bora'"))
            .toString(),
        QStringLiteral("-"));
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT OzelBilgi FROM OgrenciOzel WHERE KayitID = ?"), {burcu})
            .toString(),
        QStringLiteral("Astım; spor dersinde dikkat."));
    const QByteArray stored
        = scalar(db, QStringLiteral("SELECT Resim FROM OgrenciFotograf WHERE KayitID = ?"), {burcu})
              .toByteArray();
    QVERIFY(stored.startsWith("\xff\xd8"));
    QImage kept;
    QVERIFY(kept.loadFromData(stored));
    QCOMPARE(kept.size(), QSize(600, 800));

    // The right-click entry only empties the frame; leaving without saving keeps the picture.
    auto *remove = screen->findChild<QAction *>(QStringLiteral("mnuResimSil"));
    QCOMPARE(remove->text(), QStringLiteral("Resim Sil (Öğrenci Fotoğrafını Siler.)"));
    remove->trigger();
    QVERIFY(screen->resim().isEmpty());
    messages.clear();
    messages.answer(ui::Answer::No);
    click(screen, QStringLiteral("cmdCikis"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Değişen Bilgileri Kaydetmek İstiyor Musunuz?")});
    QTRY_VERIFY(!w.screenWindow(QStringLiteral("FrmOgrenci")));
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM OgrenciFotograf")).toInt(), 1);
    // Closing let the mark go.
    QCOMPARE(
        scalar(db,
               QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"),
               {burcu})
            .toString(),
        QString());
    w.close();
    store::setDefaultDatabase(nullptr);
}

void tst_StudentScreens::studentsAreFoundMovedThroughAndDeleted()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    prepareOffice(db);
    const qint64 mehmet = addStudent(db, 15, QStringLiteral("Mehmet"), QStringLiteral("Yılmaz"),
                                     QStringLiteral("9-B"));
    addStudent(db, 11, QStringLiteral("Ahmet"), QStringLiteral("Demir"), QStringLiteral("9-A"));
    const qint64 ipek = addStudent(db, 12, QStringLiteral("İpek"), QStringLiteral("Doğan"),
                                   QStringLiteral("9-A"));
    addStudent(db, 14, QStringLiteral("Mehtap"), QStringLiteral("Akın"), QStringLiteral("9-B"));
    addStudent(db, 30, QStringLiteral("Zeynep"), QStringLiteral("Ünal"), QStringLiteral("10-A"));
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    testing::MessageRecorder messages;
    auto *screen = openScreen<FrmOgrenci>(w, QStringLiteral("popOgrenciBilgileri"),
                                          QStringLiteral("FrmOgrenci"));
    QVERIFY(screen);
    auto *number = screen->findChild<QLineEdit *>(QStringLiteral("Ogr_Numarasi"));

    // F10: the pick-list follows the typed name and hands the student back.
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        auto *list = qobject_cast<FrmOgrenciList *>(d);
        QVERIFY(list);
        QCOMPARE(list->rowCount(), 5);
        typeInto(d, QStringLiteral("txtAd"), QStringLiteral("meht"));
        QCOMPARE(list->grid()->text(list->grid()->currentRowIndex(), 1), QStringLiteral("Mehtap"));
        typeInto(d, QStringLiteral("txtSoyad"), QStringLiteral("y"));
        QCOMPARE(list->grid()->text(list->grid()->currentRowIndex(), 2), QStringLiteral("Yılmaz"));
        // Enter keeps the students whose surname begins so.
        QTest::keyClick(d->findChild<QLineEdit *>(QStringLiteral("txtSoyad")), Qt::Key_Return);
        QCOMPARE(list->rowCount(), 1);
        testing::screenshot(d, QStringLiteral("ogrenci-listesi"));
        click(d, QStringLiteral("cmdTamam"));
    });
    number->setFocus();
    QTest::keyClick(number, Qt::Key_F10);
    QCOMPARE(driver.remaining(), 0);
    QCOMPARE(screen->kayitId(), mehmet);

    // Moving by number; a change asks first, and Cancel stays.
    QTest::keyClick(number, Qt::Key_PageUp);
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("Mehtap"));
    QTest::keyClick(number, Qt::Key_Home);
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("Ahmet"));
    typeInto(screen, QStringLiteral("Ogr_Semt"), QStringLiteral("Bornova"));
    messages.clear();
    messages.answer(ui::Answer::Cancel);
    QTest::keyClick(number, Qt::Key_End);
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Değişen Bilgileri Kaydetmek İstiyor Musunuz?")});
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("Ahmet"));
    messages.answer(ui::Answer::No);
    QTest::keyClick(number, Qt::Key_End);
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("Zeynep"));
    // By class: the next in 9-A after Ahmet is İpek.
    screen->findChild<QComboBox *>(QStringLiteral("cmbArama"))->setCurrentIndex(3);
    QVERIFY(screen->OgrenciGoster(11, false));
    click(screen, QStringLiteral("cmdSonraki"));
    QCOMPARE(screen->kayitId(), ipek);

    // F2 without an identity number, F4 and the class list not built yet.
    messages.clear();
    QTest::keyClick(number, Qt::Key_F2);
    QTest::keyClick(number, Qt::Key_F4);
    click(screen, QStringLiteral("cmdSinifListesi"));
    QCOMPARE(messages.texts(),
             (QStringList{
                 QStringLiteral(" Öğrenci T.C. Kimlik No bilgisi olmadığı için geçmiş yıl aidat "
                                "bilgilerine ulaşılamadı."),
                 QStringLiteral("\"Cari Durum\" bölümü bu sürümde henüz hazır değil."),
                 QStringLiteral("\"Sınıf Listesi\" bölümü bu sürümde henüz hazır değil.")}));
    // Once rights exist, F4 needs the right to the bank payments.
    store::Query right(
        db, QStringLiteral("INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                           "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 1, ?, ?)"));
    right.bind(*users::Sifrele(QStringLiteral("muhasebe")))
        .bind(QStringLiteral("Öğrenci Bilgileri"))
        .bind(QStringLiteral("btnOgrenciBilgileri"));
    QVERIFY(right.exec());
    messages.clear();
    QTest::keyClick(number, Qt::Key_F4);
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Bu programa giriş yetkiniz yok. Lütfen Sistem "
                                        "yetkilisi ile görüşünüz.")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Uyarı !")});
    QVERIFY(users::durum().HakYazma); // the screen keeps its own right to write

    // The triple of a student who exists: No shows him, Yes adds the twin.
    click(screen, QStringLiteral("cmdYeni"));
    QCOMPARE(screen->kayitId(), 0);
    typeInto(screen, QStringLiteral("Ogr_Numarasi"), QStringLiteral("12"));
    typeInto(screen, QStringLiteral("Ogr_Adi"), QStringLiteral("İpek"));
    typeInto(screen, QStringLiteral("Ogr_Soyadi"), QStringLiteral("Doğan"));
    messages.clear();
    messages.answer(ui::Answer::No);
    click(screen, QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("12 Numaralı İpek Doğan kayıtlıdır.\n Bu öğrenciyi yeni "
                                        "bir kayıt olarak kaydetmek istediğinize emin misiniz?")});
    QCOMPARE(screen->kayitId(), ipek);
    click(screen, QStringLiteral("cmdYeni"));
    typeInto(screen, QStringLiteral("Ogr_Numarasi"), QStringLiteral("12"));
    typeInto(screen, QStringLiteral("Ogr_Adi"), QStringLiteral("İpek"));
    typeInto(screen, QStringLiteral("Ogr_Soyadi"), QStringLiteral("Doğan"));
    click(screen, QStringLiteral("cmdKaydet"));
    const qint64 twin = screen->kayitId();
    QVERIFY(twin > ipek);
    QCOMPARE(
        scalar(db, QStringLiteral("SELECT COUNT(*) FROM Ogrenci WHERE Ogr_Numarasi = 12")).toInt(),
        2);

    // A number that is not one is refused before anything is written.
    typeInto(screen, QStringLiteral("Ogr_Numarasi"), QStringLiteral("12a"));
    messages.clear();
    click(screen, QStringLiteral("cmdKaydet"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("\"12a\" geçerli bir öğrenci numarası değil. Öğrenci "
                                        "No olarak yalnız rakam giriniz.")});
    screen->setDirty(false);

    // Number, names and class changed through their panel.
    QVERIFY(screen->OgrenciGoster(twin, true));
    driver.then([](QWidget *d) {
        QCOMPARE(d->objectName(), QStringLiteral("FrmBilgiDegistir"));
        typeInto(d, QStringLiteral("txtYeniAdi"), QString());
        d->findChild<QLineEdit *>(QStringLiteral("txtYeniAdi"))->clear();
        click(d, QStringLiteral("cmdDegistir"));
        QVERIFY(d->isVisible());
        typeInto(d, QStringLiteral("txtYeniNumara"), QStringLiteral("13"));
        typeInto(d, QStringLiteral("txtYeniAdi"), QStringLiteral("İpek Su"));
        typeInto(d, QStringLiteral("txtYeniSinif"), QStringLiteral("9-B"));
        testing::screenshot(d, QStringLiteral("bilgi-degistir"));
        click(d, QStringLiteral("cmdDegistir"));
    });
    messages.clear();
    click(screen, QStringLiteral("cmdDegistir"));
    QCOMPARE(messages.texts(), QStringList{QStringLiteral(
                                   "Yeni Adı girilmedi. Lütfen bilgilerinizi eksiksiz giriniz.")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Dikkat")});
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QStringLiteral("İpek Su"));
    QCOMPARE(text(screen, QStringLiteral("Ogr_Numarasi")), QStringLiteral("13"));
    QCOMPARE(scalar(db, QStringLiteral("SELECT Ogr_Sinif FROM Ogrenci WHERE KayitID = ?"), {ipek})
                 .toString(),
             QStringLiteral("9-A"));

    // Deleting the shown student, after the question with the genitive suffix.
    QVERIFY(screen->OgrenciGoster(ipek, true));
    messages.clear();
    messages.answer(ui::Answer::Yes);
    click(screen, QStringLiteral("cmdSil"));
    QCOMPARE(messages.texts(),
             QStringList{
                 QStringLiteral("12 numaralı İpek Doğan'ın bilgilerini silmek istiyor musunuz?")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Uyarı")});
    QCOMPARE(screen->kayitId(), 0);
    QCOMPARE(text(screen, QStringLiteral("Ogr_Adi")), QString());
    QVERIFY(!screen->findChild<QPushButton *>(QStringLiteral("cmdSil"))->isEnabled());
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM Ogrenci WHERE KayitID = ?"), {ipek})
                 .toInt(),
             0);

    // A student another user is working on is not shown.
    QVERIFY(
        db.exec(QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = 'sekreter' WHERE "
                               "Ogr_Numarasi = 30"))
            .ok());
    messages.clear();
    QVERIFY(!screen->OgrenciGoster(30, false));
    QCOMPARE(messages.texts(),
             QStringList{
                 QStringLiteral("sekreter İSİMLİ KULLANICI\n\nBU ÖĞRENCİDE İŞLEM YAPMAKTADIR.")});
    QCOMPARE(screen->kayitId(), 0);
    w.mdiArea()->closeAllSubWindows();
    w.close();
    store::setDefaultDatabase(nullptr);
}

void tst_StudentScreens::aClassMovesOn()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    prepareOffice(db);
    const qint64 a
        = addStudent(db, 1, QStringLiteral("Ali"), QStringLiteral("Kaya"), QStringLiteral("9-A"));
    const qint64 b
        = addStudent(db, 2, QStringLiteral("Berk"), QStringLiteral("Koç"), QStringLiteral("9-A"));
    const qint64 c
        = addStudent(db, 3, QStringLiteral("Cem"), QStringLiteral("Tekin"), QStringLiteral("9-A"));
    addStudent(db, 4, QStringLiteral("Defne"), QStringLiteral("Polat"), QStringLiteral("9-B"));
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    testing::MessageRecorder messages;
    auto sinif = [&db](qint64 key) {
        return scalar(db, QStringLiteral("SELECT Ogr_Sinif FROM Ogrenci WHERE KayitID = ?"), {key})
            .toString();
    };

    // Sınıf Atlatma: Berk stays back, the others go to 10-A.
    auto *move = openScreen<Form_Sinif_Atlatma>(w, QStringLiteral("popSinifAtlatma"),
                                                QStringLiteral("Form_Sinif_Atlatma"));
    QVERIFY(move);
    auto *siniflar = move->findChild<QComboBox *>(QStringLiteral("siniflar"));
    QCOMPARE(siniflar->count(), 2);
    siniflar->setCurrentIndex(siniflar->findText(QStringLiteral("9-A")));
    click(move, QStringLiteral("cmdGoster"));
    QCOMPARE(move->grid()->rowCount(), 3);
    QVERIFY(move->grid()->checked(1, Form_Sinif_Atlatma::Sec));
    move->grid()->setFocus();
    move->grid()->setCurrentCell(1, Form_Sinif_Atlatma::Sec);
    QTest::keyClick(move->grid(), Qt::Key_Space);
    QVERIFY(!move->grid()->checked(1, Form_Sinif_Atlatma::Sec));
    auto *yeni = move->findChild<QComboBox *>(QStringLiteral("siniflar2"));
    yeni->lineEdit()->setFocus();
    testing::typeText(yeni->lineEdit(), QStringLiteral("10-A"));
    testing::screenshot(move, QStringLiteral("sinif-atlatma"));
    click(move, QStringLiteral("cmdKaydet"));
    QCOMPARE(sinif(a), QStringLiteral("10-A"));
    QCOMPARE(sinif(b), QStringLiteral("9-A"));
    QCOMPARE(sinif(c), QStringLiteral("10-A"));
    QCOMPARE(move->grid()->rowCount(), 1);
    QCOMPARE(siniflar->count(), 3);
    QCOMPARE(scalar(db, QStringLiteral("SELECT COUNT(*) FROM Ogrenci WHERE Donem = '2025-2026'"))
                 .toInt(),
             4);
    w.mdiArea()->closeAllSubWindows();

    // Toplu Sınıf Değiştirme: the new class is put beside the ticked ones, then written.
    auto *bulk
        = openScreen<FrmTopluSinifDegistirme>(w, QStringLiteral("popTopluBorcSinifDegistirme"),
                                              QStringLiteral("FrmTopluSinifDegistirme"));
    QVERIFY(bulk);
    auto *combo1 = bulk->findChild<QComboBox *>(QStringLiteral("Combo1"));
    combo1->setCurrentIndex(combo1->findText(QStringLiteral("10-A")));
    click(bulk, QStringLiteral("cmdGoster"));
    QCOMPARE(bulk->grid()->rowCount(), 2);
    auto *combo2 = bulk->findChild<QComboBox *>(QStringLiteral("Combo2"));
    combo2->lineEdit()->setFocus();
    testing::typeText(combo2->lineEdit(), QStringLiteral("11-A"));
    click(bulk, QStringLiteral("cmdTumuIsaretsiz"));
    bulk->grid()->setValue(0, FrmTopluSinifDegistirme::Sec, true);
    click(bulk, QStringLiteral("cmdTasi"));
    QCOMPARE(bulk->grid()->text(0, FrmTopluSinifDegistirme::Sinif), QStringLiteral("11-A"));
    QCOMPARE(bulk->grid()->text(1, FrmTopluSinifDegistirme::Sinif), QStringLiteral("10-A"));
    QCOMPARE(sinif(a), QStringLiteral("10-A")); // nothing written yet
    testing::screenshot(bulk, QStringLiteral("toplu-sinif-degistirme"));
    messages.answer(ui::Answer::No);
    click(bulk, QStringLiteral("cmdKayit"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("İşaretli Öğrecileri Kaydetmek İstiyor musunuz?")});
    QCOMPARE(sinif(a), QStringLiteral("10-A"));
    messages.clear();
    click(bulk, QStringLiteral("cmdKayit"));
    QCOMPARE(sinif(a), QStringLiteral("11-A"));
    QCOMPARE(sinif(c), QStringLiteral("10-A"));
    // A move put into the list and not written: leaving asks, and No drops it.
    click(bulk, QStringLiteral("cmdTumuIsaretli"));
    click(bulk, QStringLiteral("cmdTasi"));
    messages.clear();
    messages.answer(ui::Answer::No);
    click(bulk, QStringLiteral("cmdCikis"));
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Yapılan değişiklikleri kaydetmek istiyor musunuz?")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("UYARI")});
    QTRY_VERIFY(!w.screenWindow(QStringLiteral("FrmTopluSinifDegistirme")));
    QCOMPARE(sinif(c), QStringLiteral("10-A"));
    w.close();
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_StudentScreens)
#include "tst_student_screens.moc"
