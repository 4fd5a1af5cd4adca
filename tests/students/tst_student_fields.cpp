#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "store/database.h"
#include "store/schema.h"
#include "students/frm_ogrenci.h"
#include "students/student_fields.h"
#include "students/student_record.h"
#include "ui/inputs.h"
#include "users/session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using namespace students;

// The student screen and the student record share one list of fields: each field of the list
// has its box, the box takes what its field holds, and whatever the boxes hold is saved and
// read back.
class tst_StudentFields : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyFieldHasOneBoxOfItsKind_data();
    void everyFieldHasOneBoxOfItsKind();
    void textBoxesTakeWhatTheirFieldsHold_data();
    void textBoxesTakeWhatTheirFieldsHold();
    void twoTickBoxesShareARow();
    void whatTheBoxesHoldIsSavedAndReadBack();

private:
    std::unique_ptr<testing::TestStore> m_store;
    std::unique_ptr<FrmOgrenci> m_screen;
};

void tst_StudentFields::initTestCase()
{
    m_store = std::make_unique<testing::TestStore>(store::Engine::SQLite);
    store::setDefaultDatabase(&m_store->db());
    users::durum() = users::CalismaDurumu();
    QVERIFY(testing::openOffice(m_store->db(), u"muhasebe"_s, u"1"_s, u"202511"_s));
    m_screen = std::make_unique<FrmOgrenci>(m_store->db());
}

void tst_StudentFields::cleanupTestCase()
{
    m_screen->setDirty(false);
    m_screen.reset();
    m_store.reset();
}

void tst_StudentFields::everyFieldHasOneBoxOfItsKind_data()
{
    QTest::addColumn<QString>("tablo");
    QTest::addColumn<QString>("alan");
    QTest::addColumn<int>("giris");
    for (const OgrenciAlani &a : OgrenciAlanTablosu()) {
        QTest::addRow("%s", qPrintable(a.ad)) << a.tablo << a.ad << int(a.giris);
    }
}

void tst_StudentFields::everyFieldHasOneBoxOfItsKind()
{
    QFETCH(QString, tablo);
    QFETCH(QString, alan);
    QFETCH(int, giris);
    // A field the table does not declare could be neither read nor written.
    QVERIFY(store::schema::field(store::Store::Year, tablo, alan));
    const QStringList &kept = tablo == "Ogrenci"_L1 ? OgrenciAlanlari() : NufusAlanlari();
    QVERIFY(kept.contains(alan));

    const QList<QWidget *> boxes = m_screen->findChildren<QWidget *>(alan);
    QCOMPARE(boxes.size(), 1);
    QWidget *box = boxes.constFirst();
    switch (static_cast<Giris>(giris)) {
    case Giris::Metin:
        QVERIFY(qobject_cast<QLineEdit *>(box) && !qobject_cast<ui::DateEdit *>(box)
                && !qobject_cast<ui::MoneyEdit *>(box));
        break;
    case Giris::Tarih:
        QVERIFY(qobject_cast<ui::DateEdit *>(box));
        break;
    case Giris::Para:
        QVERIFY(qobject_cast<ui::MoneyEdit *>(box));
        break;
    case Giris::Onay:
        QVERIFY(qobject_cast<QCheckBox *>(box));
        break;
    case Giris::Liste:
        QVERIFY(qobject_cast<QComboBox *>(box) && qobject_cast<QComboBox *>(box)->isEditable());
        break;
    case Giris::SabitListe:
    case Giris::SiraListe: {
        auto *c = qobject_cast<QComboBox *>(box);
        QVERIFY(c && !c->isEditable());
        // The empty entry first, then the words.
        QCOMPARE(c->itemText(0), QString());
        QCOMPARE(c->count(), int(OgrenciAlaniBul(alan)->secenekler.size()) + 1);
        break;
    }
    }
}

void tst_StudentFields::textBoxesTakeWhatTheirFieldsHold_data()
{
    QTest::addColumn<QString>("alan");
    QTest::addColumn<int>("boyut");
    for (const OgrenciAlani &a : OgrenciAlanTablosu()) {
        if (a.giris != Giris::Metin && a.giris != Giris::Liste) {
            continue;
        }
        int size = store::schema::textSize(store::Store::Year, a.tablo, a.ad);
        if (a.ad == "Ogr_Numarasi"_L1) {
            size = 10; // a whole number up to 2147483647
        } else if (a.ad == KartNoAlani) {
            size = KartNoUzunlugu; // kept encrypted, in a wider field
        }
        QTest::addRow("%s", qPrintable(a.ad)) << a.ad << size;
    }
}

void tst_StudentFields::textBoxesTakeWhatTheirFieldsHold()
{
    QFETCH(QString, alan);
    QFETCH(int, boyut);
    QVERIFY(boyut > 0);
    QWidget *box = m_screen->findChild<QWidget *>(alan);
    QLineEdit *edit = qobject_cast<QLineEdit *>(box);
    if (auto *c = qobject_cast<QComboBox *>(box)) {
        edit = c->lineEdit();
    }
    QVERIFY(edit);
    QCOMPARE(edit->maxLength(), boyut);
}

void tst_StudentFields::twoTickBoxesShareARow()
{
    m_screen->show();
    m_screen->resize(1080, 690);
    QApplication::processEvents();
    auto *muaf = m_screen->findChild<QCheckBox *>(u"Ogr_Muaf"_s);
    auto *ayrildi = m_screen->findChild<QCheckBox *>(u"Ogr_Ayrildi"_s);
    auto *silme = m_screen->findChild<QWidget *>(u"Ogr_Kayit_Silme_Tarihi"_s);
    QCOMPARE(muaf->y(), ayrildi->y());
    QVERIFY(muaf->x() < ayrildi->x());
    QVERIFY(muaf->y() > silme->y());
    // A tick box alone stands in the column of the boxes, not of the labels.
    auto *sahibi = m_screen->findChild<QCheckBox *>(u"Ogr_Veli_Isyeri_SahibiMi"_s);
    auto *isyeri = m_screen->findChild<QWidget *>(u"Ogr_Veli_Isyeri"_s);
    QCOMPARE(sahibi->parentWidget()->mapTo(m_screen.get(), sahibi->pos()).x(),
             isyeri->parentWidget()->mapTo(m_screen.get(), isyeri->pos()).x());
    m_screen->hide();
}

void tst_StudentFields::whatTheBoxesHoldIsSavedAndReadBack()
{
    testing::MessageRecorder messages;
    FrmOgrenci &f = *m_screen;
    f.ekraniTemizle();
    // Each box gets a value of its own, which tells the fields apart.
    const QList<OgrenciAlani> &alanlar = OgrenciAlanTablosu();
    auto text = [](int i, int size) { return u"d%1"_s.arg(i).left(size); };
    for (int i = 0; i < alanlar.size(); ++i) {
        const OgrenciAlani &a = alanlar.at(i);
        QWidget *box = f.findChild<QWidget *>(a.ad);
        switch (a.giris) {
        case Giris::Metin:
            qobject_cast<QLineEdit *>(box)->setText(a.ad == "Ogr_Numarasi"_L1 ? u"4242"_s
                                                                              : text(i, a.boyut));
            break;
        case Giris::Tarih:
            static_cast<ui::DateEdit *>(box)->setDate(QDate(2020, 1, 1).addDays(i));
            break;
        case Giris::Para:
            static_cast<ui::MoneyEdit *>(box)->setValue(base::Para::fromUnits(1000 + i));
            break;
        case Giris::Onay:
            qobject_cast<QCheckBox *>(box)->setChecked(true);
            break;
        case Giris::Liste:
            qobject_cast<QComboBox *>(box)->setEditText(text(i, a.boyut));
            break;
        case Giris::SabitListe:
        case Giris::SiraListe: {
            auto *c = qobject_cast<QComboBox *>(box);
            c->setCurrentIndex(c->count() - 1);
            break;
        }
        }
    }
    QVERIFY(f.OgrenciKaydet());
    const qint64 key = f.kayitId();
    QVERIFY(key > 0);

    f.ekraniTemizle();
    QCOMPARE(f.findChild<QLineEdit *>(u"Ogr_Adi"_s)->text(), QString());
    QVERIFY(f.OgrenciGoster(key, true));
    for (int i = 0; i < alanlar.size(); ++i) {
        const OgrenciAlani &a = alanlar.at(i);
        QWidget *box = f.findChild<QWidget *>(a.ad);
        const char *field = qPrintable(a.ad);
        switch (a.giris) {
        case Giris::Metin: {
            const QString expected = a.ad == "Ogr_Numarasi"_L1 ? u"4242"_s : text(i, a.boyut);
            QVERIFY2(qobject_cast<QLineEdit *>(box)->text() == expected, field);
            break;
        }
        case Giris::Tarih:
            QVERIFY2(static_cast<ui::DateEdit *>(box)->date() == QDate(2020, 1, 1).addDays(i),
                     field);
            break;
        case Giris::Para:
            QVERIFY2(static_cast<ui::MoneyEdit *>(box)->value() == base::Para::fromUnits(1000 + i),
                     field);
            break;
        case Giris::Onay:
            QVERIFY2(qobject_cast<QCheckBox *>(box)->isChecked(), field);
            break;
        case Giris::Liste:
            QVERIFY2(qobject_cast<QComboBox *>(box)->currentText() == text(i, a.boyut), field);
            break;
        case Giris::SabitListe:
        case Giris::SiraListe: {
            auto *c = qobject_cast<QComboBox *>(box);
            QVERIFY2(c->currentIndex() == int(a.secenekler.size()), field);
            break;
        }
        }
    }
}

QTEST_MAIN(tst_StudentFields)
#include "tst_student_fields.moc"
