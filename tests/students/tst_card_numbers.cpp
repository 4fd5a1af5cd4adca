#include "office_window.h"

#include "store/settings.h"
#include "students/frm_ogrenci.h"
#include "students/student_record.h"
#include "users/passwords.h"
#include "users/secrets.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace students;

namespace {

const QString s_card = u"4543 1234 5678 9012"_s;

OgrenciKaydi withCard(qint64 no, const QString &ad, const QString &soyad)
{
    OgrenciKaydi k;
    k.ogrenci.insert(u"Ogr_Numarasi"_s, no);
    k.ogrenci.insert(u"Ogr_Adi"_s, ad);
    k.ogrenci.insert(u"Ogr_Soyadi"_s, soyad);
    k.ogrenci.insert(KartNoAlani, s_card);
    return k;
}

qint64 saveStudent(store::Database &db)
{
    const base::Result<KaydetSonucu> r
        = OgrenciKaydet(db, withCard(5, u"Ege"_s, u"Şahin"_s), false);
    return r ? r->kayitId : 0;
}

// The student screen of a started office, showing the student.
FrmOgrenci *showStudent(testing::OfficeWindow &o, qint64 id)
{
    o.start();
    auto *screen = o.open<FrmOgrenci>(u"popOgrenciBilgileri"_s, u"FrmOgrenci"_s);
    return screen && screen->OgrenciGoster(id, true) ? screen : nullptr;
}

QString stored(store::Database &db, qint64 id)
{
    store::Query q(db, u"SELECT Ogr_Veli_KrediKarti FROM Ogrenci WHERE KayitID = ?"_s);
    q.bind(id);
    return q.exec() && q.next() ? q.text(0) : QString();
}

} // namespace

class tst_CardNumbers : public QObject
{
    Q_OBJECT

private slots:
    // Each test has a key file of its own, outside the data.
    void init()
    {
        m_keys = std::make_unique<QTemporaryDir>();
        qputenv("VORTEL_KART_ANAHTARI", m_keys->filePath(u"kart.key"_s).toLocal8Bit());
    }
    void keptEncryptedReadInClear_data() { testing::addEngineRows(); }
    void keptEncryptedReadInClear();
    void maskedForThoseWithoutTheRight();
    void theKeyLivesApartFromTheData();
    void withoutTheKeyNumbersStayMaskedAndKept();

private:
    std::unique_ptr<QTemporaryDir> m_keys;
};

void tst_CardNumbers::keptEncryptedReadInClear()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openOffice(db));
    // The very first card number goes with a save that fails late and is rolled back: the
    // office's key it brought about must stand in the store all the same, or every number boxed
    // with it in this session would be lost at the next start.
    const QString siblings = db.table(store::Store::Year, u"OgrenciKardesler"_s);
    QVERIFY(db.exec(u"ALTER TABLE %1 RENAME TO OgrenciKardeslerYok"_s.arg(siblings)).ok());
    OgrenciKaydi failing = withCard(4, u"Eda"_s, u"Er"_s);
    failing.kardesler.append(Kardes{u"Ali"_s, u"Er"_s, QString(), QString()});
    QVERIFY(!OgrenciKaydet(db, failing, false));
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Ogrenci"_s).toInt(), 0);
    QVERIFY(QFile::exists(users::KartAnahtariDosyasi()));
    QVERIFY(db.exec(u"ALTER TABLE %1 RENAME TO OgrenciKardesler"_s.arg(
                        db.table(store::Store::Year, u"OgrenciKardeslerYok"_s)))
                .ok());

    const qint64 id = saveStudent(db);
    QVERIFY(id > 0);
    const QString atRest = stored(db, id);
    QVERIFY(users::GizliMi(atRest));
    QVERIFY(!atRest.contains(u"9012"_s));
    QCOMPARE((*OgrenciOku(db, id))->metin(KartNoAlani), s_card);
    // Each saving draws a new nonce: the same number never reads the same at rest.
    QVERIFY(*users::GizliYaz(db, s_card) != *users::GizliYaz(db, s_card));
    // A number kept before encryption is read as it is; one boxed with another key stays boxed.
    QCOMPARE(users::GizliOku(db, u"4543"_s), u"4543"_s);
    QString foreign = atRest;
    foreign[10] = foreign[10] == u'A' ? u'B' : u'A';
    QCOMPARE(users::GizliOku(db, foreign), foreign);
    QCOMPARE(users::KartNoMaskele(foreign), u"•••• •••• •••• ••••"_s);
    QCOMPARE(users::KartNoMaskele(s_card), u"•••• •••• •••• 9012"_s);
}

void tst_CardNumbers::maskedForThoseWithoutTheRight()
{
    testing::OfficeWindow o;
    QVERIFY(o.prepare());
    store::Database &db = o.db();
    const qint64 id = saveStudent(db);
    // Rights exist: the secretary may use the student screen, but not see card numbers.
    QVERIFY(testing::run(db,
                         u"INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                         "Haklar_Program_Adi, Kullanici_Program) VALUES (?, 1, 1, 'x', ?)"_s,
                         {*users::Sifrele(u"sekreter"_s), u"popOgrenciBilgileri"_s}));
    users::durum().AktifKullanici = u"sekreter"_s;
    QVERIFY(!users::KartNoGorebilir(db));
    FrmOgrenci *screen = showStudent(o, id);
    QVERIFY(screen);
    auto *box = screen->findChild<QLineEdit *>(KartNoAlani);
    QCOMPARE(box->text(), u"•••• •••• •••• 9012"_s);
    QVERIFY(box->isReadOnly());
    // Saving the record keeps the number, not the mask.
    QVERIFY(screen->OgrenciKaydet());
    QCOMPARE((*OgrenciOku(db, id))->metin(KartNoAlani), s_card);
}

void tst_CardNumbers::theKeyLivesApartFromTheData()
{
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    QVERIFY(testing::openOffice(db));
    // A key an earlier version kept in the store moves into the file and leaves the store.
    const QByteArray oldKey = QByteArray(32, '\x5a').toHex();
    QVERIFY(
        store::IniYaz(db, u"VORTEL"_s, u"GİZLİ"_s, u"KART ANAHTARI"_s, QString::fromLatin1(oldKey))
            .ok());
    QVERIFY(saveStudent(db) > 0);
    QFile key(users::KartAnahtariDosyasi());
    QVERIFY(key.open(QIODevice::ReadOnly));
    QCOMPARE(key.readAll().trimmed(), oldKey);
    QCOMPARE(key.permissions() & ~(QFileDevice::ReadUser | QFileDevice::WriteUser),
             QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    store::DatabaseKapat(db);

    // Not one byte of the data folder holds the key or the number.
    QDir folder(s.settings().dataFolder);
    for (const QString &name : folder.entryList(QDir::Files)) {
        QFile f(folder.filePath(name));
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray bytes = f.readAll();
        QVERIFY2(!bytes.contains(oldKey) && !bytes.contains(oldKey.toUpper())
                     && !bytes.contains(QByteArray::fromHex(oldKey)),
                 qPrintable(name));
        QVERIFY2(!bytes.contains("4543 1234") && !bytes.contains("45431234"), qPrintable(name));
#ifndef Q_OS_WIN
        QCOMPARE(f.permissions() & (QFileDevice::ReadOther | QFileDevice::ReadGroup),
                 QFileDevice::Permissions());
#endif
    }
}

void tst_CardNumbers::withoutTheKeyNumbersStayMaskedAndKept()
{
    // A second workstation whose key file was never copied over.
    testing::OfficeWindow o;
    QVERIFY(o.prepare());
    store::Database &db = o.db();
    const qint64 id = saveStudent(db);
    const QString sealed = stored(db, id);
    qputenv("VORTEL_KART_ANAHTARI", m_keys->filePath(u"yok.key"_s).toLocal8Bit());
    QVERIFY(!users::KartAnahtariVar(db));
    // No new key is made over numbers sealed with the school's own.
    QVERIFY(!users::GizliYaz(db, u"1111 2222"_s).ok());
    QVERIFY(!QFile::exists(users::KartAnahtariDosyasi()));

    FrmOgrenci *screen = showStudent(o, id);
    QVERIFY(screen);
    auto *box = screen->findChild<QLineEdit *>(KartNoAlani);
    QCOMPARE(box->text(), u"•••• •••• •••• ••••"_s);
    QVERIFY(box->isReadOnly());
    QVERIFY(o.messages.texts().join(u' ').contains(u"anahtar bu bilgisayarda yok"_s));
    // The record saved here keeps the number exactly as it was sealed.
    QVERIFY(screen->OgrenciKaydet());
    QCOMPARE(stored(db, id), sealed);
}

QTEST_MAIN(tst_CardNumbers)
#include "tst_card_numbers.moc"
