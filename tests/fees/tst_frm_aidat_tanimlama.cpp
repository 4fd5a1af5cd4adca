#include "fees_support.h"
#include "gui_support.h"
#include "office.h"

#include "fees/definitions.h"
#include "fees/frm_aidat_list.h"
#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "shell/main_window.h"
#include "store/error_log.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/login.h"
#include "users/session.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

using base::Para;
using testing::click;
using testing::typeInto;

namespace {

Para para(const char *c)
{
    return Para::fromDecimalString(QString::fromLatin1(c)).value();
}

// A store with one user, one year and the school's row, opened as the program would.
void prepareOffice(store::Database &db)
{
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db, QStringLiteral("muhasebe")));
}

void clickRow(ui::Grid *g, int row)
{
    const QRect cell = g->visualRect(g->gridModel()->index(row, 0));
    QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, cell.center());
    QApplication::processEvents();
}

QStringList column(ui::Grid *g, int c)
{
    QStringList out;
    for (int row = 0; row < g->rowCount(); ++row) {
        out << g->text(row, c);
    }
    return out;
}

QString boxText(QWidget *form, const QString &name)
{
    auto *e = form->findChild<QLineEdit *>(name);
    return e ? e->text() : QStringLiteral("<yok>");
}

qint64 saveDefinition(store::Database &db, const QString &name, const char *total)
{
    fees::AidatTanimi t;
    t.aidatTanim = name;
    t.toplam = para(total);
    t.birimFiyati = para(total);
    t.birimAdeti = 1;
    t.taksitSayisi = 1;
    t.odemeBasTarihi = QDate(2025, 9, 1);
    t.taksitler = {fees::TaksitSatiri{t.odemeBasTarihi, t.toplam}};
    base::Result<fees::KayitSonucu> r = fees::AidatTaksitDetayKaydet(db, t);
    return r.ok() ? r->kayitId : 0;
}

// The main window of a prepared office with the definitions screen opened from its command.
QWidget *openScreen(shell::MDIAidat &w)
{
    w.MenuDurumAyarla(true);
    w.show();
    QApplication::setActiveWindow(&w);
    w.ActBar_Click(QStringLiteral("popAidatTanimlama"));
    QMdiSubWindow *sub = w.screenWindow(QStringLiteral("FrmAidatTanimlama"));
    return sub ? sub->widget() : nullptr;
}

void addAccount(store::Database &db, qint64 aidatId)
{
    store::Query q(db,
                   QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                                  "AidatID, AidatTanim) VALUES (11, 1, 0, 0, ?, ?)"));
    q.bind(aidatId).bind(QStringLiteral("Öğrenim Ücreti"));
    QVERIFY(q.exec());
}

} // namespace

class tst_FrmAidatTanimlama : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void cleanup() { store::setDefaultDatabase(nullptr); }
    void aTuitionFeeIsPlannedSavedAndReopened();
    void aFeeThatAStudentHoldsIsNotDeleted();
    void theUnitPriceMakesTheTotal();
    void aTotalBeyondTheRangeIsAFailureNotAPlan();
    void theStandardDiscountsAreKeptInListOrder();
    void theFeeChoiceHandsOverCountAndPrice();
};

void tst_FrmAidatTanimlama::aTuitionFeeIsPlannedSavedAndReopened()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    QCOMPARE(users::durum().TaksitYuvarlama, Para::fromUnits(1));
    shell::MDIAidat w(db);
    testing::MessageRecorder messages;
    QWidget *f = openScreen(w);
    QVERIFY(f);
    QMdiSubWindow *sub = w.screenWindow(QStringLiteral("FrmAidatTanimlama"));
    QCOMPARE(sub->windowTitle(), QStringLiteral("Aidat/Taksit Tanımlama"));
    auto *kaydet = f->findChild<QPushButton *>(QStringLiteral("cmdKaydet"));
    auto *plan = f->findChild<ui::Grid *>(QStringLiteral("vaSpread2"));
    auto *liste = f->findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    QVERIFY(kaydet && plan && liste);
    QVERIFY(!kaydet->isEnabled());

    typeInto(f, QStringLiteral("txtAidatTanim"), QStringLiteral("Öğrenim Ücreti"));
    typeInto(f, QStringLiteral("txtAidatToplam"), QStringLiteral("120.000"));
    typeInto(f, QStringLiteral("txtPesinat"), QStringLiteral("20.005"));
    typeInto(f, QStringLiteral("txtTaksitSayisi"), QStringLiteral("10"));
    QVERIFY(!kaydet->isEnabled());

    // A day that does not exist: the box says so and nothing is planned from it.
    typeInto(f, QStringLiteral("txtOdemeBasTarihi"), QStringLiteral("31022024"));
    click(f, QStringLiteral("cmdOdemePlani"));
    QApplication::processEvents();
    QVERIFY2(
        messages.texts().contains(QStringLiteral("Ödemeye Başlama Tarihi geçerli değil. Lütfen "
                                                 "geçerli bir tarih giriniz.")),
        qPrintable(messages.texts().join(QLatin1Char('|'))));
    QVERIFY(messages.texts().contains(QStringLiteral(
        "\"31.02.2024\" geçerli bir tarih değil. Lütfen tarihi gg.aa.yyyy biçiminde, takvimde "
        "bulunan bir gün olarak giriniz.")));
    QCOMPARE(plan->rowCount(), 0);
    QVERIFY(!kaydet->isEnabled());
    typeInto(f, QStringLiteral("txtOdemeBasTarihi"), QStringLiteral("31082025"));
    QVERIFY(kaydet->isEnabled());

    // Whole installments only.
    messages.clear();
    typeInto(f, QStringLiteral("txtTaksitSayisi"), QStringLiteral("1,5"));
    click(f, QStringLiteral("cmdOdemePlani"));
    QApplication::processEvents();
    QVERIFY(messages.texts().contains(QStringLiteral(
        "Taksit Sayısı tam sayı olmalıdır. Lütfen 0 ile 999 arasında, küsuratsız bir "
        "sayı giriniz (örnek: 10).")));
    QCOMPARE(plan->rowCount(), 0);
    typeInto(f, QStringLiteral("txtTaksitSayisi"), QStringLiteral("10"));

    // Kalan 99.995 over ten: 9.999 each with the rounding step 1, the 5 left on the first.
    messages.clear();
    click(f, QStringLiteral("cmdOdemePlani"));
    QCOMPARE(plan->rowCount(), 10);
    const QStringList amounts = {"10.004,00", "9.999,00", "9.999,00", "9.999,00", "9.999,00",
                                 "9.999,00",  "9.999,00", "9.999,00", "9.999,00", "9.999,00"};
    QCOMPARE(column(plan, 1), amounts);
    const QStringList dates
        = {"31.08.2025", "30.09.2025", "31.10.2025", "30.11.2025", "31.12.2025",
           "31.01.2026", "28.02.2026", "31.03.2026", "30.04.2026", "31.05.2026"};
    QCOMPARE(column(plan, 0), dates);
    QCOMPARE(f->findChild<QLabel *>(QStringLiteral("lblKalan"))->text(), QStringLiteral("Kalan"));
    QCOMPARE(boxText(f, QStringLiteral("txtKalan")), QStringLiteral("0,00"));
    QCOMPARE(boxText(f, QStringLiteral("txtTaksitToplami")), QStringLiteral("99.995,00"));

    // The operator lowers the last installment: the difference shows as what is left.
    testing::typeCell(plan, 9, 1, QStringLiteral("9.000"));
    QCOMPARE(plan->text(9, 1), QStringLiteral("9.000,00"));
    QCOMPARE(boxText(f, QStringLiteral("txtKalan")), QStringLiteral("999,00"));
    w.resize(1180, 760);
    testing::screenshot(f, QStringLiteral("aidat-tanimlama-plan"));

    click(f, QStringLiteral("cmdKaydet"));
    QVERIFY2(messages.texts().isEmpty(), qPrintable(messages.texts().join(QLatin1Char('|'))));
    QCOMPARE(column(liste, 0), QStringList{QStringLiteral("Öğrenim Ücreti")});
    QCOMPARE(column(liste, 1), QStringList{QStringLiteral("120.000,00")});
    QCOMPARE(liste->currentRowIndex(), 0);
    sub->close();
    QApplication::processEvents();
    QVERIFY(!w.screenWindow(QStringLiteral("FrmAidatTanimlama")));
    QVERIFY(messages.texts().isEmpty());

    // Opened again: the same definition with the same plan.
    w.ActBar_Click(QStringLiteral("popAidatTanimlama"));
    sub = w.screenWindow(QStringLiteral("FrmAidatTanimlama"));
    QVERIFY(sub);
    f = sub->widget();
    plan = f->findChild<ui::Grid *>(QStringLiteral("vaSpread2"));
    liste = f->findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    QCOMPARE(plan->rowCount(), 0);
    clickRow(liste, 0);
    QCOMPARE(boxText(f, QStringLiteral("txtAidatTanim")), QStringLiteral("Öğrenim Ücreti"));
    QCOMPARE(boxText(f, QStringLiteral("txtAidatToplam")), QStringLiteral("120.000,00"));
    QCOMPARE(boxText(f, QStringLiteral("txtPesinat")), QStringLiteral("20.005,00"));
    QCOMPARE(boxText(f, QStringLiteral("txtTaksitSayisi")), QStringLiteral("10"));
    QCOMPARE(boxText(f, QStringLiteral("txtOdemeBasTarihi")), QStringLiteral("31.08.2025"));
    QStringList changed = amounts;
    changed[9] = QStringLiteral("9.000,00");
    QCOMPARE(column(plan, 1), changed);
    QCOMPARE(column(plan, 0), dates);
    QCOMPARE(boxText(f, QStringLiteral("txtKalan")), QStringLiteral("999,00"));
    testing::screenshot(f, QStringLiteral("aidat-tanimlama-yeniden-acildi"));
    QVERIFY(messages.texts().isEmpty());
    sub->close();
    w.close();
}

void tst_FrmAidatTanimlama::aFeeThatAStudentHoldsIsNotDeleted()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    const qint64 held = saveDefinition(db, QStringLiteral("Öğrenim Ücreti"), "90000");
    QVERIFY(held > 0);
    QVERIFY(saveDefinition(db, QStringLiteral("Servis"), "12000") > 0);
    addAccount(db, held);
    shell::MDIAidat w(db);
    testing::MessageRecorder messages;
    QWidget *f = openScreen(w);
    QVERIFY(f);
    auto *liste = f->findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    QCOMPARE(liste->rowCount(), 2);

    clickRow(liste, 0);
    click(f, QStringLiteral("cmdSil"));
    QCOMPARE(messages.titles(),
             (QStringList{QStringLiteral("Uyarı"), QStringLiteral("AİDAT KULLANILIYOR")}));
    QCOMPARE(
        messages.texts(),
        (QStringList{QStringLiteral("Öğrenim Ücreti Aidat/Taksit Tanımını silmek istiyor musunuz?"),
                     QStringLiteral("Öğrenim Ücreti Aidat/Taksit tanımlaması kullanıldığı için "
                                    "silinemedi!")}));
    QCOMPARE(liste->rowCount(), 2);
    QCOMPARE(boxText(f, QStringLiteral("txtAidatTanim")), QStringLiteral("Öğrenim Ücreti"));

    // A fee nobody holds goes, once the question is answered Yes.
    clickRow(liste, 1);
    messages.clear();
    messages.answer(ui::Answer::No);
    click(f, QStringLiteral("cmdSil"));
    QCOMPARE(liste->rowCount(), 2);
    messages.answer(ui::Answer::Yes);
    click(f, QStringLiteral("cmdSil"));
    QCOMPARE(messages.texts().size(), 2);
    QCOMPARE(column(liste, 0), QStringList{QStringLiteral("Öğrenim Ücreti")});
    QCOMPARE(boxText(f, QStringLiteral("txtAidatTanim")), QString());
    w.mdiArea()->closeAllSubWindows();
    w.close();
}

void tst_FrmAidatTanimlama::theUnitPriceMakesTheTotal()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    shell::MDIAidat w(db);
    testing::MessageRecorder messages;
    QWidget *f = openScreen(w);
    QVERIFY(f);
    auto *fiyat = f->findChild<QLineEdit *>(QStringLiteral("CInputBoxX"));
    auto *miktar = f->findChild<QLineEdit *>(QStringLiteral("Spmiktar"));
    QVERIFY(fiyat->isVisible() && !miktar->isVisible());

    // Meals: 180 days at 27,35 in the money box.
    typeInto(f, QStringLiteral("txtAdet"), QStringLiteral("180"));
    typeInto(f, QStringLiteral("CInputBoxX"), QStringLiteral("27,35"));
    typeInto(f, QStringLiteral("txtKDVOrani"), QStringLiteral("10"));
    QCOMPARE(boxText(f, QStringLiteral("txtAidatToplam")), QStringLiteral("4.923,00"));
    // With no general rate the whole total is still to be planned.
    QCOMPARE(boxText(f, QStringLiteral("txtKalan")), QStringLiteral("4.923,00"));

    // The decimal cell: its total is taken whole, up when the digits behind the comma are 5
    // or more.
    click(f, QStringLiteral("chkOndalik"));
    QVERIFY(!fiyat->isVisible() && miktar->isVisible());
    QCOMPARE(miktar->text(), QStringLiteral("27,35"));
    typeInto(f, QStringLiteral("txtAdet"), QStringLiteral("1"));
    typeInto(f, QStringLiteral("Spmiktar"), QStringLiteral("12,12"));
    typeInto(f, QStringLiteral("txtPesinat"), QString());
    QCOMPARE(boxText(f, QStringLiteral("txtAidatToplam")), QStringLiteral("13,00"));
    typeInto(f, QStringLiteral("txtAdet"), QStringLiteral("x"));
    typeInto(f, QStringLiteral("txtPesinat"), QString());
    QApplication::processEvents();
    QCOMPARE(messages.texts(),
             QStringList{
                 QStringLiteral("Adet tam sayı olmalıdır. Lütfen küsuratsız bir sayı giriniz.")});
    QCOMPARE(boxText(f, QStringLiteral("txtAidatToplam")), QStringLiteral("13,00"));
    w.mdiArea()->closeAllSubWindows();
    w.close();
}

// A total past what money can hold reaches the operator as the failure of the plan: the
// reporter's overflow message and a row in the error table, no installments.
void tst_FrmAidatTanimlama::aTotalBeyondTheRangeIsAFailureNotAPlan()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    shell::MDIAidat w(db);
    testing::MessageRecorder messages;
    QWidget *f = openScreen(w);
    QVERIFY(f);
    auto *plan = f->findChild<ui::Grid *>(QStringLiteral("vaSpread2"));
    QVERIFY(plan);

    typeInto(f, QStringLiteral("txtAidatTanim"), QStringLiteral("Taşan"));
    typeInto(f, QStringLiteral("txtAidatToplam"), QStringLiteral("99999999999999999999"));
    typeInto(f, QStringLiteral("txtTaksitSayisi"), QStringLiteral("3"));
    typeInto(f, QStringLiteral("txtOdemeBasTarihi"), QStringLiteral("01092025"));
    messages.clear();
    click(f, QStringLiteral("cmdOdemePlani"));
    QApplication::processEvents();
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Bir Bilgiyi Değerinden Çok Fazla Girdiniz.\n"
                                        "Lütfen Veri Girişlerinizi Kontrol Ediniz.")});
    QCOMPARE(plan->rowCount(), 0);

    const base::Result<QList<store::ErrorRow>> rows = store::readErrorRows(db.settings());
    QVERIFY(rows.ok() && !rows->isEmpty());
    QCOMPARE(rows->last().text, QStringLiteral("Tutar çok büyük: hesap sınırı aşıldı."));
    QCOMPARE(rows->last().object, QStringLiteral("TaksitPlanla"));
    w.mdiArea()->closeAllSubWindows();
    w.close();
}

void tst_FrmAidatTanimlama::theStandardDiscountsAreKeptInListOrder()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    shell::MDIAidat w(db);
    testing::MessageRecorder messages;
    QWidget *f = openScreen(w);
    QVERIFY(f);
    auto *cerceve = f->findChild<QGroupBox *>(QStringLiteral("fraIskonto"));
    auto *indirim = f->findChild<ui::Grid *>(QStringLiteral("Spr_Indirim"));
    QVERIFY(!cerceve->isVisible());
    click(f, QStringLiteral("cmdIskontoTanimlama"));
    QVERIFY(cerceve->isVisible());
    QCOMPARE(column(indirim, 0), QStringList{QStringLiteral("Serbest İndirim")});
    QCOMPARE(indirim->text(0, 3), QStringLiteral("Kalan"));
    QCOMPARE(indirim->text(0, 4), QStringLiteral("Tutar"));

    click(f, QStringLiteral("cmdIskontoEkle"));
    testing::typeCell(indirim, 1, 0, QStringLiteral("Kardeş İndirimi"));
    testing::typeCell(indirim, 1, 2, QStringLiteral("12,5"));
    // Computed before the free discount.
    indirim->setCurrentCell(1, 0);
    click(f, QStringLiteral("cmdIskontoYukari"));
    click(f, QStringLiteral("cmdIskontoKaydet"));
    QVERIFY2(messages.texts().isEmpty(), qPrintable(messages.texts().join(QLatin1Char('|'))));
    QCOMPARE(column(indirim, 0),
             (QStringList{QStringLiteral("Kardeş İndirimi"), QStringLiteral("Serbest İndirim")}));
    // Read back in the order in which they are computed.
    click(f, QStringLiteral("cmdIskontoTanimlama"));
    click(f, QStringLiteral("cmdIskontoTanimlama"));
    QCOMPARE(column(indirim, 0),
             (QStringList{QStringLiteral("Kardeş İndirimi"), QStringLiteral("Serbest İndirim")}));
    QCOMPARE(indirim->text(0, 2), QStringLiteral("12,50"));
    testing::screenshot(f, QStringLiteral("aidat-tanimlama-iskonto"));

    indirim->setCurrentCell(1, 0);
    click(f, QStringLiteral("cmdIskontoSil"));
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Uyarı")});
    QCOMPARE(messages.texts(),
             QStringList{
                 QStringLiteral("Serbest İndirim indirimini silmek istediğinizden emin misiniz?")});
    QCOMPARE(column(indirim, 0), QStringList{QStringLiteral("Kardeş İndirimi")});
    w.mdiArea()->closeAllSubWindows();
    w.close();
}

void tst_FrmAidatTanimlama::theFeeChoiceHandsOverCountAndPrice()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    prepareOffice(db);
    const qint64 ogrenim = saveDefinition(db, QStringLiteral("Öğrenim Ücreti"), "90000");
    const qint64 yemek = saveDefinition(db, QStringLiteral("Yemek"), "27.35");
    testing::MessageRecorder messages;

    fees::AidatSecimBaglami baglam;
    baglam.ogrenciAidatIdleri = {ogrenim};
    baglam.aktifAidatAdi = QStringLiteral("Servis");
    baglam.aktifBorc = para("500");
    fees::FrmAidatList dlg(db, baglam);
    QList<fees::AidatSecimi> handed;
    connect(&dlg, &fees::FrmAidatList::aidatSecildi, this,
            [&handed](const fees::AidatSecimi &secim) { handed.append(secim); });
    dlg.show();
    QApplication::setActiveWindow(&dlg);
    auto *liste = dlg.findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    auto *tamam = dlg.findChild<QPushButton *>(QStringLiteral("cmdTamam"));
    QCOMPARE(dlg.windowTitle(), QStringLiteral("Aidat Seçimi"));
    QCOMPARE(column(liste, 0),
             (QStringList{QStringLiteral("Öğrenim Ücreti"), QStringLiteral("Yemek")}));

    // A fee the student holds already is refused and the list stays.
    clickRow(liste, 0);
    click(&dlg, QStringLiteral("cmdTamam"));
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("UYARI")});
    QCOMPARE(messages.texts(),
             QStringList{QStringLiteral("Öğrenim Ücreti öğrencide tanımlanmış.")});
    QVERIFY(dlg.isVisible());
    QVERIFY(handed.isEmpty());

    // Meals for 180 days at a changed price.
    clickRow(liste, 1);
    click(&dlg, QStringLiteral("chkAdetFiyatDegistir"));
    QCOMPARE(tamam->text(), QStringLiteral("&Değiştir"));
    testing::typeCell(liste, 1, 3, QStringLiteral("180"));
    testing::typeCell(liste, 1, 4, QStringLiteral("28,50"));
    QCOMPARE(liste->text(1, 1), QStringLiteral("5.130,00"));
    testing::screenshot(&dlg, QStringLiteral("aidat-secimi-degistir"));
    messages.clear();
    click(&dlg, QStringLiteral("cmdTamam"));
    QCOMPARE(messages.texts().size(), 2);
    QCOMPARE(
        messages.texts().at(1),
        QStringLiteral("Servis aidatını Yemek ile değiştirmek istiyor musunuz?\n(Not: Öğrencinin "
                       "daha önce yaptığı ödemeler değişmeyecektir.)"));
    QCOMPARE(messages.titles().at(1), QStringLiteral("Uyarı"));
    QCOMPARE(handed.size(), 1);
    QCOMPARE(handed.first().aidatId, yemek);
    QCOMPARE(handed.first().adet, qint64(180));
    QCOMPARE(handed.first().birimFiyat, para("28.5"));
    QCOMPARE(handed.first().toplam, para("5130"));
    QVERIFY(handed.first().degistirildi);
    QCOMPARE(dlg.secim().aidatId, yemek);
    QCOMPARE(dlg.result(), int(QDialog::Accepted));

    // No to the replacement closes the list without a choice; the list follows the definitions.
    fees::FrmAidatList again(db, baglam);
    connect(&again, &fees::FrmAidatList::aidatSecildi, this,
            [&handed](const fees::AidatSecimi &secim) { handed.append(secim); });
    again.show();
    QVERIFY(saveDefinition(db, QStringLiteral("Servis"), "12000") > 0);
    emit ui::Bildirimler::instance().aidatTanimlariDegisti();
    liste = again.findChild<ui::Grid *>(QStringLiteral("vaSpread1"));
    QCOMPARE(liste->rowCount(), 3);
    clickRow(liste, 2);
    messages.clear();
    messages.answer(ui::Answer::No);
    click(&again, QStringLiteral("cmdTamam"));
    QCOMPARE(messages.texts().size(), 1);
    QCOMPARE(handed.size(), 1);
    QVERIFY(!again.isVisible());
    QCOMPARE(again.result(), int(QDialog::Rejected));
}

QTEST_MAIN(tst_FrmAidatTanimlama)
#include "tst_frm_aidat_tanimlama.moc"
