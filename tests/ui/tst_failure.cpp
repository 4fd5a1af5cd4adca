#include "gui_support.h"
#include "test_support.h"

#include "store/database.h"
#include "store/error_log.h"
#include "ui/failure.h"
#include "users/session.h"

#include <QTest>

using namespace Qt::StringLiterals;

using namespace ui;

class tst_Failure : public QObject
{
    Q_OBJECT

private slots:
    void friendlyTexts_data();
    void friendlyTexts();
    void generalReporterEndsTheProgramWhenAsked_data();
    void generalReporterEndsTheProgramWhenAsked();
    void storeFailureReachesReporterAndLeavesARow_data() { testing::addEngineRows(); }
    void storeFailureReachesReporterAndLeavesARow();
    void aStoreThatDidNotOpenIsToldThenReported_data() { testing::addEngineRows(); }
    void aStoreThatDidNotOpenIsToldThenReported();
};

void tst_Failure::friendlyTexts_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("expected");
    // clang-format off
    QTest::addRow("3260-kullaniciyi-adlandirir") << 3260
        << "Couldn't update; currently locked by user 'ayse' on machine 'MUHASEBE2'."
        << "Zerna" << "Şu Anda Bu Kaydı  ayse   isimli Kullanıcı Kullanıyor";
    QTest::addRow("3260-kimse-adlandirilmaz") << 3260
        << "Kayıt başka bir iş istasyonunda kullanılıyor (database is locked)"
        << "Zerna" << "Şu Anda Bu Kayıt Başka Bir İş İstasyonunda Kullanılıyor";
    QTest::addRow("52-dizin") << 52 << "" << "Zerna" << "Dataların Yükleneceği Dizin Bulunamadı";
    QTest::addRow("61-disk") << 61 << "" << "Zerna"
        << "Lütfen Dataların Saklandığı Diski Boşaltınız.";
    QTest::addRow("76-data-yolu") << 76 << "" << "Zerna" << "Tanımlanmış Bulunan Data Yolu Hatalı";
    QTest::addRow("340-baslik") << 340 << "" << "Zerna Ostel" << "Programda İçsel Bir Hata Oluştu";
    QTest::addRow("3044-dizin") << 3044 << "izin yok" << "Zerna" << "Hata Açıklaması: izin yok";
    QTest::addRow("bilinmeyen") << 9999 << "ne oldu" << "Zerna"
        << "Hata Kodu: 9999\nHata Satırı 12\nHata Açıklaması: ne oldu";
    // clang-format on
}

void tst_Failure::friendlyTexts()
{
    QFETCH(int, number);
    QFETCH(QString, text);
    QFETCH(QString, title);
    QFETCH(QString, expected);
    const HataMetni m = HataMetniGetir(number, 12, text);
    QCOMPARE(m.baslik, title);
    QVERIFY2(m.metin.contains(expected), qPrintable(m.metin));
}

void tst_Failure::generalReporterEndsTheProgramWhenAsked_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("devam"); // -1 left out, 0 false, 1 true
    QTest::addColumn<bool>("ends");
    QTest::addRow("tamam-devam-edilebilir") << int(ui::Answer::Ok) << 1 << false;
    QTest::addRow("tamam-devam-yok") << int(ui::Answer::Ok) << 0 << false;
    QTest::addRow("iptal-devam-edilebilir") << int(ui::Answer::Cancel) << 1 << true;
    QTest::addRow("tamam-belirtilmemis") << int(ui::Answer::Ok) << -1 << true;
}

void tst_Failure::generalReporterEndsTheProgramWhenAsked()
{
    QFETCH(int, answer);
    QFETCH(int, devam);
    QFETCH(bool, ends);
    testing::MessageRecorder messages;
    messages.answer(ui::Answer(answer));
    bool ended = false;
    setProgramBitir([&ended](int) { ended = true; });
    setProgramAdi(u"Zerna Vortel Programı (Ver.: 1.0.0)"_s);
    const std::optional<bool> arg = devam < 0 ? std::nullopt : std::optional<bool>(devam == 1);
    GenelHata(3075, u"Sözdizimi hatası"_s, u"FrmOtomatikOdeme:OgrenciYukle"_s, arg);
    QCOMPARE(ended, ends);
    QCOMPARE(messages.titles(), QStringList{u"Genel HATA"_s});
    QCOMPARE(messages.texts().value(0),
             u" HATA OLUSAN \n\n Program Adi    : Zerna Vortel Programı (Ver.: 1.0.0)\n"
             " Rutin Adi      : FrmOtomatikOdeme:OgrenciYukle\n Hata Kodu      : 3075\n"
             " Hata Aciklamasi: Sözdizimi hatası"_s);
    QCOMPARE(messages.messages().value(0).buttons, ui::Buttons::OkCancel);
}

void tst_Failure::storeFailureReachesReporterAndLeavesARow()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(s.openYear());
    store::setDefaultDatabase(&s.db());
    users::durum().AktifKullanici = u"muhasebe"_s;
    testing::MessageRecorder messages;
    // The screen in front may only read: the failure is written down all the same.
    store::setWriteGuard([] { return false; });
    {
        // The failing screen's transaction is still open when it reports.
        store::Transaction tx(s.db());
        QVERIFY(tx);
        store::Query q(s.db(), u"INSERT INTO Ogrenci (Yok) VALUES (1)"_s);
        QVERIFY(!q.exec());
        HataBildir(q.error(u"FRMOGRENCI:OgrenciKaydet"_s));
    }
    store::setWriteGuard(nullptr);
    QCOMPARE(messages.titles(), QStringList{u"Zerna"_s});
    QVERIFY(
        messages.texts().value(0).contains(u"Şu an Kullanmakta Olduğunuz Data Yapısı Yanlış"_s));

    base::Result<QList<store::ErrorRow>> rows = store::readErrorRows(s.settings());
    QVERIFY2(rows, qPrintable(rows.error().text));
    QCOMPARE(rows->size(), 1);
    const store::ErrorRow row = rows->first();
    QCOMPARE(row.module, u"FRMOGRENCI"_s);
    QCOMPARE(row.object, u"OgrenciKaydet"_s);
    QCOMPARE(row.code, 3061);
    QCOMPARE(row.user, u"muhasebe"_s);
    QVERIFY(!row.machine.isEmpty());
    QVERIFY(row.time.isValid());
    store::setDefaultDatabase(nullptr);
}

void tst_Failure::aStoreThatDidNotOpenIsToldThenReported()
{
    VORTEL_STORE_FOR_ROW(s);
    QVERIFY(store::DatabaseAc(s.db(), store::Store::Global, true, false));
    store::setDefaultDatabase(&s.db());
    testing::MessageRecorder messages;
    // No working year chosen: the operation's store does not open.
    const store::Operation op(s.db(), store::Store::Year, u"FRMOGRENCI:OgrenciGoster"_s);
    QVERIFY(!op);
    HataBildir(op.error());
    QCOMPARE(messages.titles(), (QStringList{u"Dikkat!"_s, u"Zerna"_s}));
    QCOMPARE(messages.texts().value(0), u"Programın Veri Dosyası Bulunamadı. ()"_s);
    QVERIFY(messages.texts().value(1).contains(u"Çalışma Dizininiz Hatalıdır."_s));
    QVERIFY(messages.texts().value(1).contains(u"Çalışma dosyası açılamadı."_s));

    base::Result<QList<store::ErrorRow>> rows = store::readErrorRows(s.settings());
    QVERIFY2(rows, qPrintable(rows.error().text));
    QCOMPARE(rows->size(), 1);
    QCOMPARE(rows->first().code, 3044);
    QCOMPARE(rows->first().module, u"FRMOGRENCI"_s);
    QCOMPARE(rows->first().object, u"OgrenciGoster"_s);
    store::setDefaultDatabase(nullptr);
}

QTEST_GUILESS_MAIN(tst_Failure)
#include "tst_failure.moc"
