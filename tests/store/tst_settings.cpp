#include "test_support.h"

#include "store/database.h"
#include "store/settings.h"

#include <QTest>

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
    QTest::addRow("bos-mod") << ""
                             << "MENU"
                             << "X"
                             << "1"
                             << "Mode Hatası";
    QTest::addRow("null-mod") << null << "MENU"
                              << "X"
                              << "1"
                              << "Mode Hatası";
    QTest::addRow("bos-bolum") << "GET"
                               << ""
                               << "X"
                               << ""
                               << "Secname Hatası";
    QTest::addRow("bos-anahtar") << "WRITE"
                                 << "MENU"
                                 << ""
                                 << "1"
                                 << "Keyname Hatası";
    QTest::addRow("null-deger") << "WRITE"
                                << "MENU"
                                << "X" << null << "ERROR KeyValue";
    QTest::addRow("bilinmeyen-mod") << "READ"
                                    << "MENU"
                                    << "X"
                                    << "1"
                                    << "";
}

void tst_Settings::refusesIncompleteCalls()
{
    QFETCH(QString, mod);
    QFETCH(QString, bolum);
    QFETCH(QString, anahtar);
    QFETCH(QString, deger);
    QFETCH(QString, cevap);
    testing::TestStore s(store::Engine::SQLite);
    QCOMPARE(INIAyar(s.db(), mod, QStringLiteral("mnuShow.ini"), bolum, anahtar, deger), cevap);
    QCOMPARE(INIAyar(s.db(), QStringLiteral("GET"), QStringLiteral("mnuShow.ini"),
                     QStringLiteral("MENU"), QStringLiteral("X")),
             QString());
}

void tst_Settings::keepsValuesLikeAnIniFile()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    const QString file = QStringLiteral("mnuShow.ini");
    QCOMPARE(INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("MENU"),
                     QStringLiteral("AÇIKLAMALAR")),
             QString());
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), file, QStringLiteral("MENU"),
                     QStringLiteral("AÇIKLAMALAR"), QStringLiteral("  FALSE  ")),
             QString());
    // Names match without regard to case, and the value comes back trimmed.
    QCOMPARE(INIAyar(db, QStringLiteral("get"), QStringLiteral("MNUSHOW.INI"),
                     QStringLiteral("menu"), QStringLiteral("açıklamalar")),
             QStringLiteral("FALSE"));
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), file, QStringLiteral("MENU"),
                     QStringLiteral("AÇIKLAMALAR"), QStringLiteral("TRUE")),
             QString());
    QCOMPARE(INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("MENU"),
                     QStringLiteral("AÇIKLAMALAR")),
             QStringLiteral("TRUE"));
    // A key is a path too, as the conversion answers are kept by file.
    const QString path = QStringLiteral("/okul/data/Aidat003.db");
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), QStringLiteral("Aidat.ini"),
                     QStringLiteral("YTLCevrim"), path, QStringLiteral("1")),
             QString());
    QCOMPARE(INIAyar(db, QStringLiteral("GET"), QStringLiteral("Aidat.ini"),
                     QStringLiteral("YTLCevrim"), path),
             QStringLiteral("1"));
    // The old reader's default for a missing key, and its buffer.
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), file, QStringLiteral("MENU"), QStringLiteral("K"),
                     QStringLiteral("Failed once")),
             QString());
    QCOMPARE(INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("MENU"), QStringLiteral("K")),
             QString());
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), file, QStringLiteral("MENU"),
                     QStringLiteral("UZUN"), QString(300, QLatin1Char('x'))),
             QString());
    QCOMPARE(
        INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("MENU"), QStringLiteral("UZUN"))
            .size(),
        254);
    QCOMPARE(INIAyar(db, QStringLiteral("WRITE"), file, QStringLiteral("MENU"),
                     QStringLiteral("BOS"), QStringLiteral("")),
             QString());
    QCOMPARE(
        INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("MENU"), QStringLiteral("BOS")),
        QString());
}

void tst_Settings::everyWorkstationSeesTheSame()
{
    VORTEL_STORE_FOR_ROW(s);
    std::unique_ptr<store::Database> other = s.newConnection();
    QCOMPARE(INIAyar(s.db(), QStringLiteral("WRITE"), QStringLiteral("Aidat.ini"),
                     QStringLiteral("AktifCalisma"), QStringLiteral("ID"), QStringLiteral("3")),
             QString());
    QCOMPARE(INIAyar(*other, QStringLiteral("GET"), QStringLiteral("Aidat.ini"),
                     QStringLiteral("AktifCalisma"), QStringLiteral("ID")),
             QStringLiteral("3"));
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
