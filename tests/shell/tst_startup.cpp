#include "test_support.h"

#include "shell/startup.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace shell;
using namespace base;

class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void commandLine_data();
    void commandLine();
    void aSecondStartEndsAtOnce();
    void commandLineRunsWithoutADisplay_data();
    void commandLineRunsWithoutADisplay();
};

void tst_Startup::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("engine");
    QTest::addColumn<QString>("where");
    QTest::addColumn<bool>("refused");
    QTest::addRow("bos-data-klasoru")
        << QStringList{} << int(store::Engine::SQLite) << "/data" << false;
    QTest::addRow("data") << QStringList{"--data", "/srv/okul"} << int(store::Engine::SQLite)
                          << "/srv/okul" << false;
    QTest::addRow("pg") << QStringList{"--pg", "host=sunucu port=5433 dbname=okul user=muhasebe"}
                        << int(store::Engine::PostgreSQL) << "okul" << false;
    QTest::addRow("pg-veritabani-yok") << QStringList{"--pg", "host=sunucu"} << 0 << "" << true;
    QTest::addRow("bilinmeyen") << QStringList{"--hizli"} << 0 << "" << true;
    QTest::addRow("eksik-deger") << QStringList{"--data"} << 0 << "" << true;
}

void tst_Startup::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, engine);
    QFETCH(QString, where);
    QFETCH(bool, refused);
    const KomutSatiri k = KomutSatiriOku(QStringList{u"zerna-vortel"_s} + arguments);
    QCOMPARE(!k.hata.isEmpty(), refused);
    if (refused)
        return;
    QCOMPARE(int(k.settings.engine), engine);
    const QString actual
        = k.settings.engine == store::Engine::SQLite ? k.settings.dataFolder : k.settings.database;
    QVERIFY2(actual.endsWith(where), qPrintable(actual));
}

void tst_Startup::aSecondStartEndsAtOnce()
{
    QTemporaryDir folder;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"TMPDIR"_s,
               folder.path()); // where the program keeps its instance lock
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    const QStringList args = {u"--data"_s, folder.path() + u"/data"_s};
    QProcess first;
    QProcessEnvironment firstEnv = env;
    firstEnv.insert(u"QT_LOGGING_RULES"_s, u"vortel.startup.info=true"_s);
    first.setProcessEnvironment(firstEnv);
    first.start(QStringLiteral(VORTEL_PROGRAM), args);
    QVERIFY(first.waitForStarted());
    // The first one waits at its first dialog; the store it made tells that it is up.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder.path() + u"/data/Sabit.db"_s), 20000);
    // The instance is the operating system's user, not whatever USER says.
    QProcess second;
    env.insert(u"USER"_s, QString());
    env.insert(u"USERNAME"_s, u"baskasi"_s);
    second.setProcessEnvironment(env);
    second.start(QStringLiteral(VORTEL_PROGRAM), args);
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(second.readAllStandardOutput().isEmpty());
    QCOMPARE(first.state(), QProcess::Running);
    // The running one was told, and came forward.
    QByteArray told;
    QTRY_VERIFY_WITH_TIMEOUT((told += first.readAllStandardError()).contains("brought forward"),
                             10000);
    first.kill();
    first.waitForFinished();
}

void tst_Startup::commandLineRunsWithoutADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("printed");
    QTest::addRow("surum") << QStringList{"--surum"} << 0 << "Zerna";
    QTest::addRow("version") << QStringList{"--version"} << 0 << "Zerna";
    QTest::addRow("bilinmeyen") << QStringList{"--hizli"} << 2 << "Bilinmeyen seçenek: --hizli";
}

void tst_Startup::commandLineRunsWithoutADisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, printed);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(QString::fromLatin1(name));
    QProcess program;
    program.setProcessEnvironment(env);
    program.start(QStringLiteral(VORTEL_PROGRAM), arguments);
    QVERIFY(program.waitForFinished(10000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), exitCode);
    const QString said
        = QString::fromUtf8(program.readAllStandardOutput() + program.readAllStandardError());
    QVERIFY2(said.contains(printed), qPrintable(said));
}

QTEST_GUILESS_MAIN(tst_Startup)
#include "tst_startup.moc"
