#include "office.h"
#include "test_support.h"

#include "fees/frm_aidat_tanimlama.h"
#include "shell/frm_okul_bilgileri.h"
#include "store/database.h"
#include "store/schema.h"
#include "students/frm_ogrenci.h"
#include "ui/grid.h"
#include "ui/screen.h"
#include "users/session.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <map>
#include <memory>

using namespace Qt::StringLiterals;

// The screens whose boxes are made from tables: every box has a name of its own, and a box
// that takes a field's text is cut to the size the schema declares for it.
class tst_ScreenTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void namesAreUnique_data();
    void namesAreUnique();
    void textBoxesTakeTheirFieldsSize_data();
    void textBoxesTakeTheirFieldsSize();

private:
    std::unique_ptr<testing::TestStore> m_store;
    std::map<QString, std::unique_ptr<ui::Screen>> m_screens;
};

void tst_ScreenTables::initTestCase()
{
    m_store = std::make_unique<testing::TestStore>(store::Engine::SQLite);
    store::Database &db = m_store->db();
    store::setDefaultDatabase(&db);
    users::durum() = users::CalismaDurumu();
    QVERIFY(testing::openOffice(db));
    m_screens[u"FrmOgrenci"_s] = std::make_unique<students::FrmOgrenci>(db);
    m_screens[u"FrmAidatTanimlama"_s] = std::make_unique<fees::FrmAidatTanimlama>(db);
    m_screens[u"FrmOkulBilgileri"_s] = std::make_unique<shell::FrmOkulBilgileri>(db);
}

void tst_ScreenTables::cleanupTestCase()
{
    for (auto &[name, screen] : m_screens) {
        screen->setDirty(false);
    }
    m_screens.clear();
    m_store.reset();
}

void tst_ScreenTables::namesAreUnique_data()
{
    QTest::addColumn<QString>("screen");
    for (const auto &[name, screen] : m_screens) {
        QTest::addRow("%s", qPrintable(name)) << name;
    }
}

void tst_ScreenTables::namesAreUnique()
{
    QFETCH(QString, screen);
    QStringList seen;
    for (const QWidget *w : m_screens.at(screen)->findChildren<QWidget *>()) {
        const QString name = w->objectName();
        if (name.isEmpty() || name.startsWith("qt_"_L1)) {
            continue;
        }
        QVERIFY2(!seen.contains(name), qPrintable(name));
        seen << name;
    }
    QVERIFY(seen.size() > 10);
}

void tst_ScreenTables::textBoxesTakeTheirFieldsSize_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("size");
    auto size = [](const char *table, const char *field) {
        return store::schema::textSize(store::Store::Year, QString::fromLatin1(table),
                                       QString::fromLatin1(field));
    };
    // The school's boxes are named after the fields of its row: "txt" and the field.
    const store::schema::Table *sabit = store::schema::table(store::Store::Year, u"Sabit"_s);
    int boxes = 0;
    for (const store::schema::Field &f : sabit->fields) {
        const QString box = u"txt"_s + f.name;
        if (f.type != store::schema::FieldType::Text
            || !m_screens.at(u"FrmOkulBilgileri"_s)->findChild<QLineEdit *>(box)) {
            continue;
        }
        QTest::addRow("FrmOkulBilgileri-%s", qPrintable(box))
            << u"FrmOkulBilgileri"_s << box << f.size;
        ++boxes;
    }
    QCOMPARE(boxes, 10);
    QTest::addRow("FrmAidatTanimlama-txtAidatTanim")
        << u"FrmAidatTanimlama"_s << u"txtAidatTanim"_s << size("AidatTanim", "AidatTanim");
    // A cell of a grid: the discount's description.
    QTest::addRow("FrmAidatTanimlama-Spr_Indirim")
        << u"FrmAidatTanimlama"_s << u"Spr_Indirim"_s << size("IskontoTanim", "IskontoAciklama");
    QTest::addRow("FrmOgrenci-grdKardesler")
        << u"FrmOgrenci"_s << u"grdKardesler"_s << size("OgrenciKardesler", "OgrKardesAd");
}

void tst_ScreenTables::textBoxesTakeTheirFieldsSize()
{
    QFETCH(QString, screen);
    QFETCH(QString, box);
    QFETCH(int, size);
    QVERIFY(size > 0);
    QWidget *w = m_screens.at(screen)->findChild<QWidget *>(box);
    QVERIFY(w);
    if (auto *grid = qobject_cast<ui::Grid *>(w)) {
        QCOMPARE(grid->gridModel()->columns().constFirst().maxLength, size);
    } else {
        QCOMPARE(qobject_cast<QLineEdit *>(w)->maxLength(), size);
    }
}

QTEST_MAIN(tst_ScreenTables)
#include "tst_screen_tables.moc"
