// Times the student screens on a year of generated students (10,000 by default), each with
// two fees of ten installments, five payments and a registry row:
//  - opening the pick-list (all students read in name order and put into its list);
//  - one keystroke in its search box (the cursor goes to the first matching student), and for
//    comparison the first keystroke in the other box (the list is read again in that order)
//    and Enter (the list keeps the matching students only);
//  - showing one student on the student screen with his totals (record, registry row, notes,
//    siblings, photograph, lock, the general state and this month's dues).
// Usage: bench_students [students]   (PostgreSQL too when VORTEL_TEST_PG names a server)
#include "generate.h"

#include "store/database.h"
#include "store/migration.h"
#include "students/frm_ogrenci.h"
#include "students/frm_ogrenci_list.h"
#include "students/student_record.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "users/record_lock.h"
#include "users/session.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double ms(const QElapsedTimer &t)
{
    return t.nsecsElapsed() / 1e6;
}

// Names that spread over the alphabet, Turkish letters included, and a registry row each.
bool varyNames(store::Database &db, int students)
{
    const QStringList first
        = {QStringLiteral("Ahmet"),  QStringLiteral("Ayşe"),   QStringLiteral("Bora"),
           QStringLiteral("Burcu"),  QStringLiteral("Can"),    QStringLiteral("Cemile"),
           QStringLiteral("Çağla"),  QStringLiteral("Çetin"),  QStringLiteral("Deniz"),
           QStringLiteral("Derya"),  QStringLiteral("Ece"),    QStringLiteral("Emre"),
           QStringLiteral("Fatma"),  QStringLiteral("Furkan"), QStringLiteral("Gökhan"),
           QStringLiteral("Gül"),    QStringLiteral("Hakan"),  QStringLiteral("Hülya"),
           QStringLiteral("Irmak"),  QStringLiteral("Işık"),   QStringLiteral("İbrahim"),
           QStringLiteral("İpek"),   QStringLiteral("Kemal"),  QStringLiteral("Leyla"),
           QStringLiteral("Mehmet"), QStringLiteral("Merve"),  QStringLiteral("Nazlı"),
           QStringLiteral("Oğuz"),   QStringLiteral("Ömer"),   QStringLiteral("Pınar"),
           QStringLiteral("Rıza"),   QStringLiteral("Selin"),  QStringLiteral("Şule"),
           QStringLiteral("Tolga"),  QStringLiteral("Ümit"),   QStringLiteral("Volkan"),
           QStringLiteral("Yusuf"),  QStringLiteral("Zeynep")};
    const QStringList last
        = {QStringLiteral("Akın"),  QStringLiteral("Aydın"),  QStringLiteral("Bal"),
           QStringLiteral("Çelik"), QStringLiteral("Demir"),  QStringLiteral("Doğan"),
           QStringLiteral("Erdem"), QStringLiteral("Güneş"),  QStringLiteral("Işıklı"),
           QStringLiteral("İnce"),  QStringLiteral("Kaya"),   QStringLiteral("Koç"),
           QStringLiteral("Kurt"),  QStringLiteral("Öztürk"), QStringLiteral("Polat"),
           QStringLiteral("Şahin"), QStringLiteral("Tekin"),  QStringLiteral("Uçar"),
           QStringLiteral("Ünal"),  QStringLiteral("Yıldız"), QStringLiteral("Yılmaz"),
           QStringLiteral("Zengin")};
    store::Transaction tx(db);
    store::Query keys(db, QStringLiteral("SELECT KayitID FROM Ogrenci ORDER BY KayitID"));
    if (!keys.exec()) {
        return false;
    }
    QList<qint64> ids;
    while (keys.next()) {
        ids << keys.integer(0);
    }
    keys.finish();
    for (int i = 0; i < ids.size(); ++i) {
        store::Query name(db, QStringLiteral("UPDATE Ogrenci SET Ogr_Adi = ?, Ogr_Soyadi = ?, "
                                             "Ogr_Islem_Yapan_Kullanici = '' WHERE KayitID = ?"));
        name.bind(first.at((i * 7) % first.size()))
            .bind(last.at((i * 13 / 3) % last.size()))
            .bind(ids.at(i));
        store::Query nufus(db, QStringLiteral("INSERT INTO OgrenciNufus (KayitID, Ogr_MernisNo, "
                                              "Ogr_Nufus_Cinsiyet) VALUES (?, ?, ?)"));
        nufus.bind(ids.at(i))
            .bind(QString::number(10000000000LL + i * 97))
            .bind(i % 2 ? QStringLiteral("KIZ") : QStringLiteral("ERKEK"));
        if (!name.exec() || !nufus.exec()) {
            return false;
        }
    }
    Q_UNUSED(students);
    return tx.commit();
}

void keystroke(QWidget *box, QChar c)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
    QApplication::sendEvent(box, &press);
}

void run(const store::ConnectionSettings &settings, const char *engine, int students, int year)
{
    store::Database db(settings);
    if (!store::DatabaseAc(db, store::Store::Global, true, false)) {
        std::printf("%s: the store does not open\n", engine);
        return;
    }
    if (db.exists(store::Store::Year, year)) {
        (void)db.drop(year);
    }
    db.selectYear(year);
    if (!store::DatabaseAc(db, store::Store::Year, true, true)) {
        std::printf("%s: the year does not open\n", engine);
        return;
    }
    store::SonAlanlariEkle(db);
    store::setDefaultDatabase(&db);
    QElapsedTimer g;
    g.start();
    if (!bench::generate(db, students) || !varyNames(db, students)) {
        std::printf("%s: generating failed\n", engine);
        return;
    }
    std::printf("%s: generated %d students in %.1f s\n", engine, students, g.elapsed() / 1000.0);

    std::vector<double> open;
    std::vector<double> key;
    std::vector<double> otherBox;
    std::vector<double> enter;
    const QString typed = QStringLiteral("Mehmet");
    for (int round = 0; round < 7; ++round) {
        QElapsedTimer t;
        t.start();
        students::FrmOgrenciList list(db);
        list.show();
        QApplication::processEvents();
        open.push_back(ms(t));
        auto *ad = list.findChild<QLineEdit *>(QStringLiteral("txtAd"));
        auto *soyad = list.findChild<QLineEdit *>(QStringLiteral("txtSoyad"));
        ad->setFocus();
        for (const QChar c : typed) {
            t.restart();
            keystroke(ad, c);
            QApplication::processEvents();
            key.push_back(ms(t));
        }
        soyad->setFocus();
        t.restart();
        keystroke(soyad, u'Y');
        QApplication::processEvents();
        otherBox.push_back(ms(t));
        t.restart();
        QKeyEvent enterKey(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(soyad, &enterKey);
        QApplication::processEvents();
        enter.push_back(ms(t));
        if (round == 0) {
            std::printf("%s: \"Y\" in the surname box and Enter keep %d students\n", engine,
                        list.rowCount());
        }
    }
    std::printf("%s: opening the pick-list             : %7.1f ms (median of 7)\n", engine,
                median(open));
    std::printf("%s: one keystroke of its search       : %7.2f ms (median of %zu)\n", engine,
                median(key), key.size());
    std::printf("%s: first keystroke in the other box  : %7.1f ms (median of 7)\n", engine,
                median(otherBox));
    std::printf("%s: Enter, keeping the matching ones  : %7.1f ms (median of 7)\n", engine,
                median(enter));

    std::vector<double> show;
    double paintMs = 0;
    {
        students::FrmOgrenci screen(db);
        screen.resize(1080, 690);
        screen.show();
        QApplication::processEvents();
        for (int i = 0; i < 200; ++i) {
            const qint64 kayit = (qint64(i) * 4999) % students + 1;
            QElapsedTimer t;
            t.start();
            if (!screen.OgrenciGoster(kayit, true)) {
                std::printf("%s: student %lld not shown\n", engine, kayit);
                return;
            }
            QApplication::processEvents();
            show.push_back(ms(t));
        }
        screen.setDirty(false);
        std::vector<double> paint;
        for (int i = 0; i < 20; ++i) {
            QElapsedTimer t;
            t.start();
            screen.repaint();
            paint.push_back(ms(t));
        }
        paintMs = median(paint);
    }
    std::printf("%s: showing one student with totals  : %7.2f ms (median of 200, max %.1f)\n",
                engine, median(show), *std::max_element(show.begin(), show.end()));
    // The store's share of it: the record, the record lock, the totals and this month's debts.
    std::vector<double> store;
    for (int i = 0; i < 200; ++i) {
        const qint64 kayit = (qint64(i) * 4999) % students + 1;
        QElapsedTimer t;
        t.start();
        const bool ok = students::OgrenciOku(db, kayit).ok()
                        && users::OgrenciKilitle(db, kayit).ok()
                        && students::GenelDurum(db, kayit).ok()
                        && students::BuAyYapilacakOdemeler(db, kayit, users::durum().CariAy).ok();
        if (!ok) {
            std::printf("%s: student %lld not read\n", engine, kayit);
            return;
        }
        store.push_back(ms(t));
    }
    std::printf("%s: of which the store's reads and lock : %7.2f ms (median of 200)\n", engine,
                median(store));
    std::printf("%s: repainting the whole student screen: %7.2f ms (median of 20)\n", engine,
                paintMs);
    store::setDefaultDatabase(nullptr);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    const int students = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    users::durum().AktifKullanici = QStringLiteral("muhasebe");
    users::durum().OgretimYili = QStringLiteral("2025-2026");
    users::durum().CariAy = QStringLiteral("202511");
    ui::setMessageHook([](const ui::Message &m) {
        std::printf("message: %s\n", qPrintable(m.text));
        return ui::Answer::No;
    });
    QTemporaryDir folder;
    run(store::ConnectionSettings::sqlite(folder.path()), "SQLite", students, 1);
    const QString pg = qEnvironmentVariable("VORTEL_TEST_PG");
    if (!pg.isEmpty()) {
        if (const std::optional<store::ConnectionSettings> s
            = store::ConnectionSettings::fromConnInfo(pg)) {
            run(*s, "PostgreSQL", students, 61);
        }
    }
    return 0;
}
