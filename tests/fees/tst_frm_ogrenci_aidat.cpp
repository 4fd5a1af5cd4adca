#include "office_window.h"

#include "fees/definitions.h"
#include "fees/discounts.h"
#include "fees/frm_log.h"
#include "fees/frm_ogrenci_aidat.h"
#include "maintenance/school.h"
#include "students/student_record.h"
#include "ui/grid.h"
#include "ui/screen_registry.h"
#include "users/record_lock.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;
using testing::count;

namespace {

Para tl(const char *amount)
{
    return Para::fromDecimalString(QString::fromLatin1(amount)).value();
}

qint64 kalan(store::Database &db)
{
    return testing::scalar(db, u"SELECT Kalan FROM OgrenciAidatTanim"_s).toLongLong();
}

// Tuition of 10.000: 1.000 down, five installments of 1.800 from 5 September 2025.
qint64 saveTuition(store::Database &db)
{
    fees::AidatTanimi t;
    t.aidatTanim = u"Öğrenim"_s;
    t.toplam = tl("10000");
    t.pesinat = tl("1000");
    t.birimFiyati = t.toplam;
    t.birimAdeti = 1;
    t.taksitSayisi = 5;
    t.odemeBasTarihi = QDate(2025, 9, 5);
    for (int i = 0; i < 5; ++i)
        t.taksitler.append({t.odemeBasTarihi.addMonths(i), tl("1800")});
    const base::Result<fees::KayitSonucu> r = fees::AidatTaksitDetayKaydet(db, t);
    return r ? r->kayitId : 0;
}

qint64 addStudent(store::Database &db)
{
    students::OgrenciKaydi k;
    k.ogrenci.insert(u"Ogr_Numarasi"_s, 101);
    k.ogrenci.insert(u"Ogr_Adi"_s, u"Çağrı"_s);
    k.ogrenci.insert(u"Ogr_Soyadi"_s, u"O'Neil"_s);
    k.ogrenci.insert(u"Ogr_Sinif"_s, u"5-A"_s);
    const base::Result<students::KaydetSonucu> r = students::OgrenciKaydet(db, k, false);
    return r ? r->kayitId : 0;
}

// The student screen, the student found by his number, F4: his account screen.
fees::FrmOgrenciAidat *openAccount(testing::OfficeWindow &o)
{
    QWidget *ogrenci = o.open(u"btnOgrenciBilgileri"_s, u"FrmOgrenci"_s);
    if (!ogrenci)
        return nullptr;
    auto *numara = ogrenci->findChild<QLineEdit *>(u"Ogr_Numarasi"_s);
    numara->setFocus();
    testing::typeText(numara, u"101"_s);
    QTest::keyClick(numara, Qt::Key_Return);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4);
    QApplication::setActiveWindow(o.window.get());
    QMdiSubWindow *sub = o.w().screenWindow(u"FrmOgrenciAidat"_s);
    return sub ? qobject_cast<fees::FrmOgrenciAidat *>(sub->widget()) : nullptr;
}

void pressLetter(QWidget *screen, Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : screen, key,
                    Qt::AltModifier);
    QTest::qWait(250); // a button pressed by its letter shows itself down first
}

// F10 on the active line: the fee of row `row` of the choice is given to the account.
void giveFee(testing::OfficeWindow &o, int row = 0)
{
    testing::ModalDriver driver;
    driver.then([row](QWidget *d) {
        d->findChild<ui::Grid *>(u"vaSpread1"_s)->setCurrentCell(row, 0);
        testing::click(d, u"cmdTamam"_s);
    });
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10);
    QApplication::setActiveWindow(o.window.get()); // as the window manager does after a dialog
}

} // namespace

class tst_FrmOgrenciAidat : public QObject
{
    Q_OBJECT

private slots:
    void anOfficeTakesAFeeAndItsPayments();
    void anAutomaticPlanWithASiblingDiscount();
    void aStudentHeldByAnotherUserIsNotOpened();
    void theChangeLogListsAndExports();
    void aLockedScreenTakesOneRowAtATime();
    void anUnpaidFeeIsReplacedInItsAccount();
    void aSaveOverAnotherWriteShowsWhatWasTyped();
    void inInvoiceModePaymentsMeetTheirInvoices();
};

void tst_FrmOgrenciAidat::anOfficeTakesAFeeAndItsPayments()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    const qint64 aidat = saveTuition(o.db());
    QVERIFY(aidat > 0);
    const qint64 ogrenci = addStudent(o.db());
    QVERIFY(ogrenci > 0);
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    QCOMPARE(screen->ogrKayitId(), ogrenci);
    QCOMPARE(screen->findChild<QLabel *>(u"lblAdSoyad"_s)->text(), u"Çağrı O'Neil"_s);

    // F10 on the empty line: the fee is chosen, its plan becomes the account, and is saved.
    giveFee(o);
    QCOMPARE(count(o.db(), u"OgrenciAidatTanim"_s), 1);
    QCOMPARE(count(o.db(), u"OgrenciAidatDetay"_s, u"Sira > 0"_s), 5);
    QCOMPARE(kalan(o.db()), tl("10000").raw());
    auto *hesaplar = screen->findChild<ui::Grid *>(u"vaSpread1"_s);
    QCOMPARE(hesaplar->text(0, 0), u"Öğrenim"_s);
    QCOMPARE(hesaplar->rowCount(), 2); // the line for the next fee
    // The planned down payment stands in its box: Tab through it changes nothing.
    auto *pesinat = screen->findChild<QLineEdit *>(u"CInputBox1"_s);
    QCOMPARE(pesinat->text(), u"1.000,00"_s);
    pesinat->setFocus();
    QTest::keyClick(pesinat, Qt::Key_Tab);
    QCOMPARE(kalan(o.db()), tl("10000").raw());

    // The first installment paid by "Taksidi Öde", under its own Sira.
    auto *taksitler = screen->findChild<ui::Grid *>(u"vaSpread2"_s);
    auto *odemeler = screen->findChild<ui::Grid *>(u"vaSpread3"_s);
    taksitler->setFocus();
    taksitler->setCurrentCell(0, 0);
    pressLetter(screen, Qt::Key_D);
    QCOMPARE(count(o.db(), u"OgrenciAidatOdeme"_s), 1);
    QCOMPARE(kalan(o.db()), tl("8200").raw());

    // A part of the second typed by hand; a negative amount is refused and changes nothing.
    testing::typeCell(odemeler, 1, 0, u"07.10.2025"_s);
    testing::typeCell(odemeler, 1, 1, u"-5"_s);
    QCOMPARE(o.messages.texts().last(), u"Ödenen sütununa eksi bir tutar yazılamaz."_s);
    QCOMPARE(kalan(o.db()), tl("8200").raw());
    testing::typeCell(odemeler, 1, 1, u"900"_s);
    QCOMPARE(kalan(o.db()), tl("7300").raw());
    QCOMPARE(hesaplar->text(0, 3), u"7.300,00"_s);
    QCOMPARE(odemeler->rowCount(), 3);

    // Paid by cheque: its details are kept on the row, its number in the note.
    testing::typeCell(odemeler, 1, 2, u"Çek"_s);
    auto *cek = screen->findChild<QPushButton *>(u"cmdCekDetay"_s);
    QVERIFY(cek->isEnabled());
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        testing::typeInto(d, u"txtCekNo"_s, u"A-123456"_s);
        testing::typeInto(d, u"txtSube"_s, u"Kadıköy"_s);
        testing::click(d, u"cmdCikis"_s);
    });
    cek->click();
    QCOMPARE(driver.remaining(), 0);
    QCOMPARE(testing::scalar(o.db(),
                             u"SELECT Ogr_Cari_Durum_Aciklamasi || '/' || Sube || '/' "
                             "|| OdemeSekli FROM OgrenciAidatOdeme WHERE Odenen = ?"_s,
                             {QVariant::fromValue(tl("900").raw())})
                 .toString(),
             u"A-123456/Kadıköy/C"_s);
    QApplication::setActiveWindow(o.window.get());

    // Deleted after its question, which Enter would have answered No.
    odemeler->setFocus();
    odemeler->setCurrentCell(1, 1);
    o.messages.clear();
    pressLetter(screen, Qt::Key_S);
    QCOMPARE(o.messages.texts(),
             QStringList{u"2. SATIRDAKİ ÖDEMEYİ SİLMEK İSTEDİĞİNİZDEN EMİN MİSİNİZ? \n"_s});
    QVERIFY(!o.messages.messages().first().yesDefault);
    QCOMPARE(kalan(o.db()), tl("8200").raw());
    QCOMPARE(testing::scalar(o.db(), u"SELECT count(*) FROM %1 WHERE Islem_Turu = 'Delete'"_s.arg(
                                         o.db().table(store::Store::Log, u"OgrenciAidatOdeme"_s)))
                 .toInt(),
             1);

    // Closed and opened again: the same account, unchanged by the opening.
    const QString before
        = testing::scalar(o.db(), u"SELECT Surum FROM OgrenciAidatTanim"_s).toString();
    screen->closeWindow();
    QTRY_VERIFY(!o.w().screenWindow(u"FrmOgrenciAidat"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4);
    screen
        = qobject_cast<fees::FrmOgrenciAidat *>(o.w().screenWindow(u"FrmOgrenciAidat"_s)->widget());
    QVERIFY(screen);
    QCOMPARE(screen->hesap().odemeler.size(), 1);
    QCOMPARE(screen->hesap().odemeler.first().sira, 1);
    QCOMPARE(testing::scalar(o.db(), u"SELECT Surum FROM OgrenciAidatTanim"_s).toString(), before);
}

void tst_FrmOgrenciAidat::anAutomaticPlanWithASiblingDiscount()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    QVERIFY(saveTuition(o.db()) > 0);
    QList<fees::IskontoTanimi> standart
        = {{0, u"Kardeş İndirimi"_s, tl("10"), fees::EsasTutardan, fees::Oran},
           {0, u"Personel"_s, tl("500"), fees::KalanTutardan, fees::Tutar}};
    QVERIFY(fees::IskontoTanimlariKaydet(o.db(), standart));
    QVERIFY(addStudent(o.db()) > 0);
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    giveFee(o);

    // Both discounts marked and worked out; the plan follows; Tamam puts it into the account.
    QString kalan;
    testing::ModalDriver driver;
    driver.then([&kalan](QWidget *d) {
        auto *indirimler = d->findChild<ui::Grid *>(u"Spr_Indirim"_s);
        for (int r = 0; r < indirimler->rowCount(); ++r) {
            if (indirimler->text(r, 2) != u"Serbest İndirim"_s)
                indirimler->setValue(r, 1, true);
        }
        // The standard list put in place keeps the marks.
        testing::click(d, u"cmdStandartGoster"_s);
        testing::click(d, u"cmdStandartGuncelle"_s);
        testing::click(d, u"cmdYenidenHesapla"_s);
        kalan = d->findChild<QLineEdit *>(u"txtKalan"_s)->text();
        // No two of the dialog's controls answer to one Alt+letter.
        QStringList letters;
        for (QAbstractButton *b : d->findChildren<QAbstractButton *>())
            letters << b->text().section(u'&', 1, 1).left(1).toUpper();
        for (QLabel *l : d->findChildren<QLabel *>())
            letters << l->text().section(u'&', 1, 1).left(1).toUpper();
        letters.removeAll(QString());
        const qsizetype all = letters.size();
        letters.removeDuplicates();
        QCOMPARE(letters.size(), all);
        testing::click(d, u"cmdTamam"_s);
    });
    screen->findChild<QPushButton *>(u"cmdOtomatikTaksit"_s)->click();
    QCOMPARE(driver.remaining(), 0);
    QCOMPARE(kalan, u"0,00"_s);
    // 10 % of 10.000, then 500 off what is left: 1.500 off, 8.500 owed, 1.000 of it down.
    QCOMPARE(testing::scalar(o.db(), u"SELECT IskontoTutari FROM OgrenciAidatTanim"_s).toLongLong(),
             tl("1500").raw());
    QCOMPARE(testing::scalar(o.db(), u"SELECT Borc FROM OgrenciAidatTanim"_s).toLongLong(),
             tl("8500").raw());
    QCOMPARE(count(o.db(), u"OgrenciIskonto"_s), 2);
    QCOMPARE(count(o.db(), u"OgrenciAidatDetay"_s, u"Sira > 0"_s), 5);
    auto *yapilan = screen->findChild<ui::Grid *>(u"vaSpreadIndirim"_s);
    QCOMPARE(yapilan->rowCount(), 3);
    QCOMPARE(yapilan->text(2, 0), u"T O P L A M"_s);
    QCOMPARE(yapilan->text(2, 2), u"1.500,00"_s);

    // A scholarship is a note: kept, shown again, and in no sum.
    auto *burs = screen->findChild<ui::Grid *>(u"vaSpreadBurs"_s);
    QCOMPARE(burs->rowCount(), 5);
    QApplication::setActiveWindow(o.window.get());
    pressLetter(screen, Qt::Key_B);
    QVERIFY(burs->isVisible());
    testing::typeCell(burs, 1, 1, u"Yarım"_s);
    testing::typeCell(burs, 1, 2, u"50"_s);
    testing::click(screen, u"cmdBursDokumuKaydet"_s);
    QCOMPARE(testing::scalar(o.db(), u"SELECT BursAdi || '/' || BursMiktari FROM OgrenciBurs"_s)
                 .toString(),
             u"Yemek/Yarım"_s);
    QCOMPARE(testing::scalar(o.db(), u"SELECT Borc FROM OgrenciAidatTanim"_s).toLongLong(),
             tl("8500").raw());
}

void tst_FrmOgrenciAidat::aStudentHeldByAnotherUserIsNotOpened()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare());
    const qint64 ogrenci = addStudent(o.db());
    QVERIFY(testing::scalar(o.db(),
                            u"UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = 'Ayşe' "
                            "WHERE KayitID = ? RETURNING KayitID"_s,
                            {ogrenci})
                .isValid());
    o.start();
    QVERIFY(ui::EkranAc(u"FrmOgrenciAidat"_s, u"btnCariDurum"_s, {{u"ogrKayitId"_s, ogrenci}}));
    auto *screen
        = qobject_cast<fees::FrmOgrenciAidat *>(o.w().screenWindow(u"FrmOgrenciAidat"_s)->widget());
    QCOMPARE(screen->ogrKayitId(), qint64(0));
    QCOMPARE(o.messages.texts().value(0), users::KilitMesaji(u"Ayşe"_s));
    screen->closeWindow();
    QTRY_VERIFY(!o.w().screenWindow(u"FrmOgrenciAidat"_s));

    // From the tool band the student comes from the pick-list; once free, he opens.
    QVERIFY(testing::scalar(
                o.db(), u"UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' RETURNING KayitID"_s)
                .isValid());
    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        QCOMPARE(d->objectName(), u"frmOgrenciList"_s);
        testing::click(d, u"cmdTamam"_s);
    });
    o.w().ActBar_Click(u"btnCariDurum"_s);
    QTRY_COMPARE(driver.remaining(), 0);
    screen
        = qobject_cast<fees::FrmOgrenciAidat *>(o.w().screenWindow(u"FrmOgrenciAidat"_s)->widget());
    QTRY_COMPARE(screen->ogrKayitId(), ogrenci);
}

void tst_FrmOgrenciAidat::theChangeLogListsAndExports()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    QVERIFY(saveTuition(o.db()) > 0);
    QVERIFY(addStudent(o.db()) > 0);
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    giveFee(o);
    auto *taksitler = screen->findChild<ui::Grid *>(u"vaSpread2"_s);
    taksitler->setFocus();
    taksitler->setCurrentCell(1, 0);
    pressLetter(screen, Qt::Key_D);
    screen->closeWindow();

    // The payment written this month, by this user, as the log keeps it.
    QWidget *log = o.open(u"popLogGoster"_s, u"Frm_Log"_s);
    QVERIFY(log);
    log->findChild<QComboBox *>(u"cmbTablo"_s)->setCurrentText(u"OgrenciAidatOdeme"_s);
    for (const QString &box : {u"txtIlkTarih"_s, u"txtSonTarih"_s}) {
        auto *tarih = log->findChild<QLineEdit *>(box);
        tarih->setFocus();
        tarih->selectAll();
        testing::typeText(tarih, QDate::currentDate().toString(u"ddMMyyyy"_s));
    }
    testing::click(log, u"cmdListele"_s);
    auto *liste = log->findChild<ui::Grid *>(u"vaSpread1"_s);
    QCOMPARE(liste->rowCount(), 1);
    QCOMPARE(liste->text(0, 0), u"101"_s);
    QCOMPARE(liste->text(0, 4), u"05.10.2025"_s);
    QCOMPARE(liste->text(0, 5), u"1.800,00"_s);
    QCOMPARE(liste->text(0, 12), u"Yeni Kayıt"_s);

    // The workbook reads back in another program.
    QTemporaryDir dir;
    const QString file = dir.filePath(u"LOG_odeme.xlsx"_s);
    QVERIFY(qobject_cast<fees::FrmLog *>(log)->ExcelAktar(file));
    QCOMPARE(o.messages.texts().last(),
             QDir::toNativeSeparators(file) + u" EXCEL dosyası oluşturuldu."_s);
    QProcess reader;
    // Debian's own interpreter, which the python3-openpyxl package serves.
    reader.start(QFileInfo::exists(u"/usr/bin/python3"_s) ? u"/usr/bin/python3"_s : u"python3"_s,
                 {u"-c"_s,
                  u"import openpyxl,sys; s=openpyxl.load_workbook(sys.argv[1]).active; "
                  "print(s.cell(1,1).value, s.cell(2,6).value, s.cell(2,13).value, "
                  "sep='|')"_s,
                  file});
    QVERIFY(reader.waitForFinished(20000));
    QCOMPARE(QString::fromUtf8(reader.readAllStandardOutput()).trimmed(),
             u"Öğr. No|1.800,00|Yeni Kayıt"_s);
}

void tst_FrmOgrenciAidat::aLockedScreenTakesOneRowAtATime()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    QVERIFY(saveTuition(o.db()) > 0);
    const qint64 ogrenci = addStudent(o.db());
    // An account given before the office locked the screen.
    fees::HesapKaydi h;
    h.satir.ogrKayitId = ogrenci;
    h.satir.aidatTanim = u"Öğrenim"_s;
    h.taksitler = {fees::DetaySatiri{1, QDateTime(QDate(2025, 9, 5), QTime(0, 0)), tl("1800")}};
    QVERIFY(fees::HesapKaydet(o.db(), h, {u"Müdür"_s, 1, false}));
    maintenance::OfisAyarlari ofis;
    ofis.okKilit = true;
    QVERIFY(maintenance::OfisAyarlariYaz(o.db(), ofis));
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    QVERIFY(screen->saltOkunur());
    QVERIFY(screen->windowTitle().endsWith(u" - Değiştirme İzniniz Bulunmamaktadır."_s));
    auto *odemeler = screen->findChild<ui::Grid *>(u"vaSpread3"_s);
    QVERIFY(odemeler->isLocked());

    testing::ModalDriver driver;
    driver.then([](QWidget *d) {
        QCOMPARE(d->windowTitle(), u"Yeni Ödeme Ekle"_s);
        testing::typeInto(d, u"txtTarih"_s, u"05092025"_s);
        testing::typeInto(d, u"txtTutar"_s, u"1800"_s);
        testing::click(d, u"cmdEkle"_s);
    });
    odemeler->setFocus();
    screen->SatirAc();
    QCOMPARE(driver.remaining(), 0);
    QCOMPARE(o.messages.texts().last(), u"Taksit bilgileri kaydedilsin mi?"_s);
    QCOMPARE(count(o.db(), u"OgrenciAidatOdeme"_s), 1);
    QCOMPARE(kalan(o.db()), Para().raw());
}

void tst_FrmOgrenciAidat::anUnpaidFeeIsReplacedInItsAccount()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    QVERIFY(saveTuition(o.db()) > 0);
    fees::AidatTanimi yemek;
    yemek.aidatTanim = u"Yemek"_s;
    yemek.toplam = tl("3000");
    yemek.birimFiyati = yemek.toplam;
    yemek.birimAdeti = 1;
    yemek.taksitSayisi = 2;
    yemek.odemeBasTarihi = QDate(2025, 10, 1);
    yemek.taksitler = {{QDate(2025, 10, 1), tl("1500")}, {QDate(2025, 11, 1), tl("1500")}};
    QVERIFY(fees::AidatTaksitDetayKaydet(o.db(), yemek));
    QVERIFY(addStudent(o.db()) > 0);
    // The school lets an untouched fee be replaced.
    QVERIFY(testing::scalar(o.db(), u"UPDATE Sabit SET OgrAOtoDeg = '1' RETURNING OgrAOtoDeg"_s)
                .isValid());
    QVERIFY(maintenance::SabitBilgileriOku(o.db()));
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    testing::ModalDriver driver;
    for (int row : {0, 1}) {
        driver.then([row](QWidget *d) {
            d->findChild<ui::Grid *>(u"vaSpread1"_s)->setCurrentCell(row, 0);
            testing::click(d, u"cmdTamam"_s);
        });
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10);
    QApplication::setActiveWindow(o.window.get());
    const qint64 hesap = screen->hesap().satir.kayitId;
    auto *hesaplar = screen->findChild<ui::Grid *>(u"vaSpread1"_s);
    hesaplar->setFocus();
    hesaplar->setCurrentCell(0, 0);
    o.messages.clear();
    QTest::keyClick(hesaplar, Qt::Key_F10);
    QCOMPARE(driver.remaining(), 0);
    // Asked first; the same account then holds the new fee and its plan only.
    QVERIFY(o.messages.texts().value(0).startsWith(u"Öğrenim aidatını Yemek ile değiştirmek"_s));
    QCOMPARE(count(o.db(), u"OgrenciAidatTanim"_s), 1);
    QCOMPARE(screen->hesap().satir.kayitId, hesap);
    QCOMPARE(testing::scalar(o.db(), u"SELECT AidatTanim FROM OgrenciAidatTanim"_s).toString(),
             u"Yemek"_s);
    QCOMPARE(count(o.db(), u"OgrenciAidatDetay"_s, u"Sira > 0"_s), 2);
    QCOMPARE(kalan(o.db()), tl("3000").raw());
}

void tst_FrmOgrenciAidat::aSaveOverAnotherWriteShowsWhatWasTyped()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    const qint64 ogrenci = addStudent(o.db());
    fees::HesapKaydi h;
    h.satir.ogrKayitId = ogrenci;
    h.satir.aidatTanim = u"Öğrenim"_s;
    h.taksitler = {fees::DetaySatiri{1, QDateTime(QDate(2025, 9, 5), QTime(0, 0)), tl("1800")}};
    QVERIFY(fees::HesapKaydet(o.db(), h, {u"Müdür"_s, 1, false}));
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    // Meanwhile a bulk payment run writes the account.
    fees::HesapKaydi bulk = *fees::HesapOku(o.db(), h.satir.kayitId, false);
    fees::OdemeSatiri p;
    p.elle = true;
    p.sira = 1;
    p.odemeTarihi = QDateTime(QDate(2025, 9, 6), QTime(0, 0));
    p.odenen = tl("100");
    bulk.odemeler.append(p);
    QVERIFY(fees::HesapKaydet(o.db(), bulk, {u"Toplu"_s, 1, false}));

    auto *odemeler = screen->findChild<ui::Grid *>(u"vaSpread3"_s);
    // The first cell typed is saved at once, and refused.
    testing::typeCell(odemeler, 0, 0, u"07.10.2025"_s);
    QVERIFY(o.messages.texts().join(u' ').contains(u"Girdiğiniz satırlar:\nÖdeme: 07.10.2025"_s));
    // The account is read anew: the other payment stands, the typed one waits to be entered.
    QCOMPARE(screen->hesap().odemeler.size(), 1);
    QCOMPARE(screen->hesap().odemeler.first().odenen, tl("100"));
    QCOMPARE(kalan(o.db()), tl("1700").raw());
}

void tst_FrmOgrenciAidat::inInvoiceModePaymentsMeetTheirInvoices()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"Müdür"_s, u"202511"_s));
    const qint64 ogrenci = addStudent(o.db());
    QVERIFY(testing::scalar(o.db(), u"UPDATE Sabit SET TaksitFatura = '1' RETURNING TaksitFatura"_s)
                .isValid());
    QVERIFY(maintenance::SabitBilgileriOku(o.db()));
    // Two installments of 1.800, each invoiced (numbers 41 and 42, 1.800 each).
    fees::HesapKaydi h;
    h.satir.ogrKayitId = ogrenci;
    h.satir.aidatTanim = u"Öğrenim"_s;
    for (int i = 0; i < 2; ++i)
        h.taksitler << fees::DetaySatiri{
            i + 1, QDateTime(QDate(2025, 9 + i, 5), QTime(0, 0)), tl("1800"), {}, 41 + i};
    QVERIFY(fees::HesapKaydet(o.db(), h, {u"Müdür"_s, 1, true}));
    for (int no : {41, 42}) {
        store::Query f(o.db(), u"INSERT INTO Fatura (OgrKayitID, KayitID, FaturaNo, OdenenTutar) "
                               "VALUES (?, ?, ?, ?)"_s);
        f.bind(ogrenci).bind(h.satir.kayitId).bind(no).bind(tl("1800"));
        QVERIFY(f.exec());
    }
    o.start();
    fees::FrmOgrenciAidat *screen = openAccount(o);
    QVERIFY(screen);
    QCOMPARE(screen->findChild<ui::Grid *>(u"vaSpreadFatura"_s)->rowCount(), 2);
    // The first installment paid: the payment takes its invoice; a payment of 2.000 typed by
    // hand is 200 more than the next invoice, written all the same, with a note.
    auto *taksitler = screen->findChild<ui::Grid *>(u"vaSpread2"_s);
    taksitler->setFocus();
    taksitler->setCurrentCell(0, 0);
    pressLetter(screen, Qt::Key_D);
    auto *odemeler = screen->findChild<ui::Grid *>(u"vaSpread3"_s);
    testing::typeCell(odemeler, 1, 1, u"2000"_s);
    testing::typeCell(odemeler, 1, 0, u"06.10.2025"_s);
    QVERIFY(o.messages.texts().join(u' ').contains(
        u"2. satırda yazmış olduğunuz ödeme kesilen fatura tutarından 200,00 TL büyüktür."_s));
    QCOMPARE(testing::scalar(o.db(), u"SELECT count(*) FROM OgrenciAidatOdeme WHERE "
                                     "Fatura_ID = 41 OR Fatura_ID = 42"_s)
                 .toInt(),
             2);
}

QTEST_MAIN(tst_FrmOgrenciAidat)
#include "tst_frm_ogrenci_aidat.moc"
