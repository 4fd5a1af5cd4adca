#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "shell/main_window.h"
#include "store/database.h"
#include "users/session.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QTest>

// Every screen opened from the command table takes the keyboard at once: the focus stands in
// its first control, so that what the operator types lands there.
class tst_ScreenFocus : public QObject
{
    Q_OBJECT

private slots:
    void theFirstBoxHasTheFocus_data();
    void theFirstBoxHasTheFocus();
};

void tst_ScreenFocus::theFirstBoxHasTheFocus_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("screen");
    QTest::addRow("okul") << "popOkulBilgileri"
                          << "FrmOkulBilgileri";
    QTest::addRow("kullanici") << "popKullanici"
                               << "Kullanici_Sifre";
    QTest::addRow("ogrenci") << "btnOgrenciBilgileri"
                             << "FrmOgrenci";
    QTest::addRow("aidat") << "popAidatTanimlama"
                           << "FrmAidatTanimlama";
    QTest::addRow("hizli-giris") << "popHizliOgrenciGirisi"
                                 << "FrmHizliOgrenciKayit";
    QTest::addRow("sinif-atlatma") << "popSinifAtlatma"
                                   << "Form_Sinif_Atlatma";
    QTest::addRow("toplu-sinif") << "popTopluBorcSinifDegistirme"
                                 << "FrmTopluSinifDegistirme";
}

void tst_ScreenFocus::theFirstBoxHasTheFocus()
{
    QFETCH(QString, tool);
    QFETCH(QString, screen);
    testing::TestStore s(store::Engine::SQLite);
    store::Database &db = s.db();
    store::setDefaultDatabase(&db);
    QVERIFY(testing::openOffice(db));
    testing::MessageRecorder messages;
    shell::MDIAidat w(db);
    w.MenuDurumAyarla(true);
    w.show();
    QApplication::setActiveWindow(&w);
    w.ActBar_Click(tool);
    QMdiSubWindow *sub = w.screenWindow(screen);
    QVERIFY(sub);
    QWidget *focused = QApplication::focusWidget();
    QVERIFY2(focused && sub->widget()->isAncestorOf(focused),
             qPrintable(focused ? focused->objectName() : QStringLiteral("<yok>")));
    // A box, a list or a grid that takes what is typed: not a tab bar, not a button.
    QVERIFY2(qobject_cast<QLineEdit *>(focused) || qobject_cast<QComboBox *>(focused)
                 || qobject_cast<QAbstractItemView *>(focused)
                 || qobject_cast<QPlainTextEdit *>(focused),
             focused->metaObject()->className());
    sub->close();
    store::setDefaultDatabase(nullptr);
}

QTEST_MAIN(tst_ScreenFocus)
#include "tst_screen_focus.moc"
