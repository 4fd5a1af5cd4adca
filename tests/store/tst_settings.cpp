#include "test_support.h"

#include "store/database.h"
#include "store/settings.h"

#include <QTest>

using namespace Qt::StringLiterals;

using store::INIAyar;

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void refusesIncompleteCalls_data();
    void refusesIncompleteCalls();
    void keepsValuesLikeAnIniFile_data() { testing::addEngineRows(); }
    void keepsValuesLikeAnIniFile();
    void everyWorkstationSeesTheSame_data() { testing::addEngineRows(); }
    void everyWorkstationSeesTheSame();
};

void tst_Settings::refusesIncompleteCalls_data()
{
    QTest::addColumn<QString>("mod");
    QTest::addColumn<QString>("bolum");
    QTest::addColumn<QString>("anahtar");
    QTest::addColumn<QString>("deger");
    QTest::addColumn<QString>("cevap");
    const QString null;
    // clang-format off
    QTest::addRow("bos-mod") << "" << "MENU" << "X" << "1" << "Mode Hatası";
    QTest::addRow("null-mod") << null << "MENU" << "X" << "1" << "Mode Hatası";
    QTest::addRow("bos-bolum") << "GET" << "" << "X" << "" << "Secname Hatası";
    QTest::addRow("bos-anahtar") << "WRITE" << "MENU" << "" << "1" << "Keyname Hatası";
    QTest::addRow("null-deger") << "WRITE" << "MENU" << "X" << null << "ERROR KeyValue";
    QTest::addRow("bilinmeyen-mod") << "READ" << "MENU" << "X" << "1" << "";
    // clang-format on
}

void tst_Settings::refusesIncompleteCalls()
{
    QFETCH(QString, mod);
    QFETCH(QString, bolum);
    QFETCH(QString, anahtar);
    QFETCH(QString, deger);
    QFETCH(QString, cevap);
    testing::TestStore s(store::Engine::SQLite);
    QCOMPARE(INIAyar(s.db(), mod, u"mnuShow.ini"_s, bolum, anahtar, deger), cevap);
    QCOMPARE(INIAyar(s.db(), u"GET"_s, u"mnuShow.ini"_s, u"MENU"_s, u"X"_s), QString());
}

void tst_Settings::keepsValuesLikeAnIniFile()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    const QString file = u"mnuShow.ini"_s;
    QCOMPARE(INIAyar(db, u"GET"_s, file, u"MENU"_s, u"AÇIKLAMALAR"_s), QString());
    QCOMPARE(INIAyar(db, u"WRITE"_s, file, u"MENU"_s, u"AÇIKLAMALAR"_s, u"  FALSE  "_s), QString());
    // Names match without regard to case, and the value comes back trimmed.
    QCOMPARE(INIAyar(db, u"get"_s, u"MNUSHOW.INI"_s, u"menu"_s, u"açıklamalar"_s), u"FALSE"_s);
    QCOMPARE(INIAyar(db, u"WRITE"_s, file, u"MENU"_s, u"AÇIKLAMALAR"_s, u"TRUE"_s), QString());
    QCOMPARE(INIAyar(db, u"GET"_s, file, u"MENU"_s, u"AÇIKLAMALAR"_s), u"TRUE"_s);
    // A key is a path too, as the conversion answers are kept by file.
    const QString path = u"/okul/data/Aidat003.db"_s;
    QCOMPARE(INIAyar(db, u"WRITE"_s, u"Aidat.ini"_s, u"YTLCevrim"_s, path, u"1"_s), QString());
    QCOMPARE(INIAyar(db, u"GET"_s, u"Aidat.ini"_s, u"YTLCevrim"_s, path), u"1"_s);
    // The old reader's default for a missing key, and its buffer.
    QCOMPARE(INIAyar(db, u"WRITE"_s, file, u"MENU"_s, u"K"_s, u"Failed once"_s), QString());
    QCOMPARE(INIAyar(db, u"GET"_s, file, u"MENU"_s, u"K"_s), QString());
    QCOMPARE(INIAyar(db, u"WRITE"_s, file, u"MENU"_s, u"UZUN"_s, QString(300, u'x')), QString());
    QCOMPARE(INIAyar(db, u"GET"_s, file, u"MENU"_s, u"UZUN"_s).size(), 254);
    QCOMPARE(INIAyar(db, u"WRITE"_s, file, u"MENU"_s, u"BOS"_s, u""_s), QString());
    QCOMPARE(INIAyar(db, u"GET"_s, file, u"MENU"_s, u"BOS"_s), QString());
}

void tst_Settings::everyWorkstationSeesTheSame()
{
    VORTEL_STORE_FOR_ROW(s);
    std::unique_ptr<store::Database> other = s.newConnection();
    QCOMPARE(INIAyar(s.db(), u"WRITE"_s, u"Aidat.ini"_s, u"AktifCalisma"_s, u"ID"_s, u"3"_s),
             QString());
    QCOMPARE(INIAyar(*other, u"GET"_s, u"Aidat.ini"_s, u"AktifCalisma"_s, u"ID"_s), u"3"_s);
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
