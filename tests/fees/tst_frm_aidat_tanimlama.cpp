#include "office_window.h"

#include "fees/definitions.h"
#include "fees/frm_aidat_list.h"
#include "store/error_log.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

using base::Para;
using testing::click;
using testing::typeInto;

namespace {

Para para(const char *c)
{
    return Para::fromDecimalString(QString::fromLatin1(c)).value();
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
    return e ? e->text() : u"<yok>"_s;
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

// The definitions screen opened from its command in a started office.
QWidget *openScreen(testing::OfficeWindow &o)
{
    o.start();
    return o.open(u"popAidatTanimlama"_s, u"FrmAidatTanimlama"_s);
}

void addAccount(store::Database &db, qint64 aidatId)
{
    store::Query q(db, u"INSERT INTO OgrenciAidatTanim (OgrKayitID, Sira, Borc, Kalan, "
                       "AidatID, AidatTanim) VALUES (11, 1, 0, 0, ?, ?)"_s);
    q.bind(aidatId).bind(u"Öğrenim Ücreti"_s);
    QVERIFY(q.exec());
}

} // namespace

class tst_FrmAidatTanimlama : public QObject
{
    Q_OBJECT

private slots:
    void aTuitionFeeIsPlannedSavedAndReopened();
    void aFeeThatAStudentHoldsIsNotDeleted();
    void theUnitPriceMakesTheTotal();
    void aTotalBeyondTheRangeIsAFailureNotAPlan();
    void theStandardDiscountsAreKeptInListOrder();
    void theFeeChoiceHandsOverCountAndPrice();
};

void tst_FrmAidatTanimlama::aTuitionFeeIsPlannedSavedAndReopened()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    QCOMPARE(users::durum().TaksitYuvarlama, Para::fromUnits(1));
    testing::MessageRecorder &messages = o.messages;
    QWidget *f = openScreen(o);
    QVERIFY(f);
    shell::MDIAidat &w = o.w();
    QMdiSubWindow *sub = w.screenWindow(u"FrmAidatTanimlama"_s);
    auto *kaydet = f->findChild<QPushButton *>(u"cmdKaydet"_s);
    auto *plan = f->findChild<ui::Grid *>(u"vaSpread2"_s);
    auto *liste = f->findChild<ui::Grid *>(u"vaSpread1"_s);
    QVERIFY(kaydet && plan && liste);
    QVERIFY(!kaydet->isEnabled());

    typeInto(f, u"txtAidatTanim"_s, u"Öğrenim Ücreti"_s);
    typeInto(f, u"txtAidatToplam"_s, u"120.000"_s);
    typeInto(f, u"txtPesinat"_s, u"20.005"_s);
    typeInto(f, u"txtTaksitSayisi"_s, u"10"_s);
    QVERIFY(!kaydet->isEnabled());

    // A day that does not exist: the box says so and nothing is planned from it.
    typeInto(f, u"txtOdemeBasTarihi"_s, u"31022024"_s);
    click(f, u"cmdOdemePlani"_s);
    QApplication::processEvents();
    QVERIFY2(messages.texts().contains(u"Ödemeye Başlama Tarihi geçerli değil. Lütfen "
                                       "geçerli bir tarih giriniz."_s),
             qPrintable(messages.texts().join(u'|')));
    QVERIFY(messages.texts().contains(
        u"\"31.02.2024\" geçerli bir tarih değil. Lütfen tarihi gg.aa.yyyy biçiminde, takvimde "
        "bulunan bir gün olarak giriniz."_s));
    QCOMPARE(plan->rowCount(), 0);
    QVERIFY(!kaydet->isEnabled());
    typeInto(f, u"txtOdemeBasTarihi"_s, u"31082025"_s);
    QVERIFY(kaydet->isEnabled());

    // Whole installments only.
    messages.clear();
    typeInto(f, u"txtTaksitSayisi"_s, u"1,5"_s);
    click(f, u"cmdOdemePlani"_s);
    QApplication::processEvents();
    QVERIFY(messages.texts().contains(
        u"Taksit Sayısı tam sayı olmalıdır. Lütfen 0 ile 999 arasında, küsuratsız bir "
        "sayı giriniz (örnek: 10)."_s));
    QCOMPARE(plan->rowCount(), 0);
    typeInto(f, u"txtTaksitSayisi"_s, u"10"_s);

    // Kalan 99.995 over ten: 9.999 each with the rounding step 1, the 5 left on the first.
    messages.clear();
    click(f, u"cmdOdemePlani"_s);
    QCOMPARE(plan->rowCount(), 10);
    const QStringList amounts = {"10.004,00", "9.999,00", "9.999,00", "9.999,00", "9.999,00",
                                 "9.999,00",  "9.999,00", "9.999,00", "9.999,00", "9.999,00"};
    QCOMPARE(column(plan, 1), amounts);
    const QStringList dates
        = {"31.08.2025", "30.09.2025", "31.10.2025", "30.11.2025", "31.12.2025",
           "31.01.2026", "28.02.2026", "31.03.2026", "30.04.2026", "31.05.2026"};
    QCOMPARE(column(plan, 0), dates);
    QCOMPARE(f->findChild<QLabel *>(u"lblKalan"_s)->text(), u"Kalan"_s);
    QCOMPARE(boxText(f, u"txtKalan"_s), u"0,00"_s);
    QCOMPARE(boxText(f, u"txtTaksitToplami"_s), u"99.995,00"_s);

    // The operator lowers the last installment: the difference shows as what is left.
    testing::typeCell(plan, 9, 1, u"9.000"_s);
    QCOMPARE(plan->text(9, 1), u"9.000,00"_s);
    QCOMPARE(boxText(f, u"txtKalan"_s), u"999,00"_s);
    w.resize(1180, 760);
    testing::screenshot(f, u"aidat-tanimlama-plan"_s);

    click(f, u"cmdKaydet"_s);
    QVERIFY2(messages.texts().isEmpty(), qPrintable(messages.texts().join(u'|')));
    QCOMPARE(column(liste, 0), QStringList{u"Öğrenim Ücreti"_s});
    QCOMPARE(column(liste, 1), QStringList{u"120.000,00"_s});
    QCOMPARE(liste->currentRowIndex(), 0);
    sub->close();
    QApplication::processEvents();
    QVERIFY(!w.screenWindow(u"FrmAidatTanimlama"_s));
    QVERIFY(messages.texts().isEmpty());

    // Opened again: the same definition with the same plan.
    w.ActBar_Click(u"popAidatTanimlama"_s);
    sub = w.screenWindow(u"FrmAidatTanimlama"_s);
    QVERIFY(sub);
    f = sub->widget();
    plan = f->findChild<ui::Grid *>(u"vaSpread2"_s);
    liste = f->findChild<ui::Grid *>(u"vaSpread1"_s);
    QCOMPARE(plan->rowCount(), 0);
    clickRow(liste, 0);
    QCOMPARE(boxText(f, u"txtAidatTanim"_s), u"Öğrenim Ücreti"_s);
    QCOMPARE(boxText(f, u"txtAidatToplam"_s), u"120.000,00"_s);
    QCOMPARE(boxText(f, u"txtPesinat"_s), u"20.005,00"_s);
    QCOMPARE(boxText(f, u"txtTaksitSayisi"_s), u"10"_s);
    QCOMPARE(boxText(f, u"txtOdemeBasTarihi"_s), u"31.08.2025"_s);
    QStringList changed = amounts;
    changed[9] = u"9.000,00"_s;
    QCOMPARE(column(plan, 1), changed);
    QCOMPARE(column(plan, 0), dates);
    QCOMPARE(boxText(f, u"txtKalan"_s), u"999,00"_s);
    testing::screenshot(f, u"aidat-tanimlama-yeniden-acildi"_s);
    QVERIFY(messages.texts().isEmpty());
}

void tst_FrmAidatTanimlama::aFeeThatAStudentHoldsIsNotDeleted()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    store::Database &db = o.db();
    const qint64 held = saveDefinition(db, u"Öğrenim Ücreti"_s, "90000");
    QVERIFY(held > 0);
    QVERIFY(saveDefinition(db, u"Servis"_s, "12000") > 0);
    addAccount(db, held);
    testing::MessageRecorder &messages = o.messages;
    QWidget *f = openScreen(o);
    QVERIFY(f);
    auto *liste = f->findChild<ui::Grid *>(u"vaSpread1"_s);
    QCOMPARE(liste->rowCount(), 2);

    clickRow(liste, 0);
    click(f, u"cmdSil"_s);
    QCOMPARE(messages.titles(), (QStringList{u"Uyarı"_s, u"AİDAT KULLANILIYOR"_s}));
    QCOMPARE(messages.texts(),
             (QStringList{u"Öğrenim Ücreti Aidat/Taksit Tanımını silmek istiyor musunuz?"_s,
                          u"Öğrenim Ücreti Aidat/Taksit tanımlaması kullanıldığı için "
                          "silinemedi!"_s}));
    QCOMPARE(liste->rowCount(), 2);
    QCOMPARE(boxText(f, u"txtAidatTanim"_s), u"Öğrenim Ücreti"_s);

    // A fee nobody holds goes, once the question is answered Yes.
    clickRow(liste, 1);
    messages.clear();
    messages.answer(ui::Answer::No);
    click(f, u"cmdSil"_s);
    QCOMPARE(liste->rowCount(), 2);
    messages.answer(ui::Answer::Yes);
    click(f, u"cmdSil"_s);
    QCOMPARE(messages.texts().size(), 2);
    QCOMPARE(column(liste, 0), QStringList{u"Öğrenim Ücreti"_s});
    QCOMPARE(boxText(f, u"txtAidatTanim"_s), QString());
}

void tst_FrmAidatTanimlama::theUnitPriceMakesTheTotal()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    testing::MessageRecorder &messages = o.messages;
    QWidget *f = openScreen(o);
    QVERIFY(f);
    auto *fiyat = f->findChild<QLineEdit *>(u"CInputBoxX"_s);
    auto *miktar = f->findChild<QLineEdit *>(u"Spmiktar"_s);
    QVERIFY(fiyat->isVisible() && !miktar->isVisible());

    // Meals: 180 days at 27,35 in the money box.
    typeInto(f, u"txtAdet"_s, u"180"_s);
    typeInto(f, u"CInputBoxX"_s, u"27,35"_s);
    typeInto(f, u"txtKDVOrani"_s, u"10"_s);
    QCOMPARE(boxText(f, u"txtAidatToplam"_s), u"4.923,00"_s);
    // With no general rate the whole total is still to be planned.
    QCOMPARE(boxText(f, u"txtKalan"_s), u"4.923,00"_s);

    // The decimal cell: its total is taken whole, up when the digits behind the comma are 5
    // or more.
    click(f, u"chkOndalik"_s);
    QVERIFY(!fiyat->isVisible() && miktar->isVisible());
    QCOMPARE(miktar->text(), u"27,35"_s);
    typeInto(f, u"txtAdet"_s, u"1"_s);
    typeInto(f, u"Spmiktar"_s, u"12,12"_s);
    typeInto(f, u"txtPesinat"_s, QString());
    QCOMPARE(boxText(f, u"txtAidatToplam"_s), u"13,00"_s);
    typeInto(f, u"txtAdet"_s, u"x"_s);
    typeInto(f, u"txtPesinat"_s, QString());
    QApplication::processEvents();
    QCOMPARE(messages.texts(),
             QStringList{u"Adet tam sayı olmalıdır. Lütfen küsuratsız bir sayı giriniz."_s});
    QCOMPARE(boxText(f, u"txtAidatToplam"_s), u"13,00"_s);
}

// A total past what money can hold reaches the operator as the failure of the plan: the
// reporter's overflow message and a row in the error table, no installments.
void tst_FrmAidatTanimlama::aTotalBeyondTheRangeIsAFailureNotAPlan()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    testing::MessageRecorder &messages = o.messages;
    QWidget *f = openScreen(o);
    QVERIFY(f);
    auto *plan = f->findChild<ui::Grid *>(u"vaSpread2"_s);
    QVERIFY(plan);

    typeInto(f, u"txtAidatTanim"_s, u"Taşan"_s);
    typeInto(f, u"txtAidatToplam"_s, u"99999999999999999999"_s);
    typeInto(f, u"txtTaksitSayisi"_s, u"3"_s);
    typeInto(f, u"txtOdemeBasTarihi"_s, u"01092025"_s);
    messages.clear();
    click(f, u"cmdOdemePlani"_s);
    QApplication::processEvents();
    // The box says so as it is left, and the plan that is asked for all the same fails.
    QCOMPARE(messages.texts(), (QStringList{u"Tutar çok büyük: hesap sınırı aşıldı."_s,
                                            u"Bir Bilgiyi Değerinden Çok Fazla Girdiniz.\n"
                                            "Lütfen Veri Girişlerinizi Kontrol Ediniz."_s}));
    QCOMPARE(plan->rowCount(), 0);

    const base::Result<QList<store::ErrorRow>> rows = store::readErrorRows(o.db().settings());
    QVERIFY(rows.ok() && !rows->isEmpty());
    QCOMPARE(rows->last().text, u"Tutar çok büyük: hesap sınırı aşıldı."_s);
    QCOMPARE(rows->last().object, u"TaksitPlanla"_s);
}

void tst_FrmAidatTanimlama::theStandardDiscountsAreKeptInListOrder()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    testing::MessageRecorder &messages = o.messages;
    QWidget *f = openScreen(o);
    QVERIFY(f);
    auto *cerceve = f->findChild<QGroupBox *>(u"fraIskonto"_s);
    auto *indirim = f->findChild<ui::Grid *>(u"Spr_Indirim"_s);
    QVERIFY(!cerceve->isVisible());
    click(f, u"cmdIskontoTanimlama"_s);
    QVERIFY(cerceve->isVisible());
    QCOMPARE(column(indirim, 0), QStringList{u"Serbest İndirim"_s});
    QCOMPARE(indirim->text(0, 3), u"Kalan"_s);
    QCOMPARE(indirim->text(0, 4), u"Tutar"_s);

    click(f, u"cmdIskontoEkle"_s);
    testing::typeCell(indirim, 1, 0, u"Kardeş İndirimi"_s);
    testing::typeCell(indirim, 1, 2, u"12,5"_s);
    // Computed before the free discount.
    indirim->setCurrentCell(1, 0);
    click(f, u"cmdIskontoYukari"_s);
    click(f, u"cmdIskontoKaydet"_s);
    QVERIFY2(messages.texts().isEmpty(), qPrintable(messages.texts().join(u'|')));
    QCOMPARE(column(indirim, 0), (QStringList{u"Kardeş İndirimi"_s, u"Serbest İndirim"_s}));
    // Read back in the order in which they are computed.
    click(f, u"cmdIskontoTanimlama"_s);
    click(f, u"cmdIskontoTanimlama"_s);
    QCOMPARE(column(indirim, 0), (QStringList{u"Kardeş İndirimi"_s, u"Serbest İndirim"_s}));
    QCOMPARE(indirim->text(0, 2), u"12,50"_s);
    testing::screenshot(f, u"aidat-tanimlama-iskonto"_s);

    indirim->setCurrentCell(1, 0);
    click(f, u"cmdIskontoSil"_s);
    QCOMPARE(messages.titles(), QStringList{u"Uyarı"_s});
    QCOMPARE(messages.texts(),
             QStringList{u"Serbest İndirim indirimini silmek istediğinizden emin misiniz?"_s});
    QCOMPARE(column(indirim, 0), QStringList{u"Kardeş İndirimi"_s});
}

void tst_FrmAidatTanimlama::theFeeChoiceHandsOverCountAndPrice()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare(u"muhasebe"_s));
    store::Database &db = o.db();
    const qint64 ogrenim = saveDefinition(db, u"Öğrenim Ücreti"_s, "90000");
    const qint64 yemek = saveDefinition(db, u"Yemek"_s, "27.35");
    testing::MessageRecorder &messages = o.messages;

    fees::AidatSecimBaglami baglam;
    baglam.ogrenciAidatIdleri = {ogrenim};
    baglam.aktifAidatAdi = u"Servis"_s;
    baglam.aktifBorc = para("500");
    fees::FrmAidatList dlg(db, baglam);
    QList<fees::AidatSecimi> handed;
    connect(&dlg, &fees::FrmAidatList::aidatSecildi, this,
            [&handed](const fees::AidatSecimi &secim) { handed.append(secim); });
    dlg.show();
    QApplication::setActiveWindow(&dlg);
    auto *liste = dlg.findChild<ui::Grid *>(u"vaSpread1"_s);
    auto *tamam = dlg.findChild<QPushButton *>(u"cmdTamam"_s);
    QCOMPARE(column(liste, 0), (QStringList{u"Öğrenim Ücreti"_s, u"Yemek"_s}));

    // A fee the student holds already is refused and the list stays.
    clickRow(liste, 0);
    click(&dlg, u"cmdTamam"_s);
    QCOMPARE(messages.titles(), QStringList{u"UYARI"_s});
    QCOMPARE(messages.texts(), QStringList{u"Öğrenim Ücreti öğrencide tanımlanmış."_s});
    QVERIFY(dlg.isVisible());
    QVERIFY(handed.isEmpty());

    // Meals for 180 days at a changed price.
    clickRow(liste, 1);
    click(&dlg, u"chkAdetFiyatDegistir"_s);
    QCOMPARE(tamam->text(), u"&Değiştir"_s);
    testing::typeCell(liste, 1, 3, u"180"_s);
    testing::typeCell(liste, 1, 4, u"28,50"_s);
    QCOMPARE(liste->text(1, 1), u"5.130,00"_s);
    testing::screenshot(&dlg, u"aidat-secimi-degistir"_s);
    messages.clear();
    click(&dlg, u"cmdTamam"_s);
    QCOMPARE(messages.texts().size(), 2);
    QCOMPARE(messages.texts().at(1),
             u"Servis aidatını Yemek ile değiştirmek istiyor musunuz?\n(Not: Öğrencinin "
             "daha önce yaptığı ödemeler değişmeyecektir.)"_s);
    QCOMPARE(messages.titles().at(1), u"Uyarı"_s);
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
    QVERIFY(saveDefinition(db, u"Servis"_s, "12000") > 0);
    emit ui::Bildirimler::instance().aidatTanimlariDegisti();
    liste = again.findChild<ui::Grid *>(u"vaSpread1"_s);
    QCOMPARE(liste->rowCount(), 3);
    clickRow(liste, 2);
    messages.clear();
    messages.answer(ui::Answer::No);
    click(&again, u"cmdTamam"_s);
    QCOMPARE(messages.texts().size(), 1);
    QCOMPARE(handed.size(), 1);
    QVERIFY(!again.isVisible());
    QCOMPARE(again.result(), int(QDialog::Rejected));
}

QTEST_MAIN(tst_FrmAidatTanimlama)
#include "tst_frm_aidat_tanimlama.moc"
