// Several workstations starting at once on a store that does not exist yet: each of them
// creates and brings forward what it finds missing, and none of them may fail for having met
// the others half-way. The workstations are copies of this program started with "--istasyon".
#include "test_support.h"

#include "store/database.h"
#include "store/dialect.h"
#include "store/migration.h"
#include "store/schema.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>
#include <QTextStream>

#include <cstdio>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

using namespace store;

namespace {

const char *const s_childFlag = "--istasyon";

// One workstation: waits for the word to go, then opens the global store and working year 1
// as the program's start does. Any message the store shows is a failure.
int workstation(const QString &engine, const QString &where)
{
    ConnectionSettings settings;
    if (engine == "postgres"_L1) {
        const std::optional<ConnectionSettings> s = ConnectionSettings::fromConnInfo(where);
        if (!s) {
            return 2;
        }
        settings = *s;
    } else {
        settings = ConnectionSettings::sqlite(where);
    }
    QStringList shown;
    setMessageHandler([&shown](MessageKind, const QString &title, const QString &text) {
        shown << title + u": "_s + text;
    });
    Database db(settings);
    std::fputs("hazir\n", stdout);
    std::fflush(stdout);
    char line[16];
    if (!std::fgets(line, sizeof line, stdin)) {
        return 2;
    }
    bool ok = DatabaseAc(db, Store::Global, false, false);
    db.selectYear(1);
    ok = ok && DatabaseAc(db, Store::Year, false, true);
    QTextStream err(stderr);
    for (const QString &m : std::as_const(shown)) {
        err << m << '\n';
    }
    return ok && shown.isEmpty() ? 0 : 1;
}

// The year's tables and columns as text, and the rows that the migration adds once.
QStringList yearContents(Database &db)
{
    QStringList out;
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Year);
    if (!c) {
        return {c.error().text};
    }
    for (const QString &t : c->tableNames()) {
        for (const ColumnInfo &col : c->columns(t)) {
            out << t.toLower() + u'.' + col.name.toLower();
        }
    }
    out.sort();
    out << u"Serbest İndirim x%1"_s.arg(testing::scalar(db,
                                                        u"SELECT count(*) FROM IskontoTanim WHERE "
                                                        "IskontoAciklama = 'Serbest İndirim'"_s)
                                            .toInt());
    return out;
}

} // namespace

class tst_SharedOpening : public QObject
{
    Q_OBJECT

private slots:
    void firstStartsAtOnceAllSucceed_data() { testing::addEngineRows(); }
    void firstStartsAtOnceAllSucceed();
};

void tst_SharedOpening::firstStartsAtOnceAllSucceed()
{
    QFETCH(int, engine);
    const int workstations = 3;
    QStringList alone;
    {
        testing::TestStore s(static_cast<Engine>(engine));
        if (!s.isValid()) {
            QSKIP(qPrintable(s.skipReason()));
        }
        QVERIFY(s.openYear());
        alone = yearContents(s.db());
        QVERIFY(alone.last().endsWith("x1"_L1));
    }
    for (int round = 0; round < 6; ++round) {
        testing::TestStore s(static_cast<Engine>(engine));
        QVERIFY(s.isValid());
        QString where;
        if (s.settings().engine == Engine::SQLite) {
            where = s.settings().dataFolder;
        } else {
            const ConnectionSettings &c = s.settings();
            where = u"host=%1 port=%2 dbname=%3 user=%4"_s.arg(c.host).arg(c.port).arg(c.database,
                                                                                       c.user);
            if (!c.password.isEmpty()) {
                where += u" password="_s + c.password;
            }
        }
        std::vector<std::unique_ptr<QProcess>> children;
        for (int i = 0; i < workstations; ++i) {
            auto p = std::make_unique<QProcess>();
            p->setProcessChannelMode(QProcess::SeparateChannels);
            p->start(QCoreApplication::applicationFilePath(),
                     {QString::fromLatin1(s_childFlag),
                      QString::fromLatin1(testing::engineName(s.settings().engine)), where});
            QVERIFY(p->waitForStarted());
            children.push_back(std::move(p));
        }
        for (auto &p : children) {
            while (!p->canReadLine()) {
                QVERIFY2(p->waitForReadyRead(30000), "a workstation did not start");
            }
            QCOMPARE(p->readLine().trimmed(), QByteArray("hazir"));
        }
        for (auto &p : children) {
            p->write("basla\n");
        }
        for (auto &p : children) {
            QVERIFY(p->waitForBytesWritten());
        }
        QStringList failures;
        for (auto &p : children) {
            if (!p->waitForFinished(120000)) {
                p->kill();
                p->waitForFinished();
            }
            if (p->exitStatus() != QProcess::NormalExit || p->exitCode() != 0) {
                failures << QString::fromUtf8(p->readAllStandardError());
            }
        }
        QVERIFY2(failures.isEmpty(),
                 qPrintable(u"round %1: %2"_s.arg(round).arg(failures.join('\n'))));

        // The store is what one workstation alone would have made.
        QVERIFY(s.openYear());
        QCOMPARE(yearContents(s.db()), alone);
    }
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 4 && qstrcmp(argv[1], s_childFlag) == 0) {
        return workstation(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    }
    tst_SharedOpening t;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&t, argc, argv);
}

#include "tst_shared_opening.moc"
